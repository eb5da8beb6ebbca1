// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScrollView.h"

#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSColor.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/ScrolledDocument.h"

namespace brindle {

/// A document that raises, as long as it is told to, when its surroundings change.
class RaisingDocument : public NSView {
    BRINDLE_OBJECT(RaisingDocument, NSView)

public:
    bool raises_ = false;
};

template <> struct RaisingDocument::Methods<struct Raising> {

    static void resize(RaisingDocument& self, NSSize)
    {
        if (self.raises_)
            raise("Refused", "no");
    }
    static void table(Builder& t) { t.methods({ { "resizeWithOldSuperviewSize:", imp<resize> } }); }
};
BRINDLE_RECORD(RaisingDocument, Raising)

namespace {

    using test::Scrolled;

    TEST(ScrollView, PlacesItsContentAgainAfterItsDocumentRaised)
    {
        const Ref<NSScrollView> view
            = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, 100, 50)));
        const Ref<RaisingDocument> document = make<RaisingDocument>();
        document->setAutoresizingMask(NSViewWidthSizable);
        view->setDocumentView(document.get());
        document->raises_ = true;
        EXPECT_THROW(view->setFrameSize({ 200, 50 }), Exception);
        document->raises_ = false;
        view->setFrameSize({ 300, 50 });
        EXPECT_EQ(view->contentView()->frame().size.width, 300);
    }

    TEST(ScrollView, BeginsEmpty)
    {
        const Ref<NSScrollView> view = make<NSScrollView>();
        EXPECT_TRUE(view->contentView());
        EXPECT_FALSE(view->documentView());
        EXPECT_FALSE(view->verticalScroller());
        EXPECT_FALSE(view->hasVerticalScroller());
        EXPECT_FALSE(view->hasHorizontalScroller());
        EXPECT_TRUE(view->isFlipped());
        EXPECT_TRUE(view->drawsBackground());
        EXPECT_EQ(view->borderType(), NSNoBorder);
        EXPECT_EQ(view->documentVisibleRect(), NSZeroRect);
        EXPECT_EQ(view->horizontalScrollElasticity(), NSScrollElasticityAutomatic);
    }

    TEST(ScrollView, TakesADocumentThatWasAddedToItDirectly)
    {
        const Ref<NSScrollView> view = make<NSScrollView>();
        const Ref<NSView> document = make<NSView>();
        view->addSubview(document.get());
        view->setDocumentView(document.get());
        EXPECT_EQ(document->superview(), view->contentView());
        EXPECT_EQ(document->enclosingScrollView(), view);
        EXPECT_EQ(view->documentView(), document);
    }

    TEST(ScrollView, ReplacesItsDocument)
    {
        const Scrolled s;
        const Ref<NSView> other = make<NSView>();
        s.view->setDocumentView(other.get());
        EXPECT_FALSE(s.document->superview());
        EXPECT_EQ(s.view->documentView(), other);
    }

    TEST(ScrollView, LetsGoOfItsDocument)
    {
        const Scrolled s;
        s.view->setDocumentView(nullptr);
        EXPECT_FALSE(s.view->documentView());
        EXPECT_FALSE(s.document->superview());
    }

    TEST(ScrollView, AnswersWhatShowsOfASmallDocument)
    {
        const Scrolled s({ {}, { 100, 200 } }, { 30, 40 });
        EXPECT_EQ(s.view->documentVisibleRect(), NSMakeRect(0, 0, 30, 40));
    }

    TEST(ScrollView, AnswersWhatShowsInTheDocumentsCoordinates)
    {
        const Scrolled s;
        s.document->setFrameOrigin({ 0, 50 });
        s.view->contentView()->scrollToPoint({ 0, 80 });
        EXPECT_EQ(s.view->documentVisibleRect(), NSMakeRect(0, 30, 100, 200));
    }

    TEST(ScrollView, AnotherClipViewTakesTheDocumentOver)
    {
        const Scrolled s;
        const Ref<NSClipView> clip = make<NSClipView>();
        s.view->setContentView(clip.get());
        EXPECT_EQ(s.view->contentView(), clip);
        EXPECT_EQ(s.document->superview(), clip.get());
        EXPECT_EQ(clip->frame(), NSMakeRect(0, 0, 100, 200));
    }

    TEST(ScrollView, RefusesAContentViewThatIsNoClipView)
    {
        const Scrolled s;
        const Ref<NSView> other = make<NSView>();
        EXPECT_THROW(s.view->send<"setContentView:">(other.get()), Exception);
        EXPECT_THROW(s.view->send<"setVerticalScroller:">(other.get()), Exception);
    }

    // ---- laying out

    TEST(ScrollView, LegacyScrollersLieBesideTheContent)
    {
        const Scrolled s;
        s.view->setScrollerStyle(NSScrollerStyleLegacy);
        s.view->setHasVerticalScroller(true);
        s.view->setHasHorizontalScroller(true);
        EXPECT_EQ(s.view->contentSize(), NSMakeSize(85, 185));
        EXPECT_EQ(s.view->verticalScroller()->frame(), NSMakeRect(85, 0, 15, 185));
        EXPECT_EQ(s.view->horizontalScroller()->frame(), NSMakeRect(0, 185, 85, 15));
    }

    TEST(ScrollView, OverlayScrollersLieAboveTheContent)
    {
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        EXPECT_EQ(s.view->scrollerStyle(), NSScrollerStyleOverlay);
        EXPECT_EQ(s.view->contentSize(), NSMakeSize(100, 200));
        EXPECT_EQ(s.view->verticalScroller()->frame(), NSMakeRect(85, 0, 15, 200));
    }

    TEST(ScrollView, SmallScrollersAreSlimmer)
    {
        const Scrolled s;
        s.view->setScrollerStyle(NSScrollerStyleLegacy);
        s.view->setHasVerticalScroller(true);
        s.view->verticalScroller()->setControlSize(NSControlSizeSmall);
        s.view->tile();
        EXPECT_EQ(s.view->contentSize().width, 89);
    }

    TEST(ScrollView, BordersTakeTheirRoom)
    {
        const Scrolled s;
        s.view->setBorderType(NSBezelBorder);
        EXPECT_EQ(s.view->contentSize(), NSMakeSize(98, 198));
        s.view->setBorderType(NSGrooveBorder);
        EXPECT_EQ(s.view->contentView()->frame(), NSMakeRect(2, 2, 96, 196));
    }

    TEST(ScrollView, TheContentFollowsItsSize)
    {
        const Scrolled s;
        s.view->setFrameSize({ 300, 400 });
        EXPECT_EQ(s.view->contentSize(), NSMakeSize(300, 400));
    }

    TEST(ScrollView, ANegativeSizeLeavesNoContent)
    {
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        s.view->setFrameSize({ -10, -10 });
        EXPECT_EQ(s.view->contentSize(), NSZeroSize);
    }

    TEST(ScrollView, ScrollersHideWithNothingToScroll)
    {
        const Scrolled s;
        s.view->setScrollerStyle(NSScrollerStyleLegacy);
        s.view->setAutohidesScrollers(true);
        s.view->setHasVerticalScroller(true);
        EXPECT_FALSE(s.view->verticalScroller()->isHidden());
        s.document->setFrameSize({ 80, 150 });
        EXPECT_TRUE(s.view->verticalScroller()->isHidden());
        EXPECT_TRUE(s.view->hasVerticalScroller());
        EXPECT_EQ(s.view->contentSize().width, 100);
        s.document->setFrameSize({ 80, 250 });
        EXPECT_FALSE(s.view->verticalScroller()->isHidden());
        EXPECT_EQ(s.view->contentSize().width, 85);
    }

    TEST(ScrollView, OneScrollerMakesTheOtherNecessary)
    {
        const Scrolled s(NSMakeRect(0, 0, 100, 200), { 90, 1000 });
        s.view->setScrollerStyle(NSScrollerStyleLegacy);
        s.view->setAutohidesScrollers(true);
        s.view->setHasVerticalScroller(true);
        s.view->setHasHorizontalScroller(true);
        EXPECT_FALSE(s.view->horizontalScroller()->isHidden());
        EXPECT_EQ(s.view->contentSize(), NSMakeSize(85, 185));
    }

    TEST(ScrollView, AScrollerThatIsTakenAwayIsGone)
    {
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        const Ref<NSScroller> scroller = s.view->verticalScroller();
        s.view->setHasVerticalScroller(false);
        EXPECT_FALSE(s.view->verticalScroller());
        EXPECT_FALSE(scroller->superview());
        EXPECT_FALSE(scroller->target());
    }

    TEST(ScrollView, FramesAndContentsAnswerEachOther)
    {
        const auto cls = NSScrollView::cls();
        const NSSize frame = cls.frameSizeForContentSize({ 100, 50 }, nullptr, NSScroller::cls(),
            NSLineBorder, NSControlSizeSmall, NSScrollerStyleLegacy);
        EXPECT_EQ(frame, NSMakeSize(113, 52));
        EXPECT_EQ(cls.contentSizeForFrameSize(frame, nullptr, NSScroller::cls(), NSLineBorder,
                      NSControlSizeSmall, NSScrollerStyleLegacy),
            NSMakeSize(100, 50));
    }

    TEST(ScrollView, AHeaderLiesAboveTheContentAndFollowsItSideways)
    {
        const Scrolled s({ {}, { 100, 200 } }, { 400, 1000 });
        s.document->header_ = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 400, 20));
        s.view->tile();
        EXPECT_EQ(s.view->contentView()->frame(), NSMakeRect(0, 20, 100, 180));
        s.view->contentView()->scrollToPoint({ 30, 40 });
        EXPECT_EQ(s.document->header_->superview()->bounds().origin, NSMakePoint(30, 0));
        s.document->header_ = nullptr;
        s.view->tile();
        EXPECT_EQ(s.view->contentView()->frame(), NSMakeRect(0, 0, 100, 200));
    }

    // ---- scrollers show where the content stands

    TEST(ScrollView, TheKnobShowsWhereTheContentStands)
    {
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        EXPECT_EQ(s.view->verticalScroller()->doubleValue(), 0);
        EXPECT_EQ(s.view->verticalScroller()->knobProportion(), 0.2);
        s.view->contentView()->scrollToPoint({ 0, 400 });
        EXPECT_EQ(s.view->verticalScroller()->doubleValue(), 0.5);
    }

    TEST(ScrollView, TheKnobOfAnUprightDocumentIsAtTheTopForTheTop)
    {
        const Scrolled s({ {}, { 100, 200 } }, { 100, 1000 }, true);
        s.view->setHasVerticalScroller(true);
        EXPECT_EQ(s.view->verticalScroller()->doubleValue(), 1);
        s.view->contentView()->scrollToPoint({ 0, 800 });
        EXPECT_EQ(s.view->verticalScroller()->doubleValue(), 0);
    }

    TEST(ScrollView, NothingToScrollFillsTheKnob)
    {
        const Scrolled s({ {}, { 100, 200 } }, { 10, 10 });
        s.view->setHasVerticalScroller(true);
        EXPECT_EQ(s.view->verticalScroller()->knobProportion(), 1);
        EXPECT_EQ(s.view->verticalScroller()->usableParts(), NSNoScrollerParts);
    }

    TEST(ScrollView, AnAbsentScrollerReadsRegular)
    {
        EXPECT_EQ(
            maybe(make<NSScrollView>()->verticalScroller())->controlSize(), NSControlSizeRegular);
    }

    TEST(ScrollView, LinesAndPagesAreSetForBothDirections)
    {
        const Ref<NSScrollView> view = make<NSScrollView>();
        EXPECT_EQ(view->lineScroll(), 10);
        view->setLineScroll(16);
        view->setPageScroll(30);
        EXPECT_EQ(view->verticalLineScroll(), 16);
        EXPECT_EQ(view->horizontalLineScroll(), 16);
        EXPECT_EQ(view->horizontalPageScroll(), 30);
    }

    TEST(ScrollView, TheGroundIsTheContentViews)
    {
        const Ref<NSScrollView> view = make<NSScrollView>();
        view->setBackgroundColor(NSColor::cls().redColor().get());
        EXPECT_TRUE(
            view->contentView()->backgroundColor()->isEqual(NSColor::cls().redColor().get()));
        view->setDrawsBackground(false);
        EXPECT_FALSE(view->contentView()->drawsBackground());
        EXPECT_FALSE(view->contentView()->isOpaque());
    }

    // ---- overlay scrollers come and go

    TEST(ScrollView, OverlayScrollersFadeAndComeBackWithScrolling)
    {
        HeadlessScreen screen;
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        screen.window().contentView()->addSubview(s.view.get());
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
        screen.advance(2);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 0);
        s.view->contentView()->scrollToPoint({ 0, 10 });
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
        screen.advance(0.5);
        s.view->contentView()->scrollToPoint({ 0, 20 });
        screen.advance(0.5);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
        screen.advance(0.5);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 0);
    }

    TEST(ScrollView, ScrollingDuringTheFadeEndsIt)
    {
        HeadlessScreen screen;
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        screen.window().contentView()->addSubview(s.view.get());
        screen.advance(0.8);
        EXPECT_LT(s.view->verticalScroller()->alphaValue(), 1);
        s.view->contentView()->scrollToPoint({ 0, 10 });
        screen.advance(0.2);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
    }

    TEST(ScrollView, ThePointerBringsAScrollerBackAndKeepsIt)
    {
        HeadlessScreen screen;
        const Scrolled s;
        s.view->setHasVerticalScroller(true);
        screen.window().contentView()->addSubview(s.view.get());
        screen.advance(2);
        screen.pointer().moveTo({ 95, 100 });
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
        screen.advance(2);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
        screen.pointer().moveTo({ 300, 290 });
        screen.advance(2);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 0);
    }

    TEST(ScrollView, LegacyScrollersStay)
    {
        HeadlessScreen screen;
        const Scrolled s;
        s.view->setScrollerStyle(NSScrollerStyleLegacy);
        s.view->setHasVerticalScroller(true);
        screen.window().contentView()->addSubview(s.view.get());
        screen.advance(2);
        EXPECT_EQ(s.view->verticalScroller()->alphaValue(), 1);
    }

    TEST(ScrollView, MayGoWhileItFades)
    {
        HeadlessScreen screen;
        WeakRef<NSScrollView> watched;
        {
            const Scrolled s;
            watched = s.view.get();
            s.view->setHasVerticalScroller(true);
            screen.window().contentView()->addSubview(s.view.get());
            screen.advance(0.8);
            s.view->removeFromSuperview();
        }
        screen.advance(2);
        EXPECT_FALSE(watched.get());
    }

}

}
