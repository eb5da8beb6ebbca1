// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSavePanel.h"

#include <filesystem>

#include "FilePanelPrivate.h"
#include "FilePanelViewPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSOpenPanel.h"
#include "appkit/application/PhrasesPrivate.h"
#include "appkit/application/ScriptedAnswersPrivate.h"
#include "foundation/Dispatch.h"
#include "runtime/Table.h"

namespace brindle {

FilePanelState::FilePanelState(NSSavePanel& panel)
    : owner(&panel)
    , browser(std::make_shared<files::Browser>(*this))
    , message(""_ns)
    , name("Untitled"_ns)
    , opens(panel.isKindOfClass(NSOpenPanel::cls()))
{
}

template <> struct NSSavePanel::Methods<struct Settings> {

    static FilePanelState& of(NSSavePanel& self) { return FilePanelAccess::of(self); }
    static files::Browser& browserOf(NSSavePanel& self) { return *of(self).browser; }

    static constexpr NSSize kSize { 760, 460 }; // points

    static Ref<NSSavePanel> panel(Class& self)
    {
        return cast<NSSavePanel>(NSObject::Meta { &self }.alloc()->init());
    }
    static Ref<NSWindow> init(NSSavePanel& self)
    {
        return self.initWithContentRect_styleMask_backing_defer({ {}, kSize },
            NSTitledWindowMask | NSClosableWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
    }
    static Ref<NSWindow> initWithContentRect(NSSavePanel& self, NSRect content,
        NSWindowStyleMask style, NSBackingStoreType backing, bool defer)
    {
        const Ref<NSWindow> made
            = super<NSSavePanel, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
                self, content, style, backing, defer);
        if (!made)
            return nullptr;
        self.setHidesOnDeactivate(false);
        self.setContentMinSize({ 480, 320 });
        self.setTitle((of(self).opens ? "Open"_ns : "Save"_ns));
        return &self;
    }

    // ---- what it says

    static Ref<NSString> copyOf(NSString* text)
    {
        return text ? cast<NSString>(text->copy()) : nullptr;
    }
    static void changed(NSSavePanel& self)
    {
        if (of(self).views)
            FilePanelAccess::settleViews(self);
    }
    static Ref<NSString> message(NSSavePanel& self) { return of(self).message; }
    static void setMessage(NSSavePanel& self, NSString* text)
    {
        of(self).message = text ? copyOf(text) : Ref<NSString>(""_ns);
        changed(self);
    }
    static Ref<NSString> prompt(NSSavePanel& self)
    {
        return of(self).prompt ? of(self).prompt : phrase(of(self).opens ? "Open"_ns : "Save"_ns);
    }
    static void setPrompt(NSSavePanel& self, NSString* text)
    {
        of(self).prompt = copyOf(text);
        changed(self);
    }
    static Ref<NSString> nameLabel(NSSavePanel& self)
    {
        return of(self).nameLabel ? of(self).nameLabel : phrase("Save As:"_ns);
    }
    static void setNameLabel(NSSavePanel& self, NSString* text)
    {
        of(self).nameLabel = copyOf(text);
        changed(self);
    }
    static Ref<NSString> name(NSSavePanel& self)
    {
        if (of(self).views)
            of(self).name = FilePanelViews::typedName(*of(self).views);
        return of(self).name;
    }
    static void setName(NSSavePanel& self, NSString* text)
    {
        of(self).name = text ? copyOf(text) : Ref<NSString>(""_ns);
        changed(self);
    }
    static Ref<NSView> accessory(NSSavePanel& self) { return of(self).accessory; }
    static void setAccessory(NSSavePanel& self, NSView* view)
    {
        if (of(self).accessory && of(self).accessory != view)
            of(self).accessory->removeFromSuperview();
        of(self).accessory = view;
        changed(self);
    }
    static void setDelegate(NSSavePanel& self, NSObject* delegate)
    {
        super<NSSavePanel, "setDelegate:">(self, delegate);
        browserOf(self).forgetEnabled();
    }

    // ---- what may be chosen

    static Ref<NSURL> directory(NSSavePanel& self)
    {
        const std::string& shown = browserOf(self).folder();
        return FilePanelAccess::urlOf(
            shown.empty() ? FilePanelAccess::startFolder(of(self)) : shown, true);
    }
    static void setDirectory(NSSavePanel& self, NSURL* url)
    {
        const bool isFile = url && url->isFileURL();
        std::string path = isFile ? utf8Of(url->path()) : std::string();
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored) && !std::filesystem::is_directory(path, ignored))
            path = std::filesystem::path(path).parent_path().string();
        of(self).start = path.starts_with('/') ? path : std::string();
        if (!browserOf(self).folder().empty())
            browserOf(self).show(FilePanelAccess::startFolder(of(self)));
    }
    static Ref<NSArray> types(NSSavePanel& self) { return of(self).types; }
    static void setTypes(NSSavePanel& self, NSArray* types)
    {
        std::vector<Ref<NSObject>> kept;
        for (NSObject* type : each<NSObject>(Ref<NSArray>(types))) {
            if (type->isKindOfClass(NSString::cls()))
                kept.emplace_back(type);
        }
        of(self).types = types ? makeArray(std::move(kept)) : nullptr;
        browserOf(self).forgetEnabled();
    }
    template <bool FilePanelState::*Flag> static bool is(NSSavePanel& self)
    {
        return of(self).*Flag;
    }
    template <bool FilePanelState::*Flag> static void set(NSSavePanel& self, bool value)
    {
        of(self).*Flag = value;
        changed(self);
    }
    static bool showsHidden(NSSavePanel& self) { return browserOf(self).order().showsHidden; }
    static void setShowsHidden(NSSavePanel& self, bool shows)
    {
        files::Order order = browserOf(self).order();
        order.showsHidden = shows;
        browserOf(self).setOrder(order);
    }
    static void validate(NSSavePanel& self) { browserOf(self).forgetEnabled(); }

    static void table(Builder& t)
    {
        using State = FilePanelState;
        t.classMethods({ { "savePanel", imp<panel> } });
        t.methods({
            { "init", imp<init> },
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "message", imp<message> },
            { "setMessage:", imp<setMessage> },
            { "prompt", imp<prompt> },
            { "setPrompt:", imp<setPrompt> },
            { "nameFieldLabel", imp<nameLabel> },
            { "setNameFieldLabel:", imp<setNameLabel> },
            { "nameFieldStringValue", imp<name> },
            { "setNameFieldStringValue:", imp<setName> },
            { "accessoryView", imp<accessory> },
            { "setAccessoryView:", imp<setAccessory> },
            { "setDelegate:", imp<setDelegate> },
            { "directoryURL", imp<directory> },
            { "setDirectoryURL:", imp<setDirectory> },
            { "allowedFileTypes", imp<types> },
            { "setAllowedFileTypes:", imp<setTypes> },
            { "allowsOtherFileTypes", imp<is<&State::allowsOtherTypes>> },
            { "setAllowsOtherFileTypes:", imp<set<&State::allowsOtherTypes>> },
            { "canCreateDirectories", imp<is<&State::makesFolders>> },
            { "setCanCreateDirectories:", imp<set<&State::makesFolders>> },
            { "isExtensionHidden", imp<is<&State::hidesExtensions>> },
            { "setExtensionHidden:", imp<set<&State::hidesExtensions>> },
            { "showsHiddenFiles", imp<showsHidden> },
            { "setShowsHiddenFiles:", imp<setShowsHidden> },
            { "validateVisibleColumns", imp<validate> },
        });
    }
};
BRINDLE_RECORD(NSSavePanel, Settings)

