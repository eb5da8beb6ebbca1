// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTextField.h"

namespace brindle {

/// Gives the field the height that its text needs at the field's width.
inline void sizeHeightToFitWidth(To<NSTextField> field) { field.send<"sizeHeightToFitWidth">(); }
/// Gives the field the width of its text on one line and 10 points more, 22 at least; an empty field becomes 22 wide.
/// Only a field with text draws its ground afterwards. The height stays.
inline void sizeToFitNewWidth(To<NSTextField> field) { field.send<"sizeToFitNewWidth">(); }

}
