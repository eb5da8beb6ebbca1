// SPDX-License-Identifier: Apache-2.0
// Reads UTF-16 with a scanner, the first bytes saying which steps: no step moves back or beyond the end.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "foundation/NSCharacterSet.h"
#include "foundation/NSScanner.h"

using namespace brindle;

namespace {

bool step(NSScanner& scanner, unsigned kind, const Ref<NSString>& wanted)
{
    const auto letters = NSCharacterSet::cls().letterCharacterSet();
    Ref<NSString> text;
    std::int32_t number = 0;
    std::uint64_t large = 0;
    double fraction = 0;
    float single = 0;
    NSInteger whole = 0;
    std::uint32_t natural = 0;
    switch (kind % 12) {
    case 0:
        return scanner.scanUpToString_intoString(wanted.get(), &text);
    case 1:
        return scanner.scanString_intoString(wanted.get(), &text);
    case 2:
        return scanner.scanCharactersFromSet_intoString(letters.get(), &text);
    case 3:
        return scanner.scanUpToCharactersFromSet_intoString(letters.get(), &text);
    case 4:
        return scanner.scanInt(&number);
    case 5:
        return scanner.scanHexLongLong(&large);
    case 6:
        return scanner.scanDouble(&fraction);
    case 7:
        return scanner.scanHexDouble(&fraction);
    case 8:
        return scanner.scanUnsignedLongLong(&large);
    case 9:
        return scanner.scanInteger(&whole);
    case 10:
        return scanner.scanFloat(&single);
    default:
        return scanner.scanHexInt(&natural);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kSteps = 8;
    if (size < kSteps + 2)
        return 0;
    std::u16string units;
    for (std::size_t i = kSteps; i + 1 < size; i += 2)
        units += static_cast<char16_t>(data[i] | data[i + 1] << 8);
    const Ref<NSString> text = stringFrom(units);
    const Ref<NSString> wanted = stringFrom(std::u16string_view(units).substr(0, data[0] % 3 + 1));
    const Ref<NSScanner> scanner = NSScanner::cls().scannerWithString(text.get());
    scanner->setCaseSensitive(data[1] & 128);
    for (std::size_t i = 0; i < 64; ++i) {
        const NSUInteger before = scanner->scanLocation();
        const bool isFound = step(*scanner.get(), data[i % kSteps], wanted);
        const NSUInteger after = scanner->scanLocation();
        if (after > units.size() || (isFound ? after <= before : after != before))
            std::abort();
    }
    scanner->setScanLocation(units.size());
    if (!scanner->isAtEnd())
        std::abort();
    return 0;
}
