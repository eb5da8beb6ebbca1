// SPDX-License-Identifier: Apache-2.0
#include "NSBundlePrivate.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>

#include <dirent.h>

#include "FilesPrivate.h"
#include "NSArray.h"
#include "NSData.h"
#include "NSPropertyListSerialization.h"
#include "UserLocale.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Answers "de-ch" for "de_CH" and "de" for "German", the way folders were named long ago.
    std::string folded(std::string language)
    {
        static const auto& byName = *new std::map<std::string, std::string> { { "english", "en" },
            { "french", "fr" }, { "german", "de" }, { "italian", "it" }, { "japanese", "ja" },
            { "spanish", "es" }, { "dutch", "nl" }, { "portuguese", "pt" } };
        for (char& c : language)
            c = c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const auto found = byName.find(language);
        return found == byName.end() ? language : found->second;
    }

    /// Chinese is written in two ways, and a region says which without naming it.
    std::string withScript(const std::string& language)
    {
        if (!language.starts_with("zh") || language.starts_with("zh-han"))
            return language;
        const bool isTraditional
            = language == "zh-tw" || language == "zh-hk" || language == "zh-mo";
        return isTraditional ? "zh-hant" : "zh-hans";
    }

    std::string base(const std::string& language) { return language.substr(0, language.find('-')); }

    /// Answers how well one language meets another, 0 for not at all.
    std::size_t likeness(const std::string& available, const std::string& wanted)
    {
        if (available == wanted)
            return 1000;
        const std::string a = withScript(available);
        const std::string b = withScript(wanted);
        if (a.starts_with("zh") && b.starts_with("zh"))
            return a.substr(0, 7) == b.substr(0, 7) ? 900 : 0;
        if (b.starts_with(a + '-'))
            return 100 + a.size(); // "pt" or "sr-Latn" for "sr-Latn-RS": the longer, the nearer
        return base(a) == base(b) ? 1 : 0;
    }

    std::vector<std::string> stringsOf(NSArray* array)
    {
        std::vector<std::string> out;
        for (NSObject* const item : each(Ref<NSArray>(array))) {
            if (item->isKindOfClass(NSString::cls()))
                out.push_back(utf8Of(static_cast<NSString*>(item)));
        }
        return out;
    }

    Ref<NSArray> arrayOf(const std::vector<std::string>& strings)
    {
        std::vector<Ref<NSObject>> all;
        for (const std::string& text : strings)
            all.emplace_back(files::textFrom(text));
        return makeArray(std::move(all));
    }

    /// Answers what was kept for the user's languages, emptied when these changed. The lock is held.
    BundleState& current(BundleState& state)
    {
        const std::uint64_t generation = UserLocale::generation();
        if (state.generation != generation) {
            state.generation = generation;
            state.preferred.clear();
            state.tables = make<NSMutableDictionary>();
        }
        return state;
    }

    Ref<NSDictionary> readTable(const NSBundle& bundle, NSString* name)
    {
        const std::string file = '/' + bundles::pathFrom(name) + ".strings";
        for (const std::string& folder : bundles::searchFolders(bundle, nullptr, nullptr)) {
            if (bundles::isFile(folder + file))
                return bundles::dictionaryIn(folder + file);
        }
        return nullptr;
    }

    /// Answers a string table, empty when there is none.
    Ref<NSDictionary> tableNamed(const NSBundle& bundle, NSString* name)
    {
        BundleState& state = BundleAccess::state(bundle);
        std::uint64_t generation = 0;
        {
            const std::lock_guard guard(state.mutex);
            if (Ref<NSObject> known = current(state).tables->objectForKey(name))
                return cast<NSDictionary>(known);
            generation = state.generation;
        }
        // Read without the lock: who searches asks for the languages, which need it.
        Ref<NSDictionary> table = readTable(bundle, name);
        if (!table)
            table = NSDictionary::cls().dictionary();
        const std::lock_guard guard(state.mutex);
        if (current(state).generation == generation)
            state.tables->setObject_forKey(table.get(), name);
        return table;
    }

    template <class T> Ref<T> ofKind(Ref<NSObject> object)
    {
        return object && object->isKindOfClass(T::cls()) ? cast<T>(object) : nullptr;
    }

}

namespace bundles {

