// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSView+ToolTips.h"
#include "appkit/NSWorkspace.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Answers the texts of tips.
class TipOwner : public NSObject {
    BRINDLE_OBJECT(TipOwner, NSObject)

public:
    int asked_ = 0;
    NSToolTipTag tag_ = 0;
    NSPoint point_ {};
    void* data_ = nullptr;
};
template <> struct TipOwner::Methods<struct Tips> {
    static Ref<NSString> text(TipOwner& self, NSView*, NSToolTipTag tag, NSPoint point, void* data)
    {
        ++self.asked_;
        self.tag_ = tag;
        self.point_ = point;
        self.data_ = data;
        return "A part"_ns;
    }
    static void table(Builder& t)
    {
        t.methods({ { "view:stringForToolTip:point:userData:", imp<text> } });
    }
};
BRINDLE_RECORD(TipOwner, Tips)

namespace {

    struct ToolTipTest : testing::Test {
        HeadlessScreen screen { 400, 300 };
        Ref<NSView> view = screen.add<NSView>(NSMakeRect(100, 100, 100, 50));

        bool isShown() { return screen.display().stackingOrder().size() == 2; }
        void rest() { screen.advance(1); }
    };

    TEST_F(ToolTipTest, ATipComesBesideAPointerThatRests)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        EXPECT_FALSE(isShown());
        rest();
        EXPECT_TRUE(isShown());
    }
    TEST_F(ToolTipTest, AMovingPointerGetsNoTip)
    {
        view->setToolTip("What it is"_ns);
        for (int i = 0; i < 10; ++i) {
            screen.pointer().moveTo({ 120.0 + i, 120 });
            screen.advance(0.3);
        }
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATipGoesWithThePointer)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        screen.pointer().moveTo({ 130, 120 });
        EXPECT_TRUE(isShown()) << "still over the view";
        screen.pointer().moveTo({ 10, 10 });
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATipThatShowsTakesTheColoursOfAnotherAppearance)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        const auto light = screen.display().snapshot().words;
        appkit::setAppearance(appkit::Appearance::dark);
        screen.process();
        const auto changed = screen.display().snapshot().words;
        screen.pointer().moveTo({ 10, 10 });
        screen.pointer().moveTo({ 120, 120 });
        rest();
        const auto made = screen.display().snapshot().words;
        appkit::followDesktopAppearance();
        EXPECT_EQ(changed, made);
        EXPECT_NE(changed, light);
    }
    TEST_F(ToolTipTest, ATipGoesWithAPress)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        screen.pointer().click({ 120, 120 });
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATipGoesAfterAWhile)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        screen.advance(11);
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATipThatIsTakenAwayGoesAtOnce)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        view->setToolTip(nullptr);
        screen.process();
        EXPECT_FALSE(isShown());
        rest();
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, AViewInsideHasTheTipOfTheOneAroundIt)
    {
        view->setToolTip("What it is"_ns);
        view->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 50, 50)).get());
        screen.pointer().moveTo({ 120, 120 });
        rest();
        EXPECT_TRUE(isShown());
    }
    TEST_F(ToolTipTest, AnEmptyTipIsNone)
    {
        view->setToolTip(""_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATipIsNobodysWindow)
    {
        view->setToolTip("What it is"_ns);
        const NSApplication& app = screen.application();
        const NSUInteger listed = app.windows()->count();
        const Ref<NSWindow> key = app.keyWindow();
        screen.pointer().moveTo({ 120, 120 });
        rest();
        ASSERT_TRUE(isShown());
        EXPECT_EQ(app.windows()->count(), listed);
        EXPECT_EQ(app.orderedWindows()->count(), 1U);
        EXPECT_EQ(app.keyWindow(), key);
    }
    TEST_F(ToolTipTest, ATipLeavesThePointerToOthers)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        ASSERT_TRUE(isShown());
        EXPECT_EQ(screen.display().grabbingSurface(), 0U);
    }
    TEST_F(ToolTipTest, ATipStaysOnTheScreen)
    {
        view->setFrame(NSMakeRect(380, 0, 20, 20));
        view->setToolTip("A tip that is much longer than the way to the edge"_ns);
        screen.pointer().moveTo({ 395, 5 });
        rest();
        ASSERT_TRUE(isShown());
        // It shows above the pointer, where the screen would be plain otherwise.
        const display::Snapshot picture = screen.pixels();
        const std::uint32_t ground = picture.at(2, 2);
        EXPECT_NE(picture.at(399, 300 - 20), ground);
    }

    // ---- parts of a view

    TEST_F(ToolTipTest, APartAsksItsOwner)
    {
        const Ref<TipOwner> owner = make<TipOwner>();
        const NSToolTipTag tag
            = addToolTipRect_owner_userData(view, NSMakeRect(0, 0, 10, 10), owner.get(), this);
        EXPECT_NE(tag, 0);
        screen.pointer().moveTo({ 150, 120 });
        rest();
        EXPECT_FALSE(isShown());
        screen.pointer().moveTo({ 105, 103 });
        rest();
        EXPECT_TRUE(isShown());
        EXPECT_EQ(owner->asked_, 1);
        EXPECT_EQ(owner->tag_, tag);
        EXPECT_EQ(owner->point_, (NSPoint { 5, 3 }));
        EXPECT_EQ(owner->data_, this);
    }
    TEST_F(ToolTipTest, APartWhoseOwnerHasGoneHasNoTip)
    {
        addToolTipRect_owner_userData(
            view, NSMakeRect(0, 0, 10, 10), make<TipOwner>().get(), nullptr);
        screen.pointer().moveTo({ 105, 103 });
        rest();
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, ATextCanBeTheOwner)
    {
        addToolTipRect_owner_userData(view, NSMakeRect(0, 0, 10, 10), "Text"_ns, nullptr);
        screen.pointer().moveTo({ 105, 103 });
        rest();
        EXPECT_TRUE(isShown());
    }
    TEST_F(ToolTipTest, APartThatIsRemovedHasNoTip)
    {
        const NSToolTipTag tag
            = addToolTipRect_owner_userData(view, NSMakeRect(0, 0, 10, 10), "Text"_ns, nullptr);
        removeToolTip(view, tag);
        removeToolTip(view, 12345);
        screen.pointer().moveTo({ 105, 103 });
        rest();
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, AllTipsCanBeRemoved)
    {
        view->setToolTip("What it is"_ns);
        addToolTipRect_owner_userData(view, NSMakeRect(0, 0, 10, 10), "Text"_ns, nullptr);
        removeAllToolTips(view);
        EXPECT_EQ(view->toolTip(), nullptr);
        screen.pointer().moveTo({ 105, 103 });
        rest();
        EXPECT_FALSE(isShown());
    }
    TEST_F(ToolTipTest, AViewThatGoesWithItsTipShownLeavesNothingBehind)
    {
        view->setToolTip("What it is"_ns);
        screen.pointer().moveTo({ 120, 120 });
        rest();
        view->removeFromSuperview();
        view = nullptr;
        screen.pointer().moveTo({ 121, 120 });
        EXPECT_FALSE(isShown());
    }

}
}
