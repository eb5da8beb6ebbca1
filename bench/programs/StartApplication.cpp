// SPDX-License-Identifier: Apache-2.0

// Opens a window, paints it and ends; with --stay it goes on, idle, until it is stopped.

#include <string_view>

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

namespace {

    constinit bool stays = false;

}

class StartView : public NSView {
    BRINDLE_OBJECT(StartView, NSView)
};

template <> struct StartView::Methods<struct Rows> {

    static bool isFlipped(StartView&) { return true; }

    static void drawRect(StartView&, NSRect)
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
        if (!stays) // a later turn: this one still shows what was painted
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
BRINDLE_RECORD(StartView, Rows)

}

int main(int count, char** arguments)
{
    using namespace brindle;
    bench::stays = count > 1 && std::string_view(arguments[1]) == "--stay";
    const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
    const NSRect frame = NSMakeRect(100, 100, bench::scene::kWidth, bench::scene::kHeight);
    const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        frame, NSTitledWindowMask | NSClosableWindowMask, NSBackingStoreBuffered, true);
    window->setReleasedWhenClosed(false);
    const auto view = alloc<bench::StartView>()->initWithFrame({ {}, frame.size });
    window->setContentView(view.get());
    window->makeKeyAndOrderFront(nullptr);
    application->run();
    return 0;
}
