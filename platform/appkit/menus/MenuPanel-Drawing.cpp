// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "MenuSessionPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSMutableAttributedString.h"
#include "quartz/CGContext.h"

namespace brindle {

using namespace menus;
using controls::Shade;

namespace {

    Shade ground()
    {
        return controls::isDark() ? Shade { 0.184, 0.192, 0.212, 1 }
                                  : Shade { 0.973, 0.976, 0.984, 1 };
    }
    Shade edge()
    {
        return controls::isDark() ? Shade { 0, 0, 0, 0.7 } : Shade { 0, 0.01, 0.04, 0.22 };
    }

    Shade inkFor(bool enabled, bool highlighted)
    {
        const NSColor::Meta colors = NSColor::cls();
        return controls::shadeOf(highlighted ? colors.selectedMenuItemTextColor()
                : enabled                    ? colors.controlTextColor()
                                             : colors.disabledControlTextColor());
    }

    Ref<NSColor> colorOf(Shade ink)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            ink.red, ink.green, ink.blue, ink.alpha);
    }

    Ref<NSAttributedString> inked(NSString* text, NSFont* font, Shade ink)
    {
        const Ref<NSDictionary> attributes = makeDictionary({ { NSFontAttributeName, font },
            { NSForegroundColorAttributeName, colorOf(ink).get() } });
        return alloc<NSAttributedString>()->initWithString_attributes(text, attributes.get());
    }

    NSRect centred(NSSize size, CGFloat left, NSRect row)
    {
        return NSMakeRect(left, NSMidY(row) - size.height / 2, size.width, size.height);
    }

    void drawSeparator(NSRect row)
    {
        const CGFloat p = controls::pixel();
        const NSRect line
            = NSMakeRect(NSMinX(row) + kSide, NSMidY(row) - p / 2, row.size.width - 2 * kSide, p);
        controls::fillRounded(
            controls::onPixels(line), 0, controls::shadeOf(NSColor::cls().separatorColor()));
    }

    // What stands at the right answers where the room for the title ends.

    CGFloat drawArrow(NSRect row, Shade ink)
    {
        const CGFloat right = NSMaxX(row) - kSide;
        const CGFloat middle = NSMidY(row);
        const NSPoint points[] { { right - 4.5, middle - 4 }, { right - 0.5, middle },
            { right - 4.5, middle + 4 } };
        controls::strokeLine(points, 3, 1.6, controls::faded(ink, ink.alpha * 0.75));
        return right - kArrowWidth - kKeyGap / 2;
    }

    CGFloat drawKey(const NSMenuItem& item, NSFont* font, NSRect row, Shade ink)
    {
        const CGFloat right = NSMaxX(row) - kSide;
        const std::u16string signs = keySigns(item, ApplicationAccess::display().commandKey());
        if (signs.empty())
            return right;
        const Ref<NSAttributedString> text
            = inked(stringFrom(std::u16string_view(signs)).get(), font, ink);
        const CGFloat width = controls::sizeOf(text.get()).width;
        controls::drawText(text.get(),
            NSMakeRect(right - width, NSMinY(row), width, row.size.height), NSTextAlignmentRight);
        return right - width - kKeyGap / 2;
    }

    /// Answers where the title begins.
    CGFloat drawImageOf(const NSMenuItem& item, NSImage& image, CGFloat left, NSRect row, Shade ink)
    {
        const NSSize size = image.size();
        const NSSize shown { size.width, std::min(size.height, row.size.height) };
        controls::drawImage(&image, controls::onPixels(centred(shown, left, row)), ink,
            MenuItemAccess::isEnabled(item) ? 1 : 0.4);
        return left + size.width + kImageGap;
    }

    void drawAttributed(NSAttributedString& title, NSRect place, Shade ink, bool inInk)
    {
        const Ref<NSMutableAttributedString> text
            = cast<NSMutableAttributedString>(title.mutableCopy());
        if (inInk)
            text->addAttribute_value_range(
                NSForegroundColorAttributeName, colorOf(ink).get(), NSMakeRange(0, text->length()));
        const GraphicsStateGuard saved;
        CGContextClipToRect(currentCGContext().get(), place);
        drawAtPoint(text, { NSMinX(place), std::round(NSMidY(place) - size(text).height / 2) });
    }

    void drawStateOf(const NSMenuItem& item, NSRect row, Shade ink)
    {
        const NSCellStateValue state = item.state();
        const Ref<NSImage> mark = state == NSOnState ? item.onStateImage()
            : state == NSMixedState                  ? item.mixedStateImage()
                                                     : item.offStateImage();
        if (!mark)
            return;
        const NSRect place = centred({ kStateSide, kStateSide }, NSMinX(row) + kSide - 2, row);
        controls::drawImage(mark.get(), controls::onPixels(place), ink, 1);
    }

}

