// SPDX-License-Identifier: Apache-2.0
#include "Decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace brindle::decimals {

namespace {

    __extension__ typedef unsigned __int128 Wide;

    constexpr int kDigits = 38;
    constexpr int kLowest = -128; // power of ten
    constexpr int kHighest = 127;

    Wide wholeOf(const Decimal& number) { return Wide { number.high } << 64 | number.low; }

    /// A number on its way to a `Decimal`: any count of digits, the most significant first.
    struct Row {
        std::string digits;
        int exponent = 0;
        bool isNegative = false;

        void trim() { digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size())); }
    };

    Row rowOf(const Decimal& number)
    {
        Row row { {}, number.exponent, number.isNegative };
        for (Wide rest = wholeOf(number); rest != 0; rest /= 10)
            row.digits.push_back(static_cast<char>('0' + static_cast<int>(rest % 10)));
        std::ranges::reverse(row.digits);
        return row;
    }

    Wide valueOf(std::string_view digits)
    {
        Wide value = 0;
        for (const char digit : digits)
            value = value * 10 + static_cast<unsigned>(digit - '0');
        return value;
    }

    /// Answers whether the digits that stay become one more at their last place.
    bool roundsAway(std::string_view kept, std::string_view cut, bool isNegative, Rounding rounding)
    {
        const bool something = cut.find_first_not_of('0') != std::string_view::npos;
        switch (rounding) {
        case Rounding::down:
            return something && isNegative;
        case Rounding::up:
            return something && !isNegative;
        case Rounding::plain:
            return !cut.empty() && cut[0] >= '5';
        case Rounding::bankers:
            break;
        }
        if (cut.empty() || cut[0] < '5')
            return false;
        const bool half = cut[0] == '5' && cut.find_first_not_of('0', 1) == std::string_view::npos;
        const bool odd = !kept.empty() && (kept.back() - '0') % 2 != 0;
        return !half || odd;
    }

    void addOne(std::string& digits)
    {
        for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
            if (*digit != '9') {
                ++*digit;
                return;
            }
            *digit = '0';
        }
        digits.insert(digits.begin(), '1');
    }

    /// Cuts off the last digits and rounds; true when something other than zeros went.
    bool cut(Row& row, std::size_t count, Rounding rounding)
    {
        if (count > row.digits.size())
            row.digits.insert(0, count - row.digits.size(), '0');
        const std::size_t stays = row.digits.size() - count;
        const std::string gone = row.digits.substr(stays);
        row.digits.resize(stays);
        row.exponent += static_cast<int>(count);
        if (roundsAway(row.digits, gone, row.isNegative, rounding))
            addOne(row.digits);
        return gone.find_first_not_of('0') != std::string::npos;
    }

    /// Answers how many digits a row has too many for a fitting.
    std::size_t excess(const Row& row, int scale)
    {
        const int lowest = scale == kNoScale ? kLowest : std::max(kLowest, -scale);
        const int places = std::max(lowest - row.exponent, 0);
        const std::size_t digits = row.digits.size() > kDigits ? row.digits.size() - kDigits : 0;
        return std::max(digits, static_cast<std::size_t>(places));
    }

    /// Takes zeros behind the point away, and writes those of a power that is too large.
    /// - Returns: false when there is no room for them.
    bool settlePower(Row& row)
    {
        while (row.exponent < 0 && !row.digits.empty() && row.digits.back() == '0') {
            row.digits.pop_back();
            ++row.exponent;
        }
        if (row.exponent <= kHighest || row.digits.empty())
            return true;
        const auto zeros = static_cast<std::size_t>(row.exponent - kHighest);
        if (row.digits.size() + zeros > kDigits)
            return false;
        row.digits.append(zeros, '0');
        row.exponent = kHighest;
        return true;
    }

    /// Answers the digits as a number, rounded once.
    Result fit(Row row, Fitting fitting)
    {
        row.trim();
        const bool wasZero = row.digits.empty();
        const std::size_t count = wasZero ? 0 : excess(row, fitting.scale);
        const bool lost = count != 0 && cut(row, count, fitting.rounding);
        row.trim();
        if (row.digits.size() > kDigits) // 99…9 became 100…0
            cut(row, 1, fitting.rounding);
        if (!settlePower(row))
            return { Decimal::notANumber(), Loss::overflow };
        Decimal value;
        const Wide whole = valueOf(row.digits);
        value.high = static_cast<std::uint64_t>(whole >> 64);
        value.low = static_cast<std::uint64_t>(whole);
        value.isNegative = row.isNegative && whole != 0;
        value.exponent = static_cast<std::int16_t>(whole == 0 ? 0 : row.exponent);
        if (whole == 0 && !wasZero && fitting.scale == kNoScale)
            return { value, Loss::underflow };
        return { value, lost ? Loss::precision : Loss::none };
    }

    /// Brings two rows to the same power and the same length.
    void align(Row& a, Row& b)
    {
        Row& coarse = a.exponent > b.exponent ? a : b;
        const int exponent = std::min(a.exponent, b.exponent);
        coarse.digits.append(static_cast<std::size_t>(coarse.exponent - exponent), '0');
        a.exponent = b.exponent = exponent;
        const std::size_t length = std::max(a.digits.size(), b.digits.size());
        for (Row* row : { &a, &b })
            row->digits.insert(0, length - row->digits.size(), '0');
    }

    /// Adds or takes away rows of the same length; with `sign` -1 the first is the larger one.
    std::string combined(const std::string& a, const std::string& b, int sign)
    {
        std::string result(a.size() + 1, '0');
        int carry = 0;
        for (std::size_t i = a.size(); i-- > 0;) {
            const int sum = a[i] - '0' + sign * (b[i] - '0') + carry;
            carry = sum < 0 ? -1 : sum / 10;
            result[i + 1] = static_cast<char>('0' + (sum + 10) % 10);
        }
        result[0] = static_cast<char>('0' + carry);
        return result;
    }

    /// Divides digit by digit. The rest times ten does not fit into 128 bits, hence the word above them.
    struct Rest {
        Wide low = 0;
        unsigned high = 0;

        void append(int digit)
        {
            constexpr Wide kLowHalf = ~std::uint64_t { 0 };
            const Wide lower = (low & kLowHalf) * 10 + static_cast<unsigned>(digit);
            const Wide upper = (low >> 64) * 10 + (lower >> 64);
            low = upper << 64 | (lower & kLowHalf);
            high = static_cast<unsigned>(upper >> 64);
        }
        char quotient(Wide divisor)
        {
            int count = 0;
            for (; high != 0 || low >= divisor; ++count) {
                high -= low < divisor ? 1 : 0;
                low -= divisor;
            }
            return static_cast<char>('0' + count);
        }
    };

    std::string paddedDigits(std::uint64_t value, std::size_t length)
    {
        std::string digits = std::to_string(value);
        return std::string(length - digits.size(), '0') + digits;
    }

}

