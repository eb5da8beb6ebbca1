// SPDX-License-Identifier: Apache-2.0
#include "NSKeyedUnarchiver.h"

#include <mutex>

#include "CollectionsPrivate.h"
#include "Exceptions.h"
#include "NSArray.h"
#include "NSError.h"
#include "NSNumber.h"
#include "NSSet.h"
#include "NSString.h"
#include "foundation/archives/KeyedReaderPrivate.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using archives::Reader;
using lists::Kind;

/// The way to an unarchiver's parts for the files of this folder.
struct UnarchiverAccess {
    static Reader& reader(NSKeyedUnarchiver& unarchiver)
    {
        if (!unarchiver.reader_)
            unarchiver.reader_ = { new Reader(unarchiver), [](Reader* reader) { delete reader; } };
        return *unarchiver.reader_;
    }
};

namespace {

    Reader& readerOf(NSKeyedUnarchiver& unarchiver) { return UnarchiverAccess::reader(unarchiver); }

    /// Classes that hold for every unarchiver.
    struct SharedClasses {
        std::mutex mutex;
        archives::ClassesByName classes;

        static SharedClasses& instance()
        {
            static SharedClasses& only = *new SharedClasses;
            return only;
        }
    };

    void setClass(archives::ClassesByName& classes, Class* cls, NSString* name)
    {
        if (cls)
            classes[utf8Of(name)] = cls;
        else
            classes.erase(utf8Of(name));
    }
    Class* classIn(const archives::ClassesByName& classes, NSString* name)
    {
        const auto found = classes.find(utf8Of(name));
        return found == classes.end() ? nullptr : found->second;
    }

    std::string incomprehensible(const NSData* data)
    {
        constexpr std::size_t kShown = 8;
        const auto bytes = bytesOf(data);
        std::string text
            = "*** -[NSKeyedUnarchiver initForReadingWithData:]: incomprehensible archive (";
        for (std::size_t i = 0; i < std::min(bytes.size(), kShown); ++i) {
            char byte[8];
            std::snprintf(byte, sizeof byte, "%s0x%02x", i ? ", " : "", bytes[i]);
            text += byte;
        }
        return text + ")";
    }

    std::vector<Class*> classesOf(NSSet* set)
    {
        std::vector<Class*> classes;
        for (const Ref<NSObject>& member : SetAccess::copy(set)) {
            if (!class_isMetaClass(member->isa_))
                raise("NSInvalidArgumentException",
                    "*** -[NSKeyedUnarchiver decodeObjectOfClasses:forKey:]: "
                        + utf8Of(member->description()) + " is no class");
            classes.push_back(static_cast<Class*>(member.get()));
        }
        return classes;
    }

}

