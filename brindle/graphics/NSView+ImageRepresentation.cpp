// SPDX-License-Identifier: Apache-2.0
#include "NSView+ImageRepresentation.h"

#include "quartz/layers/CALayer.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// Shows a view in a layer of its own while it lives, and leaves it as it was.
    class ShownInLayer {
    public:
        explicit ShownInLayer(NSView& view)
            : view_(&view)
            , hidden_(view.isHidden())
            , wantedLayer_(view.wantsLayer())
        {
            view.setHidden(false);
            view.setWantsLayer(true);
        }
        ~ShownInLayer()
        {
            view_->setWantsLayer(wantedLayer_);
            view_->setHidden(hidden_);
        }
        ShownInLayer(const ShownInLayer&) = delete;
        ShownInLayer& operator=(const ShownInLayer&) = delete;

    private:
        Ref<NSView> view_;
        bool hidden_;
        bool wantedLayer_;
    };

    struct ImageRepresentation {

        static Ref<NSImage> snapshot(NSView& self)
        {
            const ShownInLayer shown(self);
            const GraphicsStateGuard saved; // also when drawing raises
            Ref<NSImage> image = alloc<NSImage>()->initWithSize(self.bounds().size);
            image->lockFocus();
            maybe(self.layer())->renderInContext(currentCGContext().get());
            image->unlockFocus();
            return image;
        }

        static void table(Builder& t) { t.methods({ { "imageRepresentation", imp<snapshot> } }); }
    };

}
BRINDLE_EXTENSION(NSView, ImageRepresentation)

}
