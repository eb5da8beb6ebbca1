// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/ClassPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    /// Asks an object of each class that comes from `alloc` alone. Some may raise, none may crash.
    /// - Returns: how many were asked.
    int askAll(const std::function<void(NSObject&)>& question)
    {
        const HeadlessScreen screen { 100, 100 };
        int asked = 0;
        for (const std::string& name : knownClassNames()) {
            SCOPED_TRACE(name);
            try {
                const auto object = objc_getClass(name.c_str())->send<"alloc", Ref<NSObject>>();
                if (!object)
                    continue;
                ++asked;
                question(*object);
            } catch (const Exception&) {
            }
        }
        return asked;
    }

    /// Reads every declared property of an object, those of its ancestors too.
    void readProperties(NSObject& object)
    {
        for (Class* cls = object.classObject(); cls; cls = class_getSuperclass(cls)) {
            unsigned count = 0;
            const std::unique_ptr<objc_property_t[], decltype(&std::free)> list(
                class_copyPropertyList(cls, &count), &std::free);
            for (unsigned i = 0; i < count; ++i) {
                try {
                    valueForKey(&object, stringFrom(property_getName(list[i])).get());
                } catch (const Exception&) {
                }
            }
        }
    }

    TEST(ObjectsWithoutInit, DescribeThemselves)
    {
        EXPECT_GT(askAll([](NSObject& object) {
            EXPECT_TRUE(object.description());
            EXPECT_TRUE((object.send<"debugDescription", Ref<NSObject>>()));
        }),
            200);
    }

    TEST(ObjectsWithoutInit, EqualThemselves)
    {
        EXPECT_GT(askAll([](NSObject& object) {
            const auto other = object.classObject()->send<"alloc", Ref<NSObject>>();
            object.hash();
            EXPECT_TRUE(object.isEqual(&object));
            EXPECT_FALSE(object.isEqual(nullptr));
            object.isEqual(other.get());
        }),
            200);
    }

    TEST(ObjectsWithoutInit, AreCopiedWhereTheirClassCopies)
    {
        EXPECT_GT(askAll([](NSObject& object) {
            if (object.respondsToSelector(selector<"copyWithZone:">))
                object.copy();
            if (object.respondsToSelector(selector<"mutableCopyWithZone:">))
                object.mutableCopy();
        }),
            200);
    }

    TEST(ObjectsWithoutInit, AnswerTheirProperties) { EXPECT_GT(askAll(readProperties), 200); }

}
}
