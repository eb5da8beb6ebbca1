// SPDX-License-Identifier: Apache-2.0
#include "UsesCard.h"

#include "core/NSObject+HXAssociatedObjects.h"
#include "introspection/NSUserDefaults+ReviewRequest.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct UsesCard::Methods<struct Counting> {

    static Ref<NSUserDefaults> defaults() { return NSUserDefaults::cls().standardUserDefaults(); }

    static Ref<NSView> initWithFrame(UsesCard& self, NSRect frame)
    {
        self.setHeading("Uses"_ns);
        self.setCaption("From the eighth on, the application asks"_ns);
        self.once_ = addChip(&self, "Use once"_ns, "u"_ns, sending<"useOnce">(&self));
        self.seven_ = addChip(&self, "Seven times"_ns, "s"_ns, sending<"useSevenTimes">(&self));
        self.forget_ = addChip(&self, "Forget"_ns, "f"_ns, sending<"forget">(&self));
        associateValue_withKey(defaults(), "1234567890"_ns, JUAppStoreID);
        return super<UsesCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(UsesCard& self, NSSize size)
    {
        super<UsesCard, "setFrameSize:">(self, size);
        layOutChips(
            { self.once_.get(), self.seven_.get(), self.forget_.get() }, { 16, size.height - 44 });
    }

    static void use(UsesCard& self, int times)
    {
        for (int i = 0; i < times; ++i)
            updateAppUsesForReviewRequestWithAppID(defaults(), "1234567890"_ns);
        maybe(self.superview())->setNeedsDisplay(true);
    }
    static void useOnce(UsesCard& self) { use(self, 1); }
    static void useSevenTimes(UsesCard& self) { use(self, 7); }
    static void forget(UsesCard& self)
    {
        for (NSString* key : { "JUAppUses"_ns, "JUAppUsesResponse"_ns, "JUAppRespondedAt"_ns })
            defaults()->removeObjectForKey(key);
        maybe(self.superview())->setNeedsDisplay(true);
    }

    static void drawBody(UsesCard&, NSRect body)
    {
        constexpr double kStep = 30;
        constexpr NSInteger kShown = 40;
        const Palette& colors = palette();
        const NSInteger uses = defaults()->integerForKey("JUAppUses"_ns);
        const auto columns = std::max(1, static_cast<int>(body.size.width / kStep));
        for (NSInteger i = 1; i <= std::min(std::max<NSInteger>(uses, 8), kShown); ++i) {
            const auto row = static_cast<double>((i - 1) / columns);
            const auto column = static_cast<double>((i - 1) % columns);
            const NSRect square = NSMakeRect(
                body.origin.x + column * kStep, body.origin.y + row * kStep, kStep - 6, kStep - 6);
            const bool isUsed = i <= uses;
            fillRounded(
                square, 5, (isUsed ? i < 8 ? colors.soft : colors.accent : colors.card).get());
            strokeRounded(square, 5, colors.border.get());
            const auto number = NSString::cls().stringWithFormat("%ld"_ns, i);
            drawCentered(number.get(), square, Style::caption,
                (isUsed && i >= 8 ? colors.accentText : colors.quietText).get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "useOnce", imp<useOnce> },
            { "useSevenTimes", imp<useSevenTimes> },
            { "forget", imp<forget> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(UsesCard, Counting)

}
