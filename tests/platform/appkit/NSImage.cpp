// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSBitmapImageRep.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSImage.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSURL.h"
#include "runtime/NSException.h"
#include "support/BundleFolder.h"
#include "support/Focused.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle::test {

TEST(NSImage, HasTheSizeItIsMadeWith)
{
    const auto image = alloc<NSImage>()->initWithSize(NSMakeSize(20, 10));
    EXPECT_EQ(image->size().width, 20);
    EXPECT_EQ(image->size().height, 10);
    EXPECT_TRUE(image->isValid());
    EXPECT_EQ(image->representations()->count(), 0u);
}

TEST(NSImage, WithoutSizeAndRepresentationsIsNotValid)
{
    EXPECT_FALSE(make<NSImage>()->isValid());
    EXPECT_FALSE(alloc<NSImage>()->initWithSize(NSZeroSize)->isValid());
}

TEST(NSImage, OfAQuartzPictureHasOnePointAPixelForAZeroSize)
{
    const auto picture = quarters();
    EXPECT_EQ(alloc<NSImage>()->initWithCGImage_size(picture.get(), NSZeroSize)->size(),
        NSMakeSize(4, 4));
    EXPECT_EQ(alloc<NSImage>()->initWithCGImage_size(picture.get(), NSMakeSize(2, 2))->size(),
        NSMakeSize(2, 2));
    EXPECT_FALSE(alloc<NSImage>()->initWithCGImage_size(nullptr, NSZeroSize));
}

TEST(NSImage, TakesTheSizeOfItsFirstRepresentation)
{
    const auto image = make<NSImage>();
    image->addRepresentation(alloc<NSBitmapImageRep>()->initWithCGImage(quarters().get()).get());
    EXPECT_EQ(image->size(), NSMakeSize(4, 4));
    EXPECT_TRUE(image->isValid());
}

TEST(NSImage, RefusesWhatIsNoRepresentation)
{
    const auto image = make<NSImage>();
    EXPECT_THROW(image->send<"addRepresentation:">(static_cast<NSObject*>("text"_ns)), Exception);
}

// ---- drawing

TEST(NSImage, StandsUprightInAnUnflippedContext)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSZeroRect, NSCompositeSourceOver, 1);
    EXPECT_EQ(shape(target), "rrgg/rrgg/bbww/bbww");
}

TEST(NSImage, StandsOnItsHeadInAFlippedContext)
{
    const Focused target(4, 4, true);
    flip(target, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSZeroRect, NSCompositeSourceOver, 1);
    EXPECT_EQ(shape(target), "bbww/bbww/rrgg/rrgg");
}

TEST(NSImage, DrawnInARectangleAloneIsUprightInAFlippedContext)
{
    const Focused target(4, 4, true);
    flip(target, 4);
    quartersImage()->drawInRect(NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(shape(target), "rrgg/rrgg/bbww/bbww");
}

TEST(NSImage, DrawsAPartOfItself)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSMakeRect(0, 2, 2, 2), NSCompositeSourceOver, 1);
    EXPECT_EQ(shape(target), "rrrr/rrrr/rrrr/rrrr");
}

TEST(NSImage, CutsASourceThatReachesOverIt)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSMakeRect(2, 2, 4, 4), NSCompositeSourceOver, 1);
    EXPECT_EQ(shape(target), "..../..../gg../gg..");
}

TEST(NSImage, DrawsAtAPointInItsOwnSize)
{
    const Focused target(4, 4);
    quartersImage()->drawAtPoint_fromRect_operation_fraction(
        NSMakePoint(1, 1), NSMakeRect(0, 0, 2, 2), NSCompositeSourceOver, 1);
    EXPECT_EQ(shape(target), "..../.bb./.bb./....");
}

TEST(NSImage, FractionMultipliesItsAlpha)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSZeroRect, NSCompositeSourceOver, 0.5);
    EXPECT_PRED_FORMAT3(isNear, target.at(0, 0), (Rgba { 128, 0, 0, 128 }), 1);
}

