// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "Gallery.h"
#include "Options.h"
#include "Soak.h"
#include "Tour.h"
#include "shell/BRApplication.h"

namespace {

struct Arguments {
    bool headless = false;
    bool dark = false;
    bool wrong = false;
    std::string tour;
    double scale = 1;
    double soak = 0; // seconds
    std::uint32_t seed = 1;
    bool shadow = false;
    std::optional<brindle::BRMenubarTheme> theme;
    std::optional<brindle::BRMenubarSpacing> spacing;
};

void readTheme(const std::string& word, Arguments& arguments)
{
    arguments.theme
        = word == "overlay" ? brindle::BRMenubarThemeOverlay : brindle::BRMenubarThemeCustom;
    arguments.wrong |= word != "overlay" && word != "custom";
}

void readSpacing(const std::string& word, Arguments& arguments)
{
    arguments.spacing
        = word == "none" ? brindle::BRMenubarSpacingNone : brindle::BRMenubarSpacingStandard;
    arguments.wrong |= word != "none" && word != "standard";
}

Arguments read(int count, char** values)
{
    Arguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string word = values[i];
        const bool hasNext = i + 1 < count;
        if (word == "--headless")
            arguments.headless = true;
        else if (word == "--dark")
            arguments.dark = true;
        else if (word == "--tour" && hasNext)
            arguments.tour = values[++i];
        else if (word == "--soak" && hasNext)
            arguments.soak = std::atof(values[++i]);
        else if (word == "--seed" && hasNext)
            arguments.seed = static_cast<std::uint32_t>(std::strtoul(values[++i], nullptr, 10));
        else if (word == "--scale" && hasNext)
            arguments.scale = std::atof(values[++i]);
        else if (word == "--shadow")
            arguments.shadow = true;
        else if (word == "--theme" && hasNext)
            readTheme(values[++i], arguments);
        else if (word == "--spacing" && hasNext)
            readSpacing(values[++i], arguments);
        else
            arguments.wrong = true;
    }
    if (!(arguments.scale >= 0.5 && arguments.scale <= 4))
        arguments.wrong = true;
    return arguments;
}

/// What is said on the command line goes before what was chosen the last time.
void choose(const Arguments& arguments)
{
    gallery::GalleryOptions& options = gallery::options();
    options.isDark_ |= arguments.dark;
    options.hasAppearance_ |= arguments.dark;
    options.hasShadow_ |= arguments.shadow;
    options.theme_ = arguments.theme.value_or(static_cast<brindle::BRMenubarTheme>(options.theme_));
    options.spacing_
        = arguments.spacing.value_or(static_cast<brindle::BRMenubarSpacing>(options.spacing_));
}

int open(const Arguments& arguments)
{
    using namespace brindle;
    const Ref<NSApplication> application = BRApplication::cls().sharedApplication();
    choose(arguments);
    const auto controller = make<gallery::GalleryController>();
    application->setDelegate(controller.get());
    application->run();
    return 0;
}

int play(const Arguments& arguments)
{
    gallery::Tour tour(arguments.tour, arguments.scale); // with options of its own
    choose(arguments);
    return tour.play() ? 0 : 1;
}

int soak(const Arguments& arguments)
{
    gallery::Soak soak(arguments.soak, arguments.seed); // with options of its own
    choose(arguments);
    return soak.run() ? 0 : 1;
}

}

int main(int count, char** values)
{
    const Arguments arguments = read(count, values);
    if (arguments.wrong || arguments.headless != (arguments.soak > 0 || !arguments.tour.empty())) {
        std::fputs(
            "brindle-gallery [--dark] [BAR]                                    opens the gallery\n"
            "brindle-gallery --headless --tour FOLDER [--scale FACTOR] [BAR]  draws it to files\n"
            "brindle-gallery --headless --soak SECONDS [--seed N]             does anything to it\n"
            "BAR: --theme custom|overlay  --shadow  --spacing standard|none\n",
            stderr);
        return 2;
    }
    if (arguments.soak > 0)
        return soak(arguments);
    return arguments.headless ? play(arguments) : open(arguments);
}
