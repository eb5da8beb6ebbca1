// SPDX-License-Identifier: Apache-2.0
#include "introspection/NSObject+AutoCoding.h"

#include "CodingHosts.h"
#include "foundation/NSNull.h"
#include "runtime/NSInvocation.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<DictionaryCoder> encoded(const Ref<NSObject>& object)
    {
        auto coder = make<DictionaryCoder>();
        encodeWithCoder(object, coder.get());
        return coder;
    }

    template <class T> Ref<T> decoded(const Ref<DictionaryCoder>& coder)
    {
        return cast<T>(initWithCoder(alloc<T>(), coder.get()));
    }

    /// A coder with one wrong value, and values on both sides of it.
    template <class Coder> Ref<Coder> coderWithWrongText()
    {
        auto coder = make<Coder>();
        const auto set
            = [&](NSObject* value, NSString* key) { coder->values_->setObject_forKey(value, key); };
        set(NSNumber::cls().numberWithInt(3).get(), "number"_ns);
        set(NSNumber::cls().numberWithInt(4).get(), "text"_ns);
        set(NSNumber::cls().numberWithInt(5).get(), "count"_ns);
        return coder;
    }

    constexpr const char* kWrongText
        = "AutocodingException: Expected 'text' to be a NSString, but was actually a NSNumber";

}

