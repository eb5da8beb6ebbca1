// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSMutableArray.h"
#include "NSSet.h"

namespace brindle {

/// One rule of an order: by which value of the objects, how two values compare, and which way round. A value; copying
/// answers the receiver.
///
/// Without an operation and a block, values are compared by `compare:`. Nil is less than any value.
/// Thread: any.
class NSSortDescriptor : public NSObject {
    BRINDLE_OBJECT(NSSortDescriptor, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSSortDescriptor> sortDescriptorWithKey_ascending(NSString* key, bool ascending) const
        {
            return send<"sortDescriptorWithKey:ascending:", Ref<NSSortDescriptor>>(key, ascending);
        }
        Ref<NSSortDescriptor> sortDescriptorWithKey_ascending_selector(
            NSString* key, bool ascending, SEL selector) const
        {
            return send<"sortDescriptorWithKey:ascending:selector:", Ref<NSSortDescriptor>>(
                key, ascending, selector);
        }
        Ref<NSSortDescriptor> sortDescriptorWithKey_ascending_comparator(
            NSString* key, bool ascending, const NSComparator& comparator) const
        {
            return send<"sortDescriptorWithKey:ascending:comparator:", Ref<NSSortDescriptor>>(
                key, ascending, comparator.get());
        }
    };

    /// - key: a key path; nil compares the objects themselves.
    Ref<NSSortDescriptor> initWithKey_ascending(NSString* key, bool ascending)
    {
        return send<"initWithKey:ascending:", Ref<NSSortDescriptor>>(key, ascending);
    }
    /// - selector: an operation of the values that takes another one and answers an `NSComparisonResult`.
    Ref<NSSortDescriptor> initWithKey_ascending_selector(
        NSString* key, bool ascending, SEL selector)
    {
        return send<"initWithKey:ascending:selector:", Ref<NSSortDescriptor>>(
            key, ascending, selector);
    }
    Ref<NSSortDescriptor> initWithKey_ascending_comparator(
        NSString* key, bool ascending, const NSComparator& comparator)
    {
        return send<"initWithKey:ascending:comparator:", Ref<NSSortDescriptor>>(
            key, ascending, comparator.get());
    }
    Ref<NSString> key() const { return send<"key", Ref<NSString>>(); }
    bool ascending() const { return send<"ascending", bool>(); }
    /// Answers the comparing operation; the null selector when a block compares.
    SEL selector() const { return send<"selector", SEL>(); }
    NSComparator comparator() const { return send<"comparator", NSComparator>(); }
    NSComparisonResult compareObject_toObject(NSObject* a, NSObject* b) const
    {
        return send<"compareObject:toObject:", NSComparisonResult>(a, b);
    }
    /// Answers the same rule the other way round.
    Ref<NSSortDescriptor> reversedSortDescriptor() const
    {
        return send<"reversedSortDescriptor", Ref<NSSortDescriptor>>();
    }

private:
    Ref<NSString> key_;
    bool ascending_ = true;
    SEL selector_ {};
    NSComparator comparator_;
};

/// Answers the elements in the order of the first rule, equal ones in that of the next; what all call equal keeps its order.
inline Ref<NSArray> sortedArrayUsingDescriptors(To<NSArray> array, const NSArray* descriptors)
{
    return array.send<"sortedArrayUsingDescriptors:", Ref<NSArray>>(descriptors);
}
inline Ref<NSArray> sortedArrayUsingDescriptors(To<NSSet> set, const NSArray* descriptors)
{
    return set.send<"sortedArrayUsingDescriptors:", Ref<NSArray>>(descriptors);
}
inline void sortUsingDescriptors(To<NSMutableArray> array, const NSArray* descriptors)
{
    array.send<"sortUsingDescriptors:">(descriptors);
}

}
