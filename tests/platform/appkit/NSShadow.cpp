// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSShadow.h"

#include "foundation/NSData.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "runtime/Table.h"
#include "support/Colors.h"
#include "support/Focused.h"

namespace brindle {

class DeepShadow : public NSShadow {
    BRINDLE_OBJECT(DeepShadow, NSShadow)
};
template <> struct DeepShadow::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(DeepShadow, Nothing)

}

using namespace brindle;

namespace {

Ref<NSShadow> glow()
{
    const auto shadow = make<NSShadow>();
    shadow->setShadowColor(rgb(1, 0, 0).get());
    shadow->setShadowBlurRadius(4);
    shadow->setShadowOffset({ 3, -2 });
    return shadow;
}

Ref<NSShadow> newShadow() { return cast<NSShadow>(NSShadow::cls().send<"new", Ref<NSObject>>()); }

}

TEST(NSShadow, BeginsAsBlackAtAThird)
{
    const auto shadow = newShadow();
    EXPECT_TRUE(shadow->shadowColor()->isEqual(
        NSColor::cls().colorWithCalibratedWhite_alpha(0, 1.0 / 3).get()));
    EXPECT_EQ(shadow->shadowBlurRadius(), 0);
    EXPECT_EQ(shadow->shadowOffset(), (NSSize { 0, 0 }));
}

TEST(NSShadow, CopyIsEqualAndOnItsOwn)
{
    const auto shadow = glow();
    const auto copy = cast<NSShadow>(shadow->copy());
    EXPECT_TRUE(copy->isEqual(shadow.get()));
    copy->setShadowBlurRadius(5);
    EXPECT_EQ(shadow->shadowBlurRadius(), 4);
    EXPECT_FALSE(copy->isEqual(shadow.get()));
}

TEST(NSShadow, ACopyIsOfTheSameClass)
{
    const Ref<NSShadow> shadow = make<DeepShadow>();
    EXPECT_TRUE(shadow->copy()->isKindOfClass(DeepShadow::cls()));
}

TEST(NSShadow, ComesBackFromAnArchive)
{
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(glow().get());
    const auto back = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
        NSShadow::cls(), data.get(), nullptr);
    EXPECT_TRUE(glow()->isEqual(back.get()));
}

TEST(NSShadow, IsCastUntilTheStateIsRestored)
{
    const test::Focused picture(20, 10);
    {
        const GraphicsStateGuard saved;
        const auto shadow = glow();
        shadow->setShadowBlurRadius(0);
        shadow->set();
        CGContextFillRect(picture, CGRectMake(2, 4, 4, 4));
    }
    CGContextFillRect(picture, CGRectMake(12, 4, 4, 4));
    EXPECT_EQ(picture.at(8, 7), (test::Rgba { 255, 0, 0, 255 })); // three to the right, two down
    EXPECT_EQ(picture.at(18, 7).alpha, 0);
}

TEST(NSShadow, WithoutAColourNoneIsCast)
{
    const test::Focused picture(20, 10);
    glow()->set();
    const auto shadow = glow();
    shadow->setShadowColor(nullptr);
    shadow->set();
    CGContextFillRect(picture, CGRectMake(2, 4, 4, 4));
    EXPECT_EQ(picture.at(7, 6).alpha, 0);
}
