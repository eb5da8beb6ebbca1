// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sched.h>

namespace brindle::test {

/// This thread runs before other programs while it lives, where the system allows that: what is measured is then how soon
/// it is done and not how busy the machine is. Processes and threads that it starts are ordinary ones.
class AheadOfOthers {
public:
    AheadOfOthers()
    {
        const sched_param first { .sched_priority = 1 };
        sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &first);
    }
    ~AheadOfOthers()
    {
        const sched_param none {};
        sched_setscheduler(0, SCHED_OTHER, &none);
    }
    AheadOfOthers(const AheadOfOthers&) = delete;
    AheadOfOthers& operator=(const AheadOfOthers&) = delete;
};

}
