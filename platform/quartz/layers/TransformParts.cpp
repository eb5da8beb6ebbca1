// SPDX-License-Identifier: Apache-2.0
#include "TransformPartsPrivate.h"

#include <cmath>
#include <numbers>
#include <string_view>

namespace brindle::quartz {

TransformParts::TransformParts(const CATransform3D& t)
    : moveX(t.m41)
    , moveY(t.m42)
    , moveZ(t.m43)
    , angle(std::atan2(t.m12, t.m11))
    , scaleX(std::hypot(t.m11, t.m12))
    , scaleZ(t.m33)
{
    const CGFloat c = std::cos(angle);
    const CGFloat s = std::sin(angle);
    slant = t.m21 * c + t.m22 * s;
    scaleY = t.m22 * c - t.m21 * s;
}

CATransform3D TransformParts::transform() const
{
    CATransform3D t = CATransform3DIdentity;
    if (angle == 0) { // exact where nothing turns
        t.m11 = scaleX;
        t.m21 = slant;
        t.m22 = scaleY;
    } else {
        const CGFloat c = std::cos(angle);
        const CGFloat s = std::sin(angle);
        t.m11 = scaleX * c;
        t.m12 = scaleX * s;
        t.m21 = slant * c - scaleY * s;
        t.m22 = slant * s + scaleY * c;
    }
    t.m33 = scaleZ;
    t.m41 = moveX;
    t.m42 = moveY;
    t.m43 = moveZ;
    return t;
}

bool TransformParts::canBe(const CATransform3D& t)
{
    CATransform3D flat = CATransform3DMakeAffineTransform(CATransform3DGetAffineTransform(t));
    flat.m33 = t.m33;
    flat.m43 = t.m43;
    return flat == t;
}

TransformParts TransformParts::mix(const TransformParts& a, const TransformParts& b, double part)
{
    const auto between = [part](CGFloat x, CGFloat y) { return x + (y - x) * part; };
    TransformParts m;
    m.moveX = between(a.moveX, b.moveX);
    m.moveY = between(a.moveY, b.moveY);
    m.moveZ = between(a.moveZ, b.moveZ);
    m.angle = a.angle + std::remainder(b.angle - a.angle, 2 * std::numbers::pi) * part;
    m.scaleX = between(a.scaleX, b.scaleX);
    m.scaleY = between(a.scaleY, b.scaleY);
    m.scaleZ = between(a.scaleZ, b.scaleZ);
    m.slant = between(a.slant, b.slant);
    return m;
}

CGFloat* TransformParts::named(const char* name)
{
    const struct {
        std::string_view name;
        CGFloat TransformParts::*part;
    } rows[] {
        { "rotation", &TransformParts::angle },
        { "rotation.z", &TransformParts::angle },
        { "scale", &TransformParts::scaleX },
        { "scale.x", &TransformParts::scaleX },
        { "scale.y", &TransformParts::scaleY },
        { "scale.z", &TransformParts::scaleZ },
        { "translation.x", &TransformParts::moveX },
        { "translation.y", &TransformParts::moveY },
        { "translation.z", &TransformParts::moveZ },
    };
    for (const auto& row : rows) {
        if (row.name == name)
            return &(this->*row.part);
    }
    return nullptr;
}

}
