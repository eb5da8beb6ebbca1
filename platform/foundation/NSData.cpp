// SPDX-License-Identifier: Apache-2.0
#include "NSData.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "CollectionsPrivate.h"
#include "FilesPrivate.h"
#include "HashingPrivate.h"
#include "NSString.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using collections::placeOf;

namespace {

    void requireRange(const NSData& self, const char* operation, NSRange range)
    {
        const NSUInteger length = self.length();
        if (range.location <= length && range.length <= length - range.location)
            return;
        raise("NSRangeException",
            placeOf(&self, operation) + "range {" + std::to_string(range.location) + ", "
                + std::to_string(range.length) + "} exceeds data length " + std::to_string(length));
    }

    /// Buffers answer false when there is no such memory.
    void requireMemory(bool done, const NSData& self, const char* operation, NSUInteger length)
    {
        if (!done)
            raise("NSInvalidArgumentException",
                placeOf(&self, operation) + "no memory for " + std::to_string(length) + " bytes");
    }

    void requireBuffer(
        const NSData& self, const char* operation, const void* buffer, NSUInteger length)
    {
        if (length && !buffer)
            raise("NSInvalidArgumentException",
                placeOf(&self, operation) + "nil buffer for " + std::to_string(length) + " bytes");
    }

    bool isOneWord(const std::string& path)
    {
        return !path.empty() && path.find('\0') == std::string::npos;
    }

}

std::span<const unsigned char> bytesOf(const NSData* data)
{
    const NSUInteger length = maybe(data)->length();
    if (!length)
        return {};
    return { static_cast<const unsigned char*>(data->bytes()), length };
}

Ref<NSData> dataFrom(std::span<const unsigned char> bytes)
{
    return NSData::cls().dataWithBytes_length(bytes.data(), bytes.size());
}

