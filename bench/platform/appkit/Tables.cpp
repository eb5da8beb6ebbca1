// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <numeric>

#include "appkit/NSApplication.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"
#include "appkit/NSWindow.h"
#include "display/headless/HeadlessDisplay.h"
#include "foundation/NSLog.h"
#include "menubar/BRMenuTableView.h"
#include "runtime/Table.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

// Tables of many rows in a window in memory: loading, following the pointer, scrolling.

namespace brindle::bench {

/// The rows of a table: how many, and how high each is.
class RowSource : public NSObject {
    BRINDLE_OBJECT(RowSource, NSObject)

public:
    NSInteger rows_ = 0;
};
/// Rows with a text each.
class NamedRowSource : public RowSource {
    BRINDLE_OBJECT(NamedRowSource, RowSource)
};
/// Rows with a text that is made for each, and what that asks for.
class WritingRowSource : public RowSource {
    BRINDLE_OBJECT(WritingRowSource, RowSource)

public:
    std::size_t allocations_ = 0;
};
/// Rows of different heights.
class HighRowSource : public RowSource {
    BRINDLE_OBJECT(HighRowSource, RowSource)
};

}

namespace brindle {

using bench::HighRowSource;
using bench::NamedRowSource;
using bench::RowSource;
using bench::WritingRowSource;

template <> struct RowSource::Methods<struct Rows> {
    static NSInteger count(RowSource& self, NSTableView*) { return self.rows_; }
    static void table(Builder& t) { t.methods({ { "numberOfRowsInTableView:", imp<count> } }); }
};
BRINDLE_RECORD(RowSource, Rows)

template <> struct NamedRowSource::Methods<struct Values> {
    static Ref<NSObject> value(NamedRowSource&, NSTableView*, NSTableColumn*, NSInteger row)
    {
        NSString* const words[] = { "Bakelite"_ns, "Walnut"_ns, "Brushed steel"_ns };
        return words[row % 3];
    }
    static void table(Builder& t)
    {
        t.methods({ { "tableView:objectValueForTableColumn:row:", imp<value> } });
    }
};
BRINDLE_RECORD(NamedRowSource, Values)

template <> struct WritingRowSource::Methods<struct Values> {
    static Ref<NSObject> value(WritingRowSource& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        const std::size_t before = bench::allocationsMade();
        const Ref<NSString> text = stringFrom("Row " + std::to_string(row));
        self.allocations_ += bench::allocationsMade() - before;
        return text;
    }
    static void table(Builder& t)
    {
        t.methods({ { "tableView:objectValueForTableColumn:row:", imp<value> } });
    }
};
BRINDLE_RECORD(WritingRowSource, Values)

template <> struct HighRowSource::Methods<struct Heights> {
    static CGFloat height(HighRowSource&, NSTableView*, NSInteger row)
    {
        return static_cast<CGFloat>(16 + row % 5);
    }
    static void table(Builder& t) { t.methods({ { "tableView:heightOfRow:", imp<height> } }); }
};
BRINDLE_RECORD(HighRowSource, Heights)

}

namespace brindle::bench {

namespace {

    constexpr double kWidth = 400;
    constexpr double kHeight = 600;

    /// A table that fills a window in memory.
    template <class Table, class Source> class Desk {
    public:
        explicit Desk(NSInteger rows)
            : source(make<Source>())
        {
            setLogSink([](NSString*) {});
            auto made = std::make_unique<display::HeadlessDisplay>(
                std::vector { display::HeadlessDisplay::screenOfSize(kWidth, kHeight, 1) });
            display = made.get();
            app_ = NSApplication::cls().sharedApplication();
            installDisplay(std::move(made));
            window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(0, 0, kWidth, kHeight), NSBorderlessWindowMask, NSBackingStoreBuffered,
                true);
            scroll = cast<NSScrollView>(
                alloc<NSScrollView>()->initWithFrame(NSMakeRect(0, 0, kWidth, kHeight)));
            table->setHeaderView(nullptr);
            const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier("name"_ns);
            column->setWidth(kWidth - 3);
            table->addTableColumn(column.get());
            scroll->setDocumentView(table.get());
            window_->contentView()->addSubview(scroll.get());
            source->rows_ = rows;
            table->setDelegate(source.get());
            table->setDataSource(source.get());
            table->reloadData();
            window_->orderFrontRegardless();
            process();
        }
        ~Desk()
        {
            window_->close();
            installDisplay(nullptr);
            setLogSink(nullptr);
        }
        Desk(const Desk&) = delete;
        Desk& operator=(const Desk&) = delete;

