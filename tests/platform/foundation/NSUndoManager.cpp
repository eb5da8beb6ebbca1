// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSUndoManager.h"

#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "foundation/Exceptions.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSRunLoop.h"
#include "runtime/Table.h"
#include "support/VirtualClock.h"

namespace brindle {

/// A number that registers how to undo each change.
class UndoneNumber : public NSObject {
    BRINDLE_OBJECT(UndoneNumber, NSObject)

public:
    void set(int value) { send<"setValue:with:">(value, static_cast<NSObject*>(nullptr)); }

    int value_ = 0;
    NSUndoManager* manager_ = nullptr;
};

template <> struct UndoneNumber::Methods<struct Changing> {
    static void set(UndoneNumber& self, int value, NSObject* note)
    {
        self.manager_->prepareWithInvocationTarget(&self)->send<"setValue:with:">(
            self.value_, note);
        self.value_ = value;
    }
    static void append(UndoneNumber& self, NSObject*) { self.value_ += 100; }
    static void fail(UndoneNumber&, NSObject*) { raise("Failure", "on purpose"); }
    static void table(Builder& t)
    {
        t.methods({
            { "setValue:with:", imp<set> },
            { "append:", imp<append> },
            { "fail:", imp<fail> },
        });
    }
};
BRINDLE_RECORD(UndoneNumber, Changing)

/// Takes its own actions back when it ends, as many objects do.
class UndoLeaver : public NSObject {
    BRINDLE_OBJECT(UndoLeaver, NSObject)

public:
    NSUndoManager* manager_ = nullptr;
    int* ends_ = nullptr;
};

template <> struct UndoLeaver::Methods<struct Leaving> {
    static void dealloc(UndoLeaver& self)
    {
        if (!self.manager_)
            return;
        ++*self.ends_;
        self.manager_->removeAllActionsWithTarget(&self);
    }
    static void table(Builder& t) { t.methods({ { "dealloc", imp<dealloc> } }); }
};
BRINDLE_RECORD(UndoLeaver, Leaving)

namespace {

    struct NSUndoManagerTest : testing::Test {
        NSUndoManagerTest()
        {
            manager->setGroupsByEvent(false);
            number->manager_ = manager.get();
        }
        void change(int value)
        {
            manager->beginUndoGrouping();
            number->set(value);
            manager->endUndoGrouping();
        }
        /// Makes groups whose actions are the only ones to keep objects that take themselves back.
        void keepLeavers(int groups)
        {
            for (int i = 0; i < groups; ++i) {
                auto leaver = make<UndoLeaver>();
                leaver->manager_ = manager.get();
                leaver->ends_ = &ends;
                manager->beginUndoGrouping();
                for (int action = 0; action < 3; ++action)
                    manager->registerUndoWithTarget_handler(
                        number.get(), [this, leaver](NSObject* target) {
                            manager->registerUndoWithTarget_handler(target, [leaver](NSObject*) {});
                        });
                manager->endUndoGrouping();
            }
        }
        void changeOfSomethingThatGoes(std::function<void()> undo)
        {
            const Ref<UndoneNumber> other = make<UndoneNumber>();
            manager->beginUndoGrouping();
            manager->registerUndoWithTarget_handler(other.get(), [undo](NSObject*) { undo(); });
            manager->endUndoGrouping();
        }
        std::string nameToUndo() { return utf8Of(manager->undoActionName().get()); }

        test::VirtualClock clock;
        Ref<NSUndoManager> manager = make<NSUndoManager>();
        Ref<UndoneNumber> number = make<UndoneNumber>();
        int ends = 0;
    };

    TEST_F(NSUndoManagerTest, UndoesAndRedoesAGroup)
    {
        change(1);
        change(2);
        manager->undo();
        EXPECT_EQ(number->value_, 1);
        manager->undo();
        EXPECT_EQ(number->value_, 0);
        EXPECT_FALSE(manager->canUndo());
        manager->redo();
        manager->redo();
        EXPECT_EQ(number->value_, 2);
        EXPECT_FALSE(manager->canRedo());
        manager->undo();
        EXPECT_EQ(number->value_, 1);
    }

