// SPDX-License-Identifier: Apache-2.0
#include "pages/expressions/ExpressionsPage.h"

#include <gtest/gtest.h>

#include "OpenGallery.h"
#include "PageParts.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextStorage.h"

namespace gallery {

using namespace brindle;

namespace {

    /// The page with a pattern typed into its field.
    class OpenExpressions : public OpenGallery {
    public:
        explicit OpenExpressions(std::u16string_view pattern)
        {
            showPage("Regular expressions");
            const Ref<NSTextField> field = part<ExpressionCard>(*this)->field();
            field->selectText(nullptr);
            type(pattern);
        }
        std::string marked() const
        {
            const Ref<NSTextStorage> text = part<SubjectCard>(*this)->text()->textStorage();
            std::string all;
            NSRange run {};
            for (NSUInteger at = 0; at < text->length(); at = NSMaxRange(run)) {
                if (text->attribute_atIndex_effectiveRange(
                        NSBackgroundColorAttributeName, at, &run))
                    all += "[" + utf8Of(text->string()->substringWithRange(run)) + "]";
            }
            return all;
        }
        void setText(NSString* text) const
        {
            const Ref<NSTextView> view = part<SubjectCard>(*this)->text();
            view->insertText_replacementRange(text, NSMakeRange(0, view->string()->length()));
        }
    };

}

TEST(GalleryExpressions, MarkWhatIsFoundWhileThePatternIsTyped)
{
    OpenExpressions page(u"b+");
    page.setText("a b bbb c"_ns);
    EXPECT_EQ(page.marked(), "[b][bbb]");
    page.type(u" c");
    EXPECT_EQ(page.marked(), "[bbb c]");
}
TEST(GalleryExpressions, MarkNeighboursThatTouchInDifferentColours)
{
    OpenExpressions page(u"b");
    page.setText("abbc"_ns);
    EXPECT_EQ(page.marked(), "[b][b]");
}
TEST(GalleryExpressions, ReplaceByTheTemplate)
{
    OpenExpressions page(u"(a)(b)");
    page.setText("ab abc"_ns);
    const Ref<ReplacementCard> card = part<ReplacementCard>(page);
    card->field()->selectText(nullptr);
    page.type(u"$2$1");
    EXPECT_EQ(utf8Of(card->result()), "ba bac");
}
TEST(GalleryExpressions, ReplaceNothingByAPatternThatCannotBeRead)
{
    OpenExpressions page(u"(a");
    EXPECT_FALSE(part<ReplacementCard>(page)->result());
    EXPECT_EQ(page.marked(), "");
}
TEST(GalleryExpressions, FindCapitalsToldToTakeAnyCase)
{
    OpenExpressions page(u"b");
    page.setText("aB"_ns);
    EXPECT_EQ(page.marked(), "");
    press(page, "Any case");
    EXPECT_EQ(page.marked(), "[B]");
}

}
