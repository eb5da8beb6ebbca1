// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/CodingTable.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSString.h"

namespace brindle {

/// Writes what is sent to whom. A selector whose name no class has registered yet is written as its value, which is the
/// same in every process.
inline void encodeAction(NSCoder* coder, NSObject* target, SEL action)
{
    coder->encodeConditionalObject_forKey(target, "NSTarget"_ns);
    if (!action)
        return;
    if (const Ref<NSString> name = NSStringFromSelector(action))
        coder->encodeObject_forKey(name.get(), "NSAction"_ns);
    else
        coder->encodeInt64_forKey(static_cast<std::int64_t>(action.value), "NSActionValue"_ns);
}

/// Answers the selector that `encodeAction` has written, or the zero selector.
inline SEL decodeAction(NSCoder* coder)
{
    if (const Ref<NSString> name = decode<NSString>(coder, "NSAction"_ns))
        return NSSelectorFromString(name.get());
    return { static_cast<std::uint64_t>(coder->decodeInt64ForKey("NSActionValue"_ns)) };
}

}
