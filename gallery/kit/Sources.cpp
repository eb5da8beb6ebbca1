// SPDX-License-Identifier: Apache-2.0
#include "Sources.h"

#include <algorithm>

namespace gallery {

std::span<const SourceFile> sourcesOf(std::string_view folder)
{
    const auto all = sources();
    const auto isOfPage = [&](const SourceFile& file) { return file.folder == folder; };
    const auto first = std::find_if(all.begin(), all.end(), isOfPage);
    const auto last = std::find_if_not(first, all.end(), isOfPage);
    return { first, last };
}

}
