// SPDX-License-Identifier: Apache-2.0
#include "Soak.h"

#include <algorithm>
#include <cstdio>

#include <malloc.h>
#include <unistd.h>

#include "Menubar.h"
#include "appkit/NSApplication.h"
#include "appkit/ScriptedAnswers.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSLog.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "pages/Pages.h"
#include "quartz/DrawingMemory.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "shell/BRApplication.h"

namespace gallery {

using namespace brindle;

/// The gallery of somebody who cannot quit it.
class SoakController : public GalleryController {
    BRINDLE_OBJECT(SoakController, GalleryController)
};
template <> struct SoakController::Methods<struct Staying> {
    static NSApplicationTerminateReply shouldTerminate(SoakController&, NSApplication*)
    {
        return NSTerminateCancel;
    }
    static void table(Builder& t)
    {
        t.methods({ { "applicationShouldTerminate:", imp<shouldTerminate> } });
    }
};
BRINDLE_RECORD(SoakController, Staying)

namespace {

    constexpr double kPause = 0.02; // virtual seconds between two actions
    constexpr NSRect kFrame { { 60, 40 }, { 1080, 700 } };
    constexpr std::uint64_t kActionsAPage = 400;
    constexpr std::uint64_t kActionsBeside = 4000; // a panel that a page opened may be modal
    constexpr NSUInteger kMeasuredPage = 0; // pages do not hold the same
    constexpr std::uint64_t kMostEndings = 2000;
    constexpr unsigned kHangSeconds = 60;
    constexpr std::size_t kMostGrowth = std::size_t { 24 } << 20;
    constexpr std::size_t kMostWindows = 200;

    /// Answers what is asked for and not given back, but for what drawing keeps in bounded memory. What the process holds
    /// says less: it has holes.
    std::size_t usedBytes()
    {
        const struct mallinfo2 heap = mallinfo2();
        const std::size_t held = heap.uordblks + heap.hblkhd; // 0 where the allocator does not tell
        return held - std::min(held, drawingMemoryInUse());
    }

    /// Answers whether every view below knows its superview and its window.
    bool isSound(NSView& view, NSWindow& window)
    {
        if (view.window() != &window)
            return false;
        for (NSView* below : each<NSView>(view.subviews())) {
            if (below->superview() != &view || !isSound(*below, window))
                return false;
        }
        return true;
    }

    Ref<NSTimer> repeat(std::initializer_list<NSString*> modes, std::function<void()> step)
    {
        const Ref<NSTimer> timer = NSTimer::cls().timerWithTimeInterval_repeats_block(
            kPause, true, [step = std::move(step)](NSTimer*) { step(); });
        for (NSString* mode : modes)
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer.get(), mode);
        return timer;
    }

}

Soak::Soak(double seconds, std::uint32_t seed)
    : seconds_(seconds)
    , seed_(seed)
    , user_(surroundings_.display(), seed)
{
}

bool Soak::run()
{
    if (!surroundings_.isReady()) {
        std::fputs("brindle-gallery: cannot make a folder for settings\n", stderr);
        return false;
    }
    setLogSink([](NSString*) {}); // what pages write down by the thousand
    // A panel would let the user make folders anywhere.
    scripted::answerPanels([](NSSavePanel*) { return Ref<NSArray>(); });
    const Ref<NSApplication> application = BRApplication::cls().sharedApplication();
    controller_ = make<SoakController>();
    application->setDelegate(controller_.get());
    begun_ = std::chrono::steady_clock::now();
    const auto acting
        = repeat({ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode },
            [this] { step(); });
    // Only the outermost loop runs this one: when it does after the end, every menu, sheet and drag has ended too.
    const auto ending = repeat({ NSDefaultRunLoopMode }, [&] {
        if (isOver() && endings_ > 0)
            application->stop(nullptr);
    });
    while (!isOver()) {
        try {
            application->run();
        } catch (const Exception& exception) {
            complain("raised " + utf8Of(exception.get()->reason()));
        }
    }
    acting->invalidate();
    ending->invalidate();
    look();
    controller_->showPage(kMeasuredPage);
    alarm(0);
    std::printf("soak: seed %u, %llu actions in %.0f s, memory %+.1f MiB, %+.0f kB an hour, %s\n",
        seed_, static_cast<unsigned long long>(actions_), elapsed(),
        (static_cast<double>(usedBytes()) - static_cast<double>(warm_)) / (1 << 20),
        kilobytesAnHour(), complaint_.empty() ? "nothing wrong" : complaint_.c_str());
    return complaint_.empty();
}

