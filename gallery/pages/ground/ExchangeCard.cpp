// SPDX-License-Identifier: Apache-2.0
#include "ExchangeCard.h"

#include "core/MethodPatching.h"
#include "foundation/NSString.h"
#include "kit/Figure.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

/// Knows two texts.
class GalleryGreeter : public NSObject {
    BRINDLE_OBJECT(GalleryGreeter, NSObject)

public:
    Ref<NSString> greeting() const { return send<"greeting", Ref<NSString>>(); }
};

template <> struct GalleryGreeter::Methods<struct Texts> {
    static Ref<NSString> greeting(GalleryGreeter&) { return "Good morning"_ns; }
    static Ref<NSString> farewell(GalleryGreeter&) { return "Good night"_ns; }
    static void table(Builder& t)
    {
        t.methods({ { "greeting", imp<greeting> }, { "farewell", imp<farewell> } });
    }
};
BRINDLE_RECORD(GalleryGreeter, Texts)

template <> struct ExchangeCard::Methods<struct Exchanging> {

    static Ref<NSView> initWithFrame(ExchangeCard& self, NSRect frame)
    {
        self.setHeading("Exchanged method"_ns);
        self.setCaption("XUISwizzleMethod"_ns);
        self.greeter_ = make<GalleryGreeter>();
        self.chip_ = addChip(&self, "Exchange"_ns, "x"_ns, sending<"exchange">(&self));
        return super<ExchangeCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(ExchangeCard& self, NSSize size)
    {
        super<ExchangeCard, "setFrameSize:">(self, size);
        layOutChips({ self.chip_.get() }, { 16, size.height - 44 });
    }

    static void exchange(ExchangeCard& self)
    {
        XUISwizzleMethod(GalleryGreeter::cls(), '-', selector<"greeting">, selector<"farewell">);
        ++self.exchanges_;
        self.setNeedsDisplay(true);
    }

    static void drawBody(ExchangeCard& self, NSRect body)
    {
        const auto says = cast<GalleryGreeter>(self.greeter_)->greeting();
        const auto note = self.exchanges_ == 0
            ? Ref<NSString>("what -greeting answers now"_ns)
            : NSString::cls().stringWithFormat(
                self.exchanges_ == 1 ? "exchanged once"_ns : "exchanged %ld times"_ns,
                self.exchanges_);
        drawFigure(says.get(), note.get(), body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "exchange", imp<exchange> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(ExchangeCard, Exchanging)

}
