// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "core/MethodPatching.h"
#include "runtime/Runtime.h"
#include "support/Figures.h"

namespace brindle {
namespace {

    constexpr std::size_t kLevels = 5;
    constexpr std::size_t kSelectors = 9; // the last three begin without any method
    constexpr std::size_t kGiven = 6;
    constexpr const char* kTypes = "q@:";

    template <std::size_t N> std::int64_t answer(NSObject*, SEL) { return N; }

    template <std::size_t... N> auto answersOf(std::index_sequence<N...>)
    {
        return std::array { reinterpret_cast<IMP>(&answer<N>)... };
    }

    struct Operation {
        SEL selector;
        std::int64_t (*ask)(NSObject& object); // an ordinary send, through every cache
    };
    template <Text Name> constexpr Operation operation()
    {
        return { selector<Name>,
            [](NSObject& object) { return object.send<Name, std::int64_t>(); } };
    }
    const std::array<Operation, kSelectors> kOperations { operation<"patched0">(),
        operation<"patched1">(), operation<"patched2">(), operation<"patched3">(),
        operation<"patched4">(), operation<"patched5">(), operation<"patched6">(),
        operation<"patched7">(), operation<"patched8">() };

    /// What each class answers by itself, and how exchanges and second names change that.
    struct Model {
        std::array<std::array<std::optional<std::int64_t>, kSelectors>, kLevels> own {};

        std::optional<std::int64_t> lookUp(std::size_t level, std::size_t which) const
        {
            for (std::size_t l = level + 1; l-- > 0;) {
                if (own[l][which])
                    return own[l][which];
            }
            return std::nullopt;
        }
        bool exchange(std::size_t level, std::size_t a, std::size_t b)
        {
            const auto first = lookUp(level, a);
            const auto second = lookUp(level, b);
            if (!first || !second)
                return false;
            own[level][a] = second;
            own[level][b] = first;
            return true;
        }
        bool alias(std::size_t level, std::size_t method, std::size_t name)
        {
            const auto found = lookUp(level, method);
            if (!found || own[level][name])
                return false;
            own[level][name] = found;
            return true;
        }
    };

    struct Hierarchy {
        std::array<Class*, kLevels> classes {};
        std::array<Ref<NSObject>, kLevels> objects;
        Model model;

        Hierarchy(std::mt19937& random, int number)
        {
            static const auto answers = answersOf(std::make_index_sequence<kLevels * kGiven>());
            Class* parent = NSObject::cls();
            for (std::size_t level = 0; level < kLevels; ++level) {
                const std::string name
                    = "Patched" + std::to_string(number) + "Level" + std::to_string(level);
                parent = classes[level] = objc_allocateClassPair(parent, name.c_str(), 0);
                for (std::size_t i = 0; i < kGiven; ++i) {
                    if (level != 0 && random() % 2)
                        continue;
                    const std::size_t value = level * kGiven + i;
                    class_addMethod(parent, kOperations[i].selector, answers[value], kTypes);
                    model.own[level][i] = static_cast<std::int64_t>(value);
                }
                objc_registerClassPair(parent);
                objects[level] = Ref<NSObject>::adopt(class_createInstance(parent));
            }
        }
        bool agrees() const
        {
            for (std::size_t level = 0; level < kLevels; ++level) {
                for (std::size_t i = 0; i < kSelectors; ++i) {
                    const auto expected = model.lookUp(level, i);
                    if (objects[level]->respondsToSelector(kOperations[i].selector)
                        != expected.has_value())
                        return false;
                    if (expected && kOperations[i].ask(*objects[level]) != *expected)
                        return false;
                }
            }
            return true;
        }
    };

    TEST(RandomExchanges, OverFiveLevelsAgreeWithAModel)
    {
        std::mt19937 random(20240407);
        const int perHierarchy = 100; // then everything has been exchanged with everything
        const int hierarchies = test::rounds(10000) / perHierarchy;
        for (int h = 0; h < hierarchies; ++h) {
            Hierarchy hierarchy(random, h);
            ASSERT_TRUE(hierarchy.agrees());
            for (int i = 0; i < perHierarchy; ++i) {
                const std::size_t level = random() % kLevels;
                const std::size_t a = random() % kSelectors;
                const std::size_t b = (a + 1 + random() % (kSelectors - 1)) % kSelectors;
                const SEL first = kOperations[a].selector;
                const SEL second = kOperations[b].selector;
                Class* const cls = hierarchy.classes[level];
                if (random() % 4) {
                    ASSERT_EQ(XUISwizzleMethod(cls, '-', first, second),
                        hierarchy.model.exchange(level, a, b));
                } else {
                    ASSERT_EQ(XUIAliasMethod(cls, '-', first, second),
                        hierarchy.model.alias(level, a, b));
                }
                ASSERT_TRUE(hierarchy.agrees()) << "hierarchy " << h << ", step " << i;
            }
        }
        test::publish({ "exchanges and aliases over five levels: answers that differ from a model",
            long { hierarchies } * perHierarchy, 0, "answers", 0 });
    }

}
}
