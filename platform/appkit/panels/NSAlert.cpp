// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAlert.h"

#include <cstdarg>

#include "NSAlertPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSImage.h"
#include "appkit/NSPanel.h"
#include "appkit/application/PhrasesPrivate.h"
#include "appkit/application/ScriptedAnswersPrivate.h"
#include "foundation/Dispatch.h"
#include "foundation/NSArray.h"
#include "foundation/NSError.h"
#include "foundation/NSNotification.h"
#include "foundation/StringFormat.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSAlert::Methods<struct Making> {

    static Ref<NSObject> init(NSAlert& self)
    {
        if (!super<NSAlert, "init", Ref<NSObject>>(self))
            return nullptr;
        self.message_ = ""_ns;
        self.information_ = ""_ns;
        return &self;
    }
    static void addButton(NSAlert& alert, NSString* title, NSInteger code)
    {
        alert.addButtonWithTitle(title)->setTag(code);
    }
    static NSAlert* withMessage(Class* self, SEL, NSString* message, NSString* button,
        NSString* alternate, NSString* other, NSString* format, ...)
    {
        Ref<NSString> information;
        va_list arguments;
        va_start(arguments, format);
        {
            const strings::ArgumentsEnd end(arguments);
            information = stringFromFormat(format, arguments);
        }
        Ref<NSAlert> alert = cast<NSAlert>(NSObject::Meta { self }.alloc()->init());
        alert->setMessageText(maybe(message)->length() ? message : "Alert"_ns);
        alert->setInformativeText(information.get());
        addButton(*alert, maybe(button)->length() ? button : "OK"_ns, NSAlertDefaultReturn);
        if (alternate)
            addButton(*alert, alternate, NSAlertAlternateReturn);
        if (other)
            addButton(*alert, other, NSAlertOtherReturn);
        return alert.leak();
    }
    static Ref<NSAlert> withError(Class& self, NSError* error)
    {
        Ref<NSAlert> alert = cast<NSAlert>(NSObject::Meta { &self }.alloc()->init());
        alert->setMessageText(maybe(error)->localizedDescription().get());
        alert->setInformativeText(maybe(error)->localizedRecoverySuggestion().get());
        return alert;
    }

    // ---- what it says

    static Ref<NSString> message(NSAlert& self) { return self.message_; }
    static void setMessage(NSAlert& self, NSString* text)
    {
        self.message_ = cast<NSString>((text ? text : ""_ns)->copy());
    }
    static Ref<NSString> information(NSAlert& self) { return self.information_; }
    static void setInformation(NSAlert& self, NSString* text)
    {
        self.information_ = cast<NSString>((text ? text : ""_ns)->copy());
    }
    static NSAlertStyle style(NSAlert& self) { return self.style_; }
    static void setStyle(NSAlert& self, NSAlertStyle style) { self.style_ = style; }
    static Ref<NSImage> icon(NSAlert& self)
    {
        return self.icon_ ? self.icon_ : AlertAccess::iconFor(self.style_);
    }
    static void setIcon(NSAlert& self, NSImage* icon) { self.icon_ = icon; }
    static Ref<NSView> accessory(NSAlert& self) { return self.accessory_; }
    static void setAccessory(NSAlert& self, NSView* view)
    {
        if (self.accessory_ && self.accessory_ != view)
            self.accessory_->removeFromSuperview();
        self.accessory_ = view;
    }
    static bool showsSuppression(NSAlert& self) { return self.showsSuppression_; }
    static void setShowsSuppression(NSAlert& self, bool shows) { self.showsSuppression_ = shows; }
    static Ref<NSButton> suppression(NSAlert& self)
    {
        if (!self.suppression_)
            self.suppression_ = NSButton::cls().checkboxWithTitle_target_action(
                phrase("Don’t show this message again"_ns).get(), nullptr, SEL {});
        return self.suppression_;
    }

    // ---- buttons

    static Ref<NSButton> addButtonWithTitle(NSAlert& self, NSString* title)
    {
        Ref<NSButton> button = NSButton::cls().buttonWithTitle_target_action(
            title, &self, selector<"pressAlertButton:">);
        button->setTag(NSAlertFirstButtonReturn + static_cast<NSInteger>(self.buttons_.size()));
        const Ref<NSString> name = button->title();
        if (self.buttons_.empty())
            button->setKeyEquivalent("\r"_ns);
        else if (name->isEqualToString("Cancel"_ns)
            || name->isEqualToString(phrase("Cancel"_ns).get()))
            button->setKeyEquivalent("\x1b"_ns);
        else if (name->isEqualToString("Don’t Save"_ns)) {
            button->setKeyEquivalent("d"_ns);
            button->setKeyEquivalentModifierMask(NSCommandKeyMask);
        }
        self.buttons_.push_back(button);
        return button;
    }
    static Ref<NSArray> buttons(NSAlert& self)
    {
        return makeArray(std::vector<Ref<NSObject>>(self.buttons_.begin(), self.buttons_.end()));
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "alertWithMessageText:defaultButton:alternateButton:otherButton:"
              "informativeTextWithFormat:",
                variadic<withMessage> },
            { "alertWithError:", imp<withError> },
        });
        t.methods({
            { "init", imp<init> },
            { "messageText", imp<message> },
            { "setMessageText:", imp<setMessage> },
            { "informativeText", imp<information> },
            { "setInformativeText:", imp<setInformation> },
            { "alertStyle", imp<style> },
            { "setAlertStyle:", imp<setStyle> },
            { "icon", imp<icon> },
            { "setIcon:", imp<setIcon> },
            { "accessoryView", imp<accessory> },
            { "setAccessoryView:", imp<setAccessory> },
            { "showsSuppressionButton", imp<showsSuppression> },
            { "setShowsSuppressionButton:", imp<setShowsSuppression> },
            { "suppressionButton", imp<suppression> },
            { "addButtonWithTitle:", imp<addButtonWithTitle> },
            { "buttons", imp<buttons> },
        });
    }
};
BRINDLE_RECORD(NSAlert, Making)