TEST(AutoCoding, EveryCodableKindSurvives)
{
    const auto host = filledHost<CodingHost>();
    const auto back = decoded<CodingHost>(encoded(host));
    EXPECT_TRUE(dictionaryRepresentation(back)->isEqual(dictionaryRepresentation(host).get()));
    EXPECT_EQ(back->large_, -5'000'000'000);
    EXPECT_EQ(back->single_, 0.1f);
    EXPECT_EQ(back->rect_.size.height, 8);
    EXPECT_EQ(utf8(back->text_), "text");
}
TEST(AutoCoding, NilIsNotWritten)
{
    const auto coder = encoded(make<CodingHost>());
    EXPECT_FALSE(coder->values_->objectForKey("text"_ns));
    EXPECT_TRUE(coder->values_->objectForKey("number"_ns));
}
TEST(AutoCoding, MissingValuesLeavePropertiesAlone)
{
    const auto host = filledHost<CodingHost>();
    setWithCoder(host, make<DictionaryCoder>().get());
    EXPECT_EQ(utf8(host->text_), "text");
    EXPECT_EQ(host->number_, -70'000);
}
TEST(AutoCoding, WhatIsNotCodableIsNeitherWrittenNorRead)
{
    const auto host = make<PartlyCodingHost>();
    host->natural_ = 4;
    host->left_ = "left"_ns;
    host->elsewhere_ = "elsewhere"_ns;
    const auto coder = encoded(host);
    EXPECT_EQ(coder->values_->count(), 0u);
    coder->values_->setObject_forKey("archived"_ns, "left"_ns);
    EXPECT_FALSE(decoded<PartlyCodingHost>(coder)->left_);
}
TEST(AutoCoding, ReadOnlyPropertiesSurviveInTheirFields)
{
    const auto host = make<PartlyCodingHost>();
    host->kept_ = "kept"_ns;
    EXPECT_EQ(utf8(decoded<PartlyCodingHost>(encoded(host))->kept_), "kept");
}
TEST(AutoCoding, InitDecodesTheReceiverItself)
{
    const auto host = make<CodingHost>();
    EXPECT_EQ(initWithCoder(host, encoded(filledHost<CodingHost>()).get()), host.get());
    EXPECT_EQ(host->number_, -70'000);
}
TEST(AutoCoding, ValuesAreReadInTheOrderOfTheTable)
{
    const auto coder = make<DictionaryCoder>();
    setWithCoder(make<PartlyCodingHost>(), coder.get());
    EXPECT_EQ(coder->log_, "kept renamed copying unknown ");
}

TEST(AutoCodingClasses, WrongClassIsRaised)
{
    const auto coder = coderWithWrongText<DictionaryCoder>();
    EXPECT_EQ(raisedBy([&] { setWithCoder(make<CodingHost>(), coder.get()); }), kWrongText);
}
TEST(AutoCodingClasses, PropertiesBeforeTheWrongOneKeepTheirNewValues)
{
    const auto host = filledHost<CodingHost>();
    const auto coder = coderWithWrongText<DictionaryCoder>();
    EXPECT_THROW(setWithCoder(host, coder.get()), Exception);
    EXPECT_EQ(host->number_, 3);
    EXPECT_EQ(utf8(host->text_), "text");
    EXPECT_EQ(host->count_->intValue(), 12);
}
TEST(AutoCodingClasses, ForeignValueIsRefusedBeforeItIsDecoded)
{
    const auto coder = coderWithWrongText<ForeseeingCoder>();
    EXPECT_EQ(raisedBy([&] { setWithCoder(make<CodingHost>(), coder.get()); }), kWrongText);
    EXPECT_EQ(coder->log_.find("text"), std::string::npos);
}
TEST(AutoCodingClasses, CoderThatKnowsNoClassesIsCheckedToo)
{
    const auto coder = coderWithWrongText<PlainCoder>();
    const auto host = make<CodingHost>();
    EXPECT_EQ(raisedBy([&] { host->send<"setWithCoder:">(static_cast<NSObject*>(coder.get())); }),
        kWrongText);
    EXPECT_EQ(host->number_, 3);
}
TEST(AutoCodingClasses, SubclassesAreWelcome)
{
    const auto coder = make<DictionaryCoder>();
    coder->values_->setObject_forKey(make<NamesakeCodingHost>().get(), "inner"_ns);
    EXPECT_TRUE(decoded<CodingHost>(coder)->inner_->isKindOfClass(NamesakeCodingHost::cls()));
}
TEST(AutoCodingClasses, TrustingClassTakesWhatComes)
{
    const auto coder = coderWithWrongText<ForeseeingCoder>();
    const auto host = decoded<TrustingCodingHost>(coder);
    EXPECT_EQ(textOf(host->text_), "4");
}

TEST(AutoCodingOverrides, OfTheTableAndOfKeysTakeEffect)
{
    const auto coder = encoded(make<OwnCodingHost>());
    EXPECT_EQ(coder->values_->count(), 1u);
    EXPECT_EQ(textOf(coder->values_->objectForKey("only"_ns)), "only!");
    EXPECT_EQ(decoded<OwnCodingHost>(coder)->log_, "only=only!");
}

TEST(DictionaryRepresentation, HoldsEveryCodableProperty)
{
    const auto host = make<PartlyCodingHost>();
    host->kept_ = "x"_ns;
    const auto values = dictionaryRepresentation(host);
    EXPECT_EQ(values->count(), 4u);
    EXPECT_EQ(textOf(values->objectForKey("kept"_ns)), "x");
    EXPECT_EQ(values->objectForKey("renamed"_ns), NSNull::cls().null());
}

// ---- copying on every object

TEST(CopyingEverywhere, EveryObjectAnswersTheSelector)
{
    EXPECT_TRUE(make<CodingHost>()->respondsToSelector(selector<"copyWithZone:">));
    EXPECT_TRUE(make<NSObject>()->respondsToSelector(selector<"copyWithZone:">));
    EXPECT_FALSE(make<NSObject>()->respondsToSelector(selector<"mutableCopyWithZone:">));
}
TEST(CopyingEverywhere, InstancesOfTheClassStillDoNot)
{
    EXPECT_FALSE(CodingHost::cls().instancesRespondToSelector(selector<"copyWithZone:">));
}
TEST(CopyingEverywhere, CopyIsNilWhereTheClassDoesNotCopy)
{
    EXPECT_FALSE(make<CodingHost>()->copy());
    EXPECT_EQ(textOf("text"_ns->copy()), "text");
}
TEST(CopyingEverywhere, SignatureIsThatOfAnOperationWithOneObject)
{
    const auto signature
        = make<CodingHost>()->methodSignatureForSelector(selector<"copyWithZone:">);
    ASSERT_TRUE(signature);
    EXPECT_EQ(signature->numberOfArguments(), 3u);
    EXPECT_STREQ(signature->getArgumentTypeAtIndex(2), "@");
}
TEST(CopyingEverywhere, OtherSelectorsStayUnrecognized)
{
    const std::string text = raisedBy([] { make<CodingHost>()->send<"nobodyAnswersThis">(); });
    EXPECT_TRUE(text.starts_with("NSInvalidArgumentException: -[CodingHost nobodyAnswersThis]: "
                                 "unrecognized selector sent to instance 0x"))
        << text;
}
TEST(CopyingEverywhere, ReplacedOperationsAreReachedByTheirOtherNames)
{
    const auto host = make<CodingHost>();
    const SEL copy = selector<"copyWithZone:">;
    EXPECT_FALSE((host->send<"respondsToSelector_JU:", bool>(copy)));
    EXPECT_FALSE((host->send<"methodSignatureForSelector_JU:", Ref<NSMethodSignature>>(copy)));
}
TEST(CopyingEverywhere, KeyWithoutACopyIsANilKey)
{
    const auto table = make<NSMutableDictionary>();
    const auto key = make<CodingHost>();
    EXPECT_EQ(raisedBy([&] { table->setObject_forKey("x"_ns, key.get()); }),
        raisedBy([&] { table->setObject_forKey("x"_ns, nullptr); }));
    EXPECT_EQ(table->count(), 0u);
}

}
