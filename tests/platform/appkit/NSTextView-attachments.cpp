// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSTextView.h"
#include "foundation/NSDictionary.h"
#include "support/EditingDesk.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    class TextViewAttachments : public testing::Test {
    protected:
        TextViewAttachments()
        {
            editor->setRichText(true);
            desk.window->makeFirstResponder(editor.get());
            editor->setString("ab"_ns);
            editor->insertText_replacementRange(
                attributedStringWithAttachment(NSAttributedString::cls(), attachment.get()).get(),
                NSMakeRange(1, 0));
        }
        Ref<NSObject> attachmentAt(NSUInteger index)
        {
            return editor->textStorage()->attribute_atIndex_effectiveRange(
                NSAttachmentAttributeName, index, nullptr);
        }

        EditingDesk desk;
        Ref<NSTextView> editor = desk.add<NSTextView>(NSMakeRect(10, 10, 200, 100));
        Ref<NSTextAttachment> attachment = make<NSTextAttachment>();
    };

}

TEST_F(TextViewAttachments, WhatIsTypedBehindAPictureIsNoPicture)
{
    EXPECT_EQ(editor->selectedRange().location, 2U);
    EXPECT_FALSE(editor->typingAttributes()->objectForKey(NSAttachmentAttributeName));
    desk.screen.keyboard().type(u"x");
    EXPECT_FALSE(attachmentAt(2));
    EXPECT_TRUE(attachmentAt(1));
}
TEST_F(TextViewAttachments, APictureThatIsInsertedWithTheAttributesAtTheCaretStaysItself)
{
    const Ref<NSTextAttachment> second = make<NSTextAttachment>();
    const auto text = cast<NSMutableAttributedString>(
        attributedStringWithAttachment(NSAttributedString::cls(), second.get())->mutableCopy());
    text->addAttributes_range(editor->typingAttributes().get(), NSMakeRange(0, 1));
    editor->insertText_replacementRange(text.get(), editor->selectedRange());
    EXPECT_EQ(attachmentAt(2).get(), second.get());
}

}
