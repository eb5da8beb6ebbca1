// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSObject+AutoCoding.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"
#include "support/Hosts.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle {

/// Eight properties and no code for coding.
class AutoBook : public NSObject {
    BRINDLE_OBJECT(AutoBook, NSObject)

public:
    Ref<NSString> title_;
    Ref<NSString> author_;
    int year_ = 0;
    double weight_ = 0;
    bool lent_ = false;
    Ref<NSDate> bought_;
    Ref<AutoBook> sequel_;
    Ref<NSArray> pages_;
};

template <> struct AutoBook::Methods<struct Declared> {
    static void table(Builder& t)
    {
        t.properties({
            property<&AutoBook::title_>("title", nonatomic),
            property<&AutoBook::author_>("author", nonatomic),
            property<&AutoBook::year_>("year", nonatomic),
            property<&AutoBook::weight_>("weight", nonatomic),
            property<&AutoBook::lent_>("lent", nonatomic),
            property<&AutoBook::bought_>("bought", nonatomic),
            property<&AutoBook::sequel_>("sequel", nonatomic),
            property<&AutoBook::pages_>("pages", nonatomic),
        });
    }
};
BRINDLE_RECORD(AutoBook, Declared)

/// The same, coded by hand.
class HandBook : public AutoBook {
    BRINDLE_OBJECT(HandBook, AutoBook)
};

template <> struct HandBook::Methods<struct Coding> {
    static void encode(HandBook& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.title_.get(), "title"_ns);
        coder->encodeObject_forKey(self.author_.get(), "author"_ns);
        coder->encodeInt_forKey(self.year_, "year"_ns);
        coder->encodeDouble_forKey(self.weight_, "weight"_ns);
        coder->encodeBool_forKey(self.lent_, "lent"_ns);
        coder->encodeObject_forKey(self.bought_.get(), "bought"_ns);
        coder->encodeObject_forKey(self.sequel_.get(), "sequel"_ns);
        coder->encodeObject_forKey(self.pages_.get(), "pages"_ns);
    }
    static Ref<NSObject> initWithCoder(HandBook& self, NSCoder* coder)
    {
        self.title_ = decode<NSString>(coder, "title"_ns);
        self.author_ = decode<NSString>(coder, "author"_ns);
        self.year_ = coder->decodeIntForKey("year"_ns);
        self.weight_ = coder->decodeDoubleForKey("weight"_ns);
        self.lent_ = coder->decodeBoolForKey("lent"_ns);
        self.bought_ = decode<NSDate>(coder, "bought"_ns);
        self.sequel_ = decode<AutoBook>(coder, "sequel"_ns);
        self.pages_ = decode<NSArray>(coder, "pages"_ns);
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
BRINDLE_RECORD(HandBook, Coding)

}

namespace brindle::bench {

namespace {

    constexpr std::size_t kBooks = 10'000;

    template <class Book> Ref<NSObject> book(std::size_t number)
    {
        const auto made = make<Book>();
        made->title_ = stringFrom("Title number " + std::to_string(number));
        made->author_ = stringFrom("Author number " + std::to_string(number * 7));
        made->year_ = static_cast<int>(1900 + number);
        made->weight_ = 100.5 + static_cast<double>(number);
        made->lent_ = number % 2 == 0;
        made->bought_ = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(
            1e8 + static_cast<double>(number));
        made->sequel_ = make<Book>();
        std::vector<Ref<NSObject>> pages;
        for (std::size_t i = 0; i < 3; ++i)
            pages.emplace_back(
                NSNumber::cls().numberWithInteger(static_cast<NSInteger>(number * 3 + i)));
        made->pages_ = makeArray(std::move(pages));
        return made;
    }
    template <class Book> Ref<NSArray> books()
    {
        std::vector<Ref<NSObject>> all;
        for (std::size_t i = 0; i < kBooks; ++i)
            all.push_back(book<Book>(i));
        return makeArray(std::move(all));
    }
    Ref<NSData> archived(NSObject* books)
    {
        return NSKeyedArchiver::cls().archivedDataWithRootObject(books);
    }

    template <class Book> Sample archiving()
    {
        return repeated([all = books<Book>()](std::size_t) { keep(archived(all.get()).get()); });
    }
    template <class Book> Sample unarchiving()
    {
        return repeated([data = archived(books<Book>().get())](std::size_t) {
            keep(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()).get());
        });
    }

    /// The least that finds a table by a class's name, one thread at a time.
    struct Tables {
        std::recursive_mutex mutex;
        std::unordered_map<std::string, Ref<NSObject>> all;

        Ref<NSObject> find(const std::string& name)
        {
            const std::lock_guard guard(mutex);
            return all.find(name)->second;
        }
    };

}

void addAutoCoding(Plan& plan)
{
    plan.time("codable properties of an object, again", kNoBudget, [] {
        const auto host = makeHosts(1)[0];
        const auto tables = std::make_shared<Tables>();
        tables->all["Host"] = codableProperties(host);
        return Pair { repeated([host](std::size_t) { keep(codableProperties(host).get()); }),
            repeated([tables, name = std::string("Host")](
                         std::size_t) { keep(tables->find(name).get()); }) };
    });
    plan.time("archive 10,000 objects of 8 properties: automatic, by hand", kNoBudget, [] {
        return Pair { archiving<AutoBook>(), archiving<HandBook>(), 1, 7 };
    });
    plan.time("unarchive them: automatic, by hand", kNoBudget, [] {
        return Pair { unarchiving<AutoBook>(), unarchiving<HandBook>(), 1, 7 };
    });
}

}
