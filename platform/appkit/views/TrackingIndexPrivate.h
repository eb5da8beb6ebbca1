// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "appkit/NSTrackingArea.h"

namespace brindle {

/// The tracking areas of one view, found by position in logarithmic time.
///
/// Rectangles lie in packed trees whose sizes double; new ones wait in a list until somebody searches. Removing only
/// leaves a hole; the trees are made anew when most of them is holes. Areas that stand for the whole visible part
/// of their view have no rectangle and are kept apart.
class TrackingIndex {
public:
    void add(NSTrackingArea& area);
    void remove(NSTrackingArea& area);
    bool isEmpty() const { return living_ == 0; }
    std::size_t count() const { return living_; }
    /// Answers the areas in the order in which they were added, without those of hovering.
    std::vector<Ref<NSObject>> all() const;
    /// Calls `visit(NSTrackingArea&)` for each area at a point. The areas must not change meanwhile.
    template <class Visit> void at(NSPoint point, Visit&& visit)
    {
        settle();
        for (const std::uint32_t number : everywhere_) {
            if (NSTrackingArea* area = slots_[number].get())
                visit(*area);
        }
        for (const Tree& tree : trees_) {
            tree.search(point, [&](std::uint32_t number) {
                if (NSTrackingArea* area = slots_[number].get())
                    visit(*area);
            });
        }
    }
    /// Answers how many rectangles the last search looked at; for tests.
    static std::size_t comparisons();

private:
    struct Box {
        double left;
        double bottom;
        double right;
        double top;
        std::uint32_t
            first; // the entry's number, or the place of the first child in the level below
        bool contains(NSPoint p) const
        {
            return p.x >= left && p.x < right && p.y >= bottom && p.y < top;
        }
    };
    // Levels of boxes, the leaves first; each box of a level covers up to `kFan` of the level below.
    struct Tree {
        static constexpr std::size_t kFan = 8;
        std::vector<std::vector<Box>> levels;

        explicit Tree(std::vector<Box> leaves);
        std::size_t size() const { return levels.front().size(); }
        template <class Visit> void search(NSPoint point, Visit&& visit) const
        {
            descend(levels.size() - 1, 0, levels.back().size(), point, visit);
        }
        template <class Visit>
        void descend(std::size_t level, std::size_t begin, std::size_t end, NSPoint point,
            Visit&& visit) const
        {
            const std::vector<Box>& boxes = levels[level];
            counted() += end - begin;
            for (std::size_t i = begin; i < end; ++i) {
                if (!boxes[i].contains(point))
                    continue;
                if (level == 0)
                    visit(boxes[i].first);
                else
                    descend(level - 1, boxes[i].first,
                        std::min<std::size_t>(boxes[i].first + kFan, levels[level - 1].size()),
                        point, visit);
            }
        }
    };

    static std::size_t& counted();
    void settle();
    void rebuild();

    std::vector<Ref<NSTrackingArea>> slots_; // by number; empty where an area was removed
    std::vector<std::uint32_t> everywhere_;
    std::vector<Box> fresh_;
    std::vector<Tree> trees_; // the largest first
    std::size_t living_ = 0;
};

/// The parts of a tracking area that only its view and its window use.
struct TrackingAccess {
    static NSObject*& view(NSTrackingArea& area) { return area.view_; }
    static NSUInteger& number(NSTrackingArea& area) { return area.number_; }
    static NSRect rect(const NSTrackingArea& area) { return area.rect_; }
    static NSTrackingAreaOptions options(const NSTrackingArea& area) { return area.options_; }
    static NSObject* userInfo(const NSTrackingArea& area) { return area.userInfo_.get(); }
    static bool& isInside(NSTrackingArea& area) { return area.inside_; }
    static bool& isSilent(NSTrackingArea& area) { return area.silent_; }
    static bool& isHover(NSTrackingArea& area) { return area.hover_; }
};

}
