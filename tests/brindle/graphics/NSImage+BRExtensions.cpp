// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSImage+BRExtensions.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "core/NSBundle+Brindle.h"
#include "graphics/NSImage+TintImage.h"
#include "graphics/NSView+ImageRepresentation.h"
#include "quartz/layers/CALayer.h"
#include "runtime/Table.h"
#include "support/BundleFolder.h"
#include "support/LogSink.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle {

/// A layer that fills its lower left point red.
class RedDotLayer : public CALayer {
    BRINDLE_OBJECT(RedDotLayer, CALayer)
};
template <> struct RedDotLayer::Methods<struct Drawing> {
    static void render(RedDotLayer&, CGContextRef context)
    {
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    }
    static void table(Builder& t) { t.methods({ { "renderInContext:", imp<render> } }); }
};
BRINDLE_RECORD(RedDotLayer, Drawing)

/// A view that writes down how it is shown.
class SnapshotView : public NSView {
    BRINDLE_OBJECT(SnapshotView, NSView)

public:
    std::string log;
    bool wanted = false;
    bool raises = false;
};
template <> struct SnapshotView::Methods<struct Recording> {
    static void setHidden(SnapshotView& self, bool hidden)
    {
        self.log += hidden ? "hide " : "show ";
        super<SnapshotView, "setHidden:">(self, hidden);
    }
    static bool wantsLayer(SnapshotView& self) { return self.wanted; }
    static void setWantsLayer(SnapshotView& self, bool wants)
    {
        self.log += wants ? "layer " : "none ";
        self.wanted = wants;
    }
    static Ref<CALayer> layer(SnapshotView& self)
    {
        self.log += "render ";
        if (self.raises)
            raise("Refused", "no layer");
        return make<RedDotLayer>();
    }
    static void table(Builder& t)
    {
        t.methods({
            { "setHidden:", imp<setHidden> },
            { "wantsLayer", imp<wantsLayer> },
            { "setWantsLayer:", imp<setWantsLayer> },
            { "layer", imp<layer> },
        });
    }
};
BRINDLE_RECORD(SnapshotView, Recording)

/// An image that tells how it is drawn instead of drawing.
class DrawnImage : public NSImage {
    BRINDLE_OBJECT(DrawnImage, NSImage)

public:
    NSPoint point_ {};
    NSRect source_ {};
    NSCompositingOperation operation_ {};
    double fraction_ = 0;
    NSImageInterpolation interpolation_ {};
};
template <> struct DrawnImage::Methods<struct Recording> {
    static bool isValid(DrawnImage&) { return true; }
    static void draw(DrawnImage& self, NSPoint point, NSRect source,
        NSCompositingOperation operation, CGFloat fraction)
    {
        self.point_ = point;
        self.source_ = source;
        self.operation_ = operation;
        self.fraction_ = fraction;
        self.interpolation_ = NSGraphicsContext::cls().currentContext()->imageInterpolation();
    }
    static void table(Builder& t)
    {
        t.methods({
            { "isValid", imp<isValid> },
            { "drawAtPoint:fromRect:operation:fraction:", imp<draw> },
        });
    }
};
BRINDLE_RECORD(DrawnImage, Recording)

namespace test {

    // ---- bundles

