// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSObject+KeyValueCoding.h"

#include <atomic>
#include <thread>
#include <vector>

#include "KeyValueHosts.h"
#include "foundation/NSError.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNull.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

using namespace std::literals;

namespace {

    std::uint64_t ownersOf(NSObject* object)
    {
        return object->send<"retainCount", std::uint64_t>();
    }

    Ref<KeyHost> host() { return make<KeyHost>(); }

    std::string kindOf(const Ref<NSObject>& number) { return cast<NSNumber>(number)->objCType(); }

    std::string withoutAddress(std::string text)
    {
        const std::size_t from = text.find(" 0x");
        if (from != text.npos)
            text.erase(from, text.find('>') - from);
        return text;
    }

    NSInteger readInteger(const Ref<KeyHost>& object, NSString* key)
    {
        return cast<NSNumber>(valueForKey(object, key))->integerValue();
    }

    /// Sets and reads a number and answers kind and text of what came back.
    std::string roundTrip(NSString* key, double value)
    {
        const auto object = host();
        setValue_forKey(object, NSNumber::cls().numberWithDouble(value).get(), key);
        const auto back = valueForKey(object, key);
        return kindOf(back) + " " + textOf(back);
    }

}

// ---- the order of accessors

TEST(KeyValueReading, GetterWithGetComesFirst) { EXPECT_EQ(readInteger(host(), "first"_ns), 1); }
TEST(KeyValueReading, TheKeyItselfComesBeforeIs) { EXPECT_EQ(readInteger(host(), "second"_ns), 2); }
TEST(KeyValueReading, GetterWithIsIsFound) { EXPECT_EQ(readInteger(host(), "third"_ns), 1); }
TEST(KeyValueReading, GetterWithUnderscoreIsFound)
{
    EXPECT_EQ(readInteger(host(), "fourth"_ns), 4);
}
TEST(KeyValueReading, FieldWithUnderscoreIsRead) { EXPECT_EQ(readInteger(host(), "hidden"_ns), 7); }
TEST(KeyValueReading, FieldWithUnderscoreAndIsIsRead)
{
    EXPECT_EQ(readInteger(host(), "open"_ns), 8);
}
TEST(KeyValueReading, FieldOfTheKeysNameIsRead) { EXPECT_EQ(readInteger(host(), "bare"_ns), 9); }
TEST(KeyValueReading, FieldWithIsIsRead) { EXPECT_EQ(readInteger(host(), "wide"_ns), 10); }
TEST(KeyValueReading, KeyOfCapitalsKeepsThem)
{
    EXPECT_EQ(textOf(valueForKey(host(), "UUID"_ns)), "identity");
}
TEST(KeyValueReading, NilReceiverAnswersNil)
{
    KeyHost* const nobody = nullptr;
    EXPECT_FALSE(valueForKey(nobody, "number"_ns));
}

TEST(KeyValueWriting, SetterWithUnderscoreIsFound)
{
    const auto object = host();
    setValue_forKey(object, NSNumber::cls().numberWithInt(3).get(), "secret"_ns);
    EXPECT_EQ(object->log_, "_setSecret 3");
}
TEST(KeyValueWriting, SetterWithIsIsFound)
{
    const auto object = host();
    setValue_forKey(object, NSNumber::cls().numberWithBool(true).get(), "third"_ns);
    EXPECT_EQ(object->log_, "setIsThird");
}
TEST(KeyValueWriting, KeyOfCapitalsKeepsThem)
{
    const auto object = host();
    setValue_forKey(object, "x"_ns, "UUID"_ns);
    EXPECT_EQ(object->log_, "setUUID x");
}
TEST(KeyValueWriting, ReadOnlyPropertyIsWrittenInItsField)
{
    const auto object = host();
    setValue_forKey(object, "text"_ns, "kept"_ns);
    EXPECT_EQ(utf8(object->kept_), "text");
}
TEST(KeyValueWriting, FieldKeepsTheNewValueAndLetsTheOldGo)
{
    const auto object = host();
    const Ref<NSString> first = stringFrom("kept"sv);
    setValue_forKey(object, first.get(), "kept"_ns);
    EXPECT_EQ(ownersOf(first.get()), 2u);
    setValue_forKey(object, nullptr, "kept"_ns);
    EXPECT_EQ(ownersOf(first.get()), 1u);
}
TEST(KeyValueWriting, FieldsOfNumbersAreWritten)
{
    const auto object = host();
    setValue_forKey(object, NSNumber::cls().numberWithInt(21).get(), "hidden"_ns);
    EXPECT_EQ(object->hidden_, 21);
}

