// SPDX-License-Identifier: Apache-2.0
#include "NSUUID.h"

#include <cerrno>
#include <cstring>
#include <optional>
#include <system_error>

#include <sys/random.h>

#include "CodingTable.h"
#include "HashingPrivate.h"
#include "NSString.h"
#include "StringConstant.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr std::size_t kTextLength = 36;
    constexpr StringConstant<"NS.uuidbytes"> kBytesKey;

    bool isDash(std::size_t place)
    {
        return place == 8 || place == 13 || place == 18 || place == 23;
    }

    int digit(char character)
    {
        if (character >= '0' && character <= '9')
            return character - '0';
        const int letter = character | 0x20;
        return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
    }

    std::optional<NSUUID::Bytes> bytesFrom(const std::string& text)
    {
        if (text.size() != kTextLength)
            return std::nullopt;
        NSUUID::Bytes bytes {};
        std::size_t nibbles = 0;
        for (std::size_t i = 0; i < kTextLength; ++i) {
            if (isDash(i)) {
                if (text[i] != '-')
                    return std::nullopt;
                continue;
            }
            const int value = digit(text[i]);
            if (value < 0)
                return std::nullopt;
            unsigned char& byte = bytes[nibbles++ / 2];
            byte = static_cast<unsigned char>(byte << 4 | value);
        }
        return bytes;
    }

    std::string textOf(const NSUUID::Bytes& bytes)
    {
        constexpr char kDigits[] = "0123456789ABCDEF";
        std::string text;
        text.reserve(kTextLength);
        for (const unsigned char byte : bytes) {
            if (isDash(text.size()))
                text += '-';
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
        }
        return text;
    }

    NSUUID::Bytes randomBytes()
    {
        NSUUID::Bytes bytes {};
        std::size_t filled = 0;
        while (filled < bytes.size()) {
            const ssize_t count = ::getrandom(bytes.data() + filled, bytes.size() - filled, 0);
            if (count < 0 && errno != EINTR)
                throw std::system_error(errno, std::generic_category(), "getrandom");
            if (count > 0)
                filled += static_cast<std::size_t>(count);
        }
        bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0f) | 0x40); // version 4
        bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3f) | 0x80); // the usual variant
        return bytes;
    }

}

template <> struct NSUUID::Methods<struct Identity> {

    static Ref<NSUUID> UUID(Class& self) { return cast<NSUUID>(self.send<"new", Ref<NSObject>>()); }

    static Ref<NSUUID> initWithBytes(NSUUID& self, const Bytes& bytes)
    {
        if (!super<NSUUID, "init", Ref<NSObject>>(self))
            return nullptr;
        self.bytes_ = bytes;
        return &self;
    }
    static Ref<NSUUID> init(NSUUID& self) { return initWithBytes(self, randomBytes()); }
    static Ref<NSUUID> initWithUUIDString(NSUUID& self, NSString* text)
    {
        const std::optional<Bytes> bytes = bytesFrom(utf8Of(text));
        return bytes ? initWithBytes(self, *bytes) : nullptr;
    }
    static Ref<NSUUID> initWithUUIDBytes(NSUUID& self, const unsigned char* source)
    {
        Bytes bytes {};
        if (source)
            std::memcpy(bytes.data(), source, bytes.size());
        return initWithBytes(self, bytes);
    }

    static void getUUIDBytes(NSUUID& self, unsigned char* buffer)
    {
        if (buffer)
            std::memcpy(buffer, self.bytes_.data(), self.bytes_.size());
    }
    static Ref<NSString> UUIDString(NSUUID& self) { return stringFrom(textOf(self.bytes_)); }
    static Ref<NSString> description(NSUUID& self) { return self.UUIDString(); }

    static NSComparisonResult compare(NSUUID& self, NSUUID* other)
    {
        if (!other)
            raise("NSInvalidArgumentException",
                std::string("*** -[") + class_getName(self.classObject())
                    + " compare:]: nil argument");
        const auto order = self.bytes_ <=> other->bytes_;
        return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
    }
    static bool isEqual(NSUUID& self, NSObject* other)
    {
        return other
            && (other == &self
                || (other->isKindOfClass(NSUUID::cls())
                    && self.bytes_ == static_cast<NSUUID*>(other)->bytes_));
    }
    static std::uint64_t hash(NSUUID& self) { return hashing::ofBytes(self.bytes_); }
    static Ref<NSObject> copyWithZone(NSUUID& self, void*) { return &self; }

    static void encodeWithCoder(NSUUID& self, NSCoder* coder)
    {
        maybe(coder)->encodeBytes_length_forKey(self.bytes_.data(), self.bytes_.size(), kBytesKey);
    }
    /// Nil where the archive holds no 16 bytes: an identity is never made up.
    static Ref<NSUUID> initWithCoder(NSUUID& self, NSCoder* coder)
    {
        NSUInteger length = 0;
        const std::uint8_t* const bytes
            = maybe(coder)->decodeBytesForKey_returnedLength(kBytesKey, &length);
        return length == self.bytes_.size() ? self.initWithUUIDBytes(bytes) : nullptr;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "UUID", imp<UUID> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithUUIDString:", imp<initWithUUIDString> },
            { "initWithUUIDBytes:", imp<initWithUUIDBytes> },
            { "getUUIDBytes:", imp<getUUIDBytes> },
            { "UUIDString", imp<UUIDString> },
            { "description", imp<description> },
            { "compare:", imp<compare> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSUUID, Identity)

}
