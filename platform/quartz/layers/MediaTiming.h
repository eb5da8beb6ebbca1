// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/Clock.h"
#include "foundation/StringConstant.h"
#include "runtime/Export.h"

namespace brindle {

inline constexpr StringConstant<"removed"> kCAFillModeRemoved;
inline constexpr StringConstant<"forwards"> kCAFillModeForwards;
inline constexpr StringConstant<"backwards"> kCAFillModeBackwards;
inline constexpr StringConstant<"both"> kCAFillModeBoth;

/// Answers the seconds that movements are timed by; they stand still and are turned with the virtual clock.
BRINDLE_EXPORT NSTimeInterval CACurrentMediaTime();

namespace quartz {

    /// Ends of movements are met within this many seconds.
    inline constexpr double kTimeTolerance = 1e-6;

    /// How a layer's or a movement's time runs beside that of what it belongs to.
    struct MediaTiming {
        double beginTime = 0;
        double duration = 0; // seconds; 0 is the one of the transaction
        double timeOffset = 0;
        float speed = 1;
        float repeatCount = 0;
        double repeatDuration = 0;
        bool autoreverses = false;
        Ref<NSString> fillMode = kCAFillModeRemoved.get();

        /// Answers the own time for a time of the parent.
        double local(double parent) const { return (parent - beginTime) * speed + timeOffset; }
        /// Answers how long it runs in its own time, repeats and ways back included.
        double activeDuration() const;
        bool fillsBackwards() const;
        bool fillsForwards() const;

        /// Where a movement stands.
        enum class Phase { before, active, after };
        struct Moment {
            Phase phase = Phase::active;
            double progress = 0; // 0 to 1 within one run, ways back counted backwards
            double time = 0; // own seconds within one run
            double repeats = 0; // whole runs done
        };
        /// - local: own time.
        Moment at(double local) const;
    };

}

}
