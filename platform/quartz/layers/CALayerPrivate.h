// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Autoresizing.h"
#include "CALayer.h"
#include "LayerHost.h"
#include "MediaTiming.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableDictionary.h"

namespace brindle {

class CAAnimation;

/// What a layer shows; copied as a whole for presentation.
struct LayerValues {
    CGRect bounds;
    CGPoint position;
    CGPoint anchorPoint { 0.5, 0.5 };
    CGFloat zPosition = 0;
    CATransform3D transform = CATransform3DIdentity;
    CATransform3D sublayerTransform = CATransform3DIdentity;
    float opacity = 1;
    float shadowOpacity = 0;
    bool hidden = false;
    bool masksToBounds = false;
    bool opaque = false;
    bool geometryFlipped = false;
    bool needsDisplayOnBoundsChange = false;
    Ref<CGColor> backgroundColor;
    Ref<CGColor> borderColor;
    Ref<CGColor> shadowColor;
    CGFloat cornerRadius = 0;
    CGFloat borderWidth = 0;
    CGFloat shadowRadius = 3;
    CGSize shadowOffset { 0, -3 };
    Ref<NSObject> contents;
    CGRect contentsRect { { 0, 0 }, { 1, 1 } };
    CGFloat contentsScale = 1;
    Ref<NSString> contentsGravity = kCAGravityResize.get();
    Ref<NSString> name;
    CAAutoresizingMask autoresizingMask = 0;
};

/// A movement that was added to a layer.
struct LayerMovement {
    Ref<NSString> key;
    Ref<CAAnimation> animation;
    double begin = 0; // the layer's time
    bool started = false;
    bool ended = false; // told, but kept
    bool implicit = false; // a change began it
    std::vector<std::shared_ptr<struct TransactionGroup>> groups; // told when it ends
};

/// Everything a layer is and has.
struct LayerState {
    LayerValues values;
    std::vector<Ref<CALayer>> sublayers; // back to front
    CALayer* superlayer = nullptr; // bare: it owns this layer
    Ref<CALayer> mask;
    WeakRef<NSObject> delegate;
    Ref<NSDictionary> actions;
    Ref<NSMutableDictionary> others; // values of keys that are no properties
    std::vector<LayerMovement> movements;
    quartz::ResizeSeries resizing;
    quartz::MediaTiming timing;
    quartz::LayerHost* host = nullptr;
    Ref<CALayer> model; // of a presentation layer
    bool isMask = false; // its superlayer is what it masks
    bool ownContents = false; // the contents are a picture of its own drawing
    bool needsDisplay = false;
    bool needsLayout = false;
    bool steps = false; // is in the list of those that have movements
    bool wasShown = false; // on a screen, as part of what a host shows
};

/// Counts how deep layers are nested on the way down a tree: deeper ones are neither drawn nor hit.
class LayerDepth {
public:
    LayerDepth() { ++now_; }
    ~LayerDepth() { --now_; }
    LayerDepth(const LayerDepth&) = delete;
    LayerDepth& operator=(const LayerDepth&) = delete;
    bool isTooGreat() const { return now_ > kDeepest; }

private:
    static constexpr int kDeepest = 1000;
    static thread_local inline int now_ = 0;
};

/// What the files of this folder do with layers beside sending messages.
struct LayerAccess {
    static LayerState& state(const CALayer& layer)
    {
        if (!layer.state_)
            const_cast<CALayer&>(layer).state_ = makeState();
        return *layer.state_;
    }
    static LayerValues& values(const CALayer& layer) { return state(layer).values; }

    /// Changes a value: `body` sets it; the movement for the key starts from what is seen before.
    template <class Body> static void change(CALayer& layer, NSString* key, Body body)
    {
        const Ref<CALayer> alive(&layer);
        const Ref<NSObject> action = actionFor(layer, key);
        body();
        changed(layer, key, action.get());
    }
    /// Changes a field that a setter stands for.
    template <class T> static void set(CALayer& layer, T& field, const T& value, NSString* key)
    {
        if (isSame(field, value))
            field = value; // the object that was given, though it shows nothing new
        else
            change(layer, key, [&] { field = value; });
    }
    template <class T> static bool isSame(const T& a, const T& b) { return a == b; }
    /// Equal colours, texts and lists are the same value.
    template <class T> static bool isSame(const Ref<T>& a, const Ref<T>& b)
    {
        return a == b || (a && b && a->isEqual(b.get()));
    }

    /// Tells the host of the tree that something in it looks different.
    static void invalidate(CALayer& layer);
    static quartz::LayerHost* hostOf(const CALayer& layer);

    // Geometry.
    /// Answers a layer's coordinates in its superlayer's.
    static CGAffineTransform toSuperlayer(const LayerValues& values);
    /// Answers a layer's coordinates in such as go up; the same ones unless it is flipped.
    static CGAffineTransform flipping(const LayerValues& values);
    /// Answers what the superlayer does to all of its sublayers.
    static CGAffineTransform forSublayers(const LayerValues& values);

    // Movements.
    static Ref<NSObject> actionFor(CALayer& layer, NSString* key);
    static void changed(CALayer& layer, NSString* key, NSObject* action);
    /// Answers the layer to be looked at: itself while nothing moves, else a copy with the values of now.
    static Ref<CALayer> shown(CALayer& layer);
    /// Answers the layer's time for a moment of the clock.
    static double timeAt(const CALayer& layer, double now);
    /// Does what is due of a layer's movements; answers when there is more to do.
    static double step(CALayer& layer, double now);
    /// Ends all of them; tells their delegates.
    static void endMovements(CALayer& layer, bool finished);
    /// Forgets movements that began in this moment: nobody has seen where they start.
    static void dropUnseenMovements(CALayer& layer);

    // Drawing.
    static void drawContents(CALayer& look, CGContextRef context);
    /// Answers the sublayers in the order of drawing.
    static std::vector<Ref<CALayer>> drawingOrder(const CALayer& layer);

private:
    static std::shared_ptr<LayerState> makeState();
};

}
