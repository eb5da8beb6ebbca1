// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace brindle::test {

/// Variables of the environment for one test; an empty value unsets one.
class Variables {
public:
    explicit Variables(std::initializer_list<std::pair<std::string, std::string>> values)
    {
        for (const auto& [name, value] : values) {
            const char* const before = std::getenv(name.c_str());
            before_.emplace_back(name, before ? before : "");
            set(name, value);
        }
    }
    ~Variables()
    {
        for (const auto& [name, value] : before_)
            set(name, value);
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

private:
    static void set(const std::string& name, const std::string& value)
    {
        if (value.empty())
            ::unsetenv(name.c_str());
        else
            ::setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<std::pair<std::string, std::string>> before_;
};

}