template <> struct NSSavePanel::Methods<struct Running> {

    static FilePanelState& of(NSSavePanel& self) { return FilePanelAccess::of(self); }

    static Ref<NSURL> url(NSSavePanel& self)
    {
        const Ref<NSArray> all = urls(self);
        return all->count() > 0 ? cast<NSURL>(Ref<NSObject>(all->objectAtIndex(0))) : nullptr;
    }
    static Ref<NSArray> urls(NSSavePanel& self)
    {
        if (of(self).isShown) {
            const auto now = FilePanelAccess::candidates(self);
            return makeArray(std::vector<Ref<NSObject>>(now.begin(), now.end()));
        }
        return of(self).chosen ? of(self).chosen : NSArray::cls().array();
    }

    // ---- showing

    static NSModalResponse ask(NSSavePanel& self, const Block<Ref<NSArray>(NSSavePanel*)>& person)
    {
        of(self).chosen = nullptr;
        const Ref<NSArray> answer = person(&self);
        if (!FilePanelAccess::couldChoose(self, answer.get()))
            return NSModalResponseCancel;
        std::vector<Ref<NSURL>> chosen;
        for (NSURL* url : each<NSURL>(answer))
            chosen.emplace_back(url);
        FilePanelAccess::choose(self, chosen);
        return NSModalResponseOK;
    }
    static void prepare(NSSavePanel& self)
    {
        FilePanelState& state = of(self);
        state.isShown = true;
        state.chosen = nullptr;
        FilePanelAccess::settleViews(self);
        state.browser->show(FilePanelAccess::startFolder(state));
        FilePanelViews::begin(*state.views);
    }
    static NSModalResponse runModal(NSSavePanel& self)
    {
        const Ref<NSSavePanel> alive(&self);
        if (of(self).isShown)
            return NSModalResponseCancel;
        if (const auto person = scripted::panelPerson())
            return ask(self, person);
        struct Away {
            NSSavePanel& panel;
            ~Away()
            {
                of(panel).isShown = false;
                panel.orderOut(nullptr);
            }
        } const away { self };
        prepare(self);
        const NSModalResponse code
            = NSApplication::cls().sharedApplication()->runModalForWindow(&self);
        return code == NSModalResponseOK ? code : NSModalResponseCancel;
    }
    static void beginSheet(NSSavePanel& self, NSWindow* host, Closure<void(NSModalResponse)>* lent)
    {
        const Ref<NSSavePanel> alive(&self);
        const Block<void(NSModalResponse)> handler(lent);
        if (of(self).isShown)
            return;
        if (const auto person = scripted::panelPerson()) {
            dispatch_async(dispatch_get_main_queue(), [alive, handler, person] {
                const NSModalResponse code = ask(*alive, person);
                if (handler)
                    handler(code);
            });
            return;
        }
        prepare(self);
        if (host) {
            host->beginSheet_completionHandler(&self, [alive, handler](NSModalResponse code) {
                of(*alive).isShown = false;
                if (handler)
                    handler(code == NSModalResponseOK ? code : NSModalResponseCancel);
            });
            return;
        }
        of(self).kept = &self;
        of(self).handler = handler;
        self.center();
        self.makeKeyAndOrderFront(nullptr);
    }
    static void begin(NSSavePanel& self, Closure<void(NSModalResponse)>* handler)
    {
        beginSheet(self, nullptr, handler);
    }

    // ---- ending

    static void ok(NSSavePanel& self, NSObject*) { FilePanelAccess::confirm(self); }
    static void cancel(NSSavePanel& self, NSObject*)
    {
        FilePanelAccess::end(self, NSModalResponseCancel);
    }
    static bool shouldClose(NSSavePanel& self, NSObject*)
    {
        const bool wasShown = of(self).isShown;
        self.cancel(nullptr);
        return !wasShown; // its end takes it away
    }
    static void close(NSSavePanel& self)
    {
        const Ref<NSSavePanel> alive(&self);
        self.cancel(nullptr);
        super<NSSavePanel, "close">(self);
    }
    static bool performKeyEquivalent(NSSavePanel& self, NSEvent* event)
    {
        if (of(self).isShown && of(self).views
            && FilePanelViews::performKey(*of(self).views, event))
            return true;
        return super<NSSavePanel, "performKeyEquivalent:", bool>(self, event);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "URL", imp<url> },
            { "URLs", imp<urls> },
            { "runModal", imp<runModal> },
            { "beginSheetModalForWindow:completionHandler:", imp<beginSheet> },
            { "beginWithCompletionHandler:", imp<begin> },
            { "ok:", imp<ok> },
            { "cancel:", imp<cancel> },
            { "cancelOperation:", imp<cancel> },
            { "windowShouldClose:", imp<shouldClose> },
            { "close", imp<close> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
        });
    }
};
BRINDLE_RECORD(NSSavePanel, Running)

}
