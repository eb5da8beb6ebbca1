// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSAttributedString.h"
#include "foundation/NSGeometry.h"

namespace brindle {

/// Answers 0 and changes nothing: fonts are not made smaller. It is there for callers that send it.
/// - bounds: not written to; may be null.
inline NSInteger sizeDownFontToFitIn_textBounds(
    To<NSAttributedString> string, NSSize size, NSRect* bounds)
{
    return string.send<"sizeDownFontToFitIn:textBounds:", NSInteger>(size, bounds);
}

}
