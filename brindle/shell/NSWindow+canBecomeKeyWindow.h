// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"

/// `canBecomeKeyWindow` of every window answers YES, panels and windows without a border included. Only a subclass that
/// overrides it answers otherwise, as `BROSPanel` does. Which windows may become main stays as it was.
