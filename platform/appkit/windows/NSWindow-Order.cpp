// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <exception>

#include "NSWindowPrivate.h"
#include "appkit/NSPanel.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using display::SurfaceKind;

    SurfaceKind kindOf(NSWindow& window)
    {
        const WindowState& state = WindowAccess::state(window);
        if (state.level == kToolTipLevel)
            return SurfaceKind::tooltip;
        if (state.level >= NSPopUpMenuWindowLevel && state.level < NSScreenSaverWindowLevel)
            return SurfaceKind::popup;
        if (state.level == NSModalPanelWindowLevel)
            return SurfaceKind::modal;
        if (state.level >= NSMainMenuWindowLevel && state.level < NSPopUpMenuWindowLevel)
            return SurfaceKind::dock;
        if ((state.style & NSUtilityWindowMask) || state.level == NSFloatingWindowLevel)
            return SurfaceKind::utility;
        return SurfaceKind::normal;
    }

    // Front to back, higher levels first: where a window goes when it is ordered to the front or back of its level.
    std::size_t edgeOfLevel(const std::vector<NSWindow*>& order, NSWindowLevel level, bool front)
    {
        std::size_t place = 0;
        while (place < order.size()) {
            const NSWindowLevel other = WindowAccess::state(*order[place]).level;
            if (front ? other <= level : other < level)
                break;
            ++place;
        }
        return place;
    }

    void insert(NSWindow& window, NSWindowOrderingMode mode, NSWindow* other)
    {
        std::vector<NSWindow*>& order = ApplicationAccess::state().order;
        std::erase(order, &window);
        const WindowState& state = WindowAccess::state(window);
        const auto found = std::find(order.begin(), order.end(), other);
        std::size_t place = edgeOfLevel(order, state.level, mode != NSWindowBelow);
        if (other && found != order.end() && WindowAccess::state(*other).level == state.level)
            place
                = static_cast<std::size_t>(found - order.begin()) + (mode == NSWindowBelow ? 1 : 0);
        order.insert(order.begin() + static_cast<std::ptrdiff_t>(place), &window);
    }

    void stack(NSWindow& window, NSWindowOrderingMode mode, NSWindow* other)
    {
        display::Surface& surface = WindowAccess::surface(window);
        display::Surface* relative = other ? WindowAccess::state(*other).surface.get() : nullptr;
        if (relative && mode == NSWindowBelow)
            surface.stackBelow(*relative);
        else if (relative)
            surface.stackAbove(*relative);
        else if (mode == NSWindowBelow)
            surface.lower();
        else
            surface.raise();
    }

}

display::Surface& WindowAccess::surface(NSWindow& window)
{
    WindowState& s = state(window);
    if (s.surface)
        return *s.surface;
    display::SurfaceOptions options;
    options.frame = s.frame;
    options.kind = kindOf(window);
    options.level = static_cast<int>(s.level);
    options.opaque = s.opaque && !isTitled(s); // rounded corners show what is below
    options.overrideRedirect
        = options.kind == SurfaceKind::popup || options.kind == SurfaceKind::tooltip;
    options.acceptsFocus = becomesKeyUnasked(window);
    options.resizable = (s.style & NSResizableWindowMask) != 0;
    options.title = utf8Of(s.title.get());
    const Ref<NSWindow> owner = s.parent ? Ref<NSWindow>(s.parent) : cast<NSWindow>(s.anchor.get());
    if (owner && state(*owner).surface)
        options.transientFor = state(*owner).surface.get();
    s.surface = ApplicationAccess::display().createSurface(options);
    ApplicationAccess::state().bySurface[s.surface->id()] = &window;
    if (s.ignoresMouse)
        s.surface->setInputPassthrough(true);
    if (s.alpha < 1)
        s.surface->setAlpha(s.alpha);
    settleScreenEdge(window);
    tellSizes(window);
    return *s.surface;
}

