// SPDX-License-Identifier: Apache-2.0
#include "foundation/UserLocale.h"

#include <gtest/gtest.h>

#include "support/UserLanguage.h"
#include "support/Variables.h"

using namespace brindle;
using test::UserLanguage;

namespace {

/// The variables of the session's language for one test; the ones that are not given are unset.
class Environment {
public:
    struct Values {
        const char* all = "";
        const char* time = "";
        const char* messages = "";
        const char* lang = "";
        const char* language = "";
    };
    explicit Environment(const Values& values)
        : variables_ { { "LC_ALL", values.all }, { "LC_TIME", values.time },
            { "LC_MESSAGES", values.messages }, { "LANG", values.lang },
            { "LANGUAGE", values.language } }
    {
        UserLocale::useSystem();
    }
    ~Environment() { UserLocale::useSystem(); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const test::Variables variables_;
};

using Languages = std::vector<std::string>;

}

TEST(UserLocale, AnEnvironmentThatSaysNothingIsAmericanEnglish)
{
    const Environment environment({});
    EXPECT_EQ(UserLocale::identifier(), "en_US");
    EXPECT_EQ(UserLocale::languages(), (Languages { "en" }));
}

TEST(UserLocale, TheLocaleOfProgramsIsAmericanEnglish)
{
    const Environment environment({ .all = "C.UTF-8", .lang = "de_DE.UTF-8" });
    EXPECT_EQ(UserLocale::identifier(), "en_US");
}

TEST(UserLocale, TheFirstVariableThatIsSetDecides)
{
    const Environment environment(
        { .time = "fr_CH.UTF-8", .messages = "it_IT", .lang = "de_DE.UTF-8" });
    EXPECT_EQ(UserLocale::identifier(), "fr_CH");
    EXPECT_EQ(UserLocale::languages(), (Languages { "it-IT" }));
}

TEST(UserLocale, AListOfLanguagesComesBeforeTheLocale)
{
    const Environment environment({ .lang = "de_DE.UTF-8", .language = "de_CH:de:fr:de" });
    EXPECT_EQ(UserLocale::languages(), (Languages { "de-CH", "de", "fr", "de-DE" }));
}

TEST(UserLocale, AListOfLanguagesIsIgnoredInTheLocaleOfPrograms)
{
    const Environment environment({ .lang = "C", .language = "de" });
    EXPECT_EQ(UserLocale::languages(), (Languages { "en" }));
}

TEST(UserLocale, AModifierNamesTheScript)
{
    EXPECT_EQ(UserLocale::identifierFromSystemName("sr_RS.UTF-8@latin"), "sr_Latn_RS");
    EXPECT_EQ(UserLocale::identifierFromSystemName("de_DE@euro"), "de_DE");
}

TEST(UserLocale, RubbishIsNoLocale)
{
    EXPECT_EQ(UserLocale::identifierFromSystemName("../../etc"), "");
    EXPECT_EQ(UserLocale::identifierFromSystemName(std::string(10000, 'a')), "");
    EXPECT_EQ(UserLocale::identifierFromSystemName(""), "");
}

TEST(UserLocale, ASettingByHandHoldsUntilTheSystemIsFollowedAgain)
{
    const std::uint64_t before = UserLocale::generation();
    {
        const UserLanguage language("pt_BR");
        EXPECT_EQ(UserLocale::identifier(), "pt_BR");
        EXPECT_EQ(UserLocale::languages(), (Languages { "pt-BR" }));
        EXPECT_GT(UserLocale::generation(), before);
    }
    EXPECT_NE(UserLocale::identifier(), "pt_BR");
}
