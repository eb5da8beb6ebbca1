// SPDX-License-Identifier: Apache-2.0
#include "CAPropertyAnimation.h"

#include "AnimationPrivate.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct CAPropertyAnimation::Methods<struct Basics> {

    static Ref<CAPropertyAnimation> withKeyPath(Class& self, NSString* path)
    {
        const auto fresh = cast<CAPropertyAnimation>(self.send<"animation", Ref<CAAnimation>>());
        fresh->setKeyPath(path);
        return fresh;
    }
    static Ref<NSObject> valueAt(CAPropertyAnimation&, double, NSObject*) { return nullptr; }

    static void show(
        CAPropertyAnimation& self, CALayer* layer, double progress, double, double repeats)
    {
        if (!layer || !self.keyPath_)
            return;
        const Ref<NSObject> base = valueForKeyPath(layer, self.keyPath_.get());
        Ref<NSObject> value = self.valueAtProgress_base(progress, base.get());
        if (!value)
            return;
        if (self.cumulative_ && repeats > 0) {
            if (const Ref<NSObject> end = self.valueAtProgress_base(1, base.get()))
                value = quartz::sum(value.get(), end.get(), repeats);
        }
        if (self.additive_ && base)
            value = quartz::sum(base.get(), value.get(), 1);
        setValue_forKeyPath(layer, value.get(), self.keyPath_.get());
    }
    static Ref<NSObject> copyWithZone(CAPropertyAnimation& self, void* zone)
    {
        const Ref<NSObject> copy
            = super<CAPropertyAnimation, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (copy) {
            auto& to = static_cast<CAPropertyAnimation&>(*copy);
            to.keyPath_ = self.keyPath_;
            to.additive_ = self.additive_;
            to.cumulative_ = self.cumulative_;
        }
        return copy;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "animationWithKeyPath:", imp<withKeyPath> } });
        t.methods({
            { "showOnLayer:progress:time:repeats:", imp<show> },
            { "valueAtProgress:base:", imp<valueAt> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({
            property<&CAPropertyAnimation::keyPath_>("keyPath", copied, nonatomic),
            property<&CAPropertyAnimation::additive_>("additive", nonatomic, getter("isAdditive")),
            property<&CAPropertyAnimation::cumulative_>(
                "cumulative", nonatomic, getter("isCumulative")),
        });
    }
};
BRINDLE_RECORD(CAPropertyAnimation, Basics)

template <> struct CABasicAnimation::Methods<struct Basics> {

    static Ref<NSObject> valueAt(CABasicAnimation& self, double progress, NSObject* base)
    {
        Ref<NSObject> from = self.from_;
        Ref<NSObject> to = self.to_;
        if (!from && to && self.by_)
            from = quartz::sum(to.get(), self.by_.get(), -1);
        if (!from)
            from = base;
        if (!to)
            to = self.by_ && from ? quartz::sum(from.get(), self.by_.get(), 1)
                                  : Ref<NSObject>(base);
        return quartz::mix(from.get(), to.get(), progress);
    }
    static Ref<NSObject> copyWithZone(CABasicAnimation& self, void* zone)
    {
        const Ref<NSObject> copy
            = super<CABasicAnimation, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (copy) {
            auto& other = static_cast<CABasicAnimation&>(*copy);
            other.from_ = self.from_;
            other.to_ = self.to_;
            other.by_ = self.by_;
        }
        return copy;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "valueAtProgress:base:", imp<valueAt> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({
            property<&CABasicAnimation::from_>("fromValue", nonatomic, ivarName("_from")),
            property<&CABasicAnimation::to_>("toValue", nonatomic, ivarName("_to")),
            property<&CABasicAnimation::by_>("byValue", nonatomic, ivarName("_by")),
        });
    }
};
BRINDLE_RECORD(CABasicAnimation, Basics)

}
