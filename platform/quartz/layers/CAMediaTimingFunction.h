// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/StringConstant.h"

namespace brindle {

inline constexpr StringConstant<"linear"> kCAMediaTimingFunctionLinear;
inline constexpr StringConstant<"easeIn"> kCAMediaTimingFunctionEaseIn;
inline constexpr StringConstant<"easeOut"> kCAMediaTimingFunctionEaseOut;
inline constexpr StringConstant<"easeInEaseOut"> kCAMediaTimingFunctionEaseInEaseOut;
inline constexpr StringConstant<"default"> kCAMediaTimingFunctionDefault;

/// How fast a movement goes at which time: a cubic curve from (0, 0) to (1, 1), x being time. Never changes.
/// - Nil: a bare `init` makes the linear one.
/// Thread: any.
class CAMediaTimingFunction : public NSObject {
    BRINDLE_OBJECT(CAMediaTimingFunction, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// - Raises: `NSInvalidArgumentException` for a name that is none of the constants above.
        Ref<CAMediaTimingFunction> functionWithName(NSString* name) const
        {
            return send<"functionWithName:", Ref<CAMediaTimingFunction>>(name);
        }
        Ref<CAMediaTimingFunction> functionWithControlPoints(
            float x1, float y1, float x2, float y2) const
        {
            return send<"functionWithControlPoints::::", Ref<CAMediaTimingFunction>>(
                x1, y1, x2, y2);
        }
    };

    /// - x1, x2: bounded to 0 to 1.
    Ref<CAMediaTimingFunction> initWithControlPoints(float x1, float y1, float x2, float y2)
    {
        return send<"initWithControlPoints::::", Ref<CAMediaTimingFunction>>(x1, y1, x2, y2);
    }
    /// Copies x and y of a point of the curve.
    /// - index: 0 to 3; others copy nothing.
    void getControlPointAtIndex_values(std::size_t index, float* values) const
    {
        send<"getControlPointAtIndex:values:">(index, values);
    }
    /// Answers how far a movement has come at a part of its time, 0 to 1 each; the part for nil.
    BRINDLE_EXPORT static double progress(const CAMediaTimingFunction* function, double part);

private:
    double x1_ = 0;
    double y1_ = 0;
    double x2_ = 1;
    double y2_ = 1;
};

}
