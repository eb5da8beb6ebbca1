// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSImageView.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSImage.h"
#include "appkit/NSPasteboard.h"
#include "runtime/NSException.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/EditingDesk.h"

namespace brindle {
namespace {

    /// An image whose upper half is red and whose lower half is blue.
    Ref<NSImage> flag(CGFloat width, CGFloat height)
    {
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            { width, height }, false, [](NSRect rect) {
                NSColor::cls().blueColor()->set();
                NSRectFill(rect);
                NSColor::cls().redColor()->set();
                NSRectFill(
                    NSMakeRect(NSMinX(rect), NSMidY(rect), rect.size.width, rect.size.height / 2));
                return true;
            });
    }
    constexpr std::uint32_t kRed = 0xFFFF0000;
    constexpr std::uint32_t kBlue = 0xFF0000FF;

    struct ImageViewTest : testing::Test {
        EditingDesk desk;
        Ref<NSImageView> view = desk.add<NSImageView>(NSMakeRect(10, 10, 60, 40));

        NSRect place() { return view->cell()->imageRectForBounds(view->bounds()); }
        /// Answers the colour at a point of the view, counted from its upper left corner.
        std::uint32_t at(CGFloat x, CGFloat y)
        {
            const NSPoint on = EditingDesk::onScreen(*view, { x, y });
            return desk.screen.pixels().at(static_cast<int>(on.x), 299 - static_cast<int>(on.y));
        }
    };

    TEST_F(ImageViewTest, ANewViewShowsNothing)
    {
        EXPECT_EQ(view->image(), nullptr);
        EXPECT_EQ(view->imageScaling(), NSImageScaleProportionallyDown);
        EXPECT_EQ(view->imageAlignment(), NSImageAlignCenter);
        EXPECT_EQ(view->imageFrameStyle(), NSImageFrameNone);
        EXPECT_FALSE(view->isEditable());
        const std::uint32_t ground = at(-2, -2);
        EXPECT_EQ(at(30, 20), ground);
    }
    TEST_F(ImageViewTest, AnImageStandsUpright)
    {
        view->setImage(flag(20, 20).get());
        EXPECT_EQ(at(30, 15), kRed);
        EXPECT_EQ(at(30, 25), kBlue);
    }
    TEST_F(ImageViewTest, AnImageIsOnlyMadeSmaller)
    {
        view->setImage(flag(20, 10).get());
        EXPECT_EQ(place(), NSMakeRect(20, 15, 20, 10));
        view->setImage(flag(120, 40).get());
        EXPECT_EQ(place(), NSMakeRect(0, 10, 60, 20));
    }
    TEST_F(ImageViewTest, AnImageCanFillTheView)
    {
        view->setImage(flag(20, 10).get());
        view->setImageScaling(NSImageScaleAxesIndependently);
        EXPECT_EQ(place(), NSMakeRect(0, 0, 60, 40));
        EXPECT_EQ(at(2, 2), kRed);
        EXPECT_EQ(at(58, 38), kBlue);
    }
    TEST_F(ImageViewTest, AnImageCanKeepItsSize)
    {
        view->setImage(flag(100, 80).get());
        view->setImageScaling(NSImageScaleNone);
        EXPECT_EQ(place(), NSMakeRect(-20, -20, 100, 80));
        const std::uint32_t ground = at(-2, -2);
        EXPECT_NE(ground, kRed) << "cut off at the view's edge";
    }
    TEST_F(ImageViewTest, AnImageCanGrowInProportion)
    {
        view->setImage(flag(10, 10).get());
        view->setImageScaling(NSImageScaleProportionallyUpOrDown);
        EXPECT_EQ(place(), NSMakeRect(10, 0, 40, 40));
    }
    TEST_F(ImageViewTest, AnImageStandsWhereItIsAligned)
    {
        view->setImage(flag(20, 10).get());
        const std::pair<NSImageAlignment, NSPoint> places[] {
            { NSImageAlignCenter, { 20, 15 } },
            { NSImageAlignTop, { 20, 0 } },
            { NSImageAlignTopLeft, { 0, 0 } },
            { NSImageAlignTopRight, { 40, 0 } },
            { NSImageAlignLeft, { 0, 15 } },
            { NSImageAlignBottom, { 20, 30 } },
            { NSImageAlignBottomLeft, { 0, 30 } },
            { NSImageAlignBottomRight, { 40, 30 } },
            { NSImageAlignRight, { 40, 15 } },
        };
        for (const auto& [alignment, origin] : places) {
            view->setImageAlignment(alignment);
            EXPECT_EQ(place().origin, origin) << alignment;
        }
    }
    TEST_F(ImageViewTest, AFrameLeavesTheImageItsRoom)
    {
        view->setImage(flag(60, 40).get());
        view->setImageScaling(NSImageScaleAxesIndependently);
        view->setImageFrameStyle(NSImageFramePhoto);
        EXPECT_EQ(place(), NSMakeRect(5, 5, 50, 30));
        view->setImageFrameStyle(NSImageFrameGrayBezel);
        EXPECT_EQ(place(), NSMakeRect(4, 4, 52, 32));
        view->setImageFrameStyle(NSImageFrameGroove);
        EXPECT_EQ(place(), NSMakeRect(2, 2, 56, 36));
    }
    TEST_F(ImageViewTest, UnknownSettingsAreIgnored)
    {
        view->setImageScaling(static_cast<NSImageScaling>(9));
        view->setImageAlignment(static_cast<NSImageAlignment>(99));
        view->setImageFrameStyle(static_cast<NSImageFrameStyle>(99));
        EXPECT_EQ(view->imageScaling(), NSImageScaleProportionallyDown);
        EXPECT_EQ(view->imageAlignment(), NSImageAlignCenter);
        EXPECT_EQ(view->imageFrameStyle(), NSImageFrameNone);
    }
    TEST_F(ImageViewTest, TheImageIsTheValue)
    {
        const Ref<NSImage> image = flag(5, 5);
        view->setObjectValue(image.get());
        EXPECT_EQ(view->image(), image);
        EXPECT_EQ(view->objectValue(), image);
        view->setObjectValue("no image"_ns);
        EXPECT_EQ(view->image(), nullptr);
    }
    TEST_F(ImageViewTest, WhatIsNoImageRaises)
    {
        EXPECT_THROW(view->send<"setImage:">(static_cast<NSObject*>("text"_ns)), Exception);
    }
    TEST_F(ImageViewTest, ATemplateTakesTheTint)
    {
        const Ref<NSImage> shape = flag(60, 40);
        shape->setTemplate(true);
        view->setImage(shape.get());
        view->setContentTintColor(NSColor::cls().greenColor().get());
        EXPECT_EQ(at(30, 20), 0xFF00FF00);
    }
    TEST_F(ImageViewTest, SizeToFitIsTheImagesSize)
    {
        EXPECT_EQ(NSImageView::cls().imageViewWithImage(flag(33, 44).get())->frame().size,
            (NSSize { 33, 44 }));
        EXPECT_EQ(NSImageView::cls().imageViewWithImage(nullptr)->frame().size, NSSize {});
    }
    TEST_F(ImageViewTest, AnArchiveKeepsImageAndSettings)
    {
        view->setImage(flag(8, 6).get());
        view->setImageScaling(NSImageScaleNone);
        view->setImageAlignment(NSImageAlignTop);
        view->setImageFrameStyle(NSImageFrameGroove);
        view->setEditable(true);
        view->setAllowsCutCopyPaste(false);
        const Ref<NSImageView> back = test::archived(view);
        ASSERT_NE(back->image(), nullptr);
        EXPECT_EQ(back->image()->size(), (NSSize { 8, 6 }));
        EXPECT_EQ(back->imageScaling(), NSImageScaleNone);
        EXPECT_EQ(back->imageAlignment(), NSImageAlignTop);
        EXPECT_EQ(back->imageFrameStyle(), NSImageFrameGroove);
        EXPECT_TRUE(back->isEditable());
        EXPECT_FALSE(back->allowsCutCopyPaste());
    }
    TEST_F(ImageViewTest, ACopyOfTheCellHasItsSettings)
    {
        const Ref<NSImageCell> cell = make<NSImageCell>();
        cell->setImage(flag(5, 5).get());
        cell->setImageAlignment(NSImageAlignTop);
        const Ref<NSImageCell> copy = cast<NSImageCell>(cell->copy());
        EXPECT_EQ(copy->image(), cell->image());
        EXPECT_EQ(copy->imageAlignment(), NSImageAlignTop);
    }

