// SPDX-License-Identifier: Apache-2.0
#include "RowHeightsPrivate.h"

#include <algorithm>
#include <bit>

namespace brindle {

namespace {

    std::size_t greatestPart(std::size_t count) { return count ? std::bit_floor(count) : 0; }
    std::size_t lowestBit(std::size_t number) { return number & (~number + 1); }

}

void RowHeights::setUniform(std::size_t count, double height)
{
    heights_ = {};
    sums_ = {};
    count_ = count;
    height_ = height;
}

void RowHeights::set(std::vector<double> heights)
{
    heights_ = std::move(heights);
    count_ = heights_.size();
    build();
}

void RowHeights::build()
{
    sums_.assign(count_ + 1, 0);
    for (std::size_t i = 1; i <= count_; ++i) {
        sums_[i] += heights_[i - 1];
        const std::size_t above = i + lowestBit(i);
        if (above <= count_)
            sums_[above] += sums_[i];
    }
}

void RowHeights::spread()
{
    if (!isUniform() || !count_)
        return;
    heights_.assign(count_, height_);
    build();
}

double RowHeights::top(std::size_t row) const
{
    row = std::min(row, count_);
    if (isUniform())
        return static_cast<double>(row) * height_;
    double sum = 0;
    std::size_t at = 0;
    for (std::size_t part = greatestPart(count_); part; part >>= 1) {
        if (row & part)
            sum += sums_[at += part];
    }
    return sum;
}

std::size_t RowHeights::rowAt(double place) const
{
    if (!count_ || place != place || place >= total())
        return count_;
    if (place <= 0)
        return 0;
    if (isUniform()) {
        // A quotient may be rounded up to the next row.
        auto row = std::min(static_cast<std::size_t>(place / height_), count_ - 1);
        if (top(row) > place)
            --row;
        else if (row + 1 < count_ && top(row + 1) <= place)
            ++row;
        return row;
    }
    double sum = 0;
    std::size_t at = 0;
    for (std::size_t part = greatestPart(count_); part; part >>= 1) {
        if (at + part <= count_ && sum + sums_[at + part] <= place)
            sum += sums_[at += part];
    }
    return std::min(at, count_ - 1);
}

void RowHeights::setHeight(std::size_t row, double height)
{
    if (row >= count_ || this->height(row) == height)
        return;
    spread();
    heights_[row] = height;
    // Parts are added up anew, because differences would let rounding pile up.
    for (std::size_t i = row + 1; i <= count_; i += lowestBit(i)) {
        double sum = heights_[i - 1];
        const std::size_t from = i - lowestBit(i);
        for (std::size_t below = i - 1; below > from; below -= lowestBit(below))
            sum += sums_[below];
        sums_[i] = sum;
    }
}

}
