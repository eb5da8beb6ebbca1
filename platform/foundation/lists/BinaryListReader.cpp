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

    std::string_view asciiOf(const BinaryListReader::Content& content)
    {
        return { reinterpret_cast<const char*>(content.first), content.count };
    }

    bool isWide(const BinaryListReader::Shape& shape) { return shape.marker >> 4 == 6; }

    std::int64_t integerOf(const BinaryListReader::Content& content)
    {
        const std::size_t unused = content.count == 16 ? 8 : 0;
        return static_cast<std::int64_t>(loadBig(content.first + unused, content.count - unused));
    }

    template <std::size_t Size>
    std::uint64_t largestOf(const unsigned char* at, std::size_t count, std::size_t size = Size)
    {
        std::uint64_t largest = 0;
        for (std::size_t i = 0; i < count; ++i)
            largest = std::max(largest, loadBig(at + i * size, size));
        return largest;
    }

}

bool BinaryListReader::isBinary(std::span<const unsigned char> bytes)
{
    return bytes.size() >= kHeader && std::memcmp(bytes.data(), "bplist0", 7) == 0;
}

// ---- opening

bool BinaryListReader::begin(std::span<const unsigned char> bytes, Failure& failure)
{
    bytes_ = bytes;
    if (!isBinary(bytes))
        return fail(failure, 0, "a binary property list begins with bplist0");
    if (bytes.size() < kHeader + kTrailer + 2)
        return fail(failure, bytes.size(), "the list ends before its trailer");
    return readTrailer(failure);
}

BinaryListReader::Checks BinaryListReader::checks() const
{
    // Objects do not share bytes, so all together are no longer than the list; twice is generous. Without a limit many
    // entries of the table could name one long object, and checking it each time would take for ever.
    return { 2 * bytes_.size(), { bytes_.data(), 0, referenceSize_ } };
}

bool BinaryListReader::checkAll(Failure& failure) const
{
    Checks checks = this->checks();
    Shape shape;
    std::size_t bound = 0;
    for (Index index = 0; index < count_; ++index) {
        if (!check(index, checks, shape, bound, failure))
            return false;
    }
    return true;
}

bool BinaryListReader::mayBeInOrder() const
{
    // Everything but the top is held, so that there are as many references at least, which can all be told apart.
    return top_ == count_ - 1 && count_ - 1 <= (end_ - kHeader) / referenceSize_
        && (referenceSize_ == 8 || (count_ - 1) >> 8 * referenceSize_ == 0);
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
    end_ = table;
    count_ = count;
    top_ = top;
    return true;
}

BinaryListReader::Index BinaryListReader::References::bound() const
{
    if (!count_)
        return 0;
    const Index largest = size_ == 4 ? largestOf<4>(at_, count_)
        : size_ == 2                 ? largestOf<2>(at_, count_)
        : size_ == 1                 ? largestOf<1>(at_, count_)
                                     : largestOf<0>(at_, count_, size_);
    return std::max(largest, largest + 1);
}

bool BinaryListReader::check(
    Index index, Checks& checks, Shape& shape, std::size_t& bound, Failure& failure) const
{
    const std::uint64_t start = loadBig(table_ + index * offsetSize_, offsetSize_);
    if (start < kHeader || start >= end_)
        return fail(failure, end_ + index * offsetSize_, "an offset leads out of the objects");
    shape = shapeAt(bytes_.data() + start);
    if (shape.kind == Kind::none)
        return fail(failure, start, "no object begins with this byte");
    const std::array<std::size_t, 4> units { 1, 2, referenceSize_, 2 * referenceSize_ };
    const std::size_t unit = units[static_cast<std::size_t>(kForms[shape.marker].unit)];
    const auto content = static_cast<std::size_t>(shape.content.first - bytes_.data());
    const std::size_t count = shape.content.count;
    if (count > end_ || content + count * unit > end_)
        return fail(failure, start, "an object is longer than the list");
    if (isContainer(shape.kind)) {
        if (!checkContainer(shape, start, checks, bound, failure))
            return false;
    } else if (!checkContent(shape, start, failure)) {
        return false;
    }
    const std::size_t length = content - start + count * unit;
    if (length > checks.left)
        return fail(failure, start, "objects overlap");
    checks.left -= length;
    return true;
}

