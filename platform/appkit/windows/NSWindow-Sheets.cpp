// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "NSWindowPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "foundation/Dispatch.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    // Where a sheet hangs from, in the host's coordinates: a line below the title bar.
    NSRect lineBelowBar(NSWindow& host)
    {
        const NSRect content = host.contentRectForFrameRect({ {}, host.frame().size });
        return { { NSMinX(content), NSMaxY(content) }, { content.size.width, 0 } };
    }

    // A sheet has no title bar; its content keeps its size.
    void setSheetStyle(NSWindow& sheet, bool isSheet)
    {
        const NSRect content = sheet.contentRectForFrameRect(sheet.frame());
        const NSWindowStyleMask style = sheet.styleMask();
        sheet.setStyleMask(isSheet ? style | NSDocModalWindowMask : style & ~NSDocModalWindowMask);
        WindowAccess::applyFrame(sheet, sheet.frameRectForContentRect(content), true);
    }

}

void WindowAccess::placeSheet(NSWindow& host)
{
    const Ref<NSWindow> sheet(attachedSheet(host));
    if (!sheet)
        return;
    NSRect line = lineBelowBar(host);
    if (const Ref<NSObject> delegate = host.delegate();
        delegate && delegate->respondsToSelector(selector<"window:willPositionSheet:usingRect:">))
        line = delegate->send<"window:willPositionSheet:usingRect:", NSRect>(
            &host, sheet.get(), line);
    const NSRect place = host.convertRectToScreen(line);
    const NSSize size = state(*sheet).frame.size;
    applyFrame(*sheet,
        { { std::round(NSMidX(place) - size.width / 2), NSMinY(place) - size.height }, size },
        true);
}

