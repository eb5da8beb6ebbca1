// SPDX-License-Identifier: Apache-2.0
#include "NSRegularExpression.h"

#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "NSError.h"
#include "NSMutableArray.h"
#include "NSMutableString.h"
#include "RegularExpressionPrivate.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::TextBuilder;
using strings::View;
using unicode::Matcher;

namespace {

    std::uint32_t flagsOf(NSRegularExpressionOptions options)
    {
        constexpr std::pair<NSRegularExpressionOptions, std::uint32_t> kFlags[] = {
            { NSRegularExpressionCaseInsensitive, unicode::kPatternIgnoresCase },
            { NSRegularExpressionAllowCommentsAndWhitespace, unicode::kPatternComments },
            { NSRegularExpressionIgnoreMetacharacters, unicode::kPatternLiteral },
            { NSRegularExpressionDotMatchesLineSeparators, unicode::kPatternDotMatchesAll },
            { NSRegularExpressionAnchorsMatchLines, unicode::kPatternAnchorsMatchLines },
            { NSRegularExpressionUseUnixLineSeparators, unicode::kPatternUnixLines },
            { NSRegularExpressionUseUnicodeWordBoundaries, unicode::kPatternUnicodeWords },
        };
        std::uint32_t flags = 0;
        for (const auto& [option, flag] : kFlags)
            flags |= options & option ? flag : 0;
        return flags;
    }

    /// Answers text in which each of some characters has a backslash before it.
    Ref<NSString> escaped(View text, std::u16string_view special)
    {
        TextBuilder out;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (special.find(text[i]) != std::u16string_view::npos)
                out.add(u'\\');
            out.add(text[i]);
        }
        return out.string();
    }

    NSRange rangeOf(const Matcher& matcher, std::size_t group)
    {
        const std::size_t begin = matcher.begin(group);
        return begin == Matcher::kNoPlace ? strings::notFound()
                                          : NSRange { begin, matcher.end(group) - begin };
    }

    Ref<NSTextCheckingResult> resultOf(const Matcher& matcher, NSRegularExpression& expression)
    {
        std::vector<NSRange> ranges;
        for (std::size_t group = 0; group <= expression.numberOfCaptureGroups(); ++group)
            ranges.push_back(rangeOf(matcher, group));
        return NSTextCheckingResult::cls()
            .regularExpressionCheckingResultWithRanges_count_regularExpression(
                ranges.data(), ranges.size(), &expression);
    }

    NSMatchingFlags flagsOf(const Matcher& matcher)
    {
        return (matcher.hitEnd() ? NSMatchingHitEnd : NSMatchingFlags { 0 })
            | (matcher.requiresEnd() ? NSMatchingRequiredEnd : NSMatchingFlags { 0 })
            | (matcher.hasFailed() ? NSMatchingInternalError : NSMatchingFlags { 0 });
    }

}

namespace {

    Ref<NSRegularExpression> expressionOf(View pattern, NSStringCompareOptions options)
    {
        return NSRegularExpression::cls().regularExpressionWithPattern_options_error(
            strings::plain(pattern).get(),
            options & NSCaseInsensitiveSearch ? NSRegularExpressionCaseInsensitive
                                              : NSRegularExpressionOptions { 0 },
            nullptr);
    }
    NSMatchingOptions matchingOf(NSStringCompareOptions options)
    {
        return options & NSAnchoredSearch ? NSMatchingAnchored : NSMatchingOptions { 0 };
    }

}

NSRange patterns::find(View text, View pattern, NSStringCompareOptions options, NSRange range)
{
    const Ref<NSRegularExpression> expression = expressionOf(pattern, options);
    return expression ? expression->rangeOfFirstMatchInString_options_range(
               strings::plain(text).get(), matchingOf(options), range)
                      : strings::notFound();
}

Ref<NSString> patterns::replace(View text, View pattern, View replacement,
    NSStringCompareOptions options, NSRange range, NSUInteger& count)
{
    const Ref<NSMutableString> out = cast<NSMutableString>(strings::plain(text)->mutableCopy());
    if (const Ref<NSRegularExpression> expression = expressionOf(pattern, options))
        count = expression->replaceMatchesInString_options_range_withTemplate(
            out.get(), matchingOf(options), range, strings::plain(replacement).get());
    return cast<NSString>(out->copy());
}