Decimal Decimal::notANumber()
{
    Decimal value;
    value.isNumber = false;
    return value;
}

Decimal Decimal::largest() { return read(std::string(kDigits, '9') + "e127"); }

Decimal Decimal::from(std::uint64_t whole, int exponent, bool isNegative)
{
    return fit({ std::to_string(whole), exponent, isNegative }, {}).value;
}

Decimal Decimal::read(std::string_view text, std::string_view point)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    Row row;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        row.isNegative = text[at++] == '-';
    bool behindPoint = false;
    bool any = false;
    for (; at < text.size(); ++at) {
        if (!behindPoint && !point.empty() && text.substr(at).starts_with(point)) {
            behindPoint = true;
            at += point.size() - 1;
            continue;
        }
        if (!isDigit(text[at]))
            break;
        any = true;
        row.exponent -= behindPoint ? 1 : 0;
        if (!row.digits.empty() || text[at] != '0')
            row.digits.push_back(text[at]);
    }
    if (!any)
        return notANumber();
    if (at + 1 < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        const std::size_t first = at + (text[at + 1] == '+' ? 2 : 1);
        int power = 0;
        const auto end = std::from_chars(text.data() + first, text.data() + text.size(), power);
        constexpr int kFarthest = 1 << 24; // beyond it no number is left
        if (end.ec == std::errc {})
            row.exponent += std::clamp(power, -kFarthest, kFarthest);
        else if (end.ec == std::errc::result_out_of_range)
            row.exponent += text[first] == '-' ? -kFarthest : kFarthest;
    }
    constexpr int kTooSmall = 2 * kLowest;
    const int places = static_cast<int>(std::min<std::size_t>(row.digits.size(), 1 << 24));
    if (row.exponent + places < kTooSmall)
        return {};
    return fit(std::move(row), {}).value;
}

std::string Decimal::text(std::string_view point) const
{
    if (!isNumber)
        return "NaN";
    if (isZero())
        return "0";
    Row row = rowOf(*this);
    std::string result;
    if (exponent >= 0)
        result = row.digits + std::string(static_cast<std::size_t>(exponent), '0');
    else {
        const auto places = static_cast<std::size_t>(-exponent);
        if (row.digits.size() <= places)
            row.digits.insert(0, places + 1 - row.digits.size(), '0');
        const std::size_t whole = row.digits.size() - places;
        std::string behind = row.digits.substr(whole);
        behind.erase(behind.find_last_not_of('0') + 1);
        result = row.digits.substr(0, whole);
        if (!behind.empty())
            result.append(point).append(behind);
    }
    return isNegative ? "-" + result : result;
}

