// SPDX-License-Identifier: Apache-2.0
#include "GalleryWindow.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "appkit/NSView.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryWindow::Methods<struct KeyLoop> {

    struct Part {
        double row, left;
        NSView* view;
        bool operator<(const Part& other) const
        {
            return row != other.row ? row < other.row : left < other.left;
        }
    };
    /// What stands a few points higher than its neighbour is still beside it.
    static constexpr double kLine = 12;

    static void collect(NSView& view, std::vector<NSView*>& found)
    {
        std::vector<Part> parts;
        for (NSView* part : each<NSView>(view.subviews())) {
            const NSRect place = part->convertRect_toView(part->bounds(), nullptr);
            parts.push_back({ std::round(-NSMaxY(place) / kLine), NSMinX(place), part });
        }
        std::stable_sort(parts.begin(), parts.end());
        for (const Part& part : parts) {
            if (part.view->acceptsFirstResponder())
                found.push_back(part.view);
            collect(*part.view, found);
        }
    }
    static void recalculate(GalleryWindow& self)
    {
        std::vector<NSView*> views;
        const Ref<NSView> content = self.contentView();
        collect(*content, views);
        for (std::size_t i = 0; i < views.size(); ++i)
            views[i]->setNextKeyView(views[(i + 1) % views.size()]);
    }
    static void selectNext(GalleryWindow& self, NSObject* sender)
    {
        self.recalculateKeyViewLoop();
        super<GalleryWindow, "selectNextKeyView:">(self, sender);
    }
    static void selectPrevious(GalleryWindow& self, NSObject* sender)
    {
        self.recalculateKeyViewLoop();
        super<GalleryWindow, "selectPreviousKeyView:">(self, sender);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "recalculateKeyViewLoop", imp<recalculate> },
            { "selectNextKeyView:", imp<selectNext> },
            { "selectPreviousKeyView:", imp<selectPrevious> },
        });
    }
};
BRINDLE_RECORD(GalleryWindow, KeyLoop)

}
