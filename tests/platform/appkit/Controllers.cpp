// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSWindowController.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Archives.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Writes down what happens to its view, and takes an action.
class LoggingController : public NSViewController {
    BRINDLE_OBJECT(LoggingController, NSViewController)

public:
    std::string log_;
    bool loadsNothing_ = false;
    int actions_ = 0;
};
template <> struct LoggingController::Methods<struct Told> {
    static void loadView(LoggingController& self)
    {
        self.log_ += "load ";
        if (!self.loadsNothing_)
            self.setView(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 120, 80)).get());
    }
    template <char... Word> static void say(LoggingController& self)
    {
        (self.log_.push_back(Word), ...);
        self.log_ += ' ';
    }
    static void act(LoggingController& self, NSObject*) { ++self.actions_; }
    static void table(Builder& t)
    {
        t.methods({
            { "loadView", imp<loadView> },
            { "viewDidLoad", imp<say<'l', 'o', 'a', 'd', 'e', 'd'>> },
            { "viewWillAppear", imp<say<'w', '+'>> },
            { "viewDidAppear", imp<say<'d', '+'>> },
            { "viewWillDisappear", imp<say<'w', '-'>> },
            { "viewDidDisappear", imp<say<'d', '-'>> },
            { "controllerAct:", imp<act> },
        });
    }
};
BRINDLE_RECORD(LoggingController, Told)

/// Makes its window in `loadWindow`.
class LoadingController : public NSWindowController {
    BRINDLE_OBJECT(LoadingController, NSWindowController)

public:
    std::string log_;
};
template <> struct LoadingController::Methods<struct Told> {
    static void will(LoadingController& self) { self.log_ += "will "; }
    static void loadWindow(LoadingController& self)
    {
        self.log_ += "load ";
        super<LoadingController, "loadWindow">(self);
    }
    static void did(LoadingController& self) { self.log_ += "did "; }
    static void table(Builder& t)
    {
        t.methods({
            { "windowWillLoad", imp<will> },
            { "loadWindow", imp<loadWindow> },
            { "windowDidLoad", imp<did> },
        });
    }
};
BRINDLE_RECORD(LoadingController, Told)

namespace {