TEST(NSImage, CopiedWithAFractionReplacesWhatIsThere)
{
    const Focused target(4, 4);
    target.fillWhite();
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 4, 4), NSZeroRect, NSCompositeCopy, 0.5);
    EXPECT_PRED_FORMAT3(isNear, target.at(0, 0), (Rgba { 128, 0, 0, 128 }), 1);
}

TEST(NSImage, LeavesTheContextAsItWas)
{
    const Focused target(4, 4);
    quartersImage()->drawInRect_fromRect_operation_fraction(
        NSMakeRect(0, 0, 2, 2), NSMakeRect(0, 0, 1, 1), NSCompositeCopy, 0.5);
    NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(shape(target), "rrrr/rrrr/rrrr/rrrr");
}

TEST(NSImage, DrawsNothingWithoutAContext)
{
    quartersImage()->drawInRect(NSMakeRect(0, 0, 4, 4));
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
}

TEST(NSImage, SetSizeStretchesTheWholePicture)
{
    const auto image = quartersImage();
    image->setSize(NSMakeSize(2, 2));
    const Focused target(2, 2);
    image->drawAtPoint_fromRect_operation_fraction(
        NSZeroPoint, NSMakeRect(0, 0, 2, 2), NSCompositeCopy, 1);
    EXPECT_EQ(shape(target), "rg/bw");
}

TEST(NSImage, KeepsItsMarginsWhenStretched)
{
    const auto image = quartersImage();
    image->setCapInsets(NSEdgeInsetsMake(1, 1, 1, 1));
    const Focused target(6, 4);
    image->drawInRect(NSMakeRect(0, 0, 6, 4));
    EXPECT_EQ(target.at(0, 0), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(target.at(5, 0), (Rgba { 0, 255, 0, 255 }));
    EXPECT_EQ(target.at(0, 3), (Rgba { 0, 0, 255, 255 }));
    EXPECT_EQ(target.at(5, 3), (Rgba { 255, 255, 255, 255 }));
}

TEST(NSImage, TilesTheMiddleBetweenItsMargins)
{
    const auto image = quartersImage();
    image->setCapInsets(NSEdgeInsetsMake(1, 1, 1, 1));
    image->setResizingMode(NSImageResizingModeTile);
    const Focused target(8, 4);
    image->drawInRect(NSMakeRect(0, 0, 8, 4));
    EXPECT_EQ(shape(target), "rrgrgrgg/rrgrgrgg/bbwbwbww/bbwbwbww");
}

// ---- focus

TEST(NSImage, LockingFocusDrawsIntoIt)
{
    const auto image = alloc<NSImage>()->initWithSize(NSMakeSize(2, 2));
    image->lockFocus();
    NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
    NSRectFill(NSMakeRect(0, 1, 2, 1));
    image->unlockFocus();
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
    EXPECT_EQ(image->representations()->count(), 1u);
    const auto picture = image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
    EXPECT_EQ(shape(picture.get()), "rr/..");
}

TEST(NSImage, LockingFocusKeepsWhatIsInIt)
{
    const auto image = quartersImage();
    image->lockFocus();
    NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
    NSRectFill(NSMakeRect(0, 0, 4, 1));
    image->unlockFocus();
    const auto picture = image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
    EXPECT_EQ(shape(picture.get()), "rrgg/rrgg/bbww/rrrr");
}

TEST(NSImage, FlippedFocusCountsFromTheTop)
{
    const auto image = alloc<NSImage>()->initWithSize(NSMakeSize(2, 2));
    image->lockFocusFlipped(true);
    NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
    NSRectFill(NSMakeRect(0, 0, 2, 1));
    EXPECT_TRUE(NSGraphicsContext::cls().currentContext()->isFlipped());
    image->unlockFocus();
    const auto picture = image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
    EXPECT_EQ(shape(picture.get()), "rr/..");
}

TEST(NSImage, FocusNests)
{
    const auto outer = alloc<NSImage>()->initWithSize(NSMakeSize(2, 2));
    const auto inner = quartersImage();
    outer->lockFocus();
    const auto context = NSGraphicsContext::cls().currentContext();
    inner->lockFocus();
    inner->unlockFocus();
    EXPECT_EQ(NSGraphicsContext::cls().currentContext(), context);
    outer->unlockFocus();
}

TEST(NSImage, WhoseDrawingRaisesIsNotLocked)
{
    bool raises = false;
    const auto image
        = NSImage::cls().imageWithSize_flipped_drawingHandler(NSMakeSize(2, 2), false, [&](NSRect) {
              if (raises)
                  raise("Fault", "on purpose");
              return true;
          });
    const auto outer = alloc<NSImage>()->initWithSize(NSMakeSize(2, 2));
    outer->lockFocus();
    const auto context = NSGraphicsContext::cls().currentContext();
    raises = true;
    EXPECT_EQ(raisedBy([&] { image->lockFocusFlipped(true); }), "Fault: on purpose");
    EXPECT_EQ(NSGraphicsContext::cls().currentContext(), context);
    image->unlockFocus();
    EXPECT_EQ(NSGraphicsContext::cls().currentContext(), context);
    outer->unlockFocus();
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
}

TEST(NSImage, WithoutASizeCannotBeLocked)
{
    const auto image = make<NSImage>();
    EXPECT_TRUE(raisedBy([&] { image->lockFocus(); }).starts_with("NSImageCacheException: "));
}

TEST(NSImage, UnlockingWithoutFocusDoesNothing)
{
    const auto image = quartersImage();
    image->unlockFocus();
    EXPECT_EQ(shape(image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr).get()),
        "rrgg/rrgg/bbww/bbww");
}

