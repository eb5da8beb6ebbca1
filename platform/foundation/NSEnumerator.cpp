// SPDX-License-Identifier: Apache-2.0
#include "NSEnumerator.h"

#include "NSArray.h"
#include "runtime/Table.h"

namespace brindle {

struct EnumeratorAccess {
    static Block<Ref<NSObject>()>& next(NSEnumerator& enumerator) { return enumerator.next_; }
};

template <> struct NSEnumerator::Methods<struct Enumerating> {

    static Ref<NSObject> nextObject(NSEnumerator& self)
    {
        if (!self.next_)
            return nullptr;
        const Block<Ref<NSObject>()> next = self.next_; // the block may end the enumerator
        Ref<NSObject> answer = next();
        if (!answer)
            self.next_ = nullptr;
        return answer;
    }

    static Ref<NSArray> allObjects(NSEnumerator& self)
    {
        std::vector<Ref<NSObject>> objects;
        while (Ref<NSObject> next = self.nextObject())
            objects.push_back(std::move(next));
        return makeArray(std::move(objects));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "nextObject", imp<nextObject> },
            { "allObjects", imp<allObjects> },
        });
    }
};
BRINDLE_RECORD(NSEnumerator, Enumerating)

Ref<NSEnumerator> makeEnumerator(Block<Ref<NSObject>()> next)
{
    Ref<NSEnumerator> enumerator = make<NSEnumerator>();
    EnumeratorAccess::next(*enumerator) = std::move(next);
    return enumerator;
}

}
