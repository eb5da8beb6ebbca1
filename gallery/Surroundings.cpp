// SPDX-License-Identifier: Apache-2.0
#include "Surroundings.h"

#include <cstdlib>
#include <filesystem>

#include "appkit/NSApplication.h"
#include "foundation/Clock.h"
#include "foundation/NSUserDefaults.h"
#include "kit/OpenedURLs.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kTenHours = 10 * 60 * 60;

}

Surroundings::Surroundings(double scale)
{
    Clock::useVirtual();
    Clock::setWall(Clock::wall() + kTenHours); // later than midnight, so that minutes ago is today
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("TZ", "UTC", 1);
    // mkdtemp fills in the six letters.
    std::string name = (std::filesystem::temp_directory_path() / "gallery-XXXXXX").string();
    if (mkdtemp(name.data())) {
        folder_ = name;
        for (const char* variable : { "XDG_CONFIG_HOME", "XDG_DATA_HOME", "TMPDIR" })
            setenv(variable, folder_.c_str(), 1);
    }
    keepOpenedURLs();

    auto display = std::make_unique<display::HeadlessDisplay>(
        std::vector { display::HeadlessDisplay::screenOfSize(1280, 800, scale) });
    display_ = display.get();
    display_->setTimeSource([] { return Clock::uptime(); });
    display_->setBackground(0xFF8C9AA6);
    installDisplay(std::move(display));
}

Surroundings::~Surroundings()
{
    NSUserDefaults::cls().standardUserDefaults()->synchronize();
    std::error_code ignored;
    if (!folder_.empty())
        std::filesystem::remove_all(folder_, ignored);
}

}
