// SPDX-License-Identifier: Apache-2.0
#include "introspection/PropertyQueries.h"

#include <csignal>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "PropertyHosts.h"
#include "support/Strings.h"

namespace brindle {

TEST(PropertyTypes, StandBeforeTheFirstComma)
{
    EXPECT_STREQ(
        property_getTypeString(propertyOf(PropertyHost::cls(), "title")), "T@\"NSString\"");
    EXPECT_STREQ(property_getTypeString(propertyOf(PropertyHost::cls(), "count")), "Ti");
}
TEST(PropertyTypes, LieInOneBufferThatTheNextCallOverwrites)
{
    const char* const first = property_getTypeString(propertyOf(PropertyHost::cls(), "title"));
    const char* const second = property_getTypeString(propertyOf(PropertyHost::cls(), "count"));
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "Ti");
}
TEST(PropertyTypes, AreNilWithoutAComma)
{
    EXPECT_EQ(property_getTypeString(propertyWith("Ti")), nullptr);
    EXPECT_EQ(property_getTypeString(nullptr), nullptr);
}
TEST(PropertyTypes, Of255BytesFit)
{
    const std::string type = "T@\"" + std::string(251, 'x') + "\"";
    ASSERT_EQ(type.size(), 255u);
    EXPECT_STREQ(property_getTypeString(propertyWith((type + ",N").c_str())), type.c_str());
}
TEST(PropertyTypesDeathTest, Of256BytesEndTheProcess)
{
    const std::string type = "T@\"" + std::string(252, 'x') + "\"";
    const objc_property_t property = propertyWith((type + ",N").c_str());
    EXPECT_DEATH(property_getTypeString(property), "longer than 255 bytes");
}

TEST(PropertyAccessors, AreTheCustomOnes)
{
    const objc_property_t on = propertyOf(PropertyHost::cls(), "on");
    EXPECT_EQ(property_getGetter(on), selector<"isOn">);
    EXPECT_EQ(property_getSetter(on), selector<"setOn:">);
}
TEST(PropertyAccessors, AreZeroWhereThePropertyNamesNone)
{
    EXPECT_FALSE(property_getGetter(propertyOf(PropertyHost::cls(), "title")));
    EXPECT_FALSE(property_getSetter(propertyOf(PropertyHost::cls(), "title")));
    EXPECT_FALSE(property_getGetter(nullptr));
}
TEST(PropertyAccessors, MayEndTheAttributeString)
{
    const objc_property_t property = propertyWith("TB,N,GisLast");
    EXPECT_STREQ(sel_getName(property_getGetter(property)), "isLast");
}
TEST(PropertyAccessors, AreZeroForAnEmptyName)
{
    // What a class is given is written anew without the empty name, so there is nothing to find.
    const objc_property_t property = propertyWith("TB,N,G,S,V_x");
    EXPECT_FALSE(property_getGetter(property));
    EXPECT_FALSE(property_getSetter(property));
}

TEST(PropertyRetention, IsRetainBehindTheType)
{
    EXPECT_STREQ(property_getRetentionMethod(propertyWith("T@\"NSString\",&,N,V_s")), "retain");
}
TEST(PropertyRetention, IsCopyBehindTheType)
{
    EXPECT_STREQ(property_getRetentionMethod(propertyWith("T@?,C,N,V_b")), "copy");
}
TEST(PropertyRetention, IsCopyForUnsignedCharacters)
{
    EXPECT_STREQ(property_getRetentionMethod(propertyWith("TC,N,V_flag")), "copy");
}
TEST(PropertyRetention, IsAssignForATypeAlone)
{
    EXPECT_STREQ(property_getRetentionMethod(propertyWith("Ti")), "assign");
}
TEST(PropertyRetention, IsNilWithoutAProperty)
{
    EXPECT_EQ(property_getRetentionMethod(nullptr), nullptr);
}
TEST(PropertyRetention, NeverReturnsForOtherFirstAttributes)
{
    const objc_property_t property = propertyWith("Ti,N,V_count");
    const pid_t child = fork();
    if (child == 0) {
        property_getRetentionMethod(property);
        _exit(0);
    }
    // The child's descriptor becomes readable when it ends; it must not within the limit.
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    ASSERT_GE(descriptor, 0);
    pollfd ended { descriptor, POLLIN, 0 };
    EXPECT_EQ(poll(&ended, 1, 200), 0);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(descriptor);
}

}
