// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "appkit/NSTrackingArea.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    std::string& hooks()
    {
        static std::string text;
        return text;
    }
    void note(const std::string& line) { hooks() += (hooks().empty() ? "" : ", ") + line; }

}

/// Writes down which hooks it is sent.
class HookView : public NSView {
    BRINDLE_OBJECT(HookView, NSView)

public:
    bool flips_ = false;
};

template <> struct HookView::Methods<struct Hooks> {
    static void willWindow(HookView&, NSWindow* w) { note(w ? "willWindow" : "willWindow nil"); }
    static void didWindow(HookView&) { note("didWindow"); }
    static void willSuper(HookView&, NSView* v) { note(v ? "willSuper" : "willSuper nil"); }
    static void didSuper(HookView&) { note("didSuper"); }
    static void didAdd(HookView&, NSView*) { note("didAdd"); }
    static void setFrameSize(HookView& self, NSSize size)
    {
        note("size");
        super<HookView, "setFrameSize:">(self, size);
    }
    static void setFrameOrigin(HookView& self, NSPoint origin)
    {
        note("origin");
        super<HookView, "setFrameOrigin:">(self, origin);
    }
    static bool isFlipped(HookView& self) { return self.flips_; }
    static void table(Builder& t)
    {
        t.methods({
            { "viewWillMoveToWindow:", imp<willWindow> },
            { "viewDidMoveToWindow", imp<didWindow> },
            { "viewWillMoveToSuperview:", imp<willSuper> },
            { "viewDidMoveToSuperview", imp<didSuper> },
            { "didAddSubview:", imp<didAdd> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setFrameOrigin:", imp<setFrameOrigin> },
            { "isFlipped", imp<isFlipped> },
        });
    }
};
BRINDLE_RECORD(HookView, Hooks)

namespace {

    Ref<NSView> plain(NSRect frame) { return alloc<NSView>()->initWithFrame(frame); }
    Ref<HookView> hooked(NSRect frame = {})
    {
        Ref<HookView> view = cast<HookView>(alloc<HookView>()->initWithFrame(frame));
        hooks().clear();
        return view;
    }
    Ref<NSWindow> windowAround(NSRect content)
    {
        return alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            content, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
    }

    int countPosts(NSString* name, NSView* view, const std::function<void()>& act)
    {
        int count = 0;
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
            name, view, nullptr, [&count](NSNotification*) { ++count; });
        act();
        center->removeObserver(token.get());
        return count;
    }

}

TEST(NSView, InitEqualsInitWithTheZeroFrame) { EXPECT_EQ(make<NSView>()->frame(), NSRect {}); }

TEST(NSView, AddingToAWindowSendsTheHooksInTheirOrder)
{
    const Ref<NSWindow> window = windowAround(NSMakeRect(0, 0, 100, 100));
    const Ref<HookView> view = hooked();
    window->contentView()->addSubview(view.get());
    EXPECT_EQ(hooks(), "willWindow, willSuper, didWindow, didSuper");
}

TEST(NSView, RemovingFromAWindowSendsTheHooksInTheirOrder)
{
    const Ref<NSWindow> window = windowAround(NSMakeRect(0, 0, 100, 100));
    const Ref<HookView> view = hooked();
    window->contentView()->addSubview(view.get());
    hooks().clear();
    view->removeFromSuperview();
    EXPECT_EQ(hooks(), "willWindow nil, willSuper nil, didWindow, didSuper");
}

TEST(NSView, ATreeThatComesIntoAWindowTellsTheViewsInIt)
{
    const Ref<NSView> box = plain(NSMakeRect(0, 0, 10, 10));
    const Ref<HookView> view = hooked();
    box->addSubview(view.get());
    EXPECT_EQ(hooks(), "willSuper, didSuper");
    hooks().clear();
    const Ref<NSWindow> window = windowAround(NSMakeRect(0, 0, 100, 100));
    window->contentView()->addSubview(box.get());
    EXPECT_EQ(hooks(), "willWindow, didWindow");
}

TEST(NSView, AddingTellsTheParentLast)
{
    const Ref<HookView> parent = hooked();
    parent->addSubview(hooked().get());
    EXPECT_EQ(hooks(), "willSuper, didSuper, didAdd");
}

