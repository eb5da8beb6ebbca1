// SPDX-License-Identifier: Apache-2.0
#include "BinaryListReaderPrivate.h"

#include <cmath>

#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/NSStringPrivate.h"
#include "foundation/PropertyListUID.h"

namespace brindle::lists {

namespace {

    constexpr std::size_t kHeader = 8; // "bplist00"
    constexpr std::size_t kTrailer = 32;

    char16_t unitAt(const unsigned char* content, std::size_t index)
    {
        return static_cast<char16_t>(content[2 * index] << 8 | content[2 * index + 1]);
    }

    double realAt(const unsigned char* at, std::size_t size)
    {
        const std::uint64_t bits = loadBig(at, size);
        if (size == 4)
            return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
        return std::bit_cast<double>(bits);
    }

    std::string_view textAt(const unsigned char* at, std::size_t length)
    {
        return { reinterpret_cast<const char*>(at), length };
    }

}

bool BinaryListReader::isBinary(std::span<const unsigned char> bytes)
{
    return bytes.size() >= kHeader && std::memcmp(bytes.data(), "bplist0", 7) == 0;
}

// ---- opening

bool BinaryListReader::open(std::span<const unsigned char> bytes, Failure& failure)
{
    bytes_ = bytes;
    if (!isBinary(bytes))
        return fail(failure, 0, "a binary property list begins with bplist0");
    if (bytes.size() < kHeader + kTrailer + 2)
        return fail(failure, bytes.size(), "the list ends before its trailer");
    if (!readTrailer(failure))
        return false;
    // Objects do not share bytes, so all together are no longer than the list; twice is generous. Without a limit many
    // entries of the table could name one long object, and checking it each time would take for ever.
    std::size_t left = 2 * bytes.size();
    References goodKeys { bytes.data(), 0, referenceSize_ };
    for (Index index = 0; index < count_; ++index) {
        std::size_t length = 0;
        if (!check(index, length, goodKeys, failure))
            return false;
        if (length > left)
            return fail(failure, offset(index), "objects overlap");
        left -= length;
    }
    return true;
}

bool BinaryListReader::readTrailer(Failure& failure)
{
    const std::size_t place = bytes_.size() - kTrailer;
    const unsigned char* const trailer = bytes_.data() + place;
    offsetSize_ = trailer[6];
    referenceSize_ = trailer[7];
    const std::uint64_t count = loadBig(trailer + 8, 8);
    const std::uint64_t top = loadBig(trailer + 16, 8);
    const std::uint64_t table = loadBig(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8)
        return fail(failure, place + 6, "offsets have 1 to 8 bytes");
    if (referenceSize_ < 1 || referenceSize_ > 8)
        return fail(failure, place + 7, "references have 1 to 8 bytes");
    if (table <= kHeader || table > place)
        return fail(failure, place + 24, "the table of offsets lies outside of the list");
    if (count < 1 || count > (place - table) / offsetSize_)
        return fail(failure, place + 8, "there are not as many objects as the trailer says");
    if (count > 0xffffffff)
        return fail(failure, place + 8, "there are too many objects");
    if (top >= count)
        return fail(failure, place + 16, "the top object is not in the table");
    table_ = bytes_.data() + table;
    count_ = count;
    top_ = top;
    return true;
}

BinaryListReader::Shape BinaryListReader::shapeAt(const unsigned char* at)
{
    // The trailer stands behind every object: what a marker announces can be read before it is believed.
    const Kind kind = kKinds[*at];
    const unsigned low = *at & 15;
    switch (kind) {
    case Kind::none:
        return {};
    case Kind::boolean:
        return { kind, { 0, at + 1 } };
    case Kind::integer:
    case Kind::real:
    case Kind::date:
        return { kind, { std::size_t { 1 } << low, at + 1 } };
    case Kind::uid:
        return { kind, { low + 1u, at + 1 } };
    default:
        if (low == 15 && (at[1] < 0x10 || at[1] > 0x13))
            return {};
        return { kind, contentAt(at) };
    }
}

bool BinaryListReader::check(
    Index index, std::size_t& length, References& goodKeys, Failure& failure) const
{
    const auto end = static_cast<std::size_t>(table_ - bytes_.data());
    const std::uint64_t start = loadBig(table_ + index * offsetSize_, offsetSize_);
    if (start < kHeader || start >= end)
        return fail(failure, end + index * offsetSize_, "an offset leads out of the objects");
    const Shape shape = shapeAt(bytes_.data() + start);
    if (shape.kind == Kind::none)
        return fail(failure, start, "no object begins with this byte");
    const bool isWide = shape.kind == Kind::string && bytes_[start] >> 4 == 6;
    const std::size_t unit = shape.kind == Kind::array ? referenceSize_
        : shape.kind == Kind::dictionary               ? 2 * referenceSize_
        : isWide                                       ? 2
                                                       : 1;
    const auto content = static_cast<std::size_t>(shape.content.first - bytes_.data());
    if (content > end || shape.content.count > (end - content) / unit)
        return fail(failure, start, "an object is longer than the list");
    length = content - start + shape.content.count * unit;

    switch (shape.kind) {
    case Kind::integer:
        if (shape.content.count == 16 && loadBig(shape.content.first, 8) != 0)
            return fail(failure, start, "an integer has more than 64 bits");
        return true;
    case Kind::date:
        return std::isfinite(realAt(shape.content.first, 8))
            || fail(failure, start, "a date is not a finite number");
    case Kind::string:
        if (isWide)
            return isPaired(shape.content.count, [&](std::size_t i) {
                return unitAt(shape.content.first, i);
            }) || fail(failure, start, "a string is not UTF-16");
        return strings::isAscii(textAt(shape.content.first, shape.content.count))
            || fail(failure, start, "a string is not ASCII");
    case Kind::array:
    case Kind::dictionary:
        return checkReferences(start, shape, goodKeys, failure);
    default:
        return true;
    }
}

bool BinaryListReader::areInTable(const References& all) const
{
    Index largest = 0;
    for (std::size_t i = 0; i < all.size(); ++i)
        largest = std::max(largest, all[i]);
    return largest < count_;
}

/// - goodKeys: keys of another dictionary that were checked: records of one kind have the same.
bool BinaryListReader::checkReferences(
    std::size_t start, const Shape& shape, References& goodKeys, Failure& failure) const
{
    const std::size_t each = shape.kind == Kind::dictionary ? 2 : 1;
    const References all { shape.content.first, shape.content.count * each, referenceSize_ };
    if (!areInTable(all))
        return fail(failure, start, "a container holds what is not in the table");
    return shape.kind == Kind::array
        || checkKeys(start, all.first(shape.content.count), goodKeys, failure);
}

bool BinaryListReader::checkKeys(
    std::size_t start, const References& keys, References& goodKeys, Failure& failure) const
{
    if (keys == goodKeys)
        return true;
    const auto end = static_cast<std::size_t>(table_ - bytes_.data());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // The key itself may not have been checked yet, except that its entry is there.
        const std::uint64_t key = loadBig(table_ + keys[i] * offsetSize_, offsetSize_);
        if (key >= end || (bytes_[key] >> 4 != 5 && bytes_[key] >> 4 != 6))
            return fail(failure, start, "a dictionary's key is no string");
    }
    goodKeys = keys;
    return true;
}

