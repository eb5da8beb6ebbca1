// SPDX-License-Identifier: Apache-2.0
#include "display/x11/RepliesPrivate.h"

#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "support/PublishedSettings.h"

namespace brindle::display {
namespace {

    /// Bytes as the server writes them, in this machine's order.
    struct Message {
        std::vector<std::byte> bytes;

        template <class T> Message& add(T value)
        {
            const auto* const first = reinterpret_cast<const std::byte*>(&value);
            bytes.insert(bytes.end(), first, first + sizeof value);
            return *this;
        }
        Message& add8(unsigned value) { return add(static_cast<std::uint8_t>(value)); }
        Message& add16(unsigned value) { return add(static_cast<std::uint16_t>(value)); }
        Message& add32(unsigned value) { return add(static_cast<std::uint32_t>(value)); }
        Message& number(std::int32_t whole, std::uint32_t part = 0) { return add(whole).add(part); }

        Message& device(unsigned id, unsigned classes, unsigned nameLength = 0)
        {
            add16(id).add16(1).add16(0).add16(classes).add16(nameLength).add8(1).add8(0);
            bytes.resize(bytes.size() + (nameLength + 3) / 4 * 4);
            return *this;
        }
        Message& scroll(unsigned valuator, unsigned direction, std::int32_t increment)
        {
            add16(3).add16(6).add16(2).add16(valuator).add16(direction).add16(0).add32(0);
            return number(increment);
        }
        Message& monitor(unsigned name, bool primary, int x, int y, unsigned width, unsigned height)
        {
            add32(name).add8(primary).add8(0).add16(0);
            add(static_cast<std::int16_t>(x)).add(static_cast<std::int16_t>(y));
            return add16(width).add16(height).add32(0).add32(0);
        }
    };

    constexpr unsigned kVertical = 1;
    constexpr unsigned kHorizontal = 2;

    std::uint64_t faults = 0;
    std::vector<ScrollAxis> axesOf(const Message& message, std::size_t devices)
    {
        faults = 0;
        return parseScrollAxes(message.bytes, devices, faults);
    }
    std::vector<Monitor> monitorsOf(const Message& message, std::size_t count)
    {
        faults = 0;
        return parseMonitors(message.bytes, count, faults);
    }
    std::vector<Valuator> valuatorsOf(
        const Message& message, std::size_t buttonWords, std::size_t axisWords)
    {
        faults = 0;
        return parseValuators(message.bytes, buttonWords, axisWords, faults);
    }

    // ---- scroll axes

    TEST(XReplies, FindTheScrollAxesOfEveryDevice)
    {
        Message message;
        message.device(9, 2, 5).scroll(2, kHorizontal, 120).scroll(3, kVertical, 15);
        message.device(11, 1).scroll(3, kVertical, -1);
        const auto axes = axesOf(message, 2);
        ASSERT_EQ(axes.size(), 3u);
        EXPECT_EQ(axes[0].device, 9);
        EXPECT_FALSE(axes[0].vertical);
        EXPECT_EQ(axes[1].number, 3);
        EXPECT_EQ(axes[1].increment, 15);
        EXPECT_EQ(axes[2].device, 11);
        EXPECT_EQ(axes[2].increment, -1);
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, PassOverWhatIsNoScrollAxis)
    {
        Message message;
        message.device(9, 2).add16(1).add16(2).add32(7).scroll(0, kVertical, 1);
        EXPECT_EQ(axesOf(message, 1).size(), 1u);
    }

