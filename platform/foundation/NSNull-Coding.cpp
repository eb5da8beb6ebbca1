// SPDX-License-Identifier: Apache-2.0
#include "NSNull.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSNull::Methods<struct Coding> {

    static void encode(NSNull&, NSCoder*) { }
    static Ref<NSObject> initWithCoder(NSNull& self, NSCoder*) { return &self; }

    static void table(Builder& t)
    {
        t.classMethods({ { "supportsSecureCoding", imp<archives::isSecure> } });
        t.methods({
            { "encodeWithCoder:", imp<coding<encode>> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
        });
    }
};
BRINDLE_RECORD(NSNull, Coding)

}
