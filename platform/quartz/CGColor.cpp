// SPDX-License-Identifier: Apache-2.0
#include "CGColor.h"

#include "CGPattern.h"
#include "runtime/Table.h"

#include <algorithm>
#include <span>

namespace brindle {

// ---- spaces

/// Makes the few colour spaces there are.
struct ColorSpaces {
    static CGColorSpace* shared(CGColorSpace::Kind kind)
    {
        static CGColorSpace* const spaces[] = {
            create(CGColorSpace::Kind::deviceRGB),
            create(CGColorSpace::Kind::genericRGB),
            create(CGColorSpace::Kind::standardRGB),
            create(CGColorSpace::Kind::deviceGray),
            create(CGColorSpace::Kind::genericGray),
            create(CGColorSpace::Kind::pattern),
            create(CGColorSpace::Kind::patternOfRGB),
            create(CGColorSpace::Kind::patternOfGray),
        };
        return spaces[static_cast<std::size_t>(kind)];
    }

private:
    static CGColorSpace* create(CGColorSpace::Kind kind)
    {
        Ref<CGColorSpace> space = make<CGColorSpace>();
        space->kind_ = kind;
        return space.leak(); // lives as long as the process
    }
};

template <> struct CGColorSpace::Methods<struct Basics> {

    static Ref<NSObject> copyWithZone(CGColorSpace& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
    }
};
BRINDLE_RECORD(CGColorSpace, Basics)

CGColorSpaceRef CGColorSpaceCreateDeviceRGB()
{
    return CGColorSpaceRetain(ColorSpaces::shared(CGColorSpace::Kind::deviceRGB));
}

CGColorSpaceRef CGColorSpaceCreateDeviceGray()
{
    return CGColorSpaceRetain(ColorSpaces::shared(CGColorSpace::Kind::deviceGray));
}

CGColorSpaceRef CGColorSpaceCreateWithName(NSString* name)
{
    using enum CGColorSpace::Kind;
    if (!name)
        return nullptr;
    if (kCGColorSpaceGenericRGB->isEqual(name))
        return CGColorSpaceRetain(ColorSpaces::shared(genericRGB));
    if (kCGColorSpaceSRGB->isEqual(name))
        return CGColorSpaceRetain(ColorSpaces::shared(standardRGB));
    if (kCGColorSpaceGenericGray->isEqual(name))
        return CGColorSpaceRetain(ColorSpaces::shared(genericGray));
    return nullptr;
}

Ref<NSString> CGColorSpaceCopyName(CGColorSpaceRef space)
{
    if (!space)
        return nullptr;
    switch (space->kind()) {
    case CGColorSpace::Kind::genericRGB:
        return kCGColorSpaceGenericRGB.get();
    case CGColorSpace::Kind::standardRGB:
        return kCGColorSpaceSRGB.get();
    case CGColorSpace::Kind::genericGray:
        return kCGColorSpaceGenericGray.get();
    default:
        return nullptr;
    }
}

CGColorSpaceRef CGColorSpaceCreatePattern(CGColorSpaceRef base)
{
    using enum CGColorSpace::Kind;
    const CGColorSpaceModel model = CGColorSpaceGetModel(base);
    if (model == kCGColorSpaceModelPattern)
        return nullptr;
    return CGColorSpaceRetain(ColorSpaces::shared(!base ? pattern
            : model == kCGColorSpaceModelRGB            ? patternOfRGB
                                                        : patternOfGray));
}

CGColorSpaceModel CGColorSpaceGetModel(CGColorSpaceRef space)
{
    using enum CGColorSpace::Kind;
    if (!space)
        return kCGColorSpaceModelUnknown;
    switch (space->kind()) {
    case deviceRGB:
    case genericRGB:
    case standardRGB:
        return kCGColorSpaceModelRGB;
    case deviceGray:
    case genericGray:
        return kCGColorSpaceModelMonochrome;
    default:
        return kCGColorSpaceModelPattern;
    }
}

std::size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space)
{
    static constexpr std::size_t kNumbers[] = { 3, 3, 3, 1, 1, 0, 3, 1 }; // by kind
    return space ? kNumbers[static_cast<std::size_t>(space->kind())] : 0;
}

CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space)
{
    if (space)
        retain(space);
    return space;
}

