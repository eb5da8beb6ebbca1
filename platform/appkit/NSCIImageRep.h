// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSImageRep.h"

namespace brindle {

class CIImage;

/// What a filter describes, as a representation. Its size is the extent's; its pixels are computed when first drawn.
class NSCIImageRep : public NSImageRep {
    BRINDLE_OBJECT(NSCIImageRep, NSImageRep)

public:
    struct Meta : NSImageRep::Meta {
        /// - Nil: for nil.
        Ref<NSCIImageRep> imageRepWithCIImage(class CIImage* image) const
        {
            return send<"imageRepWithCIImage:", Ref<NSCIImageRep>>(image);
        }
    };

    Ref<NSCIImageRep> initWithCIImage(class CIImage* image)
    {
        return send<"initWithCIImage:", Ref<NSCIImageRep>>(image);
    }
    Ref<class CIImage> CIImage() const { return send<"CIImage", Ref<class CIImage>>(); }

private:
    Ref<NSObject> image_;
    Ref<CGImage> rendered_;
};

}
