// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "NSCustomImageRep.h"
#include "NSEdgeInsets.h"
#include "foundation/NSArray.h"

namespace brindle {

inline constexpr StringConstant<"NSImageCacheException"> NSImageCacheException;

// Pictures that are there without a file, black shapes for tinting.
inline constexpr StringConstant<"NSAddTemplate"> NSImageNameAddTemplate;
inline constexpr StringConstant<"NSRemoveTemplate"> NSImageNameRemoveTemplate;
inline constexpr StringConstant<"NSActionTemplate"> NSImageNameActionTemplate;
inline constexpr StringConstant<"NSGoLeftTemplate"> NSImageNameGoLeftTemplate;
inline constexpr StringConstant<"NSGoRightTemplate"> NSImageNameGoRightTemplate;
inline constexpr StringConstant<"NSRefreshTemplate"> NSImageNameRefreshTemplate;
inline constexpr StringConstant<"NSStopProgressTemplate"> NSImageNameStopProgressTemplate;
inline constexpr StringConstant<"NSListViewTemplate"> NSImageNameListViewTemplate;
inline constexpr StringConstant<"NSIconViewTemplate"> NSImageNameIconViewTemplate;
inline constexpr StringConstant<"NSMenuOnStateTemplate"> NSImageNameMenuOnStateTemplate;
inline constexpr StringConstant<"NSMenuMixedStateTemplate"> NSImageNameMenuMixedStateTemplate;

enum NSImageResizingMode : NSInteger {
    NSImageResizingModeStretch = 0,
    NSImageResizingModeTile = 1,
};

enum NSImageCacheMode : NSUInteger {
    NSImageCacheDefault = 0,
    NSImageCacheAlways = 1,
    NSImageCacheBySize = 2,
    NSImageCacheNever = 3,
};

/// A picture as the interface uses it: a size in points and one or more representations to draw.
///
/// Drawing takes the representation whose pixels fit the device best and stretches it over the image's size. The operations
/// without `respectFlipped:` take no notice of a flipped context and stand on their head there; `drawInRect:` is upright
/// everywhere. Nothing is drawn without a current context.
/// Thread: one at a time.
class NSImage : public NSObject {
    BRINDLE_OBJECT(NSImage, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the image of a name: one that was given the name, one of the main bundle's, one of the names above. The name
        /// goes with or without an extension; the variants "name@2x" and "name@3x" become representations of the same image.
        /// An image is read once and shared; one whose name ends in "Template" is a template.
        /// - Nil: when there is none.
        Ref<NSImage> imageNamed(NSString* name) const
        {
            return send<"imageNamed:", Ref<NSImage>>(name);
        }
        /// Answers an image that a closure draws, anew for each drawing and as fine as the device is.
        /// - flipped: y grows downward while it draws.
        Ref<NSImage> imageWithSize_flipped_drawingHandler(
            NSSize size, bool flipped, const NSCustomImageRep::Handler& handler) const
        {
            return send<"imageWithSize:flipped:drawingHandler:", Ref<NSImage>>(
                size, flipped, handler.get());
        }
        /// Answers the identifiers of the formats that are read, such as "public.png".
        Ref<NSArray> imageTypes() const { return send<"imageTypes", Ref<NSArray>>(); }
        /// Answers the extensions of files that are read.
        Ref<NSArray> imageFileTypes() const { return send<"imageFileTypes", Ref<NSArray>>(); }
    };

    // ---- making

