// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

#include "AllServedPrivate.h"
#include "AnimationPrivate.h"
#include "FrameClock.h"
#include "Transactions.h"
#include "foundation/NSNull.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSThread.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kNever = std::numeric_limits<double>::infinity();

    LayerState& of(const CALayer& layer) { return LayerAccess::state(layer); }

    /// Answers a movement's own time. It begins with the layer's time of `begin`.
    double ownTime(const LayerMovement& movement, double layerTime)
    {
        const quartz::MediaTiming& timing = AnimationAccess::timing(*movement.animation);
        return (layerTime - movement.begin) * static_cast<double>(timing.speed) + timing.timeOffset;
    }

    /// Tells everybody that a movement has ended.
    void tellEnd(LayerMovement movement, bool finished)
    {
        AllServed all;
        const Ref<NSObject> delegate = AnimationAccess::delegate(*movement.animation);
        all.serve([&] {
            if (!movement.ended && delegate
                && delegate->respondsToSelector(selector<"animationDidStop:finished:">))
                delegate->send<"animationDidStop:finished:">(movement.animation.get(), finished);
        });
        all.serve([&] { Transactions::leave(movement.groups); });
        all.end();
    }

    void end(CALayer& layer, std::size_t place, bool finished)
    {
        std::vector<LayerMovement>& movements = of(layer).movements;
        LayerMovement movement = std::move(movements[place]);
        movements.erase(movements.begin() + static_cast<std::ptrdiff_t>(place));
        tellEnd(std::move(movement), finished);
    }

    /// How many of the layer's seconds pass in one of the clock.
    double paceOf(const CALayer& layer)
    {
        double pace = 1;
        for (const CALayer* one = &layer; one; one = of(*one).superlayer)
            pace *= static_cast<double>(of(*one).timing.speed);
        return pace;
    }

    /// All layers with movements.
    class MovingLayers : public quartz::FrameClient {
    public:
        static std::shared_ptr<MovingLayers>& shared()
        {
            static auto* const layers
                = new std::shared_ptr<MovingLayers>(std::make_shared<MovingLayers>());
            return *layers;
        }
        void add(CALayer& layer)
        {
            if (!std::exchange(of(layer).steps, true))
                layers_.emplace_back(&layer);
        }
        // Those whose delegates raise go on in the next frame, and so do all others.
        double frame(double now) override
        {
            double next = kNever;
            AllServed all;
            std::vector<WeakRef<CALayer>> left;
            for (const WeakRef<CALayer>& weak : std::exchange(layers_, {})) {
                const Ref<CALayer> layer = weak.get();
                if (!layer)
                    continue;
                if (!all.serve([&] { next = std::min(next, LayerAccess::step(*layer, now)); }))
                    LayerAccess::invalidate(*layer);
                of(*layer).steps = !of(*layer).movements.empty();
                if (of(*layer).steps)
                    left.push_back(weak);
            }
            layers_.insert(layers_.begin(), std::make_move_iterator(left.begin()),
                std::make_move_iterator(left.end()));
            all.end();
            return layers_.size() > left.size() ? now : next;
        }

    private:
        std::vector<WeakRef<CALayer>> layers_;
    };

}

double LayerAccess::timeAt(const CALayer& layer, double now)
{
    std::vector<const CALayer*> chain;
    for (const CALayer* one = &layer; one; one = of(*one).superlayer)
        chain.push_back(one);
    for (std::size_t i = chain.size(); i-- > 0;)
        now = of(*chain[i]).timing.local(now);
    return now;
}