// A subclass may keep its bytes elsewhere: it overrides `length` and `bytes`, and the rest asks those.
template <> struct NSData::Methods<struct Reading> {

    static Ref<NSData> alloc(Class& self) { return cast<NSData>(NSObject::Meta { &self }.alloc()); }

    static Ref<NSData> data(Class& self) { return cast<NSData>(alloc(self)->init()); }
    static Ref<NSData> dataWithBytes(Class& self, const void* bytes, NSUInteger length)
    {
        if (&self != classOf<NSData>())
            return alloc(self)->initWithBytes_length(bytes, length);
        const Ref<NSData> data
            = Ref<NSData>::adopt(static_cast<NSData*>(class_createInstance(&self)));
        fill(*data, bytes, length);
        return data;
    }
    static Ref<NSData> dataWithBytesNoCopyFree(
        Class& self, void* bytes, NSUInteger length, bool free)
    {
        return alloc(self)->initWithBytesNoCopy_length_freeWhenDone(bytes, length, free);
    }
    static Ref<NSData> dataWithBytesNoCopy(Class& self, void* bytes, NSUInteger length)
    {
        return dataWithBytesNoCopyFree(self, bytes, length, true);
    }
    static Ref<NSData> dataWithData(Class& self, NSData* other)
    {
        return alloc(self)->initWithData(other);
    }
    static Ref<NSData> dataWithContentsOfFile(Class& self, NSString* path)
    {
        return alloc(self)->initWithContentsOfFile(path);
    }
    static Ref<NSData> dataWithContentsOfMappedFile(Class& self, NSString* path)
    {
        const Ref<NSData> data = cast<NSData>(alloc(self)->init());
        return initWithBuffer(*data, path, &files::map);
    }

    static void fill(NSData& self, const void* bytes, NSUInteger length)
    {
        requireBuffer(self, "initWithBytes:length:", bytes, length);
        requireMemory(self.buffer_.append(bytes, length), self, "initWithBytes:length:", length);
    }
    static Ref<NSData> initWithBytes(NSData& self, const void* bytes, NSUInteger length)
    {
        if (!super<NSData, "init", Ref<NSObject>>(self))
            return nullptr;
        fill(self, bytes, length);
        return &self;
    }
    static Ref<NSData> initWithBytesNoCopy(NSData& self, void* bytes, NSUInteger length, bool free)
    {
        if (!super<NSData, "init", Ref<NSObject>>(self))
            return nullptr;
        requireBuffer(self, "initWithBytesNoCopy:length:freeWhenDone:", bytes, length);
        self.buffer_ = ByteBuffer(
            bytes, length, free ? ByteBuffer::Owner::allocated : ByteBuffer::Owner::borrowed);
        return &self;
    }
    static Ref<NSData> initWithData(NSData& self, NSData* other)
    {
        const std::span<const unsigned char> bytes = bytesOf(other);
        return self.initWithBytes_length(bytes.data(), bytes.size());
    }
    static Ref<NSData> initWithBuffer(
        NSData& self, NSString* path, std::optional<ByteBuffer> (*load)(const char*))
    {
        const std::string name = utf8Of(path);
        if (!isOneWord(name))
            return nullptr;
        std::optional<ByteBuffer> buffer = load(name.c_str());
        if (!buffer)
            return nullptr;
        self.buffer_ = std::move(*buffer);
        return &self;
    }
    static Ref<NSData> initWithContentsOfFile(NSData& self, NSString* path)
    {
        if (!super<NSData, "init", Ref<NSObject>>(self))
            return nullptr;
        return initWithBuffer(self, path, &files::read);
    }

    static NSUInteger length(NSData& self) { return self.buffer_.length(); }
    static const void* bytes(NSData& self) { return self.buffer_.bytes(); }
    static void getBytesRange(NSData& self, void* buffer, NSRange range)
    {
        requireRange(self, "getBytes:range:", range);
        requireBuffer(self, "getBytes:range:", buffer, range.length);
        if (range.length)
            std::memcpy(buffer, bytesOf(&self).data() + range.location, range.length);
    }
    static void getBytesLength(NSData& self, void* buffer, NSUInteger length)
    {
        getBytesRange(self, buffer, { 0, std::min(length, self.length()) });
    }
    static Ref<NSData> subdataWithRange(NSData& self, NSRange range)
    {
        requireRange(self, "subdataWithRange:", range);
        if (range.length == self.length())
            return cast<NSData>(self.copy());
        return dataFrom(bytesOf(&self).subspan(range.location, range.length));
    }

    static NSRange rangeOfData(
        NSData& self, NSData* searched, NSDataSearchOptions options, NSRange range)
    {
        requireRange(self, "rangeOfData:options:range:", range);
        const auto where = bytesOf(&self).subspan(range.location, range.length);
        const auto what = bytesOf(searched);
        const NSRange nothing { static_cast<NSUInteger>(NSNotFound), 0 };
        if (what.empty() || what.size() > where.size())
            return nothing;
        const bool backwards = options & NSDataSearchBackwards;
        if (options & NSDataSearchAnchored) {
            const std::size_t at = backwards ? where.size() - what.size() : 0;
            if (!std::equal(what.begin(), what.end(), where.subspan(at).begin()))
                return nothing;
            return { range.location + at, what.size() };
        }
        const auto found = backwards
            ? std::find_end(where.begin(), where.end(), what.begin(), what.end())
            : std::search(where.begin(), where.end(), what.begin(), what.end());
        if (found == where.end())
            return nothing;
        return { range.location + static_cast<NSUInteger>(found - where.begin()), what.size() };
    }

    static bool isEqualToData(NSData& self, NSData* other)
    {
        if (!other)
            return false;
        const auto a = bytesOf(&self);
        const auto b = bytesOf(other);
        return a.size() == b.size()
            && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
    }
    static bool isEqual(NSData& self, NSObject* other)
    {
        return other
            && (other == &self
                || (other->isKindOfClass(NSData::cls())
                    && self.isEqualToData(static_cast<NSData*>(other))));
    }
    static std::uint64_t hash(NSData& self) { return hashing::ofBytes(bytesOf(&self)); }
    static Ref<NSObject> copyWithZone(NSData& self, void*)
    {
        if (self.isKindOfClass(NSMutableData::cls()))
            return NSData::cls().dataWithData(&self);
        return &self;
    }
    static Ref<NSObject> mutableCopyWithZone(NSData& self, void*)
    {
        return NSMutableData::cls().dataWithData(&self);
    }
    static Ref<NSString> description(NSData& self)
    {
        static constexpr char kDigits[] = "0123456789abcdef";
        std::string text = "<";
        std::size_t index = 0;
        for (const unsigned char byte : bytesOf(&self)) {
            if (index && index % 4 == 0)
                text += ' ';
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
            ++index;
        }
        return stringFrom(text + ">");
    }

    static bool writeToFile(NSData& self, NSString* path, bool atomically)
    {
        const std::string name = utf8Of(path);
        if (!isOneWord(name))
            return false;
        return atomically ? files::writeAtomically(name.c_str(), bytesOf(&self))
                          : files::write(name.c_str(), bytesOf(&self));
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        t.classMethods({
            { "data", imp<data> },
            { "dataWithBytes:length:", imp<dataWithBytes> },
            { "dataWithBytesNoCopy:length:", imp<dataWithBytesNoCopy> },
            { "dataWithBytesNoCopy:length:freeWhenDone:", imp<dataWithBytesNoCopyFree> },
            { "dataWithData:", imp<dataWithData> },
            { "dataWithContentsOfFile:", imp<dataWithContentsOfFile> },
            { "dataWithContentsOfMappedFile:", imp<dataWithContentsOfMappedFile> },
        });
        t.methods({
            { "initWithBytes:length:", imp<initWithBytes> },
            { "initWithBytesNoCopy:length:freeWhenDone:", imp<initWithBytesNoCopy> },
            { "initWithData:", imp<initWithData> },
            { "initWithContentsOfFile:", imp<initWithContentsOfFile> },
            { "length", imp<length> },
            { "bytes", imp<bytes> },
            { "getBytes:length:", imp<getBytesLength> },
            { "getBytes:range:", imp<getBytesRange> },
            { "subdataWithRange:", imp<subdataWithRange> },
            { "rangeOfData:options:range:", imp<rangeOfData> },
            { "isEqualToData:", imp<isEqualToData> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "description", imp<description> },
            { "writeToFile:atomically:", imp<writeToFile> },
        });
    }
};
BRINDLE_RECORD(NSData, Reading)

