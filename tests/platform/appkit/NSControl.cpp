// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSControl.h"

#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/controls/ShortenedTextPrivate.h"
#include "foundation/NSDictionary.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/ActionLog.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Writes down how it is tracked.
class TrackedCell : public NSActionCell {
    BRINDLE_OBJECT(TrackedCell, NSActionCell)

public:
    std::string log_;
    bool starts_ = true;
    bool continues_ = true;
    int drawn_ = 0;
};

/// The same for cells that are tracked until the button goes up.
class StubbornCell : public TrackedCell {
    BRINDLE_OBJECT(StubbornCell, TrackedCell)
};

class TrackedControl : public NSControl {
    BRINDLE_OBJECT(TrackedControl, NSControl)
};

class StubbornControl : public TrackedControl {
    BRINDLE_OBJECT(StubbornControl, TrackedControl)
};

template <> struct TrackedCell::Methods<struct Tracking> {
    static bool start(TrackedCell& self, NSPoint, NSView*)
    {
        self.log_ += self.isHighlighted() ? "start " : "start-plain ";
        return self.starts_;
    }
    static bool goOn(TrackedCell& self, NSPoint last, NSPoint point, NSView*)
    {
        self.log_ += "drag" + std::to_string(static_cast<int>(last.x)) + ">"
            + std::to_string(static_cast<int>(point.x)) + " ";
        return self.continues_;
    }
    static void stop(TrackedCell& self, NSPoint, NSPoint, NSView*, bool up)
    {
        self.log_ += up ? "up " : "left ";
    }
    static void setNextState(TrackedCell& self)
    {
        self.log_ += "next ";
        super<TrackedCell, "setNextState">(self);
    }
    static void draw(TrackedCell& self, NSRect, NSView*) { ++self.drawn_; }
    static void table(Builder& t)
    {
        t.methods({
            { "startTrackingAt:inView:", imp<start> },
            { "continueTracking:at:inView:", imp<goOn> },
            { "stopTracking:at:inView:mouseIsUp:", imp<stop> },
            { "setNextState", imp<setNextState> },
            { "drawWithFrame:inView:", imp<draw> },
        });
    }
};
BRINDLE_RECORD(TrackedCell, Tracking)

template <> struct StubbornCell::Methods<struct Tracking> {
    static bool yes(Class&) { return true; }
    static void table(Builder& t)
    {
        t.classMethods({ { "prefersTrackingUntilMouseUp", imp<yes> } });
    }
};
BRINDLE_RECORD(StubbornCell, Tracking)

template <> struct TrackedControl::Methods<struct Making> {
    static Class* cellClass(Class&) { return TrackedCell::cls(); }
    static void table(Builder& t) { t.classMethods({ { "cellClass", imp<cellClass> } }); }
};
BRINDLE_RECORD(TrackedControl, Making)

template <> struct StubbornControl::Methods<struct Making> {
    static Class* cellClass(Class&) { return StubbornCell::cls(); }
    static void table(Builder& t) { t.classMethods({ { "cellClass", imp<cellClass> } }); }
};
BRINDLE_RECORD(StubbornControl, Making)

/// A control and a class below it for what is set by class.
class ClassedControl : public NSControl {
    BRINDLE_OBJECT(ClassedControl, NSControl)
};
class ClassedChild : public ClassedControl {
    BRINDLE_OBJECT(ClassedChild, ClassedControl)
};
template <> struct ClassedControl::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(ClassedControl, Nothing)
template <> struct ClassedChild::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(ClassedChild, Nothing)

namespace {

    struct ControlTest : testing::Test {
        template <class T> TrackedCell& add(NSRect frame = NSMakeRect(10, 10, 100, 40))
        {
            control = screen.add<T>(frame);
            control->setTarget(log.get());
            control->setAction(selector<"act:">);
            tracked = cast<TrackedCell>(control->cell());
            return *tracked;
        }
        HeadlessScreen screen { 200, 100 };
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSControl> control;
        Ref<TrackedCell> tracked;
    };

}

