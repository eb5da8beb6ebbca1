// SPDX-License-Identifier: Apache-2.0
#include "MediaTiming.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brindle {

NSTimeInterval CACurrentMediaTime() { return Clock::uptime(); }

namespace quartz {

    namespace {

        bool isOneOf(const Ref<NSString>& mode, NSString* a, NSString* b)
        {
            return mode && (mode->isEqual(a) || mode->isEqual(b));
        }

    }

    double MediaTiming::activeDuration() const
    {
        const double once = duration * (autoreverses ? 2 : 1);
        if (repeatDuration > 0)
            return repeatDuration;
        return once > 0 && repeatCount > 0 ? once * static_cast<double>(repeatCount) : once;
    }

    bool MediaTiming::fillsBackwards() const
    {
        return isOneOf(fillMode, kCAFillModeBackwards, kCAFillModeBoth);
    }

    bool MediaTiming::fillsForwards() const
    {
        return isOneOf(fillMode, kCAFillModeForwards, kCAFillModeBoth);
    }

    MediaTiming::Moment MediaTiming::at(double local) const
    {
        Moment moment;
        const double active = activeDuration();
        if (local < -kTimeTolerance || std::isnan(local)) {
            moment.phase = Phase::before;
            local = 0;
        } else if (!(active > 0) || local >= active - kTimeTolerance) {
            moment.phase = Phase::after;
            local = std::max(active, 0.0);
        }
        local = std::max(local, 0.0);
        if (!(duration > 0)) {
            moment.progress = 1;
            return moment;
        }
        double runs = local / duration;
        double whole = std::floor(runs);
        // The very end is the end of the last run, not the start of another one.
        if (moment.phase == Phase::after && whole > 0 && runs - whole < 1e-9)
            whole -= 1;
        const double part = std::min(runs - whole, 1.0);
        const bool back = autoreverses && std::fmod(whole, 2) == 1;
        moment.progress = back ? 1 - part : part;
        moment.time = moment.progress * duration;
        moment.repeats = autoreverses ? std::floor(whole / 2) : whole;
        return moment;
    }

}

}
