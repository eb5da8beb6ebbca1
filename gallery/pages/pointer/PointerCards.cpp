// SPDX-License-Identifier: Apache-2.0
#include "PointerCards.h"

#include <array>
#include <cmath>

#include "appkit/NSApplication.h"
#include "appkit/NSCursor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSTextField.h"
#include "appkit/NSView+CursorRects.h"
#include "appkit/NSView+ToolTips.h"
#include "appkit/NSViewController.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct CursorsCard::Methods<struct Fields> {

    struct Shape {
        const char* name;
        Ref<NSCursor> (NSCursor::Meta::*cursor)() const;
    };
    static constexpr std::size_t kColumns = 4;
    static constexpr std::array kShapes {
        Shape { "arrow", &NSCursor::Meta::arrowCursor },
        Shape { "IBeam", &NSCursor::Meta::IBeamCursor },
        Shape { "pointingHand", &NSCursor::Meta::pointingHandCursor },
        Shape { "openHand", &NSCursor::Meta::openHandCursor },
        Shape { "closedHand", &NSCursor::Meta::closedHandCursor },
        Shape { "crosshair", &NSCursor::Meta::crosshairCursor },
        Shape { "resizeLeft", &NSCursor::Meta::resizeLeftCursor },
        Shape { "resizeRight", &NSCursor::Meta::resizeRightCursor },
        Shape { "resizeLeftRight", &NSCursor::Meta::resizeLeftRightCursor },
        Shape { "resizeUp", &NSCursor::Meta::resizeUpCursor },
        Shape { "resizeUpDown", &NSCursor::Meta::resizeUpDownCursor },
        Shape { "notAllowed", &NSCursor::Meta::operationNotAllowedCursor },
    };

    static Ref<NSView> initWithFrame(CursorsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<CursorsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Cursors"_ns);
        self.setCaption("Each field gives the pointer the shape that it names"_ns);
        return made;
    }
    static NSRect fieldAt(CursorsCard& self, std::size_t index)
    {
        constexpr double kGap = 8;
        const NSRect body = self.bodyRect();
        const auto rows = static_cast<double>((kShapes.size() + kColumns - 1) / kColumns);
        const double width = std::floor((body.size.width - (kColumns - 1) * kGap) / kColumns);
        const double height = std::floor((body.size.height - (rows - 1) * kGap) / rows);
        return NSMakeRect(body.origin.x + static_cast<double>(index % kColumns) * (width + kGap),
            body.origin.y + std::floor(static_cast<double>(index / kColumns)) * (height + kGap),
            width, height);
    }
    static void setCursorRects(CursorsCard& self)
    {
        for (std::size_t i = 0; i < kShapes.size(); ++i)
            addCursorRect_cursor(
                self, fieldAt(self, i), (NSCursor::cls().*kShapes[i].cursor)().get());
    }
    static void drawBody(CursorsCard& self, NSRect)
    {
        for (std::size_t i = 0; i < kShapes.size(); ++i) {
            fillRounded(fieldAt(self, i), 7, palette().soft.get());
            drawCentered(stringFrom(kShapes[i].name).get(), fieldAt(self, i), Style::body,
                palette().text.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "resetCursorRects", imp<setCursorRects> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(CursorsCard, Fields)

template <> struct TipsCard::Methods<struct Tips> {

    static constexpr std::array kThirds { "Morning", "Noon", "Evening" };

    static void add(TipsCard& self, NSString* title, NSString* tip)
    {
        const Ref<NSButton> button
            = NSButton::cls().buttonWithTitle_target_action(title, nullptr, {});
        button->setToolTip(tip);
        self.addSubview(button.get());
        self.buttons_.push_back(button);
    }
    static Ref<NSView> initWithFrame(TipsCard& self, NSRect frame)
    {
        Ref<NSView> made = super<TipsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Tool tips"_ns);
        self.setCaption("Rest on a button, or on a third of the field"_ns);
        add(self, "Short"_ns, "A tip"_ns);
        add(self, "Long"_ns,
            "A tip that says more than fits into one line is broken where its words end, and keeps "
            "to the screen"_ns);
        return made;
    }
    static NSRect field(TipsCard& self)
    {
        NSRect body = self.bodyRect();
        takeTop(body, 28);
        return body;
    }
    static NSRect third(TipsCard& self, std::size_t index)
    {
        const NSRect all = field(self);
        const double width = all.size.width / kThirds.size();
        return NSMakeRect(all.origin.x + static_cast<double>(index) * width, all.origin.y, width,
            all.size.height);
    }
    static void setFrameSize(TipsCard& self, NSSize size)
    {
        super<TipsCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        double left = body.origin.x - 2;
        for (const Ref<NSButton>& button : self.buttons_) {
            button->sizeToFit();
            button->setFrameOrigin({ left, body.origin.y });
            left += button->frame().size.width + 8;
        }
        removeAllToolTips(self);
        for (std::size_t i = 0; i < kThirds.size(); ++i)
            addToolTipRect_owner_userData(self, third(self, i), &self, nullptr);
    }
    static Ref<NSString> tipAt(TipsCard& self, NSView*, NSInteger, NSPoint point, void*)
    {
        for (std::size_t i = 0; i < kThirds.size(); ++i) {
            if (NSPointInRect(point, third(self, i)))
                return stringFrom(std::string("Asked for when it is needed: ") + kThirds[i]);
        }
        return nullptr;
    }
    static void drawBody(TipsCard& self, NSRect)
    {
        fillRounded(field(self), 7, palette().soft.get());
        for (std::size_t i = 0; i < kThirds.size(); ++i)
            drawCentered(
                stringFrom(kThirds[i]).get(), third(self, i), Style::body, palette().text.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "view:stringForToolTip:point:userData:", imp<tipAt> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(TipsCard, Tips)

namespace {

    /// A field with a colour, which its menu chooses.
    class ColoredField : public NSView {
        BRINDLE_OBJECT(ColoredField, NSView)

    public:
        NSInteger choice_ = 0;
    };

}

template <> struct ColoredField::Methods<struct Menu> {

    struct Choice {
        const char* name;
        Ref<NSColor> (NSColor::Meta::*color)() const;
    };
    static constexpr std::array kChoices {
        Choice { "Orange", &NSColor::Meta::systemOrangeColor },
        Choice { "Green", &NSColor::Meta::systemGreenColor },
        Choice { "Blue", &NSColor::Meta::systemBlueColor },
        Choice { "Purple", &NSColor::Meta::systemPurpleColor },
    };

    static bool acceptsFirstResponder(ColoredField&) { return true; }
    static bool redraw(ColoredField& self)
    {
        self.setNeedsDisplay(true);
        return true;
    }
    static Ref<NSMenu> menuFor(ColoredField& self, NSEvent*)
    {
        Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle("Colour"_ns);
        for (std::size_t i = 0; i < kChoices.size(); ++i) {
            const Ref<NSMenuItem> item = menu->addItemWithTitle_action_keyEquivalent(
                stringFrom(kChoices[i].name).get(), selector<"chooseColor:">, ""_ns);
            item->setTarget(&self);
            item->setTag(static_cast<NSInteger>(i));
            item->setState(item->tag() == self.choice_ ? NSOnState : NSOffState);
        }
        return menu;
    }
    static void chooseColor(ColoredField& self, NSMenuItem* item)
    {
        self.choice_ = maybe(item)->tag();
        self.setNeedsDisplay(true);
    }
    static void drawRect(ColoredField& self, NSRect)
    {
        const Choice& choice = kChoices[static_cast<std::size_t>(self.choice_) % kChoices.size()];
        const Ref<NSColor> color = (NSColor::cls().*choice.color)();
        const NSRect box = self.bounds();
        fillRounded(box, 9, maybe(color)->colorWithAlphaComponent(isDark() ? 0.5 : 0.35).get());
        drawCentered(stringFrom(choice.name).get(), box, Style::figure, palette().text.get());
        if (maybe(self.window())->firstResponder() == &self) {
            strokeRounded(box, 9, palette().accent.get());
            strokeRounded(inset(box, 1), 8, palette().accent.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<redraw> },
            { "resignFirstResponder", imp<redraw> },
            { "menuForEvent:", imp<menuFor> },
            { "chooseColor:", imp<chooseColor> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(ColoredField, Menu)

template <> struct ContextMenuCard::Methods<struct Field> {

    static Ref<NSView> initWithFrame(ContextMenuCard& self, NSRect frame)
    {
        Ref<NSView> made = super<ContextMenuCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("A menu of its own"_ns);
        self.setCaption("The right button, or Tab to the field and the Menu key"_ns);
        self.field_ = Ref<NSView>(make<ColoredField>());
        self.addSubview(self.field_.get());
        return made;
    }
    static void setFrameSize(ContextMenuCard& self, NSSize size)
    {
        super<ContextMenuCard, "setFrameSize:">(self, size);
        maybe(self.field_)->setFrame(self.bodyRect());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(ContextMenuCard, Field)

template <> struct PopoverCard::Methods<struct Bubble> {

    static constexpr std::array kTitles { "Above", "Right", "Below", "Left" };
    static constexpr std::array kEdges { NSMinYEdge, NSMaxXEdge, NSMaxYEdge,
        NSMinXEdge }; // of a flipped view

    static Ref<NSView> initWithFrame(PopoverCard& self, NSRect frame)
    {
        Ref<NSView> made = super<PopoverCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Popovers"_ns);
        self.setCaption("A bubble on the side with room; Escape closes it"_ns);
        for (std::size_t i = 0; i < kTitles.size(); ++i) {
            const Ref<NSButton> button = NSButton::cls().buttonWithTitle_target_action(
                stringFrom(kTitles[i]).get(), &self, selector<"showBubble:">);
            button->setTag(static_cast<NSInteger>(i));
            self.addSubview(button.get());
            self.buttons_.push_back(button);
        }
        return made;
    }
    static void setFrameSize(PopoverCard& self, NSSize size)
    {
        super<PopoverCard, "setFrameSize:">(self, size);
        const NSRect body = self.bodyRect();
        for (std::size_t i = 0; i < self.buttons_.size(); ++i) {
            self.buttons_[i]->setFrame(NSMakeRect(std::round(NSMidX(body) - (i % 2 ? -8 : 98)),
                std::round(NSMidY(body) - (i / 2 ? -4 : 32)), 90, 28));
        }
    }
    static Ref<NSView> content()
    {
        const Ref<NSView> view
            = cast<NSView>(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 190, 76)));
        const Ref<NSTextField> label = NSTextField::cls().labelWithString("A view of any kind"_ns);
        label->setFrame(NSMakeRect(16, 44, 158, 18));
        const Ref<NSButton> box = NSButton::cls().checkboxWithTitle_target_action(
            "With controls in it"_ns, nullptr, {});
        box->setFrameOrigin({ 14, 16 });
        view->addSubview(label.get());
        view->addSubview(box.get());
        return view;
    }
    static void showBubble(PopoverCard& self, NSObject* sender)
    {
        const Ref<NSButton> button = cast<NSButton>(Ref<NSObject>(sender));
        maybe(self.popover_)->close();
        self.popover_ = make<NSPopover>();
        const Ref<NSViewController> controller = make<NSViewController>();
        controller->setView(content().get());
        self.popover_->setContentViewController(controller.get());
        self.popover_->setBehavior(NSPopoverBehaviorTransient);
        const auto place = static_cast<std::size_t>(button->tag()) % kEdges.size();
        self.popover_->showRelativeToRect_ofView_preferredEdge({}, button.get(), kEdges[place]);
    }
    static void viewWillMoveToWindow(PopoverCard& self, NSWindow* window)
    {
        super<PopoverCard, "viewWillMoveToWindow:">(self, window);
        if (!window)
            maybe(self.popover_)->close();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "showBubble:", imp<showBubble> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
        });
    }
};
BRINDLE_RECORD(PopoverCard, Bubble)

}
