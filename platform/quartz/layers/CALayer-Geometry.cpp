// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "CALayerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    CGPoint anchorIn(const LayerValues& values)
    {
        const CGRect& bounds = values.bounds;
        return { bounds.origin.x + values.anchorPoint.x * bounds.size.width,
            bounds.origin.y + values.anchorPoint.y * bounds.size.height };
    }

    /// Answers a transform that is done around a point, which then lies at the target.
    CGAffineTransform around(CGPoint center, const CGAffineTransform& t, CGPoint target)
    {
        const CGAffineTransform centered { t.a, t.b, t.c, t.d, t.tx + target.x, t.ty + target.y };
        return CGAffineTransformConcat({ 1, 0, 0, 1, -center.x, -center.y }, centered);
    }

}

CGAffineTransform LayerAccess::toSuperlayer(const LayerValues& values)
{
    const CGAffineTransform plane = CATransform3DGetAffineTransform(values.transform);
    return CGAffineTransformConcat(
        flipping(values), around(anchorIn(values), plane, values.position));
}

CGAffineTransform LayerAccess::flipping(const LayerValues& values)
{
    if (!values.geometryFlipped)
        return CGAffineTransformIdentity;
    return { 1, 0, 0, -1, 0, values.bounds.origin.y * 2 + values.bounds.size.height };
}

CGAffineTransform LayerAccess::forSublayers(const LayerValues& values)
{
    if (CATransform3DIsIdentity(values.sublayerTransform))
        return CGAffineTransformIdentity;
    const CGPoint center = anchorIn(values);
    return around(center, CATransform3DGetAffineTransform(values.sublayerTransform), center);
}

