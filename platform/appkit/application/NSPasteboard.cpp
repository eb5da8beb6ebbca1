// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPasteboard.h"

#include <algorithm>
#include <map>
#include <vector>

#include "NSApplicationPrivate.h"
#include "PasteboardTypesPrivate.h"
#include "display/Clipboard.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSURL.h"
#include "foundation/NSUUID.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Entry {
        Ref<NSString> type;
        Ref<NSData> data; // nil while it is only promised
    };

}

/// What a pasteboard holds; what another program holds is asked for.
struct PasteboardState {
    Ref<NSString> name;
    std::vector<Entry> entries;
    WeakRef<NSObject> owner;
    NSInteger changes = 0;
    std::optional<display::Clipboard::Selection> selection; // of the desktop, which it stands for
};

struct PasteboardAccess {
    static PasteboardState& of(NSPasteboard& board)
    {
        if (!board.state_) {
            board.state_ = std::make_shared<PasteboardState>();
            board.state_->name = NSUUID::cls().UUID()->UUIDString();
        }
        return *board.state_;
    }
};

template <> struct NSPasteboard::Methods<struct Contents> {

    using Clipboard = display::Clipboard;

    static PasteboardState& of(NSPasteboard& self) { return PasteboardAccess::of(self); }

    // ---- finding

    static std::map<std::string, Ref<NSPasteboard>>& named()
    {
        static auto* const boards = new std::map<std::string, Ref<NSPasteboard>>;
        return *boards;
    }
    static Ref<NSPasteboard> general(Class& self)
    {
        return self.send<"pasteboardWithName:", Ref<NSPasteboard>>(NSGeneralPboard.get());
    }
    static Ref<NSPasteboard> withName(Class&, NSString* name)
    {
        NSString* const wanted = name ? name : NSGeneralPboard.get();
        Ref<NSPasteboard>& board = named()[utf8Of(wanted)];
        if (!board) {
            board = make<NSPasteboard>();
            PasteboardState& state = of(*board);
            state.name = cast<NSString>(wanted->copy());
            if (wanted->isEqual(NSGeneralPboard))
                state.selection = Clipboard::Selection::clipboard;
            else if (wanted->isEqual(NSSelectionPboard))
                state.selection = Clipboard::Selection::primary;
        }
        return board;
    }
    static Ref<NSPasteboard> withUniqueName(Class& self)
    {
        return self.send<"pasteboardWithName:", Ref<NSPasteboard>>(
            NSUUID::cls().UUID()->UUIDString().get());
    }
    static void releaseGlobally(NSPasteboard& self)
    {
        if (!of(self).selection)
            named().erase(utf8Of(of(self).name.get()));
    }
    static Ref<NSString> name(NSPasteboard& self) { return of(self).name; }

    // ---- the desktop

    static Clipboard* clipboard(NSPasteboard& self)
    {
        if (!of(self).selection)
            return nullptr;
        display::Display* const display = ApplicationAccess::displayOrNull();
        return display ? display->clipboard() : nullptr;
    }
    /// Answers the clipboard when another program has what this pasteboard stands for.
    static Clipboard* foreign(NSPasteboard& self)
    {
        Clipboard* const desktop = clipboard(self);
        return desktop && !desktop->isOurs(*of(self).selection) ? desktop : nullptr;
    }
    static void drop(NSPasteboard& self)
    {
        PasteboardState& s = of(self);
        const std::vector<Entry> gone = std::move(s.entries);
        s.entries.clear();
        const Ref<NSObject> owner = std::exchange(s.owner, {}).get();
        if (owner && owner->respondsToSelector(selector<"pasteboardChangedOwner:">))
            owner->send<"pasteboardChangedOwner:">(&self);
    }
    static std::vector<std::string> offeredNames(NSPasteboard& self)
    {
        std::vector<std::string> names;
        for (const Entry& entry : of(self).entries) {
            for (std::string& name : pasteboards::desktopNames(*entry.type)) {
                if (std::find(names.begin(), names.end(), name) == names.end())
                    names.push_back(std::move(name));
            }
        }
        return names;
    }
    static std::string provided(NSPasteboard& self, std::string_view desktopName)
    {
        for (const Ref<NSString>& type : pasteboards::typesOf(desktopName)) {
            if (const Ref<NSData> data = own(self, *type))
                return pasteboards::toDesktop(*type, *data, desktopName);
        }
        return {};
    }
    static void offer(NSPasteboard& self)
    {
        Clipboard* const desktop = clipboard(self);
        if (!desktop)
            return;
        const Ref<NSPasteboard> kept(&self);
        desktop->offer(*of(self).selection,
            { .types = [kept] { return offeredNames(*kept); },
                .provide = [kept](std::string_view type) { return provided(*kept, type); },
                .lost = [kept] { drop(*kept); } });
    }

    // ---- writing

    static NSInteger changeCount(NSPasteboard& self)
    {
        Clipboard* const desktop = clipboard(self);
        const auto others = desktop ? desktop->changes(*of(self).selection) : 0;
        return of(self).changes + static_cast<NSInteger>(others);
    }
    static NSInteger clear(NSPasteboard& self)
    {
        const Ref<NSPasteboard> alive(&self);
        drop(self);
        ++of(self).changes;
        offer(self);
        return self.changeCount();
    }
    static Entry* find(NSPasteboard& self, NSString& type)
    {
        const Ref<NSString> wanted = pasteboards::canonical(type);
        for (Entry& entry : of(self).entries) {
            if (entry.type->isEqual(wanted.get()))
                return &entry;
        }
        return nullptr;
    }
    static Entry& ensure(NSPasteboard& self, NSString& type)
    {
        if (Entry* const entry = find(self, type))
            return *entry;
        const Ref<NSString> name = cast<NSString>(pasteboards::canonical(type)->copy());
        return of(self).entries.emplace_back(Entry { name, nullptr });
    }
    static NSInteger addTypes(NSPasteboard& self, NSArray* types, NSObject* owner)
    {
        if (foreign(self))
            return 0;
        of(self).owner = owner;
        for (NSObject* type : each<NSObject>(Ref<NSArray>(types))) {
            if (type->isKindOfClass(NSString::cls()))
                ensure(self, *static_cast<NSString*>(type));
        }
        return self.changeCount();
    }
    static NSInteger declare(NSPasteboard& self, NSArray* types, NSObject* owner)
    {
        self.clearContents();
        return self.addTypes_owner(types, owner);
    }
    static bool setData(NSPasteboard& self, NSData* data, NSString* type)
    {
        if (!type || foreign(self))
            return false;
        ensure(self, *type).data = data ? cast<NSData>(data->copy()) : nullptr;
        return data != nullptr;
    }
    static bool setString(NSPasteboard& self, NSString* text, NSString* type)
    {
        if (!text || !text->isKindOfClass(NSString::cls()))
            return false;
        const std::string bytes = utf8Of(text);
        return self.setData_forType(
            NSData::cls().dataWithBytes_length(bytes.data(), bytes.size()).get(), type);
    }
    static bool setList(NSPasteboard& self, NSObject* list, NSString* type)
    {
        if (!list)
            return false;
        return self.setData_forType(NSPropertyListSerialization::cls()
                                        .dataWithPropertyList_format_options_error(
                                            list, NSPropertyListXMLFormat_v1_0, 0, nullptr)
                                        .get(),
            type);
    }
    static bool write(NSPasteboard& self, NSObject& object)
    {
        if (object.isKindOfClass(NSString::cls()))
            return self.setString_forType(static_cast<NSString*>(&object), NSPasteboardTypeString);
        if (object.isKindOfClass(NSURL::cls())) {
            auto& url = static_cast<NSURL&>(object);
            return self.setString_forType(url.absoluteString().get(),
                url.isFileURL() ? NSPasteboardTypeFileURL.get() : NSPasteboardTypeURL.get());
        }
        if (!object.respondsToSelector(selector<"writableTypesForPasteboard:">))
            return false;
        bool wrote = false;
        for (NSString* type :
            each<NSString>(object.send<"writableTypesForPasteboard:", Ref<NSArray>>(&self))) {
            const Ref<NSObject> value
                = object.send<"pasteboardPropertyListForType:", Ref<NSObject>>(type);
            if (value && value->isKindOfClass(NSData::cls()))
                wrote |= self.setData_forType(static_cast<NSData*>(value.get()), type);
            else if (value && value->isKindOfClass(NSString::cls()))
                wrote |= self.setString_forType(static_cast<NSString*>(value.get()), type);
            else
                wrote |= self.setPropertyList_forType(value.get(), type);
        }
        return wrote;
    }
    static bool writeObjects(NSPasteboard& self, NSArray* objects)
    {
        bool wrote = false;
        for (NSObject* object : each<NSObject>(Ref<NSArray>(objects)))
            wrote |= write(self, *object);
        return wrote;
    }

    // ---- reading

    static Ref<NSArray> types(NSPasteboard& self)
    {
        const Ref<NSMutableArray> all = make<NSMutableArray>();
        const auto add = [&all](const Ref<NSString>& type) {
            if (!all->containsObject(type.get()))
                all->addObject(type.get());
        };
        if (Clipboard* const desktop = foreign(self)) {
            for (const std::string& name : desktop->types(*of(self).selection)) {
                for (const Ref<NSString>& type : pasteboards::typesOf(name))
                    add(type);
            }
        } else {
            for (const Entry& entry : of(self).entries)
                add(entry.type);
        }
        return all;
    }
    static Ref<NSString> available(NSPasteboard& self, NSArray* wanted)
    {
        const Ref<NSArray> there = self.types();
        for (NSString* type : each<NSString>(Ref<NSArray>(wanted))) {
            if (there->containsObject(pasteboards::canonical(*type).get()))
                return type;
        }
        return nullptr;
    }
    static bool canRead(NSPasteboard& self, NSArray* types)
    {
        return self.availableTypeFromArray(types) != nullptr;
    }
    static Ref<NSData> own(NSPasteboard& self, NSString& type)
    {
        Entry* entry = find(self, type);
        if (!entry || entry->data)
            return entry ? entry->data : nullptr;
        const Ref<NSString> wanted = entry->type;
        const Ref<NSObject> owner = of(self).owner.get();
        constexpr SEL asks = selector<"pasteboard:provideDataForType:">;
        if (owner && owner->respondsToSelector(asks))
            owner->send<"pasteboard:provideDataForType:">(&self, wanted.get());
        entry = find(self, *wanted); // the owner may have changed everything
        return entry ? entry->data : nullptr;
    }
    static Ref<NSData> data(NSPasteboard& self, NSString* type)
    {
        if (!type)
            return nullptr;
        const Ref<NSPasteboard> alive(&self);
        Clipboard* const desktop = foreign(self);
        if (!desktop)
            return own(self, *type);
        const Ref<NSString> known = pasteboards::canonical(*type);
        const std::vector<std::string> there = desktop->types(*of(self).selection);
        for (const std::string& name : pasteboards::desktopNames(*type)) {
            if (std::find(there.begin(), there.end(), name) == there.end())
                continue;
            if (const auto bytes = desktop->read(*of(self).selection, name))
                return pasteboards::fromDesktop(*known, *bytes, name);
        }
        return nullptr;
    }
    static Ref<NSString> string(NSPasteboard& self, NSString* type)
    {
        const Ref<NSData> data = self.dataForType(type);
        if (!data)
            return nullptr;
        return stringFrom(
            std::string_view(static_cast<const char*>(data->bytes()), data->length()));
    }
    static Ref<NSObject> list(NSPasteboard& self, NSString* type)
    {
        const Ref<NSData> data = self.dataForType(type);
        if (!data)
            return nullptr;
        const Ref<NSObject> list
            = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                data.get(), NSPropertyListImmutable, nullptr, nullptr);
        return list ? list : cast<NSObject>(self.stringForType(type));
    }

    static Ref<NSObject> object(NSPasteboard& self, Class* cls)
    {
        if (cls == static_cast<Class*>(NSString::cls()))
            return self.stringForType(NSPasteboardTypeString);
        if (cls == static_cast<Class*>(NSURL::cls())) {
            Ref<NSString> text = self.stringForType(NSPasteboardTypeFileURL);
            if (!text)
                text = self.stringForType(NSPasteboardTypeURL);
            return text ? NSURL::cls().URLWithString(text.get()) : nullptr;
        }
        if (!cls->respondsToSelector(selector<"readableTypesForPasteboard:">))
            return nullptr;
        const auto readable = cls->send<"readableTypesForPasteboard:", Ref<NSArray>>(&self);
        const Ref<NSString> type = self.availableTypeFromArray(readable.get());
        const Ref<NSData> data = type ? self.dataForType(type.get()) : nullptr;
        if (!data)
            return nullptr;
        const Ref<NSObject> made = NSObject::Meta { cls }.alloc();
        return made->send<"initWithPasteboardPropertyList:ofType:", Ref<NSObject>>(
            static_cast<NSObject*>(data.get()), type.get());
    }
    static Ref<NSArray> readObjects(NSPasteboard& self, NSArray* classes, NSDictionary*)
    {
        for (NSObject* cls : each<NSObject>(Ref<NSArray>(classes))) {
            if (const Ref<NSObject> made = object(self, static_cast<Class*>(cls)))
                return NSArray::cls().arrayWithObject(made.get());
        }
        return make<NSArray>();
    }
    static bool canReadObject(NSPasteboard& self, NSArray* classes, NSDictionary* options)
    {
        return self.readObjectsForClasses_options(classes, options)->count() > 0;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "generalPasteboard", imp<general> },
            { "pasteboardWithName:", imp<withName> },
            { "pasteboardWithUniqueName", imp<withUniqueName> },
        });
        t.methods({
            { "name", imp<name> },
            { "releaseGlobally", imp<releaseGlobally> },
            { "changeCount", imp<changeCount> },
            { "clearContents", imp<clear> },
            { "declareTypes:owner:", imp<declare> },
            { "addTypes:owner:", imp<addTypes> },
            { "setData:forType:", imp<setData> },
            { "setString:forType:", imp<setString> },
            { "setPropertyList:forType:", imp<setList> },
            { "writeObjects:", imp<writeObjects> },
            { "types", imp<types> },
            { "availableTypeFromArray:", imp<available> },
            { "canReadItemWithDataConformingToTypes:", imp<canRead> },
            { "dataForType:", imp<data> },
            { "stringForType:", imp<string> },
            { "propertyListForType:", imp<list> },
            { "readObjectsForClasses:options:", imp<readObjects> },
            { "canReadObjectForClasses:options:", imp<canReadObject> },
        });
    }
};
BRINDLE_RECORD(NSPasteboard, Contents)

}
