// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAffineTransform.h"

#include "appkit/NSBezierPath.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/CodingTable.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <utility>

namespace brindle {

template <> struct NSAffineTransform::Methods<struct Numbers> {

    static Ref<NSAffineTransform> transform(Class& self)
    {
        return cast<NSAffineTransform>(self.send<"new", Ref<NSObject>>());
    }
    static Ref<NSAffineTransform> initWithTransform(
        NSAffineTransform& self, NSAffineTransform* transform)
    {
        const auto started = cast<NSAffineTransform>(self.send<"init", Ref<NSObject>>());
        if (started && transform)
            started->matrix_ = transform->matrix_;
        return started;
    }
    static NSAffineTransformStruct transformStruct(NSAffineTransform& self)
    {
        const CGAffineTransform& m = self.matrix_;
        return { m.a, m.b, m.c, m.d, m.tx, m.ty };
    }
    static void setTransformStruct(NSAffineTransform& self, NSAffineTransformStruct n)
    {
        self.matrix_ = { n.m11, n.m12, n.m21, n.m22, n.tX, n.tY };
    }

    static void prepend(NSAffineTransform& self, const CGAffineTransform& first)
    {
        self.matrix_ = CGAffineTransformConcat(first, self.matrix_);
    }
    static void translate(NSAffineTransform& self, CGFloat dx, CGFloat dy)
    {
        prepend(self, CGAffineTransformMakeTranslation(dx, dy));
    }
    static void scaleXBy(NSAffineTransform& self, CGFloat sx, CGFloat sy)
    {
        prepend(self, CGAffineTransformMakeScale(sx, sy));
    }
    static void scaleBy(NSAffineTransform& self, CGFloat scale) { scaleXBy(self, scale, scale); }
    static void rotateByRadians(NSAffineTransform& self, CGFloat angle)
    {
        prepend(self, CGAffineTransformMakeRotation(angle));
    }
    static void rotateByDegrees(NSAffineTransform& self, CGFloat angle)
    {
        // Whole quarters are taken as they are: the sine of pi is not quite 0.
        const double quarters = std::fmod(angle, 360) / 90;
        if (quarters != std::trunc(quarters))
            return rotateByRadians(self, angle * std::numbers::pi / 180);
        static constexpr double kSines[] = { 0, 1, 0, -1 };
        const int turn = (static_cast<int>(quarters) + 4) % 4;
        const double sine = kSines[turn];
        const double cosine = kSines[(turn + 1) % 4];
        prepend(self, { cosine, sine, -sine, cosine, 0, 0 });
    }
    static void appendTransform(NSAffineTransform& self, NSAffineTransform* other)
    {
        if (other)
            self.matrix_ = CGAffineTransformConcat(self.matrix_, other->matrix_);
    }
    static void prependTransform(NSAffineTransform& self, NSAffineTransform* other)
    {
        if (other)
            prepend(self, other->matrix_);
    }
    static void invert(NSAffineTransform& self)
    {
        self.matrix_ = CGAffineTransformInvert(self.matrix_);
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "transform", imp<transform> } });
        t.methods({
            { "initWithTransform:", imp<initWithTransform> },
            { "transformStruct", imp<transformStruct> },
            { "setTransformStruct:", imp<setTransformStruct> },
            { "translateXBy:yBy:", imp<translate> },
            { "scaleBy:", imp<scaleBy> },
            { "scaleXBy:yBy:", imp<scaleXBy> },
            { "rotateByDegrees:", imp<rotateByDegrees> },
            { "rotateByRadians:", imp<rotateByRadians> },
            { "appendTransform:", imp<appendTransform> },
            { "prependTransform:", imp<prependTransform> },
            { "invert", imp<invert> },
        });
    }
};
BRINDLE_RECORD(NSAffineTransform, Numbers)

template <> struct NSAffineTransform::Methods<struct Uses> {

    static NSPoint transformPoint(NSAffineTransform& self, NSPoint point)
    {
        return CGPointApplyAffineTransform(point, self.matrix_);
    }
    static NSSize transformSize(NSAffineTransform& self, NSSize size)
    {
        return CGSizeApplyAffineTransform(size, self.matrix_);
    }
    static Ref<NSBezierPath> transformBezierPath(NSAffineTransform& self, NSBezierPath* path)
    {
        Ref<NSBezierPath> moved = path ? cast<NSBezierPath>(path->copy()) : nullptr;
        maybe(moved)->transformUsingAffineTransform(&self);
        return moved;
    }
    static void set(NSAffineTransform& self)
    {
        const Ref<CGContext> port = currentCGContext();
        CGContextConcatCTM(port.get(), CGAffineTransformInvert(CGContextGetCTM(port.get())));
        CGContextConcatCTM(port.get(), self.matrix_);
    }
    static void concat(NSAffineTransform& self)
    {
        CGContextConcatCTM(currentCGContext().get(), self.matrix_);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "transformPoint:", imp<transformPoint> },
            { "transformSize:", imp<transformSize> },
            { "transformBezierPath:", imp<transformBezierPath> },
            { "set", imp<set> },
            { "concat", imp<concat> },
        });
    }
};
BRINDLE_RECORD(NSAffineTransform, Uses)

template <> struct NSAffineTransform::Methods<struct Values> {

    static bool isEqual(NSAffineTransform& self, NSObject* other)
    {
        return other == &self
            || (other && other->isKindOfClass(NSAffineTransform::cls())
                && self.matrix_ == static_cast<NSAffineTransform*>(other)->matrix_);
    }
    static std::uint64_t hash(NSAffineTransform& self)
    {
        const CGAffineTransform& m = self.matrix_;
        return std::hash<double>()(m.a + 3 * m.b + 5 * m.c + 7 * m.d + 11 * m.tx + 13 * m.ty);
    }
    static Ref<NSObject> copyWithZone(NSAffineTransform& self, void*)
    {
        const auto copy = cast<NSAffineTransform>(self.classObject()->send<"new", Ref<NSObject>>());
        copy->matrix_ = self.matrix_;
        return copy;
    }

    // - Shape: one number a key.
    static constexpr std::pair<const char*, CGFloat CGAffineTransform::*> kNumbers[]
        = { { "m11", &CGAffineTransform::a }, { "m12", &CGAffineTransform::b },
              { "m21", &CGAffineTransform::c }, { "m22", &CGAffineTransform::d },
              { "tX", &CGAffineTransform::tx }, { "tY", &CGAffineTransform::ty } };

    static void encode(NSAffineTransform& self, NSCoder* coder)
    {
        for (const auto& [key, number] : kNumbers)
            maybe(coder)->encodeDouble_forKey(
                self.matrix_.*number, stringFrom(std::string_view(key)).get());
    }
    static Ref<NSObject> initWithCoder(NSAffineTransform& self, NSCoder* coder)
    {
        const auto started = cast<NSAffineTransform>(self.send<"init", Ref<NSObject>>());
        for (const auto& [key, number] : kNumbers) {
            if (started && coder)
                started->matrix_.*number
                    = coder->decodeDoubleForKey(stringFrom(std::string_view(key)).get());
        }
        return started;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encode, initWithCoder>(t);
        t.methods({
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSAffineTransform, Values)

}
