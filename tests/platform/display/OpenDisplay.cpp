// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "display/OpenDisplay.h"

namespace brindle::display {
namespace {

    struct OpenDisplay : testing::Test {
        std::map<std::string, std::string> variables;
        std::string complaints;

        Environment environment()
        {
            return [this](const char* name) {
                const auto found = variables.find(name);
                return found == variables.end() ? nullptr : found->second.c_str();
            };
        }
        Complaint complain()
        {
            return [this](std::string_view line) { complaints += std::string(line) + "\n"; };
        }
        Choice choice() { return choiceFromEnvironment(environment(), complain()); }
        std::string opened()
        {
            return std::string(openDisplay(choice(), environment(), complain())->name());
        }
    };

    TEST_F(OpenDisplay, ChoosesAutomaticallyWhenNothingIsSaid)
    {
        EXPECT_EQ(choice(), Choice::automatic);
        variables["BRINDLE_DISPLAY"] = "";
        EXPECT_EQ(choice(), Choice::automatic);
    }

    TEST_F(OpenDisplay, ChoosesWhatTheVariableSays)
    {
        variables["BRINDLE_DISPLAY"] = "headless";
        EXPECT_EQ(choice(), Choice::headless);
        variables["BRINDLE_DISPLAY"] = "x11";
        EXPECT_EQ(choice(), Choice::x11);
        variables["BRINDLE_DISPLAY"] = "none";
        EXPECT_EQ(choice(), Choice::none);
        EXPECT_EQ(complaints, "");
    }

    TEST_F(OpenDisplay, ComplainsOnceAboutAWordItDoesNotKnow)
    {
        variables["BRINDLE_DISPLAY"] = "X11";
        EXPECT_EQ(opened(), "none");
        EXPECT_EQ(
            complaints, "brindle: BRINDLE_DISPLAY is \"X11\"; it can be headless, x11 or none\n");
    }

    TEST_F(OpenDisplay, OpensNoneWithoutAServerAndSaysNothing)
    {
        EXPECT_EQ(opened(), "none");
        EXPECT_EQ(complaints, "");
    }

    TEST_F(OpenDisplay, OpensTheHeadlessOneWithAScreen)
    {
        variables["BRINDLE_DISPLAY"] = "headless";
        EXPECT_EQ(opened(), "headless");
    }

    TEST_F(OpenDisplay, ComplainsOnceAboutAServerThatCannotBeReached)
    {
        variables["DISPLAY"] = ":65000";
        EXPECT_EQ(opened(), "none");
        EXPECT_EQ(complaints, "brindle: cannot connect to the display server \":65000\"\n");
    }

    TEST_F(OpenDisplay, ComplainsWhenTheServerIsAskedForButNotNamed)
    {
        variables["BRINDLE_DISPLAY"] = "x11";
        EXPECT_EQ(opened(), "none");
        EXPECT_EQ(complaints, "brindle: BRINDLE_DISPLAY is \"x11\", but DISPLAY names no server\n");
    }

    TEST_F(OpenDisplay, IgnoresTheServerWhenNoneIsAskedFor)
    {
        variables["BRINDLE_DISPLAY"] = "none";
        variables["DISPLAY"] = ":65000";
        EXPECT_EQ(opened(), "none");
        EXPECT_EQ(complaints, "");
    }

    TEST_F(OpenDisplay, SaysThatAScreenIsFound)
    {
        int calls = 0;
        openDisplay(Choice::headless, environment(), complain(), [&] { ++calls; });
        EXPECT_EQ(calls, 1);
    }

    TEST_F(OpenDisplay, NeverSaysSoWithoutAScreen)
    {
        variables["DISPLAY"] = "unix:/nowhere/at/all";
        int calls = 0;
        openDisplay(Choice::none, environment(), complain(), [&] { ++calls; });
        openDisplay(Choice::x11, environment(), complain(), [&] { ++calls; });
        EXPECT_EQ(calls, 0);
    }

}
}
