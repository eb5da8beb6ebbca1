// SPDX-License-Identifier: Apache-2.0
// Reads bytes as a URL: what is taken keeps its text, its pieces make it again, and every path operation comes to an
// end.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURLComponents.h"
#include "text/NSString+URLs.h"
#include "text/NSURL+ParameterDictionary.h"
#include "text/NSURL+Strings.h"

using namespace brindle;

namespace {

void require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

void readPieces(const NSURL& url)
{
    const Ref<NSString> host = url.host();
    const Ref<NSNumber> port = url.port();
    const Ref<NSArray> components = url.pathComponents();
    const Ref<NSString> name = url.lastPathComponent();
    parameterDictionary(const_cast<NSURL*>(&url));
    domain(const_cast<NSURL*>(&url));
    require(url.standardizedURL() != nullptr);
    require(url.URLByStandardizingPath() != nullptr);
}

void walkUp(Ref<NSURL> url)
{
    for (NSUInteger length = ~NSUInteger { 0 };;) {
        url = url->URLByDeletingLastPathComponent();
        require(url != nullptr);
        const NSUInteger now = url->absoluteString()->length();
        if (now >= length)
            break;
        length = now;
    }
}

void takeApart(const Ref<NSString>& text)
{
    const Ref<NSURLComponents> parts = NSURLComponents::cls().componentsWithString(text.get());
    require(parts != nullptr);
    const Ref<NSString> again = parts->string();
    require(again != nullptr && again->isEqualToString(text.get()));
    const Ref<NSArray> items = parts->queryItems();
    if (items)
        parts->setQueryItems(items.get());
    require(parts->URL() != nullptr || parts->string()->length() == 0);
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t line = bytes.find('\n');
    const Ref<NSString> text = stringFrom(bytes.substr(0, line));
    if (!text)
        return 0;
    URLValue(text);
    const Ref<NSURL> url = NSURL::cls().URLWithString(text.get());
    if (!url)
        return 0;
    require(url->absoluteString()->isEqualToString(text.get()));
    readPieces(*url.get());
    walkUp(url);
    takeApart(text);
    const Ref<NSString> tail
        = line == bytes.npos ? Ref<NSString>(""_ns) : stringFrom(bytes.substr(line + 1));
    if (!tail)
        return 0;
    if (const Ref<NSURL> relative
        = NSURL::cls().URLWithString_relativeToURL(tail.get(), url.get())) {
        readPieces(*relative.get());
        require(NSURL::cls().URLWithString(relative->absoluteString().get()) != nullptr
            || relative->absoluteString()->length() == 0);
    }
    if (const Ref<NSURL> longer = url->URLByAppendingPathComponent_isDirectory(tail.get(), false))
        readPieces(*longer.get());
    return 0;
}
