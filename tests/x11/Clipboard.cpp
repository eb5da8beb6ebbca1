// SPDX-License-Identifier: Apache-2.0
#include "display/Clipboard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "XDriver.h"
#include "support/Memory.h"

namespace brindle::display {
namespace {

    using Selection = Clipboard::Selection;

    /// Another program with something to give. It answers on a thread of its own.
    class OtherProgram {
    public:
        OtherProgram(Selection selection, std::string type, std::string data)
            : OtherProgram(selection, std::vector { std::move(type) }, std::move(data))
        {
        }
        OtherProgram(Selection selection, std::vector<std::string> types, std::string data)
        {
            thread_ = std::thread([this, selection, types, data] {
                const auto display = openX11();
                display->clipboard()->offer(selection,
                    { .types = [types] { return types; },
                        .provide = [data](std::string_view) { return data; },
                        .lost = [this] { lost_ = true; } });
                display->pointerLocation(); // an answer: the server knows whom to ask
                Event event;
                ready_ = true;
                while (!stop_) {
                    display->pollEvent(event);
                    std::this_thread::yield();
                }
            });
            while (!ready_)
                std::this_thread::yield();
        }
        ~OtherProgram()
        {
            stop_ = true;
            thread_.join();
        }
        bool lost() const { return lost_; }

    private:
        std::atomic<bool> ready_ { false };
        std::atomic<bool> stop_ { false };
        std::atomic<bool> lost_ { false };
        std::thread thread_;
    };

    struct ClipboardTest : X11Test {
        void offer(std::string data)
        {
            display->clipboard()->offer(Selection::clipboard,
                { .types = [] { return std::vector<std::string> { "UTF8_STRING" }; },
                    .provide =
                        [this, data](std::string_view) {
                            ++provided;
                            return data;
                        },
                    .lost = [this] { ++lost; } });
        }
        /// Answers others until something has come about.
        template <class Condition> bool happens(const Condition& condition)
        {
            Event event;
            for (int i = 0; i < 100'000 && !condition(); ++i)
                display->pollEvent(event);
            return condition();
        }
        /// Reads our clipboard as another program does, while we answer.
        std::optional<std::string> readElsewhere(const std::string& type)
        {
            std::optional<std::string> data;
            std::atomic<bool> done { false };
            std::thread reader([&] {
                const auto other = openX11();
                data = other->clipboard()->read(Selection::clipboard, type);
                done = true;
            });
            Event event;
            while (!done) {
                display->pollEvent(event);
                std::this_thread::yield();
            }
            reader.join();
            return data;
        }
        int lost = 0;
        int provided = 0;
    };

    TEST_F(ClipboardTest, ReadsWhatAnotherProgramHas)
    {
        const OtherProgram other(Selection::clipboard, "UTF8_STRING", "Grüße");
        Clipboard& ours = *display->clipboard();
        const auto types = ours.types(Selection::clipboard);
        EXPECT_NE(std::find(types.begin(), types.end(), "UTF8_STRING"), types.end());
        EXPECT_EQ(ours.read(Selection::clipboard, "UTF8_STRING"), "Grüße");
        EXPECT_EQ(ours.read(Selection::clipboard, "image/png"), std::nullopt);
    }

    TEST_F(ClipboardTest, ReadsNoMoreTypesThanAProgramNeeds)
    {
        std::vector<std::string> many;
        for (int i = 0; i < 3000; ++i)
            many.push_back("type " + std::to_string(i));
        const OtherProgram other(Selection::clipboard, many, "data");
        const auto types = display->clipboard()->types(Selection::clipboard);
        EXPECT_EQ(types.size(), 1024u);
        EXPECT_NE(std::find(types.begin(), types.end(), "type 1000"), types.end());
        EXPECT_EQ(display->clipboard()->types(Selection::clipboard), types);
    }

    TEST_F(ClipboardTest, ReadsLargeDataInPieces)
    {
        std::string large;
        for (int i = 0; large.size() < 1000000; ++i)
            large += std::to_string(i);
        const OtherProgram other(Selection::primary, "text/plain", large);
        EXPECT_TRUE(display->clipboard()->read(Selection::primary, "text/plain") == large);
    }

    TEST_F(ClipboardTest, GivesToAnotherProgram)
    {
        offer("ours");
        EXPECT_TRUE(display->clipboard()->isOurs(Selection::clipboard));
        EXPECT_EQ(readElsewhere("UTF8_STRING"), "ours");
        EXPECT_EQ(readElsewhere("text/html"), std::nullopt);
    }

