// SPDX-License-Identifier: Apache-2.0
// Archives objects that the input describes, in every way an archiver knows, and reads them back: what is read must be
// what was written, and the same objects make the same bytes.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSError.h"
#include "foundation/NSGeometry.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSSet.h"
#include "foundation/NSString.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

/// Hands out the input, byte by byte; zeros when there is no more.
class Script {
public:
    Script(const std::uint8_t* data, std::size_t size)
        : next_(data)
        , end_(data + size)
    {
    }
    bool isAtEnd() const { return next_ == end_; }
    unsigned byte() { return isAtEnd() ? 0 : *next_++; }
    std::int64_t number()
    {
        const unsigned size = byte() % 9;
        std::uint64_t value = 0;
        for (unsigned i = 0; i < size; ++i)
            value = value << 8 | byte();
        return static_cast<std::int64_t>(value);
    }
    Ref<NSString> text()
    {
        std::u16string units(byte() % 8, u'a');
        for (char16_t& unit : units)
            unit = static_cast<char16_t>(byte() % 96 + (byte() % 16 ? 32 : 0xe0));
        return stringFrom(units);
    }

private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

/// Holds values of all kinds and archives each in its own way.
class Parcel : public NSObject {
    BRINDLE_OBJECT(Parcel, NSObject)

public:
    struct Value {
        unsigned kind = 0;
        std::int64_t number = 0;
        Ref<NSObject> object;
    };
    static constexpr unsigned kKinds = 13;

    std::vector<Value> values_;
    bool isStandIn_ = false; ///< its first object is archived in its place

    /// How reading goes on; for all parcels.
    static inline unsigned shift = 0; ///< not 0: other kinds are asked for than there are
    static inline std::vector<Ref<Parcel>>
        read; ///< what was read, to be emptied: some hold themselves
};

/// A parcel that is archived as one, and names what may be read instead.
class CoveredParcel : public Parcel {
    BRINDLE_OBJECT(CoveredParcel, Parcel)
};

template <> struct Parcel::Methods<struct Coding> {
    static void encode(Parcel& self, NSCoder* coder)
    {
        std::string kinds;
        for (const Value& value : self.values_)
            kinds += static_cast<char>(value.kind);
        coder->encodeBytes_length_forKey(kinds.data(), kinds.size(), "$kinds"_ns);
        for (std::size_t i = 0; i < self.values_.size(); ++i) {
            if (i % 4 == 3) // what is said last stays
                coder->encodeDouble_forKey(0.5, keyOf(i).get());
            put(*coder, self.values_[i], keyOf(i).get());
        }
    }
    static void put(NSCoder& coder, const Value& value, NSString* key)
    {
        const auto real = static_cast<double>(value.number) / 8;
        switch (value.kind) {
        case 0:
            return coder.encodeBool_forKey(value.number & 1, key);
        case 1:
            return coder.encodeInt32_forKey(static_cast<std::int32_t>(value.number), key);
        case 2:
            return coder.encodeInt64_forKey(value.number, key);
        case 3:
            return coder.encodeInteger_forKey(value.number, key);
        case 4:
            return coder.encodeFloat_forKey(static_cast<float>(real), key);
        case 5:
            return coder.encodeDouble_forKey(real, key);
        case 6:
            return coder.encodePoint_forKey({ real, 1 }, key);
        case 7:
            return coder.encodeSize_forKey({ 2, real }, key);
        case 8:
            return coder.encodeRect_forKey({ { real, 1 }, { 2, 3 } }, key);
        case 9:
            return coder.encodeBytes_length_forKey(&value.number, sizeof value.number, key);
        case 10:
            return coder.encodeConditionalObject_forKey(value.object.get(), key);
        case 11:
            return coder.encodeObject(value.object.get());
        default:
            return coder.encodeObject_forKey(value.object.get(), key);
        }
    }
    static Ref<NSObject> initWithCoder(Parcel& self, NSCoder* coder)
    {
        NSUInteger count = 0;
        const std::uint8_t* const kinds
            = coder->decodeBytesForKey_returnedLength("$kinds"_ns, &count);
        const std::vector<std::uint8_t> copy(kinds, kinds + count);
        read.emplace_back(&self);
        for (NSUInteger i = 0; i < count; ++i)
            self.values_.push_back(take(*coder, (copy[i] + shift) % kKinds, keyOf(i).get()));
        return &self;
    }
    static Value take(NSCoder& coder, unsigned kind, NSString* key)
    {
        const auto whole = [](double real) {
            return std::abs(real) < 1e18 ? static_cast<std::int64_t>(real * 8) : 0;
        };
        switch (kind) {
        case 0:
            return { kind, coder.decodeBoolForKey(key), nullptr };
        case 1:
            return { kind, coder.decodeInt32ForKey(key), nullptr };
        case 2:
            return { kind, coder.decodeInt64ForKey(key), nullptr };
        case 3:
            return { kind, coder.decodeIntegerForKey(key), nullptr };
        case 4:
            return { kind, whole(static_cast<double>(coder.decodeFloatForKey(key))), nullptr };
        case 5:
            return { kind, whole(coder.decodeDoubleForKey(key)), nullptr };
        case 6:
            return { kind, whole(coder.decodePointForKey(key).x), nullptr };
        case 7:
            return { kind, whole(coder.decodeSizeForKey(key).height), nullptr };
        case 8:
            return { kind, whole(coder.decodeRectForKey(key).origin.x), nullptr };
        case 9: {
            NSUInteger size = 0;
            const std::uint8_t* const bytes = coder.decodeBytesForKey_returnedLength(key, &size);
            std::int64_t number = 0;
            if (size == sizeof number)
                std::memcpy(&number, bytes, size);
            return { kind, number, nullptr };
        }
        case 11:
            return { kind, 0, coder.decodeObject() };
        default:
            coder.classOfValueForKey(key); // must not disturb what follows
            return { kind, 0, coder.decodeObjectForKey(key) };
        }
    }
    static Ref<NSString> keyOf(std::size_t index) { return stringFrom(std::to_string(index)); }

    static Ref<NSObject> replacement(Parcel& self, NSCoder*)
    {
        return self.isStandIn_ && !self.values_.empty() ? self.values_[0].object : &self;
    }
    static bool isSecure(Class&) { return true; }
    static void table(Builder& t)
    {
        t.classMethods({ { "supportsSecureCoding", imp<isSecure> } });
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
            { "replacementObjectForKeyedArchiver:", imp<replacement> },
        });
    }
};
BRINDLE_RECORD(Parcel, Coding)