template <> struct CALayer::Methods<struct Geometry> {

    static LayerState& of(const CALayer& layer) { return LayerAccess::state(layer); }

    // ---- the frame

    static CGRect frame(CALayer& self)
    {
        const LayerValues& v = of(self).values;
        if (CATransform3DIsIdentity(v.transform))
            return { { v.position.x - v.anchorPoint.x * v.bounds.size.width,
                         v.position.y - v.anchorPoint.y * v.bounds.size.height },
                v.bounds.size };
        return CGRectApplyAffineTransform(v.bounds, LayerAccess::toSuperlayer(v));
    }

    /// Answers the size whose transformed box has the wanted size; the wanted one itself where there is none.
    static CGSize sizeBehind(CGSize wanted, const CATransform3D& transform)
    {
        const CGAffineTransform t = CATransform3DGetAffineTransform(transform);
        const CGFloat a = std::abs(t.a), b = std::abs(t.b), c = std::abs(t.c), d = std::abs(t.d);
        const CGFloat determinant = a * d - b * c;
        if (!(std::abs(determinant) > 1e-9))
            return wanted;
        const CGSize size { (wanted.width * d - wanted.height * c) / determinant,
            (wanted.height * a - wanted.width * b) / determinant };
        return size.width >= 0 && size.height >= 0 ? size : wanted;
    }
    static void setFrame(CALayer& self, CGRect frame)
    {
        const Ref<CALayer> alive(&self);
        LayerValues v = of(self).values;
        v.bounds.size = CATransform3DIsIdentity(v.transform) ? frame.size
                                                             : sizeBehind(frame.size, v.transform);
        if (CATransform3DIsIdentity(v.transform))
            v.position = { frame.origin.x + v.anchorPoint.x * frame.size.width,
                frame.origin.y + v.anchorPoint.y * frame.size.height };
        else {
            const CGRect box = CGRectApplyAffineTransform(v.bounds, LayerAccess::toSuperlayer(v));
            v.position.x += frame.origin.x - box.origin.x;
            v.position.y += frame.origin.y - box.origin.y;
        }
        self.setPosition(v.position);
        self.setBounds(v.bounds);
    }

    static bool contentsAreFlipped(CALayer& self)
    {
        const LayerState& state = of(self);
        bool flipped = state.values.geometryFlipped;
        const CALayer* outer = state.model ? of(*state.model).superlayer : state.superlayer;
        for (; outer; outer = of(*outer).superlayer)
            flipped ^= of(*outer).values.geometryFlipped;
        return flipped;
    }

    // ---- conversion

    /// Answers a layer's coordinates in those of the topmost layer's superlayer.
    static CGAffineTransform toTop(const CALayer* layer)
    {
        CGAffineTransform t = CGAffineTransformIdentity;
        while (layer) {
            const LayerState& state = of(*layer);
            const CALayer& model = state.model ? *state.model : *layer;
            t = CGAffineTransformConcat(t, LayerAccess::toSuperlayer(state.values));
            layer = of(model).superlayer;
            if (layer)
                t = CGAffineTransformConcat(t, LayerAccess::forSublayers(of(*layer).values));
        }
        return t;
    }
    static CGAffineTransform between(const CALayer* from, const CALayer* to)
    {
        if (from == to)
            return CGAffineTransformIdentity;
        return CGAffineTransformConcat(toTop(from), CGAffineTransformInvert(toTop(to)));
    }
    static CGPoint pointFrom(CALayer& self, CGPoint point, CALayer* layer)
    {
        return CGPointApplyAffineTransform(point, between(layer, &self));
    }
    static CGPoint pointTo(CALayer& self, CGPoint point, CALayer* layer)
    {
        return CGPointApplyAffineTransform(point, between(&self, layer));
    }
    static CGRect rectFrom(CALayer& self, CGRect rect, CALayer* layer)
    {
        return CGRectApplyAffineTransform(rect, between(layer, &self));
    }
    static CGRect rectTo(CALayer& self, CGRect rect, CALayer* layer)
    {
        return CGRectApplyAffineTransform(rect, between(&self, layer));
    }

    // ---- hitting

    static bool containsPoint(CALayer& self, CGPoint point)
    {
        return CGRectContainsPoint(of(self).values.bounds, point);
    }
    static Ref<CALayer> hitTest(CALayer& self, CGPoint point)
    {
        const LayerState& state = of(self);
        const LayerDepth depth;
        if (state.values.hidden || depth.isTooGreat())
            return nullptr;
        const CGAffineTransform out = LayerAccess::toSuperlayer(state.values);
        if (!(std::abs(out.a * out.d - out.b * out.c) > 0))
            return nullptr; // pressed flat
        const CGPoint inside = CGPointApplyAffineTransform(point, CGAffineTransformInvert(out));
        const bool contained = self.containsPoint(inside);
        if (!contained && state.values.masksToBounds)
            return nullptr;
        const CGPoint forSublayers = CGPointApplyAffineTransform(
            inside, CGAffineTransformInvert(LayerAccess::forSublayers(state.values)));
        const std::vector<Ref<CALayer>> order = LayerAccess::drawingOrder(self);
        for (std::size_t i = order.size(); i-- > 0;) {
            if (Ref<CALayer> found = order[i]->hitTest(forSublayers))
                return found;
        }
        return contained ? Ref<CALayer>(&self) : nullptr;
    }

    // ---- resizing with the superlayer

    static void resizeSublayers(CALayer& self, CGSize oldSize)
    {
        const std::vector<Ref<CALayer>> layers = of(self).sublayers; // an override may change it
        for (const Ref<CALayer>& layer : layers)
            layer->resizeWithOldSuperlayerSize(oldSize);
    }
    static void resizeWithOldSize(CALayer& self, CGSize oldSize)
    {
        LayerState& state = of(self);
        if (!state.superlayer || state.values.autoresizingMask == kCALayerNotSizable)
            return;
        const CGSize size = of(*state.superlayer).values.bounds.size;
        const Ref<CALayer> alive(&self);
        self.setFrame(
            state.resizing.next(self.frame(), oldSize, size, state.values.autoresizingMask));
        state.resizing.settle(self.frame());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "frame", imp<frame> },
            { "setFrame:", imp<setFrame> },
            { "contentsAreFlipped", imp<contentsAreFlipped> },
            { "convertPoint:fromLayer:", imp<pointFrom> },
            { "convertPoint:toLayer:", imp<pointTo> },
            { "convertRect:fromLayer:", imp<rectFrom> },
            { "convertRect:toLayer:", imp<rectTo> },
            { "hitTest:", imp<hitTest> },
            { "containsPoint:", imp<containsPoint> },
            { "resizeSublayersWithOldSize:", imp<resizeSublayers> },
            { "resizeWithOldSuperlayerSize:", imp<resizeWithOldSize> },
        });
        t.properties({ computed<CGRect>("frame", nonatomic) });
    }
};
BRINDLE_RECORD(CALayer, Geometry)

}
