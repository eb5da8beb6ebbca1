// SPDX-License-Identifier: Apache-2.0
#include "MenubarCards.h"

#include <cmath>

#include "Menubar.h"
#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSWindow+ScreenEdge.h"
#include "appkit/NSWorkspace.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNotificationCenter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MenubarOptionsCard::Methods<struct Options> {

    static constexpr double kNarrow = 900;

    template <class Change> static Block<void()> changing(MenubarOptionsCard& self, Change change)
    {
        return [weak = WeakRef<MenubarOptionsCard>(&self), change] {
            MenubarLook look = menubar().look();
            change(look);
            menubar().setLook(look);
            menubar().show();
            if (const Ref<MenubarOptionsCard> card = weak.get())
                settled(*card);
        };
    }
    static Block<void()> adding(MenubarOptionsCard& self, BRMenubarViewAlignment alignment)
    {
        return [weak = WeakRef<MenubarOptionsCard>(&self), alignment] {
            menubar().addSample(alignment);
            if (const Ref<MenubarOptionsCard> card = weak.get())
                settled(*card);
        };
    }

    static Ref<NSView> initWithFrame(MenubarOptionsCard& self, NSRect frame)
    {
        Ref<NSView> card = super<MenubarOptionsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("The bar"_ns);
        self.setCaption("BRCustomMenubar: every choice makes it anew"_ns);
        using Look = MenubarLook;
        self.custom_ = addChip(&self, "Custom"_ns, "c"_ns,
            changing(self, [](Look& look) { look.theme = BRMenubarThemeCustom; }));
        self.overlay_ = addChip(&self, "Overlay"_ns, "o"_ns,
            changing(self, [](Look& look) { look.theme = BRMenubarThemeOverlay; }));
        self.shadow_ = addChip(&self, "Shadow"_ns, "s"_ns,
            changing(self, [](Look& look) { look.shadow = !look.shadow; }));
        self.spacing_ = addChip(&self, "Gaps"_ns, "g"_ns, changing(self, [](Look& look) {
            look.spacing = look.spacing == BRMenubarSpacingNone ? BRMenubarSpacingStandard
                                                                : BRMenubarSpacingNone;
        }));
        self.narrow_ = addChip(&self, "900 wide"_ns, "n"_ns,
            changing(self, [](Look& look) { look.width = look.width > 0 ? 0 : kNarrow; }));
        self.left_
            = addChip(&self, "Add left"_ns, "l"_ns, adding(self, BRMenubarViewAlignmentLeft));
        self.right_
            = addChip(&self, "Add right"_ns, "r"_ns, adding(self, BRMenubarViewAlignmentRight));
        self.anew_ = addChip(&self, "Start over"_ns, "a"_ns, changing(self, [](Look&) {}));
        settled(self);
        return card;
    }
    /// Shows which choices are in force, here and in the cards beside it.
    static void settled(MenubarOptionsCard& self)
    {
        const MenubarLook look = menubar().look();
        self.custom_->setOn(look.theme == BRMenubarThemeCustom);
        self.overlay_->setOn(look.theme == BRMenubarThemeOverlay);
        self.shadow_->setOn(look.shadow);
        self.spacing_->setOn(look.spacing == BRMenubarSpacingStandard);
        self.narrow_->setOn(look.width > 0);
        maybe(self.superview())->setNeedsDisplay(true);
    }
    static void setFrameSize(MenubarOptionsCard& self, NSSize size)
    {
        super<MenubarOptionsCard, "setFrameSize:">(self, size);
        const NSPoint corner = self.bodyRect().origin;
        constexpr double kRow = kChipHeight + 10;
        layOutChips({ self.custom_.get(), self.overlay_.get() }, corner);
        layOutChips({ self.shadow_.get(), self.spacing_.get(), self.narrow_.get() },
            { corner.x, corner.y + kRow });
        layOutChips({ self.left_.get(), self.right_.get(), self.anew_.get() },
            { corner.x, corner.y + 2 * kRow });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(MenubarOptionsCard, Options)

template <> struct MenubarReportCard::Methods<struct Report> {

    static const char* reasonOf(NSScreenEdgeStanding standing)
    {
        switch (standing) {
        case NSScreenEdgeNotReserved:
            return "reserves nothing";
        case NSScreenEdgeReserved:
            return "at the top of the screen, which it reserves";
        case NSScreenEdgeBelowPanel:
            return "below a panel that was there before";
        case NSScreenEdgeScreenBeyond:
            return "in front only: another screen lies above";
        case NSScreenEdgeNoManager:
            return "in front only: nobody here keeps windows away";
        }
        return "";
    }
    static Ref<NSString> frameText(NSWindow* window)
    {
        const NSRect frame = window ? window->frame() : NSRect {};
        return NSString::cls().stringWithFormat("x %g   y %g   %g × %g"_ns, frame.origin.x,
            frame.origin.y, frame.size.width, frame.size.height);
    }
    static void drawBody(MenubarReportCard&, NSRect body)
    {
        const Ref<BRCustomMenubar> bar = menubar().bar();
        const Ref<NSWindow> views = menubar().viewsWindow();
        if (!bar || !views)
            return;
        NSWindow& edge = bar->isVisible() ? static_cast<NSWindow&>(*bar) : *views;
        const std::pair<const char*, Ref<NSString>> rows[] = {
            { "Bar", frameText(bar.get()) },
            { "Buttons", frameText(views.get()) },
            { "Stands", stringFrom(reasonOf(screenEdgeStanding(edge))) },
            { "Lower by",
                NSString::cls().stringWithFormat("%g points"_ns, screenEdgeOffset(edge)) },
            { "Views",
                NSString::cls().stringWithFormat("%lu"_ns, maybe(bar->menubarViews())->count()) },
        };
        double y = body.origin.y;
        for (const auto& [name, value] : rows) {
            drawText(stringFrom(name).get(), { body.origin.x, y }, Style::caption,
                palette().quietText.get());
            drawFitted(value.get(), { body.origin.x + 70, y }, body.size.width - 70, Style::body,
                palette().text.get());
            y += 26;
        }
    }
    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(MenubarReportCard, Report)

template <> struct MenubarButtonsCard::Methods<struct Buttons> {

    static constexpr std::size_t kBars = 2; // light and dark
    static constexpr double kNames = 72;

    static Ref<NSImage> disc() { return NSImage::cls().imageNamed("NSActionTemplate"_ns); }
    static Ref<BRCustomMenubarMenuButton> button(const char* title)
    {
        Ref<BRCustomMenubarMenuButton> made = make<BRCustomMenubarMenuButton>();
        made->setTitle(stringFrom(title).get());
        made->setImage(disc().get());
        made->sizeToFit();
        return made;
    }
    static Ref<NSMenu> menu()
    {
        const Ref<NSMenu> more = alloc<NSMenu>()->initWithTitle("More"_ns);
        more->addItemWithTitle_action_keyEquivalent("Further In"_ns, {}, ""_ns);
        Ref<NSMenu> made = alloc<NSMenu>()->initWithTitle(""_ns);
        made->setAutoenablesItems(false);
        made->addItemWithTitle_action_keyEquivalent("One"_ns, {}, "1"_ns);
        made->addItemWithTitle_action_keyEquivalent("Two"_ns, {}, "2"_ns)->setState(NSOnState);
        made->addItem(NSMenuItem::cls().separatorItem().get());
        made->addItemWithTitle_action_keyEquivalent("More"_ns, {}, ""_ns)->setSubmenu(more.get());
        return made;
    }
    static Ref<NSView> initWithFrame(MenubarButtonsCard& self, NSRect frame)
    {
        Ref<NSView> card = super<MenubarButtonsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Its buttons"_ns);
        self.setCaption(
            "BRCustomMenubarMenuButton: a menu, a plain one, a toggle that is on; light and dark"_ns);
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            &self, selector<"colorsChanged:">, NSSystemColorsDidChangeNotification, nullptr);
        for (const bool dark : { false, true }) {
            const Ref<BRCustomMenubarMenuButton> made[]
                = { button("Menu"), button("Plain"), button("Toggle"), button("Pressed") };
            made[0]->setMenu(menu().get());
            made[2]->setToggleButton(true);
            made[2]->setState(NSOnState);
            made[3]->cell()->setHighlighted(true);
            for (const Ref<BRCustomMenubarMenuButton>& one : made) {
                one->setDarkMode(dark);
                self.addSubview(one.get());
                self.buttons_.push_back(one);
            }
        }
        return card;
    }
    /// Buttons keep the tinted pictures that they drew first.
    static void colorsChanged(MenubarButtonsCard& self, NSNotification*)
    {
        for (const Ref<NSView>& view : self.buttons_) {
            auto& button = static_cast<BRCustomMenubarMenuButton&>(*view);
            button.setOnImage(nullptr);
            button.setInvertedImage(nullptr);
        }
    }
    /// Bars share the room; each has its buttons in the middle.
    static NSRect barIn(NSRect body, std::size_t bar)
    {
        constexpr double kGap = 10;
        const double height = std::floor((body.size.height - kGap * (kBars - 1)) / kBars);
        return NSMakeRect(body.origin.x, body.origin.y + static_cast<double>(bar) * (height + kGap),
            body.size.width, height);
    }
    static void setFrameSize(MenubarButtonsCard& self, NSSize size)
    {
        super<MenubarButtonsCard, "setFrameSize:">(self, size);
        const std::size_t inBar = self.buttons_.size() / kBars;
        double x = 0;
        for (std::size_t i = 0; i < self.buttons_.size(); ++i) {
            const NSRect bar = barIn(self.bodyRect(), i / inBar);
            const Ref<NSView>& view = self.buttons_[i];
            const NSSize button = view->frame().size;
            x = i % inBar == 0 ? bar.origin.x + kNames : x;
            view->setFrameOrigin({ x, std::round(NSMidY(bar) - button.height / 2) });
            x += button.width + 12;
        }
    }
    static void drawBody(MenubarButtonsCard&, NSRect body)
    {
        const Palette& colors = palette();
        const double light = isDark() ? 0.42 : 0.93;
        const Ref<NSColor> grounds[]
            = { NSColor::cls().colorWithWhite_alpha(light, 1), NSColor::cls().blackColor() };
        for (std::size_t i = 0; i < kBars; ++i) {
            const NSRect bar = barIn(body, i);
            fillRounded(bar, 6, grounds[i].get());
            strokeRounded(bar, 6, colors.border.get());
            const Ref<NSColor> ink
                = NSColor::cls().colorWithWhite_alpha(i == 0 && !isDark() ? 0.3 : 0.95, 1);
            NSString* const name = i == 0 ? "Light"_ns : "Dark"_ns;
            drawText(name, { bar.origin.x + 14, NSMidY(bar) - 7 }, Style::caption, ink.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "colorsChanged:", imp<colorsChanged> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(MenubarButtonsCard, Buttons)

}
