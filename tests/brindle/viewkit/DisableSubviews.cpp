// SPDX-License-Identifier: Apache-2.0
#include "viewkit/NSView+DisableSubviews.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"

namespace brindle {

/// Can be enabled and has a tag; tells who was set in which order.
class SwitchableView : public NSView {
    BRINDLE_OBJECT(SwitchableView, NSView)

public:
    static inline std::vector<NSInteger> order;

    NSInteger tag_ = 0;
    bool enabled_ = true;
};

template <> struct SwitchableView::Methods<struct Enabling> {
    static NSInteger tag(SwitchableView& self) { return self.tag_; }
    static void setEnabled(SwitchableView& self, bool enabled)
    {
        self.enabled_ = enabled;
        order.push_back(self.tag_);
    }
    static void table(Builder& t)
    {
        t.methods({ { "tag", imp<tag> }, { "setEnabled:", imp<setEnabled> } });
    }
};
BRINDLE_RECORD(SwitchableView, Enabling)

class SpecialSwitchableView : public SwitchableView {
    BRINDLE_OBJECT(SpecialSwitchableView, SwitchableView)
};
template <> struct SpecialSwitchableView::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(SpecialSwitchableView, Nothing)

namespace {

    template <class T> Ref<T> add(NSView& parent, NSInteger tag)
    {
        Ref<T> view = make<T>();
        view->tag_ = tag;
        parent.addSubview(view.get());
        return view;
    }

    /// Tags 1 to 7 side by side, and -1; number 4 is of the special class.
    struct Row {
        Ref<NSView> root = make<NSView>();
        std::vector<Ref<SwitchableView>> views;

        Row()
        {
            for (const NSInteger tag : { 1, 2, 3, 4, 5, 6, 7, -1 }) {
                if (tag == 4)
                    views.push_back(cast<SwitchableView>(add<SpecialSwitchableView>(*root, tag)));
                else
                    views.push_back(add<SwitchableView>(*root, tag));
            }
        }
        /// Answers the tags of those that are disabled.
        std::string disabled() const
        {
            std::string tags;
            for (const Ref<SwitchableView>& view : views) {
                if (!view->enabled_)
                    tags += (tags.empty() ? "" : " ") + std::to_string(view->tag_);
            }
            return tags;
        }
    };

    Ref<NSNumber> number(NSInteger value) { return NSNumber::cls().numberWithInteger(value); }

    TEST(DisableSubviews, ControlsInPlainContainersAreReached)
    {
        const Ref<NSView> root = make<NSView>();
        const Ref<NSView> box = make<NSView>();
        const Ref<NSView> inner = make<NSView>();
        root->addSubview(box.get());
        box->addSubview(inner.get());
        const Ref<SwitchableView> deep = add<SwitchableView>(*inner, 1);
        disableSubviews(*root, true);
        EXPECT_FALSE(deep->enabled_);
        disableSubviews(*root, false);
        EXPECT_TRUE(deep->enabled_);
    }

    TEST(DisableSubviews, TheReceiverStaysAsItIs)
    {
        const Ref<SwitchableView> root = make<SwitchableView>();
        const Ref<SwitchableView> inside = add<SwitchableView>(*root, 1);
        disableSubviews(*root, true);
        EXPECT_TRUE(root->enabled_);
        EXPECT_FALSE(inside->enabled_);
    }

    TEST(DisableSubviews, WhatIsInAViewComesBeforeIt)
    {
        const Ref<NSView> root = make<NSView>();
        const Ref<SwitchableView> first = add<SwitchableView>(*root, 1);
        add<SwitchableView>(*first, 11);
        add<SwitchableView>(*first, 12);
        add<SwitchableView>(*root, 2);
        SwitchableView::order.clear();
        disableSubviews(*root, true);
        EXPECT_EQ(SwitchableView::order, (std::vector<NSInteger> { 11, 12, 1, 2 }));
    }

    TEST(DisableSubviews, WhatIsInARefusedViewIsAskedForAllTheSame)
    {
        const Ref<NSView> root = make<NSView>();
        const Ref<SwitchableView> outer = add<SwitchableView>(*root, 1);
        const Ref<SwitchableView> inner = add<SwitchableView>(*outer, 2);
        disableSubviews_filter(*root, true, [&](NSView* view) { return view != outer.get(); });
        EXPECT_TRUE(outer->enabled_);
        EXPECT_FALSE(inner->enabled_);
    }

