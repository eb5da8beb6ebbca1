// SPDX-License-Identifier: Apache-2.0
// URLs: those of files as paths that still fit when the home folder moves, all others as archives.

#include "NSUserDefaults.h"

#include "NSData.h"
#include "NSKeyedArchiver.h"
#include "NSKeyedUnarchiver.h"
#include "NSURL.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSUserDefaults::Methods<struct URLs> {

    static Ref<NSURL> URLForKey(NSUserDefaults& self, NSString* key)
    {
        const Ref<NSObject> value = self.objectForKey(key);
        if (value && value->isKindOfClass(NSData::cls()))
            return cast<NSURL>(NSKeyedUnarchiver::cls().unarchivedObjectOfClass_fromData_error(
                NSURL::cls(), cast<NSData>(value.get()), nullptr));
        if (!value || !value->isKindOfClass(NSString::cls()))
            return nullptr;
        const Ref<NSString> path = cast<NSString>(value.get())->stringByExpandingTildeInPath();
        return path->length() ? NSURL::cls().fileURLWithPath(path.get()) : nullptr;
    }
    static void setURL(NSUserDefaults& self, NSURL* url, NSString* key)
    {
        Ref<NSObject> value;
        if (url && url->isFileURL())
            value = maybe(maybe(url->absoluteURL())->path())->stringByAbbreviatingWithTildeInPath();
        else if (url)
            value = NSKeyedArchiver::cls().archivedDataWithRootObject(url);
        self.setObject_forKey(value.get(), key);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "URLForKey:", imp<URLForKey> },
            { "setURL:forKey:", imp<setURL> },
        });
    }
};
BRINDLE_RECORD(NSUserDefaults, URLs)

}
