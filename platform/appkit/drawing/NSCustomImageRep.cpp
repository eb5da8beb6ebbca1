// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSCustomImageRep.h"

#include "NSGraphicsContextPrivate.h"
#include "NSImagePrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSCustomImageRep::Methods<struct All> {

    static Ref<NSCustomImageRep> initWithHandler(
        NSCustomImageRep& self, NSSize size, bool flipped, Closure<bool(NSRect)>* handler)
    {
        if (!super<NSCustomImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        ImageRepAccess::describe(self, { size, 0, 0, 0, true, false }, nullptr);
        self.handler_ = Handler(handler);
        self.flipped_ = flipped;
        return &self;
    }
    static Ref<NSCustomImageRep> initWithSelector(
        NSCustomImageRep& self, SEL selector, NSObject* delegate)
    {
        if (!super<NSCustomImageRep, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setAlpha(true);
        self.selector_ = selector;
        self.delegate_ = WeakRef<NSObject>(delegate);
        return &self;
    }
    static SEL drawSelector(NSCustomImageRep& self) { return self.selector_; }
    static Ref<NSObject> delegate(NSCustomImageRep& self) { return self.delegate_.get(); }
    static Handler drawingHandler(NSCustomImageRep& self) { return self.handler_; }

    static bool callHandler(NSCustomImageRep& self)
    {
        const NSRect all { {}, self.size() };
        const Handler handler = self.handler_;
        const Ref<CGContext> port = currentCGContext();
        if (!self.flipped_ || !port)
            return handler(all);
        CGContextTranslateCTM(port.get(), 0, all.size.height);
        CGContextScaleCTM(port.get(), 1, -1);
        const CurrentContextScope current(
            NSGraphicsContext::cls().graphicsContextWithCGContext_flipped(port.get(), true).get());
        return handler(all);
    }
    static bool draw(NSCustomImageRep& self)
    {
        if (self.handler_)
            return callHandler(self);
        const Ref<NSObject> delegate = self.delegate_.get();
        if (!delegate || !delegate->respondsToSelector(self.selector_))
            return false;
        delegate->performSelector_withObject(self.selector_, &self);
        return true;
    }

    static Ref<NSObject> copyWithZone(NSCustomImageRep& self, void* zone)
    {
        auto copy = cast<NSCustomImageRep>(
            super<NSCustomImageRep, "copyWithZone:", Ref<NSObject>>(self, zone));
        copy->handler_ = self.handler_;
        copy->flipped_ = self.flipped_;
        copy->selector_ = self.selector_;
        copy->delegate_ = self.delegate_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithSize:flipped:drawingHandler:", imp<initWithHandler> },
            { "initWithDrawSelector:delegate:", imp<initWithSelector> },
            { "drawSelector", imp<drawSelector> },
            { "delegate", imp<delegate> },
            { "drawingHandler", imp<drawingHandler> },
            { "draw", imp<draw> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSCustomImageRep, All)

}