    // ---- the user's hand

    TEST_F(ImageViewTest, OnlyAnEditableViewTakesTheKeyboard)
    {
        EXPECT_FALSE(view->acceptsFirstResponder());
        view->setEditable(true);
        EXPECT_TRUE(view->acceptsFirstResponder());
        view->setEnabled(false);
        EXPECT_FALSE(view->acceptsFirstResponder());
    }
    TEST_F(ImageViewTest, DeleteTakesAnEditableImageAway)
    {
        const Ref<ActionLog> log = make<ActionLog>();
        view->setTarget(log.get());
        view->setAction(selector<"act:">);
        view->setImage(flag(5, 5).get());
        view->setEditable(true);
        desk.click(*view, { 30, 20 });
        desk.press(0x7F);
        EXPECT_EQ(view->image(), nullptr);
        EXPECT_EQ(log->count_, 1);
        desk.press(0x7F);
        EXPECT_EQ(log->count_, 1) << "there was nothing to take away";
    }
    TEST_F(ImageViewTest, AnImageGoesOverThePasteboard)
    {
        const Ref<NSImageView> other = desk.add<NSImageView>(NSMakeRect(100, 10, 60, 40));
        const Ref<ActionLog> log = make<ActionLog>();
        other->setTarget(log.get());
        other->setAction(selector<"act:">);
        other->setEditable(true);
        view->setImage(flag(6, 4).get());
        view->send<"copy:">(static_cast<NSObject*>(nullptr));
        other->send<"paste:">(static_cast<NSObject*>(nullptr));
        ASSERT_NE(other->image(), nullptr);
        EXPECT_EQ(other->image()->size(), (NSSize { 6, 4 }));
        EXPECT_EQ(log->count_, 1);
        view->send<"paste:">(static_cast<NSObject*>(nullptr));
        EXPECT_EQ(view->image()->size(), (NSSize { 6, 4 })) << "not editable: as it was";
    }
    TEST_F(ImageViewTest, CuttingCopiesAndTakesAway)
    {
        view->setEditable(true);
        view->setImage(flag(6, 4).get());
        view->send<"cut:">(static_cast<NSObject*>(nullptr));
        EXPECT_EQ(view->image(), nullptr);
        view->send<"paste:">(static_cast<NSObject*>(nullptr));
        EXPECT_NE(view->image(), nullptr);
    }
    TEST_F(ImageViewTest, WithoutCutCopyPasteNothingIsExchanged)
    {
        view->setEditable(true);
        view->setImage(flag(6, 4).get());
        view->setAllowsCutCopyPaste(false);
        view->send<"cut:">(static_cast<NSObject*>(nullptr));
        EXPECT_NE(view->image(), nullptr);
    }

}
}
