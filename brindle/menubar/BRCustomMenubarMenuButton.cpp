// SPDX-License-Identifier: Apache-2.0
#include "BRCustomMenubarMenuButton.h"

#include "BRCustomMenubarMenuButtonCell.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSShadow.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "core/BlockAfterDelay.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

#include <algorithm>
#include <vector>

namespace brindle {

template <> struct BRCustomMenubarMenuButton::Methods<struct Basics> {

    using Button = BRCustomMenubarMenuButton;

    static constexpr double kHeight = 22;
    static constexpr double kColumnWidth = 35; // of the image
    static constexpr double kTitleRoom = 19;
    static constexpr double kWidthWithoutTitle = 37;
    static constexpr double kFontSize = 15;
    static constexpr double kGlowRadius = 13.64;
    static constexpr double kFlashSeconds = 0.24;

    static Ref<NSShadow>& glow()
    {
        static auto* const glow = new Ref<NSShadow>; // for the life of the process
        return *glow;
    }
    static void initialize(Class& self)
    {
        if (&self != static_cast<Class*>(Button::cls()))
            return;
        glow() = make<NSShadow>();
        glow()->setShadowColor(
            NSColor::cls().alternateSelectedControlColor()->colorWithAlphaComponent(1.0).get());
        glow()->setShadowBlurRadius(kGlowRadius);
        glow()->setShadowOffset({});
        Button::cls().setCellClass(BRCustomMenubarMenuButtonCell::cls());
    }
    static Ref<NSShadow> onGlowShadow(Class&) { return glow(); }

    static Ref<NSObject> init(Button& self)
    {
        if (!super<Button, "initWithFrame:", Ref<NSView>>(self, NSRect {}))
            return nullptr;
        self.setFont(NSFont::cls().menuBarFontOfSize(kFontSize).get());
        self.setButtonType(NSMomentaryChangeButton);
        self.setBezelStyle(NSRegularSquareBezelStyle);
        self.setImagePosition(NSImageLeft);
        return &self;
    }

    static void sizeToFit(Button& self)
    {
        const Ref<NSAttributedString> title = self.attributedTitle();
        const double text = title ? size(*title).width : 0;
        const double width = text > 0 ? kTitleRoom + text + kColumnWidth : kWidthWithoutTitle;
        self.setFrame({ self.frame().origin, { width, kHeight } });
    }
    static void viewDidMoveToWindow(Button& self) { self.sizeToFit(); }
    // A method of its own: what a host exchanges here reaches no other button.
    static void drawRect(Button& self, NSRect dirty) { super<Button, "drawRect:">(self, dirty); }

    static void mouseDown(Button& self, NSEvent* event)
    {
        if (const Ref<NSMenu> menu = self.menu()) {
            const bool opens = event && event->type() == NSLeftMouseDown;
            maybe(self.cell())->setMenu(opens ? menu.get() : nullptr);
        }
        super<Button, "mouseDown:">(self, event);
    }

    static void setLit(Button& self, bool lit)
    {
        maybe(self.cell())->setHighlighted(lit);
        self.setNeedsDisplay(true);
    }
    static bool menuKeyEquivalent(Button& self, NSEvent* event)
    {
        const Ref<Button> alive(&self);
        const Ref<NSMenu> menu = self.menu();
        if (!menu || !event || !menu->performKeyEquivalent(event))
            return false;
        setLit(self, true);
        blockAfterDelay(kFlashSeconds, [alive] { setLit(*alive, false); });
        return true;
    }

    // ---- the row of buttons that it stands in

    /// Answers the buttons with menus beside it and itself, from left to right.
    static std::vector<Ref<Button>> row(Button& self)
    {
        std::vector<Ref<Button>> found;
        const Ref<NSView> superview = self.superview();
        if (!superview)
            return found;
        for (NSView* view : each<NSView>(superview->subviews())) {
            const bool opens = view->isKindOfClass(Button::cls()) && view->menu()
                && !view->isHidden() && static_cast<Button*>(view)->isEnabled();
            if (opens)
                found.emplace_back(static_cast<Button*>(view));
        }
        std::stable_sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return a->frame().origin.x < b->frame().origin.x; });
        return found;
    }
    static Ref<NSView> neighbourAt(Button& self, NSPoint place)
    {
        const Ref<NSWindow> window = self.window();
        for (const Ref<Button>& button : window ? row(self) : std::vector<Ref<Button>>()) {
            const NSRect rect = button->convertRect_toView(button->bounds(), nullptr);
            if (NSPointInRect(place, window->convertRectToScreen(rect)))
                return button;
        }
        return nullptr;
    }
    // From the last one on to the first.
    static Ref<NSView> neighbourToward(Button& self, NSInteger direction)
    {
        const std::vector<Ref<Button>> buttons = row(self);
        const auto own = std::find(buttons.begin(), buttons.end(), &self);
        if (own == buttons.end())
            return nullptr;
        const auto count = static_cast<NSInteger>(buttons.size());
        const NSInteger place = (own - buttons.begin()) + (direction < 0 ? count - 1 : 1);
        return buttons[static_cast<std::size_t>(place % count)];
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "onGlowShadow", imp<onGlowShadow> },
        });
        t.methods({
            { "init", imp<init> },
            { "sizeToFit", imp<sizeToFit> },
            { "viewDidMoveToWindow", imp<viewDidMoveToWindow> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "menuKeyEquivalent:", imp<menuKeyEquivalent> },
            { "menuNeighbourAtPoint:", imp<neighbourAt> },
            { "menuNeighbourInDirection:", imp<neighbourToward> },
        });
        t.properties({
            property<&Button::toggleButton_>("toggleButton"),
            property<&Button::darkMode_>("darkMode"),
            property<&Button::invertedImage_>("invertedImage"),
            property<&Button::onImage_>("onImage"),
            computed<NSMenu*>("menu", dynamic),
        });
    }
};
BRINDLE_RECORD(BRCustomMenubarMenuButton, Basics)

}
