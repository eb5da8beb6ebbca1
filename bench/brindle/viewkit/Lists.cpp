// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "foundation/NSNumber.h"
#include "support/Measure.h"
#include "support/Topics.h"
#include "viewkit/NSArray+Reverse.h"
#include "viewkit/NSMutableArray+GWExtensions.h"

// Lists of a thousand numbers, beside the same work on a vector of the same objects.

namespace brindle::bench {

namespace {

    constexpr std::size_t kCount = 1000;

    struct Lists {
        Ref<NSMutableArray> array = make<NSMutableArray>();
        std::vector<Ref<NSObject>> vector;

        Lists()
        {
            for (std::size_t i = 0; i < kCount; ++i)
                add(i);
        }
        void add(std::size_t number)
        {
            const Ref<NSNumber> object
                = NSNumber::cls().numberWithInteger(static_cast<NSInteger>(number));
            array->addObject(object.get());
            vector.emplace_back(object);
        }
        NSObject* at(std::size_t i) const { return vector[i % kCount].get(); }
    };

    bool isEqual(const Ref<NSObject>& a, NSObject* b) { return a.get() == b || a->isEqual(b); }

    // The object is there already, in the middle on average.
    Pair addOnce()
    {
        const auto lists = std::make_shared<Lists>();
        return { repeated(
                     [=](std::size_t i) { keep(addObjectOnce(lists->array, lists->at(i * 7))); }),
            repeated([=](std::size_t i) {
                NSObject* const wanted = lists->at(i * 7);
                keep(std::any_of(lists->vector.begin(), lists->vector.end(),
                    [&](const Ref<NSObject>& o) { return isEqual(o, wanted); }));
            }) };
    }

    // The last one comes to the front: all are compared and all move.
    Pair insertOnce()
    {
        const auto lists = std::make_shared<Lists>();
        return { repeated([=](std::size_t) {
                    const Ref<NSObject> last = lists->array->lastObject();
                    insertObjectOnce_atIndex(lists->array, last.get(), 0);
                }),
            repeated([=](std::size_t) {
                const Ref<NSObject> last = lists->vector.back();
                std::erase_if(
                    lists->vector, [&](const Ref<NSObject>& o) { return isEqual(o, last.get()); });
                lists->vector.insert(lists->vector.begin(), last);
            }) };
    }

    Pair reverse()
    {
        const auto lists = std::make_shared<Lists>();
        return { repeated([=](std::size_t) { keep(reversedArray(lists->array)); }),
            repeated([=](std::size_t) {
                const std::vector<Ref<NSObject>> back(lists->vector.rbegin(), lists->vector.rend());
                keep(back.front());
            }) };
    }

}

void addLists(Plan& plan)
{
    plan.time("addObjectOnce: to 1000 numbers, present", timesFloor(3), addOnce);
    plan.time("insertObjectOnce: the last of 1000 to the front", timesFloor(3), insertOnce);
    plan.time("reversedArray of 1000", timesFloor(10), reverse);
}

}
