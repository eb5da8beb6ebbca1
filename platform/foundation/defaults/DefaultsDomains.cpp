// SPDX-License-Identifier: Apache-2.0
#include "DefaultsDomainsPrivate.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "foundation/Clock.h"
#include "foundation/Dispatch.h"
#include "foundation/NSBundle.h"
#include "foundation/NSData.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSProcessInfo.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/UserLocale.h"

namespace brindle::defaults {

namespace {

    constexpr std::int64_t kLookInterval = NSEC_PER_SEC;
    constexpr off_t kLargestSettings = 1 << 20; // bytes

    std::vector<std::string> processArguments()
    {
        std::vector<std::string> all;
        for (NSString* argument : each<NSString>(NSProcessInfo::cls().processInfo()->arguments()))
            all.push_back(utf8Of(argument));
        return all;
    }

    /// Answers what the session says of language and region.
    Ref<NSDictionary> languageValues()
    {
        const auto languages = make<NSMutableArray>();
        for (const std::string& language : UserLocale::languages())
            languages->addObject(stringFrom(language).get());
        const Ref<NSObject> all = languages->copy();
        const Ref<NSString> locale = stringFrom(UserLocale::identifier());
        return makeDictionary(
            { { "AppleLanguages"_ns, all.get() }, { "AppleLocale"_ns, locale.get() } });
    }

    bool isNumber(const std::string& text)
    {
        char* end = nullptr;
        std::strtod(text.c_str(), &end);
        return end != text.c_str() && !*end;
    }

    Ref<NSObject> valueOfArgument(const std::string& text)
    {
        const std::string_view opening = "{(<";
        if (!text.empty() && opening.find(text.front()) != std::string_view::npos) {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
            const Ref<NSObject> list
                = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                    dataFrom({ bytes, text.size() }).get(), NSPropertyListImmutable, nullptr,
                    nullptr);
            if (list)
                return list;
        }
        return stringFrom(text);
    }

    std::string lowered(std::string text)
    {
        for (char& character : text)
            character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        return text;
    }

    std::string contentsOfRegularFile(const std::string& path)
    {
        struct stat status { };
        if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)
            || status.st_size > kLargestSettings)
            return "";
        const std::optional<ByteBuffer> bytes = files::read(path.c_str());
        return bytes ? std::string(reinterpret_cast<const char*>(bytes->bytes()), bytes->length())
                     : "";
    }

    /// Answers what stands behind "key=" in a settings file, in small letters; "" when nothing does.
    std::string setting(const std::string& path, std::string_view key)
    {
        const std::string text = contentsOfRegularFile(path);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            std::string line = text.substr(at, end - at);
            line.erase(std::remove_if(line.begin(), line.end(),
                           [](unsigned char character) { return std::isspace(character) != 0; }),
                line.end());
            if (line.size() > key.size() && line[key.size()] == '=' && line.starts_with(key))
                return lowered(line.substr(key.size() + 1));
            at = end + 1;
        }
        return "";
    }

    bool endsDark(const std::string& theme)
    {
        return theme.ends_with("-dark") || theme.ends_with(":dark");
    }

    bool prefersDark(const std::string& root)
    {
        if (root.empty())
            return false;
        const char* const theme = std::getenv("GTK_THEME");
        if (theme && *theme)
            return endsDark(lowered(theme));
        const char* const desktop = std::getenv("XDG_CURRENT_DESKTOP");
        if (desktop && std::string_view(desktop).find("KDE") != std::string_view::npos)
            return setting(root + "/kdeglobals", "ColorScheme").find("dark") != std::string::npos;
        for (const char* const file : { "/gtk-4.0/settings.ini", "/gtk-3.0/settings.ini" }) {
            const std::string asked = setting(root + file, "gtk-application-prefer-dark-theme");
            if (asked == "1" || asked == "true" || endsDark(setting(root + file, "gtk-theme-name")))
                return true;
        }
        return false;
    }

}

void postChange(NSUserDefaults& defaults)
{
    NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(
        NSUserDefaultsDidChangeNotification, &defaults);
}

std::string applicationName()
{
    const Ref<NSString> identifier = NSBundle::cls().mainBundle()->bundleIdentifier();
    return utf8Of(maybe(identifier)->length() > 0
            ? identifier
            : NSProcessInfo::cls().processInfo()->processName());
}

Ref<NSDictionary> valuesOfArguments(const std::vector<std::string>& arguments)
{
    const auto values = make<NSMutableDictionary>();
    for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        const std::string& value = arguments[i + 1];
        const bool isKey = name.size() > 1 && name[0] == '-' && name[1] != '-' && !isNumber(name);
        if (!isKey || (value.starts_with('-') && !isNumber(value)))
            continue;
        values->setObject_forKey(valueOfArgument(value).get(), stringFrom(name.substr(1)).get());
        ++i;
    }
    return cast<NSDictionary>(values->copy());
}

Ref<NSDictionary> Domains::desktopNow() const
{
    const desktop::ColorScheme scheme = scheme_.load(std::memory_order_relaxed);
    const bool dark = scheme == desktop::ColorScheme::noPreference
        ? prefersDark(Store::root())
        : scheme == desktop::ColorScheme::dark;
    return dark ? makeDictionary({ { "AppleInterfaceStyle"_ns, "Dark"_ns } })
                : NSDictionary::cls().dictionary();
}

Domains& Domains::shared()
{
    static Domains* const domains = new Domains;
    return *domains;
}

void Domains::reset()
{
    const Ref<NSDictionary> none = NSDictionary::cls().dictionary();
    std::vector<VolatileDomain> fresh { { NSArgumentDomain.get(),
                                            valuesOfArguments(processArguments()) },
        { "NSLanguageDomain"_ns, languageValues() }, { NSRegistrationDomain.get(), none } };
    scheme_.store(desktop::ColorScheme::noPreference, std::memory_order_relaxed);
    Ref<NSDictionary> desktop = desktopNow();
    nextLook_.store(Clock::now() + kLookInterval, std::memory_order_relaxed);
    const std::lock_guard guard(memory);
    volatile_.swap(fresh);
    desktop_.swap(desktop);
}

void Domains::look()
{
    const std::int64_t now = Clock::now();
    std::int64_t next = nextLook_.load(std::memory_order_relaxed);
    // A clock that was put back must not make it blind.
    if (now < next && next - now <= kLookInterval)
        return;
    if (!nextLook_.compare_exchange_strong(next, now + kLookInterval))
        return;
    Store::lookAtAll();
    Ref<NSDictionary> desktop = desktopNow();
    const std::lock_guard guard(memory);
    desktop_.swap(desktop);
}

bool Domains::setColorScheme(desktop::ColorScheme scheme)
{
    scheme_.store(scheme, std::memory_order_relaxed);
    Ref<NSDictionary> desktop = desktopNow();
    const std::lock_guard guard(memory);
    desktop_.swap(desktop);
    return !desktop_->isEqual(desktop.get());
}

VolatileDomain* Domains::volatileDomain(NSString* name)
{
    const auto found = std::find_if(volatile_.begin(), volatile_.end(),
        [name](const VolatileDomain& each) { return each.name->isEqual(name); });
    return found == volatile_.end() ? nullptr : &*found;
}

}

bool brindle::desktop::filesPreferDark() { return defaults::prefersDark(defaults::Store::root()); }

void brindle::desktop::setColorScheme(ColorScheme scheme)
{
    if (!defaults::Domains::shared().setColorScheme(scheme))
        return;
    const Ref<NSUserDefaults> object = NSUserDefaults::cls().standardUserDefaults();
    defaults::postChange(*object);
}
