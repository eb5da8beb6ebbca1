// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCursor.h"

#include <gtest/gtest.h>

#include "appkit/NSImage.h"
#include "appkit/NSTextField.h"
#include "appkit/NSView+CursorRects.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Archives.h"
#include "support/EditingDesk.h"

namespace brindle {

/// A view with one cursor rectangle, or what a test does instead.
class CursorHost : public NSView {
    BRINDLE_OBJECT(CursorHost, NSView)

public:
    NSRect rect_ {};
    Ref<NSCursor> cursor_;
    int asked_ = 0;
};
template <> struct CursorHost::Methods<struct Rects> {
    static void reset(CursorHost& self)
    {
        ++self.asked_;
        addCursorRect_cursor(self, self.rect_, self.cursor_.get());
    }
    static void table(Builder& t) { t.methods({ { "resetCursorRects", imp<reset> } }); }
};
BRINDLE_RECORD(CursorHost, Rects)

namespace {

    using display::Cursor;

    const NSCursor::Meta cursors = NSCursor::cls();

    struct CursorTest : testing::Test {
        HeadlessScreen screen { 300, 200 };

        CursorTest() { screen.pointer().moveTo({ 250, 190 }); }

        Ref<CursorHost> add(NSRect frame, NSRect rect, const Ref<NSCursor>& cursor)
        {
            Ref<CursorHost> host = cast<CursorHost>(alloc<CursorHost>()->initWithFrame(frame));
            host->rect_ = rect;
            host->cursor_ = cursor;
            screen.window().contentView()->addSubview(host.get());
            return host;
        }
        Cursor shown() { return screen.display().visibleCursor(); }
        Cursor at(CGFloat x, CGFloat y)
        {
            screen.pointer().moveTo({ x, y });
            return shown();
        }
    };

    TEST_F(CursorTest, TheArrowIsThereAtFirst)
    {
        EXPECT_EQ(cursors.currentCursor(), cursors.arrowCursor());
        EXPECT_EQ(shown(), Cursor::arrow);
    }
    TEST_F(CursorTest, AStandardCursorIsOneObject)
    {
        EXPECT_EQ(cursors.IBeamCursor(), cursors.IBeamCursor());
        EXPECT_NE(cursors.IBeamCursor(), cursors.arrowCursor());
        EXPECT_EQ(cursors.resizeLeftCursor(), cursors.resizeLeftRightCursor());
    }
    TEST_F(CursorTest, SettingShowsTheShape)
    {
        cursors.crosshairCursor()->set();
        EXPECT_EQ(shown(), Cursor::crosshair);
        EXPECT_EQ(cursors.currentCursor(), cursors.crosshairCursor());
    }
    TEST_F(CursorTest, PopGoesBackToWhatWasThereBeforeThePush)
    {
        cursors.IBeamCursor()->set();
        cursors.openHandCursor()->push();
        cursors.closedHandCursor()->push();
        EXPECT_EQ(shown(), Cursor::closedHand);
        cursors.pop();
        EXPECT_EQ(shown(), Cursor::openHand);
        cursors.openHandCursor()->pop();
        EXPECT_EQ(shown(), Cursor::iBeam);
    }
    TEST_F(CursorTest, PopWithoutPushChangesNothing)
    {
        cursors.IBeamCursor()->set();
        cursors.pop();
        EXPECT_EQ(shown(), Cursor::iBeam);
    }
    TEST_F(CursorTest, HidingCounts)
    {
        cursors.hide();
        cursors.hide();
        EXPECT_EQ(shown(), Cursor::hidden);
        cursors.unhide();
        EXPECT_EQ(shown(), Cursor::hidden);
        cursors.unhide();
        EXPECT_EQ(shown(), Cursor::arrow);
        cursors.unhide(); // one too many
        cursors.hide();
        EXPECT_EQ(shown(), Cursor::hidden);
        cursors.unhide();
    }
    TEST_F(CursorTest, AShapeThatIsSetWhileHiddenComesWithThePointer)
    {
        cursors.hide();
        cursors.pointingHandCursor()->set();
        EXPECT_EQ(shown(), Cursor::hidden);
        EXPECT_EQ(cursors.currentCursor(), cursors.pointingHandCursor());
        cursors.unhide();
        EXPECT_EQ(shown(), Cursor::pointingHand);
    }
    TEST_F(CursorTest, HidingUntilTheNextMovementEndsWithIt)
    {
        at(10, 10);
        cursors.setHiddenUntilMouseMoves(true);
        EXPECT_EQ(shown(), Cursor::hidden);
        EXPECT_EQ(at(11, 10), Cursor::arrow);
    }
    TEST_F(CursorTest, AnImageIsKeptAndTheArrowIsShown)
    {
        const Ref<NSImage> image = alloc<NSImage>()->initWithSize({ 16, 16 });
        const Ref<NSCursor> cursor
            = alloc<NSCursor>()->initWithImage_hotSpot(image.get(), { 3, 4 });
        cursor->set();
        EXPECT_EQ(cursor->image(), image);
        EXPECT_EQ(cursor->hotSpot(), (NSPoint { 3, 4 }));
        EXPECT_EQ(cursors.currentCursor(), cursor);
        EXPECT_EQ(shown(), Cursor::arrow);
    }
    TEST_F(CursorTest, ACursorWithoutImageRaises)
    {
        EXPECT_THROW(alloc<NSCursor>()->initWithImage_hotSpot(nullptr, {}), Exception);
    }
    TEST_F(CursorTest, AnArchiveKeepsTheShape)
    {
        EXPECT_EQ(test::archived(cursors.crosshairCursor()), cursors.crosshairCursor());
    }
    TEST_F(CursorTest, ANewDisplayBeginsWithTheArrow)
    {
        cursors.crosshairCursor()->set();
        {
            HeadlessScreen other;
            EXPECT_EQ(other.display().visibleCursor(), Cursor::arrow);
            EXPECT_EQ(cursors.currentCursor(), cursors.arrowCursor());
        }
    }

