// SPDX-License-Identifier: Apache-2.0
#include "appkit/HIMouseTracking.h"

namespace brindle {

std::int32_t HIMouseTrackingGetParameters(std::uint32_t, double*, NSSize*)
{
    constexpr std::int32_t kNotKnown = -50;
    return kNotKnown;
}

}