template <> struct CoveredParcel::Methods<struct Covering> {
    static Ref<NSArray> fallbacks(Class&) { return makeArray({ "Nobody"_ns, "Parcel"_ns }); }
    static void table(Builder& t)
    {
        t.classMethods({ { "classFallbacksForKeyedArchiver", imp<fallbacks> } });
    }
};
BRINDLE_RECORD(CoveredParcel, Covering)

/// Listens to both sides.
class Witness : public NSObject {
    BRINDLE_OBJECT(Witness, NSObject)

public:
    bool replaces_ = false; ///< every string is archived and read as another
};
template <> struct Witness::Methods<struct Listening> {
    static Ref<NSObject> will(Witness& self, NSCoder*, NSObject* object)
    {
        return self.replaces_ && object && object->isKindOfClass(NSString::cls()) ? "other"_ns
                                                                                  : object;
    }
    static Class* name(Witness&, NSCoder*, NSString*, NSArray*) { return Parcel::cls(); }
    static void did(Witness&, NSCoder*, NSObject*) { }
    static void replace(Witness&, NSCoder*, NSObject*, NSObject*) { }
    static void finish(Witness&, NSCoder*) { }
    static void table(Builder& t)
    {
        t.methods({
            { "archiver:willEncodeObject:", imp<will> },
            { "archiver:didEncodeObject:", imp<did> },
            { "archiver:willReplaceObject:withObject:", imp<replace> },
            { "archiverWillFinish:", imp<finish> },
            { "archiverDidFinish:", imp<finish> },
            { "unarchiver:cannotDecodeObjectOfClassName:originalClasses:", imp<name> },
            { "unarchiver:didDecodeObject:", imp<will> },
            { "unarchiver:willReplaceObject:withObject:", imp<replace> },
            { "unarchiverWillFinish:", imp<finish> },
            { "unarchiverDidFinish:", imp<finish> },
        });
    }
};
BRINDLE_RECORD(Witness, Listening)

}