TEST(NSView, AddingAgainIsOneMoveWithoutWindowHooks)
{
    const Ref<NSWindow> window = windowAround(NSMakeRect(0, 0, 100, 100));
    const Ref<HookView> view = hooked();
    const Ref<NSView> other = plain({});
    window->contentView()->addSubview(view.get());
    window->contentView()->addSubview(other.get());
    hooks().clear();
    window->contentView()->addSubview(view.get());
    EXPECT_EQ(hooks(), "willSuper, didSuper");
    EXPECT_EQ(window->contentView()->subviews()->lastObject(), view.get());
}

TEST(NSView, AViewCannotBePutIntoItself)
{
    const Ref<NSView> outer = plain({});
    const Ref<NSView> inner = plain({});
    outer->addSubview(inner.get());
    EXPECT_THROW(inner->addSubview(outer.get()), Exception);
}

TEST(NSView, PositionsCountFromTheOtherView)
{
    const Ref<NSView> parent = plain({});
    const Ref<NSView> a = plain({});
    const Ref<NSView> b = plain({});
    const Ref<NSView> c = plain({});
    parent->addSubview(a.get());
    parent->addSubview(b.get());
    parent->addSubview_positioned_relativeTo(c.get(), NSWindowBelow, b.get());
    EXPECT_EQ(parent->subviews()->indexOfObject(c.get()), 1u);
}

TEST(NSView, SetFrameGoesThroughOriginAndSizeAndPostsOnce)
{
    const Ref<HookView> view = hooked(NSMakeRect(0, 0, 10, 10));
    const int posts = countPosts(NSViewFrameDidChangeNotification, view.get(),
        [&] { view->setFrame(NSMakeRect(1, 2, 3, 4)); });
    EXPECT_EQ(hooks(), "origin, size");
    EXPECT_EQ(posts, 1);
}

TEST(NSView, SettingTheSameFramePostsNothing)
{
    const Ref<NSView> view = plain(NSMakeRect(0, 0, 10, 10));
    EXPECT_EQ(countPosts(NSViewFrameDidChangeNotification, view.get(),
                  [&] { view->setFrame(NSMakeRect(0, 0, 10, 10)); }),
        0);
}

TEST(NSView, FrameSettersPostNoBoundsChange)
{
    const Ref<NSView> view = plain(NSMakeRect(0, 0, 10, 10));
    EXPECT_EQ(countPosts(NSViewBoundsDidChangeNotification, view.get(),
                  [&] { view->setFrame(NSMakeRect(0, 0, 20, 20)); }),
        0);
    EXPECT_EQ(view->bounds(), NSMakeRect(0, 0, 20, 20));
}

TEST(NSView, ABoundsOriginPostsOneBoundsChange)
{
    const Ref<NSView> view = plain(NSMakeRect(0, 0, 10, 10));
    EXPECT_EQ(countPosts(NSViewBoundsDidChangeNotification, view.get(),
                  [&] {
                      view->setBoundsOrigin({ 0, 5 });
                  }),
        1);
}

TEST(NSView, ConversionHonoursFlippingAndBoundsOrigin)
{
    const Ref<NSView> parent = plain(NSMakeRect(0, 0, 100, 100));
    const Ref<HookView> child = hooked(NSMakeRect(10, 20, 50, 40));
    child->flips_ = true;
    child->setBoundsOrigin({ 0, 5 });
    parent->addSubview(child.get());
    EXPECT_EQ(parent->convertPoint_fromView({ 1, 5 }, child.get()), NSMakePoint(11, 60));
    EXPECT_EQ(parent->convertPoint_toView({ 11, 60 }, child.get()), NSMakePoint(1, 5));
}

TEST(NSView, AScaledBoundsScalesConversionsAndFollowsTheFrame)
{
    const Ref<NSView> view = plain(NSMakeRect(0, 0, 100, 50));
    view->setBoundsSize({ 50, 25 });
    EXPECT_EQ(view->convertPoint_toView({ 10, 10 }, nullptr), NSMakePoint(20, 20));
    view->setFrameSize({ 200, 100 });
    EXPECT_EQ(view->bounds().size, NSMakeSize(100, 50));
}

