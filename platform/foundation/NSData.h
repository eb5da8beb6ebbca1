// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "ByteBuffer.h"
#include "NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

using NSDataBase64EncodingOptions = NSUInteger;
enum : NSUInteger {
    NSDataBase64Encoding64CharacterLineLength = 1,
    NSDataBase64Encoding76CharacterLineLength = 2,
    // Lines end in CR LF unless only one of these is asked for.
    NSDataBase64EncodingEndLineWithCarriageReturn = 16,
    NSDataBase64EncodingEndLineWithLineFeed = 32,
};
using NSDataBase64DecodingOptions = NSUInteger;
enum : NSUInteger { NSDataBase64DecodingIgnoreUnknownCharacters = 1 };
using NSDataSearchOptions = NSUInteger;
enum : NSUInteger { NSDataSearchBackwards = 1, NSDataSearchAnchored = 2 };

/// Bytes that do not change.
///
/// - Raises: `NSRangeException`, "*** -[NSData subdataWithRange:]: range {2, 5} exceeds data length 4".
/// Thread: any.
class NSData : public NSObject {
    BRINDLE_OBJECT(NSData, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSData> data() const { return send<"data", Ref<NSData>>(); }
        /// Copies the bytes.
        Ref<NSData> dataWithBytes_length(const void* bytes, NSUInteger length) const
        {
            return send<"dataWithBytes:length:", Ref<NSData>>(bytes, length);
        }
        /// Takes the bytes over; they are given back by `free`.
        Ref<NSData> dataWithBytesNoCopy_length(void* bytes, NSUInteger length) const
        {
            return send<"dataWithBytesNoCopy:length:", Ref<NSData>>(bytes, length);
        }
        Ref<NSData> dataWithBytesNoCopy_length_freeWhenDone(
            void* bytes, NSUInteger length, bool freeWhenDone) const
        {
            return send<"dataWithBytesNoCopy:length:freeWhenDone:", Ref<NSData>>(
                bytes, length, freeWhenDone);
        }
        Ref<NSData> dataWithData(const NSData* other) const
        {
            return send<"dataWithData:", Ref<NSData>>(other);
        }
        /// Reads a whole file.
        /// - Nil: on any failure, and for a nil path.
        Ref<NSData> dataWithContentsOfFile(const NSString* path) const
        {
            return send<"dataWithContentsOfFile:", Ref<NSData>>(path);
        }
        /// Shares the file's pages instead of reading them.
        Ref<NSData> dataWithContentsOfMappedFile(const NSString* path) const
        {
            return send<"dataWithContentsOfMappedFile:", Ref<NSData>>(path);
        }
    };

    // ---- making

    Ref<NSData> initWithBytes_length(const void* bytes, NSUInteger length)
    {
        return send<"initWithBytes:length:", Ref<NSData>>(bytes, length);
    }
    Ref<NSData> initWithBytesNoCopy_length_freeWhenDone(
        void* bytes, NSUInteger length, bool freeWhenDone)
    {
        return send<"initWithBytesNoCopy:length:freeWhenDone:", Ref<NSData>>(
            bytes, length, freeWhenDone);
    }
    Ref<NSData> initWithData(const NSData* other)
    {
        return send<"initWithData:", Ref<NSData>>(other);
    }
    Ref<NSData> initWithContentsOfFile(const NSString* path)
    {
        return send<"initWithContentsOfFile:", Ref<NSData>>(path);
    }
    /// - Nil: for text that is not base64; unknown characters are passed over only with the option.
    Ref<NSData> initWithBase64EncodedString_options(
        const NSString* text, NSDataBase64DecodingOptions options)
    {
        return send<"initWithBase64EncodedString:options:", Ref<NSData>>(text, options);
    }
    Ref<NSData> initWithBase64EncodedData_options(
        const NSData* text, NSDataBase64DecodingOptions options)
    {
        return send<"initWithBase64EncodedData:options:", Ref<NSData>>(text, options);
    }

    // ---- reading

