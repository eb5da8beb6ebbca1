// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "foundation/NSString.h"

namespace brindle {

class NSDictionary;
class NSFont;

// How much room a text needs in a box, as for attributed strings.
//
// A nil font measures zero, after the log line "[NSString sizeForWidth:height:font:]: Internal Error 561-3810: Nil font",
// which begins with the receiver's class and always names that operation.

/// - attributes: names and values for the whole text; nil means none.
inline NSSize sizeForWidth_height_attributes(
    To<NSString> string, float width, float height, NSDictionary* attributes)
{
    return string.send<"sizeForWidth:height:attributes:", NSSize>(width, height, attributes);
}
inline float heightForWidth_attributes(To<NSString> string, float width, NSDictionary* attributes)
{
    return string.send<"heightForWidth:attributes:", float>(width, attributes);
}
inline float widthForHeight_attributes(To<NSString> string, float height, NSDictionary* attributes)
{
    return string.send<"widthForHeight:attributes:", float>(height, attributes);
}
inline NSSize sizeForWidth_height_font(To<NSString> string, float width, float height, NSFont* font)
{
    return string.send<"sizeForWidth:height:font:", NSSize>(width, height, font);
}
inline float heightForWidth_font(To<NSString> string, float width, NSFont* font)
{
    return string.send<"heightForWidth:font:", float>(width, font);
}
inline float widthForHeight_font(To<NSString> string, float height, NSFont* font)
{
    return string.send<"widthForHeight:font:", float>(height, font);
}

}