template <> struct NSKeyedUnarchiver::Methods<struct Values> {

    static bool contains(NSKeyedUnarchiver& self, NSString* key)
    {
        return readerOf(self).find(key) != Reader::kNowhere;
    }
    static Class* classOfValue(NSKeyedUnarchiver& self, NSString* key)
    {
        Reader& reader = readerOf(self);
        return reader.classOf(reader.find(key));
    }
    static Ref<NSObject> decodeObject(NSKeyedUnarchiver& self, NSString* key)
    {
        Reader& reader = readerOf(self);
        return reader.object(reader.find(key), key);
    }
    static Ref<NSObject> decodeUnkeyed(NSKeyedUnarchiver& self)
    {
        Reader& reader = readerOf(self);
        return reader.object(reader.findUnkeyed(), nullptr);
    }
    static Ref<NSObject> decodeAllowing(
        NSKeyedUnarchiver& self, std::span<Class* const> classes, NSString* key)
    {
        Reader& reader = readerOf(self);
        const Reader::Allowing allowing(reader, classes);
        return self.decodeObjectForKey(key);
    }
    static Ref<NSObject> decodeOfClass(NSKeyedUnarchiver& self, Class* cls, NSString* key)
    {
        if (!readerOf(self).isSecure)
            return self.decodeObjectForKey(key);
        return decodeAllowing(self, { &cls, cls ? std::size_t { 1 } : 0 }, key);
    }
    static Ref<NSObject> decodeOfClasses(NSKeyedUnarchiver& self, NSSet* set, NSString* key)
    {
        if (!readerOf(self).isSecure)
            return self.decodeObjectForKey(key);
        return decodeAllowing(self, classesOf(set), key);
    }
    static Ref<NSSet> allowedClasses(NSKeyedUnarchiver& self)
    {
        Reader& reader = readerOf(self);
        if (!reader.isSecure)
            return nullptr;
        const std::vector<NSObject*> classes(reader.allowed().begin(), reader.allowed().end());
        return NSSet::cls().setWithObjects_count(classes.data(), classes.size());
    }

    // ---- numbers

    /// Reads a number with `read(list, place, kind)`; another kind of value fails.
    template <class T, class Read>
    static T number(NSKeyedUnarchiver& self, NSString* key, const char* what, Read read)
    {
        Reader& reader = readerOf(self);
        const Reader::Index value = reader.find(key);
        if (value == Reader::kNowhere)
            return T();
        const Reader::Index place = reader.plain(value);
        const Kind kind = place == Reader::kNowhere ? Kind::none : reader.list().kind(place);
        if (kind == Kind::boolean || kind == Kind::integer || kind == Kind::real)
            return read(reader.list(), place, kind);
        reader.fail("value for key (" + utf8Of(key) + ") is not " + what);
        return T();
    }
    static bool decodeBool(NSKeyedUnarchiver& self, NSString* key)
    {
        return number<bool>(self, key, "a boolean", [](auto& list, auto place, Kind kind) {
            return kind == Kind::boolean ? list.boolean(place)
                : kind == Kind::integer  ? list.integer(place) != 0
                                         : list.real(place) != 0;
        });
    }
    template <class T> static T decodeInteger(NSKeyedUnarchiver& self, NSString* key)
    {
        return number<T>(self, key, "an integer", [&](auto& list, auto place, Kind kind) {
            if (kind != Kind::integer)
                return static_cast<T>(cast<NSNumber>(list.leaf(place))->longLongValue());
            const std::int64_t value = list.integer(place);
            if (!list.isNatural(place) && value == static_cast<T>(value))
                return static_cast<T>(value);
            raise("NSRangeException",
                "*** -[NSKeyedUnarchiver decodeInt" + std::to_string(sizeof(T) * 8)
                    + "ForKey:]: value (" + utf8Of(list.leaf(place)->description()) + ") for key ("
                    + utf8Of(key) + ") too large to fit in a " + std::to_string(sizeof(T) * 8)
                    + "-bit integer");
        });
    }
    template <class T> static T decodeReal(NSKeyedUnarchiver& self, NSString* key)
    {
        return number<T>(self, key, "a number", [](auto& list, auto place, Kind kind) {
            if (kind == Kind::real)
                return static_cast<T>(list.real(place));
            return static_cast<T>(cast<NSNumber>(list.leaf(place))->doubleValue());
        });
    }
    static const std::uint8_t* decodeBytes(
        NSKeyedUnarchiver& self, NSString* key, NSUInteger* length)
    {
        Reader& reader = readerOf(self);
        const Reader::Index place = reader.find(key);
        if (place == Reader::kNowhere || reader.list().kind(place) != Kind::data)
            return super<NSKeyedUnarchiver,
                "decodeBytesForKey:returnedLength:", const std::uint8_t*>(self, key, length);
        const std::span<const unsigned char> bytes = reader.list().data(place);
        if (length)
            *length = bytes.size();
        return bytes.data();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "containsValueForKey:", imp<contains> },
            { "classOfValueForKey:", imp<classOfValue> },
            { "decodeObjectForKey:", imp<decodeObject> },
            { "decodeObject", imp<decodeUnkeyed> },
            { "decodeObjectOfClass:forKey:", imp<decodeOfClass> },
            { "decodeObjectOfClasses:forKey:", imp<decodeOfClasses> },
            { "allowedClasses", imp<allowedClasses> },
            { "decodeBoolForKey:", imp<decodeBool> },
            { "decodeIntForKey:", imp<decodeInteger<int>> },
            { "decodeInt32ForKey:", imp<decodeInteger<std::int32_t>> },
            { "decodeInt64ForKey:", imp<decodeInteger<std::int64_t>> },
            { "decodeIntegerForKey:", imp<decodeInteger<NSInteger>> },
            { "decodeFloatForKey:", imp<decodeReal<float>> },
            { "decodeDoubleForKey:", imp<decodeReal<double>> },
            { "decodeBytesForKey:returnedLength:", imp<decodeBytes> },
        });
    }
};
BRINDLE_RECORD(NSKeyedUnarchiver, Values)

