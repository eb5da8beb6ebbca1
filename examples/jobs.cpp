// SPDX-License-Identifier: Apache-2.0

// Deferred work: a job in the background that reports back on the main queue, a delay, and a debounce of which only the
// last call counts. The clock is turned by hand, so the program does not wait.

#include <cstdio>

#include "core/BRBlock.h"
#include "core/BlockAfterDelay.h"
#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSString.h"

using namespace brindle;

int main()
{
    Clock::useVirtual();
    const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();

    // A job at once: work with parameters, then its completion, all before execute answers.
    const auto sum = make<BRFunctionBlock>();
    sum->parameters()->setObject_forKey(NSNumber::cls().numberWithInteger(40).get(), "a"_ns);
    sum->setCode_([](BRBlock* job) {
        const auto a = cast<NSNumber>(job->parameters()->objectForKey("a"_ns));
        std::printf("the sum is %ld\n", static_cast<long>(a->integerValue() + 2));
    });
    sum->setCompletion([] { std::printf("and it is done\n"); });
    sum->execute();

    // A job in the background: its completion comes back to the main queue.
    long primes = 0;
    bool done = false;
    const auto count = make<BRBlock>();
    count->setCode([&primes] {
        for (long n = 2; n < 10000; ++n) {
            bool prime = true;
            for (long d = 2; d * d <= n && prime; ++d)
                prime = n % d != 0;
            primes += prime;
        }
    });
    count->setCompletion([&] {
        std::printf("%ld primes below 10,000\n", primes);
        done = true;
    });
    count->execute();
    while (!done)
        loop->advance(0.001);

    blockAfterDelay(0.24, [] { std::printf("a quarter of a second later\n"); });
    loop->advance(1);

    // Three calls in quick succession: only the last one runs.
    const auto field = make<NSObject>();
    for (const char* text : { "B", "Br", "Brindle" })
        timeoutToBlock_afterDelay(
            field, [text] { std::printf("searching for %s\n", text); }, 0.3);
    loop->advance(1);
    return 0;
}
