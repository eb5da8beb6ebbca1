// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPopUpButtonCell.h"

#include <algorithm>

#include "NSButtonPrivate.h"
#include "appkit/NSPopUpButton.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/menus/MenuSessionPrivate.h"
#include "foundation/CodingTable.h"
#include "foundation/Exceptions.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSPopUpButtonCell::Methods<struct Items> {

    static NSMenu& menuOf(NSPopUpButtonCell& self)
    {
        Ref<NSObject>& menu = CellAccess::of(self).menu;
        if (!menu)
            menu = make<NSMenu>();
        return static_cast<NSMenu&>(*menu);
    }

    // ---- making

    static Ref<NSPopUpButtonCell> initPullsDown(
        NSPopUpButtonCell& self, NSString* text, bool pullsDown)
    {
        if (!super<NSPopUpButtonCell, "initTextCell:", Ref<NSCell>>(self, ""_ns))
            return nullptr;
        CellAccess::of(self).alignment = NSTextAlignmentLeft;
        self.pullsDown_ = pullsDown;
        if (text && text->length())
            self.addItemWithTitle(text);
        return &self;
    }
    static Ref<NSCell> initTextCell(NSPopUpButtonCell& self, NSString* text)
    {
        return self.initTextCell_pullsDown(text, false);
    }
    static Ref<NSObject> init(NSPopUpButtonCell& self) { return self.initTextCell(nullptr); }
    static Ref<NSObject> copyWithZone(NSPopUpButtonCell& self, void* zone)
    {
        const Ref<NSPopUpButtonCell> copy = cast<NSPopUpButtonCell>(
            super<NSPopUpButtonCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->edge_ = self.edge_;
        copy->arrow_ = self.arrow_;
        copy->pullsDown_ = self.pullsDown_;
        copy->usesItem_ = self.usesItem_;
        copy->altersState_ = self.altersState_;
        CellAccess::of(*copy).menu = menuOf(self).copy();
        const NSInteger index = self.indexOfSelectedItem();
        copy->selected_ = index < 0 ? Ref<NSMenuItem>() : menuOf(*copy).itemAtIndex(index);
        return copy;
    }

    static void encode(NSPopUpButtonCell& self, NSCoder* coder)
    {
        super<NSPopUpButtonCell, "encodeWithCoder:">(self, coder);
        coder->encodeInteger_forKey(self.indexOfSelectedItem(), "NSSelectedIndex"_ns);
        coder->encodeBool_forKey(self.pullsDown_, "NSPullDown"_ns);
        coder->encodeBool_forKey(!self.altersState_, "NSKeepsState"_ns);
    }
    static Ref<NSObject> initWithCoder(NSPopUpButtonCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSPopUpButtonCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.pullsDown_ = coder->decodeBoolForKey("NSPullDown"_ns);
        self.altersState_ = !coder->decodeBoolForKey("NSKeepsState"_ns);
        const NSInteger index = coder->decodeIntegerForKey("NSSelectedIndex"_ns);
        if (index >= 0 && index < menuOf(self).numberOfItems())
            self.selected_ = menuOf(self).itemAtIndex(index);
        return made;
    }

    // ---- settings

    template <auto Field> struct Access;
    template <class T, T NSPopUpButtonCell::*Field> struct Access<Field> {
        static T get(NSPopUpButtonCell& self) { return self.*Field; }
        static void set(NSPopUpButtonCell& self, T value)
        {
            self.*Field = value;
            CellAccess::changed(self);
        }
    };
    static bool autoenables(NSPopUpButtonCell& self) { return menuOf(self).autoenablesItems(); }
    static void setAutoenables(NSPopUpButtonCell& self, bool enables)
    {
        menuOf(self).setAutoenablesItems(enables);
    }
    static Ref<NSMenu> menu(NSPopUpButtonCell& self) { return &menuOf(self); }
    static void setMenu(NSPopUpButtonCell& self, NSMenu* menu)
    {
        if (menu && !menu->isKindOfClass(NSMenu::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSPopUpButtonCell setMenu:]: the menu is of another kind");
        CellAccess::of(self).menu = menu;
        self.synchronizeTitleAndSelectedItem();
    }

    // ---- items

    static void insertTitled(NSPopUpButtonCell& self, NSString* title, NSInteger index)
    {
        NSMenu& menu = menuOf(self);
        const NSInteger before = title ? menu.indexOfItemWithTitle(title) : -1;
        const NSInteger count = menu.numberOfItems() - (before >= 0 ? 1 : 0);
        if (before >= 0 && index >= 0) // the menu raises for a place before the first
            menu.removeItemAtIndex(before);
        menu.insertItemWithTitle_action_keyEquivalent_atIndex(
            title, SEL {}, nullptr, before >= 0 ? std::min(index, count) : index);
        self.synchronizeTitleAndSelectedItem();
    }
    static void addTitled(NSPopUpButtonCell& self, NSString* title)
    {
        self.insertItemWithTitle_atIndex(title, self.numberOfItems());
    }
    static void addTitles(NSPopUpButtonCell& self, NSArray* titles)
    {
        for (NSString* title : each<NSString>(Ref<NSArray>(titles)))
            self.addItemWithTitle(title);
    }
    static void removeAt(NSPopUpButtonCell& self, NSInteger index)
    {
        menuOf(self).removeItemAtIndex(index);
        self.synchronizeTitleAndSelectedItem();
    }
    static void removeTitled(NSPopUpButtonCell& self, NSString* title)
    {
        if (const NSInteger index = menuOf(self).indexOfItemWithTitle(title); index >= 0)
            self.removeItemAtIndex(index);
    }
    static void removeAll(NSPopUpButtonCell& self)
    {
        menuOf(self).removeAllItems();
        self.synchronizeTitleAndSelectedItem();
    }
    template <Text S, class R, class... A> static R ask(NSPopUpButtonCell& self, A... arguments)
    {
        return menuOf(self).send<S, R>(arguments...);
    }
    static Ref<NSArray> itemTitles(NSPopUpButtonCell& self)
    {
        const Ref<NSMutableArray> titles = make<NSMutableArray>();
        for (NSMenuItem* item : each<NSMenuItem>(self.itemArray()))
            titles->addObject(item->title().get());
        return titles;
    }
    static Ref<NSString> titleAt(NSPopUpButtonCell& self, NSInteger index)
    {
        return self.itemAtIndex(index)->title();
    }
    static Ref<NSMenuItem> lastItem(NSPopUpButtonCell& self)
    {
        const NSInteger count = self.numberOfItems();
        return count ? self.itemAtIndex(count - 1) : nullptr;
    }

    // ---- selection

    static Ref<NSMenuItem> selectedItem(NSPopUpButtonCell& self)
    {
        const bool isIn = self.selected_ && MenuItemAccess::menu(*self.selected_) == &menuOf(self);
        return isIn ? self.selected_ : nullptr;
    }
    static void select(NSPopUpButtonCell& self, NSMenuItem* lent)
    {
        const Ref<NSMenuItem> item(
            lent && self.indexOfItem(lent) >= 0 ? lent : static_cast<NSMenuItem*>(nullptr));
        const bool marks = self.altersState_ && !self.pullsDown_;
        if (self.selected_ && self.selected_ != item && marks)
            self.selected_->setState(NSOffState);
        self.selected_ = item;
        if (marks)
            maybe(item)->setState(NSOnState);
        CellAccess::changed(self);
    }
    static void selectAt(NSPopUpButtonCell& self, NSInteger index)
    {
        self.selectItem(index == -1 ? nullptr : self.itemAtIndex(index).get());
    }
    static void selectTitled(NSPopUpButtonCell& self, NSString* title)
    {
        self.selectItem(menuOf(self).itemWithTitle(title).get());
    }
    static bool selectTagged(NSPopUpButtonCell& self, NSInteger tag)
    {
        const Ref<NSMenuItem> item = menuOf(self).itemWithTag(tag);
        if (item)
            self.selectItem(item.get());
        return item != nullptr;
    }
    static NSInteger indexOfSelected(NSPopUpButtonCell& self)
    {
        return self.indexOfItem(self.selectedItem().get());
    }
    static Ref<NSString> titleOfSelected(NSPopUpButtonCell& self)
    {
        return maybe(self.selectedItem())->title();
    }
    static void synchronize(NSPopUpButtonCell& self)
    {
        if (!self.selectedItem() && self.numberOfItems() && !self.pullsDown_)
            self.selectItemAtIndex(0);
        CellAccess::changed(self);
    }
    static Ref<NSObject> objectValue(NSPopUpButtonCell& self)
    {
        return NSNumber::cls().numberWithInteger(self.indexOfSelectedItem());
    }
    static void setObjectValue(NSPopUpButtonCell& self, NSObject* value)
    {
        const bool answers = value && value->respondsToSelector(selector<"integerValue">);
        const NSInteger index = answers ? value->send<"integerValue", NSInteger>() : -1;
        self.selectItemAtIndex(index < self.numberOfItems() ? std::max<NSInteger>(index, -1) : -1);
    }

    static void table(Builder& t)
    {
        using C = NSPopUpButtonCell;
        declareCoding<encode, initWithCoder>(t);
        t.methods({
            { "init", imp<init> },
            { "initTextCell:", imp<initTextCell> },
            { "initTextCell:pullsDown:", imp<initPullsDown> },
            { "copyWithZone:", imp<copyWithZone> },
            { "pullsDown", imp<Access<&C::pullsDown_>::get> },
            { "setPullsDown:", imp<Access<&C::pullsDown_>::set> },
            { "autoenablesItems", imp<autoenables> },
            { "setAutoenablesItems:", imp<setAutoenables> },
            { "preferredEdge", imp<Access<&C::edge_>::get> },
            { "setPreferredEdge:", imp<Access<&C::edge_>::set> },
            { "usesItemFromMenu", imp<Access<&C::usesItem_>::get> },
            { "setUsesItemFromMenu:", imp<Access<&C::usesItem_>::set> },
            { "altersStateOfSelectedItem", imp<Access<&C::altersState_>::get> },
            { "setAltersStateOfSelectedItem:", imp<Access<&C::altersState_>::set> },
            { "arrowPosition", imp<Access<&C::arrow_>::get> },
            { "setArrowPosition:", imp<Access<&C::arrow_>::set> },
            { "menu", imp<menu> },
            { "setMenu:", imp<setMenu> },
        });
        t.methods({
            { "addItemWithTitle:", imp<addTitled> },
            { "addItemsWithTitles:", imp<addTitles> },
            { "insertItemWithTitle:atIndex:", imp<insertTitled> },
            { "removeItemWithTitle:", imp<removeTitled> },
            { "removeItemAtIndex:", imp<removeAt> },
            { "removeAllItems", imp<removeAll> },
            { "itemArray", imp<ask<"itemArray", Ref<NSArray>>> },
            { "numberOfItems", imp<ask<"numberOfItems", NSInteger>> },
            { "itemTitles", imp<itemTitles> },
            { "itemTitleAtIndex:", imp<titleAt> },
            { "itemAtIndex:", imp<ask<"itemAtIndex:", Ref<NSMenuItem>, NSInteger>> },
            { "itemWithTitle:", imp<ask<"itemWithTitle:", Ref<NSMenuItem>, NSString*>> },
            { "lastItem", imp<lastItem> },
            { "indexOfItem:", imp<ask<"indexOfItem:", NSInteger, NSMenuItem*>> },
            { "indexOfItemWithTitle:", imp<ask<"indexOfItemWithTitle:", NSInteger, NSString*>> },
            { "indexOfItemWithTag:", imp<ask<"indexOfItemWithTag:", NSInteger, NSInteger>> },
            { "indexOfItemWithRepresentedObject:",
                imp<ask<"indexOfItemWithRepresentedObject:", NSInteger, NSObject*>> },
            { "indexOfItemWithTarget:andAction:",
                imp<ask<"indexOfItemWithTarget:andAction:", NSInteger, NSObject*, SEL>> },
            { "selectItem:", imp<select> },
            { "selectItemAtIndex:", imp<selectAt> },
            { "selectItemWithTitle:", imp<selectTitled> },
            { "selectItemWithTag:", imp<selectTagged> },
            { "selectedItem", imp<selectedItem> },
            { "indexOfSelectedItem", imp<indexOfSelected> },
            { "titleOfSelectedItem", imp<titleOfSelected> },
            { "synchronizeTitleAndSelectedItem", imp<synchronize> },
            { "objectValue", imp<objectValue> },
            { "setObjectValue:", imp<setObjectValue> },
        });
    }
};
BRINDLE_RECORD(NSPopUpButtonCell, Items)

template <> struct NSPopUpButtonCell::Methods<struct PopUp> {

    static constexpr CGFloat kArrowRoom = 18; // at the right end

    static controls::Metrics metrics(NSPopUpButtonCell& self)
    {
        return controls::metricsFor(self.controlSize());
    }
    /// Answers the item whose title and image are shown, or nil for the cell's own.
    static Ref<NSMenuItem> shownItem(NSPopUpButtonCell& self)
    {
        if (!self.usesItem_)
            return nullptr;
        if (!self.pullsDown_)
            return self.selectedItem();
        return self.numberOfItems() ? self.itemAtIndex(0) : nullptr;
    }
    static Ref<NSString> title(NSPopUpButtonCell& self)
    {
        const Ref<NSMenuItem> item = shownItem(self);
        if (!item)
            return self.usesItem_ ? Ref<NSString>(""_ns)
                                  : super<NSPopUpButtonCell, "title", Ref<NSString>>(self);
        const Ref<NSAttributedString> attributed = item->attributedTitle();
        return attributed ? attributed->string() : item->title();
    }
    /// Selects the item of that title, adding it where there is none; a cell that pulls down renames its first item.
    static void setTitle(NSPopUpButtonCell& self, NSString* title)
    {
        if (!self.usesItem_)
            return super<NSPopUpButtonCell, "setTitle:">(self, title);
        const Ref<NSString> text = menuText(title, "NSPopUpButtonCell setTitle:");
        if (self.pullsDown_ && self.numberOfItems())
            return self.itemAtIndex(0)->setTitle(text.get());
        if (self.indexOfItemWithTitle(text.get()) < 0)
            self.addItemWithTitle(text.get());
        self.selectItemWithTitle(text.get());
    }
    static Ref<NSAttributedString> attributedTitle(NSPopUpButtonCell& self)
    {
        return alloc<NSAttributedString>()->initWithString_attributes(
            self.title().get(), textAttributesOf(self).get());
    }

    // ---- opening

    /// Hides the item that a cell pulling down shows as its title, while the menu is open.
    class WithoutTitle {
    public:
        explicit WithoutTitle(NSPopUpButtonCell& cell)
        {
            if (!cell.pullsDown_ || !cell.usesItem_ || !cell.numberOfItems())
                return;
            item_ = cell.itemAtIndex(0);
            wasHidden_ = item_->isHidden();
            item_->setHidden(true);
        }
        ~WithoutTitle()
        {
            if (item_)
                item_->setHidden(wasHidden_);
        }
        WithoutTitle(const WithoutTitle&) = delete;
        WithoutTitle& operator=(const WithoutTitle&) = delete;

    private:
        Ref<NSMenuItem> item_;
        bool wasHidden_ = false;
    };

    static void chosen(NSPopUpButtonCell& self, NSObject*)
    {
        const Ref<NSView> view = self.controlView();
        CellAccess::sendAction(self, view.get());
    }
    /// Items without an action of their own send the cell's.
    static void giveActions(NSPopUpButtonCell& self)
    {
        for (NSMenuItem* item : each<NSMenuItem>(self.itemArray())) {
            if (item->action() || item->isSeparatorItem())
                continue;
            item->setAction(selector<"popUpItemAction:">);
            item->setTarget(&self);
        }
    }
    static void open(NSPopUpButtonCell& self, NSRect frame, NSView* view, NSEvent* event)
    {
        if (!view || !view->window() || !self.isEnabled())
            return;
        const Ref<NSPopUpButtonCell> alive(&self);
        giveActions(self);
        NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(
            NSPopUpButtonCellWillPopUpNotification, view);
        const NSRect body = NSInsetRect(frame, controls::kRingRoom, controls::kRingRoom);
        MenuOpening opening;
        opening.menu = self.menu();
        opening.view = view;
        opening.event = event;
        opening.font = self.font();
        opening.minimumWidth = body.size.width;
        const CGFloat gap = view->isFlipped() ? 2 : -2;
        NSPoint place { NSMinX(body), view->isFlipped() ? NSMaxY(body) + gap : NSMinY(body) + gap };
        if (!self.pullsDown_) {
            opening.positioned = self.selectedItem();
            opening.alignsTitle = opening.positioned != nullptr;
        }
        if (opening.alignsTitle)
            place = { NSMinX(self.titleRectForBounds(frame)), NSMidY(frame) };
        opening.location
            = view->window()->convertPointToScreen(view->convertPoint_toView(place, nullptr));
        Ref<NSMenuItem> item;
        {
            const WithoutTitle hides(self);
            item = MenuSession::run(std::move(opening));
        }
        if (!item)
            return;
        if (self.indexOfItem(item.get()) >= 0)
            self.selectItem(item.get());
        MenuAccess::perform(*item);
    }
    static Ref<NSEvent> present(NSEventType type)
    {
        const Ref<NSEvent> event = ApplicationAccess::state().current;
        return event && event->type() == type ? event : nullptr;
    }
    static void performClickIn(NSPopUpButtonCell& self, NSRect frame, NSView* view)
    {
        open(self, frame, view, present(NSKeyDown).get());
    }
    static void performClick(NSPopUpButtonCell& self, NSObject*)
    {
        const Ref<NSView> view = self.controlView();
        self.performClickWithFrame_inView(maybe(view)->bounds(), view.get());
    }
    static void dismiss(NSPopUpButtonCell& self) { maybe(self.menu())->cancelTracking(); }
    static bool trackMouse(
        NSPopUpButtonCell& self, NSEvent* press, NSRect frame, NSView* view, bool)
    {
        open(self, frame, view, press);
        return true;
    }

    // ---- looks

    static NSRect contentIn(NSPopUpButtonCell& self, NSRect bounds)
    {
        NSRect inside = self.drawingRectForBounds(bounds);
        if (self.arrow_ != NSPopUpNoArrow)
            inside.size.width
                = std::max(0.0, inside.size.width - kArrowRoom + metrics(self).padding / 2);
        return inside;
    }
    static NSRect imageRect(NSPopUpButtonCell& self, NSRect bounds)
    {
        const Ref<NSImage> image = maybe(shownItem(self))->image();
        const NSRect inside = contentIn(self, bounds);
        const NSSize size = maybe(image)->size();
        const CGFloat height = std::min(size.height, inside.size.height);
        return NSMakeRect(NSMinX(inside), NSMidY(inside) - height / 2, size.width, height);
    }
    static NSRect titleRect(NSPopUpButtonCell& self, NSRect bounds)
    {
        NSRect inside = contentIn(self, bounds);
        if (const CGFloat picture = self.imageRectForBounds(bounds).size.width; picture > 0) {
            const CGFloat taken = std::min(picture + metrics(self).gap, inside.size.width);
            inside.origin.x += taken;
            inside.size.width -= taken;
        }
        return inside;
    }
    static NSSize cellSizeForBounds(NSPopUpButtonCell& self, NSRect)
    {
        const Ref<NSDictionary> attributes = textAttributesOf(self);
        CGFloat widest = 0;
        for (NSMenuItem* item : each<NSMenuItem>(self.itemArray())) {
            const Ref<NSAttributedString> title
                = alloc<NSAttributedString>()->initWithString_attributes(
                    item->title().get(), attributes.get());
            const CGFloat picture = maybe(item->image())->size().width;
            widest = std::max(widest,
                controls::sizeOf(title.get()).width
                    + (picture > 0 ? picture + metrics(self).gap : 0));
            if (self.pullsDown_)
                break; // the others are never its title
        }
        const NSRect probe = NSMakeRect(0, 0, 1000, 100);
        const CGFloat around = probe.size.width - contentIn(self, probe).size.width;
        return { widest + around, metrics(self).height + 2 * controls::kRingRoom };
    }

    static controls::Shade inkOf(NSPopUpButtonCell& self)
    {
        return controls::inkOn({ .enabled = self.isEnabled() });
    }
    static void drawArrows(NSPopUpButtonCell& self, NSRect frame, NSView* view)
    {
        controls::Shade ink = inkOf(self);
        ink.alpha *= 0.7;
        const NSRect body = NSInsetRect(frame, controls::kRingRoom, controls::kRingRoom);
        const CGFloat x = NSMaxX(body) - kArrowRoom / 2 - 1;
        const CGFloat down = view && view->isFlipped() ? 1 : -1;
        const auto chevron = [&](CGFloat middle, CGFloat direction) {
            const NSPoint points[] { { x - 3, middle - direction * 1.5 },
                { x, middle + direction * 1.5 }, { x + 3, middle - direction * 1.5 } };
            controls::strokeLine(points, 3, 1.5, ink);
        };
        if (self.pullsDown_)
            return chevron(NSMidY(body), down);
        chevron(NSMidY(body) - 3.5, -1);
        chevron(NSMidY(body) + 3.5, 1);
    }
    static void drawInterior(NSPopUpButtonCell& self, NSRect frame, NSView* view)
    {
        const controls::Shade ink = inkOf(self);
        if (const Ref<NSImage> image = maybe(shownItem(self))->image())
            controls::drawImage(image.get(), controls::onPixels(self.imageRectForBounds(frame)),
                ink, self.isEnabled() ? 1 : 0.4);
        if (self.title()->length())
            self.drawTitle_withFrame_inView(
                self.attributedTitle().get(), self.titleRectForBounds(frame), view);
        if (self.arrow_ != NSPopUpNoArrow)
            drawArrows(self, frame, view);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "attributedTitle", imp<attributedTitle> },
            { "stringValue", imp<title> },
            { "popUpItemAction:", imp<chosen> },
            { "performClickWithFrame:inView:", imp<performClickIn> },
            { "attachPopUpWithFrame:inView:", imp<performClickIn> },
            { "dismissPopUp", imp<dismiss> },
            { "performClick:", imp<performClick> },
            { "trackMouse:inRect:ofView:untilMouseUp:", imp<trackMouse> },
            { "imageRectForBounds:", imp<imageRect> },
            { "titleRectForBounds:", imp<titleRect> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
        });
    }
};
BRINDLE_RECORD(NSPopUpButtonCell, PopUp)

}