void Soak::step()
{
    alarm(kHangSeconds); // a hang ends the process by the signal
    if (isOver()) {
        user_.giveUp();
        if (++endings_ == kMostEndings)
            complain("something does not end by Escape");
        if (endings_ > kMostEndings)
            NSApplication::cls().sharedApplication()->abortModal();
        return;
    }
    if (actions_ % kActionsAPage == 0) {
        bringBack();
        look();
    }
    ++actions_;
    rememberPage();
    user_.act();
}

void Soak::bringBack()
{
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    application->unhide(nullptr);
    application->activateIgnoringOtherApps(true);
    const Ref<NSWindow> window = controller_->window();
    if (!window)
        return;
    window->deminiaturize(nullptr);
    window->setFrame_display(kFrame, false); // memory is compared; a window's is by its size
    window->makeKeyAndOrderFront(nullptr);
    const NSUInteger turn = actions_ / kActionsAPage;
    if (!window->attachedSheet())
        controller_->showPage(turn % pages().size());
    if (turn >= 2 * pages().size() && controller_->pageIndex() == kMeasuredPage) {
        tidyUp();
        lookAtMemory();
    }
}

void Soak::tidyUp()
{
    const Ref<NSArray> windows = NSApplication::cls().sharedApplication()->windows();
    for (NSWindow* window : each<NSWindow>(windows)) {
        if (window != controller_->window().get() && window->styleMask() & NSClosableWindowMask)
            window->close();
    }
    menubar().show(); // anew, with no buttons but its own
}

void Soak::look()
{
    const Ref<NSArray> windows = NSApplication::cls().sharedApplication()->windows();
    for (NSWindow* window : each<NSWindow>(windows)) {
        const Ref<NSView> root = maybe(window->contentView())->superview();
        if (!root)
            continue;
        if (!isSound(*root, *window))
            complain("a view does not know where it is");
        for (NSView* part : each<NSView>(root->subviews()))
            rememberPart(*part);
    }
    if (windows->count() > kMostWindows)
        complain("windows pile up");
    lookForOldPages();
    lookForOldParts();
}

void Soak::rememberPart(NSView& view)
{
    const auto known
        = std::ranges::find(parts_, &view, [](const Seen& part) { return part.view.get().get(); });
    if (known == parts_.end())
        parts_.push_back({ &view, actions_ });
    else
        known->action = actions_;
}

void Soak::lookForOldParts()
{
    std::erase_if(parts_, [](const Seen& part) { return !part.view.get(); });
    for (const Seen& part : parts_) {
        const Ref<NSView> view = part.view.get();
        if (!view->window() && actions_ - part.action > kActionsBeside)
            complain(utf8Of(NSStringFromClass(view->classObject())) + " stays after its window");
    }
}

void Soak::rememberPage()
{
    const Ref<GalleryPage> page = controller_->page();
    if (!page || page == page_.get())
        return;
    page_ = page;
    seen_.push_back({ page.get(), actions_ });
    for (NSView* part : each<NSView>(page->subviews()))
        seen_.push_back({ part, actions_ });
}

void Soak::lookAtMemory()
{
    if (warm_ == 0)
        warm_ = usedBytes();
    // In the first half what is bounded fills: tables of messages sent, formats, fonts.
    if (const double quarter = 4 * elapsed() / seconds_; quarter >= 2) {
        std::size_t& least = least_[quarter < 3 ? 0 : 1];
        least = std::min(least, usedBytes());
    }
    if (usedBytes() > warm_ + kMostGrowth)
        complain("memory grows");
}

void Soak::lookForOldPages()
{
    std::erase_if(seen_, [](const Seen& seen) { return !seen.view.get(); });
    const Ref<NSView> oldest = seen_.empty() ? nullptr : seen_.front().view.get();
    if (oldest && !oldest->window() && actions_ - seen_.front().action > kActionsBeside)
        complain(utf8Of(NSStringFromClass(oldest->classObject())) + " stays after its page");
}

void Soak::complain(const std::string& what)
{
    if (complaint_.empty())
        complaint_ = what + " after action " + std::to_string(actions_);
}

double Soak::kilobytesAnHour() const
{
    if (least_[0] == kNone || least_[1] == kNone)
        return 0;
    const double grown = static_cast<double>(least_[1]) - static_cast<double>(least_[0]);
    const double hours = static_cast<double>(actions_) / 4 * kPause / 3600;
    return grown / 1024 / hours;
}

double Soak::elapsed() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun_).count();
}

}
