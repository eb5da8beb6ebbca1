// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NSDateFormatter.h"

/// How dates are written and read by the Unicode library. Moments are seconds since the reference date.

namespace brindle::dateformats {

/// All that decides how a date is written.
struct Recipe {
    std::string locale; // perhaps with a calendar: "de@calendar=buddhist"
    std::u16string zone;
    NSDateFormatterStyle date = NSDateFormatterNoStyle;
    NSDateFormatterStyle time = NSDateFormatterNoStyle;
    std::optional<std::u16string> pattern; // instead of the styles
};

std::optional<std::u16string> write(const Recipe& recipe, double moment);
/// - start: where the parts come from that the text does not name; nothing for 2000-01-01 00:00.
std::optional<double> read(
    const Recipe& recipe, std::u16string_view text, bool lenient, std::optional<double> start);
std::u16string patternOf(const Recipe& recipe);
/// Answers a locale's pattern for some letters.
std::u16string patternFor(const std::string& locale, std::u16string_view letters);

/// Answers a language's word for a day so many days from today, with a capital: "Yesterday" for -1; nothing where it counts
/// them.
std::optional<std::u16string> wordForDay(const std::string& locale, int days);
/// Answers how many midnights of the zone lie between two moments.
double daysBetween(const Recipe& recipe, double from, double to);

enum class Symbols { months, shortMonths, standaloneMonths, weekdays, shortWeekdays, halves };
std::vector<std::u16string> symbols(const Recipe& recipe, Symbols kind);

}
