// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string_view>

#include "../TextDrawing.h"
#include "AnimationPrivate.h"
#include "TransformPartsPrivate.h"
#include "foundation/NSNumber.h"

namespace brindle::quartz {

namespace {

    using Numbers = std::vector<double>;

    enum class Kind { none, number, structure, transform, color, list };

    /// Answers whether an encoding is a structure of doubles only.
    bool holdsDoubles(std::string_view encoding)
    {
        if (encoding.empty() || encoding.front() != '{')
            return false;
        bool inName = false;
        for (const char c : encoding) {
            if (c == '{')
                inName = true;
            else if (c == '=')
                inName = false;
            else if (!inName && c != 'd' && c != '}')
                return false;
        }
        return !inName;
    }

    Kind kindOf(const NSObject* value)
    {
        if (!value)
            return Kind::none;
        if (value->isKindOfClass(NSNumber::cls()))
            return std::string_view(static_cast<const NSNumber*>(value)->objCType()) == "B"
                ? Kind::none
                : Kind::number;
        if (value->isKindOfClass(NSValue::cls())) {
            const std::string_view encoding = static_cast<const NSValue*>(value)->objCType();
            if (encoding == encodingOf<CATransform3D>.view())
                return Kind::transform;
            return holdsDoubles(encoding) ? Kind::structure : Kind::none;
        }
        if (value->isKindOfClass(CGColor::cls()))
            return Kind::color;
        return value->isKindOfClass(NSArray::cls()) ? Kind::list : Kind::none;
    }

    Numbers numbersOf(const NSObject* value, Kind kind)
    {
        if (kind == Kind::number)
            return { value->send<"doubleValue", double>() };
        if (kind == Kind::color) {
            const raster::Color c = rasterColor(static_cast<const CGColor*>(value));
            return { c.red, c.green, c.blue, c.alpha };
        }
        const auto& box = *static_cast<const NSValue*>(value);
        std::size_t size = 0;
        std::size_t alignment = 0;
        encodingSizeAndAlignment(box.objCType(), &size, &alignment);
        Numbers numbers(size / sizeof(double));
        box.getValue(numbers.data());
        return numbers;
    }

    Ref<NSObject> remake(const NSObject* like, Kind kind, const Numbers& numbers)
    {
        if (kind == Kind::number)
            return NSNumber::cls().numberWithDouble(numbers[0]);
        if (kind == Kind::color)
            return Ref<CGColor>::adopt(
                CGColorCreateSRGB(numbers[0], numbers[1], numbers[2], numbers[3]));
        return NSValue::cls().valueWithBytes_objCType(
            numbers.data(), static_cast<const NSValue*>(like)->objCType());
    }

    CATransform3D transformIn(const NSObject* value)
    {
        return CATransform3DValue(const_cast<NSValue*>(static_cast<const NSValue*>(value)));
    }

    /// Turns and scales move by themselves, so that a turning square stays one.
    Ref<NSObject> mixTransforms(const NSObject* a, const NSObject* b, double part)
    {
        const CATransform3D from = transformIn(a);
        const CATransform3D to = transformIn(b);
        if (!TransformParts::canBe(from) || !TransformParts::canBe(to))
            return nullptr;
        const CATransform3D between
            = TransformParts::mix(TransformParts(from), TransformParts(to), part).transform();
        return valueWithCATransform3D(NSValue::cls(), between);
    }

    /// Works on each pair of two lists of one length; nil for others.
    template <class F> Ref<NSObject> pairwise(NSObject* a, NSObject* b, F work)
    {
        auto& first = *static_cast<NSArray*>(a);
        auto& second = *static_cast<NSArray*>(b);
        if (first.count() != second.count())
            return nullptr;
        std::vector<Ref<NSObject>> results;
        for (NSUInteger i = 0; i < first.count(); ++i)
            results.push_back(work(first.objectAtIndex(i).get(), second.objectAtIndex(i).get()));
        return makeArray(std::move(results));
    }

    template <class F> Ref<NSObject> combine(NSObject* a, NSObject* b, F work)
    {
        const Kind kind = kindOf(a);
        if (kind == Kind::none || kind == Kind::list || kindOf(b) != kind)
            return nullptr;
        Numbers first = numbersOf(a, kind);
        const Numbers second = numbersOf(b, kind);
        if (first.size() != second.size())
            return nullptr;
        for (std::size_t i = 0; i < first.size(); ++i)
            first[i] = work(first[i], second[i]);
        return remake(a, kind, first);
    }

}

Ref<NSObject> mix(NSObject* a, NSObject* b, double part)
{
    Ref<NSObject> between;
    if (kindOf(a) == Kind::list && kindOf(b) == Kind::list)
        between = pairwise(a, b, [part](NSObject* x, NSObject* y) { return mix(x, y, part); });
    else if (kindOf(a) == Kind::transform && kindOf(b) == Kind::transform)
        between = mixTransforms(a, b, part);
    if (!between)
        between = combine(a, b, [part](double x, double y) { return x + (y - x) * part; });
    return between ? between : Ref<NSObject>(part < 0.5 ? a : b);
}

Ref<NSObject> sum(NSObject* a, NSObject* b, double factor)
{
    Ref<NSObject> total;
    if (kindOf(a) == Kind::list && kindOf(b) == Kind::list)
        total = pairwise(a, b, [factor](NSObject* x, NSObject* y) { return sum(x, y, factor); });
    else if (kindOf(a) == Kind::transform && kindOf(b) == Kind::transform && factor == 1)
        total = valueWithCATransform3D(
            NSValue::cls(), CATransform3DConcat(transformIn(b), transformIn(a)));
    if (!total)
        total = combine(a, b, [factor](double x, double y) { return x + y * factor; });
    return total ? total : Ref<NSObject>(a);
}

double distance(NSObject* a, NSObject* b)
{
    const Kind kind = kindOf(a);
    if (kind == Kind::none || kind == Kind::list || kindOf(b) != kind)
        return 1;
    const Numbers first = numbersOf(a, kind);
    const Numbers second = numbersOf(b, kind);
    double squares = 0;
    for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i)
        squares += (second[i] - first[i]) * (second[i] - first[i]);
    return std::sqrt(squares);
}

}
