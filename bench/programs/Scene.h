// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// The window that both starting programs show: rows with a band and a line of text each.

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

inline std::string textOf(int row)
{
    return "Row " + std::to_string(row + 1) + " of a small window that shows text";
}

}
