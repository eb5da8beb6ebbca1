// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGradient.h"

#include "NSBezierPathPrivate.h"
#include "appkit/NSAffineTransform.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/CodingTable.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstring>

namespace brindle {

using raster::GradientStop;

Ref<NSGradient> NSGradient::initWithColorsAndLocations(std::initializer_list<Stop> stops)
{
    std::vector<NSObject*> colors;
    std::vector<CGFloat> locations;
    for (const Stop& stop : stops) {
        if (!stop.color)
            return nullptr;
        colors.push_back(stop.color);
        locations.push_back(stop.location);
    }
    const auto array = NSArray::cls().arrayWithObjects_count(colors.data(), colors.size());
    return initWithColors_atLocations_colorSpace(array.get(), locations.data(), nullptr);
}

template <> struct NSGradient::Methods<struct Making> {

    /// Adds a colour at a place; answers NO for one without components.
    static bool add(std::vector<GradientStop>& stops, const Ref<NSObject>& object, CGFloat location)
    {
        if (!object || !object->isKindOfClass(NSColor::cls()))
            return false;
        const Ref<NSColor> color
            = cast<NSColor>(object)->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
        if (!color)
            return false;
        raster::Color& c = stops.emplace_back(GradientStop { location, {} }).color;
        color->getRed_green_blue_alpha(&c.red, &c.green, &c.blue, &c.alpha);
        return true;
    }

    static Ref<NSObject> finish(NSGradient& self, std::vector<GradientStop> stops)
    {
        if (stops.empty() || !super<NSGradient, "init", Ref<NSObject>>(self))
            return nullptr;
        self.gradient_ = quartz::gradientFromStops(std::move(stops));
        return &self;
    }

    static Ref<NSObject> initWithColorsAtLocations(
        NSGradient& self, NSArray* colors, const CGFloat* locations, NSObject*)
    {
        const NSUInteger count = maybe(colors)->count();
        std::vector<GradientStop> stops;
        for (NSUInteger i = 0; i < count; ++i) {
            const double even
                = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0;
            if (!add(stops, colors->objectAtIndex(i), locations ? locations[i] : even))
                return nullptr;
        }
        return finish(self, std::move(stops));
    }
    static Ref<NSGradient> initWithColors(NSGradient& self, NSArray* colors)
    {
        return self.initWithColors_atLocations_colorSpace(colors, nullptr, nullptr);
    }
    static Ref<NSGradient> initWithTwo(NSGradient& self, NSColor* start, NSColor* end)
    {
        return self.initWithColorsAndLocations({ { start, 0 }, { end, 1 } });
    }
    static NSObject* initWithColorsAndLocations(NSGradient* self, SEL, NSColor* first, ...)
    {
        std::vector<GradientStop> stops;
        va_list list;
        va_start(list, first);
        bool usable = true;
        for (NSColor* color = first; color && usable; color = va_arg(list, NSColor*)) {
            const CGFloat location = va_arg(list, CGFloat);
            usable = add(stops, color, location);
        }
        va_end(list);
        return usable ? finish(*self, std::move(stops)).leak() : nullptr;
    }

    static Ref<NSObject> copyWithZone(NSGradient& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "initWithStartingColor:endingColor:", imp<initWithTwo> },
            { "initWithColors:", imp<initWithColors> },
            { "initWithColorsAndLocations:", variadic<initWithColorsAndLocations> },
            { "initWithColors:atLocations:colorSpace:", imp<initWithColorsAtLocations> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSGradient, Making)

// ---- questions

template <> struct NSGradient::Methods<struct Questions> {

    static const std::vector<GradientStop>& stops(const NSGradient& self)
    {
        static const std::vector<GradientStop> none;
        return self.gradient_ ? self.gradient_->stops() : none;
    }
    static Ref<NSColor> colorOf(const raster::Color& c)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            c.red, c.green, c.blue, c.alpha);
    }

