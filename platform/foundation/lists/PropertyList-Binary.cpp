// SPDX-License-Identifier: Apache-2.0
#include "BinaryListReaderPrivate.h"
#include "BinaryListWriterPrivate.h"
#include "BlockRowPrivate.h"
#include "PropertyListMakingPrivate.h"
#include "PropertyListWalkPrivate.h"
#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/PropertyListUID.h"
#include "runtime/ObjectMemory.h"

#include <array>
#include <cmath>
#include <optional>

namespace brindle::lists {

namespace {

    /// Builds the objects of a binary list, each once, children first.
    class Making {
    public:
        using Index = BinaryListReader::Index;
        using Shape = BinaryListReader::Shape;
        using References = BinaryListReader::References;

        Making(const BinaryListReader& reader, Mutability mutability)
            : reader_(reader)
            , mutability_(mutability)
            , made_(reader.count())
            , heights_(reader.count())
            , keys_(mutability == Mutability::leaves ? reader.count() : 0)
        {
        }
        ~Making()
        {
            forgetKeys();
            for (Index index = 0; free_ > 0; ++index) {
                if (made_[index] & kFree)
                    take(index);
            }
        }
        Making(const Making&) = delete;
        Making& operator=(const Making&) = delete;

        enum class Outcome { made, refused, disordered };
        /// Checks and makes everything in one go, as long as it stands in the table behind what it holds: our writers
        /// put it so. Then nothing contains itself, and nobody needs to look for an order.
        Outcome makeInOrder(Failure& failure)
        {
            BinaryListReader::Checks checks = reader_.checks();
            Shape shape;
            std::size_t bound = 0;
            for (Index index = 0; index < reader_.count(); ++index) {
                lookAhead(index);
                if (!reader_.check(index, checks, shape, bound, failure))
                    return Outcome::refused;
                if (isContainer(shape.kind) && bound > index)
                    return Outcome::disordered;
                if (!make(index, shape))
                    return Outcome::disordered;
            }
            return Outcome::made;
        }
        /// - order: what there is to make, everything behind what it holds.
        void makeAll(const std::vector<std::uint32_t>& order)
        {
            made_.wipe(); // not everything needs to be reached
            for (const std::uint32_t index : order)
                make(index, reader_.shape(index));
        }
        Ref<NSObject> top() { return take(reader_.top()); }

    private:
        // Objects have addresses whose lower bits are free.
        static constexpr std::uintptr_t kFree = 1; ///< nothing holds the object yet
        static constexpr std::uintptr_t kHolds = 2; ///< it is a container
        static constexpr std::uintptr_t kNew
            = 4; ///< nobody else knows it: counting it needs no atomic step
        static constexpr std::uintptr_t kMarks = kFree | kHolds | kNew;

        /// Asks for memory that containers will need soon: what they share with others may lie anywhere.
        // Compilers drop calls of functions that only ask for memory, so this one must not be called.
        [[gnu::always_inline]] void lookAhead(Index index)
        {
            const References far = reader_.valuesAhead(index + kFar);
            for (std::size_t i = 0; i < far.size(); ++i) {
                if (far[i] < reader_.count())
                    __builtin_prefetch(&made_[far[i]], 1);
            }
            ahead_[index % kFar] = far;
            const References near = ahead_[(index + kNear) % kFar];
            for (std::size_t i = 0; i < near.size(); ++i) {
                const std::uintptr_t made = near[i] < index ? made_[near[i]] : kFree;
                if (!(made & kFree))
                    __builtin_prefetch(&headerOf(reinterpret_cast<NSObject*>(made & ~kMarks)), 1);
            }
        }

