// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSearchFieldCell.h"

#include <algorithm>

#include "ControlDrawingPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSView.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSUserDefaults.h"

namespace brindle {

template <> struct NSSearchFieldCell::Methods<struct Searching> {

    static constexpr CGFloat kGlass = 18; // room for the glass, and for the cross
    static constexpr CGFloat kCross = 14; // diameter of the clearing button

    // ---- making

    static Ref<NSCell> initTextCell(NSSearchFieldCell& self, NSString* text)
    {
        Ref<NSCell> made = super<NSSearchFieldCell, "initTextCell:", Ref<NSCell>>(self, text);
        self.setBezelStyle(NSTextFieldRoundedBezel);
        self.setUsesSingleLineMode(true);
        self.setPlaceholderString("Search"_ns);
        return made;
    }
    static Ref<NSObject> copyWithZone(NSSearchFieldCell& self, void* zone)
    {
        const Ref<NSSearchFieldCell> copy = cast<NSSearchFieldCell>(
            super<NSSearchFieldCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->recents_ = self.recents_;
        copy->autosaveName_ = self.autosaveName_;
        copy->maximumRecents_ = self.maximumRecents_;
        copy->whole_ = self.whole_;
        copy->immediately_ = self.immediately_;
        return copy;
    }

    // ---- places

    static NSRect searchRect(NSSearchFieldCell& self, NSRect bounds)
    {
        const NSRect room = super<NSSearchFieldCell, "drawingRectForBounds:", NSRect>(self, bounds);
        return NSMakeRect(
            NSMinX(room), NSMinY(bounds), std::min(kGlass, room.size.width), bounds.size.height);
    }
    static bool hasText(NSSearchFieldCell& self)
    {
        const Ref<NSView> view = self.controlView();
        const bool asks = view && view->respondsToSelector(selector<"stringValue">);
        const Ref<NSString> text
            = asks ? view->send<"stringValue", Ref<NSString>>() : self.stringValue();
        return maybe(text)->length() > 0;
    }
    static NSRect cancelRect(NSSearchFieldCell& self, NSRect bounds)
    {
        const NSRect room = super<NSSearchFieldCell, "drawingRectForBounds:", NSRect>(self, bounds);
        if (!hasText(self) || room.size.width < 2 * kGlass)
            return {};
        return NSMakeRect(NSMaxX(room) - kGlass, NSMinY(bounds), kGlass, bounds.size.height);
    }
    static NSRect textRect(NSSearchFieldCell& self, NSRect bounds)
    {
        NSRect room = super<NSSearchFieldCell, "drawingRectForBounds:", NSRect>(self, bounds);
        const CGFloat glass = std::min(kGlass, room.size.width);
        room.origin.x += glass;
        room.size.width = std::max(0.0, room.size.width - 2 * glass);
        return room;
    }

    // ---- drawing

    static NSPoint at(NSRect box, double x, double y, bool down)
    {
        return { NSMidX(box) + x, NSMidY(box) + (down ? y : -y) };
    }
    static void drawGlass(NSSearchFieldCell& self, NSRect rect, bool down)
    {
        const auto ink
            = controls::shadeOf(self.isEnabled() ? NSColor::cls().secondaryLabelColor()
                                                 : NSColor::cls().quaternaryLabelColor());
        const NSPoint lens = at(rect, -0.5, -1, down);
        controls::frameRounded(NSMakeRect(lens.x - 4.5, lens.y - 4.5, 9, 9), 4.5, 1.4, ink);
        const NSPoint handle[] { at(rect, 2.6, 2.1, down), at(rect, 5.4, 4.9, down) };
        controls::strokeLine(handle, 2, 1.6, ink);
    }
    static void drawCross(NSRect rect, bool down)
    {
        const auto ground = controls::shadeOf(NSColor::cls().secondaryLabelColor());
        const auto ink = controls::shadeOf(NSColor::cls().textBackgroundColor());
        controls::fillRounded(
            NSMakeRect(NSMidX(rect) - kCross / 2, NSMidY(rect) - kCross / 2, kCross, kCross),
            kCross / 2, ground);
        const NSPoint falling[] { at(rect, -2.5, -2.5, down), at(rect, 2.5, 2.5, down) };
        const NSPoint rising[] { at(rect, -2.5, 2.5, down), at(rect, 2.5, -2.5, down) };
        controls::strokeLine(falling, 2, 1.3, ink);
        controls::strokeLine(rising, 2, 1.3, ink);
    }
    static void drawInterior(NSSearchFieldCell& self, NSRect frame, NSView* view)
    {
        const bool down = !view || view->isFlipped();
        drawGlass(self, self.searchButtonRectForBounds(frame), down);
        const NSRect cancel = self.cancelButtonRectForBounds(frame);
        if (!NSIsEmptyRect(cancel) && self.isEnabled() && self.isEditable())
            drawCross(cancel, down);
        super<NSSearchFieldCell, "drawInteriorWithFrame:inView:">(self, frame, view);
    }

    // ---- what was searched for

    static Ref<NSArray> recents(NSSearchFieldCell& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.recents_.begin(), self.recents_.end()));
    }
    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }
    static void cutAndSave(NSSearchFieldCell& self)
    {
        if (static_cast<NSInteger>(self.recents_.size()) > self.maximumRecents_)
            self.recents_.resize(static_cast<std::size_t>(self.maximumRecents_));
        if (maybe(self.autosaveName_)->length())
            defaults()->setObject_forKey(recents(self).get(), self.autosaveName_.get());
    }
    static void takeRecents(NSSearchFieldCell& self, NSArray* texts)
    {
        self.recents_.clear();
        for (NSObject* text : each(Ref<NSArray>(texts))) {
            if (text->isKindOfClass(NSString::cls()))
                self.recents_.push_back(cast<NSString>(text->copy()));
        }
    }
    static void setRecents(NSSearchFieldCell& self, NSArray* texts)
    {
        takeRecents(self, texts);
        cutAndSave(self);
    }
    static void addRecent(NSSearchFieldCell& self, NSString* text)
    {
        if (!maybe(text)->length())
            return;
        const Ref<NSString> kept = cast<NSString>(text->copy());
        std::erase_if(
            self.recents_, [&](const Ref<NSString>& known) { return known->isEqual(kept.get()); });
        self.recents_.insert(self.recents_.begin(), kept);
        cutAndSave(self);
    }
    static NSInteger maximum(NSSearchFieldCell& self) { return self.maximumRecents_; }
    static void setMaximum(NSSearchFieldCell& self, NSInteger count)
    {
        self.maximumRecents_ = std::clamp<NSInteger>(count, 0, 254);
        cutAndSave(self);
    }
    static Ref<NSString> autosaveName(NSSearchFieldCell& self) { return self.autosaveName_; }
    static void setAutosaveName(NSSearchFieldCell& self, NSString* name)
    {
        self.autosaveName_ = name ? cast<NSString>(name->copy()) : nullptr;
        if (!maybe(name)->length())
            return;
        if (const Ref<NSArray> saved = defaults()->arrayForKey(name))
            takeRecents(self, saved.get());
    }

    template <bool NSSearchFieldCell::*Field> static bool get(NSSearchFieldCell& self)
    {
        return self.*Field;
    }
    template <bool NSSearchFieldCell::*Field> static void set(NSSearchFieldCell& self, bool value)
    {
        self.*Field = value;
    }

    // ---- archives

    static void code(const NumberCoding& number, NSSearchFieldCell& self)
    {
        number("NSMaximumRecents"_ns, self.maximumRecents_);
        number("NSSendsWholeSearchString"_ns, self.whole_);
        number("NSSendsSearchStringImmediately"_ns, self.immediately_);
        self.maximumRecents_ = std::clamp<NSInteger>(self.maximumRecents_, 0, 254);
    }
    static void encode(NSSearchFieldCell& self, NSCoder* coder)
    {
        super<NSSearchFieldCell, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(recents(self).get(), "NSRecentSearches"_ns);
        coder->encodeObject_forKey(self.autosaveName_.get(), "NSRecentsAutosaveName"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSSearchFieldCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSSearchFieldCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        code({ coder, true }, self);
        self.recents_ = decodeAll<NSString>(coder, "NSRecentSearches"_ns);
        self.autosaveName_ = decode<NSString>(coder, "NSRecentsAutosaveName"_ns);
        return made;
    }

    static void table(Builder& t)
    {
        using C = NSSearchFieldCell;
        t.methods({
            { "initTextCell:", imp<initTextCell> },
            { "copyWithZone:", imp<copyWithZone> },
            { "searchButtonRectForBounds:", imp<searchRect> },
            { "cancelButtonRectForBounds:", imp<cancelRect> },
            { "searchTextRectForBounds:", imp<textRect> },
            { "drawingRectForBounds:", imp<textRect> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "recentSearches", imp<recents> },
            { "setRecentSearches:", imp<setRecents> },
            { "addRecentSearch:", imp<addRecent> },
            { "maximumRecents", imp<maximum> },
            { "setMaximumRecents:", imp<setMaximum> },
            { "recentsAutosaveName", imp<autosaveName> },
            { "setRecentsAutosaveName:", imp<setAutosaveName> },
            { "sendsWholeSearchString", imp<get<&C::whole_>> },
            { "setSendsWholeSearchString:", imp<set<&C::whole_>> },
            { "sendsSearchStringImmediately", imp<get<&C::immediately_>> },
            { "setSendsSearchStringImmediately:", imp<set<&C::immediately_>> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSSearchFieldCell, Searching)

}
