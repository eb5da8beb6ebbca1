// SPDX-License-Identifier: Apache-2.0
#include "menubar/BRMenuTableView.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "graphics/NSColor+StandardUIColors.h"
#include "menubar/BRMenuTableRowView.h"
#include "support/ActionLog.h"
#include "support/Allocations.h"
#include "support/Focused.h"
#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/Pixels.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::indexes;

    /// A menu table of 100 by 190 points at the bottom left of a screen of 400 by 300: ten of its rows show.
    struct MenuTable : testing::Test {
        HeadlessScreen screen;
        test::LogSink log;
        Ref<NSScrollView> scroll
            = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, 100, 190)));
        Ref<BRMenuTableView> table = make<BRMenuTableView>();
        Ref<TableHost> host = make<TableHost>();
        Ref<ActionLog> taps = make<ActionLog>();

        void SetUp() override
        {
            table->setHeaderView(nullptr);
            table->addTableColumn(test::column("item"_ns, 97).get());
            scroll->setDocumentView(table.get());
            screen.window().contentView()->addSubview(scroll.get());
            screen.pointer().moveTo({ 300, 250 });
            table->setDelegate(host.get());
            table->setTapTarget(taps.get());
            table->setTapAction(selector<"act:">);
            load(100);
        }
        void TearDown() override
        {
            table->setTableDelegate(nullptr);
            taps->sender_ = nullptr; // which keeps its target
        }

        void load(NSInteger rows)
        {
            host->rows_ = rows;
            if (!table->dataSource())
                table->setDataSource(host.get());
            table->reloadData();
            screen.process();
        }
        /// Answers the middle of the n-th line that shows.
        static NSPoint line(int number) { return { 50, 190 - 19.0 * number - 9 }; }
        void hover(int number) { screen.pointer().moveTo(line(number)); }
        NSUInteger areas() const { return table->trackingAreas()->count(); }
        Ref<NSTrackingArea> area(NSUInteger row) const
        {
            return cast<NSTrackingArea>(table->trackingAreas()->objectAtIndex(row));
        }
    };

    // ---- properties

    TEST(MenuTableView, ANewOneHovers)
    {
        const Ref<BRMenuTableView> table = make<BRMenuTableView>();
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeHover);
        EXPECT_FALSE(table->ourAlternatingRows());
        EXPECT_EQ(table->tapTarget(), nullptr);
        EXPECT_FALSE(table->tapAction());
        EXPECT_EQ(table->tableDelegate(), nullptr);
        table->setOurAlternatingRows(true);
        EXPECT_TRUE(table->ourAlternatingRows());
        EXPECT_FALSE(table->usesAlternatingRowBackgroundColors());
    }

    TEST(MenuTableView, KeepsTargetAndDelegate)
    {
        const Ref<BRMenuTableView> table = make<BRMenuTableView>();
        table->setTapTarget(make<ActionLog>().get());
        table->setTableDelegate(make<TableHost>().get());
        EXPECT_TRUE(table->tapTarget());
        EXPECT_TRUE(table->tableDelegate());
    }

    // ---- loading

    TEST_F(MenuTable, LoadingMakesTheTableItsOwnDelegateAndTarget)
    {
        EXPECT_EQ(table->delegate(), table);
        EXPECT_EQ(table->tableDelegate(), host);
        EXPECT_EQ(table->target(), table);
        EXPECT_EQ(table->action(), selector<"tapAction:">);
        EXPECT_EQ(table->numberOfRows(), 100);
    }

    TEST_F(MenuTable, LoadingAgainKeepsTheStoredDelegate)
    {
        const Ref<TableHost> other = make<TableHost>();
        table->setDelegate(other.get());
        table->reloadData();
        EXPECT_EQ(table->tableDelegate(), host);
        EXPECT_EQ(table->delegate(), other);
    }

    TEST_F(MenuTable, ANewDelegateTakesTheTablesPlace)
    {
        const Ref<TableHost> other = make<TableHost>();
        table->setDelegate(other.get());
        EXPECT_EQ(table->delegate(), other);
        EXPECT_EQ(table->tableDelegate(), host);
    }

    TEST_F(MenuTable, NeverStandsInForItself)
    {
        table->setTableDelegate(nullptr);
        table->reloadData();
        EXPECT_EQ(table->tableDelegate(), nullptr);
        EXPECT_EQ(table->delegate(), table);
        table->setTableDelegate(table.get());
        const Ref<NSView> view = table->send<"tableView:viewForTableColumn:row:", Ref<NSView>>(
            table.get(), static_cast<NSTableColumn*>(nullptr), NSInteger { 0 });
        EXPECT_EQ(view, nullptr);
    }

    // ---- the rows' places

    TEST_F(MenuTable, EachRowIsFollowed)
    {
        ASSERT_EQ(areas(), 100U);
        const Ref<NSTrackingArea> third = area(3);
        EXPECT_EQ(third->rect(), table->rectOfRow(3));
        EXPECT_EQ(third->options(), 0x81U);
        EXPECT_EQ(third->owner(), table);
        ASSERT_EQ(third->userInfo()->count(), 1U);
        EXPECT_EQ(cast<NSNumber>(third->userInfo()->objectForKey("row"_ns))->integerValue(), 3);
    }

    TEST_F(MenuTable, WithoutRowsNothingIsFollowed)
    {
        load(0);
        EXPECT_EQ(areas(), 0U);
    }

    TEST_F(MenuTable, FewerRowsAreFollowedAfterLoading)
    {
        load(4);
        EXPECT_EQ(areas(), 4U);
    }

    TEST_F(MenuTable, UpdatingRemovesAreasOfOthers)
    {
        const Ref<NSTrackingArea> foreign
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
                NSMakeRect(0, 0, 5, 5), 0x81, host.get(), nullptr);
        table->addTrackingArea(foreign.get());
        EXPECT_EQ(areas(), 101U);
        table->updateTrackingAreas();
        EXPECT_EQ(areas(), 100U);
        EXPECT_FALSE(table->trackingAreas()->containsObject(foreign.get()));
    }

    TEST_F(MenuTable, UpdatingFollowsNewHeights)
    {
        table->setRowHeight(28);
        table->updateTrackingAreas();
        EXPECT_EQ(area(3)->rect(), NSMakeRect(0, 90, 100, 30));
    }

    // ---- hovering

    TEST_F(MenuTable, TheRowUnderThePointerIsSelected)
    {
        hover(2);
        EXPECT_EQ(table->selectedRow(), 2);
        hover(5);
        EXPECT_EQ(test::textOf(table->selectedRowIndexes()), "5");
        EXPECT_EQ(log.text(), "hover 2\nhover 5\n");
    }

    TEST_F(MenuTable, MovingWithinARowSaysNothingNew)
    {
        hover(2);
        screen.pointer().moveTo({ 60, line(2).y + 3 });
        EXPECT_EQ(log.text(), "hover 2\n");
    }

    TEST_F(MenuTable, AMoveToTheNextRowAsksForTheMemoryOfItsLineInTheLogAlone)
    {
        setLogSink([](NSString*) {});
        const std::size_t lineInTheLog = test::mostAllocationsIn(
            1, [](int) {}, [] { NSLog("hover %lu"_ns, NSUInteger { 5 }); });
        const std::size_t most = test::mostAllocationsIn(
            20,
            [&](int i) { screen.display().movePointer(line(i % 20 < 10 ? i % 20 : 19 - i % 20)); },
            [&] { screen.process(); });
        EXPECT_EQ(most, lineInTheLog);
        EXPECT_EQ(table->selectedRow(), 0);
    }

    TEST_F(MenuTable, TheLastRowStaysSelectedWhenThePointerLeaves)
    {
        hover(2);
        screen.pointer().moveTo({ 300, 250 });
        EXPECT_EQ(table->selectedRow(), 2);
        EXPECT_EQ(log.text(), "hover 2\n");
    }

    TEST_F(MenuTable, LeavingARowDoesNothing)
    {
        table->setMenuHoverMode(BRMenuHoverModeTapped);
        hover(2);
        table->setMenuHoverMode(BRMenuHoverModeTapped);
        screen.pointer().moveTo({ 300, 250 });
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeTapped);
    }

    TEST_F(MenuTable, AnEventWithoutARowOnlyHovers)
    {
        hover(2);
        log.clear();
        table->setMenuHoverMode(BRMenuHoverModeTapped);
        const Ref<NSEvent> bare
            = NSEvent::cls()
                  .enterExitEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_trackingNumber_userData(
                      NSMouseEntered, {}, 0, 0, screen.window().windowNumber(), nullptr, 0, 0,
                      nullptr);
        table->mouseEntered(bare.get());
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeHover);
        EXPECT_EQ(table->selectedRow(), 2);
        EXPECT_EQ(log.text(), "");
        table->mouseExited(bare.get());
        EXPECT_EQ(table->selectedRow(), 2);
    }

    TEST_F(MenuTable, ARowThatIsNotANumberCountsAsNone)
    {
        const Ref<NSDictionary> odd
            = NSDictionary::cls().dictionaryWithObject_forKey("three"_ns, "row"_ns);
        const Ref<NSEvent> event
            = NSEvent::cls()
                  .enterExitEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_trackingNumber_userData(
                      NSMouseEntered, {}, 0, 0, screen.window().windowNumber(), nullptr, 0, 0,
                      odd.get());
        table->mouseEntered(event.get());
        EXPECT_EQ(table->selectedRow(), -1);
    }

    TEST_F(MenuTable, AfterScrollingTheRowUnderTheRestingPointerIsSelected)
    {
        hover(2);
        screen.pointer().scroll(0, -38, true);
        EXPECT_EQ(scroll->contentView()->bounds().origin.y, 38);
        EXPECT_EQ(table->selectedRow(), 4);
        EXPECT_EQ(log.text(), "hover 2\nhover 4\n");
    }

    TEST_F(MenuTable, AfterScrollingByTheProgramTheNextMovementSelects)
    {
        hover(2);
        scroll->contentView()->scrollToPoint({ 0, 190 });
        screen.process();
        EXPECT_EQ(table->selectedRow(), 2);
        screen.pointer().moveTo({ 51, line(2).y });
        EXPECT_EQ(table->selectedRow(), 12);
    }

    TEST_F(MenuTable, ALoadUnderARestingPointerSelectsNothing)
    {
        load(0);
        hover(2);
        load(100);
        EXPECT_EQ(table->selectedRow(), -1);
        EXPECT_EQ(log.text(), "");
        hover(3);
        EXPECT_EQ(table->selectedRow(), 3);
    }

    TEST_F(MenuTable, ALoadKeepsTheSelectionAndThePointersRow)
    {
        hover(2);
        load(50);
        EXPECT_EQ(table->selectedRow(), 2);
        hover(3);
        EXPECT_EQ(table->selectedRow(), 3);
        EXPECT_EQ(log.text(), "hover 2\nhover 3\n");
    }

    TEST_F(MenuTable, AfterAResizeTheNextRowIsFound)
    {
        hover(2);
        scroll->setFrameSize({ 150, 190 });
        screen.process();
        screen.pointer().moveTo({ 140, line(4).y });
        EXPECT_EQ(table->selectedRow(), 4);
    }

    TEST_F(MenuTable, AnInactiveApplicationHoversToo)
    {
        screen.application().deactivate();
        screen.process();
        hover(6);
        EXPECT_EQ(table->selectedRow(), 6);
    }

    // ---- tapping

    TEST_F(MenuTable, AClickSendsTheTapAction)
    {
        hover(3);
        screen.pointer().click(line(3));
        EXPECT_EQ(taps->count_, 1);
        EXPECT_EQ(taps->sender_, table);
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeTapped);
        EXPECT_EQ(table->selectedRow(), 3);
        EXPECT_EQ(table->clickedRow(), 3);
    }

    TEST_F(MenuTable, TheNextRowHoversAgain)
    {
        screen.pointer().click(line(3));
        hover(4);
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeHover);
        EXPECT_EQ(table->selectedRow(), 4);
    }

    TEST_F(MenuTable, AClickIntoEmptySpaceSendsTheTapActionToo)
    {
        load(3);
        screen.pointer().click(line(7));
        EXPECT_EQ(taps->count_, 1);
        EXPECT_EQ(table->clickedRow(), -1);
        EXPECT_EQ(table->selectedRow(), -1);
    }

    TEST_F(MenuTable, WithoutATargetATapOnlyMarks)
    {
        table->setTapTarget(nullptr);
        screen.pointer().click(line(3));
        EXPECT_EQ(table->menuHoverMode(), BRMenuHoverModeTapped);
    }

    TEST_F(MenuTable, TheTargetMayLoadTheTable)
    {
        taps->setReaction([this](NSObject*) { load(2); });
        screen.pointer().click(line(3));
        EXPECT_EQ(table->numberOfRows(), 2);
        EXPECT_EQ(table->selectedRow(), -1);
    }

    // ---- rows

    TEST_F(MenuTable, RowsAreMenuRows)
    {
        const Ref<NSTableRowView> row = table->rowViewAtRow_makeIfNecessary(2, true);
        EXPECT_TRUE(row->isKindOfClass(BRMenuTableRowView::cls()));
        EXPECT_EQ(utf8(identifier(row)), "MENUROW");
    }

    TEST_F(MenuTable, RowsThatNoLongerShowAreUsedAgain)
    {
        const Ref<NSTableRowView> first = table->rowViewAtRow_makeIfNecessary(0, true);
        scroll->contentView()->scrollToPoint({ 0, 950 });
        screen.process();
        bool isUsed = false;
        for (NSInteger row = 50; row < 60; ++row)
            isUsed |= table->rowViewAtRow_makeIfNecessary(row, false) == first;
        EXPECT_TRUE(isUsed);
    }

    TEST_F(MenuTable, RowsAreNotAskedOfTheStoredDelegate)
    {
        host->rowView_ = [](NSInteger) -> Ref<NSObject> { return make<NSTableRowView>(); };
        table->reloadData();
        EXPECT_TRUE(
            table->rowViewAtRow_makeIfNecessary(2, true)->isKindOfClass(BRMenuTableRowView::cls()));
    }

    TEST_F(MenuTable, CellViewsAreAskedOfTheStoredDelegate)
    {
        host->view_
            = [](NSTableColumn&, NSInteger) -> Ref<NSObject> { return make<NSTableCellView>(); };
        table->reloadData();
        EXPECT_TRUE(table->viewAtColumn_row_makeIfNecessary(0, 2, true));
    }

    TEST_F(MenuTable, AStoredDelegateWithoutCellViewsLeavesRowsEmpty)
    {
        EXPECT_EQ(table->viewAtColumn_row_makeIfNecessary(0, 2, true), nullptr);
    }

    TEST_F(MenuTable, TheStoredDelegateHearsOfRowsThatComeAndGo)
    {
        host->tellsRows_ = true;
        load(2);
        EXPECT_NE(host->log_.find("+0 +1 "), std::string::npos);
        host->log_.clear();
        load(0);
        EXPECT_EQ(host->log_, "-0 -1 ");
    }

    // ---- drawing

    std::uint32_t rgb(const Ref<NSColor>& color)
    {
        const Ref<NSColor> c = color->colorUsingColorSpaceName("NSCalibratedRGBColorSpace"_ns);
        const auto part = [](double x) { return static_cast<std::uint32_t>(x * 255 + 0.5) & 0xFF; };
        return part(c->redComponent()) << 16 | part(c->greenComponent()) << 8
            | part(c->blueComponent());
    }

    TEST_F(MenuTable, TheSelectionHasTheAccentColourWhileHovering)
    {
        hover(3);
        EXPECT_EQ(screen.pixels().at(5, 300 - static_cast<int>(line(3).y)) & 0xFFFFFF,
            rgb(NSColor::cls().alternateSelectedControlColor()));
    }

    TEST_F(MenuTable, TheSelectionIsGreyOnceTapped)
    {
        hover(3);
        screen.pointer().click(line(3));
        EXPECT_EQ(screen.pixels().at(5, 300 - static_cast<int>(line(3).y)) & 0xFFFFFF,
            rgb(graySourceListSelectColor(NSColor::cls())));
    }

    TEST_F(MenuTable, InAnyOtherModeTheSelectionHasTheCurrentColour)
    {
        const Ref<NSTableRowView> row = table->rowViewAtRow_makeIfNecessary(2, true);
        table->setMenuHoverMode(static_cast<BRMenuHoverMode>(7));
        const test::Focused picture(100, 19);
        NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 1, 0, 1)->set();
        row->drawSelectionInRect(NSMakeRect(0, 0, 5, 5));
        EXPECT_EQ(picture.at(2, 2), (test::Rgba { 0, 255, 0, 255 }));
        EXPECT_EQ(picture.at(90, 10), (test::Rgba { 0, 255, 0, 255 })) << "the whole row";
    }

    TEST_F(MenuTable, TheSameRowIsAccentedAgainWhenThePointerComesBack)
    {
        hover(3);
        screen.pointer().click(line(3));
        screen.pointer().moveTo({ 300, 250 });
        screen.process();
        hover(3);
        EXPECT_EQ(screen.pixels().at(5, 300 - static_cast<int>(line(3).y)) & 0xFFFFFF,
            rgb(NSColor::cls().alternateSelectedControlColor()));
    }

}

}
