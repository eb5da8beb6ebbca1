// SPDX-License-Identifier: Apache-2.0
// Reads XML property lists.

#include "foundation/lists/PropertyListPrivate.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace brindle;
    lists::Failure failure;
    NSPropertyListFormat format {};
    const auto list = lists::read({ data, size }, lists::Mutability::leaves, format, failure);
    if (!list && failure.reason.empty())
        std::abort(); // a refusal says why
    return 0;
}
