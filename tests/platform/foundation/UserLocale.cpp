// SPDX-License-Identifier: Apache-2.0
#include "foundation/UserLocale.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "support/UserLanguage.h"

using namespace brindle;
using test::UserLanguage;

namespace {

/// Sets variables of the environment for one test; the ones that are not given are unset.
class Environment {
public:
    explicit Environment(std::initializer_list<std::pair<const char*, const char*>> values)
    {
        for (const char* const name : kNames) {
            const char* const value = std::getenv(name);
            before_.emplace_back(value ? value : "");
            ::unsetenv(name);
        }
        for (const auto& [name, value] : values)
            ::setenv(name, value, 1);
        UserLocale::useSystem();
    }
    ~Environment()
    {
        for (std::size_t i = 0; i < before_.size(); ++i)
            ::setenv(kNames[i], before_[i].c_str(), 1);
        UserLocale::useSystem();
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    static constexpr const char* kNames[] { "LC_ALL", "LC_TIME", "LC_MESSAGES", "LANG",
        "LANGUAGE" };
    std::vector<std::string> before_;
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
    const Environment environment({ { "LC_ALL", "C.UTF-8" }, { "LANG", "de_DE.UTF-8" } });
    EXPECT_EQ(UserLocale::identifier(), "en_US");
}

TEST(UserLocale, TheFirstVariableThatIsSetDecides)
{
    const Environment environment({ { "LC_ALL", "" }, { "LC_TIME", "fr_CH.UTF-8" },
        { "LC_MESSAGES", "it_IT" }, { "LANG", "de_DE.UTF-8" } });
    EXPECT_EQ(UserLocale::identifier(), "fr_CH");
    EXPECT_EQ(UserLocale::languages(), (Languages { "it-IT" }));
}

TEST(UserLocale, AListOfLanguagesComesBeforeTheLocale)
{
    const Environment environment({ { "LANG", "de_DE.UTF-8" }, { "LANGUAGE", "de_CH:de:fr:de" } });
    EXPECT_EQ(UserLocale::languages(), (Languages { "de-CH", "de", "fr", "de-DE" }));
}

TEST(UserLocale, AListOfLanguagesIsIgnoredInTheLocaleOfPrograms)
{
    const Environment environment({ { "LANG", "C" }, { "LANGUAGE", "de" } });
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