    TEST_F(NSUndoManagerTest, TakesAGroupBackAsAWholeLastFirst)
    {
        std::string order;
        manager->beginUndoGrouping();
        for (const char* name : { "a", "b", "c" })
            manager->registerUndoWithTarget_handler(
                number.get(), [&order, name](NSObject*) { order += name; });
        manager->endUndoGrouping();
        manager->undo();
        EXPECT_EQ(order, "cba");
    }

    TEST_F(NSUndoManagerTest, UndoesInnerGroupsWithTheOuterOne)
    {
        manager->beginUndoGrouping();
        number->set(1);
        manager->beginUndoGrouping();
        number->set(2);
        manager->endUndoGrouping();
        number->set(3);
        EXPECT_EQ(manager->groupingLevel(), 1);
        manager->endUndoGrouping();
        manager->undo();
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, ANewChangeEndsRedoing)
    {
        change(1);
        manager->undo();
        change(2);
        EXPECT_FALSE(manager->canRedo());
    }

    TEST_F(NSUndoManagerTest, OpensAGroupThatClosesWithTheTurnOfTheLoop)
    {
        manager->setGroupsByEvent(true);
        number->set(1);
        number->set(2);
        EXPECT_EQ(manager->groupingLevel(), 1);
        NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
        EXPECT_EQ(manager->groupingLevel(), 0);
        number->set(3);
        NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
        manager->undo();
        EXPECT_EQ(number->value_, 2);
        manager->undo();
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, KeepsTheGroupOpenWhileTheLoopTracksThePointer)
    {
        manager->setGroupsByEvent(true);
        number->set(1);
        NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSEventTrackingRunLoopMode);
        EXPECT_EQ(manager->groupingLevel(), 1);
    }

    TEST_F(NSUndoManagerTest, UndoClosesTheOpenGroup)
    {
        manager->setGroupsByEvent(true);
        number->set(1);
        EXPECT_TRUE(manager->canUndo());
        manager->undo();
        EXPECT_EQ(number->value_, 0);
        EXPECT_TRUE(manager->canRedo());
    }

    TEST_F(NSUndoManagerTest, SendsAMessageWithItsObject)
    {
        manager->beginUndoGrouping();
        manager->registerUndoWithTarget_selector_object(number.get(), selector<"append:">, nullptr);
        manager->endUndoGrouping();
        manager->undo();
        EXPECT_EQ(number->value_, 100);
    }

    TEST_F(NSUndoManagerTest, DoesNotKeepTargets)
    {
        Ref<UndoneNumber> other = make<UndoneNumber>();
        int calls = 0;
        manager->beginUndoGrouping();
        manager->registerUndoWithTarget_handler(other.get(), [&calls](NSObject*) { ++calls; });
        number->set(5);
        manager->endUndoGrouping();
        const WeakRef<UndoneNumber> weak = other;
        other = nullptr;
        EXPECT_FALSE(weak.get());
        manager->undo();
        EXPECT_EQ(calls, 0);
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, PassesOverGroupsWhoseTargetsHaveAllGone)
    {
        manager->beginUndoGrouping();
        number->set(1);
        manager->setActionName("Number"_ns);
        manager->endUndoGrouping();
        changeOfSomethingThatGoes([] {});
        EXPECT_EQ(nameToUndo(), "Number");
        manager->undo();
        EXPECT_EQ(number->value_, 0);
        manager->redo();
        EXPECT_EQ(number->value_, 1);
    }

    TEST_F(NSUndoManagerTest, HasNothingToUndoOrRedoWhenAllTargetsHaveGone)
    {
        changeOfSomethingThatGoes([] {});
        EXPECT_FALSE(manager->canUndo());
        Ref<UndoneNumber> other = make<UndoneNumber>();
        other->manager_ = manager.get();
        manager->beginUndoGrouping();
        other->set(1);
        manager->endUndoGrouping();
        manager->undo();
        EXPECT_TRUE(manager->canRedo());
        other = nullptr;
        EXPECT_FALSE(manager->canRedo());
        EXPECT_EQ(utf8Of(manager->redoActionName().get()), "");
    }

