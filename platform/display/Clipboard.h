// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Export.h"

namespace brindle::display {

/// What programs of a desktop hand each other: the clipboard, and what is selected.
///
/// Data has types with names as desktops use them: "UTF8_STRING", "text/plain;charset=utf-8", "text/uri-list", "image/png".
/// Thread: main.
class BRINDLE_EXPORT Clipboard {
public:
    enum class Selection { clipboard, primary };

    /// What this program has to give.
    struct Offer {
        /// Answers the types that are there now.
        std::function<std::vector<std::string>()> types;
        /// Answers the data of a type when somebody asks for it.
        std::function<std::string(std::string_view type)> provide;
        /// Told when another program has taken the selection; not when the next offer replaces this one.
        std::function<void()> lost;
    };

    virtual ~Clipboard();
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    /// Takes a selection over. The offer before it ends.
    virtual void offer(Selection selection, Offer offer) = 0;
    virtual bool isOurs(Selection selection) const = 0;
    /// Answers a number that grows whenever another program takes the selection or gives it up.
    virtual std::uint64_t changes(Selection selection) = 0;
    /// Answers the types that another program has to give; empty when none has it or it does not answer in a second.
    virtual std::vector<std::string> types(Selection selection) = 0;
    /// Answers another program's data. - Nil: nothing when it does not answer, or has none of this type.
    virtual std::optional<std::string> read(Selection selection, const std::string& type) = 0;
    /// Lets the desktop keep what this program has to give, where somebody does; for a program that is about to end.
    virtual void handOver() = 0;

protected:
    Clipboard() = default;
};

}
