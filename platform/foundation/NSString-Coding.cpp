// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "CodingTable.h"
#include "NSStringPrivate.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

// Strings of the class itself stand in an archive as they are; this is for all others, and for text that no property
// list can hold.
template <> struct NSString::Methods<struct Coding> {

    static void encode(NSString& self, NSCoder* coder)
    {
        const strings::Contents text(&self);
        if (archives::encodeText(coder, text.view(), "NS.string"_ns))
            return;
        const std::u16string units = text->units();
        coder->encodeBytes_length_forKey(
            units.data(), units.size() * sizeof(char16_t), "NS.units"_ns);
    }
    static Ref<NSObject> initWithCoder(NSString& self, NSCoder* coder)
    {
        if (const Ref<NSString> text = decode<NSString>(coder, "NS.string"_ns);
            text && text != &self) {
            if (!archives::charge(coder, text->length()))
                return nullptr;
            return self.initWithString(text.get());
        }
        NSUInteger length = 0;
        const std::uint8_t* bytes = coder->decodeBytesForKey_returnedLength("NS.units"_ns, &length);
        if (!bytes || length % sizeof(char16_t) != 0) {
            archives::refuse(coder, "a string has no text");
            return nullptr;
        }
        if (!archives::charge(coder, length))
            return nullptr;
        std::u16string units(length / sizeof(char16_t), u'\0');
        std::memcpy(units.data(), bytes, length);
        return self.initWithCharacters_length(units.data(), units.size());
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSString, Coding)

}