void CGColorSpaceRelease(CGColorSpaceRef space)
{
    if (space)
        release(space);
}

// ---- colours

/// Fills colours in.
struct Colors {
    static CGColorRef create(CGColorSpaceRef space, const CGFloat* components)
    {
        Ref<CGColor> color = make<CGColor>();
        color->space_ = space;
        color->count_ = CGColorSpaceGetNumberOfComponents(space) + 1;
        std::copy_n(components, color->count_, color->components_);
        return color.leak();
    }
    static void setPattern(CGColor& color, CGPattern* pattern) { color.pattern_ = pattern; }
};

template <> struct CGColor::Methods<struct Values> {

    static bool isEqual(CGColor& self, NSObject* other)
    {
        return other && other->isKindOfClass(CGColor::cls())
            && CGColorEqualToColor(&self, static_cast<CGColor*>(other));
    }

    static std::uint64_t hash(CGColor& self)
    {
        std::uint64_t sum = self.count_;
        for (const CGFloat part : std::span(self.components_, self.count_))
            sum = sum * 31 + static_cast<std::uint64_t>(part > 0 ? std::min(part, 1.0) * 255 : 0);
        return sum;
    }

    static Ref<NSObject> copyWithZone(CGColor& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(CGColor, Values)

CGPatternRef CGColor::pattern() const { return static_cast<CGPattern*>(pattern_.get()); }

CGColorRef CGColorCreate(CGColorSpaceRef space, const CGFloat* components)
{
    const bool usable
        = space && components && CGColorSpaceGetModel(space) != kCGColorSpaceModelPattern;
    return usable ? Colors::create(space, components) : nullptr;
}

CGColorRef CGColorCreateWithPattern(
    CGColorSpaceRef space, CGPatternRef pattern, const CGFloat* components)
{
    if (!pattern || !components || CGColorSpaceGetModel(space) != kCGColorSpaceModelPattern)
        return nullptr;
    CGColorRef color = Colors::create(space, components);
    Colors::setPattern(*color, pattern);
    return color;
}

CGPatternRef CGColorGetPattern(CGColorRef color) { return color ? color->pattern() : nullptr; }

CGColorRef CGColorCreateGenericGray(CGFloat gray, CGFloat alpha)
{
    const CGFloat components[] { gray, alpha };
    return Colors::create(ColorSpaces::shared(CGColorSpace::Kind::genericGray), components);
}

CGColorRef CGColorCreateGenericRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    const CGFloat components[] { red, green, blue, alpha };
    return Colors::create(ColorSpaces::shared(CGColorSpace::Kind::genericRGB), components);
}

CGColorRef CGColorCreateSRGB(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    const CGFloat components[] { red, green, blue, alpha };
    return Colors::create(ColorSpaces::shared(CGColorSpace::Kind::standardRGB), components);
}

CGColorRef CGColorCreateCopy(CGColorRef color) { return CGColorRetain(color); }

CGColorRef CGColorCreateCopyWithAlpha(CGColorRef color, CGFloat alpha)
{
    if (!color || color->componentCount() == 0)
        return nullptr;
    CGFloat components[4] {};
    std::copy_n(color->components(), color->componentCount(), components);
    components[color->componentCount() - 1] = alpha;
    CGColorRef copy = Colors::create(color->space(), components);
    Colors::setPattern(*copy, color->pattern());
    return copy;
}

const CGFloat* CGColorGetComponents(CGColorRef color)
{
    return color ? color->components() : nullptr;
}

std::size_t CGColorGetNumberOfComponents(CGColorRef color)
{
    return color ? color->componentCount() : 0;
}

CGFloat CGColorGetAlpha(CGColorRef color) { return color ? color->alpha() : 0; }

CGColorSpaceRef CGColorGetColorSpace(CGColorRef color) { return color ? color->space() : nullptr; }

bool CGColorEqualToColor(CGColorRef a, CGColorRef b)
{
    if (a == b)
        return true;
    return a && b && a->space() == b->space() && a->pattern() == b->pattern()
        && std::equal(a->components(), a->components() + a->componentCount(), b->components());
}

CGColorRef CGColorRetain(CGColorRef color)
{
    if (color)
        retain(color);
    return color;
}

void CGColorRelease(CGColorRef color)
{
    if (color)
        release(color);
}

}
