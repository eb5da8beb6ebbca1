// SPDX-License-Identifier: Apache-2.0
#include "MenubarHosts.h"

#include "appkit/NSFont.h"
#include "appkit/NSImageView.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow+ScreenEdge.h"
#include "controls/GWBackgroundColorView.h"
#include "controls/GWLabel.h"
#include "foundation/NSMutableArray.h"
#include "shell/NSApplication+GWAboutPanel.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {
namespace {

    using test::BarDesk;
    using test::ShadowImage;

    // ---- making

    TEST(Menubar, IsMadeWhenItIsAskedFor)
    {
        const Ref<BRCustomMenubar> bar = BRCustomMenubar::cls().sharedCustomMenubar();
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(BRCustomMenubar::cls().sharedCustomMenubar(), bar);
    }
    TEST(Menubar, IsTheOneThatWasInitialisedLast)
    {
        const Ref<BRCustomMenubar> first = make<BRCustomMenubar>();
        EXPECT_EQ(BRCustomMenubar::cls().sharedCustomMenubar(), first);
        const Ref<BRCustomMenubar> second = make<BRCustomMenubar>();
        EXPECT_EQ(BRCustomMenubar::cls().sharedCustomMenubar(), second);
    }
    TEST(Menubar, IsSharedByInitOnly)
    {
        const Ref<BRCustomMenubar> first = make<BRCustomMenubar>();
        const Ref<NSWindow> other
            = alloc<BRCustomMenubar>()->initWithContentRect_styleMask_backing_defer(
                {}, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        EXPECT_EQ(BRCustomMenubar::cls().sharedCustomMenubar(), first);
    }
    TEST(Menubar, IsAnEmptyHiddenWindowAtFirst)
    {
        const Ref<BRCustomMenubar> bar = make<BRCustomMenubar>();
        EXPECT_EQ(bar->frame(), NSRect {});
        EXPECT_EQ(bar->styleMask(), NSBorderlessWindowMask);
        EXPECT_FALSE(bar->isVisible());
        EXPECT_EQ(bar->menubarTheme(), BRMenubarThemeOverlay);
        EXPECT_EQ(bar->menubarSpacingMode(), BRMenubarSpacingStandard);
        EXPECT_FALSE(bar->menubarShadow());
        EXPECT_EQ(bar->menubarViews(), nullptr);
        EXPECT_EQ(bar->customScreenSize(), NSRect {});
        EXPECT_TRUE(bar->isOpaque()) << "only setting the theme makes it clear";
    }
    TEST(Menubar, CanBecomeKeyAndMain)
    {
        const Ref<BRCustomMenubar> bar = make<BRCustomMenubar>();
        EXPECT_TRUE(bar->canBecomeKeyWindow());
        EXPECT_TRUE(bar->canBecomeMainWindow());
    }
    TEST(Menubar, TakesThemeAndSpacing)
    {
        const Ref<BRCustomMenubar> bar = alloc<BRCustomMenubar>()->initWithMenubarTheme_spacingMode(
            BRMenubarThemeCustom, BRMenubarSpacingNone);
        EXPECT_EQ(bar->menubarTheme(), BRMenubarThemeCustom);
        EXPECT_EQ(bar->menubarSpacingMode(), BRMenubarSpacingNone);
    }
    TEST(Menubar, HasStandardSpacingWhenOnlyTheThemeIsGiven)
    {
        const Ref<BRCustomMenubar> bar
            = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
        EXPECT_EQ(bar->menubarSpacingMode(), BRMenubarSpacingStandard);
    }
    TEST(Menubar, IsMadeClearByTheOverlayTheme)
    {
        const Ref<BRCustomMenubar> bar
            = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeOverlay);
        EXPECT_FALSE(bar->isOpaque());
        EXPECT_FALSE(bar->hasShadow());
        EXPECT_EQ(bar->backgroundColor(), NSColor::cls().clearColor());
    }
    TEST(Menubar, StaysClearInTheCustomThemeAfterwards)
    {
        const Ref<BRCustomMenubar> bar
            = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeOverlay);
        bar->setMenubarTheme(BRMenubarThemeCustom);
        EXPECT_FALSE(bar->isOpaque());
    }
    TEST(Menubar, IsLeftAsItIsByTheCustomTheme)
    {
        const Ref<BRCustomMenubar> bar
            = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
        EXPECT_TRUE(bar->isOpaque());
        EXPECT_TRUE(bar->hasShadow());
        EXPECT_EQ(bar->backgroundColor(), NSColor::cls().windowBackgroundColor());
    }
    TEST(Menubar, DoesNothingWhenMenusTellIt)
    {
        const Ref<BRCustomMenubar> bar = make<BRCustomMenubar>();
        bar->menuWillOpen(nullptr);
        bar->menuDidClose(nullptr);
        bar->menuDidBeginTracking(nullptr);
        bar->attachMenuToMainWindow(nullptr);
        EXPECT_EQ(bar->frame(), NSRect {});
    }

    // ---- its frame

    TEST(MenubarFrame, LiesAlongTheTopOfTheScreen)
    {
        BarDesk desk;
        const NSRect frame = desk.make(BRMenubarThemeCustom).setFrame();
        EXPECT_EQ(frame, NSMakeRect(0, 878, 1440, 22));
        EXPECT_EQ(desk.bar->frame(), frame);
    }
    TEST(MenubarFrame, GrowsByTheShadow)
    {
        const ShadowImage shadow;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        EXPECT_EQ(desk.bar->setFrame(), NSMakeRect(0, 870, 1440, 30));
    }
    TEST(MenubarFrame, StaysAsItIsWithoutAShadowImage)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        EXPECT_EQ(desk.bar->setFrame(), NSMakeRect(0, 878, 1440, 22));
    }
    TEST(MenubarFrame, TakesTheCustomWidthAndTheScreensHeight)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setCustomScreenSize(NSMakeRect(5, 6, 800, 100));
        EXPECT_EQ(desk.bar->setFrame(), NSMakeRect(0, 878, 800, 22));
    }
    TEST(MenubarFrame, HasNoWidthByACustomSizeWithAnOriginOnly)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setCustomScreenSize(NSMakeRect(0, 1, 0, 0));
        EXPECT_EQ(desk.bar->setFrame(), NSMakeRect(0, 878, 0, 22));
    }
    TEST(MenubarFrame, TakesACustomSizeOnlyAtTheNextTime)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setFrame();
        desk.bar->setCustomScreenSize(NSMakeRect(0, 0, 800, 100));
        EXPECT_EQ(desk.bar->frame().size.width, 1440);
    }
    TEST(MenubarFrame, LiesBelowNothingWithoutAScreen)
    {
        BarDesk desk;
        desk.screen.display().setScreens({});
        EXPECT_EQ(desk.make(BRMenubarThemeCustom).setFrame(), NSMakeRect(0, -22, 0, 22));
    }
    TEST(MenubarFrame, KeepsACustomWidthWithoutAScreen)
    {
        BarDesk desk;
        desk.screen.display().setScreens({});
        desk.make(BRMenubarThemeCustom).setCustomScreenSize(NSMakeRect(0, 0, 800, 1));
        EXPECT_EQ(desk.bar->setFrame(), NSMakeRect(0, -22, 800, 22));
    }
    TEST(MenubarFrame, SurvivesOddCustomSizes)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        for (const double width : { std::nan(""), HUGE_VAL, -HUGE_VAL, -5.0, 1e300 }) {
            desk.bar->setCustomScreenSize(NSMakeRect(0, 0, width, 1));
            desk.bar->setFrame();
        }
        desk.screen.process();
        EXPECT_TRUE(desk.bar->isVisible());
    }

    // ---- building

    TEST(MenubarLoad, ShowsBarAndViewsInTheCustomTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        EXPECT_TRUE(desk.bar->isVisible());
        EXPECT_TRUE(desk.viewsWindow()->isVisible());
        EXPECT_EQ(desk.bar->level(), 26);
        EXPECT_EQ(desk.viewsWindow()->level(), 27);
        EXPECT_TRUE(desk.bar->ignoresMouseEvents());
        EXPECT_FALSE(desk.viewsWindow()->ignoresMouseEvents());
        EXPECT_FALSE(desk.bar->isMovable());
        EXPECT_FALSE(desk.viewsWindow()->isMovable());
        EXPECT_TRUE(desk.bar->hidesOnDeactivate());
        EXPECT_TRUE(desk.viewsWindow()->hidesOnDeactivate());
    }
    TEST(MenubarLoad, ShowsOnlyTheViewsInTheOverlayTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).load();
        EXPECT_FALSE(desk.bar->isVisible());
        EXPECT_TRUE(desk.viewsWindow()->isVisible());
        EXPECT_FALSE(desk.viewsWindow()->isOpaque());
        EXPECT_EQ(desk.viewsWindow()->backgroundColor(), NSColor::cls().clearColor());
    }
    TEST(MenubarLoad, MakesTheViewsAChildOnce)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        ASSERT_EQ(desk.bar->childWindows()->count(), 1u);
        EXPECT_EQ(desk.bar->childWindows()->firstObject(), desk.viewsWindow());
    }
    TEST(MenubarLoad, ShowsTheApplicationsName)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const auto label = cast<GWLabel>(valueForKey(desk.bar, "appMenuLabel"_ns));
        EXPECT_EQ(label->stringValue(), appName(NSApplication::cls().sharedApplication()));
        EXPECT_EQ(label->frame().origin, NSMakePoint(55, 1));
        EXPECT_EQ(label->font()->pointSize(), 17);
        EXPECT_EQ(label->textColor(), NSColor::cls().whiteColor());
        EXPECT_EQ(label->backgroundColor(), NSColor::cls().blackColor());
        EXPECT_EQ(label->superview(), desk.bar->contentView());
    }
    TEST(MenubarLoad, WritesTheNameInBoldOfSeventeenPoints)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const auto label = cast<GWLabel>(valueForKey(desk.bar, "appMenuLabel"_ns));
        EXPECT_TRUE(label->font()->isEqual(
            NSFont::cls().fontWithName_size("HelveticaNeue-Bold"_ns, 17).get()));
    }
    TEST(MenubarLoad, GivesTheViewsTheBarsGround)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setBackgroundColor(NSColor::cls().redColor().get());
        desk.bar->load();
        EXPECT_EQ(desk.viewsWindow()->backgroundColor(), NSColor::cls().redColor());
        EXPECT_TRUE(desk.viewsWindow()->isOpaque());
    }
    TEST(MenubarLoad, InAnyOtherThemeHasNeitherLogoNorHalfTheWidth)
    {
        BarDesk desk;
        desk.make(static_cast<BRMenubarTheme>(5)).load();
        EXPECT_TRUE(desk.bar->isOpaque());
        EXPECT_FALSE(desk.bar->isVisible());
        EXPECT_TRUE(desk.viewsWindow()->isVisible());
        EXPECT_EQ(valueForKey(desk.bar, "appleImageView"_ns), nullptr);
        EXPECT_EQ(cast<NSView>(valueForKey(desk.bar, "appMenuLabel"_ns))->superview(), nullptr);
        EXPECT_EQ(NSMaxX(desk.viewsWindow()->frame()), 1440);
        desk.bar->orderFront();
        EXPECT_TRUE(desk.bar->isVisible());
    }
    TEST(MenubarLoad, KeepsTheLabelOutOfSightInTheOverlayTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).load();
        const auto label = cast<GWLabel>(valueForKey(desk.bar, "appMenuLabel"_ns));
        EXPECT_EQ(label->superview(), nullptr);
        EXPECT_EQ(label->frame().origin, NSMakePoint(55, 1));
        EXPECT_EQ(valueForKey(desk.bar, "appleImageView"_ns), nullptr);
    }
    TEST(MenubarLoad, PutsTheLogoInTheMiddleOfTheBar)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const auto logo = cast<NSImageView>(valueForKey(desk.bar, "appleImageView"_ns));
        ASSERT_NE(logo->image(), nullptr);
        const NSSize size = logo->image()->size();
        EXPECT_GT(size.height, 0);
        EXPECT_EQ(logo->frame(),
            NSMakeRect(20, 22 - std::round(static_cast<float>(size.height * 0.5 + 11)), size.width,
                size.height));
    }
    TEST(MenubarLoad, DrawsABlackBarAboveTheShadow)
    {
        const ShadowImage shadow;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        desk.bar->load();
        EXPECT_FALSE(desk.bar->isOpaque());
        EXPECT_EQ(desk.bar->backgroundColor(), NSColor::cls().clearColor());
        const Ref<NSArray> parts = desk.bar->contentView()->subviews();
        const auto black = cast<GWBackgroundColorView>(parts->objectAtIndex(0));
        EXPECT_EQ(black->frame(), NSMakeRect(0, 8, 1440, 22));
        EXPECT_EQ(black->backgroundColor(), NSColor::cls().blackColor());
        const auto strip = cast<NSImageView>(parts->objectAtIndex(1));
        EXPECT_EQ(strip->frame(), NSMakeRect(0, 0, 1440, 8));
        EXPECT_EQ(strip->imageScaling(), NSImageScaleAxesIndependently);
    }
    TEST(MenubarLoad, RaisesTheLabelWithTheShadow)
    {
        const ShadowImage shadow;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        desk.bar->load();
        EXPECT_EQ(desk.bar->frame().size.height, 30);
        EXPECT_EQ(cast<NSView>(valueForKey(desk.bar, "appMenuLabel"_ns))->frame().origin.y, 9);
    }
    TEST(MenubarLoad, AddsEverythingAgainASecondTime)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const Ref<NSWindow> first = desk.viewsWindow();
        desk.bar->load();
        EXPECT_NE(desk.viewsWindow(), first);
        EXPECT_EQ(desk.bar->contentView()->subviews()->count(), 4u);
        first->close();
    }
    TEST(MenubarLoad, WorksWithoutAScreen)
    {
        BarDesk desk;
        desk.screen.display().setScreens({});
        desk.make(BRMenubarThemeCustom).load();
        desk.add(40);
        desk.screen.process();
        EXPECT_EQ(desk.bar->frame(), NSMakeRect(0, -22, 0, 22));
    }
    TEST(MenubarLoad, ReservesTheTopOfTheScreenWithoutTheShadow)
    {
        const ShadowImage shadow;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        desk.bar->load();
        EXPECT_EQ(screenEdgeStanding(*desk.bar), NSScreenEdgeReserved);
        EXPECT_EQ(NSMaxY(NSScreen::cls().mainScreen()->visibleFrame()), 878);
    }
    TEST(MenubarLoad, ReservesTheTopOfTheScreenInTheOverlayTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).load();
        EXPECT_EQ(screenEdgeStanding(desk.viewsWindow()), NSScreenEdgeReserved);
        EXPECT_EQ(NSMaxY(NSScreen::cls().mainScreen()->visibleFrame()), 878);
    }

    // ---- the views' window

    TEST(MenubarViewsWindow, BeginsBehindTheLabel)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const double x = desk.labelEnd() + 17;
        EXPECT_EQ(desk.viewsWindow()->frame(), NSMakeRect(x, 878, 1440 - x, 22));
    }
    TEST(MenubarViewsWindow, BeginsRightBehindTheLabelWithoutSpacing)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom, BRMenubarSpacingNone).load();
        EXPECT_EQ(desk.viewsWindow()->frame().origin.x, desk.labelEnd());
    }
    TEST(MenubarViewsWindow, TakesEverySpacingButTheStandardForNone)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom, static_cast<BRMenubarSpacing>(7)).load();
        EXPECT_EQ(desk.viewsWindow()->frame().origin.x, desk.labelEnd());
    }
    TEST(MenubarViewsWindow, TakesTheLeftHalfInTheOverlayTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).load();
        cast<NSView>(valueForKey(desk.bar, "appMenuLabel"_ns))->setFrame(NSMakeRect(55, 1, 45, 20));
        desk.bar->menubarViewsSetFrame(desk.bar->frame());
        EXPECT_EQ(desk.viewsWindow()->frame(), NSMakeRect(117, 878, 603, 22));
    }
    TEST(MenubarViewsWindow, ReachesOverTheTopByTheShadow)
    {
        const ShadowImage shadow;
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).setMenubarShadow(true);
        desk.bar->load();
        EXPECT_EQ(desk.viewsWindow()->frame().origin.y, 878);
        EXPECT_EQ(desk.viewsWindow()->frame().size.height, 30);
    }
    TEST(MenubarViewsWindow, FollowsACustomSizeOnly)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const NSRect before = desk.viewsWindow()->frame();
        desk.screen.display().setScreens({ display::HeadlessDisplay::screenOfSize(1000, 700, 1) });
        desk.bar->setFrame();
        EXPECT_EQ(desk.viewsWindow()->frame().size, before.size);
        desk.bar->setCustomScreenSize(NSMakeRect(0, 0, 800, 0));
        desk.bar->setFrame();
        EXPECT_EQ(NSMaxX(desk.viewsWindow()->frame()), 800);
    }

    // ---- order

    TEST(MenubarOrder, HidesWithTheApplicationAndComesBack)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.screen.application().deactivate();
        EXPECT_FALSE(desk.bar->isVisible());
        EXPECT_FALSE(desk.viewsWindow()->isVisible());
        desk.screen.application().activateIgnoringOtherApps(true);
        EXPECT_TRUE(desk.bar->isVisible());
        EXPECT_TRUE(desk.viewsWindow()->isVisible());
    }
    TEST(MenubarOrder, ComesToTheFrontOfAnInactiveApplication)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        desk.screen.application().deactivate();
        desk.bar->orderFront();
        EXPECT_TRUE(desk.bar->isVisible());
    }
    TEST(MenubarOrder, BringsOnlyTheViewsToTheFrontInTheOverlayTheme)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).load();
        desk.screen.application().deactivate();
        desk.bar->orderFront();
        EXPECT_FALSE(desk.bar->isVisible());
        EXPECT_TRUE(desk.viewsWindow()->isVisible());
    }
    TEST(MenubarOrder, DoesNothingInTheOverlayThemeBeforeItIsBuilt)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeOverlay).orderFront();
        EXPECT_FALSE(desk.bar->isVisible());
    }
    TEST(MenubarOrder, NeverBecomesMainByItself)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 200, 100), NSTitledWindowMask, NSBackingStoreBuffered, true);
        window->setReleasedWhenClosed(false);
        window->makeKeyAndOrderFront(nullptr);
        EXPECT_EQ(desk.screen.application().mainWindow(), window);
        window->close();
        EXPECT_EQ(desk.screen.application().mainWindow(), nullptr);
    }
    TEST(MenubarOrder, LetsClicksThroughTheBarButNotThroughItsViews)
    {
        BarDesk desk;
        desk.make(BRMenubarThemeCustom).load();
        display::HeadlessDisplay& display = desk.screen.display();
        const display::SurfaceId desktop = display.surfaceAt({ 300, 300 });
        EXPECT_EQ(display.surfaceAt({ 10, 890 }), desktop);
        EXPECT_NE(display.surfaceAt({ 900, 890 }), desktop);
    }

}
}
