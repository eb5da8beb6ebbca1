// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextField.h"

#include <gtest/gtest.h>

#include "appkit/NSBox.h"
#include "appkit/NSClipView.h"
#include "appkit/NSTabView.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/EditingDesk.h"
#include "support/EndOfEditing.h"

namespace brindle {

/// Raises when it is asked whether typing may end.
class RaisingGuard : public NSObject {
    BRINDLE_OBJECT(RaisingGuard, NSObject)

public:
    bool raises_ = true;
};
template <> struct RaisingGuard::Methods<struct Asked> {
    static bool shouldEnd(RaisingGuard& self, NSControl*, NSText*)
    {
        if (self.raises_)
            raise("Fault", "on purpose");
        return true;
    }
    static void table(Builder& t)
    {
        t.methods({ { "control:textShouldEndEditing:", imp<shouldEnd> } });
    }
};
BRINDLE_RECORD(RaisingGuard, Asked)

/// A view that passes the keyboard on to another one.
class ViewThatForwards : public NSView {
    BRINDLE_OBJECT(ViewThatForwards, NSView)

public:
    Ref<NSView> inner_;
};
template <> struct ViewThatForwards::Methods<struct Focus> {
    static bool accepts(ViewThatForwards&) { return true; }
    static bool become(ViewThatForwards& self)
    {
        return !self.inner_ || self.window()->makeFirstResponder(self.inner_.get());
    }
    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<accepts> },
            { "becomeFirstResponder", imp<become> },
        });
    }
};
BRINDLE_RECORD(ViewThatForwards, Focus)

namespace {

    using test::AtEachEndOfEditing;
    using test::AtTheEndOfEditing;

    constexpr NSRect kField { { 10, 10 }, { 80, 22 } };

    /// Three fields, the first of which is being typed in.
    struct EndOfEditing : testing::Test {
        EditingDesk desk;
        Ref<NSTextField> first = desk.add<NSTextField>(NSMakeRect(10, 130, 100, 22));
        Ref<NSTextField> second = desk.add<NSTextField>(NSMakeRect(10, 90, 100, 22));
        Ref<NSTextField> third = desk.add<NSTextField>(NSMakeRect(10, 50, 100, 22));

