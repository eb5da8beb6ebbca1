// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "display/headless/HeadlessDisplay.h"

namespace gallery {

/// Where a script plays with the gallery: a screen in memory, time that is turned by hand, a fixed language and time zone,
/// and settings in a folder that goes with it. Nothing of the user's is read, written or opened.
class Surroundings {
public:
    /// - scale: device pixels a point.
    explicit Surroundings(double scale = 1);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    /// Answers whether there is a folder for settings.
    bool isReady() const { return !folder_.empty(); }
    brindle::display::HeadlessDisplay& display() { return *display_; }

private:
    std::string folder_;
    brindle::display::HeadlessDisplay* display_ = nullptr; // the application's
};

}
