// SPDX-License-Identifier: Apache-2.0
#include "Gallery.h"

#include <gtest/gtest.h>

#include "Menubar.h"
#include "OpenGallery.h"
#include "appkit/NSEvent.h"
#include "appkit/NSPasteboard.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextStorage.h"
#include "appkit/drawing/SystemColorsPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSUserDefaults.h"
#include "kit/Chip.h"

namespace gallery {

using namespace brindle;

// ---- pages

TEST(Gallery, CommandAndADigitOpenAPage)
{
    OpenGallery gallery;
    gallery.press(u'3', NSCommandKeyMask);
    EXPECT_EQ(gallery.page(), pages()[2].name);
}
TEST(Gallery, CommandAndBracketsTurnPages)
{
    OpenGallery gallery;
    gallery.press(u']', NSCommandKeyMask);
    gallery.press(u']', NSCommandKeyMask);
    gallery.press(u'[', NSCommandKeyMask);
    EXPECT_EQ(gallery.page(), pages()[1].name);
}
TEST(Gallery, EveryPageHasSources)
{
    for (const PageEntry& page : pages())
        EXPECT_FALSE(sourcesOf(page.folder).empty()) << page.name;
}

// ---- the keyboard

TEST(Gallery, TabGoesThroughACardBeforeTheNext)
{
    OpenGallery gallery;
    gallery.showPage("Fields");
    gallery.controller->window()->makeFirstResponder(gallery.controller->page().get());
    std::string places;
    for (int i = 0; i < 12; ++i) {
        gallery.press(u'\t');
        Ref<NSView> view = gallery.focus()->isKindOfClass(NSView::cls())
            ? cast<NSView>(gallery.focus())
            : nullptr;
        while (view && !view->isKindOfClass(GalleryCard::cls()))
            view = view->superview();
        if (view)
            places += utf8Of(static_cast<GalleryCard&>(*view).heading()).front();
    }
    // "A bike to edit", then "Fields": no way back and forth.
    EXPECT_EQ(places.find("FA"), std::string::npos) << places;
    EXPECT_NE(places.find("AF"), std::string::npos) << places;
}
TEST(Gallery, SpaceAndReturnPressAChip)
{
    OpenGallery gallery;
    int presses = 0;
    const Ref<GalleryChip> chip
        = addChip(gallery.controller->page().get(), "Here"_ns, nullptr, [&] { ++presses; });
    gallery.controller->window()->makeFirstResponder(chip.get());
    gallery.press(u' ');
    gallery.press(u'\r');
    EXPECT_EQ(presses, 2);
}
TEST(Gallery, KeysOfThePageWorkWhileAChipHasTheKeyboard)
{
    OpenGallery gallery;
    const Ref<GalleryChip> chip
        = addChip(gallery.controller->page().get(), "Here"_ns, nullptr, [] {});
    gallery.controller->window()->makeFirstResponder(chip.get());
    gallery.type(u"d");
    EXPECT_TRUE(isDark());
}

// ---- what is remembered

TEST(Gallery, OpensOnThePageItWasLeftOn)
{
    OpenGallery gallery;
    gallery.showPage("Tables");
    gallery.restart();
    EXPECT_EQ(gallery.page(), "Tables");
}
TEST(Gallery, StaysDarkFromOneStartToTheNext)
{
    OpenGallery gallery;
    gallery.press(u'd', NSCommandKeyMask);
    EXPECT_TRUE(isDark());
    gallery.restart();
    EXPECT_TRUE(isDark());
}
TEST(Gallery, OpensDarkWhereEverythingElseIsLight)
{
    OpenGallery gallery;
    gallery.controller->setDark(true);
    setDark(false); // what a process begins with
    gallery.restart();
    EXPECT_TRUE(isDark());
}
TEST(Gallery, FollowsTheDesktopUntilAnAppearanceIsChosen)
{
    OpenGallery gallery;
    appkit::setDesktopAppearance(appkit::Appearance::dark);
    EXPECT_TRUE(isDark());
    gallery.press(u'd', NSCommandKeyMask);
    EXPECT_FALSE(isDark());
    gallery.restart();
    EXPECT_FALSE(isDark());
    gallery.controller->followDesktop();
    EXPECT_TRUE(isDark());
    appkit::setDesktopAppearance(appkit::Appearance::light);
}
TEST(Gallery, KeepsTheLookOfItsBar)
{
    OpenGallery gallery;
    MenubarLook look = menubar().look();
    look.shadow = true;
    look.spacing = BRMenubarSpacingStandard;
    menubar().setLook(look);
    gallery.restart();
    EXPECT_TRUE(menubar().look().shadow);
    EXPECT_EQ(menubar().look().spacing, BRMenubarSpacingStandard);
}
TEST(Gallery, OpensWhereItsWindowWas)
{
    OpenGallery gallery;
    gallery.controller->window()->setFrame_display(NSMakeRect(40, 30, 1000, 700), true);
    gallery.screen.process();
    gallery.restart();
    EXPECT_EQ(gallery.controller->window()->frame(), NSMakeRect(40, 30, 1000, 700));
}
TEST(Gallery, OpensOnItsFirstPageWhenItsOptionsAreNoArchive)
{
    OpenGallery gallery;
    NSUserDefaults::cls().standardUserDefaults()->setObject_forKey(
        "no archive"_ns, "GalleryOptions"_ns);
    gallery.restart();
    EXPECT_EQ(gallery.page(), pages()[0].name);
}

// ---- code

TEST(GalleryCode, CommandKShowsTheSourcesOfThePageAndHidesThem)
{
    OpenGallery gallery;
    gallery.showPage("Switches");
    gallery.press(u'k', NSCommandKeyMask);
    const Ref<CodePane> code = gallery.controller->code();
    ASSERT_TRUE(code->window());
    EXPECT_NE(utf8Of(code->text()->string()).find("LampCard::Methods<"), std::string::npos);
    gallery.press(u'k', NSCommandKeyMask);
    EXPECT_FALSE(code->window());
}
TEST(GalleryCode, IsShownAtTheNextStart)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    gallery.restart();
    EXPECT_TRUE(gallery.controller->code()->window());
}
TEST(GalleryCode, StandsBelowThePageAndInAWideWindowBeside)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    const Ref<CodePane> code = gallery.controller->code();
    gallery.controller->window()->setContentSize({ 1000, 700 });
    gallery.screen.process();
    EXPECT_EQ(code->frame().size.width, 800);
    gallery.controller->window()->setContentSize({ 1600, 700 });
    gallery.screen.process();
    EXPECT_EQ(code->frame().size.height, 700);
}
TEST(GalleryCode, FollowsThePage)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    gallery.showPage("Tables");
    EXPECT_GE(gallery.controller->code()->files()->indexOfItemWithTitle("TableCard.cpp"_ns), 0);
}
TEST(GalleryCode, ACardShowsWhereItsClassGetsItsMethods)
{
    OpenGallery gallery;
    gallery.showPage("Controls");
    gallery.screen.process();
    for (NSView* view : each<NSView>(gallery.controller->page()->subviews())) {
        if (view->isKindOfClass(GalleryCard::cls())
            && utf8Of(static_cast<GalleryCard*>(view)->heading()) == "Choices")
            view->send<"showCode:">(static_cast<NSObject*>(nullptr));
    }
    EXPECT_EQ(
        utf8Of(gallery.controller->code()->files()->titleOfSelectedItem()), "ChoicesCard.cpp");
}
TEST(GalleryCode, TakesTheColoursOfADesktopThatTurnsDark)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    appkit::setDesktopAppearance(appkit::Appearance::dark);
    const Ref<CodePane> code = gallery.controller->code();
    EXPECT_TRUE(code->text()->backgroundColor()->isEqual(palette().card.get()));
    const Ref<NSTextStorage> text = code->text()->textStorage();
    const Ref<NSObject> color
        = text->attribute_atIndex_effectiveRange(NSForegroundColorAttributeName, 0, nullptr);
    appkit::setDesktopAppearance(appkit::Appearance::light);
    EXPECT_FALSE(maybe(color)->isEqual(
        text->attribute_atIndex_effectiveRange(NSForegroundColorAttributeName, 0, nullptr).get()));
}
TEST(GalleryCode, IsCopiedWholeWhereNothingIsSelected)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    const Ref<CodePane> code = gallery.controller->code();
    code->send<"copyAll">();
    EXPECT_EQ(
        utf8Of(NSPasteboard::cls().generalPasteboard()->stringForType(NSPasteboardTypeString)),
        utf8Of(code->text()->string()));
}
TEST(GalleryCode, CopiesWhatIsSelected)
{
    OpenGallery gallery;
    gallery.controller->setShowsCode(true);
    const Ref<CodePane> code = gallery.controller->code();
    code->text()->setSelectedRange(NSMakeRange(3, 4));
    code->send<"copyAll">();
    EXPECT_EQ(
        utf8Of(NSPasteboard::cls().generalPasteboard()->stringForType(NSPasteboardTypeString)),
        "SPDX");
}

}
