// SPDX-License-Identifier: Apache-2.0
#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSet::Methods<struct Coding> {

    static void encode(NSSet& self, NSCoder* coder)
    {
        archives::ListEncoder list(coder, "NS.objects"_ns);
        for (NSObject* item : self) {
            const Ref<NSObject> alive(item);
            list.add(item);
        }
        list.finish();
    }
    static Ref<NSObject> initWithCoder(NSSet& self, NSCoder* coder)
    {
        collections::Items items;
        if (!archives::decodeList(coder, "NS.objects"_ns, items))
            return nullptr;
        const collections::ComparisonLimit limit(archives::comparisonsLeft(coder));
        const std::vector<NSObject*> lent = collections::lent(items);
        return self.initWithObjects_count(lent.data(), lent.size());
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSSet, Coding)

}
