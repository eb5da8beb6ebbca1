// SPDX-License-Identifier: Apache-2.0
#include "NSIndexSet.h"
#include "CodingTable.h"
#include "CollectionsPrivate.h"
#include "NSData.h"
#include "foundation/archives/KeyedArchivePrivate.h"
#include "runtime/Table.h"

namespace brindle {

// - Shape: "NSRangeCount"; one range as "NSLocation" and "NSLength", several as "NSRangeData": location and length of each
//   in turn, as numbers of seven bits a byte.
template <> struct NSIndexSet::Methods<struct Coding> {

    static void encode(NSIndexSet& self, NSCoder* coder)
    {
        const std::vector<NSRange> ranges = collections::rangesOf(&self);
        coder->encodeInteger_forKey(static_cast<NSInteger>(ranges.size()), "NSRangeCount"_ns);
        if (ranges.size() == 1) {
            coder->encodeInteger_forKey(
                static_cast<NSInteger>(ranges[0].location), "NSLocation"_ns);
            coder->encodeInteger_forKey(static_cast<NSInteger>(ranges[0].length), "NSLength"_ns);
        } else if (!ranges.empty()) {
            std::vector<std::uint8_t> bytes;
            for (const NSRange range : ranges) {
                archives::appendNumber(bytes, range.location);
                archives::appendNumber(bytes, range.length);
            }
            coder->encodeBytes_length_forKey(bytes.data(), bytes.size(), "NSRangeData"_ns);
        }
    }

    static bool readRanges(NSCoder* coder, std::vector<NSRange>& ranges)
    {
        const NSInteger count = coder->decodeIntegerForKey("NSRangeCount"_ns);
        if (count == 1) {
            const NSInteger location = coder->decodeIntegerForKey("NSLocation"_ns);
            const NSInteger length = coder->decodeIntegerForKey("NSLength"_ns);
            ranges.push_back(
                { static_cast<NSUInteger>(location), static_cast<NSUInteger>(length) });
        } else if (count != 0) {
            NSUInteger length = 0;
            const std::uint8_t* data
                = coder->decodeBytesForKey_returnedLength("NSRangeData"_ns, &length);
            std::span<const std::uint8_t> bytes(data, length);
            while (!bytes.empty()) {
                NSRange range {};
                if (!archives::takeNumber(bytes, range.location)
                    || !archives::takeNumber(bytes, range.length))
                    return false;
                ranges.push_back(range);
            }
        }
        return static_cast<std::size_t>(count) == ranges.size() && areInOrder(ranges);
    }
    static bool areInOrder(const std::vector<NSRange>& ranges)
    {
        constexpr NSUInteger kEnd = NSNotFound;
        NSUInteger free = 0;
        for (const NSRange range : ranges) {
            if (range.location < free || range.location >= kEnd || !range.length
                || range.length > kEnd - range.location)
                return false;
            free = range.location + range.length + 1; // two ranges have a gap between them
        }
        return true;
    }
    static Ref<NSObject> initWithCoder(NSIndexSet& self, NSCoder* coder)
    {
        std::vector<NSRange> ranges;
        if (!readRanges(coder, ranges)) {
            archives::refuse(coder, "the ranges of an index set make no sense");
            return nullptr;
        }
        if (!super<NSIndexSet, "init", Ref<NSObject>>(self))
            return nullptr;
        self.ranges_ = std::move(ranges);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSIndexSet, Coding)

}