template <> struct NSMutableData::Methods<struct Changing> {

    static Ref<NSMutableData> alloc(Class& self)
    {
        return cast<NSMutableData>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSMutableData> dataWithCapacity(Class& self, NSUInteger capacity)
    {
        return alloc(self)->initWithCapacity(capacity);
    }
    static Ref<NSMutableData> dataWithLength(Class& self, NSUInteger length)
    {
        return alloc(self)->initWithLength(length);
    }
    static Ref<NSMutableData> initWithCapacity(NSMutableData& self, NSUInteger capacity)
    {
        if (!super<NSMutableData, "init", Ref<NSObject>>(self))
            return nullptr;
        static_cast<void>(self.buffer_.reserve(capacity)); // a hint
        return &self;
    }
    static Ref<NSMutableData> initWithLength(NSMutableData& self, NSUInteger length)
    {
        if (!super<NSMutableData, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setLength(length);
        return &self;
    }

    static void* mutableBytes(NSMutableData& self)
    {
        requireMemory(self.buffer_.reserve(self.buffer_.length()), self, "mutableBytes", 0);
        return self.buffer_.bytes();
    }
    static void setLength(NSMutableData& self, NSUInteger length)
    {
        requireMemory(self.buffer_.resize(length), self, "setLength:", length);
    }
    static void increaseLengthBy(NSMutableData& self, NSUInteger extra)
    {
        const NSUInteger length = self.length();
        requireMemory(extra <= ~length, self, "increaseLengthBy:", extra);
        self.setLength(length + extra);
    }
    static void append(NSMutableData& self, const void* bytes, NSUInteger length)
    {
        requireBuffer(self, "appendBytes:length:", bytes, length);
        requireMemory(self.buffer_.append(bytes, length), self, "appendBytes:length:", length);
    }
    static void appendData(NSMutableData& self, NSData* other)
    {
        const auto bytes = bytesOf(other);
        self.appendBytes_length(bytes.data(), bytes.size());
    }
    static void replace(NSMutableData& self, NSRange range, const void* bytes, NSUInteger length)
    {
        requireRange(self, "replaceBytesInRange:withBytes:length:", range);
        const auto old = bytesOf(&self);
        ByteBuffer fresh; // the bytes may be the receiver's own
        const bool done = length <= ~(old.size() - range.length)
            && fresh.reserve(old.size() - range.length + length)
            && fresh.append(old.data(), range.location)
            && (bytes ? fresh.append(bytes, length) : fresh.resize(range.location + length))
            && fresh.append(old.data() + range.location + range.length,
                old.size() - range.location - range.length);
        requireMemory(done, self, "replaceBytesInRange:withBytes:length:", length);
        self.buffer_ = std::move(fresh);
    }
    static void replaceSame(NSMutableData& self, NSRange range, const void* bytes)
    {
        // The one case that may go past the end: the data then grows.
        const NSUInteger length = self.length();
        if (range.location > length || range.length > ~range.location)
            requireRange(self, "replaceBytesInRange:withBytes:", range);
        const NSUInteger end = range.location + range.length;
        replace(
            self, { range.location, std::min(end, length) - range.location }, bytes, range.length);
    }
    static void reset(NSMutableData& self, NSRange range) { replaceSame(self, range, nullptr); }
    static void setData(NSMutableData& self, NSData* other)
    {
        const auto bytes = bytesOf(other);
        replace(self, { 0, self.length() }, bytes.data(), bytes.size());
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "dataWithCapacity:", imp<dataWithCapacity> },
            { "dataWithLength:", imp<dataWithLength> },
        });
        t.methods({
            { "initWithCapacity:", imp<initWithCapacity> },
            { "initWithLength:", imp<initWithLength> },
            { "mutableBytes", imp<mutableBytes> },
            { "setLength:", imp<setLength> },
            { "increaseLengthBy:", imp<increaseLengthBy> },
            { "appendBytes:length:", imp<append> },
            { "appendData:", imp<appendData> },
            { "replaceBytesInRange:withBytes:", imp<replaceSame> },
            { "replaceBytesInRange:withBytes:length:", imp<replace> },
            { "resetBytesInRange:", imp<reset> },
            { "setData:", imp<setData> },
        });
    }
};
BRINDLE_RECORD(NSMutableData, Changing)

}
