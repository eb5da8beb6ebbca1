// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <functional>

#include "appkit/NSButton.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSSlider.h"
#include "appkit/NSSplitView.h"
#include "appkit/NSTabView.h"
#include "appkit/NSTextField.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/ActionLog.h"
#include "support/EditingDesk.h"

namespace brindle {

/// A slider's cell that does as a test says while it is tracked.
class WildCell : public NSSliderCell {
    BRINDLE_OBJECT(WildCell, NSSliderCell)

public:
    std::function<void()> track_;
};
template <> struct WildCell::Methods<struct Wild> {
    static bool start(WildCell& self, NSPoint point, NSView* view)
    {
        const bool goesOn = super<WildCell, "startTrackingAt:inView:", bool>(self, point, view);
        if (const auto code = self.track_)
            code();
        return goesOn;
    }
    static void table(Builder& t) { t.methods({ { "startTrackingAt:inView:", imp<start> } }); }
};
BRINDLE_RECORD(WildCell, Wild)

namespace {

    struct WildControls : testing::Test {
        EditingDesk desk;
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSSlider> slider = desk.add<NSSlider>(NSMakeRect(20, 20, 200, 20));

        void whileTracked(std::function<void()> code)
        {
            const Ref<WildCell> cell = make<WildCell>();
            cell->track_ = std::move(code);
            slider->setCell(cell.get());
            slider->setTarget(log.get());
            slider->setAction(selector<"act:">);
        }
        void drag() { desk.drag(*slider, { 50, 10 }, { 120, 10 }); }
    };

    TEST_F(WildControls, TheWindowMayBeClosedWhileOneIsTracked)
    {
        whileTracked([this] { desk.window->close(); });
        drag();
        EXPECT_FALSE(desk.window->isVisible());
    }
    TEST_F(WildControls, OneMayBeRemovedWhileItIsTracked)
    {
        whileTracked([this] { slider->removeFromSuperview(); });
        drag();
        EXPECT_EQ(slider->superview(), nullptr);
    }
    TEST_F(WildControls, OneMayGoWhileItIsTracked)
    {
        const NSPoint from = desk.onScreen(*slider, { 50, 10 });
        whileTracked([this] {
            slider->removeFromSuperview();
            slider = nullptr;
        });
        desk.screen.pointer().press(from);
        desk.screen.pointer().dragTo({ from.x + 40, from.y });
        desk.screen.pointer().release();
        EXPECT_EQ(slider, nullptr);
    }
    TEST_F(WildControls, OneMayGetAnotherCellWhileItIsTracked)
    {
        whileTracked([this] { slider->setCell(make<NSSliderCell>().get()); });
        drag();
        EXPECT_FALSE(slider->cell()->isKindOfClass(WildCell::cls()));
    }
    TEST_F(WildControls, OneMayBeDisabledWhileItIsTracked)
    {
        whileTracked([this] { slider->setEnabled(false); });
        drag();
        EXPECT_FALSE(slider->isHighlighted());
    }
    TEST_F(WildControls, TrackingMayRaise)
    {
        whileTracked([] { raise("Fault", "on purpose"); });
        EXPECT_THROW(drag(), Exception);
        EXPECT_FALSE(slider->isHighlighted());
        desk.screen.process();
        whileTracked({});
        drag();
        EXPECT_GT(slider->doubleValue(), 0.3) << "and goes on afterwards";
    }
    TEST_F(WildControls, OneMayHaveNoCell)
    {
        slider->setCell(nullptr);
        drag();
        slider->setDoubleValue(1);
        slider->sizeToFit();
        desk.screen.process();
        EXPECT_EQ(slider->doubleValue(), 0);
    }
    TEST_F(WildControls, AFieldTakesTenMegabytesFromThePasteboard)
    {
        const std::string long_(10 << 20, 'x');
        const Ref<NSTextField> field = desk.add<NSTextField>(NSMakeRect(20, 60, 200, 24));
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        board->setString_forType(
            NSString::cls().stringWithUTF8String(long_.c_str()).get(), NSPasteboardTypeString);
        desk.window->makeFirstResponder(field.get());
        field->currentEditor()->send<"paste:">(static_cast<NSObject*>(nullptr));
        desk.screen.process();
        EXPECT_EQ(field->stringValue()->length(), long_.size());
        board->clearContents();
    }
    TEST_F(WildControls, AFieldLeavesControlCharactersOut)
    {
        const Ref<NSTextField> field = desk.add<NSTextField>(NSMakeRect(20, 60, 200, 24));
        const Ref<NSPasteboard> board = NSPasteboard::cls().generalPasteboard();
        board->clearContents();
        const unichar odd[] { 'a', 0, 1, 0x1B, 0x7F, 0xD800, 'b' };
        board->setString_forType(
            NSString::cls().stringWithCharacters_length(odd, std::size(odd)).get(),
            NSPasteboardTypeString);
        desk.window->makeFirstResponder(field.get());
        field->currentEditor()->send<"paste:">(static_cast<NSObject*>(nullptr));
        desk.screen.process();
        const Ref<NSString> typed = field->stringValue();
        EXPECT_EQ(typed->characterAtIndex(0), 'a');
        EXPECT_EQ(typed->characterAtIndex(typed->length() - 1), 'b');
        EXPECT_LE(typed->length(), 3U);
    }

}
}
