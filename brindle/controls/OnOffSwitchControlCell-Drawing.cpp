// SPDX-License-Identifier: Apache-2.0
#include "OnOffSwitchControlCell.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSGradient.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSShadow.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSView.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

#include <cstdlib>

namespace brindle {

template <> struct OnOffSwitchControlCell::Methods<struct Drawing> {

    static constexpr CGFloat kRadius = 2.5;

    // Gradients run from top to bottom in every view.
    static CGFloat downward(NSView* view) { return maybe(view)->isFlipped() ? 90 : 270; }
    static Ref<NSColor> white(double white, double alpha)
    {
        return NSColor::cls().colorWithCalibratedWhite_alpha(white, alpha);
    }
    static Ref<NSGradient> gradient(const Ref<NSColor>& start, const Ref<NSColor>& end)
    {
        return alloc<NSGradient>()->initWithStartingColor_endingColor(start.get(), end.get());
    }
    static Ref<NSBezierPath> rounded(NSRect rect)
    {
        return NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
            rect, kRadius, kRadius);
    }

    // ---- the switch

    static void drawTrack(NSRect frame, NSView* view)
    {
        const Ref<NSBezierPath> outline = rounded(NSInsetRect(frame, 1, 1));
        white(0.125, 1)->setStroke();
        outline->stroke();
        gradient(white(static_cast<double>(0.62F), 1), white(2.0 / 3, 1))
            ->drawInBezierPath_angle(outline.get(), downward(view));
    }
    static void drawInnerShadow(NSRect frame, NSView* view)
    {
        constexpr CGFloat kDepth = 4;
        const GraphicsStateGuard saved;
        rounded(frame)->addClip();
        NSRect band = frame;
        band.size.height = kDepth;
        if (!maybe(view)->isFlipped())
            band.origin.y += frame.size.height - kDepth;
        gradient(white(0, static_cast<double>(0.38F)), white(0, 0))
            ->drawInRect_angle(band, downward(view));
    }
    static void washOut(NSRect frame)
    {
        const Ref<NSGraphicsContext> current = NSGraphicsContext::cls().currentContext();
        const Ref<class CGContext> context = maybe(current)->graphicsPort();
        const Ref<class CGColor> grey
            = Ref<class CGColor>::adopt(CGColorCreateGenericGray(1.0, 2.0 / 3));
        const GraphicsStateGuard saved;
        CGContextSetBlendMode(context.get(), kCGBlendModeLighten);
        CGContextSetFillColorWithColor(context.get(), grey.get());
        CGContextFillRect(context.get(), frame);
    }
    static void drawWithFrame(OnOffSwitchControlCell& self, NSRect frame, NSView* view)
    {
        if (self.tracking_)
            self.trackingCellFrame_ = frame;
        const Ref<class CGContext> context = currentCGContext();
        CGContextBeginTransparencyLayer(context.get(), nullptr);
        drawTrack(frame, view);
        drawInnerShadow(frame, view);
        self.drawInteriorWithFrame_inView(frame, view);
        if (!self.isEnabled())
            washOut(frame);
        CGContextEndTransparencyLayer(context.get());
    }

    static NSRect thumbInDrag(OnOffSwitchControlCell& self, NSRect thumb, NSRect inner)
    {
        const double greatest = inner.origin.x + inner.size.width - thumb.size.width;
        thumb.origin.x += self.trackingPoint_.x - self.initialTrackingPoint_.x;
        if (thumb.origin.x < inner.origin.x)
            thumb.origin.x = inner.origin.x;
        if (thumb.origin.x > greatest)
            thumb.origin.x = greatest;
        return thumb;
    }
    static void drawInterior(OnOffSwitchControlCell& self, NSRect frame, NSView* view)
    {
        const NSRect inner = NSInsetRect(frame, 1, 1);
        NSRect thumb = self.thumbRectInFrame(frame);
        {
            const GraphicsStateGuard saved;
            rounded(inner)->addClip();
            if (self.tracking_) {
                thumb = thumbInDrag(self, thumb, inner);
                self.trackingThumbCenterX_ = self.centerXForThumbWithFrame(frame);
            }
            drawThumb(self, thumb, view);
        }
        if (self.tracking_ && std::getenv("KNTOnOffButtonCellDebug"))
            drawDecision(self, thumb, inner);
    }
    static void drawThumb(OnOffSwitchControlCell& self, NSRect rect, NSView* view)
    {
        const Ref<NSBezierPath> thumb = rounded(rect);
        const Ref<NSShadow> shadow = make<NSShadow>();
        shadow->setShadowColor(white(0, 0.5).get());
        shadow->setShadowBlurRadius(3);
        shadow->setShadowOffset({ 0, 0 });
        shadow->set();
        NSColor::cls().whiteColor()->setFill();
        if (self.showsFirstResponder() && self.focusRingType() != NSFocusRingTypeNone)
            NSSetFocusRingStyle(NSFocusRingBelow);
        thumb->fill();
        gradient(white(1, 1), white(static_cast<double>(0.9F), 1))
            ->drawInBezierPath_angle(thumb.get(), downward(view));
    }

