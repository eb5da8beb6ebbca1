// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CATransform3D.h"

namespace brindle::quartz {

/// A transform of the plane taken apart: a scale and a slant, then a turn, then a move.
struct TransformParts {
    CGFloat moveX = 0;
    CGFloat moveY = 0;
    CGFloat moveZ = 0;
    CGFloat angle = 0; // radians
    CGFloat scaleX = 1;
    CGFloat scaleY = 1;
    CGFloat scaleZ = 1;
    CGFloat slant = 0;

    TransformParts() = default;
    explicit TransformParts(const CATransform3D& t);
    CATransform3D transform() const;
    /// Answers whether a transform has these parts and no others.
    static bool canBe(const CATransform3D& t);
    /// Answers what lies between, turning the shorter way.
    static TransformParts mix(const TransformParts& a, const TransformParts& b, double part);
    /// Answers the part of a name such as "scale.x", "rotation.z", "translation.y"; null for others. Names
    /// without an axis mean x and y for scales and z for turns.
    CGFloat* named(const char* name);
};

}
