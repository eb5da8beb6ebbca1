// SPDX-License-Identifier: Apache-2.0
#include "NSNull.h"
#include "CodingTable.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSNull::Methods<struct Coding> {

    static void encode(NSNull&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(NSNull& self, NSCoder*) { return &self; }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSNull, Coding)

}
