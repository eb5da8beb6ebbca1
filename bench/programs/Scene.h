// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// What starting programs show. Rows: one window, in which each row has a band and a line of text.
// Controls: what examples/startup shows, a bar and a window.

namespace brindle::bench::scene {

constexpr int kWidth = 480;
constexpr int kRows = 16;
constexpr int kRowHeight = 20;
constexpr int kHeight = kRows * kRowHeight;
constexpr int kTextLeft = 12;
constexpr double kTextSize = 12;
constexpr const char* kFontName = "Helvetica";
constexpr const char* kFontFamily = "Liberation Sans"; // what that name stands for
constexpr double kBandGrey = 0.93;

constexpr double kLineGrey = 0.7;

constexpr int kScreenWidth = 1280;
constexpr int kBarHeight = 22; // and that of a window's strip
constexpr int kControlsHeight = 360 + kBarHeight;
constexpr const char* kSystemFamily = "Inter";
constexpr const char* kTitles[] = { "File", "Edit", "Format", "View", "Help" };

inline std::string textOf(int row)
{
    return "Row " + std::to_string(row + 1) + " of a small window that shows text";
}

}