    TEST(XReplies, LeaveOutAnAxisWithoutIncrement)
    {
        Message message;
        message.device(9, 1).scroll(0, kVertical, 0);
        EXPECT_TRUE(axesOf(message, 1).empty());
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, DoNotStandStillAtAClassOfNoLength)
    {
        Message message;
        message.device(9, 65535).add16(3).add16(0);
        EXPECT_TRUE(axesOf(message, 1).empty());
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, DoNotReadAScrollClassThatIsTooShort)
    {
        Message message;
        message.device(9, 1).add16(3).add16(1);
        EXPECT_TRUE(axesOf(message, 1).empty());
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, DoNotBelieveTheNumberOfDevices)
    {
        Message message;
        message.device(9, 1).scroll(0, kVertical, 1);
        EXPECT_EQ(axesOf(message, 60000).size(), 1u);
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, DoNotBelieveTheLengthOfAName)
    {
        Message message;
        message.device(9, 1, 0).bytes[8] = std::byte { 0xFF };
        EXPECT_TRUE(axesOf(message, 1).empty());
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, CountOneFaultForEveryDeviceListThatIsCutOff)
    {
        Message whole;
        whole.device(9, 2, 5).scroll(2, kHorizontal, 120).scroll(3, kVertical, 15);
        for (std::size_t size = 0; size < whole.bytes.size(); ++size) {
            std::uint64_t count = 0;
            parseScrollAxes(std::span(whole.bytes).first(size), 1, count);
            EXPECT_EQ(count, 1u) << size;
        }
    }

    // ---- valuators

    TEST(XReplies, NumberTheValuesAfterTheBitsOfTheMask)
    {
        Message message;
        message.add32(0); // buttons
        message.add32(0b1001).add32(0b10);
        message.number(5).number(-7).number(0, 0x80000000);
        const auto values = valuatorsOf(message, 1, 2);
        ASSERT_EQ(values.size(), 3u);
        EXPECT_EQ(values[0].number, 0);
        EXPECT_EQ(values[0].value, 5);
        EXPECT_EQ(values[1].number, 3);
        EXPECT_EQ(values[1].value, -7);
        EXPECT_EQ(values[2].number, 33);
        EXPECT_EQ(values[2].value, 0.5);
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, AnswerTheValuesBeforeTheMissingOne)
    {
        Message message;
        message.add32(0b11).number(5);
        EXPECT_EQ(valuatorsOf(message, 0, 1).size(), 1u);
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, DoNotBelieveTheSizesOfTheMasks)
    {
        EXPECT_TRUE(valuatorsOf(Message().add32(~0U), 65535, 1).empty());
        EXPECT_EQ(faults, 1u);
        EXPECT_TRUE(valuatorsOf(Message().add32(~0U), 0, 65535).empty());
        EXPECT_EQ(faults, 1u);
    }

    // ---- monitors

    TEST(XReplies, PutThePrimaryMonitorFirst)
    {
        Message message;
        message.monitor(40, false, 0, 0, 800, 600).monitor(41, true, 800, -20, 1280, 1024);
        const auto monitors = monitorsOf(message, 2);
        ASSERT_EQ(monitors.size(), 2u);
        EXPECT_EQ(monitors[0].name, 41u);
        EXPECT_EQ(monitors[0].frame, (PixelRect { 800, -20, 2080, 1004 }));
        EXPECT_EQ(monitors[1].name, 40u);
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, LeaveOutAMonitorThatShowsNothing)
    {
        Message message;
        message.monitor(40, true, 0, 0, 0, 600).monitor(41, false, 0, 0, 640, 0);
        EXPECT_TRUE(monitorsOf(message, 2).empty());
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, DoNotBelieveTheNumberOfMonitors)
    {
        Message message;
        message.monitor(40, true, 0, 0, 800, 600);
        EXPECT_EQ(monitorsOf(message, 1U << 30).size(), 1u);
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, DoNotBelieveTheNumberOfAMonitorsOutputs)
    {
        Message message;
        message.monitor(40, true, 0, 0, 800, 600).bytes[6] = std::byte { 9 };
        EXPECT_TRUE(monitorsOf(message, 1).empty());
        EXPECT_EQ(faults, 1u);
    }

    // ---- the work area

