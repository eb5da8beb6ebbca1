// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSTimeZone.h"

namespace brindle::test {

/// The process's time zone for one test.
class LocalTime {
public:
    explicit LocalTime(NSString* name)
    {
        NSTimeZone::cls().setDefaultTimeZone(NSTimeZone::cls().timeZoneWithName(name).get());
    }
    ~LocalTime() { NSTimeZone::cls().setDefaultTimeZone(nullptr); }
    LocalTime(const LocalTime&) = delete;
    LocalTime& operator=(const LocalTime&) = delete;
};

}
