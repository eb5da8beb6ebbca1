// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCIImageRep.h"

#include "NSImagePrivate.h"
#include "quartz/filters/CIContext.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSCIImageRep::Methods<struct All> {

    static Ref<NSCIImageRep> initWithCIImage(NSCIImageRep& self, class CIImage* image)
    {
        if (!image || !super<NSCIImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        self.image_ = image;
        const CGRect extent = image->extent();
        ImageRepAccess::describe(self,
            { extent.size, static_cast<NSInteger>(pixelsFor(extent.size.width, 1)),
                static_cast<NSInteger>(pixelsFor(extent.size.height, 1)), 8, true, false },
            nullptr);
        return &self;
    }
    static Ref<NSCIImageRep> withCIImage(Class& self, class CIImage* image)
    {
        return cast<NSCIImageRep>(self.send<"alloc", Ref<NSObject>>())->initWithCIImage(image);
    }
    static Ref<class CIImage> image(NSCIImageRep& self) { return cast<class CIImage>(self.image_); }

    static Ref<CGImage> picture(NSCIImageRep& self, NSRect*, NSGraphicsContext*, NSDictionary*)
    {
        const Ref<class CIImage> image = self.CIImage();
        if (image && !self.rendered_)
            self.rendered_ = CIContext::cls().contextWithOptions(nullptr)->createCGImage_fromRect(
                image.get(), image->extent());
        return self.rendered_;
    }
    static bool draw(NSCIImageRep& self)
    {
        const Ref<CGContext> port = currentCGContext();
        const Ref<CGImage> picture
            = self.CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
        CGContextDrawImage(port.get(), { {}, self.size() }, picture.get());
        return port && picture;
    }
    static Ref<NSObject> copyWithZone(NSCIImageRep& self, void* zone)
    {
        auto copy
            = cast<NSCIImageRep>(super<NSCIImageRep, "copyWithZone:", Ref<NSObject>>(self, zone));
        copy->image_ = self.image_;
        copy->rendered_ = self.rendered_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "imageRepWithCIImage:", imp<withCIImage> } });
        t.methods({
            { "initWithCIImage:", imp<initWithCIImage> },
            { "CIImage", imp<image> },
            { "CGImageForProposedRect:context:hints:", imp<picture> },
            { "draw", imp<draw> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSCIImageRep, All)

}
