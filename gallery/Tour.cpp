// SPDX-License-Identifier: Apache-2.0
#include "Tour.h"

#include <cstdio>
#include <filesystem>

#include "appkit/NSApplication.h"
#include "foundation/NSRunLoop.h"
#include "kit/Palette.h"
#include "quartz/CGImage.h"

namespace gallery {

using namespace brindle;

Tour::Tour(std::string folder, double scale)
    : folder_(std::move(folder))
{
    Clock::useVirtual();
    std::error_code ignored; // writing the first picture tells
    std::filesystem::create_directories(folder_, ignored);
    auto display = std::make_unique<display::HeadlessDisplay>(
        std::vector { display::HeadlessDisplay::screenOfSize(1280, 800, scale) });
    display_ = display.get();
    display_->setTimeSource([] { return Clock::uptime(); });
    display_->setBackground(0xFF8C9AA6);
    installDisplay(std::move(display));
}

bool Tour::play()
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    controller_ = make<GalleryController>();
    application->setDelegate(controller_.get());
    application->finishLaunching();
    application->activateIgnoringOtherApps(true);
    settle();
    playGround();
    return written_;
}

void Tour::playGround()
{
    picture("ground-light");

    display_->movePointer(onScreen(430, 200)); // into the grid
    settle();
    display_->movePointer(onScreen(400, 190));
    display_->pressButton();
    settle();
    display_->movePointer(onScreen(560, 290));
    settle();
    picture("ground-grid");
    display_->releaseButton();
    settle();

    for (int i = 0; i < 9; ++i)
        display_->typeText(u"\uF700"); // the Up arrow: higher rows
    settle();
    picture("ground-higher-rows");

    display_->click(onScreen(90, 586)); // "Count primes"
    settle();
    for (int i = 0; i < 400; ++i) { // pointer moves, faster than the timeout
        display_->movePointer(onScreen(320 + (i % 40) * 4, 500 + (i % 7)));
        settle(0.01);
    }
    settle(1);
    picture("ground-job-and-debounce");

    display_->movePointer(onScreen(560, 560));
    settle();
    display_->typeText(u"x");
    settle();
    picture("ground-exchanged");

    display_->typeText(u"d");
    settle();
    picture("ground-dark");
    display_->typeText(u"d");
    settle();

    controller_->window()->setFrame_display(NSMakeRect(80, 60, 1100, 720), true);
    settle();
    picture("ground-larger-window");
}

NSPoint Tour::onScreen(double x, double y) const
{
    const Ref<GalleryPage> page = controller_->page();
    const NSPoint base = page->convertPoint_toView({ x, y }, nullptr);
    return controller_->window()->convertPointToScreen(base);
}

void Tour::settle(double seconds)
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    application->processEvents();
    NSRunLoop::cls().mainRunLoop()->advance(seconds);
    application->processEvents();
}

void Tour::picture(const char* name)
{
    const display::Snapshot shot = display_->snapshot();
    const auto image
        = quartz::imageFromPixels(shot.words.data(), static_cast<std::size_t>(shot.width),
            static_cast<std::size_t>(shot.height), std::ptrdiff_t { shot.width } * 4);
    const std::string path = folder_ + "/" + name + ".png";
    if (quartz::writePNG(image.get(), path)) {
        std::printf("%s\n", path.c_str());
        return;
    }
    std::fprintf(stderr, "brindle-gallery: cannot write %s\n", path.c_str());
    written_ = false;
}

}
