// SPDX-License-Identifier: Apache-2.0
#include "CodingHosts.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/NSSet.h"
#include "introspection/NSObject+AutoCoding.h"
#include "support/Figures.h"
#include "support/Strings.h"

// Values of twelve classes are offered to properties of twelve types, in archives of both formats.

namespace brindle {

/// Counts how often it is begun by a coder.
class ForeignHost : public NSObject {
    BRINDLE_OBJECT(ForeignHost, NSObject)

public:
    static inline int begun = 0;
};

template <> struct ForeignHost::Methods<struct Coding> {
    static Ref<NSObject> initWithCoder(ForeignHost& self, NSCoder*)
    {
        ++begun;
        return &self;
    }
    static void table(Builder& t) { t.methods({ { "initWithCoder:", imp<initWithCoder> } }); }
};
BRINDLE_RECORD(ForeignHost, Coding)

/// Has a property of each type, and one before them. What is decoded last can be looked at afterwards.
class MatrixHost : public NSObject {
    BRINDLE_OBJECT(MatrixHost, NSObject)

public:
    static inline Ref<MatrixHost> last;

    Ref<NSString> before_;
    Ref<NSString> string_;
    Ref<NSMutableString> mutableString_;
    Ref<NSNumber> number_;
    int whole_ = 5;
    double real_ = 5;
    NSRect rect_ = NSMakeRect(5, 5, 5, 5);
    Ref<NSDate> date_;
    Ref<NSData> data_;
    Ref<NSArray> array_;
    Ref<NSMutableArray> mutableArray_;
    Ref<NSDictionary> dictionary_;
    Ref<NSUUID> identity_;
};

template <> struct MatrixHost::Methods<struct Coding> {
    static Ref<NSObject> initWithCoder(MatrixHost& self, NSCoder* coder)
    {
        last = &self;
        return super<MatrixHost, "initWithCoder:", Ref<NSObject>>(self, coder);
    }
    static void table(Builder& t)
    {
        t.properties({
            property<&MatrixHost::before_>("before", nonatomic),
            property<&MatrixHost::string_>("string", nonatomic),
            property<&MatrixHost::mutableString_>("mutableString", nonatomic),
            property<&MatrixHost::number_>("number", nonatomic),
            property<&MatrixHost::whole_>("whole", nonatomic),
            property<&MatrixHost::real_>("real", nonatomic),
            property<&MatrixHost::rect_>("rect", nonatomic),
            property<&MatrixHost::date_>("date", nonatomic),
            property<&MatrixHost::data_>("data", nonatomic),
            property<&MatrixHost::array_>("array", nonatomic),
            property<&MatrixHost::mutableArray_>("mutableArray", nonatomic),
            property<&MatrixHost::dictionary_>("dictionary", nonatomic),
            property<&MatrixHost::identity_>("identity", nonatomic),
        });
        t.methods({ { "initWithCoder:", imp<initWithCoder> } });
    }
};
BRINDLE_RECORD(MatrixHost, Coding)

/// Archives one value under a key of the other host.
class MatrixSupplier : public NSObject {
    BRINDLE_OBJECT(MatrixSupplier, NSObject)

public:
    Ref<NSString> key_;
    Ref<NSObject> value_;
};

template <> struct MatrixSupplier::Methods<struct Coding> {
    static void encode(MatrixSupplier& self, NSCoder* coder)
    {
        coder->encodeObject_forKey("new"_ns, "before"_ns);
        coder->encodeObject_forKey(self.value_.get(), self.key_.get());
    }
    static void table(Builder& t) { t.methods({ { "encodeWithCoder:", imp<encode> } }); }
};
BRINDLE_RECORD(MatrixSupplier, Coding)

namespace {

