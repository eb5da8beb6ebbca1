// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "quartz/CGImage.h"

namespace brindle {

class NSData;

namespace quartz {
    struct FilterStep;
}

/// A picture as filters see it: pixels, or how they follow from another picture. Nothing is computed before a
/// `CIContext` asks. Never changes.
/// Thread: any.
class CIImage : public NSObject {
    BRINDLE_OBJECT(CIImage, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Nil: for NULL.
        Ref<CIImage> imageWithCGImage(class CGImage* picture) const
        {
            return send<"imageWithCGImage:", Ref<CIImage>>(picture);
        }
        /// Reads a picture file's bytes; nil when they cannot be read.
        Ref<CIImage> imageWithData(NSData* data) const
        {
            return send<"imageWithData:", Ref<CIImage>>(data);
        }
    };

    Ref<CIImage> initWithCGImage(class CGImage* picture)
    {
        return send<"initWithCGImage:", Ref<CIImage>>(picture);
    }
    Ref<CIImage> initWithData(NSData* data) { return send<"initWithData:", Ref<CIImage>>(data); }

    /// Answers where it has pixels: of a picture (0, 0, its width, its height), y up.
    CGRect extent() const { return send<"extent", CGRect>(); }
    Ref<CIImage> imageByCroppingToRect(CGRect rect) const
    {
        return send<"imageByCroppingToRect:", Ref<CIImage>>(rect);
    }

private:
    friend struct FilterAccess;

    Ref<class CGImage> picture_; // of a source
    Ref<CIImage> input_; // of everything else
    std::shared_ptr<const quartz::FilterStep> step_;
    CGRect extent_ {};
};

}