// ---- numbers keep their kind

TEST(KeyValueNumbers, BooleansCross) { EXPECT_EQ(roundTrip("flag"_ns, 1), "B 1"); }
TEST(KeyValueNumbers, CharactersCross) { EXPECT_EQ(roundTrip("letter"_ns, -5), "c -5"); }
TEST(KeyValueNumbers, UnsignedCharactersCross) { EXPECT_EQ(roundTrip("byte"_ns, 200), "C 200"); }
TEST(KeyValueNumbers, ShortsCross) { EXPECT_EQ(roundTrip("small"_ns, -300), "s -300"); }
TEST(KeyValueNumbers, UnsignedShortsCross)
{
    EXPECT_EQ(roundTrip("smallNatural"_ns, 60000), "S 60000");
}
TEST(KeyValueNumbers, IntsCross) { EXPECT_EQ(roundTrip("number"_ns, -70000), "i -70000"); }
TEST(KeyValueNumbers, UnsignedIntsCross)
{
    EXPECT_EQ(roundTrip("natural"_ns, 3e9), "I 3000000000");
}
TEST(KeyValueNumbers, IntegersCross) { EXPECT_EQ(roundTrip("large"_ns, -3e9), "q -3000000000"); }
TEST(KeyValueNumbers, UnsignedIntegersCross)
{
    EXPECT_EQ(roundTrip("largeNatural"_ns, 3e9), "Q 3000000000");
}
TEST(KeyValueNumbers, FloatsCross) { EXPECT_EQ(roundTrip("single"_ns, 0.5), "f 0.5"); }
TEST(KeyValueNumbers, DoublesCross) { EXPECT_EQ(roundTrip("real"_ns, 0.25), "d 0.25"); }
TEST(KeyValueNumbers, TextThatReadsAsANumberWillDo)
{
    const auto object = host();
    setValue_forKey(object, "12.5"_ns, "real"_ns);
    EXPECT_EQ(object->real_, 12.5);
}
TEST(KeyValueNumbers, WhatIsNoNumberIsRefused)
{
    const auto object = host();
    object->real_ = 1;
    EXPECT_THROW(setValue_forKey(object, NSArray::cls().array().get(), "real"_ns), Exception);
    EXPECT_EQ(object->real_, 1);
}

// ---- structures, classes, pointers, closures