double LayerAccess::step(CALayer& layer, double now)
{
    const double time = timeAt(layer, now);
    const double pace = paceOf(layer);
    const bool seen = hostOf(layer) != nullptr;
    double next = kNever;
    bool moved = false;
    for (std::size_t i = 0; i < state(layer).movements.size();) {
        LayerMovement& movement = state(layer).movements[i];
        const Ref<CAAnimation> animation = movement.animation;
        const quartz::MediaTiming& timing = AnimationAccess::timing(*animation);
        const double own = ownTime(movement, time);
        const double rate = pace * static_cast<double>(timing.speed);
        const double active = timing.activeDuration();
        const double left = own < 0 ? -own : active - own;
        moved = moved || !movement.ended;
        if (own >= -quartz::kTimeTolerance && !movement.started) {
            movement.started = true;
            const Ref<NSObject> delegate = AnimationAccess::delegate(*animation);
            if (delegate && delegate->respondsToSelector(selector<"animationDidStart:">))
                delegate->send<"animationDidStart:">(animation.get());
            continue; // the delegate may have changed the list
        }
        if (own >= 0 && left <= quartz::kTimeTolerance) {
            if (AnimationAccess::removedOnCompletion(*animation))
                end(layer, i, true);
            else {
                LayerMovement told = movement;
                movement.ended = true;
                movement.groups.clear();
                ++i;
                if (!told.ended)
                    tellEnd(std::move(told), true);
            }
            continue;
        }
        if (rate > 0) {
            const double due = now + std::max(left / rate, 0.0);
            next = std::min(next, seen ? quartz::nextFrame(now, due) : due);
        }
        ++i;
    }
    if (moved)
        invalidate(layer);
    return next;
}

void LayerAccess::endMovements(CALayer& layer, bool finished)
{
    AllServed all;
    while (!state(layer).movements.empty())
        all.serve([&] { end(layer, 0, finished); });
    all.end();
}

// Only what the layer itself set in motion is dropped; what the host added goes on.
void LayerAccess::dropUnseenMovements(CALayer& layer)
{
    std::vector<LayerMovement>& movements = state(layer).movements;
    for (std::size_t i = movements.size(); i-- > 0;) {
        if (i < movements.size() && movements[i].implicit && !movements[i].started)
            end(layer, i, false);
    }
}

Ref<CALayer> LayerAccess::shown(CALayer& layer)
{
    const LayerState& s = state(layer);
    return s.movements.empty() || s.model ? Ref<CALayer>(&layer) : layer.presentationLayer();
}

Ref<NSObject> LayerAccess::actionFor(CALayer& layer, NSString* key)
{
    const LayerState& s = state(layer);
    if (s.model || !NSThread::cls().isMainThread() || Transactions::current().disablesActions)
        return nullptr;
    if (!s.wasShown && !s.host && hostOf(layer))
        return nullptr; // nobody has seen yet where it would start
    const Ref<NSObject> action = layer.actionForKey(key);
    if (!action || action->isKindOfClass(NSNull::cls()))
        return nullptr;
    if (action->isKindOfClass(CABasicAnimation::cls())) {
        auto& basic = static_cast<CABasicAnimation&>(*action);
        if (!AnimationAccess::from(basic) && !AnimationAccess::to(basic)
            && !AnimationAccess::by(basic)) {
            const Ref<CABasicAnimation> copy = cast<CABasicAnimation>(basic.copy());
            copy->setFromValue(brindle::valueForKey(shown(layer), key).get());
            return copy;
        }
    }
    return action;
}

void LayerAccess::changed(CALayer& layer, NSString* key, NSObject* action)
{
    if (action && action->respondsToSelector(selector<"runActionForKey:object:arguments:">)) {
        const std::size_t before = state(layer).movements.size();
        action->send<"runActionForKey:object:arguments:">(
            key, static_cast<NSObject*>(&layer), static_cast<NSDictionary*>(nullptr));
        std::vector<LayerMovement>& movements = state(layer).movements;
        if (!movements.empty() && movements.size() >= before && movements.back().key
            && movements.back().key->isEqual(key))
            movements.back().implicit = true;
    }
    if (state(layer).model)
        return;
    if (layer.isa_->send<"needsDisplayForKey:", bool>(key))
        layer.setNeedsDisplay();
    else
        invalidate(layer);
}

