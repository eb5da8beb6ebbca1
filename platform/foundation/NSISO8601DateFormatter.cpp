// SPDX-License-Identifier: Apache-2.0
#include "NSISO8601DateFormatter.h"

#include <cmath>

#include "DateFormatPrivate.h"
#include "LocalePrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    std::u16string datePattern(NSISO8601DateFormatOptions options)
    {
        const bool hasWeek = options & NSISO8601DateFormatWithWeekOfYear;
        const bool hasMonth = !hasWeek && (options & NSISO8601DateFormatWithMonth);
        const std::u16string between
            = options & NSISO8601DateFormatWithDashSeparatorInDate ? u"-" : u"";
        std::u16string pattern;
        const auto add = [&](const char16_t* letters) {
            pattern += (pattern.empty() ? u"" : between) + letters;
        };
        if (options & NSISO8601DateFormatWithYear)
            add(hasWeek ? u"YYYY" : u"yyyy");
        if (hasMonth)
            add(u"MM");
        if (hasWeek)
            add(u"'W'ww");
        if (options & NSISO8601DateFormatWithDay)
            add(hasWeek ? u"ee" : hasMonth ? u"dd" : u"DDD");
        return pattern;
    }

    std::u16string patternOf(NSISO8601DateFormatOptions options)
    {
        std::u16string pattern = datePattern(options);
        if (options & NSISO8601DateFormatWithTime) {
            if (!pattern.empty())
                pattern += options & NSISO8601DateFormatWithSpaceBetweenDateAndTime ? u" " : u"'T'";
            pattern
                += options & NSISO8601DateFormatWithColonSeparatorInTime ? u"HH:mm:ss" : u"HHmmss";
            if (options & NSISO8601DateFormatWithFractionalSeconds)
                pattern += u".SSS";
        }
        if (options & NSISO8601DateFormatWithTimeZone)
            pattern.append(options & NSISO8601DateFormatWithColonSeparatorInTimeZone ? 3 : 2, u'X');
        return pattern;
    }

}

template <> struct NSISO8601DateFormatter::Methods<struct Writing> {

    static dateformats::Recipe recipe(const NSISO8601DateFormatter& self)
    {
        dateformats::Recipe out;
        out.locale = "en_US_POSIX@calendar=iso8601";
        out.zone = zoneName(self.timeZone().get());
        out.pattern = patternOf(self.options_);
        return out;
    }

    static Ref<NSTimeZone> timeZone(NSISO8601DateFormatter& self)
    {
        return self.timeZone_ ? self.timeZone_ : NSTimeZone::cls().timeZoneWithName("GMT"_ns);
    }
    static void setTimeZone(NSISO8601DateFormatter& self, NSTimeZone* zone)
    {
        self.timeZone_ = zone;
    }
    static Ref<NSString> stringFromDate(NSISO8601DateFormatter& self, NSDate* date)
    {
        const double moment = maybe(date)->timeIntervalSinceReferenceDate();
        if (!date || std::isnan(moment))
            return nullptr;
        const auto text = dateformats::write(recipe(self), moment);
        return text ? stringFrom(*text) : date->description();
    }
    static Ref<NSDate> dateFromString(NSISO8601DateFormatter& self, NSString* string)
    {
        const auto moment = dateformats::read(recipe(self), utf16Of(string), false, std::nullopt);
        return moment ? NSDate::cls().dateWithTimeIntervalSinceReferenceDate(*moment) : nullptr;
    }
    static Ref<NSString> stringFor(NSISO8601DateFormatter& self, NSObject* object)
    {
        return maybe(object)->isKindOfClass(NSDate::cls())
            ? self.stringFromDate(static_cast<NSDate*>(object))
            : nullptr;
    }
    static bool getObject(
        NSISO8601DateFormatter& self, Ref<NSObject>* object, NSString* string, Ref<NSString>* error)
    {
        return reportReading(self.dateFromString(string), object, error);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "timeZone", imp<timeZone> },
            { "setTimeZone:", imp<setTimeZone> },
            { "stringFromDate:", imp<stringFromDate> },
            { "dateFromString:", imp<dateFromString> },
            { "stringForObjectValue:", imp<stringFor> },
            { "getObjectValue:forString:errorDescription:", imp<getObject> },
        });
        t.properties({
            property<&NSISO8601DateFormatter::options_>("formatOptions", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSISO8601DateFormatter, Writing)

}
