// SPDX-License-Identifier: Apache-2.0
// Every operation of every class that takes numbers, points, sizes and rectangles, with numbers that make no sense.

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "foundation/NSDate.h"
#include "runtime/ClassPrivate.h"
#include "runtime/NSException.h"
#include "runtime/NSInvocation.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/Rounds.h"

namespace brindle {
namespace {

    /// Numbers nobody would choose, the same for the same seed.
    class OddNumbers {
    public:
        explicit OddNumbers(std::uint32_t seed)
            : random_(seed)
        {
        }
        double real()
        {
            using Limits = std::numeric_limits<double>;
            static constexpr std::array kReals { 0.0, -0.0, 1.0, -1.0, 0.5, 7.25, 64.0, -40.0, 1e-9,
                Limits::denorm_min(), Limits::max(), -Limits::max(), Limits::infinity(),
                -Limits::infinity(), Limits::quiet_NaN(), 1e9, -1e9, 2147483647.0, -2147483648.0,
                4294967296.0, 9007199254740993.0, 1e18, -1e18, 9.3e18, 32767.0, 8388608.0, 1e300 };
            return kReals[random_() % kReals.size()];
        }
        std::uint64_t whole()
        {
            static constexpr std::array<std::uint64_t, 10> kWholes { 0, 1, 2, 3, 7, 100, 0x7FFFFFFF,
                0x80000000, 0x7FFFFFFFFFFFFFFF, ~std::uint64_t { 0 } };
            return kWholes[random_() % kWholes.size()];
        }

    private:
        std::mt19937 random_;
    };

    bool isReal(std::string_view type) { return type == "d" || type == "f"; }
    bool isWhole(std::string_view type)
    {
        return type.size() == 1 && std::string_view("cCsSiIlLqQB").find(type[0]) != type.npos;
    }
    /// Answers how many numbers a structure of nothing but double-precision numbers has, 0 for any other type.
    std::size_t realsIn(std::string_view type)
    {
        static const std::array<std::pair<std::string_view, std::size_t>, 5> kStructures { {
            { "{CGPoint=", 2 },
            { "{CGSize=", 2 },
            { "{CGRect=", 4 },
            { "{NSEdgeInsets=", 4 },
            { "{CGAffineTransform=", 6 },
        } };
        for (const auto& [beginning, count] : kStructures) {
            if (type.starts_with(beginning))
                return count;
        }
        return 0;
    }

    /// Answers whether an operation takes numbers only, and one at least that is no whole one.
    bool takesNumbers(NSMethodSignature& signature)
    {
        bool found = false;
        for (std::uint64_t i = 2; i < signature.numberOfArguments(); ++i) {
            const std::string_view type = signature.getArgumentTypeAtIndex(i);
            if (isReal(type) || realsIn(type))
                found = true;
            else if (!isWhole(type))
                return false;
        }
        return found;
    }

    void fill(NSInvocation& call, NSMethodSignature& signature, OddNumbers& numbers)
    {
        for (std::uint64_t i = 2; i < signature.numberOfArguments(); ++i) {
            const std::string_view type = signature.getArgumentTypeAtIndex(i);
            std::array<double, 6> room {};
            if (type == "f") {
                const double real = numbers.real();
                const float single = std::abs(real) > std::numeric_limits<float>::max()
                    ? std::numeric_limits<float>::infinity()
                    : static_cast<float>(real);
                std::memcpy(room.data(), &single, sizeof single);
            } else if (isWhole(type)) {
                const std::uint64_t whole = type == "B" ? numbers.whole() & 1 : numbers.whole();
                std::memcpy(room.data(), &whole, sizeof whole);
            } else {
                for (double& real : room)
                    real = numbers.real();
            }
            call.setArgument_atIndex(room.data(), static_cast<std::int64_t>(i));
        }
    }

    /// Answers whether an operation waits, or works as long as it is told to.
    bool takesItsTime(std::string_view selector)
    {
        static const std::set<std::string_view> kTakers {
            "advance:", "sleepForTimeInterval:", "initWithCapacity:"
        };
        return kTakers.contains(selector);
    }

    Ref<NSObject> made(Class& cls)
    {
        try {
            return cls.send<"alloc", Ref<NSObject>>()->init();
        } catch (const Exception&) {
            return nullptr; // a class whose objects are made otherwise
        }
    }

    int callWithNumbers(NSObject& receiver, SEL selector, const char* types, OddNumbers& numbers)
    {
        const auto signature = NSMethodSignature::cls().signatureWithObjCTypes(types);
        if (!takesNumbers(*signature) || takesItsTime(sel_getName(selector)))
            return 0;
        const auto call = NSInvocation::cls().invocationWithMethodSignature(signature.get());
        call->setSelector(selector);
        fill(*call, *signature, numbers);
        try {
            call->invokeWithTarget(&receiver);
        } catch (const Exception&) { // a documented answer
        }
        return 1;
    }

    /// Calls each of a table's operations on a fresh receiver, several times on the same one.
    template <class Receiver>
    int callAll(Class& table, OddNumbers& numbers, int times, Receiver receiver)
    {
        unsigned count = 0;
        Method** const methods = class_copyMethodList(&table, &count);
        int calls = 0;
        for (int round = 0; round < times; ++round) {
            const Ref<NSObject> target = receiver();
            for (unsigned i = 0; target && i < count; ++i)
                calls += callWithNumbers(*target, method_getName(methods[i]),
                    method_getTypeEncoding(methods[i]), numbers);
        }
        std::free(methods);
        return calls;
    }

    TEST(HardenedNumbers, DoNoHarmToAnyOperationOfAnyClass)
    {
        const HeadlessScreen screen { 100, 100 };
        const test::LogSink log;
        const int times = test::rounds(1000);
        int calls = 0;
        std::uint32_t seed = 0;
        for (const std::string& name : knownClassNames()) {
            Class* const cls = objc_getClass(name.c_str());
            OddNumbers numbers(++seed);
            for (Class* table = cls; table; table = class_getSuperclass(table))
                calls += callAll(*table, numbers, times, [cls] { return made(*cls); });
            calls += callAll(
                *object_getClass(cls), numbers, times, [cls] { return Ref<NSObject>(cls); });
        }
        EXPECT_GT(calls, 100 * times);
        std::printf("%d calls\n", calls);
    }

    TEST(HardenedNumbers, LeaveAViewThatIsDrawnAlive)
    {
        HeadlessScreen screen { 100, 100 };
        const test::LogSink log;
        OddNumbers numbers(1);
        for (int round = 0; round < test::rounds(10000); ++round) {
            const auto view = screen.add<NSView>(NSMakeRect(0, 0, 10, 10));
            for (Class* table = NSView::cls(); table; table = class_getSuperclass(table))
                callAll(*table, numbers, 1, [&] { return Ref<NSObject>(view.get()); });
            screen.pointer().click({ 5, 5 });
            view->removeFromSuperview();
        }
        const auto view = screen.add<NSView>(NSMakeRect(20, 30, 10, 10));
        EXPECT_EQ(view->convertPoint_toView({ 1, 2 }, nullptr), (NSPoint { 21, 32 }));
    }

}
}