    TEST(XReplies, TakeTheWorkAreaOfThePresentDesktop)
    {
        const std::vector<std::uint32_t> areas { 0, 0, 10, 10, 5, 6, 700, 500 };
        const std::vector<std::uint32_t> second { 1 };
        EXPECT_EQ(workAreaFrom(areas, second), (PixelRect { 5, 6, 705, 506 }));
    }

    TEST(XReplies, TakeTheFirstWorkAreaForADesktopThatHasNone)
    {
        const std::vector<std::uint32_t> areas { 1, 2, 10, 10, 9 };
        const std::vector<std::uint32_t> desktop { 0xFFFFFFFF };
        EXPECT_EQ(workAreaFrom(areas, desktop), (PixelRect { 1, 2, 11, 12 }));
        EXPECT_EQ(workAreaFrom(areas, {}), (PixelRect { 1, 2, 11, 12 }));
    }

    TEST(XReplies, HaveNoWorkAreaOfLessThanFourNumbers)
    {
        EXPECT_FALSE(workAreaFrom(std::vector<std::uint32_t> { 1, 2, 3 }, {}));
    }

    TEST(XReplies, SaturateAWorkAreaOfHugeNumbers)
    {
        const std::vector<std::uint32_t> areas { 0x7FFFFFFF, 0x80000000, 0x7FFFFFFF, 0x7FFFFFFF };
        const auto area = workAreaFrom(areas, {});
        ASSERT_TRUE(area);
        EXPECT_EQ(area->left, 32767);
        EXPECT_EQ(area->top, -32767);
        EXPECT_EQ(area->right, 65534);
    }

    // ---- the free part of a monitor

    constexpr PixelRect kLeftMonitor { 0, 0, 800, 1200 };
    constexpr PixelRect kRightMonitor { 800, 0, 1600, 1000 };
    constexpr PixelSize kPicture { 1600, 1200 };

    PixelRect freePart(
        const PixelRect& monitor, PixelRect area, std::initializer_list<StrutValues> struts)
    {
        return visiblePart(monitor, kPicture, area, std::vector<StrutValues>(struts));
    }

    TEST(FreeParts, AreThoseOfTheWorkAreaWithoutStruts)
    {
        EXPECT_EQ(
            freePart(kLeftMonitor, { 10, 20, 1590, 1180 }, {}), (PixelRect { 10, 20, 800, 1180 }));
        EXPECT_EQ(freePart(kRightMonitor, { 10, 20, 1590, 1180 }, {}),
            (PixelRect { 800, 20, 1590, 1000 }));
    }

    TEST(FreeParts, GiveRoomToAPanelOnItsMonitorOnly)
    {
        const StrutValues top { 0, 0, 30, 0, 0, 0, 0, 0, 0, 799, 0, 0 };
        EXPECT_EQ(freePart(kLeftMonitor, { 0, 30, 1600, 1200 }, { top }),
            (PixelRect { 0, 30, 800, 1200 }));
        EXPECT_EQ(freePart(kRightMonitor, { 0, 30, 1600, 1200 }, { top }), kRightMonitor);
    }

    TEST(FreeParts, GiveEachMonitorThePanelsBesideIt)
    {
        const StrutValues small { 0, 0, 30, 0, 0, 0, 0, 0, 0, 799, 0, 0 };
        const StrutValues large { 0, 0, 50, 0, 0, 0, 0, 0, 800, 1599, 0, 0 };
        EXPECT_EQ(freePart(kLeftMonitor, { 0, 50, 1600, 1200 }, { small, large }).top, 30);
        EXPECT_EQ(freePart(kRightMonitor, { 0, 50, 1600, 1200 }, { small, large }).top, 50);
    }

    TEST(FreeParts, GiveRoomEverywhereForWhatNoStrutExplains)
    {
        const StrutValues top { 0, 0, 30, 0, 0, 0, 0, 0, 0, 799, 0, 0 };
        EXPECT_EQ(freePart(kRightMonitor, { 0, 54, 1600, 1200 }, { top }).top, 54);
    }

