// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "quartz/CGContext.h"

namespace brindle {

class NSBitmapImageRep;

/// How a source meets what is there.
enum NSCompositingOperation : NSUInteger {
    NSCompositeClear = 0,
    NSCompositeCopy = 1,
    NSCompositeSourceOver = 2,
    NSCompositeSourceIn = 3,
    NSCompositeSourceOut = 4,
    NSCompositeSourceAtop = 5,
    NSCompositeDestinationOver = 6,
    NSCompositeDestinationIn = 7,
    NSCompositeDestinationOut = 8,
    NSCompositeDestinationAtop = 9,
    NSCompositeXOR = 10,
    NSCompositePlusDarker = 11,
    NSCompositeHighlight = 12, ///< drawn as source over
    NSCompositePlusLighter = 13,
};

enum NSImageInterpolation : NSUInteger {
    NSImageInterpolationDefault = 0,
    NSImageInterpolationNone = 1,
    NSImageInterpolationLow = 2,
    NSImageInterpolationHigh = 3,
    NSImageInterpolationMedium = 4,
};

enum NSFocusRingPlacement : NSUInteger {
    NSFocusRingOnly = 0,
    NSFocusRingBelow = 1,
    NSFocusRingAbove = 2,
};

/// Where immediate drawing goes: a Quartz context, and whether its y grows downward.
///
/// Each thread has a current context, nil without focus. Setting colours, filling rectangles and drawing strings go there.
/// Thread: one at a time.
class NSGraphicsContext : public NSObject {
    BRINDLE_OBJECT(NSGraphicsContext, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSGraphicsContext> currentContext() const
        {
            return send<"currentContext", Ref<NSGraphicsContext>>();
        }
        void setCurrentContext(NSGraphicsContext* context) const
        {
            send<"setCurrentContext:">(context);
        }
        /// Remembers the current context together with its state; nil is remembered too.
        void saveGraphicsState() const { send<"saveGraphicsState">(); }
        /// Makes the remembered context current again, in its state of then. Does nothing when none is remembered.
        void restoreGraphicsState() const { send<"restoreGraphicsState">(); }
        /// Answers a context that draws into the representation's memory, unflipped, one unit a pixel.
        /// - Nil: nil for nil and for formats that cannot be drawn into.
        Ref<NSGraphicsContext> graphicsContextWithBitmapImageRep(NSBitmapImageRep* rep) const
        {
            return send<"graphicsContextWithBitmapImageRep:", Ref<NSGraphicsContext>>(rep);
        }
        /// - port: a Quartz context; nil answers nil. - flipped: only told on, nothing is transformed.
        Ref<NSGraphicsContext> graphicsContextWithGraphicsPort_flipped(
            class CGContext* port, bool flipped) const
        {
            return send<"graphicsContextWithGraphicsPort:flipped:", Ref<NSGraphicsContext>>(
                port, flipped);
        }
        Ref<NSGraphicsContext> graphicsContextWithCGContext_flipped(
            class CGContext* context, bool flipped) const
        {
            return send<"graphicsContextWithCGContext:flipped:", Ref<NSGraphicsContext>>(
                context, flipped);
        }
        bool currentContextDrawingToScreen() const
        {
            return send<"currentContextDrawingToScreen", bool>();
        }
    };

    Ref<class CGContext> graphicsPort() const
    {
        return send<"graphicsPort", Ref<class CGContext>>();
    }
    Ref<class CGContext> CGContext() const { return send<"CGContext", Ref<class CGContext>>(); }
    bool isFlipped() const { return send<"isFlipped", bool>(); }
    bool isDrawingToScreen() const { return send<"isDrawingToScreen", bool>(); }
    void flushGraphics() { send<"flushGraphics">(); }
    /// Saves and restores the receiver's state only; what is current stays.
    void saveGraphicsState() { send<"saveGraphicsState">(); }
    void restoreGraphicsState() { send<"restoreGraphicsState">(); }
    NSImageInterpolation imageInterpolation() const
    {
        return send<"imageInterpolation", NSImageInterpolation>();
    }
    void setImageInterpolation(NSImageInterpolation quality)
    {
        send<"setImageInterpolation:">(quality);
    }
    NSCompositingOperation compositingOperation() const
    {
        return send<"compositingOperation", NSCompositingOperation>();
    }
    void setCompositingOperation(NSCompositingOperation operation)
    {
        send<"setCompositingOperation:">(operation);
    }
    bool shouldAntialias() const { return send<"shouldAntialias", bool>(); }
    void setShouldAntialias(bool antialias) { send<"setShouldAntialias:">(antialias); }

private:
    Ref<class CGContext> context_;
    bool flipped_ = false;
};

/// Brackets drawing: the current context and its state are as before at the end of the block, exceptions included.
class GraphicsStateGuard {
public:
    GraphicsStateGuard() { NSGraphicsContext::cls().saveGraphicsState(); }
    ~GraphicsStateGuard() { NSGraphicsContext::cls().restoreGraphicsState(); }
    GraphicsStateGuard(const GraphicsStateGuard&) = delete;
    GraphicsStateGuard& operator=(const GraphicsStateGuard&) = delete;
};

/// Answers the Quartz context of the current context; nil without one.
BRINDLE_EXPORT Ref<CGContext> currentCGContext();
/// Answers the blend mode of a compositing operation.
BRINDLE_EXPORT CGBlendMode blendModeFor(NSCompositingOperation operation);

// All of these draw in the current context, within its clip; without one they do nothing.

/// Fills with the current colour by the copy operation: a translucent colour replaces what is there.
BRINDLE_EXPORT void NSRectFill(NSRect rect);
BRINDLE_EXPORT void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation);
BRINDLE_EXPORT void NSRectFillList(const NSRect* rects, NSInteger count);
BRINDLE_EXPORT void NSRectFillListUsingOperation(
    const NSRect* rects, NSInteger count, NSCompositingOperation operation);
/// Draws a frame of one point just inside the rectangle.
BRINDLE_EXPORT void NSFrameRect(NSRect rect);
BRINDLE_EXPORT void NSFrameRectWithWidth(NSRect rect, CGFloat width);
BRINDLE_EXPORT void NSFrameRectWithWidthUsingOperation(
    NSRect rect, CGFloat width, NSCompositingOperation operation);
BRINDLE_EXPORT void NSRectClip(NSRect rect);
BRINDLE_EXPORT void NSRectClipList(const NSRect* rects, NSInteger count);
/// Fills the rectangle white.
BRINDLE_EXPORT void NSEraseRect(NSRect rect);
/// Shapes filled from now on get the focus ring around them, until the state is restored.
BRINDLE_EXPORT void NSSetFocusRingStyle(NSFocusRingPlacement placement);

}
