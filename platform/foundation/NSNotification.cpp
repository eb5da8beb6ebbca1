// SPDX-License-Identifier: Apache-2.0
#include "NSNotification.h"

#include <array>
#include <atomic>

#include "NSDictionary.h"
#include "NotificationMemoryPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Spare.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSNotification::Methods<struct Value> {

    static Ref<NSNotification> makeWithName(Class& self, NSString* name, NSObject* object)
    {
        return makeWithInfo(self, name, object, nullptr);
    }
    static Ref<NSNotification> makeWithInfo(
        Class& self, NSString* name, NSObject* object, NSDictionary* userInfo)
    {
        return cast<NSNotification>(self.send<"alloc", Ref<NSObject>>())
            ->initWithName_object_userInfo(name, object, userInfo);
    }
    static Ref<NSNotification> initWithName(
        NSNotification& self, NSString* name, NSObject* object, NSDictionary* userInfo)
    {
        if (!name)
            raise("NSInvalidArgumentException",
                "*** -[NSNotification initWithName:object:userInfo:]: nil name");
        self.name_ = cast<NSString>(name->copy());
        self.object_ = Ref<NSObject>(object);
        self.userInfo_ = Ref<NSDictionary>(userInfo);
        return &self;
    }
    static Ref<NSString> name(NSNotification& self) { return self.name_; }
    static Ref<NSObject> object(NSNotification& self) { return self.object_; }
    static Ref<NSDictionary> userInfo(NSNotification& self) { return self.userInfo_; }
    static Ref<NSObject> copyWithZone(NSNotification& self, void*) { return &self; }
    static Ref<NSString> description(NSNotification& self)
    {
        std::string text = "NSNotification {name = " + utf8Of(self.name_.get());
        if (self.object_)
            text += "; object = " + utf8Of(self.object_->description().get());
        if (self.userInfo_)
            text += "; userInfo = " + utf8Of(self.userInfo_->description().get());
        return stringFrom(text + "}");
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "notificationWithName:object:", imp<makeWithName> },
            { "notificationWithName:object:userInfo:", imp<makeWithInfo> },
        });
        t.methods({
            { "initWithName:object:userInfo:", imp<initWithName> },
            { "name", imp<name> },
            { "object", imp<object> },
            { "userInfo", imp<userInfo> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSNotification, Value)

namespace {

    // Empty, and owned; several, because who reads one often posts another.
    constinit std::array<std::atomic<NSNotification*>, 4> spares {};

    Ref<NSNotification> takeSpare()
    {
        for (std::atomic<NSNotification*>& spare : spares) {
            if (auto taken = Ref<NSNotification>::adopt(spare.exchange(nullptr)))
                return taken;
        }
        return nullptr;
    }

}

template <> struct NSNotification::Methods<struct Memory> {
    static void empty(NSNotification& self)
    {
        self.name_ = nullptr;
        self.object_ = nullptr;
        self.userInfo_ = nullptr;
    }
};

Ref<NSNotification> makeNotification(NSString* name, NSObject* sender, NSDictionary* userInfo)
{
    const Ref<NSNotification> again = takeSpare();
    return again
        ? again->initWithName_object_userInfo(name, sender, userInfo)
        : NSNotification::cls().notificationWithName_object_userInfo(name, sender, userInfo);
}

void retireNotification(Ref<NSNotification> notification)
{
    if (!isSpare(notification))
        return;
    NSNotification::Methods<Memory>::empty(*notification);
    for (std::atomic<NSNotification*>& spare : spares) {
        NSNotification* none = nullptr;
        if (spare.compare_exchange_strong(none, notification.get())) {
            [[maybe_unused]] const NSNotification* const kept = notification.leak();
            return;
        }
    }
}

}
