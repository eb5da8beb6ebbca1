// SPDX-License-Identifier: Apache-2.0
#include "CALayer.h"

#include "CALayerPrivate.h"
#include "runtime/Table.h"

namespace brindle {

std::shared_ptr<LayerState> LayerAccess::makeState()
{
    auto state = std::make_shared<LayerState>();
    const auto black = Ref<CGColor>::adopt(CGColorCreateGenericGray(0, 1));
    state->values.borderColor = black;
    state->values.shadowColor = black;
    return state;
}

namespace {

    template <auto Field> struct FieldOf;
    template <class V, V LayerValues::*Field> struct FieldOf<Field> {
        using Value = V;
        static V& of(CALayer& layer) { return LayerAccess::values(layer).*Field; }
    };

    template <class V> struct PassedAs {
        using Type = V;
    };
    template <class T> struct PassedAs<Ref<T>> {
        using Type = T*;
    };

    template <auto Field> typename FieldOf<Field>::Value read(CALayer& self)
    {
        return FieldOf<Field>::of(self);
    }

    /// Sets a value that can be seen.
    template <auto Field, Text Key>
    void write(CALayer& self, typename PassedAs<typename FieldOf<Field>::Value>::Type value)
    {
        using Value = typename FieldOf<Field>::Value;
        LayerAccess::set(self, FieldOf<Field>::of(self), Value(value), operator""_ns<Key>());
    }

}

template <> struct CALayer::Methods<struct Values> {

    static Ref<CALayer> layer(Class& self)
    {
        return cast<CALayer>(Meta { { &self } }.alloc())->send<"init", Ref<CALayer>>();
    }
    static Ref<CALayer> initWithLayer(CALayer& self, CALayer* other)
    {
        const Ref<CALayer> fresh = self.send<"init", Ref<CALayer>>();
        if (!fresh || !other || !other->isKindOfClass(CALayer::cls()))
            return fresh;
        LayerState& state = LayerAccess::state(*fresh);
        const LayerState& from = LayerAccess::state(*other);
        state.values = from.values;
        state.timing = from.timing;
        state.delegate = from.delegate;
        state.needsDisplay = from.needsDisplay;
        state.ownContents = from.ownContents;
        if (from.others)
            state.others = cast<NSMutableDictionary>(from.others->mutableCopy());
        return fresh;
    }

    static void setBounds(CALayer& self, CGRect bounds)
    {
        LayerValues& values = LayerAccess::values(self);
        const CGRect old = values.bounds;
        if (old == bounds)
            return;
        const Ref<CALayer> alive(&self);
        LayerAccess::set(self, values.bounds, bounds, "bounds"_ns);
        if (old.size == bounds.size || LayerAccess::state(self).model)
            return;
        if (values.needsDisplayOnBoundsChange)
            self.setNeedsDisplay();
        self.resizeSublayersWithOldSize(old.size);
        self.setNeedsLayout();
    }
    static void setAffineTransform(CALayer& self, CGAffineTransform transform)
    {
        self.setTransform(CATransform3DMakeAffineTransform(transform));
    }
    static CGAffineTransform affineTransform(CALayer& self)
    {
        return CATransform3DGetAffineTransform(self.transform());
    }
    static void setOpacity(CALayer& self, float opacity)
    {
        const float bounded = opacity >= 1 ? 1 : opacity > 0 ? opacity : 0;
        LayerAccess::set(self, LayerAccess::values(self).opacity, bounded, "opacity"_ns);
    }
    static void setShadowOpacity(CALayer& self, float opacity)
    {
        const float bounded = opacity >= 1 ? 1 : opacity > 0 ? opacity : 0;
        LayerAccess::set(
            self, LayerAccess::values(self).shadowOpacity, bounded, "shadowOpacity"_ns);
    }
    static void setContents(CALayer& self, NSObject* contents)
    {
        LayerAccess::state(self).ownContents = false;
        LayerAccess::set(
            self, LayerAccess::values(self).contents, Ref<NSObject>(contents), "contents"_ns);
    }
    static Ref<NSString> copied(NSString* text)
    {
        return text ? cast<NSString>(text->copy()) : Ref<NSString>();
    }
    static void setGravity(CALayer& self, NSString* gravity)
    {
        LayerAccess::set(self, LayerAccess::values(self).contentsGravity,
            copied(gravity ? gravity : kCAGravityResize.get()), "contentsGravity"_ns);
    }
    static void setName(CALayer& self, NSString* name)
    {
        LayerAccess::values(self).name = copied(name);
    }

    static Ref<NSObject> delegate(CALayer& self) { return LayerAccess::state(self).delegate.get(); }
    static void setDelegate(CALayer& self, NSObject* delegate)
    {
        LayerAccess::state(self).delegate = delegate;
    }
    static Ref<NSDictionary> actions(CALayer& self) { return LayerAccess::state(self).actions; }
    static void setActions(CALayer& self, NSDictionary* actions)
    {
        LayerAccess::state(self).actions
            = actions ? cast<NSDictionary>(actions->copy()) : Ref<NSDictionary>();
    }

    static void table(Builder& t)
    {
        using V = LayerValues;
        t.classMethods({ { "layer", imp<layer> } });
        t.methods({
            { "initWithLayer:", imp<initWithLayer> },
            { "bounds", imp<read<&V::bounds>> },
            { "setBounds:", imp<setBounds> },
            { "position", imp<read<&V::position>> },
            { "setPosition:", imp<write<&V::position, "position">> },
            { "anchorPoint", imp<read<&V::anchorPoint>> },
            { "setAnchorPoint:", imp<write<&V::anchorPoint, "anchorPoint">> },
            { "zPosition", imp<read<&V::zPosition>> },
            { "setZPosition:", imp<write<&V::zPosition, "zPosition">> },
            { "transform", imp<read<&V::transform>> },
            { "setTransform:", imp<write<&V::transform, "transform">> },
            { "affineTransform", imp<affineTransform> },
            { "setAffineTransform:", imp<setAffineTransform> },
            { "sublayerTransform", imp<read<&V::sublayerTransform>> },
            { "setSublayerTransform:", imp<write<&V::sublayerTransform, "sublayerTransform">> },
            { "isGeometryFlipped", imp<read<&V::geometryFlipped>> },
            { "setGeometryFlipped:", imp<write<&V::geometryFlipped, "geometryFlipped">> },
            { "autoresizingMask", imp<read<&V::autoresizingMask>> },
            { "setAutoresizingMask:", imp<write<&V::autoresizingMask, "autoresizingMask">> },
            { "opacity", imp<read<&V::opacity>> },
            { "setOpacity:", imp<setOpacity> },
            { "isHidden", imp<read<&V::hidden>> },
            { "setHidden:", imp<write<&V::hidden, "hidden">> },
            { "masksToBounds", imp<read<&V::masksToBounds>> },
            { "setMasksToBounds:", imp<write<&V::masksToBounds, "masksToBounds">> },
            { "isOpaque", imp<read<&V::opaque>> },
            { "setOpaque:", imp<write<&V::opaque, "opaque">> },
            { "backgroundColor", imp<read<&V::backgroundColor>> },
            { "setBackgroundColor:", imp<write<&V::backgroundColor, "backgroundColor">> },
            { "cornerRadius", imp<read<&V::cornerRadius>> },
            { "setCornerRadius:", imp<write<&V::cornerRadius, "cornerRadius">> },
            { "borderWidth", imp<read<&V::borderWidth>> },
            { "setBorderWidth:", imp<write<&V::borderWidth, "borderWidth">> },
            { "borderColor", imp<read<&V::borderColor>> },
            { "setBorderColor:", imp<write<&V::borderColor, "borderColor">> },
            { "shadowColor", imp<read<&V::shadowColor>> },
            { "setShadowColor:", imp<write<&V::shadowColor, "shadowColor">> },
            { "shadowOpacity", imp<read<&V::shadowOpacity>> },
            { "setShadowOpacity:", imp<setShadowOpacity> },
            { "shadowOffset", imp<read<&V::shadowOffset>> },
            { "setShadowOffset:", imp<write<&V::shadowOffset, "shadowOffset">> },
            { "shadowRadius", imp<read<&V::shadowRadius>> },
            { "setShadowRadius:", imp<write<&V::shadowRadius, "shadowRadius">> },
            { "contents", imp<read<&V::contents>> },
            { "setContents:", imp<setContents> },
            { "contentsRect", imp<read<&V::contentsRect>> },
            { "setContentsRect:", imp<write<&V::contentsRect, "contentsRect">> },
            { "contentsScale", imp<read<&V::contentsScale>> },
            { "setContentsScale:", imp<write<&V::contentsScale, "contentsScale">> },
            { "contentsGravity", imp<read<&V::contentsGravity>> },
            { "setContentsGravity:", imp<setGravity> },
            { "needsDisplayOnBoundsChange", imp<read<&V::needsDisplayOnBoundsChange>> },
            { "setNeedsDisplayOnBoundsChange:",
                imp<write<&V::needsDisplayOnBoundsChange, "needsDisplayOnBoundsChange">> },
            { "name", imp<read<&V::name>> },
            { "setName:", imp<setName> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "actions", imp<actions> },
            { "setActions:", imp<setActions> },
        });
        t.properties({
            computed<CGRect>("bounds", nonatomic),
            computed<CGPoint>("position", nonatomic),
            computed<CGPoint>("anchorPoint", nonatomic),
            computed<CGFloat>("zPosition", nonatomic),
            computed<CATransform3D>("transform", nonatomic),
            computed<CATransform3D>("sublayerTransform", nonatomic),
            computed<bool>("geometryFlipped", nonatomic, getter("isGeometryFlipped")),
            computed<CAAutoresizingMask>("autoresizingMask", nonatomic),
            computed<float>("opacity", nonatomic),
            computed<bool>("hidden", nonatomic, getter("isHidden")),
            computed<bool>("masksToBounds", nonatomic),
            computed<bool>("opaque", nonatomic, getter("isOpaque")),
            computed<CGFloat>("cornerRadius", nonatomic),
            computed<CGFloat>("borderWidth", nonatomic),
            computed<float>("shadowOpacity", nonatomic),
            computed<CGSize>("shadowOffset", nonatomic),
            computed<CGFloat>("shadowRadius", nonatomic),
            computed<Ref<CGColor>>("backgroundColor", nonatomic),
            computed<Ref<CGColor>>("borderColor", nonatomic),
            computed<Ref<CGColor>>("shadowColor", nonatomic),
            computed<Ref<NSObject>>("contents", nonatomic),
            computed<CGRect>("contentsRect", nonatomic),
            computed<CGFloat>("contentsScale", nonatomic),
            computed<Ref<NSString>>("contentsGravity", nonatomic, brindle::copied),
            computed<Ref<NSString>>("name", nonatomic, brindle::copied),
        });
    }
};
BRINDLE_RECORD(CALayer, Values)

}
