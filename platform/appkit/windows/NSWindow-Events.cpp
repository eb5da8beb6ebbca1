// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSWindowPrivate.h"
#include "appkit/NSPanel.h"
#include "appkit/NSView+ContextMenus.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/NSBeep.h"
#include "foundation/NSDate.h"
#include "runtime/Runtime.h"

namespace brindle {

void WindowAccess::forgetView(NSWindow& window, NSView& view)
{
    if (!isReady(window))
        return;
    WindowState& s = state(window);
    s.cursorRects.clear(); // they name views
    s.cursorRectsValid = false;
    if (s.firstResponder == &view)
        s.firstResponder = nullptr;
    for (Ref<NSView>& pressed : s.pressed) {
        if (pressed == &view)
            pressed = nullptr;
    }
    std::erase_if(s.inside, [&](const Ref<NSTrackingArea>& area) {
        if (TrackingAccess::view(*area) != &view)
            return false;
        TrackingAccess::isInside(*area) = false;
        return true;
    });
}

void WindowAccess::resignInside(NSWindow& window, NSView& view)
{
    const WindowState& s = state(window);
    if (s.isResigning || !s.firstResponder || !s.firstResponder->isKindOfClass(NSView::cls()))
        return;
    if (cast<NSView>(s.firstResponder)->isDescendantOf(&view))
        window.makeFirstResponder(nullptr);
}

void WindowAccess::viewMoved(NSWindow& window, NSView&) { state(window).viewsMoved = true; }

template <> struct NSWindow::Methods<struct Events> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    // ---- the keyboard focus

    // Whoever hears each end may give the keyboard to a view that goes, which is an end again.
    static constexpr int kMostResignings = 4;

    static Ref<NSResponder> firstResponder(NSWindow& self)
    {
        return of(self).firstResponder ? of(self).firstResponder : Ref<NSResponder>(&self);
    }
    static bool resigns(NSWindow& self, NSResponder& present)
    {
        struct Asking {
            explicit Asking(WindowState& asked)
                : state(asked)
            {
                ++state.resignings;
            }
            ~Asking()
            {
                state.isResigning = before;
                --state.resignings;
            }
            WindowState& state;
            const bool before = std::exchange(state.isResigning, true);
        } const asking(of(self));
        return present.resignFirstResponder();
    }
    static bool isInside(const NSWindow& self, const NSResponder& responder)
    {
        return responder.isKindOfClass(NSView::cls())
            && static_cast<const NSView&>(responder).window() == &self;
    }
    static bool hasKeyboard(NSWindow& self, const Ref<NSResponder>& responder)
    {
        return self.firstResponder() == responder || WindowAccess::focused(self) == responder;
    }
    static bool makeFirstResponder(NSWindow& self, NSResponder* lent)
    {
        const Ref<NSWindow> alive(&self);
        const Ref<NSResponder> wanted(lent ? lent : &self);
        const Ref<NSResponder> present = self.firstResponder();
        if (wanted == present)
            return true;
        const bool wasInside = isInside(self, *wanted);
        const std::size_t focusings = of(self).focusings;
        if (present != &self && !resigns(self, *present))
            return false;
        if (of(self).focusings != focusings && of(self).firstResponder)
            return hasKeyboard(self, wanted); // whoever heard that it resigns has chosen
        of(self).firstResponder = nullptr;
        if (wanted == &self)
            return true;
        if ((wasInside && !isInside(self, *wanted)) || !wanted->acceptsFirstResponder())
            return false;
        ++of(self).focusings;
        if (of(self).resignings < kMostResignings)
            of(self).isResigning = false; // the one that is being asked no longer has the keyboard
        of(self).firstResponder = wanted; // it may look while it is asked
        if (wanted->becomeFirstResponder())
            return true;
        if (of(self).firstResponder == wanted)
            of(self).firstResponder = nullptr;
        return false;
    }
    static Ref<NSView> initialFirstResponder(NSWindow& self)
    {
        return of(self).initialFirstResponder.get();
    }
    static void setInitialFirstResponder(NSWindow& self, NSView* view)
    {
        of(self).initialFirstResponder = view;
    }

    // ---- events

    static bool performKeyEquivalent(NSWindow& self, NSEvent* event)
    {
        const Ref<NSView> views(&WindowAccess::frameView(self));
        return views->performKeyEquivalent(event);
    }
    // A key that nobody wanted: Tab moves the focus, a button may wait for it, everything else ends the chain.
    static void keyDown(NSWindow& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const NSEventModifierFlags flags = maybe(event)->modifierFlags();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        const bool held = (flags & (NSCommandKeyMask | NSControlKeyMask)) != 0;
        if (key == 0x19 || (key == 0x09 && (flags & NSShiftKeyMask)))
            self.selectPreviousKeyView(&self);
        else if (key == 0x09 && !held)
            self.selectNextKeyView(&self);
        else if (held || !self.performKeyEquivalent(event))
            super<NSWindow, "keyDown:">(self, event);
    }

