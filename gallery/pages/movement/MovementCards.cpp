// SPDX-License-Identifier: Apache-2.0
#include "MovementCards.h"

#include <cmath>
#include <functional>

#include "appkit/NSAnimationContext.h"
#include "appkit/NSWindow.h"
#include "kit/Drawing.h"
#include "kit/Figure.h"
#include "kit/Palette.h"
#include "quartz/layers/CAMediaTimingFunction.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    /// Makes changes in a group that takes so long, with a soft beginning and end.
    void inGroup(double seconds, const std::function<void()>& changes, const Block<void()>& ended)
    {
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [&](NSAnimationContext* context) {
                context->setDuration(seconds);
                context->setTimingFunction(
                    CAMediaTimingFunction::cls()
                        .functionWithName(kCAMediaTimingFunctionEaseInEaseOut)
                        .get());
                changes();
            },
            ended);
    }
    Ref<Tile> addTile(NSView& card, double hue)
    {
        Ref<Tile> tile = make<Tile>();
        tile->hue_ = hue;
        card.addSubview(tile.get());
        return tile;
    }

}

template <> struct Tile::Methods<struct Look> {
    static void drawRect(Tile& self, NSRect)
    {
        const Ref<NSColor> color
            = NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
                self.hue_, 0.6, isDark() ? 0.75 : 0.88, 1);
        fillRounded(self.bounds(), 10, color.get());
    }
    static void table(Builder& t) { t.methods({ { "drawRect:", imp<drawRect> } }); }
};
BRINDLE_RECORD(Tile, Look)

template <> struct TilesCard::Methods<struct Moving> {

    static constexpr std::size_t kTiles = 5;
    static constexpr NSUInteger kArrangements = 3;
    static constexpr double kGap = 10;
    static constexpr double kFast = 0.35; // seconds
    static constexpr double kSlow = 1.6;

    static Ref<NSView> initWithFrame(TilesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<TilesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Views that move"_ns);
        self.setCaption("animator: setFrame: and setAlphaValue: by degrees, all in one group"_ns);
        for (std::size_t i = 0; i < kTiles; ++i)
            self.tiles_.push_back(addTile(self, 0.03 + 0.12 * static_cast<double>(i)));
        self.move_ = addChip(&self, "Move"_ns, "m"_ns, sending<"move">(&self));
        self.fade_ = addChip(&self, "Fade"_ns, "f"_ns, sending<"fade">(&self));
        self.grow_ = addChip(&self, "Grow"_ns, "g"_ns, sending<"grow">(&self));
        self.slow_ = addChip(&self, "Slowly"_ns, "s"_ns, sending<"slow">(&self));
        return made;
    }

    static NSRect stage(TilesCard& self)
    {
        NSRect room = self.bodyRect();
        room.size.height -= kChipHeight + kCardGap;
        return room;
    }
    /// Answers where a tile stands: in a row, in a stair, or in the middle, one on the other.
    static NSRect placeOf(TilesCard& self, std::size_t index)
    {
        const NSRect room = stage(self);
        const auto i = static_cast<double>(index);
        const double width = (room.size.width - (kTiles - 1) * kGap) / kTiles;
        const double height = std::min(room.size.height, 110.0);
        NSRect place = NSMakeRect(
            room.origin.x + i * (width + kGap), NSMidY(room) - height / 2, width, height);
        if (self.arrangement_ == 1) {
            place.size.height = std::max((room.size.height - (kTiles - 1) * kGap) / kTiles, 8.0);
            place.origin.y = room.origin.y + i * (place.size.height + kGap);
        } else if (self.arrangement_ == 2) {
            place.origin.x = NSMidX(room) - width / 2 + (i - 2) * width / 4;
            place.origin.y += (i - 2) * 10;
        }
        return self.grown_ ? place : inset(place, std::min(10.0, place.size.height / 6));
    }
    static double alphaOf(TilesCard& self, std::size_t index)
    {
        return self.faded_ ? 0.2 + 0.15 * static_cast<double>(index) : 1;
    }
    static void arrange(TilesCard& self)
    {
        inGroup(
            self.slow_->isOn() ? kSlow : kFast,
            [&] {
                for (std::size_t i = 0; i < kTiles; ++i) {
                    const Ref<NSView> moving = self.tiles_[i]->animator();
                    moving->setFrame(placeOf(self, i));
                    moving->setAlphaValue(alphaOf(self, i));
                }
            },
            nullptr);
    }
    static void move(TilesCard& self)
    {
        self.arrangement_ = (self.arrangement_ + 1) % kArrangements;
        arrange(self);
    }
    static void fade(TilesCard& self)
    {
        self.faded_ = !self.faded_;
        self.fade_->setOn(self.faded_);
        arrange(self);
    }
    static void grow(TilesCard& self)
    {
        self.grown_ = !self.grown_;
        self.grow_->setOn(self.grown_);
        arrange(self);
    }
    static void slow(TilesCard& self) { self.slow_->setOn(!self.slow_->isOn()); }

    static void setFrameSize(TilesCard& self, NSSize size)
    {
        super<TilesCard, "setFrameSize:">(self, size);
        if (!self.slow_)
            return;
        for (std::size_t i = 0; i < kTiles; ++i)
            self.tiles_[i]->setFrame(placeOf(self, i));
        const NSRect body = self.bodyRect();
        layOutChips({ self.move_.get(), self.fade_.get(), self.grow_.get(), self.slow_.get() },
            { body.origin.x, NSMaxY(body) - kChipHeight });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "move", imp<move> },
            { "fade", imp<fade> },
            { "grow", imp<grow> },
            { "slow", imp<slow> },
        });
    }
};
BRINDLE_RECORD(TilesCard, Moving)