// ---- values

std::int64_t BinaryListReader::integer(Index index) const
{
    const unsigned char* const start = at(index);
    const unsigned power = *start & 15;
    if (power == 4)
        return static_cast<std::int64_t>(loadBig(start + 9, 8));
    return static_cast<std::int64_t>(loadBig(start + 1, std::size_t { 1 } << power));
}

bool BinaryListReader::isNatural(Index index) const
{
    return *at(index) == 0x14 && integer(index) < 0;
}

double BinaryListReader::real(Index index) const
{
    const unsigned char* const start = at(index);
    return realAt(start + 1, std::size_t { 1 } << (*start & 15));
}

double BinaryListReader::date(Index index) const { return real(index); }

std::span<const unsigned char> BinaryListReader::data(Index index) const
{
    const Content content = contentAt(at(index));
    return { content.first, content.count };
}

Ref<NSString> BinaryListReader::string(Index index) const
{
    const unsigned char* const start = at(index);
    const Content content = contentAt(start);
    if (*start >> 4 == 5)
        return strings::plain(std::string(textAt(content.first, content.count)));
    std::u16string units(content.count, u'\0');
    for (std::size_t i = 0; i < content.count; ++i)
        units[i] = unitAt(content.first, i);
    return strings::plain(std::move(units));
}

