// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace brindle::test {

/// Settings as a desktop's settings program publishes them, in this machine's order of bytes.
class PublishedSettings {
public:
    PublishedSettings()
    {
        const std::uint16_t one = 1;
        bytes_.resize(4);
        bytes_[0] = *reinterpret_cast<const std::byte*>(&one) == std::byte { 1 } ? std::byte { 0 }
                                                                                 : std::byte { 1 };
        add(std::uint32_t { 7 }); // how often they were changed
        add(std::uint32_t { 0 });
    }
    PublishedSettings& number(std::string_view name, std::int32_t value)
    {
        return begin(0, name).add(value);
    }
    PublishedSettings& text(std::string_view name, std::string_view value)
    {
        return begin(1, name).add(static_cast<std::uint32_t>(value.size())).addPadded(value);
    }
    PublishedSettings& color(std::string_view name) { return begin(2, name).add(std::uint64_t {}); }

    const std::vector<std::byte>& bytes() const { return bytes_; }

private:
    PublishedSettings& begin(std::uint8_t kind, std::string_view name)
    {
        ++*reinterpret_cast<std::uint32_t*>(&bytes_[8]);
        add(kind).add(std::uint8_t {}).add(static_cast<std::uint16_t>(name.size()));
        return addPadded(name).add(std::uint32_t { 3 });
    }
    template <class T> PublishedSettings& add(T value)
    {
        const auto* const first = reinterpret_cast<const std::byte*>(&value);
        bytes_.insert(bytes_.end(), first, first + sizeof value);
        return *this;
    }
    PublishedSettings& addPadded(std::string_view text)
    {
        const auto* const first = reinterpret_cast<const std::byte*>(text.data());
        bytes_.insert(bytes_.end(), first, first + text.size());
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        return *this;
    }

    std::vector<std::byte> bytes_;
};

}