        /// - Returns: false for what is nested too deeply.
        bool make(Index index, const Shape& shape)
        {
            if (!isContainer(shape.kind)) {
                keep(index, leaf(shape), 0);
                return true;
            }
            highest_ = 0;
            keep(index, shape.kind == Kind::array ? array(shape) : dictionary(shape), kHolds);
            heights_[index] = static_cast<std::uint16_t>(highest_ + 1);
            return highest_ < kDeepest;
        }
        void keep(Index index, Ref<NSObject> object, std::uintptr_t marks)
        {
            if (headerOf(object.get()).count.load(std::memory_order_relaxed) == 1)
                marks |= kNew;
            made_[index] = reinterpret_cast<std::uintptr_t>(object.leak()) | marks | kFree;
            ++free_;
        }
        /// Answers an object for a reference to it.
        Ref<NSObject> take(Index index)
        {
            const std::uintptr_t made = made_[index];
            auto* const object = reinterpret_cast<NSObject*>(made & ~kMarks);
            if (made & kHolds)
                highest_ = std::max(highest_, heights_[index]);
            if (made & kFree) {
                made_[index] = made & ~kFree;
                --free_;
                return Ref<NSObject>::adopt(object);
            }
            if (!(made & kNew))
                return object;
            std::atomic<std::intptr_t>& count = headerOf(object).count;
            count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
            return Ref<NSObject>::adopt(object);
        }

        Ref<NSObject> leaf(const Shape& shape)
        {
            const bool isText = shape.kind == Kind::string || shape.kind == Kind::data;
            return isText ? asLeaf(reader_.leaf(shape), mutability_) : reader_.leaf(shape);
        }

        Ref<NSObject> array(const Shape& shape)
        {
            const References elements = reader_.elements(shape);
            collections::Items items;
            items.reserve(elements.size());
            for (std::size_t i = 0; i < elements.size(); ++i)
                items.push_back(take(elements[i]));
            return makeList(std::move(items), mutability_);
        }

        Ref<NSObject> dictionary(const Shape& shape)
        {
            const References keys = reader_.keys(shape);
            const References values = reader_.values(shape);
            Ref<NSDictionary> dictionary = makeTable(keys.size(), mutability_);
            if (!knownKeys_.empty() && keys == recentKeys_) {
                stockKeys();
                for (std::size_t i = 0; i < keys.size(); ++i)
                    appendEntry(*dictionary, Ref<NSObject>::adopt(knownKeys_[i].key.get()),
                        knownKeys_[i].hash, take(values[i]));
                return dictionary;
            }
            for (std::size_t i = 0; i < keys.size(); ++i) {
                Ref<NSObject> name = key(keys[i]);
                Ref<NSObject> value = take(values[i]);
                addEntry(*dictionary, std::move(name), std::move(value));
                if (name) { // others may hold these too
                    replaced_.push_back(std::move(name));
                    replaced_.push_back(std::move(value));
                }
            }
            remember(keys, *dictionary);
            return dictionary;
        }

        /// Records of one kind follow each other: their keys are different if those of the first one are.
        void remember(const References& keys, NSDictionary& dictionary)
        {
            constexpr std::size_t kMost = 64;
            const OrderedTable<PairEntry>& table = DictionaryAccess::table(dictionary);
            forgetKeys();
            if (table.count() != keys.size() || keys.size() > kMost)
                return;
            recentKeys_ = keys;
            for (std::size_t i = 0; i < keys.size(); ++i)
                knownKeys_.push_back({ table.at(i).key, table.at(i).hash });
        }
        /// Has a count of each known key ready, to be given away.
        void stockKeys()
        {
            constexpr std::size_t kMany = 1024;
            if (!stock_) {
                for (const KnownKey& known : knownKeys_)
                    countOf(known).fetch_add(kMany, std::memory_order_relaxed);
                stock_ = kMany;
            }
            --stock_;
        }
        void forgetKeys()
        {
            for (const KnownKey& known : knownKeys_)
                countOf(known).fetch_sub(
                    static_cast<std::intptr_t>(stock_), std::memory_order_relaxed);
            stock_ = 0;
            knownKeys_.clear();
        }

        /// Answers a string as key, which nobody can change.
        Ref<NSObject> key(Index index)
        {
            if (keys_.empty())
                return take(index);
            if (!keys_[index])
                keys_[index] = reader_.string(index);
            return keys_[index];
        }