using namespace brindle;

namespace {

void require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

enum Way : unsigned {
    xml = 1,
    secure = 2,
    heard = 4,
    renamed = 8,
    intoData = 16,
    keepsErrors = 32,
    wrongly = 64
};

/// A number that every place of its kind can hold.
std::int64_t fitting(unsigned kind, std::int64_t number)
{
    switch (kind) {
    case 0:
        return number & 1;
    case 1:
        return static_cast<std::int32_t>(number);
    case 4:
        return number % (1 << 20);
    case 5:
    case 6:
    case 7:
    case 8:
        return number % (std::int64_t { 1 } << 50);
    default:
        return number;
    }
}

using Parcels = std::vector<Ref<Parcel>>;

Ref<NSNumber> numberFrom(Script& script)
{
    const auto& numbers = NSNumber::cls();
    const std::int64_t number = script.number();
    switch (script.byte() % 5) {
    case 0:
        return numbers.numberWithBool(number & 1);
    case 1:
        return numbers.numberWithFloat(static_cast<float>(number));
    case 2:
        return numbers.numberWithDouble(static_cast<double>(number) / 7);
    case 3:
        return numbers.numberWithUnsignedLongLong(static_cast<std::uint64_t>(number));
    default:
        return numbers.numberWithLongLong(number);
    }
}

Ref<NSObject> objectFrom(Script& script, const Parcels& parcels)
{
    const Ref<NSObject> parcel = parcels[script.byte() % parcels.size()];
    switch (script.byte() % 6) {
    case 0:
        return script.text();
    case 1:
        return numberFrom(script);
    case 2:
        return makeArray({ parcel.get(), parcels[0].get() });
    case 3:
        return makeSet({ parcel.get() });
    case 4:
        return nullptr;
    default:
        return parcel;
    }
}

Parcels parcelsFrom(Script& script)
{
    Parcels parcels(1, make<Parcel>());
    while (!script.isAtEnd()) {
        const unsigned what = script.byte();
        if (what % 8 == 0) {
            parcels.push_back(what & 8 ? Ref<Parcel>(make<CoveredParcel>()) : make<Parcel>());
            continue;
        }
        const unsigned kind = what / 8 % Parcel::kKinds;
        Parcel::Value value { kind, 0, nullptr };
        if (kind > 9)
            value.object = objectFrom(script, parcels);
        else
            value.number = fitting(kind, script.number());
        parcels.back()->values_.push_back(std::move(value));
    }
    for (std::size_t i = 1; i < parcels.size(); i += 5) {
        const auto& values = parcels[i]->values_;
        parcels[i]->isStandIn_ = !values.empty() && values[0].object
            && values[0].object->isKindOfClass(NSString::cls());
    }
    return parcels;
}

/// Whether nothing is wanted but what the operations of the classes do.
bool isPlain(unsigned way) { return !(way & (xml | heard | renamed | intoData)); }

/// Answers nil for graphs that are too deep.
Ref<NSData> archive(NSObject* root, unsigned way, Witness* witness)
{
    if (isPlain(way))
        return NSKeyedArchiver::cls().archivedDataWithRootObject_requiringSecureCoding_error(
            root, way & secure, nullptr);
    const Ref<NSMutableData> data = make<NSMutableData>();
    const auto archiver = way & intoData
        ? alloc<NSKeyedArchiver>()->initForWritingWithMutableData(data.get())
        : alloc<NSKeyedArchiver>()->initRequiringSecureCoding(way & secure);
    archiver->setOutputFormat(
        way & xml ? NSPropertyListXMLFormat_v1_0 : NSPropertyListBinaryFormat_v1_0);
    archiver->setDelegate(way & heard ? witness : nullptr);
    if (way & renamed)
        archiver->setClassName_forClass("Renamed"_ns, CoveredParcel::cls());
    if (way & renamed && way & heard) // whom the reader asks knows which class that is
        archiver->setClassName_forClass("Forgotten"_ns, Parcel::cls());
    archiver->encodeObject_forKey(root, "root"_ns);
    archiver->finishEncoding();
    const Ref<NSData> list = archiver->encodedData();
    require(!(way & intoData) || data->isEqualToData(list.get()));
    return list;
}

Ref<NSObject> unarchive(NSData* data, unsigned way, Witness* witness)
{
    const Ref<NSSet> classes = makeSet(
        { Parcel::cls(), NSArray::cls(), NSSet::cls(), NSString::cls(), NSNumber::cls() });
    Ref<NSError> error;
    if (isPlain(way)) {
        const auto& cls = NSKeyedUnarchiver::cls();
        Ref<NSObject> root = way & secure
            ? cls.unarchivedObjectOfClasses_fromData_error(classes.get(), data, &error)
            : cls.unarchiveTopLevelObjectWithData_error(data, &error);
        require(root || error || !(way & secure));
        return root;
    }
    const auto unarchiver = way & keepsErrors
        ? alloc<NSKeyedUnarchiver>()->initForReadingFromData_error(data, &error)
        : alloc<NSKeyedUnarchiver>()->initForReadingWithData(data);
    unarchiver->setRequiresSecureCoding(way & secure);
    unarchiver->setDelegate(way & heard ? witness : nullptr);
    if (way & renamed && way & intoData)
        unarchiver->setClass_forClassName(CoveredParcel::cls(), "Renamed"_ns);
    Ref<NSObject> root = unarchiver->decodeObjectOfClasses_forKey(classes.get(), "root"_ns);
    unarchiver->finishDecoding();
    return root;
}

/// Looks that a graph of objects has come back, each of them once.
class Comparison {
public:
    void same(NSObject* one, NSObject* two)
    {
        if (one && one->isKindOfClass(Parcel::cls()))
            return sameParcels(*static_cast<Parcel*>(one), two);
        if (one && one->isKindOfClass(NSArray::cls()))
            return sameArrays(*static_cast<NSArray*>(one), two);
        if (one && one->isKindOfClass(NSSet::cls()))
            return require(two && two->isKindOfClass(NSSet::cls()));
        require(one ? one->isEqual(two) : !two);
    }

private:
    void sameParcels(Parcel& one, NSObject* two)
    {
        if (one.isStandIn_)
            return same(one.values_[0].object.get(), two);
        require(two && two->isKindOfClass(Parcel::cls()));
        const auto [known, isNew] = known_.emplace(&one, two);
        require(known->second == two);
        if (!isNew)
            return;
        const auto& values = static_cast<Parcel*>(two)->values_;
        require(values.size() == one.values_.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            require(values[i].kind == one.values_[i].kind);
            require(values[i].number == one.values_[i].number);
            const bool isConditional = values[i].kind == 10;
            if (!isConditional || values[i].object)
                same(one.values_[i].object.get(), values[i].object.get());
        }
    }
    void sameArrays(NSArray& one, NSObject* two)
    {
        require(two && two->isKindOfClass(NSArray::cls()));
        auto& other = *static_cast<NSArray*>(two);
        require(other.count() == one.count());
        for (NSUInteger i = 0; i < one.count(); ++i)
            same(one.objectAtIndex(i).get(), other.objectAtIndex(i).get());
    }

