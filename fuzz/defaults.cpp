// SPDX-License-Identifier: Apache-2.0
// A file of defaults that somebody else wrote: reading it must end, and what it holds must be a dictionary.

#include <cstdint>

#include <fcntl.h>
#include <unistd.h>

#include "../tests/support/TemporaryFolder.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"
#include "foundation/defaults/DefaultsFilePrivate.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const brindle::test::TemporaryFolder folder; // for all inputs
    const std::string path = folder.path() / "defaults.plist";
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool isWritten = file >= 0 && ::write(file, data, size) == static_cast<ssize_t>(size);
    ::close(file);
    if (!isWritten)
        return 0;
    brindle::defaults::File defaults(folder.path());
    if (!defaults.refresh())
        std::abort();
    for (brindle::NSObject* key : brindle::each(defaults.contents())) {
        if (!key->isKindOfClass(brindle::NSString::cls()))
            std::abort();
    }
    // What stands there gives way to what is written, whatever it is.
    const auto change = [](brindle::NSDictionary*) {
        using namespace brindle;
        return makeDictionary({ { "key"_ns, "value"_ns } });
    };
    const bool isWorthADisksTime = size % 8 == 0;
    if (isWorthADisksTime
        && (!defaults.update(brindle::defaults::Deadline::max(), change)
            || defaults.contents()->count() != 1))
        std::abort();
    return 0;
}
