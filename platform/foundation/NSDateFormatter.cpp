// SPDX-License-Identifier: Apache-2.0
#include "NSDateFormatter.h"

#include <cmath>

#include "Clock.h"
#include "DateFormatPrivate.h"
#include "LocalePrivate.h"
#include "NSArray.h"
#include "NSCalendar.h"
#include "runtime/Table.h"

namespace brindle {

using dateformats::Recipe;
using dateformats::Symbols;

namespace {

    /// Answers the pattern of a recipe with a word in place of the date, quoted as patterns want it.
    std::u16string withWord(const Recipe& recipe, const std::u16string& word)
    {
        Recipe dateOnly = recipe;
        dateOnly.time = NSDateFormatterNoStyle;
        const std::u16string date = dateformats::patternOf(dateOnly);
        std::u16string pattern = dateformats::patternOf(recipe);
        std::u16string quoted = u"'";
        for (const char16_t unit : word)
            quoted += unit == u'\'' ? std::u16string(u"''") : std::u16string(1, unit);
        quoted += u'\'';
        const std::size_t at = pattern.find(date);
        return at == std::u16string::npos ? quoted + u' ' + pattern
                                          : pattern.replace(at, date.size(), quoted);
    }

    Ref<NSArray> arrayOf(const std::vector<std::u16string>& strings)
    {
        std::vector<Ref<NSObject>> all;
        for (const std::u16string& text : strings)
            all.emplace_back(stringFrom(text));
        return makeArray(std::move(all));
    }

    /// Answers the day's own word with the time behind it where one is wanted; nothing for days that have none.
    std::optional<std::u16string> writeNearDay(const Recipe& recipe, double moment)
    {
        constexpr double kFarthest = 3; // days; no language has a word for more
        const double days = dateformats::daysBetween(recipe, Clock::wall(), moment);
        if (std::fabs(days) > kFarthest)
            return std::nullopt;
        const auto word = dateformats::wordForDay(recipe.locale, static_cast<int>(days));
        if (!word || recipe.time == NSDateFormatterNoStyle)
            return word;
        Recipe combined = recipe;
        combined.pattern = withWord(recipe, *word);
        return dateformats::write(combined, moment);
    }

}

template <> struct NSDateFormatter::Methods<struct Settings> {

    static Recipe recipe(const NSDateFormatter& self)
    {
        Recipe out;
        out.locale = localeName(self.locale_.get());
        if (self.calendar_)
            out.locale = withCalendar(out.locale, *self.calendar_.get());
        out.zone = zoneName(self.timeZone_.get());
        out.date = self.dateStyle_;
        out.time = self.timeStyle_;
        if (self.pattern_)
            out.pattern = utf16Of(self.pattern_);
        return out;
    }

    static NSDateFormatterStyle known(NSDateFormatterStyle style)
    {
        return style <= NSDateFormatterFullStyle ? style : NSDateFormatterNoStyle;
    }
    static NSDateFormatterStyle dateStyle(NSDateFormatter& self) { return self.dateStyle_; }
    static void setDateStyle(NSDateFormatter& self, NSDateFormatterStyle style)
    {
        self.dateStyle_ = known(style);
        self.pattern_ = nullptr;
    }
    static NSDateFormatterStyle timeStyle(NSDateFormatter& self) { return self.timeStyle_; }
    static void setTimeStyle(NSDateFormatter& self, NSDateFormatterStyle style)
    {
        self.timeStyle_ = known(style);
        self.pattern_ = nullptr;
    }
    static Ref<NSString> dateFormat(NSDateFormatter& self)
    {
        return self.pattern_ ? self.pattern_ : stringFrom(dateformats::patternOf(recipe(self)));
    }
    static void setDateFormat(NSDateFormatter& self, NSString* pattern)
    {
        self.pattern_ = cast<NSString>(maybe(pattern)->copy());
    }
    static void setFromTemplate(NSDateFormatter& self, NSString* letters)
    {
        self.setDateFormat(
            NSDateFormatter::cls()
                .dateFormatFromTemplate_options_locale(letters, 0, self.locale_.get())
                .get());
    }
    static Ref<NSLocale> locale(NSDateFormatter& self)
    {
        return self.locale_ ? self.locale_ : NSLocale::cls().currentLocale();
    }
    static void setLocale(NSDateFormatter& self, NSLocale* locale) { self.locale_ = locale; }
    static Ref<NSTimeZone> timeZone(NSDateFormatter& self)
    {
        return self.timeZone_ ? self.timeZone_ : NSTimeZone::cls().defaultTimeZone();
    }
    static void setTimeZone(NSDateFormatter& self, NSTimeZone* zone) { self.timeZone_ = zone; }
    static Ref<NSCalendar> calendar(NSDateFormatter& self)
    {
        return self.calendar_ ? self.calendar_ : NSCalendar::cls().currentCalendar();
    }
    static void setCalendar(NSDateFormatter& self, NSCalendar* calendar)
    {
        self.calendar_ = calendar;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "dateStyle", imp<dateStyle> },
            { "setDateStyle:", imp<setDateStyle> },
            { "timeStyle", imp<timeStyle> },
            { "setTimeStyle:", imp<setTimeStyle> },
            { "dateFormat", imp<dateFormat> },
            { "setDateFormat:", imp<setDateFormat> },
            { "setLocalizedDateFormatFromTemplate:", imp<setFromTemplate> },
            { "locale", imp<locale> },
            { "setLocale:", imp<setLocale> },
            { "timeZone", imp<timeZone> },
            { "setTimeZone:", imp<setTimeZone> },
            { "calendar", imp<calendar> },
            { "setCalendar:", imp<setCalendar> },
        });
        t.properties({
            property<&NSDateFormatter::relative_>("doesRelativeDateFormatting", nonatomic),
            property<&NSDateFormatter::lenient_>("lenient", nonatomic, getter("isLenient")),
            property<&NSDateFormatter::defaultDate_>("defaultDate", copied, nonatomic),
        });
    }
};
BRINDLE_RECORD(NSDateFormatter, Settings)