    // Shows where the thumb is and where the decision turns.
    static void line(double x, double from, double to)
    {
        NSBezierPath::cls().strokeLineFromPoint_toPoint({ x, from }, { x, to });
    }
    static void drawDecision(OnOffSwitchControlCell& self, NSRect thumb, NSRect inner)
    {
        const double third = thumb.size.height / 3;
        line(thumb.origin.x + thumb.size.width * 0.5, thumb.origin.y + third,
            thumb.origin.y + thumb.size.height * 2 / 3);
        const auto limit = [&](double part) {
            line(inner.origin.x + inner.size.width * part, NSMinY(inner), NSMaxY(inner));
        };
        if (!self.allowsMixedState())
            return limit(0.5);
        limit(1.0 / 3);
        limit(2.0 / 3);
    }

    // ---- tint and labels

    struct Pair {
        Ref<NSColor> on;
        Ref<NSColor> off;
    };
    static Ref<NSColor> rgb(double red, double green, double blue, float alpha)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            red, green, blue, static_cast<double>(alpha));
    }
    static Pair colors(OnOffSwitchControlCell& self)
    {
        switch (self.onOffSwitchControlColors()) {
        case OnOffSwitchControlCustomColors:
            return { self.customOnColor(), self.customOffColor() };
        case OnOffSwitchControlDefaultColors:
            return { rgb(0, 0.3, 1, 0.6F), rgb(1, 0, 0, 0) };
        case OnOffSwitchControlGreenRedColors:
            return { rgb(0, 0.7, 0, 0.6F), rgb(0.7, 0, 0, 0.6F) };
        case OnOffSwitchControlBlueRedColors:
            return { rgb(0, 0.3, 1, 0.6F), rgb(0.7, 0, 0, 0.6F) };
        default:
            return {};
        }
    }
    static void tintBackground(OnOffSwitchControlCell& self, NSRect frame, NSView* view)
    {
        const NSRect thumb = self.thumbRectInFrame(frame);
        const double center = self.centerXForThumbWithFrame(frame);
        {
            const GraphicsStateGuard saved;
            rounded(frame)->addClip();
            NSRect left;
            NSRect right;
            NSDivideRect(frame, &left, &right, center - frame.origin.x, NSMinXEdge);
            const Pair pair = colors(self);
            if (pair.on && pair.off) {
                gradient(pair.on, pair.on)
                    ->drawInRect_angle(NSInsetRect(left, 1, 1), downward(view));
                gradient(pair.off, pair.off)
                    ->drawInRect_angle(NSInsetRect(right, 1, 1), downward(view));
            }
        }
        if (self.showsOnOffLabels())
            drawLabels(self, frame, thumb, center);
    }
    static void drawLabels(OnOffSwitchControlCell& self, NSRect frame, NSRect thumb, double center)
    {
        const double room = frame.size.width - thumb.size.width;
        const double half = thumb.size.width * 0.5;
        const double start = self.tracking_ ? center - half : thumb.origin.x;
        const double end = self.tracking_ ? center + half : thumb.origin.x + thumb.size.width;
        const auto area = [&](double x) {
            return NSMakeRect(x, frame.origin.y, room - 2.0, frame.size.height);
        };
        self.drawText_withFrame(self.onSwitchLabel().get(), area(start - room + 2.0));
        self.drawText_withFrame(self.offSwitchLabel().get(), area(end + 1.0));
    }
    static void drawText(OnOffSwitchControlCell& self, NSString* text, NSRect frame)
    {
        if (!text)
            return;
        const Ref<NSFont> font = NSFont::cls().boldSystemFontOfSize(
            NSFont::cls().systemFontSizeForControlSize(self.controlSize()));
        const Ref<NSColor> color = NSColor::cls().whiteColor();
        const Ref<NSDictionary> attributes = makeDictionary({ { NSFontAttributeName, font.get() },
            { NSForegroundColorAttributeName, color.get() } });
        const NSSize size = sizeWithAttributes(text, attributes.get());
        drawAtPoint_withAttributes(text,
            { frame.origin.x + (frame.size.width - size.width) * 0.5,
                frame.origin.y + (frame.size.height - size.height) * 0.5 },
            attributes.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawWithFrame:inView:", imp<drawWithFrame> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "tintBackgroundWithFrame:inView:", imp<tintBackground> },
            { "drawText:withFrame:", imp<drawText> },
        });
    }
};
BRINDLE_RECORD(OnOffSwitchControlCell, Drawing)

}