    NSUInteger length() const { return send<"length", NSUInteger>(); }
    /// Answers the first byte; any pointer, not to be read, when there are none.
    /// - Owner: the data; a change of mutable data may move them.
    const void* bytes() const { return send<"bytes", const void*>(); }
    /// Copies at most `length` bytes to a buffer.
    void getBytes_length(void* buffer, NSUInteger length) const
    {
        send<"getBytes:length:">(buffer, length);
    }
    void getBytes_range(void* buffer, NSRange range) const
    {
        send<"getBytes:range:">(buffer, range);
    }
    Ref<NSData> subdataWithRange(NSRange range) const
    {
        return send<"subdataWithRange:", Ref<NSData>>(range);
    }
    /// - Returns: {NSNotFound, 0} when the bytes are not there; empty data is never found.
    NSRange rangeOfData_options_range(
        const NSData* searched, NSDataSearchOptions options, NSRange range) const
    {
        return send<"rangeOfData:options:range:", NSRange>(searched, options, range);
    }
    bool isEqualToData(const NSData* other) const { return send<"isEqualToData:", bool>(other); }
    Ref<NSString> base64EncodedStringWithOptions(NSDataBase64EncodingOptions options) const
    {
        return send<"base64EncodedStringWithOptions:", Ref<NSString>>(options);
    }
    Ref<NSData> base64EncodedDataWithOptions(NSDataBase64EncodingOptions options) const
    {
        return send<"base64EncodedDataWithOptions:", Ref<NSData>>(options);
    }

    // ---- files

    /// Writes the bytes and answers whether that worked.
    /// - atomically: a neighbour of the file is written, brought to the disk and given its name, so that a reader
    ///   sees the old bytes or the new ones; permissions and symbolic links stay.
    bool writeToFile_atomically(const NSString* path, bool atomically) const
    {
        return send<"writeToFile:atomically:", bool>(path, atomically);
    }

private:
    friend class NSMutableData;
    friend struct DataAccess;

    ByteBuffer buffer_;
};

/// Bytes that can be changed, added and removed.
/// Thread: one at a time.
class NSMutableData : public NSData {
    BRINDLE_OBJECT(NSMutableData, NSData)

public:
    struct Meta : NSData::Meta {
        Ref<NSMutableData> data() const { return send<"data", Ref<NSMutableData>>(); }
        Ref<NSMutableData> dataWithBytes_length(const void* bytes, NSUInteger length) const
        {
            return send<"dataWithBytes:length:", Ref<NSMutableData>>(bytes, length);
        }
        Ref<NSMutableData> dataWithData(const NSData* other) const
        {
            return send<"dataWithData:", Ref<NSMutableData>>(other);
        }
        Ref<NSMutableData> dataWithContentsOfFile(const NSString* path) const
        {
            return send<"dataWithContentsOfFile:", Ref<NSMutableData>>(path);
        }
        Ref<NSMutableData> dataWithCapacity(NSUInteger capacity) const
        {
            return send<"dataWithCapacity:", Ref<NSMutableData>>(capacity);
        }
        /// Answers data of that many zeros.
        Ref<NSMutableData> dataWithLength(NSUInteger length) const
        {
            return send<"dataWithLength:", Ref<NSMutableData>>(length);
        }
    };

    Ref<NSMutableData> initWithCapacity(NSUInteger capacity)
    {
        return send<"initWithCapacity:", Ref<NSMutableData>>(capacity);
    }
    Ref<NSMutableData> initWithLength(NSUInteger length)
    {
        return send<"initWithLength:", Ref<NSMutableData>>(length);
    }
    void* mutableBytes() { return send<"mutableBytes", void*>(); }
    /// Cuts the data off, or adds zeros.
    /// - Raises: `NSInvalidArgumentException` for a length no memory can have.
    void setLength(NSUInteger length) { send<"setLength:">(length); }
    void increaseLengthBy(NSUInteger extra) { send<"increaseLengthBy:">(extra); }
    void appendBytes_length(const void* bytes, NSUInteger length)
    {
        send<"appendBytes:length:">(bytes, length);
    }
    void appendData(const NSData* other) { send<"appendData:">(other); }
    void replaceBytesInRange_withBytes(NSRange range, const void* bytes)
    {
        send<"replaceBytesInRange:withBytes:">(range, bytes);
    }
    /// - bytes: nil fills with zeros.
    void replaceBytesInRange_withBytes_length(NSRange range, const void* bytes, NSUInteger length)
    {
        send<"replaceBytesInRange:withBytes:length:">(range, bytes, length);
    }
    void resetBytesInRange(NSRange range) { send<"resetBytesInRange:">(range); }
    void setData(const NSData* other) { send<"setData:">(other); }
};

/// Answers data of a copy of these bytes.
BRINDLE_EXPORT Ref<NSData> dataFrom(std::span<const unsigned char> bytes);
/// Answers the bytes for reading, lent as long as the data is neither changed nor gone; none for nil.
BRINDLE_EXPORT std::span<const unsigned char> bytesOf(const NSData* data);

}
