// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include "NSWindowPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/NSNotificationCenter.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

NSWindow::~NSWindow() { WindowAccess::end(*this); }

void WindowAccess::end(NSWindow& window)
{
    if (!isReady(window) || !state(window).frameView)
        return;
    WindowState& s = state(window);
    for (const Ref<NSWindow>& child : s.children)
        state(*child).parent = nullptr;
    for (const Ref<NSWindow>& sheet : s.sheets)
        state(*sheet).sheetHost = nullptr;
    ApplicationAccess::removeWindow(window);
    s.firstResponder = nullptr;
    s.pressed = {};
    ViewAccess::setRootOf(*s.frameView, nullptr);
    s.frameView = nullptr;
    s.surface.reset();
}

void WindowAccess::notify(NSWindow& window, NSString* name, const char* delegateSelector)
{
    const Ref<NSWindow> alive(&window);
    const Ref<NSNotification> note
        = NSNotification::cls().notificationWithName_object(name, &window);
    const SEL sel = sel_registerName(delegateSelector);
    if (const Ref<NSObject> delegate = window.delegate();
        delegate && delegate->respondsToSelector(sel))
        delegate->performSelector_withObject(sel, note.get());
    NSNotificationCenter::cls().defaultCenter()->postNotification(note.get());
}

template <> struct NSWindow::Methods<struct Basics> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static Ref<NSWindow> initWithContentRect(
        NSWindow& self, NSRect content, NSWindowStyleMask style, NSBackingStoreType, bool)
    {
        if (WindowAccess::isReady(self))
            return &self; // it has its number and its place among the windows
        if (!super<NSWindow, "init", Ref<NSObject>>(self))
            return nullptr;
        WindowAccess::install(self, std::make_shared<WindowState>());
        WindowState& state = of(self);
        state.isReady = true;
        state.style = style;
        state.frame = NSWindow::cls().frameRectForContentRect_styleMask(content, style);
        state.title = ""_ns;
        ApplicationAccess::addWindow(self);
        const NSRect whole { {}, state.frame.size };
        state.frameView = makeFrameView(self, whole);
        ViewAccess::setRootOf(*state.frameView, &self);
        self.setContentView(nullptr);
        return &self;
    }
    static Ref<NSWindow> init(NSWindow& self)
    {
        return self.initWithContentRect_styleMask_backing_defer(NSMakeRect(100, 100, 480, 270),
            NSTitledWindowMask | NSClosableWindowMask | NSMiniaturizableWindowMask
                | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
    }
    static void dealloc(NSWindow& self) { WindowAccess::end(self); }

    // ---- views

    static Ref<NSView> contentView(NSWindow& self) { return of(self).contentView; }
    static void setContentView(NSWindow& self, NSView* view)
    {
        WindowState& state = of(self);
        const Ref<NSWindow> alive(&self);
        const NSRect frame { {}, state.frame.size };
        NSRect area = self.contentRectForFrameRect(frame);
        Ref<NSView> fresh(view);
        if (!fresh)
            fresh = alloc<NSView>()->initWithFrame(area);
        if (fresh == state.contentView)
            return;
        NSView& holder = WindowAccess::frameView(self);
        AllServed all;
        if (const Ref<NSView> old = std::exchange(state.contentView, fresh))
            ViewAccess::takeOut(*old, all);
        // The end of editing in the old one may have set another one, or that one again.
        const Ref<NSView> present = state.contentView;
        if (present == fresh || present->superview() != &holder) {
            present->setFrame(area);
            present->setAutoresizingMask(NSViewNotSizable); // the window sets its frame
            holder.addSubview_positioned_relativeTo(present.get(), NSWindowBelow, nullptr);
        }
        all.end();
    }

    // ---- what it is

    static NSWindowStyleMask styleMask(NSWindow& self) { return of(self).style; }
    static void setStyleMask(NSWindow& self, NSWindowStyleMask style)
    {
        WindowState& state = of(self);
        if (state.style == style)
            return;
        NSView& views = WindowAccess::frameView(self);
        state.style = style;
        if (state.surface) {
            state.surface->setResizable((style & NSResizableWindowMask) != 0);
            state.surface->setOpaque(state.opaque && !WindowAccess::isTitled(state));
        }
        WindowAccess::applyFrame(self, state.frame, false);
        state.contentView->setFrame(self.contentRectForFrameRect({ {}, state.frame.size }));
        views.viewDidMoveToWindow(); // places and enables its buttons
        WindowAccess::damageAll(self);
    }
    static bool hasTitleBar(NSWindow& self) { return (self.styleMask() & NSTitledWindowMask) != 0; }
    static Ref<NSString> title(NSWindow& self) { return of(self).title; }
    static void setTitle(NSWindow& self, NSString* title)
    {
        WindowState& state = of(self);
        state.title = title ? cast<NSString>(title->copy()) : Ref<NSString>(""_ns);
        if (state.surface)
            state.surface->setTitle(utf8Of(state.title.get()));
        frameLookChanged(self);
    }
    static NSInteger windowNumber(NSWindow& self) { return of(self).number; }
    static bool isOpaque(NSWindow& self) { return of(self).opaque; }
    static void setOpaque(NSWindow& self, bool opaque)
    {
        WindowState& state = of(self);
        state.opaque = opaque;
        if (state.surface)
            state.surface->setOpaque(opaque && !WindowAccess::isTitled(state));
        WindowAccess::damageAll(self);
    }
    static bool hasShadow(NSWindow& self) { return of(self).shadow; }
    static void setHasShadow(NSWindow& self, bool shadow) { of(self).shadow = shadow; }
    static CGFloat alphaValue(NSWindow& self) { return of(self).alpha; }
    static void setAlphaValue(NSWindow& self, CGFloat alpha)
    {
        WindowState& state = of(self);
        state.alpha = alpha >= 1 ? 1 : alpha > 0 ? alpha : 0;
        if (state.surface)
            state.surface->setAlpha(state.alpha);
    }
    static Ref<NSColor> backgroundColor(NSWindow& self)
    {
        if (const Ref<NSObject>& color = of(self).background)
            return cast<NSColor>(color);
        return NSColor::cls().windowBackgroundColor();
    }
    static void setBackgroundColor(NSWindow& self, NSColor* color)
    {
        of(self).background = color;
        WindowAccess::damageAll(self);
    }
    static bool ignoresMouse(NSWindow& self) { return of(self).ignoresMouse; }
    static void setIgnoresMouse(NSWindow& self, bool ignores)
    {
        WindowState& state = of(self);
        state.ignoresMouse = ignores;
        if (state.surface)
            state.surface->setInputPassthrough(ignores);
    }
    static bool acceptsMoved(NSWindow& self) { return of(self).acceptsMoved; }
    static void setAcceptsMoved(NSWindow& self, bool accepts) { of(self).acceptsMoved = accepts; }
    static bool isMovable(NSWindow& self) { return of(self).movable; }
    static void setMovable(NSWindow& self, bool movable) { of(self).movable = movable; }
    static bool movableByBackground(NSWindow& self) { return of(self).movableByBackground; }
    static void setMovableByBackground(NSWindow& self, bool m) { of(self).movableByBackground = m; }
    static bool hidesOnDeactivate(NSWindow& self) { return of(self).hidesOnDeactivate; }
    static void setHidesOnDeactivate(NSWindow& self, bool h) { of(self).hidesOnDeactivate = h; }
    static bool releasedWhenClosed(NSWindow& self) { return of(self).releasedWhenClosed; }
    static void setReleasedWhenClosed(NSWindow& self, bool r) { of(self).releasedWhenClosed = r; }
    static bool edited(NSWindow& self) { return of(self).edited; }
    static void setEdited(NSWindow& self, bool edited)
    {
        of(self).edited = edited;
        frameLookChanged(self);
    }
    static Ref<NSObject> delegate(NSWindow& self) { return of(self).delegate.get(); }
    static void setDelegate(NSWindow& self, NSObject* delegate) { of(self).delegate = delegate; }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "init", imp<init> },
            { "dealloc", imp<dealloc> },
            { "contentView", imp<contentView> },
            { "setContentView:", imp<setContentView> },
            { "styleMask", imp<styleMask> },
            { "setStyleMask:", imp<setStyleMask> },
            { "hasTitleBar", imp<hasTitleBar> },
            { "title", imp<title> },
            { "setTitle:", imp<setTitle> },
            { "windowNumber", imp<windowNumber> },
            { "isOpaque", imp<isOpaque> },
            { "setOpaque:", imp<setOpaque> },
            { "hasShadow", imp<hasShadow> },
            { "setHasShadow:", imp<setHasShadow> },
            { "alphaValue", imp<alphaValue> },
            { "setAlphaValue:", imp<setAlphaValue> },
            { "backgroundColor", imp<backgroundColor> },
            { "setBackgroundColor:", imp<setBackgroundColor> },
            { "ignoresMouseEvents", imp<ignoresMouse> },
            { "setIgnoresMouseEvents:", imp<setIgnoresMouse> },
            { "acceptsMouseMovedEvents", imp<acceptsMoved> },
            { "setAcceptsMouseMovedEvents:", imp<setAcceptsMoved> },
            { "isMovable", imp<isMovable> },
            { "setMovable:", imp<setMovable> },
            { "isMovableByWindowBackground", imp<movableByBackground> },
            { "setMovableByWindowBackground:", imp<setMovableByBackground> },
            { "hidesOnDeactivate", imp<hidesOnDeactivate> },
            { "setHidesOnDeactivate:", imp<setHidesOnDeactivate> },
            { "isReleasedWhenClosed", imp<releasedWhenClosed> },
            { "setReleasedWhenClosed:", imp<setReleasedWhenClosed> },
            { "isDocumentEdited", imp<edited> },
            { "setDocumentEdited:", imp<setEdited> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Basics)

}
