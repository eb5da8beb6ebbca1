// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "foundation/NSArray.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "foundation/NSNumberFormatter.h"
#include "support/ActionLog.h"
#include "support/Archives.h"
#include "support/EditingDesk.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    using test::archived;

    TEST(ViewCoding, KeepsTheSettingsOfAView)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(1, 2, 30, 40));
        view->setAlphaValue(0.5);
        view->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
        view->setAutoresizesSubviews(false);
        view->setHidden(true);
        view->setToolTip("What it is"_ns);
        view->setPostsFrameChangedNotifications(false);
        const Ref<NSView> back = archived(view);
        EXPECT_EQ(back->frame(), NSMakeRect(1, 2, 30, 40));
        EXPECT_EQ(back->bounds(), NSMakeRect(0, 0, 30, 40));
        EXPECT_EQ(back->alphaValue(), 0.5);
        EXPECT_EQ(back->autoresizingMask(), NSViewWidthSizable | NSViewMinYMargin);
        EXPECT_FALSE(back->autoresizesSubviews());
        EXPECT_TRUE(back->isHidden());
        EXPECT_EQ(utf8Of(back->toolTip().get()), "What it is");
        EXPECT_FALSE(back->postsFrameChangedNotifications());
    }
    TEST(ViewCoding, KeepsBoundsThatWereSetApart)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 30, 40));
        view->setBounds(NSMakeRect(5, 6, 60, 80));
        EXPECT_EQ(archived(view)->bounds(), NSMakeRect(5, 6, 60, 80));
    }
    TEST(ViewCoding, KeepsTheOrderOfSubviews)
    {
        const Ref<NSView> view = make<NSView>();
        for (const CGFloat x : { 1.0, 2.0, 3.0 })
            view->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(x, 0, 1, 1)).get());
        const Ref<NSView> back = archived(view);
        const Ref<NSArray> inside = back->subviews();
        ASSERT_EQ(inside->count(), 3U);
        CGFloat x = 0;
        for (NSView* subview : each<NSView>(inside)) {
            EXPECT_EQ(subview->frame().origin.x, ++x);
            EXPECT_EQ(subview->superview(), back);
        }
    }
    TEST(ViewCoding, KeepsTheOrderOfTheKeyboardWithinAnArchive)
    {
        const Ref<NSView> view = make<NSView>();
        const Ref<NSView> first = make<NSView>();
        const Ref<NSView> second = make<NSView>();
        view->addSubview(first.get());
        view->addSubview(second.get());
        first->setNextKeyView(second.get());
        second->setNextKeyView(first.get());
        const Ref<NSArray> inside = archived(view)->subviews();
        const Ref<NSView> one = cast<NSView>(inside->objectAtIndex(0));
        const Ref<NSView> two = cast<NSView>(inside->objectAtIndex(1));
        EXPECT_EQ(one->nextKeyView(), two);
        EXPECT_EQ(two->nextKeyView(), one);
    }
    TEST(ViewCoding, LeavesAKeyViewOutsideBehind)
    {
        const Ref<NSView> view = make<NSView>();
        const Ref<NSView> other = make<NSView>();
        view->setNextKeyView(other.get());
        EXPECT_EQ(archived(view)->nextKeyView(), nullptr);
    }
    TEST(ViewCoding, IsReadWhereClassesAreChecked)
    {
        const Ref<NSView> view = make<NSView>();
        const Ref<NSTextField> field = NSTextField::cls().labelWithString("Name"_ns);
        view->addSubview(field.get());
        Ref<NSError> error;
        const Ref<NSObject> back
            = NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(NSView::cls(),
                NSKeyedArchiver::cls().archivedDataWithRootObject(view.get()).get(), &error);
        ASSERT_NE(back, nullptr) << utf8Of(maybe(error)->description().get());
        const Ref<NSObject> label = cast<NSView>(back)->subviews()->firstObject();
        EXPECT_EQ(utf8Of(cast<NSTextField>(label)->stringValue().get()), "Name");
    }

    // ---- controls

    TEST(ControlCoding, KeepsCellAndTag)
    {
        const Ref<NSButton> button
            = NSButton::cls().checkboxWithTitle_target_action("Bold"_ns, nullptr, {});
        button->setTag(7);
        button->setState(NSOnState);
        button->setEnabled(false);
        const Ref<NSButton> back = archived(button);
        EXPECT_EQ(utf8Of(back->title().get()), "Bold");
        EXPECT_EQ(back->tag(), 7);
        EXPECT_EQ(back->state(), NSOnState);
        EXPECT_FALSE(back->isEnabled());
        EXPECT_EQ(back->cell()->controlView(), back);
        EXPECT_EQ(back->frame(), button->frame());
    }
    TEST(ControlCoding, KeepsATargetOfTheSameArchive)
    {
        const Ref<NSView> view = make<NSView>();
        const Ref<NSButton> button = make<NSButton>();
        view->addSubview(button.get());
        button->setTarget(view.get());
        button->setAction(selector<"display">);
        const Ref<NSView> back = archived(view);
        const Ref<NSButton> second = cast<NSButton>(back->subviews()->firstObject());
        EXPECT_EQ(second->target(), back);
        EXPECT_EQ(second->action(), selector<"display">);
    }
    TEST(ControlCoding, KeepsAnActionThatNoClassHasYet)
    {
        const Ref<NSButton> button = make<NSButton>();
        button->setAction(selector<"actionThatNobodyHasRegistered:">);
        EXPECT_EQ(archived(button)->action(), selector<"actionThatNobodyHasRegistered:">);
    }
    TEST(ControlCoding, KeepsTheFormatterOfAField)
    {
        const Ref<NSTextField> field = make<NSTextField>();
        const auto formatter = make<NSNumberFormatter>();
        formatter->setMinimumFractionDigits(2);
        field->cell()->setFormatter(formatter.get());
        const Ref<NSFormatter> back = archived(field)->cell()->formatter();
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(cast<NSNumberFormatter>(back)->minimumFractionDigits(), 2U);
    }
    TEST(ControlCoding, KeepsTheMenuOfACell)
    {
        const Ref<NSButton> button = make<NSButton>();
        const Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle("Sizes"_ns);
        cast<NSCell>(button->cell())->setMenu(menu.get());
        EXPECT_EQ(utf8Of(maybe(archived(button)->cell()->menu())->title()), "Sizes");
    }
    TEST(ViewCoding, KeepsTheMenuOfAView)
    {
        const Ref<NSView> view = make<NSView>();
        const Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle("Tools"_ns);
        menu->addItemWithTitle_action_keyEquivalent("Cut"_ns, selector<"cut:">, ""_ns);
        view->setMenu(menu.get());
        const Ref<NSMenu> back = archived(view)->menu();
        ASSERT_EQ(maybe(back)->numberOfItems(), 1);
        EXPECT_EQ(back->itemAtIndex(0)->action(), selector<"cut:">);
    }
    TEST(ControlCoding, AButtonFeelsThePointerAgain)
    {
        HeadlessScreen screen { 300, 200 };
        Ref<NSButton> button
            = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(10, 10, 100, 26)));
        button = archived(button);
        screen.window().contentView()->addSubview(button.get());
        const std::uint32_t before = screen.pixels().at(20, 200 - 22);
        screen.pointer().moveTo({ 50, 20 });
        EXPECT_NE(screen.pixels().at(20, 200 - 22), before);
    }
    TEST(ControlCoding, KeepsTheImageOfAButton)
    {
        const Ref<NSButton> button = make<NSButton>();
        button->setImage(NSImage::cls().imageNamed(NSImageNameAddTemplate).get());
        button->setImagePosition(NSImageOnly);
        const Ref<NSImage> back = archived(button)->image();
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->size(), button->image()->size());
        EXPECT_TRUE(back->isTemplate());
    }

    // ---- fields

    struct FieldCoding : testing::Test {
        Ref<NSTextField> field
            = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(NSMakeRect(1, 2, 80, 24)));
    };

    TEST_F(FieldCoding, KeepsAFieldAsItLooks)
    {
        field->setStringValue("Typed"_ns);
        field->setPlaceholderString("Name"_ns);
        field->setTextColor(NSColor::cls().redColor().get());
        field->setBackgroundColor(NSColor::cls().blueColor().get());
        field->setBezelStyle(NSTextFieldRoundedBezel);
        field->setMaximumNumberOfLines(3);
        field->setPreferredMaxLayoutWidth(70);
        field->setAllowsEditingTextAttributes(true);
        field->setFont(NSFont::cls().systemFontOfSize(19).get());
        const Ref<NSTextField> back = archived(field);
        EXPECT_EQ(utf8Of(back->stringValue().get()), "Typed");
        EXPECT_EQ(utf8Of(back->placeholderString().get()), "Name");
        EXPECT_TRUE(back->textColor()->isEqual(NSColor::cls().redColor().get()));
        EXPECT_TRUE(back->backgroundColor()->isEqual(NSColor::cls().blueColor().get()));
        EXPECT_EQ(back->bezelStyle(), NSTextFieldRoundedBezel);
        EXPECT_EQ(back->maximumNumberOfLines(), 3);
        EXPECT_EQ(back->preferredMaxLayoutWidth(), 70);
        EXPECT_TRUE(back->allowsEditingTextAttributes());
        EXPECT_TRUE(back->isEditable());
        EXPECT_TRUE(back->isBezeled());
        EXPECT_TRUE(back->drawsBackground());
        EXPECT_EQ(back->font()->pointSize(), 19);
    }
    TEST_F(FieldCoding, KeepsALabelALabel)
    {
        const Ref<NSTextField> back = archived(NSTextField::cls().labelWithString("Name"_ns));
        EXPECT_FALSE(back->isEditable());
        EXPECT_FALSE(back->isSelectable());
        EXPECT_FALSE(back->isBezeled());
        EXPECT_FALSE(back->drawsBackground());
    }
    TEST_F(FieldCoding, KeepsAttributedText)
    {
        const Ref<NSAttributedString> text
            = alloc<NSAttributedString>()->initWithString("Styled"_ns);
        field->setAttributedStringValue(text.get());
        EXPECT_TRUE(archived(field)->attributedStringValue()->isEqual(text.get()));
    }
    TEST_F(FieldCoding, KeepsANumberANumber)
    {
        field->setDoubleValue(2.5);
        const Ref<NSObject> value = archived(field)->objectValue();
        ASSERT_TRUE(maybe(value)->isKindOfClass(NSNumber::cls()));
        EXPECT_EQ(archived(field)->doubleValue(), 2.5);
    }
    TEST_F(FieldCoding, KeepsAnAttributedPlaceholder)
    {
        const Ref<NSAttributedString> text = alloc<NSAttributedString>()->initWithString("Name"_ns);
        field->setPlaceholderAttributedString(text.get());
        EXPECT_TRUE(archived(field)->placeholderAttributedString()->isEqual(text.get()));
    }
    TEST_F(FieldCoding, TakesWhatIsBeingTypedWithoutItsEditor)
    {
        EditingDesk desk;
        const Ref<NSTextField> edited = desk.add<NSTextField>(NSMakeRect(10, 10, 100, 24));
        desk.window->makeFirstResponder(edited.get());
        desk.type(u"abc");
        const Ref<NSTextField> back = archived(edited);
        EXPECT_EQ(utf8Of(back->stringValue().get()), "abc");
        EXPECT_EQ(back->subviews()->count(), 0U);
        EXPECT_NE(edited->currentEditor(), nullptr);
    }
    TEST_F(FieldCoding, ARestoredFieldIsTypedIn)
    {
        EditingDesk desk;
        const Ref<NSTextField> back = archived(field);
        desk.window->contentView()->addSubview(back.get());
        desk.click(*back, { 20, 10 });
        desk.type(u"xyz");
        EXPECT_EQ(utf8Of(back->stringValue().get()), "xyz");
    }

    // ---- scroll views

    TEST(ScrollViewCoding, KeepsDocumentScrollersAndPlace)
    {
        const Ref<NSScrollView> view
            = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, 100, 100)));
        view->setHasVerticalScroller(true);
        view->setBorderType(NSLineBorder);
        view->setDocumentView(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 80, 900)).get());
        view->contentView()->scrollToPoint({ 0, 300 });
        const Ref<NSScrollView> back = archived(view);
        ASSERT_NE(back->documentView(), nullptr);
        EXPECT_EQ(back->documentView()->frame().size.height, 900);
        EXPECT_EQ(back->documentVisibleRect(), view->documentVisibleRect());
        EXPECT_TRUE(back->hasVerticalScroller());
        EXPECT_FALSE(back->hasHorizontalScroller());
        EXPECT_EQ(back->verticalScroller()->target(), back);
        EXPECT_EQ(back->borderType(), NSLineBorder);
        EXPECT_EQ(back->subviews()->count(), view->subviews()->count());
    }

}
}
