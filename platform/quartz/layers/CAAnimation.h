// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CAMediaTimingFunction.h"
#include "MediaTiming.h"

namespace brindle {

class CALayer;
class NSMutableDictionary;

/// A movement of a layer: what it shows as time goes by.
///
/// A layer runs a copy; changes of the original after that have no effect. The delegate, which is kept, is told by
/// `animationDidStart:` and `animationDidStop:finished:` where it answers them. Any other key can be kept with
/// `setValue:forKey:`.
/// Thread: main.
class CAAnimation : public NSObject {
    BRINDLE_OBJECT(CAAnimation, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<CAAnimation> animation() const { return send<"animation", Ref<CAAnimation>>(); }
    };

    /// Seconds of one run. 0 at first: the duration of the transaction in which it is added.
    double duration() const { return send<"duration", double>(); }
    void setDuration(double seconds) { send<"setDuration:">(seconds); }
    /// When it begins, in the layer's time. 0 at first: when it is added; within a group, when the group begins.
    double beginTime() const { return send<"beginTime", double>(); }
    void setBeginTime(double seconds) { send<"setBeginTime:">(seconds); }
    double timeOffset() const { return send<"timeOffset", double>(); }
    void setTimeOffset(double seconds) { send<"setTimeOffset:">(seconds); }
    float speed() const { return send<"speed", float>(); }
    void setSpeed(float speed) { send<"setSpeed:">(speed); }
    /// How often it runs; 0 and 1 mean once, and parts of a run count.
    float repeatCount() const { return send<"repeatCount", float>(); }
    void setRepeatCount(float count) { send<"setRepeatCount:">(count); }
    /// How long it repeats, in place of a count; seconds.
    double repeatDuration() const { return send<"repeatDuration", double>(); }
    void setRepeatDuration(double seconds) { send<"setRepeatDuration:">(seconds); }
    /// Whether each run is followed by one back.
    bool autoreverses() const { return send<"autoreverses", bool>(); }
    void setAutoreverses(bool reverses) { send<"setAutoreverses:">(reverses); }
    /// What it shows before its begin and after its end, a `kCAFillMode` name; "removed" at first: nothing.
    Ref<NSString> fillMode() const { return send<"fillMode", Ref<NSString>>(); }
    void setFillMode(NSString* mode) { send<"setFillMode:">(mode); }
    /// - Nil: nil is linear.
    Ref<CAMediaTimingFunction> timingFunction() const
    {
        return send<"timingFunction", Ref<CAMediaTimingFunction>>();
    }
    void setTimingFunction(CAMediaTimingFunction* function)
    {
        send<"setTimingFunction:">(function);
    }
    /// Whether the layer lets go of it when it is over. YES at first.
    bool isRemovedOnCompletion() const { return send<"isRemovedOnCompletion", bool>(); }
    void setRemovedOnCompletion(bool removed) { send<"setRemovedOnCompletion:">(removed); }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }

    /// Adds it to a layer: what a change does whose action it is.
    void runActionForKey_object_arguments(NSString* key, NSObject* layer, NSDictionary* arguments)
    {
        send<"runActionForKey:object:arguments:">(key, layer, arguments);
    }
    /// Sets on a presentation layer what is seen at a moment. Empty here; override it for a movement of your own.
    /// - progress: 0 to 1 by the timing function. - time: seconds since the run began. - repeats: whole runs before it.
    void showOnLayer_progress_time_repeats(
        CALayer* layer, double progress, double time, double repeats)
    {
        send<"showOnLayer:progress:time:repeats:">(layer, progress, time, repeats);
    }

private:
    friend struct AnimationAccess;
    quartz::MediaTiming timing_;
    Ref<CAMediaTimingFunction> timingFunction_;
    Ref<NSObject> delegate_;
    Ref<NSMutableDictionary> others_;
    bool removedOnCompletion_ = true;
};

}
