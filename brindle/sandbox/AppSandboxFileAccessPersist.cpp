// SPDX-License-Identifier: Apache-2.0
#include "AppSandboxFileAccessPersist.h"

#include "foundation/NSData.h"
#include "foundation/NSUserDefaults.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct AppSandboxFileAccessPersist::Methods<struct Store> {

    static Ref<NSUserDefaults> store() { return NSUserDefaults::cls().standardUserDefaults(); }
    static Meta asked(Class& self) { return Meta { { &self } }; }

    static Ref<NSString> key(Class&, NSURL* url)
    {
        return NSString::cls().stringWithFormat("bd_%1$@"_ns, maybe(url)->absoluteString());
    }
    static Ref<NSData> find(Class& self, NSURL* lent)
    {
        const Ref<NSUserDefaults> defaults = store();
        Ref<NSURL> url = lent;
        while (maybe(maybe(url)->path())->length() >= 2) { // the root is never looked up
            const Ref<NSString> name = asked(self).keyForBookmarkDataForURL(url.get());
            if (Ref<NSData> data = defaults->dataForKey(name.get()))
                return data;
            url = url->URLByDeletingLastPathComponent();
        }
        return nullptr;
    }
    static void keep(Class& self, NSData* data, NSURL* url)
    {
        if (url)
            store()->setObject_forKey(data, asked(self).keyForBookmarkDataForURL(url).get());
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "keyForBookmarkDataForURL:", imp<key> },
            { "bookmarkDataForURL:", imp<find> },
            { "setBookmarkData:forURL:", imp<keep> },
        });
    }
};
BRINDLE_RECORD(AppSandboxFileAccessPersist, Store)

}
