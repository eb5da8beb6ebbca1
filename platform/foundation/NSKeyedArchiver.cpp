// SPDX-License-Identifier: Apache-2.0
#include "NSKeyedArchiver.h"

#include <mutex>

#include "Exceptions.h"
#include "NSArray.h"
#include "NSData.h"
#include "NSDictionary.h"
#include "NSError.h"
#include "NSPropertyListSerialization.h"
#include "NSStringPrivate.h"
#include "foundation/archives/KeyedWriterPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using archives::Writer;

/// The way to an archiver's parts for the files of this folder.
struct ArchiverAccess {
    static Writer& writer(NSKeyedArchiver& archiver)
    {
        if (!archiver.writer_)
            archiver.writer_ = { new Writer(archiver), [](Writer* writer) { delete writer; } };
        return *archiver.writer_;
    }
};

namespace {

    Writer& writerOf(NSKeyedArchiver& archiver) { return ArchiverAccess::writer(archiver); }

    /// Names that hold for every archiver.
    struct SharedNames {
        std::mutex mutex;
        archives::NamesByClass names;

        static SharedNames& instance()
        {
            static SharedNames& only = *new SharedNames;
            return only;
        }
    };

    void setName(archives::NamesByClass& names, NSString* name, Class* cls)
    {
        if (name)
            names[cls] = cast<NSString>(name->copy());
        else
            names.erase(cls);
    }
    Ref<NSString> nameIn(const archives::NamesByClass& names, Class* cls)
    {
        const auto found = names.find(cls);
        return found == names.end() ? nullptr : found->second;
    }

}

template <> struct NSKeyedArchiver::Methods<struct Values> {

    static void encodeObject(NSKeyedArchiver& self, NSObject* object, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.reference(object));
    }
    static void encodeConditional(NSKeyedArchiver& self, NSObject* object, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.reference(object, true));
    }
    static void encodeUnkeyed(NSKeyedArchiver& self, NSObject* object)
    {
        Writer& writer = writerOf(self);
        writer.putUnkeyed(writer.reference(object));
    }
    static void encodeBool(NSKeyedArchiver& self, bool value, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.list().boolean(value));
    }
    template <class T> static void encodeInteger(NSKeyedArchiver& self, T value, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.list().integer(value));
    }
    static void encodeFloat(NSKeyedArchiver& self, float value, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.list().single(value));
    }
    static void encodeDouble(NSKeyedArchiver& self, double value, NSString* key)
    {
        Writer& writer = writerOf(self);
        writer.put(key, writer.list().real(value));
    }
    static void encodeBytes(
        NSKeyedArchiver& self, const std::uint8_t* bytes, NSUInteger length, NSString* key)
    {
        Writer& writer = writerOf(self);
        if (length)
            strings::checkArgument(self, "encodeBytes:length:forKey:", bytes);
        writer.put(key, writer.list().data({ bytes, length }));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "encodeObject:forKey:", imp<encodeObject> },
            { "encodeConditionalObject:forKey:", imp<encodeConditional> },
            { "encodeObject:", imp<encodeUnkeyed> },
            { "encodeBool:forKey:", imp<encodeBool> },
            { "encodeInt:forKey:", imp<encodeInteger<int>> },
            { "encodeInt32:forKey:", imp<encodeInteger<std::int32_t>> },
            { "encodeInt64:forKey:", imp<encodeInteger<std::int64_t>> },
            { "encodeInteger:forKey:", imp<encodeInteger<NSInteger>> },
            { "encodeFloat:forKey:", imp<encodeFloat> },
            { "encodeDouble:forKey:", imp<encodeDouble> },
            { "encodeBytes:length:forKey:", imp<encodeBytes> },
        });
    }
};
BRINDLE_RECORD(NSKeyedArchiver, Values)

