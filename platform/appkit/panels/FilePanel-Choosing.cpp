// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "FilePanelPrivate.h"
#include "appkit/NSAlert.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/application/PhrasesPrivate.h"
#include "foundation/Each.h"
#include "foundation/NSBeep.h"
#include "foundation/NSError.h"
#include "foundation/NSFileManager.h"
#include "foundation/URLPrivate.h"
#include "runtime/Runtime.h"

namespace brindle {

using files::isFolder;

namespace {

    namespace fs = std::filesystem;

    bool isThere(const std::string& path)
    {
        std::error_code ignored;
        return fs::exists(path, ignored);
    }
    std::string joined(const std::string& folder, const std::string& name)
    {
        return (folder == "/" ? folder : folder + "/") + name;
    }

    /// Answers the extension of a listed type: without a dot, in small letters.
    Ref<NSString> extensionOf(NSString* type)
    {
        Ref<NSString> extension = type->lowercaseString();
        return extension->hasPrefix("."_ns) ? extension->substringFromIndex(1) : extension;
    }
    bool hasAllowedType(const FilePanelState& state, const Ref<NSString>& name)
    {
        if (maybe(state.types)->count() == 0)
            return true;
        const Ref<NSString> own = maybe(name)->pathExtension()->lowercaseString();
        for (NSString* type : each<NSString>(state.types)) {
            if (extensionOf(type)->isEqualToString(own.get()))
                return true;
        }
        return false;
    }

    /// Answers the name that a file is saved under; "" for one that cannot be.
    std::string savedName(const FilePanelState& state)
    {
        Ref<NSString> name = state.name;
        const bool isUsual = name->length() > 0 && !name->isEqualToString("."_ns)
            && !name->isEqualToString(".."_ns);
        if (!isUsual || utf8Of(name).find('/') != std::string::npos
            || utf8Of(name).find('\0') != std::string::npos)
            return {};
        const bool mayStay = state.allowsOtherTypes && name->pathExtension()->length() > 0;
        if (!mayStay && !hasAllowedType(state, name)) {
            const auto first = cast<NSString>(Ref<NSObject>(state.types->objectAtIndex(0)));
            name = name->stringByAppendingPathExtension(extensionOf(first.get()).get());
        }
        return utf8Of(name);
    }

}

bool FilePanelState::enables(const std::string& path, bool folder)
{
    const Ref<NSSavePanel> alive(owner);
    const bool hasTypes = maybe(types)->count() > 0;
    if (!folder && !(choosesFiles && (!hasTypes || hasAllowedType(*this, stringFrom(path)))))
        return false;
    if (!FilePanelAccess::asksDelegate(*owner))
        return stringFrom(path) != nullptr; // what is no text has no URL
    const Ref<NSURL> url = FilePanelAccess::urlOf(path, folder);
    return url && FilePanelAccess::delegateEnables(*owner, url.get());
}

Ref<NSURL> FilePanelAccess::urlOf(const std::string& path, bool isFolder)
{
    const Ref<NSString> text = stringFrom(path);
    return text ? NSURL::cls().fileURLWithPath_isDirectory(text.get(), isFolder) : nullptr;
}

bool FilePanelAccess::asksDelegate(NSSavePanel& panel)
{
    const Ref<NSObject> delegate = panel.delegate();
    return delegate && delegate->respondsToSelector(selector<"panel:shouldEnableURL:">);
}
bool FilePanelAccess::delegateEnables(NSSavePanel& panel, NSURL* url)
{
    return !asksDelegate(panel)
        || panel.delegate()->send<"panel:shouldEnableURL:", bool>(&panel, url);
}

std::vector<Ref<NSURL>> FilePanelAccess::candidates(NSSavePanel& panel)
{
    FilePanelState& state = of(panel);
    files::Browser& browser = *state.browser;
    std::vector<Ref<NSURL>> out;
    if (!state.opens) {
        const std::string name = savedName(state);
        if (const Ref<NSURL> url = urlOf(joined(browser.folder(), name), false);
            url && !name.empty())
            out.push_back(url);
        return out;
    }
    for (const std::size_t index : browser.selection()) {
        const bool folder = browser.entry(index).isFolder;
        if (folder && !state.choosesFolders)
            return {};
        if (const Ref<NSURL> url = urlOf(browser.pathOf(index), folder))
            out.push_back(url);
    }
    if (out.empty() && state.choosesFolders && browser.error() == 0) {
        const Ref<NSURL> shown = urlOf(browser.folder(), true);
        if (shown && delegateEnables(panel, shown.get()))
            out.push_back(shown);
    }
    return out;
}

bool FilePanelAccess::canConfirm(NSSavePanel& panel)
{
    const files::Browser& browser = *of(panel).browser;
    const bool goesDown
        = browser.selection().size() == 1 && browser.entry(*browser.selection().begin()).isFolder;
    return goesDown || !candidates(panel).empty();
}

bool FilePanelAccess::couldChoose(NSSavePanel& panel, NSArray* urls)
{
    const FilePanelState& state = of(panel);
    if (maybe(urls)->count() == 0 || (urls->count() > 1 && !state.choosesMany))
        return false;
    for (NSObject* object : *urls) {
        const bool isFile
            = object->isKindOfClass(NSURL::cls()) && static_cast<NSURL*>(object)->isFileURL();
        if (!isFile)
            return false;
        NSURL& url = *static_cast<NSURL*>(object);
        const std::string path = utf8Of(url.path());
        if (path.empty())
            return false;
        const bool folder = isFolder(path);
        const bool isRightKind = !state.opens ? !folder
            : folder                          ? state.choosesFolders
                     : state.choosesFiles && isThere(path) && hasAllowedType(state, url.path());
        if (!isRightKind || !delegateEnables(panel, urlOf(path, folder).get()))
            return false;
    }
    return true;
}

// ---- confirming

namespace {