    Ref<NSDictionary> dictionaryIn(const std::string& path)
    {
        const Ref<NSData> data = isFile(path)
            ? NSData::cls().dataWithContentsOfFile(files::textFrom(path).get())
            : nullptr;
        return ofKind<NSDictionary>(
            NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                data.get(), NSPropertyListImmutable, nullptr, nullptr));
    }

    std::vector<std::string> matching(
        const std::vector<std::string>& available, const std::vector<std::string>& wanted)
    {
        std::vector<std::string> out;
        for (const std::string& language : wanted) {
            const std::string* best = nullptr;
            std::size_t likest = 0;
            for (const std::string& candidate : available) {
                const std::size_t like = likeness(folded(candidate), folded(language));
                if (like > likest) {
                    likest = like;
                    best = &candidate;
                }
            }
            if (best && std::find(out.begin(), out.end(), *best) == out.end())
                out.push_back(*best);
        }
        return out;
    }

    std::vector<std::string> localizations(const NSBundle& bundle)
    {
        std::vector<std::string> out;
        constexpr std::string_view kEnding = ".lproj";
        const auto close = [](DIR* opened) { ::closedir(opened); };
        const std::unique_ptr<DIR, decltype(close)> folder(
            ::opendir(BundleAccess::state(bundle).resources.c_str()), close);
        while (const dirent* const entry = folder ? ::readdir(folder.get()) : nullptr) {
            std::string_view name = entry->d_name;
            if (name.size() <= kEnding.size() || !name.ends_with(kEnding))
                continue;
            name.remove_suffix(kEnding.size());
            if (name != "Base")
                out.emplace_back(name);
        }
        std::sort(out.begin(), out.end());
        return out;
    }

    std::string developmentLocalization(const NSBundle& bundle)
    {
        const auto region = ofKind<NSString>(
            maybe(bundle.infoDictionary())->objectForKey("CFBundleDevelopmentRegion"_ns));
        return maybe(region)->length() ? pathFrom(region.get()) : "en";
    }

    std::vector<std::string> preferredLocalizations(const NSBundle& bundle)
    {
        BundleState& state = BundleAccess::state(bundle);
        std::uint64_t generation = 0;
        {
            const std::lock_guard guard(state.mutex);
            if (!current(state).preferred.empty())
                return state.preferred;
            generation = state.generation;
        }
        auto preferred = matching(localizations(bundle), UserLocale::languages());
        if (preferred.empty())
            preferred.push_back(developmentLocalization(bundle));
        const std::lock_guard guard(state.mutex);
        if (current(state).generation == generation)
            state.preferred = preferred;
        return preferred;
    }

}

template <> struct NSBundle::Methods<struct Languages> {

    static Ref<NSArray> preferredFor(Class&, NSArray* available, NSArray* wanted)
    {
        const auto all = stringsOf(available);
        auto best = bundles::matching(all, wanted ? stringsOf(wanted) : UserLocale::languages());
        if (best.empty() && !all.empty())
            best.push_back(all.front());
        return arrayOf(best);
    }
    static Ref<NSArray> preferredFrom(Class& self, NSArray* available)
    {
        return preferredFor(self, available, nullptr);
    }
    static Ref<NSArray> localizations(NSBundle& self)
    {
        return arrayOf(bundles::localizations(self));
    }
    static Ref<NSArray> preferred(NSBundle& self)
    {
        return arrayOf(bundles::preferredLocalizations(self));
    }
    static Ref<NSString> development(NSBundle& self)
    {
        return files::textFrom(bundles::developmentLocalization(self));
    }

    static Ref<NSString> localizedString(
        NSBundle& self, NSString* key, NSString* value, NSString* table)
    {
        if (!key)
            return value ? value : ""_ns;
        const auto strings = tableNamed(self, maybe(table)->length() ? table : "Localizable"_ns);
        if (Ref<NSString> found = ofKind<NSString>(strings->objectForKey(key)))
            return found;
        return maybe(value)->length() ? value : key;
    }

    static Ref<NSDictionary> infoDictionary(NSBundle& self)
    {
        BundleState& state = BundleAccess::state(self);
        {
            const std::lock_guard guard(state.mutex);
            if (state.info)
                return state.info;
        }
        Ref<NSDictionary> info = bundles::dictionaryIn(state.contents + "/Info.plist");
        if (!info)
            info = NSDictionary::cls().dictionary();
        const std::lock_guard guard(state.mutex);
        if (!state.info)
            state.info = info;
        return state.info;
    }
    static Ref<NSDictionary> localizedInfo(NSBundle& self)
    {
        return tableNamed(self, "InfoPlist"_ns);
    }
    static Ref<NSObject> infoValue(NSBundle& self, NSString* key)
    {
        if (!key)
            return nullptr;
        if (Ref<NSObject> localized = maybe(self.localizedInfoDictionary())->objectForKey(key))
            return localized;
        return maybe(self.infoDictionary())->objectForKey(key);
    }
    static Ref<NSString> identifier(NSBundle& self)
    {
        return ofKind<NSString>(
            maybe(self.infoDictionary())->objectForKey("CFBundleIdentifier"_ns));
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "preferredLocalizationsFromArray:", imp<preferredFrom> },
            { "preferredLocalizationsFromArray:forPreferences:", imp<preferredFor> },
        });
        t.methods({
            { "localizations", imp<localizations> },
            { "preferredLocalizations", imp<preferred> },
            { "developmentLocalization", imp<development> },
            { "localizedStringForKey:value:table:", imp<localizedString> },
            { "infoDictionary", imp<infoDictionary> },
            { "localizedInfoDictionary", imp<localizedInfo> },
            { "objectForInfoDictionaryKey:", imp<infoValue> },
            { "bundleIdentifier", imp<identifier> },
        });
    }
};
BRINDLE_RECORD(NSBundle, Languages)

}
