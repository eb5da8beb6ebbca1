// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "appkit/NSScroller.h"
#include "support/Allocations.h"
#include "support/ScrolledDocument.h"
#include "support/TableHost.h"

namespace brindle {

namespace {

    using test::mostAllocationsIn;

    constexpr int kFrames = 60;

    /// Shows a hundred rows: their letters are drawn and set beside each other for the first time.
    void showFirstScreens(test::Table& table, HeadlessScreen& screen)
    {
        for (int row = 100; row >= 0; row -= 5) {
            table.scrollTo(row * 19);
            screen.process();
        }
    }

    /// Texts that are there already, so that all memory that is asked for is the table's.
    Ref<NSObject> readyText(NSInteger row)
    {
        static const auto* const texts = [] {
            auto* const made = new std::array<Ref<NSString>, 97>;
            for (std::size_t i = 0; i < made->size(); ++i)
                (*made)[i] = stringFrom("Row " + std::to_string(i * 7919 % 1000) + ", Walnut");
            return made;
        }();
        return (*texts)[static_cast<std::size_t>(row) % texts->size()];
    }

    /// A table of 100 by 190 points with so many rows that its knob is the shortest.
    class TableMemory : public test::TableTest, public testing::WithParamInterface<bool> {
    protected:
        static constexpr double kRow = 19;

        void SetUp() override
        {
            TableTest::SetUp();
            t.host->rows_ = 1'000'000;
            if (hasTexts())
                t.host->value_ = [](NSTableColumn&, NSInteger row) { return readyText(row); };
            t.scroll->setHasVerticalScroller(true);
            t->reloadData();
            showFirstScreens(t, screen);
        }
        static bool hasTexts() { return GetParam(); }
        double place() const { return t.scroll->contentView()->bounds().origin.y; }

        template <class Row> std::size_t mostOfScrolling(const Row& firstRow)
        {
            int frame = 0;
            return mostAllocationsIn(
                kFrames, [&](int i) { frame = i; },
                [&] {
                    t.scrollTo(firstRow(frame) * kRow);
                    screen.process();
                });
        }
        std::size_t mostOfWheel(double lines, bool isPrecise)
        {
            screen.pointer().moveTo({ 50, 100 });
            return mostAllocationsIn(
                kFrames, [&](int) { screen.display().scroll(0, lines, isPrecise); },
                [&] { screen.process(); });
        }
    };

    TEST_P(TableMemory, AFrameOfScrollingToAPointAsksForNone)
    {
        EXPECT_EQ(mostOfScrolling([](int frame) { return (frame + 1) * 2; }), 0u);
        EXPECT_GT(place(), kFrames * kRow);
    }

    TEST_P(TableMemory, ScrollingBackAsksForNone)
    {
        EXPECT_EQ(mostOfScrolling([](int frame) { return 1000 - frame; }), 0u);
    }

    TEST_P(TableMemory, AScreenFurtherAsksForNone)
    {
        EXPECT_EQ(mostOfScrolling([](int frame) { return (frame + 1) * 200; }), 0u);
    }

    TEST_P(TableMemory, AFrameOfTheWheelAsksForNone)
    {
        EXPECT_EQ(mostOfWheel(-2, false), 0u);
        EXPECT_GT(place(), 2 * kFrames);
    }

    TEST_P(TableMemory, AFrameOfAFingerOnATouchpadAsksForNone)
    {
        EXPECT_EQ(mostOfWheel(-11, true), 0u);
        EXPECT_GT(place(), 11 * kFrames);
    }

    TEST_P(TableMemory, AMoveOfTheKnobAsksForNone)
    {
        const Ref<NSScroller> scroller = t.scroll->verticalScroller();
        const NSRect knob
            = scroller->convertRect_toView(scroller->rectForPart(NSScrollerKnob), nullptr);
        const NSPoint taken { NSMidX(knob), NSMidY(knob) };
        // All moves are events before the first is looked at: what lies between two of them counts.
        std::vector<std::size_t> counts;
        counts.reserve(1000);
        const auto center = NSNotificationCenter::cls().defaultCenter();
        const Ref<NSObject> token = center->addObserverForName_object_queue_usingBlock(
            NSViewBoundsDidChangeNotification, t.scroll->contentView().get(), nullptr,
            [&](NSNotification*) { counts.push_back(test::allocationsMade()); });
        screen.pointer().press(taken);
        for (int i = 0; i < 120; ++i)
            screen.pointer().dragTo({ taken.x, taken.y - i % 60 });
        screen.pointer().release();
        center->removeObserver(token.get());
        ASSERT_GT(counts.size(), 100u);
        EXPECT_EQ(counts.back() - counts[60], 0u);
    }

    INSTANTIATE_TEST_SUITE_P(Rows, TableMemory, testing::Values(false, true),
        [](const auto& parameter) { return parameter.param ? "OfTexts" : "Alone"; });

    class TableTexts : public test::TableTest {
    protected:
        void scroll(std::function<Ref<NSObject>(NSInteger)> text, NSTableColumn* column = nullptr)
        {
            t.host->rows_ = 100'000;
            t.host->value_ = [text](NSTableColumn&, NSInteger row) { return text(row); };
            if (column)
                t->addTableColumn(column);
            t->reloadData();
            showFirstScreens(t, screen);
            int row = 0;
            most = mostAllocationsIn(
                kFrames, [&](int frame) { row = 2 * frame + 2; },
                [&] {
                    t.scrollTo(row * 19);
                    screen.process();
                });
        }
        std::size_t most = 0;
    };

    TEST_F(TableTexts, ThatAreCutOffAskForNoMemoryWhenTheyAreScrolled)
    {
        const Ref<NSTableColumn> narrow = test::column("narrow"_ns, 40);
        scroll(readyText, narrow.get());
        EXPECT_EQ(most, 0u);
    }

    TEST_F(TableTexts, OfTwoColumnsAskForNoMemoryWhenTheyAreScrolled)
    {
        const Ref<NSTableColumn> second = test::column("second"_ns, 200);
        scroll(readyText, second.get());
        EXPECT_EQ(most, 0u);
    }

    TEST_F(TableTexts, WithAccentsAskForNoMemoryWhenTheyAreScrolled)
    {
        static const Ref<NSString> words[] { stringFrom("Zürich, é"), stringFrom("Łódź"),
            stringFrom("Москва"), stringFrom("Αθήνα") };
        scroll([](NSInteger row) { return words[row % 4]; });
        EXPECT_EQ(most, 0u);
    }

    TEST_F(TableTexts, ThatAreMadeForEachRowAskForTheirOwnMemoryAlone)
    {
        // A text of its own for each of the two rows that come: an object, and where it does not fit its letters.
        scroll([](NSInteger row) {
            return stringFrom("Row " + std::to_string(100 + row % 50) + " of the rows");
        });
        const std::size_t before = test::allocationsMade();
        for (int i = 0; i < 2; ++i)
            const Ref<NSString> made
                = stringFrom("Row " + std::to_string(123 + i) + " of the rows");
        EXPECT_EQ(most, test::allocationsMade() - before);
    }

}

}