template <> struct NSKeyedArchiver::Methods<struct Archives> {

    static Ref<NSKeyedArchiver> alloc(Class& self)
    {
        return cast<NSKeyedArchiver>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSData> archived(Class& self, NSObject* root)
    {
        return archivedRequiring(self, root, false);
    }
    static Ref<NSData> archivedRequiring(Class& self, NSObject* root, bool secure)
    {
        const Ref<NSKeyedArchiver> archiver = alloc(self)->initRequiringSecureCoding(secure);
        archiver->encodeObject_forKey(root, "root"_ns);
        return archiver->encodedData();
    }
    static Ref<NSData> archivedSecurely(
        Class& self, NSObject* root, bool secure, Ref<NSError>* error)
    {
        try {
            return archivedRequiring(self, root, secure);
        } catch (const Exception& raised) {
            reportError(error, NSCoderInvalidValueError,
                { { NSDebugDescriptionErrorKey, raised->reason().get() } });
            return nullptr;
        }
    }
    static bool archiveToFile(Class& self, NSObject* root, NSString* path)
    {
        return archived(self, root)->writeToFile_atomically(path, true);
    }

    static Ref<NSObject> init(NSKeyedArchiver& self)
    {
        return self.initRequiringSecureCoding(false);
    }
    static Ref<NSKeyedArchiver> initRequiring(NSKeyedArchiver& self, bool secure)
    {
        if (!super<NSKeyedArchiver, "init", Ref<NSObject>>(self))
            return nullptr;
        writerOf(self).isSecure = secure;
        return &self;
    }
    static Ref<NSKeyedArchiver> initForWriting(NSKeyedArchiver& self, NSMutableData* data)
    {
        self.output_ = data;
        return self.initRequiringSecureCoding(false);
    }

    static void finishEncoding(NSKeyedArchiver& self)
    {
        Writer& writer = writerOf(self);
        if (writer.isFinished())
            return;
        tell<"archiverWillFinish:">(self);
        self.archive_ = inFormat(self, writer.finish());
        if (self.output_)
            self.output_->setData(self.archive_.get());
        tell<"archiverDidFinish:">(self);
    }
    /// The other format is written by those who know it.
    static Ref<NSData> inFormat(NSKeyedArchiver& self, Ref<NSData> binary)
    {
        if (self.outputFormat() == NSPropertyListBinaryFormat_v1_0)
            return binary;
        const auto& lists = NSPropertyListSerialization::cls();
        Ref<NSError> error;
        const Ref<NSObject> list = lists.propertyListWithData_options_format_error(
            binary.get(), NSPropertyListImmutable, nullptr, &error);
        Ref<NSData> text = lists.dataWithPropertyList_format_options_error(
            list.get(), self.outputFormat(), 0, &error);
        if (!text)
            raise("NSInvalidArchiveOperationException",
                "*** -[NSKeyedArchiver finishEncoding]: "
                    + utf8Of(maybe(maybe(error)->userInfo())
                                 ->objectForKey(NSDebugDescriptionErrorKey)
                                 ->description()));
        return text;
    }
    template <Text Selector> static void tell(NSKeyedArchiver& self)
    {
        const Ref<NSObject> listener = self.delegate();
        if (listener && listener->respondsToSelector(selector<Selector>))
            listener->send<Selector>(static_cast<NSCoder*>(&self));
    }
    static Ref<NSData> encodedData(NSKeyedArchiver& self)
    {
        self.finishEncoding();
        return self.archive_;
    }

    static NSPropertyListFormat outputFormat(NSKeyedArchiver& self)
    {
        return static_cast<NSPropertyListFormat>(self.format_);
    }
    static void setOutputFormat(NSKeyedArchiver& self, NSPropertyListFormat format)
    {
        if (format != NSPropertyListXMLFormat_v1_0 && format != NSPropertyListBinaryFormat_v1_0)
            raise("NSInvalidArgumentException",
                "*** -[NSKeyedArchiver setOutputFormat:]: unknown format "
                    + std::to_string(static_cast<NSUInteger>(format)));
        self.format_ = format;
    }
    static bool requiresSecureCoding(NSKeyedArchiver& self) { return writerOf(self).isSecure; }
    static void setRequiresSecureCoding(NSKeyedArchiver& self, bool secure)
    {
        writerOf(self).isSecure = secure;
    }
    static Ref<NSObject> delegate(NSKeyedArchiver& self) { return writerOf(self).delegate(); }
    static void setDelegate(NSKeyedArchiver& self, NSObject* delegate)
    {
        writerOf(self).setDelegate(delegate);
    }

    static void setSharedName(Class&, NSString* name, Class* cls)
    {
        SharedNames& shared = SharedNames::instance();
        const std::lock_guard guard(shared.mutex);
        setName(shared.names, name, cls);
    }
    static Ref<NSString> sharedName(Class&, Class* cls)
    {
        SharedNames& shared = SharedNames::instance();
        const std::lock_guard guard(shared.mutex);
        return nameIn(shared.names, cls);
    }
    static void setOwnName(NSKeyedArchiver& self, NSString* name, Class* cls)
    {
        setName(writerOf(self).names, name, cls);
    }
    static Ref<NSString> ownName(NSKeyedArchiver& self, Class* cls)
    {
        return nameIn(writerOf(self).names, cls);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "archivedDataWithRootObject:", imp<archived> },
            { "archivedDataWithRootObject:requiringSecureCoding:error:", imp<archivedSecurely> },
            { "archiveRootObject:toFile:", imp<archiveToFile> },
            { "setClassName:forClass:", imp<setSharedName> },
            { "classNameForClass:", imp<sharedName> },
        });
        t.methods({
            { "init", imp<init> },
            { "initRequiringSecureCoding:", imp<initRequiring> },
            { "initForWritingWithMutableData:", imp<initForWriting> },
            { "finishEncoding", imp<finishEncoding> },
            { "encodedData", imp<encodedData> },
            { "outputFormat", imp<outputFormat> },
            { "setOutputFormat:", imp<setOutputFormat> },
            { "requiresSecureCoding", imp<requiresSecureCoding> },
            { "setRequiresSecureCoding:", imp<setRequiresSecureCoding> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "setClassName:forClass:", imp<setOwnName> },
            { "classNameForClass:", imp<ownName> },
        });
    }
};
BRINDLE_RECORD(NSKeyedArchiver, Archives)