    static NSInteger numberOfColorStops(NSGradient& self)
    {
        return static_cast<NSInteger>(stops(self).size());
    }
    static void getColor(NSGradient& self, Ref<NSColor>* color, CGFloat* location, NSInteger index)
    {
        const std::vector<GradientStop>& all = stops(self);
        if (index < 0 || static_cast<std::size_t>(index) >= all.size())
            raise("NSRangeException",
                "*** -[NSGradient getColor:location:atIndex:]: index " + std::to_string(index)
                    + " beyond bounds for " + std::to_string(all.size()) + " colors");
        const GradientStop& stop = all[static_cast<std::size_t>(index)];
        if (color)
            *color = colorOf(stop.color);
        if (location)
            *location = stop.offset;
    }
    static Ref<NSColor> interpolated(NSGradient& self, CGFloat location)
    {
        const std::vector<GradientStop>& all = stops(self);
        if (all.empty())
            return nullptr;
        const double place = location > 0 ? std::min(location, 1.0) : 0;
        const auto after = std::ranges::upper_bound(all, place, {}, &GradientStop::offset);
        if (after == all.begin() || after == all.end())
            return colorOf(after == all.begin() ? after->color : all.back().color);
        const GradientStop& low = after[-1];
        const double way = (place - low.offset) / (after->offset - low.offset);
        const auto mix = [way](double a, double b) { return a + (b - a) * way; };
        return colorOf(
            { mix(low.color.red, after->color.red), mix(low.color.green, after->color.green),
                mix(low.color.blue, after->color.blue), mix(low.color.alpha, after->color.alpha) });
    }

    static bool isEqual(NSGradient& self, NSObject* object)
    {
        if (!object || !object->isKindOfClass(NSGradient::cls()))
            return false;
        return stops(self) == stops(static_cast<const NSGradient&>(*object));
    }
    static NSUInteger hash(NSGradient& self) { return stops(self).size(); }

