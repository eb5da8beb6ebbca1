// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "AttributedStringPrivate.h"
#include "CodingTable.h"
#include "NSMutableString.h"
#include "archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

// - Shape: "NSString"; "NSAttributes" is the attributes of the whole text, or an array of all different ones; then
//   "NSAttributeInfo" holds, stretch by stretch, its length and the place in the array, seven bits a byte.
template <> struct NSAttributedString::Methods<struct Coding> {

    /// Answers the place of a dictionary among the different ones.
    static std::size_t placeOf(std::vector<Ref<NSObject>>& different, NSDictionary* attributes)
    {
        constexpr std::size_t kCompared = 64; // the rest may stand there twice
        const std::size_t first = different.size() - std::min(different.size(), kCompared);
        for (std::size_t i = first; i < different.size(); ++i) {
            if (different[i] == attributes || different[i]->isEqual(attributes))
                return i;
        }
        different.emplace_back(attributes);
        return different.size() - 1;
    }

    static void encode(NSAttributedString& self, NSCoder* coder)
    {
        std::vector<Ref<NSObject>> different;
        std::vector<std::uint8_t> stretches;
        const NSUInteger length = self.length();
        for (NSUInteger at = 0; at < length;) {
            NSRange range {};
            const Ref<NSDictionary> attributes = self.attributesAtIndex_effectiveRange(at, &range);
            const NSUInteger end = std::clamp(NSMaxRange(range), at + 1, length);
            archives::appendNumber(stretches, end - at);
            archives::appendNumber(stretches, placeOf(different, attributes.get()));
            at = end;
        }
        coder->encodeObject_forKey(self.string().get(), "NSString"_ns);
        if (different.size() == 1) {
            coder->encodeObject_forKey(different.front().get(), "NSAttributes"_ns);
        } else if (!different.empty()) {
            const Ref<NSArray> list = NSArray::cls().arrayWithObjects_count(
                collections::lent(different).data(), different.size());
            coder->encodeObject_forKey(list.get(), "NSAttributes"_ns);
            coder->encodeBytes_length_forKey(
                stretches.data(), stretches.size(), "NSAttributeInfo"_ns);
        }
    }

    /// Answers what the customary attributes are made of, as far as the program has these classes. Only a coder that
    /// requires secure coding looks at it.
    static Ref<NSSet> allowedClasses()
    {
        std::vector<NSObject*> classes;
        for (const char* name : { "NSDictionary", "NSArray", "NSString", "NSNumber", "NSValue",
                 "NSDate", "NSData", "NSURL", "NSAttributedString", "NSFont", "NSColor",
                 "NSParagraphStyle", "NSTextTab", "NSShadow", "NSTextAttachment" }) {
            if (Class* const cls = objc_getClass(name))
                classes.push_back(cls);
        }
        return NSSet::cls().setWithObjects_count(classes.data(), classes.size());
    }

    static bool readStretches(
        NSCoder* coder, NSArray* different, NSUInteger length, std::vector<attributes::Run>& runs)
    {
        NSUInteger count = 0;
        const std::uint8_t* data
            = coder->decodeBytesForKey_returnedLength("NSAttributeInfo"_ns, &count);
        std::span<const std::uint8_t> bytes(data, count);
        NSUInteger at = 0;
        while (!bytes.empty()) {
            NSUInteger units = 0;
            NSUInteger place = 0;
            if (!archives::takeNumber(bytes, units) || !archives::takeNumber(bytes, place)
                || units > length - at || place >= different->count())
                return false;
            const Ref<NSObject> attributes = different->objectAtIndex(place);
            if (!attributes->isKindOfClass(NSDictionary::cls()))
                return false;
            at += units;
            if (units)
                runs.push_back({ at, cast<NSDictionary>(attributes->copy()) });
        }
        return at == length;
    }
    static Ref<NSObject> initWithCoder(NSAttributedString& self, NSCoder* coder)
    {
        const Ref<NSString> text = decode<NSString>(coder, "NSString"_ns);
        const Ref<NSObject> kept
            = coder->decodeObjectOfClasses_forKey(allowedClasses().get(), "NSAttributes"_ns);
        const bool isWhole = !kept || kept->isKindOfClass(NSDictionary::cls());
        if (!text || (!isWhole && !kept->isKindOfClass(NSArray::cls()))) {
            archives::refuse(coder, "an attributed string has no text or no attributes");
            return nullptr;
        }
        const Ref<NSAttributedString> string = self.initWithString_attributes(
            text.get(), isWhole ? cast<NSDictionary>(kept).get() : nullptr);
        if (!string || isWhole)
            return string;
        std::vector<attributes::Run> runs;
        if (!readStretches(coder, static_cast<NSArray*>(kept.get()), text->length(), runs)) {
            archives::refuse(coder, "the attributes of a string make no sense");
            return nullptr;
        }
        attributes::Gate::runs(*string) = std::move(runs);
        return string;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSAttributedString, Coding)

}
