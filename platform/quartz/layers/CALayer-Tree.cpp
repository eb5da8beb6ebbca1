// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "CALayerPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

quartz::LayerHost* LayerAccess::hostOf(const CALayer& layer)
{
    const CALayer* top = &layer;
    while (top && !state(*top).host)
        top = state(*top).superlayer;
    return top ? state(*top).host : nullptr;
}

void LayerAccess::invalidate(CALayer& layer)
{
    if (quartz::LayerHost* const host = hostOf(layer))
        host->layersChanged();
}

void quartz::setLayerHost(CALayer& layer, LayerHost* host)
{
    LayerAccess::state(layer).host = host;
}

std::vector<Ref<CALayer>> LayerAccess::drawingOrder(const CALayer& layer)
{
    std::vector<Ref<CALayer>> order = state(layer).sublayers;
    const auto isLower = [](const Ref<CALayer>& a, const Ref<CALayer>& b) {
        return values(*a).zPosition < values(*b).zPosition;
    };
    if (!std::is_sorted(order.begin(), order.end(), isLower))
        std::stable_sort(order.begin(), order.end(), isLower);
    return order;
}

CALayer::~CALayer()
{
    if (!state_)
        return;
    for (const Ref<CALayer>& layer : state_->sublayers)
        LayerAccess::state(*layer).superlayer = nullptr;
    if (state_->mask) {
        LayerState& mask = LayerAccess::state(*state_->mask);
        mask.superlayer = nullptr;
        mask.isMask = false;
    }
}

