// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCell.h"

#include "NSCellPrivate.h"
#include "appkit/NSView.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

void CellAccess::changed(NSCell& cell)
{
    const Ref<NSView> view = cell.controlView();
    if (view && view->respondsToSelector(selector<"updateCell:">))
        view->send<"updateCell:">(&cell);
}

template <> struct NSCell::Methods<struct Basics> {

    static CellAttributes& of(NSCell& self) { return CellAccess::of(self); }

    // ---- making

    static Ref<NSObject> init(NSCell& self) { return self.initTextCell(""_ns); }
    static Ref<NSCell> initTextCell(NSCell& self, NSString* text)
    {
        of(self).type = NSTextCellType;
        of(self).contents = text ? text->copy() : nullptr;
        return &self;
    }
    static Ref<NSCell> initImageCell(NSCell& self, NSImage* image)
    {
        self.setImage(image);
        return &self;
    }
    static Ref<NSObject> copyWithZone(NSCell& self, void*)
    {
        const Ref<NSCell> made = cast<NSCell>(self.classObject()->send<"alloc", Ref<NSObject>>());
        const Ref<NSObject> copy = made->init();
        if (!copy)
            return nullptr;
        of(*made) = of(self);
        made->controlView_ = self.controlView_;
        return copy;
    }

    // ---- kind

    static void setType(NSCell& self, NSCellType type)
    {
        CellAttributes& attributes = of(self);
        if (type > NSImageCellType || attributes.type == type)
            return;
        attributes.type = type;
        if (type == NSTextCellType && !attributes.contents)
            attributes.contents = "Cell"_ns;
        if (type == NSImageCellType)
            attributes.contents = nullptr;
        CellAccess::changed(self);
    }
    static Ref<NSView> controlView(NSCell& self) { return self.controlView_.get(); }
    static void setControlView(NSCell& self, NSView* view) { self.controlView_ = view; }
    static bool no(NSCell&) { return false; }
    static bool no(Class&) { return false; }
    static NSFocusRingType defaultRing(Class&) { return NSFocusRingTypeDefault; }
    static Ref<NSObject> none(Class&) { return nullptr; }
    static Ref<NSMenu> menuForEvent(NSCell& self, NSEvent*, NSRect, NSView*) { return self.menu(); }

    // ---- state

    static void setState(NSCell& self, NSCellStateValue state)
    {
        CellAttributes& attributes = of(self);
        const bool mixed = attributes.allowsMixed && state < 0;
        const NSCellStateValue wanted = state == 0 ? NSOffState : mixed ? NSMixedState : NSOnState;
        if (std::exchange(attributes.state, wanted) != wanted)
            CellAccess::changed(self);
    }
    static void setAllowsMixedState(NSCell& self, bool allows)
    {
        of(self).allowsMixed = allows;
        if (!allows && of(self).state == NSMixedState)
            self.setState(NSOnState);
    }
    // On, off, mixed, on; without the mixed state on, off, on.
    static NSCellStateValue nextState(NSCell& self)
    {
        const NSCellStateValue state = self.state();
        if (state == NSOnState)
            return NSOffState;
        return state == NSOffState && self.allowsMixedState() ? NSMixedState : NSOnState;
    }
    static void setNextState(NSCell& self) { self.setState(self.nextState()); }
    static void highlight(NSCell& self, bool highlight, NSRect frame, NSView* view)
    {
        self.setHighlighted(highlight);
        maybe(view)->setNeedsDisplayInRect(frame);
    }

    // ---- text settings that go together

    static void setWraps(NSCell& self, bool wraps)
    {
        CellAttributes& attributes = of(self);
        attributes.wraps = wraps;
        attributes.lineBreakMode = wraps ? NSLineBreakByWordWrapping : NSLineBreakByClipping;
        if (wraps)
            attributes.scrollable = false;
        CellAccess::changed(self);
    }
    static void setScrollable(NSCell& self, bool scrollable)
    {
        of(self).scrollable = scrollable;
        if (scrollable)
            self.setWraps(false);
        CellAccess::changed(self);
    }
    static void setLineBreakMode(NSCell& self, NSLineBreakMode mode)
    {
        CellAttributes& attributes = of(self);
        const bool wraps = mode <= NSLineBreakByCharWrapping;
        attributes.lineBreakMode
            = mode <= NSLineBreakByTruncatingMiddle ? mode : NSLineBreakByWordWrapping;
        attributes.wraps = wraps;
        if (wraps)
            attributes.scrollable = false;
        CellAccess::changed(self);
    }
    static void setEditable(NSCell& self, bool editable)
    {
        of(self).editable = editable;
        if (editable)
            of(self).selectable = true;
        CellAccess::changed(self);
    }
    static void setSelectable(NSCell& self, bool selectable)
    {
        of(self).selectable = selectable;
        if (!selectable)
            of(self).editable = false;
        CellAccess::changed(self);
    }
    static void setBordered(NSCell& self, bool bordered)
    {
        of(self).bordered = bordered;
        if (bordered)
            of(self).bezeled = false;
        CellAccess::changed(self);
    }
    static void setBezeled(NSCell& self, bool bezeled)
    {
        of(self).bezeled = bezeled;
        if (bezeled)
            of(self).bordered = false;
        CellAccess::changed(self);
    }
    static Ref<NSFont> font(NSCell& self)
    {
        if (const Ref<NSFont>& font = of(self).font)
            return font;
        return NSFont::cls().systemFontOfSize(
            NSFont::cls().systemFontSizeForControlSize(self.controlSize()));
    }
    static void setFont(NSCell& self, NSFont* font)
    {
        if (font && !font->isKindOfClass(NSFont::cls()))
            raise("NSInvalidArgumentException", "*** -[NSCell setFont:]: not a font");
        of(self).font = font;
        CellAccess::changed(self);
    }

    // ---- target and action: a plain cell has none

    [[noreturn]] static void refuse(const char* selector)
    {
        raise("NSInternalInconsistencyException",
            std::string("*** -[NSCell ") + selector + "]: only action cells keep it");
    }
    static void setTarget(NSCell&, NSObject*) { refuse("setTarget:"); }
    static void setAction(NSCell&, SEL) { refuse("setAction:"); }
    static void setTag(NSCell&, NSInteger) { refuse("setTag:"); }
    static Ref<NSObject> target(NSCell&) { return nullptr; }
    static SEL action(NSCell&) { return {}; }
    static NSInteger tag(NSCell&) { return -1; }
    static NSInteger sendActionOn(NSCell& self, NSEventMask mask)
    {
        return static_cast<NSInteger>(std::exchange(of(self).sendsOn, mask));
    }
    static NSInteger mouseDownFlags(NSCell& self)
    {
        return static_cast<NSInteger>(of(self).sendsOn);
    }
    static bool isContinuous(NSCell& self) { return (of(self).sendsOn & NSPeriodicMask) != 0; }
    static void setContinuous(NSCell& self, bool continuous)
    {
        NSEventMask& mask = of(self).sendsOn;
        mask = continuous ? mask | NSPeriodicMask : mask & ~NSPeriodicMask;
    }

    // ---- keyboard

    static bool acceptsFirstResponder(NSCell& self)
    {
        return self.isEnabled() && !self.refusesFirstResponder();
    }
    // Told while it is drawn, so it marks nothing.
    static void setShowsFirstResponder(NSCell& self, bool shows)
    {
        of(self).showsFirstResponder = shows;
    }
    static Ref<NSString> keyEquivalent(NSCell&) { return ""_ns; }

    static void table(Builder& t)
    {
        using A = CellAttributes;
        t.classMethods({
            { "prefersTrackingUntilMouseUp", imp<static_cast<bool (*)(Class&)>(no)> },
            { "defaultFocusRingType", imp<defaultRing> },
            { "defaultMenu", imp<none> },
        });
        t.methods({
            { "init", imp<init> },
            { "initTextCell:", imp<initTextCell> },
            { "initImageCell:", imp<initImageCell> },
            { "copyWithZone:", imp<copyWithZone> },
            { "type", imp<CellField<&A::type>::get> },
            { "setType:", imp<setType> },
            { "controlView", imp<controlView> },
            { "setControlView:", imp<setControlView> },
            { "representedObject", imp<CellField<&A::represented>::get> },
            { "setRepresentedObject:", imp<CellField<&A::represented>::set> },
            { "isEnabled", imp<CellField<&A::enabled>::get> },
            { "setEnabled:", imp<CellField<&A::enabled>::set> },
            { "isOpaque", imp<static_cast<bool (*)(NSCell&)>(no)> },
            { "controlSize", imp<CellField<&A::controlSize>::get> },
            { "setControlSize:", imp<CellField<&A::controlSize>::set> },
            { "controlTint", imp<CellField<&A::controlTint>::get> },
            { "setControlTint:", imp<CellField<&A::controlTint>::set> },
            { "backgroundStyle", imp<CellField<&A::backgroundStyle>::get> },
            { "setBackgroundStyle:", imp<CellField<&A::backgroundStyle>::set> },
            { "interiorBackgroundStyle", imp<CellField<&A::backgroundStyle>::get> },
            { "menu", imp<CellField<&A::menu>::get> },
            { "setMenu:", imp<CellField<&A::menu>::set> },
            { "menuForEvent:inRect:ofView:", imp<menuForEvent> },
            { "state", imp<CellField<&A::state>::get> },
            { "setState:", imp<setState> },
            { "allowsMixedState", imp<CellField<&A::allowsMixed>::get> },
            { "setAllowsMixedState:", imp<setAllowsMixedState> },
            { "nextState", imp<nextState> },
            { "setNextState", imp<setNextState> },
            { "isHighlighted", imp<CellField<&A::highlighted>::get> },
            { "setHighlighted:", imp<CellField<&A::highlighted>::set> },
            { "highlight:withFrame:inView:", imp<highlight> },
        });
        t.methods({
            { "font", imp<font> },
            { "setFont:", imp<setFont> },
            { "alignment", imp<CellField<&A::alignment>::get> },
            { "setAlignment:", imp<CellField<&A::alignment>::set> },
            { "baseWritingDirection", imp<CellField<&A::writingDirection>::get> },
            { "setBaseWritingDirection:", imp<CellField<&A::writingDirection>::set> },
            { "wraps", imp<CellField<&A::wraps>::get> },
            { "setWraps:", imp<setWraps> },
            { "isScrollable", imp<CellField<&A::scrollable>::get> },
            { "setScrollable:", imp<setScrollable> },
            { "lineBreakMode", imp<CellField<&A::lineBreakMode>::get> },
            { "setLineBreakMode:", imp<setLineBreakMode> },
            { "truncatesLastVisibleLine", imp<CellField<&A::truncatesLastLine>::get> },
            { "setTruncatesLastVisibleLine:", imp<CellField<&A::truncatesLastLine>::set> },
            { "usesSingleLineMode", imp<CellField<&A::singleLine>::get> },
            { "setUsesSingleLineMode:", imp<CellField<&A::singleLine>::set> },
            { "isEditable", imp<CellField<&A::editable>::get> },
            { "setEditable:", imp<setEditable> },
            { "isSelectable", imp<CellField<&A::selectable>::get> },
            { "setSelectable:", imp<setSelectable> },
            { "allowsUndo", imp<CellField<&A::allowsUndo>::get> },
            { "setAllowsUndo:", imp<CellField<&A::allowsUndo>::set> },
            { "isBordered", imp<CellField<&A::bordered>::get> },
            { "setBordered:", imp<setBordered> },
            { "isBezeled", imp<CellField<&A::bezeled>::get> },
            { "setBezeled:", imp<setBezeled> },
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "action", imp<action> },
            { "setAction:", imp<setAction> },
            { "tag", imp<tag> },
            { "setTag:", imp<setTag> },
            { "sendActionOn:", imp<sendActionOn> },
            { "mouseDownFlags", imp<mouseDownFlags> },
            { "isContinuous", imp<isContinuous> },
            { "setContinuous:", imp<setContinuous> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "refusesFirstResponder", imp<CellField<&A::refusesFirstResponder>::get> },
            { "setRefusesFirstResponder:", imp<CellField<&A::refusesFirstResponder>::set> },
            { "showsFirstResponder", imp<CellField<&A::showsFirstResponder>::get> },
            { "setShowsFirstResponder:", imp<setShowsFirstResponder> },
            { "focusRingType", imp<CellField<&A::focusRingType>::get> },
            { "setFocusRingType:", imp<CellField<&A::focusRingType>::set> },
            { "keyEquivalent", imp<keyEquivalent> },
        });
        t.conformsTo({ "NSCopying" });
    }
};
BRINDLE_RECORD(NSCell, Basics)

}
