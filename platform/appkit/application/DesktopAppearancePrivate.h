// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace brindle::appkit {

/// Marks all windows that show and tells that system colours are others now.
void lookChanged();
/// Takes the look from the desktop's files now, which costs little, a moment later from the defaults, and then whenever
/// the desktop's settings change. For a real screen.
void beginFollowingDesktop();
/// Takes the look from the defaults.
void takeDesktopAppearance();

}
