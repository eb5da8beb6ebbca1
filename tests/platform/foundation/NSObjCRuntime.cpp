// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSObjCRuntime.h"

#include "runtime/Runtime.h"
#include "support/Strings.h"

namespace brindle {

TEST(RuntimeNames, AClassIsFoundByItsNameAndAnswersIt)
{
    EXPECT_EQ(utf8(NSStringFromClass(NSString::cls())), "NSString");
    EXPECT_EQ(NSClassFromString("NSString"_ns), NSString::cls().object);
}

TEST(RuntimeNames, UnknownEmptyAndNilNamesAreNoClass)
{
    EXPECT_EQ(NSClassFromString("NobodyDeclaredThisClass"_ns), nullptr);
    EXPECT_EQ(NSClassFromString(""_ns), nullptr);
    EXPECT_EQ(NSClassFromString(nullptr), nullptr);
    EXPECT_EQ(NSStringFromClass(nullptr), nullptr);
}

TEST(RuntimeNames, ASelectorAndItsNameStandForEachOther)
{
    EXPECT_EQ(NSSelectorFromString("setFrame:display:"_ns), selector<"setFrame:display:">);
    EXPECT_EQ(
        utf8(NSStringFromSelector(sel_registerName("setFrame:display:"))), "setFrame:display:");
    EXPECT_EQ(NSStringFromSelector(SEL {}), nullptr);
    EXPECT_FALSE(NSSelectorFromString(nullptr));
}

TEST(RuntimeNames, AProtocolAndItsNameStandForEachOther)
{
    Protocol* const protocol = NSProtocolFromString("NSCopying"_ns);
    EXPECT_EQ(protocol, objc_getProtocol("NSCopying"));
    EXPECT_EQ(utf8(NSStringFromProtocol(protocol)), "NSCopying");
    EXPECT_EQ(NSProtocolFromString(nullptr), nullptr);
}

}
