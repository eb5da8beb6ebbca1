// SPDX-License-Identifier: Apache-2.0
// Reads binary property lists.

#include "foundation/lists/PropertyListPrivate.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace brindle::lists;
    Failure failure;
    const auto list = readBinary({ data, size }, Mutability::none, failure);
    if (!list && failure.reason.empty())
        std::abort(); // a refusal says why
    return 0;
}
