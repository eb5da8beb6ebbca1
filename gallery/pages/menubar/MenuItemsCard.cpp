// SPDX-License-Identifier: Apache-2.0
#include "MenuItemsCard.h"

#include "appkit/NSEvent.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSSlider.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MenuItemsCard::Methods<struct Lines> {

    static Ref<NSMenuItem> add(MenuItemsCard& self, NSMenu& menu, NSString* title, NSString* key)
    {
        Ref<NSMenuItem> item
            = menu.addItemWithTitle_action_keyEquivalent(title, selector<"choose:">, key);
        item->setTarget(&self);
        return item;
    }
    static void addStates(MenuItemsCard& self, NSMenu& menu)
    {
        add(self, menu, "Chosen"_ns, "1"_ns)->setState(NSOnState);
        add(self, menu, "Chosen in part"_ns, "2"_ns)->setState(NSMixedState);
        add(self, menu, "Indented"_ns, ""_ns)->setIndentationLevel(1);
        menu.addItemWithTitle_action_keyEquivalent("Not to be chosen"_ns, {}, ""_ns);
    }
    static void addLooks(MenuItemsCard& self, NSMenu& menu)
    {
        add(self, menu, "With a picture"_ns, ""_ns)
            ->setImage(NSImage::cls().imageNamed("NSActionTemplate"_ns).get());
        const Ref<NSDictionary> look = makeDictionary(
            { { NSFontAttributeName, NSFont::cls().boldSystemFontOfSize(13).get() },
                { NSForegroundColorAttributeName, palette().accent.get() } });
        const Ref<NSAttributedString> title
            = alloc<NSAttributedString>()->initWithString_attributes(
                "In a look of its own"_ns, look.get());
        add(self, menu, "In a look of its own"_ns, ""_ns)->setAttributedTitle(title.get());
        add(self, menu, "Delete"_ns, "x"_ns);
        const Ref<NSMenuItem> other = add(self, menu, "Delete for Good"_ns, "x"_ns);
        other->setAlternate(true); // while Alt is down
        other->setKeyEquivalentModifierMask(NSCommandKeyMask | NSAlternateKeyMask);
    }
    static void addViews(MenuItemsCard& self, NSMenu& menu)
    {
        const Ref<NSSlider> slider
            = NSSlider::cls().sliderWithValue_minValue_maxValue_target_action(
                6, 0, 10, nullptr, {});
        slider->setFrame(NSMakeRect(20, 4, 160, 20));
        const auto holder = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 200, 28));
        holder->addSubview(slider.get());
        add(self, menu, "A view"_ns, ""_ns)->setView(holder.get());
        const Ref<NSMenu> more = alloc<NSMenu>()->initWithTitle("More"_ns);
        add(self, *more, "Further in"_ns, ""_ns);
        add(self, menu, "More"_ns, ""_ns)->setSubmenu(more.get());
    }
    static Ref<NSMenu> menuFor(MenuItemsCard& self, NSEvent*)
    {
        Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle(""_ns);
        addStates(self, *menu);
        menu->addItem(NSMenuItem::cls().separatorItem().get());
        addLooks(self, *menu);
        menu->addItem(NSMenuItem::cls().separatorItem().get());
        addViews(self, *menu);
        return menu;
    }
    static void open(MenuItemsCard& self)
    {
        const NSRect chip = self.open_->frame();
        menuFor(self, nullptr)
            ->popUpMenuPositioningItem_atLocation_inView(
                nullptr, { chip.origin.x, NSMaxY(chip) + 4 }, &self);
    }
    static void choose(MenuItemsCard& self, NSMenuItem* item)
    {
        self.chosen_ = item->title();
        self.setNeedsDisplay(true);
    }

    static Ref<NSView> initWithFrame(MenuItemsCard& self, NSRect frame)
    {
        Ref<NSView> card = super<MenuItemsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Lines of a menu"_ns);
        self.setCaption(
            "States, pictures, looks, views and what Alt changes; the right button opens it anywhere"_ns);
        self.open_ = addChip(&self, "Open"_ns, "p"_ns, sending<"open">(&self));
        return card;
    }
    static void setFrameSize(MenuItemsCard& self, NSSize size)
    {
        super<MenuItemsCard, "setFrameSize:">(self, size);
        if (self.open_)
            layOutChips({ self.open_.get() }, self.bodyRect().origin);
    }
    static void drawBody(MenuItemsCard& self, NSRect body)
    {
        const auto said = self.chosen_
            ? NSString::cls().stringWithFormat("Chosen: %@"_ns, self.chosen_.get())
            : Ref<NSString>("Nothing chosen yet"_ns);
        const double left = NSMaxX(self.open_->frame()) + 16;
        drawFitted(said.get(), { left, body.origin.y + 6 }, NSMaxX(body) - left, Style::body,
            palette().text.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "menuForEvent:", imp<menuFor> },
            { "open", imp<open> },
            { "choose:", imp<choose> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(MenuItemsCard, Lines)

}
