// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCoder.h"
#include "runtime/Table.h"

namespace brindle {

namespace coders {

    inline bool isSecure(Class&) { return true; }

}

/// Makes a class archivable, in its table: it adopts the protocols, may be read where classes are checked, and gets both
/// operations; a nil coder answers nothing.
///
///     static void encode(Shape& self, NSCoder* coder);
///     static Ref<NSObject> initWithCoder(Shape& self, NSCoder* coder);
///     static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
template <auto Encode, auto Decode> void declareCoding(Builder& t)
{
    t.conformsTo({ "NSCoding", "NSSecureCoding" });
    t.classMethods({ { "supportsSecureCoding", imp<coders::isSecure> } });
    t.methods({
        { "encodeWithCoder:", imp<coding<Encode>> },
        { "initWithCoder:", imp<coding<Decode>> },
    });
}

}
