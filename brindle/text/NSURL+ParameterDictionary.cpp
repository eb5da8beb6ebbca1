// SPDX-License-Identifier: Apache-2.0
#include "NSURL+ParameterDictionary.h"

#include "NSScanner+BRExtensions.h"
#include "NSString+PercentEscapes.h"
#include "foundation/NSArray.h"
#include "foundation/NSCharacterSet.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct ParameterDictionary {

        static void add(NSMutableDictionary& out, const Ref<NSString>& piece)
        {
            const Ref<NSArray> sides = piece->componentsSeparatedByString("="_ns);
            if (sides->count() != 2)
                return;
            const Ref<NSString> value
                = stringByReplacingPercentEscapes(cast<NSString>(sides->objectAtIndex(1)));
            if (value)
                out.setObject_forKey(value.get(), sides->objectAtIndex(0).get());
        }
        static Ref<NSMutableDictionary> parameterDictionary(NSURL& self)
        {
            Ref<NSMutableDictionary> out = NSMutableDictionary::cls().dictionary();
            const Ref<NSString> text = self.absoluteString();
            if (!text)
                return out;
            const Ref<NSScanner> scanner = NSScanner::cls().scannerWithString(text.get());
            scanner->setCharactersToBeSkipped(
                NSCharacterSet::cls().characterSetWithCharactersInString("&?"_ns).get());
            scanUpToString(scanner, "?"_ns);
            Ref<NSString> piece;
            while (scanner->scanUpToString_intoString("&"_ns, &piece))
                add(*out.get(), piece);
            return out;
        }

        static void table(Builder& t)
        {
            t.methods({ { "parameterDictionary", imp<parameterDictionary> } });
        }
    };

}
BRINDLE_EXTENSION(NSURL, ParameterDictionary)

}