TEST(KeyValueStructures, PlatformStructuresCross)
{
    const auto object = host();
    const auto set = [&](const auto& value, NSString* key) {
        setValue_forKey(object, NSValue::cls().valueOf(value).get(), key);
        return cast<NSValue>(valueForKey(object, key));
    };
    EXPECT_EQ(set(NSMakePoint(1, 2), "point"_ns)->pointValue().y, 2);
    EXPECT_EQ(set(NSMakeSize(3, 4), "size"_ns)->sizeValue().width, 3);
    EXPECT_EQ(set(NSMakeRect(1, 2, 3, 4), "rect"_ns)->rectValue().size.height, 4);
    EXPECT_EQ(set(NSMakeRange(5, 6), "range"_ns)->rangeValue().length, 6u);
}
TEST(KeyValueStructures, OtherStructuresCross)
{
    const auto object = host();
    setValue_forKey(object, NSValue::cls().valueOf(Tint { 0.5f, 1, 9 }).get(), "tint"_ns);
    Tint back {};
    cast<NSValue>(valueForKey(object, "tint"_ns))->getValue(&back);
    EXPECT_EQ(back.red, 0.5f);
    EXPECT_EQ(back.steps, 9);
}
TEST(KeyValueStructures, ValueOfAnotherTypeIsRefused)
{
    const auto object = host();
    const auto size = NSValue::cls().valueWithSize(NSMakeSize(1, 1));
    EXPECT_EQ(withoutAddress(raisedBy([&] { setValue_forKey(object, size.get(), "rect"_ns); })),
        "NSInvalidArgumentException: [<KeyHost> setValue:forKey:]: a value of class NSValue cannot "
        "be set for the key rect of type {CGRect={CGPoint=dd}{CGSize=dd}}.");
}
TEST(KeyValueStructures, ClassesCross)
{
    const auto object = host();
    setValue_forKey(object, NSString::cls().object, "kind"_ns);
    EXPECT_EQ(object->kind_, NSString::cls().object);
    EXPECT_EQ(valueForKey(object, "kind"_ns), NSString::cls().object);
}
TEST(KeyValueStructures, WhatIsNoClassIsRefusedForOne)
{
    const auto object = host();
    EXPECT_THROW(setValue_forKey(object, "NSString"_ns, "kind"_ns), Exception);
    EXPECT_EQ(object->kind_, nullptr);
}
TEST(KeyValueObjects, AreRefusedByASetterThatReadsThemAsAnotherClass)
{
    const auto object = host();
    const auto number = NSNumber::cls().numberWithInt(1);
    EXPECT_EQ(withoutAddress(raisedBy([&] { setValue_forKey(object, number.get(), "UUID"_ns); })),
        "NSInvalidArgumentException: [<KeyHost> setValue:forKey:]: a value of class NSNumber "
        "cannot "
        "be set for the key UUID of type @.");
    EXPECT_EQ(object->log_, "");
}
TEST(KeyValueObjects, AreKeptByAPropertyOfAnotherClass)
{
    const auto object = host();
    const auto number = NSNumber::cls().numberWithInt(1);
    setValue_forKey(object, number.get(), "name"_ns);
    EXPECT_EQ(valueForKey(object, "name"_ns), number);
}
TEST(KeyValueStructures, PointersAreBoxedWithTheirType)
{
    const auto boxed = cast<NSValue>(valueForKey(host(), "letters"_ns));
    EXPECT_STREQ(boxed->objCType(), "*");
    EXPECT_STREQ(static_cast<const char*>(boxed->pointerValue()), "abc");
}
TEST(KeyValueStructures, ClosuresCross)
{
    const auto object = host();
    int calls = 0;
    object->code_ = [&calls] { ++calls; };
    const auto other = host();
    setValue_forKey(other, valueForKey(object, "code"_ns).get(), "code"_ns);
    other->code_();
    EXPECT_EQ(calls, 1);
}
TEST(KeyValueStructures, WhatIsNoClosureIsRefusedForOne)
{
    EXPECT_THROW(setValue_forKey(host(), "text"_ns, "code"_ns), Exception);
}
TEST(KeyValueStructures, WeakPropertiesCross)
{
    const auto object = host();
    const auto other = host();
    setValue_forKey(object, other.get(), "friend"_ns);
    EXPECT_EQ(valueForKey(object, "friend"_ns), other.get());
    EXPECT_EQ(ownersOf(other.get()), 1u);
}

// ---- nil and keys that lead to nothing

TEST(KeyValueNil, ObjectsTakeIt)
{
    const auto object = host();
    object->name_ = "x"_ns;
    setValue_forKey(object, nullptr, "name"_ns);
    EXPECT_FALSE(object->name_);
}
TEST(KeyValueNil, NumbersRefuseIt)
{
    EXPECT_EQ(withoutAddress(raisedBy([] { setValue_forKey(host(), nullptr, "number"_ns); })),
        "NSInvalidArgumentException: [<KeyHost> setNilValueForKey]: could not set nil as the value "
        "for the key number.");
}
TEST(KeyValueNil, StructuresRefuseIt)
{
    EXPECT_THROW(setValue_forKey(host(), nullptr, "rect"_ns), Exception);
}
TEST(KeyValueNil, AClassMayTakeItForNumbers)
{
    const auto object = make<OwnKeyHost>();
    setValue_forKey(object, nullptr, "number"_ns);
    EXPECT_EQ(object->log_, "nil number");
}