TEST(ControlDrawing, TextIsCutBetweenWholeLetters)
{
    const Ref<NSFont> font = NSFont::cls().systemFontOfSize(13);
    const Ref<NSDictionary> attributes = makeDictionary({ { NSFontAttributeName, font.get() } });
    const Ref<NSString> text = "a😀e\xCC\x81😀"_ns;
    const std::vector<std::string> whole { "…", "a…", "a😀…", "a😀e\xCC\x81…", "a😀e\xCC\x81😀" };
    for (CGFloat room = 0; room < 100; ++room) {
        const Ref<NSString> cut = controls::shortened(*text, attributes.get(), room);
        EXPECT_NE(std::find(whole.begin(), whole.end(), utf8Of(cut.get())), whole.end()) << room;
    }
    EXPECT_EQ(controls::shortened(*text, attributes.get(), 1000), text);
}

TEST(ShortenedText, OfManyLettersIsTheSameAsThatOfItsBeginning)
{
    const auto attributes = make<NSDictionary>();
    const auto beginning = stringFrom(std::string(400, 'w'));
    const auto whole = stringFrom(std::string(1'000'000, 'w'));
    const double wide = sizeWithAttributes(beginning, attributes.get()).width;
    const auto cut = controls::shortened(*whole, attributes.get(), wide / 4);
    EXPECT_EQ(utf8(cut), utf8(controls::shortened(*beginning, attributes.get(), wide / 4)));
    // Also where several looks are needed.
    const auto longer = controls::shortened(*whole, attributes.get(), wide * 4);
    EXPECT_LE(sizeWithAttributes(longer, attributes.get()).width, wide * 4);
    EXPECT_NEAR(static_cast<double>(longer->length()), 1600, 3);
}

TEST(NSControlClass, ACellClassIsInheritedAndDoesNotLeak)
{
    Class* const before = NSControl::cls().cellClass();
    ClassedControl::cls().setCellClass(NSButtonCell::cls());
    EXPECT_EQ(ClassedChild::cls().cellClass(), static_cast<Class*>(NSButtonCell::cls()));
    EXPECT_EQ(NSControl::cls().cellClass(), before);
    ClassedChild::cls().setCellClass(NSActionCell::cls());
    EXPECT_EQ(ClassedControl::cls().cellClass(), static_cast<Class*>(NSButtonCell::cls()));
    ClassedChild::cls().setCellClass(nullptr);
    EXPECT_EQ(ClassedChild::cls().cellClass(), static_cast<Class*>(NSButtonCell::cls()));
}

TEST(NSControlClass, AClassThatIsNoCellIsRefused)
{
    EXPECT_THROW(ClassedControl::cls().setCellClass(NSView::cls()), Exception);
}

TEST_F(ControlTest, AClickIsTrackedAndThenSendsTheAction)
{
    const TrackedCell& cell = add<TrackedControl>();
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(cell.log_, "start up next ");
    EXPECT_EQ(log->count_, 1);
    EXPECT_EQ(log->sender_, control);
}

