// SPDX-License-Identifier: Apache-2.0
#include "pages/fonts/FontsPage.h"

#include <gtest/gtest.h>

#include "PageParts.h"
#include "appkit/NSFontManager.h"
#include "foundation/NSIndexSet.h"

namespace gallery {

using namespace brindle;

namespace {

    class OpenFonts : public OpenGallery {
    public:
        OpenFonts() { showPage("Fonts"); }

        Ref<NSFont> font() const { return part<FontSampleCard>(*this)->font(); }
        static void choose(const Ref<NSTableView>& list, NSInteger row)
        {
            list->selectRowIndexes_byExtendingSelection(
                NSIndexSet::cls().indexSetWithIndex(static_cast<NSUInteger>(row)).get(), false);
        }
        static std::string shown(const Ref<NSTableView>& list, NSInteger row)
        {
            const Ref<NSObject> value
                = list->dataSource()
                      ->send<"tableView:objectValueForTableColumn:row:", Ref<NSObject>>(
                          list.get(), list->tableColumns()->objectAtIndex(0).get(), row);
            return utf8Of(cast<NSString>(value));
        }
        static NSFontTraitMask traits(const Ref<NSFont>& font)
        {
            return NSFontManager::cls().sharedFontManager()->traitsOfFont(font.get());
        }
    };

}

TEST(GalleryFonts, AFamilyThatIsChosenIsShown)
{
    OpenFonts page;
    const Ref<NSTableView> families = part<FamiliesCard>(page)->list();
    const NSInteger last = families->numberOfRows() - 1;
    OpenFonts::choose(families, last);
    EXPECT_EQ(utf8Of(page.font()->familyName()), OpenFonts::shown(families, last));
}
TEST(GalleryFonts, ListTheFacesOfTheFamilyAndChooseTheOneThatIsShown)
{
    OpenFonts page;
    const Ref<NSTableView> faces = part<FacesCard>(page)->list();
    const Ref<NSArray> members
        = NSFontManager::cls().sharedFontManager()->availableMembersOfFontFamily(
            page.font()->familyName().get());
    EXPECT_EQ(faces->numberOfRows(), static_cast<NSInteger>(members->count()));
    ASSERT_GE(faces->selectedRow(), 0);
    const auto chosen
        = cast<NSArray>(members->objectAtIndex(static_cast<NSUInteger>(faces->selectedRow())));
    EXPECT_EQ(utf8Of(cast<NSString>(chosen->objectAtIndex(0))), utf8Of(page.font()->fontName()));
}
TEST(GalleryFonts, AFaceThatIsChosenKeepsTheSize)
{
    OpenFonts page;
    const double size = page.font()->pointSize();
    const Ref<NSTableView> faces = part<FacesCard>(page)->list();
    OpenFonts::choose(faces, faces->numberOfRows() - 1);
    EXPECT_EQ(page.font()->pointSize(), size);
    EXPECT_EQ(faces->selectedRow(), faces->numberOfRows() - 1);
}
TEST(GalleryFonts, AConversionFindsItsFaceOrSaysThatThereIsNone)
{
    OpenFonts page;
    const Ref<FontSampleCard> card = part<FontSampleCard>(page);
    press(page, "Bold");
    const bool isBold = OpenFonts::traits(page.font()) & NSBoldFontMask;
    EXPECT_NE(isBold, card->note() != nullptr);
    for (int i = 0; i < 12; ++i)
        press(page, "Heavier"); // until there is nothing heavier
    EXPECT_TRUE(card->note());
}
TEST(GalleryFonts, BoldIsTakenAwayAgain)
{
    OpenFonts page;
    const std::string before = utf8Of(page.font()->fontName());
    press(page, "Bold");
    press(page, "Bold");
    EXPECT_EQ(utf8Of(page.font()->fontName()), before);
}

}
