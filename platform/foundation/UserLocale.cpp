// SPDX-License-Identifier: Apache-2.0
#include "UserLocale.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <initializer_list>
#include <mutex>

namespace brindle {

namespace {

    struct Settings {
        std::mutex mutex;
        std::string identifier; // empty: the environment was not read yet
        std::vector<std::string> languages;
    };

    Settings& settings()
    {
        static Settings& instance = *new Settings;
        return instance;
    }

    constinit std::atomic<std::uint64_t> settingsGeneration { 1 };

    std::string firstSet(std::initializer_list<const char*> names)
    {
        for (const char* const name : names) {
            const char* const value = std::getenv(name);
            if (value && *value)
                return value;
        }
        return "";
    }

    std::string languageOf(std::string identifier)
    {
        std::replace(identifier.begin(), identifier.end(), '_', '-');
        return identifier;
    }

    void add(std::vector<std::string>& languages, const std::string& language)
    {
        const bool isNew
            = std::find(languages.begin(), languages.end(), language) == languages.end();
        if (!language.empty() && isNew)
            languages.push_back(language);
    }

    /// The list of languages counts only where the messages are not those of the "C" locale, as elsewhere on this system.
    std::vector<std::string> languagesOfEnvironment()
    {
        const std::string messages
            = UserLocale::identifierFromSystemName(firstSet({ "LC_ALL", "LC_MESSAGES", "LANG" }));
        if (messages.empty())
            return { "en" };
        std::vector<std::string> languages;
        const std::string list = firstSet({ "LANGUAGE" });
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.find(':', at), list.size());
            add(languages,
                languageOf(UserLocale::identifierFromSystemName(list.substr(at, end - at))));
            at = end + 1;
        }
        add(languages, languageOf(messages));
        return languages;
    }

    /// The lock is held.
    void readEnvironment(Settings& s)
    {
        if (!s.identifier.empty())
            return;
        s.identifier
            = UserLocale::identifierFromSystemName(firstSet({ "LC_ALL", "LC_TIME", "LANG" }));
        if (s.identifier.empty())
            s.identifier = "en_US";
        s.languages = languagesOfEnvironment();
    }

    bool isPlain(const std::string& name)
    {
        constexpr std::size_t kLongest = 64;
        return !name.empty() && name.size() <= kLongest
            && std::all_of(name.begin(), name.end(),
                [](unsigned char c) { return std::isalnum(c) || c == '_' || c == '-'; });
    }

}

std::string UserLocale::identifierFromSystemName(const std::string& name)
{
    const std::size_t end = std::min(name.find_first_of(".@"), name.size());
    std::string plain = name.substr(0, end);
    if (plain == "C" || plain == "POSIX" || !isPlain(plain))
        return "";
    const std::size_t at = name.find('@');
    const std::string modifier = at == std::string::npos ? "" : name.substr(at + 1);
    const char* const script = modifier == "latin" ? "_Latn"
        : modifier == "cyrillic"                   ? "_Cyrl"
        : modifier == "devanagari"                 ? "_Deva"
                                                   : "";
    return plain.insert(std::min(plain.find('_'), plain.size()), script);
}

std::string UserLocale::identifier()
{
    Settings& s = settings();
    const std::lock_guard guard(s.mutex);
    readEnvironment(s);
    return s.identifier;
}

std::vector<std::string> UserLocale::languages()
{
    Settings& s = settings();
    const std::lock_guard guard(s.mutex);
    readEnvironment(s);
    return s.languages;
}

std::uint64_t UserLocale::generation()
{
    return settingsGeneration.load(std::memory_order_acquire);
}

void UserLocale::use(const std::string& identifier, std::vector<std::string> languages)
{
    Settings& s = settings();
    const std::lock_guard guard(s.mutex);
    s.identifier = identifier;
    s.languages = std::move(languages);
    if (s.languages.empty())
        s.languages.push_back(languageOf(identifier));
    settingsGeneration.fetch_add(1, std::memory_order_release);
}

void UserLocale::useSystem()
{
    Settings& s = settings();
    const std::lock_guard guard(s.mutex);
    s.identifier.clear();
    settingsGeneration.fetch_add(1, std::memory_order_release);
}

}
