// SPDX-License-Identifier: Apache-2.0

// Opens a window with rows of text, paints it and ends.

#include "Scene.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "foundation/Dispatch.h"
#include "foundation/NSString.h"
#include "quartz/CGContext.h"
#include "runtime/Table.h"

namespace brindle::bench {

class RowsView : public NSView {
    BRINDLE_OBJECT(RowsView, NSView)
};

template <> struct RowsView::Methods<struct Rows> {

    static bool isFlipped(RowsView&) { return true; }

    static void drawRect(RowsView&, NSRect)
    {
        const Ref<CGContext> context = NSGraphicsContext::cls().currentContext()->CGContext();
        for (int row = 0; row < scene::kRows; ++row) {
            const double top = row * scene::kRowHeight;
            const double grey = row % 2 ? 1 : scene::kBandGrey;
            CGContextSetRGBFillColor(context.get(), grey, grey, grey, 1);
            CGContextFillRect(context.get(), NSMakeRect(0, top, scene::kWidth, scene::kRowHeight));
            drawAtPoint_withAttributes(
                NSString::cls().stringWithUTF8String(scene::textOf(row).c_str()),
                { scene::kTextLeft, top + 3 }, nullptr);
        }
        // A later turn: this one still shows what was painted.
        dispatch_async(dispatch_get_main_queue(),
            [] { NSApplication::cls().sharedApplication()->terminate(nullptr); });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(RowsView, Rows)

}

int main()
{
    using namespace brindle;
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    const NSRect frame = NSMakeRect(100, 100, bench::scene::kWidth, bench::scene::kHeight);
    const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        frame, NSTitledWindowMask | NSClosableWindowMask, NSBackingStoreBuffered, true);
    window->setReleasedWhenClosed(false);
    const auto view = alloc<bench::RowsView>()->initWithFrame({ {}, frame.size });
    window->setContentView(view.get());
    window->makeKeyAndOrderFront(nullptr);
    application->run();
}
