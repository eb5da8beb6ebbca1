// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTextField.h"

/// What a table tells the texts in its cells.

namespace brindle {

/// Answers the field's cell.
inline Ref<NSTextFieldCell> textFieldCell(To<NSTextField> field)
{
    return field.send<"textFieldCell", Ref<NSTextFieldCell>>();
}
/// That of the field's cell.
inline NSBackgroundStyle backgroundStyle(To<NSTextField> field)
{
    return field.send<"backgroundStyle", NSBackgroundStyle>();
}
inline void setBackgroundStyle(To<NSTextField> field, NSBackgroundStyle style)
{
    field.send<"setBackgroundStyle:">(style);
}

}
