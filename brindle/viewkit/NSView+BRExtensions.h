// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

/// With this extension in the program `init` of every view goes through `initWithFrame:`, with the zero rectangle; a
/// subclass overrides that alone.
