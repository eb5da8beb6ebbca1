// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSCoder.h"

#include "foundation/NSData.h"
#include "foundation/NSError.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSet.h"
#include "runtime/Table.h"
#include "support/Strings.h"

using namespace brindle;

namespace brindle {

/// A coder of a host: it overrides the three operations that everything else is made of.
class DictionaryCoder : public NSCoder {
    BRINDLE_OBJECT(DictionaryCoder, NSCoder)

public:
    Ref<NSMutableDictionary> values_ = make<NSMutableDictionary>();
    NSDecodingFailurePolicy policy_ = NSDecodingFailurePolicyRaiseException;
};

template <> struct DictionaryCoder::Methods<struct Coding> {
    static void encode(DictionaryCoder& self, NSObject* object, NSString* key)
    {
        if (object)
            self.values_->setObject_forKey(object, key);
    }
    static Ref<NSObject> decode(DictionaryCoder& self, NSString* key)
    {
        return self.values_->objectForKey(key);
    }
    static bool contains(DictionaryCoder& self, NSString* key)
    {
        return static_cast<bool>(self.values_->objectForKey(key));
    }
    static NSDecodingFailurePolicy policy(DictionaryCoder& self) { return self.policy_; }
    static void table(Builder& t)
    {
        t.methods({
            { "encodeObject:forKey:", imp<encode> },
            { "decodeObjectForKey:", imp<decode> },
            { "containsValueForKey:", imp<contains> },
            { "decodingFailurePolicy", imp<policy> },
        });
    }
};
BRINDLE_RECORD(DictionaryCoder, Coding)

}

namespace {

Ref<NSError> failure()
{
    return NSError::cls().errorWithDomain_code_userInfo(NSCocoaErrorDomain, NSCoderReadCorruptError,
        makeDictionary({ { NSDebugDescriptionErrorKey, "the song has no title"_ns } }).get());
}

}

TEST(NSCoder, ItsOwnThreeOperationsAreAbstract)
{
    const Ref<NSCoder> coder = make<NSCoder>();
    EXPECT_EQ(raisedBy([&] { coder->decodeObjectForKey("k"_ns); }),
        "NSInvalidArgumentException: *** -decodeObjectForKey: only defined for abstract class.  "
        "Define -[NSCoder decodeObjectForKey:]!");
    EXPECT_NE(raisedBy([&] { coder->encodeObject_forKey(nullptr, "k"_ns); }), "");
    EXPECT_NE(raisedBy([&] { coder->containsValueForKey("k"_ns); }), "");
    EXPECT_NE(raisedBy([&] { coder->encodeObject(nullptr); }), "");
    EXPECT_NE(raisedBy([&] { coder->decodeObject(); }), "");
}

TEST(NSCoder, NumbersTravelAsNumbers)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->encodeBool_forKey(true, "bool"_ns);
    coder->encodeInt_forKey(-3, "int"_ns);
    coder->encodeInt32_forKey(-4, "int32"_ns);
    coder->encodeInt64_forKey(std::int64_t { 1 } << 60, "int64"_ns);
    coder->encodeInteger_forKey(-5, "integer"_ns);
    coder->encodeFloat_forKey(0.1f, "float"_ns);
    coder->encodeDouble_forKey(0.1, "double"_ns);
    EXPECT_TRUE(coder->decodeBoolForKey("bool"_ns));
    EXPECT_EQ(coder->decodeIntForKey("int"_ns), -3);
    EXPECT_EQ(coder->decodeInt32ForKey("int32"_ns), -4);
    EXPECT_EQ(coder->decodeInt64ForKey("int64"_ns), std::int64_t { 1 } << 60);
    EXPECT_EQ(coder->decodeIntegerForKey("integer"_ns), -5);
    EXPECT_EQ(coder->decodeFloatForKey("float"_ns), 0.1f);
    EXPECT_EQ(coder->decodeDoubleForKey("double"_ns), 0.1);
}

