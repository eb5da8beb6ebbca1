// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableView+Columns.h"

#include <gtest/gtest.h>

#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSortDescriptor.h"
#include "runtime/NSException.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::column;
    using test::indexes;
    using test::Table;
    using test::textOf;

    /// A table of 300 by 190 below titles of 24 points: three columns, each 97 points wide and 3 from the next.
    struct TableColumns : testing::Test {
        HeadlessScreen screen;
        Table t { 100, NSMakeRect(0, 0, 300, 214) };

        void SetUp() override
        {
            const Ref<NSView> header
                = alloc<NSTableHeaderView>()->initWithFrame(NSMakeRect(0, 0, 300, 24));
            t->setHeaderView(cast<NSTableHeaderView>(header).get());
            at(0)->setIdentifier("a"_ns);
            t->addTableColumn(column("b"_ns, 97).get());
            t->addTableColumn(column("c"_ns, 97).get());
            for (NSInteger i = 0; i < 3; ++i)
                at(i)->setWidth(97);
            screen.window().contentView()->addSubview(t.scroll.get());
            screen.window().makeKeyAndOrderFront(nullptr);
            screen.process();
            t.host->log_.clear();
        }
        NSTableColumn* at(NSInteger index)
        {
            return static_cast<NSTableColumn*>(
                t->tableColumns()->objectAtIndex(static_cast<NSUInteger>(index)).get());
        }
        void choose(std::initializer_list<NSUInteger> columns, bool extend = false)
        {
            selectColumnIndexes_byExtendingSelection(t.view, indexes(columns).get(), extend);
        }
        std::string chosen() const { return textOf(selectedColumnIndexes(t.view)); }
        std::string order() const
        {
            std::string names;
            for (NSObject* item : each(t->tableColumns()))
                names += utf8Of(static_cast<NSTableColumn*>(item)->identifier());
            return names;
        }
        static NSPoint title(int number) { return { 100.0 * number + 50, 202 }; }
        void click(int number, NSEventModifierFlags held = 0)
        {
            screen.display().setModifiers(static_cast<display::Modifiers>(held));
            screen.pointer().click(title(number));
            screen.display().setModifiers(0);
        }
    };

    // ---- choosing columns

    TEST_F(TableColumns, NoneIsChosenAtFirst)
    {
        EXPECT_FALSE(allowsColumnSelection(t.view));
        EXPECT_EQ(selectedColumn(t.view), -1);
        EXPECT_EQ(chosen(), "");
        EXPECT_FALSE(isColumnSelected(t.view, 0));
    }
    TEST_F(TableColumns, AChosenOneLetsGoOfTheRows)
    {
        t.select({ 4 });
        t.host->log_.clear();
        choose({ 1 });
        EXPECT_EQ(t.selected(), "");
        EXPECT_EQ(selectedColumn(t.view), 1);
        EXPECT_EQ(t.host->log_, "selected ");
    }
    TEST_F(TableColumns, AChosenRowLetsGoOfThem)
    {
        choose({ 1 });
        t.host->log_.clear();
        t.select({ 4 });
        EXPECT_EQ(numberOfSelectedColumns(t.view), 0);
        EXPECT_EQ(t.host->log_, "selected ");
    }
    TEST_F(TableColumns, ChoosingTheSameAgainTellsNobody)
    {
        choose({ 1 });
        t.host->log_.clear();
        choose({ 1 });
        EXPECT_EQ(t.host->log_, "");
    }
    TEST_F(TableColumns, OnlyTheLastIsChosenWhereOneMayBe)
    {
        choose({ 0, 2 });
        EXPECT_EQ(chosen(), "2");
    }
    TEST_F(TableColumns, SeveralAreChosenTogetherAndLeftOneByOne)
    {
        t->setAllowsMultipleSelection(true);
        choose({ 0 });
        choose({ 2 }, true);
        EXPECT_EQ(chosen(), "0,2");
        deselectColumn(t.view, 0);
        EXPECT_EQ(chosen(), "2");
    }
    TEST_F(TableColumns, TheLastOneStaysWhereSomethingMustBeChosen)
    {
        t->setAllowsEmptySelection(false);
        choose({ 1 });
        deselectColumn(t.view, 1);
        EXPECT_EQ(chosen(), "1");
        selectColumnIndexes_byExtendingSelection(t.view, nullptr, false);
        EXPECT_EQ(chosen(), "1");
    }
    TEST_F(TableColumns, AReloadKeepsThemWhereSomethingMustBeChosen)
    {
        t->setAllowsEmptySelection(false);
        choose({ 1 });
        t->reloadData();
        EXPECT_EQ(chosen(), "1");
        EXPECT_EQ(t.selected(), "");
    }
    TEST_F(TableColumns, OneThatIsNotThereRaises) { EXPECT_THROW(choose({ 3 }), Exception); }
    TEST_F(TableColumns, AMovedOneStaysChosen)
    {
        choose({ 0 });
        t->moveColumn_toColumn(0, 2);
        EXPECT_EQ(chosen(), "2");
    }
    TEST_F(TableColumns, ARemovedOneIsNoLongerChosen)
    {
        choose({ 1 });
        t->removeTableColumn(at(1));
        EXPECT_EQ(chosen(), "");
    }
    TEST_F(TableColumns, DeselectingAllLetsGoOfThem)
    {
        choose({ 1 });
        t->deselectAll(nullptr);
        EXPECT_EQ(chosen(), "");
    }

    TEST_F(TableColumns, AClickOnATitleChoosesNothingUnlessAllowed)
    {
        click(1);
        EXPECT_EQ(chosen(), "");
    }
    TEST_F(TableColumns, AClickOnATitleChoosesItsColumn)
    {
        setAllowsColumnSelection(t.view, true);
        click(1);
        EXPECT_EQ(chosen(), "1");
        EXPECT_EQ(t.host->log_, "selected clicked:b ");
    }
    TEST_F(TableColumns, ClicksWithKeysExtendAndTakeBack)
    {
        setAllowsColumnSelection(t.view, true);
        t->setAllowsMultipleSelection(true);
        click(0);
        click(2, NSShiftKeyMask);
        EXPECT_EQ(chosen(), "0,1,2");
        click(1, NSCommandKeyMask);
        EXPECT_EQ(chosen(), "0,2");
    }
    TEST_F(TableColumns, TheDelegateMayRefuseAClick)
    {
        setAllowsColumnSelection(t.view, true);
        t.host->mayChange_ = [] { return false; };
        t->setDelegate(t.host.get());
        click(1);
        EXPECT_EQ(chosen(), "");
    }
    TEST_F(TableColumns, AChosenOneHasAGroundOfItsOwn)
    {
        const std::uint32_t before = screen.pixels().at(150, 200);
        choose({ 1 });
        EXPECT_NE(screen.pixels().at(150, 200), before);
        EXPECT_EQ(screen.pixels().at(50, 200), before);
    }

    // ---- the pointer

    TEST_F(TableColumns, TheEdgeOfATitleShowsThatItCanBeDragged)
    {
        screen.pointer().moveTo({ 100, 202 });
        EXPECT_EQ(screen.display().visibleCursor(), display::Cursor::resizeLeftRight);
        screen.pointer().moveTo({ 150, 202 });
        EXPECT_EQ(screen.display().visibleCursor(), display::Cursor::arrow);
    }
    TEST_F(TableColumns, TheShapeAtTheEdgeFollowsAColumnThatWasWidened)
    {
        at(0)->setWidth(117);
        screen.pointer().moveTo({ 120, 202 });
        EXPECT_EQ(screen.display().visibleCursor(), display::Cursor::resizeLeftRight);
        screen.pointer().moveTo({ 100, 202 });
        EXPECT_EQ(screen.display().visibleCursor(), display::Cursor::arrow);
    }
    TEST_F(TableColumns, TheEdgeOfAColumnThatMayNotBeWidenedShowsNothing)
    {
        at(0)->setResizingMask(NSTableColumnNoResizing);
        t->tile();
        at(1)->setWidth(98);
        screen.pointer().moveTo({ 100, 202 });
        EXPECT_EQ(screen.display().visibleCursor(), display::Cursor::arrow);
    }

    // ---- what is kept

    struct SavedColumns : TableColumns {
        test::DefaultsFolder folder;

        void save()
        {
            setAutosaveName(t.view, "files"_ns);
            setAutosaveTableColumns(t.view, true);
        }
        /// A table of the next start of the program, with the same columns as at first.
        struct Next {
            Ref<NSTableView> view = make<NSTableView>();
            std::string text() const
            {
                std::string all;
                for (NSObject* item : each(view->tableColumns())) {
                    auto& one = *static_cast<NSTableColumn*>(item);
                    all += utf8Of(one.identifier()) + ":"
                        + std::to_string(static_cast<int>(one.width()))
                        + (one.isHidden() ? "- " : " ");
                }
                return all;
            }
        };
        static Next next(std::initializer_list<NSString*> names)
        {
            Next made;
            for (NSString* name : names)
                made.view->addTableColumn(column(name, 50).get());
            setAutosaveName(made.view, "files"_ns);
            setAutosaveTableColumns(made.view, true);
            return made;
        }
    };

    TEST_F(SavedColumns, OrderWidthsAndHidingComeBack)
    {
        save();
        t->moveColumn_toColumn(2, 0);
        at(0)->setWidth(70);
        at(1)->setHidden(true);
        EXPECT_EQ(next({ "a"_ns, "b"_ns, "c"_ns }).text(), "c:70 a:97- b:97 ");
    }
    TEST_F(SavedColumns, ColumnsThatAreAddedLaterGoToTheirPlaces)
    {
        save();
        t->moveColumn_toColumn(2, 0);
        Next later;
        setAutosaveTableColumns(later.view, true);
        setAutosaveName(later.view, "files"_ns);
        for (NSString* name : { "a"_ns, "b"_ns, "c"_ns })
            later.view->addTableColumn(column(name, 50).get());
        EXPECT_EQ(later.text(), "c:97 a:97 b:97 ");
    }
    TEST_F(SavedColumns, NewColumnsStayBehindAndGoneOnesAreForgotten)
    {
        save();
        t->moveColumn_toColumn(2, 0);
        EXPECT_EQ(next({ "new"_ns, "b"_ns, "c"_ns }).text(), "c:97 b:97 new:50 ");
    }
    TEST_F(SavedColumns, NothingIsKeptWithoutBothNameAndWish)
    {
        setAutosaveName(t.view, "files"_ns);
        at(0)->setWidth(70);
        EXPECT_EQ(NSUserDefaults::cls().standardUserDefaults()->objectForKey(
                      "NSTableView Columns files"_ns),
            nullptr);
    }
    TEST_F(SavedColumns, DamagedRecordsChangeNothing)
    {
        const Ref<NSObject> odd = makeDictionary({ { "Identifier"_ns, "a"_ns },
            { "Width"_ns, "wide"_ns }, { "Hidden"_ns, "perhaps"_ns } });
        NSUserDefaults::cls().standardUserDefaults()->setObject_forKey(
            makeArray({ odd, odd, Ref<NSObject>("text"_ns) }).get(),
            "NSTableView Columns files"_ns);
        EXPECT_EQ(next({ "a"_ns, "b"_ns }).text(), "a:50 b:50 ");
    }
    TEST_F(SavedColumns, AnEmptyNameIsNone)
    {
        save();
        EXPECT_EQ(utf8Of(autosaveName(t.view)), "files");
        setAutosaveName(t.view, ""_ns);
        EXPECT_EQ(autosaveName(t.view), nullptr);
    }

}

}
