// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindowController.h"

#include "NSWindowPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSWindowController::Methods<struct Controllers> {

    static Ref<NSWindowController> initWithWindow(NSWindowController& self, NSWindow* window)
    {
        if (!super<NSWindowController, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setWindow(window);
        return &self;
    }
    static Ref<NSWindowController> initWithNib(NSWindowController& self, NSString* name)
    {
        if (!name)
            raise("NSInvalidArgumentException",
                "*** -[NSWindowController initWithWindowNibName:]: nil name");
        if (!self.initWithWindow(nullptr))
            return nullptr;
        self.nibName_ = cast<NSString>(name->copy());
        return &self;
    }
    static Ref<NSObject> init(NSWindowController& self) { return self.initWithWindow(nullptr); }
    static void dealloc(NSWindowController& self) { letGo(self); }
    static Ref<NSString> nibName(NSWindowController& self) { return self.nibName_; }

    // ---- the window

    static void letGo(NSWindowController& self)
    {
        const Ref<NSWindow> old = std::exchange(self.window_, nullptr);
        if (!old || windowController(old) != &self)
            return;
        setWindowController(old, nullptr);
        old->setNextResponder(nullptr);
    }
    static void setWindow(NSWindowController& self, NSWindow* lent)
    {
        if (lent && !lent->isKindOfClass(NSWindow::cls()))
            raise(
                "NSInvalidArgumentException", "*** -[NSWindowController setWindow:]: not a window");
        if (self.window_ == lent)
            return;
        const Ref<NSWindow> fresh(lent);
        letGo(self);
        if (!fresh)
            return;
        if (const Ref<NSWindowController> other = windowController(fresh))
            other->setWindow(nullptr);
        self.window_ = fresh;
        setWindowController(fresh, &self);
        fresh->setNextResponder(&self);
        fresh->setReleasedWhenClosed(false);
        saveFrame(self);
    }
    static void saveFrame(NSWindowController& self)
    {
        if (self.window_ && self.autosaveName_)
            self.window_->setFrameAutosaveName(self.autosaveName_.get());
    }
    static void cascade(NSWindowController& self)
    {
        static NSPoint next; // zero: the first window stays where it is
        if (self.window_ && self.cascades_ && !maybe(self.autosaveName_)->length())
            next = self.window_->cascadeTopLeftFromPoint(next);
    }
    static Ref<NSWindow> window(NSWindowController& self)
    {
        if (self.window_ || self.loaded_ || self.loading_ || !self.windowNibName())
            return self.window_;
        const Ref<NSWindowController> alive(&self);
        self.loading_ = true;
        try {
            self.windowWillLoad();
            self.loadWindow();
        } catch (...) {
            self.loading_ = false;
            throw;
        }
        self.loading_ = false;
        self.loaded_ = true;
        cascade(self);
        self.windowDidLoad();
        return self.window_;
    }
    static bool isLoaded(NSWindowController& self) { return self.window_ || self.loaded_; }
    static void loadWindow(NSWindowController& self)
    {
        self.setWindow(make<NSWindow>().get());
        maybe(self.window_)->center();
    }
    static void nothing(NSWindowController&) { }

    static void show(NSWindowController& self, NSObject* sender)
    {
        maybe(self.window())->makeKeyAndOrderFront(sender);
    }
    static void close(NSWindowController& self)
    {
        const Ref<NSWindowController> alive(&self);
        maybe(self.window_)->close();
    }

    // ---- what goes on to the window

    static Ref<NSString> autosaveName(NSWindowController& self)
    {
        return self.autosaveName_ ? self.autosaveName_ : Ref<NSString>(""_ns);
    }
    static void setAutosaveName(NSWindowController& self, NSString* name)
    {
        self.autosaveName_ = name ? cast<NSString>(name->copy()) : Ref<NSString>(""_ns);
        saveFrame(self);
    }
    static bool cascades(NSWindowController& self) { return self.cascades_; }
    static void setCascades(NSWindowController& self, bool cascades) { self.cascades_ = cascades; }
    static Ref<NSViewController> content(NSWindowController& self)
    {
        return brindle::contentViewController(maybe(self.window_));
    }
    static void setContent(NSWindowController& self, NSViewController* controller)
    {
        brindle::setContentViewController(maybe(self.window()), controller);
    }
    static Ref<NSObject> document(NSWindowController& self) { return self.document_.get(); }
    static void setDocument(NSWindowController& self, NSObject* document)
    {
        self.document_ = document;
    }
    static void setEdited(NSWindowController& self, bool edited)
    {
        maybe(self.window_)->setDocumentEdited(edited);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "init", imp<init> },
            { "initWithWindow:", imp<initWithWindow> },
            { "initWithWindowNibName:", imp<initWithNib> },
            { "dealloc", imp<dealloc> },
            { "windowNibName", imp<nibName> },
            { "window", imp<window> },
            { "setWindow:", imp<setWindow> },
            { "isWindowLoaded", imp<isLoaded> },
            { "loadWindow", imp<loadWindow> },
            { "windowWillLoad", imp<nothing> },
            { "windowDidLoad", imp<nothing> },
            { "showWindow:", imp<show> },
            { "close", imp<close> },
            { "shouldCascadeWindows", imp<cascades> },
            { "setShouldCascadeWindows:", imp<setCascades> },
            { "windowFrameAutosaveName", imp<autosaveName> },
            { "setWindowFrameAutosaveName:", imp<setAutosaveName> },
            { "contentViewController", imp<content> },
            { "setContentViewController:", imp<setContent> },
            { "document", imp<document> },
            { "setDocument:", imp<setDocument> },
            { "setDocumentEdited:", imp<setEdited> },
        });
    }
};
BRINDLE_RECORD(NSWindowController, Controllers)

template <> struct NSWindow::Methods<struct Controllers> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    static Ref<NSWindowController> controller(NSWindow& self)
    {
        return cast<NSWindowController>(of(self).controller.get());
    }
    static void setController(NSWindow& self, NSWindowController* controller)
    {
        if (controller && !controller->isKindOfClass(NSWindowController::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSWindow setWindowController:]: not a controller");
        of(self).controller = controller;
    }
    static Ref<NSViewController> contentController(NSWindow& self)
    {
        return cast<NSViewController>(of(self).contentController);
    }
    static void setContentController(NSWindow& self, NSViewController* lent)
    {
        if (lent && !lent->isKindOfClass(NSViewController::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSWindow setContentViewController:]: not a controller");
        const Ref<NSWindow> alive(&self);
        const Ref<NSViewController> controller(lent);
        const Ref<NSView> view = controller ? controller->view() : nullptr;
        of(self).contentController = controller;
        if (!view)
            return;
        const NSSize size = view->frame().size;
        if (size.width > 0 && size.height > 0)
            self.setContentSize(size);
        self.setContentView(view.get());
        if (maybe(controller->title())->length())
            self.setTitle(controller->title().get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "windowController", imp<controller> },
            { "setWindowController:", imp<setController> },
            { "contentViewController", imp<contentController> },
            { "setContentViewController:", imp<setContentController> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Controllers)

}
