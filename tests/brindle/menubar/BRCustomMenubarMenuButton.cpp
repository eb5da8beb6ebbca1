// SPDX-License-Identifier: Apache-2.0
#include "MenubarHosts.h"

#include "appkit/NSShadow.h"
#include "appkit/NSStringDrawing.h"
#include "controls/GWBackgroundColorView.h"
#include "menubar/BRCustomMenubarMenuButtonCell.h"
#include "runtime/Runtime.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {
namespace {

    using test::buttonTitled;
    using test::commandKey;
    using test::menuWithKey;

    // ---- making and size

    TEST(MenubarButton, IsAChangingSquareButtonWithItsImageAtTheLeft)
    {
        const Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
        const auto cell = cast<NSButtonCell>(button->cell());
        EXPECT_TRUE(cell->isKindOfClass(BRCustomMenubarMenuButtonCell::cls()));
        EXPECT_EQ(button->frame(), NSRect {});
        EXPECT_EQ(button->font()->pointSize(), 15);
        EXPECT_EQ(cell->highlightsBy(), NSContentsCellMask);
        EXPECT_EQ(cell->showsStateBy(), NSNoCellMask);
        EXPECT_EQ(cell->bezelStyle(), NSRegularSquareBezelStyle);
        EXPECT_EQ(cell->imagePosition(), NSImageLeft);
        EXPECT_FALSE(button->toggleButton());
        EXPECT_FALSE(button->darkMode());
    }
    TEST(MenubarButton, IsNarrowWithoutATitle)
    {
        EXPECT_EQ(buttonTitled(""_ns, nullptr)->frame().size, NSMakeSize(37, 22));
    }
    TEST(MenubarButton, IsWiderThanItsTitle)
    {
        const Ref<BRCustomMenubarMenuButton> button = buttonTitled("File"_ns, nullptr);
        const double title = size(button->attributedTitle()).width;
        EXPECT_EQ(button->frame().size, NSMakeSize(19 + title + 35, 22));
    }
    TEST(MenubarButton, KeepsItsPlaceWhenItIsSized)
    {
        const Ref<BRCustomMenubarMenuButton> button = buttonTitled(""_ns, nullptr);
        button->setFrame(NSMakeRect(12, 5, 200, 100));
        button->sizeToFit();
        EXPECT_EQ(button->frame(), NSMakeRect(12, 5, 37, 22));
    }
    TEST(MenubarButton, IsSizedWhenItComesIntoAWindow)
    {
        HeadlessScreen screen;
        const Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
        button->setTitle(""_ns);
        screen.window().contentView()->addSubview(button.get());
        EXPECT_EQ(button->frame().size, NSMakeSize(37, 22));
    }
    TEST(MenubarButton, GlowsInTheAccentColour)
    {
        const Ref<NSShadow> glow = BRCustomMenubarMenuButton::cls().onGlowShadow();
        EXPECT_EQ(glow->shadowBlurRadius(), 13.64);
        EXPECT_EQ(glow->shadowOffset(), NSSize {});
        EXPECT_EQ(glow->shadowColor()->alphaComponent(), 1);
    }

    // ---- keys

    struct MenubarButtonKeys : ::testing::Test {
        Ref<ActionLog> log = make<ActionLog>();
        Ref<BRCustomMenubarMenuButton> button
            = buttonTitled("File"_ns, menuWithKey("File"_ns, "s"_ns, log.get()).get());
        HeadlessScreen screen;
        bool isLit() { return button->cell()->isHighlighted(); }
    };
    TEST_F(MenubarButtonKeys, LightItForAMoment)
    {
        EXPECT_TRUE(button->menuKeyEquivalent(commandKey("s"_ns).get()));
        EXPECT_EQ(log->count_, 1);
        EXPECT_TRUE(isLit());
        screen.advance(0.23);
        EXPECT_TRUE(isLit());
        screen.advance(0.011);
        EXPECT_FALSE(isLit());
    }
    TEST_F(MenubarButtonKeys, LeaveItAsItIsWhenTheMenuDoesNotHaveThem)
    {
        EXPECT_FALSE(button->menuKeyEquivalent(commandKey("x"_ns).get()));
        EXPECT_FALSE(isLit());
        button->cell()->setHighlighted(true);
        EXPECT_FALSE(button->menuKeyEquivalent(commandKey("x"_ns).get()));
        EXPECT_TRUE(isLit());
    }
    TEST_F(MenubarButtonKeys, DoNotCountForDisabledItems)
    {
        button->menu()->setAutoenablesItems(false);
        button->menu()->itemAtIndex(0)->setEnabled(false);
        EXPECT_FALSE(button->menuKeyEquivalent(commandKey("s"_ns).get()));
    }
    TEST_F(MenubarButtonKeys, AreRefusedWithoutAMenuOrAnEvent)
    {
        EXPECT_FALSE(button->menuKeyEquivalent(nullptr));
        button->setMenu(nullptr);
        EXPECT_FALSE(button->menuKeyEquivalent(commandKey("s"_ns).get()));
    }
    TEST_F(MenubarButtonKeys, MayTakeTheLastOwner)
    {
        log->setReaction([&](NSObject*) { button = nullptr; });
        BRCustomMenubarMenuButton* const lent = button.get();
        EXPECT_TRUE(lent->menuKeyEquivalent(commandKey("s"_ns).get()));
        screen.advance(1);
        EXPECT_EQ(button, nullptr);
    }

