// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImageCell.h"

#include <algorithm>

#include "ControlDrawingPrivate.h"
#include "NSCellPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSView.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/Exceptions.h"

namespace brindle {

template <> struct NSImageCell::Methods<struct Pictures> {

    static constexpr CGFloat kPhotoMargin = 5;
    static constexpr CGFloat kBezelMargin = 4;
    static constexpr CGFloat kLineMargin = 2;
    static constexpr CGFloat kRadius = 4;

    // ---- making

    static Ref<NSObject> init(NSImageCell& self) { return self.initImageCell(nullptr); }
    static Ref<NSObject> copyWithZone(NSImageCell& self, void* zone)
    {
        const Ref<NSImageCell> copy
            = cast<NSImageCell>(super<NSImageCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->scaling_ = self.scaling_;
        copy->alignment_ = self.alignment_;
        copy->frameStyle_ = self.frameStyle_;
        copy->tint_ = self.tint_;
        return copy;
    }

    // ---- the image is the value

    static void setImage(NSImageCell& self, NSImage* image)
    {
        if (image && !image->isKindOfClass(NSImage::cls()))
            raise("NSInvalidArgumentException", "*** -[NSImageCell setImage:]: not an image");
        super<NSImageCell, "setImage:">(self, image);
    }
    static Ref<NSObject> objectValue(NSImageCell& self) { return self.image(); }
    static void setObjectValue(NSImageCell& self, NSObject* value)
    {
        const bool isImage = value && value->isKindOfClass(NSImage::cls());
        self.setImage(isImage ? static_cast<NSImage*>(value) : nullptr);
    }

    // ---- settings

    template <class T, T NSImageCell::*Field> static T get(NSImageCell& self)
    {
        return self.*Field;
    }
    template <class T, T NSImageCell::*Field, T Last> static void set(NSImageCell& self, T value)
    {
        if (value > Last || self.*Field == value)
            return;
        self.*Field = value;
        CellAccess::changed(self);
    }
    static Ref<NSColor> tint(NSImageCell& self) { return self.tint_; }
    static void setTint(NSImageCell& self, NSColor* color)
    {
        self.tint_ = color;
        CellAccess::changed(self);
    }

    // ---- places

    static CGFloat margin(NSImageCell& self)
    {
        switch (self.frameStyle_) {
        case NSImageFramePhoto:
            return kPhotoMargin;
        case NSImageFrameGrayBezel:
        case NSImageFrameButton:
            return kBezelMargin;
        case NSImageFrameGroove:
            return kLineMargin;
        default:
            return 0;
        }
    }
    static NSRect drawingRect(NSImageCell& self, NSRect bounds)
    {
        const CGFloat m = std::min({ margin(self), bounds.size.width / 2, bounds.size.height / 2 });
        return m > 0 ? NSInsetRect(bounds, m, m) : bounds;
    }
    static NSSize scaled(NSImageScaling scaling, NSSize size, NSSize room)
    {
        if (!(size.width > 0 && size.height > 0))
            return {};
        const CGFloat fits = std::min(room.width / size.width, room.height / size.height);
        switch (scaling) {
        case NSImageScaleAxesIndependently:
            return room;
        case NSImageScaleNone:
            return size;
        case NSImageScaleProportionallyUpOrDown:
            return { size.width * fits, size.height * fits };
        default:
            return { size.width * std::min(fits, 1.0), size.height * std::min(fits, 1.0) };
        }
    }
    /// Answers how much of the free room lies to the left, and how much above.
    static NSPoint shares(NSImageAlignment place)
    {
        const bool left = place == NSImageAlignLeft || place == NSImageAlignTopLeft
            || place == NSImageAlignBottomLeft;
        const bool right = place == NSImageAlignRight || place == NSImageAlignTopRight
            || place == NSImageAlignBottomRight;
        const bool top = place >= NSImageAlignTop && place <= NSImageAlignTopRight;
        const bool bottom = place >= NSImageAlignBottom && place <= NSImageAlignBottomRight;
        return { left ? 0 : right ? 1 : 0.5, top ? 0 : bottom ? 1 : 0.5 };
    }
    static NSRect place(NSImageCell& self, NSRect bounds, bool flipped)
    {
        const Ref<NSImage> image = self.image();
        if (!image)
            return {};
        const NSRect room = self.drawingRectForBounds(bounds);
        const NSSize size = scaled(self.scaling_, image->size(), room.size);
        const NSPoint share = shares(self.alignment_);
        const CGFloat above = flipped ? share.y : 1 - share.y;
        return NSMakeRect(NSMinX(room) + (room.size.width - size.width) * share.x,
            NSMinY(room) + (room.size.height - size.height) * above, size.width, size.height);
    }
    static NSRect imageRect(NSImageCell& self, NSRect bounds)
    {
        const Ref<NSView> view = self.controlView();
        return place(self, bounds, !view || view->isFlipped());
    }
    static NSSize cellSizeForBounds(NSImageCell& self, NSRect bounds)
    {
        const NSSize size = maybe(self.image())->size();
        const CGFloat around = 2 * margin(self);
        return { std::min(size.width + around, bounds.size.width),
            std::min(size.height + around, bounds.size.height) };
    }

    // ---- drawing

    static void drawFrame(NSImageCell& self, NSRect frame)
    {
        const NSRect rect = controls::onPixels(frame);
        const controls::Look look { .enabled = self.isEnabled() };
        const auto line = controls::shadeOf(NSColor::cls().controlShadowColor());
        switch (self.frameStyle_) {
        case NSImageFramePhoto: {
            const NSRect paper = NSInsetRect(rect, 1, 1);
            controls::fillRounded(NSOffsetRect(paper, 0, 1), 1, { 0, 0, 0, 0.22 });
            controls::fillRounded(paper, 1, { 1, 1, 1, 1 });
            return controls::frameRounded(paper, 1, controls::pixel(), { 0, 0, 0, 0.25 });
        }
        case NSImageFrameGrayBezel:
            return controls::drawWell(
                rect, kRadius, look, controls::shadeOf(NSColor::cls().textBackgroundColor()));
        case NSImageFrameGroove:
            return controls::frameRounded(rect, 0, controls::pixel(), line);
        case NSImageFrameButton:
            return controls::drawBezel(NSInsetRect(rect, 1, 1), kRadius, look);
        default:
            return;
        }
    }
    static void drawWithFrame(NSImageCell& self, NSRect frame, NSView* view)
    {
        drawFrame(self, frame);
        self.drawInteriorWithFrame_inView(frame, view);
        if (self.showsFirstResponder() && self.focusRingType() != NSFocusRingTypeNone)
            controls::drawRing(
                controls::onPixels(NSInsetRect(frame, controls::kRingRoom, controls::kRingRoom)),
                kRadius);
    }
    static controls::Shade ink(NSImageCell& self)
    {
        if (self.tint_)
            return controls::shadeOf(self.tint_);
        if (self.backgroundStyle() == NSBackgroundStyleDark)
            return controls::shadeOf(NSColor::cls().alternateSelectedControlTextColor());
        return controls::shadeOf(NSColor::cls().controlTextColor());
    }
    static void drawInterior(NSImageCell& self, NSRect frame, NSView* view)
    {
        const Ref<NSImage> image = self.image();
        const NSRect room = self.drawingRectForBounds(frame);
        const NSRect rect = place(self, frame, maybe(view)->isFlipped());
        if (!image || NSIsEmptyRect(rect))
            return;
        const GraphicsStateGuard saved;
        NSRectClip(room);
        controls::drawImage(image.get(), rect, ink(self), self.isEnabled() ? 1 : 0.4);
    }

    // ---- archives

    static void code(const NumberCoding& number, NSImageCell& self)
    {
        number("NSScale"_ns, self.scaling_, NSImageScaleProportionallyUpOrDown);
        number("NSAlign"_ns, self.alignment_, NSImageAlignRight);
        number("NSStyle"_ns, self.frameStyle_, NSImageFrameButton);
    }
    static void encode(NSImageCell& self, NSCoder* coder)
    {
        super<NSImageCell, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.tint_.get(), "NSTint"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSImageCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSImageCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.tint_ = decode<NSColor>(coder, "NSTint"_ns);
        code({ coder, true }, self);
        return made;
    }

    static void table(Builder& t)
    {
        using C = NSImageCell;
        t.methods({
            { "init", imp<init> },
            { "copyWithZone:", imp<copyWithZone> },
            { "setImage:", imp<setImage> },
            { "objectValue", imp<objectValue> },
            { "setObjectValue:", imp<setObjectValue> },
            { "imageScaling", imp<get<NSImageScaling, &C::scaling_>> },
            { "setImageScaling:",
                imp<set<NSImageScaling, &C::scaling_, NSImageScaleProportionallyUpOrDown>> },
            { "imageAlignment", imp<get<NSImageAlignment, &C::alignment_>> },
            { "setImageAlignment:", imp<set<NSImageAlignment, &C::alignment_, NSImageAlignRight>> },
            { "imageFrameStyle", imp<get<NSImageFrameStyle, &C::frameStyle_>> },
            { "setImageFrameStyle:",
                imp<set<NSImageFrameStyle, &C::frameStyle_, NSImageFrameButton>> },
            { "contentTintColor", imp<tint> },
            { "setContentTintColor:", imp<setTint> },
            { "drawingRectForBounds:", imp<drawingRect> },
            { "imageRectForBounds:", imp<imageRect> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawWithFrame:inView:", imp<drawWithFrame> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSImageCell, Pictures)

}