TEST(NSCoder, GeometryTravelsAsText)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->encodeRect_forKey(NSMakeRect(1, 2, 3, 4), "rect"_ns);
    coder->encodePoint_forKey(NSMakePoint(1, 2), "point"_ns);
    coder->encodeSize_forKey(NSMakeSize(3, 4), "size"_ns);
    EXPECT_EQ(textOf(coder->decodeObjectForKey("rect"_ns)), "{{1, 2}, {3, 4}}");
    EXPECT_TRUE(NSEqualRects(coder->decodeRectForKey("rect"_ns), NSMakeRect(1, 2, 3, 4)));
    EXPECT_TRUE(NSEqualPoints(coder->decodePointForKey("point"_ns), NSMakePoint(1, 2)));
    EXPECT_TRUE(NSEqualSizes(coder->decodeSizeForKey("size"_ns), NSMakeSize(3, 4)));
}

TEST(NSCoder, BytesAreLentWhileTheCoderLives)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->encodeBytes_length_forKey("abc", 3, "bytes"_ns);
    NSUInteger length = 0;
    const std::uint8_t* bytes = coder->decodeBytesForKey_returnedLength("bytes"_ns, &length);
    coder->values_->removeAllObjects();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), length), "abc");
}

TEST(NSCoder, MissingKeysAreZero)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    NSUInteger length = 9;
    EXPECT_EQ(coder->decodeIntForKey("none"_ns), 0);
    EXPECT_FALSE(coder->decodeBoolForKey("none"_ns));
    EXPECT_FALSE(coder->decodeObjectOfClass_forKey(NSString::cls(), "none"_ns));
    EXPECT_TRUE(NSEqualRects(coder->decodeRectForKey("none"_ns), NSZeroRect));
    EXPECT_EQ(coder->decodeBytesForKey_returnedLength("none"_ns, &length), nullptr);
    EXPECT_EQ(length, 0u);
}

TEST(NSCoder, AClassIsIgnoredWithoutSecureCoding)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->encodeObject_forKey("text"_ns, "k"_ns);
    EXPECT_EQ(textOf(coder->decodeObjectOfClass_forKey(NSNumber::cls(), "k"_ns)), "text");
    EXPECT_FALSE(decode<NSNumber>(coder.get(), "k"_ns));
    EXPECT_EQ(utf8(decode<NSString>(coder.get(), "k"_ns)), "text");
}

TEST(NSCoder, CannotTellAClassBeforehand)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->encodeObject_forKey("text"_ns, "k"_ns);
    EXPECT_EQ(coder->classOfValueForKey("k"_ns), nullptr);
}

TEST(NSCoder, AFailureIsRaised)
{
    EXPECT_EQ(raisedBy([] { make<DictionaryCoder>()->failWithError(failure().get()); }),
        "NSInvalidUnarchiveOperationException: the song has no title");
}

TEST(NSCoder, TheFirstFailureIsKeptWhereNothingIsRaised)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    coder->policy_ = NSDecodingFailurePolicySetErrorAndReturn;
    const Ref<NSError> first = failure();
    coder->failWithError(first.get());
    coder->failWithError(failure().get());
    EXPECT_EQ(coder->error(), first);
}

TEST(NSCoder, ATopLevelDecodeHandsFailuresOut)
{
    const Ref<DictionaryCoder> coder = make<DictionaryCoder>();
    Ref<NSError> error;
    EXPECT_FALSE(coder->decodeTopLevelObjectForKey_error("none"_ns, &error));
    EXPECT_EQ(error->code(), NSCoderValueNotFoundError);
    coder->encodeObject_forKey("text"_ns, "k"_ns);
    EXPECT_TRUE(coder->decodeTopLevelObjectOfClass_forKey_error(NSString::cls(), "k"_ns, nullptr));
}

TEST(NSCoder, EveryObjectStandsForItselfInAnArchive)
{
    const Ref<NSObject> object = make<NSObject>();
    EXPECT_EQ(classForCoder(object), NSObject::cls());
    EXPECT_EQ(classForKeyedArchiver(object), NSObject::cls());
    EXPECT_EQ(replacementObjectForKeyedArchiver(object, nullptr), object);
    EXPECT_EQ(awakeAfterUsingCoder(object, nullptr), object);
    EXPECT_EQ(classForKeyedUnarchiver(NSObject::cls()), NSObject::cls());
    EXPECT_FALSE(classFallbacksForKeyedArchiver(NSObject::cls()));
}
