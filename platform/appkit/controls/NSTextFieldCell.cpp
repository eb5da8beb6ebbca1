// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextFieldCell.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "ControlDrawingPrivate.h"
#include "FieldEditorClipPrivate.h"
#include "NSCellPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/Exceptions.h"
#include "foundation/NSDictionary.h"
#include "quartz/ContextState.h"
#include "runtime/Spare.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr CGFloat kPadding = 2; // between the drawing rectangle's sides and the text
    constexpr CGFloat kBezel = 3;
    constexpr CGFloat kBezelRadius = 4;
    constexpr CGFloat kUnbounded = 1e7;

    bool isAttributed(const Ref<NSObject>& value)
    {
        return value && value->isKindOfClass(NSAttributedString::cls());
    }

    /// What a field's text looks like.
    struct TextLook {
        Ref<NSFont> font;
        Ref<NSColor> color;
        NSTextAlignment alignment;
        NSWritingDirection direction;
        NSLineBreakMode breaks;

        bool isSame(const TextLook& other) const
        {
            return color == other.color && alignment == other.alignment
                && direction == other.direction && breaks == other.breaks
                && font->isEqual(other.font.get());
        }
    };

    /// The attributes of the last few looks. The fields of a window look alike, and are drawn in every frame.
    class LookMemory {
    public:
        static LookMemory& shared()
        {
            static auto* const memory = new LookMemory; // fields are drawn while the process ends
            return *memory;
        }

        Ref<NSDictionary> attributesFor(TextLook look)
        {
            for (const Entry& entry : entries_) {
                if (entry.attributes && entry.look.isSame(look))
                    return entry.attributes;
            }
            Ref<NSDictionary> made = attributesOf(look);
            entries_[next_] = { std::move(look), made };
            next_ = (next_ + 1) % entries_.size();
            return made;
        }

        Ref<NSAttributedString> styled(NSString* text, NSDictionary* attributes)
        {
            const Ref<NSAttributedString> made
                = spare_ ? std::exchange(spare_, nullptr) : alloc<NSAttributedString>();
            return made->initWithString_attributes(text, attributes);
        }
        /// Takes a text that was drawn; it serves the next field unless somebody else keeps it.
        void retire(Ref<NSAttributedString> text)
        {
            if (isSpare(text))
                spare_ = text->initWithString(""_ns);
        }

    private:
        struct Entry {
            TextLook look;
            Ref<NSDictionary> attributes; // never change
        };

        static Ref<NSDictionary> attributesOf(const TextLook& look)
        {
            const Ref<NSMutableParagraphStyle> style = make<NSMutableParagraphStyle>();
            style->setAlignment(look.alignment);
            style->setBaseWritingDirection(look.direction);
            style->setLineBreakMode(look.breaks);
            return makeDictionary({ { NSFontAttributeName, look.font.get() },
                { NSForegroundColorAttributeName, look.color.get() },
                { NSParagraphStyleAttributeName, style->copy().get() } });
        }

        std::array<Entry, 8> entries_ {};
        std::size_t next_ = 0;
        Ref<NSAttributedString> spare_; // without text
    };

}

