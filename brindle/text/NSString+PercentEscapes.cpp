// SPDX-License-Identifier: Apache-2.0
#include "NSString+PercentEscapes.h"

#include "foundation/CFURL.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct PercentEscapes {

        static Ref<NSString> adding(NSString& self)
        {
            return created(CFURLCreateStringByAddingPercentEscapes(
                nullptr, &self, nullptr, "!*'();:@&=+$,/?%#[]"_ns, kCFStringEncodingUTF8));
        }
        static Ref<NSString> replacing(NSString& self)
        {
            return created(CFURLCreateStringByReplacingPercentEscapesUsingEncoding(
                nullptr, &self, ""_ns, kCFStringEncodingUTF8));
        }

        static void table(Builder& t)
        {
            t.methods({
                { "stringByAddingPercentEscapes", imp<adding> },
                { "stringByReplacingPercentEscapes", imp<replacing> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSString, PercentEscapes)

}
