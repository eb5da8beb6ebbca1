// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    TEST(NSStringCompare, OrdersByUnits)
    {
        EXPECT_EQ("a"_ns->compare("b"_ns), NSOrderedAscending);
        EXPECT_EQ("b"_ns->compare("a"_ns), NSOrderedDescending);
        EXPECT_EQ("a"_ns->compare("a"_ns), NSOrderedSame);
        EXPECT_EQ("B"_ns->compare("a"_ns), NSOrderedAscending);
    }
    TEST(NSStringCompare, AShorterStringStandsBeforeALongerOne)
    {
        EXPECT_EQ("ab"_ns->compare("abc"_ns), NSOrderedAscending);
        EXPECT_EQ(""_ns->compare("a"_ns), NSOrderedAscending);
    }
    TEST(NSStringCompare, ComposedAndDecomposedAreSameUnlessLiteral)
    {
        EXPECT_EQ("\u00e9"_ns->compare("e\u0301"_ns), NSOrderedSame);
        EXPECT_NE("\u00e9"_ns->compare_options("e\u0301"_ns, NSLiteralSearch), NSOrderedSame);
    }
    TEST(NSStringCompare, CaseMayBeIgnored)
    {
        EXPECT_EQ("HeLLo"_ns->caseInsensitiveCompare("hEllO"_ns), NSOrderedSame);
        EXPECT_EQ("STRASSE"_ns->caseInsensitiveCompare("straße"_ns), NSOrderedSame);
        EXPECT_EQ("a"_ns->caseInsensitiveCompare("B"_ns), NSOrderedAscending);
    }
    TEST(NSStringCompare, DigitsMayCountByValue)
    {
        EXPECT_EQ("file9"_ns->compare_options("file10"_ns, NSNumericSearch), NSOrderedAscending);
        EXPECT_EQ("file9"_ns->compare("file10"_ns), NSOrderedDescending);
        EXPECT_EQ("v1.10"_ns->compare_options("v1.9"_ns, NSNumericSearch), NSOrderedDescending);
        EXPECT_EQ("a007"_ns->compare_options("a7"_ns, NSNumericSearch), NSOrderedSame);
    }
    TEST(NSStringCompare, NumbersLongerThanAnyTypeCountByValue)
    {
        EXPECT_EQ("99999999999999999999998"_ns->compare_options(
                      "99999999999999999999999"_ns, NSNumericSearch),
            NSOrderedAscending);
    }
    TEST(NSStringCompare, ForcedOrderingTellsFoldedEqualsApart)
    {
        const NSStringCompareOptions options = NSCaseInsensitiveSearch | NSForcedOrderingSearch;
        EXPECT_EQ("A"_ns->compare_options("a"_ns, options), NSOrderedAscending);
        EXPECT_EQ("a"_ns->compare_options("a"_ns, options), NSOrderedSame);
    }
    TEST(NSStringCompare, DiacriticsMayBeIgnored)
    {
        EXPECT_EQ(
            "résumé"_ns->compare_options("resume"_ns, NSDiacriticInsensitiveSearch), NSOrderedSame);
    }
    TEST(NSStringCompare, ARangeOfTheReceiverIsCompared)
    {
        EXPECT_EQ("xaby"_ns->compare_options_range("ab"_ns, 0, { 1, 2 }), NSOrderedSame);
    }
    TEST(NSStringCompare, NilRaises)
    {
        EXPECT_NE(raisedBy([] { "a"_ns->compare(nullptr); }), "");
    }
    TEST(NSStringCompare, LocalizedOrderIsADictionarys)
    {
        EXPECT_EQ("äpfel"_ns->localizedCompare("birne"_ns), NSOrderedAscending);
        EXPECT_EQ("apfel"_ns->localizedCompare("Birne"_ns), NSOrderedAscending);
    }
    TEST(NSStringCompare, LocalizedOrderMayIgnoreCase)
    {
        EXPECT_EQ("ÄPFEL"_ns->localizedCaseInsensitiveCompare("äpfel"_ns), NSOrderedSame);
    }
    TEST(NSStringCompare, FilesAreOrderedByTheirNumbers)
    {
        EXPECT_EQ("Bild 9"_ns->localizedStandardCompare("Bild 10"_ns), NSOrderedAscending);
    }
    TEST(NSStringCompare, CommonPrefixKeepsLettersWhole)
    {
        EXPECT_EQ(
            utf8("abcx"_ns->commonPrefixWithString_options("ABCy"_ns, NSCaseInsensitiveSearch)),
            "abc");
        EXPECT_EQ(utf8("a😀"_ns->commonPrefixWithString_options("a😁"_ns, 0)), "a");
    }

}

}
