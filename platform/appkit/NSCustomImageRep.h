// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSImageRep.h"
#include "runtime/Block.h"

namespace brindle {

/// A representation that somebody else draws, as fine as the device is: a closure, or an operation of an object.
class NSCustomImageRep : public NSImageRep {
    BRINDLE_OBJECT(NSCustomImageRep, NSImageRep)

public:
    /// Draws into the rectangle (0, 0, size) and answers whether it did.
    using Handler = Block<bool(NSRect rect)>;

    /// - flipped: y grows downward while the handler draws.
    Ref<NSCustomImageRep> initWithSize_flipped_drawingHandler(
        NSSize size, bool flipped, const Handler& handler)
    {
        return send<"initWithSize:flipped:drawingHandler:", Ref<NSCustomImageRep>>(
            size, flipped, handler.get());
    }
    /// - selector: of an operation that takes the representation. - delegate: not kept alive.
    Ref<NSCustomImageRep> initWithDrawSelector_delegate(SEL selector, NSObject* delegate)
    {
        return send<"initWithDrawSelector:delegate:", Ref<NSCustomImageRep>>(selector, delegate);
    }
    SEL drawSelector() const { return send<"drawSelector", SEL>(); }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    Handler drawingHandler() const { return send<"drawingHandler", Handler>(); }

private:
    Handler handler_;
    bool flipped_ = false;
    SEL selector_ {};
    WeakRef<NSObject> delegate_;
};

}