        void process() { app_->processEvents(); }

        Ref<Table> table = make<Table>();
        Ref<Source> source;
        Ref<NSScrollView> scroll;
        display::HeadlessDisplay* display = nullptr; // the application's

    private:
        Ref<NSApplication> app_;
        Ref<NSWindow> window_;
    };

    // Rows of one height: the number is asked for, and what shows is made anew.
    Pair load(NSInteger rows)
    {
        const auto desk = std::make_shared<Desk<NSTableView, NamedRowSource>>(rows);
        return { repeated([desk](std::size_t) {
                    desk->table->reloadData();
                    keep(desk->table->rowViewAtRow_makeIfNecessary(0, true));
                }),
            {} };
    }

    // Every height is asked for; the floor asks them too, and only adds them up.
    Pair loadHigh(NSInteger rows)
    {
        const auto desk = std::make_shared<Desk<NSTableView, HighRowSource>>(rows);
        const auto heights = std::make_shared<std::vector<double>>(static_cast<std::size_t>(rows));
        return { repeated([desk](std::size_t) { desk->table->reloadData(); }),
            repeated([desk, heights, rows](std::size_t) {
                for (NSInteger row = 0; row < rows; ++row)
                    (*heights)[static_cast<std::size_t>(row)]
                        = desk->source->template send<"tableView:heightOfRow:", CGFloat>(
                            static_cast<NSTableView*>(desk->table.get()), row);
                std::partial_sum(heights->begin(), heights->end(), heights->begin());
                keep(heights->back());
            }) };
    }

    // A place in a tree of sums; the floor looks the same place up in a sorted list.
    Pair findRow()
    {
        constexpr NSInteger kRows = 1'000'000;
        const auto desk = std::make_shared<Desk<NSTableView, HighRowSource>>(kRows);
        const auto tops = std::make_shared<std::vector<double>>();
        for (NSInteger row = 0; row < kRows; ++row)
            tops->push_back(NSMinY(desk->table->rectOfRow(row)));
        const double end = tops->back();
        const auto place
            = [end](std::size_t i) { return std::fmod(static_cast<double>(i) * 7919.0, end); };
        return { repeated([=](std::size_t i) {
                    keep(desk->table->rowAtPoint({ 5, place(i) }));
                }),
            repeated([=](std::size_t i) {
                keep(std::upper_bound(tops->begin(), tops->end(), place(i)) - tops->begin());
            }) };
    }

