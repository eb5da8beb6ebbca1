// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "appkit/NSTextView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSRunLoop.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// A titled key window of 300 by 200 points on a screen in memory, in which something is typed.
struct EditingDesk {
    EditingDesk()
    {
        window->makeKeyAndOrderFront(nullptr);
        screen.process();
    }
    ~EditingDesk() { window->close(); }

    /// Adds a view in the content view's coordinates.
    template <class View> Ref<View> add(NSRect frame)
    {
        const Ref<View> view = cast<View>(alloc<View>()->initWithFrame(frame));
        window->contentView()->addSubview(view.get());
        screen.process();
        return view;
    }
    void type(std::u16string_view text) { screen.keyboard().type(text); }
    void press(char16_t key, NSEventModifierFlags flags = 0)
    {
        screen.keyboard().press(key, flags);
    }
    /// Answers the place on the screen of a point of a view.
    static NSPoint onScreen(NSView& view, NSPoint point)
    {
        const NSPoint inWindow = view.convertPoint_toView(point, nullptr);
        const NSRect frame = view.window()->frame();
        return { frame.origin.x + inWindow.x, frame.origin.y + inWindow.y };
    }
    void click(NSView& view, NSPoint point, int count = 1)
    {
        screen.pointer().click(onScreen(view, point), count);
    }
    void drag(NSView& view, NSPoint from, NSPoint to)
    {
        screen.pointer().press(onScreen(view, from));
        screen.pointer().dragTo(onScreen(view, to));
        screen.pointer().release();
    }
    /// Answers the selection as text: "2+3" begins at 2 and is 3 long.
    static std::string selection(NSText& text)
    {
        const NSRange range = text.selectedRange();
        return std::to_string(range.location) + "+" + std::to_string(range.length);
    }

    HeadlessScreen screen;
    Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(50, 50, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true);
};

}
