// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSBitmapImageRep.h"
#include "appkit/NSColor.h"
#include "foundation/NSData.h"
#include "foundation/NSError.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle::test {

namespace {

    Ref<NSImage> again(const Ref<NSImage>& image)
    {
        Ref<NSError> error;
        const auto data
            = NSKeyedArchiver::cls().archivedDataWithRootObject_requiringSecureCoding_error(
                image.get(), true, &error);
        return cast<NSImage>(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
            NSImage::cls(), data.get(), &error));
    }
    std::string shapeOf(const Ref<NSImage>& image)
    {
        return shape(image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr).get());
    }

}

TEST(NSImageCoding, KeepsPixelsSizeAndKind)
{
    const auto image = quartersImage();
    image->setSize(NSMakeSize(7, 3));
    image->setTemplate(true);
    image->setCapInsets(NSEdgeInsetsMake(1, 2, 3, 4));
    image->setResizingMode(NSImageResizingModeTile);
    const auto same = again(image);
    ASSERT_TRUE(same);
    EXPECT_EQ(shapeOf(same), "rrgg/rrgg/bbww/bbww");
    EXPECT_EQ(same->size(), NSMakeSize(7, 3));
    EXPECT_TRUE(same->isTemplate());
    EXPECT_EQ(same->capInsets(), NSEdgeInsetsMake(1, 2, 3, 4));
    EXPECT_EQ(same->resizingMode(), NSImageResizingModeTile);
}

TEST(NSImageCoding, KeepsEveryRepresentation)
{
    const auto image = quartersImage();
    const auto fine = alloc<NSBitmapImageRep>()->initWithCGImage(plainPicture(17, 17).get());
    fine->setSize(NSMakeSize(4, 4));
    image->addRepresentation(fine.get());
    const auto same = again(image);
    ASSERT_EQ(same->representations()->count(), 2u);
    EXPECT_EQ(cast<NSImageRep>(same->representations()->lastObject())->size(), NSMakeSize(4, 4));
}

TEST(NSImageCoding, DrawsWhatIsNoBitmap)
{
    const NSCustomImageRep::Handler handler = [](NSRect rect) {
        NSColor::cls().colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
        NSRectFill(rect);
        return true;
    };
    EXPECT_EQ(shapeOf(again(NSImage::cls().imageWithSize_flipped_drawingHandler(
                  NSMakeSize(2, 1), false, handler))),
        "rr");
}

TEST(NSImageCoding, KeepsAnEmptyImage)
{
    const auto same = again(alloc<NSImage>()->initWithSize(NSMakeSize(3, 4)));
    ASSERT_TRUE(same);
    EXPECT_EQ(same->size(), NSMakeSize(3, 4));
    EXPECT_EQ(same->representations()->count(), 0u);
}

}
