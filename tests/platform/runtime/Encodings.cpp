// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"
#include "runtime/NSInvocation.h"

namespace brindle {

struct Sample;
template <> struct Opaque<Sample> {
    static constexpr const char* encoding = "{Sample=}";
};

namespace {

    enum Kind : std::uint32_t { kOne };

    template <class T> std::string text() { return std::string(encodingOf<T>.view()); }

    TEST(Encodings, NameEveryScalarByItsSize)
    {
        EXPECT_EQ(text<bool>(), "B");
        EXPECT_EQ(text<char>(), "c");
        EXPECT_EQ(text<unsigned char>(), "C");
        EXPECT_EQ(text<short>(), "s");
        EXPECT_EQ(text<unsigned short>(), "S");
        EXPECT_EQ(text<int>(), "i");
        EXPECT_EQ(text<unsigned>(), "I");
        EXPECT_EQ(text<float>(), "f");
        EXPECT_EQ(text<double>(), "d");
        EXPECT_EQ(text<Kind>(), "I");
    }

    TEST(Encodings, NameALongByItsEightBytes)
    {
        EXPECT_EQ(text<long>(), "q");
        EXPECT_EQ(text<long long>(), "q");
        EXPECT_EQ(text<unsigned long>(), "Q");
        EXPECT_EQ(text<NSInteger>(), "q");
        EXPECT_EQ(text<NSUInteger>(), "Q");
    }

    TEST(Encodings, NameObjectsClassesSelectorsAndClosures)
    {
        EXPECT_EQ(text<NSObject*>(), "@");
        EXPECT_EQ(text<Ref<Animal>>(), "@");
        EXPECT_EQ(text<NSString*>(), "@"); // a class that is only named here
        EXPECT_EQ(text<Class*>(), "#");
        EXPECT_EQ(text<SEL>(), ":");
        EXPECT_EQ(text<Closure<void()>*>(), "@?");
        EXPECT_EQ(text<Block<bool(NSObject*)>>(), "@?");
        EXPECT_EQ(text<const char*>(), "*");
    }

    TEST(Encodings, NameStructuresAndPointers)
    {
        EXPECT_EQ(text<NSRect>(), "{CGRect={CGPoint=dd}{CGSize=dd}}");
        EXPECT_EQ(text<NSRange>(), "{_NSRange=QQ}");
        EXPECT_EQ(text<NSPoint*>(), "^{CGPoint=dd}");
        EXPECT_EQ(text<Ref<NSObject>*>(), "^@");
        EXPECT_EQ(text<void*>(), "^v");
        EXPECT_EQ(text<double*>(), "^d");
        EXPECT_EQ(text<Sample*>(), "^{Sample=}");
        EXPECT_EQ(text<IMP>(), "^?");
    }

    TEST(Encodings, OfMessagesBeginWithResultReceiverAndSelector)
    {
        EXPECT_EQ(
            (messageEncoding<void, NSRect, bool>.view()), "v@:{CGRect={CGPoint=dd}{CGSize=dd}}B");
        EXPECT_EQ((messageEncoding<Ref<NSObject>>.view()), "@@:");
    }

    TEST(Encodings, AreReadTypeByType)
    {
        const char* at = "{CGRect={CGPoint=dd}{CGSize=dd}}@\"NSString\"^{CGColor=}@?[12i]q";
        for (const char* rest : { "@\"NSString\"^{CGColor=}@?[12i]q", "^{CGColor=}@?[12i]q",
                 "@?[12i]q", "[12i]q", "q", "" }) {
            at = encodingSkipType(at);
            ASSERT_STREQ(at, rest);
        }
    }

    TEST(Encodings, SayTheSizeThatTheCompilerGivesAStructure)
    {
        struct Mixed {
            char a;
            double b;
            short c;
        };
        std::size_t size = 0;
        std::size_t alignment = 0;
        ASSERT_TRUE(encodingSizeAndAlignment("{Mixed=cds}", &size, &alignment));
        EXPECT_EQ(size, sizeof(Mixed));
        EXPECT_EQ(alignment, alignof(Mixed));
    }

    TEST(Encodings, RefuseMalformedText)
    {
        std::size_t size = 0;
        std::size_t alignment = 0;
        for (const char* bad : { "", "{CGRect=dd", "[i]", "[4", "@\"NSString", "z", "^", "(" }) {
            EXPECT_EQ(encodingSkipType(bad), nullptr) << bad;
            EXPECT_FALSE(encodingSizeAndAlignment(bad, &size, &alignment)) << bad;
        }
        EXPECT_FALSE(encodingSizeAndAlignment("{Unknown}", &size, &alignment));
    }

    TEST(Encodings, RefuseBottomlessNesting)
    {
        const std::string deep(100000, '^');
        EXPECT_EQ(encodingSkipType((deep + "v").c_str()), nullptr);
        const std::string braces = [] {
            std::string s;
            for (int i = 0; i < 50000; ++i)
                s += "{a=";
            return s;
        }();
        EXPECT_EQ(encodingSkipType(braces.c_str()), nullptr);
    }

}
}