        struct KnownKey {
            Ref<NSObject> key;
            std::uint64_t hash;
        };
        static std::atomic<std::intptr_t>& countOf(const KnownKey& known)
        {
            return headerOf(known.key.get()).count;
        }

        const BinaryListReader& reader_;
        Mutability mutability_;
        static constexpr Index kFar = 32; // so many objects ahead of the one in the making
        static constexpr Index kNear = 12;

        BlockRow<std::uintptr_t> made_; // addresses of objects with marks
        BlockRow<std::uint16_t> heights_; // of containers: how many stand in each other
        std::array<References, kFar> ahead_; // what those between here and there hold
        std::uint16_t highest_ = 0; // of what was taken for the container in the making
        std::size_t free_ = 0; // objects that nothing holds
        std::vector<Ref<NSObject>> replaced_; // what stood in dictionaries until an equal key came
        std::vector<Ref<NSObject>> keys_; // only where strings can be changed
        References recentKeys_;
        std::vector<KnownKey> knownKeys_; // those; none when they are not remembered
        std::size_t stock_ = 0; // counts of each that are ready
    };

    /// Hands the objects of a list to the writer.
    class BinaryWriting {
    public:
        static constexpr bool kOnce = true;

        explicit BinaryWriting(Failure& failure)
            : failure_(failure)
        {
        }

        bool leaf(Kind kind, NSObject& object)
        {
            switch (kind) {
            case Kind::string:
                return string(static_cast<NSString&>(object));
            case Kind::data:
                return add(writer_.data(bytesOf(static_cast<NSData*>(&object))));
            case Kind::date:
                return date(static_cast<NSDate&>(object).timeIntervalSinceReferenceDate());
            case Kind::uid:
                return add(
                    writer_.uid(static_cast<PropertyListUID&>(object).unsignedIntegerValue()));
            default:
                return number(static_cast<NSNumber&>(object));
            }
        }
        bool key(NSObject& object)
        {
            // Dictionaries of one kind have the same few key objects, which nobody can change.
            KnownKey& known = keys_[reinterpret_cast<std::uintptr_t>(&object) / 16 % keys_.size()];
            if (known.key == &object)
                return add(known.index);
            const strings::Contents text(static_cast<NSString*>(&object));
            if (!isText(text))
                return false;
            const Index index = writer_.string(text);
            if (object.isa_ == classOf<NSString>())
                known = { &object, index };
            return add(index);
        }
        bool enter(Kind, std::size_t)
        {
            open_.push_back({ values_.size(), nullptr, 0 });
            return true;
        }
        /// Dictionaries of one kind follow each other: the keys of those after the first are put in front as a whole.
        bool knows(const OrderedTable<PairEntry>& table)
        {
            const bool known = hasKnownKeys(table);
            if (known)
                values_.insert(values_.end(), knownIndexes_.begin(), knownIndexes_.end());
            open_.back().table = &table;
            open_.back().keys = known ? knownKeys_.size() : 0;
            return known;
        }
        std::uint32_t leave(Kind kind, std::size_t)
        {
            const Open open = open_.back();
            open_.pop_back();
            const std::span<const Index> held = std::span(values_).subspan(open.first);
            Index made = 0;
            if (kind == Kind::array) {
                made = writer_.array(held);
            } else if (open.keys) {
                const std::size_t count = std::min(open.keys, held.size() - open.keys);
                made = writer_.dictionary(held.first(count), held.subspan(open.keys, count));
            } else {
                made = byTurns(held);
                remember(*open.table);
            }
            values_.resize(open.first);
            add(made);
            return made;
        }
        void again(std::uint32_t index) { add(index); }

        Ref<NSData> finish() { return writer_.finish(values_.back()); }

    private:
        using Index = BinaryListWriter::Index;
        struct KnownKey {
            const NSObject* key = nullptr;
            Index index = 0;
        };

        struct Open {
            std::size_t first; // of what it holds in `values_`
            const OrderedTable<PairEntry>* table; // of a dictionary
            std::size_t keys; // that stand in front of the values; otherwise they take turns
        };