template <> struct NSKeyedUnarchiver::Methods<struct Archives> {

    static Ref<NSKeyedUnarchiver> alloc(Class& self)
    {
        return cast<NSKeyedUnarchiver>(NSObject::Meta { &self }.alloc());
    }
    static Ref<NSObject> unarchive(Class& self, NSData* data)
    {
        if (!data)
            return nullptr;
        const Ref<NSKeyedUnarchiver> unarchiver = alloc(self)->initForReadingWithData(data);
        return root(*unarchiver, [&] { return unarchiver->decodeObjectForKey("root"_ns); });
    }
    template <class Decode> static Ref<NSObject> root(NSKeyedUnarchiver& self, Decode decode)
    {
        if (!self.containsValueForKey("root"_ns))
            readerOf(self).fail("the archive has no value for key (root)");
        Ref<NSObject> object = decode();
        self.finishDecoding();
        return object;
    }
    static Ref<NSObject> unarchiveFile(Class& self, NSString* path)
    {
        return unarchive(self, NSData::cls().dataWithContentsOfFile(path).get());
    }

    /// Runs an unarchiving whose failure, raised or kept, ends up in `error`.
    template <class Unarchive>
    static Ref<NSObject> guarded(Ref<NSError>* error, Unarchive unarchive)
    {
        try {
            return unarchive();
        } catch (const Exception& raised) {
            reportError(error, NSCoderReadCorruptError,
                { { NSDebugDescriptionErrorKey, raised->reason().get() } });
            return nullptr;
        }
    }
    static Ref<NSObject> unarchiveTopLevel(Class& self, NSData* data, Ref<NSError>* error)
    {
        return guarded(error, [&]() -> Ref<NSObject> {
            if (!data)
                raise("NSInvalidArgumentException", incomprehensible(data));
            return unarchive(self, data);
        });
    }
    static Ref<NSObject> unarchiveOfClasses(
        Class& self, NSSet* classes, NSData* data, Ref<NSError>* error)
    {
        return guarded(error, [&] {
            const Ref<NSKeyedUnarchiver> unarchiver = alloc(self)->initForReadingWithData(data);
            unarchiver->setRequiresSecureCoding(true);
            return root(*unarchiver,
                [&] { return unarchiver->decodeObjectOfClasses_forKey(classes, "root"_ns); });
        });
    }
    static Ref<NSObject> unarchiveOfClass(
        Class& self, Class* cls, NSData* data, Ref<NSError>* error)
    {
        return unarchiveOfClasses(self, makeSet({ cls }).get(), data, error);
    }

    static Ref<NSKeyedUnarchiver> initForReading(NSKeyedUnarchiver& self, NSData* data)
    {
        if (!super<NSKeyedUnarchiver, "init", Ref<NSObject>>(self))
            return nullptr;
        if (!readerOf(self).open(data))
            raise("NSInvalidArgumentException", incomprehensible(data));
        return &self;
    }
    static Ref<NSKeyedUnarchiver> initSecurely(
        NSKeyedUnarchiver& self, NSData* data, Ref<NSError>* error)
    {
        return cast<NSKeyedUnarchiver>(guarded(error, [&]() -> Ref<NSObject> {
            const Ref<NSKeyedUnarchiver> made = self.initForReadingWithData(data);
            maybe(made)->setRequiresSecureCoding(true);
            maybe(made)->setDecodingFailurePolicy(NSDecodingFailurePolicySetErrorAndReturn);
            return made;
        }));
    }

    static void finishDecoding(NSKeyedUnarchiver& self)
    {
        Reader& reader = readerOf(self);
        if (reader.isFinished)
            return;
        tell<"unarchiverWillFinish:">(self);
        reader.isFinished = true;
        tell<"unarchiverDidFinish:">(self);
    }
    template <Text Selector> static void tell(NSKeyedUnarchiver& self)
    {
        const Ref<NSObject> listener = self.delegate();
        if (listener && listener->respondsToSelector(selector<Selector>))
            listener->send<Selector>(static_cast<NSCoder*>(&self));
    }

    static bool requiresSecureCoding(NSKeyedUnarchiver& self) { return readerOf(self).isSecure; }
    static void setRequiresSecureCoding(NSKeyedUnarchiver& self, bool secure)
    {
        readerOf(self).isSecure = secure;
    }
    static NSDecodingFailurePolicy policy(NSKeyedUnarchiver& self) { return self.policy_; }
    static void setPolicy(NSKeyedUnarchiver& self, NSDecodingFailurePolicy policy)
    {
        self.policy_ = policy;
    }
    static Ref<NSObject> delegate(NSKeyedUnarchiver& self) { return readerOf(self).delegate(); }
    static void setDelegate(NSKeyedUnarchiver& self, NSObject* delegate)
    {
        readerOf(self).setDelegate(delegate);
    }

    static void setSharedClass(Class&, Class* cls, NSString* name)
    {
        SharedClasses& shared = SharedClasses::instance();
        const std::lock_guard guard(shared.mutex);
        setClass(shared.classes, cls, name);
    }
    static Class* sharedClass(Class&, NSString* name)
    {
        SharedClasses& shared = SharedClasses::instance();
        const std::lock_guard guard(shared.mutex);
        return classIn(shared.classes, name);
    }
    static void setOwnClass(NSKeyedUnarchiver& self, Class* cls, NSString* name)
    {
        setClass(readerOf(self).classes, cls, name);
    }
    static Class* ownClass(NSKeyedUnarchiver& self, NSString* name)
    {
        return classIn(readerOf(self).classes, name);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "unarchiveObjectWithData:", imp<unarchive> },
            { "unarchiveObjectWithFile:", imp<unarchiveFile> },
            { "unarchiveTopLevelObjectWithData:error:", imp<unarchiveTopLevel> },
            { "unarchivedObjectOfClass:fromData:error:", imp<unarchiveOfClass> },
            { "unarchivedObjectOfClasses:fromData:error:", imp<unarchiveOfClasses> },
            { "setClass:forClassName:", imp<setSharedClass> },
            { "classForClassName:", imp<sharedClass> },
        });
        t.methods({
            { "initForReadingWithData:", imp<initForReading> },
            { "initForReadingFromData:error:", imp<initSecurely> },
            { "finishDecoding", imp<finishDecoding> },
            { "requiresSecureCoding", imp<requiresSecureCoding> },
            { "setRequiresSecureCoding:", imp<setRequiresSecureCoding> },
            { "decodingFailurePolicy", imp<policy> },
            { "setDecodingFailurePolicy:", imp<setPolicy> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "setClass:forClassName:", imp<setOwnClass> },
            { "classForClassName:", imp<ownClass> },
        });
    }
};
BRINDLE_RECORD(NSKeyedUnarchiver, Archives)