    std::map<const NSObject*, NSObject*> known_;
};

void archiveAndRead(Parcels& parcels, unsigned way)
{
    const Ref<NSObject> root = parcels.back(); // the others can be reached from it
    const Ref<Witness> witness = make<Witness>();
    witness->replaces_ = way & wrongly;
    Ref<NSData> data;
    try {
        data = archive(root.get(), way, witness.get());
    } catch (const Exception&) {
        return; // too deep
    }
    if (!data)
        return;
    require(archive(root.get(), way, witness.get())->isEqualToData(data.get()));
    Parcel::shift = way & wrongly ? 1 : 0;
    try {
        const Ref<NSObject> back = unarchive(data.get(), way, witness.get());
        if (!(way & wrongly))
            Comparison().same(root.get(), back.get());
    } catch (const Exception&) {
        require(way & wrongly);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr std::size_t kMost = 1024; // deeper graphs than the stack has room for are no news
    Script script(bytes, std::min(size, kMost));
    const unsigned way = script.byte();
    Parcels parcels = parcelsFrom(script);
    archiveAndRead(parcels, way);
    for (const Ref<Parcel>& parcel : parcels)
        parcel->values_.clear();
    for (const Ref<Parcel>& parcel : Parcel::read)
        parcel->values_.clear();
    Parcel::read.clear();
    return 0;
}
