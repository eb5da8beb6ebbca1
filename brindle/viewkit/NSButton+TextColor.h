// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButton.h"

namespace brindle {

class NSColor;

/// Answers the colour of the first letter of the button's title; the colour of control texts where the title has no
/// attributes at all.
/// - Nil: when the title is empty, or its letters have attributes but no colour.
inline Ref<NSColor> textColor(To<NSButton> button)
{
    return button.send<"textColor", Ref<NSColor>>();
}
/// Sets the colour of the whole title.
inline void setTextColor(To<NSButton> button, NSColor* color)
{
    button.send<"setTextColor:">(color);
}

}
