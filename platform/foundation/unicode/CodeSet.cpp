// SPDX-License-Identifier: Apache-2.0
#include "CodeSet.h"

#include <algorithm>

#include "Unicode.h"

namespace brindle::characters {

namespace {

    constexpr char32_t kFirstWide = 128;
    using Ranges = std::vector<CodeRange>;

    /// Answers the first range that ends at `c` or after it.
    template <class R> auto reaching(R& ranges, char32_t c)
    {
        return std::partition_point(
            ranges.begin(), ranges.end(), [c](CodeRange range) { return range.last < c; });
    }

    void insert(Ranges& ranges, CodeRange range)
    {
        if (range.first > range.last)
            return;
        // Ranges that touch become one.
        const auto begin = reaching(ranges, range.first ? range.first - 1 : 0);
        auto end = begin;
        for (; end != ranges.end() && end->first <= range.last + 1; ++end) {
            range.first = std::min(range.first, end->first);
            range.last = std::max(range.last, end->last);
        }
        ranges.insert(ranges.erase(begin, end), range);
    }

    void erase(Ranges& ranges, CodeRange range)
    {
        if (range.first > range.last)
            return;
        const auto begin = reaching(ranges, range.first);
        auto end = begin;
        Ranges rest;
        for (; end != ranges.end() && end->first <= range.last; ++end) {
            if (end->first < range.first)
                rest.push_back({ end->first, range.first - 1 });
            if (end->last > range.last)
                rest.push_back({ range.last + 1, end->last });
        }
        const auto place = ranges.erase(begin, end);
        ranges.insert(place, rest.begin(), rest.end());
    }

    Ranges gaps(const Ranges& ranges, char32_t from)
    {
        Ranges out;
        for (const CodeRange range : ranges) {
            if (range.first > from)
                out.push_back({ from, range.first - 1 });
            from = range.last + 1;
        }
        if (from <= kLastCode)
            out.push_back({ from, kLastCode });
        return out;
    }

    /// Answers the stretches of code points that the test accepts.
    template <class Test> Ranges stretches(char32_t from, char32_t end, Test test)
    {
        Ranges out;
        for (char32_t c = from; c < end; ++c) {
            if (!test(c))
                continue;
            if (!out.empty() && out.back().last + 1 == c)
                out.back().last = c;
            else
                out.push_back({ c, c });
        }
        return out;
    }

}

CodeSet CodeSet::ofCategories(std::uint32_t categories)
{
    CodeSet out;
    out.categories_ = categories;
    for (unsigned c = 0; c < kFirstWide; ++c) {
        if (unicode::category(c) & categories)
            out.ascii_.add(c);
    }
    return out;
}

CodeSet CodeSet::of(std::initializer_list<CodeRange> ranges)
{
    CodeSet out;
    for (const CodeRange range : ranges)
        out.add(range);
    return out;
}

CodeSet CodeSet::of(AsciiSet members)
{
    CodeSet out;
    out.ascii_ = members;
    return out;
}

bool CodeSet::containsWide(char32_t c) const
{
    const auto range = reaching(listed_, c);
    if (range != listed_.end() && range->first <= c)
        return true;
    return categories_ && c <= kLastCode && unicode::category(c) & categories_;
}

/// Turns categories into ranges, which can be cut.
void CodeSet::settle()
{
    if (!categories_)
        return;
    listed_ = stretches(kFirstWide, kLastCode + 1, [this](char32_t c) { return containsWide(c); });
    categories_ = 0;
}

void CodeSet::add(CodeRange range)
{
    range.last = std::min(range.last, kLastCode);
    for (char32_t c = range.first; c <= range.last && c < kFirstWide; ++c)
        ascii_.add(c);
    insert(listed_, { std::max(range.first, kFirstWide), range.last });
}

void CodeSet::remove(CodeRange range)
{
    range.last = std::min(range.last, kLastCode);
    for (char32_t c = range.first; c <= range.last && c < kFirstWide; ++c)
        ascii_.remove(c);
    if (range.last < kFirstWide)
        return;
    settle();
    erase(listed_, { std::max(range.first, kFirstWide), range.last });
}

void CodeSet::unite(const CodeSet& other)
{
    ascii_ = ascii_ | other.ascii_;
    categories_ |= other.categories_;
    for (const CodeRange range : other.listed_)
        insert(listed_, range);
}

void CodeSet::intersect(const CodeSet& other)
{
    for (const CodeRange range : gaps(other.ranges(), 0))
        remove(range);
}

void CodeSet::invert()
{
    AsciiSet rest;
    for (unsigned c = 0; c < kFirstWide; ++c) {
        if (!ascii_.contains(c))
            rest.add(c);
    }
    ascii_ = rest;
    if (listed_.empty()) {
        categories_ = ~categories_ & unicode::kAllCategories;
    } else {
        settle();
        listed_ = gaps(listed_, kFirstWide);
    }
}

std::vector<CodeRange> CodeSet::ranges() const
{
    CodeSet settled = *this;
    settled.settle();
    Ranges out = stretches(0, kFirstWide, [this](char32_t c) { return ascii_.contains(c); });
    if (!out.empty() && !settled.listed_.empty()
        && out.back().last + 1 == settled.listed_[0].first) {
        settled.listed_[0].first = out.back().first;
        out.pop_back();
    }
    out.insert(out.end(), settled.listed_.begin(), settled.listed_.end());
    return out;
}

bool CodeSet::includes(const CodeSet& other) const
{
    const Ranges mine = ranges();
    const Ranges theirs = other.ranges();
    return std::all_of(theirs.begin(), theirs.end(), [&](CodeRange range) {
        const auto found = reaching(mine, range.first);
        return found != mine.end() && found->first <= range.first && range.last <= found->last;
    });
}

}
