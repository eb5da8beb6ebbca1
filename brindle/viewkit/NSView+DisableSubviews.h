// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "foundation/NSGeometry.h"
#include "runtime/Block.h"

/// Enables or disables the controls in a view, however deep, but never the view itself.
///
/// `disable` YES disables, NO enables; what does not respond to `setEnabled:` is left alone. A view comes after all that is
/// in it, siblings come back to front.

namespace brindle {

/// Does so for the views that the filter accepts. What is in a view that is not accepted is asked for all the same.
/// - Nil: a nil filter accepts every view.
inline void disableSubviews_filter(
    To<NSView> view, bool disable, const Block<bool(NSView*)>& filter)
{
    view.send<"disableSubviews:filter:">(disable, filter.get());
}
inline void disableSubviews(To<NSView> view, bool disable)
{
    view.send<"disableSubviews:">(disable);
}
/// - type: the class, subclasses included; nil is no view's class.
inline void disableSubviews_ofType(To<NSView> view, bool disable, Class* type)
{
    view.send<"disableSubviews:ofType:">(disable, type);
}
/// - tags: counted without signs, so that -1 is the greatest tag.
inline void disableSubviews_inTagRange(To<NSView> view, bool disable, NSRange tags)
{
    view.send<"disableSubviews:inTagRange:">(disable, tags);
}
/// Both ends belong to the range. With `end` before `start` it is every tag from `start` on.
inline void disableSubviews_startTag_endTag(
    To<NSView> view, bool disable, NSInteger start, NSInteger end)
{
    view.send<"disableSubviews:startTag:endTag:">(disable, start, end);
}
/// - tags: numbers, in an array or a set. - Nil: no tag.
inline void disableSubviews_withTags(To<NSView> view, bool disable, NSObject* tags)
{
    view.send<"disableSubviews:withTags:">(disable, tags);
}
inline void disableSubviews_ofType_inTagRange(
    To<NSView> view, bool disable, Class* type, NSRange tags)
{
    view.send<"disableSubviews:ofType:inTagRange:">(disable, type, tags);
}
inline void disableSubviews_ofType_withTags(
    To<NSView> view, bool disable, Class* type, NSObject* tags)
{
    view.send<"disableSubviews:ofType:withTags:">(disable, type, tags);
}

}
