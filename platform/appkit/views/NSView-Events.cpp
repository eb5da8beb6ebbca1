// SPDX-License-Identifier: Apache-2.0
#include "NSViewPrivate.h"
#include "SubviewsPrivate.h"
#include "ViewLayerPrivate.h"
#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/windows/NSWindowPrivate.h"
#include "foundation/NSArray.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSView::Methods<struct Events> {

    static bool isIn(NSPoint point, NSRect rect)
    {
        return point.x >= NSMinX(rect) && point.x < NSMaxX(rect) && point.y >= NSMinY(rect)
            && point.y < NSMaxY(rect);
    }
    static bool isHit(const NSView& view, NSPoint point)
    {
        return !view.hidden_ && isIn(point, view.frame_);
    }
    /// Knows whether a class answers `hitTest:` as it is answered here. Siblings are mostly of one class.
    class OrdinaryClass {
    public:
        bool is(Class* cls)
        {
            if (cls != last_) {
                last_ = cls;
                ordinary_ = class_getMethodImplementation(cls, selector<"hitTest:">)
                    == imp<hitTest>.address();
            }
            return ordinary_;
        }

    private:
        Class* last_ = nullptr;
        bool ordinary_ = false;
    };
    static Ref<NSView> hitTest(NSView& self, NSPoint point)
    {
        if (!isHit(self, point))
            return nullptr;
        OrdinaryClass known;
        const NSPoint inside = ViewAccess::toSuperview(self).inverse().apply(point);
        for (std::size_t i = self.subviews_.size(); i-- > 0;) {
            if (i >= self.subviews_.size())
                continue; // an override changed the list
            const NSView& lent = *self.subviews_[i];
            if (!isHit(lent, inside) && known.is(lent.isa_))
                continue; // would answer nil
            const Ref<NSView> view = self.subviews_[i];
            if (Ref<NSView> found = view->hitTest(inside))
                return found;
        }
        return &self;
    }
    static bool mouseInRect(NSView& self, NSPoint point, NSRect rect)
    {
        return NSMouseInRect(point, rect, self.isFlipped());
    }
    static bool acceptsFirstMouse(NSView&, NSEvent*) { return false; }
    static bool mouseDownCanMoveWindow(NSView& self) { return !self.isOpaque(); }
    static Ref<NSMenu> menuForEvent(NSView& self, NSEvent*)
    {
        Ref<NSMenu> own = self.menu();
        return own ? own : self.classObject()->send<"defaultMenu", Ref<NSMenu>>();
    }
    static Ref<NSMenu> defaultMenu(Class&) { return nullptr; }
    static void rightMouseDown(NSView& self, NSEvent* event)
    {
        const Ref<NSView> alive(&self);
        const Ref<NSMenu> menu = self.menuForEvent(event);
        if (!event || !menu)
            return super<NSView, "rightMouseDown:">(self, event);
        NSMenu::cls().popUpContextMenu_withEvent_forView(menu.get(), event, &self);
    }

    static bool performKeyEquivalent(NSView& self, NSEvent* event)
    {
        const std::vector<Ref<NSView>> views = self.subviews_;
        for (const Ref<NSView>& view : views) {
            if (!view->isHidden() && view->performKeyEquivalent(event))
                return true;
        }
        return false;
    }

    // ---- tracking areas

    static Ref<NSArray> trackingAreas(NSView& self)
    {
        return makeArray(self.tracking_ ? self.tracking_->all() : std::vector<Ref<NSObject>>());
    }
    static void addTrackingArea(NSView& self, NSTrackingArea* area)
    {
        if (!area || TrackingAccess::view(*area))
            return;
        if (!self.tracking_)
            self.tracking_ = std::make_shared<TrackingIndex>();
        if (self.tracking_->isEmpty())
            ViewAccess::addTrackedViews(self, 1);
        self.tracking_->add(*area);
        TrackingAccess::view(*area) = &self;
        if (self.window_)
            WindowAccess::trackingAreaAdded(*self.window_, self, *area);
        else
            TrackingAccess::isSilent(*area)
                = (TrackingAccess::options(*area) & NSTrackingAssumeInside) != 0;
    }
    static void removeTrackingArea(NSView& self, NSTrackingArea* area)
    {
        if (!area || TrackingAccess::view(*area) != &self)
            return;
        const Ref<NSTrackingArea> alive(area);
        TrackingAccess::view(*area) = nullptr;
        TrackingAccess::isInside(*area) = false;
        self.tracking_->remove(*area);
        if (self.tracking_->isEmpty())
            ViewAccess::addTrackedViews(self, -1);
    }
    static void updateTrackingAreas(NSView&) { }

    static void table(Builder& t)
    {
        t.classMethods({ { "defaultMenu", imp<defaultMenu> } });
        t.methods({
            { "hitTest:", imp<hitTest> },
            { "mouse:inRect:", imp<mouseInRect> },
            { "acceptsFirstMouse:", imp<acceptsFirstMouse> },
            { "mouseDownCanMoveWindow", imp<mouseDownCanMoveWindow> },
            { "menuForEvent:", imp<menuForEvent> },
            { "rightMouseDown:", imp<rightMouseDown> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "trackingAreas", imp<trackingAreas> },
            { "addTrackingArea:", imp<addTrackingArea> },
            { "removeTrackingArea:", imp<removeTrackingArea> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
        });
    }
};
BRINDLE_RECORD(NSView, Events)

void ViewAccess::geometryChanged(NSView& view)
{
    if (view.layer_)
        view.layer_->followView();
    if (view.window_)
        WindowAccess::viewMoved(*view.window_, view);
}

void ViewAccess::updateTrackingAreas(NSView& view)
{
    view.updateTrackingAreas();
    forSubviews(view, [](NSView& subview) { updateTrackingAreas(subview); });
}

}
