// SPDX-License-Identifier: Apache-2.0
// Windows by the thousand, views with text nobody would write, and a user who does anything.

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextView.h"
#include "controls/OnOffSwitchControl.h"
#include "display/headless/RandomUser.h"
#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "support/HeadlessScreen.h"
#include "support/Memory.h"
#include "support/Rounds.h"

namespace brindle {
namespace {

    /// A titled window with a scrolled text, a field and a button, on the screen. A switch has no place in it: the page
    /// with its limits of a click outlives it by contract.
    Ref<NSWindow> fullWindow()
    {
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(20, 20, 300, 200),
            NSTitledWindowMask | NSClosableWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
        const auto scroll = alloc<NSScrollView>()->initWithFrame(NSMakeRect(10, 10, 120, 120));
        const auto text = alloc<NSTextView>()->initWithFrame(NSMakeRect(0, 0, 100, 400));
        cast<NSScrollView>(scroll)->setHasVerticalScroller(true);
        cast<NSScrollView>(scroll)->setDocumentView(cast<NSView>(text).get());
        const auto field = alloc<NSTextField>()->initWithFrame(NSMakeRect(140, 100, 120, 22));
        const auto button = alloc<NSButton>()->initWithFrame(NSMakeRect(140, 60, 120, 24));
        const Ref<NSView> content = window->contentView();
        for (const auto& view : { cast<NSView>(scroll), cast<NSView>(field), cast<NSView>(button) })
            content->addSubview(view.get());
        window->makeKeyAndOrderFront(nullptr);
        return window;
    }

    void liveOnce(HeadlessScreen& screen)
    {
        const Ref<NSWindow> window = fullWindow();
        screen.process();
        window->close();
    }

    TEST(ManyWindows, LeaveNothingBehind)
    {
        HeadlessScreen screen;
        const int all = std::max(200, test::rounds(10000));
        for (int i = 0; i < all / 10; ++i) // what is made once and kept
            liveOnce(screen);
        const std::size_t before = test::residentBytes();
        for (int i = all / 10; i < all; ++i)
            liveOnce(screen);
        EXPECT_LT(test::grownSince(before), std::size_t { 1 } << 20);
        EXPECT_EQ(screen.display().stackingOrder().size(), 1u) << "the screen's own window";
    }

    std::vector<std::u16string> hostileTexts()
    {
        std::u16string marks = u"e";
        marks.append(10000, u'\u0301');
        std::u16string alone = u"a";
        alone += static_cast<char16_t>(0xD800);
        alone += u"b";
        alone += static_cast<char16_t>(0xDC00);
        std::u16string nested;
        for (int i = 0; i < 1000; ++i)
            nested += u'\u202B';
        using namespace std::string_literals;
        const auto length = static_cast<std::size_t>(test::rounds(1 << 20));
        return { std::u16string(length, u'x'), std::u16string(length, u' '), marks, alone,
            nested + u"deep", u"end\0inside"s, u"\u05D0\u0041\u05D1\n\t\r\u2028\uFEFF\uFFFF" };
    }

    TEST(HostileTexts, ArePutIntoTitlesFieldsAndButtonsAndDrawn)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = fullWindow();
        const auto field = cast<NSTextField>(window->contentView()->subviews()->objectAtIndex(1));
        const auto button = cast<NSButton>(window->contentView()->subviews()->objectAtIndex(2));
        for (const std::u16string& units : hostileTexts()) {
            const Ref<NSString> text = stringFrom(units);
            window->setTitle(text.get());
            field->setStringValue(text.get());
            button->setTitle(text.get());
            screen.process();
            EXPECT_TRUE(field->stringValue()->isEqualToString(text.get()));
            field->sizeToFit();
            button->sizeToFit();
            screen.process();
            field->setFrame(NSMakeRect(140, 100, 120, 22));
            button->setFrame(NSMakeRect(140, 60, 120, 24));
        }
        window->close();
    }

    /// Answers whether a new window still gets what is typed into its field.
    bool isServed(HeadlessScreen& screen)
    {
        const Ref<NSWindow> window = fullWindow();
        const auto field = cast<NSTextField>(window->contentView()->subviews()->objectAtIndex(1));
        screen.process();
        screen.pointer().click({ 170, 131 });
        screen.keyboard().type(u"x");
        window->makeFirstResponder(nullptr);
        const bool isTyped = field->stringValue()->isEqualToString("x"_ns);
        window->close();
        return isTyped;
    }

    TEST(AnyUsers, DoNoHarm)
    {
        const int seeds = std::max(3, test::rounds(100));
        for (int seed = 0; seed < seeds; ++seed) {
            HeadlessScreen screen;
            const Ref<NSWindow> window = fullWindow();
            const auto onOff
                = alloc<OnOffSwitchControl>()->initWithFrame(NSMakeRect(140, 20, 80, 24));
            window->contentView()->addSubview(cast<NSView>(onOff).get());
            display::RandomUser user(screen.display(), static_cast<std::uint32_t>(seed));
            for (int i = 0; i < 1000; ++i) {
                user.act();
                screen.process();
                if (i % 50 == 0)
                    screen.advance(0.1);
                if (!window->isVisible())
                    window->makeKeyAndOrderFront(nullptr);
            }
            user.giveUp();
            screen.process();
            window->close();
            EXPECT_TRUE(isServed(screen)) << seed;
        }
    }

}
}