Ref<NSObject> BinaryListReader::leaf(Index index) const
{
    switch (kind(index)) {
    case Kind::boolean:
        return NSNumber::cls().numberWithBool(boolean(index));
    case Kind::integer:
        if (isNatural(index))
            return NSNumber::cls().numberWithUnsignedInteger(
                static_cast<NSUInteger>(integer(index)));
        return NSNumber::cls().numberWithInteger(integer(index));
    case Kind::real:
        if (isSingle(index))
            return NSNumber::cls().numberWithFloat(static_cast<float>(real(index)));
        return NSNumber::cls().numberWithDouble(real(index));
    case Kind::date:
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(date(index));
    case Kind::data:
        return dataFrom(data(index));
    case Kind::string:
        return string(index);
    case Kind::uid:
        return makeUID(uid(index));
    default:
        return nullptr;
    }
}

// ---- containers

BinaryListReader::References BinaryListReader::children(Index container) const
{
    const Content content = contentAt(at(container));
    const std::size_t each = kind(container) == Kind::dictionary ? 2 : 1;
    return { content.first, content.count * each, referenceSize_ };
}

BinaryListReader::Index BinaryListReader::find(Index dictionary, std::string_view key) const
{
    const References names = keys(dictionary);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string_view name = ascii(names[i]);
        if (name.data() && name == key)
            return values(dictionary)[i];
    }
    return count_;
}

bool BinaryListReader::childrenFirst(Order& order, Failure& failure) const
{
    return areInOrder(order) || walk(order, failure);
}

/// Answers whether everything stands in the table behind what it holds, as our writers put it, and is not nested too
/// deeply. Then no container contains itself, and nobody needs to walk.
bool BinaryListReader::areInOrder(Order& order) const
{
    struct Seen {
        std::uint32_t uses;
        std::uint32_t depth; // how many containers stand around it
    };
    std::vector<Seen> seen(top_ + 1);
    seen[top_].uses = 1;
    for (Index index = top_ + 1; index-- > 0;) {
        if (!seen[index].uses || !isContainer(kind(index)))
            continue;
        const std::uint32_t depth = seen[index].depth + 1;
        if (depth > kDeepest)
            return false;
        const References held = children(index);
        for (std::size_t i = 0; i < held.size(); ++i) {
            const Index child = held[i];
            if (child >= index)
                return false;
            ++seen[child].uses;
            seen[child].depth = std::max(seen[child].depth, depth);
        }
    }
    order.uses.resize(top_ + 1);
    order.indexes.reserve(top_ + 1);
    for (Index index = 0; index <= top_; ++index) {
        order.uses[index] = seen[index].uses;
        if (seen[index].uses)
            order.indexes.push_back(static_cast<std::uint32_t>(index));
    }
    return true;
}

bool BinaryListReader::walk(Order& order, Failure& failure) const
{
    constexpr std::uint16_t kOpen = 0xffff;
    struct Step {
        Index index;
        References children;
        std::size_t next;
        std::uint16_t height;
    };
    std::vector<std::uint16_t> heights(count_); // 0 not seen yet, 1 a leaf, kOpen while inside
    std::vector<Step> way;
    order.indexes.reserve(count_);
    order.uses.assign(count_, 0);
    order.uses[top_] = 1;
    const auto enter = [&](Index index) {
        if (!isContainer(kind(index))) {
            heights[index] = 1;
            order.indexes.push_back(static_cast<std::uint32_t>(index));
            return;
        }
        heights[index] = kOpen;
        way.push_back({ index, children(index), 0, 2 });
    };
    enter(top_);
    while (!way.empty()) {
        Step& step = way.back();
        if (step.next == step.children.size()) {
            heights[step.index] = step.height;
            order.indexes.push_back(static_cast<std::uint32_t>(step.index));
            way.pop_back();
            continue;
        }
        const Index child = step.children[step.next];
        if (heights[child] == kOpen)
            return fail(failure, offset(child), "a container contains itself");
        if (!heights[child]) {
            if (way.size() >= kDeepest && isContainer(kind(child)))
                return fail(failure, offset(child), "containers are nested too deeply");
            enter(child);
            continue; // and come back to it when its height is known
        }
        step.height = std::max<std::uint16_t>(step.height, heights[child] + 1);
        // A leaf counts for nothing: that many containers stand in each other.
        if (step.height > kDeepest + 1)
            return fail(failure, offset(step.index), "containers are nested too deeply");
        ++order.uses[child];
        ++step.next;
    }
    return true;
}

}
