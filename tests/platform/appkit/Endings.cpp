// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "appkit/NSApplication.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSTabView.h"
#include "appkit/NSTabViewItem.h"
#include "appkit/NSTableColumn.h"
#include "appkit/NSTableView.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSTrackingArea.h"
#include "appkit/NSViewController.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "quartz/layers/CALayer.h"
#include "runtime/Runtime.h"

// Objects of hosts whose `dealloc` does nothing, not even what the class above does, beside others that live on.

namespace brindle {

namespace {

    /// Answers a subclass whose `dealloc` ends there.
    template <class T> Class* silentClass()
    {
        static Class* const cls = [] {
            const std::string name = std::string("Silent") + T::kName;
            Class* const made = objc_allocateClassPair(T::cls(), name.c_str(), 0);
            const auto nothing = +[](NSObject*, SEL) {};
            class_addMethod(made, selector<"dealloc">, reinterpret_cast<IMP>(nothing), "v@:");
            objc_registerClassPair(made);
            return made;
        }();
        return cls;
    }
    template <class T> Ref<T> silent()
    {
        const Ref<NSObject> raw = Ref<NSObject>::adopt(class_createInstance(silentClass<T>()));
        return cast<T>(raw->send<"init", Ref<NSObject>>());
    }

}

TEST(EndingWithoutSuper, OfAViewLeavesSubviewsWithoutSuperview)
{
    const Ref<NSView> inside = make<NSView>();
    Ref<NSView> view = silent<NSView>();
    view->addSubview(inside.get());
    view = nullptr;
    EXPECT_EQ(inside->superview(), nullptr);
    EXPECT_EQ(inside->nextResponder(), nullptr);
}

TEST(EndingWithoutSuper, OfAViewTakesItOutOfTheOrderOfKeys)
{
    const Ref<NSView> before = make<NSView>();
    const Ref<NSView> after = make<NSView>();
    Ref<NSView> view = silent<NSView>();
    before->setNextKeyView(view.get());
    view->setNextKeyView(after.get());
    view = nullptr;
    EXPECT_EQ(before->nextKeyView(), nullptr);
    EXPECT_EQ(after->previousKeyView(), nullptr);
}

TEST(EndingWithoutSuper, OfAViewLetsItsTrackingAreasBeAddedElsewhere)
{
    const Ref<NSView> other = make<NSView>();
    const Ref<NSTrackingArea> area
        = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(NSMakeRect(0, 0, 10, 10),
            NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, other.get(), nullptr);
    Ref<NSView> view = silent<NSView>();
    view->addTrackingArea(area.get());
    view = nullptr;
    other->addTrackingArea(area.get());
    EXPECT_EQ(other->trackingAreas()->count(), 1U);
}

TEST(EndingWithoutSuper, OfATableLeavesColumnsWithoutTable)
{
    const Ref<NSTableColumn> column = make<NSTableColumn>();
    Ref<NSTableView> table = silent<NSTableView>();
    table->addTableColumn(column.get());
    table = nullptr;
    EXPECT_EQ(column->tableView(), nullptr);
}

TEST(EndingWithoutSuper, OfATabViewLeavesItemsWithoutTabView)
{
    const Ref<NSTabViewItem> item = make<NSTabViewItem>();
    Ref<NSTabView> tabs = silent<NSTabView>();
    tabs->addTabViewItem(item.get());
    tabs = nullptr;
    EXPECT_EQ(item->tabView(), nullptr);
}

TEST(EndingWithoutSuper, OfAWindowTakesItFromTheApplicationAndItsViews)
{
    Ref<NSWindow> window = silent<NSWindow>();
    const NSInteger number = window->windowNumber();
    const Ref<NSView> content = window->contentView();
    window = nullptr;
    EXPECT_EQ(content->window(), nullptr);
    EXPECT_EQ(NSApplication::cls().sharedApplication()->windowWithWindowNumber(number), nullptr);
}

TEST(EndingWithoutSuper, OfAMenuLeavesItemsWithoutMenu)
{
    const Ref<NSMenuItem> item = make<NSMenuItem>();
    Ref<NSMenu> menu = silent<NSMenu>();
    menu->addItem(item.get());
    menu = nullptr;
    EXPECT_EQ(item->menu(), nullptr);
}

TEST(EndingWithoutSuper, OfAnItemLeavesItsSubmenuWithoutSupermenu)
{
    const Ref<NSMenu> menu = make<NSMenu>();
    const Ref<NSMenu> submenu = make<NSMenu>();
    Ref<NSMenuItem> item = silent<NSMenuItem>();
    menu->addItem(item.get());
    item->setSubmenu(submenu.get());
    menu->removeItem(item.get());
    item = nullptr;
    EXPECT_EQ(submenu->supermenu(), nullptr);
}

TEST(EndingWithoutSuper, OfAControllerLeavesChildrenWithoutParent)
{
    const Ref<NSViewController> child = make<NSViewController>();
    Ref<NSViewController> parent = silent<NSViewController>();
    parent->addChildViewController(child.get());
    parent = nullptr;
    EXPECT_EQ(child->parentViewController(), nullptr);
}

TEST(EndingWithoutSuper, OfATextStorageLeavesLayoutManagersWithoutText)
{
    const Ref<NSLayoutManager> manager = make<NSLayoutManager>();
    Ref<NSTextStorage> storage = silent<NSTextStorage>();
    storage->addLayoutManager(manager.get());
    storage = nullptr;
    EXPECT_EQ(manager->textStorage(), nullptr);
}

TEST(EndingWithoutSuper, OfALayoutManagerLeavesContainersWithoutManager)
{
    const Ref<NSTextContainer> container = make<NSTextContainer>();
    Ref<NSLayoutManager> manager = silent<NSLayoutManager>();
    manager->addTextContainer(container.get());
    manager = nullptr;
    EXPECT_EQ(container->layoutManager(), nullptr);
}

TEST(EndingWithoutSuper, OfALayerLeavesSublayersAndMaskWithoutSuperlayer)
{
    const Ref<CALayer> inside = make<CALayer>();
    const Ref<CALayer> mask = make<CALayer>();
    Ref<CALayer> layer = silent<CALayer>();
    layer->addSublayer(inside.get());
    layer->setMask(mask.get());
    layer = nullptr;
    EXPECT_EQ(inside->superlayer(), nullptr);
    EXPECT_EQ(mask->superlayer(), nullptr);
}

}
