// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace brindle {

/// Where the rows of a table lie, one below the other.
///
/// Rows of one height take no memory, however many they are. Others lie in a tree of sums: a row's place, the row at a place
/// and a new height cost the logarithm of their number. Sums are always added up from the greatest part down, so the row
/// at `top(row)` is `row`, to the last bit.
class RowHeights {
public:
    /// Makes all rows as high as this.
    void setUniform(std::size_t count, double height);
    void set(std::vector<double> heights);

    std::size_t count() const { return count_; }
    bool isUniform() const { return heights_.empty(); }
    double total() const { return top(count_); }
    /// Answers where a row begins; the row behind the last one begins where all end.
    double top(std::size_t row) const;
    double height(std::size_t row) const { return isUniform() ? height_ : heights_[row]; }
    /// Answers the row at a place, or `count()` behind the last one and for what is no number. Before the first it is 0.
    std::size_t rowAt(double place) const;
    /// Gives one row another height.
    void setHeight(std::size_t row, double height);

private:
    void build();
    void spread();

    std::vector<double> heights_; // empty while all are the same
    std::vector<double> sums_; // from 1 on: of as many rows as its lowest bit says, up to this one
    std::size_t count_ = 0;
    double height_ = 0;
};

}
