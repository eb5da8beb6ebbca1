// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "appkit/NSSavePanel.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "menubar/BRCustomMenubar.h"
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

    void tryTo(const std::function<void()>& step)
    {
        try {
            step();
        } catch (const Exception&) {
        }
    }

    TEST(ObjectsWithoutInit, AreNoWindowsToMoveFillShowOrRun)
    {
        int windows = 0;
        askAll([&windows](NSObject& object) {
            if (!object.isKindOfClass(NSWindow::cls()))
                return;
            ++windows;
            auto& window = static_cast<NSWindow&>(object);
            if (object.isKindOfClass(NSSavePanel::cls())) {
                auto& panel = static_cast<NSSavePanel&>(object);
                for (int i = 0; i < 2; ++i)
                    EXPECT_THROW(panel.runModal(), Exception);
                tryTo([&] { panel.beginWithCompletionHandler(nullptr); });
                tryTo([&] { panel.ok(nullptr); });
                tryTo([&] { panel.cancel(nullptr); });
            }
            if (object.isKindOfClass(BRCustomMenubar::cls())) {
                auto& bar = static_cast<BRCustomMenubar&>(object);
                tryTo([&] { bar.setFrame(); });
                tryTo([&] { bar.load(); });
            }
            const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 9, 9));
            tryTo([&] { window.setFrame_display(NSMakeRect(1, 2, 30, 40), true); });
            tryTo([&] { window.setContentView(view.get()); });
            tryTo([&] { window.setStyleMask(NSTitledWindowMask); });
            tryTo([&] { window.setTitle("Title"_ns); });
            tryTo([&] { window.center(); });
            tryTo([&] { window.display(); });
            tryTo([&] { window.recalculateKeyViewLoop(); });
            tryTo([&] { window.selectNextKeyView(nullptr); });
            tryTo([&] { window.performClose(nullptr); });
            tryTo([&] { window.performZoom(nullptr); });
            tryTo([&] { window.miniaturize(nullptr); });
            tryTo([&] { window.toggleFullScreen(nullptr); });
            tryTo([&] { window.makeKeyWindow(); });
            tryTo([&] { window.makeMainWindow(); });
            EXPECT_FALSE(window.isKeyWindow() || window.isMainWindow());
            EXPECT_THROW(window.makeKeyAndOrderFront(nullptr), Exception);
            EXPECT_THROW(window.orderFrontRegardless(), Exception);
            EXPECT_FALSE(window.isVisible());
            tryTo([&] { window.orderOut(nullptr); });
            tryTo([&] { window.close(); });
        });
        EXPECT_GE(windows, 5);
    }

    TEST(ObjectsWithoutInit, AnswerTheirProperties) { EXPECT_GT(askAll(readProperties), 200); }

}
}
