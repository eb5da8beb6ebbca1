// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Display.h"

namespace brindle::display {

/// Called once it is known that there is a screen: what else opening it takes can go on beside other work.
using Found = std::function<void()>;

/// Opens a display as the function without `found` does.
/// - found: called before this answers, as soon as the server has; never for the display `none`.
BRINDLE_EXPORT std::unique_ptr<Display> openDisplay(
    Choice choice, const Environment& environment, const Complaint& complain, const Found& found);

/// The same with the process's environment, complaints as lines on standard error.
BRINDLE_EXPORT std::unique_ptr<Display> openDisplay(const Found& found);

}
