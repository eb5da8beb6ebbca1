// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSMutableString.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/Strings.h"
#include "text/NSString+URLs.h"
#include "text/NSURL+ParameterDictionary.h"
#include "text/NSURL+Strings.h"

namespace brindle {

/// Keeps its text in its own way.
class RepeatedLetter : public NSString {
    BRINDLE_OBJECT(RepeatedLetter, NSString)
};
template <> struct RepeatedLetter::Methods<struct Letters> {
    static NSUInteger length(RepeatedLetter&) { return 5; }
    static unichar characterAt(RepeatedLetter&, NSUInteger) { return u'Q'; }
    static void table(Builder& t)
    {
        t.methods({ { "length", imp<length> }, { "characterAtIndex:", imp<characterAt> } });
    }
};
BRINDLE_RECORD(RepeatedLetter, Letters)

/// Has its own idea of what it contains.
class StubbornText : public RepeatedLetter {
    BRINDLE_OBJECT(StubbornText, RepeatedLetter)
};
template <> struct StubbornText::Methods<struct Opinion> {
    static bool contains(StubbornText&, NSString*) { return true; }
    static void table(Builder& t) { t.methods({ { "containsString:", imp<contains> } }); }
};
BRINDLE_RECORD(StubbornText, Opinion)

namespace {

    std::string value(NSString* text)
    {
        const Ref<NSURL> url = URLValue(text);
        return url ? utf8(url->absoluteString()) : "(nil)";
    }

    // ---- URLValue

    TEST(URLValue, PutsAProtocolInFront) { EXPECT_EQ(value("one.two/x"_ns), "http://one.two/x"); }
    TEST(URLValue, LeavesAProtocolInAnyCase)
    {
        EXPECT_EQ(value("HTTP://One.two"_ns), "HTTP://One.two");
        EXPECT_EQ(value("hTTps://One.two/X"_ns), "hTTps://One.two/X");
    }
    TEST(URLValue, OfTextWithASpaceIsNil)
    {
        EXPECT_EQ(value("a b"_ns), "(nil)");
        EXPECT_EQ(value(" "_ns), "(nil)");
        EXPECT_EQ(value("http://a b"_ns), "(nil)");
    }
    TEST(URLValue, ReadsOtherProtocolsAsHosts)
    {
        EXPECT_EQ(value("ftp://one.two"_ns), "http://ftp://one.two");
    }
    TEST(URLValue, OfTextThatIsNoURLIsNil)
    {
        EXPECT_EQ(value("ä.de"_ns), "(nil)");
        EXPECT_EQ(value("a<b"_ns), "(nil)");
        EXPECT_EQ(value("100%"_ns), "(nil)");
    }
    TEST(URLValue, OfTheEmptyTextHasNoHost) { EXPECT_EQ(value(""_ns), "http://"); }

    // ---- containsString:

    TEST(ContainsString, IgnoresCase)
    {
        EXPECT_TRUE("Hello"_ns->containsString("hELL"_ns));
        EXPECT_TRUE("STRASSE"_ns->containsString("straße"_ns));
        EXPECT_FALSE("Hello"_ns->containsString("help"_ns));
    }
    TEST(ContainsString, NeverFindsTheEmptyText)
    {
        EXPECT_FALSE("Hello"_ns->containsString(""_ns));
    }
    TEST(ContainsString, IgnoresCaseInMutableStrings)
    {
        EXPECT_TRUE(cast<NSString>("ABC"_ns->mutableCopy())->containsString("b"_ns));
    }
    TEST(ContainsString, IgnoresCaseInPrivateSubclasses)
    {
        EXPECT_TRUE(make<RepeatedLetter>()->containsString("qq"_ns));
        EXPECT_FALSE(make<RepeatedLetter>()->containsString("x"_ns));
    }
    TEST(ContainsString, ASubclassMayStillDecide)
    {
        EXPECT_TRUE(make<StubbornText>()->containsString("x"_ns));
    }
    TEST(ContainsString, OfNilRaises)
    {
        EXPECT_NE(raisedBy([] { "a"_ns->containsString(nullptr); }), "");
    }

