// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSPopUpButton.h"
#include "support/Golden.h"
#include "support/OpenMenu.h"

namespace brindle {

namespace {

    /// Sets the appearance for as long as it lives.
    class InAppearance {
    public:
        explicit InAppearance(appkit::Appearance appearance)
            : before_(appkit::appearance())
        {
            appkit::setAppearance(appearance);
        }
        ~InAppearance() { appkit::setAppearance(before_); }
        InAppearance(const InAppearance&) = delete;
        InAppearance& operator=(const InAppearance&) = delete;

    private:
        appkit::Appearance before_;
    };

    Ref<NSMenuItem> add(NSMenu& menu, NSString* title, NSString* key = nullptr)
    {
        return menu.addItemWithTitle_action_keyEquivalent(title, selector<"act:">, key);
    }

    /// A menu with everything that an item can show.
    Ref<NSMenu> fullMenu()
    {
        Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        add(*menu, "New Window"_ns, "n"_ns);
        add(*menu, "Save As…"_ns, "S"_ns);
        add(*menu, "Close"_ns, "w"_ns)->setEnabled(false);
        menu->addItem(NSMenuItem::cls().separatorItem().get());
        add(*menu, "Show Ruler"_ns, "r"_ns)->setState(NSOnState);
        add(*menu, "Wrap Lines"_ns)->setState(NSMixedState);
        const Ref<NSMenuItem> more = add(*menu, "Recent Documents"_ns);
        const Ref<NSMenuItem> picture = add(*menu, "Settings"_ns, ","_ns);
        picture->setImage(NSImage::cls().imageNamed("NSActionTemplate"_ns).get());
        const Ref<NSMenuItem> inner = add(*menu, "Indented"_ns, "\x08"_ns);
        inner->setIndentationLevel(1);
        inner->setKeyEquivalentModifierMask(NSCommandKeyMask | NSAlternateKeyMask);
        const Ref<NSMenu> recent = make<NSMenu>();
        recent->setAutoenablesItems(false);
        add(*recent, "Letter to the printer.txt"_ns);
        add(*recent, "Plan of the house.png"_ns);
        more->setSubmenu(recent.get());
        return menu;
    }

    Ref<CGImage> pictureOf(HeadlessScreen& screen)
    {
        screen.window().displayIfNeeded();
        for (const Ref<NSWindow>& window : menuWindows())
            window->displayIfNeeded();
        const display::Snapshot shot = screen.display().snapshot();
        return quartz::imageFromPixels(shot.words.data(), static_cast<std::size_t>(shot.width),
            static_cast<std::size_t>(shot.height), static_cast<std::ptrdiff_t>(shot.width) * 4);
    }

    void expectMenus(const std::string& name, appkit::Appearance appearance)
    {
        const InAppearance dressed(appearance);
        for (const int scale : { 1, 2 }) {
            HeadlessScreen screen { 440, 290, static_cast<double>(scale) };
            MenuScript script(screen);
            const Ref<NSMenu> menu = fullMenu();
            Ref<CGImage> picture;
            script.then([&] { screen.display().movePointer({ 60, 132 }); }).wait(0.5);
            script.then([&] { picture = pictureOf(screen); }).key(0x1B);
            menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 24, 270 }, nullptr);
            EXPECT_TRUE(test::isGolden(picture.get(), name + (scale == 2 ? "@2x" : "")));
        }
    }

    TEST(MenuLooks, ByDay) { expectMenus("menu-light", appkit::Appearance::light); }
    TEST(MenuLooks, ByNight) { expectMenus("menu-dark", appkit::Appearance::dark); }

    void expectButtons(const std::string& name, appkit::Appearance appearance)
    {
        const InAppearance dressed(appearance);
        for (const int scale : { 1, 2 }) {
            HeadlessScreen screen { 300, 110, static_cast<double>(scale) };
            for (int i = 0; i < 4; ++i) {
                const Ref<NSPopUpButton> button = alloc<NSPopUpButton>()->initWithFrame_pullsDown(
                    NSMakeRect(10 + 145 * (i % 2), 70 - 50 * (i / 2), 130, 26), i % 2 == 1);
                button->addItemWithTitle(i < 2 ? "Everything"_ns : "A title that is too long"_ns);
                button->setEnabled(i != 3);
                screen.window().contentView()->addSubview(button.get());
            }
            EXPECT_TRUE(test::isGolden(pictureOf(screen).get(), name + (scale == 2 ? "@2x" : "")));
        }
    }

    TEST(PopUpButtonLooks, ByDay) { expectButtons("popup-light", appkit::Appearance::light); }
    TEST(PopUpButtonLooks, ByNight) { expectButtons("popup-dark", appkit::Appearance::dark); }

    TEST(MenuLooks, ALongMenuHasArrows)
    {
        HeadlessScreen screen { 240, 160 };
        MenuScript script(screen);
        const Ref<NSMenu> menu = make<NSMenu>();
        menu->setAutoenablesItems(false);
        for (int i = 0; i < 30; ++i)
            add(*menu, stringFrom("Item " + std::to_string(i)).get());
        Ref<CGImage> picture;
        script.move({ 80, 80 }).scroll(-60).then([&] { picture = pictureOf(screen); }).key(0x1B);
        menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 24, 150 }, nullptr);
        EXPECT_TRUE(test::isGolden(picture.get(), "menu-long"));
    }

}

}
