// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextView.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSDictionary.h"
#include "support/Archives.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    using test::archived;

    Ref<NSTextView> editor(NSString* text)
    {
        const Ref<NSTextView> view
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(NSMakeRect(5, 6, 200, 100)));
        view->setString(text);
        return view;
    }

}

TEST(TextViewCoding, KeepsTheTextAndItsFrame)
{
    const Ref<NSTextView> back = archived(editor("two\nlines"_ns));
    EXPECT_EQ(utf8Of(back->string()), "two\nlines");
    EXPECT_EQ(back->frame().origin, NSMakePoint(5, 6));
}

TEST(TextViewCoding, KeepsTheLookOfAPartOfTheText)
{
    const Ref<NSTextView> view = editor("red ink"_ns);
    view->textStorage()->addAttribute_value_range(
        NSForegroundColorAttributeName, NSColor::cls().redColor().get(), NSMakeRange(0, 3));
    NSRange range {};
    const Ref<NSObject> color = archived(view)->textStorage()->attribute_atIndex_effectiveRange(
        NSForegroundColorAttributeName, 0, &range);
    EXPECT_TRUE(color->isEqual(NSColor::cls().redColor().get()));
    EXPECT_EQ(range, NSMakeRange(0, 3));
}

TEST(TextViewCoding, KeepsWhatItLetsAUserDo)
{
    const Ref<NSTextView> view = editor("text"_ns);
    view->setEditable(false);
    view->setRichText(false);
    view->setAllowsUndo(true);
    view->setDrawsBackground(false);
    const Ref<NSTextView> back = archived(view);
    EXPECT_FALSE(back->isEditable());
    EXPECT_TRUE(back->isSelectable());
    EXPECT_FALSE(back->isRichText());
    EXPECT_TRUE(back->allowsUndo());
    EXPECT_FALSE(back->drawsBackground());
}

TEST(TextViewCoding, KeepsTheFontOfATextThatIsStillEmpty)
{
    const Ref<NSTextView> view = editor(""_ns);
    view->setFont(NSFont::cls().boldSystemFontOfSize(21).get());
    EXPECT_TRUE(archived(view)->font()->isEqual(view->font().get()));
}

TEST(TextViewCoding, LaysOutInTheSameRoom)
{
    const Ref<NSTextView> view = editor("text"_ns);
    view->textContainer()->setWidthTracksTextView(false);
    view->textContainer()->setContainerSize(NSMakeSize(77, 1000));
    view->setTextContainerInset(NSMakeSize(3, 4));
    const Ref<NSTextView> back = archived(view);
    EXPECT_EQ(back->textContainer()->containerSize(), NSMakeSize(77, 1000));
    EXPECT_EQ(back->textContainerInset(), NSMakeSize(3, 4));
}

TEST(TextViewCoding, IsEditedAfterwards)
{
    const Ref<NSTextView> back = archived(editor("one"_ns));
    back->setSelectedRange(NSMakeRange(3, 0));
    back->insertText(" two"_ns);
    EXPECT_EQ(utf8Of(back->string()), "one two");
}

TEST(TextViewCoding, StaysTheDocumentOfItsScrollView)
{
    const Ref<NSScrollView> scroll
        = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, 220, 120)));
    scroll->setDocumentView(editor("inside"_ns).get());
    const Ref<NSView> document = archived(scroll)->documentView();
    ASSERT_TRUE(document->isKindOfClass(NSTextView::cls()));
    EXPECT_EQ(utf8Of(cast<NSTextView>(document)->string()), "inside");
}

}
