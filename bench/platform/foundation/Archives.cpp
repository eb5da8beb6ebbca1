// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSKeyedArchiver.h"

#include <cstring>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

namespace brindle {

/// What is archived: eight properties, one of them an object of the same class with nothing in it.
class BenchSong : public NSObject {
    BRINDLE_OBJECT(BenchSong, NSObject)

public:
    Ref<NSString> title_;
    Ref<NSString> artist_;
    int year_ = 0;
    double length_ = 0;
    bool liked_ = false;
    Ref<NSDate> added_;
    Ref<BenchSong> cover_;
    Ref<NSArray> ratings_;
};

template <> struct BenchSong::Methods<struct Coding> {
    static void encode(BenchSong& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.title_.get(), "title"_ns);
        coder->encodeObject_forKey(self.artist_.get(), "artist"_ns);
        coder->encodeInt_forKey(self.year_, "year"_ns);
        coder->encodeDouble_forKey(self.length_, "length"_ns);
        coder->encodeBool_forKey(self.liked_, "liked"_ns);
        coder->encodeObject_forKey(self.added_.get(), "added"_ns);
        coder->encodeObject_forKey(self.cover_.get(), "cover"_ns);
        coder->encodeObject_forKey(self.ratings_.get(), "ratings"_ns);
    }
    static Ref<NSObject> initWithCoder(BenchSong& self, NSCoder* coder)
    {
        self.title_ = decode<NSString>(coder, "title"_ns);
        self.artist_ = decode<NSString>(coder, "artist"_ns);
        self.year_ = coder->decodeIntForKey("year"_ns);
        self.length_ = coder->decodeDoubleForKey("length"_ns);
        self.liked_ = coder->decodeBoolForKey("liked"_ns);
        self.added_ = decode<NSDate>(coder, "added"_ns);
        self.cover_ = decode<BenchSong>(coder, "cover"_ns);
        self.ratings_ = decode<NSArray>(coder, "ratings"_ns);
        return &self;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeWithCoder:", imp<encode> },
            { "initWithCoder:", imp<initWithCoder> },
        });
    }
};
BRINDLE_RECORD(BenchSong, Coding)

}

namespace brindle::bench {

namespace {

    constexpr std::size_t kSongs = 10'000;

    Ref<BenchSong> song(std::size_t number)
    {
        const Ref<BenchSong> made = make<BenchSong>();
        made->title_ = stringFrom("Title number " + std::to_string(number));
        made->artist_ = stringFrom("Artist number " + std::to_string(number * 7));
        made->year_ = static_cast<int>(1900 + number);
        made->length_ = 100.5 + static_cast<double>(number);
        made->liked_ = number % 2 == 0;
        made->added_ = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            1e8 + static_cast<double>(number));
        made->cover_ = make<BenchSong>();
        const auto rating = [&](std::size_t of) {
            return NSNumber::cls().numberWithInteger(static_cast<NSInteger>(number * 3 + of));
        };
        made->ratings_ = makeArray({ rating(0).get(), rating(1).get(), rating(2).get() });
        return made;
    }
    Ref<NSArray> songs(std::size_t count)
    {
        std::vector<Ref<NSObject>> items;
        for (std::size_t i = 0; i < count; ++i)
            items.push_back(song(i));
        return makeArray(std::move(items));
    }
    Ref<NSData> archived(NSArray* songs)
    {
        return NSKeyedArchiver::cls().archivedDataWithRootObject(songs);
    }

    /// Answers the most that is in use while an operation runs, in MiB, beyond what it answers.
    template <class F> double extraMemory(F operation)
    {
        const double before = heapInUse();
        const PeakMemory peak;
        const auto result = operation();
        return (peak.bytes() - (heapInUse() - before)) / (1024.0 * 1024.0);
    }

    // ---- the floor: the same objects dumped by hand, without keys, classes or identity