TEST(UndefinedKeys, AreRefusedWhenRead)
{
    EXPECT_EQ(withoutAddress(raisedBy([] { valueForKey(host(), "nobody"_ns); })),
        "NSUnknownKeyException: [<KeyHost> valueForUndefinedKey:]: this class is not key value "
        "coding-compliant for the key nobody.");
}
TEST(UndefinedKeys, AreRefusedWhenWritten)
{
    EXPECT_EQ(withoutAddress(raisedBy([] { setValue_forKey(host(), "x"_ns, "nobody"_ns); })),
        "NSUnknownKeyException: [<KeyHost> setValue:forUndefinedKey:]: this class is not key value "
        "coding-compliant for the key nobody.");
}
TEST(UndefinedKeys, MayBeAnsweredByAClass)
{
    const auto object = make<OwnKeyHost>();
    EXPECT_EQ(textOf(valueForKey(object, "nobody"_ns)), "undefined");
    setValue_forKey(object, nullptr, "nobody"_ns);
    EXPECT_EQ(object->log_, "undefined nobody");
}
TEST(UndefinedKeys, AreNilAndTheEmptyKey)
{
    EXPECT_THROW(valueForKey(host(), nullptr), Exception);
    EXPECT_THROW(valueForKey(host(), ""_ns), Exception);
}
TEST(UndefinedKeys, AreOperationsThatAnswerNothing)
{
    EXPECT_THROW(valueForKey(host(), "nothing"_ns), Exception);
}
TEST(UndefinedKeys, AreOperationsWithArguments)
{
    EXPECT_THROW(valueForKey(host(), "setUUID:"_ns), Exception);
}
TEST(UndefinedKeys, AreKeysWithAZeroUnitInThem)
{
    const unichar text[] = { u'r', u'e', u'a', u'l', 0, u'x' };
    const auto key = NSString::cls().stringWithCharacters_length(text, 6);
    EXPECT_THROW(valueForKey(host(), key.get()), Exception);
}
TEST(UndefinedKeys, AreFieldsOfAClassThatDoesNotWantThemTouched)
{
    EXPECT_THROW(valueForKey(make<ShyHost>(), "hidden"_ns), Exception);
    EXPECT_EQ(textOf(valueForKey(make<ShyHost>(), "number"_ns)), "0");
}

// ---- what was found is found again

TEST(KeyValueMemory, MethodAddedLaterIsUsed)
{
    Class* const cls = objc_allocateClassPair(KeyHost::cls(), "LaterKeyHost", 0);
    objc_registerClassPair(cls);
    const auto object = cast<KeyHost>(cls->send<"new", Ref<NSObject>>());
    EXPECT_EQ(readInteger(object, "second"_ns), 2);
    const auto get = +[](NSObject*, SEL) { return NSInteger { 22 }; };
    class_addMethod(cls, selector<"getSecond">, reinterpret_cast<IMP>(get), "q@:");
    EXPECT_EQ(readInteger(object, "second"_ns), 22);
}
TEST(KeyValueMemory, ExchangedMethodIsUsed)
{
    const auto object = host();
    EXPECT_EQ(readInteger(object, "fourth"_ns), 4);
    Method* const fourth = class_getInstanceMethod(KeyHost::cls(), selector<"_fourth">);
    Method* const second = class_getInstanceMethod(KeyHost::cls(), selector<"second">);
    method_exchangeImplementations(fourth, second);
    EXPECT_EQ(readInteger(object, "fourth"_ns), 2);
    method_exchangeImplementations(fourth, second);
    EXPECT_EQ(readInteger(object, "fourth"_ns), 4);
}
TEST(KeyValueMemory, ReadersBesideExchangesSeeOneOfTheTwo)
{
    Method* const fourth = class_getInstanceMethod(KeyHost::cls(), selector<"_fourth">);
    Method* const second = class_getInstanceMethod(KeyHost::cls(), selector<"second">);
    std::atomic<int> wrong { 0 };
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&wrong] {
            const auto object = host();
            for (int read = 0; read < 2000; ++read) {
                const NSInteger found = readInteger(object, "fourth"_ns);
                wrong += found != 4 && found != 2;
            }
        });
    for (int i = 0; i < 201; ++i)
        method_exchangeImplementations(fourth, second);
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(readInteger(host(), "fourth"_ns), 2);
    method_exchangeImplementations(fourth, second);
    EXPECT_EQ(readInteger(host(), "fourth"_ns), 4);
}
TEST(KeyValueMemory, KeysOfOneLengthAndTheSameEndsDiffer)
{
    Class* const cls = objc_allocateClassPair(NSObject::cls(), "TwinKeyHost", 0);
    const auto one = +[](NSObject*, SEL) { return NSInteger { 1 }; };
    const auto two = +[](NSObject*, SEL) { return NSInteger { 2 }; };
    class_addMethod(
        cls, sel_registerName("beginningOnetheending"), reinterpret_cast<IMP>(one), "q@:");
    class_addMethod(
        cls, sel_registerName("beginningTwotheending"), reinterpret_cast<IMP>(two), "q@:");
    objc_registerClassPair(cls);
    const auto object = cls->send<"new", Ref<NSObject>>();
    EXPECT_EQ(textOf(valueForKey(object, "beginningOnetheending"_ns)), "1");
    EXPECT_EQ(textOf(valueForKey(object, "beginningTwotheending"_ns)), "2");
}

