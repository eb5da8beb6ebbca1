// SPDX-License-Identifier: Apache-2.0
// Reads property lists of all formats, writes what was read and reads it again: it must be the same.

#include "foundation/NSData.h"
#include "foundation/lists/PropertyListPrivate.h"

namespace {

using namespace brindle;

/// Writes a list twice, with a reading between; the bytes must be equal.
template <class Write> void rewrite(NSObject* list, Write write)
{
    lists::Failure failure;
    const Ref<NSData> first = write(list, failure);
    if (!first)
        return; // too long, or with what the format does not have
    NSPropertyListFormat format {};
    const Ref<NSObject> back
        = lists::read(bytesOf(first.get()), lists::Mutability::none, format, failure);
    if (!back)
        std::abort();
    const Ref<NSData> second = write(back.get(), failure);
    if (!second || !second->isEqualToData(first.get()))
        std::abort();
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    lists::Failure failure;
    NSPropertyListFormat format {};
    const auto list = lists::read({ data, size }, lists::Mutability::none, format, failure);
    if (!list)
        return 0;
    rewrite(list.get(), lists::writeBinary);
    rewrite(list.get(), lists::writeXML);
    return 0;
}
