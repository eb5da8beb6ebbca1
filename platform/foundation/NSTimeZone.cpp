// SPDX-License-Identifier: Apache-2.0
#include "NSTimeZone.h"

#include <cmath>
#include <cstdio>
#include <mutex>
#include <string_view>

#include "CalendarPrivate.h"
#include "Clock.h"
#include "CodingTable.h"
#include "NSArray.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr NSInteger kDay = 86400; // seconds

    struct Zones {
        std::mutex mutex;
        Ref<NSTimeZone> system;
        Ref<NSTimeZone> chosen;
    };

    Zones& zones()
    {
        static Zones& instance = *new Zones;
        return instance;
    }

    struct Abbreviation {
        std::string_view text;
        const char* name;
    };
    constexpr Abbreviation kAbbreviations[] {
        { "UTC", "UTC" },
        { "GMT", "GMT" },
        { "WET", "Europe/Lisbon" },
        { "WEST", "Europe/Lisbon" },
        { "BST", "Europe/London" },
        { "CET", "Europe/Paris" },
        { "CEST", "Europe/Paris" },
        { "EET", "Europe/Athens" },
        { "EEST", "Europe/Athens" },
        { "MSK", "Europe/Moscow" },
        { "IST", "Asia/Kolkata" },
        { "JST", "Asia/Tokyo" },
        { "KST", "Asia/Seoul" },
        { "SGT", "Asia/Singapore" },
        { "NZST", "Pacific/Auckland" },
        { "NZDT", "Pacific/Auckland" },
        { "EST", "America/New_York" },
        { "EDT", "America/New_York" },
        { "CST", "America/Chicago" },
        { "CDT", "America/Chicago" },
        { "MST", "America/Denver" },
        { "MDT", "America/Denver" },
        { "PST", "America/Los_Angeles" },
        { "PDT", "America/Los_Angeles" },
        { "AKST", "America/Anchorage" },
        { "HST", "Pacific/Honolulu" },
        { "BRT", "America/Sao_Paulo" },
    };

    bool isKnown(const std::u16string& name)
    {
        if (!unicode::isThere())
            return name == u"GMT" || name == u"UTC";
        constexpr std::size_t kLongest = 128;
        if (name.empty() || name.size() > kLongest)
            return false;
        UErrorCode error = U_ZERO_ERROR;
        UBool isSystem = 0;
        UChar room[kLongest + 1];
        ICU(ucal_getCanonicalTimeZoneID)
        (name.c_str(), static_cast<std::int32_t>(name.size()), room, kLongest, &isSystem, &error);
        return U_SUCCESS(error);
    }

    Ref<NSTimeZone> zoneOf(const std::u16string& name)
    {
        const Ref<NSString> text = stringFrom(name);
        return NSTimeZone::cls().timeZoneWithName(text.get());
    }

    Ref<NSTimeZone> readSystem()
    {
        if (unicode::isThere()) {
            const auto name = unicode::filled<std::u16string>(
                [](UChar* out, std::int32_t room, UErrorCode* error) {
                    return ICU(ucal_getDefaultTimeZone)(out, room, error);
                });
            // A machine that cannot say has a zone of this name.
            if (name != u"Etc/Unknown") {
                if (Ref<NSTimeZone> zone = zoneOf(name))
                    return zone;
            }
        }
        return zoneOf(u"GMT");
    }

    /// Asks a calendar that stands at a moment; 0 when there is none.
    template <class Ask> double ask(const NSTimeZone& zone, NSDate* date, Ask question)
    {
        if (!unicode::isThere())
            return 0;
        const auto calendar = unicode::lendCalendar("", zoneName(&zone));
        if (!calendar)
            return 0;
        const double moment = date ? date->timeIntervalSinceReferenceDate() : Clock::wall();
        UErrorCode error = U_ZERO_ERROR;
        ICU(ucal_setMillis)(calendar.get(), unicode::millisecondsFrom(moment), &error);
        const double answer = question(calendar.get(), &error);
        return U_SUCCESS(error) ? answer : 0;
    }

    double field(const NSTimeZone& zone, NSDate* date, UCalendarDateFields which)
    {
        return ask(zone, date, [which](UCalendar* calendar, UErrorCode* error) {
            return ICU(ucal_get)(calendar, which, error) / 1000.0;
        });
    }

    Ref<NSString> nameIn(
        const NSTimeZone& zone, const NSLocale* locale, UCalendarDisplayNameType type)
    {
        const auto calendar = unicode::lendCalendar("", zoneName(&zone));
        if (!calendar)
            return zone.name();
        const std::string language = localeName(locale);
        return stringFrom(
            unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
                return ICU(ucal_getTimeZoneDisplayName)(
                    calendar.get(), type, language.c_str(), out, room, error);
            }));
    }

}

std::u16string zoneName(const NSTimeZone* zone)
{
    return utf16Of(zone ? zone->name() : NSTimeZone::cls().defaultTimeZone()->name());
}

