// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "MenuLayoutPrivate.h"

namespace brindle {

namespace {

    CGFloat slid(CGFloat start, CGFloat length, CGFloat low, CGFloat high)
    {
        return std::max(std::min(start, high - length), low);
    }
    NSSize fitted(NSSize size, NSRect screen)
    {
        return { std::min(size.width, screen.size.width),
            std::min(size.height, screen.size.height) };
    }

}

NSRect placeAtPoint(NSSize wanted, NSPoint corner, NSRect screen)
{
    const NSSize size = fitted(wanted, screen);
    const bool fitsBelow = corner.y - size.height >= NSMinY(screen);
    const bool fitsAbove = corner.y + size.height <= NSMaxY(screen);
    const CGFloat low = fitsBelow || !fitsAbove ? corner.y - size.height : corner.y;
    return NSMakeRect(slid(corner.x, size.width, NSMinX(screen), NSMaxX(screen)),
        slid(low, size.height, NSMinY(screen), NSMaxY(screen)), size.width, size.height);
}

NSRect placeBelow(NSSize wanted, NSRect anchor, CGFloat left, NSRect screen)
{
    NSSize size = fitted(wanted, screen);
    const CGFloat below = NSMinY(anchor) - NSMinY(screen);
    const CGFloat above = NSMaxY(screen) - NSMaxY(anchor);
    const bool goesDown = size.height <= below || below >= above;
    const CGFloat room = goesDown ? below : above;
    if (room > menus::kScrollStrip * 3)
        size.height = std::min(size.height, room);
    const CGFloat low = goesDown ? NSMinY(anchor) - size.height : NSMaxY(anchor);
    return NSMakeRect(slid(left, size.width, NSMinX(screen), NSMaxX(screen)),
        slid(low, size.height, NSMinY(screen), NSMaxY(screen)), size.width, size.height);
}

NSRect placeBeside(NSSize wanted, NSRect row, NSRect parent, NSRect screen)
{
    constexpr CGFloat kOverlap = 3; // the edges of both run into each other
    const NSSize size = fitted(wanted, screen);
    const CGFloat right = NSMaxX(parent) - kOverlap;
    const CGFloat left = NSMinX(parent) + kOverlap - size.width;
    const bool fitsRight = right + size.width <= NSMaxX(screen);
    const bool goesRight
        = fitsRight || NSMaxX(screen) - right >= left + size.width - NSMinX(screen);
    const CGFloat top = NSMaxY(row) + menus::kRim; // its first row beside this one
    return NSMakeRect(slid(goesRight ? right : left, size.width, NSMinX(screen), NSMaxX(screen)),
        slid(top - size.height, size.height, NSMinY(screen), NSMaxY(screen)), size.width,
        size.height);
}

bool headsFor(NSPoint from, NSPoint to, NSRect target)
{
    const bool isRight = NSMinX(target) >= from.x;
    if (!isRight && NSMaxX(target) > from.x)
        return false;
    const CGFloat edge = isRight ? NSMinX(target) : NSMaxX(target);
    const CGFloat whole = edge - from.x;
    const CGFloat part = to.x - from.x;
    if (whole == 0 || part * whole <= 0)
        return false;
    // Between the lines from where it came to the two corners of the near side.
    const CGFloat share = std::min(part / whole, 1.0);
    const CGFloat low = from.y + (NSMinY(target) - from.y) * share;
    const CGFloat high = from.y + (NSMaxY(target) - from.y) * share;
    constexpr CGFloat kTolerance = 3;
    return to.y >= low - kTolerance && to.y <= high + kTolerance;
}

}
