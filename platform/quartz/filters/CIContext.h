// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CIImage.h"

namespace brindle {

class NSDictionary;

/// Renders the pictures that filters describe, on the processor.
/// Thread: any.
class CIContext : public NSObject {
    BRINDLE_OBJECT(CIContext, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<CIContext> context() const { return send<"context", Ref<CIContext>>(); }
        /// - options: none are known; nil is one of them.
        Ref<CIContext> contextWithOptions(NSDictionary* options) const
        {
            return send<"contextWithOptions:", Ref<CIContext>>(options);
        }
    };

    /// Computes the pixels in a rectangle, made whole; outside of the image they are transparent.
    /// - Nil: without an image, and for a rectangle that is empty or too large.
    Ref<CGImage> createCGImage_fromRect(CIImage* image, CGRect rect) const
    {
        return send<"createCGImage:fromRect:", Ref<CGImage>>(image, rect);
    }
};

}
