// SPDX-License-Identifier: Apache-2.0
// Windows by the thousand, views with text nobody would write, and a user who does anything.

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "appkit/NSAlert.h"
#include "appkit/NSButton.h"
#include "appkit/NSMenu.h"
#include "appkit/NSOpenPanel.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextView.h"
#include "controls/OnOffSwitchControl.h"
#include "display/headless/RandomUser.h"
#include "foundation/NSArray.h"
#include "foundation/NSFileManager.h"
#include "runtime/NSException.h"
#include "support/Figures.h"
#include "support/HeadlessScreen.h"

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

    /// Does something ten thousand times; the first tenth of them makes what is made once and kept.
    template <class Life> void expectNothingLeft(const char* what, const Life& liveOnce)
    {
        HeadlessScreen screen;
        const int all = std::max(200, test::rounds(10000));
        for (int i = 0; i < all / 10; ++i)
            liveOnce(screen);
        const std::size_t before = test::residentBytes();
        for (int i = all / 10; i < all; ++i)
            liveOnce(screen);
        test::publish({ std::string(what) + ": growth after the first tenth", all,
            static_cast<double>(test::grownSince(before)) / 1024, "kB", 1024 });
        EXPECT_EQ(screen.display().stackingOrder().size(), 1u) << "the screen's own window";
    }

    TEST(ManyWindows, LeaveNothingBehind)
    {
        expectNothingLeft("windows", [](HeadlessScreen& screen) {
            const Ref<NSWindow> window = fullWindow();
            screen.process();
            window->close();
        });
    }

    TEST(ManyAlerts, LeaveNothingBehind)
    {
        expectNothingLeft("alerts", [](HeadlessScreen& screen) {
            const auto alert = make<NSAlert>();
            alert->setMessageText("Once more?"_ns);
            alert->layout();
            const Ref<NSWindow> window = alert->window();
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
            window->orderOut(nullptr);
        });
    }

    TEST(ManyPanels, LeaveNothingBehind)
    {
        expectNothingLeft("panels to open files", [](HeadlessScreen& screen) {
            const Ref<NSOpenPanel> panel = NSOpenPanel::cls().openPanel();
            panel->makeKeyAndOrderFront(nullptr);
            screen.process();
            panel->orderOut(nullptr);
        });
    }

    TEST(ManyMenubars, LeaveNothingBehind)
    {
        expectNothingLeft("main menus", [](HeadlessScreen& screen) {
            const auto bar = make<NSMenu>();
            for (int i = 0; i < 5; ++i) {
                const auto menu = make<NSMenu>();
                menu->addItemWithTitle_action_keyEquivalent("Item"_ns, selector<"act:">, "i"_ns);
                bar->addItemWithTitle_action_keyEquivalent("Menu"_ns, SEL {}, nullptr)
                    ->setSubmenu(menu.get());
            }
            screen.application().setMainMenu(bar.get());
            screen.process();
            screen.application().setMainMenu(nullptr);
        });
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
        const auto menu = make<NSMenu>();
        const auto item
            = menu->addItemWithTitle_action_keyEquivalent(""_ns, selector<"act:">, nullptr);
        test::Slowest slowest;
        for (const std::u16string& units : hostileTexts()) {
            const Ref<NSString> text = stringFrom(units);
            const auto showIn = [&](const auto& put) {
                slowest.ofProcessor(put);
                slowest.ofProcessor([&] { screen.process(); });
            };
            showIn([&] { window->setTitle(text.get()); });
            window->setTitle(""_ns);
            showIn([&] { field->setStringValue(text.get()); });
            EXPECT_TRUE(field->stringValue()->isEqualToString(text.get()));
            showIn([&] { field->sizeToFit(); });
            field->setStringValue(""_ns);
            showIn([&] { button->setTitle(text.get()); });
            showIn([&] { button->sizeToFit(); });
            button->setTitle(""_ns);
            showIn([&] {
                item->setTitle(text.get());
                menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 300 }, nullptr);
            });
            showIn([&] { EXPECT_GE(sizeWithAttributes(text, nullptr).height, 0); });
            showIn([&] {
                EXPECT_FALSE(NSFileManager::cls().defaultManager()->fileExistsAtPath(
                    "/nowhere/"_ns->stringByAppendingString(text.get()).get()));
            });
            field->setFrame(NSMakeRect(140, 100, 120, 22));
            button->setFrame(NSMakeRect(140, 60, 120, 24));
        }
        window->close();
        test::publish(
            { "hostile text in titles, fields, buttons, menus, measured and as a file name",
                slowest.rounds(), slowest.milliseconds(), "ms", 1000 });
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