namespace archives {

    // ---- lists, for archivers and for any other coder

    ListEncoder::ListEncoder(NSCoder* coder, NSString* key)
        : coder_(coder)
        , archiver_(coder->isKindOfClass(classOf<NSKeyedArchiver>())
                  ? static_cast<NSKeyedArchiver*>(coder)
                  : nullptr)
        , key_(key)
    {
        if (archiver_)
            start_ = writerOf(*archiver_).beginList();
    }

    ListEncoder::~ListEncoder()
    {
        if (archiver_)
            writerOf(*archiver_).dropList(start_);
    }

    void ListEncoder::add(NSObject* object)
    {
        if (archiver_) {
            Writer& writer = writerOf(*archiver_);
            writer.addToList(writer.reference(object));
        } else {
            coder_->encodeObject_forKey(object, elementKey(key_, count_).get());
        }
        ++count_;
    }

    bool encodeText(NSCoder* coder, strings::View text, NSString* key)
    {
        if (!text.isNarrow()
            && !lists::isPaired(text.size(), [&](std::size_t i) { return text[i]; }))
            return false;
        if (coder->isKindOfClass(classOf<NSKeyedArchiver>())) {
            Writer& writer = writerOf(*static_cast<NSKeyedArchiver*>(coder));
            writer.put(key, writer.list().string(text));
        } else {
            coder->encodeObject_forKey(strings::plain(text).get(), key);
        }
        return true;
    }

    void ListEncoder::finish()
    {
        if (archiver_)
            writerOf(*archiver_).finishList(start_, key_);
    }

}

}