namespace archives {

    bool decodeList(NSCoder* coder, NSString* key, std::vector<Ref<NSObject>>& items)
    {
        if (coder->isKindOfClass(classOf<NSKeyedUnarchiver>())) {
            Reader& reader = readerOf(*static_cast<NSKeyedUnarchiver*>(coder));
            const Reader::Index value = reader.find(key);
            // Lists of old archives have a key for each element.
            if (value != Reader::kNowhere || !coder->containsValueForKey(elementKey(key, 0).get()))
                return reader.objects(value, key, items);
        }
        for (std::size_t i = 0;; ++i) {
            const Ref<NSString> element = elementKey(key, i);
            if (!coder->containsValueForKey(element.get()))
                break;
            Ref<NSObject> item = coder->decodeObjectForKey(element.get());
            if (!item) {
                refuse(coder, "the list of key (" + utf8Of(key) + ") holds what is no object");
                return false;
            }
            items.push_back(std::move(item));
        }
        return !coder->error();
    }

    bool charge(NSCoder* coder, std::size_t bytes)
    {
        return !coder->isKindOfClass(classOf<NSKeyedUnarchiver>())
            || readerOf(*static_cast<NSKeyedUnarchiver*>(coder)).charge(bytes);
    }

    std::size_t* comparisonsLeft(NSCoder* coder)
    {
        return coder->isKindOfClass(classOf<NSKeyedUnarchiver>())
            ? &readerOf(*static_cast<NSKeyedUnarchiver*>(coder)).comparisonsLeft
            : nullptr;
    }

    void refuse(NSCoder* coder, const std::string& reason)
    {
        Ref<NSError> error;
        reportError(&error, NSCoderReadCorruptError,
            { { NSDebugDescriptionErrorKey,
                stringFrom("*** -[NSKeyedUnarchiver decodeObjectForKey:]: " + reason).get() } });
        coder->failWithError(error.get());
    }

}

}
