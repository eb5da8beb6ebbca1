// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

enum NSComparisonResult : NSInteger;

/// An identity that is made once and is never the same twice: 16 bytes. Equal bytes are equal identities.
/// Thread: any.
class NSUUID : public NSObject {
    BRINDLE_OBJECT(NSUUID, NSObject)

public:
    using Bytes = std::array<unsigned char, 16>;

    struct Meta : NSObject::Meta {
        /// Answers a new random one, version 4, from the system's cryptographic source.
        Ref<NSUUID> UUID() const { return send<"UUID", Ref<NSUUID>>(); }
    };

    /// Reads "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", in capitals or small letters.
    /// - Nil: for nil and for any other text, also one with spaces around it.
    Ref<NSUUID> initWithUUIDString(const NSString* text)
    {
        return send<"initWithUUIDString:", Ref<NSUUID>>(text);
    }
    /// Takes 16 bytes as they are; nil stands for 16 zeros.
    Ref<NSUUID> initWithUUIDBytes(const unsigned char* bytes)
    {
        return send<"initWithUUIDBytes:", Ref<NSUUID>>(bytes);
    }
    /// Copies the 16 bytes to a buffer.
    void getUUIDBytes(unsigned char* bytes) const { send<"getUUIDBytes:">(bytes); }
    /// Answers the text in capitals, which is the description too.
    Ref<NSString> UUIDString() const { return send<"UUIDString", Ref<NSString>>(); }
    /// Orders by the bytes, the first one first.
    /// - Raises: `NSInvalidArgumentException` for nil, "*** -[NSUUID compare:]: nil argument".
    NSComparisonResult compare(const NSUUID* other) const
    {
        return send<"compare:", NSComparisonResult>(other);
    }

private:
    Bytes bytes_ {};
};

}
