// SPDX-License-Identifier: Apache-2.0
#include "TrackingIndexPrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle {

std::size_t& TrackingIndex::counted()
{
    static constinit std::size_t count = 0;
    return count;
}

std::size_t TrackingIndex::comparisons() { return std::exchange(counted(), 0); }

namespace {

    // A number, so that sorting has an order whatever a host passes.
    double number(double value) { return value == value ? value : 0; }

}

TrackingIndex::Tree::Tree(std::vector<Box> leaves)
{
    // Slices of equal number from top to bottom, each sorted from left to right.
    const auto middleY
        = [](const Box& a, const Box& b) { return a.bottom + a.top < b.bottom + b.top; };
    const auto middleX
        = [](const Box& a, const Box& b) { return a.left + a.right < b.left + b.right; };
    std::sort(leaves.begin(), leaves.end(), middleY);
    const std::size_t nodes = (leaves.size() + kFan - 1) / kFan;
    const std::size_t slice
        = kFan * static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(nodes))));
    for (std::size_t i = 0; i < leaves.size(); i += slice) {
        const std::size_t end = std::min(i + slice, leaves.size());
        std::sort(leaves.begin() + static_cast<std::ptrdiff_t>(i),
            leaves.begin() + static_cast<std::ptrdiff_t>(end), middleX);
    }
    levels.push_back(std::move(leaves));
    while (levels.back().size() > kFan) {
        const std::vector<Box>& below = levels.back();
        std::vector<Box> above;
        above.reserve(below.size() / kFan + 1);
        for (std::size_t i = 0; i < below.size(); i += kFan) {
            Box box = below[i];
            box.first = static_cast<std::uint32_t>(i);
            for (std::size_t j = i + 1; j < std::min(i + kFan, below.size()); ++j) {
                box.left = std::min(box.left, below[j].left);
                box.bottom = std::min(box.bottom, below[j].bottom);
                box.right = std::max(box.right, below[j].right);
                box.top = std::max(box.top, below[j].top);
            }
            above.push_back(box);
        }
        levels.push_back(std::move(above));
    }
}

void TrackingIndex::add(NSTrackingArea& area)
{
    const auto slot = static_cast<std::uint32_t>(slots_.size());
    TrackingAccess::number(area) = slot;
    slots_.emplace_back(&area);
    ++living_;
    if (TrackingAccess::options(area) & NSTrackingInVisibleRect) {
        everywhere_.push_back(slot);
        return;
    }
    const NSRect r = TrackingAccess::rect(area);
    fresh_.push_back(
        { number(NSMinX(r)), number(NSMinY(r)), number(NSMaxX(r)), number(NSMaxY(r)), slot });
}

void TrackingIndex::remove(NSTrackingArea& area)
{
    const Ref<NSTrackingArea> removed = std::move(slots_[TrackingAccess::number(area)]);
    --living_;
    if (slots_.size() > 64 && living_ < slots_.size() / 2)
        rebuild();
}

void TrackingIndex::rebuild()
{
    const std::vector<Ref<NSTrackingArea>> old = std::move(slots_);
    slots_.clear();
    everywhere_.clear();
    fresh_.clear();
    trees_.clear();
    living_ = 0;
    for (const Ref<NSTrackingArea>& area : old) {
        if (area)
            add(*area);
    }
}

void TrackingIndex::settle()
{
    if (fresh_.empty())
        return;
    std::vector<Box> boxes = std::move(fresh_);
    fresh_.clear();
    while (!trees_.empty() && trees_.back().size() <= boxes.size() * 2) {
        const std::vector<Box>& smaller = trees_.back().levels.front();
        boxes.insert(boxes.end(), smaller.begin(), smaller.end());
        trees_.pop_back();
    }
    std::erase_if(boxes, [this](const Box& box) { return !slots_[box.first]; });
    if (!boxes.empty())
        trees_.emplace_back(std::move(boxes));
}

std::vector<Ref<NSObject>> TrackingIndex::all() const
{
    std::vector<Ref<NSObject>> areas;
    areas.reserve(living_);
    for (const Ref<NSTrackingArea>& area : slots_) {
        if (area && !TrackingAccess::isHover(*area))
            areas.emplace_back(area);
    }
    return areas;
}

}
