// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

// Classes of a host that archive themselves, for the tests of archives.

namespace brindle {

/// Has a name, a next one and one that it only knows; supports secure coding.
class ArchivedNode : public NSObject {
    BRINDLE_OBJECT(ArchivedNode, NSObject)

public:
    Ref<NSString> name_;
    Ref<ArchivedNode> next_;
    Ref<NSObject> known_;
};

/// Writes one value of every kind that a coder takes.
class ArchivedScalars : public NSObject {
    BRINDLE_OBJECT(ArchivedScalars, NSObject)

public:
    bool yes_ = false;
    int whole_ = 0;
    std::int32_t small_ = 0;
    std::int64_t large_ = 0;
    float single_ = 0;
    double real_ = 0;
    std::string bytes_;
    NSRect rect_ {};
};

/// Does not support secure coding.
class ArchivedPlainly : public NSObject {
    BRINDLE_OBJECT(ArchivedPlainly, NSObject)
};

inline Ref<ArchivedNode> makeNode(NSString* name, ArchivedNode* next = nullptr)
{
    const Ref<ArchivedNode> node = make<ArchivedNode>();
    node->name_ = name;
    node->next_ = next;
    return node;
}

/// Archives an object and reads it back.
template <class T> Ref<T> roundTrip(T* object)
{
    return cast<T>(NSKeyedUnarchiver::cls().unarchiveObjectWithData(
        NSKeyedArchiver::cls().archivedDataWithRootObject(object).get()));
}
template <class T> Ref<T> roundTrip(const Ref<T>& object) { return roundTrip(object.get()); }

}