void WindowAccess::dropSurface(NSWindow& window)
{
    WindowState& s = state(window);
    if (!s.surface)
        return;
    AllServed all;
    all.serve([&] { endLiveResize(window); });
    for (const Ref<NSWindow>& child : s.children) {
        if (state(*child).surface)
            state(*child).surface->setTransientFor(nullptr);
    }
    ApplicationAccess::state().bySurface.erase(s.surface->id());
    s.surface.reset();
    s.backing.reset();
    all.end();
}

namespace {

    /// Draws a window before it is there. - Returns: what a view raised, which does not keep the window away.
    std::exception_ptr drawFirstPicture(NSWindow& window)
    {
        try {
            WindowAccess::damageAll(window); // its looks were not followed while nobody saw it
            WindowAccess::drawIfVisible(window);
        } catch (...) {
            return std::current_exception();
        }
        return nullptr;
    }

    /// Answers the children in the order in which they are to be put right above or below their parent: those above
    /// keep the order in which they lie.
    std::vector<std::pair<Ref<NSWindow>, NSWindowOrderingMode>> childrenOf(const WindowState& s)
    {
        std::vector<std::pair<Ref<NSWindow>, NSWindowOrderingMode>> children;
        for (std::size_t i = 0; i < s.children.size(); ++i)
            children.emplace_back(s.children[i], s.childBelow[i] ? NSWindowBelow : NSWindowAbove);
        const std::vector<NSWindow*>& order = ApplicationAccess::state().order;
        const auto depth = [&order](const auto& child) {
            return child.second == NSWindowBelow
                ? -1
                : std::find(order.begin(), order.end(), child.first.get()) - order.begin();
        };
        std::stable_sort(children.begin(), children.end(),
            [&depth](const auto& a, const auto& b) { return depth(a) < depth(b); });
        return children;
    }

    void rethrow(const std::exception_ptr& raised)
    {
        if (raised)
            std::rethrow_exception(raised);
    }

}

void WindowAccess::orderIn(
    NSWindow& window, NSWindowOrderingMode mode, NSWindow* other, bool regardless)
{
    frameView(window); // there must be something to show
    WindowState& s = state(window);
    const Ref<NSWindow> alive(&window);
    ApplicationState& app = ApplicationAccess::state();
    if (other == &window)
        other = nullptr;
    s.kept = &window;
    s.closed = false;
    s.wasShown = true;
    if (s.hidesOnDeactivate && !app.active && !regardless) {
        s.waitsForActivation = true;
        return;
    }
    s.waitsForActivation = false;
    insert(window, mode, other);
    surface(window);
    const bool appears = !std::exchange(s.visible, true);
    const std::exception_ptr raised = appears ? drawFirstPicture(window) : nullptr;
    if (!s.visible || !s.surface) // a view has closed it
        return rethrow(raised);
    s.surface->setConcealed(false);
    if (!s.surface->isShown())
        s.surface->show();
    // The surfaces of children come along with that of the parent.
    if (appears || mode != NSWindowAbove || !s.parent || other != s.parent)
        stack(window, mode, other);
    if (appears) {
        s.viewsMoved = true;
        settleScreen(window);
    }
    for (const auto& [child, place] : childrenOf(s))
        orderIn(*child, place, &window, regardless);
    rethrow(raised);
}

namespace {

    enum class Leaving { hidden, concealed };

    void leave(NSWindow& window, Leaving how)
    {
        WindowState& s = WindowAccess::state(window);
        const Ref<NSWindow> alive(&window);
        s.waitsForActivation = false;
        std::erase(ApplicationAccess::state().hiddenWindows, &window);
        const std::vector<Ref<NSWindow>> children = s.children;
        AllServed all; // who is told that it goes may raise
        for (const Ref<NSWindow>& child : children)
            all.serve([&] { leave(*child, Leaving::hidden); });
        const bool wasVisible = std::exchange(s.visible, false);
        if (wasVisible) {
            std::erase(ApplicationAccess::state().order, &window);
            all.serve([&] { WindowAccess::pointerLeft(window, nullptr); });
        }
        if (s.surface && how == Leaving::concealed)
            s.surface->setConcealed(true);
        else if (s.surface)
            s.surface->hide();
        const Ref<NSWindow> released = std::move(s.kept);
        if (wasVisible)
            all.serve([&] { ApplicationAccess::windowGone(window); });
        all.end();
    }

}

