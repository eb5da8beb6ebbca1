// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Runtime.h"

namespace brindle {

/// Answers of what class an argument of a method must be, because its body reads it as that; nullptr where any object
/// will do. Whoever hands over objects that only the running program knows asks first.
/// - index: counts receiver and selector, so the first argument is 2.
Class* requiredArgumentClass(const Method* method, unsigned index);

}