TEST(NSView, AutoresizingSharesTheDifferenceEvenly)
{
    const Ref<NSView> parent = plain(NSMakeRect(0, 0, 100, 100));
    const Ref<NSView> child = plain(NSMakeRect(10, 10, 20, 20));
    child->setAutoresizingMask(NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin);
    parent->addSubview(child.get());
    parent->setFrameSize({ 130, 100 });
    EXPECT_EQ(child->frame(), NSMakeRect(20, 10, 30, 20));
}

TEST(NSView, ManyResizesDoNotDrift)
{
    const Ref<NSView> parent = plain(NSMakeRect(0, 0, 100, 100));
    const Ref<NSView> child = plain(NSMakeRect(10.1, 10, 20.3, 20));
    child->setAutoresizingMask(NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin);
    parent->addSubview(child.get());
    for (int i = 0; i < 1000; ++i)
        parent->setFrameSize({ 100.0 + (i % 37) * 0.7, 100 });
    parent->setFrameSize({ 100, 100 });
    EXPECT_EQ(child->frame(), NSMakeRect(10.1, 10, 20.3, 20));
}

TEST(NSView, TheBottomMarginBitSticksToTheTop)
{
    const Ref<NSView> parent = plain(NSMakeRect(0, 0, 100, 100));
    const Ref<NSView> child = plain(NSMakeRect(0, 80, 100, 20));
    child->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
    parent->addSubview(child.get());
    parent->setFrameSize({ 200, 150 });
    EXPECT_EQ(child->frame(), NSMakeRect(0, 130, 200, 20));
}

TEST(NSView, HitTestFindsTheFrontMostAndSkipsHiddenViews)
{
    const Ref<NSView> parent = plain(NSMakeRect(0, 0, 100, 100));
    const Ref<NSView> back = plain(NSMakeRect(0, 0, 50, 50));
    const Ref<NSView> front = plain(NSMakeRect(0, 0, 50, 50));
    parent->addSubview(back.get());
    parent->addSubview(front.get());
    EXPECT_EQ(parent->hitTest({ 10, 10 }), front.get());
    front->setHidden(true);
    EXPECT_EQ(parent->hitTest({ 10, 10 }), back.get());
    EXPECT_EQ(parent->hitTest({ 60, 60 }), parent.get());
    EXPECT_EQ(parent->hitTest({ 100, 0 }), nullptr);
}

TEST(NSView, TagsAreMinusOneAndFindTheViewItself)
{
    const Ref<NSView> view = plain({});
    EXPECT_EQ(view->tag(), -1);
    EXPECT_EQ(view->viewWithTag(-1), view.get());
    EXPECT_EQ(view->viewWithTag(7), nullptr);
}

TEST(NSView, TheVisibleRectIsCutByAncestors)
{
    const Ref<NSWindow> window = windowAround(NSMakeRect(0, 0, 100, 100));
    const Ref<NSView> view = plain(NSMakeRect(80, 90, 50, 50));
    window->contentView()->addSubview(view.get());
    EXPECT_EQ(view->visibleRect(), NSMakeRect(0, 0, 20, 10));
    window->contentView()->setHidden(true);
    EXPECT_EQ(view->visibleRect(), NSRect {});
}

TEST(NSView, SubviewsOutliveTheirSuperviewWithoutAPointerToIt)
{
    const Ref<NSView> child = plain({});
    {
        const Ref<NSView> parent = plain({});
        parent->addSubview(child.get());
    }
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->nextResponder(), nullptr);
}

TEST(NSView, RemovingAForeignTrackingAreaChangesNothing)
{
    const Ref<NSView> a = plain({});
    const Ref<NSView> b = plain({});
    const Ref<NSTrackingArea> area = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
        NSMakeRect(0, 0, 1, 1), 0x81, a.get(), nullptr);
    a->addTrackingArea(area.get());
    b->removeTrackingArea(area.get());
    b->removeTrackingArea(nullptr);
    EXPECT_EQ(a->trackingAreas()->count(), 1u);
}

TEST(NSView, TheKeyLoopSkipsWhatTakesNoKeys)
{
    const Ref<NSView> a = plain({});
    const Ref<NSView> b = plain({});
    a->setNextKeyView(b.get());
    b->setNextKeyView(a.get());
    EXPECT_EQ(a->nextKeyView(), b.get());
    EXPECT_EQ(a->previousKeyView(), b.get());
    EXPECT_EQ(a->nextValidKeyView(), nullptr);
}

}
