// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

namespace gallery {

/// A source of a page, as it was when the gallery was built.
struct SourceFile {
    std::string_view folder; ///< the page's, "switches"
    std::string_view name; ///< "SwitchesCard.cpp"
    std::string_view text;
};

/// Answers the sources of all pages; those of one folder stand together, by name.
std::span<const SourceFile> sources();

/// Answers the sources of one page.
std::span<const SourceFile> sourcesOf(std::string_view folder);

}
