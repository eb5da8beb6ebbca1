// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/CodingTable.h"
#include "foundation/NSArray.h"
#include "foundation/NSSet.h"

namespace brindle {

/// Writes or reads numbers under their keys, so that each is named once.
struct NumberCoding {
    NSCoder* coder;
    bool reads;

    template <class T> void operator()(NSString* key, T& value) const
    {
        if (!reads)
            coder->encodeInteger_forKey(static_cast<NSInteger>(value), key);
        else if (coder->containsValueForKey(key))
            value = static_cast<T>(coder->decodeIntegerForKey(key));
    }
    /// The same for a choice: a number past the last one keeps what is there.
    template <class T> void operator()(NSString* key, T& value, T last) const
    {
        if (reads
            && static_cast<NSUInteger>(coder->decodeIntegerForKey(key))
                > static_cast<NSUInteger>(last))
            return;
        (*this)(key, value);
    }
    void operator()(NSString* key, double& value) const
    {
        if (!reads)
            coder->encodeDouble_forKey(value, key);
        else if (coder->containsValueForKey(key))
            value = coder->decodeDoubleForKey(key);
    }
};

/// Makes both operations those of a class whose superclass has declared coding already.
template <auto Encode, auto Decode> void extendCoding(Builder& t)
{
    t.methods({
        { "encodeWithCoder:", imp<coding<Encode>> },
        { "initWithCoder:", imp<coding<Decode>> },
    });
}

/// Answers the objects of a class in an archived array, without those of other classes.
template <class T> std::vector<Ref<T>> decodeAll(NSCoder* coder, NSString* key)
{
    const Ref<NSSet> allowed = NSSet::cls().setWithArray(
        makeArray({ Ref<NSObject>(classOf<NSArray>()), Ref<NSObject>(classOf<T>()) }).get());
    const Ref<NSObject> found = coder->decodeObjectOfClasses_forKey(allowed.get(), key);
    std::vector<Ref<T>> all;
    if (!found || !found->isKindOfClass(NSArray::cls()))
        return all;
    for (NSObject* item : each(cast<NSArray>(found))) {
        if (item->isKindOfClass(classOf<T>()))
            all.emplace_back(static_cast<T*>(item));
    }
    return all;
}

}
