// SPDX-License-Identifier: Apache-2.0
#include "menubar/BRCustomMenubar.h"

#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "display/headless/HeadlessDisplay.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSRunLoop.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

#include <cstring>

namespace brindle::bench {

namespace {

    constexpr int kButtons = 30;
    constexpr int kItems = 20;
    constexpr int kWidth = 3840;
    constexpr double kHeight = 22;

    /// The application on a screen in memory, as long as somebody holds it.
    class Screen {
    public:
        Screen()
        {
            auto made = std::make_unique<display::HeadlessDisplay>(
                std::vector { display::HeadlessDisplay::screenOfSize(kWidth, 1000, 1) });
            display_ = made.get();
            application_ = NSApplication::cls().sharedApplication();
            installDisplay(std::move(made));
            application_->activateIgnoringOtherApps(true);
            settle();
        }
        ~Screen() { installDisplay(nullptr); }
        Screen(const Screen&) = delete;
        Screen& operator=(const Screen&) = delete;

        void settle() { application_->processEvents(); }
        std::uint64_t presented() const { return display_->counters().presents; }

    private:
        display::HeadlessDisplay* display_ = nullptr; // the application's
        Ref<NSApplication> application_;
    };

    Ref<NSMenu> menuOf(int number)
    {
        Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        for (int i = 0; i < kItems; ++i)
            menu->addItemWithTitle_action_keyEquivalent("Item"_ns, SEL {}, ""_ns);
        if (number == kButtons - 1)
            menu->itemAtIndex(kItems - 1)->setKeyEquivalent("k"_ns);
        return menu;
    }

    /// A bar with its buttons; they go with it.
    class Bar {
    public:
        Bar()
            : bar_(alloc<BRCustomMenubar>()->initWithMenubarTheme_spacingMode(
                BRMenubarThemeCustom, BRMenubarSpacingNone))
        {
            bar_->load();
            for (int i = 0; i < kButtons; ++i) {
                const Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
                button->setTitle("Menu"_ns);
                button->setMenu(menuOf(i).get());
                bar_->addMenubarView(button.get());
            }
        }
        ~Bar()
        {
            views()->close();
            bar_->close();
        }
        Bar(const Bar&) = delete;
        Bar& operator=(const Bar&) = delete;

        Ref<NSWindow> views() const
        {
            return cast<NSWindow>(valueForKey(bar_, "menubarViewsWindow"_ns));
        }
        BRCustomMenubar* operator->() const { return bar_.get(); }

    private:
        Ref<BRCustomMenubar> bar_;
    };

    // The pixels of both windows, written once each: what showing them costs anybody.
    Sample pixelsOnce()
    {
        const auto words = std::make_shared<std::vector<std::uint32_t>>(
            static_cast<std::size_t>(kWidth * kHeight * 2));
        return repeated([words](std::size_t i) {
            std::memset(words->data(), static_cast<int>(i & 0xFF), words->size() * 4);
            keep(words->data());
        });
    }

    Pair buildAndShow()
    {
        const auto screen = std::make_shared<Screen>();
        return { repeated([screen](std::size_t) {
                    const Bar bar;
                    screen->settle();
                }),
            pixelsOnce() };
    }

    Pair redraw()
    {
        const auto screen = std::make_shared<Screen>();
        const auto bar = std::make_shared<Bar>();
        screen->settle();
        return { repeated([screen, bar](std::size_t) {
                    bar->views()->contentView()->setNeedsDisplay(true);
                    (*bar)->contentView()->setNeedsDisplay(true);
                    screen->settle();
                }),
            pixelsOnce() };
    }

    Pair findKey()
    {
        const auto screen = std::make_shared<Screen>();
        const auto bar = std::make_shared<Bar>();
        const Ref<NSEvent> event
            = NSEvent::cls()
                  .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                      NSKeyDown, {}, NSCommandKeyMask, 0, 0, nullptr, "j"_ns, "j"_ns, false, 0);
        return { repeated([screen, bar, event](
                              std::size_t) { keep((*bar)->performKeyEquivalent(event.get())); }),
            {} };
    }

    Reading idlePictures()
    {
        Screen screen;
        const Bar bar;
        screen.settle();
        const std::uint64_t before = screen.presented();
        for (int i = 0; i < 1000; ++i)
            screen.settle();
        return { static_cast<double>(screen.presented() - before) };
    }

    Reading growth()
    {
        Screen screen;
        for (int i = 0; i < 20; ++i) {
            const Bar bar;
            screen.settle();
        }
        const double before = heapInUse();
        for (int i = 0; i < 200; ++i) {
            const Bar bar;
            screen.settle();
        }
        return { heapInUse() - before };
    }

}

void addBars(Plan& plan)
{
    plan.time("menubar of 30 buttons built, shown, drawn and closed, beside its pixels", kNoBudget,
        buildAndShow);
    plan.time("menubar of 30 buttons drawn anew, beside its pixels", kNoBudget, redraw);
    plan.time("menubar: a key that none of 30 menus of 20 items has", atMost(20000), findKey);
    plan.read("menubar: pictures shown in 1,000 idle turns", "", atMost(0), idlePictures);
    plan.read("memory growth over 200 menubars of 30 buttons", "bytes", atMost(100000), growth);
}

}
