// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGraphicsContext.h"
#include "foundation/StringConstant.h"

namespace brindle {

class NSArray;
class NSData;
class NSDictionary;
class NSURL;

/// Said by `pixelsWide`, `pixelsHigh` and `bitsPerSample` of what is drawn as fine as the device is.
inline constexpr NSInteger NSImageRepMatchesDevice = 0;

/// A hint: an NSNumber of `NSImageInterpolation`, used in place of the context's.
inline constexpr StringConstant<"NSImageHintInterpolation"> NSImageHintInterpolation;

/// One way an image can be shown: a bitmap, or code that draws.
///
/// A representation draws itself in the rectangle (0, 0, `size`) of a space with y up. A subclass overrides `draw`;
/// one that has a picture at hand overrides `CGImageForProposedRect:context:hints:`, and everything else follows.
/// Thread: one at a time.
class NSImageRep : public NSObject {
    BRINDLE_OBJECT(NSImageRep, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the representations that a picture file holds; nil for an unreadable one.
        Ref<NSArray> imageRepsWithContentsOfFile(NSString* path) const
        {
            return send<"imageRepsWithContentsOfFile:", Ref<NSArray>>(path);
        }
        Ref<NSArray> imageRepsWithContentsOfURL(NSURL* url) const
        {
            return send<"imageRepsWithContentsOfURL:", Ref<NSArray>>(url);
        }
        Ref<NSImageRep> imageRepWithContentsOfFile(NSString* path) const
        {
            return send<"imageRepWithContentsOfFile:", Ref<NSImageRep>>(path);
        }
        Ref<NSImageRep> imageRepWithContentsOfURL(NSURL* url) const
        {
            return send<"imageRepWithContentsOfURL:", Ref<NSImageRep>>(url);
        }
        /// Answers whether the bytes begin like a picture that can be read.
        bool canInitWithData(NSData* data) const { return send<"canInitWithData:", bool>(data); }
    };

    /// The size at which it is drawn by itself, points.
    NSSize size() const { return send<"size", NSSize>(); }
    void setSize(NSSize size) { send<"setSize:">(size); }
    NSInteger pixelsWide() const { return send<"pixelsWide", NSInteger>(); }
    void setPixelsWide(NSInteger pixels) { send<"setPixelsWide:">(pixels); }
    NSInteger pixelsHigh() const { return send<"pixelsHigh", NSInteger>(); }
    void setPixelsHigh(NSInteger pixels) { send<"setPixelsHigh:">(pixels); }
    NSInteger bitsPerSample() const { return send<"bitsPerSample", NSInteger>(); }
    void setBitsPerSample(NSInteger bits) { send<"setBitsPerSample:">(bits); }
    bool hasAlpha() const { return send<"hasAlpha", bool>(); }
    void setAlpha(bool hasAlpha) { send<"setAlpha:">(hasAlpha); }
    bool isOpaque() const { return send<"isOpaque", bool>(); }
    void setOpaque(bool opaque) { send<"setOpaque:">(opaque); }
    Ref<NSString> colorSpaceName() const { return send<"colorSpaceName", Ref<NSString>>(); }
    void setColorSpaceName(NSString* name) { send<"setColorSpaceName:">(name); }

    /// Draws itself at the origin of the current context, and answers whether it did. Here it draws nothing.
    bool draw() { return send<"draw", bool>(); }
    bool drawAtPoint(NSPoint point) { return send<"drawAtPoint:", bool>(point); }
    /// Draws itself stretched into the rectangle, whatever the context's direction: upside-down in a flipped one.
    bool drawInRect(NSRect rect) { return send<"drawInRect:", bool>(rect); }
    /// - source: in the representation's points; zero means all of it; what lies outside is transparent.
    /// - fraction: multiplies the source's alpha. - respectFlipped: upright in a flipped context too.
    bool drawInRect_fromRect_operation_fraction_respectFlipped_hints(NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction, bool respectFlipped,
        NSDictionary* hints)
    {
        return send<"drawInRect:fromRect:operation:fraction:respectFlipped:hints:", bool>(
            rect, source, operation, fraction, respectFlipped, hints);
    }
    /// Answers a picture of it.
    /// - proposed: where it will be drawn in the context; nil for its own size.
    /// - context: tells how fine the device is; nil for one pixel a point.
    /// - Nil: without a size.
    Ref<CGImage> CGImageForProposedRect_context_hints(
        NSRect* proposed, NSGraphicsContext* context, NSDictionary* hints) const
    {
        return send<"CGImageForProposedRect:context:hints:", Ref<CGImage>>(
            proposed, context, hints);
    }

private:
    friend struct ImageRepAccess;

    NSSize size_ {};
    NSInteger pixelsWide_ = 0;
    NSInteger pixelsHigh_ = 0;
    NSInteger bitsPerSample_ = 0;
    bool alpha_ = false;
    bool opaque_ = false;
    Ref<NSString> colorSpaceName_;
};

}