// ---- without an object round the value

TEST(TypedReading, AnswersThePropertysOwnType)
{
    const auto object = host();
    object->real_ = 2.5;
    object->rect_ = NSMakeRect(1, 2, 3, 4);
    EXPECT_EQ(valueForKeyAs<double>(object.get(), "real"_ns), 2.5);
    EXPECT_EQ(valueForKeyAs<NSRect>(object.get(), "rect"_ns).size.width, 3);
}
TEST(TypedReading, ConvertsNumbersOfAnotherType)
{
    const auto object = host();
    object->real_ = 2.5;
    EXPECT_EQ(valueForKeyAs<NSInteger>(object.get(), "real"_ns), 2);
}
TEST(TypedReading, AnswersZeroForAStructureOfAnotherType)
{
    const auto object = host();
    object->rect_ = NSMakeRect(1, 2, 3, 4);
    EXPECT_EQ(valueForKeyAs<NSPoint>(object.get(), "rect"_ns).x, 0);
}
TEST(TypedReading, AsksAClassThatAnswersKeysInItsOwnWay)
{
    const auto object = make<OwnKeyHost>();
    EXPECT_EQ(valueForKeyAs<double>(object.get(), "real"_ns), 11);
}
TEST(TypedReading, ReadsFieldsToo)
{
    EXPECT_EQ(valueForKeyAs<NSInteger>(host().get(), "hidden"_ns), 7);
}
TEST(TypedReading, NilReadsZero) { EXPECT_EQ(valueForKeyAs<double>(nullptr, "real"_ns), 0); }

// ---- several keys, validation

TEST(KeyValueGroups, NullStandsForNil)
{
    const auto object = host();
    object->number_ = 4;
    const auto keys = makeArray({ "number"_ns, "name"_ns });
    const auto values = dictionaryWithValuesForKeys(object, keys.get());
    EXPECT_EQ(textOf(values->objectForKey("number"_ns)), "4");
    EXPECT_EQ(values->objectForKey("name"_ns), NSNull::cls().null());
}
TEST(KeyValueGroups, NullSetsNil)
{
    const auto object = host();
    object->name_ = "x"_ns;
    const auto values = make<NSMutableDictionary>();
    values->setObject_forKey(NSNull::cls().null().get(), "name"_ns);
    values->setObject_forKey(NSNumber::cls().numberWithInt(6).get(), "number"_ns);
    setValuesForKeysWithDictionary(object, values.get());
    EXPECT_FALSE(object->name_);
    EXPECT_EQ(object->number_, 6);
}
TEST(KeyValueGroups, NoKeysAnswerAnEmptyDictionary)
{
    EXPECT_EQ(dictionaryWithValuesForKeys(host(), nullptr)->count(), 0u);
}
TEST(Validation, IsYesWhereTheClassHasNone)
{
    Ref<NSObject> value = "x"_ns;
    EXPECT_TRUE(validateValue_forKey_error(host(), &value, "name"_ns, nullptr));
    EXPECT_TRUE(validateValue_forKey_error(host(), &value, nullptr, nullptr));
}
TEST(Validation, MayPutAnotherValueInPlace)
{
    Ref<NSObject> value = NSNumber::cls().numberWithInt(5);
    EXPECT_TRUE(validateValue_forKey_error(host(), &value, "number"_ns, nullptr));
    EXPECT_EQ(textOf(value), "1");
}
TEST(Validation, SaysWhyNot)
{
    Ref<NSObject> value = NSNumber::cls().numberWithInt(-5);
    Ref<NSError> error;
    EXPECT_FALSE(validateValue_forKey_error(host(), &value, "number"_ns, &error));
    EXPECT_EQ(error->code(), 3);
}

}
