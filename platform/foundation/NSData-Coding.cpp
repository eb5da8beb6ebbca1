// SPDX-License-Identifier: Apache-2.0
#include "NSData.h"
#include "CodingTable.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

// Data of the class itself stands in an archive as it is; this is for all others.
template <> struct NSData::Methods<struct Coding> {

    static void encode(NSData& self, NSCoder* coder)
    {
        const std::span<const unsigned char> bytes = bytesOf(&self);
        coder->encodeBytes_length_forKey(bytes.data(), bytes.size(), "NS.data"_ns);
    }
    static Ref<NSObject> initWithCoder(NSData& self, NSCoder* coder)
    {
        NSUInteger length = 0;
        const std::uint8_t* bytes = coder->decodeBytesForKey_returnedLength("NS.data"_ns, &length);
        if (!bytes && !coder->containsValueForKey("NS.data"_ns)) {
            archives::refuse(coder, "data has no bytes");
            return nullptr;
        }
        return archives::charge(coder, length) ? self.initWithBytes_length(bytes, length) : nullptr;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSData, Coding)

}
