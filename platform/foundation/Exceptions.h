// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSLog.h"
#include "StringConstant.h"
#include "runtime/NSException.h"

namespace brindle {

inline constexpr StringConstant<"NSGenericException"> NSGenericException;
inline constexpr StringConstant<"NSRangeException"> NSRangeException;
inline constexpr StringConstant<"NSInvalidArgumentException"> NSInvalidArgumentException;
inline constexpr StringConstant<"NSInternalInconsistencyException">
    NSInternalInconsistencyException;
inline constexpr StringConstant<"NSUnknownKeyException"> NSUndefinedKeyException;
inline constexpr StringConstant<"NSInvalidArchiveOperationException">
    NSInvalidArchiveOperationException;
inline constexpr StringConstant<"NSInvalidUnarchiveOperationException">
    NSInvalidUnarchiveOperationException;
inline constexpr StringConstant<"NSObjectInaccessibleException"> NSObjectInaccessibleException;

using NSUncaughtExceptionHandler = void(NSException*);
/// Sets what is called for an exception that nobody catches, before the process ends; nullptr ends it.
BRINDLE_EXPORT void NSSetUncaughtExceptionHandler(NSUncaughtExceptionHandler* handler);
BRINDLE_EXPORT NSUncaughtExceptionHandler* NSGetUncaughtExceptionHandler();
/// Makes an uncaught exception call the handler, write the line
/// "*** Terminating app due to uncaught exception 'Name', reason: 'Reason'" to the log and abort. The application
/// and the queues' threads ask for it; calling it again changes nothing.
BRINDLE_EXPORT void installUncaughtHandler();

/// Raises what a format says.
[[noreturn]] BRINDLE_EXPORT void raiseFormat(NSString* name, NSString* format, ...);

/// Raises `NSInternalInconsistencyException` with this reason when the condition is false.
template <class... A> void NSAssert(bool condition, NSString* reason, const A&... arguments)
{
    if (!condition) [[unlikely]]
        raiseFormat(NSInternalInconsistencyException, reason, formats::argument(arguments)...);
}

template <class... A>
void NSException::Meta::raise_format(NSString* name, NSString* format, A... arguments) const
{
    raiseFormat(name, format, formats::argument(arguments)...);
}

}