    // ---- domain

    std::string domainOf(NSString* text) { return utf8(domain(NSURL::cls().URLWithString(text))); }

    TEST(Domain, IsTheLastTwoLabels)
    {
        EXPECT_EQ(domainOf("http://one.two.three.four/x"_ns), "three.four");
        EXPECT_EQ(domainOf("http://three.four:80"_ns), "three.four");
    }
    TEST(Domain, OfASingleLabelIsThatLabel) { EXPECT_EQ(domainOf("http://local/x"_ns), "local"); }
    TEST(Domain, WithoutAHostIsNil)
    {
        EXPECT_EQ(domainOf("http://"_ns), "(nil)");
        EXPECT_EQ(domainOf("mailto:a@b.c"_ns), "(nil)");
        EXPECT_EQ(domain(Ref<NSURL>()), nullptr);
    }
    TEST(Domain, KeepsEmptyLabels) { EXPECT_EQ(domainOf("http://a.b./"_ns), "b."); }

    // ---- parameterDictionary

    /// Answers the parameters as "key→value" in their order.
    std::string parameters(NSString* text)
    {
        const auto found = parameterDictionary(NSURL::cls().URLWithString(text));
        std::string out;
        for (NSObject* key : *found)
            out += (out.empty() ? "" : " ") + utf8(key->description()) + "→"
                + textOf(found->objectForKey(key));
        return out;
    }

    TEST(ParameterDictionary, HoldsUnescapedValues)
    {
        EXPECT_EQ(parameters("http://h/?a=1&b=x%20y&c&d=1=2"_ns), "a→1 b→x y");
    }
    TEST(ParameterDictionary, LeavesPiecesOutThatAreNoPairs)
    {
        EXPECT_EQ(parameters("http://h/?c&d=1=2&==&e=3"_ns), "e→3");
    }
    TEST(ParameterDictionary, WithoutAQueryIsEmpty)
    {
        EXPECT_EQ(parameters("http://h/a=b"_ns), "");
        EXPECT_EQ(parameters("http://h/?"_ns), "");
    }
    TEST(ParameterDictionary, AFragmentBelongsToTheLastValue)
    {
        EXPECT_EQ(parameters("http://h/?a=1#top"_ns), "a→1#top");
    }
    TEST(ParameterDictionary, ALaterDuplicateTakesThePlace)
    {
        EXPECT_EQ(parameters("http://h/?a=1&a=2"_ns), "a→2");
    }
    TEST(ParameterDictionary, KeysKeepTheirEscapes)
    {
        EXPECT_EQ(parameters("http://h/?a%20b=c"_ns), "a%20b→c");
    }
    TEST(ParameterDictionary, AValueOrAKeyMayBeEmpty)
    {
        EXPECT_EQ(parameters("http://h/?a=&=b"_ns), "a→ →b");
    }
    TEST(ParameterDictionary, APairThatCannotBeUnescapedIsLeftOut)
    {
        EXPECT_EQ(parameters("http://h/?a=%ff&b=1"_ns), "b→1");
    }
    TEST(ParameterDictionary, EmptyPiecesAreSkipped)
    {
        EXPECT_EQ(parameters("http://h/?&&a=1&&&?b=2&"_ns), "a→1 b→2");
    }
    TEST(ParameterDictionary, APlusStays) { EXPECT_EQ(parameters("http://h/?a=b+c"_ns), "a→b+c"); }
    TEST(ParameterDictionary, OfARelativeURLIsOfTheAbsoluteOne)
    {
        const auto url = NSURL::cls().URLWithString_relativeToURL(
            "x?a=1"_ns, NSURL::cls().URLWithString("http://h/"_ns).get());
        EXPECT_EQ(parameterDictionary(url)->count(), 1u);
    }
    TEST(ParameterDictionary, IsNewAndMutable)
    {
        const auto url = NSURL::cls().URLWithString("http://h/?a=1"_ns);
        parameterDictionary(url)->removeAllObjects();
        EXPECT_EQ(parameterDictionary(url)->count(), 1u);
    }

}

}
