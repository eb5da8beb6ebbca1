// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBox.h"

#include <algorithm>
#include <cmath>

#include "CodingPrivate.h"
#include "NSViewPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTextFieldCell.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/Exceptions.h"
#include "quartz/layers/AllServedPrivate.h"

namespace brindle {

template <> struct NSBox::Methods<struct Boxes> {

    static constexpr CGFloat kRadius = 6;
    static constexpr CGFloat kTitleGap = 3; // between a title and the ground below or above it
    static constexpr CGFloat kTitleLeft = 8; // from the corner to the title
    static constexpr CGFloat kTitleRoom = 3; // where a border breaks for its title

    // ---- making

    static void prepare(NSBox& self)
    {
        const Ref<NSTextFieldCell> cell = make<NSTextFieldCell>();
        cell->setStringValue("Box"_ns);
        cell->setLineBreakMode(NSLineBreakByTruncatingTail);
        cell->setUsesSingleLineMode(true);
        cell->setFont(smallFont().get());
        self.titleCell_ = cell;
    }
    static Ref<NSFont> smallFont()
    {
        return NSFont::cls().systemFontOfSize(NSFont::cls().smallSystemFontSize());
    }
    static Ref<NSView> initWithFrame(NSBox& self, NSRect frame)
    {
        Ref<NSView> made = super<NSBox, "initWithFrame:", Ref<NSView>>(self, frame);
        if (!made)
            return nullptr;
        prepare(self);
        self.setContentView(nullptr);
        return made;
    }

    // ---- settings

    static void changed(NSBox& self)
    {
        tile(self);
        self.setNeedsDisplay(true);
    }
    template <class T, T NSBox::*Field> static T get(NSBox& self) { return self.*Field; }
    template <class T, T NSBox::*Field, T Last> static void set(NSBox& self, T value)
    {
        if (value > Last || self.*Field == value)
            return;
        self.*Field = value;
        changed(self);
    }
    static CGFloat positive(CGFloat value) { return value > 0 && std::isfinite(value) ? value : 0; }
    template <CGFloat NSBox::*Field> static void setLength(NSBox& self, CGFloat value)
    {
        self.*Field = positive(value);
        changed(self);
    }
    static Ref<NSString> title(NSBox& self) { return maybe(self.titleCell_)->stringValue(); }
    static void setTitle(NSBox& self, NSString* title)
    {
        maybe(self.titleCell_)->setStringValue(title ? title : ""_ns);
        changed(self);
    }
    static Ref<NSFont> titleFont(NSBox& self) { return maybe(self.titleCell_)->font(); }
    static void setTitleFont(NSBox& self, NSFont* font)
    {
        maybe(self.titleCell_)->setFont(font ? font : smallFont().get());
        changed(self);
    }
    static Ref<NSCell> titleCell(NSBox& self) { return self.titleCell_; }
    static void setMargins(NSBox& self, NSSize margins)
    {
        self.margins_ = { positive(margins.width), positive(margins.height) };
        changed(self);
    }
    static Ref<NSColor> borderColor(NSBox& self)
    {
        return self.borderColor_ ? self.borderColor_ : NSColor::cls().separatorColor();
    }
    static void setBorderColor(NSBox& self, NSColor* color)
    {
        self.borderColor_ = color;
        self.setNeedsDisplay(true);
    }
    static Ref<NSColor> fillColor(NSBox& self)
    {
        return self.fillColor_ ? self.fillColor_ : NSColor::cls().clearColor();
    }
    static void setFillColor(NSBox& self, NSColor* color)
    {
        self.fillColor_ = color;
        self.setNeedsDisplay(true);
    }
    static void setTransparent(NSBox& self, bool transparent)
    {
        self.transparent_ = transparent;
        self.setNeedsDisplay(true);
    }

    // ---- places; y goes up

    static bool isSeparator(NSBox& self) { return self.type_ == NSBoxSeparator; }
    static bool isFilled(NSBox& self) { return self.type_ <= NSBoxSecondary; }
    static bool showsTitle(NSBox& self)
    {
        return self.titlePlace_ != NSNoTitle && !isSeparator(self)
            && maybe(self.title())->length() > 0;
    }
    static NSSize titleSize(NSBox& self)
    {
        return showsTitle(self) ? maybe(self.titleCell_)->cellSize() : NSSize {};
    }
    static CGFloat lineWidth(NSBox& self)
    {
        if (isSeparator(self))
            return 0;
        if (self.type_ == NSBoxCustom)
            return self.border_ == NSNoBorder ? 0 : self.borderWidth_;
        return self.type_ == NSBoxOldStyle && self.border_ == NSNoBorder ? 0 : 1;
    }
    /// How much of the box's height lies above and below the border. A title on the border stands half outside, and
    /// one on a ground, which has no line to break, above it.
    struct Ends {
        CGFloat top = 0;
        CGFloat bottom = 0;
        CGFloat insideTop = 0;
        CGFloat insideBottom = 0;
    };
    static Ends ends(NSBox& self)
    {
        const CGFloat height = titleSize(self).height;
        if (!(height > 0))
            return {};
        const bool ground = isFilled(self);
        const CGFloat whole = height + kTitleGap;
        const CGFloat half = std::floor(height / 2);
        switch (self.titlePlace_) {
        case NSAboveTop:
            return { .top = whole };
        case NSAtTop:
            return ground ? Ends { .top = whole }
                          : Ends { .top = half, .insideTop = height - half };
        case NSBelowTop:
            return { .insideTop = whole };
        case NSAboveBottom:
            return { .insideBottom = whole };
        case NSAtBottom:
            return ground ? Ends { .bottom = whole }
                          : Ends { .bottom = half, .insideBottom = height - half };
        case NSBelowBottom:
            return { .bottom = whole };
        default:
            return {};
        }
    }
    static NSRect shrunk(NSRect rect, CGFloat sides, CGFloat bottom, CGFloat top)
    {
        rect.origin.x += sides;
        rect.size.width = std::max(0.0, rect.size.width - 2 * sides);
        rect.origin.y += bottom;
        rect.size.height = std::max(0.0, rect.size.height - bottom - top);
        return rect;
    }
    static NSRect borderRect(NSBox& self)
    {
        const Ends e = ends(self);
        return shrunk(self.bounds(), 0, e.bottom, e.top);
    }
    static NSRect titleRect(NSBox& self)
    {
        const NSSize size = titleSize(self);
        if (!(size.height > 0))
            return {};
        const NSRect border = borderRect(self);
        const bool inside = self.titlePlace_ == NSBelowTop || self.titlePlace_ == NSAboveBottom;
        const CGFloat left = isFilled(self) && !inside ? 2 : kTitleLeft;
        const CGFloat room = std::max(0.0, border.size.width - 2 * left);
        const bool top = self.titlePlace_ <= NSBelowTop;
        const CGFloat y = top && inside ? NSMaxY(border) - size.height - kTitleGap
            : top                       ? NSMaxY(self.bounds()) - size.height
            : inside                    ? NSMinY(border) + kTitleGap
                                        : NSMinY(self.bounds());
        return NSMakeRect(NSMinX(border) + left, y, std::min(size.width, room), size.height);
    }
    static NSSize around(NSBox& self)
    {
        const Ends e = ends(self);
        const CGFloat line = lineWidth(self);
        return { 2 * (line + self.margins_.width),
            2 * (line + self.margins_.height) + e.top + e.bottom + e.insideTop + e.insideBottom };
    }
    static NSRect contentRect(NSBox& self)
    {
        const Ends e = ends(self);
        const CGFloat line = lineWidth(self);
        return shrunk(borderRect(self), line + self.margins_.width,
            line + self.margins_.height + e.insideBottom,
            line + self.margins_.height + e.insideTop);
    }
    static void tile(NSBox& self)
    {
        const Ref<NSView> content = self.contentView_;
        if (!content)
            return;
        content->setHidden(isSeparator(self));
        content->setFrame(contentRect(self));
    }
    static void resizeSubviews(NSBox& self, NSSize) { tile(self); }

    // ---- content

    static Ref<NSView> contentView(NSBox& self) { return self.contentView_; }
    static void setContentView(NSBox& self, NSView* view)
    {
        if (view && !view->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException", "*** -[NSBox setContentView:]: not a view");
        Ref<NSView> fresh(view);
        if (!fresh)
            fresh = make<NSView>();
        if (fresh == self.contentView_)
            return;
        const Ref<NSBox> alive(&self);
        AllServed all;
        if (const Ref<NSView> old = std::exchange(self.contentView_, nullptr))
            ViewAccess::takeOut(*old, all);
        if (!self.contentView_) { // or the end of editing in the old one has set another one
            super<NSBox, "addSubview:positioned:relativeTo:">(
                self, fresh.get(), NSWindowAbove, static_cast<NSView*>(nullptr));
            self.contentView_ = fresh;
            tile(self);
        }
        all.end();
    }
    // What a host puts into the box goes where it shows.
    static void addSubview(NSBox& self, NSView* view, NSWindowOrderingMode place, NSView* other)
    {
        const Ref<NSView> content = self.contentView_;
        if (content && view != content)
            content->addSubview_positioned_relativeTo(view, place, other);
        else
            super<NSBox, "addSubview:positioned:relativeTo:">(self, view, place, other);
    }
    static void willRemoveSubview(NSBox& self, NSView* view)
    {
        super<NSBox, "willRemoveSubview:">(self, view);
        if (self.contentView_ == view)
            self.contentView_ = nullptr;
    }
    static void sizeToFit(NSBox& self)
    {
        const Ref<NSView> content = self.contentView_;
        NSRect used {};
        for (NSView* view : each<NSView>(maybe(content)->subviews()))
            used = NSUnionRect(used, view->frame());
        const NSSize more = around(self);
        self.setFrameSize({ used.size.width + more.width, used.size.height + more.height });
        const NSPoint shift = used.origin;
        for (NSView* view : each<NSView>(maybe(content)->subviews())) {
            const NSPoint origin = view->frame().origin;
            view->setFrameOrigin({ origin.x - shift.x, origin.y - shift.y });
        }
    }
    static void setFrameFromContent(NSBox& self, NSRect content)
    {
        const NSSize more = around(self);
        const Ends e = ends(self);
        const CGFloat below = lineWidth(self) + self.margins_.height + e.bottom + e.insideBottom;
        self.setFrame(NSMakeRect(NSMinX(content) - more.width / 2, NSMinY(content) - below,
            content.size.width + more.width, content.size.height + more.height));
    }

    // ---- drawing

    static void drawSeparator(NSBox& self)
    {
        const NSRect b = self.bounds();
        const bool upright = b.size.height > b.size.width;
        const CGFloat hair = std::max(controls::pixel(), 1.0);
        const NSRect line = upright
            ? NSMakeRect(NSMidX(b) - hair / 2, NSMinY(b), hair, b.size.height)
            : NSMakeRect(NSMinX(b), NSMidY(b) - hair / 2, b.size.width, hair);
        controls::fillRounded(controls::onPixels(line), 0, controls::shadeOf(self.borderColor()));
    }
    /// A border that leaves its title free.
    static void drawLine(NSBox& self, NSRect rect, CGFloat radius, CGFloat width)
    {
        const GraphicsStateGuard saved;
        const bool breaks = self.titlePlace_ == NSAtTop || self.titlePlace_ == NSAtBottom;
        if (breaks && showsTitle(self)) {
            const NSRect free = NSInsetRect(titleRect(self), -kTitleRoom, 0);
            const NSRect b = self.bounds();
            const NSRect rest[] {
                NSMakeRect(NSMinX(b), NSMinY(b), NSMinX(free) - NSMinX(b), b.size.height),
                NSMakeRect(NSMaxX(free), NSMinY(b), NSMaxX(b) - NSMaxX(free), b.size.height),
                NSMakeRect(NSMinX(b), NSMinY(b), b.size.width, NSMinY(free) - NSMinY(b)),
                NSMakeRect(NSMinX(b), NSMaxY(free), b.size.width, NSMaxY(b) - NSMaxY(free)),
            };
            NSRectClipList(rest, std::size(rest));
        }
        controls::frameRounded(rect, radius, width, controls::shadeOf(self.borderColor()));
    }
    static controls::Shade groundShade()
    {
        const double level = controls::isDark() ? 1 : 0;
        return { level, level, level, controls::isDark() ? 0.045 : 0.035 };
    }
    static void drawBody(NSBox& self)
    {
        const NSRect rect = controls::onPixels(borderRect(self));
        if (NSIsEmptyRect(rect))
            return;
        const CGFloat hair = controls::pixel();
        if (isFilled(self)) {
            controls::fillRounded(rect, kRadius, groundShade());
            return controls::frameRounded(
                rect, kRadius, hair, controls::shadeOf(self.borderColor()));
        }
        if (self.type_ == NSBoxCustom) {
            const bool lined = self.border_ != NSNoBorder && self.borderWidth_ > 0;
            controls::fillRounded(rect, self.radius_, controls::shadeOf(self.fillColor()));
            if (lined)
                drawLine(self, rect, self.radius_, self.borderWidth_);
            return;
        }
        if (self.border_ == NSBezelBorder)
            controls::drawWell(
                rect, 0, {}, controls::shadeOf(NSColor::cls().textBackgroundColor()));
        else if (self.border_ != NSNoBorder)
            drawLine(self, rect, 0, 1);
    }
    static void drawRect(NSBox& self, NSRect)
    {
        if (isSeparator(self))
            return drawSeparator(self);
        if (!self.transparent_)
            drawBody(self);
        if (showsTitle(self))
            maybe(self.titleCell_)->drawWithFrame_inView(titleRect(self), &self);
    }

    // ---- archives

    static void code(const NumberCoding& number, NSBox& self)
    {
        number("NSBoxType"_ns, self.type_, NSBoxCustom);
        number("NSBorderType"_ns, self.border_, NSGrooveBorder);
        number("NSTitlePosition"_ns, self.titlePlace_, NSBelowBottom);
        number("NSBorderWidth"_ns, self.borderWidth_);
        number("NSCornerRadius"_ns, self.radius_);
        number("NSTransparent"_ns, self.transparent_);
        number("NSMarginWidth"_ns, self.margins_.width);
        number("NSMarginHeight"_ns, self.margins_.height);
    }
    static void encode(NSBox& self, NSCoder* coder)
    {
        super<NSBox, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.contentView_.get(), "NSContentView"_ns);
        coder->encodeObject_forKey(self.titleCell_.get(), "NSTitleCell"_ns);
        coder->encodeObject_forKey(self.borderColor_.get(), "NSBorderColor"_ns);
        coder->encodeObject_forKey(self.fillColor_.get(), "NSFillColor"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSBox& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSBox, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        prepare(self);
        if (const Ref<NSCell> cell = decode<NSTextFieldCell>(coder, "NSTitleCell"_ns))
            self.titleCell_ = cell;
        self.borderColor_ = decode<NSColor>(coder, "NSBorderColor"_ns);
        self.fillColor_ = decode<NSColor>(coder, "NSFillColor"_ns);
        code({ coder, true }, self);
        const Ref<NSView> content = decode<NSView>(coder, "NSContentView"_ns);
        if (content && content->superview() == &self)
            self.contentView_ = content;
        else
            self.setContentView(nullptr);
        tile(self);
        return made;
    }

    static void table(Builder& t)
    {
        using B = NSBox;
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "boxType", imp<get<NSBoxType, &B::type_>> },
            { "setBoxType:", imp<set<NSBoxType, &B::type_, NSBoxCustom>> },
            { "borderType", imp<get<NSBorderType, &B::border_>> },
            { "setBorderType:", imp<set<NSBorderType, &B::border_, NSGrooveBorder>> },
            { "titlePosition", imp<get<NSTitlePosition, &B::titlePlace_>> },
            { "setTitlePosition:", imp<set<NSTitlePosition, &B::titlePlace_, NSBelowBottom>> },
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "titleFont", imp<titleFont> },
            { "setTitleFont:", imp<setTitleFont> },
            { "titleCell", imp<titleCell> },
            { "titleRect", imp<titleRect> },
            { "borderRect", imp<borderRect> },
            { "contentView", imp<contentView> },
            { "setContentView:", imp<setContentView> },
            { "contentViewMargins", imp<get<NSSize, &B::margins_>> },
            { "setContentViewMargins:", imp<setMargins> },
            { "sizeToFit", imp<sizeToFit> },
            { "setFrameFromContentFrame:", imp<setFrameFromContent> },
            { "borderColor", imp<borderColor> },
            { "setBorderColor:", imp<setBorderColor> },
            { "fillColor", imp<fillColor> },
            { "setFillColor:", imp<setFillColor> },
            { "borderWidth", imp<get<CGFloat, &B::borderWidth_>> },
            { "setBorderWidth:", imp<setLength<&B::borderWidth_>> },
            { "cornerRadius", imp<get<CGFloat, &B::radius_>> },
            { "setCornerRadius:", imp<setLength<&B::radius_>> },
            { "isTransparent", imp<get<bool, &B::transparent_>> },
            { "setTransparent:", imp<setTransparent> },
            { "addSubview:positioned:relativeTo:", imp<addSubview> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "resizeSubviewsWithOldSize:", imp<resizeSubviews> },
            { "drawRect:", imp<drawRect> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSBox, Boxes)

}