    TEST(FreeParts, CountStrutsFromTheEdgeOfTheWholePicture)
    {
        const StrutValues bottom { 0, 0, 0, 230, 0, 0, 0, 0, 0, 0, 800, 1599 };
        EXPECT_EQ(freePart(kRightMonitor, { 0, 0, 1600, 970 }, { bottom }).bottom, 970);
        EXPECT_EQ(freePart(kLeftMonitor, { 0, 0, 1600, 970 }, { bottom }), kLeftMonitor);
        const StrutValues left { 840, 0, 0, 0, 0, 1199, 0, 0, 0, 0, 0, 0 };
        EXPECT_EQ(freePart(kRightMonitor, { 840, 0, 1600, 1200 }, { left }).left, 840);
        EXPECT_EQ(freePart(kLeftMonitor, { 840, 0, 1600, 1200 }, { left }), kLeftMonitor);
    }

    TEST(FreeParts, DoNotHeedStrutsThatTheManagerDoesNot)
    {
        const StrutValues top { 0, 0, 500, 0, 0, 0, 0, 0, 0, 1599, 0, 0 };
        EXPECT_EQ(freePart(kLeftMonitor, { 0, 0, 1600, 1200 }, { top }), kLeftMonitor);
    }

    TEST(FreeParts, AreWholeMonitorsWhereNothingWouldBeLeft)
    {
        EXPECT_EQ(freePart(kRightMonitor, { 0, 0, 700, 1200 }, {}), kRightMonitor);
    }

    TEST(Struts, WithoutRangesReachAlongTheWholeEdge)
    {
        const std::vector<std::uint32_t> plain { 0, 0, 24, 0 };
        const auto strut = strutFrom({}, plain);
        ASSERT_TRUE(strut);
        EXPECT_EQ((*strut)[2], 24u);
        EXPECT_EQ((*strut)[8], 0u);
        EXPECT_EQ((*strut)[9], 32766u);
    }

    TEST(Struts, OfNothingAreNone)
    {
        const std::vector<std::uint32_t> nothing(12);
        EXPECT_FALSE(strutFrom(nothing, {}));
        EXPECT_FALSE(strutFrom({}, std::vector<std::uint32_t> { 1, 2 }));
    }

    // ---- the desktop's settings

    std::vector<NumberSetting> settingsOf(std::span<const std::byte> bytes)
    {
        faults = 0;
        return parseSettings(bytes, faults);
    }
    std::optional<double> scaleOf(const test::PublishedSettings& settings)
    {
        return scaleFrom(settingsOf(settings.bytes()));
    }

    TEST(XReplies, FindTheNumbersAmongTheSettings)
    {
        const test::PublishedSettings settings = test::PublishedSettings()
                                                     .text("Net/ThemeName", "Plain")
                                                     .number("A", -1)
                                                     .color("C")
                                                     .number("Gdk/WindowScalingFactor", 2);
        const auto found = settingsOf(settings.bytes());
        ASSERT_EQ(found.size(), 2u);
        EXPECT_EQ(found[0].name, "A");
        EXPECT_EQ(found[0].value, -1);
        EXPECT_EQ(found[1].name, "Gdk/WindowScalingFactor");
        EXPECT_EQ(found[1].value, 2);
        EXPECT_EQ(faults, 0u);
    }

    TEST(XReplies, ReadSettingsInTheOtherOrderOfBytes)
    {
        const std::array<unsigned char, 28> high { 1, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 1,
            'A', 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2 };
        const std::array<unsigned char, 28> low { 0, 0, 0, 0, 9, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0,
            'A', 0, 0, 0, 0, 0, 0, 0, 2, 1, 0, 0 };
        for (const auto& bytes : { high, low }) {
            const auto found = settingsOf(std::as_bytes(std::span(bytes)));
            ASSERT_EQ(found.size(), 1u);
            EXPECT_EQ(found[0].name, "A");
            EXPECT_EQ(found[0].value, 258);
            EXPECT_EQ(faults, 0u);
        }
    }

