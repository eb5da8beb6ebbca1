// SPDX-License-Identifier: Apache-2.0
#include "NSCalendar.h"

#include <algorithm>
#include <string_view>

#include "CalendarPrivate.h"
#include "CodingTable.h"
#include "runtime/Table.h"

namespace brindle {

using Lease = unicode::Pool<UCalendar*>::Lease;

namespace {

    constexpr std::string_view kIdentifiers[] { "gregorian", "buddhist", "chinese", "coptic",
        "hebrew", "iso8601", "indian", "islamic", "islamic-civil", "islamic-tbla",
        "islamic-umalqura", "japanese", "persian", "roc", "ethiopic" };

    /// Asks a calendar as its locale makes it, not as somebody set it.
    NSUInteger customOf(const NSCalendar& calendar, const NSLocale* locale, UCalendarAttribute what,
        NSUInteger without)
    {
        const Lease lease
            = unicode::lendCalendar(withCalendar(localeName(locale), calendar), u"GMT", "customs");
        return lease ? static_cast<NSUInteger>(ICU(ucal_getAttribute)(lease.get(), what)) : without;
    }

}

Lease CalendarAccess::lend(const NSCalendar& calendar, const NSTimeZone* zone)
{
    Lease lease = unicode::lendCalendar(withCalendar(localeName(calendar.locale_.get()), calendar),
        zoneName(zone ? zone : calendar.timeZone_.get()), "calendar");
    if (lease) {
        ICU(ucal_setAttribute)
        (lease.get(), UCAL_FIRST_DAY_OF_WEEK, static_cast<std::int32_t>(calendar.firstWeekday()));
        ICU(ucal_setAttribute)
        (lease.get(), UCAL_MINIMAL_DAYS_IN_FIRST_WEEK,
            static_cast<std::int32_t>(calendar.minimumDaysInFirstWeek()));
    }
    return lease;
}

std::string withCalendar(std::string locale, const NSCalendar& calendar)
{
    locale += locale.find('@') == std::string::npos ? "@calendar=" : ";calendar=";
    return locale + utf8Of(calendar.calendarIdentifier());
}

template <> struct NSCalendar::Methods<struct Settings> {

    static Ref<NSCalendar> withIdentifier(Class& self, NSString* identifier)
    {
        return cast<NSCalendar>(NSObject::Meta { &self }.alloc())
            ->initWithCalendarIdentifier(identifier);
    }
    static Ref<NSCalendar> current(Class& self)
    {
        const Lease lease = unicode::lendCalendar(localeName(nullptr), u"GMT");
        UErrorCode error = U_ZERO_ERROR;
        const char* const type = lease ? ICU(ucal_getType)(lease.get(), &error) : nullptr;
        const auto found = withIdentifier(self, type ? stringFrom(type).get() : nullptr);
        return found ? found : withIdentifier(self, NSCalendarIdentifierGregorian);
    }
    static Ref<NSCalendar> initWithIdentifier(NSCalendar& self, NSString* identifier)
    {
        const bool isKnown
            = std::find(std::begin(kIdentifiers), std::end(kIdentifiers), utf8Of(identifier))
            != std::end(kIdentifiers);
        if (!isKnown || !super<NSCalendar, "init", Ref<NSObject>>(self))
            return nullptr;
        self.identifier_ = cast<NSString>(identifier->copy());
        return &self;
    }
    static Ref<NSCalendar> init(NSCalendar& self)
    {
        return self.initWithCalendarIdentifier(NSCalendarIdentifierGregorian);
    }
    static Ref<NSString> identifier(NSCalendar& self) { return self.identifier_; }
    static Ref<NSLocale> locale(NSCalendar& self)
    {
        return self.locale_ ? self.locale_ : NSLocale::cls().currentLocale();
    }
    static void setLocale(NSCalendar& self, NSLocale* locale) { self.locale_ = locale; }
    static Ref<NSTimeZone> timeZone(NSCalendar& self)
    {
        return self.timeZone_ ? self.timeZone_ : NSTimeZone::cls().defaultTimeZone();
    }
    static void setTimeZone(NSCalendar& self, NSTimeZone* zone) { self.timeZone_ = zone; }
    static NSUInteger firstWeekday(NSCalendar& self)
    {
        return self.firstWeekday_ ? self.firstWeekday_
                                  : customOf(self, self.locale_.get(), UCAL_FIRST_DAY_OF_WEEK, 1);
    }
    static void setFirstWeekday(NSCalendar& self, NSUInteger day)
    {
        self.firstWeekday_ = std::clamp<NSUInteger>(day, 1, 7);
    }
    static NSUInteger minimumDays(NSCalendar& self)
    {
        return self.minimumDays_
            ? self.minimumDays_
            : customOf(self, self.locale_.get(), UCAL_MINIMAL_DAYS_IN_FIRST_WEEK, 1);
    }
    static void setMinimumDays(NSCalendar& self, NSUInteger days)
    {
        self.minimumDays_ = std::clamp<NSUInteger>(days, 1, 7);
    }
    static bool isEqual(NSCalendar& self, NSObject* other)
    {
        if (other == &self)
            return true;
        if (!other || !other->isKindOfClass(NSCalendar::cls()))
            return false;
        const auto& that = *static_cast<NSCalendar*>(other);
        return maybe(self.identifier_)->isEqual(that.identifier_.get())
            && self.locale()->isEqual(that.locale().get())
            && self.timeZone()->isEqual(that.timeZone().get())
            && self.firstWeekday() == that.firstWeekday()
            && self.minimumDaysInFirstWeek() == that.minimumDaysInFirstWeek();
    }
    static std::uint64_t hash(NSCalendar& self) { return maybe(self.identifier_)->hash(); }
    static Ref<NSObject> copyWithZone(NSCalendar& self, void*)
    {
        const auto copy = make<NSCalendar>();
        copy->identifier_ = self.identifier_;
        copy->locale_ = self.locale_;
        copy->timeZone_ = self.timeZone_;
        copy->firstWeekday_ = self.firstWeekday_;
        copy->minimumDays_ = self.minimumDays_;
        return copy;
    }

    static void encodeWithCoder(NSCalendar& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.identifier_.get(), "NS.identifier"_ns);
        coder->encodeObject_forKey(self.timeZone_.get(), "NS.timezone"_ns);
        coder->encodeObject_forKey(self.locale_.get(), "NS.locale"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.firstWeekday_), "NS.firstwkdy"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.minimumDays_), "NS.mindays"_ns);
    }
    /// Numbers that no week has are the locale's.
    static NSUInteger decodeDays(NSCoder* coder, NSString* key)
    {
        const NSInteger days = coder->decodeIntegerForKey(key);
        return days >= 1 && days <= 7 ? static_cast<NSUInteger>(days) : 0;
    }
    static Ref<NSObject> initWithCoder(NSCalendar& self, NSCoder* coder)
    {
        const auto identifier = decode<NSString>(coder, "NS.identifier"_ns);
        if (!self.initWithCalendarIdentifier(identifier.get()))
            return nullptr;
        self.timeZone_ = decode<NSTimeZone>(coder, "NS.timezone"_ns);
        self.locale_ = decode<NSLocale>(coder, "NS.locale"_ns);
        self.firstWeekday_ = decodeDays(coder, "NS.firstwkdy"_ns);
        self.minimumDays_ = decodeDays(coder, "NS.mindays"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "currentCalendar", imp<current> },
            { "autoupdatingCurrentCalendar", imp<current> },
            { "calendarWithIdentifier:", imp<withIdentifier> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithCalendarIdentifier:", imp<initWithIdentifier> },
            { "calendarIdentifier", imp<identifier> },
            { "locale", imp<locale> },
            { "setLocale:", imp<setLocale> },
            { "timeZone", imp<timeZone> },
            { "setTimeZone:", imp<setTimeZone> },
            { "firstWeekday", imp<firstWeekday> },
            { "setFirstWeekday:", imp<setFirstWeekday> },
            { "minimumDaysInFirstWeek", imp<minimumDays> },
            { "setMinimumDaysInFirstWeek:", imp<setMinimumDays> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSCalendar, Settings)

}
