// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Gallery.h"
#include "Tour.h"
#include "appkit/NSApplication.h"
#include "kit/Palette.h"

namespace {

struct Arguments {
    bool headless = false;
    bool dark = false;
    bool wrong = false;
    std::string tour;
    double scale = 1;
};

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
        else if (word == "--scale" && hasNext)
            arguments.scale = std::atof(values[++i]);
        else
            arguments.wrong = true;
    }
    if (!(arguments.scale >= 0.5 && arguments.scale <= 4))
        arguments.wrong = true;
    return arguments;
}

int open()
{
    using namespace brindle;
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    const auto controller = make<gallery::GalleryController>();
    application->setDelegate(controller.get());
    application->run();
    return 0;
}

}

int main(int count, char** values)
{
    const Arguments arguments = read(count, values);
    if (arguments.wrong || arguments.headless != !arguments.tour.empty()) {
        std::fputs("brindle-gallery [--dark]                                   opens the gallery\n"
                   "brindle-gallery --headless --tour FOLDER [--scale FACTOR]  draws it to files\n",
            stderr);
        return 2;
    }
    gallery::setDark(arguments.dark);
    if (arguments.headless)
        return gallery::Tour(arguments.tour, arguments.scale).play() ? 0 : 1;
    return open();
}
