// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/ScriptedAnswers.h"

namespace brindle::scripted {

/// Answers who is asked; empty closures where nobody stands in.
Block<NSInteger(NSAlert*)> alertPerson();
Block<Ref<NSArray>(NSSavePanel*)> panelPerson();
Block<bool(NSURL*)> desktop();

}
