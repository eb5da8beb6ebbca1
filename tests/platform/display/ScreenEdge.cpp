// SPDX-License-Identifier: Apache-2.0
#include "display/x11/ScreenEdgePrivate.h"

#include <gtest/gtest.h>

namespace brindle::display {
namespace {

    constexpr PixelRect kWholeScreen { 0, 0, 1280, 800 };

    TopPanel panel(int reach, int left = 0, int right = 1280, int top = 0)
    {
        return { reach, left, right, top, false, 0 };
    }
    TopPanel bar(int reach, int hidden = 0) { return { reach, 0, 1280, 0, true, hidden }; }

    struct Edge : ::testing::Test {
        int depth(std::initializer_list<TopPanel> panels, std::optional<int> workAreaTop,
            std::optional<int> ownBottom = std::nullopt, PixelRect screen = kWholeScreen)
        {
            return edge.depth(screen, screen.left, screen.right, std::vector<TopPanel>(panels),
                workAreaTop, ownBottom);
        }
        ScreenEdge edge;
    };

    TEST_F(Edge, IsFreeWhereNobodyIs) { EXPECT_EQ(depth({}, 0), 0); }
    TEST_F(Edge, GivesRoomToAPanelWithAWindow) { EXPECT_EQ(depth({ panel(24) }, 24), 24); }
    TEST_F(Edge, GivesRoomToTheLowerOfTwoPanels)
    {
        EXPECT_EQ(depth({ panel(24), panel(50) }, 50), 50);
    }
    TEST_F(Edge, GivesRoomToWhatTheDesktopDrawsItself) { EXPECT_EQ(depth({}, 32), 32); }
    TEST_F(Edge, LeavesOutPanelsOfAnotherScreen)
    {
        const PixelRect right { 1280, 0, 2560, 800 };
        EXPECT_EQ(depth({ panel(24, 0, 1280) }, 24, std::nullopt, right), 0);
    }
    TEST_F(Edge, CountsFromTheTopOfItsOwnScreen)
    {
        const PixelRect lower { 0, 100, 1280, 900 };
        EXPECT_EQ(depth({ panel(124) }, std::nullopt, std::nullopt, lower), 24);
    }
    TEST_F(Edge, DoesNotTakeItsOwnStripForAPanel)
    {
        edge.reserved(22);
        EXPECT_EQ(depth({}, 22, 22), 0);
    }
    TEST_F(Edge, RemembersWhatItsOwnStripHides)
    {
        EXPECT_EQ(depth({}, 32), 32);
        edge.reserved(54);
        EXPECT_EQ(depth({}, 54, 54), 32);
    }
    TEST_F(Edge, NoticesThatTheDesktopTookMore)
    {
        EXPECT_EQ(depth({}, 32), 32);
        edge.reserved(54);
        EXPECT_EQ(depth({}, 60, 54), 60);
    }
    TEST_F(Edge, NoticesThatTheDesktopGaveBackWhatItTook)
    {
        EXPECT_EQ(depth({}, 32), 32);
        EXPECT_EQ(depth({}, 0), 0);
    }
    TEST_F(Edge, IsNotMisledByAWorkAreaThatIsLate)
    {
        edge.reserved(22); // it was hidden since, and the manager has not noticed yet
        EXPECT_EQ(depth({}, 22), 0);
    }
    TEST_F(Edge, SharesTheStripWithBarsOfOtherPrograms) { EXPECT_EQ(depth({ bar(22) }, 22), 0); }
    TEST_F(Edge, LearnsFromAnotherBarWhatThatHides) { EXPECT_EQ(depth({ bar(54, 32) }, 54), 32); }
    TEST_F(Edge, StaysAboveAPanelThatCameLaterAndGaveWay)
    {
        edge.reserved(22);
        EXPECT_EQ(depth({ panel(46, 0, 1280, 22) }, 46, 22), 0);
    }
    TEST_F(Edge, YieldsToAPanelThatCameLaterAndDidNot)
    {
        edge.reserved(22);
        EXPECT_EQ(depth({ panel(24, 0, 1280, 0) }, 24, 22), 24);
    }
    TEST_F(Edge, ComesBackWhenThePanelHasGone)
    {
        EXPECT_EQ(depth({ panel(24) }, 24), 24);
        edge.reserved(46);
        EXPECT_EQ(depth({}, 46, 46), 0);
    }
    TEST_F(Edge, NeverLeavesTheUpperHalf) { EXPECT_EQ(depth({ panel(32767) }, 700), 400); }
    TEST_F(Edge, KeepsToTheTopWhenTheWorkAreaMakesNoSense) { EXPECT_EQ(depth({}, -32767), 0); }

}
}
