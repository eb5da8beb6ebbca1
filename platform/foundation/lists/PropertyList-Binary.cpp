// SPDX-License-Identifier: Apache-2.0
#include "BinaryListReaderPrivate.h"
#include "BinaryListWriterPrivate.h"
#include "PropertyListMakingPrivate.h"
#include "PropertyListWalkPrivate.h"
#include "foundation/NSDate.h"
#include "foundation/NSNumber.h"
#include "foundation/PropertyListUID.h"

#include <array>
#include <cmath>

namespace brindle::lists {

namespace {

    /// Builds the objects of a binary list, each once, children first.
    class Making {
    public:
        using Index = BinaryListReader::Index;

        static constexpr std::size_t kAhead = 24;

        Making(const BinaryListReader& reader, BinaryListReader::Order order, Mutability mutability)
            : reader_(reader)
            , order_(std::move(order))
            , mutability_(mutability)
            , made_(reader.count())
            , keys_(mutability == Mutability::leaves ? reader.count() : 0)
        {
        }
        ~Making()
        {
            if (isDone_)
                return;
            for (std::size_t index = 0; index < order_.uses.size(); ++index) {
                while (made_[index] && order_.uses[index])
                    take(index);
            }
        }
        Making(const Making&) = delete;
        Making& operator=(const Making&) = delete;

        Ref<NSObject> make()
        {
            const std::size_t count = order_.indexes.size();
            for (std::size_t i = 0; i < count; ++i) {
                fetch(order_.indexes[std::min(i + kAhead, count - 1)]);
                keep(order_.indexes[i], object(order_.indexes[i]));
            }
            isDone_ = true;
            return take(reader_.top());
        }

    private:
        Ref<NSObject> object(Index index)
        {
            const Kind kind = reader_.kind(index);
            if (kind == Kind::array)
                return array(index);
            if (kind == Kind::dictionary)
                return dictionary(index);
            if (kind == Kind::string || kind == Kind::data)
                return asLeaf(reader_.leaf(index), mutability_);
            return reader_.leaf(index);
        }

        /// Asks for the memory that a container will need: what it shares with others may lie anywhere.
        void fetch(Index index)
        {
            const Kind kind = reader_.kind(index);
            if (!isContainer(kind) || reader_.length(index) > 16)
                return;
            const auto held = kind == Kind::array ? reader_.elements(index) : reader_.values(index);
            for (std::size_t i = 0; i < held.size(); ++i) {
                __builtin_prefetch(&made_[held[i]], 1);
                __builtin_prefetch(&order_.uses[held[i]], 1);
            }
        }

        /// Keeps an object with a count for each reference to it, so that none needs to be added later.
        void keep(Index index, Ref<NSObject> object)
        {
            if (const std::uint32_t uses = order_.uses[index]; uses > 1)
                headerOf(object.get()).count.fetch_add(uses - 1, std::memory_order_relaxed);
            made_[index] = object.leak();
        }
        /// Answers an object for a reference to it.
        Ref<NSObject> take(Index index)
        {
            --order_.uses[index];
            return Ref<NSObject>::adopt(made_[index]);
        }

        Ref<NSObject> array(Index index)
        {
            const auto elements = reader_.elements(index);
            collections::Items items;
            items.reserve(elements.size());
            for (std::size_t i = 0; i < elements.size(); ++i)
                items.push_back(take(elements[i]));
            return makeList(std::move(items), mutability_);
        }

        Ref<NSObject> dictionary(Index index)
        {
            const auto keys = reader_.keys(index);
            const auto values = reader_.values(index);
            Ref<NSDictionary> dictionary = makeTable(keys.size(), mutability_);
            if (!hashes_.empty() && keys == recentKeys_) {
                for (std::size_t i = 0; i < keys.size(); ++i)
                    appendEntry(*dictionary, key(keys[i]), hashes_[i], take(values[i]));
                return dictionary;
            }
            for (std::size_t i = 0; i < keys.size(); ++i)
                addEntry(*dictionary, key(keys[i]), take(values[i]));
            remember(keys, *dictionary);
            return dictionary;
        }

        /// Records of one kind follow each other: their keys are different if those of the first one are.
        void remember(const BinaryListReader::References& keys, NSDictionary& dictionary)
        {
            constexpr std::size_t kMost = 64;
            const OrderedTable<PairEntry>& table = DictionaryAccess::table(dictionary);
            hashes_.clear();
            if (table.count() != keys.size() || keys.size() > kMost)
                return;
            recentKeys_ = keys;
            for (std::size_t i = 0; i < keys.size(); ++i)
                hashes_.push_back(table.at(i).hash);
        }

        /// Answers a string as key, which nobody can change.
        Ref<NSObject> key(Index index)
        {
            Ref<NSObject> made = take(index);
            if (keys_.empty())
                return made;
            if (!keys_[index])
                keys_[index] = reader_.string(index);
            return keys_[index];
        }

        const BinaryListReader& reader_;
        BinaryListReader::Order order_;
        Mutability mutability_;
        std::vector<NSObject*> made_; // each with as many counts as references are left
        std::vector<Ref<NSObject>> keys_; // only where strings can be changed
        BinaryListReader::References recentKeys_ { nullptr, 0, 0 };
        std::vector<std::uint64_t> hashes_; // of those keys; none when they are not remembered
        bool isDone_ = false;
    };

    /// Hands the objects of a list to the writer.
    class Writing {
    public:
        static constexpr bool kOnce = true;

        explicit Writing(Failure& failure)
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
        bool enter(Kind, std::size_t) { return true; }
        std::uint32_t leave(Kind kind, std::size_t count)
        {
            const std::size_t first
                = values_.size() - (kind == Kind::dictionary ? 2 * count : count);
            const Index* const from = values_.data() + first;
            Index made = 0;
            if (kind == Kind::array)
                made = writer_.array({ from, count });
            else {
                entries_.clear();
                for (std::size_t i = 0; i < count; ++i)
                    entries_.push_back({ from[2 * i], from[2 * i + 1] });
                made = writer_.dictionary(entries_);
            }
            values_.resize(first);
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

        bool add(Index index)
        {
            values_.push_back(index);
            return true;
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
        std::vector<BinaryListWriter::Entry> entries_;
        std::array<KnownKey, 256> keys_;
    };

}

Ref<NSObject> readBinary(
    std::span<const unsigned char> bytes, Mutability mutability, Failure& failure)
{
    BinaryListReader reader;
    BinaryListReader::Order order;
    if (!reader.open(bytes, failure) || !reader.childrenFirst(order, failure))
        return nullptr;
    return Making(reader, std::move(order), mutability).make();
}

Ref<NSData> writeBinary(NSObject* list, Failure& failure)
{
    Writing writing(failure);
    if (!Walk(writing, failure).run(list))
        return nullptr;
    return writing.finish();
}

}
