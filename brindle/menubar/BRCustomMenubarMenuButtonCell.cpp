// SPDX-License-Identifier: Apache-2.0
#include "BRCustomMenubarMenuButtonCell.h"

#include "BRCustomMenubarMenuButton.h"
#include "RoundedPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSGraphics.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSShadow.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSMutableAttributedString.h"
#include "graphics/NSImage+TintImage.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

using menubar::rounded;

namespace {

    constexpr double kColumnWidth = 35; // of the image
    constexpr double kColumnMiddle = 17.5;
    constexpr double kTitleDrop = 2; // below the middle
    constexpr double kMenuGap = 5; // between button and menu
    constexpr double kSeparatorGrey = 0.14;

    BRCustomMenubarMenuButton* buttonOf(NSView* view)
    {
        const bool isButton = view && view->isKindOfClass(BRCustomMenubarMenuButton::cls());
        return isButton ? static_cast<BRCustomMenubarMenuButton*>(view) : nullptr;
    }

    enum class Ink { own, white, accent };

    Ref<NSColor> colorOf(Ink ink)
    {
        return ink == Ink::white ? NSColor::cls().whiteColor()
                                 : NSColor::cls().alternateSelectedControlColor();
    }

}

template <> struct BRCustomMenubarMenuButtonCell::Methods<struct Drawing> {

    using Cell = BRCustomMenubarMenuButtonCell;

    static bool isOn(Cell& self, BRCustomMenubarMenuButton* button)
    {
        return button && button->toggleButton() && self.state() == NSOnState;
    }
    static Ink inkFor(Cell& self, BRCustomMenubarMenuButton* button)
    {
        if (self.isHighlighted() || (button && button->darkMode()))
            return Ink::white;
        return isOn(self, button) ? Ink::accent : Ink::own;
    }
    static Ref<NSShadow> glow() { return BRCustomMenubarMenuButton::cls().onGlowShadow(); }

    static void drawInterior(Cell& self, NSRect frame, NSView* view)
    {
        if (self.isHighlighted()) {
            NSColor::cls().selectedMenuItemColor()->set();
            NSRectFill(frame);
        }
        super<Cell, "drawInteriorWithFrame:inView:">(self, frame, view);
    }

    // The tinted images are made from the first one drawn and kept on the button, whatever its image is later.
    static Ref<NSImage> imageFor(Cell& self, NSImage* image, BRCustomMenubarMenuButton* button)
    {
        const Ink ink = inkFor(self, button);
        if (ink == Ink::own)
            return image;
        Ref<NSImage> known = !button ? Ref<NSImage>()
            : ink == Ink::white      ? button->invertedImage()
                                     : button->onImage();
        if (known)
            return known;
        Ref<NSImage> tinted = imageTintedWithColor(*image, colorOf(ink).get());
        if (button && ink == Ink::white)
            button->setInvertedImage(tinted.get());
        else if (button)
            button->setOnImage(tinted.get());
        return tinted;
    }
    static void drawImage(Cell& self, NSImage* image, NSRect frame, NSView* view)
    {
        if (!image)
            return;
        BRCustomMenubarMenuButton* const button = buttonOf(view);
        const Ref<NSImage> shown = imageFor(self, image, button);
        if (inkFor(self, button) == Ink::accent)
            glow()->set(); // stays for the title
        const NSSize size = image->size();
        const NSRect place = NSMakeRect(rounded(kColumnMiddle - size.width * 0.5),
            rounded(NSMidY(frame) - size.height * 0.5), size.width, size.height);
        maybe(shown)->drawInRect(place);
    }

    static Ref<NSAttributedString> titleFor(
        Cell& self, NSAttributedString* title, BRCustomMenubarMenuButton* button)
    {
        const Ink ink = inkFor(self, button);
        if (ink == Ink::own)
            return title;
        const Ref<NSMutableAttributedString> changed = cast<NSMutableAttributedString>(
            alloc<NSMutableAttributedString>()->initWithAttributedString(title));
        const NSRange all { 0, changed->length() };
        changed->removeAttribute_range(NSForegroundColorAttributeName, all);
        changed->addAttribute_value_range(NSForegroundColorAttributeName, colorOf(ink).get(), all);
        if (isOn(self, button))
            changed->addAttribute_value_range(NSShadowAttributeName, glow().get(), all);
        return changed;
    }
    static NSRect drawTitle(Cell& self, NSAttributedString* title, NSRect frame, NSView* view)
    {
        const double height = title ? size(*title).height : 0;
        const NSRect place = NSMakeRect(kColumnWidth,
            rounded(NSMidY(frame) - height * 0.5) + kTitleDrop, frame.size.width, height);
        if (title)
            drawInRect(titleFor(self, title, buttonOf(view)), place);
        return place;
    }

    static void drawBezel(Cell& self, NSRect frame, NSView*)
    {
        const Ref<NSColor> color = self.isHighlighted()
            ? NSColor::cls().whiteColor()
            : NSColor::cls().colorWithWhite_alpha(kSeparatorGrey, 1.0);
        color->set();
        NSRectFill(NSMakeRect(NSMinX(frame), NSMinY(frame), 1, frame.size.height));
        NSRectFill(NSMakeRect(kColumnWidth, NSMinY(frame), 1, frame.size.height));
    }

    static bool trackMouse(Cell& self, NSEvent* event, NSRect frame, NSView* view, bool untilUp)
    {
        const Ref<NSMenu> menu = self.menu();
        if (!event || !view || event->type() != NSLeftMouseDown || !menu)
            return super<Cell, "trackMouse:inRect:ofView:untilMouseUp:", bool>(
                self, event, frame, view, untilUp);
        const Ref<NSView> alive(view);
        const NSPoint below { NSMinX(frame), NSMaxY(frame) + kMenuGap };
        const Ref<NSEvent> press
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      event->type(), view->convertPoint_toView(below, nullptr),
                      event->modifierFlags(), event->timestamp(), event->windowNumber(),
                      event->context().get(), event->eventNumber(), event->clickCount(),
                      event->pressure());
        NSMenu::cls().popUpContextMenu_withEvent_forView(menu.get(), press.get(), view);
        return true;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "drawImage:withFrame:inView:", imp<drawImage> },
            { "drawTitle:withFrame:inView:", imp<drawTitle> },
            { "drawBezelWithFrame:inView:", imp<drawBezel> },
            { "trackMouse:inRect:ofView:untilMouseUp:", imp<trackMouse> },
        });
        t.properties({ computed<NSMenu*>("menu", dynamic) });
    }
};
BRINDLE_RECORD(BRCustomMenubarMenuButtonCell, Drawing)

}
