// SPDX-License-Identifier: Apache-2.0

// A class with twenty properties that is written to a file and read back without a line of code for it, seen through
// its keys; and what happens to an archive whose values are of the wrong class.

#include <cstdio>
#include <filesystem>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSUUID.h"
#include "introspection/NSObject+AutoCoding.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

using namespace brindle;

namespace {

/// A house as an agent knows it.
class House : public NSObject {
    BRINDLE_OBJECT(House, NSObject)

    bool sold_ = false;
    char grade_ = 'C';
    unsigned char floors_ = 0;
    short built_ = 0;
    unsigned short number_ = 0;
    int rooms_ = 0;
    unsigned price_ = 0;
    NSInteger visits_ = 0;
    float ceiling_ = 0;
    double area_ = 0;
    NSPoint entrance_ {};
    NSSize garden_ {};
    NSRect plot_ {};
    NSRange hours_ {};
    Ref<NSString> street_;
    Ref<NSNumber> rating_;
    Ref<NSDate> offered_;
    Ref<NSUUID> file_;
    Ref<NSArray> pictures_;
    Ref<House> neighbour_;
};

}

template <> struct House::Methods<struct Offer> {
    static void table(Builder& t)
    {
        t.properties({
            property<&House::sold_>("sold", nonatomic, getter("isSold")),
            property<&House::grade_>("grade", nonatomic),
            property<&House::floors_>("floors", nonatomic),
            property<&House::built_>("built", nonatomic),
            property<&House::number_>("number", nonatomic),
            property<&House::rooms_>("rooms", nonatomic),
            property<&House::price_>("price", nonatomic),
            property<&House::visits_>("visits", nonatomic),
            property<&House::ceiling_>("ceiling", nonatomic),
            property<&House::area_>("area", nonatomic),
            property<&House::entrance_>("entrance", nonatomic),
            property<&House::garden_>("garden", nonatomic),
            property<&House::plot_>("plot", nonatomic),
            property<&House::hours_>("hours", nonatomic),
            property<&House::street_>("street", copied, nonatomic),
            property<&House::rating_>("rating", nonatomic),
            property<&House::offered_>("offered", nonatomic),
            property<&House::file_>("file", readonly, nonatomic),
            property<&House::pictures_>("pictures", nonatomic),
            property<&House::neighbour_>("neighbour", nonatomic),
        });
    }
};
BRINDLE_RECORD(House, Offer)

namespace {

Ref<House> makeHouse(NSString* street)
{
    const auto house = make<House>();
    const auto set = [&](const Ref<NSObject>& value, NSString* key) {
        setValue_forKey(house, value.get(), key);
    };
    set(street, "street"_ns);
    set(NSNumber::cls().numberWithInt(7), "rooms"_ns);
    set(NSNumber::cls().numberWithDouble(182.5), "area"_ns);
    set(NSValue::cls().valueWithRect(NSMakeRect(0, 0, 30, 40)), "plot"_ns);
    set(NSDate::cls().dateWithTimeIntervalSinceReferenceDate(0), "offered"_ns);
    set(NSUUID::cls().UUID(), "file"_ns); // read-only: written in its field
    set(makeArray({ "front.png"_ns, "garden.png"_ns }), "pictures"_ns);
    return house;
}

void show(const char* what, const Ref<NSObject>& value)
{
    std::printf("%s: %s\n", what, value ? value->description()->UTF8String() : "nothing");
}

}

int main()
{
    const auto house = makeHouse("Elm Street"_ns);
    setValue_forKey(house, makeHouse("Oak Street"_ns).get(), "neighbour"_ns);

    const auto path
        = stringFrom((std::filesystem::temp_directory_path() / "house.archive").string());
    if (!writeToFile_atomically(house, path.get(), true))
        return 1;
    const auto back = objectWithContentsOfFile(House::cls(), path.get());
    std::filesystem::remove(path->UTF8String());

    show("rooms", valueForKey(back, "rooms"_ns));
    show("plot", valueForKey(back, "plot"_ns));
    show("next door", valueForKeyPath(back, "neighbour.street"_ns));
    show("pictures next door", valueForKeyPath(back, "neighbour.pictures.@count"_ns));
    const bool isEqual = valueForKey(back, "file"_ns)->isEqual(valueForKey(house, "file"_ns).get());
    std::printf("the same file: %s\n", isEqual ? "yes" : "no");
    std::printf("codable properties: %zu\n",
        static_cast<std::size_t>(codableProperties(House::cls())->count()));

    setValue_forKey(house, "not a number"_ns, "rating"_ns);
    const auto wrong = NSKeyedArchiver::cls().archivedDataWithRootObject(house.get());
    try {
        NSKeyedUnarchiver::cls().unarchiveObjectWithData(wrong.get());
    } catch (const Exception& raised) {
        std::printf("%s\n", raised.what());
    }
    return 0;
}
