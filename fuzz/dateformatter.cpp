// SPDX-License-Identifier: Apache-2.0
// Dates written and read by any locale, pattern, style, calendar and time zone.

#include <cstdint>
#include <string_view>

#include "foundation/NSCalendar.h"
#include "foundation/NSDateFormatter.h"
#include "foundation/NSLocale.h"
#include "foundation/NSTimeZone.h"

using namespace brindle;

namespace {

/// Takes an input apart from its front; what is not there reads as zeros.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size)
    {
    }
    unsigned byte()
    {
        const unsigned value = rest_.empty() ? 0 : static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return value;
    }
    double number()
    {
        double value = 0;
        const std::size_t count = rest_.size() < sizeof value ? rest_.size() : sizeof value;
        rest_.copy(reinterpret_cast<char*>(&value), count);
        rest_.remove_prefix(count);
        return value;
    }
    /// Answers the text up to a line end, nil when it is not UTF-8.
    Ref<NSString> line()
    {
        const std::size_t end = rest_.find('\n');
        const Ref<NSString> text = stringFrom(rest_.substr(0, end));
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        return text;
    }

private:
    std::string_view rest_;
};

void computeWith(NSDate* date, unsigned unit, NSInteger value)
{
    const auto calendar = NSCalendar::cls().currentCalendar();
    const NSCalendarUnit bit = NSUInteger { 1 } << (unit % 22);
    const auto other = calendar->dateByAddingUnit_value_toDate_options(bit, value, date, unit & 1);
    calendar->components_fromDate_toDate_options(0xfffe, date, other.get(), 0);
    calendar->rangeOfUnit_startDate_interval_forDate(bit, nullptr, nullptr, other.get());
    calendar->dateFromComponents(calendar->components_fromDate(0x1fffff, other.get()).get());
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned styles = input.byte();
    const auto date = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(input.number());
    const auto formatter = make<NSDateFormatter>();
    formatter->setLocale(NSLocale::cls().localeWithLocaleIdentifier(input.line().get()).get());
    formatter->setTimeZone(NSTimeZone::cls().timeZoneWithName(input.line().get()).get());
    formatter->setDateStyle(static_cast<NSDateFormatterStyle>(styles & 7));
    formatter->setTimeStyle(static_cast<NSDateFormatterStyle>(styles >> 3 & 7));
    formatter->setDoesRelativeDateFormatting(styles & 0x40);
    formatter->setLenient(styles & 0x80);
    const Ref<NSString> pattern = input.line();
    if (pattern && pattern->length())
        formatter->setDateFormat(pattern.get());
    formatter->dateFromString(formatter->stringFromDate(date.get()).get());
    const auto read = formatter->dateFromString(input.line().get());
    computeWith(
        read ? read.get() : date.get(), styles, static_cast<NSInteger>(styles) * 1000003 - 100);
    return 0;
}
