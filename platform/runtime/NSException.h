// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>
#include <string>

#include "NSObject.h"

namespace brindle {

class NSDictionary;

/// What a programming error raises: a name to catch by, a reason to read, facts that come with it.
///
/// It is thrown as `Exception`, which owns it: `catch (const Exception& e) { e->reason(); }`. It passes through every
/// frame of the kit with locks released and states restored.
class NSException : public NSObject {
    BRINDLE_OBJECT(NSException, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: any of the three may be nil.
        Ref<NSException> exceptionWithName_reason_userInfo(
            NSString* name, NSString* reason, NSDictionary* userInfo) const
        {
            return send<"exceptionWithName:reason:userInfo:", Ref<NSException>>(
                name, reason, userInfo);
        }
        /// Raises at once; the format takes what `NSString` formats take.
        template <class... A>
        [[noreturn]] void raise_format(NSString* name, NSString* format, A... a) const;
    };

    Ref<NSException> initWithName_reason_userInfo(
        NSString* name, NSString* reason, NSDictionary* userInfo)
    {
        return send<"initWithName:reason:userInfo:", Ref<NSException>>(name, reason, userInfo);
    }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    Ref<NSString> reason() const { return send<"reason", Ref<NSString>>(); }
    Ref<NSDictionary> userInfo() const { return send<"userInfo", Ref<NSDictionary>>(); }
    /// Throws the receiver.
    [[noreturn]] void raise()
    {
        send<"raise">();
        std::terminate(); // an override that returns breaks the contract
    }

private:
    Ref<NSString> name_;
    Ref<NSString> reason_;
    Ref<NSDictionary> userInfo_;
};

/// The C++ exception that carries an `NSException`; copying shares it.
class BRINDLE_EXPORT Exception : public std::exception {
public:
    explicit Exception(NSException* raised);
    ~Exception() override;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;

    NSException* operator->() const { return exception_.get(); }
    NSException* get() const { return exception_.get(); }
    /// Answers "Name: reason", UTF-8.
    const char* what() const noexcept override { return text_.c_str(); }

private:
    Ref<NSException> exception_;
    std::string text_;
};

/// Raises an exception of this name and reason (UTF-8).
[[noreturn]] BRINDLE_EXPORT void raise(const char* name, const std::string& reason);

}
