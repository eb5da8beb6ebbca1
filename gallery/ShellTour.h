// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace gallery {

class Tour;

/// Shows what stands around the pages: the search, the code, and the way of the keyboard.
void tourShell(Tour& tour);

}
