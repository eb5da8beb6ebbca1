// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <gtest/gtest.h>

#include "support/Strings.h"

namespace brindle {

namespace {

    TEST(NSStringCase, MapsAscii)
    {
        EXPECT_EQ(utf8("Hello World 1"_ns->lowercaseString()), "hello world 1");
        EXPECT_EQ(utf8("Hello World 1"_ns->uppercaseString()), "HELLO WORLD 1");
    }
    TEST(NSStringCase, LengthMayGrow)
    {
        EXPECT_EQ(utf8("straße"_ns->uppercaseString()), "STRASSE");
        EXPECT_EQ(utf8("ﬁn"_ns->uppercaseString()), "FIN");
    }
    TEST(NSStringCase, ACapitalIWithDotKeepsItsDot)
    {
        EXPECT_EQ(utf8("\u0130"_ns->lowercaseString()), "i\u0307");
    }
    TEST(NSStringCase, TheLastSigmaOfAWordIsFinal)
    {
        EXPECT_EQ(utf8("ΟΔΟΣ"_ns->lowercaseString()), "οδος");
    }
    TEST(NSStringCase, LettersBeyondTheBasicPlaneAreMapped)
    {
        EXPECT_EQ(utf8("\U00010400"_ns->lowercaseString()), "\U00010428");
    }
    TEST(NSStringCase, UnpairedSurrogatesStay)
    {
        EXPECT_EQ(utf16Of(stringFrom(u"\xd800Ä")->lowercaseString()), u"\xd800ä");
    }
    TEST(NSStringCase, CapitalizesEveryWord)
    {
        EXPECT_EQ(utf8("hello WORLD's foo-bar e.g. 3rd"_ns->capitalizedString()),
            "Hello World's Foo-Bar E.g. 3rd");
        EXPECT_EQ(utf8("élan VITAL"_ns->capitalizedString()), "Élan Vital");
    }
    TEST(NSStringCase, FoldingTakesWhatTheOptionsSay)
    {
        EXPECT_EQ(utf8("Crème"_ns->stringByFoldingWithOptions_locale(
                      NSDiacriticInsensitiveSearch, nullptr)),
            "Creme");
        EXPECT_EQ(
            utf8("Straße"_ns->stringByFoldingWithOptions_locale(NSCaseInsensitiveSearch, nullptr)),
            "strasse");
    }
    TEST(NSStringCase, FormsComposeAndDecompose)
    {
        EXPECT_EQ(utf8("\u00e9"_ns->decomposedStringWithCanonicalMapping()), "e\u0301");
        EXPECT_EQ(utf8("e\u0301"_ns->precomposedStringWithCanonicalMapping()), "\u00e9");
        EXPECT_EQ(utf8("ﬁ"_ns->decomposedStringWithCompatibilityMapping()), "fi");
        EXPECT_EQ(utf8("ﬁe\u0301"_ns->precomposedStringWithCompatibilityMapping()), "fi\u00e9");
    }

}

}
