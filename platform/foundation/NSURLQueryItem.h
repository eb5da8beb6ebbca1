// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

/// One parameter of a query: a name and a value, both without escapes; a value that does not change.
/// Thread: any.
class NSURLQueryItem : public NSObject {
    BRINDLE_OBJECT(NSURLQueryItem, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSURLQueryItem> queryItemWithName_value(
            const NSString* name, const NSString* value) const
        {
            return send<"queryItemWithName:value:", Ref<NSURLQueryItem>>(name, value);
        }
    };

    /// - name: nil reads "". - value: nil for a name that stands alone, without "=".
    Ref<NSURLQueryItem> initWithName_value(const NSString* name, const NSString* value)
    {
        return send<"initWithName:value:", Ref<NSURLQueryItem>>(name, value);
    }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    Ref<NSString> value() const { return send<"value", Ref<NSString>>(); }

private:
    Ref<NSString> name_;
    Ref<NSString> value_;
};

}
