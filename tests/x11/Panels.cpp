// SPDX-License-Identifier: Apache-2.0
#include <fstream>

#include "XDriver.h"
#include "appkit/NSAlert.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSOpenPanel.h"
#include "appkit/NSScreen.h"
#include "foundation/NSArray.h"
#include "foundation/NSURL.h"
#include "support/DefaultsFolder.h"

namespace brindle {
namespace {

    using display::becomes;

    // The server's numbers of keys.
    constexpr std::uint8_t kReturn = 36;
    constexpr std::uint8_t kEscape = 9;
    constexpr std::uint8_t kDown = 116;

    /// A user at a real server, and what ended panels have said.
    class PanelsOnX : public ::testing::Test {
    protected:
        PanelsOnX() { application->activateIgnoringOtherApps(true); }
        ~PanelsOnX() override { display::X11Test::endInstalled(display); }

        /// Does something until the panel has said this: the server may show and focus it later than we ask.
        template <class Action> bool answers(const char* expected, Action&& act)
        {
            for (int i = 0; i < 50 && log != expected; ++i) {
                act();
                becomes([&] { return log == expected; }, 20);
            }
            return log == expected;
        }
        Block<void(NSModalResponse)> keep()
        {
            return [this](NSModalResponse code) { log += std::to_string(code) + " "; };
        }
        Ref<NSAlert> showAlert()
        {
            Ref<NSAlert> alert = make<NSAlert>();
            alert->setMessageText("On a real server"_ns);
            alert->addButtonWithTitle("Go"_ns);
            alert->addButtonWithTitle("Cancel"_ns);
            alert->beginSheetModalForWindow_completionHandler(nullptr, keep());
            EXPECT_TRUE(becomes([&] { return alert->window()->isKeyWindow(); }));
            return alert;
        }

        display::Display& display = display::installX11();
        display::XDriver driver;
        Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        test::DefaultsFolder defaults;
        std::string log;
    };

    TEST_F(PanelsOnX, AnAlertIsAnsweredByKeys)
    {
        showAlert();
        EXPECT_TRUE(answers("1000 ", [&] { driver.tap(kReturn); })) << log;
        showAlert();
        EXPECT_TRUE(answers("1000 1001 ", [&] { driver.tap(kEscape); })) << log;
    }
    TEST_F(PanelsOnX, AnAlertIsAnsweredByAClick)
    {
        const Ref<NSAlert> alert = showAlert();
        const auto buttons = alert->buttons();
        const auto button = cast<NSButton>(Ref<NSObject>(buttons->objectAtIndex(1)));
        const CGFloat height = NSScreen::cls().mainScreen()->frame().size.height;
        EXPECT_TRUE(answers("1001 ", [&] {
            const NSRect place = alert->window()->convertRectToScreen(
                button->convertRect_toView(button->bounds(), nullptr));
            driver.click(static_cast<int>(NSMidX(place)), static_cast<int>(height - NSMidY(place)));
        })) << log;
    }
    TEST_F(PanelsOnX, AFileIsChosenByKeys)
    {
        const test::TemporaryFolder folder;
        for (const char* name : { "first", "second" })
            std::ofstream(folder.path() / name) << name;
        const Ref<NSOpenPanel> panel = NSOpenPanel::cls().openPanel();
        panel->setDirectoryURL(
            NSURL::cls().fileURLWithPath(stringFrom(folder.path().string()).get()).get());
        panel->beginWithCompletionHandler(keep());
        ASSERT_TRUE(becomes([&] { return panel->isKeyWindow(); }));
        EXPECT_TRUE(becomes([&] {
            if (!panel->URL())
                driver.tap(kDown);
            return panel->URL() != nullptr;
        }));
        driver.tap(kReturn);
        EXPECT_TRUE(becomes([&] { return log == "1 "; })) << log;
        panel->close();
    }

}
}
