// SPDX-License-Identifier: Apache-2.0
#include "foundation/QueuePrivate.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support/Allocations.h"

namespace brindle {

namespace {

    std::string all(const Queue<std::string>& queue)
    {
        std::string text;
        for (const std::string& item : queue)
            text += item;
        return text;
    }
    Queue<std::string> queueOf(const std::string& letters)
    {
        Queue<std::string> queue;
        for (const char letter : letters)
            queue.emplace_back(1, letter);
        return queue;
    }

    TEST(Queue, AnswersInTheOrderOfComing)
    {
        Queue<std::string> queue = queueOf("abc");
        EXPECT_EQ(queue.size(), 3u);
        EXPECT_EQ(queue.front(), "a");
        EXPECT_EQ(queue.back(), "c");
        queue.pop_front();
        queue.emplace_back("d");
        EXPECT_EQ(all(queue), "bcd");
    }

    TEST(Queue, TakesWhatComesInFront)
    {
        Queue<std::string> queue = queueOf("bc");
        queue.emplace_front("a");
        EXPECT_EQ(all(queue), "abc");
        queue.pop_front();
        queue.emplace_front("x");
        EXPECT_EQ(all(queue), "xbc");
    }

    TEST(Queue, LetsGoInFrontInTheMiddleAndBehind)
    {
        Queue<std::string> queue = queueOf("abcde");
        EXPECT_EQ(*queue.erase(queue.begin()), "b");
        EXPECT_EQ(*queue.erase(queue.begin() + 1), "d");
        queue.pop_back();
        EXPECT_EQ(all(queue), "bd");
    }

    TEST(Queue, TheLastThatGoesLeavesItEmpty)
    {
        Queue<std::string> queue = queueOf("a");
        const auto next = queue.erase(queue.begin());
        EXPECT_EQ(next, queue.end());
        EXPECT_TRUE(queue.empty());
        queue.emplace_back("b");
        queue.pop_back();
        EXPECT_TRUE(queue.empty());
        queue.emplace_back("c");
        EXPECT_EQ(all(queue), "c");
    }

    TEST(Queue, LosesWhatATestIsTrueFor)
    {
        Queue<std::string> queue = queueOf("abcba");
        queue.pop_front();
        queue.eraseIf([](const std::string& item) { return item == "b"; });
        EXPECT_EQ(all(queue), "ca");
    }

    TEST(Queue, LetsGoOfWhatWasTakenAtOnce)
    {
        const auto item = std::make_shared<int>(1);
        Queue<std::shared_ptr<int>> queue;
        queue.emplace_back(item);
        queue.emplace_back(nullptr);
        queue.pop_front();
        EXPECT_EQ(item.use_count(), 1);
    }

    TEST(Queue, AsksForNoMemoryWhileAsManyComeAsGo)
    {
        Queue<int> queue;
        queue.emplace_back(0);
        const std::size_t most = test::mostAllocationsIn(
            1000, [](int) {},
            [&] {
                queue.emplace_back(1);
                queue.pop_front();
            });
        EXPECT_EQ(most, 0u);
        EXPECT_EQ(queue.size(), 1u);
    }

    TEST(Queue, KeepsItsOrderOverManyComingAndGoing)
    {
        Queue<int> queue;
        int came = 0;
        int went = 0;
        for (int round = 0; round < 1000; ++round) {
            for (int i = 0; i < round % 7 + 1; ++i)
                queue.emplace_back(came++);
            while (queue.size() > static_cast<std::size_t>(round % 5)) {
                ASSERT_EQ(queue.front(), went++);
                queue.pop_front();
            }
        }
    }

}

}