    TEST(ViewController, MakesItsViewWhenItIsAskedForIt)
    {
        const Ref<LoggingController> controller = make<LoggingController>();
        EXPECT_FALSE(controller->isViewLoaded());
        EXPECT_EQ(controller->view()->frame().size.width, 120);
        EXPECT_TRUE(controller->isViewLoaded());
        EXPECT_EQ(controller->view(), controller->view());
        EXPECT_EQ(controller->log_, "load loaded ");
        EXPECT_EQ(controller->preferredContentSize(), (NSSize { 120, 80 }));
    }
    TEST(ViewController, HasAPlainViewOtherwise)
    {
        EXPECT_NE(make<NSViewController>()->view(), nullptr);
    }
    TEST(ViewController, RaisesWhenNoViewWasSet)
    {
        const Ref<LoggingController> controller = make<LoggingController>();
        controller->loadsNothing_ = true;
        EXPECT_THROW(controller->view(), Exception);
        controller->loadsNothing_ = false;
        EXPECT_NE(controller->view(), nullptr);
    }
    TEST(ViewController, RefusesWhatIsNoView)
    {
        EXPECT_THROW(
            make<NSViewController>()->send<"setView:">(static_cast<NSObject*>("x"_ns)), Exception);
    }
    TEST(ViewController, StandsBehindItsView)
    {
        const Ref<LoggingController> controller = make<LoggingController>();
        const Ref<NSView> parent = make<NSView>();
        parent->addSubview(controller->view().get());
        EXPECT_EQ(controller->view()->nextResponder(), controller);
        EXPECT_EQ(controller->nextResponder(), parent);
        const SEL action = sel_registerName("controllerAct:");
        EXPECT_TRUE(controller->view()->tryToPerform_with(action, nullptr));
        EXPECT_EQ(controller->actions_, 1);
        controller->view()->removeFromSuperview();
        EXPECT_EQ(controller->view()->nextResponder(), controller);
        EXPECT_EQ(controller->nextResponder(), nullptr);
    }
    TEST(ViewController, LetsGoOfAViewThatIsReplaced)
    {
        const Ref<NSViewController> controller = make<NSViewController>();
        const Ref<NSView> parent = make<NSView>();
        const Ref<NSView> old = controller->view();
        parent->addSubview(old.get());
        controller->setView(make<NSView>().get());
        EXPECT_EQ(old->nextResponder(), parent);
        EXPECT_EQ(controller->nextResponder(), nullptr);
    }
    TEST(ViewController, TakesAViewFromAnotherController)
    {
        const Ref<NSViewController> first = make<NSViewController>();
        const Ref<NSViewController> second = make<NSViewController>();
        const Ref<NSView> view = first->view();
        second->setView(view.get());
        EXPECT_FALSE(first->isViewLoaded());
        EXPECT_EQ(view->nextResponder(), second);
    }
    TEST(ViewController, IsToldWhenItsViewComesAndGoes)
    {
        HeadlessScreen screen;
        const Ref<LoggingController> controller = make<LoggingController>();
        const Ref<NSView> between = make<NSView>();
        between->addSubview(controller->view().get());
        controller->log_.clear();
        screen.window().contentView()->addSubview(between.get());
        EXPECT_EQ(controller->log_, "w+ d+ ");
        between->removeFromSuperview();
        EXPECT_EQ(controller->log_, "w+ d+ w- d- ");
    }
    TEST(ViewController, MayGoBeforeItsView)
    {
        Ref<NSView> view;
        {
            const Ref<NSViewController> controller = make<NSViewController>();
            view = controller->view();
        }
        EXPECT_EQ(view->nextResponder(), nullptr);
        make<NSView>()->addSubview(view.get());
    }
    TEST(ViewController, OwnsItsChildren)
    {
        const Ref<NSViewController> parent = make<NSViewController>();
        const Ref<NSViewController> child = make<NSViewController>();
        parent->addChildViewController(child.get());
        EXPECT_EQ(child->parentViewController(), parent);
        EXPECT_EQ(parent->childViewControllers()->count(), 1U);
        make<NSViewController>()->addChildViewController(child.get());
        EXPECT_EQ(parent->childViewControllers()->count(), 0U);
        EXPECT_EQ(child->parentViewController(), nullptr) << "its parent has gone";
        EXPECT_THROW(parent->addChildViewController(parent.get()), Exception);
        parent->addChildViewController(child.get());
        EXPECT_THROW(child->addChildViewController(parent.get()), Exception);
        EXPECT_THROW(parent->insertChildViewController_atIndex(child.get(), 7), Exception);
        EXPECT_THROW(parent->removeChildViewControllerAtIndex(1), Exception);
        parent->addChildViewController(nullptr);
        child->removeFromParentViewController();
        child->removeFromParentViewController();
        EXPECT_EQ(parent->childViewControllers()->count(), 0U);
    }
    TEST(ViewController, IsArchivedWithItsView)
    {
        const Ref<NSViewController> controller = make<NSViewController>();
        controller->setTitle("Sound"_ns);
        controller->view()->setFrame(NSMakeRect(1, 2, 3, 4));
        controller->addChildViewController(make<NSViewController>().get());
        const Ref<NSViewController> back = test::archived(controller);
        EXPECT_EQ(utf8Of(back->title().get()), "Sound");
        ASSERT_TRUE(back->isViewLoaded());
        EXPECT_EQ(back->view()->frame(), NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ(back->childViewControllers()->count(), 1U);
    }

    TEST(WindowController, OwnsAWindowAndStandsBehindIt)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = make<NSWindow>();
        const Ref<NSWindowController> controller
            = alloc<NSWindowController>()->initWithWindow(window.get());
        EXPECT_EQ(controller->window(), window);
        EXPECT_EQ(windowController(window), controller);
        EXPECT_EQ(window->nextResponder(), controller);
        EXPECT_FALSE(window->isReleasedWhenClosed());
        controller->showWindow(nullptr);
        EXPECT_TRUE(window->isVisible());
        controller->close();
        EXPECT_FALSE(window->isVisible());
    }
    TEST(WindowController, LoadsAWindowOnce)
    {
        HeadlessScreen screen;
        const Ref<LoadingController> controller
            = cast<LoadingController>(alloc<LoadingController>()->initWithWindowNibName("Main"_ns));
        EXPECT_FALSE(controller->isWindowLoaded());
        EXPECT_NE(controller->window(), nullptr);
        EXPECT_TRUE(controller->isWindowLoaded());
        EXPECT_EQ(controller->window(), controller->window());
        EXPECT_EQ(controller->log_, "will load did ");
    }
    TEST(WindowController, HasNoWindowWithoutAName)
    {
        const Ref<LoadingController> controller = make<LoadingController>();
        EXPECT_EQ(controller->window(), nullptr);
        controller->showWindow(nullptr);
        controller->close();
        controller->setDocumentEdited(true);
        EXPECT_EQ(controller->log_, "");
        EXPECT_THROW(alloc<NSWindowController>()->initWithWindowNibName(nullptr), Exception);
    }
    TEST(WindowController, TakesAWindowFromAnotherController)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = make<NSWindow>();
        const Ref<NSWindowController> first
            = alloc<NSWindowController>()->initWithWindow(window.get());
        const Ref<NSWindowController> second
            = alloc<NSWindowController>()->initWithWindow(window.get());
        EXPECT_EQ(first->window(), nullptr);
        EXPECT_EQ(windowController(window), second);
        second->setWindow(nullptr);
        EXPECT_EQ(windowController(window), nullptr);
        EXPECT_EQ(window->nextResponder(), nullptr);
    }
    TEST(WindowController, MayGoBeforeItsWindow)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = make<NSWindow>();
        alloc<NSWindowController>()->initWithWindow(window.get());
        EXPECT_EQ(windowController(window), nullptr);
        EXPECT_EQ(window->nextResponder(), nullptr);
    }
    TEST(WindowController, ShowsTheViewOfAController)
    {
        HeadlessScreen screen { 800, 600 };
        const Ref<NSWindow> window = make<NSWindow>();
        const Ref<NSWindowController> owner
            = alloc<NSWindowController>()->initWithWindow(window.get());
        const Ref<LoggingController> content = make<LoggingController>();
        content->setTitle("Sound"_ns);
        owner->setContentViewController(content.get());
        EXPECT_EQ(contentViewController(window), content);
        EXPECT_EQ(window->contentView(), content->view());
        EXPECT_EQ(window->contentView()->frame().size, (NSSize { 120, 80 }));
        EXPECT_EQ(utf8Of(window->title().get()), "Sound");
        EXPECT_EQ(content->log_, "load loaded w+ d+ ");
        owner->setContentViewController(nullptr);
        EXPECT_EQ(contentViewController(window), nullptr);
    }
    TEST(WindowController, RefusesWhatIsNoWindow)
    {
        const Ref<NSWindowController> controller = make<NSWindowController>();
        EXPECT_THROW(controller->send<"setWindow:">(static_cast<NSObject*>("x"_ns)), Exception);
    }

}
}