    TEST_F(NSUndoManagerTest, LimitsOnlyTheLevelsWhoseTargetsAreThere)
    {
        manager->setLevelsOfUndo(2);
        change(1);
        change(2);
        for (int i = 0; i < 2; ++i)
            changeOfSomethingThatGoes([] {}); // which is there while its group is closed
        manager->undo();
        EXPECT_EQ(number->value_, 1);
        manager->removeAllActions();
        manager->setLevelsOfUndo(0);
        change(1);
        changeOfSomethingThatGoes([] {});
        manager->setLevelsOfUndo(1);
        EXPECT_TRUE(manager->canUndo());
    }

    TEST_F(NSUndoManagerTest, PassesOverAnOpenGroupWhoseTargetsHaveAllGone)
    {
        const auto changeAndGo = [this] {
            const Ref<NSObject> other = make<NSObject>();
            manager->registerUndoWithTarget_handler(other.get(), [](NSObject*) {});
            manager->setActionName("Gone"_ns);
        };
        manager->beginUndoGrouping();
        changeAndGo();
        EXPECT_FALSE(manager->canUndo());
        manager->endUndoGrouping();
        change(1);
        manager->setActionName("Number"_ns);
        manager->beginUndoGrouping();
        changeAndGo();
        EXPECT_TRUE(manager->canUndo());
        EXPECT_EQ(nameToUndo(), "Number");
        manager->undo();
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, LetsGoOfWhatGroupsHoldWhoseTargetsHaveGone)
    {
        const auto held = std::make_shared<int>();
        for (int i = 0; i < 10'000; ++i)
            changeOfSomethingThatGoes([held] {});
        EXPECT_LT(held.use_count(), 100);
        change(1);
        for (int i = 0; i < 10'000; ++i)
            changeOfSomethingThatGoes([held] {});
        EXPECT_LT(held.use_count(), 200);
        manager->undo();
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, ForgetsWhatConcernsATarget)
    {
        change(1);
        manager->removeAllActionsWithTarget(number.get());
        EXPECT_FALSE(manager->canUndo());
    }

    TEST_F(NSUndoManagerTest, ForgetsEverything)
    {
        change(1);
        change(2);
        manager->undo();
        manager->removeAllActions();
        EXPECT_FALSE(manager->canUndo());
        EXPECT_FALSE(manager->canRedo());
    }

    TEST_F(NSUndoManagerTest, IgnoresRegistrationsWhileDisabled)
    {
        manager->disableUndoRegistration();
        EXPECT_FALSE(manager->isUndoRegistrationEnabled());
        change(1);
        manager->enableUndoRegistration();
        EXPECT_FALSE(manager->canUndo());
    }

    TEST_F(NSUndoManagerTest, ForgetsTheOldestGroupsBeyondItsLevels)
    {
        manager->setLevelsOfUndo(2);
        for (int value = 1; value <= 5; ++value)
            change(value);
        for (int i = 0; i < 5; ++i)
            manager->undo();
        EXPECT_EQ(number->value_, 3);
    }

    TEST_F(NSUndoManagerTest, NamesActionsInMenus)
    {
        EXPECT_EQ(utf8Of(manager->undoMenuItemTitle().get()), "Undo");
        change(1);
        manager->setActionName("Typing"_ns);
        EXPECT_EQ(utf8Of(manager->undoMenuItemTitle().get()), "Undo Typing");
        manager->undo();
        EXPECT_EQ(nameToUndo(), "");
        EXPECT_EQ(utf8Of(manager->redoMenuItemTitle().get()), "Redo Typing");
        manager->redo();
        EXPECT_EQ(nameToUndo(), "Typing");
    }

    TEST_F(NSUndoManagerTest, TellsWhatHappens)
    {
        std::string told;
        const auto centre = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = centre->addObserverForName_object_queue_usingBlock(
            nullptr, manager.get(), nullptr, [&told](NSNotification* notification) {
                std::string name = utf8Of(notification->name().get());
                name = name.substr(sizeof "NSUndoManager" - 1);
                told += name.substr(0, name.find("Notification")) + " ";
            });
        change(1);
        EXPECT_EQ(
            told, "Checkpoint DidOpenUndoGroup Checkpoint WillCloseUndoGroup DidCloseUndoGroup ");
        told.clear();
        manager->undo();
        EXPECT_EQ(told.substr(0, 26), "Checkpoint WillUndoChange ");
        EXPECT_EQ(told.substr(told.size() - 14), "DidUndoChange ");
        centre->removeObserver(token.get());
    }

    TEST_F(NSUndoManagerTest, GoesOnAfterAnActionThatRaises)
    {
        change(1);
        manager->beginUndoGrouping();
        manager->registerUndoWithTarget_selector_object(number.get(), selector<"fail:">, nullptr);
        manager->endUndoGrouping();
        EXPECT_THROW(manager->undo(), Exception);
        EXPECT_FALSE(manager->isUndoing());
        EXPECT_EQ(manager->groupingLevel(), 0);
        manager->undo();
        EXPECT_EQ(number->value_, 0);
    }

    TEST_F(NSUndoManagerTest, UndoesLaterWhatSomebodyWhoWasToldPreventedByRaising)
    {
        change(1);
        const auto centre = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = centre->addObserverForName_object_queue_usingBlock(
            NSUndoManagerDidOpenUndoGroupNotification, manager.get(), nullptr,
            [](NSNotification*) { raise("Failure", "on purpose"); });
        EXPECT_THROW(manager->undo(), Exception);
        centre->removeObserver(token.get());
        EXPECT_FALSE(manager->isUndoing());
        EXPECT_EQ(manager->groupingLevel(), 0);
        ASSERT_TRUE(manager->canUndo());
        manager->undo();
        EXPECT_EQ(number->value_, 0);
        EXPECT_TRUE(manager->canRedo());
    }

    TEST_F(NSUndoManagerTest, ObjectsThatGoWithForgottenGroupsMayTakeThemselvesBack)
    {
        keepLeavers(10);
        manager->setLevelsOfUndo(1);
        EXPECT_EQ(ends, 9);
        EXPECT_TRUE(manager->canUndo());
    }

    TEST_F(NSUndoManagerTest, ObjectsThatGoWithATargetsActionsMayTakeThemselvesBack)
    {
        keepLeavers(10);
        manager->removeAllActionsWithTarget(number.get());
        EXPECT_EQ(ends, 10);
        EXPECT_FALSE(manager->canUndo());
    }

    TEST_F(NSUndoManagerTest, ObjectsThatGoWhenRedoingEndsMayTakeThemselvesBack)
    {
        keepLeavers(10);
        for (int i = 0; i < 10; ++i)
            manager->undo();
        EXPECT_EQ(ends, 0);
        EXPECT_TRUE(manager->canRedo());
        change(1);
        EXPECT_EQ(ends, 10);
        EXPECT_FALSE(manager->canRedo());
    }

    TEST_F(NSUndoManagerTest, ObjectsThatGoWithTheManagerMayTakeThemselvesBack)
    {
        keepLeavers(10);
        manager = nullptr;
        EXPECT_EQ(ends, 10);
    }

    TEST_F(NSUndoManagerTest, RaisesWhenNoGroupIsOpen)
    {
        EXPECT_THROW(manager->endUndoGrouping(), Exception);
        EXPECT_THROW(number->set(1), Exception);
        EXPECT_THROW(manager->enableUndoRegistration(), Exception);
    }

    TEST_F(NSUndoManagerTest, RaisesForUndoInNestedGroups)
    {
        manager->beginUndoGrouping();
        manager->beginUndoGrouping();
        EXPECT_THROW(manager->undo(), Exception);
        manager->endUndoGrouping();
        manager->endUndoGrouping();
    }

    TEST_F(NSUndoManagerTest, RaisesForANilTarget)
    {
        EXPECT_THROW(manager->prepareWithInvocationTarget(nullptr), Exception);
        EXPECT_THROW(
            manager->registerUndoWithTarget_selector_object(nullptr, selector<"append:">, nullptr),
            Exception);
    }

    TEST_F(NSUndoManagerTest, MayGoWhileAGroupIsOpen)
    {
        manager->setGroupsByEvent(true);
        number->set(1);
        manager = nullptr;
        EXPECT_FALSE(NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSDefaultRunLoopMode));
    }

}
}
