// SPDX-License-Identifier: Apache-2.0
#include "foundation/LateLibrary.h"

#include <cmath>

#include <gtest/gtest.h>

namespace brindle::late {

namespace {

    void* mathematics()
    {
        static void* const library = openLibrary("libm.so.6");
        return library;
    }

    TEST(LateLibrary, IsNothingWhereTheMachineHasNoSuchFile)
    {
        EXPECT_EQ(openLibrary("libbrindle-of-nobody.so.1"), nullptr);
    }

    TEST(LateLibrary, HasNoFunctionsWhenItIsNothing)
    {
        EXPECT_EQ(findFunction(nullptr, "ldexp"), nullptr);
    }

    TEST(LateLibrary, SaysThatAFunctionIsMissing)
    {
        double (*function)(double) = nullptr;
        EXPECT_FALSE(find(mathematics(), "brindle_of_nobody", function));
    }

    TEST(LateLibrary, CallsAFunctionByItsDeclaration)
    {
        EXPECT_EQ(BRINDLE_LATE(mathematics(), ldexpf)(1.5F, 3), 12);
    }

    TEST(LateLibrary, CallsAFunctionThatIsExportedUnderAnotherName)
    {
        EXPECT_EQ(BRINDLE_LATE_AS(mathematics(), ldexpf, "scalbnf")(1.5F, 3), 12);
    }

}

}