        bool add(Index index)
        {
            values_.push_back(index);
            return true;
        }
        bool hasKnownKeys(const OrderedTable<PairEntry>& table) const
        {
            const std::size_t count = knownKeys_.size();
            if (!count || table.places() != count)
                return false;
            for (std::size_t i = 0; i < count; ++i) {
                if (table.at(i).key.get() != knownKeys_[i])
                    return false;
            }
            return true;
        }
        Index byTurns(std::span<const Index> keysAndValues)
        {
            const std::size_t count = keysAndValues.size() / 2;
            turned_.resize(2 * count);
            for (std::size_t i = 0; i < count; ++i) {
                turned_[i] = keysAndValues[2 * i];
                turned_[count + i] = keysAndValues[2 * i + 1];
            }
            return writer_.dictionary(
                std::span(turned_).first(count), std::span(turned_).subspan(count));
        }
        /// Remembers the keys of the dictionary that was written last, when nobody can change them.
        void remember(const OrderedTable<PairEntry>& table)
        {
            constexpr std::size_t kMost = 64;
            const std::size_t count = turned_.size() / 2;
            knownKeys_.clear();
            if (table.places() != count || count > kMost)
                return;
            for (std::size_t i = 0; i < count; ++i) {
                const NSObject* const key = table.at(i).key.get();
                if (!key || key->isa_ != classOf<NSString>())
                    return knownKeys_.clear();
                knownKeys_.push_back(key);
            }
            knownIndexes_.assign(
                turned_.begin(), turned_.begin() + static_cast<std::ptrdiff_t>(count));
        }
        bool refuse(const char* reason)
        {
            failure_.reason = reason;
            return false;
        }
        bool string(const NSString& string)
        {
            const strings::Contents text(&string);
            return isText(text) && add(writer_.passingString(text));
        }
        bool isText(strings::View text)
        {
            return text.isNarrow()
                || isPaired(text.size(), [&](std::size_t i) { return text.wide()[i]; })
                || refuse("a string has a surrogate without its partner");
        }
        bool date(double seconds)
        {
            if (!std::isfinite(seconds))
                return refuse("a date is not a finite number");
            return add(writer_.date(seconds));
        }
        bool number(const NSNumber& number)
        {
            switch (*number.objCType()) {
            case 'B':
                return add(writer_.boolean(number.boolValue()));
            case 'f':
                return add(writer_.single(number.floatValue()));
            case 'd':
                return add(writer_.real(number.doubleValue()));
            case 'Q':
                return add(writer_.natural(number.unsignedLongLongValue()));
            default:
                return add(writer_.integer(number.longLongValue()));
            }
        }

        Failure& failure_;
        BinaryListWriter writer_;
        std::vector<Index> values_; // of the containers that are open
        std::vector<Open> open_;
        std::vector<Index> turned_; // keys, then values
        std::array<KnownKey, 256> keys_;
        std::vector<const NSObject*> knownKeys_; // of the dictionary before
        std::vector<Index> knownIndexes_; // those have
    };

}

Ref<NSObject> readBinary(
    std::span<const unsigned char> bytes, Mutability mutability, Failure& failure)
{
    constexpr BinaryListReader::Index kLong = 16384; // objects, which fill most of a block
    BinaryListReader reader;
    if (!reader.begin(bytes, failure))
        return nullptr;
    std::optional<ObjectRun> run;
    if (reader.count() >= kLong)
        run.emplace();
    if (reader.mayBeInOrder()) {
        Making making(reader, mutability);
        const Making::Outcome outcome = making.makeInOrder(failure);
        if (outcome != Making::Outcome::disordered)
            return outcome == Making::Outcome::made ? making.top() : nullptr;
    }
    std::vector<std::uint32_t> order;
    if (!reader.checkAll(failure) || !reader.childrenFirst(order, failure))
        return nullptr;
    Making making(reader, mutability);
    making.makeAll(order);
    return making.top();
}

Ref<NSData> writeBinary(NSObject* list, Failure& failure)
{
    BinaryWriting writing(failure);
    if (!Walk(writing, failure).run(list))
        return nullptr;
    return writing.finish();
}

}