template <> struct RoundCard::Methods<struct Going> {

    static constexpr double kTile = 34;
    static constexpr double kSeconds = 0.5;

    static Ref<NSView> initWithFrame(RoundCard& self, NSRect frame)
    {
        Ref<NSView> made = super<RoundCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("One way after the other"_ns);
        self.setCaption("The completion handler of each group begins the next"_ns);
        self.tile_ = addTile(self, 0.58);
        self.go_ = addChip(&self, "Go round"_ns, "r"_ns, sending<"toggle">(&self));
        return made;
    }
    static NSRect track(RoundCard& self)
    {
        NSRect room = self.bodyRect();
        room.size.height -= kChipHeight + kCardGap;
        room.origin.x += room.size.width / 2;
        room.size.width /= 2;
        return room;
    }
    static NSRect placeOf(RoundCard& self)
    {
        const NSRect room = track(self);
        const bool right = self.corner_ == 1 || self.corner_ == 2;
        const bool low = self.corner_ >= 2;
        return NSMakeRect(right ? NSMaxX(room) - kTile : room.origin.x,
            low ? NSMaxY(room) - kTile : room.origin.y, kTile, kTile);
    }
    static void toggle(RoundCard& self)
    {
        self.going_ = !self.going_;
        self.go_->setOn(self.going_);
        if (self.going_)
            goOn(self);
    }
    static void goOn(RoundCard& self)
    {
        self.corner_ = (self.corner_ + 1) % 4;
        inGroup(
            kSeconds, [&] { self.tile_->animator()->setFrame(placeOf(self)); },
            sending<"arrived">(&self));
    }
    static void arrived(RoundCard& self)
    {
        ++self.ways_;
        self.setNeedsDisplay(true);
        if (self.going_ && self.window())
            goOn(self);
    }
    static void setFrameSize(RoundCard& self, NSSize size)
    {
        super<RoundCard, "setFrameSize:">(self, size);
        if (!self.go_)
            return;
        self.tile_->setFrame(placeOf(self));
        const NSRect body = self.bodyRect();
        layOutChips({ self.go_.get() }, { body.origin.x, NSMaxY(body) - kChipHeight });
    }
    static void drawBody(RoundCard& self, NSRect body)
    {
        body.size.width = body.size.width / 2 - kCardGap;
        const Ref<NSString> ways = NSString::cls().stringWithFormat("%lu"_ns, self.ways_);
        drawFigure(ways.get(), "ways that have ended"_ns, body);
        strokeRounded(inset(track(self), kTile / 2), 4, palette().grid.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "toggle", imp<toggle> },
            { "arrived", imp<arrived> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(RoundCard, Going)

template <> struct WindowMovementCard::Methods<struct Moving> {

    static constexpr double kSeconds = 0.4;
    static constexpr double kAside = 60; // points

    static Ref<NSView> initWithFrame(WindowMovementCard& self, NSRect frame)
    {
        Ref<NSView> made = super<WindowMovementCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("The window itself"_ns);
        self.setCaption("The animator of a window: setFrame:display: and setAlphaValue:"_ns);
        self.glide_ = addChip(&self, "Glide"_ns, "l"_ns, sending<"glide">(&self));
        self.fade_ = addChip(&self, "Fade out and in"_ns, "o"_ns, sending<"fade">(&self));
        return made;
    }
    /// Goes there and, once it is there, comes back.
    template <class Go, class Back>
    static void thereAndBack(WindowMovementCard& self, const Go& go, const Back& back)
    {
        const Ref<NSWindow> window = self.window();
        if (!window)
            return;
        const Block<void()> ended = sending<"ended">(&self);
        inGroup(
            kSeconds, [&] { go(brindle::animator(window)); },
            [window, back, ended] {
                inGroup(
                    kSeconds, [&] { back(brindle::animator(window)); }, ended);
            });
    }
    static void glide(WindowMovementCard& self)
    {
        const NSRect home = maybe(self.window())->frame();
        const NSRect aside = NSOffsetRect(home, kAside, 0);
        thereAndBack(
            self, [aside](const Ref<NSWindow>& window) { window->setFrame_display(aside, true); },
            [home](const Ref<NSWindow>& window) { window->setFrame_display(home, true); });
    }
    static void fade(WindowMovementCard& self)
    {
        thereAndBack(
            self, [](const Ref<NSWindow>& window) { window->setAlphaValue(0.25); },
            [](const Ref<NSWindow>& window) { window->setAlphaValue(1); });
    }
    static void ended(WindowMovementCard& self)
    {
        ++self.movements_;
        self.setNeedsDisplay(true);
    }
    static void setFrameSize(WindowMovementCard& self, NSSize size)
    {
        super<WindowMovementCard, "setFrameSize:">(self, size);
        if (!self.fade_)
            return;
        const NSRect body = self.bodyRect();
        layOutChips(
            { self.glide_.get(), self.fade_.get() }, { body.origin.x, NSMaxY(body) - kChipHeight });
    }
    static void drawBody(WindowMovementCard& self, NSRect body)
    {
        const Ref<NSString> count = NSString::cls().stringWithFormat("%lu"_ns, self.movements_);
        drawFigure(count.get(), "movements that have ended where they began"_ns, body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "glide", imp<glide> },
            { "fade", imp<fade> },
            { "ended", imp<ended> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(WindowMovementCard, Moving)

}
