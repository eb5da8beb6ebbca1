// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

class NSDictionary;

/// What observers receive: a name, the sender, facts that come with it. A value; it keeps all three.
class NSNotification : public NSObject {
    BRINDLE_OBJECT(NSNotification, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSNotification> notificationWithName_object(NSString* name, NSObject* sender) const
        {
            return send<"notificationWithName:object:", Ref<NSNotification>>(name, sender);
        }
        Ref<NSNotification> notificationWithName_object_userInfo(
            NSString* name, NSObject* sender, NSDictionary* userInfo) const
        {
            return send<"notificationWithName:object:userInfo:", Ref<NSNotification>>(
                name, sender, userInfo);
        }
    };

    /// - Raises: `NSInvalidArgumentException` for a nil name.
    Ref<NSNotification> initWithName_object_userInfo(
        NSString* name, NSObject* object, NSDictionary* userInfo)
    {
        return send<"initWithName:object:userInfo:", Ref<NSNotification>>(name, object, userInfo);
    }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    Ref<NSObject> object() const { return send<"object", Ref<NSObject>>(); }
    Ref<NSDictionary> userInfo() const { return send<"userInfo", Ref<NSDictionary>>(); }

private:
    Ref<NSString> name_;
    Ref<NSObject> object_;
    Ref<NSDictionary> userInfo_;
};

}
