// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "../CGContext.h"
#include "CATransform3D.h"
#include "foundation/StringConstant.h"

namespace brindle {

class CAAnimation;
class NSArray;
struct LayerState;

/// Which parts of a layer's frame follow the size of its superlayer; bits that are added together.
using CAAutoresizingMask = NSUInteger;
enum : NSUInteger {
    kCALayerNotSizable = 0,
    kCALayerMinXMargin = 1,
    kCALayerWidthSizable = 2,
    kCALayerMaxXMargin = 4,
    kCALayerMinYMargin = 8,
    kCALayerHeightSizable = 16,
    kCALayerMaxYMargin = 32,
};

// Where contents of another size lie in a layer.
inline constexpr StringConstant<"center"> kCAGravityCenter;
inline constexpr StringConstant<"top"> kCAGravityTop;
inline constexpr StringConstant<"bottom"> kCAGravityBottom;
inline constexpr StringConstant<"left"> kCAGravityLeft;
inline constexpr StringConstant<"right"> kCAGravityRight;
inline constexpr StringConstant<"topLeft"> kCAGravityTopLeft;
inline constexpr StringConstant<"topRight"> kCAGravityTopRight;
inline constexpr StringConstant<"bottomLeft"> kCAGravityBottomLeft;
inline constexpr StringConstant<"bottomRight"> kCAGravityBottomRight;
inline constexpr StringConstant<"resize"> kCAGravityResize;
inline constexpr StringConstant<"resizeAspect"> kCAGravityResizeAspect;
inline constexpr StringConstant<"resizeAspectFill"> kCAGravityResizeAspectFill;

/// A rectangle in a tree of rectangles, with a look of its own: a ground, a picture, a border, a shadow.
///
/// `bounds` are the layer's own coordinates, `position` is where the anchor point lies in the superlayer's; y goes up
/// unless `geometryFlipped`. `frame` follows from these and the transform.
///
/// A change of a property that can move by degrees moves so, for a quarter of a second, except in the layer of a
/// view, where `actionForKey:` answers otherwise, and while `CATransaction` disables it. The property reads the new
/// value at once; `presentationLayer` tells what is seen meanwhile. Setting an unchanged value does nothing.
///
/// Any other key can be kept with `setValue:forKey:`. Key paths reach into values: "position.x", "bounds.size.width",
/// "transform.scale", "transform.rotation.z", "transform.translation.x".
/// Layers more than 1,000 deep in others are neither drawn nor hit.
/// - Nil: nil colours, pictures and masks draw nothing.
/// Thread: main.
class CALayer : public NSObject {
    BRINDLE_OBJECT(CALayer, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers a new layer made by `init`.
        Ref<CALayer> layer() const { return send<"layer", Ref<CALayer>>(); }
        /// Answers the movement for a change of this key, or nil.
        Ref<NSObject> defaultActionForKey(NSString* key) const
        {
            return send<"defaultActionForKey:", Ref<NSObject>>(key);
        }
        /// Answers whether a change of this key asks for new drawing. NO unless overridden.
        bool needsDisplayForKey(NSString* key) const
        {
            return send<"needsDisplayForKey:", bool>(key);
        }
    };

    /// Makes the copy that shows the values of a moment. Override it to copy fields of your own, after super.
    Ref<CALayer> initWithLayer(CALayer* layer)
    {
        return send<"initWithLayer:", Ref<CALayer>>(layer);
    }

    // The tree.

