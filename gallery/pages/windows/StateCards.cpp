// SPDX-License-Identifier: Apache-2.0
#include "StateCards.h"

#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSScreen.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow+Proportions.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    /// Draws a card anew whenever a window is somewhere else.
    void drawWithWindows(NSView& card)
    {
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        for (NSString* name : std::initializer_list<NSString*> { NSWindowDidMoveNotification,
                 NSWindowDidResizeNotification, NSWindowDidBecomeKeyNotification,
                 NSWindowDidResignKeyNotification, NSWindowWillCloseNotification })
            center->addObserver_selector_name_object(
                &card, selector<"windowChanged:">, name, nullptr);
    }
    Ref<NSString> textOf(NSRect frame)
    {
        return NSString::cls().stringWithFormat("x %g   y %g   %g × %g"_ns, frame.origin.x,
            frame.origin.y, frame.size.width, frame.size.height);
    }

}

template <> struct WindowStateCard::Methods<struct State> {

    static constexpr NSSize kRatio { 3, 2 };
    static constexpr NSSize kSteps { 40, 40 };
    static constexpr NSSize kSheet { 340, 130 };

    static Ref<NSView> initWithFrame(WindowStateCard& self, NSRect frame)
    {
        Ref<NSView> card = super<WindowStateCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("This window"_ns);
        self.setCaption("Pull its edges: it keeps its proportions, or goes in steps"_ns);
        self.sheet_ = addChip(&self, "Sheet"_ns, "h"_ns, sending<"showSheet">(&self));
        self.ratio_ = addChip(&self, "Keep 3 : 2"_ns, "k"_ns, sending<"keepRatio">(&self));
        self.steps_ = addChip(&self, "Steps of 40"_ns, "s"_ns, sending<"goInSteps">(&self));
        self.zoom_ = addChip(&self, "Zoom"_ns, "z"_ns, sending<"zoomWindow">(&self));
        drawWithWindows(self);
        return card;
    }
    static void windowChanged(WindowStateCard& self, NSNotification*)
    {
        self.setNeedsDisplay(true);
    }

    // ---- the sheet

    static void addButton(
        WindowStateCard& self, NSView& content, NSString* title, SEL action, double x)
    {
        const Ref<NSButton> button
            = NSButton::cls().buttonWithTitle_target_action(title, &self, action);
        button->setFrame(NSMakeRect(x, 14, 90, 32));
        button->setKeyEquivalent(action == selector<"accept:"> ? "\r"_ns : "\x1B"_ns);
        content.addSubview(button.get());
    }
    static Ref<NSWindow> makeSheet(WindowStateCard& self)
    {
        Ref<NSWindow> sheet = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            { {}, kSheet }, NSTitledWindowMask, NSBackingStoreBuffered, true);
        const Ref<NSView> content = sheet->contentView();
        const Ref<NSTextField> text = NSTextField::cls().wrappingLabelWithString(
            "A sheet belongs to its window, which waits for the answer."_ns);
        text->setFrame(NSMakeRect(20, 66, kSheet.width - 40, 44));
        content->addSubview(text.get());
        addButton(self, *content, "Cancel"_ns, selector<"refuse:">, kSheet.width - 204);
        addButton(self, *content, "OK"_ns, selector<"accept:">, kSheet.width - 108);
        return sheet;
    }
    static void showSheet(WindowStateCard& self)
    {
        const Ref<NSWindow> window = self.window();
        if (!window || self.shown_)
            return;
        self.shown_ = makeSheet(self);
        window->beginSheet_completionHandler(
            self.shown_.get(), [weak = WeakRef<WindowStateCard>(&self)](NSModalResponse response) {
                const Ref<WindowStateCard> card = weak.get();
                if (!card)
                    return;
                card->shown_ = nullptr;
                card->answer_ = response == NSModalResponseOK ? "OK"_ns : "Cancel"_ns;
                card->setNeedsDisplay(true);
            });
    }
    static void accept(WindowStateCard& self, NSObject*) { end(self, NSModalResponseOK); }
    static void refuse(WindowStateCard& self, NSObject*) { end(self, NSModalResponseCancel); }
    static void end(WindowStateCard& self, NSModalResponse response)
    {
        maybe(self.window())->endSheet_returnCode(self.shown_.get(), response);
    }

    // ---- proportions

    static void keepRatio(WindowStateCard& self)
    {
        self.ratio_->setOn(!self.ratio_->isOn());
        self.steps_->setOn(false);
        setProportions(self);
    }
    static void goInSteps(WindowStateCard& self)
    {
        self.steps_->setOn(!self.steps_->isOn());
        self.ratio_->setOn(false);
        setProportions(self);
    }
    static void setProportions(WindowStateCard& self)
    {
        const Ref<NSWindow> window = self.window();
        if (!window)
            return;
        setContentResizeIncrements(window, self.steps_->isOn() ? kSteps : NSSize { 1, 1 });
        if (self.ratio_->isOn())
            setContentAspectRatio(window, kRatio);
    }
    static void zoomWindow(WindowStateCard& self) { maybe(self.window())->performZoom(&self); }
    /// The window is as it was before for the next page.
    static void viewWillMoveToWindow(WindowStateCard& self, NSWindow* window)
    {
        const Ref<NSWindow> present = self.window();
        if (!present || present == window)
            return;
        present->endSheet(self.shown_.get());
        setContentResizeIncrements(present, { 1, 1 });
    }

    static void setFrameSize(WindowStateCard& self, NSSize size)
    {
        super<WindowStateCard, "setFrameSize:">(self, size);
        if (!self.zoom_)
            return;
        const NSRect body = self.bodyRect();
        const double lower = NSMaxY(body) - kChipHeight;
        layOutChips(
            { self.sheet_.get(), self.zoom_.get() }, { body.origin.x, lower - kChipHeight - 10 });
        layOutChips({ self.ratio_.get(), self.steps_.get() }, { body.origin.x, lower });
    }
    static void drawBody(WindowStateCard& self, NSRect body)
    {
        const Ref<NSWindow> window = self.window();
        if (!window)
            return;
        std::string state = window->isKeyWindow() ? "key" : "not key";
        state += window->isZoomed() ? ", zoomed" : "";
        const std::pair<NSString*, Ref<NSString>> rows[] = {
            { "Frame"_ns, textOf(window->frame()) }, { "State"_ns, stringFrom(state) },
            { "Sheet"_ns, self.answer_ ? self.answer_ : Ref<NSString>("not answered yet"_ns) }
        };
        double y = body.origin.y;
        for (const auto& [name, value] : rows) {
            if (y + 20 > NSMinY(self.sheet_->frame()))
                return;
            drawText(name, { body.origin.x, y + 2 }, Style::caption, palette().quietText.get());
            drawFitted(value.get(), { body.origin.x + 70, y }, body.size.width - 70, Style::body,
                palette().text.get());
            y += 26;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "windowChanged:", imp<windowChanged> },
            { "showSheet", imp<showSheet> },
            { "accept:", imp<accept> },
            { "refuse:", imp<refuse> },
            { "keepRatio", imp<keepRatio> },
            { "goInSteps", imp<goInSteps> },
            { "zoomWindow", imp<zoomWindow> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(WindowStateCard, State)

template <> struct ScreensCard::Methods<struct Map> {

    static constexpr double kFacts = 18; // below each screen

    static Ref<NSView> initWithFrame(ScreensCard& self, NSRect frame)
    {
        Ref<NSView> card = super<ScreensCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Screens"_ns);
        self.setCaption("How they stand to each other, and the windows on them"_ns);
        drawWithWindows(self);
        return card;
    }
    static void windowChanged(ScreensCard& self, NSNotification*) { self.setNeedsDisplay(true); }

    /// Brings places on the screens, which count from below, into the card, which counts from above.
    struct Scale {
        NSRect all; // of the screens
        NSRect room;
        double factor;

        Scale(NSRect screens, NSRect body)
            : all(screens)
            , room(body)
            , factor(std::min(
                  body.size.width / screens.size.width, body.size.height / screens.size.height))
        {
        }
        NSRect operator()(NSRect r) const
        {
            return NSMakeRect(room.origin.x + (r.origin.x - all.origin.x) * factor,
                room.origin.y + (NSMaxY(all) - NSMaxY(r)) * factor, r.size.width * factor,
                r.size.height * factor);
        }
    };
    static void drawBody(ScreensCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const Ref<NSArray> screens = NSScreen::cls().screens();
        NSRect all {};
        for (NSScreen* screen : each<NSScreen>(screens))
            all = NSUnionRect(all, screen->frame());
        if (NSIsEmptyRect(all))
            return;
        body.size.height -= kFacts;
        const Scale scaled(all, body);
        for (NSScreen* screen : each<NSScreen>(screens)) {
            const NSRect place = scaled(screen->frame());
            fillRounded(place, 4, colors.sidebar.get());
            fillRounded(scaled(screen->visibleFrame()), 4, colors.window.get());
            strokeRounded(place, 4, colors.border.get());
            const Ref<NSString> facts = NSString::cls().stringWithFormat("%g × %g, scale %g"_ns,
                screen->frame().size.width, screen->frame().size.height,
                screen->backingScaleFactor());
            drawFitted(facts.get(), { place.origin.x, NSMaxY(place) + 4 }, place.size.width,
                Style::caption, colors.quietText.get());
        }
        const Ref<NSArray> front = NSApplication::cls().sharedApplication()->orderedWindows();
        for (NSUInteger i = front->count(); i-- > 0;) {
            const auto window = cast<NSWindow>(front->objectAtIndex(i));
            if (!window->isVisible())
                continue;
            const NSRect place = scaled(window->frame());
            fillRounded(place, 2, (window == self.window() ? colors.soft : colors.card).get());
            strokeRounded(place, 2, (window->isKeyWindow() ? colors.accent : colors.border).get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "windowChanged:", imp<windowChanged> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ScreensCard, Map)

}
