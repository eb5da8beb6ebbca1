// SPDX-License-Identifier: Apache-2.0
#include "DateFormatPrivate.h"

#include <cmath>

#include <unicode/udat.h>
#include <unicode/udatpg.h>
#include <unicode/ureldatefmt.h>

#include "CalendarPrivate.h"

namespace brindle::dateformats {

namespace {

    using unicode::isThere;
    using unicode::Pool;

    constexpr std::size_t kLongestPattern = 4096;
    constexpr std::size_t kLongestText = 1 << 16;

    UDateFormatStyle styleOf(NSDateFormatterStyle style)
    {
        switch (style) {
        case NSDateFormatterShortStyle:
            return UDAT_SHORT;
        case NSDateFormatterMediumStyle:
            return UDAT_MEDIUM;
        case NSDateFormatterLongStyle:
            return UDAT_LONG;
        case NSDateFormatterFullStyle:
            return UDAT_FULL;
        case NSDateFormatterNoStyle:
            break;
        }
        return UDAT_NONE;
    }

    std::string keyOf(const Recipe& recipe)
    {
        std::string key = recipe.locale + '\n';
        for (const char16_t unit : recipe.zone)
            key += static_cast<char>(unit); // zones have names of ASCII
        key += '\n';
        if (!recipe.pattern) {
            key += static_cast<char>('0' + recipe.date);
            key += static_cast<char>('0' + recipe.time);
            return key;
        }
        key += 'p';
        return key.append(reinterpret_cast<const char*>(recipe.pattern->data()),
            recipe.pattern->size() * sizeof(char16_t));
    }

    UDateFormat* openFormat(const Recipe& recipe)
    {
        const bool isTooLong = recipe.pattern && recipe.pattern->size() > kLongestPattern;
        if (!isThere() || isTooLong)
            return nullptr;
        static constexpr char16_t kNothing[] = u"";
        const auto* const pattern = recipe.pattern ? recipe.pattern->c_str() : kNothing;
        const auto length = recipe.pattern ? static_cast<std::int32_t>(recipe.pattern->size()) : 0;
        UErrorCode error = U_ZERO_ERROR;
        UDateFormat* const format
            = ICU(udat_open)(recipe.pattern ? UDAT_PATTERN : styleOf(recipe.time),
                recipe.pattern ? UDAT_PATTERN : styleOf(recipe.date), recipe.locale.c_str(),
                recipe.zone.c_str(), static_cast<std::int32_t>(recipe.zone.size()), pattern, length,
                &error);
        return U_SUCCESS(error) ? format : nullptr;
    }

    Pool<UDateFormat*>::Lease lend(const Recipe& recipe)
    {
        static Pool<UDateFormat*>& pool = *new Pool<UDateFormat*>([](UDateFormat* format) {
            ICU(udat_close)
            (format);
        });
        return pool.lease(keyOf(recipe), [&] { return openFormat(recipe); });
    }

    Pool<URelativeDateTimeFormatter*>::Lease lendWords(const std::string& locale)
    {
        using Words = URelativeDateTimeFormatter*;
        static Pool<Words>& pool = *new Pool<Words>([](Words words) {
            ICU(ureldatefmt_close)
            (words);
        });
        return pool.lease(locale, [&]() -> Words {
            UErrorCode error = U_ZERO_ERROR;
            const Words words = isThere()
                ? ICU(ureldatefmt_open)(locale.c_str(), nullptr, UDAT_STYLE_LONG,
                    UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE, &error)
                : nullptr;
            return U_SUCCESS(error) ? words : nullptr;
        });
    }

    /// Writes nothing for neither a date nor a time, which the library would take for a default.
    bool isEmpty(const Recipe& recipe)
    {
        return !recipe.pattern && recipe.date == NSDateFormatterNoStyle
            && recipe.time == NSDateFormatterNoStyle;
    }

    /// Puts a calendar where the parts come from that a text does not name.
    void place(UCalendar* calendar, std::optional<double> start, UErrorCode* error)
    {
        if (start)
            ICU(ucal_setMillis)(calendar, unicode::millisecondsFrom(*start), error);
        else
            ICU(ucal_setDateTime)(calendar, 2000, UCAL_JANUARY, 1, 0, 0, 0, error);
    }

    double localDay(UCalendar* calendar, double moment)
    {
        UErrorCode error = U_ZERO_ERROR;
        const double milliseconds = unicode::millisecondsFrom(moment);
        ICU(ucal_setMillis)(calendar, milliseconds, &error);
        const auto zone = ICU(ucal_get)(calendar, UCAL_ZONE_OFFSET, &error);
        const auto saving = ICU(ucal_get)(calendar, UCAL_DST_OFFSET, &error);
        return std::floor((milliseconds + zone + saving) / 86400000);
    }

}

std::optional<std::u16string> write(const Recipe& recipe, double moment)
{
    if (isEmpty(recipe))
        return std::u16string();
    const auto format = lend(recipe);
    if (!format)
        return std::nullopt;
    return unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
        return ICU(udat_format)(
            format.get(), unicode::millisecondsFrom(moment), out, room, nullptr, error);
    });
}

