// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "foundation/NSString.h"
#include "runtime/Runtime.h"

namespace brindle {

/// A structure that the platform has no name for.
struct Tint {
    float red;
    float green;
    std::int64_t steps;
};
template <> struct Structure<Tint> {
    static constexpr const char* encoding = "{Tint=ffq}";
};

/// Has a property of every kind, and keys that are answered in odd ways.
class KeyHost : public NSObject {
    BRINDLE_OBJECT(KeyHost, NSObject)

public:
    bool flag_ = false;
    char letter_ = 0;
    unsigned char byte_ = 0;
    short small_ = 0;
    unsigned short smallNatural_ = 0;
    int number_ = 0;
    unsigned natural_ = 0;
    NSInteger large_ = 0;
    NSUInteger largeNatural_ = 0;
    float single_ = 0;
    double real_ = 0;
    NSPoint point_ {};
    NSSize size_ {};
    NSRect rect_ {};
    NSRange range_ {};
    Tint tint_ {};
    Class* kind_ = nullptr;
    const char* letters_ = "abc";
    Ref<NSString> name_;
    WeakRef<NSObject> friend_;
    Block<void()> code_;
    NSInteger hidden_ = 7;
    NSInteger isOpen_ = 8;
    NSInteger bare_ = 9;
    NSInteger isWide_ = 10;
    Ref<NSString> kept_;
    std::string log_;
};

/// Answers keys in its own way.
class OwnKeyHost : public KeyHost {
    BRINDLE_OBJECT(OwnKeyHost, KeyHost)
};

/// Does not want its fields touched.
class ShyHost : public KeyHost {
    BRINDLE_OBJECT(ShyHost, KeyHost)
};

}
