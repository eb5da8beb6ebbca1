// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "runtime/Block.h"

/// The vertical scroll position as a part of the document, and closures that follow it. Thread: main.

namespace brindle {

/// Answers the document view.
inline Ref<NSView> scrollDocumentView(To<NSScrollView> view)
{
    return view.send<"scrollDocumentView", Ref<NSView>>();
}

/// Answers the middle of what shows, divided by the middle of the document: 1 when both are the same. Not limited to
/// 0 to 1; NaN without a document.
inline double scrollPortionY(To<NSScrollView> view)
{
    return view.send<"scrollPortionY", double>();
}
/// Scrolls to where `scrollPortionY` is this number, as far as the document goes, and to its left edge.
inline void setScrollPortionY(To<NSScrollView> view, double portion)
{
    view.send<"setScrollPortionY:">(portion);
}
/// Scrolls to y 0 of the document.
inline void scrollToTop(To<NSScrollView> view) { view.send<"scrollToTop">(); }
/// Scrolls as far as the document's greatest y allows.
inline void scrollToBottom(To<NSScrollView> view) { view.send<"scrollToBottom">(); }

/// Sets what is called with `scrollPortionY` once scrolling has been still for `didScrollDelay`.
///
/// Set it once: each call adds an observation that lasts as long as the process, and keeps the scroll view and the closure.
/// After two calls one closure is called, the later one.
/// - Nil: forgets the closure; what has been observed stays observed.
inline void setDidScrollBlock(To<NSScrollView> view, const Block<void(double)>& code)
{
    view.send<"setDidScrollBlock:">(code.get());
}
inline Block<void(double)> didScrollBlock(To<NSScrollView> view)
{
    return view.send<"didScrollBlock", Block<void(double)>>();
}
/// Answers the seconds of stillness, in single precision; 0 stands for 0.38.
inline double didScrollDelay(To<NSScrollView> view)
{
    return view.send<"didScrollDelay", double>();
}
inline void setDidScrollDelay(To<NSScrollView> view, double seconds)
{
    view.send<"setDidScrollDelay:">(seconds);
}

/// Sets what is called with `documentVisibleRect` at each step of scrolling. As with `setDidScrollBlock`, set it once;
/// this observation keeps the closure, not the scroll view.
inline void setScrollingBlock(To<NSScrollView> view, const Block<void(NSRect)>& code)
{
    view.send<"setScrollingBlock:">(code.get());
}
inline Block<void(NSRect)> scrollingBlock(To<NSScrollView> view)
{
    return view.send<"scrollingBlock", Block<void(NSRect)>>();
}

/// Answers how wide the vertical scroller is, in points; that of a regular one where there is none.
inline double scrollerWidth(To<NSScrollView> view) { return view.send<"scrollerWidth", double>(); }

}