    template <class T> void put(std::string& out, T value)
    {
        out.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void put(std::string& out, NSString* text)
    {
        const char* const utf8 = text ? text->UTF8String() : "";
        const std::size_t length = std::strlen(utf8);
        put(out, static_cast<std::uint32_t>(length));
        out.append(utf8, length);
    }
    void dump(std::string& out, const BenchSong& song)
    {
        put(out, song.title_.get());
        put(out, song.artist_.get());
        put(out, song.year_);
        put(out, song.length_);
        put(out, song.liked_);
        put(out, maybe(song.added_)->timeIntervalSinceReferenceDate());
        put(out, static_cast<bool>(song.cover_));
        if (song.cover_)
            dump(out, *song.cover_);
        put(out, static_cast<std::uint32_t>(maybe(song.ratings_)->count()));
        if (song.ratings_) {
            for (NSNumber* rating : each<NSNumber>(song.ratings_))
                put(out, rating->integerValue());
        }
    }
    std::string dumped(const NSArray& songs)
    {
        std::string out;
        put(out, static_cast<std::uint32_t>(songs.count()));
        for (NSObject* item : songs)
            dump(out, *static_cast<BenchSong*>(item));
        return out;
    }

    template <class T> T take(const char*& at)
    {
        T value;
        std::memcpy(&value, at, sizeof value);
        at += sizeof value;
        return value;
    }
    Ref<NSString> takeText(const char*& at)
    {
        const auto length = take<std::uint32_t>(at);
        Ref<NSString> text = stringFrom(std::string_view(at, length));
        at += length;
        return text;
    }
    Ref<BenchSong> read(const char*& at)
    {
        const Ref<BenchSong> made = make<BenchSong>();
        made->title_ = takeText(at);
        made->artist_ = takeText(at);
        made->year_ = take<int>(at);
        made->length_ = take<double>(at);
        made->liked_ = take<bool>(at);
        made->added_ = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(take<double>(at));
        if (take<bool>(at))
            made->cover_ = read(at);
        std::vector<Ref<NSObject>> ratings(take<std::uint32_t>(at));
        for (Ref<NSObject>& rating : ratings)
            rating = NSNumber::cls().numberWithInteger(take<NSInteger>(at));
        made->ratings_ = makeArray(std::move(ratings));
        return made;
    }
    Ref<NSArray> readAll(const std::string& bytes)
    {
        const char* at = bytes.data();
        std::vector<Ref<NSObject>> items(take<std::uint32_t>(at));
        for (Ref<NSObject>& item : items)
            item = read(at);
        return makeArray(std::move(items));
    }

    // ---- the same tree as a bare property list

    Ref<NSObject> listOf(const BenchSong& song)
    {
        return makeDictionary({
            { "title"_ns, song.title_ ? song.title_.get() : ""_ns },
            { "artist"_ns, song.artist_ ? song.artist_.get() : ""_ns },
            { "year"_ns, NSNumber::cls().numberWithInt(song.year_).get() },
            { "length"_ns, NSNumber::cls().numberWithDouble(song.length_).get() },
            { "liked"_ns, NSNumber::cls().numberWithBool(song.liked_).get() },
            { "added"_ns, song.added_ ? song.added_.get() : NSDate::cls().distantPast().get() },
            { "cover"_ns, song.cover_ ? listOf(*song.cover_).get() : make<NSArray>().get() },
            { "ratings"_ns, song.ratings_ ? song.ratings_.get() : make<NSArray>().get() },
        });
    }
    Ref<NSData> bareList(NSObject* tree)
    {
        return NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            tree, NSPropertyListBinaryFormat_v1_0, 0, nullptr);
    }

    template <class F> double timed(std::size_t count, F operation)
    {
        const Stopwatch watch;
        for (std::size_t i = 0; i < count; ++i)
            keep(operation());
        return watch.elapsed();
    }

    Pair archiving()
    {
        const Ref<NSArray> all = songs(kSongs);
        return {
            [all](std::size_t count) { return timed(count, [&] { return archived(all.get()); }); },
            [all](std::size_t count) { return timed(count, [&] { return dumped(*all); }); }, 1, 15
        };
    }
    Pair unarchiving()
    {
        const Ref<NSArray> all = songs(kSongs);
        const Ref<NSData> data = archived(all.get());
        return { [data](std::size_t count) {
                    return timed(count, [&] {
                        return NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
                    });
                },
            [bytes = dumped(*all)](
                std::size_t count) { return timed(count, [&] { return readAll(bytes); }); },
            1, 15 };
    }
    Pair archivingBesideList()
    {
        const Ref<NSArray> all = songs(kSongs);
        std::vector<Ref<NSObject>> lists;
        for (NSObject* item : *all)
            lists.push_back(listOf(*static_cast<BenchSong*>(item)));
        const Ref<NSArray> tree = makeArray(std::move(lists));
        return { [all](std::size_t count) {
                    return timed(count, [&] { return archived(all.get()); });
                },
            [tree](
                std::size_t count) { return timed(count, [&] { return bareList(tree.get()); }); },
            1, 9 };
    }

    /// Time per object at one size against another, so that what grows faster than the graph is seen.
    Pair growth(std::size_t many, std::size_t few)
    {
        const auto perSong = [](std::size_t size) {
            return [all = songs(size), size](std::size_t count) {
                return timed(count, [&] { return archived(all.get()); })
                    / static_cast<double>(size);
            };
        };
        return { perSong(many), perSong(few), 1, 3 };
    }

    Reading archiveMemory()
    {
        const Ref<NSArray> all = songs(kSongs);
        return { extraMemory([&] { return archived(all.get()); }),
            extraMemory([&] { return dumped(*all); }) };
    }
    Reading unarchiveMemory()
    {
        const Ref<NSArray> all = songs(kSongs);
        const Ref<NSData> data = archived(all.get());
        const std::string bytes = dumped(*all);
        return { extraMemory(
                     [&] { return NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); }),
            extraMemory([&] { return readAll(bytes); }) };
    }

}

void addArchives(Plan& plan)
{
    plan.time("archive 10,000 objects of 8 properties", timesFloor(6), archiving);
    plan.time("unarchive 10,000 objects of 8 properties", timesFloor(8), unarchiving);
    plan.time("archive 10,000 objects beside a bare binary list", kNoBudget, archivingBesideList);
    plan.time("archive one object of 1,000,000 beside one of 1,000", timesFloor(1.6),
        [] { return growth(1'000'000, 1'000); });
    plan.read("memory beside the archive while 10,000 objects are archived", "MiB", atMost(12),
        archiveMemory);
    plan.read("memory beside the objects while 10,000 are unarchived", "MiB", atMost(12),
        unarchiveMemory);
}

}
