// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/UserLocale.h"

namespace brindle::test {

/// The user's locale and languages for one test.
class UserLanguage {
public:
    explicit UserLanguage(const std::string& identifier, std::vector<std::string> languages = {})
    {
        UserLocale::use(identifier, std::move(languages));
    }
    ~UserLanguage() { UserLocale::useSystem(); }
    UserLanguage(const UserLanguage&) = delete;
    UserLanguage& operator=(const UserLanguage&) = delete;
};

}