double Decimal::toDouble() const
{
    if (!isNumber)
        return std::numeric_limits<double>::quiet_NaN();
    const std::string digits = text();
    double value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

Result add(const Decimal& a, const Decimal& b, Fitting fitting)
{
    if (!a.isNumber || !b.isNumber)
        return { Decimal::notANumber() };
    if (a.isZero() || b.isZero()) // a zero's power means nothing
        return round(a.isZero() ? b : a, fitting);
    Row left = rowOf(a);
    Row right = rowOf(b);
    align(left, right);
    if (left.isNegative == right.isNegative)
        return fit(
            { combined(left.digits, right.digits, 1), left.exponent, left.isNegative }, fitting);
    const bool leftIsLarger = left.digits >= right.digits;
    const Row& larger = leftIsLarger ? left : right;
    const Row& smaller = leftIsLarger ? right : left;
    return fit({ combined(larger.digits, smaller.digits, -1), larger.exponent, larger.isNegative },
        fitting);
}

Result subtract(const Decimal& a, const Decimal& b, Fitting fitting)
{
    Decimal turned = b;
    turned.isNegative = b.isNumber && !b.isZero() && !b.isNegative;
    return add(a, turned, fitting);
}

Result multiply(const Decimal& a, const Decimal& b, Fitting fitting)
{
    if (!a.isNumber || !b.isNumber)
        return { Decimal::notANumber() };
    constexpr std::uint64_t kBase = 10'000'000'000'000'000'000u; // 10^19, half of the digits
    constexpr std::size_t kHalf = 19;
    const std::array<Wide, 2> left { wholeOf(a) % kBase, wholeOf(a) / kBase };
    const std::array<Wide, 2> right { wholeOf(b) % kBase, wholeOf(b) / kBase };
    std::array<std::uint64_t, 4> parts {};
    for (std::size_t i = 0; i < left.size(); ++i) {
        Wide carry = 0;
        for (std::size_t j = 0; j < right.size(); ++j) {
            carry += left[i] * right[j] + parts[i + j];
            parts[i + j] = static_cast<std::uint64_t>(carry % kBase);
            carry /= kBase;
        }
        parts[i + right.size()] += static_cast<std::uint64_t>(carry);
    }
    Row row { {}, a.exponent + b.exponent, a.isNegative != b.isNegative };
    for (std::size_t i = parts.size(); i-- > 0;)
        row.digits += paddedDigits(parts[i], kHalf);
    return fit(std::move(row), fitting);
}

Result divide(const Decimal& a, const Decimal& b, Fitting fitting)
{
    if (!a.isNumber || !b.isNumber)
        return { Decimal::notANumber() };
    if (b.isZero())
        return { Decimal::notANumber(), Loss::divideByZero };
    Row row = rowOf(a);
    const Wide divisor = wholeOf(b);
    // The quotient gets a digit more than can be kept, and one for whatever is left.
    constexpr int kMore = 2 * kDigits + 1;
    Row result { {}, row.exponent - b.exponent - kMore, a.isNegative != b.isNegative };
    row.digits.append(kMore, '0');
    Rest rest;
    for (const char digit : row.digits) {
        rest.append(digit - '0');
        result.digits.push_back(rest.quotient(divisor));
    }
    if (rest.low != 0) {
        result.digits.push_back('1');
        --result.exponent;
    }
    return fit(std::move(result), fitting);
}

Result raise(const Decimal& base, std::uint64_t power, Fitting fitting)
{
    if (!base.isNumber)
        return { base };
    Result result { Decimal::from(1, 0, false) };
    Decimal square = base;
    const auto times = [&](Decimal& product, const Decimal& factor) {
        const Result next = multiply(product, factor, { fitting.rounding });
        product = next.value;
        result.loss = std::max(result.loss, next.loss);
    };
    for (std::uint64_t rest = power; rest != 0 && result.value.isNumber; rest >>= 1) {
        if (rest & 1)
            times(result.value, square);
        if (rest > 1)
            times(square, square);
    }
    const Result rounded = round(result.value, fitting);
    return { rounded.value, std::max(result.loss, rounded.loss) };
}

Result multiplyByPowerOf10(const Decimal& a, int power, Fitting fitting)
{
    if (!a.isNumber || a.isZero())
        return { a };
    constexpr int kFarthest = 1 << 10; // beyond it no number is left
    Row row = rowOf(a);
    row.exponent += std::clamp(power, -kFarthest, kFarthest);
    return fit(std::move(row), fitting);
}

Result round(const Decimal& a, Fitting fitting)
{
    return a.isNumber ? fit(rowOf(a), fitting) : Result { a };
}

int compare(const Decimal& a, const Decimal& b)
{
    if (!a.isNumber || !b.isNumber)
        return static_cast<int>(a.isNumber) - static_cast<int>(b.isNumber);
    const auto sign = [](const Decimal& number) {
        return number.isZero() ? 0 : number.isNegative ? -1 : 1;
    };
    if (sign(a) != sign(b) || sign(a) == 0)
        return sign(a) < sign(b) ? -1 : sign(a) > sign(b) ? 1 : 0;
    Row left = rowOf(a);
    Row right = rowOf(b);
    align(left, right);
    const int order = left.digits.compare(right.digits);
    return (order < 0 ? -1 : order > 0 ? 1 : 0) * sign(a);
}

}
