// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSProgressIndicator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "ControlDrawingPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "quartz/CGContext.h"
#include "quartz/layers/MediaTiming.h"

namespace brindle {

template <> struct NSProgressIndicator::Methods<struct Progress> {

    static constexpr double kFrame = 1.0 / 30;
    static constexpr double kSweep = 1.4; // seconds of a bar's way there
    static constexpr double kTurn = 1; // seconds of a spinner's turn
    static constexpr int kSpokes = 12;

    // ---- values

    template <class T, T NSProgressIndicator::*Field> static T get(NSProgressIndicator& self)
    {
        return self.*Field;
    }
    template <class T, T NSProgressIndicator::*Field>
    static void set(NSProgressIndicator& self, T value)
    {
        if (value != value || self.*Field == value) // what is no number is unlike itself
            return;
        self.*Field = value;
        self.setNeedsDisplay(true);
    }
    static void increment(NSProgressIndicator& self, double difference)
    {
        self.setDoubleValue(self.value_ + difference);
    }
    static double part(NSProgressIndicator& self)
    {
        const double width = self.max_ / 2 - self.min_ / 2;
        return width > 0 ? std::clamp((self.value_ / 2 - self.min_ / 2) / width, 0.0, 1.0) : 0;
    }
    static void setStyle(NSProgressIndicator& self, NSProgressIndicatorStyle style)
    {
        if (style > NSProgressIndicatorSpinningStyle || self.style_ == style)
            return;
        self.style_ = style;
        self.displayedWhenStopped_ = style == NSProgressIndicatorBarStyle;
        self.setNeedsDisplay(true);
    }
    static void setControlSize(NSProgressIndicator& self, NSControlSize size)
    {
        if (size > NSControlSizeLarge)
            return;
        self.size_ = size;
        self.setNeedsDisplay(true);
    }
    static bool isSpinner(NSProgressIndicator& self)
    {
        return self.style_ == NSProgressIndicatorSpinningStyle;
    }
    static CGFloat thickness(NSProgressIndicator& self)
    {
        return self.size_ == NSControlSizeRegular || self.size_ == NSControlSizeLarge ? 6 : 4;
    }
    static CGFloat side(NSProgressIndicator& self)
    {
        switch (self.size_) {
        case NSControlSizeSmall:
            return 16;
        case NSControlSizeMini:
            return 12;
        case NSControlSizeLarge:
            return 40;
        default:
            return 32;
        }
    }
    static void sizeToFit(NSProgressIndicator& self)
    {
        const CGFloat width = self.frame().size.width;
        self.setFrameSize(isSpinner(self) ? NSSize { side(self), side(self) }
                                          : NSSize { width, thickness(self) + 4 });
    }

    // ---- moving

    static bool canBeSeen(NSProgressIndicator& self)
    {
        const Ref<NSWindow> window = self.window();
        return window && window->isVisible() && !self.isHiddenOrHasHiddenAncestor();
    }
    static void stopTimer(NSProgressIndicator& self)
    {
        if (const Ref<NSTimer> timer = std::exchange(self.timer_, nullptr))
            timer->invalidate();
    }
    // The timer keeps nothing alive, and goes by itself where there is nobody to see it.
    static void settle(NSProgressIndicator& self)
    {
        const bool wanted = self.moves_ && self.indeterminate_ && self.window();
        if (!wanted)
            return stopTimer(self);
        if (self.timer_)
            return;
        const WeakRef<NSProgressIndicator> weak(&self);
        self.timer_
            = NSTimer::cls().timerWithTimeInterval_repeats_block(kFrame, true, [weak](NSTimer*) {
                  const Ref<NSProgressIndicator> indicator = weak.get();
                  if (indicator && canBeSeen(*indicator))
                      indicator->setNeedsDisplay(true);
              });
        NSRunLoop::cls().mainRunLoop()->addTimer_forMode(self.timer_.get(), NSRunLoopCommonModes);
    }
    static void start(NSProgressIndicator& self, NSObject*)
    {
        if (std::exchange(self.moves_, true))
            return;
        self.start_ = CACurrentMediaTime();
        settle(self);
        self.setNeedsDisplay(true);
    }
    static void stop(NSProgressIndicator& self, NSObject*)
    {
        if (!std::exchange(self.moves_, false))
            return;
        settle(self);
        self.setNeedsDisplay(true);
    }
    static void setIndeterminate(NSProgressIndicator& self, bool indeterminate)
    {
        self.indeterminate_ = indeterminate;
        settle(self);
        self.setNeedsDisplay(true);
    }
    static void didMoveToWindow(NSProgressIndicator& self)
    {
        super<NSProgressIndicator, "viewDidMoveToWindow">(self);
        settle(self);
    }
    static void dealloc(NSProgressIndicator& self)
    {
        stopTimer(self);
        super<NSProgressIndicator, "dealloc">(self);
    }
    static double seconds(NSProgressIndicator& self)
    {
        return self.moves_ ? CACurrentMediaTime() - self.start_ : 0;
    }

    // ---- drawing

    static controls::Shade ground()
    {
        const double level = controls::isDark() ? 1 : 0;
        return { level, level, level, controls::isDark() ? 0.20 : 0.12 };
    }
    static controls::Shade fill(NSProgressIndicator& self)
    {
        return controls::shadeOf(controls::isActive(&self) ? NSColor::cls().controlAccentColor()
                                                           : NSColor::cls().knobColor());
    }
    static void drawBar(NSProgressIndicator& self)
    {
        const NSRect bounds = self.bounds();
        const bool upright = bounds.size.height > bounds.size.width;
        const CGFloat room = upright ? bounds.size.width : bounds.size.height;
        const CGFloat thick = std::min(thickness(self), room);
        const NSRect track = controls::onPixels(upright
                ? NSMakeRect(NSMidX(bounds) - thick / 2, NSMinY(bounds), thick, bounds.size.height)
                : NSMakeRect(NSMinX(bounds), NSMidY(bounds) - thick / 2, bounds.size.width, thick));
        const GraphicsStateGuard saved;
        controls::fillRounded(track, thick / 2, ground());
        const auto [from, to] = stretch(self);
        NSRect filled = track;
        if (upright) {
            filled.origin.y += track.size.height * from;
            filled.size.height = track.size.height * (to - from);
        } else {
            filled.origin.x += track.size.width * from;
            filled.size.width = track.size.width * (to - from);
        }
        if (NSIsEmptyRect(filled))
            return;
        controls::fillRounded(filled, thick / 2, fill(self));
    }
    /// Which part of a bar is filled: up to the value, or a piece that goes to and fro.
    static std::pair<double, double> stretch(NSProgressIndicator& self)
    {
        if (!self.indeterminate_)
            return { 0, part(self) };
        constexpr double kPiece = 0.3;
        const double way = std::fmod(seconds(self) / kSweep, 2.0);
        const double there = way < 1 ? way : 2 - way;
        const double smooth = there * there * (3 - 2 * there);
        return { smooth * (1 - kPiece), smooth * (1 - kPiece) + kPiece };
    }
    static NSRect disc(NSProgressIndicator& self)
    {
        const NSRect b = self.bounds();
        const CGFloat s = std::min({ side(self), b.size.width, b.size.height });
        return NSMakeRect(NSMidX(b) - s / 2, NSMidY(b) - s / 2, s, s);
    }
    static void drawSector(NSProgressIndicator& self)
    {
        const NSRect rect = NSInsetRect(controls::onPixels(disc(self)), 1, 1);
        if (NSIsEmptyRect(rect))
            return;
        const CGFloat radius = rect.size.width / 2;
        const controls::Shade shade = fill(self);
        const Ref<CGContext> c = NSGraphicsContext::cls().currentContext()->graphicsPort();
        controls::fillRounded(rect, radius, ground());
        const double end = std::numbers::pi / 2 - 2 * std::numbers::pi * part(self);
        CGContextSetRGBFillColor(c.get(), shade.red, shade.green, shade.blue, shade.alpha);
        if (part(self) <= 0)
            return;
        CGContextBeginPath(c.get());
        CGContextMoveToPoint(c.get(), NSMidX(rect), NSMidY(rect));
        CGContextAddArc(c.get(), NSMidX(rect), NSMidY(rect), radius, std::numbers::pi / 2, end, 1);
        CGContextClosePath(c.get());
        CGContextFillPath(c.get());
    }
    static void drawSpokes(NSProgressIndicator& self)
    {
        const NSRect rect = disc(self);
        const CGFloat outer = rect.size.width * 0.44;
        const CGFloat inner = rect.size.width * 0.24;
        const NSPoint middle { NSMidX(rect), NSMidY(rect) };
        const controls::Shade ink = controls::shadeOf(NSColor::cls().controlTextColor());
        const int head
            = static_cast<int>(std::fmod(seconds(self) / kTurn, 1.0) * kSpokes) % kSpokes;
        for (int i = 0; i < kSpokes; ++i) {
            const int behind = (head - i + kSpokes) % kSpokes;
            const double angle = std::numbers::pi / 2 - 2 * std::numbers::pi * i / kSpokes;
            const NSPoint line[] {
                { middle.x + std::cos(angle) * inner, middle.y + std::sin(angle) * inner },
                { middle.x + std::cos(angle) * outer, middle.y + std::sin(angle) * outer },
            };
            const double strength = self.moves_ ? std::max(0.14, 0.78 - behind * 0.075) : 0.28;
            controls::strokeLine(
                line, 2, std::max(1.0, rect.size.width * 0.075), controls::faded(ink, strength));
        }
    }
    static void drawRect(NSProgressIndicator& self, NSRect)
    {
        if (self.indeterminate_ && !self.moves_ && !self.displayedWhenStopped_)
            return;
        if (!isSpinner(self))
            drawBar(self);
        else if (self.indeterminate_)
            drawSpokes(self);
        else
            drawSector(self);
    }

    // ---- archives

    static void code(const NumberCoding& number, NSProgressIndicator& self)
    {
        number("NSMinValue"_ns, self.min_);
        number("NSMaxValue"_ns, self.max_);
        number("NSDoubleValue"_ns, self.value_);
        number("NSProgressIndicatorStyle"_ns, self.style_, NSProgressIndicatorSpinningStyle);
        number("NSControlSize"_ns, self.size_, NSControlSizeLarge);
        number("NSControlTint"_ns, self.tint_);
        number("NSIndeterminate"_ns, self.indeterminate_);
        number("NSBezeled"_ns, self.bezeled_);
        number("NSDisplayedWhenStopped"_ns, self.displayedWhenStopped_);
        number("NSThreadedAnimation"_ns, self.threaded_);
    }
    static void encode(NSProgressIndicator& self, NSCoder* coder)
    {
        super<NSProgressIndicator, "encodeWithCoder:">(self, coder);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSProgressIndicator& self, NSCoder* coder)
    {
        Ref<NSObject> made
            = super<NSProgressIndicator, "initWithCoder:", Ref<NSObject>>(self, coder);
        code({ coder, true }, self);
        return made;
    }

    static void table(Builder& t)
    {
        using P = NSProgressIndicator;
        t.methods({
            { "isIndeterminate", imp<get<bool, &P::indeterminate_>> },
            { "setIndeterminate:", imp<setIndeterminate> },
            { "doubleValue", imp<get<double, &P::value_>> },
            { "setDoubleValue:", imp<set<double, &P::value_>> },
            { "incrementBy:", imp<increment> },
            { "minValue", imp<get<double, &P::min_>> },
            { "setMinValue:", imp<set<double, &P::min_>> },
            { "maxValue", imp<get<double, &P::max_>> },
            { "setMaxValue:", imp<set<double, &P::max_>> },
            { "style", imp<get<NSProgressIndicatorStyle, &P::style_>> },
            { "setStyle:", imp<setStyle> },
            { "controlSize", imp<get<NSControlSize, &P::size_>> },
            { "setControlSize:", imp<setControlSize> },
            { "controlTint", imp<get<NSControlTint, &P::tint_>> },
            { "setControlTint:", imp<set<NSControlTint, &P::tint_>> },
            { "isBezeled", imp<get<bool, &P::bezeled_>> },
            { "setBezeled:", imp<set<bool, &P::bezeled_>> },
            { "isDisplayedWhenStopped", imp<get<bool, &P::displayedWhenStopped_>> },
            { "setDisplayedWhenStopped:", imp<set<bool, &P::displayedWhenStopped_>> },
            { "usesThreadedAnimation", imp<get<bool, &P::threaded_>> },
            { "setUsesThreadedAnimation:", imp<set<bool, &P::threaded_>> },
            { "sizeToFit", imp<sizeToFit> },
            { "startAnimation:", imp<start> },
            { "stopAnimation:", imp<stop> },
            { "viewDidMoveToWindow", imp<didMoveToWindow> },
            { "dealloc", imp<dealloc> },
            { "drawRect:", imp<drawRect> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSProgressIndicator, Progress)

}