bool BinaryListReader::checkContent(const Shape& shape, std::size_t start, Failure& failure) const
{
    const Content& content = shape.content;
    switch (shape.kind) {
    case Kind::integer:
        if (content.count == 16 && loadBig(content.first, 8) != 0)
            return fail(failure, start, "an integer has more than 64 bits");
        return true;
    case Kind::date:
        return std::isfinite(realAt(content.first, 8))
            || fail(failure, start, "a date is not a finite number");
    case Kind::string:
        if (isWide(shape))
            return isPaired(content.count, [&](std::size_t i) { return unitAt(content.first, i); })
                || fail(failure, start, "a string is not UTF-16");
        return strings::isAscii(asciiOf(content)) || fail(failure, start, "a string is not ASCII");
    default:
        return true;
    }
}

bool BinaryListReader::checkContainer(const Shape& shape, std::size_t start, Checks& checks,
    std::size_t& bound, Failure& failure) const
{
    const References keys = this->keys(shape);
    const bool hasKeys = shape.kind == Kind::dictionary;
    const bool areGood = hasKeys && keys == checks.goodKeys;
    bound = areGood ? std::max(checks.keyBound, values(shape).bound()) : held(shape).bound();
    if (bound > count_)
        return fail(failure, start, "a container holds what is not in the table");
    if (!hasKeys || areGood)
        return true;
    if (!checkKeys(start, keys, failure))
        return false;
    checks.goodKeys = keys;
    checks.keyBound = keys.bound();
    return true;
}

bool BinaryListReader::checkKeys(std::size_t start, const References& keys, Failure& failure) const
{
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // The key itself may not have been checked yet, except that its entry is there.
        const std::uint64_t key = loadBig(table_ + keys[i] * offsetSize_, offsetSize_);
        if (key >= end_ || (bytes_[key] >> 4 != 5 && bytes_[key] >> 4 != 6))
            return fail(failure, start, "a dictionary's key is no string");
    }
    return true;
}

// ---- values

std::int64_t BinaryListReader::integer(Index index) const
{
    return integerOf(shape(index).content);
}

double BinaryListReader::real(Index index) const
{
    const Content content = shape(index).content;
    return realAt(content.first, content.count);
}

std::span<const unsigned char> BinaryListReader::data(Index index) const
{
    const Content content = contentAt(at(index));
    return { content.first, content.count };
}

Ref<NSString> BinaryListReader::string(const Shape& shape) const
{
    const Content& content = shape.content;
    if (!isWide(shape))
        return strings::plain(strings::View(asciiOf(content)));
    std::u16string units(content.count, u'\0');
    for (std::size_t i = 0; i < content.count; ++i)
        units[i] = unitAt(content.first, i);
    return strings::plain(std::move(units));
}

Ref<NSObject> BinaryListReader::leaf(const Shape& shape) const
{
    const Content& content = shape.content;
    switch (shape.kind) {
    case Kind::boolean:
        return NSNumber::cls().numberWithBool(shape.marker == 0x09);
    case Kind::integer: {
        const std::int64_t value = integerOf(content);
        if (shape.marker == 0x14 && value < 0)
            return NSNumber::cls().numberWithUnsignedInteger(static_cast<NSUInteger>(value));
        return NSNumber::cls().numberWithInteger(value);
    }
    case Kind::real: {
        const double value = realAt(content.first, content.count);
        if (content.count == sizeof(float))
            return NSNumber::cls().numberWithFloat(static_cast<float>(value));
        return NSNumber::cls().numberWithDouble(value);
    }
    case Kind::date:
        return NSDate::cls().dateWithTimeIntervalSinceReferenceDate(realAt(content.first, 8));
    case Kind::data:
        return dataFrom({ content.first, content.count });
    case Kind::string:
        return string(shape);
    case Kind::uid:
        return makeUID(loadBig(content.first, content.count));
    default:
        return nullptr;
    }
}

// ---- containers

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

bool BinaryListReader::childrenFirst(std::vector<std::uint32_t>& order, Failure& failure) const
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
    order.reserve(count_);
    const auto enter = [&](Index index) {
        const Shape shape = this->shape(index);
        if (!isContainer(shape.kind)) {
            heights[index] = 1;
            order.push_back(static_cast<std::uint32_t>(index));
            return;
        }
        heights[index] = kOpen;
        way.push_back({ index, held(shape), 0, 2 });
    };
    enter(top_);
    while (!way.empty()) {
        Step& step = way.back();
        if (step.next == step.children.size()) {
            heights[step.index] = step.height;
            order.push_back(static_cast<std::uint32_t>(step.index));
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
        ++step.next;
    }
    return true;
}

}
