// SPDX-License-Identifier: Apache-2.0
#include "NSException.h"

#include "ClassPrivate.h"
#include "StringsPrivate.h"

namespace brindle {

template <> struct NSException::Methods<struct Raising> {

    static Ref<NSException> exceptionWithNameReasonUserInfo(
        Class& self, NSString* name, NSString* reason, NSDictionary* userInfo)
    {
        return cast<NSException>(self.send<"alloc", Ref<NSObject>>())
            ->initWithName_reason_userInfo(name, reason, userInfo);
    }

    static Ref<NSException> initWithNameReasonUserInfo(
        NSException& self, NSString* name, NSString* reason, NSDictionary* userInfo)
    {
        self.name_ = Ref<NSString>(name);
        self.reason_ = Ref<NSString>(reason);
        self.userInfo_ = Ref<NSDictionary>(userInfo);
        return &self;
    }

    static Ref<NSString> name(NSException& self) { return self.name_; }
    static Ref<NSString> reason(NSException& self) { return self.reason_; }
    static Ref<NSDictionary> userInfo(NSException& self) { return self.userInfo_; }
    static void raise(NSException& self) { throw Exception(&self); }
    static Ref<NSString> description(NSException& self)
    {
        if (self.reason_ || self.name_)
            return self.reason_ ? self.reason_ : self.name_;
        return super<NSException, "description", Ref<NSString>>(self);
    }
    static Ref<NSObject> copyWithZone(NSException& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "exceptionWithName:reason:userInfo:", imp<exceptionWithNameReasonUserInfo> },
        });
        t.methods({
            { "initWithName:reason:userInfo:", imp<initWithNameReasonUserInfo> },
            { "name", imp<name> },
            { "reason", imp<reason> },
            { "userInfo", imp<userInfo> },
            { "raise", imp<raise> },
            { "description", imp<description> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSException, Raising)

Exception::Exception(NSException* raised)
    : exception_(raised)
    , text_(textOf(raised->name().get()) + ": " + textOf(raised->reason().get()))
{
}

Exception::~Exception() = default;

void raise(const char* name, const std::string& reason)
{
    NSException::cls()
        .exceptionWithName_reason_userInfo(
            makeString(name).get(), makeString(reason).get(), nullptr)
        ->raise();
}

}
