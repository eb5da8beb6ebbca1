// SPDX-License-Identifier: Apache-2.0
#include "CAGradientLayer.h"

#include <algorithm>
#include <cmath>

#include "../CGGradient.h"
#include "../TextDrawing.h"
#include "LayerValuesPrivate.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

std::vector<Ref<CGColor>> quartz::colorsIn(NSArray* list)
{
    std::vector<Ref<CGColor>> colors;
    for (NSObject* item : each<NSObject>(Ref<NSArray>(list))) {
        if (item->isKindOfClass(CGColor::cls()))
            colors.emplace_back(static_cast<CGColor*>(item));
        else if (item->respondsToSelector(selector<"CGColor">))
            colors.push_back(item->send<"CGColor", Ref<CGColor>>());
        else
            colors.emplace_back();
    }
    return colors;
}

std::vector<double> quartz::gradientPlaces(std::size_t colors, NSArray* locations)
{
    std::vector<double> places;
    for (NSObject* item : each<NSObject>(Ref<NSArray>(locations))) {
        if (places.size() == colors)
            break;
        const double lowest = places.empty() ? 0 : places.back();
        const bool isNumber = item->isKindOfClass(NSNumber::cls());
        const double place = isNumber ? item->send<"doubleValue", double>() : lowest;
        places.push_back(place > lowest ? std::min(place, 1.0) : lowest);
    }
    const std::size_t given = places.size();
    const double last = given > 0 ? places.back() : 0;
    const std::size_t steps = given > 0 ? colors - given : colors - 1;
    for (std::size_t i = given > 0 ? 1 : 0; places.size() < colors; ++i)
        places.push_back(steps > 0
                ? last + (1 - last) * static_cast<double>(i) / static_cast<double>(steps)
                : 0);
    return places;
}

template <> struct CAGradientLayer::Methods<struct Values> {

    static Ref<CALayer> initWithLayer(CAGradientLayer& self, CALayer* other)
    {
        const Ref<CALayer> fresh
            = super<CAGradientLayer, "initWithLayer:", Ref<CALayer>>(self, other);
        if (!fresh || !maybe(other)->isKindOfClass(CAGradientLayer::cls()))
            return fresh;
        const auto& from = static_cast<CAGradientLayer&>(*other);
        auto& to = static_cast<CAGradientLayer&>(*fresh);
        to.colors_ = from.colors_;
        to.locations_ = from.locations_;
        to.type_ = from.type_;
        to.startPoint_ = from.startPoint_;
        to.endPoint_ = from.endPoint_;
        return fresh;
    }

    static Ref<NSArray> colors(CAGradientLayer& self) { return self.colors_; }
    static Ref<NSArray> locations(CAGradientLayer& self) { return self.locations_; }
    static Ref<NSString> type(CAGradientLayer& self) { return self.type_; }
    static CGPoint startPoint(CAGradientLayer& self) { return self.startPoint_; }
    static CGPoint endPoint(CAGradientLayer& self) { return self.endPoint_; }

    template <class T> static Ref<T> copyOf(T* value)
    {
        return value ? cast<T>(value->copy()) : Ref<T>();
    }
    static void setColors(CAGradientLayer& self, NSArray* colors)
    {
        LayerAccess::set(self, self.colors_, copyOf(colors), "colors"_ns);
    }
    static void setLocations(CAGradientLayer& self, NSArray* locations)
    {
        LayerAccess::set(self, self.locations_, copyOf(locations), "locations"_ns);
    }
    static void setType(CAGradientLayer& self, NSString* type)
    {
        LayerAccess::set(self, self.type_, copyOf(type), "type"_ns);
    }
    static void setStartPoint(CAGradientLayer& self, CGPoint point)
    {
        LayerAccess::set(self, self.startPoint_, point, "startPoint"_ns);
    }
    static void setEndPoint(CAGradientLayer& self, CGPoint point)
    {
        LayerAccess::set(self, self.endPoint_, point, "endPoint"_ns);
    }

    static Ref<CGGradient> gradientOf(const CAGradientLayer& self)
    {
        const std::vector<Ref<CGColor>> found = quartz::colorsIn(self.colors_.get());
        if (found.empty())
            return nullptr;
        const std::vector<double> places
            = quartz::gradientPlaces(found.size(), self.locations_.get());
        std::vector<raster::GradientStop> stops;
        for (std::size_t i = 0; i < found.size(); ++i)
            stops.push_back({ places[i], quartz::rasterColor(found[i].get()) });
        return quartz::gradientFromStops(std::move(stops));
    }
    static CGPoint pointIn(CGRect bounds, CGPoint part)
    {
        return { bounds.origin.x + part.x * bounds.size.width,
            bounds.origin.y + part.y * bounds.size.height };
    }
    static void clip(CGContextRef context, const LayerValues& values)
    {
        const CGFloat radius = std::min(
            { values.cornerRadius, values.bounds.size.width / 2, values.bounds.size.height / 2 });
        if (!(radius > 0))
            return;
        const auto outline = Ref<CGPath>::adopt(
            CGPathCreateWithRoundedRect(values.bounds, radius, radius, nullptr));
        CGContextAddPath(context, outline.get());
        CGContextClip(context);
    }
    static void drawInContext(CAGradientLayer& self, CGContextRef context)
    {
        constexpr CGGradientDrawingOptions kBothEnds
            = kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
        const LayerValues& values = LayerAccess::values(self);
        if (const Ref<CGGradient> gradient = gradientOf(self)) {
            const CGPoint start = pointIn(values.bounds, self.startPoint_);
            const CGPoint end = pointIn(values.bounds, self.endPoint_);
            CGContextSaveGState(context);
            clip(context, values);
            if (self.type_ && self.type_->isEqual(kCAGradientLayerRadial)) {
                // A circle in the unit square of the ellipse's axes.
                CGContextConcatCTM(
                    context, { end.x - start.x, 0, 0, end.y - start.y, start.x, start.y });
                CGContextDrawRadialGradient(context, gradient.get(), {}, 0, {}, 1, kBothEnds);
            } else
                CGContextDrawLinearGradient(context, gradient.get(), start, end, kBothEnds);
            CGContextRestoreGState(context);
        }
        super<CAGradientLayer, "drawInContext:">(self, context);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithLayer:", imp<initWithLayer> },
            { "colors", imp<colors> },
            { "setColors:", imp<setColors> },
            { "locations", imp<locations> },
            { "setLocations:", imp<setLocations> },
            { "type", imp<type> },
            { "setType:", imp<setType> },
            { "startPoint", imp<startPoint> },
            { "setStartPoint:", imp<setStartPoint> },
            { "endPoint", imp<endPoint> },
            { "setEndPoint:", imp<setEndPoint> },
            { "drawInContext:", imp<drawInContext> },
        });
        t.properties({
            computed<Ref<NSArray>>("colors", nonatomic, copied),
            computed<Ref<NSArray>>("locations", nonatomic, copied),
            computed<Ref<NSString>>("type", nonatomic, copied),
            computed<CGPoint>("startPoint", nonatomic),
            computed<CGPoint>("endPoint", nonatomic),
        });
    }
};
BRINDLE_RECORD(CAGradientLayer, Values)

}
