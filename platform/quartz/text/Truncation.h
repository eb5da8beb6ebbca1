// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Line.h"

namespace brindle::text {

/// The part of the text that gives way to the ellipsis.
enum class TruncationPlace { head, middle, tail };

/// A line that was made to fit.
struct TruncatedLine {
    Line line; // of the text with the ellipsis in it
    NSRange
        removed; // the units of the original text that the ellipsis replaced; empty when all fits
};

/// Shapes as much of the text as fits a width, with an ellipsis for what does not.
///
/// Whole characters are removed, never parts of one. When not even the ellipsis fits, the line
/// holds the ellipsis alone and is wider than asked.
/// - width: points. - memory: a line that is over; the new one is made in its place.
TruncatedLine shapeTruncatedLine(std::u16string_view text, std::span<const FontRun> fonts,
    double width, TruncationPlace place, BaseDirection direction = BaseDirection::natural,
    Line memory = {});

}
