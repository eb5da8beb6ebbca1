// SPDX-License-Identifier: Apache-2.0
#include "CAAnimation.h"

#include <set>

#include "AnimationPrivate.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

namespace brindle {

void AnimationAccess::show(CAAnimation& animation, CALayer& seen, double local)
{
    using Phase = quartz::MediaTiming::Phase;
    const quartz::MediaTiming& timing = animation.timing_;
    const quartz::MediaTiming::Moment moment = timing.at(local);
    if ((moment.phase == Phase::before && !timing.fillsBackwards())
        || (moment.phase == Phase::after && !timing.fillsForwards()))
        return;
    const double progress
        = CAMediaTimingFunction::progress(animation.timingFunction_.get(), moment.progress);
    animation.showOnLayer_progress_time_repeats(&seen, progress, moment.time, moment.repeats);
}

template <> struct CAAnimation::Methods<struct Basics> {

    static Ref<CAAnimation> animation(Class& self)
    {
        return cast<CAAnimation>(Meta { { &self } }.alloc())->send<"init", Ref<CAAnimation>>();
    }

    template <auto Field> static auto get(CAAnimation& self) { return self.timing_.*Field; }
    static void setDuration(CAAnimation& self, double v) { self.timing_.duration = v; }
    static void setBeginTime(CAAnimation& self, double v) { self.timing_.beginTime = v; }
    static void setTimeOffset(CAAnimation& self, double v) { self.timing_.timeOffset = v; }
    static void setSpeed(CAAnimation& self, float v) { self.timing_.speed = v; }
    static void setRepeatCount(CAAnimation& self, float v) { self.timing_.repeatCount = v; }
    static void setRepeatDuration(CAAnimation& self, double v) { self.timing_.repeatDuration = v; }
    static void setAutoreverses(CAAnimation& self, bool v) { self.timing_.autoreverses = v; }
    static void setFillMode(CAAnimation& self, NSString* mode)
    {
        self.timing_.fillMode = mode ? cast<NSString>(mode->copy()) : Ref<NSString>();
    }

    static void run(CAAnimation& self, NSString* key, NSObject* layer, NSDictionary*)
    {
        if (layer && layer->isKindOfClass(CALayer::cls()))
            static_cast<CALayer*>(layer)->addAnimation_forKey(&self, key);
    }
    static void show(CAAnimation&, CALayer*, double, double, double) { }

    // ---- keys that are no properties

    static Ref<NSObject> valueForUndefinedKey(CAAnimation& self, NSString* key)
    {
        return maybe(self.others_)->objectForKey(key);
    }
    static void setValueForUndefinedKey(CAAnimation& self, NSObject* value, NSString* key)
    {
        if (!self.others_)
            self.others_ = make<NSMutableDictionary>();
        if (value)
            self.others_->setObject_forKey(value, key);
        else
            self.others_->removeObjectForKey(key);
    }

    static Ref<NSObject> copyWithZone(CAAnimation& self, void*)
    {
        Ref<CAAnimation> copy = animation(*self.isa_);
        if (!copy)
            return nullptr;
        copy->timing_ = self.timing_;
        copy->timingFunction_ = self.timingFunction_;
        copy->delegate_ = self.delegate_;
        copy->removedOnCompletion_ = self.removedOnCompletion_;
        if (self.others_)
            copy->others_ = cast<NSMutableDictionary>(self.others_->mutableCopy());
        return copy;
    }

    static void table(Builder& t)
    {
        using T = quartz::MediaTiming;
        t.conformsTo({ "NSCopying" });
        t.classMethods({ { "animation", imp<animation> } });
        t.methods({
            { "duration", imp<get<&T::duration>> },
            { "setDuration:", imp<setDuration> },
            { "beginTime", imp<get<&T::beginTime>> },
            { "setBeginTime:", imp<setBeginTime> },
            { "timeOffset", imp<get<&T::timeOffset>> },
            { "setTimeOffset:", imp<setTimeOffset> },
            { "speed", imp<get<&T::speed>> },
            { "setSpeed:", imp<setSpeed> },
            { "repeatCount", imp<get<&T::repeatCount>> },
            { "setRepeatCount:", imp<setRepeatCount> },
            { "repeatDuration", imp<get<&T::repeatDuration>> },
            { "setRepeatDuration:", imp<setRepeatDuration> },
            { "autoreverses", imp<get<&T::autoreverses>> },
            { "setAutoreverses:", imp<setAutoreverses> },
            { "fillMode", imp<get<&T::fillMode>> },
            { "setFillMode:", imp<setFillMode> },
            { "runActionForKey:object:arguments:", imp<run> },
            { "showOnLayer:progress:time:repeats:", imp<show> },
            { "valueForUndefinedKey:", imp<valueForUndefinedKey> },
            { "setValue:forUndefinedKey:", imp<setValueForUndefinedKey> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({
            property<&CAAnimation::timingFunction_>("timingFunction", nonatomic),
            property<&CAAnimation::delegate_>("delegate", nonatomic),
            property<&CAAnimation::removedOnCompletion_>(
                "removedOnCompletion", nonatomic, getter("isRemovedOnCompletion")),
        });
    }
};
BRINDLE_RECORD(CAAnimation, Basics)

template <> struct CAAnimationGroup::Methods<struct Basics> {

    static void show(CAAnimationGroup& self, CALayer* layer, double, double time, double)
    {
        for (CAAnimation* one : each<CAAnimation>(self.animations_)) {
            if (!layer || !one->isKindOfClass(CAAnimation::cls()))
                continue;
            const LentDuration lent(AnimationAccess::timing(*one), self.duration());
            AnimationAccess::show(*one, *layer, lent.timing.local(time));
        }
    }
    /// Lets an animation without a duration have that of its group while it is shown, which may raise.
    struct LentDuration {
        LentDuration(quartz::MediaTiming& animation, double duration)
            : timing(animation)
            , own(animation.duration)
        {
            if (!(own > 0))
                timing.duration = duration;
        }
        ~LentDuration() { timing.duration = own; }
        LentDuration(const LentDuration&) = delete;
        LentDuration& operator=(const LentDuration&) = delete;

        quartz::MediaTiming& timing;
        const double own;
    };
    /// Answers whether a group is among what an object holds, however deep, or is it itself.
    static bool holds(NSObject* object, const CAAnimationGroup& group)
    {
        std::vector<NSObject*> next { object };
        std::set<NSObject*> seen; // groups may be shared
        while (!next.empty()) {
            NSObject* const one = next.back();
            next.pop_back();
            if (one == &group)
                return true;
            if (!one->isKindOfClass(CAAnimationGroup::cls()) || !seen.insert(one).second)
                continue;
            for (NSObject* inner : each<NSObject>(static_cast<CAAnimationGroup*>(one)->animations_))
                next.push_back(inner);
        }
        return false;
    }
    static void setAnimations(CAAnimationGroup& self, NSArray* animations)
    {
        if (!animations) {
            self.animations_ = nullptr;
            return;
        }
        std::vector<Ref<NSObject>> kept;
        for (NSObject* one : each<NSObject>(Ref<NSArray>(animations))) {
            if (!holds(one, self))
                kept.emplace_back(one);
        }
        self.animations_ = makeArray(std::move(kept));
    }
    static Ref<NSObject> copyWithZone(CAAnimationGroup& self, void* zone)
    {
        const Ref<NSObject> copy
            = super<CAAnimationGroup, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (!copy || !self.animations_)
            return copy;
        std::vector<Ref<NSObject>> copies;
        for (NSObject* one : each<NSObject>(self.animations_))
            copies.push_back(one->copy());
        static_cast<CAAnimationGroup&>(*copy).animations_ = makeArray(std::move(copies));
        return copy;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "showOnLayer:progress:time:repeats:", imp<show> },
            { "setAnimations:", imp<setAnimations> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({ property<&CAAnimationGroup::animations_>("animations", copied, nonatomic) });
    }
};
BRINDLE_RECORD(CAAnimationGroup, Basics)

}
