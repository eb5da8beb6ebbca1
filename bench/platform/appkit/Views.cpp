// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cmath>

#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTrackingArea.h"
#include "appkit/NSWindow.h"
#include "controls/GWOverlayHoverView.h"
#include "controls/GWThemeFrameView.h"
#include "display/headless/HeadlessDisplay.h"
#include "quartz/CGBitmapContext.h"
#include "runtime/Table.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

// Windows full of views: drawn, moved, hit, resized. Floors are what any program must do: fill the same pixels, change the
// same numbers, look at the same rectangles.

namespace brindle::bench {

/// A square that fills itself.
class BenchTile : public NSView {
    BRINDLE_OBJECT(BenchTile, NSView)
};
template <> struct BenchTile::Methods<struct Filling> {
    static void drawRect(BenchTile& self, NSRect)
    {
        CGContextSetRGBFillColor(currentCGContext().get(), 0.2, 0.4, 0.9, 1);
        NSRectFill(self.bounds());
    }
    static void table(Builder& t) { t.methods({ { "drawRect:", imp<drawRect> } }); }
};
BRINDLE_RECORD(BenchTile, Filling)

/// Is told of the pointer and does nothing.
class BenchTracker : public NSObject {
    BRINDLE_OBJECT(BenchTracker, NSObject)
};
template <> struct BenchTracker::Methods<struct Told> {
    static void told(BenchTracker&, NSObject*) { }
    static void table(Builder& t)
    {
        t.methods({ { "mouseEntered:", imp<told> }, { "mouseExited:", imp<told> } });
    }
};
BRINDLE_RECORD(BenchTracker, Told)

namespace {

    constexpr double kSide = 20; // of a tile

    NSRect tileRect(std::size_t i, double width)
    {
        const auto columns = static_cast<std::size_t>(width / kSide);
        return NSMakeRect(static_cast<double>(i % columns) * kSide,
            static_cast<double>(i / columns) * kSide, kSide - 2, kSide - 2);
    }

    /// A window on a screen in memory, with tiles in it.
    class Stage {
    public:
        Stage(double width, double height, std::size_t tiles,
            NSWindowStyleMask style = NSBorderlessWindowMask)
        {
            auto made = std::make_unique<display::HeadlessDisplay>(
                std::vector { display::HeadlessDisplay::screenOfSize(width, height) });
            display_ = made.get();
            installDisplay(std::move(made));
            window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(0, 0, width, height), style, NSBackingStoreBuffered, true);
            for (std::size_t i = 0; i < tiles; ++i) {
                tiles_.push_back(alloc<BenchTile>()->initWithFrame(tileRect(i, width)));
                window_->contentView()->addSubview(tiles_.back().get());
            }
            window_->orderFrontRegardless();
            process();
        }
        ~Stage()
        {
            window_->close();
            installDisplay(nullptr);
        }
        Stage(const Stage&) = delete;
        Stage& operator=(const Stage&) = delete;

        void process() { NSApplication::cls().sharedApplication()->processEvents(); }
        display::HeadlessDisplay& display() { return *display_; }
        NSWindow& window() { return *window_; }
        std::vector<Ref<NSView>>& tiles() { return tiles_; }

    private:
        display::HeadlessDisplay* display_;
        Ref<NSWindow> window_;
        std::vector<Ref<NSView>> tiles_;
    };
    using StageRef = std::shared_ptr<Stage>;

    /// Fills as many tiles in bare memory.
    Sample fills(std::size_t tiles)
    {
        const auto port = quartz::makeContext(1000, 700);
        return repeated([port, tiles](std::size_t) {
            for (std::size_t i = 0; i < tiles; ++i) {
                CGContextSetRGBFillColor(port.get(), 0.2, 0.4, 0.9, 1);
                CGContextFillRect(port.get(), tileRect(i, 1000));
            }
        });
    }
    Pair drawing(std::size_t dirty)
    {
        const StageRef stage = std::make_shared<Stage>(1000, 700, 1000);
        return { repeated([stage, dirty](std::size_t round) {
                    if (dirty == 1)
                        stage->tiles()[round % 1000]->setNeedsDisplay(true);
                    else
                        stage->window().contentView()->setNeedsDisplay(true);
                    stage->window().displayIfNeeded();
                }),
            fills(dirty) };
    }

    // What the pass itself takes: the views draw without asking for memory.
    Reading allocations()
    {
        constexpr int kRounds = 100;
        Stage stage(1000, 700, 1000);
        std::size_t before = 0;
        for (int round = -1; round < kRounds; ++round) {
            stage.window().contentView()->setNeedsDisplay(true);
            stage.window().displayIfNeeded();
            if (round < 0) // what is made once
                before = allocationsMade();
        }
        return { static_cast<double>(allocationsMade() - before) / kRounds, 0 };
    }

    // ---- many views; what is counted is one view