    TEST_F(ClipboardTest, GivesLargeDataInPieces)
    {
        const std::string large(700001, 'x');
        offer(large);
        EXPECT_TRUE(readElsewhere("UTF8_STRING") == large);
    }

    /// Asks for the clipboard's text as another program does, and leaves what comes lying.
    class Requestor {
    public:
        Requestor()
            : window_(xcb_generate_id(driver.raw()))
        {
            xcb_create_window(driver.raw(), 0, window_, driver.root(), -1, -1, 1, 1, 0,
                XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        }
        void ask()
        {
            xcb_convert_selection(driver.raw(), window_, driver.atom("CLIPBOARD"),
                driver.atom("UTF8_STRING"), driver.atom("TAKEN"), XCB_CURRENT_TIME);
            driver.sync();
        }
        /// Answers what lies in the property now.
        std::string look() { return fetch(0); }
        /// Takes what lies in the property, so that the next piece can come.
        std::string take() { return fetch(1); }

    private:
        std::string fetch(std::uint8_t andDelete)
        {
            const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
                xcb_get_property_reply(driver.raw(),
                    xcb_get_property(driver.raw(), andDelete, window_, driver.atom("TAKEN"),
                        XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 20),
                    nullptr),
                &std::free);
            if (!reply)
                return {};
            return { static_cast<const char*>(xcb_get_property_value(reply.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) };
        }

        XDriver driver;
        xcb_window_t window_;
    };

    TEST_F(ClipboardTest, KeepsNothingForAProgramThatEndsBeforeItHasFetchedAll)
    {
        constexpr std::size_t kLarge = std::size_t { 32 } << 20;
        offer(std::string(kLarge, 'x'));
        auto other = std::make_unique<Requestor>();
        other->ask();
        ASSERT_TRUE(happens([&] { return !other->look().empty(); }));
        const std::size_t held = test::residentBytes();
        other = nullptr;
        EXPECT_TRUE(happens([held] {
            return !test::growthCanBeMeasured() || test::residentBytes() < held - kLarge / 2;
        }));
    }

    TEST_F(ClipboardTest, KeepsNothingForAProgramThatHasEndedBeforeItIsAnswered)
    {
        constexpr std::size_t kLarge = std::size_t { 32 } << 20;
        offer(std::string(kLarge, 'x'));
        const std::size_t held = test::residentBytes();
        for (int i = 0; i < 8; ++i) {
            Requestor().ask();
            const int before = provided;
            ASSERT_TRUE(happens([&] { return provided > before; }));
        }
        EXPECT_TRUE(happens([held] {
            return !test::growthCanBeMeasured() || test::residentBytes() < held + 2 * kLarge;
        }));
    }

    TEST_F(ClipboardTest, WhoAsksAgainGetsWhatIsThereThen)
    {
        Requestor other;
        offer(std::string(500'000, 'a'));
        other.ask();
        ASSERT_TRUE(happens([&] { return !other.look().empty(); }));
        other.take(); // how large it is
        ASSERT_TRUE(happens([&] { return other.look().starts_with("a"); }));
        const std::string late(400'000, 'b');
        offer(late);
        other.ask();
        ASSERT_TRUE(happens([&] { return other.look().size() == 4; }));
        other.take();
        std::string all;
        EXPECT_TRUE(happens([&] {
            all += other.take();
            return all.size() >= late.size();
        }));
        EXPECT_TRUE(all == late);
    }

    TEST_F(ClipboardTest, IsToldWhenAnotherProgramTakesIt)
    {
        offer("ours");
        const auto before = display->clipboard()->changes(Selection::clipboard);
        const OtherProgram other(Selection::clipboard, "UTF8_STRING", "theirs");
        Event event;
        for (int i = 0; i < 1000000 && !lost; ++i)
            display->pollEvent(event);
        EXPECT_EQ(lost, 1);
        EXPECT_FALSE(display->clipboard()->isOurs(Selection::clipboard));
        EXPECT_GT(display->clipboard()->changes(Selection::clipboard), before);
        EXPECT_EQ(display->clipboard()->read(Selection::clipboard, "UTF8_STRING"), "theirs");
    }

    TEST_F(ClipboardTest, AnswersNothingWhereNobodyHasIt)
    {
        {
            const OtherProgram gone(Selection::primary, "UTF8_STRING", "x");
        }
        EXPECT_TRUE(display->clipboard()->types(Selection::primary).empty());
        EXPECT_EQ(display->clipboard()->read(Selection::primary, "UTF8_STRING"), std::nullopt);
    }

}
}
