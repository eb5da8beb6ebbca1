// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSURL.h"

namespace brindle {

/// The way to a URL's pieces and rights for the files of this folder, and for panels.
struct URLAccess {
    static const urls::Spelling& own(const NSURL& url) { return url.own_; }
    static const urls::Spelling& absolute(const NSURL& url)
    {
        return url.absolute_ ? *url.absolute_ : url.own_;
    }
    /// Answers the URL with another path, which is already escaped; of the same class of text and base.
    static Ref<NSURL> withPath(const NSURL& url, std::string_view path);
    /// Answers the path of a file URL as bytes for system calls; "" when it has none.
    static std::string filePath(const NSURL& url);

    /// Makes a URL one that the user granted.
    BRINDLE_EXPORT static void grant(NSURL& url);
    /// Answers how many accesses have begun and not ended.
    static std::intptr_t accesses(const NSURL& url) { return url.accesses_.load(); }
};

}
