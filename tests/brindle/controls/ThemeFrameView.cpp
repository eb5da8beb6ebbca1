// SPDX-License-Identifier: Apache-2.0
#include "controls/GWThemeFrameView.h"

#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSButton.h"
#include "appkit/NSColor.h"
#include "appkit/NSTrackingArea.h"
#include "controls/GWOverlayHoverView.h"
#include "controls/VLImageView.h"
#include "foundation/NSArray.h"
#include "support/BundleFolder.h"
#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/Pictures.h"

namespace brindle {
namespace {

    constexpr double kFade = 0.2356;

    Ref<GWThemeFrameView> strip() { return make<GWThemeFrameView>(); }

    /// A window of 600 by 422 at (50, 50) with a title bar, and a strip that is not yet in it.
    struct Themed {
        explicit Themed(NSWindowStyleMask style = NSTitledWindowMask | NSResizableWindowMask)
            : window(alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(50, 50, 600, 400), style, NSBackingStoreBuffered, true))
        {
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~Themed()
        {
            window->close();
            screen.process();
        }
        Themed(const Themed&) = delete;
        Themed& operator=(const Themed&) = delete;

        Ref<NSView> frameView() { return window->contentView()->superview(); }
        void add() { frameView()->addSubview(view.get()); }
        /// Adds the strip and changes its frame, so that it feels the pointer.
        void addAndTrack()
        {
            add();
            view->setFrameSize({ 600, 23 });
            view->setFrameSize({ 600, 22 });
            screen.process();
        }
        Ref<GWOverlayHoverView> overlay() { return view->overlayHoverView(); }
        NSUInteger areas() { return overlay()->trackingAreas()->count(); }
        /// Answers the view with the image; nil before it was added.
        Ref<VLImageView> widgets()
        {
            for (NSView* found : each<NSView>(frameView()->subviews())) {
                if (found->isKindOfClass(VLImageView::cls()))
                    return static_cast<VLImageView*>(found);
            }
            return nullptr;
        }
        void enter() { screen.pointer().moveTo({ 350, 460 }); }
        void leave() { screen.pointer().moveTo({ 20, 20 }); }
        /// Lets a fade come to its end.
        void fade() { screen.advance(kFade + 0.05); }

        HeadlessScreen screen { 800, 600 };
        Ref<NSWindow> window;
        Ref<GWThemeFrameView> view = strip();
        test::LogSink log;
    };

    TEST(ThemeFrameView, ANewOneSticksToTheTop)
    {
        const Ref<GWThemeFrameView> view = strip();
        EXPECT_TRUE(view->customWindowWidgets());
        EXPECT_FALSE(view->titlebarOverlay());
        EXPECT_EQ(view->autoresizingMask(), 10u);
        EXPECT_EQ(view->additionalTitleBarHeight(), 0);
        EXPECT_EQ(view->additionalTrackY(), 0);
        EXPECT_EQ(view->overlayHoverView(), nullptr);
        EXPECT_TRUE(view->mouseDownCanMoveWindow());
        EXPECT_TRUE(view->drawsBackground());
    }