    /// What a view of the least kind is: a rectangle and a mark.
    struct Bare {
        NSRect frame;
        bool hidden = false;
        bool dirty = false;
    };
    template <class Change, class BareChange> Pair changing(Change change, BareChange bareChange)
    {
        const StageRef stage = std::make_shared<Stage>(2000, 2000, 10000);
        const auto bare = std::make_shared<std::vector<Bare>>(10000);
        return { repeated([stage, change](std::size_t i) { change(*stage, i); }),
            repeated([bare, bareChange](std::size_t i) { bareChange(*bare, i); }) };
    }
    Pair moving()
    {
        return changing(
            [](Stage& stage, std::size_t i) {
                NSRect frame = tileRect(i % 10000, 2000);
                frame.origin.x += static_cast<double>(i / 10000 % 2);
                stage.tiles()[i % 10000]->setFrame(frame);
            },
            [](std::vector<Bare>& all, std::size_t i) {
                Bare& view = all[i % 10000];
                view.frame = tileRect(i % 10000, 2000);
                view.dirty = true;
                keep(view);
            });
    }
    Pair hiding()
    {
        return changing(
            [](Stage& stage, std::size_t i) {
                stage.tiles()[i % 10000]->setHidden(i / 10000 % 2 == 0);
            },
            [](std::vector<Bare>& all, std::size_t i) {
                Bare& view = all[i % 10000];
                view.hidden = i / 10000 % 2 == 0;
                view.dirty = true;
                keep(view);
            });
    }
    Pair addingAndRemoving()
    {
        return changing(
            [](Stage& stage, std::size_t i) {
                NSView& view = *stage.tiles()[(i * 7919) % 10000];
                view.removeFromSuperview();
                stage.window().contentView()->addSubview(&view);
            },
            [](std::vector<Bare>& all, std::size_t i) {
                const auto place = all.begin() + static_cast<std::ptrdiff_t>((i * 7919) % 10000);
                const Bare view = *place;
                all.erase(place);
                all.push_back(view);
                keep(all);
            });
    }

    // ---- the pointer

    StageRef trackedStage()
    {
        const StageRef stage = std::make_shared<Stage>(2000, 2000, 0);
        static const Ref<BenchTracker> tracker = make<BenchTracker>();
        const Ref<NSView> content = stage->window().contentView();
        for (std::size_t i = 0; i < 100000; ++i) {
            NSRect rect = tileRect(i % 10000, 2000);
            rect.origin.x += static_cast<double>(i / 10000);
            content->addTrackingArea(
                alloc<NSTrackingArea>()
                    ->initWithRect_options_owner_userInfo(rect,
                        NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, tracker.get(),
                        nullptr)
                    .get());
        }
        return stage;
    }
    NSPoint wandering(std::size_t i)
    {
        const double t = static_cast<double>(i);
        return { 1000 + 990 * std::sin(t * 0.37), 1000 + 990 * std::cos(t * 0.23) };
    }
    Pair pointing()
    {
        const StageRef stage = trackedStage();
        return { repeated([stage](std::size_t i) {
                    stage->display().movePointer(wandering(i));
                    stage->process();
                }),
            {} };
    }
    Pair hitting()
    {
        const StageRef stage = std::make_shared<Stage>(2000, 2000, 10000);
        const auto bare = std::make_shared<std::vector<NSRect>>();
        for (std::size_t i = 0; i < 10000; ++i)
            bare->push_back(tileRect(i, 2000));
        return { repeated([stage](std::size_t i) {
                    keep(stage->window().contentView()->hitTest(wandering(i)));
                }),
            repeated([bare](std::size_t i) {
                const NSPoint point = wandering(i);
                std::size_t found = bare->size();
                while (found > 0 && !NSPointInRect(point, (*bare)[found - 1]))
                    --found;
                keep(found);
            }) };
    }

    // ---- whole windows

    Pair fading()
    {
        const StageRef stage = std::make_shared<Stage>(1000, 700, 0, NSTitledWindowMask);
        const Ref<GWThemeFrameView> strip = make<GWThemeFrameView>();
        strip->setTitlebarOverlay(true);
        stage->window().contentView()->superview()->addSubview(strip.get());
        stage->process();
        return { repeated([stage, strip](std::size_t i) {
                    strip->overlayHoverView()->setAlphaValue(
                        0.2 + 0.6 * static_cast<double>(i % 60) / 60);
                    stage->window().displayIfNeeded();
                }),
            {} };
    }
    Pair resizing()
    {
        const StageRef stage = std::make_shared<Stage>(2560, 1440, 1000);
        return { repeated([stage](std::size_t i) {
                    const auto less = static_cast<double>(i % 16);
                    stage->window().setFrame_display(
                        NSMakeRect(0, 0, 2560 - less, 1440 - less), true);
                }),
            {} };
    }

    // ---- memory

    template <class T> double bytesOf()
    {
        constexpr std::size_t kCount = 1000;
        std::vector<Ref<NSObject>> all;
        all.reserve(kCount);
        make<T>(); // what is made once
        const double before = heapInUse();
        for (std::size_t i = 0; i < kCount; ++i)
            all.emplace_back(make<T>());
        return (heapInUse() - before) / kCount;
    }
    template <class T> Reading memory()
    {
        // The runtime's two words before an object and the allocator's one.
        return { bytesOf<T>(), static_cast<double>(sizeof(T)) + 24 };
    }

}

void addViews(Plan& plan)
{
    plan.time("view: window of 1,000 drawn whole", atMost(1'000'000), [] { return drawing(1000); });
    plan.time("view: one dirty of 1,000", atMost(20'000), [] { return drawing(1); });
    plan.read("view: allocations of drawing 1,000", "", atMost(10), allocations);
    plan.time("view: move one of 10,000", kNoBudget, moving);
    plan.time("view: hide one of 10,000", kNoBudget, hiding);
    plan.time("view: remove and add one of 10,000", kNoBudget, addingAndRemoving);
    plan.time("view: hit one of 10,000", kNoBudget, hitting);
    plan.time("view: pointer over 100,000 tracking areas", atMost(50'000), pointing);
    plan.time("view: a frame of the strip's fade, 1,000 x 700", atMost(2'000'000), fading);
    plan.time("view: live resize, 2,560 x 1,440", atMost(16'600'000), resizing);
    plan.read("view: bytes of one", "bytes", kNoBudget, memory<NSView>);
    plan.read("view: bytes of a button", "bytes", kNoBudget, memory<NSButton>);
}

}
