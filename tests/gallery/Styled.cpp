// SPDX-License-Identifier: Apache-2.0
#include "pages/styled/StyledPage.h"

#include <gtest/gtest.h>

#include "PageParts.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "appkit/NSTextStorage.h"

namespace gallery {

using namespace brindle;

namespace {

    class OpenStyled : public OpenGallery {
    public:
        OpenStyled() { showPage("Styled text"); }

        std::vector<NSRect> pictures() const
        {
            const Ref<NSTextStorage> text = part<AttachmentsCard>(*this)->text()->textStorage();
            std::vector<NSRect> all;
            for (NSUInteger i = 0; i < text->length(); ++i) {
                if (const Ref<NSObject> found
                    = text->attribute_atIndex_effectiveRange(NSAttachmentAttributeName, i, nullptr))
                    all.push_back(static_cast<NSTextAttachment&>(*found).bounds());
            }
            return all;
        }
        Ref<NSTextTab> tab(NSUInteger index) const
        {
            const Ref<NSTextStorage> text = part<TabsCard>(*this)->text()->textStorage();
            const auto style = cast<NSParagraphStyle>(
                text->attribute_atIndex_effectiveRange(NSParagraphStyleAttributeName, 0, nullptr));
            return cast<NSTextTab>(style->tabStops()->objectAtIndex(index));
        }
        /// Answers the place on the screen of a stop's mark.
        NSPoint mark(NSUInteger index) const
        {
            constexpr NSSize kFromTheText { 12, 13 }; // where lines begin, and up to the ruler
            const Ref<TabsCard> card = part<TabsCard>(*this);
            const NSPoint corner = card->convertPoint_fromView(NSPoint {}, card->text().get());
            const NSPoint place { corner.x + kFromTheText.width + tab(index)->location(),
                corner.y - kFromTheText.height };
            return card->window()->convertPointToScreen(card->convertPoint_toView(place, nullptr));
        }
    };

}

TEST(GalleryStyledText, InsertsAPictureWhereTheCaretIs)
{
    OpenStyled page;
    const std::size_t before = page.pictures().size();
    press(page, "Insert");
    EXPECT_EQ(page.pictures().size(), before + 1);
}
TEST(GalleryStyledText, BackspaceTakesAPictureAwayAsOneCharacter)
{
    OpenStyled page;
    press(page, "Insert");
    const std::size_t before = page.pictures().size();
    page.controller->window()->makeFirstResponder(part<AttachmentsCard>(page)->text().get());
    page.type(u"\x7F");
    EXPECT_EQ(page.pictures().size(), before - 1);
}
TEST(GalleryStyledText, LetsAllPicturesStandHigherAndLarger)
{
    OpenStyled page;
    const NSRect before = page.pictures()[0];
    press(page, "Higher");
    press(page, "Large");
    for (const NSRect picture : page.pictures()) {
        EXPECT_GT(picture.origin.y, before.origin.y);
        EXPECT_GT(picture.size.height, before.size.height);
    }
}
TEST(GalleryStyledText, AMarkThatIsDraggedTakesItsColumnAlong)
{
    OpenStyled page;
    const double before = page.tab(1)->location();
    const NSPoint from = page.mark(1);
    page.screen.pointer().press(from);
    page.screen.pointer().dragTo({ from.x + 25, from.y });
    page.screen.pointer().release();
    EXPECT_EQ(page.tab(1)->location(), before + 25);
    EXPECT_EQ(page.tab(1)->alignment(), NSTextAlignmentCenter);
}
TEST(GalleryStyledText, AMarkThatIsClickedChangesItsKind)
{
    OpenStyled page;
    page.screen.pointer().click(page.mark(1), 1);
    EXPECT_EQ(page.tab(1)->tabStopType(), NSRightTabStopType);
    page.screen.pointer().click(page.mark(1), 1);
    EXPECT_EQ(page.tab(1)->tabStopType(), NSDecimalTabStopType);
    page.screen.pointer().click(page.mark(1), 1);
    EXPECT_EQ(page.tab(1)->tabStopType(), NSLeftTabStopType);
    press(page, "As before");
    EXPECT_EQ(page.tab(1)->tabStopType(), NSCenterTabStopType);
}
TEST(GalleryStyledText, AShadowThatGlowsIsInTheAccentColour)
{
    OpenStyled page;
    const Ref<ShadowsCard> card = part<ShadowsCard>(page);
    EXPECT_FALSE(card->shadow()->shadowColor()->isEqual(palette().accent.get()));
    press(page, "Glow");
    EXPECT_TRUE(card->shadow()->shadowColor()->isEqual(palette().accent.get()));
}

}
