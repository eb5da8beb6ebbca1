// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSearchField.h"

#include <gtest/gtest.h>

#include "appkit/NSText.h"
#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/DefaultsFolder.h"
#include "support/EditingDesk.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    struct SearchTest : testing::Test {
        EditingDesk desk;
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSSearchField> field = desk.add<NSSearchField>(NSMakeRect(20, 20, 160, 24));

        SearchTest()
        {
            field->setTarget(log.get());
            field->setAction(selector<"act:">);
            desk.window->makeFirstResponder(field.get());
        }
        std::string text() { return utf8Of(field->stringValue().get()); }
        std::string recents()
        {
            return utf8Of(field->recentSearches()->componentsJoinedByString(","_ns).get());
        }
    };

    TEST_F(SearchTest, ANewFieldIsRoundedAndSaysWhatItIsFor)
    {
        EXPECT_EQ(field->bezelStyle(), NSTextFieldRoundedBezel);
        EXPECT_EQ(utf8Of(field->placeholderString().get()), "Search");
        EXPECT_EQ(field->maximumRecents(), 10);
        EXPECT_EQ(field->recentSearches()->count(), 0U);
    }
    TEST_F(SearchTest, TheActionComesAfterARest)
    {
        desk.type(u"ab");
        EXPECT_EQ(log->count_, 0);
        desk.screen.advance(0.2);
        desk.type(u"c");
        desk.screen.advance(0.2);
        EXPECT_EQ(log->count_, 0) << "the rest begins anew";
        desk.screen.advance(0.2);
        EXPECT_EQ(log->count_, 1);
        EXPECT_EQ(text(), "abc");
    }
    TEST_F(SearchTest, TheActionCanComeWithEveryChange)
    {
        field->setSendsSearchStringImmediately(true);
        desk.type(u"ab");
        EXPECT_EQ(log->count_, 2);
    }
    TEST_F(SearchTest, TheActionCanWaitForReturn)
    {
        field->setSendsWholeSearchString(true);
        desk.type(u"ab");
        desk.screen.advance(2);
        EXPECT_EQ(log->count_, 0);
        desk.press('\r');
        EXPECT_EQ(log->count_, 1);
    }
    TEST_F(SearchTest, ReturnSendsTheActionOnce)
    {
        desk.type(u"ab");
        desk.press('\r');
        desk.screen.advance(2);
        EXPECT_EQ(log->count_, 1);
    }
    TEST_F(SearchTest, EscapeClearsTheText)
    {
        desk.type(u"ab");
        desk.press(0x1B);
        EXPECT_EQ(text(), "");
        EXPECT_EQ(log->count_, 1);
        EXPECT_NE(field->currentEditor(), nullptr);
    }
    TEST_F(SearchTest, TheButtonClearsTheText)
    {
        const auto cell = cast<NSSearchFieldCell>(field->cell());
        EXPECT_TRUE(NSIsEmptyRect(cell->cancelButtonRectForBounds(field->bounds())));
        desk.type(u"ab");
        const NSRect button = cell->cancelButtonRectForBounds(field->bounds());
        ASSERT_FALSE(NSIsEmptyRect(button));
        desk.click(*field, { NSMidX(button), NSMidY(button) });
        EXPECT_EQ(text(), "");
        EXPECT_GE(log->count_, 1);
    }
    TEST_F(SearchTest, ThePartsDoNotOverlap)
    {
        desk.type(u"ab");
        const auto cell = cast<NSSearchFieldCell>(field->cell());
        const NSRect glass = cell->searchButtonRectForBounds(field->bounds());
        const NSRect words = cell->searchTextRectForBounds(field->bounds());
        const NSRect button = cell->cancelButtonRectForBounds(field->bounds());
        EXPECT_LE(NSMaxX(glass), NSMinX(words));
        EXPECT_LE(NSMaxX(words), NSMinX(button));
        for (const CGFloat width : { 0.0, 3.0, 20.0, -5.0 }) {
            field->setFrameSize({ width, 24 });
            desk.screen.process();
        }
    }
    TEST_F(SearchTest, SearchesAreRemembered)
    {
        for (const auto& typed : { u"one", u"two", u"one" }) {
            field->setStringValue(""_ns);
            desk.type(typed);
            desk.press('\r');
        }
        EXPECT_EQ(recents(), "one,two");
        field->setMaximumRecents(1);
        EXPECT_EQ(recents(), "one");
        field->setMaximumRecents(-3);
        EXPECT_EQ(recents(), "");
        field->setMaximumRecents(1000);
        EXPECT_EQ(field->maximumRecents(), 254);
    }
    TEST_F(SearchTest, OnlyTextsAreRemembered)
    {
        field->setRecentSearches(
            makeArray({ static_cast<NSObject*>("a"_ns), NSNumber::cls().numberWithInt(1).get() })
                .get());
        EXPECT_EQ(recents(), "a");
        field->setRecentSearches(nullptr);
        EXPECT_EQ(recents(), "");
    }
    TEST_F(SearchTest, SearchesAreSavedUnderAName)
    {
        test::DefaultsFolder folder;
        field->setRecentsAutosaveName("test searches"_ns);
        field->setRecentSearches(makeArray({ static_cast<NSObject*>("a"_ns) }).get());
        const Ref<NSSearchField> other = make<NSSearchField>();
        other->setRecentsAutosaveName("test searches"_ns);
        EXPECT_EQ(other->recentSearches()->count(), 1U);
    }
    TEST_F(SearchTest, AFieldMayGoWhileItRests)
    {
        desk.type(u"ab");
        field->removeFromSuperview();
        field = nullptr;
        desk.screen.advance(2);
        EXPECT_EQ(log->count_, 0);
    }
    TEST_F(SearchTest, AnArchiveKeepsIt)
    {
        field->setSendsWholeSearchString(true);
        field->setMaximumRecents(5);
        field->setRecentSearches(makeArray({ static_cast<NSObject*>("a"_ns) }).get());
        const Ref<NSSearchField> back = test::archived(field);
        EXPECT_TRUE(back->sendsWholeSearchString());
        EXPECT_EQ(back->maximumRecents(), 5);
        EXPECT_EQ(back->recentSearches()->count(), 1U);
        EXPECT_EQ(back->bezelStyle(), NSTextFieldRoundedBezel);
    }

}
}
