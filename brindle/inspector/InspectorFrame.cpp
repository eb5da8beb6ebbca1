// SPDX-License-Identifier: Apache-2.0
#include "InspectorFramePrivate.h"

#include "appkit/NSColor.h"

namespace brindle::inspector {

namespace {

    constexpr double kThickness = 2; // points

    std::array<NSRect, 4> edgesOf(NSRect rect)
    {
        const NSRect outer = NSInsetRect(rect, -kThickness, -kThickness);
        return {
            NSMakeRect(outer.origin.x, outer.origin.y, outer.size.width, kThickness),
            NSMakeRect(outer.origin.x, NSMaxY(rect), outer.size.width, kThickness),
            NSMakeRect(outer.origin.x, rect.origin.y, kThickness, rect.size.height),
            NSMakeRect(NSMaxX(rect), rect.origin.y, kThickness, rect.size.height),
        };
    }

    Ref<NSWindow> makeEdge()
    {
        Ref<NSWindow> edge = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 1, 1), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        edge->setReleasedWhenClosed(false);
        edge->setBackgroundColor(NSColor::cls().controlAccentColor().get());
        edge->setHasShadow(false);
        edge->setIgnoresMouseEvents(true);
        edge->setLevel(NSStatusWindowLevel);
        return edge;
    }

}

Frame::~Frame()
{
    for (const Ref<NSWindow>& edge : edges_)
        maybe(edge)->close();
}

void Frame::make()
{
    for (Ref<NSWindow>& edge : edges_)
        edge = makeEdge();
}

void Frame::show(NSRect rect)
{
    if (NSEqualRects(rect, shown_))
        return;
    shown_ = rect;
    const bool isEmpty = NSIsEmptyRect(rect);
    if (!edges_[0]) {
        if (isEmpty)
            return;
        make();
    }
    const auto places = edgesOf(rect);
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        if (isEmpty) {
            edges_[i]->orderOut(nullptr);
            continue;
        }
        edges_[i]->setFrame_display(places[i], true);
        edges_[i]->orderFrontRegardless();
    }
}

bool Frame::has(const NSWindow& window) const
{
    for (const Ref<NSWindow>& edge : edges_) {
        if (edge.get() == &window)
            return true;
    }
    return false;
}

}
