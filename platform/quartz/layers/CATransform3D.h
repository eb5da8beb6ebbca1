// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../CGGeometry.h"
#include "foundation/NSValue.h"

namespace brindle {

/// Maps a row (x, y, z, 1) to its product with the matrix; m41, m42, m43 move.
struct CATransform3D {
    CGFloat m11 = 0, m12 = 0, m13 = 0, m14 = 0;
    CGFloat m21 = 0, m22 = 0, m23 = 0, m24 = 0;
    CGFloat m31 = 0, m32 = 0, m33 = 0, m34 = 0;
    CGFloat m41 = 0, m42 = 0, m43 = 0, m44 = 0;
    friend bool operator==(const CATransform3D&, const CATransform3D&) = default;
};
template <> struct Structure<CATransform3D> {
    static constexpr const char* encoding = "{CATransform3D=dddddddddddddddd}";
};

inline constexpr CATransform3D CATransform3DIdentity { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0,
    1 };

constexpr bool CATransform3DIsIdentity(const CATransform3D& t)
{
    return t == CATransform3DIdentity;
}
constexpr bool CATransform3DEqualToTransform(const CATransform3D& a, const CATransform3D& b)
{
    return a == b;
}
BRINDLE_EXPORT CATransform3D CATransform3DMakeTranslation(CGFloat tx, CGFloat ty, CGFloat tz);
BRINDLE_EXPORT CATransform3D CATransform3DMakeScale(CGFloat sx, CGFloat sy, CGFloat sz);
/// - angle: radians around the axis (x, y, z); an axis without length turns nothing.
BRINDLE_EXPORT CATransform3D CATransform3DMakeRotation(
    CGFloat angle, CGFloat x, CGFloat y, CGFloat z);
/// These work before what is there already, as with `CGAffineTransformTranslate`.
BRINDLE_EXPORT CATransform3D CATransform3DTranslate(
    CATransform3D t, CGFloat tx, CGFloat ty, CGFloat tz);
BRINDLE_EXPORT CATransform3D CATransform3DScale(
    CATransform3D t, CGFloat sx, CGFloat sy, CGFloat sz);
BRINDLE_EXPORT CATransform3D CATransform3DRotate(
    CATransform3D t, CGFloat angle, CGFloat x, CGFloat y, CGFloat z);
/// Answers the transform that applies `first`, then `second`.
BRINDLE_EXPORT CATransform3D CATransform3DConcat(CATransform3D first, CATransform3D second);
/// Answers the inverse, or the transform itself when it has none.
BRINDLE_EXPORT CATransform3D CATransform3DInvert(CATransform3D t);
BRINDLE_EXPORT CATransform3D CATransform3DMakeAffineTransform(CGAffineTransform t);
BRINDLE_EXPORT bool CATransform3DIsAffine(CATransform3D t);
/// Answers what the transform does within the plane; depth and perspective are left out.
BRINDLE_EXPORT CGAffineTransform CATransform3DGetAffineTransform(CATransform3D t);

inline Ref<NSValue> valueWithCATransform3D(To<Class> cls, CATransform3D transform)
{
    return cls.send<"valueWithCATransform3D:", Ref<NSValue>>(transform);
}
/// Answers zeros for a value of another type.
inline CATransform3D CATransform3DValue(To<NSValue> value)
{
    return value.send<"CATransform3DValue", CATransform3D>();
}

}
