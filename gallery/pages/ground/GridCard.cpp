// SPDX-License-Identifier: Apache-2.0
#include "GridCard.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSEvent.h"
#include "appkit/NSTrackingArea.h"
#include "core/BRGeometry.h"
#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GridCard::Methods<struct Snapping> {

    static constexpr double kFooter = 24;

    static Ref<NSView> initWithFrame(GridCard& self, NSRect frame)
    {
        self.setHeading("Snapped grid"_ns);
        self.setCaption("Even rows for this view's height; move, drag, resize the window"_ns);
        self.standardHeight_ = 22;
        return super<GridCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static bool mouseDownCanMoveWindow(GridCard&) { return false; }

    static NSRect gridRect(GridCard& self)
    {
        NSRect grid = self.bodyRect();
        grid.size.height = std::max(0.0, grid.size.height - kFooter);
        return grid;
    }

    /// The side of a cell: an even share of the grid's height.
    static double cellSide(GridCard& self)
    {
        const double height = gridRect(self).size.height;
        const double rows = BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(
            self.standardHeight_, height);
        return rows >= 1 ? height / rows : std::max(height, 1.0);
    }

    static NSPoint snapped(GridCard& self, NSPoint place)
    {
        const double side = cellSide(self);
        return { std::floor(place.x / side) * side, std::floor(place.y / side) * side };
    }

    static void track(GridCard& self, NSEvent* event)
    {
        const NSRect grid = gridRect(self);
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        self.inside_ = self.mouse_inRect(place, grid);
        self.pointer_ = { std::clamp(place.x - grid.origin.x, 0.0, grid.size.width - 1),
            std::clamp(place.y - grid.origin.y, 0.0, grid.size.height - 1) };
        self.setNeedsDisplay(true);
    }

    static void updateTrackingAreas(GridCard& self)
    {
        const Ref<NSArray> areas = self.trackingAreas();
        for (NSObject* area : *areas)
            self.removeTrackingArea(static_cast<NSTrackingArea*>(area));
        const auto area
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(gridRect(self),
                NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveAlways,
                &self, nullptr);
        self.addTrackingArea(area.get());
    }

    static void mouseMoved(GridCard& self, NSEvent* event) { track(self, event); }
    static void mouseExited(GridCard& self, NSEvent*)
    {
        self.inside_ = false;
        self.setNeedsDisplay(true);
    }
    static void mouseDown(GridCard& self, NSEvent* event)
    {
        track(self, event);
        self.anchor_ = self.pointer_;
        self.dragging_ = self.inside_;
    }
    static void mouseDragged(GridCard& self, NSEvent* event) { track(self, event); }
    static void mouseUp(GridCard& self, NSEvent* event)
    {
        track(self, event);
        self.dragging_ = false;
    }

    static void setStandardHeight(GridCard& self, double height)
    {
        self.standardHeight_ = height;
        self.setNeedsDisplay(true);
    }

    static void drawLines(NSRect grid, double side)
    {
        NSColor* const color = palette().grid.get();
        for (double y = 0; y <= grid.size.height + 0.5; y += side)
            fill(NSMakeRect(grid.origin.x, grid.origin.y + std::round(y), grid.size.width, 1),
                color);
        for (double x = 0; x <= grid.size.width + 0.5; x += side)
            fill(NSMakeRect(grid.origin.x + std::round(x), grid.origin.y, 1, grid.size.height),
                color);
    }

    static void drawSelection(GridCard& self, NSRect grid, double side)
    {
        const NSPoint a = snapped(self, self.dragging_ ? self.anchor_ : self.pointer_);
        const NSPoint b = snapped(self, self.pointer_);
        NSRect cells = NSMakeRect(std::min(a.x, b.x), std::min(a.y, b.y),
            std::abs(a.x - b.x) + side, std::abs(a.y - b.y) + side);
        cells.origin.x += grid.origin.x;
        cells.origin.y += grid.origin.y;
        cells = NSIntersectionRect(cells, grid);
        fillRounded(inset(cells, 1), 3, palette().soft.get());
        strokeRounded(cells, 4, palette().accent.get());
    }

    static void drawBody(GridCard& self, NSRect body)
    {
        const Palette& colors = palette();
        const NSRect grid = gridRect(self);
        const double side = cellSide(self);
        drawLines(grid, side);
        if (self.inside_ || self.dragging_)
            drawSelection(self, grid, side);
        const auto text = self.inside_
            ? NSString::cls().stringWithFormat("x %.1f snaps to %.0f    y %.1f snaps to %.0f"_ns,
                self.pointer_.x, BRRoundToNearestInterval(self.pointer_.x, side), self.pointer_.y,
                BRRoundToNearestInterval(self.pointer_.y, side))
            : NSString::cls().stringWithFormat(
                "%.0f rows of %.2f points"_ns, grid.size.height / side, side);
        drawText(text.get(), { body.origin.x, NSMaxY(grid) + 8 }, Style::caption,
            colors.quietText.get());
    }

    static void table(Builder& t)
    {
        t.properties({ property<&GridCard::standardHeight_>("standardHeight", nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "mouseEntered:", imp<mouseMoved> },
            { "mouseMoved:", imp<mouseMoved> },
            { "mouseExited:", imp<mouseExited> },
            { "mouseDown:", imp<mouseDown> },
            { "mouseDragged:", imp<mouseDragged> },
            { "mouseUp:", imp<mouseUp> },
            { "setStandardHeight:", imp<setStandardHeight> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(GridCard, Snapping)

}
