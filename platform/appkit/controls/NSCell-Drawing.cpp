// SPDX-License-Identifier: Apache-2.0
#include "ControlDrawingPrivate.h"
#include "NSCellPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSView.h"
#include "foundation/NSAttributedString.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>

namespace brindle {

template <> struct NSCell::Methods<struct Drawing> {

    static constexpr CGFloat kPadding = 2; // between an edge and the text

    static CGFloat borderOf(NSCell& self)
    {
        return self.isBezeled() ? 3 : self.isBordered() ? 1 : 0;
    }

    static void drawWithFrame(NSCell& self, NSRect frame, NSView* view)
    {
        if (self.isBezeled())
            controls::drawWell(controls::onPixels(frame), 0, { .enabled = self.isEnabled() },
                controls::shadeOf(NSColor::cls().textBackgroundColor()));
        else if (self.isBordered())
            controls::frameRounded(controls::onPixels(frame), 0, 1,
                controls::shadeOf(NSColor::cls().controlDarkShadowColor()));
        self.drawInteriorWithFrame_inView(frame, view);
        if (self.showsFirstResponder() && self.focusRingType() != NSFocusRingTypeNone) {
            const GraphicsStateGuard saved;
            NSSetFocusRingStyle(NSFocusRingOnly);
            self.drawFocusRingMaskWithFrame_inView(frame, view);
        }
    }
    static void drawInterior(NSCell& self, NSRect frame, NSView*)
    {
        if (self.type() == NSTextCellType)
            controls::drawText(self.attributedStringValue().get(), self.titleRectForBounds(frame),
                self.alignment());
        else if (self.type() == NSImageCellType)
            maybe(CellAccess::of(self).image)->drawInRect(self.imageRectForBounds(frame));
    }
    static void drawRingMask(NSCell&, NSRect frame, NSView*) { NSRectFill(frame); }
    static NSRect ringBounds(NSCell&, NSRect frame, NSView*) { return frame; }

    static NSSize contentSize(NSCell& self)
    {
        if (self.type() == NSImageCellType)
            return maybe(CellAccess::of(self).image)->size();
        if (self.type() != NSTextCellType)
            return {};
        const NSSize text = controls::sizeOf(self.attributedStringValue().get());
        return { text.width + 2 * kPadding, text.height };
    }
    static NSSize cellSize(NSCell& self) { return self.cellSizeForBounds({ {}, { 1e4, 1e4 } }); }
    static NSSize cellSizeForBounds(NSCell& self, NSRect bounds)
    {
        const CGFloat border = 2 * borderOf(self);
        const NSSize content = contentSize(self);
        return { std::min(content.width + border, bounds.size.width),
            std::min(content.height + border, bounds.size.height) };
    }
    static NSRect drawingRect(NSCell& self, NSRect bounds)
    {
        const CGFloat border = borderOf(self);
        return NSInsetRect(bounds, border, border);
    }
    static NSRect titleRect(NSCell& self, NSRect bounds)
    {
        return NSInsetRect(self.drawingRectForBounds(bounds), kPadding, 0);
    }
    static NSRect imageRect(NSCell& self, NSRect bounds)
    {
        const NSRect room = self.drawingRectForBounds(bounds);
        const NSSize size = contentSize(self);
        return NSMakeRect(
            NSMidX(room) - size.width / 2, NSMidY(room) - size.height / 2, size.width, size.height);
    }
    static void calcDrawInfo(NSCell&, NSRect) { }

    static void table(Builder& t)
    {
        t.methods({
            { "drawWithFrame:inView:", imp<drawWithFrame> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "drawFocusRingMaskWithFrame:inView:", imp<drawRingMask> },
            { "focusRingMaskBoundsForFrame:inView:", imp<ringBounds> },
            { "cellSize", imp<cellSize> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawingRectForBounds:", imp<drawingRect> },
            { "titleRectForBounds:", imp<titleRect> },
            { "imageRectForBounds:", imp<imageRect> },
            { "calcDrawInfo:", imp<calcDrawInfo> },
        });
    }
};
BRINDLE_RECORD(NSCell, Drawing)

}