    TEST(ThemeFrameView, ItLiesAlongTheTopOfItsSuperview)
    {
        const Ref<NSView> parent = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 800, 600));
        const Ref<GWThemeFrameView> view = strip();
        view->setAdditionalTitleBarHeight(10);
        parent->addSubview(view.get());
        EXPECT_EQ(view->frame(), NSMakeRect(0, 568, 800, 32));
        EXPECT_EQ(view->themeFrameView(), parent.get());
    }

    TEST(ThemeFrameView, RemovedItIsPlacedAboveNothing)
    {
        const Ref<NSView> parent = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 800, 600));
        const Ref<GWThemeFrameView> view = strip();
        view->setAdditionalTitleBarHeight(10);
        parent->addSubview(view.get());
        view->removeFromSuperview();
        EXPECT_EQ(view->frame(), NSMakeRect(0, -32, 0, 32));
    }

    TEST(ThemeFrameView, InAWindowItTakesThePlaceOfTheBar)
    {
        Themed t;
        t.add();
        EXPECT_EQ(t.view->frame(), NSMakeRect(0, 400, 600, 22));
    }

    TEST(ThemeFrameView, ItFollowsTheWindow)
    {
        Themed t;
        t.add();
        t.window->setFrame_display(NSMakeRect(0, 0, 700, 500), true);
        EXPECT_EQ(t.view->frame(), NSMakeRect(0, 478, 700, 22));
    }

    TEST(ThemeFrameView, TheDepthOfTheZoneIsReckonedFromTheStrip)
    {
        Themed low;
        low.add();
        EXPECT_EQ(low.view->additionalTrackY(), 151);
        Themed high;
        high.view->setAdditionalTitleBarHeight(10);
        high.add();
        EXPECT_EQ(high.view->additionalTrackY(), 219);
    }

    TEST(ThemeFrameView, ADepthOfTheHostsIsKept)
    {
        Themed t;
        t.view->setAdditionalTrackY(40);
        t.add();
        EXPECT_EQ(t.view->additionalTrackY(), 40);
        EXPECT_EQ(t.overlay()->frame(), NSMakeRect(0, 360, 600, 62));
    }

    TEST(ThemeFrameView, TheZoneLiesInFrontOfEverything)
    {
        Themed t;
        t.add();
        EXPECT_EQ(t.overlay()->frame(), NSMakeRect(0, 249, 600, 173));
        EXPECT_EQ(t.overlay()->autoresizingMask(), 10u);
        EXPECT_EQ(t.frameView()->subviews()->lastObject(), t.overlay().get());
    }

    TEST(ThemeFrameView, WithoutWidgetsAndOverlayThereIsNoZone)
    {
        Themed t;
        t.view->setCustomWindowWidgets(false);
        t.addAndTrack();
        EXPECT_EQ(t.overlay(), nullptr);
        EXPECT_EQ(t.widgets(), nullptr);
        t.enter();
        EXPECT_EQ(t.log.text(), "");
    }

    TEST(ThemeFrameView, TheWidgetsLieAtTheTopLeft)
    {
        Themed t;
        t.view->setBackgroundColor(NSColor::cls().redColor().get());
        t.add();
        const Ref<VLImageView> widgets = t.widgets();
        ASSERT_NE(widgets, nullptr);
        EXPECT_EQ(
            widgets->frame(), NSMakeRect(8, 422 - 5, 0, 0)); // the application has no such image
        EXPECT_EQ(widgets->image(), nullptr);
        EXPECT_EQ(widgets->autoresizingMask(), 12u);
        EXPECT_EQ(widgets->imageAlpha(), 0.62);
        EXPECT_TRUE(widgets->backgroundColor()->isEqual(NSColor::cls().redColor().get()));
    }

    TEST(ThemeFrameView, TheWidgetsAreAsLargeAsTheApplicationsImage)
    {
        const test::BundleFolder folder;
        folder.add("minimalWidgets.png", quartz::encodePNG(test::plainPicture(54, 16).get()));
        const test::MainBundle main(folder);
        Themed t;
        t.add();
        ASSERT_NE(t.widgets(), nullptr);
        EXPECT_EQ(t.widgets()->frame(), NSMakeRect(8, 422 - 16 - 5, 54, 16));
    }

    TEST(ThemeFrameView, TheFrameIsWatchedForGood)
    {
        WeakRef<GWThemeFrameView> watched;
        {
            Themed t;
            watched = t.view.get();
            t.add();
            t.view->removeFromSuperview();
        }
        EXPECT_NE(watched.get(), nullptr);
    }

    TEST(ThemeFrameView, ThePointerIsFeltFromTheFirstChangeOfTheFrame)
    {
        Themed t;
        t.add();
        EXPECT_EQ(t.areas(), 0u);
        t.view->setFrame(t.view->frame());
        EXPECT_EQ(t.areas(), 0u);
        t.view->setFrameSize({ 600, 23 });
        ASSERT_EQ(t.areas(), 1u);
        const auto area = cast<NSTrackingArea>(t.overlay()->trackingAreas()->objectAtIndex(0));
        EXPECT_EQ(area->rect(), t.overlay()->bounds());
        EXPECT_EQ(area->options(), 0x41u);
        EXPECT_EQ(area->owner(), t.view.get());
        EXPECT_EQ(area->userInfo(), nullptr);
    }

    TEST(ThemeFrameView, ALaterChangeReplacesTheTrackingArea)
    {
        Themed t;
        t.addAndTrack();
        const auto before = t.overlay()->trackingAreas()->objectAtIndex(0);
        t.view->setFrameSize({ 600, 30 });
        EXPECT_EQ(t.areas(), 1u);
        EXPECT_NE(t.overlay()->trackingAreas()->objectAtIndex(0), before);
    }

    TEST(ThemeFrameView, TheUsersResizingDoesNotCount)
    {
        Themed t;
        t.add();
        t.screen.pointer().press({ 648, 150 });
        t.screen.pointer().dragTo({ 700, 150 });
        t.screen.pointer().release();
        EXPECT_EQ(t.view->frame().size.width, 652);
        EXPECT_EQ(t.areas(), 0u);
        t.window->setFrame_display(NSMakeRect(0, 0, 700, 500), true);
        EXPECT_EQ(t.areas(), 1u);
    }

    TEST(ThemeFrameView, ThePointerFadesTheWidgetsOutAndInAgain)
    {
        Themed t;
        t.addAndTrack();
        const Ref<VLImageView> widgets = t.widgets();
        t.enter();
        EXPECT_EQ(widgets->alphaValue(), 1);
        t.screen.advance(kFade / 2);
        EXPECT_GT(widgets->alphaValue(), 0.6); // slow at first
        EXPECT_LT(widgets->alphaValue(), 0.8);
        t.screen.advance(kFade / 2 + 0.05);
        EXPECT_EQ(widgets->alphaValue(), 0);
        t.leave();
        t.screen.advance(kFade / 2);
        EXPECT_GT(widgets->alphaValue(), 0.6); // fast at first
        t.fade();
        EXPECT_EQ(widgets->alphaValue(), 1);
    }

    TEST(ThemeFrameView, WithoutOverlayTheZoneStaysAsItIs)
    {
        Themed t;
        t.addAndTrack();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
        t.enter();
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
        EXPECT_FALSE(t.overlay()->wantsLayer());
        t.leave();
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
    }

    TEST(ThemeFrameView, WithOverlayTheZoneFadesInAndOutAgain)
    {
        Themed t;
        t.view->setTitlebarOverlay(true);
        t.view->setTitlebarOverlayHeight(40);
        t.addAndTrack();
        EXPECT_TRUE(t.overlay()->titlebarOverlay());
        EXPECT_EQ(t.overlay()->titlebarOverlayHeight(), 40);
        EXPECT_EQ(t.overlay()->alphaValue(), 0);
        t.enter();
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
        EXPECT_EQ(t.widgets()->alphaValue(), 0);
        t.leave();
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 0);
        EXPECT_EQ(t.widgets()->alphaValue(), 1);
    }

    TEST(ThemeFrameView, TheOverlayAloneIsEnoughForAZone)
    {
        Themed t;
        t.view->setCustomWindowWidgets(false);
        t.view->setTitlebarOverlay(true);
        t.addAndTrack();
        EXPECT_EQ(t.widgets(), nullptr);
        t.enter();
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
    }

    TEST(ThemeFrameView, ALeaveDuringAFadeTurnsRound)
    {
        Themed t;
        t.addAndTrack();
        t.enter();
        t.screen.advance(kFade * 0.75);
        const double seen = t.widgets()->alphaValue();
        t.leave();
        EXPECT_EQ(t.widgets()->alphaValue(), seen);
        t.fade();
        EXPECT_EQ(t.widgets()->alphaValue(), 1);
    }

    TEST(ThemeFrameView, EveryEntryIsLogged)
    {
        Themed t;
        t.addAndTrack();
        t.enter();
        t.leave();
        t.enter();
        EXPECT_EQ(t.log.text(), "mouseEntered\nmouseEntered\n");
    }

    TEST(ThemeFrameView, AnInactiveApplicationsStripFeelsNothing)
    {
        Themed t;
        t.addAndTrack();
        t.screen.application().deactivate();
        t.enter();
        EXPECT_EQ(t.log.text(), "");
    }

    TEST(ThemeFrameView, AWindowInFrontKeepsThePointerFromIt)
    {
        Themed t;
        t.addAndTrack();
        const Ref<NSWindow> cover = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(300, 400, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        cover->orderFront(nullptr);
        t.enter();
        EXPECT_EQ(t.log.text(), "");
        cover->close();
    }

    TEST(ThemeFrameView, AWindowWithATitleBarGetsNoCloseButton)
    {
        Themed t;
        t.add();
        EXPECT_EQ(t.overlay()->subviews()->count(), 0u);
    }

    TEST(ThemeFrameView, AWindowWithoutATitleBarGetsACloseButtonInTheBand)
    {
        Themed t(NSBorderlessWindowMask);
        t.view->setTitlebarOverlay(true);
        t.view->setTitlebarOverlayHeight(40);
        t.addAndTrack();
        ASSERT_EQ(t.overlay()->subviews()->count(), 1u);
        const auto button = cast<NSButton>(t.overlay()->subviews()->objectAtIndex(0));
        EXPECT_TRUE(button->isEnabled());
        const NSRect frame = button->frame();
        EXPECT_EQ(frame.origin.x, 8);
        const double middle = NSMaxY(t.overlay()->bounds()) - 40 * 0.62 * 0.5;
        EXPECT_EQ(frame.origin.y,
            static_cast<double>(std::round(static_cast<float>(middle - frame.size.height * 0.5))));
        t.screen.pointer().moveTo({ 300, 440 });
        t.fade();
        EXPECT_EQ(t.overlay()->alphaValue(), 1);
        const NSRect inWindow = t.overlay()->convertRect_toView(frame, nullptr);
        t.screen.pointer().click({ 50 + NSMidX(inWindow), 50 + NSMidY(inWindow) });
        EXPECT_FALSE(t.window->isVisible());
    }

    TEST(ThemeFrameView, ThePointerTakesTheHighlightOffTheCloseButton)
    {
        Themed t(NSBorderlessWindowMask);
        t.addAndTrack();
        const auto button = cast<NSButton>(t.overlay()->subviews()->objectAtIndex(0));
        button->highlight(true);
        t.view->fadeIn(true);
        EXPECT_FALSE(button->cell()->isHighlighted());
    }

    TEST(ThemeFrameView, InAnotherWindowTheZoneIsTheSame)
    {
        Themed t;
        Themed other;
        t.add();
        const Ref<GWOverlayHoverView> zone = t.overlay();
        const Ref<VLImageView> widgets = t.widgets();
        other.frameView()->addSubview(t.view.get());
        EXPECT_EQ(t.overlay(), zone);
        EXPECT_EQ(zone->window(), other.window);
        EXPECT_EQ(widgets->window(), other.window);
        EXPECT_EQ(t.widgets(), nullptr);
    }

    TEST(ThemeFrameView, ADragMovesAWindowWithoutTitleBar)
    {
        Themed t(NSBorderlessWindowMask);
        t.view->setCustomWindowWidgets(false);
        t.add();
        t.screen.process();
        t.screen.pointer().press({ 350, 440 });
        t.screen.pointer().dragTo({ 360, 430 });
        t.screen.pointer().release();
        EXPECT_EQ(t.window->frame().origin, NSMakePoint(60, 40));
        t.screen.pointer().press({ 350, 300 }); // below the strip
        t.screen.pointer().dragTo({ 400, 250 });
        t.screen.pointer().release();
        EXPECT_EQ(t.window->frame().origin, NSMakePoint(60, 40));
    }

    TEST(ThemeFrameView, TheWholeHeightOfTheStripMovesTheWindow)
    {
        Themed t(NSTitledWindowMask);
        t.view->setAdditionalTitleBarHeight(20);
        t.add();
        t.screen.process();
        t.screen.pointer().press({ 350, 50 + 422 - 35 });
        t.screen.pointer().dragTo({ 360, 50 + 422 - 45 });
        t.screen.pointer().release();
        EXPECT_EQ(t.window->frame().origin, NSMakePoint(60, 40));
    }

    TEST(ThemeFrameView, AWindowMayBeClosedDuringAFade)
    {
        Themed t;
        t.addAndTrack();
        t.enter();
        t.screen.advance(kFade / 2);
        t.window->close();
        EXPECT_NO_THROW(t.fade());
        EXPECT_FALSE(t.window->isVisible());
    }

    TEST(ThemeFrameView, TheStripMayBeRemovedDuringAFade)
    {
        Themed t;
        t.addAndTrack();
        t.enter();
        t.view->removeFromSuperview();
        EXPECT_NO_THROW(t.fade());
        EXPECT_EQ(t.view->window(), nullptr);
    }

}
}