TEST(NSImage, ACopyIsIndependent)
{
    const auto image = quartersImage();
    image->setTemplate(true);
    const auto copy = cast<NSImage>(image->copy());
    copy->lockFocus();
    NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    copy->unlockFocus();
    EXPECT_TRUE(copy->isTemplate());
    EXPECT_EQ(shape(image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr).get()),
        "rrgg/rrgg/bbww/bbww");
    EXPECT_EQ(shape(copy->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr).get()),
        "rrrr/rrrr/rrrr/rrrr");
}

// ---- representations

TEST(NSImage, ChoosesTheFewestPixelsThatSuffice)
{
    const auto image = alloc<NSImage>()->initWithSize(NSMakeSize(4, 4));
    const auto fine = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(8, 8).get());
    const auto plain = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(4, 4).get());
    image->addRepresentation(fine.get());
    image->addRepresentation(plain.get());
    const auto best = [&](double side) {
        return image->bestRepresentationForRect_context_hints(
            NSMakeRect(0, 0, side, side), nullptr, nullptr);
    };
    EXPECT_EQ(best(4), plain.get());
    EXPECT_EQ(best(3), plain.get());
    EXPECT_EQ(best(5), fine.get());
    EXPECT_EQ(best(100), fine.get());
    image->removeRepresentation(fine.get());
    EXPECT_EQ(best(100), plain.get());
}

TEST(NSImage, AnEmptyImageHasNoPicture)
{
    const auto image = alloc<NSImage>()->initWithSize(NSMakeSize(4, 4));
    EXPECT_FALSE(image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr));
    EXPECT_FALSE(image->TIFFRepresentation());
}

TEST(NSImage, AHandlerDrawsAsFineAsTheDeviceIs)
{
    NSRect drawn {};
    const NSCustomImageRep::Handler handler = [&drawn](NSRect rect) {
        drawn = rect;
        NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
        NSRectFill(NSMakeRect(0, 0, 0.5, 1));
        return true;
    };
    const auto image
        = NSImage::cls().imageWithSize_flipped_drawingHandler(NSMakeSize(1, 1), false, handler);
    const Focused target(4, 2);
    image->drawInRect(NSMakeRect(0, 0, 4, 2));
    EXPECT_EQ(shape(target), "rr../rr..");
    EXPECT_EQ(drawn, NSMakeRect(0, 0, 1, 1));
}

