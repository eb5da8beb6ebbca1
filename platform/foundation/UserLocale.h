// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/Export.h"

namespace brindle {

/// What the user's session says of language and region.
///
/// It is read from the environment when somebody first asks. Tests, and hosts with a language menu of their own, set
/// it by hand; what was looked up before (string tables, formatters) follows.
/// Thread: any.
class BRINDLE_EXPORT UserLocale {
public:
    /// Answers the locale of dates and numbers, such as "de_CH": LC_ALL, LC_TIME or LANG, the first that is not empty.
    /// Nothing, "C", "POSIX" and what is no locale give "en_US".
    static std::string identifier();
    /// Answers the languages of texts, best first, such as "de-CH", "de": LANGUAGE, behind it LC_ALL, LC_MESSAGES or LANG.
    /// Where these say "C" or nothing, the answer is "en" alone. Never empty.
    static std::vector<std::string> languages();
    /// Changes with every setting, so that who keeps something for a language knows when it is out of date.
    static std::uint64_t generation();

    /// Takes these instead of the environment. No language means the identifier's own.
    static void use(const std::string& identifier, std::vector<std::string> languages = {});
    /// Follows the environment again, read anew.
    static void useSystem();

    /// Answers "de_CH" for "de_CH.UTF-8", "sr_Latn_RS" for "sr_RS@latin", "" for "C" and what is no locale.
    static std::string identifierFromSystemName(const std::string& name);
};

}