        void SetUp() override
        {
            first->setNextKeyView(second.get());
            typeIn(*first);
        }
        void typeIn(NSTextField& field)
        {
            desk.window->makeFirstResponder(&field);
            desk.type(u"pear");
        }
        /// Adds a field to a view and types in it.
        Ref<NSTextField> typeInside(const Ref<NSView>& view)
        {
            const Ref<NSTextField> field
                = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(kField));
            view->addSubview(field.get());
            typeIn(*field);
            return field;
        }
        static bool isBeingEdited(NSTextField& field) { return field.currentEditor() != nullptr; }
    };

    // ---- the editor tells

    struct EditorsEnd : EndOfEditing {
        int told = 0;
        Ref<NSObject> token;

        void SetUp() override
        {
            EndOfEditing::SetUp();
            token = NSNotificationCenter::cls()
                        .defaultCenter()
                        ->addObserverForName_object_queue_usingBlock(
                            NSTextDidEndEditingNotification, first->currentEditor().get(), nullptr,
                            [this](NSNotification*) { ++told; });
        }
        void TearDown() override
        {
            NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        }
    };

    TEST_F(EditorsEnd, IsToldOnceAfterTab)
    {
        desk.press('\t');
        EXPECT_EQ(told, 1);
        EXPECT_TRUE(isBeingEdited(*second));
    }

    TEST_F(EditorsEnd, IsToldOnceAfterAClickElsewhere)
    {
        desk.click(*second, { 50, 11 });
        EXPECT_EQ(told, 1);
        EXPECT_TRUE(isBeingEdited(*second));
    }

    TEST_F(EditorsEnd, IsNotToldWhenEditingIsAborted)
    {
        EXPECT_TRUE(first->abortEditing());
        EXPECT_EQ(told, 0);
    }

    // ---- who is told moves the keyboard elsewhere

    TEST_F(EndOfEditing, LeavesTheKeyboardWhereWhoIsToldMovedIt)
    {
        const AtTheEndOfEditing moves([this] { desk.window->makeFirstResponder(third.get()); });
        EXPECT_FALSE(desk.window->makeFirstResponder(second.get()));
        EXPECT_FALSE(isBeingEdited(*second));
        EXPECT_EQ(desk.window->firstResponder(), third->currentEditor());
        desk.type(u"fig");
        EXPECT_EQ(utf8Of(third->stringValue().get()), "fig");
        desk.window->makeFirstResponder(nullptr);
        EXPECT_FALSE(isBeingEdited(*third));
    }

    TEST_F(EndOfEditing, ForAnyLeavesTheFieldToWhichWhoIsToldMovedTheKeyboard)
    {
        const AtTheEndOfEditing moves([this] { desk.window->makeFirstResponder(third.get()); });
        desk.window->endEditingFor(nullptr);
        desk.type(u"fig");
        EXPECT_EQ(utf8Of(third->stringValue().get()), "fig");
    }

    TEST_F(EndOfEditing, GivesTheKeyboardToNoViewThatHasLeftTheWindow)
    {
        const AtTheEndOfEditing removes([this] { second->removeFromSuperview(); });
        EXPECT_FALSE(desk.window->makeFirstResponder(second.get()));
        EXPECT_EQ(desk.window->firstResponder(), desk.window);
    }

    TEST_F(EndOfEditing, AnswersYesWhenWhoIsToldGaveTheKeyboardToTheSameField)
    {
        const AtTheEndOfEditing moves([this] { desk.window->makeFirstResponder(second.get()); });
        EXPECT_TRUE(desk.window->makeFirstResponder(second.get()));
        EXPECT_TRUE(moves.happened());
        EXPECT_TRUE(isBeingEdited(*second));
    }

    TEST_F(EndOfEditing, LeavesTheKeyboardInNoFieldThatIsHiddenMeanwhile)
    {
        const AtTheEndOfEditing hides([this] {
            desk.window->makeFirstResponder(third.get());
            third->setHidden(true);
        });
        desk.click(*second, { 50, 11 });
        desk.type(u"fig");
        EXPECT_TRUE(hides.happened());
        EXPECT_FALSE(isBeingEdited(*third));
        EXPECT_EQ(utf8Of(third->stringValue().get()), "");
        EXPECT_EQ(utf8Of(second->stringValue().get()), "fig");
    }

    TEST_F(EndOfEditing, ComesInAFieldThatGoesMeanwhileWithTheViewAround)
    {
        const Ref<NSView> around = desk.add<NSView>(NSMakeRect(120, 10, 100, 100));
        const Ref<NSTextField> inner
            = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(kField));
        around->addSubview(inner.get());
        int ended = 0;
        const AtTheEndOfEditing removes([&] {
            desk.window->makeFirstResponder(inner.get());
            const AtTheEndOfEditing counts([&ended] { ++ended; });
            around->removeFromSuperview();
        });
        desk.window->makeFirstResponder(second.get());
        EXPECT_EQ(ended, 1);
        EXPECT_TRUE(isBeingEdited(*second));
    }

    TEST_F(EndOfEditing, AnswersYesWhenTheViewPassedTheKeyboardOnToTheOneAskedFor)
    {
        const Ref<ViewThatForwards> outer = desk.add<ViewThatForwards>(NSMakeRect(120, 10, 90, 90));
        const Ref<ViewThatForwards> inner = make<ViewThatForwards>();
        outer->addSubview(inner.get());
        outer->inner_ = inner;
        const AtTheEndOfEditing moves([&] { desk.window->makeFirstResponder(outer.get()); });
        EXPECT_TRUE(desk.window->makeFirstResponder(inner.get()));
        EXPECT_TRUE(moves.happened());
        EXPECT_EQ(desk.window->firstResponder(), inner);
    }

    TEST_F(EndOfEditing, EndsThoughEachGivesTheKeyboardToAFieldThatGoes)
    {
        const Ref<NSView> around = desk.add<NSView>(NSMakeRect(120, 10, 100, 100));
        const Ref<NSTextField> inner
            = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(kField));
        around->addSubview(inner.get());
        constexpr int kMost = 10;
        int ends = 0;
        const AtEachEndOfEditing removes([&] {
            if (++ends > kMost)
                return;
            desk.window->makeFirstResponder(inner.get());
            around->removeFromSuperview();
        });
        desk.window->makeFirstResponder(second.get());
        EXPECT_LE(ends, kMost);
        EXPECT_EQ(around->superview(), nullptr);
        EXPECT_FALSE(isBeingEdited(*inner));
    }

    // ---- who is asked raises

    TEST_F(EndOfEditing, ComesThoughWhoWasAskedBeforeRaised)
    {
        const Ref<RaisingGuard> guard = make<RaisingGuard>();
        first->setDelegate(guard.get());
        EXPECT_THROW(desk.window->makeFirstResponder(nullptr), Exception);
        guard->raises_ = false;
        desk.press('\t');
        EXPECT_FALSE(isBeingEdited(*first));
        EXPECT_TRUE(isBeingEdited(*second));
    }

    TEST_F(EndOfEditing, IsAskedForAgainAfterTheAnswerToTabRaised)
    {
        const Ref<RaisingGuard> guard = make<RaisingGuard>();
        first->setDelegate(guard.get());
        EXPECT_THROW(
            first->currentEditor()->doCommandBySelector(selector<"insertTab:">), Exception);
        EXPECT_THROW(desk.window->makeFirstResponder(nullptr), Exception);
        guard->raises_ = false;
    }

    // ---- a view with the field goes, and who is told puts another one in its place

    /// Three tabs, of which the first shows.
    struct Tabs {
        Ref<NSTabView> tabs;
        Ref<NSTabViewItem> sound = add("Sound"_ns);
        Ref<NSTabViewItem> light = add("Light"_ns);
        Ref<NSTabViewItem> heat = add("Heat"_ns);

        explicit Tabs(EditingDesk& desk)
            : tabs(desk.add<NSTabView>(NSMakeRect(120, 10, 170, 150)))
        {
        }
        Ref<NSTabViewItem> add(NSString* label) const
        {
            const Ref<NSTabViewItem> item = alloc<NSTabViewItem>()->initWithIdentifier(label);
            tabs->addTabViewItem(item.get());
            return item;
        }
    };

    TEST_F(EndOfEditing, MaySelectAnotherTabWhileOneIsSelected)
    {
        const Tabs t(desk);
        typeInside(t.sound->view());
        const AtTheEndOfEditing selects([&] { t.tabs->selectTabViewItem(t.heat.get()); });
        t.tabs->selectTabViewItem(t.light.get());
        EXPECT_EQ(t.tabs->selectedTabViewItem(), t.heat);
        EXPECT_EQ(t.heat->tabState(), NSSelectedTab);
        EXPECT_EQ(t.light->tabState(), NSBackgroundTab);
        EXPECT_EQ(t.heat->view()->superview(), t.tabs);
        EXPECT_EQ(t.light->view()->superview(), nullptr);
    }

    TEST_F(EndOfEditing, MayShowAnotherDocumentWhileOneIsShown)
    {
        const Ref<NSClipView> clip = desk.add<NSClipView>(NSMakeRect(120, 10, 170, 150));
        const Ref<NSView> old = make<NSView>();
        const Ref<NSView> wanted = make<NSView>();
        clip->setDocumentView(old.get());
        typeInside(old);
        const AtTheEndOfEditing shows([&] { clip->setDocumentView(wanted.get()); });
        clip->setDocumentView(make<NSView>().get());
        EXPECT_EQ(clip->documentView(), wanted);
        EXPECT_EQ(clip->subviews()->count(), 1U);
    }

    TEST_F(EndOfEditing, MayGiveABoxOtherContentWhileItGetsSome)
    {
        const Ref<NSBox> box = desk.add<NSBox>(NSMakeRect(120, 10, 170, 150));
        const Ref<NSView> wanted = make<NSView>();
        typeInside(box->contentView());
        const AtTheEndOfEditing gives([&] { box->setContentView(wanted.get()); });
        box->setContentView(make<NSView>().get());
        EXPECT_EQ(box->contentView(), wanted);
        EXPECT_EQ(box->subviews()->count(), 1U);
    }

    TEST_F(EndOfEditing, MayGiveTheWindowOtherContentWhileItGetsSome)
    {
        const Ref<NSView> wanted = make<NSView>();
        const Ref<NSView> lost = make<NSView>();
        const AtTheEndOfEditing gives([&] { desk.window->setContentView(wanted.get()); });
        desk.window->setContentView(lost.get());
        EXPECT_EQ(desk.window->contentView(), wanted);
        EXPECT_EQ(lost->superview(), nullptr);
    }

    TEST_F(EndOfEditing, MayGoBackToTheTabThatIsLeft)
    {
        const Tabs t(desk);
        typeInside(t.sound->view());
        const AtTheEndOfEditing selects([&] { t.tabs->selectTabViewItem(t.sound.get()); });
        t.tabs->selectTabViewItem(t.light.get());
        EXPECT_TRUE(selects.happened());
        EXPECT_EQ(t.tabs->selectedTabViewItem(), t.sound);
        EXPECT_EQ(t.sound->tabState(), NSSelectedTab);
        EXPECT_EQ(t.sound->view()->superview(), t.tabs);
    }

    TEST_F(EndOfEditing, MayGiveTheWindowItsOldContentBack)
    {
        const Ref<NSView> old = desk.window->contentView();
        const AtTheEndOfEditing gives([&] { desk.window->setContentView(old.get()); });
        desk.window->setContentView(make<NSView>().get());
        EXPECT_TRUE(gives.happened());
        EXPECT_EQ(desk.window->contentView(), old);
        EXPECT_EQ(old->window(), desk.window);
    }

    // ---- a view with the field goes, and who is told raises

    struct RaisingEndOfEditing : EndOfEditing {
        static void fault() { raise("Fault", "on purpose"); }
    };

    TEST_F(RaisingEndOfEditing, LetsAnotherTabShowItsView)
    {
        const Tabs t(desk);
        typeInside(t.sound->view());
        const AtTheEndOfEditing raises(fault);
        EXPECT_THROW(t.tabs->selectTabViewItem(t.light.get()), Exception);
        EXPECT_EQ(t.light->tabState(), NSSelectedTab);
        EXPECT_EQ(t.light->view()->superview(), t.tabs);
        EXPECT_EQ(t.sound->view()->superview(), nullptr);
    }

    TEST_F(RaisingEndOfEditing, LetsAnotherDocumentTakeThePlaceOfTheOld)
    {
        const Ref<NSClipView> clip = desk.add<NSClipView>(NSMakeRect(120, 10, 170, 150));
        const Ref<NSView> old = make<NSView>();
        const Ref<NSView> fresh = make<NSView>();
        clip->setDocumentView(old.get());
        typeInside(old);
        const AtTheEndOfEditing raises(fault);
        EXPECT_THROW(clip->setDocumentView(fresh.get()), Exception);
        EXPECT_EQ(clip->documentView(), fresh);
        EXPECT_EQ(clip->subviews()->count(), 1U);
    }

    TEST_F(RaisingEndOfEditing, LetsABoxTakeOtherContent)
    {
        const Ref<NSBox> box = desk.add<NSBox>(NSMakeRect(120, 10, 170, 150));
        const Ref<NSView> fresh = make<NSView>();
        typeInside(box->contentView());
        const AtTheEndOfEditing raises(fault);
        EXPECT_THROW(box->setContentView(fresh.get()), Exception);
        EXPECT_EQ(box->contentView(), fresh);
        EXPECT_EQ(box->subviews()->count(), 1U);
    }

    TEST_F(RaisingEndOfEditing, LetsTheWindowTakeOtherContent)
    {
        const Ref<NSView> old = desk.window->contentView();
        const Ref<NSView> fresh = make<NSView>();
        const AtTheEndOfEditing raises(fault);
        EXPECT_THROW(desk.window->setContentView(fresh.get()), Exception);
        EXPECT_EQ(fresh->window(), desk.window);
        EXPECT_EQ(old->window(), nullptr);
    }

}

}