    /// Answers the sublayers, back to front; nil for none.
    Ref<NSArray> sublayers() const { return send<"sublayers", Ref<NSArray>>(); }
    void setSublayers(NSArray* layers) { send<"setSublayers:">(layers); }
    Ref<CALayer> superlayer() const { return send<"superlayer", Ref<CALayer>>(); }
    /// Puts the layer in front of all others, out of where it was before.
    /// - Nil: ignored.
    /// - Raises: `NSInvalidArgumentException` when the layer is the receiver or contains it, or is no layer.
    void addSublayer(CALayer* layer) { send<"addSublayer:">(layer); }
    /// - index: 0 is the lowest place; past the end is the highest.
    void insertSublayer_atIndex(CALayer* layer, std::uint32_t index)
    {
        send<"insertSublayer:atIndex:">(layer, index);
    }
    /// - sibling: where it is no sublayer, the layer goes to the bottom (below) or the top (above).
    void insertSublayer_below(CALayer* layer, CALayer* sibling)
    {
        send<"insertSublayer:below:">(layer, sibling);
    }
    void insertSublayer_above(CALayer* layer, CALayer* sibling)
    {
        send<"insertSublayer:above:">(layer, sibling);
    }
    /// Does nothing unless the old one is a sublayer.
    void replaceSublayer_with(CALayer* old, CALayer* fresh)
    {
        send<"replaceSublayer:with:">(old, fresh);
    }
    void removeFromSuperlayer() { send<"removeFromSuperlayer">(); }
    /// Only where the mask paints is the layer seen. The mask belongs to no other layer.
    Ref<CALayer> mask() const { return send<"mask", Ref<CALayer>>(); }
    void setMask(CALayer* mask) { send<"setMask:">(mask); }
    /// Not kept. For a view's layer it is the view.
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    void setName(NSString* name) { send<"setName:">(name); }

    // Geometry, points.

    CGRect frame() const { return send<"frame", CGRect>(); }
    /// Sets position and the size of the bounds; the origin of the bounds stays.
    void setFrame(CGRect frame) { send<"setFrame:">(frame); }
    CGRect bounds() const { return send<"bounds", CGRect>(); }
    /// A change of size resizes the sublayers by their masks.
    void setBounds(CGRect bounds) { send<"setBounds:">(bounds); }
    CGPoint position() const { return send<"position", CGPoint>(); }
    void setPosition(CGPoint position) { send<"setPosition:">(position); }
    /// Higher ones are drawn over lower ones; among equals the order of the sublayers holds.
    CGFloat zPosition() const { return send<"zPosition", CGFloat>(); }
    void setZPosition(CGFloat z) { send<"setZPosition:">(z); }
    /// The part of the bounds that lies at the position, and that transforms leave in place; (0.5, 0.5) at first.
    CGPoint anchorPoint() const { return send<"anchorPoint", CGPoint>(); }
    void setAnchorPoint(CGPoint point) { send<"setAnchorPoint:">(point); }
    CATransform3D transform() const { return send<"transform", CATransform3D>(); }
    /// Only what it does within the plane is drawn.
    void setTransform(CATransform3D transform) { send<"setTransform:">(transform); }
    CGAffineTransform affineTransform() const
    {
        return send<"affineTransform", CGAffineTransform>();
    }
    void setAffineTransform(CGAffineTransform transform) { send<"setAffineTransform:">(transform); }
    CATransform3D sublayerTransform() const { return send<"sublayerTransform", CATransform3D>(); }
    void setSublayerTransform(CATransform3D transform) { send<"setSublayerTransform:">(transform); }
    /// Whether y goes down in the layer and what is in it.
    bool isGeometryFlipped() const { return send<"isGeometryFlipped", bool>(); }
    void setGeometryFlipped(bool flipped) { send<"setGeometryFlipped:">(flipped); }
    /// Answers whether y goes down, by this layer's flipping and that of those around it.
    bool contentsAreFlipped() const { return send<"contentsAreFlipped", bool>(); }
    CAAutoresizingMask autoresizingMask() const
    {
        return send<"autoresizingMask", CAAutoresizingMask>();
    }
    void setAutoresizingMask(CAAutoresizingMask mask) { send<"setAutoresizingMask:">(mask); }
    void resizeSublayersWithOldSize(CGSize size) { send<"resizeSublayersWithOldSize:">(size); }
    void resizeWithOldSuperlayerSize(CGSize size) { send<"resizeWithOldSuperlayerSize:">(size); }

    // Conversion; a nil layer stands for the topmost one's superlayer. Layers of two trees meet there.

