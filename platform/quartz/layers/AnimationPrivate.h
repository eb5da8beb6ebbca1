// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CALayerPrivate.h"
#include "CAPropertyAnimation.h"

namespace brindle {

/// What the files of this folder do with movements beside sending messages.
struct AnimationAccess {
    static quartz::MediaTiming& timing(CAAnimation& a) { return a.timing_; }
    static const Ref<NSObject>& delegate(const CAAnimation& a) { return a.delegate_; }
    static bool removedOnCompletion(const CAAnimation& a) { return a.removedOnCompletion_; }

    /// Shows what a movement shows at its own time.
    static void show(CAAnimation& animation, CALayer& seen, double local);

    template <class A> static auto& from(A& a) { return a.from_; }
    template <class A> static auto& to(A& a) { return a.to_; }
    template <class A> static auto& by(A& a) { return a.by_; }
    template <class A> static auto& timingFunction(A& a) { return a.timingFunction_; }
};

namespace quartz {

    /// Answers what lies between two values; the nearer one of such as cannot be mixed.
    Ref<NSObject> mix(NSObject* a, NSObject* b, double part);
    /// Answers `a` and `factor` times `b` together; `a` where they cannot be added.
    Ref<NSObject> sum(NSObject* a, NSObject* b, double factor);
    /// Answers how far two values are from each other; 1 where that means nothing.
    double distance(NSObject* a, NSObject* b);

}

}
