// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CAAnimation.h"

namespace brindle {

class NSArray;

/// A movement of one value of a layer, which a key path names.
class CAPropertyAnimation : public CAAnimation {
    BRINDLE_OBJECT(CAPropertyAnimation, CAAnimation)

public:
    struct Meta : CAAnimation::Meta {
        Ref<CAPropertyAnimation> animationWithKeyPath(NSString* path) const
        {
            return send<"animationWithKeyPath:", Ref<CAPropertyAnimation>>(path);
        }
    };

    Ref<NSString> keyPath() const { return send<"keyPath", Ref<NSString>>(); }
    void setKeyPath(NSString* path) { send<"setKeyPath:">(path); }
    /// Whether its values are added to what is shown without it.
    bool isAdditive() const { return send<"isAdditive", bool>(); }
    void setAdditive(bool additive) { send<"setAdditive:">(additive); }
    /// Whether each run starts from where the last one ended.
    bool isCumulative() const { return send<"isCumulative", bool>(); }
    void setCumulative(bool cumulative) { send<"setCumulative:">(cumulative); }
    /// Answers the value at a moment; nil shows nothing. Subclasses override it.
    /// - base: what is shown without it.
    Ref<NSObject> valueAtProgress_base(double progress, NSObject* base) const
    {
        return send<"valueAtProgress:base:", Ref<NSObject>>(progress, base);
    }

private:
    friend struct AnimationAccess;
    Ref<NSString> keyPath_;
    bool additive_ = false;
    bool cumulative_ = false;
};

/// A movement from one value to another.
///
/// Of `fromValue`, `toValue` and `byValue` at most two are used; what is missing is the value without the movement:
/// from alone goes there, to alone and by alone start from there. Numbers, points, sizes, rectangles, transforms, colours
/// and lists of them move by degrees; anything else changes half-way.
class CABasicAnimation : public CAPropertyAnimation {
    BRINDLE_OBJECT(CABasicAnimation, CAPropertyAnimation)

public:
    struct Meta : CAPropertyAnimation::Meta {
        Ref<CABasicAnimation> animationWithKeyPath(NSString* path) const
        {
            return send<"animationWithKeyPath:", Ref<CABasicAnimation>>(path);
        }
    };

    Ref<NSObject> fromValue() const { return send<"fromValue", Ref<NSObject>>(); }
    void setFromValue(NSObject* value) { send<"setFromValue:">(value); }
    Ref<NSObject> toValue() const { return send<"toValue", Ref<NSObject>>(); }
    void setToValue(NSObject* value) { send<"setToValue:">(value); }
    Ref<NSObject> byValue() const { return send<"byValue", Ref<NSObject>>(); }
    void setByValue(NSObject* value) { send<"setByValue:">(value); }

private:
    friend struct AnimationAccess;
    Ref<NSObject> from_;
    Ref<NSObject> to_;
    Ref<NSObject> by_;
};

inline constexpr StringConstant<"linear"> kCAAnimationLinear;
inline constexpr StringConstant<"discrete"> kCAAnimationDiscrete;
inline constexpr StringConstant<"paced"> kCAAnimationPaced;

/// A movement through several values, or along a path.
class CAKeyframeAnimation : public CAPropertyAnimation {
    BRINDLE_OBJECT(CAKeyframeAnimation, CAPropertyAnimation)

public:
    struct Meta : CAPropertyAnimation::Meta {
        Ref<CAKeyframeAnimation> animationWithKeyPath(NSString* path) const
        {
            return send<"animationWithKeyPath:", Ref<CAKeyframeAnimation>>(path);
        }
    };

    Ref<NSArray> values() const { return send<"values", Ref<NSArray>>(); }
    void setValues(NSArray* values) { send<"setValues:">(values); }
    /// Answers when each value is reached.
    /// - Shape: NSNumber, 0 to 1, rising. - Nil: nil, and another count than that of the values, space them evenly.
    Ref<NSArray> keyTimes() const { return send<"keyTimes", Ref<NSArray>>(); }
    void setKeyTimes(NSArray* times) { send<"setKeyTimes:">(times); }
    /// Answers the curves from each value to the next.
    /// - Shape: `CAMediaTimingFunction`.
    Ref<NSArray> timingFunctions() const { return send<"timingFunctions", Ref<NSArray>>(); }
    void setTimingFunctions(NSArray* functions) { send<"setTimingFunctions:">(functions); }
    /// Linear at first; discrete jumps at each time, paced goes at an even speed and has no times.
    Ref<NSString> calculationMode() const { return send<"calculationMode", Ref<NSString>>(); }
    void setCalculationMode(NSString* mode) { send<"setCalculationMode:">(mode); }
    /// In place of values: points are taken from the path at an even speed.
    Ref<class CGPath> path() const { return send<"path", Ref<class CGPath>>(); }
    void setPath(class CGPath* path) { send<"setPath:">(path); }

private:
    friend struct AnimationAccess;
    Ref<NSArray> values_;
    Ref<NSArray> keyTimes_;
    Ref<NSArray> timingFunctions_;
    Ref<NSString> calculationMode_ = kCAAnimationLinear.get();
    Ref<class CGPath> path_;
};

/// Several movements that run together, cut off at the group's end.
class CAAnimationGroup : public CAAnimation {
    BRINDLE_OBJECT(CAAnimationGroup, CAAnimation)

public:
    /// - Shape: `CAAnimation`; a duration of 0 is the group's. Their delegates and removal are not looked at.
    Ref<NSArray> animations() const { return send<"animations", Ref<NSArray>>(); }
    /// Groups that hold this one, and this one itself, are left out.
    void setAnimations(NSArray* animations) { send<"setAnimations:">(animations); }

private:
    friend struct AnimationAccess;
    Ref<NSArray> animations_;
};

}
