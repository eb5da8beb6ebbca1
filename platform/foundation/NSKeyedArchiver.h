// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSCoder.h"

namespace brindle {

class NSData;
class NSMutableData;
enum NSPropertyListFormat : NSUInteger;

namespace archives {
    class Writer;
}

/// Writes a graph of objects as a keyed archive: a property list that other programs can read.
///
/// - Shape: { "$version": 100000, "$archiver": "NSKeyedArchiver", "$top": { key: UID … }, "$objects": [ "$null", … ] }. An
///   object is a dictionary of its keys and "$class", a UID of { "$classname": …, "$classes": [ name, parents … ] }; strings,
///   numbers, booleans and data that do not change are plain values. Keys that begin with "$" get another "$".
/// An object is written once, however often it is met; graphs may have cycles. Nil is UID 0. The same graph gives the same bytes in every
/// run. What an object answers to `replacementObjectForKeyedArchiver:` and `classForKeyedArchiver` is respected.
/// - Raises: `NSInvalidArchiveOperationException` when encoding goes on after the end, when objects are nested more than
///   10,000 deep or the thread's stack is nearly used up, and for a class that does not support secure coding where that is required.
/// Thread: one at a time.
class NSKeyedArchiver : public NSCoder {
    BRINDLE_OBJECT(NSKeyedArchiver, NSCoder)

public:
    struct Meta : NSCoder::Meta {
        /// Answers a binary archive whose top holds the object under "root".
        Ref<NSData> archivedDataWithRootObject(NSObject* root) const
        {
            return send<"archivedDataWithRootObject:", Ref<NSData>>(root);
        }
        /// - Nil: where the other one raises; `error` says why.
        Ref<NSData> archivedDataWithRootObject_requiringSecureCoding_error(
            NSObject* root, bool secure, Ref<NSError>* error) const
        {
            return send<"archivedDataWithRootObject:requiringSecureCoding:error:", Ref<NSData>>(
                root, secure, error);
        }
        /// Writes such an archive as a file, atomically; NO when that fails.
        bool archiveRootObject_toFile(NSObject* root, const NSString* path) const
        {
            return send<"archiveRootObject:toFile:", bool>(root, path);
        }
        /// Sets the name under which instances of the class itself are archived by every archiver; nil: its own.
        void setClassName_forClass(NSString* name, Class* cls) const
        {
            send<"setClassName:forClass:">(name, cls);
        }
        Ref<NSString> classNameForClass(Class* cls) const
        {
            return send<"classNameForClass:", Ref<NSString>>(cls);
        }
    };

    /// The archive appears in `data` when encoding is finished.
    Ref<NSKeyedArchiver> initForWritingWithMutableData(NSMutableData* data)
    {
        return send<"initForWritingWithMutableData:", Ref<NSKeyedArchiver>>(data);
    }
    /// The archive is answered by `encodedData`.
    Ref<NSKeyedArchiver> initRequiringSecureCoding(bool secure)
    {
        return send<"initRequiringSecureCoding:", Ref<NSKeyedArchiver>>(secure);
    }
    /// Ends the archive; nothing can be encoded afterwards. The second time nothing happens.
    void finishEncoding() { send<"finishEncoding">(); }
    /// Finishes and answers the archive.
    Ref<NSData> encodedData() { return send<"encodedData", Ref<NSData>>(); }
    /// Binary (200) unless it is set to XML (100).
    /// - Raises: `NSInvalidArgumentException` for any other format.
    NSPropertyListFormat outputFormat() const
    {
        return send<"outputFormat", NSPropertyListFormat>();
    }
    void setOutputFormat(NSPropertyListFormat format) { send<"setOutputFormat:">(format); }
    void setRequiresSecureCoding(bool secure) { send<"setRequiresSecureCoding:">(secure); }

    /// Not kept. It may answer:
    /// - `archiver:willEncodeObject:`: what is archived instead, or nil; after the object's own replacement;
    /// - `archiver:didEncodeObject:`, `archiver:willReplaceObject:withObject:`, `archiverWillFinish:`, `archiverDidFinish:`.
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }
    /// Names of this archiver come before those of the class.
    void setClassName_forClass(NSString* name, Class* cls)
    {
        send<"setClassName:forClass:">(name, cls);
    }
    Ref<NSString> classNameForClass(Class* cls) const
    {
        return send<"classNameForClass:", Ref<NSString>>(cls);
    }

private:
    friend struct ArchiverAccess;

    std::unique_ptr<archives::Writer, void (*)(archives::Writer*)> writer_ { nullptr, nullptr };
    Ref<NSMutableData> output_;
    Ref<NSData> archive_; // when encoding is finished
    NSUInteger format_ = 200;
};

}
