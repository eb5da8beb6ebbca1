// SPDX-License-Identifier: Apache-2.0
#include "SettingsCard.h"

#include "Layers.h"
#include "introspection/NSUserDefaults+DefaultsFromSettingsBundle.h"
#include "kit/Figure.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct SettingsCard::Methods<struct Registering> {

    static Ref<NSView> initWithFrame(SettingsCard& self, NSRect frame)
    {
        self.setHeading("Settings bundle"_ns);
        self.setCaption("Values that the application ships"_ns);
        self.chip_ = addChip(&self, "Register"_ns, "r"_ns, sending<"registerValues">(&self));
        return super<SettingsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void setFrameSize(SettingsCard& self, NSSize size)
    {
        super<SettingsCard, "setFrameSize:">(self, size);
        layOutChips({ self.chip_.get() }, { 16, size.height - 44 });
    }

    static void registerValues(SettingsCard& self)
    {
        registerDefaultsFromSettingsBundle(NSUserDefaults::cls().standardUserDefaults());
        maybe(self.superview())->send<"showValues">();
    }

    static void drawBody(SettingsCard&, NSRect body)
    {
        NSUInteger count = 0;
        for (const SampleKey& sample : sampleKeys())
            count += valueIn(Layer::registered, sample.key) ? 1 : 0;
        const auto figure = count == 0 ? Ref<NSString>("Not registered"_ns)
                                       : NSString::cls().stringWithFormat("%lu values"_ns, count);
        drawFigure(figure.get(), "the text “YES” becomes a boolean"_ns, body);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "registerValues", imp<registerValues> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(SettingsCard, Registering)

}
