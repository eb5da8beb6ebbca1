// SPDX-License-Identifier: Apache-2.0
#include "WindowsCards.h"

#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSPanel.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSObjCRuntime.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"
#include "shell/BROSPanel.h"
#include "shell/NSApplication+GWAboutPanel.h"
#include "shell/OSWindow.h"

namespace gallery {

using namespace brindle;

namespace {

    /// What the sample windows show: their class, and a place to drag them by.
    class SampleContent : public NSView {
        BRINDLE_OBJECT(SampleContent, NSView)
    };

    Ref<NSApplication> application() { return NSApplication::cls().sharedApplication(); }

}

template <> struct SampleContent::Methods<struct Look> {
    static bool isFlipped(SampleContent&) { return true; }
    static bool mouseDownCanMoveWindow(SampleContent&) { return true; }
    static void drawRect(SampleContent& self, NSRect)
    {
        const NSRect bounds = self.bounds();
        fill(bounds, palette().card.get());
        strokeRounded(bounds, 0, palette().border.get());
        const Ref<NSString> name = NSStringFromClass(self.window()->classObject());
        drawText(name.get(), { 16, 14 }, Style::heading, palette().text.get());
        drawText("Drag it anywhere"_ns, { 16, 38 }, Style::caption, palette().quietText.get());
    }
    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(SampleContent, Look)

template <> struct WindowKindsCard::Methods<struct Kinds> {

    static constexpr NSWindowStyleMask kFrame = NSTitledWindowMask | NSClosableWindowMask
        | NSMiniaturizableWindowMask | NSResizableWindowMask;

    template <class Window>
    static Block<void()> opening(WindowKindsCard& self, NSWindowStyleMask style)
    {
        return [weak = WeakRef<WindowKindsCard>(&self), style] {
            if (const Ref<WindowKindsCard> card = weak.get())
                open(*card, alloc<Window>(), style);
        };
    }
    static void open(WindowKindsCard& self, const Ref<NSWindow>& made, NSWindowStyleMask style)
    {
        const double step = 24.0 * static_cast<double>(self.opened_++ % 8);
        const NSRect home = self.window()->frame();
        const NSRect content
            = NSMakeRect(home.origin.x + 330 + step, home.origin.y + 180 - step, 240, 120);
        const Ref<NSWindow> window = made->initWithContentRect_styleMask_backing_defer(
            content, style, NSBackingStoreBuffered, true);
        window->setTitle(NSStringFromClass(window->classObject()).get());
        window->setContentView(make<SampleContent>().get());
        window->setMovableByWindowBackground(true);
        window->setHidesOnDeactivate(false);
        self.window()->addChildWindow_ordered(window.get(), NSWindowAbove);
        window->makeKeyAndOrderFront(nullptr);
    }
    static void closeAll(WindowKindsCard& self)
    {
        self.opened_ = 0;
        const Ref<NSWindow> home = self.window();
        if (!home)
            return;
        const Ref<NSArray> children = home->childWindows();
        for (NSWindow* window : each<NSWindow>(children)) {
            if (!window->contentView()->isKindOfClass(SampleContent::cls()))
                continue;
            home->removeChildWindow(window);
            window->close();
        }
        home->makeKeyWindow();
    }

    static Ref<NSView> initWithFrame(WindowKindsCard& self, NSRect frame)
    {
        Ref<NSView> card = super<WindowKindsCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Open one"_ns);
        self.setCaption("With and without a frame; panels never take the keyboard"_ns);
        self.titled_ = addChip(&self, "Titled"_ns, "t"_ns, opening<NSWindow>(self, kFrame));
        self.bare_ = addChip(
            &self, "Borderless"_ns, "b"_ns, opening<NSWindow>(self, NSBorderlessWindowMask));
        self.borderless_ = addChip(
            &self, "OSWindow"_ns, "o"_ns, opening<OSWindow>(self, NSBorderlessWindowMask));
        self.panel_ = addChip(&self, "BROSPanel"_ns, "p"_ns,
            opening<BROSPanel>(self, NSTitledWindowMask | NSClosableWindowMask));
        self.about_ = addChip(&self, "About"_ns, "a"_ns, [] { showAbout(application(), nullptr); });
        self.close_ = addChip(&self, "Close all"_ns, "x"_ns, sending<"closeAll">(&self));
        return card;
    }
    static void viewWillMoveToWindow(WindowKindsCard& self, NSWindow*) { closeAll(self); }
    static void setFrameSize(WindowKindsCard& self, NSSize size)
    {
        super<WindowKindsCard, "setFrameSize:">(self, size);
        const NSPoint corner = self.bodyRect().origin;
        constexpr double kRow = kChipHeight + 10;
        layOutChips({ self.titled_.get(), self.bare_.get(), self.borderless_.get() }, corner);
        layOutChips({ self.panel_.get(), self.about_.get(), self.close_.get() },
            { corner.x, corner.y + kRow });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
            { "setFrameSize:", imp<setFrameSize> },
            { "closeAll", imp<closeAll> },
        });
    }
};
BRINDLE_RECORD(WindowKindsCard, Kinds)