    // Escape in an editor, which had no use for it: a button may wait for it.
    static void cancelOperation(NSWindow& self, NSObject*)
    {
        const Ref<NSEvent> event = ApplicationAccess::state().current;
        if (maybe(event)->type() != NSKeyDown || !self.performKeyEquivalent(event.get()))
            self.noResponderFor(selector<"cancelOperation:">);
    }

    static std::size_t slotOf(const NSEvent& event)
    {
        return static_cast<std::size_t>(std::min<NSInteger>(event.buttonNumber(), 2));
    }
    static Ref<NSView> viewAt(NSWindow& self, NSPoint point)
    {
        Ref<NSView> found = WindowAccess::frameView(self).hitTest(point);
        return found ? found : of(self).frameView;
    }

    // A strip beside the content view takes the place of a title bar, or adds to it.
    static bool isInStrip(const WindowState& state, NSPoint point)
    {
        constexpr SEL kMoves = selector<"mouseDownCanMoveWindow">;
        const IMP ordinary = class_getMethodImplementation(NSView::cls(), kMoves);
        const std::vector<Ref<NSView>> views = ViewAccess::subviews(*state.frameView);
        for (const Ref<NSView>& view : views) {
            if (view != state.contentView && !ViewAccess::isHidden(*view)
                && NSPointInRect(point, ViewAccess::frame(*view))
                && view->methodForSelector(kMoves) != ordinary && view->mouseDownCanMoveWindow())
                return true;
        }
        return false;
    }
    static bool movesWindow(NSWindow& self, NSView& view, NSPoint point)
    {
        const WindowState& state = of(self);
        if (!state.movable || !view.mouseDownCanMoveWindow())
            return false;
        const bool inBar = WindowAccess::hasBar(state.style)
            && point.y >= state.frame.size.height - kTitleBarHeight;
        return inBar || state.movableByBackground || isInStrip(state, point);
    }

    static void becomeKeyByPress(NSWindow& self, NSView& view)
    {
        if (self.isKindOfClass(NSPanel::cls())
            && static_cast<NSPanel&>(self).becomesKeyOnlyIfNeeded()
            && !view.acceptsFirstResponder())
            return self.orderFront(nullptr);
        if (WindowAccess::becomesKeyUnasked(self))
            self.makeKeyAndOrderFront(nullptr);
        else if (of(self).level == NSNormalWindowLevel)
            self.orderFront(nullptr);
    }

    static void leftPress(NSWindow& self, NSEvent& event)
    {
        const NSPoint point = event.locationInWindow();
        display::ResizeEdge edge {};
        const bool wasKey = self.isKeyWindow() || !WindowAccess::becomesKeyUnasked(self);
        if (WindowAccess::resizeEdgeAt(self, point, edge)) {
            becomeKeyByPress(self, WindowAccess::frameView(self));
            return WindowAccess::resizeWindow(self, edge, event);
        }
        const Ref<NSView> view = viewAt(self, point);
        if (!self.isKeyWindow())
            becomeKeyByPress(self, *view);
        if (movesWindow(self, *view, point)) {
            if (event.clickCount() == 2 && (of(self).style & NSResizableWindowMask)
                && point.y >= of(self).frame.size.height - kTitleBarHeight)
                return self.performZoom(nullptr);
            return WindowAccess::dragWindow(self, event);
        }
        if (WindowAccess::attachedSheet(self))
            return NSBeep();
        if (!wasKey && !view->acceptsFirstMouse(&event))
            return;
        if (view->acceptsFirstResponder())
            self.makeFirstResponder(view.get());
        of(self).pressed[0] = view;
        view->mouseDown(&event);
    }

    static void otherPress(NSWindow& self, NSEvent& event)
    {
        if (WindowAccess::attachedSheet(self))
            return NSBeep();
        const Ref<NSView> view = viewAt(self, event.locationInWindow());
        of(self).pressed[slotOf(event)] = view;
        if (event.type() == NSRightMouseDown)
            view->rightMouseDown(&event);
        else
            view->otherMouseDown(&event);
    }

