// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPasteboard.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSURL.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Owns a pasteboard and writes only when somebody asks.
class LazyOwner : public NSObject {
    BRINDLE_OBJECT(LazyOwner, NSObject)

public:
    int asked_ = 0;
    int lost_ = 0;
};

template <> struct LazyOwner::Methods<struct Owning> {
    static void provide(LazyOwner& self, NSPasteboard* board, NSString* type)
    {
        ++self.asked_;
        board->setString_forType("late"_ns, type);
    }
    static void lost(LazyOwner& self, NSPasteboard*) { ++self.lost_; }
    static void table(Builder& t)
    {
        t.methods({
            { "pasteboard:provideDataForType:", imp<provide> },
            { "pasteboardChangedOwner:", imp<lost> },
        });
    }
};
BRINDLE_RECORD(LazyOwner, Owning)

namespace {

    struct NSPasteboardTest : testing::Test {
        HeadlessScreen screen;
        Ref<NSPasteboard> board = NSPasteboard::cls().pasteboardWithUniqueName();
        std::string text() { return utf8Of(board->stringForType(NSPasteboardTypeString).get()); }
        Ref<NSArray> stringType = NSArray::cls().arrayWithObject(NSPasteboardTypeString.get());
    };

    TEST_F(NSPasteboardTest, KeepsTextByType)
    {
        board->clearContents();
        EXPECT_TRUE(board->setString_forType("Grüße"_ns, NSPasteboardTypeString));
        EXPECT_EQ(text(), "Grüße");
        EXPECT_FALSE(board->stringForType(NSPasteboardTypeHTML));
    }

    TEST_F(NSPasteboardTest, AnswersTheSameOneForAName)
    {
        EXPECT_EQ(NSPasteboard::cls().generalPasteboard(),
            NSPasteboard::cls().pasteboardWithName(NSGeneralPboard));
        EXPECT_NE(NSPasteboard::cls().generalPasteboard(),
            NSPasteboard::cls().pasteboardWithName(NSFindPboard));
        EXPECT_EQ(NSPasteboard::cls().generalPasteboard(),
            NSPasteboard::cls().pasteboardWithName(nullptr));
    }

    TEST_F(NSPasteboardTest, CountsHowOftenItBeginsAnew)
    {
        const NSInteger before = board->changeCount();
        EXPECT_EQ(board->clearContents(), before + 1);
        board->setString_forType("a"_ns, NSPasteboardTypeString);
        EXPECT_EQ(board->changeCount(), before + 1);
        board->declareTypes_owner(stringType.get(), nullptr);
        EXPECT_EQ(board->changeCount(), before + 2);
        EXPECT_EQ(text(), "");
    }

    TEST_F(NSPasteboardTest, AsksItsOwnerOnce)
    {
        const Ref<LazyOwner> owner = make<LazyOwner>();
        board->declareTypes_owner(stringType.get(), owner.get());
        EXPECT_EQ(owner->asked_, 0);
        EXPECT_EQ(text(), "late");
        EXPECT_EQ(text(), "late");
        EXPECT_EQ(owner->asked_, 1);
    }

    TEST_F(NSPasteboardTest, TellsAnOwnerThatLosesIt)
    {
        const Ref<LazyOwner> owner = make<LazyOwner>();
        board->declareTypes_owner(stringType.get(), owner.get());
        board->clearContents();
        EXPECT_EQ(owner->lost_, 1);
    }

    TEST_F(NSPasteboardTest, DoesNotKeepItsOwner)
    {
        board->declareTypes_owner(stringType.get(), make<LazyOwner>().get());
        EXPECT_EQ(text(), "");
    }

    TEST_F(NSPasteboardTest, WritesAndReadsObjects)
    {
        const Ref<NSURL> url = NSURL::cls().fileURLWithPath("/tmp/a b"_ns);
        board->clearContents();
        EXPECT_TRUE(board->writeObjects(NSArray::cls().arrayWithObject(url.get()).get()));
        EXPECT_EQ(utf8Of(board->stringForType(NSPasteboardTypeFileURL).get()), "file:///tmp/a%20b");
        const Ref<NSArray> classes = NSArray::cls().arrayWithObject(NSURL::cls());
        const Ref<NSArray> read = board->readObjectsForClasses_options(classes.get(), nullptr);
        ASSERT_EQ(read->count(), 1u);
        EXPECT_TRUE(read->objectAtIndex(0)->isEqual(url.get()));
    }

    TEST_F(NSPasteboardTest, KeepsPropertyLists)
    {
        board->clearContents();
        const Ref<NSArray> paths = NSArray::cls().arrayWithObject("/tmp/x"_ns);
        EXPECT_TRUE(board->setPropertyList_forType(paths.get(), NSFilenamesPboardType));
        EXPECT_TRUE(board->propertyListForType(NSFilenamesPboardType)->isEqual(paths.get()));
    }

    TEST_F(NSPasteboardTest, TakesTheOldNameForText)
    {
        board->clearContents();
        board->setString_forType("x"_ns, NSStringPboardType);
        EXPECT_EQ(text(), "x");
        const Ref<NSArray> old = NSArray::cls().arrayWithObject(NSStringPboardType.get());
        EXPECT_TRUE(board->availableTypeFromArray(old.get()));
    }

    TEST_F(NSPasteboardTest, RefusesNil)
    {
        board->clearContents();
        EXPECT_FALSE(board->setString_forType(nullptr, NSPasteboardTypeString));
        EXPECT_FALSE(board->setData_forType(nullptr, NSPasteboardTypePNG));
        EXPECT_FALSE(board->setString_forType("x"_ns, nullptr));
        EXPECT_FALSE(board->dataForType(nullptr));
        EXPECT_FALSE(board->writeObjects(nullptr));
    }

    TEST_F(NSPasteboardTest, ABareOneIsEmptyAndCanBeUsed)
    {
        const Ref<NSPasteboard> bare = make<NSPasteboard>();
        EXPECT_EQ(bare->types()->count(), 0u);
        bare->setString_forType("x"_ns, NSPasteboardTypeString);
        EXPECT_EQ(utf8Of(bare->stringForType(NSPasteboardTypeString).get()), "x");
    }

}
}
