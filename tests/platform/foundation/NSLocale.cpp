// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSLocale.h"

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"

using namespace brindle;
using test::UserLanguage;

namespace {

Ref<NSLocale> locale(const char* identifier)
{
    return NSLocale::cls().localeWithLocaleIdentifier(stringFrom(identifier).get());
}

}

TEST(Locale, TheCurrentOneIsTheUsers)
{
    const UserLanguage user("de_CH", { "de-CH", "fr" });
    EXPECT_EQ(utf8(NSLocale::cls().currentLocale()->localeIdentifier()), "de_CH");
    EXPECT_EQ(
        utf8(NSLocale::cls().preferredLanguages()->componentsJoinedByString(" "_ns)), "de-CH fr");
}

TEST(Locale, TheSystemsHasNoLanguage)
{
    EXPECT_EQ(utf8(NSLocale::cls().systemLocale()->localeIdentifier()), "");
    EXPECT_FALSE(NSLocale::cls().systemLocale()->languageCode());
}

TEST(Locale, KnowsTheParts)
{
    EXPECT_EQ(utf8(locale("sr_Latn_RS")->languageCode()), "sr");
    EXPECT_EQ(utf8(locale("sr_Latn_RS")->scriptCode()), "Latn");
    EXPECT_EQ(utf8(locale("sr_Latn_RS")->countryCode()), "RS");
    EXPECT_FALSE(locale("sr")->countryCode());
}

TEST(Locale, KnowsTheSeparators)
{
    EXPECT_EQ(utf8(locale("de_DE")->decimalSeparator()), ",");
    EXPECT_EQ(utf8(locale("de_DE")->groupingSeparator()), ".");
    EXPECT_EQ(utf8(locale("en_US")->decimalSeparator()), ".");
}

TEST(Locale, KnowsTheMoney)
{
    EXPECT_EQ(utf8(locale("en_GB")->currencyCode()), "GBP");
    EXPECT_EQ(utf8(locale("en_GB")->currencySymbol()), "£");
    EXPECT_FALSE(locale("en")->currencyCode());
}

TEST(Locale, KnowsTheMeasures)
{
    EXPECT_TRUE(locale("de_DE")->usesMetricSystem());
    EXPECT_FALSE(locale("en_US")->usesMetricSystem());
}

TEST(Locale, AnswersByKey)
{
    EXPECT_EQ(textOf(locale("de_CH")->objectForKey(NSLocaleCountryCode)), "CH");
    EXPECT_EQ(textOf(locale("de_CH")->objectForKey(NSLocaleIdentifier)), "de_CH");
    EXPECT_EQ(textOf(locale("de_CH")->objectForKey(NSLocaleUsesMetricSystem)), "1");
    EXPECT_FALSE(locale("de_CH")->objectForKey("anything"_ns));
    EXPECT_FALSE(locale("de_CH")->objectForKey(nullptr));
}

TEST(Locale, NamesOthersInItsLanguage)
{
    const auto german = locale("de");
    EXPECT_EQ(utf8(german->displayNameForKey_value(NSLocaleLanguageCode, "fr"_ns)), "Französisch");
    EXPECT_EQ(utf8(german->displayNameForKey_value(NSLocaleCountryCode, "AT"_ns)), "Österreich");
    EXPECT_EQ(utf8(german->displayNameForKey_value(NSLocaleIdentifier, "de_AT"_ns)),
        "Deutsch (Österreich)");
    EXPECT_FALSE(german->displayNameForKey_value(NSLocaleCurrencyCode, "EUR"_ns));
    EXPECT_FALSE(german->displayNameForKey_value(NSLocaleLanguageCode, nullptr));
}

TEST(Locale, SpellsIdentifiersTheUsualWay)
{
    EXPECT_EQ(utf8(NSLocale::cls().canonicalLocaleIdentifierFromString("DE-ch"_ns)), "de_CH");
}

TEST(Locale, IsAValue)
{
    EXPECT_TRUE(locale("de")->isEqual(locale("de").get()));
    EXPECT_EQ(locale("de")->hash(), locale("de")->hash());
    EXPECT_FALSE(locale("de")->isEqual(locale("fr").get()));
    EXPECT_FALSE(locale("de")->isEqual("de"_ns));
}

TEST(Locale, RubbishIsAnsweredAsTheNeutralOne)
{
    EXPECT_EQ(utf8(locale(std::string(100000, 'x').c_str())->decimalSeparator()), ".");
    EXPECT_FALSE(NSLocale::cls().localeWithLocaleIdentifier(nullptr));
}

TEST(Locale, ListsWhatThereIs)
{
    EXPECT_TRUE(NSLocale::cls().availableLocaleIdentifiers()->containsObject("de_CH"_ns));
}

TEST(Locale, IsArchivedByItsIdentifier)
{
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(locale("de_CH").get());
    const auto again = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSLocale::cls(), data.get(), nullptr);
    EXPECT_TRUE(locale("de_CH")->isEqual(again.get()));
}
