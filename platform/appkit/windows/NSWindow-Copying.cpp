// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstring>

#include "NSWindowPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "foundation/ShortVector.h"

namespace brindle {

namespace {

    using display::PixelRect;

    PixelRect shifted(PixelRect r, int right, int down)
    {
        return { r.left + right, r.top + down, r.right + right, r.bottom + down };
    }

    // A hair of rounding does not keep content from lying on whole pixels.
    bool isWhole(double number) { return std::abs(number - std::round(number)) < 1e-6; }

    bool liesOnPixels(NSRect rect, double scale)
    {
        return isWhole(NSMinX(rect) * scale) && isWhole(NSMinY(rect) * scale)
            && isWhole(NSMaxX(rect) * scale) && isWhole(NSMaxY(rect) * scale);
    }

    void movePixels(Backing& backing, PixelRect from, int right, int down)
    {
        const auto row = [&](int y) {
            return backing.words + static_cast<std::ptrdiff_t>(y) * backing.size.width + from.left;
        };
        const auto bytes = static_cast<std::size_t>(from.width()) * sizeof(std::uint32_t);
        for (int i = 0; i < from.height(); ++i) {
            const int y = down > 0 ? from.bottom - 1 - i
                                   : from.top + i; // none is overwritten before it is read
            std::memmove(row(y + down) + right, row(y), bytes);
        }
    }

    using Above = ShortVector<NSRect, 16>;

    /// Finds what is drawn above a view, in window coordinates. - Returns: NO where the view is not plainly on the window.
    bool collectAbove(const NSView& view, Above& above)
    {
        for (const NSView* v = &view; v; v = ViewAccess::superview(*v)) {
            if (ViewAccess::isHidden(*v) || ViewAccess::alpha(*v) < 1 || ViewAccess::layer(*v))
                return false;
            const NSView* const parent = ViewAccess::superview(*v);
            if (!parent)
                return true;
            const std::vector<Ref<NSView>>& siblings = ViewAccess::subviews(*parent);
            for (std::size_t i = siblings.size(); i-- > 0 && siblings[i] != v;) {
                const NSView& sibling = *siblings[i];
                if (ViewAccess::layer(sibling) && !ViewAccess::isHidden(sibling))
                    return false; // its shadow may reach anywhere
                if (!ViewAccess::isHidden(sibling) && ViewAccess::alpha(sibling) > 0)
                    above.push_back(ViewAccess::visibleInWindow(sibling));
            }
        }
        return true;
    }

}

bool WindowAccess::copyForScrolling(NSView& view, NSSize by)
{
    NSWindow* const window = ViewAccess::window(view);
    if (!window)
        return false;
    WindowState& s = state(*window);
    Above above;
    if (!s.backing || s.drawing || !collectAbove(view, above))
        return false;
    const double scale = s.backing->scale;
    const AxisTransform transform = ViewAccess::toWindow(view);
    const double right = by.width * transform.scaleX * scale;
    const double down = -by.height * transform.scaleY * scale;
    const NSRect visible = ViewAccess::visibleInWindow(view);
    if (!isWhole(right) || !isWhole(down) || !liesOnPixels(visible, scale))
        return false;
    const PixelRect area = Damage::pixelsOf(visible, scale, s.backing->size);
    if (!(std::abs(right) < area.width() && std::abs(down) < area.height()))
        return false; // nothing of it stays
    const int dx = static_cast<int>(std::round(right));
    const int dy = static_cast<int>(std::round(down));
    const PixelRect kept = intersection(area, shifted(area, dx, dy));
    movePixels(*s.backing, shifted(kept, -dx, -dy), dx, dy);

    const ShortVector<PixelRect, 16> waiting(s.damage.rects().begin(), s.damage.rects().end());
    for (const PixelRect& rect : waiting)
        s.damage.add(intersection(kept, shifted(intersection(rect, area), dx, dy)));
    for (const NSRect& rect : above) {
        const PixelRect place = intersection(area, Damage::pixelsOf(rect, scale, s.backing->size));
        s.damage.add(intersection(kept, place));
        s.damage.add(intersection(kept, shifted(place, dx, dy)));
    }
    // What comes into view: full rows, and what is left of the columns.
    s.damage.add(dy > 0 ? PixelRect { area.left, area.top, area.right, kept.top }
                        : PixelRect { area.left, kept.bottom, area.right, area.bottom });
    s.damage.add(dx > 0 ? PixelRect { area.left, kept.top, kept.left, kept.bottom }
                        : PixelRect { kept.right, kept.top, area.right, kept.bottom });
    s.moved.add(kept);
    return true;
}

}
