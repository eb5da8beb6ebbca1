// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSError.h"

#include <cerrno>
#include <gtest/gtest.h>

#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSString.h"
#include "runtime/NSException.h"
#include "support/Strings.h"

using namespace brindle;

namespace {

Ref<NSError> errorWith(NSInteger code, NSDictionary* userInfo = nullptr)
{
    return NSError::cls().errorWithDomain_code_userInfo("org.example.Kitchen"_ns, code, userInfo);
}

TEST(NSError, KeepsDomainCodeAndFacts)
{
    const auto error = errorWith(7, makeDictionary({ { "tool"_ns, "whisk"_ns } }).get());
    EXPECT_EQ(utf8Of(error->domain().get()), "org.example.Kitchen");
    EXPECT_EQ(error->code(), 7);
    EXPECT_EQ(utf8Of(cast<NSString>(error->userInfo()->objectForKey("tool"_ns)).get()), "whisk");
}

TEST(NSError, AnswersAnEmptyDictionaryWithoutFacts)
{
    ASSERT_TRUE(errorWith(7)->userInfo());
    EXPECT_EQ(errorWith(7)->userInfo()->count(), 0u);
}

TEST(NSError, RefusesANilDomain)
{
    EXPECT_THROW(
        (void)NSError::cls().errorWithDomain_code_userInfo(nullptr, 1, nullptr), Exception);
}

TEST(NSError, DescribesItselfByTheGivenText)
{
    const auto facts = makeDictionary({ { NSLocalizedDescriptionKey, "The oven is cold."_ns } });
    EXPECT_EQ(utf8Of(errorWith(7, facts.get())->localizedDescription().get()), "The oven is cold.");
}

TEST(NSError, DescribesItselfByItsReasonWithoutAText)
{
    const auto facts
        = makeDictionary({ { NSLocalizedFailureReasonErrorKey, "The gas is off."_ns } });
    EXPECT_EQ(utf8Of(errorWith(7, facts.get())->localizedDescription().get()),
        "The operation couldn’t be completed. The gas is off.");
}

TEST(NSError, DescribesItselfByDomainAndCodeWithoutFacts)
{
    EXPECT_EQ(utf8Of(errorWith(7)->localizedDescription().get()),
        "The operation couldn’t be completed. (org.example.Kitchen error 7.)");
}

TEST(NSError, TakesTheReasonOfAPosixErrorFromTheSystem)
{
    const auto error
        = NSError::cls().errorWithDomain_code_userInfo(NSPOSIXErrorDomain, ENOENT, nullptr);
    EXPECT_EQ(utf8Of(error->localizedFailureReason().get()), "No such file or directory");
}

TEST(NSError, IsEqualByDomainCodeAndFacts)
{
    const auto facts = makeDictionary({ { "tool"_ns, "whisk"_ns } });
    EXPECT_TRUE(errorWith(7, facts.get())->isEqual(errorWith(7, facts.get()).get()));
    EXPECT_EQ(errorWith(7)->hash(), errorWith(7)->hash());
    EXPECT_FALSE(errorWith(7)->isEqual(errorWith(8).get()));
    EXPECT_FALSE(errorWith(7)->isEqual(errorWith(7, facts.get()).get()));
    EXPECT_FALSE(errorWith(7)->isEqual("org.example.Kitchen"_ns));
}

TEST(NSError, TouchesNothingWhereNoErrorIsWanted)
{
    reportError(nullptr, NSFileReadUnknownError);
    reportFileError(nullptr, ENOENT, false, "/nowhere"_ns);
}

TEST(NSError, TellsAFilesFailureByItsPathAndTheErrorBelow)
{
    Ref<NSError> error;
    reportFileError(&error, ENOENT, false, "/nowhere"_ns);
    EXPECT_EQ(error->code(), NSFileReadNoSuchFileError);
    EXPECT_EQ(utf8Of(cast<NSString>(error->userInfo()->objectForKey(NSFilePathErrorKey)).get()),
        "/nowhere");
    const auto below = cast<NSError>(error->userInfo()->objectForKey(NSUnderlyingErrorKey));
    ASSERT_TRUE(below);
    EXPECT_EQ(below->code(), ENOENT);
}

TEST(NSError, ChoosesTheCodeByReadingAndWriting)
{
    Ref<NSError> reading;
    Ref<NSError> writing;
    reportFileError(&reading, EACCES, false, nullptr);
    reportFileError(&writing, EACCES, true, nullptr);
    EXPECT_EQ(reading->code(), NSFileReadNoPermissionError);
    EXPECT_EQ(writing->code(), NSFileWriteNoPermissionError);
    reportFileError(&writing, ENOSPC, true, nullptr);
    EXPECT_EQ(writing->code(), NSFileWriteOutOfSpaceError);
}

}