    // ---- rectangles

    TEST_F(CursorTest, ARectangleShowsItsCursorWhileThePointerIsInIt)
    {
        add(NSMakeRect(50, 50, 100, 100), NSMakeRect(10, 10, 20, 20), cursors.IBeamCursor());
        EXPECT_EQ(at(55, 55), Cursor::arrow);
        EXPECT_EQ(at(65, 65), Cursor::iBeam);
        EXPECT_EQ(at(85, 85), Cursor::arrow);
    }
    TEST_F(CursorTest, TheLastOfOverlappingRectanglesCounts)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 100, 100), NSMakeRect(0, 0, 50, 50), cursors.IBeamCursor());
        at(90, 90);
        addCursorRect_cursor(host, NSMakeRect(0, 0, 20, 20), cursors.crosshairCursor().get());
        EXPECT_EQ(at(10, 10), Cursor::crosshair);
        EXPECT_EQ(at(30, 30), Cursor::iBeam);
    }
    TEST_F(CursorTest, AViewInFrontCoversARectangle)
    {
        add(NSMakeRect(0, 0, 100, 100), NSMakeRect(0, 0, 100, 100), cursors.IBeamCursor());
        screen.add<NSView>(NSMakeRect(40, 40, 20, 20));
        EXPECT_EQ(at(50, 50), Cursor::arrow);
        EXPECT_EQ(at(30, 30), Cursor::iBeam);
    }
    TEST_F(CursorTest, AViewInsideHasTheRectangleOfTheOneAroundIt)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 100, 100), NSMakeRect(0, 0, 100, 100), cursors.IBeamCursor());
        host->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(40, 40, 20, 20)).get());
        EXPECT_EQ(at(50, 50), Cursor::iBeam);
    }
    TEST_F(CursorTest, ARectangleEndsWhereItsViewIsCutOff)
    {
        add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 100, 100), cursors.IBeamCursor());
        EXPECT_EQ(at(10, 10), Cursor::iBeam);
        EXPECT_EQ(at(50, 50), Cursor::arrow);
    }
    TEST_F(CursorTest, AViewThatMovesTakesItsRectangleAlong)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        EXPECT_EQ(at(10, 10), Cursor::iBeam);
        host->setFrameOrigin({ 100, 100 });
        EXPECT_EQ(at(11, 11), Cursor::arrow);
        EXPECT_EQ(at(110, 110), Cursor::iBeam);
    }
    TEST_F(CursorTest, AViewThatLeavesTakesItsRectangleAlong)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        at(10, 10);
        host->removeFromSuperview();
        EXPECT_EQ(at(11, 11), Cursor::arrow);
    }
    TEST_F(CursorTest, AHiddenViewIsNotAsked)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        host->setHidden(true);
        EXPECT_EQ(at(10, 10), Cursor::arrow);
        EXPECT_EQ(host->asked_, 0);
    }
    TEST_F(CursorTest, ViewsAreAskedAgainOnlyAfterAChange)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        at(10, 10);
        at(12, 10);
        EXPECT_EQ(host->asked_, 1);
        invalidateCursorRectsForView(screen.window(), host.get());
        at(13, 10);
        EXPECT_EQ(host->asked_, 2);
    }
    TEST_F(CursorTest, ARectangleThatIsRemovedCountsNoMore)
    {
        const Ref<CursorHost> host
            = add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        at(10, 10);
        removeCursorRect_cursor(host, NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor().get());
        EXPECT_EQ(at(11, 10), Cursor::arrow);
    }
    TEST_F(CursorTest, WithoutRectanglesTheShapeIsTheHosts)
    {
        add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        disableCursorRects(screen.window());
        EXPECT_FALSE(areCursorRectsEnabled(screen.window()));
        cursors.crosshairCursor()->set();
        EXPECT_EQ(at(10, 10), Cursor::crosshair);
        enableCursorRects(screen.window());
        EXPECT_EQ(at(11, 10), Cursor::iBeam);
    }
    TEST_F(CursorTest, AShapeThatAHostSetsInsideARectangleStaysThere)
    {
        add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        at(10, 10);
        cursors.closedHandCursor()->set();
        EXPECT_EQ(at(11, 11), Cursor::closedHand);
        EXPECT_EQ(at(50, 50), Cursor::arrow);
    }
    TEST_F(CursorTest, ADragKeepsTheShapeItBeganWith)
    {
        add(NSMakeRect(0, 0, 20, 20), NSMakeRect(0, 0, 20, 20), cursors.IBeamCursor());
        at(10, 10);
        screen.pointer().press({ 10, 10 });
        screen.pointer().dragTo({ 100, 100 });
        screen.process();
        EXPECT_EQ(shown(), Cursor::iBeam);
        screen.pointer().release();
        EXPECT_EQ(shown(), Cursor::arrow);
    }
    TEST_F(CursorTest, ARectangleOutsideAWindowIsIgnored)
    {
        const Ref<NSView> view = make<NSView>();
        addCursorRect_cursor(view, NSMakeRect(0, 0, 1, 1), cursors.IBeamCursor().get());
        removeCursorRect_cursor(view, NSMakeRect(0, 0, 1, 1), cursors.IBeamCursor().get());
        discardCursorRects(view);
        EXPECT_EQ(shown(), Cursor::arrow);
    }

    TEST(CursorPlaces, TextThatCanBeSelectedShowsTheIBeam)
    {
        EditingDesk desk;
        const Ref<NSTextField> field = desk.add<NSTextField>(NSMakeRect(20, 20, 100, 24));
        const auto over = [&] {
            desk.screen.pointer().moveTo(desk.onScreen(*field, { 1, 1 }));
            desk.screen.pointer().moveTo(desk.onScreen(*field, { 50, 12 }));
            return desk.screen.display().visibleCursor();
        };
        EXPECT_EQ(over(), Cursor::iBeam);
        desk.window->makeFirstResponder(field.get());
        EXPECT_EQ(over(), Cursor::iBeam) << "over the editor";
        field->setSelectable(false);
        invalidateCursorRectsForView(desk.window, field.get());
        EXPECT_EQ(over(), Cursor::arrow);
    }
    TEST(CursorPlaces, TheEdgesOfAWindowShowWhereItCanBePulled)
    {
        HeadlessScreen screen { 400, 300 };
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 200, 100), NSTitledWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        const auto at = [&](CGFloat x, CGFloat y) {
            screen.pointer().moveTo({ x, y });
            return screen.display().visibleCursor();
        };
        EXPECT_EQ(at(101, 150), Cursor::resizeLeftRight);
        EXPECT_EQ(at(200, 101), Cursor::resizeUpDown);
        EXPECT_EQ(at(101, 101), Cursor::resizeTopRightBottomLeft);
        EXPECT_EQ(at(298, 101), Cursor::resizeTopLeftBottomRight);
        EXPECT_EQ(at(200, 150), Cursor::arrow);
        at(101, 150);
        EXPECT_EQ(at(20, 20), Cursor::arrow);
        window->close();
    }

}
}
