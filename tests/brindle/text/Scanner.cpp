// SPDX-License-Identifier: Apache-2.0
#include "text/NSScanner+BRExtensions.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSScanner> over(NSString* text, NSUInteger location = 0)
    {
        Ref<NSScanner> scanner = NSScanner::cls().scannerWithString(text);
        scanner->setScanLocation(location);
        return scanner;
    }

    TEST(ScannerExtensions, ScansUpToAString)
    {
        const auto scanner = over("ab=c"_ns);
        EXPECT_TRUE(scanUpToString(scanner, "="_ns));
        EXPECT_EQ(scanner->scanLocation(), 2u);
        EXPECT_FALSE(scanUpToString(scanner, "="_ns));
    }
    TEST(ScannerExtensions, ScansAString)
    {
        const auto scanner = over("ab=c"_ns);
        EXPECT_FALSE(scanString(scanner, "b"_ns));
        EXPECT_TRUE(scanString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 2u);
    }
    TEST(ScannerExtensions, ScansPastAString)
    {
        const auto scanner = over("ab==c"_ns);
        EXPECT_TRUE(scanUpToAndPastString(scanner, "=="_ns));
        EXPECT_EQ(scanner->scanLocation(), 4u);
    }
    TEST(ScannerExtensions, ScansPastAStringAtTheLocation)
    {
        const auto scanner = over("==c"_ns);
        EXPECT_TRUE(scanUpToAndPastString(scanner, "=="_ns));
        EXPECT_EQ(scanner->scanLocation(), 2u);
    }
    TEST(ScannerExtensions, AMissingStringCannotBeScannedPast)
    {
        const auto scanner = over("abc"_ns);
        EXPECT_FALSE(scanUpToAndPastString(scanner, "="_ns));
        EXPECT_EQ(scanner->scanLocation(), 3u);
    }

    // ---- back

    TEST(ScanBackToString, GoesBackInStepsOfTheLength)
    {
        const auto scanner = over("xxabxxab"_ns, 6);
        EXPECT_TRUE(scanBackToString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 2u);
    }
    TEST(ScanBackToString, FindsWhatEndsAtTheLocation)
    {
        const auto scanner = over("xxabxxab"_ns, 8);
        EXPECT_TRUE(scanBackToString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 6u);
    }
    TEST(ScanBackToString, PassesOverWhatIsOutOfStep)
    {
        const auto scanner = over("xabxxx"_ns, 6);
        EXPECT_FALSE(scanBackToString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 0u);
    }
    TEST(ScanBackToString, NeverLooksAtTheStart)
    {
        const auto scanner = over("abxx"_ns, 4);
        EXPECT_FALSE(scanBackToString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 0u);
    }
    TEST(ScanBackToString, ALocationOfOneLengthAnswersNo)
    {
        const auto scanner = over("ab"_ns, 2);
        EXPECT_FALSE(scanBackToString(scanner, "ab"_ns));
        EXPECT_EQ(scanner->scanLocation(), 0u);
    }
    TEST(ScanBackToString, RaisesFromTheStart)
    {
        EXPECT_EQ(raisedBy([] { scanBackToString(over("abc"_ns), "a"_ns); }),
            "NSRangeException: *** -[NSScanner setScanLocation:]: Range or index out of bounds");
    }
    TEST(ScanBackToString, RaisesWhenAStepIsTooLong)
    {
        const auto scanner = over("xxxxx"_ns, 5);
        EXPECT_NE(raisedBy([&] { scanBackToString(scanner, "ab"_ns); }), "");
        EXPECT_EQ(scanner->scanLocation(), 1u);
    }
    TEST(ScanBackToString, ComparesExactly)
    {
        EXPECT_FALSE(scanBackToString(over("xxABxx"_ns, 6), "ab"_ns));
    }
    TEST(ScanBackToString, TheEmptyTextIsWhereItStands)
    {
        const auto scanner = over("abc"_ns, 2);
        EXPECT_TRUE(scanBackToString(scanner, ""_ns));
        EXPECT_EQ(scanner->scanLocation(), 2u);
        EXPECT_FALSE(scanBackToString(over("abc"_ns), ""_ns));
    }
    TEST(ScanBackToString, NilAnswersNo)
    {
        const auto scanner = over("abc"_ns, 2);
        EXPECT_FALSE(scanBackToString(scanner, nullptr));
        EXPECT_EQ(scanner->scanLocation(), 2u);
    }

}

}
