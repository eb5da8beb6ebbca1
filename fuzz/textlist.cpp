// SPDX-License-Identifier: Apache-2.0
// Reads old-style property lists and strings files.

#include "foundation/NSStringPrivate.h"
#include "foundation/lists/PropertyListPrivate.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace brindle;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (strings::validUtf8(text) < size)
        return 0;
    lists::Failure failure;
    const auto list = lists::readText(text, lists::Mutability::none, failure);
    if (!list && failure.reason.empty())
        std::abort(); // a refusal says why
    if (list && !lists::fitsText(list.get(), failure))
        std::abort(); // what was read from text has a form there
    lists::readStrings(text, failure);
    return 0;
}