    CGPoint convertPoint_fromLayer(CGPoint point, CALayer* layer) const
    {
        return send<"convertPoint:fromLayer:", CGPoint>(point, layer);
    }
    CGPoint convertPoint_toLayer(CGPoint point, CALayer* layer) const
    {
        return send<"convertPoint:toLayer:", CGPoint>(point, layer);
    }
    CGRect convertRect_fromLayer(CGRect rect, CALayer* layer) const
    {
        return send<"convertRect:fromLayer:", CGRect>(rect, layer);
    }
    CGRect convertRect_toLayer(CGRect rect, CALayer* layer) const
    {
        return send<"convertRect:toLayer:", CGRect>(rect, layer);
    }
    double convertTime_fromLayer(double time, CALayer* layer) const
    {
        return send<"convertTime:fromLayer:", double>(time, layer);
    }
    double convertTime_toLayer(double time, CALayer* layer) const
    {
        return send<"convertTime:toLayer:", double>(time, layer);
    }
    /// Answers the front-most layer at a point of the superlayer's coordinates, or nil. Hidden layers are not there.
    Ref<CALayer> hitTest(CGPoint point) const { return send<"hitTest:", Ref<CALayer>>(point); }
    /// Answers whether a point of the layer's own coordinates lies in its bounds.
    bool containsPoint(CGPoint point) const { return send<"containsPoint:", bool>(point); }

    // Looks.

    /// 0 to 1; fades the layer and what is in it as one picture.
    float opacity() const { return send<"opacity", float>(); }
    void setOpacity(float opacity) { send<"setOpacity:">(opacity); }
    bool isHidden() const { return send<"isHidden", bool>(); }
    void setHidden(bool hidden) { send<"setHidden:">(hidden); }
    /// Whether sublayers and contents end at the bounds, round corners included.
    bool masksToBounds() const { return send<"masksToBounds", bool>(); }
    void setMasksToBounds(bool masks) { send<"setMasksToBounds:">(masks); }
    bool isOpaque() const { return send<"isOpaque", bool>(); }
    void setOpaque(bool opaque) { send<"setOpaque:">(opaque); }
    Ref<CGColor> backgroundColor() const { return send<"backgroundColor", Ref<CGColor>>(); }
    void setBackgroundColor(CGColorRef color) { send<"setBackgroundColor:">(color); }
    CGFloat cornerRadius() const { return send<"cornerRadius", CGFloat>(); }
    void setCornerRadius(CGFloat radius) { send<"setCornerRadius:">(radius); }
    /// The border lies within the bounds, above the sublayers. 0 at first.
    CGFloat borderWidth() const { return send<"borderWidth", CGFloat>(); }
    void setBorderWidth(CGFloat width) { send<"setBorderWidth:">(width); }
    /// Black at first; so is the shadow's.
    Ref<CGColor> borderColor() const { return send<"borderColor", Ref<CGColor>>(); }
    void setBorderColor(CGColorRef color) { send<"setBorderColor:">(color); }
    Ref<CGColor> shadowColor() const { return send<"shadowColor", Ref<CGColor>>(); }
    void setShadowColor(CGColorRef color) { send<"setShadowColor:">(color); }
    /// 0 at first: no shadow. A layer that masks to its bounds casts none.
    float shadowOpacity() const { return send<"shadowOpacity", float>(); }
    void setShadowOpacity(float opacity) { send<"setShadowOpacity:">(opacity); }
    /// (0, -3) at first, in the layer's coordinates.
    CGSize shadowOffset() const { return send<"shadowOffset", CGSize>(); }
    void setShadowOffset(CGSize offset) { send<"setShadowOffset:">(offset); }
    /// 3 at first: how soft the shadow is, as the deviation of its blur.
    CGFloat shadowRadius() const { return send<"shadowRadius", CGFloat>(); }
    void setShadowRadius(CGFloat radius) { send<"setShadowRadius:">(radius); }

    // Contents.

    /// The picture: a `CGImage`, or an object that answers one to `CGImageForProposedRect:context:hints:`.
    Ref<NSObject> contents() const { return send<"contents", Ref<NSObject>>(); }
    void setContents(NSObject* contents) { send<"setContents:">(contents); }
    /// The part of the picture that is shown, 0 to 1, y down from its top.
    CGRect contentsRect() const { return send<"contentsRect", CGRect>(); }
    void setContentsRect(CGRect rect) { send<"setContentsRect:">(rect); }
    Ref<NSString> contentsGravity() const { return send<"contentsGravity", Ref<NSString>>(); }
    void setContentsGravity(NSString* gravity) { send<"setContentsGravity:">(gravity); }
    /// Pixels of the picture to a point. 1 at first.
    CGFloat contentsScale() const { return send<"contentsScale", CGFloat>(); }
    void setContentsScale(CGFloat scale) { send<"setContentsScale:">(scale); }
    bool needsDisplayOnBoundsChange() const { return send<"needsDisplayOnBoundsChange", bool>(); }
    void setNeedsDisplayOnBoundsChange(bool needs)
    {
        send<"setNeedsDisplayOnBoundsChange:">(needs);
    }