double boundedMoment(double seconds)
{
    constexpr double kFarthest
        = 1.8e14; // what the Unicode library's calendars hold, nearly 6 million years
    if (std::isnan(seconds))
        return 0;
    return std::fmin(std::fmax(seconds, -kFarthest), kFarthest);
}

namespace unicode {

    Pool<UCalendar*>::Lease lendCalendar(
        const std::string& locale, const std::u16string& zone, const std::string& purpose)
    {
        static Pool<UCalendar*>& pool = *new Pool<UCalendar*>([](UCalendar* calendar) {
            ICU(ucal_close)
            (calendar);
        });
        std::string key = locale + '\n' + utf8Of(stringFrom(zone)) + '\n' + purpose;
        return pool.lease(std::move(key), [&]() -> UCalendar* {
            if (!isThere())
                return nullptr;
            UErrorCode error = U_ZERO_ERROR;
            UCalendar* const calendar = ICU(ucal_open)(zone.c_str(),
                static_cast<std::int32_t>(zone.size()), locale.c_str(), UCAL_DEFAULT, &error);
            return U_SUCCESS(error) ? calendar : nullptr;
        });
    }

    double millisecondsFrom(double seconds)
    {
        return (boundedMoment(seconds) + NSTimeIntervalSince1970) * 1000;
    }

    double secondsFrom(double milliseconds)
    {
        return milliseconds / 1000 - NSTimeIntervalSince1970;
    }

}