template <> struct CALayer::Methods<struct Movement> {

    static Ref<CALayer> presentationLayer(CALayer& self)
    {
        LayerState& state = of(self);
        if (state.model)
            return &self;
        const Ref<CALayer> copy
            = cast<CALayer>(self.isa_->send<"alloc", Ref<NSObject>>())->initWithLayer(&self);
        if (!copy)
            return nullptr;
        of(*copy).model = &self;
        const double time = LayerAccess::timeAt(self, CACurrentMediaTime());
        const std::vector<LayerMovement> movements = state.movements;
        for (const LayerMovement& movement : movements)
            AnimationAccess::show(*movement.animation, *copy, ownTime(movement, time));
        return copy;
    }
    static Ref<CALayer> modelLayer(CALayer& self)
    {
        const LayerState& state = of(self);
        return state.model ? state.model : Ref<CALayer>(&self);
    }

    // ---- actions

    static bool needsDisplayForKey(Class&, NSString*) { return false; }
    static Ref<NSObject> defaultActionForKey(Class&, NSString* key)
    {
        static constexpr std::string_view moving[] { "bounds", "position", "anchorPoint",
            "zPosition", "transform", "sublayerTransform", "opacity", "backgroundColor",
            "cornerRadius", "borderWidth", "borderColor", "shadowColor", "shadowOpacity",
            "shadowOffset", "shadowRadius", "contentsRect", "colors", "locations", "startPoint",
            "endPoint", "fontSize", "foregroundColor" };
        const std::string name = key ? utf8Of(key) : std::string();
        if (std::find(std::begin(moving), std::end(moving), name) == std::end(moving))
            return nullptr;
        const Ref<CABasicAnimation> action = CABasicAnimation::cls().animationWithKeyPath(key);
        const Ref<CAMediaTimingFunction> wished = Transactions::current().function;
        action->setTimingFunction(wished ? wished.get()
                                         : CAMediaTimingFunction::cls()
                                               .functionWithName(kCAMediaTimingFunctionDefault)
                                               .get());
        return action;
    }
    static Ref<NSObject> actionForKey(CALayer& self, NSString* key)
    {
        const LayerState& state = of(self);
        Ref<NSObject> found;
        const Ref<NSObject> delegate = state.delegate.get();
        if (delegate && delegate->respondsToSelector(selector<"actionForLayer:forKey:">))
            found = delegate->send<"actionForLayer:forKey:", Ref<NSObject>>(&self, key);
        if (!found && key)
            found = maybe(state.actions)->objectForKey(key);
        if (!found)
            found = self.isa_->send<"defaultActionForKey:", Ref<NSObject>>(key);
        return found && found->isKindOfClass(NSNull::cls()) ? Ref<NSObject>() : found;
    }

    // ---- movements

    static std::size_t placeOf(const CALayer& self, NSString* key)
    {
        const std::vector<LayerMovement>& movements = of(self).movements;
        for (std::size_t i = 0; key && i < movements.size(); ++i) {
            if (movements[i].key && movements[i].key->isEqual(key))
                return i;
        }
        return movements.size();
    }
    static void addAnimation(CALayer& self, CAAnimation* animation, NSString* key)
    {
        if (!animation || !animation->isKindOfClass(CAAnimation::cls()) || of(self).model)
            return;
        const Ref<CALayer> alive(&self);
        const Ref<NSObject> lent(animation);
        LayerMovement movement;
        movement.animation = cast<CAAnimation>(animation->copy());
        movement.key = key ? cast<NSString>(key->copy()) : Ref<NSString>();
        quartz::MediaTiming& timing = AnimationAccess::timing(*movement.animation);
        if (!(timing.duration > 0))
            timing.duration = Transactions::current().duration;
        const double now = LayerAccess::timeAt(self, CACurrentMediaTime());
        movement.begin = timing.beginTime != 0 ? timing.beginTime : now;
        self.removeAnimationForKey(key);
        movement.groups = Transactions::enter();
        of(self).movements.push_back(std::move(movement));
        MovingLayers::shared()->add(self);
        quartz::runFrames(MovingLayers::shared());
        LayerAccess::invalidate(self);
    }
    static void removeAnimation(CALayer& self, NSString* key)
    {
        const std::size_t place = placeOf(self, key);
        if (place == of(self).movements.size())
            return;
        const Ref<CALayer> alive(&self);
        LayerAccess::invalidate(self);
        end(self, place, false);
    }
    static void removeAll(CALayer& self)
    {
        const Ref<CALayer> alive(&self);
        std::vector<LayerMovement> all = std::exchange(of(self).movements, {});
        LayerAccess::invalidate(self);
        AllServed told;
        for (LayerMovement& movement : all)
            told.serve([&] { tellEnd(std::move(movement), false); });
        told.end();
    }
    static Ref<CAAnimation> animationForKey(CALayer& self, NSString* key)
    {
        const std::size_t place = placeOf(self, key);
        return place < of(self).movements.size() ? of(self).movements[place].animation
                                                 : Ref<CAAnimation>();
    }
    static Ref<NSArray> animationKeys(CALayer& self)
    {
        std::vector<Ref<NSObject>> keys;
        for (const LayerMovement& movement : of(self).movements) {
            if (movement.key)
                keys.emplace_back(movement.key);
        }
        return keys.empty() ? Ref<NSArray>() : makeArray(std::move(keys));
    }

    // ---- the layer's time

    static double beginTime(CALayer& self) { return of(self).timing.beginTime; }
    static double timeOffset(CALayer& self) { return of(self).timing.timeOffset; }
    static float speed(CALayer& self) { return of(self).timing.speed; }
    static void wake(CALayer& self)
    {
        LayerAccess::invalidate(self);
        quartz::runFrames(MovingLayers::shared()); // ends may come at other times now
    }
    static void setBeginTime(CALayer& self, double seconds)
    {
        of(self).timing.beginTime = seconds;
        wake(self);
    }
    static void setTimeOffset(CALayer& self, double seconds)
    {
        of(self).timing.timeOffset = seconds;
        wake(self);
    }
    static void setSpeed(CALayer& self, float speed)
    {
        of(self).timing.speed = speed;
        wake(self);
    }
    /// Answers the clock's time for a layer's time; the time itself where the layer stands still.
    static double clockTime(const CALayer* layer, double time)
    {
        for (; layer; layer = of(*layer).superlayer) {
            const quartz::MediaTiming& timing = of(*layer).timing;
            if (timing.speed != 0)
                time = (time - timing.timeOffset) / static_cast<double>(timing.speed)
                    + timing.beginTime;
        }
        return time;
    }
    static double timeFrom(CALayer& self, double time, CALayer* layer)
    {
        return LayerAccess::timeAt(self, clockTime(layer, time));
    }
    static double timeTo(CALayer& self, double time, CALayer* layer)
    {
        const double clock = clockTime(&self, time);
        return layer ? LayerAccess::timeAt(*layer, clock) : clock;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "needsDisplayForKey:", imp<needsDisplayForKey> },
            { "defaultActionForKey:", imp<defaultActionForKey> },
        });
        t.methods({
            { "presentationLayer", imp<presentationLayer> },
            { "modelLayer", imp<modelLayer> },
            { "actionForKey:", imp<actionForKey> },
            { "addAnimation:forKey:", imp<addAnimation> },
            { "removeAnimationForKey:", imp<removeAnimation> },
            { "removeAllAnimations", imp<removeAll> },
            { "animationForKey:", imp<animationForKey> },
            { "animationKeys", imp<animationKeys> },
            { "beginTime", imp<beginTime> },
            { "setBeginTime:", imp<setBeginTime> },
            { "timeOffset", imp<timeOffset> },
            { "setTimeOffset:", imp<setTimeOffset> },
            { "speed", imp<speed> },
            { "setSpeed:", imp<setSpeed> },
            { "convertTime:fromLayer:", imp<timeFrom> },
            { "convertTime:toLayer:", imp<timeTo> },
        });
    }
};
BRINDLE_RECORD(CALayer, Movement)

}
