// SPDX-License-Identifier: Apache-2.0
#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSArray::Methods<struct Coding> {

    static void encode(NSArray& self, NSCoder* coder)
    {
        archives::ListEncoder list(coder, "NS.objects"_ns);
        for (NSObject* item : self) {
            const Ref<NSObject> alive(item);
            list.add(item);
        }
        list.finish();
    }
    static Ref<NSObject> initWithCoder(NSArray& self, NSCoder* coder)
    {
        collections::Items items;
        if (!archives::decodeList(coder, "NS.objects"_ns, items))
            return nullptr;
        if (!ArrayAccess::isDirect(self)) {
            const std::vector<NSObject*> lent = collections::lent(items);
            return self.initWithObjects_count(lent.data(), lent.size());
        }
        ArrayAccess::items(self) = std::move(items);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSArray, Coding)

}
