// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gallery {

/// A page that was found, and why.
struct PageHit {
    std::size_t page; ///< its place among `pages()`
    std::string
        match; ///< the word of the page's sources that was found; empty where the name says it
};

/// Finds the pages for which each of the words stands at the beginning of a word of its name, of a text it shows, or of the
/// name of a class or an operation that it uses: what is searched are the names and the sources of the pages.
///
/// Capital letters count as small ones. A word of one letter is looked for in the names only.
/// - Returns: the pages whose names say it first, then those whose sources say it most often; nothing for no words.
std::vector<PageHit> findPages(std::string_view words);

}