    /// - size: points. Without representations the image is transparent.
    Ref<NSImage> initWithSize(NSSize size) { return send<"initWithSize:", Ref<NSImage>>(size); }
    /// Reads a picture file and its "@2x" and "@3x" neighbours; a file that is itself such a variant has the points of the
    /// plain one. Otherwise a point is 1/72 inch at the file's resolution.
    /// - Nil: when it cannot be read.
    Ref<NSImage> initWithContentsOfFile(NSString* path)
    {
        return send<"initWithContentsOfFile:", Ref<NSImage>>(path);
    }
    Ref<NSImage> initWithContentsOfURL(NSURL* url)
    {
        return send<"initWithContentsOfURL:", Ref<NSImage>>(url);
    }
    /// Reads the file when it is needed. Never nil; `isValid` tells whether the file could be read.
    Ref<NSImage> initByReferencingFile(NSString* path)
    {
        return send<"initByReferencingFile:", Ref<NSImage>>(path);
    }
    Ref<NSImage> initByReferencingURL(NSURL* url)
    {
        return send<"initByReferencingURL:", Ref<NSImage>>(url);
    }
    /// Reads a picture file's bytes: PNG, JPEG, GIF, BMP, TIFF. Nil for others, broken ones and too large ones.
    Ref<NSImage> initWithData(NSData* data) { return send<"initWithData:", Ref<NSImage>>(data); }
    /// - size: points; a zero size is one point a pixel. - Nil: for a nil picture.
    Ref<NSImage> initWithCGImage_size(CGImage* image, NSSize size)
    {
        return send<"initWithCGImage:size:", Ref<NSImage>>(image, size);
    }

    // ---- what it is

    /// Points. Without a size of its own it is that of the first representation.
    NSSize size() const { return send<"size", NSSize>(); }
    /// Stretches what is drawn; source rectangles count in the new size. Representations keep theirs.
    void setSize(NSSize size) { send<"setSize:">(size); }
    /// Answers NO where there is nothing: an unreadable file, or no size and no representation.
    bool isValid() const { return send<"isValid", bool>(); }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    /// Makes the image answer to a name in `imageNamed:`, for ever; nil takes its name away.
    /// - Returns: NO when another image has the name.
    bool setName(NSString* name) { return send<"setName:", bool>(name); }
    /// Whether only its shape counts and the interface chooses the colour.
    bool isTemplate() const { return send<"isTemplate", bool>(); }
    void setTemplate(bool isTemplate) { send<"setTemplate:">(isTemplate); }
    /// Margins that keep their size when the image is stretched by `drawInRect:`.
    NSEdgeInsets capInsets() const { return send<"capInsets", NSEdgeInsets>(); }
    void setCapInsets(NSEdgeInsets insets) { send<"setCapInsets:">(insets); }
    NSImageResizingMode resizingMode() const { return send<"resizingMode", NSImageResizingMode>(); }
    void setResizingMode(NSImageResizingMode mode) { send<"setResizingMode:">(mode); }
    NSImageCacheMode cacheMode() const { return send<"cacheMode", NSImageCacheMode>(); }
    void setCacheMode(NSImageCacheMode mode) { send<"setCacheMode:">(mode); }
    /// The part that counts when the image is placed; the whole one unless it was set.
    NSRect alignmentRect() const { return send<"alignmentRect", NSRect>(); }
    void setAlignmentRect(NSRect rect) { send<"setAlignmentRect:">(rect); }
    Ref<NSString> accessibilityDescription() const
    {
        return send<"accessibilityDescription", Ref<NSString>>();
    }
    void setAccessibilityDescription(NSString* text) { send<"setAccessibilityDescription:">(text); }

    // ---- representations

    Ref<NSArray> representations() const { return send<"representations", Ref<NSArray>>(); }
    /// - Raises: `NSInvalidArgumentException` for what is no representation; nil does nothing.
    void addRepresentation(NSImageRep* rep) { send<"addRepresentation:">(rep); }
    void addRepresentations(NSArray* reps) { send<"addRepresentations:">(reps); }
    void removeRepresentation(NSImageRep* rep) { send<"removeRepresentation:">(rep); }
    /// Answers the representation to be drawn in a rectangle: the one with the fewest pixels that suffice, else the one with
    /// the most; among equals the first.
    /// - context: nil for the current one; without any, the main screen.
    Ref<NSImageRep> bestRepresentationForRect_context_hints(
        NSRect rect, NSGraphicsContext* context, NSDictionary* hints) const
    {
        return send<"bestRepresentationForRect:context:hints:", Ref<NSImageRep>>(
            rect, context, hints);
    }
    /// Answers a picture of the best representation: a bitmap as it is, anything else drawn.
    /// - proposed: where it will be drawn; nil for the image's own size. - Nil: for an empty image.
    Ref<CGImage> CGImageForProposedRect_context_hints(
        NSRect* proposed, NSGraphicsContext* context, NSDictionary* hints) const
    {
        return send<"CGImageForProposedRect:context:hints:", Ref<CGImage>>(
            proposed, context, hints);
    }
    /// Answers all representations as a TIFF file; nil for an empty image.
    Ref<NSData> TIFFRepresentation() const { return send<"TIFFRepresentation", Ref<NSData>>(); }
    /// Does nothing: what is drawn is never old.
    void recache() { send<"recache">(); }

