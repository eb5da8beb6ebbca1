// SPDX-License-Identifier: Apache-2.0
#include "BinaryListReaderPrivate.h"
#include "BinaryListWriterPrivate.h"
#include "NSDate.h"
#include "NSNumber.h"
#include "PropertyListMakingPrivate.h"
#include "PropertyListUID.h"
#include "PropertyListWalkPrivate.h"

#include <cmath>

namespace brindle::lists {

namespace {

    /// Builds the objects of a binary list, each once, children first.
    class Making {
    public:
        using Index = BinaryListReader::Index;

        Making(const BinaryListReader& reader, Mutability mutability)
            : reader_(reader)
            , mutability_(mutability)
            , made_(reader.count())
            , keys_(mutability == Mutability::leaves ? reader.count() : 0)
        {
        }

        void make(Index index)
        {
            const Kind kind = reader_.kind(index);
            if (kind == Kind::array)
                made_[index] = array(index);
            else if (kind == Kind::dictionary)
                made_[index] = dictionary(index);
            else if (kind == Kind::string || kind == Kind::data)
                made_[index] = asLeaf(reader_.leaf(index), mutability_);
            else
                made_[index] = reader_.leaf(index);
        }
        Ref<NSObject> made(Index index) const { return made_[index]; }

    private:
        Ref<NSObject> array(Index index) const
        {
            const auto elements = reader_.elements(index);
            collections::Items items;
            items.reserve(elements.size());
            for (std::size_t i = 0; i < elements.size(); ++i)
                items.push_back(made_[elements[i]]);
            return makeList(std::move(items), mutability_);
        }

        Ref<NSObject> dictionary(Index index)
        {
            const auto keys = reader_.keys(index);
            const auto values = reader_.values(index);
            Ref<NSDictionary> dictionary = makeTable(keys.size(), mutability_);
            for (std::size_t i = 0; i < keys.size(); ++i)
                addEntry(*dictionary, key(keys[i]), made_[values[i]]);
            return dictionary;
        }

        /// Answers a string as key, which nobody can change.
        const Ref<NSObject>& key(Index index)
        {
            if (keys_.empty())
                return made_[index];
            if (!keys_[index])
                keys_[index] = reader_.string(index);
            return keys_[index];
        }

        const BinaryListReader& reader_;
        Mutability mutability_;
        std::vector<Ref<NSObject>> made_;
        std::vector<Ref<NSObject>> keys_; // only where strings can be changed
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
        bool key(NSObject& object) { return string(static_cast<NSString&>(object)); }
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
            const strings::Contents contents(&string);
            const strings::View text = contents.view();
            if (!text.isNarrow()
                && !isPaired(text.size(), [&](std::size_t i) { return text.wide()[i]; }))
                return refuse("a string has a surrogate without its partner");
            return add(writer_.string(text));
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
    };

}

Ref<NSObject> readBinary(
    std::span<const unsigned char> bytes, Mutability mutability, Failure& failure)
{
    BinaryListReader reader;
    std::vector<BinaryListReader::Index> order;
    if (!reader.open(bytes, failure) || !reader.childrenFirst(order, failure))
        return nullptr;
    Making making(reader, mutability);
    for (const BinaryListReader::Index index : order)
        making.make(index);
    return making.made(reader.top());
}

Ref<NSData> writeBinary(NSObject* list, Failure& failure)
{
    Writing writing(failure);
    if (!Walk(writing, failure).run(list))
        return nullptr;
    return writing.finish();
}

}
