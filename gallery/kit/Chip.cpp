// SPDX-License-Identifier: Apache-2.0
#include "Chip.h"

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryChip::Methods<struct Pressing> {

    static bool isFlipped(GalleryChip&) { return true; }
    static bool mouseDownCanMoveWindow(GalleryChip&) { return false; }

    static void updateTrackingAreas(GalleryChip& self)
    {
        const Ref<NSArray> areas = self.trackingAreas();
        for (NSObject* area : *areas)
            self.removeTrackingArea(static_cast<NSTrackingArea*>(area));
        const auto area
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(self.bounds(),
                NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, &self, nullptr);
        self.addTrackingArea(area.get());
    }

    static bool holds(GalleryChip& self, NSEvent* event)
    {
        return self.mouse_inRect(
            self.convertPoint_fromView(event->locationInWindow(), nullptr), self.bounds());
    }

    static void show(GalleryChip& self, bool& state, bool value)
    {
        if (state != value) {
            state = value;
            self.setNeedsDisplay(true);
        }
    }

    static void mouseEntered(GalleryChip& self, NSEvent*) { show(self, self.hovered_, true); }
    static void mouseExited(GalleryChip& self, NSEvent*) { show(self, self.hovered_, false); }
    static void mouseDown(GalleryChip& self, NSEvent*) { show(self, self.pressed_, true); }
    static void mouseDragged(GalleryChip& self, NSEvent* event)
    {
        show(self, self.pressed_, holds(self, event));
    }
    static void mouseUp(GalleryChip& self, NSEvent* event)
    {
        const bool run = self.pressed_ && holds(self, event);
        show(self, self.pressed_, false);
        const Ref<GalleryChip> alive(&self);
        if (const Block<void()> code = run ? self.onPress() : Block<void()>())
            code();
    }

    static void drawRect(GalleryChip& self, NSRect)
    {
        const Palette& colors = palette();
        const NSRect box = self.bounds();
        fillRounded(box, 7, self.pressed_ ? colors.accent.get() : colors.soft.get());
        if (self.hovered_ && !self.pressed_)
            strokeRounded(box, 7, colors.accent.get());
        drawCentered(self.title_.get(), box, Style::heading,
            self.pressed_ ? colors.accentText.get() : colors.accent.get());
    }

    static void setTitle(GalleryChip& self, NSString* title)
    {
        self.title_ = Ref<NSString>(title);
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryChip::title_>("title", copied, nonatomic),
            property<&GalleryChip::onPress_>("onPress", copied, nonatomic),
        });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "mouseDown:", imp<mouseDown> },
            { "mouseDragged:", imp<mouseDragged> },
            { "mouseUp:", imp<mouseUp> },
            { "drawRect:", imp<drawRect> },
            { "setTitle:", imp<setTitle> },
        });
    }
};
BRINDLE_RECORD(GalleryChip, Pressing)

}
