// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Clock.h"
#include "NSGeometry.h"
#include "NSString.h"

namespace brindle {

class NSArray;
class NSDictionary;

/// Facts about this process and the machine it runs on. Thread: any.
class NSProcessInfo : public NSObject {
    BRINDLE_OBJECT(NSProcessInfo, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSProcessInfo> processInfo() const { return send<"processInfo", Ref<NSProcessInfo>>(); }
    };

    /// Answers the name that the log and the defaults go by: the program's file name unless it was set.
    Ref<NSString> processName() const { return send<"processName", Ref<NSString>>(); }
    void setProcessName(NSString* name) { send<"setProcessName:">(name); }
    int processIdentifier() const { return send<"processIdentifier", int>(); }
    /// Answers the command line, the program first. Bytes that are not UTF-8 become question marks.
    Ref<NSArray> arguments() const { return send<"arguments", Ref<NSArray>>(); }
    /// Answers the environment as it is now. - Shape: NSString keys and values.
    Ref<NSDictionary> environment() const { return send<"environment", Ref<NSDictionary>>(); }
    Ref<NSString> hostName() const { return send<"hostName", Ref<NSString>>(); }
    Ref<NSString> userName() const { return send<"userName", Ref<NSString>>(); }
    /// Answers a text that nobody else has, nor this process a second time.
    Ref<NSString> globallyUniqueString() const
    {
        return send<"globallyUniqueString", Ref<NSString>>();
    }
    /// Answers such as "Linux 6.1.0".
    Ref<NSString> operatingSystemVersionString() const
    {
        return send<"operatingSystemVersionString", Ref<NSString>>();
    }
    NSUInteger processorCount() const { return send<"processorCount", NSUInteger>(); }
    NSUInteger activeProcessorCount() const { return send<"activeProcessorCount", NSUInteger>(); }
    /// Bytes.
    NSUInteger physicalMemory() const { return send<"physicalMemory", NSUInteger>(); }
    /// Seconds since the machine started; follows a virtual clock.
    NSTimeInterval systemUptime() const { return send<"systemUptime", NSTimeInterval>(); }

private:
    Ref<NSString> name_;
};

}
