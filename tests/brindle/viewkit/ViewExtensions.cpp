// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "runtime/Table.h"
#include "support/Strings.h"
#include "viewkit/NSView+BRExtensions.h"
#include "viewkit/NSView+GWExtensions.h"
#include "viewkit/NSView+MovingAndSizing.h"
#include "viewkit/NSView+NSTableCellView.h"

namespace brindle {

/// Writes down which setters its frame went through, and that it was made with a frame.
class MeasuredView : public NSView {
    BRINDLE_OBJECT(MeasuredView, NSView)

public:
    std::string log_;
    bool madeWithFrame_ = false;
};

template <> struct MeasuredView::Methods<struct Steps> {
    static Ref<NSView> initWithFrame(MeasuredView& self, NSRect frame)
    {
        if (!super<MeasuredView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.madeWithFrame_ = true;
        return &self;
    }
    static void setFrameOrigin(MeasuredView& self, NSPoint origin)
    {
        self.log_ += "origin ";
        super<MeasuredView, "setFrameOrigin:">(self, origin);
    }
    static void setFrameSize(MeasuredView& self, NSSize size)
    {
        self.log_ += "size ";
        super<MeasuredView, "setFrameSize:">(self, size);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameOrigin:", imp<setFrameOrigin> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(MeasuredView, Steps)

namespace {

    Ref<MeasuredView> measuredView()
    {
        return cast<MeasuredView>(alloc<MeasuredView>()->initWithFrame(NSMakeRect(1, 2, 3, 4)));
    }

    TEST(MovingAndSizing, EachComponentIsRead)
    {
        const Ref<MeasuredView> view = measuredView();
        EXPECT_EQ(frameOriginX(*view), 1);
        EXPECT_EQ(frameOriginY(*view), 2);
        EXPECT_EQ(frameSizeWidth(*view), 3);
        EXPECT_EQ(frameSizeHeight(*view), 4);
    }

    TEST(MovingAndSizing, EachSetterLeavesTheOtherThree)
    {
        const Ref<MeasuredView> view = measuredView();
        setFrameOriginX(*view, 10);
        EXPECT_EQ(view->frame(), NSMakeRect(10, 2, 3, 4));
        setFrameOriginY(*view, 20);
        EXPECT_EQ(view->frame(), NSMakeRect(10, 20, 3, 4));
        setFrameSizeWidth(*view, 30);
        EXPECT_EQ(view->frame(), NSMakeRect(10, 20, 30, 4));
        setFrameSizeHeight(*view, 40);
        EXPECT_EQ(view->frame(), NSMakeRect(10, 20, 30, 40));
    }

    TEST(MovingAndSizing, ChangesGoThroughOriginOrSize)
    {
        const Ref<MeasuredView> view = measuredView();
        setFrameOriginX(*view, 10);
        setFrameOriginY(*view, 20);
        setFrameSizeWidth(*view, 30);
        setFrameSizeHeight(*view, 40);
        EXPECT_EQ(view->log_, "origin origin size size ");
    }

    TEST(ViewExtensions, VisibleIsTheOppositeOfHidden)
    {
        const Ref<NSView> view = make<NSView>();
        EXPECT_TRUE(visible(*view));
        setVisible(*view, false);
        EXPECT_TRUE(view->isHidden());
        EXPECT_FALSE(visible(*view));
        setVisible(*view, true);
        EXPECT_FALSE(view->isHidden());
    }

    TEST(ViewExtensions, TheNearestAncestorOfAClassIsFound)
    {
        const Ref<MeasuredView> outer = measuredView();
        const Ref<MeasuredView> middle = measuredView();
        const Ref<NSView> inner = make<NSView>();
        outer->addSubview(middle.get());
        middle->addSubview(inner.get());
        EXPECT_EQ(superviewOfClass(*inner, MeasuredView::cls()), middle.get());
    }

    TEST(ViewExtensions, AViewIsNotItsOwnAncestor)
    {
        const Ref<MeasuredView> outer = measuredView();
        const Ref<MeasuredView> inner = measuredView();
        outer->addSubview(inner.get());
        EXPECT_EQ(superviewOfClass(*inner, MeasuredView::cls()), outer.get());
        EXPECT_EQ(superviewOfClass(*outer, MeasuredView::cls()), nullptr);
    }

    TEST(ViewExtensions, NoAncestorIsOfANilClass)
    {
        const Ref<NSView> outer = make<NSView>();
        const Ref<NSView> inner = make<NSView>();
        outer->addSubview(inner.get());
        EXPECT_EQ(superviewOfClass(*inner, nullptr), nullptr);
    }

    TEST(ViewExtensions, AViewOutsideTablesHasNoTableCell)
    {
        const Ref<NSView> outer = make<NSView>();
        const Ref<NSView> inner = make<NSView>();
        outer->addSubview(inner.get());
        EXPECT_EQ(tableCellView(*inner), nullptr);
    }

    TEST(ViewExtensions, InitGoesThroughTheFrame)
    {
        const Ref<MeasuredView> view = make<MeasuredView>();
        EXPECT_TRUE(view->madeWithFrame_);
        EXPECT_EQ(view->frame(), NSZeroRect);
    }

}

}