template <> struct CALayer::Methods<struct Tree> {

    using Layers = std::vector<Ref<CALayer>>;

    static LayerState& of(const CALayer& layer) { return LayerAccess::state(layer); }

    static Ref<NSArray> arrayOf(const Layers& layers)
    {
        if (layers.empty())
            return nullptr;
        return makeArray(std::vector<Ref<NSObject>>(layers.begin(), layers.end()));
    }
    static Ref<NSArray> sublayers(CALayer& self)
    {
        const LayerState& state = of(self);
        if (!state.model)
            return arrayOf(state.sublayers);
        Layers seen;
        const Layers present = of(*state.model).sublayers;
        for (const Ref<CALayer>& layer : present)
            seen.push_back(layer->presentationLayer());
        return arrayOf(seen);
    }
    static Ref<CALayer> superlayer(CALayer& self)
    {
        const LayerState& state = of(self);
        if (!state.model)
            return state.superlayer;
        return maybe(of(*state.model).superlayer)->presentationLayer();
    }

    [[noreturn]] static void refuse(const CALayer& self, const char* why)
    {
        raise("NSInvalidArgumentException",
            std::string("*** -[") + class_getName(self.isa_) + " addSublayer:]: " + why);
    }
    static void check(const CALayer& self, const CALayer* layer)
    {
        if (!layer->isKindOfClass(CALayer::cls()))
            refuse(self, "the argument is no layer");
        for (const CALayer* outer = &self; outer; outer = of(*outer).superlayer) {
            if (outer == layer)
                refuse(self, "a layer cannot be put into itself");
        }
    }

    static std::size_t placeOf(const CALayer& self, const CALayer* layer)
    {
        const Layers& layers = of(self).sublayers;
        return static_cast<std::size_t>(
            std::find(layers.begin(), layers.end(), layer) - layers.begin());
    }
    static void unlink(CALayer& layer)
    {
        LayerState& state = of(layer);
        CALayer* const parent = std::exchange(state.superlayer, nullptr);
        if (!parent)
            return;
        LayerState& outer = of(*parent);
        if (std::exchange(state.isMask, false))
            outer.mask = nullptr;
        else
            std::erase(outer.sublayers, &layer);
        state.resizing = {};
        LayerAccess::invalidate(*parent);
    }
    /// - place: counted without the layer.
    static void insert(CALayer& self, CALayer* lent, std::size_t place)
    {
        check(self, lent);
        const Ref<CALayer> layer(lent);
        LayerAccess::dropUnseenMovements(*layer);
        check(self, lent); // a delegate may have moved things about
        unlink(*layer);
        LayerState& state = of(self);
        of(*layer).superlayer = &self;
        place = std::min(place, state.sublayers.size());
        state.sublayers.insert(state.sublayers.begin() + static_cast<std::ptrdiff_t>(place), layer);
        LayerAccess::invalidate(self);
    }
    static void addSublayer(CALayer& self, CALayer* layer)
    {
        if (layer)
            insert(self, layer, SIZE_MAX);
    }
    static void insertAt(CALayer& self, CALayer* layer, std::uint32_t index)
    {
        if (layer)
            insert(self, layer, index);
    }
    static void insertBeside(CALayer& self, CALayer* layer, CALayer* sibling, std::size_t step)
    {
        if (!layer || layer == sibling)
            return;
        check(self, layer);
        const Ref<CALayer> alive(layer);
        unlink(*layer);
        const std::size_t found = placeOf(self, sibling);
        const bool isThere = found < of(self).sublayers.size();
        insert(self, layer, isThere ? found + step : step == 0 ? 0 : SIZE_MAX);
    }
    static void insertBelow(CALayer& self, CALayer* layer, CALayer* sibling)
    {
        insertBeside(self, layer, sibling, 0);
    }
    static void insertAbove(CALayer& self, CALayer* layer, CALayer* sibling)
    {
        insertBeside(self, layer, sibling, 1);
    }
    static void replace(CALayer& self, CALayer* old, CALayer* fresh)
    {
        if (!old || old == fresh || placeOf(self, old) == of(self).sublayers.size())
            return;
        const Ref<CALayer> alive(old);
        if (fresh)
            insertBeside(self, fresh, old, 1);
        unlink(*old);
    }
    static void setSublayers(CALayer& self, NSArray* layers)
    {
        Layers wanted;
        for (CALayer* layer : each<CALayer>(Ref<NSArray>(layers))) {
            check(self, layer);
            wanted.emplace_back(layer);
        }
        const Layers present = of(self).sublayers;
        for (const Ref<CALayer>& layer : present)
            unlink(*layer);
        for (const Ref<CALayer>& layer : wanted)
            insert(self, layer.get(), SIZE_MAX);
    }
    static void remove(CALayer& self)
    {
        const Ref<CALayer> alive(&self);
        unlink(self);
    }

    static Ref<CALayer> mask(CALayer& self) { return of(self).mask; }
    static void setMask(CALayer& self, CALayer* mask)
    {
        LayerState& state = of(self);
        if (state.mask == mask)
            return;
        if (mask)
            check(self, mask);
        const Ref<CALayer> fresh(mask);
        if (const Ref<CALayer> old = state.mask)
            unlink(*old);
        if (fresh) {
            unlink(*fresh);
            of(*fresh).superlayer = &self;
            of(*fresh).isMask = true;
            state.mask = fresh;
        }
        LayerAccess::invalidate(self);
    }

    static void dealloc(CALayer& self)
    {
        if (self.state_)
            LayerAccess::endMovements(self, false);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "dealloc", imp<dealloc> },
            { "sublayers", imp<sublayers> },
            { "setSublayers:", imp<setSublayers> },
            { "superlayer", imp<superlayer> },
            { "addSublayer:", imp<addSublayer> },
            { "insertSublayer:atIndex:", imp<insertAt> },
            { "insertSublayer:below:", imp<insertBelow> },
            { "insertSublayer:above:", imp<insertAbove> },
            { "replaceSublayer:with:", imp<replace> },
            { "removeFromSuperlayer", imp<remove> },
            { "mask", imp<mask> },
            { "setMask:", imp<setMask> },
        });
        t.properties({
            computed<Ref<NSArray>>("sublayers", nonatomic, copied),
            computed<Ref<CALayer>>("superlayer", nonatomic, readonly),
            computed<Ref<CALayer>>("mask", nonatomic),
        });
    }
};
BRINDLE_RECORD(CALayer, Tree)

}
