// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdarg>

#include "NSString.h"

namespace brindle {

/// Writes arguments by a format, as `+[NSString stringWithFormat:]` does.
///
/// `%@` sends `description` (a nil object reads "(null)"); integers, floats, `%s` (UTF-8), `%S`, `%c`, `%C`, `%p` and `%%` take
/// flags, width, precision, `*`, lengths and positions as in C. `%n` writes nothing. A conversion that nobody knows stands in
/// the answer as it is written. Widths and precisions above 65,535 count as 65,535, positions above 64 are not read.
/// - Nil: for a nil format. - Owner: the arguments are read; `va_end` stays with the caller.
BRINDLE_EXPORT Ref<NSString> stringFromFormat(NSString* format, va_list arguments);

/// Answers a translated format, or the original where the translation would take other arguments: what stands in a file
/// of translations cannot make the process read what was not given to it.
BRINDLE_EXPORT NSString* fittingFormat(NSString* translated, NSString* original);

namespace strings {

    /// Ends variable arguments when its block is left, exceptions included.
    class ArgumentsEnd {
    public:
        explicit ArgumentsEnd(va_list& arguments)
            : arguments_(&arguments)
        {
        }
        ~ArgumentsEnd() { va_end(*arguments_); }
        ArgumentsEnd(const ArgumentsEnd&) = delete;
        ArgumentsEnd& operator=(const ArgumentsEnd&) = delete;

    private:
        va_list* arguments_;
    };

}

}
