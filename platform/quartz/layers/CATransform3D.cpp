// SPDX-License-Identifier: Apache-2.0
#include "CATransform3D.h"

#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "runtime/Table.h"

namespace brindle {

namespace {

    using Rows = CGFloat[4][4];

    struct Matrix {
        Rows at {};

        explicit Matrix(const CATransform3D& t) { std::memcpy(at, &t, sizeof at); }
        CATransform3D transform() const
        {
            CATransform3D t;
            std::memcpy(static_cast<void*>(&t), at, sizeof at);
            return t;
        }
    };
    static_assert(sizeof(CATransform3D) == sizeof(Rows));

    /// Turns the matrix into the identity by steps on its rows, and the identity by the same steps into the inverse.
    bool invert(Matrix& from, Matrix& to)
    {
        for (int column = 0; column < 4; ++column) {
            int best = column;
            for (int row = column + 1; row < 4; ++row) {
                if (std::abs(from.at[row][column]) > std::abs(from.at[best][column]))
                    best = row;
            }
            const CGFloat pivot = from.at[best][column];
            if (!(std::abs(pivot) > 0) || !std::isfinite(pivot))
                return false;
            std::swap(from.at[best], from.at[column]);
            std::swap(to.at[best], to.at[column]);
            for (int i = 0; i < 4; ++i) {
                from.at[column][i] /= pivot;
                to.at[column][i] /= pivot;
            }
            for (int row = 0; row < 4; ++row) {
                const CGFloat factor = from.at[row][column];
                if (row == column || factor == 0)
                    continue;
                for (int i = 0; i < 4; ++i) {
                    from.at[row][i] -= factor * from.at[column][i];
                    to.at[row][i] -= factor * to.at[column][i];
                }
            }
        }
        return true;
    }

    struct TransformValues {
        static Ref<NSValue> make(Class& self, CATransform3D transform)
        {
            return NSValue::Meta { { &self } }.valueOf(transform);
        }
        static CATransform3D read(NSValue& self)
        {
            CATransform3D transform;
            if (std::string_view(self.objCType()) == encodingOf<CATransform3D>.view())
                self.getValue(&transform);
            return transform;
        }
        static void table(Builder& t)
        {
            t.classMethods({ { "valueWithCATransform3D:", imp<make> } });
            t.methods({ { "CATransform3DValue", imp<read> } });
        }
    };

}
BRINDLE_EXTENSION(NSValue, TransformValues)

CATransform3D CATransform3DMakeTranslation(CGFloat tx, CGFloat ty, CGFloat tz)
{
    CATransform3D t = CATransform3DIdentity;
    t.m41 = tx;
    t.m42 = ty;
    t.m43 = tz;
    return t;
}

CATransform3D CATransform3DMakeScale(CGFloat sx, CGFloat sy, CGFloat sz)
{
    CATransform3D t = CATransform3DIdentity;
    t.m11 = sx;
    t.m22 = sy;
    t.m33 = sz;
    return t;
}

CATransform3D CATransform3DMakeRotation(CGFloat angle, CGFloat x, CGFloat y, CGFloat z)
{
    const CGFloat length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0))
        return CATransform3DIdentity;
    x /= length;
    y /= length;
    z /= length;
    const CGFloat c = std::cos(angle);
    const CGFloat s = std::sin(angle);
    const CGFloat k = 1 - c;
    CATransform3D t = CATransform3DIdentity;
    t.m11 = x * x * k + c;
    t.m12 = x * y * k + z * s;
    t.m13 = x * z * k - y * s;
    t.m21 = x * y * k - z * s;
    t.m22 = y * y * k + c;
    t.m23 = y * z * k + x * s;
    t.m31 = x * z * k + y * s;
    t.m32 = y * z * k - x * s;
    t.m33 = z * z * k + c;
    return t;
}

CATransform3D CATransform3DTranslate(CATransform3D t, CGFloat tx, CGFloat ty, CGFloat tz)
{
    return CATransform3DConcat(CATransform3DMakeTranslation(tx, ty, tz), t);
}

CATransform3D CATransform3DScale(CATransform3D t, CGFloat sx, CGFloat sy, CGFloat sz)
{
    return CATransform3DConcat(CATransform3DMakeScale(sx, sy, sz), t);
}

CATransform3D CATransform3DRotate(CATransform3D t, CGFloat angle, CGFloat x, CGFloat y, CGFloat z)
{
    return CATransform3DConcat(CATransform3DMakeRotation(angle, x, y, z), t);
}

CATransform3D CATransform3DConcat(CATransform3D first, CATransform3D second)
{
    const Matrix a(first);
    const Matrix b(second);
    Matrix product { CATransform3D {} };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            for (int i = 0; i < 4; ++i)
                product.at[row][column] += a.at[row][i] * b.at[i][column];
        }
    }
    return product.transform();
}

CATransform3D CATransform3DInvert(CATransform3D t)
{
    Matrix from(t);
    Matrix to(CATransform3DIdentity);
    return invert(from, to) ? to.transform() : t;
}

CATransform3D CATransform3DMakeAffineTransform(CGAffineTransform m)
{
    CATransform3D t = CATransform3DIdentity;
    t.m11 = m.a;
    t.m12 = m.b;
    t.m21 = m.c;
    t.m22 = m.d;
    t.m41 = m.tx;
    t.m42 = m.ty;
    return t;
}

bool CATransform3DIsAffine(CATransform3D t)
{
    return t == CATransform3DMakeAffineTransform(CATransform3DGetAffineTransform(t));
}

CGAffineTransform CATransform3DGetAffineTransform(CATransform3D t)
{
    return { t.m11, t.m12, t.m21, t.m22, t.m41, t.m42 };
}

}