template <> struct WindowListCard::Methods<struct List> {

    static constexpr double kRow = 46;

    static Ref<NSView> initWithFrame(WindowListCard& self, NSRect frame)
    {
        Ref<NSView> card = super<WindowListCard, "initWithFrame:", Ref<NSView>>(self, frame);
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        for (NSString* name : std::initializer_list<NSString*> { NSWindowDidBecomeKeyNotification,
                 NSWindowDidResignKeyNotification, NSWindowDidBecomeMainNotification,
                 NSWindowDidResignMainNotification, NSWindowWillCloseNotification,
                 NSWindowDidMoveNotification, NSWindowDidResizeNotification })
            center->addObserver_selector_name_object(
                &self, selector<"windowsChanged:">, name, nullptr);
        return card;
    }
    static void windowsChanged(WindowListCard& self, NSNotification*)
    {
        self.setNeedsDisplay(true);
    }

    static Ref<NSString> marksOf(const NSWindow& window)
    {
        std::string marks = window.isKeyWindow() ? "key" : "";
        if (window.isMainWindow())
            marks += marks.empty() ? "main" : "  main";
        return stringFrom(marks);
    }
    /// Draws a window in two lines: its class and title, and below where it is.
    static void drawRow(const NSWindow& window, NSRect row)
    {
        const Palette& colors = palette();
        const Ref<NSString> marks = marksOf(window);
        const double right = NSMaxX(row) - sizeOf(marks.get(), Style::caption).width;
        drawText(marks.get(), { right, row.origin.y + 2 }, Style::caption, colors.accent.get());
        const Ref<NSString> kind = NSStringFromClass(window.classObject());
        const double named = row.origin.x + sizeOf(kind.get(), Style::body).width + 10;
        drawText(kind.get(), row.origin, Style::body, colors.text.get());
        drawFitted(window.title().get(), { named, row.origin.y + 2 }, right - named - 10,
            Style::caption, colors.quietText.get());
        const NSRect frame = window.frame();
        const Ref<NSString> place = NSString::cls().stringWithFormat(
            "x %g   y %g   %g × %g   level %ld"_ns, frame.origin.x, frame.origin.y,
            frame.size.width, frame.size.height, window.level());
        drawFitted(place.get(), { row.origin.x, row.origin.y + 18 }, row.size.width, Style::caption,
            colors.quietText.get());
    }
    static void drawBody(WindowListCard&, NSRect body)
    {
        NSRect row = NSMakeRect(body.origin.x, body.origin.y, body.size.width, kRow);
        for (NSWindow* window : each<NSWindow>(application()->orderedWindows())) {
            if (NSMaxY(row) > NSMaxY(body))
                return;
            drawRow(*window, row);
            fill(NSMakeRect(row.origin.x, NSMaxY(row) - 7, row.size.width, 1),
                palette().border.get());
            row.origin.y += kRow;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "windowsChanged:", imp<windowsChanged> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(WindowListCard, List)

}
