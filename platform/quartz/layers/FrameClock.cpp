// SPDX-License-Identifier: Apache-2.0
#include "FrameClock.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <vector>

#include "MediaTiming.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"

namespace brindle::quartz {

namespace {

    constexpr double kNever = std::numeric_limits<double>::infinity();

    class FrameClock {
    public:
        static FrameClock& shared()
        {
            static auto* const clock = new FrameClock; // things may move while the process ends
            return *clock;
        }

        void add(std::shared_ptr<FrameClient> client)
        {
            if (std::find(clients_.begin(), clients_.end(), client) == clients_.end())
                clients_.push_back(std::move(client));
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

        // A client that raises has done what it could; the others are served first.
        void tick()
        {
            due_ = kNever;
            timer_ = nullptr;
            const double now = CACurrentMediaTime();
            double next = kNever;
            std::exception_ptr raised;
            const std::vector<std::shared_ptr<FrameClient>> present = clients_;
            for (const std::shared_ptr<FrameClient>& client : present) {
                double wish = kNever;
                try {
                    wish = client->frame(now);
                } catch (...) {
                    raised = std::current_exception();
                    wish = now + kFrameSeconds;
                }
                if (wish == kNever)
                    std::erase(clients_, client);
                next = std::min(next, wish);
            }
            if (next != kNever)
                wakeAt(next);
            if (raised)
                std::rethrow_exception(raised);
        }

        std::vector<std::shared_ptr<FrameClient>> clients_;
        Ref<NSTimer> timer_;
        double due_ = kNever;
    };

}

void runFrames(std::shared_ptr<FrameClient> client) { FrameClock::shared().add(std::move(client)); }

}
