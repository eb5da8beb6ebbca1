// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/CGGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

/// Maps (x, y) to (m11 x + m21 y + tX, m12 x + m22 y + tY).
struct NSAffineTransformStruct {
    CGFloat m11 = 1;
    CGFloat m12 = 0;
    CGFloat m21 = 0;
    CGFloat m22 = 1;
    CGFloat tX = 0;
    CGFloat tY = 0;
    friend bool operator==(const NSAffineTransformStruct&, const NSAffineTransformStruct&)
        = default;
};
template <> struct Structure<NSAffineTransformStruct> {
    static constexpr const char* encoding = "{?=dddddd}";
};

class NSBezierPath;

/// A map of the plane that keeps lines straight: moves, scales, turns, and whatever follows from them.
///
/// Steps that are added work before what is there already: after `translateXBy:yBy:` and `scaleBy:` a point is scaled
/// first, then moved. Numbers are taken as they are, also such as make no sense.
/// Thread: one at a time.
class NSAffineTransform : public NSObject {
    BRINDLE_OBJECT(NSAffineTransform, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers a transform that changes nothing.
        Ref<NSAffineTransform> transform() const
        {
            return send<"transform", Ref<NSAffineTransform>>();
        }
    };

    /// - transform: copied; nil is the one that changes nothing.
    Ref<NSAffineTransform> initWithTransform(NSAffineTransform* transform)
    {
        return send<"initWithTransform:", Ref<NSAffineTransform>>(transform);
    }
    NSAffineTransformStruct transformStruct() const
    {
        return send<"transformStruct", NSAffineTransformStruct>();
    }
    void setTransformStruct(NSAffineTransformStruct numbers)
    {
        send<"setTransformStruct:">(numbers);
    }

    void translateXBy_yBy(CGFloat dx, CGFloat dy) { send<"translateXBy:yBy:">(dx, dy); }
    void scaleBy(CGFloat scale) { send<"scaleBy:">(scale); }
    void scaleXBy_yBy(CGFloat sx, CGFloat sy) { send<"scaleXBy:yBy:">(sx, sy); }
    /// Turns from the x axis towards the y axis. Quarter turns are exact.
    void rotateByDegrees(CGFloat angle) { send<"rotateByDegrees:">(angle); }
    void rotateByRadians(CGFloat angle) { send<"rotateByRadians:">(angle); }
    /// Makes the other one work after the receiver; nil changes nothing.
    void appendTransform(NSAffineTransform* other) { send<"appendTransform:">(other); }
    /// Makes the other one work before the receiver; nil changes nothing.
    void prependTransform(NSAffineTransform* other) { send<"prependTransform:">(other); }
    /// Makes the receiver undo what it did. One that cannot be undone stays as it is.
    void invert() { send<"invert">(); }

    NSPoint transformPoint(NSPoint point) const { return send<"transformPoint:", NSPoint>(point); }
    /// Answers the size without the move.
    NSSize transformSize(NSSize size) const { return send<"transformSize:", NSSize>(size); }
    /// Answers a transformed copy; nil for nil.
    Ref<NSBezierPath> transformBezierPath(NSBezierPath* path) const
    {
        return send<"transformBezierPath:", Ref<NSBezierPath>>(path);
    }

    /// Makes the current context draw through the receiver and no longer through what was set before.
    void set() { send<"set">(); }
    /// Makes the current context draw through the receiver first.
    void concat() { send<"concat">(); }

private:
    CGAffineTransform matrix_ = CGAffineTransformIdentity;
};

}
