// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSDate.h"
#include "NSFormatter.h"

namespace brindle {

class NSArray;
class NSCalendar;
class NSLocale;
class NSTimeZone;

/// How much of a date, or of a time, is written: "1/31/24", "Jan 31, 2024", "January 31, 2024", "Wednesday, January 31, 2024".
enum NSDateFormatterStyle : NSUInteger {
    NSDateFormatterNoStyle = 0,
    NSDateFormatterShortStyle = 1,
    NSDateFormatterMediumStyle = 2,
    NSDateFormatterLongStyle = 3,
    NSDateFormatterFullStyle = 4,
};

/// Writes dates as people of a locale do, and reads them.
///
/// Either by styles or by a pattern of letters ("yyyy-MM-dd HH:mm"), whichever was set last. What is not set
/// follows the user when the formatter is used: `NSLocale`'s current one, `NSTimeZone`'s default one, the locale's calendar.
/// - Nil: no date gives nil, a date that is no number gives nil; dates beyond some six million years count as that far. A
///   pattern longer than 4,096 units is not used. Without the Unicode library a date is written by its description.
/// Thread: any, as long as nobody changes it meanwhile. Cost: what the library needs for a language is kept and shared.
class NSDateFormatter : public NSFormatter {
    BRINDLE_OBJECT(NSDateFormatter, NSFormatter)

public:
    struct Meta : NSFormatter::Meta {
        Ref<NSString> localizedStringFromDate_dateStyle_timeStyle(
            NSDate* date, NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle) const
        {
            return send<"localizedStringFromDate:dateStyle:timeStyle:", Ref<NSString>>(
                date, dateStyle, timeStyle);
        }
        /// Answers a locale's own pattern for the letters of a template: "MMMd" gives "d. MMM" in German.
        /// - options: 0.
        Ref<NSString> dateFormatFromTemplate_options_locale(
            NSString* letters, NSUInteger options, NSLocale* locale) const
        {
            return send<"dateFormatFromTemplate:options:locale:", Ref<NSString>>(
                letters, options, locale);
        }
    };

    NSDateFormatterStyle dateStyle() const { return send<"dateStyle", NSDateFormatterStyle>(); }
    void setDateStyle(NSDateFormatterStyle style) { send<"setDateStyle:">(style); }
    NSDateFormatterStyle timeStyle() const { return send<"timeStyle", NSDateFormatterStyle>(); }
    void setTimeStyle(NSDateFormatterStyle style) { send<"setTimeStyle:">(style); }
    /// Whether a date style gives way to "Today", "Yesterday", "Tomorrow" and what else a language has for near days. They
    /// begin with a capital and change at midnight in the formatter's time zone.
    bool doesRelativeDateFormatting() const { return send<"doesRelativeDateFormatting", bool>(); }
    void setDoesRelativeDateFormatting(bool relative)
    {
        send<"setDoesRelativeDateFormatting:">(relative);
    }
    /// Answers the pattern, that of the styles when none was set.
    Ref<NSString> dateFormat() const { return send<"dateFormat", Ref<NSString>>(); }
    void setDateFormat(NSString* pattern) { send<"setDateFormat:">(pattern); }
    void setLocalizedDateFormatFromTemplate(NSString* letters)
    {
        send<"setLocalizedDateFormatFromTemplate:">(letters);
    }

    /// Answers the locale that is used; set nil to follow the user.
    Ref<NSLocale> locale() const { return send<"locale", Ref<NSLocale>>(); }
    void setLocale(NSLocale* locale) { send<"setLocale:">(locale); }
    Ref<NSTimeZone> timeZone() const { return send<"timeZone", Ref<NSTimeZone>>(); }
    void setTimeZone(NSTimeZone* zone) { send<"setTimeZone:">(zone); }
    Ref<NSCalendar> calendar() const { return send<"calendar", Ref<NSCalendar>>(); }
    void setCalendar(NSCalendar* calendar) { send<"setCalendar:">(calendar); }
    /// Whether texts that are not quite right are read: "January 32". No by default.
    bool isLenient() const { return send<"isLenient", bool>(); }
    void setLenient(bool lenient) { send<"setLenient:">(lenient); }
    /// Answers what the parts that a text does not name are taken from; nil for 2000-01-01 00:00 in the time zone.
    Ref<NSDate> defaultDate() const { return send<"defaultDate", Ref<NSDate>>(); }
    void setDefaultDate(NSDate* date) { send<"setDefaultDate:">(date); }

    Ref<NSString> stringFromDate(NSDate* date) const
    {
        return send<"stringFromDate:", Ref<NSString>>(date);
    }
    /// Answers the date that the whole text stands for; nil when it is none. Relative words are not read.
    Ref<NSDate> dateFromString(NSString* string) const
    {
        return send<"dateFromString:", Ref<NSDate>>(string);
    }

    Ref<NSArray> monthSymbols() const { return send<"monthSymbols", Ref<NSArray>>(); }
    Ref<NSArray> shortMonthSymbols() const { return send<"shortMonthSymbols", Ref<NSArray>>(); }
    Ref<NSArray> standaloneMonthSymbols() const
    {
        return send<"standaloneMonthSymbols", Ref<NSArray>>();
    }
    /// Answers the names of the days, Sunday first.
    Ref<NSArray> weekdaySymbols() const { return send<"weekdaySymbols", Ref<NSArray>>(); }
    Ref<NSArray> shortWeekdaySymbols() const { return send<"shortWeekdaySymbols", Ref<NSArray>>(); }
    Ref<NSString> AMSymbol() const { return send<"AMSymbol", Ref<NSString>>(); }
    Ref<NSString> PMSymbol() const { return send<"PMSymbol", Ref<NSString>>(); }

private:
    NSDateFormatterStyle dateStyle_ = NSDateFormatterNoStyle;
    NSDateFormatterStyle timeStyle_ = NSDateFormatterNoStyle;
    bool relative_ = false;
    bool lenient_ = false;
    Ref<NSString> pattern_; // nil: by styles
    Ref<NSLocale> locale_;
    Ref<NSTimeZone> timeZone_;
    Ref<NSCalendar> calendar_;
    Ref<NSDate> defaultDate_;
};

}