    bool agrees(NSSavePanel& panel, const std::vector<Ref<NSURL>>& urls)
    {
        const Ref<NSObject> delegate = panel.delegate();
        if (!delegate || !delegate->respondsToSelector(selector<"panel:validateURL:error:">))
            return true;
        for (const Ref<NSURL>& url : urls) {
            Ref<NSError> error;
            if (delegate->send<"panel:validateURL:error:", bool>(&panel, url.get(), &error))
                continue;
            if (error)
                FilePanelAccess::showError(panel, error.get());
            return false;
        }
        return true;
    }

    /// Lets the delegate replace a name. - Returns: whether to go on.
    bool takesName(NSSavePanel& panel)
    {
        FilePanelState& state = FilePanelAccess::of(panel);
        const Ref<NSObject> delegate = panel.delegate();
        constexpr SEL kEntered = selector<"panel:userEnteredFilename:confirmed:">;
        if (!delegate || !delegate->respondsToSelector(kEntered))
            return true;
        const Ref<NSString> name
            = delegate->send<"panel:userEnteredFilename:confirmed:", Ref<NSString>>(
                &panel, state.name.get(), true);
        if (name)
            state.name = name;
        return name != nullptr;
    }

    /// Says what has gone since the folder was read, and reads it again. - Returns: whether nothing has.
    bool areThere(NSSavePanel& panel, const std::vector<Ref<NSURL>>& urls)
    {
        for (const Ref<NSURL>& url : urls) {
            if (isThere(utf8Of(url->path())))
                continue;
            FilePanelAccess::of(panel).browser->reload();
            Ref<NSError> error;
            reportFileError(&error, ENOENT, false, url->path().get());
            FilePanelAccess::showError(panel, error.get());
            return false;
        }
        return true;
    }

    void askToReplace(NSSavePanel& panel, const std::vector<Ref<NSURL>>& urls)
    {
        const Ref<NSString> name = urls.front()->lastPathComponent();
        const Ref<NSAlert> alert = make<NSAlert>();
        alert->setMessageText(
            NSString::cls()
                .stringWithFormat(
                    phrase("“%@” already exists. Do you want to replace it?"_ns).get(), name)
                .get());
        alert->setInformativeText(phrase(
            "A file with the same name is in this folder. Replacing it overwrites what it holds now."_ns)
                                      .get());
        // No Return here: whoever presses it twice would lose a file.
        alert->addButtonWithTitle(phrase("Replace"_ns).get())->setKeyEquivalent(""_ns);
        alert->addButtonWithTitle(phrase("Cancel"_ns).get());
        const Ref<NSSavePanel> alive(&panel);
        alert->beginSheetModalForWindow_completionHandler(
            &panel, [alive, urls](NSModalResponse code) {
                if (code == NSAlertFirstButtonReturn && agrees(*alive, urls))
                    FilePanelAccess::choose(*alive, urls);
            });
    }

