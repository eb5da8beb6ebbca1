// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>
#include <type_traits>

#include "NSString.h"
#include "runtime/Block.h"

namespace brindle {

namespace formats {

    /// What a format reads for an argument: objects as pointers, everything else as it is.
    template <class T> auto argument(const T& value)
    {
        if constexpr (encoding::Owner<T>)
            return value.get();
        else if constexpr (std::is_convertible_v<const T&, NSString*> && !std::is_pointer_v<T>)
            return static_cast<NSString*>(value);
        else {
            static_assert(std::is_scalar_v<T>, "a format takes numbers, pointers and objects");
            return value;
        }
    }
    template <std::size_t N> const char* argument(const char (&text)[N]) { return text; }

}

/// Writes a format with its arguments, as `NSLog` does.
BRINDLE_EXPORT void NSLogv(NSString* format, va_list arguments);
BRINDLE_EXPORT void logFormat(NSString* format, ...);

/// Writes one line to standard error in one piece: "2026-01-31 12:34:56.789 process[pid:thread] text".
///
/// The format is that of `stringWithFormat:`. Does not raise. Thread: any.
template <class... A> void NSLog(NSString* format, const A&... arguments)
{
    logFormat(format, formats::argument(arguments)...);
}

/// Sends the text of each line to a closure instead of standard error; an empty closure ends that.
BRINDLE_EXPORT void setLogSink(const Block<void(NSString*)>& sink);

}