    static void table(Builder& t)
    {
        t.methods({
            { "numberOfColorStops", imp<numberOfColorStops> },
            { "getColor:location:atIndex:", imp<getColor> },
            { "interpolatedColorAtLocation:", imp<interpolated> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
        });
    }
};
BRINDLE_RECORD(NSGradient, Questions)

// ---- drawing

template <> struct NSGradient::Methods<struct Drawing> {

    static void fill(NSGradient& self, const quartz::PathData& shape, bool evenOdd, CGFloat angle)
    {
        const CGRect box = shape.box();
        if (!self.gradient_ || CGRectIsEmpty(box))
            return;
        // Turned by the class that knows whole quarters exactly, so that straight gradients are straight.
        const Ref<NSAffineTransform> turn = NSAffineTransform::cls().transform();
        turn->rotateByDegrees(angle);
        const CGPoint along = turn->transformPoint({ 1, 0 });
        const double reach
            = (std::abs(along.x) * box.size.width + std::abs(along.y) * box.size.height) / 2;
        const CGPoint middle { NSMidX(box), NSMidY(box) };
        quartz::fillWithGradient(currentCGContext().get(), shape, evenOdd, *self.gradient_,
            { middle.x - along.x * reach, middle.y - along.y * reach },
            { middle.x + along.x * reach, middle.y + along.y * reach });
    }
    static quartz::PathData pathOf(NSRect rect)
    {
        quartz::PathData path;
        path.rect(CGRectStandardize(rect), CGAffineTransformIdentity);
        return path;
    }
    static void drawInRect(NSGradient& self, NSRect rect, CGFloat angle)
    {
        fill(self, pathOf(rect), false, angle);
    }
    static void drawInPath(NSGradient& self, NSBezierPath* path, CGFloat angle)
    {
        if (path)
            fill(self, BezierPathAccess::steps(*path), path->windingRule() == NSEvenOddWindingRule,
                angle);
    }

    // ---- circles

    static void fillCircles(NSGradient& self, NSRect box, NSPoint center)
    {
        const auto bounded = [](double value) { return std::clamp(value, -1.0, 1.0); };
        const NSPoint middle { NSMidX(box), NSMidY(box) };
        const NSPoint start { middle.x + bounded(center.x) * box.size.width / 2,
            middle.y + bounded(center.y) * box.size.height / 2 };
        self.drawFromCenter_radius_toCenter_radius_options(start, 0, middle,
            std::hypot(box.size.width, box.size.height) / 2,
            NSGradientDrawsBeforeStartingLocation | NSGradientDrawsAfterEndingLocation);
    }
    static void drawCirclesInRect(NSGradient& self, NSRect rect, NSPoint center)
    {
        const NSRect box = CGRectStandardize(rect);
        if (CGRectIsEmpty(box))
            return;
        const GraphicsStateGuard saved;
        CGContextClipToRect(currentCGContext().get(), box);
        fillCircles(self, box, center);
    }
    static void drawCirclesInPath(NSGradient& self, NSBezierPath* path, NSPoint center)
    {
        if (!path || path->isEmpty())
            return;
        const GraphicsStateGuard saved;
        path->addClip();
        fillCircles(self, path->bounds(), center);
    }

    static void drawFromPoint(
        NSGradient& self, NSPoint start, NSPoint end, NSGradientDrawingOptions options)
    {
        CGContextDrawLinearGradient(currentCGContext().get(), self.gradient_.get(), start, end,
            static_cast<CGGradientDrawingOptions>(options));
    }
    static void drawFromCenter(NSGradient& self, NSPoint startCenter, CGFloat startRadius,
        NSPoint endCenter, CGFloat endRadius, NSGradientDrawingOptions options)
    {
        CGContextDrawRadialGradient(currentCGContext().get(), self.gradient_.get(), startCenter,
            startRadius, endCenter, endRadius, static_cast<CGGradientDrawingOptions>(options));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawInRect:angle:", imp<drawInRect> },
            { "drawInBezierPath:angle:", imp<drawInPath> },
            { "drawInRect:relativeCenterPosition:", imp<drawCirclesInRect> },
            { "drawInBezierPath:relativeCenterPosition:", imp<drawCirclesInPath> },
            { "drawFromPoint:toPoint:options:", imp<drawFromPoint> },
            { "drawFromCenter:radius:toCenter:radius:options:", imp<drawFromCenter> },
        });
    }
};
BRINDLE_RECORD(NSGradient, Drawing)

// ---- coding

// - Shape: "NSStops" is a row of doubles as they lie in memory: place, red, green, blue and alpha of each colour.
template <> struct NSGradient::Methods<struct Coding> {

    static constexpr std::size_t kNumbers = 5;

    static void encode(NSGradient& self, NSCoder* coder)
    {
        std::vector<double> row;
        for (const GradientStop& s : NSGradient::Methods<struct Questions>::stops(self))
            row.insert(
                row.end(), { s.offset, s.color.red, s.color.green, s.color.blue, s.color.alpha });
        coder->encodeBytes_length_forKey(row.data(), row.size() * sizeof(double), "NSStops"_ns);
    }
    static Ref<NSObject> initWithCoder(NSGradient& self, NSCoder* coder)
    {
        NSUInteger length = 0;
        const auto* const bytes = coder->decodeBytesForKey_returnedLength("NSStops"_ns, &length);
        std::vector<GradientStop> stops(length / (kNumbers * sizeof(double)));
        for (std::size_t i = 0; i < stops.size(); ++i) {
            double row[kNumbers];
            std::memcpy(row, bytes + i * sizeof row, sizeof row);
            stops[i] = { row[0], { row[1], row[2], row[3], row[4] } };
        }
        if (!stops.empty())
            self.gradient_ = quartz::gradientFromStops(std::move(stops));
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSGradient, Coding)

}
