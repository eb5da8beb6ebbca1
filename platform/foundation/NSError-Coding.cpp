// SPDX-License-Identifier: Apache-2.0
#include "NSError.h"
#include "CodingTable.h"
#include "NSArray.h"
#include "NSData.h"
#include "NSDate.h"
#include "NSDictionary.h"
#include "NSNumber.h"
#include "NSSet.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSError::Methods<struct Coding> {

    static void encode(NSError& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.domain().get(), "NSDomain"_ns);
        coder->encodeInteger_forKey(self.code(), "NSCode"_ns);
        coder->encodeObject_forKey(self.userInfo_.get(), "NSUserInfo"_ns);
    }
    static Ref<NSObject> initWithCoder(NSError& self, NSCoder* coder)
    {
        const Ref<NSString> domain = decode<NSString>(coder, "NSDomain"_ns);
        if (!domain) {
            archives::refuse(coder, "an error has no domain");
            return nullptr;
        }
        const Ref<NSSet> facts = makeSet({ NSDictionary::cls(), NSArray::cls(), NSString::cls(),
            NSNumber::cls(), NSDate::cls(), NSData::cls(), NSError::cls() });
        const Ref<NSObject> info
            = coder->decodeObjectOfClasses_forKey(facts.get(), "NSUserInfo"_ns);
        const bool isDictionary = info && info->isKindOfClass(NSDictionary::cls());
        return self.initWithDomain_code_userInfo(domain.get(),
            coder->decodeIntegerForKey("NSCode"_ns),
            isDictionary ? static_cast<NSDictionary*>(info.get()) : nullptr);
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSError, Coding)

}
