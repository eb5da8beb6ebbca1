// SPDX-License-Identifier: Apache-2.0
#include "Display.h"

#include <atomic>

#include "Clipboard.h"
#include "SurfaceNumber.h"

namespace brindle::display {

Display::~Display() = default;
Surface::~Surface() = default;
Clipboard::~Clipboard() = default;

Clipboard* Display::clipboard() { return nullptr; }
CommandKey Display::commandKey() const { return CommandKey::control; }
bool Display::blends() const { return true; }

SurfaceId nextSurfaceNumber()
{
    static constinit std::atomic<SurfaceId> last { 0 };
    return ++last;
}

}