template <> struct NSDateFormatter::Methods<struct Writing> {

    static Recipe recipe(const NSDateFormatter& self)
    {
        return NSDateFormatter::Methods<struct Settings>::recipe(self);
    }

    static Ref<NSString> stringFromDate(NSDateFormatter& self, NSDate* date)
    {
        if (!date)
            return nullptr;
        const double moment = date->timeIntervalSinceReferenceDate();
        if (std::isnan(moment))
            return nullptr;
        const Recipe how = recipe(self);
        std::optional<std::u16string> text;
        if (self.relative_ && !how.pattern && how.date != NSDateFormatterNoStyle)
            text = writeNearDay(how, moment);
        if (!text)
            text = dateformats::write(how, moment);
        return text ? stringFrom(*text) : date->description();
    }
    static Ref<NSDate> dateFromString(NSDateFormatter& self, NSString* string)
    {
        std::optional<double> start;
        if (self.defaultDate_)
            start = self.defaultDate_->timeIntervalSinceReferenceDate();
        const auto moment = dateformats::read(recipe(self), utf16Of(string), self.lenient_, start);
        return moment ? NSDate::cls().dateWithTimeIntervalSinceReferenceDate(*moment) : nullptr;
    }
    static Ref<NSString> stringFor(NSDateFormatter& self, NSObject* object)
    {
        return maybe(object)->isKindOfClass(NSDate::cls())
            ? self.stringFromDate(static_cast<NSDate*>(object))
            : nullptr;
    }
    static bool getObject(
        NSDateFormatter& self, Ref<NSObject>* object, NSString* string, Ref<NSString>* error)
    {
        return reportReading(self.dateFromString(string), object, error);
    }
    static Ref<NSString> localizedString(
        Class&, NSDate* date, NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle)
    {
        const auto formatter = make<NSDateFormatter>();
        formatter->setDateStyle(dateStyle);
        formatter->setTimeStyle(timeStyle);
        return formatter->stringFromDate(date);
    }
    static Ref<NSString> fromTemplate(Class&, NSString* letters, NSUInteger, NSLocale* locale)
    {
        return letters ? stringFrom(dateformats::patternFor(localeName(locale), utf16Of(letters)))
                       : nullptr;
    }

    template <Symbols Kind> static Ref<NSArray> names(NSDateFormatter& self)
    {
        return arrayOf(dateformats::symbols(recipe(self), Kind));
    }
    template <NSUInteger Index> static Ref<NSString> half(NSDateFormatter& self)
    {
        const auto halves = dateformats::symbols(recipe(self), Symbols::halves);
        return Index < halves.size() ? stringFrom(halves[Index]) : Index ? "PM"_ns : "AM"_ns;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "localizedStringFromDate:dateStyle:timeStyle:", imp<localizedString> },
            { "dateFormatFromTemplate:options:locale:", imp<fromTemplate> },
        });
        t.methods({
            { "stringFromDate:", imp<stringFromDate> },
            { "dateFromString:", imp<dateFromString> },
            { "stringForObjectValue:", imp<stringFor> },
            { "getObjectValue:forString:errorDescription:", imp<getObject> },
            { "monthSymbols", imp<names<Symbols::months>> },
            { "shortMonthSymbols", imp<names<Symbols::shortMonths>> },
            { "standaloneMonthSymbols", imp<names<Symbols::standaloneMonths>> },
            { "weekdaySymbols", imp<names<Symbols::weekdays>> },
            { "shortWeekdaySymbols", imp<names<Symbols::shortWeekdays>> },
            { "AMSymbol", imp<half<0>> },
            { "PMSymbol", imp<half<1>> },
        });
    }
};
BRINDLE_RECORD(NSDateFormatter, Writing)

}