void MenuPanel::drawBody(NSRect dirty) const
{
    const NSRect body { { margin_, margin_ }, frame_.size };
    const CGFloat radius = margin_ > 0 ? kRadius : 0;
    if (margin_ > 0 && !NSContainsRect(body, dirty))
        drawShadow(body);
    controls::fillRounded(body, radius, ground());
    controls::frameRounded(body, radius, controls::pixel(), edge());
    if (controls::isDark()) {
        const CGFloat p = controls::pixel();
        controls::frameRounded(NSInsetRect(body, p, p), radius - p, p, { 1, 1, 1, 0.12 });
    }
}

void MenuPanel::drawRow(const MenuRow& row, NSRect rect, bool highlighted) const
{
    const NSMenuItem& item = *row.item;
    if (MenuItemAccess::view(item))
        return;
    if (MenuItemAccess::isSeparator(item))
        return drawSeparator(rect);
    if (highlighted)
        controls::fillRounded(NSInsetRect(rect, kRim, 0), kRowRadius,
            controls::shadeOf(NSColor::cls().selectedMenuItemColor()));
    const Shade ink = inkFor(MenuItemAccess::isEnabled(item), highlighted);
    if (MenuAccess::showsState(*menu_))
        drawStateOf(item, rect, ink);
    const CGFloat right = MenuItemAccess::submenu(item)
        ? drawArrow(rect, ink)
        : drawKey(item, layout_.font.get(), rect,
            controls::faded(ink, ink.alpha * (highlighted ? 0.85 : 0.55)));
    CGFloat left = NSMinX(rect) + layout_.titleLeft
        + kIndent * static_cast<CGFloat>(MenuItemAccess::indentation(item));
    if (const Ref<NSImage>& image = MenuItemAccess::image(item))
        left = drawImageOf(item, *image, left, rect, ink);
    const NSRect place = NSMakeRect(left, NSMinY(rect), right - left, rect.size.height);
    if (const Ref<NSAttributedString>& title = MenuItemAccess::attributed(item))
        drawAttributed(*title, place, ink, highlighted || !MenuItemAccess::isEnabled(item));
    else
        controls::drawText(inked(titleOnOneLine(item).get(), layout_.font.get(), ink).get(), place,
            NSTextAlignmentLeft);
}

void MenuPanel::drawStrips() const
{
    const NSRect body { { margin_, margin_ }, frame_.size };
    for (const int direction : { -1, 1 }) {
        if (!showsStrip(direction))
            continue;
        const CGFloat top = direction < 0 ? NSMinY(body) : NSMaxY(body) - kScrollStrip;
        const CGFloat p = controls::pixel();
        const NSRect strip
            = NSMakeRect(NSMinX(body) + p, top + p, body.size.width - 2 * p, kScrollStrip - 2 * p);
        controls::fillRounded(strip, margin_ > 0 ? kRadius - p : 0, ground());
        // Its inner corners are square: rows go on behind it.
        const CGFloat inner = direction < 0 ? NSMidY(strip) : NSMinY(strip);
        controls::fillRounded(
            NSMakeRect(NSMinX(strip), inner, strip.size.width, strip.size.height / 2), 0, ground());
        const CGFloat middle = NSMidY(strip);
        const CGFloat tip = middle + direction * 2.25;
        const CGFloat foot = middle - direction * 2.25;
        const NSPoint arrow[] { { NSMidX(body) - 5, foot }, { NSMidX(body), tip },
            { NSMidX(body) + 5, foot } };
        controls::strokeLine(
            arrow, 3, 1.6, controls::shadeOf(NSColor::cls().secondaryLabelColor()));
    }
}

void MenuPanel::draw(NSRect dirty) const
{
    drawBody(dirty);
    const GraphicsStateGuard saved;
    CGContextClipToRect(currentCGContext().get(), { { margin_, margin_ }, frame_.size });
    const CGFloat top = NSMinY(dirty) - margin_ + scroll_;
    auto row = std::lower_bound(layout_.rows.begin(), layout_.rows.end(), top,
        [](const MenuRow& one, CGFloat y) { return one.bottom() < y; });
    for (; row != layout_.rows.end(); ++row) {
        const NSInteger index = row - layout_.rows.begin();
        const NSRect rect = rectInView(index);
        if (NSMinY(rect) > NSMaxY(dirty))
            break;
        drawRow(*row, rect, index == highlighted_ && isLive(index));
    }
    drawStrips();
}

}
