// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <utility>
#include <vector>

#include "ControlDrawingPrivate.h"
#include "NSCellPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSSegmentedCell.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSView.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSegmentedCell::Methods<struct Drawing> {

    static controls::Metrics metrics(NSSegmentedCell& self)
    {
        return controls::metricsFor(self.controlSize());
    }

    // ---- places

    static Ref<NSAttributedString> styled(
        NSSegmentedCell& self, const Segment& segment, NSColor* ink)
    {
        return alloc<NSAttributedString>()->initWithString_attributes(
            segment.label ? segment.label.get() : ""_ns, textAttributesOf(self, ink).get());
    }
    static CGFloat widthOf(NSSegmentedCell& self, const Segment& segment)
    {
        if (segment.width > 0)
            return segment.width;
        const controls::Metrics m = metrics(self);
        const CGFloat label = maybe(segment.label)->length()
            ? controls::sizeOf(styled(self, segment, nullptr).get()).width
            : 0;
        const CGFloat image = segment.image ? segment.image->size().width : 0;
        return std::ceil(label + image + (label > 0 && image > 0 ? m.gap : 0) + 2 * m.padding);
    }
    /// Answers where segments end side by side, the first one beginning at 0.
    static std::vector<CGFloat> endsOf(NSSegmentedCell& self)
    {
        std::vector<CGFloat> ends { 0 };
        for (const Segment& segment : self.segments_)
            ends.push_back(ends.back() + widthOf(self, segment));
        return ends;
    }
    /// Measures the segments once for all whose places are asked for in its scope.
    class Measured {
    public:
        explicit Measured(NSSegmentedCell& self)
            : self_(&self)
            , former_(std::exchange(self.ends_, endsOf(self)))
        {
        }
        ~Measured() { self_->ends_ = std::move(former_); }
        Measured(const Measured&) = delete;
        Measured& operator=(const Measured&) = delete;

    private:
        Ref<NSSegmentedCell> self_;
        std::vector<CGFloat> former_;
    };
    static NSSize cellSize(NSSegmentedCell& self)
    {
        return { endsOf(self).back() + 2 * controls::kRingRoom,
            metrics(self).height + 2 * controls::kRingRoom };
    }
    static NSSize cellSizeForBounds(NSSegmentedCell& self, NSRect) { return cellSize(self); }
    /// Segments share what the frame gives or lacks, each by its width.
    static NSRect rectOf(NSSegmentedCell& self, NSInteger index, NSRect frame)
    {
        if (index < 0 || index >= self.segmentCount())
            return NSZeroRect;
        if (self.ends_.size() != self.segments_.size() + 1) {
            const Measured measured(self);
            return rectOf(self, index, frame);
        }
        const CGFloat all = self.ends_.back();
        const CGFloat room = std::max(0.0, frame.size.width - 2 * controls::kRingRoom);
        const CGFloat part = all > 0 ? room / all : 0;
        const CGFloat left = NSMinX(frame) + controls::kRingRoom;
        const auto at = static_cast<std::size_t>(index);
        const CGFloat x = std::round(left + self.ends_[at] * part);
        const CGFloat height = metrics(self).height;
        return NSMakeRect(x, std::round(NSMidY(frame) - height / 2),
            std::round(left + self.ends_[at + 1] * part) - x, height);
    }
    static NSInteger segmentAt(NSSegmentedCell& self, NSPoint point, NSRect frame)
    {
        const Measured measured(self);
        for (NSInteger i = 0; i < self.segmentCount(); ++i) {
            if (NSPointInRect(point, self.rectOfSegment_inFrame(i, frame)))
                return i;
        }
        return -1;
    }

    // ---- looks

    static void drawContents(
        NSSegmentedCell& self, const Segment& segment, NSRect place, const controls::Look& look)
    {
        const controls::Metrics m = metrics(self);
        const controls::Shade ink = controls::inkOn(look);
        const Ref<NSColor> color = NSColor::cls().colorWithDeviceRed_green_blue_alpha(
            ink.red, ink.green, ink.blue, ink.alpha);
        const Ref<NSAttributedString> text = styled(self, segment, color.get());
        const NSSize image = segment.image ? segment.image->size() : NSSize {};
        const CGFloat label = maybe(segment.label)->length()
            ? std::min(controls::sizeOf(text.get()).width, place.size.width)
            : 0;
        const CGFloat gap = label > 0 && segment.image ? m.gap : 0;
        CGFloat x = std::round(NSMidX(place) - (image.width + gap + label) / 2);
        if (segment.image)
            controls::drawImage(segment.image.get(),
                NSMakeRect(
                    x, std::round(NSMidY(place) - image.height / 2), image.width, image.height),
                ink, look.enabled ? 1 : 0.4);
        x = std::max(x + image.width + gap, NSMinX(place) + 2);
        if (label > 0)
            controls::drawText(text.get(),
                NSMakeRect(
                    x, NSMinY(place), std::max(0.0, NSMaxX(place) - 2 - x), place.size.height),
                NSTextAlignmentLeft);
    }
    static void drawSegment(
        NSSegmentedCell& self, NSInteger index, NSRect frame, const controls::Look& bar)
    {
        const auto& segments = self.segments_;
        const Segment& segment = segments[static_cast<std::size_t>(index)];
        const NSRect place = controls::onPixels(self.rectOfSegment_inFrame(index, frame));
        controls::Look look = bar;
        look.enabled = bar.enabled && segment.enabled;
        look.pressed = self.pressed_ == index;
        look.accented = segment.selected;
        const bool follows = index > 0
            && (segments[static_cast<std::size_t>(index - 1)].selected
                || self.pressed_ == index - 1);
        if (segment.selected || look.pressed)
            controls::drawBezel(place, metrics(self).radius, look);
        else if (index > 0 && !follows)
            controls::fillRounded(NSMakeRect(NSMinX(place), NSMinY(place) + 5, controls::pixel(),
                                      place.size.height - 10),
                0, controls::shadeOf(NSColor::cls().separatorColor()));
        drawContents(self, segment, place, look);
    }
    static void draw(NSSegmentedCell& self, NSRect frame, NSView* view)
    {
        const NSInteger count = self.segmentCount();
        if (!count)
            return;
        const Measured measured(self);
        const NSRect bar = controls::onPixels(NSUnionRect(
            self.rectOfSegment_inFrame(0, frame), self.rectOfSegment_inFrame(count - 1, frame)));
        const CGFloat radius = metrics(self).radius;
        const controls::Look look { .enabled = self.isEnabled(),
            .active = controls::isActive(view) };
        controls::drawBezel(bar, radius, look);
        for (NSInteger i = 0; i < count; ++i)
            drawSegment(self, i, frame, look);
        if (self.showsFirstResponder() && self.key_ >= 0)
            controls::drawRing(
                controls::onPixels(self.rectOfSegment_inFrame(self.key_, frame)), radius);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "cellSize", imp<cellSize> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "rectOfSegment:inFrame:", imp<rectOf> },
            { "segmentAtPoint:inFrame:", imp<segmentAt> },
            { "drawWithFrame:inView:", imp<draw> },
        });
    }
};
BRINDLE_RECORD(NSSegmentedCell, Drawing)

}
