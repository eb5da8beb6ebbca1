// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "NSTextViewPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "appkit/NSWindow.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSRunLoop.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kBlinkSeconds = 0.5;
    constexpr double kIdleSeconds = 10; // without an event the caret stops to blink
    constexpr CGFloat kCaretWidth = 1;

}

bool TextViewAccess::isActive(NSTextView& view)
{
    const Ref<NSWindow> window = view.window();
    return of(view).isFirstResponder && window && window->isKeyWindow();
}

void TextViewAccess::stopCaret(NSTextView& view)
{
    TextViewState& s = of(view);
    if (const Ref<NSTimer> timer = std::exchange(s.blink, nullptr))
        timer->invalidate();
    s.caretShown = true;
    view.setNeedsDisplayInRect(NSInsetRect(s.caret, -1, -1));
}

void TextViewAccess::restartCaret(NSTextView& view)
{
    TextViewState& s = of(view);
    s.lastEvent = Clock::uptime();
    s.caretShown = true;
    if (!view.shouldDrawInsertionPoint())
        return stopCaret(view);
    view.setNeedsDisplayInRect(NSInsetRect(s.caret, -1, -1));
    view.setNeedsDisplayInRect(NSInsetRect(caretRect(view, head(view)), -2, -1));
    if (s.blink)
        s.blink->invalidate();
    s.blink = NSTimer::cls().timerWithTimeInterval_repeats_block(
        kBlinkSeconds, true, [weak = WeakRef<NSTextView>(&view)](NSTimer* timer) {
            const Ref<NSTextView> editor = weak.get();
            if (!editor)
                return timer->invalidate();
            TextViewState& state = of(*editor);
            const bool idle = Clock::uptime() - state.lastEvent >= kIdleSeconds;
            if (idle || !editor->shouldDrawInsertionPoint())
                return stopCaret(*editor);
            state.caretShown = !state.caretShown;
            editor->setNeedsDisplayInRect(NSInsetRect(state.caret, -1, -1));
        });
    const Ref<NSRunLoop> loop = NSRunLoop::cls().currentRunLoop();
    loop->addTimer_forMode(s.blink.get(), NSRunLoopCommonModes);
}

template <> struct NSTextView::Methods<struct Drawing> {

    static TextViewState& of(NSTextView& self) { return TextViewAccess::of(self); }

    static bool shouldDrawCaret(NSTextView& self)
    {
        const TextViewState& s = of(self);
        return s.editable && s.anchor == s.head && TextViewAccess::isActive(self);
    }
    static void updateCaret(NSTextView& self, bool restart)
    {
        if (restart || !self.shouldDrawInsertionPoint())
            TextViewAccess::restartCaret(self);
    }
    static void drawCaret(NSTextView&, NSRect rect, NSColor* color, bool on)
    {
        if (on && color)
            color->drawSwatchInRect(rect);
    }

    static Ref<NSColor> selectionColor(NSTextView& self)
    {
        const Ref<NSObject> own
            = maybe(of(self).selectedAttributes)->objectForKey(NSBackgroundColorAttributeName);
        if (!TextViewAccess::isActive(self))
            return NSColor::cls().unemphasizedSelectedTextBackgroundColor();
        if (own && own->isKindOfClass(NSColor::cls()))
            return cast<NSColor>(own);
        return NSColor::cls().selectedTextBackgroundColor();
    }
    static void drawSelection(NSTextView& self, NSRect dirty)
    {
        const NSRange range = TextViewAccess::selection(self);
        if (!range.length || !of(self).selectable)
            return;
        const Ref<NSColor> color = selectionColor(self);
        for (const NSRect& rect : TextViewAccess::rectsOf(self, range)) {
            if (NSIntersectsRect(rect, dirty))
                color->drawSwatchInRect(rect);
        }
    }
    static void drawMarks(NSTextView& self)
    {
        if (!self.hasMarkedText())
            return;
        const Ref<NSColor> color = self.textColor();
        for (NSRect rect :
            TextViewAccess::rectsOf(self, TextViewAccess::clamped(self, of(self).marked))) {
            rect.origin.y = NSMaxY(rect) - 2;
            rect.size.height = 1;
            color->drawSwatchInRect(rect);
        }
    }
    static void drawCaretIfShown(NSTextView& self)
    {
        TextViewState& s = of(self);
        s.caret = NSZeroRect;
        if (!self.shouldDrawInsertionPoint())
            return;
        NSRect rect = TextViewAccess::caretRect(self, TextViewAccess::head(self));
        rect.size.width = kCaretWidth;
        // At the right edge it stands inside.
        rect.origin.x = std::max(std::min(rect.origin.x, NSMaxX(self.bounds()) - kCaretWidth), 0.0);
        s.caret = self.centerScanRect(rect);
        s.caret.size.width = kCaretWidth;
        self.drawInsertionPointInRect_color_turnedOn(
            s.caret, self.insertionPointColor().get(), s.caretShown);
    }

    static void drawRect(NSTextView& self, NSRect dirty)
    {
        TextViewState& s = of(self);
        if (s.drawsBackground)
            self.backgroundColor()->drawSwatchInRect(NSIntersectionRect(dirty, self.bounds()));
        drawSelection(self, dirty);
        const NSPoint origin = self.textContainerOrigin();
        const NSRange glyphs = s.layout->glyphRangeForBoundingRect_inTextContainer(
            NSOffsetRect(dirty, -origin.x, -origin.y), s.container.get());
        s.layout->drawBackgroundForGlyphRange_atPoint(glyphs, origin);
        s.layout->drawGlyphsForGlyphRange_atPoint(glyphs, origin);
        drawMarks(self);
        drawCaretIfShown(self);
    }
    static void viewWillDraw(NSTextView& self)
    {
        super<NSTextView, "viewWillDraw">(self);
        self.sizeToFit(); // the storage may have been edited by others
    }
    // The look of selection and caret follows the window's.
    static void windowChangedKey(NSTextView& self, NSObject*)
    {
        self.setNeedsDisplay(true);
        TextViewAccess::restartCaret(self);
    }
    static void viewWillMoveToWindow(NSTextView& self, NSWindow* window)
    {
        super<NSTextView, "viewWillMoveToWindow:">(self, window);
        of(self).isFirstResponder = false;
        TextViewAccess::stopCaret(self);
    }
    static void viewDidMoveToWindow(NSTextView& self)
    {
        super<NSTextView, "viewDidMoveToWindow">(self);
        of(self).heard.follow(self, selector<"windowChangedKey:">);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "shouldDrawInsertionPoint", imp<shouldDrawCaret> },
            { "updateInsertionPointStateAndRestartTimer:", imp<updateCaret> },
            { "drawInsertionPointInRect:color:turnedOn:", imp<drawCaret> },
            { "drawRect:", imp<drawRect> },
            { "viewWillDraw", imp<viewWillDraw> },
            { "windowChangedKey:", imp<windowChangedKey> },
            { "viewWillMoveToWindow:", imp<viewWillMoveToWindow> },
            { "viewDidMoveToWindow", imp<viewDidMoveToWindow> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Drawing)

}
