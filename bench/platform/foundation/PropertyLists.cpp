// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPropertyListSerialization.h"

#include <random>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr double kMegabytes = 50;

    /// Records of eight fields, made by seed, as an application's library may hold.
    class Library {
    public:
        Ref<NSObject> make(std::size_t records)
        {
            std::vector<Ref<NSObject>> list;
            list.reserve(records);
            for (std::size_t i = 0; i < records; ++i)
                list.push_back(record());
            return makeArray(std::move(list));
        }

    private:
        Ref<NSDictionary> record()
        {
            const Ref<NSString> name = text(12, false);
            const Ref<NSString> comment = text(60, below(10) == 0);
            const Ref<NSNumber> size = NSNumber::cls().numberWithInteger(below(100000));
            const Ref<NSNumber> rating = NSNumber::cls().numberWithDouble(below(1000000) / 7.0);
            const Ref<NSNumber> isNew = NSNumber::cls().numberWithBool(below(2) == 0);
            const Ref<NSDate> added
                = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(below(700000000));
            const Ref<NSData> picture = bytes(below(100));
            const Ref<NSString> first = text(8, false);
            const Ref<NSArray> tags = makeArray({ first.get(), "favourite"_ns, "holiday"_ns });
            return makeDictionary({ { "Name"_ns, name.get() }, { "Comment"_ns, comment.get() },
                { "Size"_ns, size.get() }, { "Rating"_ns, rating.get() }, { "New"_ns, isNew.get() },
                { "Added"_ns, added.get() }, { "Picture"_ns, picture.get() },
                { "Tags"_ns, tags.get() } });
        }

        Ref<NSString> text(unsigned length, bool isWide)
        {
            std::u16string units;
            for (unsigned i = 0; i < length / 2 + below(length); ++i)
                units += static_cast<char16_t>(u'a' + below(26));
            if (isWide)
                units += u"äé";
            return stringFrom(units);
        }

        Ref<NSData> bytes(unsigned count)
        {
            std::vector<unsigned char> data(count);
            for (unsigned char& byte : data)
                byte = static_cast<unsigned char>(engine_());
            return dataFrom(data);
        }

        unsigned below(unsigned bound) { return static_cast<unsigned>(engine_() % bound); }

        std::mt19937_64 engine_ { 42 };
    };

    Ref<NSData> write(const Ref<NSObject>& list, NSPropertyListFormat format)
    {
        return NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            list.get(), format, 0, nullptr);
    }

    Ref<NSObject> read(const Ref<NSData>& data)
    {
        return NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
            data.get(), NSPropertyListImmutable, nullptr, nullptr);
    }

    double megabytes(const Ref<NSData>& data) { return static_cast<double>(data->length()) / 1e6; }

    /// Answers a list that takes 50 MB in a format.
    Ref<NSObject> library(NSPropertyListFormat format)
    {
        constexpr std::size_t kSample = 1000;
        const double sample = megabytes(write(Library().make(kSample), format));
        return Library().make(static_cast<std::size_t>(kSample * kMegabytes / sample));
    }

    /// Answers the median time of some rounds, in nanoseconds for a byte.
    template <class Round> Reading perByte(const Ref<NSData>& data, Round round)
    {
        std::vector<double> times;
        for (int i = 0; i < 7; ++i) {
            const Stopwatch watch;
            const auto kept = round();
            times.push_back(watch.elapsed());
        }
        return { median(times) / static_cast<double>(data->length()) };
    }

    Reading reading(NSPropertyListFormat format)
    {
        const Ref<NSData> data = write(library(format), format);
        return perByte(data, [&] { return read(data); });
    }

    Reading writing(NSPropertyListFormat format)
    {
        const Ref<NSObject> list = library(format);
        return perByte(write(list, format), [&] { return write(list, format); });
    }

    /// Turns megabytes a second into nanoseconds a byte.
    constexpr Budget atLeast(double megabytesPerSecond)
    {
        return atMost(1000 / megabytesPerSecond);
    }

}

void addPropertyLists(Plan& plan)
{
    constexpr NSPropertyListFormat kBinary = NSPropertyListBinaryFormat_v1_0;
    constexpr NSPropertyListFormat kXML = NSPropertyListXMLFormat_v1_0;
    plan.read(
        "list of 50 MB: read binary", "ns/byte", atLeast(400), [] { return reading(kBinary); });
    plan.read(
        "list of 50 MB: write binary", "ns/byte", atLeast(300), [] { return writing(kBinary); });
    plan.read("list of 50 MB: read XML", "ns/byte", atLeast(300), [] { return reading(kXML); });
    plan.read("list of 50 MB: write XML", "ns/byte", atLeast(500), [] { return writing(kXML); });
}

}