    // The pointer goes from row to row of a menu; each is selected and drawn.
    Pair hover()
    {
        const auto desk = std::make_shared<Desk<BRMenuTableView, NamedRowSource>>(100'000);
        return { repeated([desk](std::size_t i) {
                    desk->display->movePointer({ 50, 10 + static_cast<double>(i % 30) * 19 });
                    desk->process();
                }),
            {} };
    }
    // Within one row nothing changes.
    Pair rest()
    {
        const auto desk = std::make_shared<Desk<BRMenuTableView, NamedRowSource>>(100'000);
        return { repeated([desk](std::size_t i) {
                    desk->display->movePointer({ 50 + static_cast<double>(i % 30), 300 });
                    desk->process();
                }),
            {} };
    }

    // A frame: two rows further, and drawn.
    template <class D> void scrollFrame(D& desk, std::size_t i)
    {
        desk.scroll->contentView()->scrollToPoint({ 0, static_cast<double>(i % 400'000) * 38 });
        desk.process();
    }
    Pair scroll()
    {
        const auto desk = std::make_shared<Desk<NSTableView, NamedRowSource>>(1'000'000);
        return { repeated([desk](std::size_t i) { scrollFrame(*desk, i); }), {} };
    }
    constexpr std::size_t kFirstFrames = 1000;
    constexpr std::size_t kFrames = 1000;

    /// Answers how often a frame asks for memory, once everything that is kept is there.
    /// - script: what the user does before each; the scripted display's own memory is not counted.
    template <class Script, class Frame>
    double allocationsIn(const Script& script, const Frame& frame)
    {
        std::size_t all = 0;
        for (std::size_t i = 0; i < kFirstFrames + kFrames; ++i) {
            script(i);
            const std::size_t before = allocationsMade();
            frame(i);
            all += i < kFirstFrames ? 0 : allocationsMade() - before;
        }
        return static_cast<double>(all) / kFrames;
    }
    constexpr auto kNoScript = [](std::size_t) {};

    // Rows of texts that are there, or without cell views: all that is asked for is the kit's.
    template <class Source> Reading allocations()
    {
        Desk<NSTableView, Source> desk(1'000'000);
        return { allocationsIn(kNoScript, [&](std::size_t i) { scrollFrame(desk, i); }), 0 };
    }
    Reading allocationsOfWheel()
    {
        Desk<NSTableView, NamedRowSource> desk(1'000'000);
        desk.display->movePointer({ 50, 300 });
        return { allocationsIn([&](std::size_t) { desk.display->scroll(0, -2); },
                     [&](std::size_t) { desk.process(); }),
            0 };
    }
    // Texts that are made for each row; the floor is what making them asks for.
    Reading allocationsOfNewTexts()
    {
        Desk<NSTableView, WritingRowSource> desk(1'000'000);
        const auto countFromHere = [&](std::size_t i) {
            if (i == kFirstFrames)
                desk.source->allocations_ = 0;
        };
        const double all
            = allocationsIn(countFromHere, [&](std::size_t i) { scrollFrame(desk, i); });
        return { all, static_cast<double>(desk.source->allocations_) / kFrames };
    }
    // The floor is the line that a menu table writes for each row.
    Reading allocationsOfHover()
    {
        Desk<BRMenuTableView, NamedRowSource> desk(100'000);
        const double all = allocationsIn(
            [&](std::size_t i) {
                const std::size_t step = i % 58; // up and down, from each row to the next
                const std::size_t row = step < 30 ? step : 58 - step;
                desk.display->movePointer({ 50, 10 + static_cast<double>(row) * 19 });
            },
            [&](std::size_t) { desk.process(); });
        return { all,
            allocationsIn(kNoScript, [](std::size_t i) { NSLog("hover %lu"_ns, i % 30); }) };
    }

}

void addTables(Plan& plan)
{
    for (const NSInteger rows : { 1'000, 100'000, 1'000'000 }) {
        const std::string count = std::to_string(rows);
        plan.time("table: load " + count + " rows of one height, make what shows", kNoBudget,
            [rows] { return load(rows); });
        plan.time("table: load " + count + " rows of their own heights", timesFloor(6),
            [rows] { return loadHigh(rows); });
    }
    plan.time("table: row at a point, 1000000 heights", timesFloor(4), findRow);
    plan.time("menu table: pointer to another of 100000 rows, drawn", atMost(50'000), hover);
    plan.time("menu table: pointer within one of 100000 rows", atMost(50'000), rest);
    plan.time("table: scroll 1000000 rows by two, a frame", atMost(16'600'000), scroll);
    plan.read("table: allocations a frame of scrolling, rows alone", "", atMost(0),
        allocations<RowSource>);
    plan.read("table: allocations a frame of scrolling, rows of ready text", "", atMost(0),
        allocations<NamedRowSource>);
    plan.read("table: allocations a frame of the wheel, rows of ready text", "", atMost(0),
        allocationsOfWheel);
    plan.read("table: allocations a frame of scrolling, rows of new text, beside the texts' own",
        "", timesFloor(1), allocationsOfNewTexts);
    plan.read("menu table: allocations of a pointer to another row, beside its line in the log", "",
        timesFloor(1), allocationsOfHover);
}

}
