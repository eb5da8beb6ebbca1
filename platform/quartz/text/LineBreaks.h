// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace brindle::text {

/// Where a text may be broken into lines, by the Unicode line breaking algorithm (UAX #14).
///
/// Words of letters with ordinary marks behind them, and hyphens between letters, are decided here; only what is less plain
/// is shown to ICU, with its neighbours.
class LineBreaks {
public:
    explicit LineBreaks(std::u16string_view text);

    /// Answers whether a line may begin at an index.
    bool isAllowedAt(std::size_t index) const
    {
        return bits_.empty() ? isPlainBreak(index) : index < bits_.size() && bits_[index];
    }
    /// Answers whether a line may begin anywhere but behind spaces.
    bool hasInnerBreaks() const { return hasInnerBreaks_; }
    /// Answers the first such index behind `from`, or `end` when there is none before it.
    std::size_t next(std::size_t from, std::size_t end) const
    {
        if (!hasInnerBreaks_)
            return end;
        while (++from < end) {
            if (isAllowedAt(from))
                return from;
        }
        return end;
    }

private:
    bool isPlainBreak(std::size_t index) const;
    void askForWords(std::size_t start, std::size_t end);

    std::u16string_view text_;
    std::vector<bool> bits_; // empty while everything is plain
    bool hasInnerBreaks_ = false; // somewhere else than behind spaces
};

}