template <> struct NSTextFieldCell::Methods<struct Drawing> {

    static Ref<NSObject> copyWithZone(NSTextFieldCell& self, void* zone)
    {
        const auto made = super<NSTextFieldCell, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (!made)
            return nullptr;
        auto& copy = static_cast<NSTextFieldCell&>(*made);
        copy.textColor_ = self.textColor_;
        copy.backgroundColor_ = self.backgroundColor_;
        copy.placeholder_ = self.placeholder_;
        copy.attributedPlaceholder_ = self.attributedPlaceholder_;
        copy.maximumNumberOfLines_ = self.maximumNumberOfLines_;
        copy.bezelStyle_ = self.bezelStyle_;
        copy.drawsBackground_ = self.drawsBackground_;
        return made;
    }
    // ---- what it looks like

    static Ref<NSColor> textColor(NSTextFieldCell& self)
    {
        return self.textColor_ ? self.textColor_ : NSColor::cls().controlTextColor();
    }
    static void setTextColor(NSTextFieldCell& self, NSColor* color)
    {
        self.textColor_ = color;
        CellAccess::changed(self);
    }
    static Ref<NSColor> background(NSTextFieldCell& self)
    {
        return self.backgroundColor_ ? self.backgroundColor_ : NSColor::cls().textBackgroundColor();
    }
    static void setBackground(NSTextFieldCell& self, NSColor* color)
    {
        self.backgroundColor_ = color;
        CellAccess::changed(self);
    }
    static bool drawsBackground(NSTextFieldCell& self) { return self.drawsBackground_; }
    static void setDrawsBackground(NSTextFieldCell& self, bool draws)
    {
        self.drawsBackground_ = draws;
        CellAccess::changed(self);
    }
    static NSTextFieldBezelStyle bezelStyle(NSTextFieldCell& self) { return self.bezelStyle_; }
    static void setBezelStyle(NSTextFieldCell& self, NSTextFieldBezelStyle style)
    {
        self.bezelStyle_ = style;
        CellAccess::changed(self);
    }
    static Ref<NSString> placeholder(NSTextFieldCell& self) { return self.placeholder_; }
    static void setPlaceholder(NSTextFieldCell& self, NSString* text)
    {
        self.placeholder_ = text ? cast<NSString>(text->copy()) : nullptr;
        self.attributedPlaceholder_ = nullptr;
        CellAccess::changed(self);
    }
    static Ref<NSAttributedString> attributedPlaceholder(NSTextFieldCell& self)
    {
        return self.attributedPlaceholder_;
    }
    static void setAttributedPlaceholder(NSTextFieldCell& self, NSAttributedString* text)
    {
        self.attributedPlaceholder_ = text ? cast<NSAttributedString>(text->copy()) : nullptr;
        self.placeholder_ = nullptr;
        CellAccess::changed(self);
    }
    static NSInteger maximumNumberOfLines(NSTextFieldCell& self)
    {
        return self.maximumNumberOfLines_;
    }
    static void setMaximumNumberOfLines(NSTextFieldCell& self, NSInteger lines)
    {
        self.maximumNumberOfLines_ = std::max<NSInteger>(lines, 0);
        CellAccess::changed(self);
    }
    static bool isOpaque(NSTextFieldCell& self)
    {
        return self.drawsBackground() && !self.isBezeled()
            && self.backgroundColor()->alphaComponent() >= 1;
    }
    static NSCellHitResult hitTest(NSTextFieldCell& self, NSEvent*, NSRect, NSView*)
    {
        if (!self.isEnabled() || !self.isSelectable())
            return NSCellHitContentArea;
        return NSCellHitContentArea | NSCellHitEditableTextArea;
    }

    // ---- the text

    // Labels have the colour of labels from the beginning.
    static bool isPlain(NSTextFieldCell& self)
    {
        return !self.textColor_ || self.textColor_->isEqual(NSColor::cls().labelColor().get());
    }
    static Ref<NSColor> ink(NSTextFieldCell& self)
    {
        if (!self.isEnabled())
            return NSColor::cls().disabledControlTextColor();
        if (isPlain(self) && self.backgroundStyle() == NSBackgroundStyleDark)
            return NSColor::cls().alternateSelectedControlTextColor();
        return self.textColor();
    }
    static Ref<NSAttributedString> styled(NSTextFieldCell& self, NSString* text, NSColor* color)
    {
        const Ref<NSDictionary> attributes = LookMemory::shared().attributesFor({ self.font(),
            color, self.alignment(), self.baseWritingDirection(), self.lineBreakMode() });
        return LookMemory::shared().styled(text, attributes.get());
    }
    static Ref<NSAttributedString> attributedValue(NSTextFieldCell& self)
    {
        if (isAttributed(self.objectValue()) && !self.formatter())
            return super<NSTextFieldCell, "attributedStringValue", Ref<NSAttributedString>>(self);
        return styled(self, self.stringValue().get(), ink(self).get());
    }
    static Ref<NSAttributedString> shown(NSTextFieldCell& self)
    {
        Ref<NSAttributedString> text = self.attributedStringValue();
        if (text->length())
            return text;
        if (self.attributedPlaceholder_)
            return self.attributedPlaceholder_;
        if (!self.placeholder_)
            return text;
        return styled(self, self.placeholder_.get(), NSColor::cls().placeholderTextColor().get());
    }

    // ---- measuring

    static CGFloat border(NSTextFieldCell& self)
    {
        return self.isBezeled() ? kBezel : self.isBordered() ? 1 : 0;
    }
    static CGFloat lineHeight(NSTextFieldCell& self)
    {
        return make<NSLayoutManager>()->defaultLineHeightForFont(self.font().get());
    }
    static NSSize textSize(NSTextFieldCell& self, CGFloat width)
    {
        const Ref<NSAttributedString> text = shown(self);
        const CGFloat line = lineHeight(self);
        if (!text->length())
            return { 0, line };
        const bool wraps = self.wraps() && width < kUnbounded;
        const NSSize room { wraps ? std::max(width, 1.0) : 0.0, 0 };
        const NSSize size = wraps
            ? boundingRectWithSize_options(text, room, NSStringDrawingUsesLineFragmentOrigin).size
            : brindle::size(text);
        CGFloat height = std::max(std::ceil(size.height), line);
        if (self.maximumNumberOfLines_ > 0)
            height = std::min(height, line * static_cast<CGFloat>(self.maximumNumberOfLines_));
        return { std::ceil(size.width), height };
    }
    static NSSize cellSize(NSTextFieldCell& self)
    {
        return self.cellSizeForBounds({ {}, { kUnbounded, kUnbounded } });
    }
    static NSSize cellSizeForBounds(NSTextFieldCell& self, NSRect bounds)
    {
        const CGFloat around = 2 * border(self);
        const CGFloat sides = around + 2 * kPadding;
        const NSSize text = textSize(
            self, bounds.size.width < kUnbounded ? bounds.size.width - sides : kUnbounded);
        return { std::min(text.width + sides, bounds.size.width),
            std::min(text.height + around, bounds.size.height) };
    }
    static NSRect drawingRect(NSTextFieldCell& self, NSRect bounds)
    {
        NSRect rect = NSInsetRect(bounds, border(self), border(self));
        if (self.isBezeled() && self.bezelStyle_ == NSTextFieldRoundedBezel)
            rect = NSInsetRect(rect, kBezel, 0);
        if (!self.usesSingleLineMode())
            return rect;
        const CGFloat spare = std::floor((rect.size.height - lineHeight(self)) / 2);
        return spare > 0 ? NSInsetRect(rect, 0, spare) : rect;
    }
    static NSRect titleRect(NSTextFieldCell& self, NSRect bounds)
    {
        return NSInsetRect(self.drawingRectForBounds(bounds), kPadding, 0);
    }

    // ---- drawing

    static CGFloat radius(NSTextFieldCell& self, NSRect frame)
    {
        return self.bezelStyle_ == NSTextFieldRoundedBezel ? frame.size.height / 2 : kBezelRadius;
    }
    static void drawGround(NSTextFieldCell& self, NSRect frame)
    {
        const Ref<NSColor> ground = self.backgroundColor();
        if (self.isBezeled()) {
            const auto shade = self.drawsBackground() ? controls::shadeOf(ground)
                                                      : controls::Shade { 0, 0, 0, 0 };
            controls::drawWell(controls::onPixels(frame), radius(self, frame),
                { .enabled = self.isEnabled() }, shade);
            return;
        }
        if (self.drawsBackground())
            ground->drawSwatchInRect(frame);
        if (self.isBordered())
            controls::frameRounded(controls::onPixels(frame), 0, 1,
                controls::shadeOf(NSColor::cls().controlDarkShadowColor()));
    }
    static void draw(NSTextFieldCell& self, NSRect frame, NSView* view)
    {
        drawGround(self, frame);
        self.drawInteriorWithFrame_inView(frame, view);
        const bool rings = self.showsFirstResponder() && self.isEditable()
            && self.focusRingType() != NSFocusRingTypeNone;
        if (rings) {
            const CGFloat inset = controls::kRingRoom;
            const bool rounds = self.isBezeled();
            controls::drawRing(controls::onPixels(NSInsetRect(frame, inset, inset)),
                rounds ? std::max(radius(self, frame) - inset, 1.0) : 0);
        }
    }
    static void drawInterior(NSTextFieldCell& self, NSRect frame, NSView* view)
    {
        if (FieldEditorClip::of(self, view))
            return; // the editor shows the text
        Ref<NSAttributedString> text = shown(self);
        if (!text->length())
            return;
        const NSRect rect = self.titleRectForBounds(frame);
        NSStringDrawingOptions options = NSStringDrawingUsesLineFragmentOrigin;
        if (self.truncatesLastVisibleLine())
            options |= NSStringDrawingTruncatesLastVisibleLine;
        const NSRect room = NSInsetRect(rect, -kPadding, 0);
        const GraphicsStateGuard saved;
        quartz::clipToTouchedPixels(currentCGContext().get(), { &room, 1 });
        drawWithRect_options(text, rect, options);
        LookMemory::shared().retire(std::move(text));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "copyWithZone:", imp<copyWithZone> },
            { "textColor", imp<textColor> },
            { "setTextColor:", imp<setTextColor> },
            { "backgroundColor", imp<background> },
            { "setBackgroundColor:", imp<setBackground> },
            { "drawsBackground", imp<drawsBackground> },
            { "setDrawsBackground:", imp<setDrawsBackground> },
            { "bezelStyle", imp<bezelStyle> },
            { "setBezelStyle:", imp<setBezelStyle> },
            { "placeholderString", imp<placeholder> },
            { "setPlaceholderString:", imp<setPlaceholder> },
            { "placeholderAttributedString", imp<attributedPlaceholder> },
            { "setPlaceholderAttributedString:", imp<setAttributedPlaceholder> },
            { "maximumNumberOfLines", imp<maximumNumberOfLines> },
            { "setMaximumNumberOfLines:", imp<setMaximumNumberOfLines> },
            { "isOpaque", imp<isOpaque> },
            { "hitTestForEvent:inRect:ofView:", imp<hitTest> },
            { "attributedStringValue", imp<attributedValue> },
            { "cellSize", imp<cellSize> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawingRectForBounds:", imp<drawingRect> },
            { "titleRectForBounds:", imp<titleRect> },
            { "drawWithFrame:inView:", imp<draw> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
        });
    }
};
BRINDLE_RECORD(NSTextFieldCell, Drawing)

}
