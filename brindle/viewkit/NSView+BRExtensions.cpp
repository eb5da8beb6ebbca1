// SPDX-License-Identifier: Apache-2.0
#include "NSView+BRExtensions.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct BRExtensions {
        static Ref<NSView> init(NSView& self) { return self.initWithFrame({}); }
        static void table(Builder& t) { t.methods({ { "init", imp<init> } }); }
    };

}
BRINDLE_EXTENSION(NSView, BRExtensions)

}
