// SPDX-License-Identifier: Apache-2.0
#include "NSScanner.h"

#include <algorithm>
#include <limits>

#include "CollectionsPrivate.h"
#include "NSCharacterSet.h"
#include "NSStringPrivate.h"
#include "NumeralsPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::View;

namespace {

    std::size_t passOver(View text, const NSCharacterSet* set, std::size_t from, bool membership)
    {
        std::size_t units = 0;
        std::size_t at = from;
        while (
            at < text.size() && set->longCharacterIsMember(text.codePoint(at, units)) == membership)
            at += units;
        return at;
    }

    NSRange findFrom(View text, View wanted, NSStringCompareOptions options, std::size_t from)
    {
        return strings::find(text, wanted, options, { from, text.size() - from });
    }

}

template <> struct NSScanner::Methods<struct Scanning> {

    static Ref<NSScanner> scannerWithString(Class& self, NSString* string)
    {
        return cast<NSScanner>(NSObject::Meta { &self }.alloc())->initWithString(string);
    }
    static Ref<NSScanner> initWithString(NSScanner& self, NSString* string)
    {
        strings::checkArgument(self, "initWithString:", string);
        if (!super<NSScanner, "init", Ref<NSObject>>(self))
            return nullptr;
        self.string_ = cast<NSString>(collections::copyOf(string));
        self.charactersToBeSkipped_ = NSCharacterSet::cls().whitespaceAndNewlineCharacterSet();
        return &self;
    }

    static Ref<NSString> string(NSScanner& self) { return self.string_; }
    static NSUInteger location(NSScanner& self) { return self.scanLocation_; }
    static void setLocation(NSScanner& self, NSUInteger location)
    {
        if (location > maybe(self.string_)->length())
            raise("NSRangeException",
                "*** -[NSScanner setScanLocation:]: Range or index out of bounds");
        self.scanLocation_ = location;
    }

    static std::size_t start(NSScanner& self, View text)
    {
        const Ref<NSCharacterSet> skipped = self.charactersToBeSkipped_;
        return skipped ? passOver(text, skipped.get(), self.scanLocation_, true)
                       : self.scanLocation_;
    }
    static bool isAtEnd(NSScanner& self)
    {
        const Contents text(self.string_.get());
        return start(self, text) == text->size();
    }

    // ---- text

    /// Moves behind what was read and hands it out; nothing read is a failure.
    static bool take(
        NSScanner& self, View text, std::size_t begin, std::size_t end, Ref<NSString>* out)
    {
        if (begin >= end)
            return false;
        self.scanLocation_ = end;
        if (out)
            *out = strings::plain(text.part(begin, end - begin));
        return true;
    }
    static NSStringCompareOptions options(NSScanner& self)
    {
        return self.caseSensitive_ ? NSStringCompareOptions { 0 }
                                   : NSStringCompareOptions { NSCaseInsensitiveSearch };
    }

    static bool scanString(NSScanner& self, NSString* wanted, Ref<NSString>* out)
    {
        strings::checkArgument(self, "scanString:intoString:", wanted);
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        const NSRange found
            = findFrom(text, Contents(wanted), options(self) | NSAnchoredSearch, begin);
        return found.length > 0 && take(self, text, begin, NSMaxRange(found), out);
    }
    static bool scanUpToString(NSScanner& self, NSString* wanted, Ref<NSString>* out)
    {
        strings::checkArgument(self, "scanUpToString:intoString:", wanted);
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        const NSRange found = findFrom(text, Contents(wanted), options(self), begin);
        return take(self, text, begin, found.length > 0 ? found.location : text->size(), out);
    }
    static bool scanSet(NSScanner& self, NSCharacterSet* set, Ref<NSString>* out)
    {
        strings::checkArgument(self, "scanCharactersFromSet:intoString:", set);
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        return take(self, text, begin, passOver(text, set, begin, true), out);
    }
    static bool scanUpToSet(NSScanner& self, NSCharacterSet* set, Ref<NSString>* out)
    {
        strings::checkArgument(self, "scanUpToCharactersFromSet:intoString:", set);
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        return take(self, text, begin, passOver(text, set, begin, false), out);
    }

    // ---- numbers

    /// Reads a number by a function, narrows it and hands it out.
    template <auto Read, class Value, class T> static bool scanWhole(NSScanner& self, T* out)
    {
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        Value value = 0;
        const std::size_t end = Read(text, begin, value);
        if (end == begin)
            return false;
        self.scanLocation_ = end;
        using Limits = std::numeric_limits<T>;
        if (out)
            *out = static_cast<T>(
                std::clamp<Value>(value, Value { Limits::min() }, Value { Limits::max() }));
        return true;
    }
    template <auto Read, auto Value, class T> static bool scanFraction(NSScanner& self, T* out)
    {
        const Contents text(self.string_.get());
        const std::size_t begin = start(self, text);
        std::string number;
        const std::size_t end = Read(text, begin, number);
        if (end == begin)
            return false;
        self.scanLocation_ = end;
        if (out)
            *out = Value(number);
        return true;
    }

    static void table(Builder& t)
    {
        using namespace numerals;
        t.classMethods({ { "scannerWithString:", imp<scannerWithString> } });
        t.methods({
            { "initWithString:", imp<initWithString> },
            { "string", imp<string> },
            { "scanLocation", imp<location> },
            { "setScanLocation:", imp<setLocation> },
            { "isAtEnd", imp<isAtEnd> },
            { "scanString:intoString:", imp<scanString> },
            { "scanUpToString:intoString:", imp<scanUpToString> },
            { "scanCharactersFromSet:intoString:", imp<scanSet> },
            { "scanUpToCharactersFromSet:intoString:", imp<scanUpToSet> },
            { "scanInt:", imp<scanWhole<readInteger, std::int64_t, std::int32_t>> },
            { "scanInteger:", imp<scanWhole<readInteger, std::int64_t, NSInteger>> },
            { "scanLongLong:", imp<scanWhole<readInteger, std::int64_t, std::int64_t>> },
            { "scanUnsignedLongLong:", imp<scanWhole<readUnsigned, std::uint64_t, std::uint64_t>> },
            { "scanHexInt:", imp<scanWhole<readHexadecimal, std::uint64_t, std::uint32_t>> },
            { "scanHexLongLong:", imp<scanWhole<readHexadecimal, std::uint64_t, std::uint64_t>> },
            { "scanFloat:", imp<scanFraction<readDecimal, floatOf, float>> },
            { "scanDouble:", imp<scanFraction<readDecimal, doubleOf, double>> },
            { "scanHexFloat:", imp<scanFraction<readHexadecimalFraction, floatOf, float>> },
            { "scanHexDouble:", imp<scanFraction<readHexadecimalFraction, doubleOf, double>> },
        });
        t.properties({
            property<&NSScanner::charactersToBeSkipped_>(
                "charactersToBeSkipped", copied, nonatomic),
            property<&NSScanner::caseSensitive_>("caseSensitive", nonatomic),
            property<&NSScanner::locale_>("locale", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSScanner, Scanning)

}