std::optional<double> read(
    const Recipe& recipe, std::u16string_view text, bool lenient, std::optional<double> start)
{
    if (isEmpty(recipe) || text.empty() || text.size() > kLongestText)
        return std::nullopt;
    const auto format = lend(recipe);
    const auto calendar = unicode::lendCalendar(recipe.locale, recipe.zone);
    if (!format || !calendar)
        return std::nullopt;
    UErrorCode error = U_ZERO_ERROR;
    place(calendar.get(), start, &error);
    ICU(udat_setLenient)(format.get(), lenient);
    ICU(ucal_setAttribute)(calendar.get(), UCAL_LENIENT, lenient);
    std::int32_t end = 0;
    ICU(udat_parseCalendar)
    (format.get(), calendar.get(), text.data(), static_cast<std::int32_t>(text.size()), &end,
        &error);
    const double moment = ICU(ucal_getMillis)(calendar.get(), &error);
    // The calendar goes back to whoever is next, as it was.
    ICU(ucal_setAttribute)(calendar.get(), UCAL_LENIENT, 1);
    if (U_FAILURE(error) || static_cast<std::size_t>(end) != text.size())
        return std::nullopt;
    return unicode::secondsFrom(moment);
}

std::u16string patternOf(const Recipe& recipe)
{
    if (recipe.pattern)
        return *recipe.pattern;
    if (isEmpty(recipe))
        return {};
    const auto format = lend(recipe);
    if (!format)
        return {};
    return unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
        return ICU(udat_toPattern)(format.get(), 0, out, room, error);
    });
}

std::u16string patternFor(const std::string& locale, std::u16string_view letters)
{
    if (!isThere() || letters.size() > kLongestPattern)
        return std::u16string(letters);
    UErrorCode error = U_ZERO_ERROR;
    UDateTimePatternGenerator* const generator = ICU(udatpg_open)(locale.c_str(), &error);
    if (U_FAILURE(error))
        return std::u16string(letters);
    auto pattern
        = unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* failure) {
              return ICU(udatpg_getBestPattern)(generator, letters.data(),
                  static_cast<std::int32_t>(letters.size()), out, room, failure);
          });
    ICU(udatpg_close)(generator);
    return pattern;
}

std::optional<std::u16string> wordForDay(const std::string& locale, int days)
{
    const auto words = lendWords(locale);
    if (!words)
        return std::nullopt;
    const auto phrase = [&](auto function) {
        return unicode::filled<std::u16string>(
            [&](UChar* out, std::int32_t room, UErrorCode* error) {
                return function(words.get(), days, UDAT_REL_UNIT_DAY, out, room, error);
            });
    };
    std::u16string word = phrase(ICU(ureldatefmt_format));
    if (word.empty() || word == phrase(ICU(ureldatefmt_formatNumeric)))
        return std::nullopt;
    return word;
}

double daysBetween(const Recipe& recipe, double from, double to)
{
    const auto calendar = unicode::lendCalendar(recipe.locale, recipe.zone);
    return calendar ? localDay(calendar.get(), to) - localDay(calendar.get(), from) : 0;
}

std::vector<std::u16string> symbols(const Recipe& recipe, Symbols kind)
{
    static constexpr UDateFormatSymbolType kTypes[] { UDAT_MONTHS, UDAT_SHORT_MONTHS,
        UDAT_STANDALONE_MONTHS, UDAT_WEEKDAYS, UDAT_SHORT_WEEKDAYS, UDAT_AM_PMS };
    std::vector<std::u16string> all;
    Recipe any = recipe;
    any.pattern.emplace(1, u'y');
    const auto format = lend(any);
    if (!format)
        return all;
    const UDateFormatSymbolType type = kTypes[static_cast<std::size_t>(kind)];
    const bool isWeekdays = kind == Symbols::weekdays || kind == Symbols::shortWeekdays;
    const std::int32_t count = ICU(udat_countSymbols)(format.get(), type);
    for (std::int32_t i = isWeekdays ? 1 : 0; i < count; ++i)
        all.push_back(
            unicode::filled<std::u16string>([&](UChar* out, std::int32_t room, UErrorCode* error) {
                return ICU(udat_getSymbols)(format.get(), type, i, out, room, error);
            }));
    return all;
}

}