    TEST(DisableSubviews, ANilFilterAcceptsEveryView)
    {
        const Row row;
        disableSubviews_filter(*row.root, true, nullptr);
        EXPECT_EQ(row.disabled(), "1 2 3 4 5 6 7 -1");
    }

    TEST(DisableSubviews, ATypeIncludesItsSubclassesAndNothingElse)
    {
        const Row row;
        disableSubviews_ofType(*row.root, true, SpecialSwitchableView::cls());
        EXPECT_EQ(row.disabled(), "4");
        disableSubviews_ofType(*row.root, true, NSView::cls());
        EXPECT_EQ(row.disabled(), "1 2 3 4 5 6 7 -1");
    }

    TEST(DisableSubviews, NilIsNoViewsType)
    {
        const Row row;
        disableSubviews_ofType(*row.root, true, nullptr);
        EXPECT_EQ(row.disabled(), "");
    }

    TEST(DisableSubviews, ARangeEndsBeforeItsEnd)
    {
        const Row row;
        disableSubviews_inTagRange(*row.root, true, { 2, 3 });
        EXPECT_EQ(row.disabled(), "2 3 4");
    }

    TEST(DisableSubviews, ANegativeTagCountsAsAGreatOne)
    {
        const Row row;
        disableSubviews_inTagRange(*row.root, true, { ~NSUInteger { 0 }, 1 });
        EXPECT_EQ(row.disabled(), "-1");
    }

    TEST(DisableSubviews, BothEndsBelongToTheTags)
    {
        const Row row;
        disableSubviews_startTag_endTag(*row.root, true, 3, 5);
        EXPECT_EQ(row.disabled(), "3 4 5");
    }

    TEST(DisableSubviews, AnEndBeforeTheStartIsEveryTagFromTheStartOn)
    {
        const Row row;
        disableSubviews_startTag_endTag(*row.root, true, 5, 3);
        EXPECT_EQ(row.disabled(), "5 6 7 -1");
    }

    TEST(DisableSubviews, TagsAreFoundInArraysAndSets)
    {
        const Row row;
        disableSubviews_withTags(*row.root, true, makeArray({ number(2), number(-1) }).get());
        EXPECT_EQ(row.disabled(), "2 -1");
        disableSubviews_withTags(
            *row.root, true, NSSet::cls().setWithObject(number(6).get()).get());
        EXPECT_EQ(row.disabled(), "2 6 -1");
    }

    TEST(DisableSubviews, NilTagsAreNoTags)
    {
        const Row row;
        disableSubviews_withTags(*row.root, true, nullptr);
        EXPECT_EQ(row.disabled(), "");
    }

    TEST(DisableSubviews, TypeAndRangeMustBothFit)
    {
        const Row row;
        disableSubviews_ofType_inTagRange(*row.root, true, SpecialSwitchableView::cls(), { 1, 3 });
        EXPECT_EQ(row.disabled(), "");
        disableSubviews_ofType_inTagRange(*row.root, true, SpecialSwitchableView::cls(), { 1, 4 });
        EXPECT_EQ(row.disabled(), "4");
    }

    TEST(DisableSubviews, TypeAndTagsMustBothFit)
    {
        const Row row;
        disableSubviews_ofType_withTags(*row.root, true, SpecialSwitchableView::cls(),
            makeArray({ number(3), number(4) }).get());
        EXPECT_EQ(row.disabled(), "4");
    }

    TEST(DisableSubviews, AFilterMayRemoveTheViewItIsAskedAbout)
    {
        const Row row;
        disableSubviews_filter(*row.root, true, [](NSView* view) {
            view->removeFromSuperview();
            return true;
        });
        EXPECT_EQ(row.disabled(), "1 2 3 4 5 6 7 -1");
        EXPECT_EQ(row.root->subviews()->count(), 0u);
    }

    TEST(DisableSubviews, TenThousandViewsInEachOtherAreReached)
    {
        const Ref<NSView> root = make<NSView>();
        NSView* innermost = root.get();
        for (int i = 0; i < 10'000; ++i) {
            const Ref<NSView> view = make<NSView>();
            innermost->addSubview(view.get());
            innermost = view.get();
        }
        const Ref<SwitchableView> deep = add<SwitchableView>(*innermost, 1);
        disableSubviews(*root, true);
        EXPECT_FALSE(deep->enabled_);
    }

}

}
