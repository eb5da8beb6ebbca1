// SPDX-License-Identifier: Apache-2.0
#include "CALayerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

Ref<NSObject> LayerAccess::actionFor(CALayer&, NSString*) { return nullptr; }

void LayerAccess::changed(CALayer& layer, NSString* key, NSObject*)
{
    if (layer.isa_->send<"needsDisplayForKey:", bool>(key))
        layer.setNeedsDisplay();
    else
        invalidate(layer);
}

Ref<CALayer> LayerAccess::shown(CALayer& layer) { return &layer; }

void LayerAccess::dropUnseenMovements(CALayer&) { }

template <> struct CALayer::Methods<struct Movement> {

    static Ref<CALayer> presentationLayer(CALayer& self)
    {
        LayerState& state = LayerAccess::state(self);
        if (state.model)
            return &self;
        const Ref<CALayer> copy
            = cast<CALayer>(self.isa_->send<"alloc", Ref<NSObject>>())->initWithLayer(&self);
        if (copy)
            LayerAccess::state(*copy).model = &self;
        return copy;
    }
    static Ref<CALayer> modelLayer(CALayer& self)
    {
        const LayerState& state = LayerAccess::state(self);
        return state.model ? state.model : Ref<CALayer>(&self);
    }
    static bool needsDisplayForKey(Class&, NSString*) { return false; }

    static void table(Builder& t)
    {
        t.classMethods({ { "needsDisplayForKey:", imp<needsDisplayForKey> } });
        t.methods({
            { "presentationLayer", imp<presentationLayer> },
            { "modelLayer", imp<modelLayer> },
        });
    }
};
BRINDLE_RECORD(CALayer, Movement)

}
