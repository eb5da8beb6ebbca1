// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSCoder.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "foundation/NSUUID.h"
#include "runtime/Runtime.h"

namespace brindle {

/// Has a property of every codable kind and no code for coding.
class CodingHost : public NSObject {
    BRINDLE_OBJECT(CodingHost, NSObject)

public:
    bool flag_ = false;
    char letter_ = 0;
    unsigned char byte_ = 0;
    short small_ = 0;
    unsigned short smallNatural_ = 0;
    int number_ = 0;
    unsigned natural_ = 0;
    NSInteger large_ = 0;
    float single_ = 0;
    double real_ = 0;
    NSPoint point_ {};
    NSSize size_ {};
    NSRect rect_ {};
    NSRange range_ {};
    Ref<NSString> text_;
    Ref<NSNumber> count_;
    Ref<NSDate> date_;
    Ref<NSData> data_;
    Ref<NSArray> list_;
    Ref<NSDictionary> table_;
    Ref<CodingHost> inner_;
};

/// Declares what is not codable beside what is.
class PartlyCodingHost : public NSObject {
    BRINDLE_OBJECT(PartlyCodingHost, NSObject)

public:
    NSUInteger natural_ = 0;
    Ref<NSObject> anything_;
    Block<void()> code_;
    Class* kind_ = nullptr;
    const char* letters_ = nullptr;
    Ref<NSString> kept_;
    Ref<NSString> elsewhere_;
    Ref<NSString> renamed_;
    Ref<NSObject> copying_;
    Ref<NSObject> unknown_;
    Ref<NSString> left_;
};

/// Declares properties of names that its ancestor has too, with other classes, and some of its own.
class NamesakeCodingHost : public CodingHost {
    BRINDLE_OBJECT(NamesakeCodingHost, CodingHost)

public:
    Ref<NSNumber> otherText_;
    Ref<NSString> own_;
};

/// Does not want the classes of decoded values checked.
class TrustingCodingHost : public CodingHost {
    BRINDLE_OBJECT(TrustingCodingHost, CodingHost)
};

/// Reads and writes keys in its own way.
class OwnCodingHost : public CodingHost {
    BRINDLE_OBJECT(OwnCodingHost, CodingHost)

public:
    std::string log_;
};

/// Keeps what is encoded in a dictionary. What it decodes is logged.
class DictionaryCoder : public NSCoder {
    BRINDLE_OBJECT(DictionaryCoder, NSCoder)

public:
    Ref<NSMutableDictionary> values_ = make<NSMutableDictionary>();
    std::string log_;
};

/// The same, and it knows the classes of what is to come.
class ForeseeingCoder : public DictionaryCoder {
    BRINDLE_OBJECT(ForeseeingCoder, DictionaryCoder)
};

/// A coder of a host that is no NSCoder and knows no classes.
class PlainCoder : public NSObject {
    BRINDLE_OBJECT(PlainCoder, NSObject)

public:
    Ref<NSMutableDictionary> values_ = make<NSMutableDictionary>();
};

/// A host whose every property has a value.
template <class T> Ref<T> filledHost()
{
    const auto host = make<T>();
    host->flag_ = true;
    host->letter_ = -8;
    host->byte_ = 200;
    host->small_ = -300;
    host->smallNatural_ = 60'000;
    host->number_ = -70'000;
    host->natural_ = 3'000'000'000;
    host->large_ = -5'000'000'000;
    host->single_ = 0.1f;
    host->real_ = 0.1;
    host->point_ = NSMakePoint(1, 2);
    host->size_ = NSMakeSize(3, 4);
    host->rect_ = NSMakeRect(5, 6, 7, 8);
    host->range_ = NSMakeRange(9, 10);
    host->text_ = "text"_ns;
    host->count_ = NSNumber::cls().numberWithInt(12);
    host->date_ = NSDate::cls().dateWithTimeIntervalSinceReferenceDate(1000.5);
    host->data_ = NSData::cls().dataWithBytes_length("abc", 3);
    host->list_ = makeArray({ "a"_ns, "b"_ns });
    host->table_ = NSDictionary::cls().dictionaryWithObject_forKey("value"_ns, "key"_ns);
    host->inner_ = make<CodingHost>();
    host->inner_->text_ = "inner"_ns;
    return host;
}

}
