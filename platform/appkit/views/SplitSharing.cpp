// SPDX-License-Identifier: Apache-2.0
#include "SplitPrivate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brindle::splits {

namespace {

    CGFloat sum(const std::vector<Pane>& panes)
    {
        CGFloat all = 0;
        for (const Pane& pane : panes)
            all += pane.size;
        return all;
    }

    /// Lets the panes of one priority grow or shrink by a difference. Answers what they could not take.
    CGFloat spread(std::vector<Pane>& panes, float priority, CGFloat difference)
    {
        std::vector<Pane*> takers;
        CGFloat all = 0;
        for (Pane& pane : panes) {
            if (pane.priority == priority && !pane.fixed) {
                takers.push_back(&pane);
                all += pane.size;
            }
        }
        if (takers.empty())
            return difference;
        const CGFloat wanted = std::max(all + difference, 0.0);
        for (Pane* pane : takers)
            pane->size = all > 0 ? pane->size / all * wanted
                                 : wanted / static_cast<CGFloat>(takers.size());
        return difference - (wanted - all);
    }

    /// Rounds the sizes so that what is lost at one place comes back at the next.
    void makeWhole(std::vector<Pane>& panes)
    {
        CGFloat exact = 0;
        CGFloat whole = 0;
        for (Pane& pane : panes) {
            exact += pane.size;
            const CGFloat end = std::round(exact);
            pane.size = std::max(end - whole, 0.0);
            whole = end;
        }
    }

}

void share(std::vector<Pane>& panes, CGFloat room)
{
    CGFloat difference = std::max(room, 0.0) - sum(panes);
    float priority = -std::numeric_limits<float>::infinity();
    while (std::abs(difference) > 1e-9) {
        float next = std::numeric_limits<float>::infinity();
        for (const Pane& pane : panes) {
            if (pane.priority > priority)
                next = std::min(next, pane.priority);
        }
        if (!std::isfinite(next))
            break;
        priority = next;
        difference = spread(panes, priority, difference);
    }
    makeWhole(panes);
}

}