void WindowAccess::orderOut(NSWindow& window) { leave(window, Leaving::hidden); }

void WindowAccess::applicationActivated(NSWindow& window)
{
    if (state(window).waitsForActivation)
        orderIn(window, NSWindowAbove, nullptr, false);
}

void WindowAccess::applicationDeactivated(NSWindow& window)
{
    WindowState& s = state(window);
    if (!s.visible || !s.hidesOnDeactivate)
        return;
    const Ref<NSWindow> alive(&window);
    AllServed all;
    // A strip that came and went with the application would move all other windows each time.
    all.serve([&] { leave(window, s.reservedHeight > 0 ? Leaving::concealed : Leaving::hidden); });
    s.kept = alive;
    s.waitsForActivation = true;
    all.end();
}

template <> struct NSWindow::Methods<struct Order> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static bool isVisible(NSWindow& self) { return of(self).visible; }
    static void orderFront(NSWindow& self, NSObject*)
    {
        WindowAccess::orderIn(self, NSWindowAbove, nullptr, false);
    }
    static void orderBack(NSWindow& self, NSObject*)
    {
        WindowAccess::orderIn(self, NSWindowBelow, nullptr, false);
    }
    static void orderOut(NSWindow& self, NSObject*) { WindowAccess::orderOut(self); }
    static void orderFrontRegardless(NSWindow& self)
    {
        WindowAccess::orderIn(self, NSWindowAbove, nullptr, true);
    }
    static void orderRelative(NSWindow& self, NSWindowOrderingMode mode, NSInteger number)
    {
        if (mode == NSWindowOut)
            return self.orderOut(nullptr);
        WindowAccess::orderIn(self, mode, ApplicationAccess::windowWithNumber(number).get(), false);
    }
    static void makeKeyAndOrderFront(NSWindow& self, NSObject* sender)
    {
        const Ref<NSWindow> alive(&self);
        self.orderFront(sender);
        AllServed all;
        all.serve([&] { self.makeKeyWindow(); });
        all.serve([&] {
            if (self.canBecomeMainWindow())
                self.makeMainWindow();
        });
        all.end();
    }

    static NSWindowLevel level(NSWindow& self) { return of(self).level; }
    static void setLevel(NSWindow& self, NSWindowLevel level)
    {
        WindowState& state = of(self);
        if (state.level == level)
            return;
        state.level = level;
        if (state.surface) {
            state.surface->setKind(kindOf(self));
            state.surface->setLevel(static_cast<int>(level));
        }
        if (state.visible)
            insert(self, NSWindowAbove, nullptr);
    }

    // ---- children

    static void forgetChild(WindowState& state, NSWindow* child)
    {
        const auto found = std::find(state.children.begin(), state.children.end(), child);
        if (found == state.children.end())
            return;
        state.childBelow.erase(state.childBelow.begin() + (found - state.children.begin()));
        state.children.erase(found);
    }
    static void addChild(NSWindow& self, NSWindow* child, NSWindowOrderingMode mode)
    {
        for (NSWindow* above = &self; above; above = of(*above).parent) {
            if (above == child)
                return;
        }
        if (!child)
            return;
        const Ref<NSWindow> alive(child);
        if (NSWindow* old = of(*child).parent)
            forgetChild(of(*old), child);
        of(*child).parent = &self;
        of(self).children.emplace_back(child);
        of(self).childBelow.push_back(mode == NSWindowBelow);
        if (of(*child).surface && of(self).surface)
            of(*child).surface->setTransientFor(of(self).surface.get());
        if (of(self).visible)
            WindowAccess::orderIn(*child, mode, &self, true);
    }
    static void removeChild(NSWindow& self, NSWindow* child)
    {
        if (!child || of(*child).parent != &self)
            return;
        const Ref<NSWindow> alive(child);
        of(*child).parent = nullptr;
        forgetChild(of(self), child);
        if (of(*child).surface)
            of(*child).surface->setTransientFor(nullptr);
    }
    static Ref<NSArray> childWindows(NSWindow& self)
    {
        const std::vector<Ref<NSWindow>>& children = of(self).children;
        return makeArray(std::vector<Ref<NSObject>>(children.begin(), children.end()));
    }
    static Ref<NSWindow> parentWindow(NSWindow& self) { return of(self).parent; }

    // ---- key and main

    static bool canBecomeKey(NSWindow& self)
    {
        constexpr NSWindowStyleMask kAny
            = NSTitledWindowMask | NSResizableWindowMask | NSDocModalWindowMask;
        return (self.styleMask() & kAny) != 0;
    }
    static bool canBecomeMain(NSWindow& self) { return canBecomeKey(self) && of(self).visible; }
    static bool isKey(NSWindow& self) { return ApplicationAccess::state().keyWindow == &self; }
    static bool isMain(NSWindow& self) { return ApplicationAccess::state().mainWindow == &self; }
    static void makeKey(NSWindow& self)
    {
        if (!self.canBecomeKeyWindow())
            return;
        WindowAccess::frameView(self); // the application must not know one that was never its own
        const Ref<NSWindow> alive(&self);
        AllServed all;
        all.serve([&] { ApplicationAccess::setKeyWindow(&self); });
        WindowState& state = of(self);
        if (state.surface && state.surface->isShown()
            && ApplicationAccess::state().focusedSurface != state.surface->id()) {
            if (!WindowAccess::becomesKeyUnasked(self))
                state.surface->setAcceptsFocus(true);
            state.surface->activate();
        }
        all.end();
    }
    static void makeMain(NSWindow& self)
    {
        if (!self.canBecomeMainWindow())
            return;
        WindowAccess::frameView(self);
        ApplicationAccess::setMainWindow(&self);
    }
    static void becomeKey(NSWindow& self)
    {
        WindowAccess::keyLookChanged(self);
        WindowAccess::notify(self, NSWindowDidBecomeKeyNotification, "windowDidBecomeKey:");
    }
    static void resignKey(NSWindow& self)
    {
        WindowAccess::keyLookChanged(self);
        WindowAccess::notify(self, NSWindowDidResignKeyNotification, "windowDidResignKey:");
    }
    static void becomeMain(NSWindow& self)
    {
        frameLookChanged(self);
        WindowAccess::notify(self, NSWindowDidBecomeMainNotification, "windowDidBecomeMain:");
    }
    static void resignMain(NSWindow& self)
    {
        frameLookChanged(self);
        WindowAccess::notify(self, NSWindowDidResignMainNotification, "windowDidResignMain:");
    }
    static bool worksWhenModal(NSWindow&) { return false; }

    static void table(Builder& t)
    {
        t.methods({
            { "isVisible", imp<isVisible> },
            { "orderFront:", imp<orderFront> },
            { "orderBack:", imp<orderBack> },
            { "orderOut:", imp<orderOut> },
            { "orderFrontRegardless", imp<orderFrontRegardless> },
            { "orderWindow:relativeTo:", imp<orderRelative> },
            { "makeKeyAndOrderFront:", imp<makeKeyAndOrderFront> },
            { "level", imp<level> },
            { "setLevel:", imp<setLevel> },
            { "addChildWindow:ordered:", imp<addChild> },
            { "removeChildWindow:", imp<removeChild> },
            { "childWindows", imp<childWindows> },
            { "parentWindow", imp<parentWindow> },
            { "canBecomeKeyWindow", imp<canBecomeKey> },
            { "canBecomeMainWindow", imp<canBecomeMain> },
            { "isKeyWindow", imp<isKey> },
            { "isMainWindow", imp<isMain> },
            { "makeKeyWindow", imp<makeKey> },
            { "makeMainWindow", imp<makeMain> },
            { "becomeKeyWindow", imp<becomeKey> },
            { "resignKeyWindow", imp<resignKey> },
            { "becomeMainWindow", imp<becomeMain> },
            { "resignMainWindow", imp<resignMain> },
            { "worksWhenModal", imp<worksWhenModal> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Order)

}
