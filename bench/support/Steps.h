// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

namespace brindle::bench {

/// Counts the instructions of a message that hits, beside a virtual call, with valgrind; without it says so and
/// does nothing. - Returns: the program's status.
int countInstructions(Format format);

/// Starts a small application and its floor again and again and compares time and memory; then looks whether the
/// idle application sleeps. It starts the program `program`, itself, again on an X server of its own.
int measureStart(Format format, char* program);

/// Opens and closes a menu of 20 items on the X server of the environment, thousands of times, and adds what it takes.
void measureMenusOnScreen(std::vector<Line>& lines);

}