    static void toPressed(NSWindow& self, NSEvent& event)
    {
        Ref<NSView>& slot = of(self).pressed[slotOf(event)];
        const Ref<NSView> view = slot;
        if (events::isIn(event.type(), events::kUps))
            slot = nullptr;
        if (!view)
            return;
        switch (event.type()) {
        case NSLeftMouseDragged:
            return view->mouseDragged(&event);
        case NSLeftMouseUp:
            return view->mouseUp(&event);
        case NSRightMouseDragged:
            return view->rightMouseDragged(&event);
        case NSRightMouseUp:
            return view->rightMouseUp(&event);
        case NSOtherMouseDragged:
            return view->otherMouseDragged(&event);
        default:
            return view->otherMouseUp(&event);
        }
    }

    static bool asksForMenu(NSEvent& key)
    {
        constexpr unichar kF10 = NSF1FunctionKey + 9;
        constexpr NSEventModifierFlags kHeld
            = NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
        const Ref<NSString> text = key.charactersIgnoringModifiers();
        const unichar first = maybe(text)->length() ? text->characterAtIndex(0) : unichar {};
        const NSEventModifierFlags held = key.modifierFlags() & kHeld;
        return (first == NSMenuFunctionKey && !held) || (first == kF10 && held == NSShiftKeyMask);
    }
    static bool showsMenu(NSWindow& self, NSEvent& key)
    {
        return asksForMenu(key) && !WindowAccess::attachedSheet(self)
            && self.firstResponder()->tryToPerform_with(
                selector<"showContextMenuForSelection:">, nullptr);
    }

    static void sendEvent(NSWindow& self, NSEvent* lent)
    {
        const Ref<NSWindow> alive(&self);
        const Ref<NSEvent> event(lent);
        const NSEventType type = maybe(lent)->type();
        if (type == NSLeftMouseDown)
            leftPress(self, *event);
        else if (events::isIn(type, events::kDowns))
            otherPress(self, *event);
        else if (events::isIn(type, events::kUps | events::kDrags))
            toPressed(self, *event);
        else if (type == NSScrollWheel && !WindowAccess::attachedSheet(self))
            viewAt(self, event->locationInWindow())->scrollWheel(lent);
        else if (type == NSMouseMoved && of(self).acceptsMoved)
            self.firstResponder()->mouseMoved(lent);
        else if (type == NSKeyDown && !showsMenu(self, *event))
            self.firstResponder()->keyDown(lent);
        else if (type == NSKeyUp)
            self.firstResponder()->keyUp(lent);
        else if (type == NSFlagsChanged)
            self.firstResponder()->flagsChanged(lent);
    }

    static Ref<NSEvent> currentEvent(NSWindow&) { return ApplicationAccess::state().current; }
    static Ref<NSEvent> nextEvent(NSWindow&, NSEventMask mask)
    {
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                mask, NSDate::cls().distantFuture().get(), NSEventTrackingRunLoopMode, true);
    }
    static Ref<NSEvent> nextEventUntil(
        NSWindow&, NSEventMask mask, NSDate* date, NSString* mode, bool dequeue)
    {
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(mask, date, mode, dequeue);
    }
    static void postEvent(NSWindow&, NSEvent* event, bool atStart)
    {
        if (event)
            ApplicationAccess::post(*event, atStart);
    }
    static NSPoint mouseLocation(NSWindow& self)
    {
        return self.convertPointFromScreen(ApplicationAccess::pointerLocation());
    }
    static bool tryToPerform(NSWindow& self, SEL action, NSObject* argument)
    {
        if (super<NSWindow, "tryToPerform:with:", bool>(self, action, argument))
            return true;
        const Ref<NSObject> delegate = self.delegate();
        if (!delegate || !delegate->respondsToSelector(action))
            return false;
        delegate->performSelector_withObject(action, argument);
        return true;
    }
    static bool yes(NSWindow&) { return true; }
    static void update(NSWindow& self)
    {
        WindowAccess::notify(self, NSWindowDidUpdateNotification, "windowDidUpdate:");
    }

    static void table(Builder& t)
    {
        t.methods({
            { "firstResponder", imp<firstResponder> },
            { "makeFirstResponder:", imp<makeFirstResponder> },
            { "initialFirstResponder", imp<initialFirstResponder> },
            { "setInitialFirstResponder:", imp<setInitialFirstResponder> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "keyDown:", imp<keyDown> },
            { "cancelOperation:", imp<cancelOperation> },
            { "update", imp<update> },
            { "sendEvent:", imp<sendEvent> },
            { "currentEvent", imp<currentEvent> },
            { "nextEventMatchingMask:", imp<nextEvent> },
            { "nextEventMatchingMask:untilDate:inMode:dequeue:", imp<nextEventUntil> },
            { "postEvent:atStart:", imp<postEvent> },
            { "mouseLocationOutsideOfEventStream", imp<mouseLocation> },
            { "tryToPerform:with:", imp<tryToPerform> },
            { "acceptsFirstResponder", imp<yes> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Events)

}