    TEST(ImagesOfBundles, AreReadAnewEachTime)
    {
        const BundleFolder folder;
        folder.add("mark.png", quartz::encodePNG(quarters().get()));
        const auto bundle = folder.open();
        const auto image = imageNamed_fromBundle(NSImage::cls(), "mark"_ns, bundle.get());
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), NSMakeSize(4, 4));
        EXPECT_NE(image, imageNamed_fromBundle(NSImage::cls(), "mark.png"_ns, bundle.get()));
    }

    TEST(ImagesOfBundles, AreNilWhenMissing)
    {
        const BundleFolder folder;
        folder.add("broken.png", "no picture");
        const auto bundle = folder.open();
        EXPECT_FALSE(imageNamed_fromBundle(NSImage::cls(), "mark"_ns, bundle.get()));
        EXPECT_FALSE(imageNamed_fromBundle(NSImage::cls(), "broken"_ns, bundle.get()));
        EXPECT_FALSE(imageNamed_fromBundle(NSImage::cls(), nullptr, bundle.get()));
        EXPECT_FALSE(imageNamed_fromBundle(NSImage::cls(), "mark"_ns, nullptr));
    }

    TEST(ImagesOfBundles, TheFrameworkHasItsMark)
    {
        ASSERT_TRUE(BrindleFrameworkBundle(NSBundle::cls()));
        const auto mark = imageNamedFromBrindle(NSImage::cls(), "apple.png"_ns);
        ASSERT_TRUE(mark);
        EXPECT_EQ(mark->representations()->count(), 2u);
        EXPECT_LE(mark->size().height, 22);
        EXPECT_FALSE(imageNamedFromBrindle(NSImage::cls(), "nothing.png"_ns));
    }

    // ---- resizing

    TEST(ResizeImage, AnswersANewImageOfTheSize)
    {
        const auto image = quartersImage();
        const auto small = resizeImageToNewSize(image, NSMakeSize(2, 2));
        EXPECT_NE(small, image);
        EXPECT_EQ(small->size(), NSMakeSize(2, 2));
        const auto picture = small->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
        EXPECT_EQ(shape(picture.get()), "rg/bw");
    }

    TEST(ResizeImage, ChangesTheReceiversSizeToo)
    {
        const auto image = quartersImage();
        resizeImageToNewSize(image, NSMakeSize(2, 3));
        EXPECT_EQ(image->size(), NSMakeSize(2, 3));
    }

    TEST(ResizeImage, CopiesTheReceiverWithHighInterpolation)
    {
        const auto image = cast<DrawnImage>(alloc<DrawnImage>()->initWithSize(NSMakeSize(9, 9)));
        image->point_ = { 5, 5 };
        resizeImageToNewSize(image, NSMakeSize(2, 3));
        EXPECT_EQ(image->point_, NSMakePoint(0, 0));
        EXPECT_EQ(image->source_, NSMakeRect(0, 0, 2, 3));
        EXPECT_EQ(image->operation_, NSCompositeCopy);
        EXPECT_EQ(image->fraction_, 1);
        EXPECT_EQ(image->interpolation_, NSImageInterpolationHigh);
    }

    TEST(ResizeImage, OfAnInvalidImageIsNilAndLogged)
    {
        const LogSink log;
        EXPECT_FALSE(resizeImageToNewSize(make<NSImage>(), NSMakeSize(2, 2)));
        EXPECT_EQ(log.text(), "Invalid Image\n");
    }

    TEST(ResizeImage, ToNothingRaises)
    {
        EXPECT_TRUE(raisedBy([] {
            resizeImageToNewSize(quartersImage(), NSZeroSize);
        }).starts_with("NSImageCacheException"));
    }

    TEST(ResizeImage, LeavesTheCurrentContextAsItWasWhenDrawingRaises)
    {
        const auto image = NSImage::cls().imageWithSize_flipped_drawingHandler(
            NSMakeSize(4, 4), false, [](NSRect) -> bool { raise("Refused", "no picture"); });
        const auto contexts = NSGraphicsContext::cls();
        const Ref<NSGraphicsContext> before = contexts.currentContext();
        EXPECT_THROW(resizeImageToNewSize(image, NSMakeSize(2, 2)), Exception);
        EXPECT_EQ(contexts.currentContext(), before);
        EXPECT_THROW(imageTintedWithColor(image, NSColor::cls().redColor().get()), Exception);
        EXPECT_EQ(contexts.currentContext(), before);
        contexts.setCurrentContext(before.get());
    }

    // ---- pictures of views

    TEST(ImageRepresentation, ShowsTheViewInALayerAndPutsBothBack)
    {
        const auto view
            = cast<SnapshotView>(alloc<SnapshotView>()->initWithFrame(NSMakeRect(5, 6, 2, 2)));
        view->setHidden(true);
        view->log.clear();
        const auto image = imageRepresentation(view);
        EXPECT_EQ(view->log, "show layer render none hide ");
        EXPECT_TRUE(view->isHidden());
        EXPECT_EQ(image->size(), NSMakeSize(2, 2));
        const auto picture = image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
        EXPECT_EQ(shape(picture.get()), "../r.");
    }

    TEST(ImageRepresentation, LeavesAVisibleViewItsLayer)
    {
        const auto view
            = cast<SnapshotView>(alloc<SnapshotView>()->initWithFrame(NSMakeRect(0, 0, 2, 2)));
        view->wanted = true;
        imageRepresentation(view);
        EXPECT_EQ(view->log, "show layer render layer show ");
    }

    TEST(ImageRepresentation, IsUndoneWhenDrawingRaises)
    {
        const auto view
            = cast<SnapshotView>(alloc<SnapshotView>()->initWithFrame(NSMakeRect(0, 0, 2, 2)));
        view->raises = true;
        EXPECT_EQ(raisedBy([&] { imageRepresentation(view); }), "Refused: no layer");
        EXPECT_FALSE(view->wanted);
        EXPECT_FALSE(NSGraphicsContext::cls().currentContext());
    }

}

}
