// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "Gallery.h"
#include "Surroundings.h"
#include "display/headless/RandomUser.h"

namespace gallery {

/// Leaves the gallery to a user who does anything (`RandomUser`) and looks from time to time whether it still stands: views
/// and windows know each other, pages go when others come, views when their windows do, nothing raises, nothing hangs,
/// memory stays.
///
/// The same seed does the same in the same order, so what went wrong once goes wrong again.
class Soak {
public:
    Soak(double seconds, std::uint32_t seed);

    /// Plays, and prints what came of it.
    /// - Returns: whether all was well.
    bool run();

private:
    /// A page, or what stands on it; or what lies in the frame of a window.
    struct Seen {
        brindle::WeakRef<brindle::NSView> view;
        std::uint64_t action; // that found it: a page's first, a part's last
    };
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
    using Instant = std::chrono::steady_clock::time_point;

    void step();
    void bringBack();
    /// Puts away what the user has left: windows that are open beside the gallery's, and more buttons in the bar.
    void tidyUp();
    void look();
    void rememberPage();
    void lookForOldPages();
    void rememberPart(brindle::NSView& view);
    void lookForOldParts();
    void lookAtMemory();
    void complain(const std::string& what);
    double elapsed() const;
    /// Of the user's time, fifty actions a second: the machine's may be a hundredth of it.
    double kilobytesAnHour() const;
    bool isOver() const { return !complaint_.empty() || elapsed() >= seconds_; }

    double seconds_;
    std::uint32_t seed_;
    Surroundings surroundings_;
    brindle::display::RandomUser user_;
    brindle::Ref<GalleryController> controller_;
    Instant begun_ = std::chrono::steady_clock::now();
    std::uint64_t actions_ = 0;
    std::uint64_t endings_ = 0; // times that it was asked to come to rest
    brindle::WeakRef<GalleryPage> page_; // the last one that was seen
    std::vector<Seen> seen_;
    std::vector<Seen> parts_;
    std::size_t warm_ = 0; // bytes used with one page once every page was seen twice
    // The least in the third and in the last quarter of the time: what comes and goes is not in it.
    std::array<std::size_t, 2> least_ { kNone, kNone };
    std::string complaint_;
};

}