    std::vector<Ref<NSObject>> supplies()
    {
        const auto& numbers = NSNumber::cls();
        return {
            "text"_ns,
            NSMutableString::cls().stringWithString("text"_ns),
            numbers.numberWithInt(1),
            numbers.numberWithBool(true),
            NSValue::cls().valueWithRect(NSMakeRect(1, 2, 3, 4)),
            NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1),
            NSData::cls().dataWithBytes_length("abc", 3),
            makeArray({ "a"_ns }),
            NSMutableArray::cls().arrayWithObject("a"_ns),
            NSDictionary::cls().dictionaryWithObject_forKey("a"_ns, "b"_ns),
            NSUUID::cls().UUID(),
            make<ForeignHost>(),
        };
    }

    Ref<NSData> archiveOf(NSObject* value, NSString* key, NSPropertyListFormat format)
    {
        const auto supplier = make<MatrixSupplier>();
        supplier->key_ = key;
        supplier->value_ = value;
        const auto archiver = alloc<NSKeyedArchiver>()->initRequiringSecureCoding(false);
        archiver->setOutputFormat(format);
        archiver->setClassName_forClass("MatrixHost"_ns, MatrixSupplier::cls());
        archiver->encodeObject_forKey(supplier.get(), "root"_ns);
        return archiver->encodedData();
    }

    /// Answers what decoding raised, "" for nothing.
    std::string offered(NSObject* value, NSString* key, NSPropertyListFormat format)
    {
        const auto data = archiveOf(value, key, format);
        return raisedBy([&] { NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()); });
    }

    std::string expectedText(NSString* key, Class* wanted, const NSObject* value)
    {
        return "AutocodingException: Expected '" + utf8(key) + "' to be a " + class_getName(wanted)
            + ", but was actually a " + class_getName(value->classObject());
    }

    void runMatrix(NSPropertyListFormat format)
    {
        const auto untouched = make<MatrixHost>();
        const auto table = codableProperties(MatrixHost::cls());
        ForeignHost::begun = 0;
        int refused = 0;
        long pairs = 0;
        for (NSObject* name : *table) {
            auto* const key = static_cast<NSString*>(name);
            auto* const wanted = static_cast<Class*>(table->objectForKey(key).get());
            if (key->isEqualToString("before"_ns))
                continue;
            for (const Ref<NSObject>& value : supplies()) {
                ++pairs;
                const std::string raised = offered(value.get(), key, format);
                EXPECT_EQ(utf8(MatrixHost::last->before_), "new");
                if (value->isKindOfClass(wanted) && raised.empty()) {
                    EXPECT_TRUE(valueForKey(MatrixHost::last, key)->isEqual(value.get()));
                    continue;
                }
                ++refused;
                if (!value->isKindOfClass(wanted)) {
                    EXPECT_EQ(raised, expectedText(key, wanted, value.get()));
                }
                const auto kept = valueForKey(MatrixHost::last, key);
                const auto fresh = valueForKey(untouched, key);
                EXPECT_TRUE(kept == fresh || kept->isEqual(fresh.get())) << utf8(key);
            }
        }
        MatrixHost::last = nullptr;
        test::publish({ "values by types of properties: objects of a wrong class that were begun",
            pairs, 0.0 + ForeignHost::begun, "objects", 0 });
        EXPECT_GT(refused, 110);
    }

}

TEST(AutoCodingMatrix, BinaryArchivesOfWrongClassesAreRefused)
{
    runMatrix(NSPropertyListBinaryFormat_v1_0);
}
TEST(AutoCodingMatrix, XMLArchivesOfWrongClassesAreRefused)
{
    runMatrix(NSPropertyListXMLFormat_v1_0);
}
TEST(AutoCodingMatrix, KeysThatAreNoCodablePropertiesNeverReachTheObject)
{
    const auto data = archiveOf("x"_ns, "description"_ns, NSPropertyListBinaryFormat_v1_0);
    NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get());
    EXPECT_EQ(utf8(MatrixHost::last->before_), "new");
    MatrixHost::last = nullptr;
}

}
