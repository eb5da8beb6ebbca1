// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace brindle::appkit {

/// Marks all windows that show.
void drawAllAnew();
/// Takes the look from the desktop's files now, which costs little, a moment later from the defaults, and then whenever
/// the desktop's settings change. For a real screen.
void beginFollowingDesktop();
/// Takes the look from the defaults; marks all windows where that makes a difference.
void takeDesktopAppearance();

}
