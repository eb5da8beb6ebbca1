// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "controls/GWFlippedView.h"
#include "controls/VLImageView.h"
#include "support/Focused.h"
#include "support/HeadlessScreen.h"

namespace brindle {

namespace {

    constexpr std::uint32_t kWhite = 0xFFFFFFFF;
    constexpr std::uint32_t kRed = 0xFFFF0000;

    TEST(GWBackgroundColorView, ANewOneIsWhiteAndBlends)
    {
        const Ref<GWBackgroundColorView> view = make<GWBackgroundColorView>();
        EXPECT_TRUE(view->backgroundColor()->isEqual(NSColor::cls().whiteColor().get()));
        EXPECT_TRUE(view->drawsBackground());
        EXPECT_FALSE(view->opaqueBackground());
    }

    TEST(GWBackgroundColorView, ItIsOpaqueOnlyWhenItDrawsAnOpaqueBackground)
    {
        const Ref<GWBackgroundColorView> view = make<GWBackgroundColorView>();
        EXPECT_FALSE(view->isOpaque());
        view->setOpaqueBackground(true);
        EXPECT_TRUE(view->isOpaque());
        view->setDrawsBackground(false);
        EXPECT_FALSE(view->isOpaque());
    }

    TEST(GWBackgroundColorView, ATranslucentColorLetsWhatIsBelowShowThrough)
    {
        HeadlessScreen screen { 100, 100 };
        const auto below = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 100));
        below->setBackgroundColor(NSColor::cls().redColor().get());
        const auto view = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 100));
        view->setBackgroundColor(NSColor::cls().colorWithCalibratedWhite_alpha(0, 0.5).get());
        view->setNeedsDisplay(true);
        EXPECT_EQ(screen.pixels().at(50, 50), 0xFF7F0000);
    }

    TEST(GWBackgroundColorView, AnOpaqueBackgroundReplacesWhatIsBelow)
    {
        HeadlessScreen screen { 100, 100 };
        screen.window().setOpaque(false);
        screen.window().setBackgroundColor(NSColor::cls().redColor().get());
        const auto view = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 100));
        view->setBackgroundColor(NSColor::cls().clearColor().get());
        view->setOpaqueBackground(true);
        view->setNeedsDisplay(true);
        EXPECT_NE(screen.pixels().at(50, 50), kRed);
    }

    TEST(GWBackgroundColorView, WithoutColorOrLeaveToDrawItDrawsNothing)
    {
        HeadlessScreen screen { 100, 100 };
        screen.window().setBackgroundColor(NSColor::cls().redColor().get());
        const auto view = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 100));
        EXPECT_EQ(screen.pixels().at(50, 50), kWhite);
        view->setDrawsBackground(false);
        view->setNeedsDisplay(true);
        EXPECT_EQ(screen.pixels().at(50, 50), kRed);
        view->setDrawsBackground(true);
        view->setBackgroundColor(nullptr);
        view->setNeedsDisplay(true);
        EXPECT_EQ(screen.pixels().at(50, 50), kRed);
    }

    TEST(GWBackgroundColorView, ItFillsTheDirtyRectangleOnly)
    {
        const test::Focused picture(20, 20);
        const auto view = alloc<GWBackgroundColorView>()->initWithFrame(NSMakeRect(0, 0, 20, 20));
        view->drawRect(NSMakeRect(5, 5, 10, 10));
        EXPECT_EQ(picture.at(10, 10).alpha, 255);
        EXPECT_EQ(picture.at(2, 2).alpha, 0);
        EXPECT_EQ(picture.at(17, 10).alpha, 0);
    }

    TEST(GWBackgroundColorView, AnOpaqueBackgroundIsCopiedATranslucentOneBlends)
    {
        const auto view = cast<GWBackgroundColorView>(
            alloc<GWBackgroundColorView>()->initWithFrame(NSMakeRect(0, 0, 4, 4)));
        view->setBackgroundColor(NSColor::cls().colorWithCalibratedWhite_alpha(0, 0.5).get());
        for (const bool opaque : { false, true }) {
            const test::Focused picture(4, 4);
            picture.fillWhite();
            view->setOpaqueBackground(opaque);
            view->drawRect(view->bounds());
            EXPECT_EQ(picture.at(1, 1).alpha, opaque ? 128 : 255);
        }
    }

    TEST(GWBackgroundColorView, SettersDoNotMarkTheView)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<GWBackgroundColorView>(NSMakeRect(0, 0, 100, 100));
        screen.process();
        view->setBackgroundColor(NSColor::cls().redColor().get());
        view->setDrawsBackground(false);
        view->setOpaqueBackground(true);
        EXPECT_FALSE(view->needsDisplay());
    }

    TEST(GWFlippedView, ItIsFlippedOpaqueAndMovesTheWindow)
    {
        const Ref<GWFlippedView> view = make<GWFlippedView>();
        EXPECT_TRUE(view->isFlipped());
        EXPECT_TRUE(view->mouseDownCanMoveWindow());
        EXPECT_TRUE(view->opaqueBackground());
        EXPECT_TRUE(view->drawsBackground());
    }

    TEST(GWFlippedView, ItSaysOpaqueWhateverItsBackgroundIs)
    {
        const Ref<GWFlippedView> view = make<GWFlippedView>();
        view->setOpaqueBackground(false);
        EXPECT_TRUE(view->isOpaque());
        view->setDrawsBackground(false);
        EXPECT_TRUE(view->isOpaque());
    }

    TEST(GWFlippedView, ItFillsItself)
    {
        HeadlessScreen screen { 100, 100 };
        screen.add<GWFlippedView>(NSMakeRect(0, 0, 100, 100));
        EXPECT_EQ(screen.pixels().at(50, 50), kWhite);
    }

    Ref<NSImage> redImage(NSSize size)
    {
        Ref<NSImage> image = alloc<NSImage>()->initWithSize(size);
        image->lockFocus();
        NSColor::cls().redColor()->set();
        NSRectFill({ {}, size });
        image->unlockFocus();
        return image;
    }

    TEST(VLImageView, ANewOneHasNoImageAndFullAlpha)
    {
        const Ref<VLImageView> view = make<VLImageView>();
        EXPECT_EQ(view->image(), nullptr);
        EXPECT_EQ(view->imageAlpha(), 1);
        EXPECT_TRUE(view->drawsBackground());
    }

    TEST(VLImageView, OnlyAnotherImageMarksTheView)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 0, 100, 100));
        view->setNeedsDisplay(false);
        const Ref<NSImage> image = alloc<NSImage>()->initWithSize({ 0, 0 });
        view->setImage(image.get());
        EXPECT_TRUE(view->needsDisplay());
        view->setNeedsDisplay(false);
        view->setImage(image.get());
        EXPECT_FALSE(view->needsDisplay());
    }

    TEST(VLImageView, ItsAlphaDoesNotMarkTheView)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 0, 100, 100));
        screen.process();
        view->setImageAlpha(0.5);
        EXPECT_EQ(view->imageAlpha(), 0.5);
        EXPECT_FALSE(view->needsDisplay());
    }

    TEST(VLImageView, WithoutAnImageItIsItsBackground)
    {
        HeadlessScreen screen { 100, 100 };
        screen.add<VLImageView>(NSMakeRect(0, 0, 100, 100));
        EXPECT_EQ(screen.pixels().at(50, 50), kWhite);
    }

    TEST(VLImageView, TheImageCoversTheWholeView)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 20, 100, 50));
        view->setImage(redImage({ 20, 20 }).get());
        const display::Snapshot seen = screen.pixels();
        EXPECT_EQ(seen.at(1, 31), kRed);
        EXPECT_EQ(seen.at(98, 78), kRed);
        EXPECT_NE(seen.at(50, 29), kRed); // nothing outside
        EXPECT_NE(seen.at(50, 80), kRed);
    }

    TEST(VLImageView, TheImageKeepsItsProportionsAndIsCutOff)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 0, 50, 100));
        const auto image = redImage({ 20, 20 });
        image->lockFocus();
        NSColor::cls().blueColor()->set();
        NSRectFill(NSMakeRect(0, 0, 4, 20)); // a fifth, all of it outside when 100 by 100
        image->unlockFocus();
        view->setImage(image.get());
        EXPECT_EQ(screen.pixels().at(2, 50), kRed);
    }

    TEST(VLImageView, ItsAlphaBlendsTheImageWithTheBackground)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 0, 100, 100));
        view->setImage(redImage({ 20, 20 }).get());
        view->setImageAlpha(0.5);
        const std::uint32_t seen = screen.pixels().at(50, 50);
        EXPECT_EQ(seen >> 16 & 0xFF, 0xFFu);
        EXPECT_NEAR(static_cast<int>(seen & 0xFF), 0x80, 1);
    }

    TEST(VLImageView, ItsAlphaAndThatOfTheViewMultiply)
    {
        HeadlessScreen screen { 100, 100 };
        screen.window().setBackgroundColor(NSColor::cls().whiteColor().get());
        const auto view = screen.add<VLImageView>(NSMakeRect(0, 0, 100, 100));
        view->setDrawsBackground(false);
        view->setImage(redImage({ 20, 20 }).get());
        view->setImageAlpha(0.5);
        view->setAlphaValue(0.5);
        const std::uint32_t seen = screen.pixels().at(50, 50);
        EXPECT_NEAR(static_cast<int>(seen & 0xFF), 0xFF * 3 / 4, 1);
    }

}

}