TEST(NSImage, AFlippedHandlerCountsFromTheTop)
{
    const NSCustomImageRep::Handler handler = [](NSRect) {
        NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
        NSRectFill(NSMakeRect(0, 0, 2, 1));
        return true;
    };
    const auto image
        = NSImage::cls().imageWithSize_flipped_drawingHandler(NSMakeSize(2, 2), true, handler);
    const Focused target(2, 2);
    image->drawInRect(NSMakeRect(0, 0, 2, 2));
    EXPECT_EQ(shape(target), "rr/..");
}

// ---- files and names

TEST(NSImage, ReadsAFileWithItsFinerVariants)
{
    const BundleFolder folder;
    const auto path = folder.add("mark.png", quartz::encodePNG(plainPicture(4, 4).get()));
    folder.add("mark@2x.png", quartz::encodePNG(plainPicture(8, 8).get()));
    const auto image = alloc<NSImage>()->initWithContentsOfFile(stringFrom(path).get());
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), NSMakeSize(4, 4));
    EXPECT_EQ(image->representations()->count(), 2u);
}

TEST(NSImage, AFinerVariantAloneHasThePointsOfThePlainOne)
{
    const BundleFolder folder;
    const auto path = folder.add("mark@2x.png", quartz::encodePNG(plainPicture(8, 8).get()));
    EXPECT_EQ(
        alloc<NSImage>()->initWithContentsOfFile(stringFrom(path).get())->size(), NSMakeSize(4, 4));
}

TEST(NSImage, APointIsASeventySecondOfAnInch)
{
    const BundleFolder folder;
    const auto path = folder.add("fine.png", quartz::encodePNG(plainPicture(8, 8).get(), 144));
    const NSSize size = alloc<NSImage>()->initWithContentsOfFile(stringFrom(path).get())->size();
    EXPECT_NEAR(size.width, 4, 0.001);
    EXPECT_NEAR(size.height, 4, 0.001);
}

TEST(NSImage, UnreadableFilesMakeNone)
{
    const BundleFolder folder;
    const auto path = folder.add("text.png", "no picture");
    EXPECT_FALSE(alloc<NSImage>()->initWithContentsOfFile(stringFrom(path).get()));
    EXPECT_FALSE(alloc<NSImage>()->initWithContentsOfFile("/nowhere/at/all.png"_ns));
    EXPECT_FALSE(alloc<NSImage>()->initWithContentsOfFile(nullptr));
    EXPECT_FALSE(alloc<NSImage>()->initWithData(nullptr));
}

TEST(NSImage, ReferringToAFileIsNeverNil)
{
    const BundleFolder folder;
    const auto path = folder.add("mark.png", quartz::encodePNG(quarters().get()));
    const auto good = alloc<NSImage>()->initByReferencingFile(stringFrom(path).get());
    EXPECT_TRUE(good->isValid());
    EXPECT_EQ(good->size(), NSMakeSize(4, 4));
    EXPECT_FALSE(alloc<NSImage>()->initByReferencingFile("/nowhere.png"_ns)->isValid());
    EXPECT_FALSE(alloc<NSImage>()->initByReferencingFile(nullptr)->isValid());
}

TEST(NSImage, IsFoundByNameInTheMainBundleAndShared)
{
    const BundleFolder folder;
    folder.add("mark.png", quartz::encodePNG(quarters().get()));
    const MainBundle main(folder);
    const auto image = NSImage::cls().imageNamed("mark"_ns);
    ASSERT_TRUE(image);
    EXPECT_EQ(image, NSImage::cls().imageNamed("mark"_ns));
    EXPECT_EQ(utf8(image->name()), "mark");
    EXPECT_TRUE(NSImage::cls().imageNamed("mark.png"_ns));
    EXPECT_FALSE(NSImage::cls().imageNamed("another"_ns));
    EXPECT_FALSE(NSImage::cls().imageNamed(nullptr));
}