template <> struct NSRegularExpression::Methods<struct Expression> {

    static Ref<NSRegularExpression> make(
        Class& self, NSString* pattern, NSRegularExpressionOptions options, Ref<NSError>* error)
    {
        return cast<NSRegularExpression>(NSObject::Meta { &self }.alloc())
            ->initWithPattern_options_error(pattern, options, error);
    }
    static Ref<NSRegularExpression> init(NSRegularExpression& self, NSString* pattern,
        NSRegularExpressionOptions options, Ref<NSError>* error)
    {
        strings::checkArgument(self, "initWithPattern:options:error:", pattern);
        if (!super<NSRegularExpression, "init", Ref<NSObject>>(self))
            return nullptr;
        std::string reason;
        self.compiled_ = unicode::Pattern::read(utf16Of(pattern), flagsOf(options), reason);
        if (!self.compiled_) {
            const Ref<NSString> text
                = stringFrom("The regular expression cannot be read: " + reason + ".");
            reportError(error, NSFormattingError,
                { { NSLocalizedDescriptionKey, text.get() },
                    { NSDebugDescriptionErrorKey, text.get() }, { "NSInvalidValue"_ns, pattern } });
            return nullptr;
        }
        self.pattern_ = cast<NSString>(collections::copyOf(pattern));
        self.options_ = options;
        return &self;
    }
    static Ref<NSString> pattern(NSRegularExpression& self) { return self.pattern_; }
    static NSRegularExpressionOptions options(NSRegularExpression& self) { return self.options_; }
    static NSUInteger groups(NSRegularExpression& self)
    {
        return self.compiled_ ? self.compiled_->groups() : 0;
    }
    static Ref<NSString> escapedPattern(Class& self, NSString* string)
    {
        strings::checkArgument(self, "escapedPatternForString:", string);
        return escaped(Contents(string), u"\\*?+[](){}^$|./-&#");
    }
    static Ref<NSString> escapedTemplate(Class& self, NSString* string)
    {
        strings::checkArgument(self, "escapedTemplateForString:", string);
        return escaped(Contents(string), u"\\$");
    }

    // ---- searching

    /// Calls `found` with each match until it answers false; answers what the search ended with.
    template <class Found>
    static NSMatchingFlags search(NSRegularExpression& self, const std::u16string& text,
        NSMatchingOptions options, NSRange range, Found found)
    {
        if (!self.compiled_)
            return 0;
        Matcher matcher(*self.compiled_, text,
            { range.location, NSMaxRange(range), (options & NSMatchingWithTransparentBounds) != 0,
                !(options & NSMatchingWithoutAnchoringBounds) });
        if (options & NSMatchingAnchored) {
            if (matcher.atStart())
                found(matcher);
        } else {
            while (matcher.next() && found(matcher)) { }
        }
        return flagsOf(matcher);
    }
    static std::u16string textOf(
        NSRegularExpression& self, const char* selector, NSString* string, NSRange range)
    {
        strings::checkArgument(self, selector, string);
        std::u16string text = utf16Of(string);
        strings::checkRange(self, selector, range, text.size());
        return text;
    }

    static void enumerate(NSRegularExpression& self, NSString* string, NSMatchingOptions options,
        NSRange range, Closure<void(NSTextCheckingResult*, NSMatchingFlags, bool*)>* visitor)
    {
        const Visitor visit(visitor);
        bool stop = false;
        const std::u16string text
            = textOf(self, "enumerateMatchesInString:options:range:usingBlock:", string, range);
        const NSMatchingFlags end = search(self, text, options, range, [&](const Matcher& matcher) {
            const Ref<NSTextCheckingResult> result = resultOf(matcher, self);
            visit(result.get(), flagsOf(matcher), &stop);
            return !stop;
        });
        const bool reports = options & NSMatchingReportCompletion || end & NSMatchingInternalError;
        if (!stop && reports)
            visit(nullptr, end | NSMatchingCompleted, &stop);
    }
    static Ref<NSArray> matches(
        NSRegularExpression& self, NSString* string, NSMatchingOptions options, NSRange range)
    {
        const Ref<NSMutableArray> out = NSMutableArray::cls().array();
        const std::u16string text = textOf(self, "matchesInString:options:range:", string, range);
        search(self, text, options, range, [&](const Matcher& matcher) {
            out->addObject(resultOf(matcher, self).get());
            return true;
        });
        return cast<NSArray>(out->copy());
    }
    static NSUInteger count(
        NSRegularExpression& self, NSString* string, NSMatchingOptions options, NSRange range)
    {
        NSUInteger found = 0;
        const std::u16string text
            = textOf(self, "numberOfMatchesInString:options:range:", string, range);
        search(self, text, options, range, [&](const Matcher&) { return ++found > 0; });
        return found;
    }
    static Ref<NSTextCheckingResult> first(
        NSRegularExpression& self, NSString* string, NSMatchingOptions options, NSRange range)
    {
        Ref<NSTextCheckingResult> result;
        const std::u16string text
            = textOf(self, "firstMatchInString:options:range:", string, range);
        search(self, text, options, range, [&](const Matcher& matcher) {
            result = resultOf(matcher, self);
            return false;
        });
        return result;
    }
    static NSRange firstRange(
        NSRegularExpression& self, NSString* string, NSMatchingOptions options, NSRange range)
    {
        const auto result = self.firstMatchInString_options_range(string, options, range);
        return result ? result->range() : strings::notFound();
    }

    // ---- replacing

    static Ref<NSString> replaced(NSRegularExpression& self, const std::u16string& text,
        NSMatchingOptions options, NSRange range, View replacement, NSUInteger& found)
    {
        const View whole { std::u16string_view(text) };
        const std::size_t groups = self.numberOfCaptureGroups();
        TextBuilder out;
        std::size_t done = 0;
        search(self, text, options, range, [&](const Matcher& matcher) {
            const NSRange match = rangeOf(matcher, 0);
            out.add(whole.part(done, match.location - done));
            patterns::expand(replacement, groups, out, [&](std::size_t group) {
                const NSRange place = rangeOf(matcher, group);
                return place.length > 0 ? whole.part(place) : View();
            });
            done = NSMaxRange(match);
            return ++found > 0;
        });
        out.add(whole.part(done, text.size() - done));
        return out.string();
    }
    static Ref<NSString> replacing(NSRegularExpression& self, NSString* string,
        NSMatchingOptions options, NSRange range, NSString* replacement)
    {
        constexpr const char* kSelector
            = "stringByReplacingMatchesInString:options:range:withTemplate:";
        strings::checkArgument(self, kSelector, replacement);
        NSUInteger found = 0;
        return replaced(self, textOf(self, kSelector, string, range), options, range,
            Contents(replacement), found);
    }
    static NSUInteger replaceIn(NSRegularExpression& self, NSMutableString* string,
        NSMatchingOptions options, NSRange range, NSString* replacement)
    {
        constexpr const char* kSelector = "replaceMatchesInString:options:range:withTemplate:";
        strings::checkArgument(self, kSelector, replacement);
        NSUInteger found = 0;
        const std::u16string text = textOf(self, kSelector, string, range);
        const Ref<NSString> out
            = replaced(self, text, options, range, Contents(replacement), found);
        if (found > 0)
            string->setString(out.get());
        return found;
    }
    static Ref<NSString> replacementFor(NSRegularExpression& self, NSTextCheckingResult* result,
        NSString* string, NSInteger offset, NSString* replacement)
    {
        constexpr const char* kSelector = "replacementStringForResult:inString:offset:template:";
        strings::checkArgument(self, kSelector, result);
        strings::checkArgument(self, kSelector, string);
        strings::checkArgument(self, kSelector, replacement);
        if (result->numberOfRanges() == 0)
            return strings::plain(Contents(replacement).view());
        const Ref<NSTextCheckingResult> moved = result->resultByAdjustingRangesWithOffset(offset);
        const Contents text(string);
        TextBuilder out;
        patterns::expand(
            Contents(replacement), moved->numberOfRanges() - 1, out, [&](std::size_t group) {
                const NSRange place = moved->rangeAtIndex(group);
                if (place.length == 0)
                    return View();
                strings::checkRange(self, kSelector, place, text->size());
                return text->part(place);
            });
        return out.string();
    }

    // ---- a value

    static bool isEqual(NSRegularExpression& self, NSObject* other)
    {
        if (other == &self)
            return true;
        if (!other || !other->isKindOfClass(NSRegularExpression::cls()))
            return false;
        const auto& expression = static_cast<const NSRegularExpression&>(*other);
        return expression.options() == self.options_
            && maybe(self.pattern_)->isEqual(expression.pattern().get());
    }
    static std::uint64_t hash(NSRegularExpression& self) { return maybe(self.pattern_)->hash(); }
    static Ref<NSObject> copyWithZone(NSRegularExpression& self, void*) { return &self; }

    static void encodeWithCoder(NSRegularExpression& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.pattern_.get(), "NSPattern"_ns);
        coder->encodeInteger_forKey(static_cast<NSInteger>(self.options_), "NSOptions"_ns);
    }
    static Ref<NSObject> initWithCoder(NSRegularExpression& self, NSCoder* coder)
    {
        const Ref<NSString> pattern = decode<NSString>(coder, "NSPattern"_ns);
        const auto options
            = static_cast<NSRegularExpressionOptions>(coder->decodeIntegerForKey("NSOptions"_ns));
        return pattern ? self.initWithPattern_options_error(pattern.get(), options, nullptr)
                       : nullptr;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "regularExpressionWithPattern:options:error:", imp<make> },
            { "escapedPatternForString:", imp<escapedPattern> },
            { "escapedTemplateForString:", imp<escapedTemplate> },
        });
        t.methods({
            { "initWithPattern:options:error:", imp<init> },
            { "pattern", imp<pattern> },
            { "options", imp<options> },
            { "numberOfCaptureGroups", imp<groups> },
            { "enumerateMatchesInString:options:range:usingBlock:", imp<enumerate> },
            { "matchesInString:options:range:", imp<matches> },
            { "numberOfMatchesInString:options:range:", imp<count> },
            { "firstMatchInString:options:range:", imp<first> },
            { "rangeOfFirstMatchInString:options:range:", imp<firstRange> },
            { "stringByReplacingMatchesInString:options:range:withTemplate:", imp<replacing> },
            { "replaceMatchesInString:options:range:withTemplate:", imp<replaceIn> },
            { "replacementStringForResult:inString:offset:template:", imp<replacementFor> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSRegularExpression, Expression)

}
