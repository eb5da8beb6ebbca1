// SPDX-License-Identifier: Apache-2.0

// Sends, or calls, or does neither, as often as it is told, for somebody who counts instructions:
//     bench-message-loop send|call|nothing COUNT

#include <cstdlib>
#include <string_view>

#include "support/Hosts.h"
#include "support/Measure.h"

using namespace brindle::bench;

int main(int count, char** arguments)
{
    if (count != 3)
        return 2;
    const std::string_view what = arguments[1];
    const auto hosts = makeHosts(8);
    const auto virtualHosts = makeVirtualHosts(8);
    for (const auto& host : hosts)
        host->poke(); // the first message of a class looks for the answer
    const long times = std::atol(arguments[2]);
    const std::size_t last = kObjects - 1;
    if (what == "send") {
        for (long i = 0; i < times; ++i)
            hosts[static_cast<std::size_t>(i) & last]->poke();
    } else if (what == "call") {
        for (long i = 0; i < times; ++i)
            virtualHosts[static_cast<std::size_t>(i) & last]->poke();
    } else {
        for (long i = 0; i < times; ++i)
            keep(hosts[static_cast<std::size_t>(i) & last].get());
    }
    return 0;
}
