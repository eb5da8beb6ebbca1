// SPDX-License-Identifier: Apache-2.0
#include "AttributedStringPrivate.h"

#include <algorithm>

#include "Exceptions.h"
#include "runtime/Runtime.h"

namespace brindle::attributes {

namespace {

    bool areEqual(const Run& a, const Run& b)
    {
        return a.attributes == b.attributes || a.attributes->isEqual(b.attributes.get());
    }

    /// Makes a run begin at an index, and answers it.
    std::size_t split(std::vector<Run>& runs, NSUInteger index)
    {
        const std::size_t at = runAt(runs, index);
        if (at == runs.size() || startOf(runs, at) == index)
            return at;
        runs.insert(runs.begin() + static_cast<std::ptrdiff_t>(at), { index, runs[at].attributes });
        return at + 1;
    }

    /// Joins a run with the one before it where both are equal.
    void join(std::vector<Run>& runs, std::size_t at)
    {
        if (at > 0 && at < runs.size() && areEqual(runs[at - 1], runs[at]))
            runs.erase(runs.begin() + static_cast<std::ptrdiff_t>(at - 1));
    }

    void eraseRuns(std::vector<Run>& runs, std::size_t first, std::size_t last)
    {
        runs.erase(runs.begin() + static_cast<std::ptrdiff_t>(first),
            runs.begin() + static_cast<std::ptrdiff_t>(last));
    }

    [[noreturn]] void raiseBounds(const NSObject& self, const char* operation)
    {
        raise("NSRangeException", collections::placeOf(&self, operation) + "Out of bounds");
    }

}

std::size_t runAt(const std::vector<Run>& runs, NSUInteger index)
{
    if (!runs.empty() && index < runs.front().end)
        return 0;
    const auto after = std::ranges::upper_bound(runs, index, {}, &Run::end);
    return static_cast<std::size_t>(after - runs.begin());
}

void assign(std::vector<Run>& runs, NSRange range, NSDictionary* attributes)
{
    if (!range.length)
        return;
    const std::size_t first = split(runs, range.location);
    const std::size_t last = split(runs, NSMaxRange(range));
    runs[last - 1].attributes = attributes;
    eraseRuns(runs, first, last - 1);
    join(runs, first + 1);
    join(runs, first);
}

void resize(std::vector<Run>& runs, NSRange range, NSUInteger length)
{
    if (runs.empty()) {
        if (length)
            runs.push_back({ length, make<NSDictionary>() });
        return;
    }
    // The run that what comes in belongs to grows or shrinks; the others lose what lies in the range.
    const NSUInteger heir = range.length || !range.location ? range.location : range.location - 1;
    const std::size_t grown = runAt(runs, heir);
    const NSUInteger end = NSMaxRange(range);
    for (std::size_t i = grown; i < runs.size(); ++i)
        runs[i].end = std::max(runs[i].end, end) - range.length + length;
    std::size_t first = grown;
    if (runs[grown].end > startOf(runs, grown))
        ++first;
    std::size_t last = first;
    while (last < runs.size() && runs[last].end <= startOf(runs, first))
        ++last;
    eraseRuns(runs, first, last);
    join(runs, first);
}

void requireIndex(const NSAttributedString& self, const char* operation, NSUInteger index)
{
    if (index >= self.length())
        raiseBounds(self, operation);
}

void requireRange(const NSAttributedString& self, const char* operation, NSRange range)
{
    const NSUInteger length = self.length();
    if (range.location > length || range.length > length - range.location)
        raiseBounds(self, operation);
}

void require(const NSObject& self, const char* operation, NSObject* argument, Class* cls)
{
    if (argument && argument->isKindOfClass(cls))
        return;
    raise("NSInvalidArgumentException",
        collections::placeOf(&self, operation)
            + (argument ? std::string("argument is not a ") + class_getName(cls) : "nil argument"));
}

}
