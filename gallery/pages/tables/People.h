// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gallery {

/// A made-up person of the long list; who stands at a number is always the same.
struct Person {
    std::string name;
    std::string town;
    int born = 0;
};

enum class PersonKey { name, town, born };

/// A hundred thousand people, in an order and as far as a search lets them through.
class People {
public:
    static constexpr std::uint32_t kCount = 100'000;

    People();
    std::size_t count() const { return shown_.size(); }
    const Person& at(std::size_t row) const { return all_[shown_[row]]; }
    void sortBy(PersonKey key, bool ascending);
    /// Shows those whose name or town has the text in it; the empty text shows all.
    void search(const std::string& text);

private:
    void choose();

    std::vector<Person> all_;
    std::vector<std::uint32_t> order_;
    std::vector<std::uint32_t> shown_;
    std::string wanted_;
};

}
