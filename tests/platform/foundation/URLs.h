// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "foundation/NSURL.h"
#include "support/Strings.h"

// URLs made and written in one word.

namespace brindle {

inline Ref<NSURL> url(NSString* text) { return NSURL::cls().URLWithString(text); }
inline Ref<NSURL> url(NSString* text, NSString* base)
{
    return NSURL::cls().URLWithString_relativeToURL(text, url(base).get());
}
inline std::string absolute(const Ref<NSURL>& u)
{
    return u ? utf8(u->absoluteString()) : "no URL";
}

}