    // ---- drawing

    /// Draws the whole image over what is there, upright in flipped contexts too.
    void drawInRect(NSRect rect) const { send<"drawInRect:">(rect); }
    /// - source: in the image's points, cut to the image, and the rectangle with it; a zero rectangle is the whole image.
    /// - fraction: multiplies the image's alpha.
    void drawInRect_fromRect_operation_fraction(
        NSRect rect, NSRect source, NSCompositingOperation operation, CGFloat fraction) const
    {
        send<"drawInRect:fromRect:operation:fraction:">(rect, source, operation, fraction);
    }
    void drawInRect_fromRect_operation_fraction_respectFlipped_hints(NSRect rect, NSRect source,
        NSCompositingOperation operation, CGFloat fraction, bool respectFlipped,
        NSDictionary* hints) const
    {
        send<"drawInRect:fromRect:operation:fraction:respectFlipped:hints:">(
            rect, source, operation, fraction, respectFlipped, hints);
    }
    /// Draws a part at its own size, its lower left corner at the point.
    void drawAtPoint_fromRect_operation_fraction(
        NSPoint point, NSRect source, NSCompositingOperation operation, CGFloat fraction) const
    {
        send<"drawAtPoint:fromRect:operation:fraction:">(point, source, operation, fraction);
    }
    /// Draws one representation over what is there; answers whether it could.
    bool drawRepresentation_inRect(NSImageRep* rep, NSRect rect) const
    {
        return send<"drawRepresentation:inRect:", bool>(rep, rect);
    }
    /// Draws the whole image with its lower left corner at the point, the right way up whatever the context's direction.
    void compositeToPoint_operation(NSPoint point, NSCompositingOperation operation) const
    {
        send<"compositeToPoint:operation:">(point, operation);
    }
    void compositeToPoint_operation_fraction(
        NSPoint point, NSCompositingOperation operation, CGFloat fraction) const
    {
        send<"compositeToPoint:operation:fraction:">(point, operation, fraction);
    }

    /// Makes a bitmap of the image's size the current context, the image as it is already drawn in it; y up.
    /// - Raises: `NSImageCacheException` for an image without a size.
    void lockFocus() { send<"lockFocus">(); }
    /// - flipped: y down.
    void lockFocusFlipped(bool flipped) { send<"lockFocusFlipped:">(flipped); }
    /// Makes what was drawn the image's only representation, and the former context current. Without focus nothing happens.
    void unlockFocus() { send<"unlockFocus">(); }

private:
    friend struct ImageAccess;

    /// What `unlockFocus` ends.
    struct Lock {
        Ref<NSGraphicsContext> former;
        Ref<CGContext> context;
    };

    NSSize size_ {};
    std::vector<Ref<NSImageRep>> reps_;
    std::vector<Lock> locks_;
    Ref<NSString> file_; // still to be read
    Ref<NSString> name_;
    Ref<NSString> accessibilityDescription_;
    NSEdgeInsets capInsets_ {};
    NSImageResizingMode resizingMode_ = NSImageResizingModeStretch;
    NSImageCacheMode cacheMode_ = NSImageCacheDefault;
    NSRect alignmentRect_ {};
    bool hasAlignmentRect_ = false;
    bool template_ = false;
};

}
