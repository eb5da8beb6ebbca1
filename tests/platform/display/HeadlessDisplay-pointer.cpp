// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    struct HeadlessPointer : testing::Test {
        HeadlessDisplay display;
        std::unique_ptr<Surface> a = display.createSurface({ .frame = { { 0, 0 }, { 100, 100 } } });
        std::unique_ptr<Surface> b
            = display.createSurface({ .frame = { { 200, 50 }, { 100, 100 } } });

        HeadlessPointer()
        {
            a->show();
            b->show();
            drain(display);
        }
        std::string log() { return drainToText(display, { a.get(), b.get() }); }
        Event last()
        {
            const auto events = drain(display);
            return events.empty() ? Event {} : events.back();
        }
    };

    TEST_F(HeadlessPointer, EntersBeforeItMoves)
    {
        display.movePointer({ 10, 10 });
        EXPECT_EQ(log(), "pointerEntered 1, pointerMoved 1");
    }

    TEST_F(HeadlessPointer, LeavesOneSurfaceBeforeItEntersTheNext)
    {
        display.movePointer({ 10, 10 });
        log();
        display.movePointer({ 210, 60 });
        EXPECT_EQ(log(), "pointerLeft 1, pointerEntered 2, pointerMoved 2");
    }

    TEST_F(HeadlessPointer, TellsThePlaceInTheSurfaceAndOnTheScreen)
    {
        display.movePointer({ 210, 65 });
        const Event event = last();
        EXPECT_EQ(event.location, (CGPoint { 10, 15 }));
        EXPECT_EQ(event.screenLocation, (CGPoint { 210, 65 }));
    }

    TEST_F(HeadlessPointer, StampsEventsWithTheDisplaysClock)
    {
        display.advance(2.5);
        display.movePointer({ 10, 10 });
        EXPECT_EQ(last().time, 2.5);
    }

    TEST_F(HeadlessPointer, ReadsTimeFromAnotherClock)
    {
        display.setTimeSource([] { return 42.0; });
        display.movePointer({ 10, 10 });
        EXPECT_EQ(last().time, 42.0);
    }

    TEST_F(HeadlessPointer, SendsADragToTheSurfaceOfThePressUntilTheRelease)
    {
        display.movePointer({ 10, 10 });
        display.click({ 10, 10 });
        log();
        display.drag({ 10, 10 }, { 210, 60 }, 2);
        EXPECT_EQ(log(),
            "pointerDown 1, pointerMoved 1, pointerMoved 1, pointerUp 1, pointerLeft 1, "
            "pointerEntered 2");
    }

    TEST_F(HeadlessPointer, KeepsTheDragUntilTheLastButtonIsUp)
    {
        display.movePointer({ 10, 10 });
        display.pressButton(0);
        display.pressButton(1);
        display.releaseButton(0);
        log();
        display.movePointer({ 210, 60 });
        EXPECT_EQ(log(), "pointerMoved 1");
    }

    TEST_F(HeadlessPointer, TellsTheButton)
    {
        display.movePointer({ 10, 10 });
        display.pressButton(1);
        EXPECT_EQ(last().button, 1);
    }

    TEST_F(HeadlessPointer, ClicksAsOftenAsAsked)
    {
        display.movePointer({ 10, 10 });
        display.focus(a.get());
        log();
        display.click({ 10, 10 }, 2);
        EXPECT_EQ(log(), "pointerDown 1, pointerUp 1, pointerDown 1, pointerUp 1");
    }

    TEST_F(HeadlessPointer, ScrollsTheSurfaceBelow)
    {
        display.movePointer({ 210, 60 });
        display.scroll(1, -2.5, true);
        const Event event = last();
        EXPECT_EQ(event.surface, b->id());
        EXPECT_EQ(event.scrollX, 1);
        EXPECT_EQ(event.scrollY, -2.5);
        EXPECT_TRUE(event.preciseScroll);
    }

    TEST_F(HeadlessPointer, EntersASurfaceThatAppearsUnderIt)
    {
        b->hide();
        display.movePointer({ 210, 60 });
        log();
        b->show();
        EXPECT_EQ(log(), "pointerEntered 2, exposed 2");
    }

    TEST_F(HeadlessPointer, LeavesASurfaceThatGoes)
    {
        display.movePointer({ 210, 60 });
        log();
        b->hide();
        EXPECT_EQ(log(), "pointerLeft 2");
    }

    TEST_F(HeadlessPointer, PassesThroughASurfaceThatIgnoresIt)
    {
        b->setInputPassthrough(true);
        display.movePointer({ 210, 60 });
        EXPECT_EQ(log(), "");
    }

    TEST_F(HeadlessPointer, SendsGrabbedInputFromElsewhereToTheGrabbingSurface)
    {
        ASSERT_TRUE(display.grab(*b));
        display.movePointer({ 500, 500 });
        display.pressButton();
        EXPECT_EQ(log(), "pointerMoved 2, pointerDown 2");
    }

    TEST_F(HeadlessPointer, SendsGrabbedInputToAnotherSurfaceOfOursUnderIt)
    {
        ASSERT_TRUE(display.grab(*b));
        display.movePointer({ 10, 10 });
        EXPECT_EQ(log(), "pointerEntered 1, pointerMoved 1");
    }

    TEST_F(HeadlessPointer, RefusesAGrabForASurfaceThatIsNotShown)
    {
        b->hide();
        EXPECT_FALSE(display.grab(*b));
    }

    TEST_F(HeadlessPointer, TellsWhenTheGrabIsTakenAway)
    {
        ASSERT_TRUE(display.grab(*b));
        display.setAllowsGrabs(false);
        EXPECT_EQ(log(), "grabLost 2");
        EXPECT_EQ(display.grabbingSurface(), 0u);
        EXPECT_FALSE(display.grab(*b));
    }

    TEST_F(HeadlessPointer, TellsWhenTheGrabbingSurfaceIsHidden)
    {
        ASSERT_TRUE(display.grab(*b));
        b->hide();
        EXPECT_EQ(log(), "grabLost 2");
    }

    TEST_F(HeadlessPointer, ForgetsTheEventsOfASurfaceThatWasDestroyed)
    {
        display.movePointer({ 210, 60 });
        b.reset();
        EXPECT_EQ(drain(display).size(), 0u);
    }

    TEST_F(HeadlessPointer, LosesADestroyedSurfaceInTheMiddleOfADrag)
    {
        display.movePointer({ 210, 60 });
        display.pressButton();
        b.reset();
        display.movePointer({ 10, 10 });
        display.releaseButton();
        EXPECT_EQ(
            drainToText(display, { a.get() }), "pointerEntered 1, pointerMoved 1, pointerUp 1");
    }

    TEST_F(HeadlessPointer, ShowsTheCursorOfTheSurfaceBelow)
    {
        b->setCursor(Cursor::iBeam);
        display.setCursor(Cursor::crosshair);
        display.movePointer({ 210, 60 });
        EXPECT_EQ(display.visibleCursor(), Cursor::iBeam);
        display.movePointer({ 10, 10 });
        EXPECT_EQ(display.visibleCursor(), Cursor::crosshair);
    }

    TEST_F(HeadlessPointer, LetsTheCallerMoveASurfaceByItself)
    {
        EXPECT_FALSE(a->beginMove({ 10, 10 }));
        EXPECT_FALSE(a->beginResize(ResizeEdge::left, { 10, 10 }));
    }

}
}
