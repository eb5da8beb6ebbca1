// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

namespace brindle {

/// The one object that stands for nothing where nil cannot stand: in collections. Its description is "<null>".
class NSNull : public NSObject {
    BRINDLE_OBJECT(NSNull, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSNull> null() const { return send<"null", Ref<NSNull>>(); }
    };
};

}
