// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "CodingTable.h"
#include "NSDate.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSDate::Methods<struct Coding> {

    static void encode(NSDate& self, NSCoder* coder)
    {
        coder->encodeDouble_forKey(self.timeIntervalSinceReferenceDate(), "NS.time"_ns);
    }
    static Ref<NSObject> initWithCoder(NSDate& self, NSCoder* coder)
    {
        const NSTimeInterval seconds = coder->decodeDoubleForKey("NS.time"_ns);
        if (!std::isfinite(seconds)
            || (seconds == 0 && !coder->containsValueForKey("NS.time"_ns))) {
            archives::refuse(coder, "a date has no time");
            return nullptr;
        }
        return self.initWithTimeIntervalSinceReferenceDate(seconds);
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSDate, Coding)

}
