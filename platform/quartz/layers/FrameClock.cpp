// SPDX-License-Identifier: Apache-2.0
#include "FrameClock.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "AllServedPrivate.h"
#include "MediaTiming.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"

namespace brindle::quartz {

namespace {

    constexpr double kNever = std::numeric_limits<double>::infinity();
    // Seconds. Time that a timer rounds to nothing never passes where time stands still while something is due.
    constexpr double kLeastDelay = 1e-6;

    class FrameClock {
    public:
        static FrameClock& shared()
        {
            static auto* const clock = new FrameClock; // things may move while the process ends
            return *clock;
        }

        void add(std::shared_ptr<FrameClient> client)
        {
            keep(std::move(client));
            wakeAt(CACurrentMediaTime());
        }

    private:
        void wakeAt(double when)
        {
            if (when >= due_)
                return;
            due_ = when;
            if (timer_)
                timer_->invalidate();
            const double delay = std::max(when - CACurrentMediaTime(), 0.0);
            timer_ = NSTimer::cls().timerWithTimeInterval_repeats_block(
                delay, false, [](NSTimer*) { shared().tick(); });
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer_.get(), NSRunLoopCommonModes);
        }

        void keep(std::shared_ptr<FrameClient> client)
        {
            if (std::find(clients_.begin(), clients_.end(), client) == clients_.end())
                clients_.push_back(std::move(client));
        }

        // One that raises has done what it could. One that is done may have been asked for again meanwhile: it stays.
        void tick()
        {
            due_ = kNever;
            timer_ = nullptr;
            const double now = CACurrentMediaTime();
            double next = kNever;
            AllServed all;
            for (std::shared_ptr<FrameClient>& client : std::exchange(clients_, {})) {
                double wish = now + kFrameSeconds;
                all.serve([&] { wish = client->frame(now); });
                if (wish == kNever)
                    continue;
                keep(std::move(client));
                next = std::min(next, wish);
            }
            if (next != kNever)
                wakeAt(std::max(next, now + kLeastDelay));
            all.end();
        }

        std::vector<std::shared_ptr<FrameClient>> clients_;
        Ref<NSTimer> timer_;
        double due_ = kNever;
    };

}

void runFrames(std::shared_ptr<FrameClient> client) { FrameClock::shared().add(std::move(client)); }

}
