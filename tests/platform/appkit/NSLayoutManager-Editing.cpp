// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"
#include "support/TextStack.h"

namespace brindle {

using test::TextStack;
using test::widthOf;

TEST(NSLayoutManager, EditsGiveWhatANewLayoutWouldGive)
{
    const std::string text = "The lamp stands\non the table near\n\nthe window, and shines";
    const TextStack edited(text, 90);
    edited.lines();
    struct Edit {
        NSRange range;
        const char* text;
    };
    for (const Edit& edit : { Edit { NSMakeRange(4, 4), "candle" }, Edit { NSMakeRange(17, 1), "" },
             Edit { NSMakeRange(0, 0), "\n" }, Edit { NSMakeRange(10, 20), "\r" },
             Edit { NSMakeRange(11, 0), "\n" }, Edit { NSMakeRange(12, 3), "x\ny\nz" },
             Edit { NSMakeRange(20, 0), " and many more words that wrap" } }) {
        edited.storage->replaceCharactersInRange_withString(
            edit.range, stringFrom(std::string_view(edit.text)).get());
        const TextStack fresh(utf8(edited.storage->string()), 90);
        EXPECT_EQ(edited.lines(), fresh.lines()) << edit.text;
        EXPECT_TRUE(NSEqualRects(edited.used(), fresh.used())) << edit.text;
        EXPECT_TRUE(NSEqualRects(
            edited.manager->extraLineFragmentRect(), fresh.manager->extraLineFragmentRect()));
    }
}

TEST(NSLayoutManager, GroupedEditsAreToldAtOnce)
{
    const TextStack stack("Lamp", 200);
    stack.lines();
    stack.storage->beginEditing();
    stack.storage->replaceCharactersInRange_withString(NSMakeRange(0, 1), "l"_ns);
    stack.storage->replaceCharactersInRange_withString(NSMakeRange(4, 0), "light"_ns);
    EXPECT_EQ(stack.storage->editedRange(), NSMakeRange(0, 9));
    EXPECT_EQ(stack.storage->changeInLength(), 5);
    stack.storage->endEditing();
    EXPECT_EQ(stack.storage->editedMask(), 0u);
    EXPECT_EQ(stack.lines(), "lamplight");
}

TEST(NSLayoutManager, ResizedContainerIsLaidOutAgain)
{
    const TextStack stack("one two", 500);
    EXPECT_EQ(stack.lines(), "one two");
    stack.container->setContainerSize({ widthOf("one"_ns) + 11, 500 });
    EXPECT_EQ(stack.lines(), "one |two");
}

TEST(NSLayoutManager, WithoutTextOrContainersEverythingIsEmpty)
{
    const Ref<NSLayoutManager> manager = make<NSLayoutManager>();
    const Ref<NSTextContainer> container = make<NSTextContainer>();
    EXPECT_EQ(manager->numberOfGlyphs(), 0u);
    EXPECT_EQ(manager->glyphRangeForTextContainer(container.get()).length, 0u);
    EXPECT_TRUE(NSEqualRects(manager->usedRectForTextContainer(nullptr), NSZeroRect));
    EXPECT_TRUE(NSEqualRects(manager->insertionRectForCharacterAtIndex(3), NSZeroRect));
    EXPECT_TRUE(NSEqualRects(manager->extraLineFragmentRect(), NSZeroRect));
}

TEST(NSLayoutManager, StorageAndContainersLetGoOfEachOther)
{
    TextStack stack("ab");
    stack.storage = nullptr;
    EXPECT_EQ(stack.manager->textStorage(), nullptr);
    EXPECT_EQ(stack.used().size.width, 0);
    stack.manager = nullptr;
    EXPECT_EQ(stack.container->layoutManager(), nullptr);
}

}