    TEST(XReplies, AnswerTheSettingsBeforeTheOneThatIsCutOff)
    {
        const test::PublishedSettings settings
            = test::PublishedSettings().number("A", 1).number("B", 2);
        for (std::size_t cut = 1; cut <= 16; ++cut) {
            const std::span<const std::byte> all(settings.bytes());
            EXPECT_EQ(settingsOf(all.first(all.size() - cut)).size(), 1u) << cut;
            EXPECT_EQ(faults, 1u) << cut;
        }
    }

    TEST(XReplies, DoNotBelieveTheLengthsOfSettings)
    {
        std::vector<std::byte> bytes = test::PublishedSettings().text("A", "text").bytes();
        bytes[24] = bytes[25] = bytes[26] = bytes[27] = std::byte { 0xFF }; // of the text
        EXPECT_TRUE(settingsOf(bytes).empty());
        EXPECT_EQ(faults, 1u);
        bytes = test::PublishedSettings().number("A", 1).bytes();
        bytes[14] = bytes[15] = std::byte { 0xFF }; // of the name
        EXPECT_TRUE(settingsOf(bytes).empty());
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, ReadNoSettingAfterOneOfAnUnknownKind)
    {
        std::vector<std::byte> bytes
            = test::PublishedSettings().number("A", 1).number("B", 2).bytes();
        bytes[12] = std::byte { 3 };
        EXPECT_TRUE(settingsOf(bytes).empty());
        EXPECT_EQ(faults, 1u);
    }

    TEST(XReplies, MultiplyTheSettingsOfWindowsAndText)
    {
        EXPECT_EQ(scaleOf(test::PublishedSettings()
                              .number("Gdk/WindowScalingFactor", 2)
                              .number("Gdk/UnscaledDPI", 96 * 1024)
                              .number("Xft/DPI", 192 * 1024)),
            2.0);
        EXPECT_EQ(scaleOf(test::PublishedSettings()
                              .number("Gdk/WindowScalingFactor", 2)
                              .number("Gdk/UnscaledDPI", 72 * 1024)),
            1.5);
        EXPECT_EQ(scaleOf(test::PublishedSettings().number("Xft/DPI", 120 * 1024)), 1.25);
        EXPECT_EQ(scaleOf(test::PublishedSettings().number("Gdk/WindowScalingFactor", 3)), 3.0);
    }

    TEST(XReplies, HaveNoScaleWhereTheSettingsSayNothing)
    {
        EXPECT_FALSE(scaleOf(test::PublishedSettings()));
        EXPECT_FALSE(scaleOf(
            test::PublishedSettings().number("Gdk/WindowScalingFactor", 1).number("Xft/DPI", -1)));
        EXPECT_FALSE(
            scaleOf(test::PublishedSettings().number("Gdk/WindowScalingFactor", -2147483647 - 1)));
    }

    // ---- anything at all

    TEST(XReplies, SurviveNoise)
    {
        std::mt19937 random(20240501);
        std::vector<std::byte> noise;
        for (int round = 0; round < 20000; ++round) {
            noise.resize(random() % 120);
            for (std::byte& byte : noise)
                byte = static_cast<std::byte>(random() % 4 ? random() % 8 : random());
            std::uint64_t count = 0;
            for (const ScrollAxis& axis : parseScrollAxes(noise, random() % 9, count))
                EXPECT_NE(axis.increment, 0);
            for (const Monitor& monitor : parseMonitors(noise, random() % 9, count))
                EXPECT_FALSE(monitor.frame.isEmpty());
            for (const Valuator& valuator :
                parseValuators(noise, random() % 4, random() % 4, count))
                EXPECT_TRUE(std::isfinite(valuator.value));
            EXPECT_GE(scaleFrom(parseSettings(noise, count)).value_or(1), 0);
            EXPECT_LE(count, 4u);
        }
    }

}
}