    // Drawing.

    /// Marks the contents as out of date.
    void setNeedsDisplay() { send<"setNeedsDisplay">(); }
    void setNeedsDisplayInRect(CGRect rect) { send<"setNeedsDisplayInRect:">(rect); }
    bool needsDisplay() const { return send<"needsDisplay", bool>(); }
    void displayIfNeeded() { send<"displayIfNeeded">(); }
    /// Brings the contents up to date: the delegate's `displayLayer:`, or else a picture of what `drawInContext:` draws.
    void display() { send<"display">(); }
    /// Draws the contents, in the layer's coordinates. Empty but for the delegate's `drawLayer:inContext:`.
    void drawInContext(CGContextRef context) { send<"drawInContext:">(context); }
    /// Draws the layer and all in it as it is set, without movements, in the layer's coordinates. The layer of a view
    /// draws the view and its subviews as they are now.
    void renderInContext(CGContextRef context) { send<"renderInContext:">(context); }
    void setNeedsLayout() { send<"setNeedsLayout">(); }
    bool needsLayout() const { return send<"needsLayout", bool>(); }
    void layoutIfNeeded() { send<"layoutIfNeeded">(); }
    /// Sends the delegate `layoutSublayersOfLayer:`.
    void layoutSublayers() { send<"layoutSublayers">(); }

    // Movement.

    /// Answers a copy with the values that are seen now. Its super- and sublayers are such copies too.
    Ref<CALayer> presentationLayer() const { return send<"presentationLayer", Ref<CALayer>>(); }
    /// Answers the layer a presentation layer is a copy of; any other layer answers itself.
    Ref<CALayer> modelLayer() const { return send<"modelLayer", Ref<CALayer>>(); }
    /// Starts a copy of the movement, in place of one with the same key. It shows from now, or from its `beginTime`.
    void addAnimation_forKey(CAAnimation* animation, NSString* key)
    {
        send<"addAnimation:forKey:">(animation, key);
    }
    void removeAnimationForKey(NSString* key) { send<"removeAnimationForKey:">(key); }
    void removeAllAnimations() { send<"removeAllAnimations">(); }
    Ref<CAAnimation> animationForKey(NSString* key) const
    {
        return send<"animationForKey:", Ref<CAAnimation>>(key);
    }
    /// Answers the keys of the movements that run; nil for none.
    Ref<NSArray> animationKeys() const { return send<"animationKeys", Ref<NSArray>>(); }
    /// Answers what a change of this key does: the delegate's `actionForLayer:forKey:`, the `actions`, the class's
    /// default. `NSNull` in the first two ends the search.
    Ref<NSObject> actionForKey(NSString* key) const
    {
        return send<"actionForKey:", Ref<NSObject>>(key);
    }
    Ref<NSDictionary> actions() const { return send<"actions", Ref<NSDictionary>>(); }
    void setActions(NSDictionary* actions) { send<"setActions:">(actions); }

    // The layer's time beside that of its superlayer: (time - beginTime) x speed + timeOffset.

    double beginTime() const { return send<"beginTime", double>(); }
    void setBeginTime(double seconds) { send<"setBeginTime:">(seconds); }
    double timeOffset() const { return send<"timeOffset", double>(); }
    void setTimeOffset(double seconds) { send<"setTimeOffset:">(seconds); }
    /// 1 at first; 0 holds all movements.
    float speed() const { return send<"speed", float>(); }
    void setSpeed(float speed) { send<"setSpeed:">(speed); }

protected:
    /// Layers that live on forget their superlayer.
    BRINDLE_EXPORT ~CALayer();

private:
    friend struct LayerAccess;
    std::shared_ptr<LayerState> state_; // made when it is first asked for
};

}