template <> struct NSTimeZone::Methods<struct Identity> {

    static Ref<NSTimeZone> withName(Class& self, NSString* name)
    {
        return cast<NSTimeZone>(NSObject::Meta { &self }.alloc())->initWithName(name);
    }
    static Ref<NSTimeZone> withAbbreviation(Class& self, NSString* abbreviation)
    {
        const std::string text = utf8Of(abbreviation);
        for (const Abbreviation& known : kAbbreviations) {
            if (known.text == text)
                return withName(self, stringFrom(known.name).get());
        }
        return nullptr;
    }
    static Ref<NSTimeZone> withSeconds(Class& self, NSInteger seconds)
    {
        if (seconds <= -kDay || seconds >= kDay)
            return nullptr;
        const auto distance = static_cast<int>(seconds < 0 ? -seconds : seconds);
        char name[24] = "GMT";
        if (distance)
            std::snprintf(name, sizeof name, distance % 60 ? "GMT%c%02d%02d%02d" : "GMT%c%02d%02d",
                seconds < 0 ? '-' : '+', distance / 3600, distance / 60 % 60, distance % 60);
        return withName(self, stringFrom(name).get());
    }
    static Ref<NSTimeZone> system(Class&)
    {
        Zones& z = zones();
        {
            const std::lock_guard guard(z.mutex);
            if (z.system)
                return z.system;
        }
        const Ref<NSTimeZone> found = readSystem();
        const std::lock_guard guard(z.mutex);
        if (!z.system)
            z.system = found;
        return z.system;
    }
    static Ref<NSTimeZone> chosen(Class& self)
    {
        Zones& z = zones();
        {
            const std::lock_guard guard(z.mutex);
            if (z.chosen)
                return z.chosen;
        }
        return system(self);
    }
    static void choose(Class&, NSTimeZone* zone)
    {
        Ref<NSTimeZone> fresh = zone;
        Zones& z = zones();
        const std::lock_guard guard(z.mutex);
        z.chosen.swap(fresh);
    }
    static Ref<NSArray> knownNames(Class&)
    {
        std::vector<Ref<NSObject>> all;
        UErrorCode error = U_ZERO_ERROR;
        UEnumeration* const names = unicode::isThere() ? ICU(ucal_openTimeZones)(&error) : nullptr;
        std::int32_t length = 0;
        while (const UChar* const name = names ? ICU(uenum_unext)(names, &length, &error) : nullptr)
            all.emplace_back(
                stringFrom(std::u16string_view(name, static_cast<std::size_t>(length))));
        if (names)
            ICU(uenum_close)(names);
        return makeArray(std::move(all));
    }

    static Ref<NSTimeZone> initWithName(NSTimeZone& self, NSString* name)
    {
        if (!isKnown(utf16Of(name)) || !super<NSTimeZone, "init", Ref<NSObject>>(self))
            return nullptr;
        self.name_ = cast<NSString>(name->copy());
        return &self;
    }
    static Ref<NSTimeZone> init(NSTimeZone& self) { return self.initWithName("GMT"_ns); }
    static Ref<NSString> name(NSTimeZone& self) { return self.name_; }
    static bool isEqualToTimeZone(NSTimeZone& self, NSTimeZone* other)
    {
        return other && maybe(self.name())->isEqualToString(other->name().get());
    }
    static bool isEqual(NSTimeZone& self, NSObject* other)
    {
        return other
            && (other == &self
                || (other->isKindOfClass(NSTimeZone::cls())
                    && self.isEqualToTimeZone(static_cast<NSTimeZone*>(other))));
    }
    static std::uint64_t hash(NSTimeZone& self) { return maybe(self.name())->hash(); }
    static Ref<NSObject> copyWithZone(NSTimeZone& self, void*) { return &self; }
    static Ref<NSString> description(NSTimeZone& self)
    {
        return NSString::cls().stringWithFormat(
            "%@ (%@) offset %ld"_ns, self.name(), self.abbreviation(), self.secondsFromGMT());
    }

    static void encodeWithCoder(NSTimeZone& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.name().get(), "NS.name"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTimeZone& self, NSCoder* coder)
    {
        return self.initWithName(decode<NSString>(coder, "NS.name"_ns).get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "timeZoneWithName:", imp<withName> },
            { "timeZoneWithAbbreviation:", imp<withAbbreviation> },
            { "timeZoneForSecondsFromGMT:", imp<withSeconds> },
            { "systemTimeZone", imp<system> },
            { "defaultTimeZone", imp<chosen> },
            { "localTimeZone", imp<chosen> },
            { "setDefaultTimeZone:", imp<choose> },
            { "knownTimeZoneNames", imp<knownNames> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithName:", imp<initWithName> },
            { "name", imp<name> },
            { "isEqualToTimeZone:", imp<isEqualToTimeZone> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(NSTimeZone, Identity)

template <> struct NSTimeZone::Methods<struct Offsets> {

    static NSInteger secondsAt(NSTimeZone& self, NSDate* date)
    {
        return static_cast<NSInteger>(
            field(self, date, UCAL_ZONE_OFFSET) + field(self, date, UCAL_DST_OFFSET));
    }
    static NSInteger seconds(NSTimeZone& self) { return self.secondsFromGMTForDate(nullptr); }
    static NSTimeInterval savingAt(NSTimeZone& self, NSDate* date)
    {
        return field(self, date, UCAL_DST_OFFSET);
    }
    static NSTimeInterval saving(NSTimeZone& self)
    {
        return self.daylightSavingTimeOffsetForDate(nullptr);
    }
    static bool isSavingAt(NSTimeZone& self, NSDate* date)
    {
        return self.daylightSavingTimeOffsetForDate(date) != 0;
    }
    static bool isSaving(NSTimeZone& self) { return self.isDaylightSavingTimeForDate(nullptr); }
    static Ref<NSDate> transitionAfter(NSTimeZone& self, NSDate* date)
    {
        const double next = ask(self, date, [](UCalendar* calendar, UErrorCode* error) {
            UDate moment = 0;
            const bool isThere = ICU(ucal_getTimeZoneTransitionDate)(
                calendar, UCAL_TZ_TRANSITION_NEXT, &moment, error);
            return isThere ? moment : 0;
        });
        return next != 0 ? NSDate::cls().dateWithTimeIntervalSince1970(next / 1000) : nullptr;
    }
    static Ref<NSDate> transition(NSTimeZone& self)
    {
        return self.nextDaylightSavingTimeTransitionAfterDate(nullptr);
    }
    static Ref<NSString> abbreviationAt(NSTimeZone& self, NSDate* date)
    {
        return self.localizedName_locale(self.isDaylightSavingTimeForDate(date)
                ? NSTimeZoneNameStyleShortDaylightSaving
                : NSTimeZoneNameStyleShortStandard,
            nullptr);
    }
    static Ref<NSString> abbreviation(NSTimeZone& self)
    {
        return self.abbreviationForDate(nullptr);
    }
    static Ref<NSString> localizedName(
        NSTimeZone& self, NSTimeZoneNameStyle style, NSLocale* locale)
    {
        switch (style) {
        case NSTimeZoneNameStyleStandard:
            return nameIn(self, locale, UCAL_STANDARD);
        case NSTimeZoneNameStyleShortStandard:
            return nameIn(self, locale, UCAL_SHORT_STANDARD);
        case NSTimeZoneNameStyleDaylightSaving:
            return nameIn(self, locale, UCAL_DST);
        case NSTimeZoneNameStyleShortDaylightSaving:
            return nameIn(self, locale, UCAL_SHORT_DST);
        }
        return nullptr;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "secondsFromGMT", imp<seconds> },
            { "secondsFromGMTForDate:", imp<secondsAt> },
            { "abbreviation", imp<abbreviation> },
            { "abbreviationForDate:", imp<abbreviationAt> },
            { "isDaylightSavingTime", imp<isSaving> },
            { "isDaylightSavingTimeForDate:", imp<isSavingAt> },
            { "daylightSavingTimeOffset", imp<saving> },
            { "daylightSavingTimeOffsetForDate:", imp<savingAt> },
            { "nextDaylightSavingTimeTransition", imp<transition> },
            { "nextDaylightSavingTimeTransitionAfterDate:", imp<transitionAfter> },
            { "localizedName:locale:", imp<localizedName> },
        });
    }
};
BRINDLE_RECORD(NSTimeZone, Offsets)

}
