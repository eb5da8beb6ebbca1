// SPDX-License-Identifier: Apache-2.0
#include "inspector/BRInspector.h"

#include "appkit/NSButton.h"
#include "appkit/NSMenu.h"
#include "appkit/NSTextField.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

#include <gmock/gmock.h>

namespace brindle {

/// Notes presses and keys, and has a property of its own.
class InspectedView : public NSView {
    BRINDLE_OBJECT(InspectedView, NSView)
public:
    Ref<NSString> note_;
    int presses_ = 0;
    std::u16string keys_;
};
template <> struct InspectedView::Methods<struct Events> {
    static bool acceptsFirstResponder(InspectedView&) { return true; }
    static void mouseDown(InspectedView& self, NSEvent*) { ++self.presses_; }
    static void keyDown(InspectedView& self, NSEvent* event)
    {
        self.keys_ += event->characters()->characterAtIndex(0);
    }
    static void table(Builder& t)
    {
        t.properties({ property<&InspectedView::note_>("note", copied, nonatomic) });
        t.methods({
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "mouseDown:", imp<mouseDown> },
            { "keyDown:", imp<keyDown> },
        });
    }
};
BRINDLE_RECORD(InspectedView, Events)

namespace {

    using ::testing::HasSubstr;
    using ::testing::Not;

    struct Inspector : ::testing::Test {
        Inspector()
        {
            screen.window().makeKeyAndOrderFront(nullptr);
            view = screen.add<InspectedView>(NSMakeRect(500, 600, 100, 50));
            view->note_ = "seen"_ns;
            screen.window().makeFirstResponder(view.get());
            inspector->setEnabled(true);
        }
        ~Inspector() override
        {
            inspector->setEnabled(false);
            inspector->inspectObject(nullptr);
        }
        void pressKey() { screen.keyboard().press(u'i', NSCommandKeyMask | NSAlternateKeyMask); }
        void click(NSPoint place) { screen.pointer().click(place); }
        std::string tree() { return utf8Of(inspector->treeDescription()); }
        std::string details() { return utf8Of(inspector->detailDescription()); }

        HeadlessScreen screen { 900, 700 };
        Ref<InspectedView> view;
        Ref<BRInspector> inspector = BRInspector::cls().sharedInspector();
    };

}

TEST_F(Inspector, OpensAndClosesByItsKey)
{
    pressKey();
    EXPECT_TRUE(inspector->isVisible());
    EXPECT_TRUE(inspector->isPicking());
    pressKey();
    EXPECT_FALSE(inspector->isVisible());
    EXPECT_FALSE(inspector->isPicking());
}

TEST_F(Inspector, LeavesItsKeyToTheApplicationWhileItIsOff)
{
    inspector->setEnabled(false);
    pressKey();
    EXPECT_FALSE(inspector->isVisible());
    EXPECT_EQ(view->keys_, u"i");
}

TEST_F(Inspector, HandsOtherKeysOn)
{
    screen.keyboard().press(u'x');
    EXPECT_EQ(view->keys_, u"x");
}

TEST_F(Inspector, SwitchingItOffClosesIt)
{
    inspector->show();
    inspector->setEnabled(false);
    EXPECT_FALSE(inspector->isVisible());
}

TEST_F(Inspector, PicksTheViewUnderThePointerWithoutPressingIt)
{
    pressKey();
    click({ 550, 625 });
    EXPECT_EQ(inspector->inspectedObject().get(), view.get());
    EXPECT_EQ(view->presses_, 0);
    EXPECT_FALSE(inspector->isPicking());
}

TEST_F(Inspector, LetsPressesThroughWhenItDoesNotPick)
{
    inspector->show();
    click({ 550, 625 });
    EXPECT_EQ(view->presses_, 1);
}

TEST_F(Inspector, EscapeEndsPickingAndReachesNobody)
{
    pressKey();
    screen.window().makeKeyAndOrderFront(nullptr);
    screen.keyboard().press(u'\x1b');
    EXPECT_FALSE(inspector->isPicking());
    EXPECT_TRUE(inspector->isVisible());
    EXPECT_EQ(view->keys_, u"");
}

TEST_F(Inspector, PicksOnlyWhileItIsVisible)
{
    inspector->setPicking(true);
    EXPECT_FALSE(inspector->isPicking());
}

TEST_F(Inspector, ListsTheViewsOfAllWindowsButItsOwn)
{
    inspector->show();
    inspector->inspectObject(view.get());
    EXPECT_THAT(tree(), HasSubstr("InspectedView  {{500, 600}, {100, 50}}\n"));
    EXPECT_THAT(tree(), Not(HasSubstr("Inspector”")));
}

TEST_F(Inspector, IndentsViewsByTheirDepth)
{
    const Ref<NSTextField> inner = NSTextField::cls().labelWithString("in"_ns);
    view->addSubview(inner.get());
    inspector->reload();
    const std::string text = tree();
    const auto indentOf = [&](const char* name) {
        const std::size_t place = text.find(name);
        return place - text.rfind('\n', place) - 1;
    };
    EXPECT_EQ(indentOf("NSTextField"), indentOf("InspectedView") + 3);
}

