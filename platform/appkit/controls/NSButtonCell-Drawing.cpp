// SPDX-License-Identifier: Apache-2.0
#include "NSButtonPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "quartz/CGContext.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

using controls::Look;
using controls::Metrics;
using controls::Shade;

template <> struct NSButtonCell::Methods<struct Drawing> {

    static ButtonAttributes& of(NSButtonCell& self) { return ButtonAccess::of(self); }
    static Metrics metrics(NSButtonCell& self) { return controls::metricsFor(self.controlSize()); }

    // ---- what it shows

    static bool showsAlternate(NSButtonCell& self)
    {
        if (self.isHighlighted() && (self.highlightsBy() & NSContentsCellMask))
            return true;
        return self.state() != NSOffState && (self.showsStateBy() & NSContentsCellMask);
    }
    static bool showsOn(NSButtonCell& self)
    {
        constexpr NSCellStyleMask kBody
            = NSPushInCellMask | NSChangeGrayCellMask | NSChangeBackgroundCellMask;
        return self.state() != NSOffState && (self.showsStateBy() & kBody);
    }
    static bool isHovered(NSButtonCell& self, NSView* view)
    {
        NSButton* const button = ButtonAccess::buttonOf(view);
        return of(self).pointerInside || (button && ButtonAccess::isHovered(*button));
    }
    static Look lookIn(NSButtonCell& self, NSView* view)
    {
        Look look;
        look.enabled = self.isEnabled();
        look.pressed = self.isHighlighted() && self.highlightsBy() != NSNoCellMask;
        look.hovered = isHovered(self, view);
        look.active = controls::isActive(view);
        if (ButtonAccess::isMark(self))
            look.accented = self.state() != NSOffState;
        else
            look.accented
                = showsOn(self) || (self.keyEquivalent()->isEqualToString("\r"_ns) && look.active);
        return look;
    }
    static bool isDisclosure(NSButtonCell& self)
    {
        return self.bezelStyle() == NSDisclosureBezelStyle
            || self.bezelStyle() == NSRoundedDisclosureBezelStyle;
    }
    static bool isRoundBody(NSBezelStyle style)
    {
        return style == NSCircularBezelStyle || style == NSHelpButtonBezelStyle;
    }
    /// Styles without a body until there is a reason for one.
    static bool isQuiet(NSButtonCell& self)
    {
        return self.bezelStyle() == NSRecessedBezelStyle || of(self).borderOnlyInside;
    }
    static Shade dimmed(Shade shade, const Look& look)
    {
        return controls::faded(shade, shade.alpha * (look.enabled ? 1 : 0.5));
    }

    // ---- geometry

    /// Answers where the body lies in the cell's frame.
    static NSRect bodyIn(NSButtonCell& self, NSRect frame)
    {
        const NSBezelStyle style = self.bezelStyle();
        const NSRect room = NSInsetRect(frame, controls::kRingRoom, controls::kRingRoom);
        if (isRoundBody(style)) {
            const CGFloat side = std::max(0.0, std::min(room.size.width, room.size.height));
            return NSMakeRect(NSMidX(room) - side / 2, NSMidY(room) - side / 2, side, side);
        }
        const bool fills = style == NSRegularSquareBezelStyle
            || style == NSShadowlessSquareBezelStyle || style == NSTexturedSquareBezelStyle
            || style == NSSmallSquareBezelStyle;
        if (fills)
            return room;
        const CGFloat height = std::max(0.0, std::min(metrics(self).height, room.size.height));
        return NSMakeRect(
            NSMinX(room), NSMidY(room) - height / 2, std::max(0.0, room.size.width), height);
    }
    static CGFloat radiusOf(NSButtonCell& self, NSRect body)
    {
        switch (self.bezelStyle()) {
        case NSCircularBezelStyle:
        case NSHelpButtonBezelStyle:
        case NSRoundRectBezelStyle:
        case NSInlineBezelStyle:
            return body.size.height / 2;
        case NSShadowlessSquareBezelStyle:
        case NSSmallSquareBezelStyle:
            return 2;
        case NSRecessedBezelStyle:
            return 5;
        default:
            return metrics(self).radius;
        }
    }
    static CGFloat paddingOf(NSButtonCell& self)
    {
        if (!self.isBordered())
            return 0;
        switch (self.bezelStyle()) {
        case NSCircularBezelStyle:
        case NSHelpButtonBezelStyle:
            return 3;
        case NSRecessedBezelStyle:
        case NSInlineBezelStyle:
        case NSShadowlessSquareBezelStyle:
        case NSSmallSquareBezelStyle:
            return 7;
        default:
            return metrics(self).padding;
        }
    }
    static NSRect drawingRect(NSButtonCell& self, NSRect bounds)
    {
        if (!self.isBordered())
            return bounds;
        const NSRect body = bodyIn(self, bounds);
        const CGFloat padding = std::min(paddingOf(self), body.size.width / 2);
        return NSInsetRect(body, padding, 0);
    }

    struct Parts {
        NSRect image {};
        NSRect title {};
        NSSize size {}; // of both together
    };
    static bool showsImage(NSButtonCell& self)
    {
        return self.imagePosition() != NSNoImage && of(self).image;
    }
    static bool showsTitle(NSButtonCell& self)
    {
        return self.imagePosition() != NSImageOnly && self.title()->length() > 0;
    }
    static NSSize imageSize(NSButtonCell& self)
    {
        if (!showsImage(self))
            return {};
        if (of(self).image == markImage(of(self).type)) {
            const CGFloat side = metrics(self).mark;
            return { side, side };
        }
        return of(self).image->size();
    }
    static NSSize scaledDown(NSSize size, NSSize room)
    {
        if (!(size.width > 0 && size.height > 0))
            return {};
        const CGFloat part
            = std::max(0.0, std::min({ 1.0, room.width / size.width, room.height / size.height }));
        return { size.width * part, size.height * part };
    }
    static CGFloat startOf(NSTextAlignment alignment, CGFloat room)
    {
        const CGFloat free = std::max(0.0, room);
        return alignment == NSTextAlignmentCenter ? free / 2
            : alignment == NSTextAlignmentRight   ? free
                                                  : 0;
    }
    /// Image and title in a row or a column, the two of them placed as one by the alignment.
    static Parts partsIn(NSButtonCell& self, NSRect room)
    {
        Parts parts;
        const NSCellImagePosition position = self.imagePosition();
        const bool image = showsImage(self);
        const bool title = showsTitle(self);
        NSSize picture = imageSize(self);
        const NSSize text = title ? controls::sizeOf(self.attributedTitle().get()) : NSSize {};
        const CGFloat gap = image && title ? metrics(self).gap : 0;
        const bool column = position == NSImageAbove || position == NSImageBelow;
        const bool stacked = position == NSImageOverlaps || !image || !title;
        parts.size = stacked
            ? NSSize { std::max(picture.width, text.width), std::max(picture.height, text.height) }
            : column
            ? NSSize { std::max(picture.width, text.width), picture.height + gap + text.height }
            : NSSize { picture.width + gap + text.width, std::max(picture.height, text.height) };
        const bool scales = self.imageScaling() != NSImageScaleNone;
        const NSSize fits { room.size.width,
            column && title ? room.size.height - text.height - gap : room.size.height };
        if (scales && !ButtonAccess::isMark(self))
            picture = scaledDown(picture, fits);
        const NSTextAlignment alignment = self.alignment();
        const auto centred = [&](NSSize size, CGFloat width, CGFloat left) {
            return NSMakeRect(left + std::max(0.0, (width - size.width) / 2),
                NSMidY(room) - size.height / 2, size.width, size.height);
        };
        if (stacked) {
            parts.image = centred(picture, room.size.width, NSMinX(room));
            parts.title = NSMakeRect(NSMinX(room), NSMidY(room) - text.height / 2,
                std::max(0.0, room.size.width), text.height);
            return parts;
        }
        if (column) {
            const CGFloat height = picture.height + gap + text.height;
            const CGFloat top = NSMidY(room) - height / 2;
            const bool above = position == NSImageAbove;
            parts.image = centred(picture, room.size.width, NSMinX(room));
            parts.image.origin.y = above ? top : top + text.height + gap;
            parts.title = NSMakeRect(NSMinX(room), above ? top + picture.height + gap : top,
                room.size.width, text.height);
            return parts;
        }
        const CGFloat textRoom = std::max(0.0, room.size.width - picture.width - gap);
        const CGFloat width = std::min(text.width, textRoom);
        const CGFloat left
            = NSMinX(room) + startOf(alignment, room.size.width - picture.width - gap - width);
        const bool imageRight = position == NSImageRight || position == NSImageTrailing;
        parts.image = NSMakeRect(imageRight ? left + width + gap : left,
            NSMidY(room) - picture.height / 2, picture.width, picture.height);
        parts.title = NSMakeRect(imageRight ? left : left + picture.width + gap,
            NSMidY(room) - text.height / 2, width, text.height);
        return parts;
    }
    static NSRect imageRect(NSButtonCell& self, NSRect bounds)
    {
        return partsIn(self, self.drawingRectForBounds(bounds)).image;
    }
    static NSRect titleRect(NSButtonCell& self, NSRect bounds)
    {
        return partsIn(self, self.drawingRectForBounds(bounds)).title;
    }
    static NSSize cellSizeForBounds(NSButtonCell& self, NSRect)
    {
        const NSSize content = partsIn(self, { {}, { 1e4, 1e4 } }).size;
        const CGFloat room = 2 * controls::kRingRoom;
        if (!self.isBordered() && !isDisclosure(self))
            return { content.width + (ButtonAccess::isMark(self) ? room : 0),
                std::max(
                    content.height, ButtonAccess::isMark(self) ? metrics(self).mark + room : 0) };
        const NSBezelStyle style = self.bezelStyle();
        const CGFloat height = metrics(self).height;
        if (isRoundBody(style) || isDisclosure(self))
            return { height + room, height + room };
        const bool grows = style == NSRegularSquareBezelStyle
            || style == NSShadowlessSquareBezelStyle || style == NSSmallSquareBezelStyle
            || style == NSTexturedSquareBezelStyle;
        return { content.width + 2 * paddingOf(self) + room,
            (grows ? std::max(height, content.height + 8) : height) + room };
    }

    // ---- drawing

    static void drawWithFrame(NSButtonCell& self, NSRect frame, NSView* view)
    {
        if (self.isTransparent())
            return;
        if (self.isBordered()) {
            self.drawBezelWithFrame_inView(frame, view);
        } else if (const Ref<NSColor> ground = self.backgroundColor()) {
            const GraphicsStateGuard saved;
            ground->set();
            NSRectFillUsingOperation(frame, NSCompositeSourceOver);
        }
        self.drawInteriorWithFrame_inView(frame, view);
        if (showsRing(self, view))
            drawRing(self, frame);
    }
    // The ring shows where keys go; after a click the eye is there already.
    static bool showsRing(NSButtonCell& self, NSView* view)
    {
        NSButton* const button = ButtonAccess::buttonOf(view);
        return self.showsFirstResponder() && self.focusRingType() != NSFocusRingTypeNone
            && !(button && ButtonAccess::focusedByPointer(*button));
    }
    static void drawRing(NSButtonCell& self, NSRect frame)
    {
        if (ButtonAccess::isMark(self) && !self.isBordered()) {
            const NSRect mark = controls::onPixels(self.imageRectForBounds(frame));
            return controls::drawRing(mark, markRadius(self, mark));
        }
        const NSRect body = controls::onPixels(self.isBordered()
                ? bodyIn(self, frame)
                : NSInsetRect(frame, controls::kRingRoom, controls::kRingRoom));
        controls::drawRing(body, self.isBordered() ? radiusOf(self, body) : 4);
    }
    static void drawRingMask(NSButtonCell& self, NSRect frame, NSView*)
    {
        const NSRect body = bodyIn(self, frame);
        controls::fillRounded(body, radiusOf(self, body), { 0, 0, 0, 1 });
    }

    /// A body of one flat tone for quiet styles.
    static void drawTone(NSRect body, CGFloat radius, const Look& look, double strength)
    {
        const Shade ink = controls::isDark() ? Shade { 1, 1, 1, 1 } : Shade { 0, 0, 0, 1 };
        const double alpha = strength + (look.pressed ? 0.10 : look.hovered ? 0.04 : 0);
        controls::fillRounded(body, radius, controls::faded(ink, alpha * (look.enabled ? 1 : 0.6)));
    }
    static void drawBezel(NSButtonCell& self, NSRect frame, NSView* view)
    {
        const Look look = lookIn(self, view);
        const NSRect body = controls::onPixels(bodyIn(self, frame));
        const CGFloat radius = radiusOf(self, body);
        const NSBezelStyle style = self.bezelStyle();
        if (NSIsEmptyRect(body) || style == NSDisclosureBezelStyle)
            return;
        const bool idle = !look.pressed && !look.hovered && !showsOn(self);
        if (isQuiet(self) && idle)
            return;
        if (style == NSRecessedBezelStyle)
            return showsOn(self) ? drawTone(body, radius, look, 0.18)
                                 : drawTone(body, radius, look, 0.06);
        if (style == NSInlineBezelStyle)
            return drawTone(body, radius, look, showsOn(self) ? 0.30 : 0.12);
        controls::drawBezel(body, radius, look);
    }

    static void drawInterior(NSButtonCell& self, NSRect frame, NSView* view)
    {
        if (isDisclosure(self))
            return drawDisclosure(self, frame, view);
        const bool alternate = showsAlternate(self);
        if (showsImage(self)) {
            const Ref<NSImage>& other = of(self).alternateImage;
            const Ref<NSImage> image = alternate && other ? other : of(self).image;
            self.drawImage_withFrame_inView(image.get(), self.imageRectForBounds(frame), view);
        } else if (self.bezelStyle() == NSHelpButtonBezelStyle && !showsTitle(self)) {
            drawHelp(self, frame, view);
        }
        if (!showsTitle(self))
            return;
        const bool hasOther = self.alternateTitle()->length() > 0;
        const bool plain = !CellAccess::of(self).contents->isKindOfClass(NSAttributedString::cls());
        Ref<NSAttributedString> title
            = alternate && hasOther ? self.attributedAlternateTitle() : self.attributedTitle();
        if (plain && title->length() > 0)
            title = alloc<NSAttributedString>()->initWithString_attributes(
                title->string().get(), textAttributesOf(self, inkFor(self, view).get()).get());
        self.drawTitle_withFrame_inView(title.get(), self.titleRectForBounds(frame), view);
    }
    static Ref<NSColor> inkFor(NSButtonCell& self, NSView* view)
    {
        Look look = lookIn(self, view);
        const NSBezelStyle style = self.bezelStyle();
        const bool toned = style == NSRecessedBezelStyle || style == NSInlineBezelStyle;
        if (!self.isBordered() || toned)
            look.accented = false;
        Shade ink = controls::inkOn(look);
        if (!self.isBordered() && look.pressed && !ButtonAccess::isMark(self))
            ink.alpha *= 0.6;
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            ink.red, ink.green, ink.blue, ink.alpha);
    }
    static NSRect drawTitle(NSButtonCell& self, NSAttributedString* title, NSRect frame, NSView*)
    {
        return controls::drawText(title, frame, self.alignment());
    }

    static void drawImage(NSButtonCell& self, NSImage* image, NSRect frame, NSView* view)
    {
        if (!image)
            return;
        if (image == markImage(NSSwitchButton) || image == markImage(NSRadioButton))
            return drawMark(self, frame, view);
        const Look look = lookIn(self, view);
        const bool dims = !look.enabled && self.imageDimsWhenDisabled();
        const bool answersPress = look.pressed && !self.alternateImage() && !self.isBordered();
        controls::drawImage(image, frame, controls::shadeOf(inkFor(self, view)),
            dims               ? 0.4
                : answersPress ? 0.65
                               : 1);
    }

    // ---- marks; their lines are given for a box of 15 points with y down

    static CGFloat markRadius(NSButtonCell& self, NSRect mark)
    {
        return of(self).type == NSRadioButton ? mark.size.height / 2
                                              : std::round(mark.size.height * 0.25);
    }
    static NSPoint inBox(NSRect box, double x, double y)
    {
        const double part = box.size.width / 15;
        const bool down = NSGraphicsContext::cls().currentContext()->isFlipped();
        return { NSMinX(box) + x * part, down ? NSMinY(box) + y * part : NSMaxY(box) - y * part };
    }
    static void drawMark(NSButtonCell& self, NSRect frame, NSView* view)
    {
        const Look look = lookIn(self, view);
        const NSRect box = controls::onPixels(frame);
        controls::drawMarkBody(box, markRadius(self, box), look);
        const Shade ink = controls::inkOn(look);
        const double width = box.size.width * 0.12;
        if (self.state() == NSOffState)
            return;
        if (self.state() == NSMixedState) {
            const NSPoint dash[] { inBox(box, 4.25, 7.5), inBox(box, 10.75, 7.5) };
            controls::strokeLine(dash, 2, width, ink);
        } else if (of(self).type == NSRadioButton) {
            const CGFloat inset = box.size.width * 0.31;
            const NSRect dot = NSInsetRect(box, inset, inset);
            controls::fillRounded(dot, dot.size.height / 2, ink);
        } else {
            const NSPoint tick[] { inBox(box, 3.9, 7.9), inBox(box, 6.4, 10.5),
                inBox(box, 11.1, 4.7) };
            controls::strokeLine(tick, 3, width, ink);
        }
    }
    static void drawDisclosure(NSButtonCell& self, NSRect frame, NSView* view)
    {
        const Look look = lookIn(self, view);
        const CGFloat side = std::min({ 13.0, frame.size.width, frame.size.height });
        const NSRect box
            = NSMakeRect(NSMidX(frame) - side / 2, NSMidY(frame) - side / 2, side, side);
        Shade ink = controls::inkOn(look);
        ink.alpha *= look.pressed ? 0.9 : 0.65;
        const bool open = self.state() == NSOnState;
        const bool chevronUp = open && self.bezelStyle() == NSRoundedDisclosureBezelStyle;
        const bool chevronDown = self.bezelStyle() == NSRoundedDisclosureBezelStyle || open;
        const NSPoint up[] { inBox(box, 3, 9.5), inBox(box, 7.5, 5), inBox(box, 12, 9.5) };
        const NSPoint down[] { inBox(box, 3, 5.5), inBox(box, 7.5, 10), inBox(box, 12, 5.5) };
        const NSPoint right[] { inBox(box, 5.5, 3), inBox(box, 10, 7.5), inBox(box, 5.5, 12) };
        controls::strokeLine(chevronUp ? up : chevronDown ? down : right, 3, 1.75, ink);
    }
    static void drawHelp(NSButtonCell& self, NSRect frame, NSView* view)
    {
        const Ref<NSColor> ink = inkFor(self, view);
        const Ref<NSAttributedString> mark = alloc<NSAttributedString>()->initWithString_attributes(
            "?"_ns, textAttributesOf(self, ink.get()).get());
        controls::drawText(mark.get(), frame, NSTextAlignmentCenter);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawingRectForBounds:", imp<drawingRect> },
            { "imageRectForBounds:", imp<imageRect> },
            { "titleRectForBounds:", imp<titleRect> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawWithFrame:inView:", imp<drawWithFrame> },
            { "drawBezelWithFrame:inView:", imp<drawBezel> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "drawImage:withFrame:inView:", imp<drawImage> },
            { "drawTitle:withFrame:inView:", imp<drawTitle> },
            { "drawFocusRingMaskWithFrame:inView:", imp<drawRingMask> },
        });
    }
};
BRINDLE_RECORD(NSButtonCell, Drawing)

}
