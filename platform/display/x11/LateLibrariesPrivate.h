// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/LateLibrary.h"

/// Functions of XCB's extensions and of keymaps. Programs without a screen need none of them, and keymaps wait for the first
/// key (docs/decisions/libraries-opened-late.md). Thread: main.
#define XINPUT(name) BRINDLE_LATE(::brindle::display::inputLibrary(), name)
#define RANDR(name) BRINDLE_LATE(::brindle::display::randrLibrary(), name)
#define XFIXES(name) BRINDLE_LATE(::brindle::display::fixesLibrary(), name)
#define KEYBOARD(name) BRINDLE_LATE(::brindle::display::keyboardLibrary(), name)
#define KEYMAP(name) BRINDLE_LATE(::brindle::display::keymapLibrary(), name)

namespace brindle::display {

// Null where the machine has none: the server then counts as one without the extension.
void* inputLibrary();
void* randrLibrary();
void* fixesLibrary();
void* keyboardLibrary();
/// That of keymaps from a server; it brings keymaps as such along.
void* keymapLibrary();

}
