// SPDX-License-Identifier: Apache-2.0
#include "CAMediaTimingFunction.h"

#include <algorithm>
#include <cmath>

#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // A curve from 0 to 1 with two control values between.
    double curve(double a, double b, double t)
    {
        const double u = 1 - t;
        return 3 * u * u * t * a + 3 * u * t * t * b + t * t * t;
    }
    double slope(double a, double b, double t)
    {
        const double u = 1 - t;
        return 3 * u * u * a + 6 * u * t * (b - a) + 3 * t * t * (1 - b);
    }

    /// Answers where the curve has the value x: rough steps first where it is steep enough, halving where they leave.
    double solve(double a, double b, double x)
    {
        double low = 0;
        double high = 1;
        double t = x;
        for (int i = 0; i < 60; ++i) {
            const double error = curve(a, b, t) - x;
            if (std::abs(error) < 1e-14)
                break;
            (error > 0 ? high : low) = t;
            const double rise = slope(a, b, t);
            const double next = rise > 1e-9 ? t - error / rise : low;
            t = next > low && next < high ? next : (low + high) / 2;
        }
        return t;
    }

}

double CAMediaTimingFunction::progress(const CAMediaTimingFunction* function, double part)
{
    if (!function || !(part > 0) || part >= 1)
        return std::clamp(std::isnan(part) ? 0.0 : part, 0.0, 1.0);
    const auto& f = *function;
    if (f.x1_ == f.y1_ && f.x2_ == f.y2_)
        return part;
    return curve(f.y1_, f.y2_, solve(f.x1_, f.x2_, part));
}

template <> struct CAMediaTimingFunction::Methods<struct Curve> {

    static Ref<CAMediaTimingFunction> withPoints(
        Class& self, float x1, float y1, float x2, float y2)
    {
        return cast<CAMediaTimingFunction>(Meta { { &self } }.alloc())
            ->initWithControlPoints(x1, y1, x2, y2);
    }
    static Ref<CAMediaTimingFunction> withName(Class& self, NSString* name)
    {
        const struct {
            NSString* name;
            float x1, y1, x2, y2;
        } known[] {
            { kCAMediaTimingFunctionLinear, 0, 0, 1, 1 },
            { kCAMediaTimingFunctionEaseIn, 0.42F, 0, 1, 1 },
            { kCAMediaTimingFunctionEaseOut, 0, 0, 0.58F, 1 },
            { kCAMediaTimingFunctionEaseInEaseOut, 0.42F, 0, 0.58F, 1 },
            { kCAMediaTimingFunctionDefault, 0.25F, 0.1F, 0.25F, 1 },
        };
        for (const auto& row : known) {
            if (name && row.name->isEqual(name))
                return withPoints(self, row.x1, row.y1, row.x2, row.y2);
        }
        raise("NSInvalidArgumentException",
            "+[CAMediaTimingFunction functionWithName:]: unknown timing function "
                + (name ? utf8Of(name) : "(null)"));
    }

    static double finite(float value)
    {
        return std::isfinite(value) ? static_cast<double>(value) : 0;
    }
    static Ref<CAMediaTimingFunction> initWithPoints(
        CAMediaTimingFunction& self, float x1, float y1, float x2, float y2)
    {
        if (!super<CAMediaTimingFunction, "init", Ref<NSObject>>(self))
            return nullptr;
        self.x1_ = std::clamp(finite(x1), 0.0, 1.0);
        self.y1_ = finite(y1);
        self.x2_ = std::clamp(finite(x2), 0.0, 1.0);
        self.y2_ = finite(y2);
        return &self;
    }
    static void getPoint(CAMediaTimingFunction& self, std::size_t index, float* values)
    {
        const double points[] { 0, 0, self.x1_, self.y1_, self.x2_, self.y2_, 1, 1 };
        if (index > 3 || !values)
            return;
        values[0] = static_cast<float>(points[index * 2]);
        values[1] = static_cast<float>(points[index * 2 + 1]);
    }
    static bool isEqual(CAMediaTimingFunction& self, NSObject* other)
    {
        if (!other || !other->isKindOfClass(CAMediaTimingFunction::cls()))
            return false;
        const auto& b = static_cast<CAMediaTimingFunction&>(*other);
        return self.x1_ == b.x1_ && self.y1_ == b.y1_ && self.x2_ == b.x2_ && self.y2_ == b.y2_;
    }
    static std::uint64_t hash(CAMediaTimingFunction& self)
    {
        return static_cast<std::uint64_t>(self.x1_ * 1000 + self.x2_ * 1000000);
    }
    static Ref<NSObject> copyWithZone(CAMediaTimingFunction& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "functionWithName:", imp<withName> },
            { "functionWithControlPoints::::", imp<withPoints> },
        });
        t.methods({
            { "initWithControlPoints::::", imp<initWithPoints> },
            { "getControlPointAtIndex:values:", imp<getPoint> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(CAMediaTimingFunction, Curve)

}
