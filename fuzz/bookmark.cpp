// SPDX-License-Identifier: Apache-2.0
// Reads bytes as a bookmark, as they are and with a good seal behind them: what is read writes the same bytes.

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "foundation/Bookmark.h"

using namespace brindle::bookmarks;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr Key kKey { 1, 2, 3 };
    if (read({ data, size }, "", kKey))
        std::abort(); // nobody knows the key
    std::vector<unsigned char> sealed(data, data + size);
    const Key end = seal(kKey, sealed);
    sealed.insert(sealed.end(), end.begin(), end.end());
    const std::optional<Trace> trace = read(sealed, "", kKey);
    if (trace && write(*trace, "", kKey) != sealed)
        std::abort();
    return 0;
}
