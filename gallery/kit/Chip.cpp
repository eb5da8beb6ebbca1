// SPDX-License-Identifier: Apache-2.0
#include "Chip.h"

#include <cmath>

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryChip::Methods<struct Pressing> {

    static constexpr double kMargin = 12;
    static constexpr double kKeyGap = 8;

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
        if (run)
            self.press();
    }

    // ---- the keyboard

    static bool acceptsFirstResponder(GalleryChip&) { return true; }
    static bool becomeFirstResponder(GalleryChip& self)
    {
        const Ref<NSEvent> event = NSApplication::cls().sharedApplication()->currentEvent();
        show(self, self.isFocused_, maybe(event)->type() == NSKeyDown);
        return super<GalleryChip, "becomeFirstResponder", bool>(self);
    }
    static bool resignFirstResponder(GalleryChip& self)
    {
        show(self, self.isFocused_, false);
        return super<GalleryChip, "resignFirstResponder", bool>(self);
    }
    static void keyDown(GalleryChip& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        if (key == ' ' || key == '\r')
            self.press();
        else
            super<GalleryChip, "keyDown:">(self, event);
    }

    static void press(GalleryChip& self)
    {
        const Ref<GalleryChip> alive(&self);
        if (const Block<void()> code = self.onPress())
            code();
    }

    static Ref<NSString> keyLabel(GalleryChip& self) { return maybe(self.key_)->uppercaseString(); }

    static double keyWidth(GalleryChip& self)
    {
        return self.key_ ? kKeyGap + sizeOf(keyLabel(self).get(), Style::caption).width : 0;
    }

    static double fittingWidth(GalleryChip& self)
    {
        return std::ceil(
            sizeOf(self.title_.get(), Style::heading).width + keyWidth(self) + 2 * kMargin);
    }

    static void drawRect(GalleryChip& self, NSRect)
    {
        const Palette& colors = palette();
        const bool filled = self.pressed_ || self.on_;
        NSRect box = self.bounds();
        if (self.isFocused_) {
            fillRounded(box, 9, colors.accent.get());
            fillRounded(inset(box, 2), 7, colors.card.get());
            box = inset(box, 3);
        }
        fillRounded(box, self.isFocused_ ? 6 : 7, filled ? colors.accent.get() : colors.soft.get());
        if (self.hovered_ && !filled)
            strokeRounded(box, 7, colors.accent.get());
        NSColor* const color = filled ? colors.accentText.get() : colors.accent.get();
        const double keyRoom = keyWidth(self);
        box = self.bounds();
        NSRect label = box;
        label.size.width -= keyRoom;
        drawCentered(self.title_.get(), label, Style::heading, color);
        if (self.key_)
            drawCentered(keyLabel(self).get(),
                NSMakeRect(NSMaxX(box) - kMargin - keyRoom + kKeyGap, 1, keyRoom - kKeyGap,
                    box.size.height),
                Style::caption, filled ? color : colors.quietText.get());
    }

    static void setTitle(GalleryChip& self, NSString* title)
    {
        self.title_ = Ref<NSString>(title);
        self.setNeedsDisplay(true);
    }
    static void setKey(GalleryChip& self, NSString* key)
    {
        self.key_ = Ref<NSString>(key);
        self.setNeedsDisplay(true);
    }
    static void setOn(GalleryChip& self, bool on) { show(self, self.on_, on); }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryChip::title_>("title", copied, nonatomic),
            property<&GalleryChip::key_>("key", copied, nonatomic),
            property<&GalleryChip::on_>("on", getter("isOn"), nonatomic),
            property<&GalleryChip::onPress_>("onPress", copied, nonatomic),
        });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "resignFirstResponder", imp<resignFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "mouseDown:", imp<mouseDown> },
            { "mouseDragged:", imp<mouseDragged> },
            { "mouseUp:", imp<mouseUp> },
            { "drawRect:", imp<drawRect> },
            { "setTitle:", imp<setTitle> },
            { "setKey:", imp<setKey> },
            { "setOn:", imp<setOn> },
            { "press", imp<press> },
            { "fittingWidth", imp<fittingWidth> },
        });
    }
};
BRINDLE_RECORD(GalleryChip, Pressing)

namespace {

    constexpr double kChipGap = 8;

}

Ref<GalleryChip> addChip(NSView* to, NSString* title, NSString* key, const Block<void()>& press)
{
    Ref<GalleryChip> chip = make<GalleryChip>();
    chip->setTitle(title);
    chip->setKey(key);
    chip->setOnPress(press);
    to->addSubview(chip.get());
    return chip;
}

void layOutChips(std::initializer_list<GalleryChip*> chips, NSPoint leftTop)
{
    for (GalleryChip* chip : chips) {
        const double width = chip->fittingWidth();
        chip->setFrame(NSMakeRect(leftTop.x, leftTop.y, width, kChipHeight));
        leftTop.x += width + kChipGap;
    }
}

}
