// SPDX-License-Identifier: Apache-2.0
#include "OpenedURLs.h"

#include "appkit/ScriptedAnswers.h"
#include "foundation/NSURL.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSString>& opened()
    {
        static auto* const url = new Ref<NSString>;
        return *url;
    }

}

void keepOpenedURLs()
{
    scripted::takeOpenedURLs([](NSURL* url) {
        opened() = url->absoluteString();
        return true;
    });
}

Ref<NSString> lastOpenedURL() { return opened(); }

}
