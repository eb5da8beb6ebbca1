// SPDX-License-Identifier: Apache-2.0
#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSDictionary::Methods<struct Coding> {

    static void encode(NSDictionary& self, NSCoder* coder)
    {
        archives::ListEncoder keys(coder, "NS.keys"_ns);
        for (NSObject* key : self) {
            const Ref<NSObject> alive(key);
            keys.add(key);
        }
        keys.finish();
        archives::ListEncoder objects(coder, "NS.objects"_ns);
        for (DictionaryIterator at = self.begin(); at != self.end(); ++at) {
            const Ref<NSObject> alive(at.value());
            objects.add(alive.get());
        }
        objects.finish();
    }
    static Ref<NSObject> initWithCoder(NSDictionary& self, NSCoder* coder)
    {
        collections::Items keys;
        collections::Items objects;
        if (!archives::decodeList(coder, "NS.keys"_ns, keys)
            || !archives::decodeList(coder, "NS.objects"_ns, objects))
            return nullptr;
        if (keys.size() != objects.size()) {
            archives::refuse(coder, "a dictionary has not as many keys as objects");
            return nullptr;
        }
        const collections::ComparisonLimit limit(archives::comparisonsLeft(coder));
        const std::vector<NSObject*> lentKeys = collections::lent(keys);
        const std::vector<NSObject*> lentObjects = collections::lent(objects);
        return self.initWithObjects_forKeys_count(
            lentObjects.data(), lentKeys.data(), lentKeys.size());
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSDictionary, Coding)

}
