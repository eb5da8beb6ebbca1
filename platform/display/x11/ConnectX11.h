// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "display/OpenDisplay.h"

namespace brindle::display {

/// Connects to an X server.
/// - server: as in DISPLAY, ":0". - found: called when the server has answered and we can draw there.
/// - Nil: when the server cannot be reached or has no colour depth that we can draw in.
std::unique_ptr<Display> connectX11(
    const std::string& server, const Environment& environment, const Found& found);

}
