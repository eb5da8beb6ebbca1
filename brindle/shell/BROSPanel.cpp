// SPDX-License-Identifier: Apache-2.0
#include "BROSPanel.h"

#include "SetUpWindowPrivate.h"

namespace brindle {

template <> struct BROSPanel::Methods<struct Basics> {
    static void table(Builder& t) { shell::SetUpWindow<BROSPanel, false>::declare(t); }
};
BRINDLE_RECORD(BROSPanel, Basics)

}
