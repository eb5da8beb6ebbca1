// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextField.h"

#include <gtest/gtest.h>

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

namespace {

    using test::AtTheEndOfEditing;

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

}

}