TEST_F(Inspector, ShowsPropertiesOfEveryClassByTheirValues)
{
    inspector->inspectObject(view.get());
    EXPECT_THAT(details(), HasSubstr("class: InspectedView : NSView : NSResponder : NSObject\n"));
    EXPECT_THAT(details(), HasSubstr("Properties of InspectedView\nnote: seen\n"));
    EXPECT_THAT(details(), HasSubstr("Properties of NSView\n"));
    EXPECT_THAT(details(), HasSubstr("toolTip: nil\n"));
}

TEST_F(Inspector, ShowsTheResponderChain)
{
    inspector->inspectObject(view.get());
    EXPECT_THAT(details(), HasSubstr("Responder chain\n1: InspectedView\n2: "));
    EXPECT_THAT(details(), HasSubstr(": NSWindow\n"));
}

TEST_F(Inspector, ShowsTheKeyEquivalentsOfMenusAndButtons)
{
    const Ref<NSMenu> bar = make<NSMenu>();
    const Ref<NSMenu> file = make<NSMenu>();
    file->addItemWithTitle_action_keyEquivalent("Open"_ns, selector<"open:">, "o"_ns);
    bar->addItemWithTitle_action_keyEquivalent("File"_ns, {}, ""_ns)->setSubmenu(file.get());
    screen.application().setMainMenu(bar.get());
    const auto button = screen.add<NSButton>(NSMakeRect(0, 0, 80, 24));
    button->setTitle("Fine"_ns);
    button->setKeyEquivalent("\r"_ns);
    inspector->inspectObject(view.get());
    screen.application().setMainMenu(nullptr);
    EXPECT_THAT(details(), HasSubstr("Command-o: Open\n"));
    EXPECT_THAT(details(), HasSubstr("Return: Fine\n"));
}

TEST_F(Inspector, SaysOfOtherObjectsWhatIsTheSameInEveryRun)
{
    view->setWantsLayer(true);
    inspector->inspectObject(view.get());
    EXPECT_THAT(details(), HasSubstr("layer: <CALayer>"));
}

TEST_F(Inspector, CutsLongValuesAndKeepsThemInOneLine)
{
    view->note_ = stringFrom("a\nb" + std::string(1000, 'x'));
    inspector->inspectObject(view.get());
    EXPECT_THAT(details(), HasSubstr("note: a bx"));
    EXPECT_THAT(details(), HasSubstr("x…\n"));
}

TEST_F(Inspector, FramesWhatIsInspectedAndFollowsIt)
{
    inspector->show();
    inspector->inspectObject(view.get());
    const auto before = screen.pixels();
    view->setFrameOrigin({ 760, 630 });
    screen.pointer().moveTo({ 5, 690 });
    const auto after = screen.pixels();
    const auto pixel
        = [](const display::Snapshot& picture, int x, int y) { return picture.at(x, 700 - 1 - y); };
    EXPECT_NE(pixel(before, 550, 651), pixel(after, 550, 651)); // the upper edge
    EXPECT_EQ(pixel(before, 550, 651), pixel(after, 810, 681));
    EXPECT_EQ(pixel(before, 550, 625), pixel(after, 810, 655)); // nothing lies over the view
}

TEST_F(Inspector, ForgetsAViewThatHasGone)
{
    inspector->inspectObject(view.get());
    view->removeFromSuperview();
    screen.window().makeFirstResponder(nullptr);
    view = nullptr;
    screen.process();
    EXPECT_FALSE(inspector->inspectedObject());
}

TEST_F(Inspector, InspectsNothingButViewsAndWindows)
{
    inspector->inspectObject("text"_ns);
    EXPECT_FALSE(inspector->inspectedObject());
    EXPECT_EQ(details(), "");
    inspector->inspectObject(&screen.window());
    EXPECT_EQ(inspector->inspectedObject().get(), &screen.window());
}

TEST_F(Inspector, ChoosingARowInspectsItsView)
{
    inspector->show();
    screen.process();
    for (NSView* root : each<NSView>(inspector->window()->contentView()->subviews()))
        root->setNeedsDisplay(true);
    const NSRect frame = inspector->window()->frame();
    click({ frame.origin.x + 60, NSMaxY(frame) - 80 });
    EXPECT_TRUE(inspector->inspectedObject());
}

TEST_F(Inspector, ReadsTreesOfAnyDepth)
{
    Ref<NSView> parent = view;
    for (int i = 0; i < 3000; ++i) {
        const Ref<NSView> child = make<NSView>();
        parent->addSubview(child.get());
        parent = child;
    }
    inspector->inspectObject(view.get());
    EXPECT_TRUE(inspector->inspectedObject());
}

}
