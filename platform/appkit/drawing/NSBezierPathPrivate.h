// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSBezierPath.h"

namespace brindle {

/// The elements of a path, for its neighbours in this folder.
struct BezierPathAccess {
    static const quartz::PathData& steps(NSBezierPath& path) { return path.steps(); }
};

}
