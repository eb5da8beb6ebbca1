// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/NSData.h"
#include "foundation/NSPropertyListSerialization.h"

// What the readers and writers of property lists share.

namespace brindle::lists {

/// The kinds of values.
enum class Kind : unsigned char {
    none,
    boolean,
    integer,
    real,
    date,
    data,
    string,
    uid,
    array,
    dictionary
};

constexpr bool isContainer(Kind kind) { return kind == Kind::array || kind == Kind::dictionary; }

/// That many containers may stand in each other.
inline constexpr std::size_t kDeepest = 512;

/// Why something is no property list, or cannot be written as one.
struct Failure {
    enum class Place { none, byte, line };

    std::string reason; ///< one sentence without a full stop
    Place place = Place::none;
    std::size_t position = 0; ///< a byte's offset, or a line's number from 1
};

/// Answers false, to be handed on, after saying why.
inline bool fail(Failure& failure, std::size_t offset, const char* reason)
{
    failure = { reason, Failure::Place::byte, offset };
    return false;
}

/// Answers false, to be handed on, after saying why and in which line of a text.
inline bool failInLine(Failure& failure, std::string_view textBefore, std::string reason)
{
    std::size_t line = 1;
    for (std::size_t i = 0; i < textBefore.size(); ++i) {
        const bool isPair = textBefore[i] == '\r' && textBefore.substr(i + 1, 1) == "\n";
        line += textBefore[i] == '\n' || (textBefore[i] == '\r' && !isPair);
    }
    failure = { std::move(reason), Failure::Place::line, line };
    return false;
}

/// What of a list that is read can be changed.
enum class Mutability { none, containers, leaves };

// Each reads or writes one format; nil, with the failure, for what cannot be.
Ref<NSObject> readBinary(
    std::span<const unsigned char> bytes, Mutability mutability, Failure& failure);
Ref<NSData> writeBinary(NSObject* list, Failure& failure);
Ref<NSObject> readXML(std::string_view utf8, Mutability mutability, Failure& failure);
Ref<NSData> writeXML(NSObject* list, Failure& failure);
/// Reads old-style text.
Ref<NSObject> readText(std::string_view utf8, Mutability mutability, Failure& failure);
/// Reads the text of a strings file, which may be empty.
Ref<NSObject> readStrings(std::string_view utf8, Failure& failure);
/// Answers whether objects could be written as old-style text.
bool fitsText(NSObject* list, Failure& failure);

/// Reads a list of whatever format.
/// - format: set to the format that was read.
Ref<NSObject> read(std::span<const unsigned char> bytes, Mutability mutability,
    NSPropertyListFormat& format, Failure& failure);
/// Reads text, XML or old-style.
Ref<NSObject> readAnyText(
    std::string_view utf8, Mutability mutability, NSPropertyListFormat& format, Failure& failure);

/// Answers whether every surrogate among `count` units has its partner. `unitAt` answers a unit.
template <class UnitAt> bool isPaired(std::size_t count, UnitAt unitAt)
{
    for (std::size_t i = 0; i < count; ++i) {
        const char16_t unit = unitAt(i);
        if ((unit & 0xf800) != 0xd800)
            continue;
        const bool isHigh = (unit & 0xfc00) == 0xd800;
        if (!isHigh || ++i >= count || (unitAt(i) & 0xfc00) != 0xdc00)
            return false;
    }
    return true;
}

}
