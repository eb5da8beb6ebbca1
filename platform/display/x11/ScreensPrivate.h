// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "DesktopSettingsPrivate.h"
#include "WindowManagerPrivate.h"
#include "display/Display.h"
#include "display/PixelMapping.h"

namespace brindle::display {

/// Answers the scale that BRINDLE_SCALE, the desktop's settings or the X resources (Xft.dpi, 96 is 1) ask for: the first of
/// them that does, from 0.25 to 16; 1 without any.
double scaleFrom(
    const Environment& environment, std::optional<double> settings, std::string_view resources);

/// The screens of the server, in points and in pixels.
class Screens {
public:
    Screens(Connection& connection, WindowManager& manager, Environment environment);

    const std::vector<Screen>& all() const { return screens_; }
    const std::vector<PixelRect>& pixelFrames() const { return frames_; }
    const PixelMapping& mapping() const { return mapping_; }
    PixelSize desktop() const { return desktop_; }
    /// Answers the screen that shows most of a rectangle, the first when none does.
    std::size_t indexFor(PixelRect rect) const;

    /// Reads everything anew.
    /// - Returns: whether anything is different.
    bool refresh();
    /// Takes X resources and the desktop's settings, and with them perhaps a new scale, at the next `refresh`.
    void readScale(std::string_view resources);
    const DesktopSettings& settings() const { return settings_; }

private:
    void readMonitors();
    void readWorkArea();

    Connection& connection_;
    WindowManager& manager_;
    DesktopSettings settings_;
    Environment environment_;
    PixelMapping mapping_;
    PixelSize desktop_;
    std::vector<Screen> screens_;
    std::vector<PixelRect> frames_;
};

}
