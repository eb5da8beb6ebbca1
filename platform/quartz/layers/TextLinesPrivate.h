// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "../text/Line.h"
#include "../text/Truncation.h"
#include "foundation/NSString.h"

namespace brindle::quartz {

/// How text is put into lines.
struct TextFit {
    text::Font font;
    double width = 0; // points
    double height = 0;
    bool wrapped = false;
    const NSString* truncation = nullptr; // a `kCATruncation` name
};

/// Answers how high a line of the font is, each measure rounded by itself as the text system does it.
double lineHeight(const text::Font& font);

/// Answers the lines of a text, those that do not fit the height left out when the last one is truncated.
std::vector<text::Line> linesFor(std::u16string_view text, const TextFit& fit);

}