    void save(NSSavePanel& panel)
    {
        FilePanelState& state = FilePanelAccess::of(panel);
        const std::string typed = utf8Of(state.name);
        if (typed.find('/') != std::string::npos || typed.starts_with('~')) {
            if (!FilePanelAccess::goTo(panel, typed))
                NSBeep();
            return;
        }
        if (!takesName(panel))
            return;
        const std::vector<Ref<NSURL>> urls = FilePanelAccess::candidates(panel);
        if (urls.empty())
            return NSBeep();
        const std::string path = utf8Of(urls.front()->path());
        if (isFolder(path))
            return state.browser->show(path);
        if (isThere(path))
            return askToReplace(panel, urls);
        if (agrees(panel, urls))
            FilePanelAccess::choose(panel, urls);
    }

}

void FilePanelAccess::confirm(NSSavePanel& panel)
{
    FilePanelState& state = of(panel);
    const Ref<NSSavePanel> alive(&panel);
    if (!state.isShown || panel.attachedSheet())
        return;
    files::Browser& browser = *state.browser;
    const bool isOneFolder
        = browser.selection().size() == 1 && browser.entry(*browser.selection().begin()).isFolder;
    if (isOneFolder && !state.choosesFolders) {
        browser.goDown();
        return;
    }
    if (!state.opens)
        return save(panel);
    const std::vector<Ref<NSURL>> urls = candidates(panel);
    if (urls.empty())
        return NSBeep();
    if (areThere(panel, urls) && agrees(panel, urls))
        choose(panel, urls);
}

void FilePanelAccess::choose(NSSavePanel& panel, const std::vector<Ref<NSURL>>& urls)
{
    FilePanelState& state = of(panel);
    std::vector<Ref<NSObject>> chosen;
    for (const Ref<NSURL>& url : urls) {
        const std::string path = utf8Of(url->path());
        // Made anew: the rights belong to what was chosen here, not to the URL that somebody else holds.
        Ref<NSURL> granted = urlOf(path, isFolder(path));
        if (state.opens && state.resolvesLinks)
            granted = granted->URLByResolvingSymlinksInPath();
        URLAccess::grant(*granted);
        chosen.push_back(granted);
    }
    state.chosen = makeArray(std::move(chosen));
    const std::string first = utf8Of(urls.front()->path());
    rememberFolder(isFolder(first) ? first : fs::path(first).parent_path().string());
    end(panel, NSModalResponseOK);
}

void FilePanelAccess::end(NSSavePanel& panel, NSModalResponse code)
{
    FilePanelState& state = of(panel);
    const Ref<NSSavePanel> alive(&panel);
    if (code != NSModalResponseOK)
        state.chosen = nullptr;
    if (!std::exchange(state.isShown, false))
        return;
    if (const Ref<NSWindow> host = panel.sheetParent())
        return host->endSheet_returnCode(&panel, code);
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    if (application->modalWindow() == &panel)
        return application->stopModalWithCode(code);
    const Ref<NSSavePanel> kept = std::exchange(state.kept, nullptr);
    const Block<void(NSModalResponse)> handler = std::exchange(state.handler, nullptr);
    panel.orderOut(nullptr);
    if (handler)
        handler(code);
}

// ---- folders

std::string FilePanelAccess::pathOfTyped(const files::Browser& browser, const std::string& typed)
{
    std::string path = typed;
    if (path.starts_with('~'))
        path = utf8Of(maybe(stringFrom(path))->stringByExpandingTildeInPath());
    if (!path.starts_with('/'))
        path = joined(browser.folder(), path);
    return fs::path(path).lexically_normal().string();
}

bool FilePanelAccess::goTo(NSSavePanel& panel, const std::string& typed)
{
    files::Browser& browser = *of(panel).browser;
    std::string path = pathOfTyped(browser, typed);
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (isFolder(path))
        browser.show(path);
    else if (isThere(path))
        browser.show(fs::path(path).parent_path().string(), fs::path(path).filename().string());
    else
        return false;
    return true;
}

Ref<NSString> FilePanelAccess::shownPath(const files::Browser& browser)
{
    const Ref<NSString> path = stringFrom(joined(browser.folder(), ""));
    return path ? path : Ref<NSString>("/"_ns);
}

void FilePanelAccess::makeFolder(NSSavePanel& panel, NSString* name)
{
    files::Browser& browser = *of(panel).browser;
    const std::string text = utf8Of(name);
    if (text.empty() || text.find('/') != std::string::npos || text == "." || text == "..")
        return NSBeep();
    const Ref<NSString> path = stringFrom(joined(browser.folder(), text));
    Ref<NSError> error;
    const bool isMade = NSFileManager::cls()
                            .defaultManager()
                            ->createDirectoryAtPath_withIntermediateDirectories_attributes_error(
                                path.get(), false, nullptr, &error);
    if (!isMade)
        return showError(panel, error.get());
    browser.show(utf8Of(path));
}

void FilePanelAccess::showError(NSSavePanel& panel, NSError* error)
{
    NSAlert::cls().alertWithError(error)->beginSheetModalForWindow_completionHandler(
        &panel, nullptr);
}

}
