// SPDX-License-Identifier: Apache-2.0
#include "BlockAfterDelay.h"

#include "foundation/Dispatch.h"

namespace brindle {

void blockAfterDelay(double delay, Closure<void()>* code)
{
    const std::int64_t nanoseconds = saturatingInteger(delay * static_cast<double>(NSEC_PER_SEC));
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), dispatch_get_main_queue(),
        [code = Block<void()>(code)] { code(); });
}

}
