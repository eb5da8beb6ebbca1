// SPDX-License-Identifier: Apache-2.0
#include "kit/Sidebar.h"

#include <gmock/gmock.h>

#include "OpenGallery.h"
#include "appkit/NSEvent.h"
#include "pages/PageSearch.h"

namespace gallery {

using namespace brindle;

namespace {

    using ::testing::Contains;
    using ::testing::ElementsAre;

    std::vector<std::string> found(std::string_view words)
    {
        std::vector<std::string> names;
        for (const PageHit& hit : findPages(words))
            names.emplace_back(pages()[hit.page].name);
        return names;
    }
    std::string nameBefore(std::string_view page)
    {
        std::string before;
        for (const PageEntry& entry : pages()) {
            if (page == entry.name)
                return before;
            before = entry.name;
        }
        return "not found";
    }
    std::string matchOf(std::string_view words, std::string_view page)
    {
        for (const PageHit& hit : findPages(words)) {
            if (page == pages()[hit.page].name)
                return hit.match;
        }
        return "not found";
    }

}

TEST(PageSearch, PutsThePageOfThatNameFirst)
{
    EXPECT_EQ(found("table").front(), "Tables");
    EXPECT_EQ(found("PATHS").front(), "Paths");
}
TEST(PageSearch, FindsAPageByAClassItUses)
{
    EXPECT_THAT(found("OnOffSwitchControl"), ElementsAre("Switches"));
}
TEST(PageSearch, FindsAPageByAnOperationInAnyLetters)
{
    EXPECT_THAT(found("setdisplayedwhenstopped"), ElementsAre("Controls"));
}
TEST(PageSearch, FindsAPageByATextThatItShows)
{
    EXPECT_THAT(found("radio buttons"), Contains("Controls"));
}
TEST(PageSearch, NamesTheWordThatWasFound)
{
    EXPECT_EQ(matchOf("progressind", "Controls"), "NSProgressIndicator");
}
TEST(PageSearch, WantsAllWords) { EXPECT_TRUE(found("table nothinglikethis").empty()); }
TEST(PageSearch, BeginsWithWordsOnly) { EXPECT_TRUE(found("rogressindicator").empty()); }
TEST(PageSearch, FindsNothingForNoWords) { EXPECT_TRUE(found("  ").empty()); }

TEST(Sidebar, ListsAllPagesUnderHeadings)
{
    const OpenGallery gallery;
    const std::vector<std::string> names = gallery.listed();
    EXPECT_EQ(names.front(), "[Objects and data]");
    for (const PageEntry& page : pages())
        EXPECT_THAT(names, Contains(page.name));
}
TEST(Sidebar, CommandFSearchesAndEscapeShowsAllAgain)
{
    OpenGallery gallery;
    const std::size_t all = gallery.listed().size();
    gallery.press(u'f', NSCommandKeyMask);
    gallery.type(u"OnOffSwitch");
    EXPECT_THAT(gallery.listed(), ElementsAre("Switches"));
    gallery.press(u'\x1B');
    EXPECT_EQ(gallery.listed().size(), all);
    EXPECT_EQ(gallery.focus(), gallery.controller->page());
}
TEST(Sidebar, ReturnInTheFieldOpensWhatWasFoundFirst)
{
    OpenGallery gallery;
    gallery.press(u'f', NSCommandKeyMask);
    gallery.type(u"OnOffSwitch\r");
    EXPECT_EQ(gallery.page(), "Switches");
    EXPECT_EQ(gallery.focus(), gallery.controller->page());
}
TEST(Sidebar, DownInTheFieldOpensTheNextAndKeepsTheKeyboard)
{
    OpenGallery gallery;
    gallery.press(u'f', NSCommandKeyMask);
    gallery.type(u"table");
    const std::vector<std::string> names = gallery.listed();
    gallery.press(NSDownArrowFunctionKey);
    EXPECT_EQ(gallery.page(), names.at(1));
    EXPECT_TRUE(gallery.controller->sidebar()->hasKeyboard());
}
TEST(Sidebar, SaysWhenNoPageWasFound)
{
    OpenGallery gallery;
    gallery.press(u'f', NSCommandKeyMask);
    gallery.type(u"nothinglikethis\r");
    EXPECT_THAT(gallery.listed(), ElementsAre("[No page says that]"));
    EXPECT_EQ(gallery.page(), pages()[0].name);
}
TEST(Sidebar, ArrowsStepOverHeadings)
{
    OpenGallery gallery;
    gallery.showPage("Colour");
    gallery.controller->window()->makeFirstResponder(gallery.controller->sidebar()->list().get());
    gallery.press(NSUpArrowFunctionKey);
    EXPECT_EQ(gallery.page(), nameBefore("Colour")); // the last page of the group above
    gallery.press(NSDownArrowFunctionKey);
    EXPECT_EQ(gallery.page(), "Colour");
}
TEST(Sidebar, LettersChooseAPage)
{
    OpenGallery gallery;
    gallery.controller->window()->makeFirstResponder(gallery.controller->sidebar()->list().get());
    gallery.type(u"scr");
    EXPECT_EQ(gallery.page(), "Scrolling");
}
TEST(Sidebar, RightGoesToThePage)
{
    OpenGallery gallery;
    gallery.controller->window()->makeFirstResponder(gallery.controller->sidebar()->list().get());
    gallery.press(NSRightArrowFunctionKey);
    EXPECT_EQ(gallery.focus(), gallery.controller->page());
}
TEST(Sidebar, AClickOpensAPageAndGivesItTheKeyboard)
{
    OpenGallery gallery;
    const Ref<NSTableView> list = gallery.controller->sidebar()->list();
    const NSRect row = list->rectOfRow(3);
    const NSPoint place = list->convertPoint_toView({ NSMidX(row), NSMidY(row) }, nullptr);
    gallery.screen.pointer().click(gallery.controller->window()->convertPointToScreen(place));
    EXPECT_EQ(gallery.page(), gallery.listed().at(3));
    EXPECT_EQ(gallery.focus(), gallery.controller->page());
}

}
