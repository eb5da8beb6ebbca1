// SPDX-License-Identifier: Apache-2.0
#include "pages/Pages.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "OpenGallery.h"
#include "appkit/NSTableColumn.h"
#include "appkit/drawing/SystemColorsPrivate.h"
#include "controls/GWOverlayHoverView.h"
#include "controls/GWThemeFrameView.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSObjCRuntime.h"
#include "kit/PageHolder.h"

namespace gallery {

using namespace brindle;

namespace {

    std::vector<Ref<GalleryCard>> cardsOf(const Ref<GalleryPage>& page)
    {
        std::vector<Ref<GalleryCard>> cards;
        for (NSView* view : each<NSView>(page->subviews())) {
            if (view->isKindOfClass(GalleryCard::cls()))
                cards.emplace_back(static_cast<GalleryCard*>(view));
        }
        return cards;
    }
    template <class View> Ref<View> firstOf(const Ref<NSView>& view)
    {
        for (NSView* part : each<NSView>(view->subviews())) {
            if (part->isKindOfClass(View::cls()))
                return Ref<View>(static_cast<View*>(part));
            if (Ref<View> found = firstOf<View>(Ref<NSView>(part)))
                return found;
        }
        return nullptr;
    }
    /// Answers the strips of the windows that are shown.
    std::vector<Ref<GWThemeFrameView>> strips(const OpenGallery& gallery)
    {
        std::vector<Ref<GWThemeFrameView>> found;
        for (NSWindow* window : each<NSWindow>(gallery.application->windows())) {
            if (!window->isVisible())
                continue;
            if (auto strip = firstOf<GWThemeFrameView>(window->contentView()->superview()))
                found.push_back(std::move(strip));
        }
        std::ranges::sort(found, {}, &Ref<GWThemeFrameView>::get);
        return found;
    }
    void collect(const Ref<NSView>& view, std::vector<WeakRef<NSView>>& found)
    {
        found.emplace_back(view);
        for (NSView* part : each<NSView>(view->subviews()))
            collect(Ref<NSView>(part), found);
    }

}

TEST(GalleryPages, FindRoomForAllCardsInTheSmallestWindow)
{
    OpenGallery gallery;
    for (const PageEntry& entry : pages()) {
        gallery.showPage(entry.name);
        const Ref<GalleryPage> page = gallery.controller->page();
        page->setFrameSize(kLeastPage);
        const std::vector<Ref<GalleryCard>> cards = cardsOf(page);
        EXPECT_FALSE(cards.empty()) << entry.name;
        for (std::size_t i = 0; i < cards.size(); ++i) {
            const NSRect place = cards[i]->frame();
            EXPECT_TRUE(NSContainsRect(page->bounds(), place)) << entry.name << i;
            EXPECT_GT(cards[i]->bodyRect().size.height, 40) << entry.name << i;
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(NSIntersectsRect(place, cards[j]->frame())) << entry.name << i << j;
        }
    }
}
TEST(GalleryPages, ShowTheCodeOfEachOfTheirCards)
{
    OpenGallery gallery;
    for (const PageEntry& entry : pages()) {
        gallery.showPage(entry.name);
        for (const Ref<GalleryCard>& card : cardsOf(gallery.controller->page())) {
            const std::string name = utf8Of(NSStringFromClass(card->classObject()));
            gallery.controller->showCodeOf(card.get());
            EXPECT_NE(utf8Of(gallery.controller->code()->text()->string())
                          .find("struct " + name + "::Methods<"),
                std::string::npos)
                << entry.name << " " << name;
        }
    }
}
TEST(GalleryPages, LeaveNothingBehindThatTheyHaveMadeForThemselves)
{
    OpenGallery gallery;
    const auto visit = [&](const char* name) {
        std::vector<WeakRef<NSView>> views;
        gallery.showPage(name);
        collect(gallery.controller->page(), views);
        gallery.showPage(name == pages()[0].name ? pages()[1].name : pages()[0].name);
        std::set<NSView*> left;
        for (const WeakRef<NSView>& weak : views) {
            if (const Ref<NSView> view = weak.get())
                left.insert(view.get());
        }
        return left;
    };
    for (const PageEntry& entry : pages()) {
        const std::set<NSView*> shared = visit(entry.name); // by all pages of this kind
        for (NSView* view : visit(entry.name))
            EXPECT_TRUE(shared.contains(view))
                << utf8Of(view->description()) << " of " << entry.name;
    }
}
TEST(GalleryPages, ShowTheStripsOfThePageBeforeSinceEachStaysForGood)
{
    OpenGallery gallery;
    gallery.showPage("Title strip");
    const auto first = strips(gallery);
    EXPECT_EQ(first.size(), 2u);
    gallery.controller->page()->setFrameSize(kLeastPage);
    gallery.showPage("The ground");
    EXPECT_TRUE(strips(gallery).empty());
    gallery.showPage("Title strip");
    EXPECT_TRUE(strips(gallery) == first);
}
TEST(GalleryPages, ShowAStripWithoutItsBandAfterThePointerWasOnIt)
{
    OpenGallery gallery;
    gallery.showPage("Title strip");
    for (const auto& strip : strips(gallery))
        strip->fadeIn(true);
    gallery.screen.advance(0.5);
    gallery.showPage("The ground");
    gallery.screen.advance(0.5);
    gallery.showPage("Title strip");
    for (const auto& strip : strips(gallery)) {
        const double seen = strip->overlayHoverView()->alphaValue();
        EXPECT_EQ(seen, strip->titlebarOverlay() ? 0 : 1);
    }
}
TEST(GalleryPages, LookTheSameWhetherTheyShowedWhenTheAppearanceChangedOrNot)
{
    OpenGallery gallery;
    gallery.controller->window()->setContentSize({ 1080, 740 });
    gallery.controller->setShowsCode(true);
    for (const PageEntry& entry : pages()) {
        gallery.showPage(entry.name);
        gallery.showPage(
            entry.name); // the page that is remembered is the same then, and pages show that
        appkit::setDesktopAppearance(appkit::Appearance::dark);
        gallery.screen.process();
        const auto changed = gallery.screen.display().snapshot().words;
        gallery.showPage(entry.name);
        EXPECT_TRUE(changed == gallery.screen.display().snapshot().words) << entry.name;
        appkit::setDesktopAppearance(appkit::Appearance::light);
    }
}
TEST(GalleryPages, FindTheColumnsOfTheTableAsTheyWereLeft)
{
    OpenGallery gallery;
    gallery.showPage("Tables");
    firstOf<NSTableView>(gallery.controller->page())->moveColumn_toColumn(2, 0);
    gallery.restart();
    const Ref<NSTableView> table = firstOf<NSTableView>(gallery.controller->page());
    const Ref<NSTableColumn> first = cast<NSTableColumn>(table->tableColumns()->firstObject());
    EXPECT_EQ(utf8Of(first->identifier()), "born");
}
TEST(GalleryPages, UndoWhatWasTyped)
{
    OpenGallery gallery;
    gallery.showPage("Editing");
    const Ref<NSTextView> text = firstOf<NSTextView>(gallery.controller->page());
    const std::string before = utf8Of(text->string());
    gallery.controller->window()->makeFirstResponder(text.get());
    gallery.type(u"lamps");
    EXPECT_NE(utf8Of(text->string()), before);
    gallery.press(u'z', NSCommandKeyMask);
    EXPECT_EQ(utf8Of(text->string()), before);
}

}
