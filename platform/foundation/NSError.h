// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StringConstant.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSDictionary;

// Whose codes they are. A POSIX error's code is the value of `errno`.
inline constexpr StringConstant<"NSCocoaErrorDomain"> NSCocoaErrorDomain;
inline constexpr StringConstant<"NSPOSIXErrorDomain"> NSPOSIXErrorDomain;

// Keys of `userInfo`.
inline constexpr StringConstant<"NSLocalizedDescription"> NSLocalizedDescriptionKey;
inline constexpr StringConstant<"NSLocalizedFailureReason"> NSLocalizedFailureReasonErrorKey;
inline constexpr StringConstant<"NSLocalizedRecoverySuggestion">
    NSLocalizedRecoverySuggestionErrorKey;
/// The error below this one.
inline constexpr StringConstant<"NSUnderlyingError"> NSUnderlyingErrorKey;
/// A line for the developer; never shown to a user.
inline constexpr StringConstant<"NSDebugDescription"> NSDebugDescriptionErrorKey;
inline constexpr StringConstant<"NSFilePath"> NSFilePathErrorKey;
inline constexpr StringConstant<"NSURL"> NSURLErrorKey;
inline constexpr StringConstant<"NSStringEncoding"> NSStringEncodingErrorKey;

/// Codes of `NSCocoaErrorDomain`.
enum NSCocoaErrorCode : NSInteger {
    NSFileNoSuchFileError = 4,
    NSFileLockingError = 255,
    NSFileReadUnknownError = 256,
    NSFileReadNoPermissionError = 257,
    NSFileReadInvalidFileNameError = 258,
    NSFileReadCorruptFileError = 259,
    NSFileReadNoSuchFileError = 260,
    NSFileReadInapplicableStringEncodingError = 261,
    NSFileReadUnsupportedSchemeError = 262,
    NSFileReadTooLargeError = 263,
    NSFileReadUnknownStringEncodingError = 264,
    NSFileWriteUnknownError = 512,
    NSFileWriteNoPermissionError = 513,
    NSFileWriteInvalidFileNameError = 514,
    NSFileWriteFileExistsError = 516,
    NSFileWriteInapplicableStringEncodingError = 517,
    NSFileWriteUnsupportedSchemeError = 518,
    NSFileWriteOutOfSpaceError = 640,
    NSFileWriteVolumeReadOnlyError = 642,
    NSKeyValueValidationError = 1024,
    NSFormattingError = 2048,
    NSUserCancelledError = 3072,
    NSPropertyListReadCorruptError = 3840,
    NSPropertyListReadUnknownVersionError = 3841,
    NSPropertyListReadStreamError = 3842,
    NSPropertyListWriteStreamError = 3851,
    NSPropertyListWriteInvalidError = 3852,
    NSCoderReadCorruptError = 4864,
    NSCoderValueNotFoundError = 4865,
    NSCoderInvalidValueError = 4866,
};

/// Why an operation failed: a domain, a code of that domain, and facts that come with it. A value; copying answers
/// the receiver. Operations hand one out through their last parameter, `Ref<NSError>* error`, which may be nullptr and is
/// touched only when they fail.
/// Thread: any.
class NSError : public NSObject {
    BRINDLE_OBJECT(NSError, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSError> errorWithDomain_code_userInfo(
            NSString* domain, NSInteger code, NSDictionary* userInfo) const
        {
            return send<"errorWithDomain:code:userInfo:", Ref<NSError>>(domain, code, userInfo);
        }
    };

    /// - Raises: `NSInvalidArgumentException` for a nil domain.
    Ref<NSError> initWithDomain_code_userInfo(
        NSString* domain, NSInteger code, NSDictionary* userInfo)
    {
        return send<"initWithDomain:code:userInfo:", Ref<NSError>>(domain, code, userInfo);
    }
    Ref<NSString> domain() const { return send<"domain", Ref<NSString>>(); }
    NSInteger code() const { return send<"code", NSInteger>(); }
    /// Answers a dictionary, empty when nothing was given.
    Ref<NSDictionary> userInfo() const { return send<"userInfo", Ref<NSDictionary>>(); }
    /// Answers the description of `userInfo`; without one a sentence made of the failure reason or, failing that, of
    /// domain and code. Never nil.
    Ref<NSString> localizedDescription() const
    {
        return send<"localizedDescription", Ref<NSString>>();
    }
    /// Answers the reason of `userInfo`; for a POSIX error without one the system's own text; else nil.
    Ref<NSString> localizedFailureReason() const
    {
        return send<"localizedFailureReason", Ref<NSString>>();
    }
    Ref<NSString> localizedRecoverySuggestion() const
    {
        return send<"localizedRecoverySuggestion", Ref<NSString>>();
    }

private:
    Ref<NSString> domain_;
    NSInteger code_ = 0;
    Ref<NSDictionary> userInfo_;
};

/// Hands out an error of `NSCocoaErrorDomain` where one is wanted. Nil values are left out.
BRINDLE_EXPORT void reportError(Ref<NSError>* error, NSCocoaErrorCode code,
    std::initializer_list<std::pair<NSString*, NSObject*>> userInfo = {});
/// Hands out what the system said of a file: the code of `NSCocoaErrorDomain` that fits `errno`'s value, with the
/// path and the POSIX error below it. `writing` chooses between the codes for reading and for writing.
BRINDLE_EXPORT void reportFileError(
    Ref<NSError>* error, int systemError, bool writing, NSString* path);

}
