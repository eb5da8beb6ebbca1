// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CAMediaTimingFunction.h"
#include "foundation/Clock.h"
#include "runtime/Block.h"

namespace brindle {

inline constexpr StringConstant<"animationDuration"> kCATransactionAnimationDuration;
inline constexpr StringConstant<"disableActions"> kCATransactionDisableActions;
inline constexpr StringConstant<"animationTimingFunction"> kCATransactionAnimationTimingFunction;
inline constexpr StringConstant<"completionBlock"> kCATransactionCompletionBlock;

/// What changes of layers have in common: how long their movements take, and who is told when all have ended.
///
/// Transactions nest; an inner one begins with the values of the outer one. Changes outside of any belong to one that
/// ends with the turn of the run loop.
/// Thread: each has its own.
class CATransaction : public NSObject {
    BRINDLE_OBJECT(CATransaction, NSObject)

public:
    struct Meta : NSObject::Meta {
        void begin() const { send<"begin">(); }
        /// Ends the innermost transaction. Without one it does nothing.
        void commit() const { send<"commit">(); }
        /// Ends the one outside of any.
        void flush() const { send<"flush">(); }
        /// Answers seconds; 0.25 at first.
        NSTimeInterval animationDuration() const
        {
            return send<"animationDuration", NSTimeInterval>();
        }
        void setAnimationDuration(NSTimeInterval seconds) const
        {
            send<"setAnimationDuration:">(seconds);
        }
        /// - Nil: nil leaves the choice to the movements; changes then move by the default curve.
        Ref<CAMediaTimingFunction> animationTimingFunction() const
        {
            return send<"animationTimingFunction", Ref<CAMediaTimingFunction>>();
        }
        void setAnimationTimingFunction(CAMediaTimingFunction* function) const
        {
            send<"setAnimationTimingFunction:">(function);
        }
        bool disableActions() const { return send<"disableActions", bool>(); }
        void setDisableActions(bool disables) const { send<"setDisableActions:">(disables); }
        Block<void()> completionBlock() const { return send<"completionBlock", Block<void()>>(); }
        /// Called once the transaction has ended and all movements that began in it are over; at once without any.
        void setCompletionBlock(const Block<void()>& block) const
        {
            send<"setCompletionBlock:">(block.get());
        }
        /// Reads and writes the four values above by name, and any other that a host keeps there.
        Ref<NSObject> valueForKey(NSString* key) const
        {
            return send<"valueForKey:", Ref<NSObject>>(key);
        }
        void setValue_forKey(NSObject* value, NSString* key) const
        {
            send<"setValue:forKey:">(value, key);
        }
    };
};

}
