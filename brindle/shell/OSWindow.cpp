// SPDX-License-Identifier: Apache-2.0
#include "OSWindow.h"

#include "SetUpWindowPrivate.h"

namespace brindle {

template <> struct OSWindow::Methods<struct Basics> {
    static void table(Builder& t) { shell::SetUpWindow<OSWindow, true>::declare(t); }
};
BRINDLE_RECORD(OSWindow, Basics)

}
