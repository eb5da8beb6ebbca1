// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/FontFamilies.h"

#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    // Each test is a process of its own, in which no font has been asked for yet.
    class FontsReadAheadDeathTest : public ::testing::Test {
    protected:
        FontsReadAheadDeathTest()
        {
            std::atexit(&endChild); // before the fonts ask for it, so that it runs behind their end
        }

        /// A checker looks for leaks behind everything else, and in a child it would wait for what the thread of its parent
        /// held.
        static void endChild()
        {
            if (isChild)
                _exit(0);
        }
        inline static bool isChild = false;

        static int statusOfFonts() { return installedFamilies().empty() ? 1 : 0; }
        /// Answers how a child ends; one that waits for ever is stopped.
        static int statusOfAChild()
        {
            const pid_t child = fork();
            if (child == 0) {
                isChild = true;
                alarm(30);
                std::exit(0);
            }
            int status = -1;
            waitpid(child, &status, 0);
            return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
        }
    };

    TEST_F(FontsReadAheadDeathTest, AreThereWhenTheyAreAskedFor)
    {
        EXPECT_EXIT(
            (readFontsAhead(), std::exit(statusOfFonts())), ::testing::ExitedWithCode(0), "");
    }

    TEST_F(FontsReadAheadDeathTest, MayBeReadAheadTwice)
    {
        EXPECT_EXIT((readFontsAhead(), readFontsAhead(), std::exit(statusOfFonts())),
            ::testing::ExitedWithCode(0), "");
    }

    TEST_F(FontsReadAheadDeathTest, AreWaitedForByTheEndOfTheProcess)
    {
        EXPECT_EXIT((readFontsAhead(), std::exit(0)), ::testing::ExitedWithCode(0), "");
    }

    TEST_F(FontsReadAheadDeathTest, AreNotWaitedForInAChildWhichHasNoSuchThread)
    {
        EXPECT_EXIT(
            (readFontsAhead(), std::exit(statusOfAChild())), ::testing::ExitedWithCode(0), "");
    }

}

}
