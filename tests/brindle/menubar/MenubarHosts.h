// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "foundation/NSArray.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "menubar/BRCustomMenubar.h"
#include "menubar/BRCustomMenubarMenuButton.h"
#include "support/ActionLog.h"
#include "support/HeadlessScreen.h"

namespace brindle::test {

inline Ref<NSImage> solidImage(double width, double height, NSColor* color)
{
    const Ref<NSColor> kept(color);
    return NSImage::cls().imageWithSize_flipped_drawingHandler(
        { width, height }, false, [kept](NSRect rect) {
            kept->set();
            NSRectFill(rect);
            return true;
        });
}

/// The application's shadow picture, 8 points high, while it lives.
class ShadowImage {
public:
    ShadowImage()
        : image_(solidImage(4, 8, NSColor::cls().blackColor().get()))
    {
        image_->setName("menuShadowGradient.png"_ns);
        reload();
    }
    ~ShadowImage()
    {
        image_->setName(nullptr);
        reload();
    }
    ShadowImage(const ShadowImage&) = delete;
    ShadowImage& operator=(const ShadowImage&) = delete;

private:
    // The class looks once in the life of a process.
    static void reload() { BRCustomMenubar::cls().send<"initialize">(); }
    Ref<NSImage> image_;
};

inline Ref<NSView> viewOfWidth(double width)
{
    return alloc<NSView>()->initWithFrame(NSMakeRect(7, 3, width, 22));
}

/// A menu with one item for Command and a key.
inline Ref<NSMenu> menuWithKey(NSString* title, NSString* key, ActionLog* log)
{
    Ref<NSMenu> menu = alloc<NSMenu>()->initWithTitle(title);
    menu->addItemWithTitle_action_keyEquivalent("Act"_ns, selector<"act:">, key)->setTarget(log);
    return menu;
}

inline Ref<BRCustomMenubarMenuButton> buttonTitled(NSString* title, NSMenu* menu)
{
    Ref<BRCustomMenubarMenuButton> button = make<BRCustomMenubarMenuButton>();
    button->setTitle(title);
    button->setMenu(menu);
    button->sizeToFit();
    return button;
}

inline Ref<NSEvent> commandKey(NSString* text)
{
    return NSEvent::cls()
        .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
            NSKeyDown, {}, NSCommandKeyMask, 0, 0, nullptr, text, text, false, 0);
}

/// A bar on a screen of its own. Whatever a test shows goes with it.
struct BarDesk {
    explicit BarDesk(double width = 1440, double height = 900)
        : screen(width, height)
    {
    }
    ~BarDesk()
    {
        if (!bar)
            return;
        if (const Ref<NSWindow> views = viewsWindow())
            views->close();
        bar->close();
    }
    BarDesk(const BarDesk&) = delete;
    BarDesk& operator=(const BarDesk&) = delete;

    BRCustomMenubar& make(BRMenubarTheme theme, BRMenubarSpacing spacing = BRMenubarSpacingStandard)
    {
        bar = alloc<BRCustomMenubar>()->initWithMenubarTheme_spacingMode(theme, spacing);
        return *bar;
    }
    Ref<NSWindow> viewsWindow() const
    {
        return cast<NSWindow>(valueForKey(bar, "menubarViewsWindow"_ns));
    }
    double labelEnd() const
    {
        return NSMaxX(cast<NSView>(valueForKey(bar, "appMenuLabel"_ns))->frame());
    }
    double rightOffset() const { return valueForKeyAs<double>(bar.get(), "rightAlignOffset"_ns); }
    Ref<NSView> add(double width, BRMenubarViewAlignment alignment = BRMenubarViewAlignmentLeft)
    {
        Ref<NSView> view = viewOfWidth(width);
        bar->addMenubarView_alignment(view.get(), alignment);
        return view;
    }

    HeadlessScreen screen;
    Ref<BRCustomMenubar> bar;
};

}
