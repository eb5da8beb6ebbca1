// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Block.h"

namespace brindle {

class NSArray;

/// How a block enumeration runs; bits that are added together.
using NSEnumerationOptions = std::uint64_t;
enum : std::uint64_t {
    NSEnumerationConcurrent = 1, ///< allowed, and without effect: the order stays
    NSEnumerationReverse = 2,
};

/// Hands out the objects of a collection one after the other.
///
/// A subclass overrides `nextObject`; a block makes one without a class (`makeEnumerator`). The collections' own
/// enumerators keep their collection until the last object was handed out.
/// - Raises: `NSGenericException`, "*** Collection <NSMutableArray: 0x…> was mutated while being enumerated.", from
///   the first `nextObject` after a change.
class NSEnumerator : public NSObject {
    BRINDLE_OBJECT(NSEnumerator, NSObject)

public:
    /// - Nil: when nothing is left.
    Ref<NSObject> nextObject() { return send<"nextObject", Ref<NSObject>>(); }
    /// Answers what is left, in order; afterwards nothing is.
    Ref<NSArray> allObjects() { return send<"allObjects", Ref<NSArray>>(); }

private:
    friend struct EnumeratorAccess;

    Block<Ref<NSObject>()> next_; // gone once it answered nil
};

/// Answers an enumerator that asks the block until it answers nil.
BRINDLE_EXPORT Ref<NSEnumerator> makeEnumerator(Block<Ref<NSObject>()> next);

}