    // ---- drawing

    // Pixels of a button in a green window.
    class MenubarButtonDrawing : public ::testing::Test {
    protected:
        static constexpr NSRect kFrame { { 20, 40 }, { 80, 22 } };

        MenubarButtonDrawing()
        {
            screen.window().setBackgroundColor(
                NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 0.5, 0, 1).get());
            screen.window().contentView()->addSubview(button.get());
            button->setTitle(""_ns);
            button->setImage(test::solidImage(15, 12, red.get()).get());
            button->setFrame(kFrame);
        }
        std::uint32_t pixel(int x, int y) // from the top left of the button
        {
            return screen.pixels().at(20 + x, 300 - 62 + y) & 0xFFFFFF;
        }
        static std::uint32_t wordOf(NSColor* color)
        {
            const auto part
                = [](double value) { return static_cast<std::uint32_t>(value * 255 + 0.5); };
            const Ref<NSColor> plain = color->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
            return part(plain->redComponent()) << 16 | part(plain->greenComponent()) << 8
                | part(plain->blueComponent());
        }

        HeadlessScreen screen;
        Ref<NSColor> red = NSColor::cls().colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 1);
        Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
    };

    TEST_F(MenubarButtonDrawing, CentresEveryImageInItsColumn)
    {
        // 15 points wide about 17.5, 12 high in 22.
        EXPECT_EQ(pixel(10, 5), 0xFF0000u);
        EXPECT_EQ(pixel(24, 16), 0xFF0000u);
        EXPECT_NE(pixel(9, 10), 0xFF0000u);
        EXPECT_NE(pixel(25, 10), 0xFF0000u);
        EXPECT_NE(pixel(15, 4), 0xFF0000u);
        EXPECT_NE(pixel(15, 17), 0xFF0000u);
    }
    TEST_F(MenubarButtonDrawing, SeparatesTheColumnByThinLines)
    {
        EXPECT_EQ(pixel(0, 11), 0x242424u);
        EXPECT_EQ(pixel(35, 0), 0x242424u);
        EXPECT_EQ(pixel(35, 21), 0x242424u);
        EXPECT_EQ(pixel(1, 11), 0x008000u);
        EXPECT_EQ(pixel(36, 11), 0x008000u);
    }
    TEST_F(MenubarButtonDrawing, IsFilledWhileItIsHighlighted)
    {
        button->cell()->setHighlighted(true);
        button->setNeedsDisplay(true);
        EXPECT_EQ(pixel(50, 11), wordOf(NSColor::cls().selectedMenuItemColor().get()));
        EXPECT_EQ(pixel(15, 11), 0xFFFFFFu) << "the image is white";
        EXPECT_EQ(pixel(35, 11), wordOf(NSColor::cls().selectedMenuItemColor().get()))
            << "the lines lie below the fill";
    }
    TEST_F(MenubarButtonDrawing, IsWhiteInTheDark)
    {
        button->setDarkMode(true);
        button->setNeedsDisplay(true);
        EXPECT_EQ(pixel(15, 11), 0xFFFFFFu);
        EXPECT_EQ(pixel(50, 11), 0x008000u);
    }
    TEST_F(MenubarButtonDrawing, LooksPlainAsAToggleThatIsOff)
    {
        button->setToggleButton(true);
        button->setNeedsDisplay(true);
        EXPECT_EQ(pixel(15, 11), 0xFF0000u);
        EXPECT_EQ(button->onImage(), nullptr);
    }
    TEST_F(MenubarButtonDrawing, LooksPlainAsAButtonWithAStateThatIsNoToggle)
    {
        button->setState(NSOnState);
        EXPECT_EQ(pixel(15, 11), 0xFF0000u);
    }
    TEST_F(MenubarButtonDrawing, GlowsAsAToggleThatIsOn)
    {
        button->setToggleButton(true);
        button->setState(NSOnState);
        EXPECT_EQ(pixel(15, 11), wordOf(NSColor::cls().alternateSelectedControlColor().get()));
        const std::uint32_t beside = pixel(28, 11);
        EXPECT_GT(beside & 0xFF, 0x20u) << "blue light beside the image";
        EXPECT_NE(button->onImage(), nullptr);
    }
    TEST_F(MenubarButtonDrawing, KeepsTheGlowToItself)
    {
        const auto next = screen.add<GWBackgroundColorView>(NSMakeRect(120, 40, 10, 10));
        next->setBackgroundColor(red.get());
        next->setNeedsDisplay(true);
        const std::uint32_t plain = pixel(111, 18);
        EXPECT_EQ(pixel(105, 15), 0xFF0000u);
        button->setToggleButton(true);
        button->setState(NSOnState);
        screen.window().contentView()->setNeedsDisplay(true);
        EXPECT_EQ(pixel(111, 18), plain) << "beside the next view";
    }
    TEST_F(MenubarButtonDrawing, IsWhiteInTheDarkEvenAsAToggleThatIsOn)
    {
        button->setToggleButton(true);
        button->setState(NSOnState);
        button->setDarkMode(true);
        button->setNeedsDisplay(true);
        EXPECT_EQ(pixel(15, 11), 0xFFFFFFu);
        EXPECT_EQ(button->onImage(), nullptr);
    }
    TEST_F(MenubarButtonDrawing, KeepsTheTintedImageOfTheFirstOne)
    {
        button->setDarkMode(true);
        pixel(0, 0);
        const Ref<NSImage> first = button->invertedImage();
        button->setImage(test::solidImage(4, 4, red.get()).get());
        pixel(0, 0);
        EXPECT_EQ(button->invertedImage(), first);
    }

    // ---- the title

    class MenubarButtonTitle : public ::testing::Test {
    protected:
        NSRect draw()
        {
            return cell->drawTitle_withFrame_inView(
                title.get(), NSMakeRect(0, 0, 100, 22), button.get());
        }
        std::string drawnIn() // the colour that most of what is drawn has
        {
            screen.window().contentView()->addSubview(button.get());
            button->setTitle("MMM"_ns);
            button->setFrame(NSMakeRect(0, 0, 120, 22));
            const display::Snapshot picture = screen.pixels();
            int white = 0;
            int accent = 0;
            const std::uint32_t own = 0xFFFFFF;
            for (int y = 278; y < 300; ++y) {
                for (int x = 36; x < 110; ++x) {
                    const std::uint32_t word = picture.at(x, y) & 0xFFFFFF;
                    white += word == own;
                    accent += (word & 0xFF) > 0xC0 && (word >> 16) < 0x60;
                }
            }
            return white > 8 ? "white" : accent > 20 ? "accent" : "own";
        }

        HeadlessScreen screen;
        Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
        Ref<BRCustomMenubarMenuButtonCell> cell
            = cast<BRCustomMenubarMenuButtonCell>(button->cell());
        Ref<NSAttributedString> title = alloc<NSAttributedString>()->initWithString("Title"_ns);
    };
    TEST_F(MenubarButtonTitle, StandsBehindTheColumnALittleBelowTheMiddle)
    {
        display::Snapshot ignored = screen.pixels();
        NSRect place {};
        screen.window().contentView()->lockFocus();
        place = draw();
        screen.window().contentView()->unlockFocus();
        const double height = size(*title).height;
        EXPECT_EQ(place,
            NSMakeRect(35, std::round(static_cast<float>(11 - height * 0.5)) + 2, 100, height));
    }
    TEST_F(MenubarButtonTitle, IsWhiteInTheDark)
    {
        button->setDarkMode(true);
        EXPECT_EQ(drawnIn(), "white");
    }
    TEST_F(MenubarButtonTitle, IsWhiteWhileHighlighted)
    {
        button->cell()->setHighlighted(true);
        EXPECT_EQ(drawnIn(), "white");
    }
    TEST_F(MenubarButtonTitle, HasTheAccentColourAsAToggleThatIsOn)
    {
        button->setToggleButton(true);
        button->setState(NSOnState);
        EXPECT_EQ(drawnIn(), "accent");
    }
    TEST_F(MenubarButtonTitle, HasItsOwnColourOtherwise)
    {
        screen.window().setBackgroundColor(
            NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 0.5, 0, 1).get());
        EXPECT_EQ(drawnIn(), "own");
    }
    TEST_F(MenubarButtonTitle, MayBeMissing)
    {
        title = nullptr;
        EXPECT_EQ(draw(), NSMakeRect(35, 13, 100, 0));
    }

    // ---- properties

    TEST(MenubarButton, DeclaresItsPropertiesInOrder)
    {
        unsigned count = 0;
        const std::unique_ptr<const Property*, decltype(&std::free)> list(
            class_copyPropertyList(BRCustomMenubarMenuButton::cls(), &count), &std::free);
        std::string names;
        for (unsigned i = 0; i < count; ++i)
            names += std::string(property_getName(list.get()[i])) + ' ';
        EXPECT_EQ(names, "toggleButton darkMode invertedImage onImage menu ");
    }

}
}
