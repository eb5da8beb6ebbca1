// SPDX-License-Identifier: Apache-2.0
#include "Fixtures.h"

namespace brindle {
namespace {

    TEST(Selectors, AreTheSameWordForALiteralAndForATextMadeAtRunTime)
    {
        const std::string name = std::string("setFra") + "me:";
        EXPECT_EQ(sel_registerName(name.c_str()), selector<"setFrame:">);
        EXPECT_EQ(sel_getUid("setFrame:"), selector<"setFrame:">);
    }

    TEST(Selectors, DifferByTheirColons)
    {
        EXPECT_NE(selector<"setFrame">, selector<"setFrame:">);
        EXPECT_NE(selector<"setFrame:display:">, selector<"setFrame:">);
    }

    TEST(Selectors, HaveTheTopBitSetSoThatTheyAreNoAddress)
    {
        EXPECT_TRUE(selector<"a">.value >> 63);
        EXPECT_EQ(reinterpret_cast<std::uint64_t>(selector<"a">.key()), selector<"a">.value);
    }

    TEST(Selectors, KeepACopyOfTheRegisteredName)
    {
        char name[] = "registeredFromABuffer:";
        const SEL sel = sel_registerName(name);
        name[0] = 'X';
        EXPECT_STREQ(sel_getName(sel), "registeredFromABuffer:");
    }

    TEST(Selectors, AnswerTheZeroSelectorForNilAndEmptyNames)
    {
        EXPECT_FALSE(sel_registerName(nullptr));
        EXPECT_FALSE(sel_registerName(""));
    }

    TEST(Selectors, HaveNoNameBeforeAnybodyRegistersIt)
    {
        EXPECT_EQ(sel_getName(selectorOf("neverRegisteredByAnybody:")), nullptr);
    }

    TEST(Selectors, OfTwoNamesWithOneHashAreRefusedWhenTheSecondIsRegistered)
    {
        // Two names whose 63 bits of FNV-1a agree, found by search.
        const SEL first = sel_registerName("bmbbmgbaemmpamne");
        EXPECT_EQ(selectorOf("pobdpmnhomkjkdfb"), first);
        EXPECT_EQ(raisedBy([] { sel_registerName("pobdpmnhomkjkdfb"); }),
            "NSInternalInconsistencyException: the selectors \"pobdpmnhomkjkdfb\" and "
            "\"bmbbmgbaemmpamne\" collide");
        EXPECT_STREQ(sel_getName(first), "bmbbmgbaemmpamne");
    }

}
}
