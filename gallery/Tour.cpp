// SPDX-License-Identifier: Apache-2.0
#include "Tour.h"

#include <cstdio>
#include <filesystem>

#include "Menubar.h"
#include "ShellTour.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "kit/Card.h"
#include "kit/Chip.h"
#include "kit/Palette.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "pages/Pages.h"
#include "quartz/CGImage.h"
#include "shell/BRApplication.h"

namespace gallery {

using namespace brindle;

namespace {

    /// Answers what a chip, a button or a card is called.
    Ref<NSString> nameOf(NSView* part)
    {
        if (part->isKindOfClass(GalleryChip::cls()))
            return static_cast<GalleryChip*>(part)->title();
        if (part->isKindOfClass(NSButton::cls()))
            return static_cast<NSButton*>(part)->title();
        return part->isKindOfClass(GalleryCard::cls()) ? static_cast<GalleryCard*>(part)->heading()
                                                       : nullptr;
    }
    /// Answers the part of a name, in a view and below.
    Ref<NSView> partOf(const Ref<NSView>& view, NSString* text)
    {
        for (NSView* part : each<NSView>(view->subviews())) {
            if (text->isEqual(nameOf(part).get()))
                return part;
            if (Ref<NSView> found = partOf(part, text))
                return found;
        }
        return nullptr;
    }

}

Tour::Tour(std::string folder, double scale)
    : folder_(std::move(folder))
    , surroundings_(scale)
{
    if (!surroundings_.isReady())
        fail("cannot make a folder for settings");
    std::error_code ignored; // writing the first picture tells
    std::filesystem::create_directories(folder_, ignored);
}

bool Tour::play()
{
    const Ref<NSApplication> application = BRApplication::cls().sharedApplication();
    controller_ = make<GalleryController>();
    application->setDelegate(controller_.get());
    application->finishLaunching();
    application->activateIgnoringOtherApps(true);
    settle();
    NSUInteger index = 0;
    for (const PageEntry& page : pages()) {
        display().movePointer({ 4, 4 });
        controller_->showPage(index++); // there are more pages than digits
        settle();
        page.tour(*this);
    }
    tourShell(*this);
    return succeeded_;
}

Ref<NSView> Tour::find(const char* text)
{
    Ref<NSView> found = partOf(controller_->page(), stringFrom(text).get());
    if (!found)
        fail(std::string("there is nothing called ") + text);
    return found;
}

NSPoint Tour::onScreen(const char* text, double x, double y)
{
    const NSPoint base = maybe(find(text))->convertPoint_toView({ x, y }, nullptr);
    return controller_->window()->convertPointToScreen(base);
}

void Tour::press(const char* chip)
{
    const NSSize size = maybe(find(chip))->bounds().size;
    click(chip, size.width / 2, size.height / 2);
}

void Tour::moveTo(const char* card, double x, double y)
{
    display().movePointer(onScreen(card, x, y));
    settle();
}

void Tour::click(const char* card, double x, double y)
{
    display().click(onScreen(card, x, y));
    settle();
}

void Tour::scroll(const char* card, double lines)
{
    moveTo(card, 60, 80);
    display().scroll(0, lines);
    settle();
}

void Tour::type(std::u16string_view text)
{
    display().typeText(text);
    settle();
}

void Tour::settle(double seconds)
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    application->processEvents();
    NSRunLoop::cls().mainRunLoop()->advance(seconds);
    application->processEvents();
}

void Tour::picture(const std::string& name)
{
    const display::Snapshot shot = display().snapshot();
    const auto image
        = quartz::imageFromPixels(shot.words.data(), static_cast<std::size_t>(shot.width),
            static_cast<std::size_t>(shot.height), std::ptrdiff_t { shot.width } * 4);
    const std::string path = folder_ + "/" + name + ".png";
    if (!quartz::writePNG(image.get(), path))
        return fail("cannot write " + path);
    std::printf("%s\n", path.c_str());
}

void Tour::later(double seconds, std::function<void()> step)
{
    const Ref<NSTimer> timer = NSTimer::cls().timerWithTimeInterval_repeats_block(
        seconds, false, [step = std::move(step)](NSTimer*) { step(); });
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer.get(), NSEventTrackingRunLoopMode);
}

void Tour::followMenu(std::u16string_view keys, const std::string& name)
{
    constexpr double kStep = 0.3; // longer than a submenu takes to open
    double due = kStep;
    for (const char16_t key : keys) {
        later(due, [this, key] { display().typeText(std::u16string_view(&key, 1)); });
        due += kStep;
    }
    later(due, [this, name] { picture(name); });
    later(due + kStep, [this] { display().typeText(u"\x1B"); });
}

void Tour::contextMenuPicture(const char* card, double x, double y, const std::string& name)
{
    constexpr int kRight = 1;
    for (const bool dark : { false, true }) {
        controller_->setDark(dark);
        settle();
        followMenu(u"\uF701", name + (dark ? "-dark" : ""));
        display().click(onScreen(card, x, y), 1, kRight);
        settle();
    }
    controller_->setDark(false);
    settle();
}

void Tour::menuPicture(const char* button, std::u16string_view keys, const std::string& name)
{
    const Ref<NSString> title = stringFrom(button);
    for (NSView* view : each<NSView>(menubar().bar()->menubarViews())) {
        const bool isWanted = view->isKindOfClass(BRCustomMenubarMenuButton::cls())
            && title->isEqual(static_cast<BRCustomMenubarMenuButton*>(view)->title().get());
        if (!isWanted)
            continue;
        followMenu(keys, name);
        const NSRect place = view->window()->convertRectToScreen(
            view->convertRect_toView(view->bounds(), nullptr));
        display().click({ NSMidX(place), NSMidY(place) });
        return settle();
    }
    fail(std::string("the bar has no button called ") + button);
}

void Tour::leastPicture(const std::string& name)
{
    const Ref<NSWindow> window = controller_->window();
    const NSRect before = window->frame();
    window->setContentSize(window->contentMinSize());
    settle();
    picture(name);
    window->setFrame_display(before, true);
    settle();
}

void Tour::darkPicture(const std::string& name)
{
    // Not by the page's key: a sheet may have the keyboard.
    controller_->setDark(true);
    settle();
    picture(name);
    controller_->setDark(false);
    settle();
}

void Tour::fail(const std::string& what)
{
    std::fprintf(stderr, "brindle-gallery: %s\n", what.c_str());
    succeeded_ = false;
}

}