TEST(NSImage, OfAnotherMainBundleIsNotFoundAnyMore)
{
    {
        const BundleFolder folder;
        folder.add("passing.png", quartz::encodePNG(quarters().get()));
        const MainBundle main(folder);
        EXPECT_TRUE(NSImage::cls().imageNamed("passing"_ns));
    }
    EXPECT_FALSE(NSImage::cls().imageNamed("passing"_ns));
}

TEST(NSImage, IsATemplateWhenItsNameSaysSo)
{
    const BundleFolder folder;
    folder.add("shapeTemplate.png", quartz::encodePNG(quarters().get()));
    const MainBundle main(folder);
    EXPECT_TRUE(NSImage::cls().imageNamed("shapeTemplate"_ns)->isTemplate());
    EXPECT_TRUE(NSImage::cls().imageNamed(NSImageNameAddTemplate)->isTemplate());
}

TEST(NSImage, ANameBelongsToOneImage)
{
    const auto one = quartersImage();
    const auto two = quartersImage();
    EXPECT_TRUE(one->setName("ours"_ns));
    EXPECT_FALSE(two->setName("ours"_ns));
    EXPECT_EQ(NSImage::cls().imageNamed("ours"_ns), one);
    EXPECT_TRUE(one->setName(nullptr));
    EXPECT_FALSE(NSImage::cls().imageNamed("ours"_ns));
    EXPECT_TRUE(two->setName("ours"_ns));
    two->setName(nullptr);
}

TEST(NSImage, ANameThatAnotherHasTakenStaysWithIt)
{
    const BundleFolder folder;
    folder.add("found.png", quartz::encodePNG(quarters().get()));
    const MainBundle main(folder);
    const auto found = NSImage::cls().imageNamed("found"_ns);
    const auto other = quartersImage();
    EXPECT_TRUE(other->setName("found"_ns));
    EXPECT_TRUE(found->setName("elsewhere"_ns));
    EXPECT_EQ(NSImage::cls().imageNamed("found"_ns), other);
    EXPECT_EQ(NSImage::cls().imageNamed("elsewhere"_ns), found);
    other->setName(nullptr);
    found->setName(nullptr);
}

TEST(NSImage, AHandlerThatRaisesKeepsNoFocus)
{
    bool raises = true;
    const NSCustomImageRep::Handler handler = [&raises](NSRect) {
        if (raises)
            raise("Fault", "on purpose");
        return true;
    };
    const auto image
        = NSImage::cls().imageWithSize_flipped_drawingHandler(NSMakeSize(2, 2), false, handler);
    EXPECT_THROW(image->lockFocus(), Exception);
    EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
    raises = false;
    image->unlockFocus(); // has none
    EXPECT_TRUE(image->representations()->objectAtIndex(0)->isKindOfClass(NSCustomImageRep::cls()));
}

TEST(NSImageRep, OnlyURLsOfFilesAreRead)
{
    const BundleFolder folder;
    const Ref<NSString> path
        = stringFrom(folder.add("mark.png", quartz::encodePNG(quarters().get())));
    const Ref<NSURL> here = NSURL::cls().fileURLWithPath(path.get());
    const Ref<NSURL> there = NSURL::cls().URLWithString(
        "http://example.org"_ns->stringByAppendingString(path.get()).get());
    EXPECT_TRUE(NSBitmapImageRep::cls().imageRepWithContentsOfURL(here.get()));
    EXPECT_FALSE(NSBitmapImageRep::cls().imageRepWithContentsOfURL(there.get()));
    EXPECT_FALSE(NSBitmapImageRep::cls().imageRepsWithContentsOfURL(there.get()));
}

TEST(NSImage, SurvivesBeingWrittenAsTIFF)
{
    const auto image = quartersImage();
    const auto again = alloc<NSImage>()->initWithData(image->TIFFRepresentation().get());
    ASSERT_TRUE(again);
    EXPECT_EQ(shape(again->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr).get()),
        "rrgg/rrgg/bbww/bbww");
}

}