TEST_F(ControlTest, DragsAreReportedWithThePointBefore)
{
    const TrackedCell& cell = add<TrackedControl>();
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 30, 20 });
    screen.pointer().dragTo({ 45, 20 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start drag10>20 drag20>35 up next ");
}

TEST_F(ControlTest, NoToAStartEndsReportsButNotTheGesture)
{
    TrackedCell& cell = add<TrackedControl>();
    cell.starts_ = false;
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 30, 20 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start up next ");
}

TEST_F(ControlTest, NoToADragEndsReportsButNotTheGesture)
{
    TrackedCell& cell = add<TrackedControl>();
    cell.continues_ = false;
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 30, 20 });
    screen.pointer().dragTo({ 40, 20 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start drag10>20 up next ");
}

TEST_F(ControlTest, AReleaseOutsideSendsNothing)
{
    const TrackedCell& cell = add<TrackedControl>();
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 20, 90 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start drag10>10 left ");
    EXPECT_EQ(log->count_, 0);
    EXPECT_FALSE(control->isHighlighted());
}

TEST_F(ControlTest, ThePointerThatComesBackIsTrackedAnew)
{
    const TrackedCell& cell = add<TrackedControl>();
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 20, 90 });
    screen.pointer().dragTo({ 30, 20 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start drag10>10 left start up next ");
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ControlTest, UntilMouseUpAReleaseAnywhereCounts)
{
    const TrackedCell& cell = add<StubbornControl>();
    screen.pointer().press({ 20, 20 });
    screen.pointer().dragTo({ 20, 90 });
    screen.pointer().release();
    EXPECT_EQ(cell.log_, "start drag10>10 up next ");
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ControlTest, ItIsDrawnBetweenPressAndRelease)
{
    TrackedCell& cell = add<TrackedControl>();
    cell.drawn_ = 0;
    screen.pointer().press({ 20, 20 });
    log->setReaction([&](NSObject*) { EXPECT_GE(cell.drawn_, 1); });
    screen.pointer().release();
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ControlTest, DrawCellDrawsBeforeItReturns)
{
    TrackedCell& cell = add<TrackedControl>();
    cell.drawn_ = 0;
    control->drawCell(&cell);
    EXPECT_EQ(cell.drawn_, 1);
    control->drawCell(make<NSCell>().get());
    EXPECT_EQ(cell.drawn_, 1);
}

TEST_F(ControlTest, ADisabledControlTakesNoPress)
{
    const TrackedCell& cell = add<TrackedControl>();
    control->setEnabled(false);
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(cell.log_, "");
    EXPECT_FALSE(control->acceptsFirstResponder());
}

TEST_F(ControlTest, DisablingGivesTheKeyboardUp)
{
    add<TrackedControl>();
    EXPECT_TRUE(screen.window().makeFirstResponder(control.get()));
    control->setEnabled(false);
    EXPECT_NE(screen.window().firstResponder(), control);
}

TEST_F(ControlTest, ItMayLeaveItsWindowInItsAction)
{
    add<TrackedControl>();
    log->setReaction([&](NSObject*) {
        control->removeFromSuperview();
        control = nullptr;
    });
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(log->count_, 1);
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(log->count_, 1);
}

TEST_F(ControlTest, AnActionThatRaisesLeavesItPlain)
{
    add<TrackedControl>();
    log->setReaction([](NSObject*) { raise("NSGenericException", "no"); });
    screen.display().click({ 20, 20 }, 1, 0);
    EXPECT_THROW(screen.process(), Exception);
    EXPECT_FALSE(control->isHighlighted());
    log->setReaction(nullptr);
    screen.pointer().click({ 20, 20 });
    EXPECT_EQ(log->count_, 2);
}

TEST_F(ControlTest, TheRingShowsWhileItHasTheKeyboard)
{
    const TrackedCell& cell = add<TrackedControl>();
    const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(0, 0, 200, 60), NSTitledWindowMask, NSBackingStoreBuffered, true);
    window->contentView()->addSubview(control.get());
    window->makeKeyAndOrderFront(nullptr);
    window->makeFirstResponder(control.get());
    screen.process();
    EXPECT_TRUE(cell.showsFirstResponder());
    window->makeFirstResponder(nullptr);
    screen.process();
    EXPECT_FALSE(cell.showsFirstResponder());
    window->close();
}

TEST_F(ControlTest, AContinuousCellRepeatsWhileTheButtonIsDown)
{
    add<TrackedControl>();
    control->setContinuous(true);
    screen.pointer().press({ 20, 20 });
    log->setReaction([&](NSObject*) {
        if (log->count_ == 3)
            screen.display().releaseButton(0);
    });
    screen.advance(1);
    EXPECT_EQ(log->count_, 4);
}

TEST_F(ControlTest, WhatIsNoCellIsRefused)
{
    add<TrackedControl>();
    const Ref<NSObject> other = make<NSObject>();
    EXPECT_THROW(control->send<"setCell:">(other.get()), Exception);
}

TEST_F(ControlTest, WithoutACellItDoesNothing)
{
    add<TrackedControl>();
    control->setCell(nullptr);
    screen.pointer().click({ 20, 20 });
    control->setStringValue("a"_ns);
    control->sizeToFit();
    EXPECT_EQ(control->stringValue(), nullptr);
    EXPECT_FALSE(control->isEnabled());
}

}
