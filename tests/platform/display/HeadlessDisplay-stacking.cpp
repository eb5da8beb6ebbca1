// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"

namespace brindle::display {
namespace {

    using Order = std::vector<SurfaceId>;

    struct HeadlessStacking : testing::Test {
        HeadlessDisplay display;
        std::unique_ptr<Surface> a = made(0);
        std::unique_ptr<Surface> b = made(0);
        std::unique_ptr<Surface> c = made(0);

        std::unique_ptr<Surface> made(int level)
        {
            auto surface
                = display.createSurface({ .frame = { { 0, 0 }, { 10, 10 } }, .level = level });
            surface->show();
            return surface;
        }
        Order order() const { return display.stackingOrder(); }
        Order of(const Surface& x, const Surface& y, const Surface& z) const
        {
            return { x.id(), y.id(), z.id() };
        }
    };

    TEST_F(HeadlessStacking, BeginsInTheOrderOfShowing) { EXPECT_EQ(order(), of(*a, *b, *c)); }

    TEST_F(HeadlessStacking, RaisesToTheTop)
    {
        a->raise();
        EXPECT_EQ(order(), of(*b, *c, *a));
    }

    TEST_F(HeadlessStacking, LowersToTheBottom)
    {
        c->lower();
        EXPECT_EQ(order(), of(*c, *a, *b));
    }

    TEST_F(HeadlessStacking, StacksDirectlyAboveAnother)
    {
        c->stackAbove(*a);
        EXPECT_EQ(order(), of(*a, *c, *b));
    }

    TEST_F(HeadlessStacking, StacksDirectlyBelowAnother)
    {
        c->stackBelow(*b);
        EXPECT_EQ(order(), of(*a, *c, *b));
    }

    TEST_F(HeadlessStacking, IgnoresStackingAboveItself)
    {
        b->stackAbove(*b);
        EXPECT_EQ(order(), of(*a, *b, *c));
    }

    TEST_F(HeadlessStacking, KeepsAHigherLevelAboveWhatIsRaised)
    {
        a->setLevel(24);
        b->raise();
        EXPECT_EQ(order(), of(*c, *b, *a));
    }

    TEST_F(HeadlessStacking, ShowsALowLevelSurfaceBelowTheHigherOnes)
    {
        a->setLevel(3);
        const auto late = made(0);
        EXPECT_EQ(order(), (Order { b->id(), c->id(), late->id(), a->id() }));
    }

    TEST_F(HeadlessStacking, RaisesTransientsWithTheirParent)
    {
        b->setTransientFor(a.get());
        a->raise();
        EXPECT_EQ(order(), of(*c, *a, *b));
    }

    TEST_F(HeadlessStacking, PutsANewTransientAboveItsParent)
    {
        a->setTransientFor(c.get());
        EXPECT_EQ(order(), of(*b, *c, *a));
    }

    TEST_F(HeadlessStacking, SurvivesParentsInACircle)
    {
        a->setTransientFor(b.get());
        b->setTransientFor(a.get());
        a->raise();
        EXPECT_EQ(order().size(), 3u);
    }

    TEST_F(HeadlessStacking, ForgetsAParentThatGoes)
    {
        b->setTransientFor(a.get());
        a.reset();
        b->raise();
        EXPECT_EQ(display.describe(*b).transientFor, 0u);
    }

    TEST_F(HeadlessStacking, ListsOnlyWhatIsToBeSeen)
    {
        a->hide();
        b->minimise();
        EXPECT_EQ(order(), Order { c->id() });
    }

    TEST_F(HeadlessStacking, FindsTheTopSurfaceAtAPlace)
    {
        EXPECT_EQ(display.surfaceAt({ 5, 5 }), c->id());
        EXPECT_EQ(display.surfaceAt({ 10, 5 }), 0u);
    }

    TEST_F(HeadlessStacking, LooksThroughASurfaceThatPassesInputOn)
    {
        c->setInputPassthrough(true);
        EXPECT_EQ(display.surfaceAt({ 5, 5 }), b->id());
    }

}
}