template <> struct NSWindow::Methods<struct Sheets> {

    static WindowState& of(NSWindow& self) { return WindowAccess::state(self); }

    // ---- the sheets of a window

    static void showNext(NSWindow& host)
    {
        WindowState& state = of(host);
        if (state.showsSheet || state.sheets.empty() || state.closed)
            return;
        const Ref<NSWindow> sheet = state.sheets.front();
        state.showsSheet = true;
        WindowAccess::notify(host, NSWindowWillBeginSheetNotification, "windowWillBeginSheet:");
        if (WindowAccess::attachedSheet(host) != sheet.get())
            return; // somebody has ended it already
        setSheetStyle(*sheet, true);
        WindowAccess::placeSheet(host);
        host.addChildWindow_ordered(sheet.get(), NSWindowAbove);
        if (!state.visible) { // it has nothing to hang from
            sheet->center();
            sheet->orderFrontRegardless();
        }
        sheet->makeKeyWindow();
    }
    static void takeFrom(NSWindow& host, NSWindow& sheet)
    {
        WindowState& state = of(host);
        const bool wasShown = WindowAccess::attachedSheet(host) == &sheet;
        std::erase(state.sheets, &sheet);
        if (!wasShown)
            return;
        state.showsSheet = false;
        AllServed all;
        all.serve([&] { host.removeChildWindow(&sheet); });
        all.serve([&] { sheet.orderOut(nullptr); });
        all.serve([&] { setSheetStyle(sheet, false); });
        if (state.visible && !state.closed)
            all.serve([&] { host.makeKeyWindow(); });
        all.serve([&] {
            WindowAccess::notify(host, NSWindowDidEndSheetNotification, "windowDidEndSheet:");
        });
        all.serve([&] { showNext(host); });
        all.end();
    }

    static void refuseUnlessFree(NSWindow& self, NSWindow* sheet)
    {
        const auto refuse = [](const char* reason) {
            raise("NSInvalidArgumentException",
                std::string("*** -[NSWindow beginSheet:completionHandler:]: ") + reason);
        };
        if (!sheet)
            refuse("nil sheet");
        if (of(*sheet).sheetHost)
            refuse("the window is a sheet already");
        for (NSWindow* above = &self; above; above = of(*above).parent) {
            if (above == sheet)
                refuse("a window cannot be its own sheet");
        }
    }
    /// Answers for a sheet that has nothing to hang from; not inside the call, which may be the answer of another one.
    static void abortLater(Closure<void(NSModalResponse)>* completion)
    {
        if (completion)
            dispatch_async(
                dispatch_get_main_queue(), [answer = Block<void(NSModalResponse)>(completion)] {
                    answer(NSModalResponseAbort);
                });
    }
    enum class Urgency { waits, goesFirst };
    static void begin(
        NSWindow& self, NSWindow* lent, Closure<void(NSModalResponse)>* completion, Urgency urgency)
    {
        refuseUnlessFree(self, lent);
        const Ref<NSWindow> alive(&self);
        const Ref<NSWindow> sheet(lent);
        WindowState& state = of(self);
        if (state.closed)
            return abortLater(completion);
        of(*sheet).sheetHost = &self;
        of(*sheet).sheetCompletion = completion;
        const bool jumps = urgency == Urgency::goesFirst && state.showsSheet;
        state.sheets.insert(jumps ? state.sheets.begin() + 1 : state.sheets.end(), sheet);
        showNext(self);
    }
    static void beginSheet(
        NSWindow& self, NSWindow* sheet, Closure<void(NSModalResponse)>* completion)
    {
        begin(self, sheet, completion, Urgency::waits);
    }
    static void beginCritical(
        NSWindow& self, NSWindow* sheet, Closure<void(NSModalResponse)>* completion)
    {
        begin(self, sheet, completion, Urgency::goesFirst);
    }

    static void endWithCode(NSWindow& self, NSWindow* lent, NSModalResponse code)
    {
        if (!lent || of(*lent).sheetHost != &self)
            return;
        const Ref<NSWindow> alive(&self);
        const Ref<NSWindow> sheet(lent);
        of(*sheet).sheetHost = nullptr;
        const Block<void(NSModalResponse)> completion
            = std::exchange(of(*sheet).sheetCompletion, nullptr);
        AllServed all;
        all.serve([&] { takeFrom(self, *sheet); });
        if (completion)
            all.serve([&] { completion(code); });
        all.end();
    }
    static void end(NSWindow& self, NSWindow* sheet)
    {
        self.endSheet_returnCode(sheet, NSModalResponseStop);
    }

    // ---- questions

    static Ref<NSWindow> attached(NSWindow& self) { return WindowAccess::attachedSheet(self); }
    static Ref<NSArray> sheets(NSWindow& self)
    {
        return makeArray(
            std::vector<Ref<NSObject>>(of(self).sheets.begin(), of(self).sheets.end()));
    }
    static bool isSheet(NSWindow& self) { return of(self).sheetHost != nullptr; }
    static Ref<NSWindow> sheetParent(NSWindow& self) { return of(self).sheetHost; }

    static void table(Builder& t)
    {
        t.methods({
            { "beginSheet:completionHandler:", imp<beginSheet> },
            { "beginCriticalSheet:completionHandler:", imp<beginCritical> },
            { "endSheet:", imp<end> },
            { "endSheet:returnCode:", imp<endWithCode> },
            { "attachedSheet", imp<attached> },
            { "sheets", imp<sheets> },
            { "isSheet", imp<isSheet> },
            { "sheetParent", imp<sheetParent> },
        });
    }
};
BRINDLE_RECORD(NSWindow, Sheets)

void WindowAccess::abortSheets(NSWindow& window)
{
    AllServed all;
    const auto abort = [&all](NSWindow& host, NSWindow& sheet) {
        all.serve([&] { host.endSheet_returnCode(&sheet, NSModalResponseAbort); });
    };
    if (const Ref<NSWindow> host = state(window).sheetHost)
        abort(*host, window);
    const std::vector<Ref<NSWindow>> sheets = state(window).sheets;
    for (std::size_t i = sheets.size(); i-- > 0;) // those that wait are never shown
        abort(window, *sheets[i]);
    all.end();
}

}
