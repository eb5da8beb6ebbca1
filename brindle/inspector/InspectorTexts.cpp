// SPDX-License-Identifier: Apache-2.0
#include "InspectorTextsPrivate.h"

#include <algorithm>
#include <set>

#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSMenu.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle::inspector {

namespace {

    constexpr std::size_t kLongest = 160; // bytes of a value that are shown
    constexpr int kMostResponders = 1000; // a chain that a host closed to a ring ends too

    /// The text in one line, cut off where no character is torn apart.
    std::string line(std::string text)
    {
        std::replace_if(
            text.begin(), text.end(), [](unsigned char c) { return c < 0x20; }, ' ');
        if (text.size() <= kLongest)
            return text;
        std::size_t end = kLongest;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        return text.substr(0, end) + "…";
    }
    /// "<NSImage: 0x55f2>" says the same in every run as "<NSImage>".
    std::string withoutAddress(const std::string& text)
    {
        const std::size_t begin = text.find(": 0x");
        const std::size_t end = text.find('>', begin);
        if (text.empty() || text[0] != '<' || begin == std::string::npos
            || end == std::string::npos)
            return text;
        return text.substr(0, begin) + text.substr(end);
    }
    std::string textOf(const Ref<NSObject>& object)
    {
        return object ? line(withoutAddress(utf8Of(object->description()))) : "nil";
    }
    std::string nameOf(const NSObject& object) { return class_getName(object.classObject()); }

    std::string titleOf(NSObject& object)
    {
        if (object.isKindOfClass(NSWindow::cls())) {
            const std::string title = utf8Of(static_cast<NSWindow&>(object).title());
            return nameOf(object) + (title.empty() ? "" : " “" + line(title) + "”");
        }
        const NSRect frame = static_cast<NSView&>(object).frame();
        return nameOf(object) + "  " + utf8Of(NSStringFromRect(frame));
    }

    /// Hands over every view of a window with its depth, parents before children; without the stack for depth.
    void forEachView(NSWindow& window, const std::function<void(NSView&, int)>& function)
    {
        struct Place {
            Ref<NSView> view;
            int depth;
        };
        std::vector<Place> waiting;
        Ref<NSView> root = window.contentView();
        if (root && root->superview())
            root = root->superview();
        if (root)
            waiting.push_back({ root, 1 });
        while (!waiting.empty()) {
            const Place place = waiting.back();
            waiting.pop_back();
            function(*place.view, place.depth);
            const Ref<NSArray> children = place.view->subviews();
            for (NSUInteger i = maybe(children)->count(); i-- > 0;)
                waiting.push_back({ cast<NSView>(children->objectAtIndex(i)), place.depth + 1 });
        }
    }

    // ---- details

    using Rows = std::vector<DetailRow>;

    void addHeading(Rows& rows, std::string name, std::string value = "")
    {
        rows.push_back({ std::move(name), std::move(value), true });
    }

    void addClasses(Rows& rows, NSObject& object)
    {
        addHeading(rows, "Inspecting", titleOf(object));
        std::string chain;
        for (Class* cls = object.classObject(); cls; cls = class_getSuperclass(cls))
            chain += (chain.empty() ? "" : " : ") + std::string(class_getName(cls));
        rows.push_back({ "class", chain });
    }

    std::string valueOf(NSObject& object, const char* name)
    {
        try {
            return textOf(valueForKey(&object, stringFrom(name).get()));
        } catch (const Exception& raised) {
            return line(std::string("raises ") + raised.what());
        }
    }

    /// What a subclass declares again stands with the subclass.
    void addProperties(Rows& rows, NSObject& object)
    {
        std::set<std::string> seen;
        for (Class* cls = object.classObject(); cls; cls = class_getSuperclass(cls)) {
            unsigned count = 0;
            objc_property_t* const list = class_copyPropertyList(cls, &count);
            bool isFirst = true;
            for (unsigned i = 0; i < count; ++i) {
                const char* const name = property_getName(list[i]);
                if (!seen.insert(name).second)
                    continue;
                if (isFirst)
                    addHeading(rows, "Properties of", class_getName(cls));
                isFirst = false;
                rows.push_back({ name, valueOf(object, name) });
            }
            releaseBuffer(list);
        }
    }

    void addResponders(Rows& rows, NSResponder& first)
    {
        addHeading(rows, "Responder chain");
        Ref<NSResponder> responder = &first;
        for (int i = 1; responder && i <= kMostResponders; ++i) {
            rows.push_back({ std::to_string(i), nameOf(*responder) });
            responder = responder->nextResponder();
        }
    }

    // ---- key equivalents

    std::string keyText(const std::string& key, NSEventModifierFlags modifiers)
    {
        std::string text;
        const auto add = [&](NSEventModifierFlags flag, const char* name) {
            if (modifiers & flag)
                text += std::string(name) + "-";
        };
        add(NSControlKeyMask, "Control");
        add(NSAlternateKeyMask, "Option");
        add(NSShiftKeyMask, "Shift");
        add(NSCommandKeyMask, "Command");
        if (key == "\r")
            return text + "Return";
        if (key == "\x1b")
            return text + "Escape";
        return text + line(key);
    }

    void addKeysOfMenu(Rows& rows, NSMenu* menu)
    {
        std::vector<Ref<NSMenu>> waiting { menu };
        while (!waiting.empty()) {
            const Ref<NSMenu> next = waiting.back();
            waiting.pop_back();
            for (NSMenuItem* item : each<NSMenuItem>(maybe(next)->itemArray())) {
                if (item->submenu())
                    waiting.push_back(item->submenu());
                const std::string key = utf8Of(item->keyEquivalent());
                if (!key.empty())
                    rows.push_back({ keyText(key, item->keyEquivalentModifierMask()),
                        line(utf8Of(item->title())) });
            }
        }
    }

    void addKeysOfView(Rows& rows, NSView& view)
    {
        if (!view.isKindOfClass(NSButton::cls()))
            return;
        auto& button = static_cast<NSButton&>(view);
        const std::string key = utf8Of(button.keyEquivalent());
        if (!key.empty())
            rows.push_back(
                { keyText(key, button.keyEquivalentModifierMask()), line(utf8Of(button.title())) });
        if (view.isKindOfClass(BRCustomMenubarMenuButton::cls()))
            addKeysOfMenu(rows, button.menu().get());
    }

    void addKeys(Rows& rows)
    {
        addHeading(rows, "Key equivalents");
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        addKeysOfMenu(rows, application->mainMenu().get());
        for (NSWindow* window : each<NSWindow>(application->windows()))
            forEachView(*window, [&](NSView& view, int) { addKeysOfView(rows, view); });
    }

}

std::vector<TreeRow> treeRows(const std::function<bool(NSWindow&)>& isWanted)
{
    std::vector<TreeRow> rows;
    const auto add = [&](NSObject& object, int depth) {
        rows.push_back({ WeakRef<NSObject>(&object), depth, titleOf(object) });
    };
    for (NSWindow* window : each<NSWindow>(NSApplication::cls().sharedApplication()->windows())) {
        if (!isWanted(*window))
            continue;
        add(*window, 0);
        forEachView(*window, add);
    }
    return rows;
}

std::vector<DetailRow> detailRows(NSObject& object)
{
    Rows rows;
    addClasses(rows, object);
    addProperties(rows, object);
    addResponders(rows, static_cast<NSResponder&>(object));
    addKeys(rows);
    return rows;
}

}
