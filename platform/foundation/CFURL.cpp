// SPDX-License-Identifier: Apache-2.0
#include "CFURL.h"

#include "PercentEscapesPrivate.h"
#include "URLText.h"
#include "runtime/Function.h"

namespace brindle {

using characters::AsciiSet;
using strings::Contents;

namespace {

    constexpr AsciiSet kLegal = urls::kUnreserved | AsciiSet("!*'();:@&=+$,/?");

    AsciiSet asciiOf(CFStringRef letters)
    {
        AsciiSet out;
        const Contents text(letters);
        for (std::size_t i = 0; i < text->size(); ++i) {
            if (text.view()[i] < 128)
                out.add(text.view()[i]);
        }
        return out;
    }

}

CFTypeRef CFRetain(CFTypeRef object)
{
    retain(object);
    return object;
}

void CFRelease(CFTypeRef object) { release(object); }

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef string,
    CFStringRef leave, CFStringRef escape, CFStringEncoding encoding)
{
    if (!string || encoding != kCFStringEncodingUTF8)
        return nullptr;
    const AsciiSet kept = (kLegal | asciiOf(leave)).without(asciiOf(escape));
    return escapes::added(Contents(string), [kept](char c) {
        return kept.contains(static_cast<unsigned char>(c));
    }).leak();
}

CFStringRef CFURLCreateStringByReplacingPercentEscapesUsingEncoding(
    CFAllocatorRef, CFStringRef string, CFStringRef leave, CFStringEncoding encoding)
{
    if (!string || encoding != kCFStringEncodingUTF8)
        return nullptr;
    if (!leave)
        return static_cast<NSString*>(string->copy().leak());
    return escapes::removed(Contents(string), asciiOf(leave)).leak();
}

BRINDLE_FUNCTION(CFURLCreateStringByAddingPercentEscapes)
BRINDLE_FUNCTION(CFURLCreateStringByReplacingPercentEscapesUsingEncoding)

}
