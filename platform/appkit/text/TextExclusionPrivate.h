// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "foundation/NSGeometry.h"

namespace brindle {

class NSBezierPath;

namespace layouts {

    struct Container;

    /// A stretch of a row that text may use, in its container's coordinates.
    struct FreeSpan {
        double left = 0;
        double right = 0;

        double width() const { return right - left; }
    };

    /// An area that text keeps out of. A path with places that are no numbers covers nothing.
    class Exclusion {
    public:
        explicit Exclusion(NSBezierPath& path);

        double bottom() const { return bottom_; }
        /// Takes what the area covers anywhere between two heights out of a row's free stretches.
        void cut(std::vector<FreeSpan>& free, double top, double bottom) const;

    private:
        struct Edge {
            NSPoint from;
            NSPoint to;
        };
        void addEdge(NSPoint from, NSPoint to);
        void cutAt(std::vector<FreeSpan>& free, double y) const;

        std::vector<Edge> edges_; // those that go up or down
        bool evenOdd_ = false;
        double top_ = 0;
        double bottom_ = 0;
    };

    /// Answers the stretches that a row of text may use, from left to right, and moves it down to where there are any.
    /// - y: the top of the row.
    std::vector<FreeSpan> freeRow(const Container& container, double& y, double height);
    /// Answers where to look for another row below one of a height that nothing found place in.
    double nextRow(const Container& container, double y, double height);

}

}