template <> struct NSAlert::Methods<struct Showing> {

    static Ref<NSWindow> window(NSAlert& self)
    {
        if (!self.window_) {
            self.window_ = alloc<NSPanel>()->initWithContentRect_styleMask_backing_defer(
                { {}, { 400, 120 } }, NSTitledWindowMask, NSBackingStoreBuffered, true);
            self.window_->setHidesOnDeactivate(false);
            self.window_->setDelegate(&self);
            self.layout();
        }
        return self.window_;
    }
    static void layout(NSAlert& self)
    {
        if (self.buttons_.empty())
            self.addButtonWithTitle("OK"_ns);
        AlertAccess::arrange(self);
    }

    static NSModalResponse runModal(NSAlert& self)
    {
        const Ref<NSAlert> alive(&self);
        if (const auto person = scripted::alertPerson())
            return person(&self);
        const Ref<NSWindow> shown = self.window();
        self.layout();
        struct Away {
            NSWindow* window;
            ~Away() { window->orderOut(nullptr); }
        } const away { shown.get() };
        return NSApplication::cls().sharedApplication()->runModalForWindow(shown.get());
    }

    static void beginSheet(NSAlert& self, NSWindow* host, Closure<void(NSModalResponse)>* lent)
    {
        const Ref<NSAlert> alive(&self);
        const Block<void(NSModalResponse)> handler(lent);
        if (const auto person = scripted::alertPerson()) {
            dispatch_async(dispatch_get_main_queue(), [alive, handler, person] {
                const NSModalResponse code = person(alive.get());
                if (handler)
                    handler(code);
            });
            return;
        }
        const Ref<NSWindow> shown = self.window();
        self.layout();
        if (!host)
            return showAlone(self, handler);
        host->beginSheet_completionHandler(shown.get(), [alive, handler](NSModalResponse code) {
            if (handler)
                handler(code);
        });
    }
    static void showAlone(NSAlert& self, const Block<void(NSModalResponse)>& handler)
    {
        endAlone(self, NSModalResponseAbort); // of a showing before
        self.kept_ = &self;
        self.handler_ = handler;
        self.window_->center();
        self.window_->makeKeyAndOrderFront(nullptr);
    }
    static void endAlone(NSAlert& self, NSModalResponse code)
    {
        const Ref<NSAlert> alive = std::exchange(self.kept_, nullptr);
        if (!alive)
            return;
        const Block<void(NSModalResponse)> handler = std::exchange(self.handler_, nullptr);
        self.window_->orderOut(nullptr);
        if (handler)
            handler(code);
    }
    static void windowWillClose(NSAlert& self, NSNotification*)
    {
        endAlone(self, NSModalResponseAbort);
    }

    static void press(NSAlert& self, NSObject* sender)
    {
        if (!sender || !sender->respondsToSelector(selector<"tag">) || !self.window_)
            return;
        const NSModalResponse code = sender->send<"tag", NSInteger>();
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        if (const Ref<NSWindow> host = self.window_->sheetParent())
            host->endSheet_returnCode(self.window_.get(), code);
        else if (self.kept_)
            endAlone(self, code);
        else if (application->modalWindow() == self.window_.get())
            application->stopModalWithCode(code);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "window", imp<window> },
            { "layout", imp<layout> },
            { "runModal", imp<runModal> },
            { "beginSheetModalForWindow:completionHandler:", imp<beginSheet> },
            { "windowWillClose:", imp<windowWillClose> },
            { "pressAlertButton:", imp<press> },
        });
    }
};
BRINDLE_RECORD(NSAlert, Showing)

}
