// SPDX-License-Identifier: Apache-2.0
#include "NSViewPrivate.h"
#include "SubviewsPrivate.h"

#include "foundation/NSNotificationCenter.h"
#include "quartz/layers/Autoresizing.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    void post(NSString* name, NSView& view)
    {
        NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(name, &view);
    }

}

void ViewAccess::moveBounds(NSView& view, NSPoint origin, bool marks)
{
    view.bounds_.origin = origin;
    if (marks)
        invalidate(view, view.bounds_);
    geometryChanged(view);
}

void ViewAccess::postBoundsChange(NSView& view)
{
    if (view.postsBoundsChanges_)
        post(NSViewBoundsDidChangeNotification, view);
}

template <> struct NSView::Methods<struct Geometry> {

    static NSRect frame(NSView& self) { return self.frame_; }
    static NSRect bounds(NSView& self) { return self.bounds_; }
    static bool isFlipped(NSView&) { return false; }

    // ---- the frame

    /// Surrounds a change of the frame: marks what was and what is now to be drawn, and posts one notification for the
    /// outermost change when something is different at its end.
    class FrameChange {
    public:
        explicit FrameChange(NSView& view)
            : view_(view)
            , before_(view.frame_)
        {
            ++view_.frameChanges_;
        }
        ~FrameChange() { --view_.frameChanges_; }
        FrameChange(const FrameChange&) = delete;
        FrameChange& operator=(const FrameChange&) = delete;

        void finish()
        {
            if (view_.frameChanges_ > 1 || view_.frame_ == before_)
                return;
            if (NSView* parent = view_.superview_) {
                ViewAccess::invalidate(*parent, before_);
                ViewAccess::invalidate(*parent, view_.frame_);
            } else
                ViewAccess::invalidate(view_, view_.bounds_);
            ViewAccess::geometryChanged(view_);
            if (view_.postsFrameChanges_)
                post(NSViewFrameDidChangeNotification, view_);
        }

    private:
        NSView& view_;
        NSRect before_;
    };

    static void setFrame(NSView& self, NSRect frame)
    {
        const Ref<NSView> alive(&self);
        FrameChange change(self);
        self.setFrameOrigin(frame.origin);
        self.setFrameSize(frame.size);
        change.finish();
    }
    static void setFrameOrigin(NSView& self, NSPoint origin)
    {
        if (self.frame_.origin == origin)
            return;
        const Ref<NSView> alive(&self);
        FrameChange change(self);
        self.frame_.origin = origin;
        change.finish();
    }
    static CGFloat scaledExtent(CGFloat bounds, CGFloat oldFrame, CGFloat newFrame)
    {
        return oldFrame != 0 ? bounds * (newFrame / oldFrame) : newFrame;
    }
    static void setFrameSize(NSView& self, NSSize size)
    {
        const NSSize old = self.frame_.size;
        if (old == size)
            return;
        const Ref<NSView> alive(&self);
        FrameChange change(self);
        const NSSize oldBounds = self.bounds_.size;
        self.frame_.size = size;
        if (self.scaled_)
            self.bounds_.size = { scaledExtent(oldBounds.width, old.width, size.width),
                scaledExtent(oldBounds.height, old.height, size.height) };
        else
            self.bounds_.size = size;
        if (self.autoresizesSubviews_)
            self.resizeSubviewsWithOldSize(oldBounds);
        change.finish();
    }

    // ---- the bounds

    template <class Change> static void changeBounds(NSView& self, Change change)
    {
        const Ref<NSView> alive(&self);
        const NSRect before = self.bounds_;
        change();
        if (self.bounds_ == before)
            return;
        ViewAccess::invalidate(self, self.bounds_);
        ViewAccess::geometryChanged(self);
        ViewAccess::postBoundsChange(self);
    }
    static void setBounds(NSView& self, NSRect bounds)
    {
        changeBounds(self, [&] {
            self.bounds_ = bounds;
            self.scaled_ = bounds.size != self.frame_.size;
        });
    }
    static void setBoundsOrigin(NSView& self, NSPoint origin)
    {
        changeBounds(self, [&] { self.bounds_.origin = origin; });
    }
    static void setBoundsSize(NSView& self, NSSize size)
    {
        changeBounds(self, [&] {
            self.bounds_.size = size;
            self.scaled_ = size != self.frame_.size;
        });
    }
    static void translateOrigin(NSView& self, NSPoint point)
    {
        const NSPoint origin = self.bounds_.origin;
        self.setBoundsOrigin({ origin.x - point.x, origin.y - point.y });
    }
    static void scaleUnitSquare(NSView& self, NSSize unit)
    {
        const NSRect old = self.bounds_;
        if (unit.width == 0 || unit.height == 0)
            return;
        self.setBounds({ { old.origin.x / unit.width, old.origin.y / unit.height },
            { old.size.width / unit.width, old.size.height / unit.height } });
    }

    // ---- resizing with the superview

    static void resizeSubviews(NSView& self, NSSize oldSize)
    {
        forSubviews(self, [oldSize](NSView& view) { view.resizeWithOldSuperviewSize(oldSize); });
    }
    static void resizeWithOldSuperviewSize(NSView& self, NSSize oldSize)
    {
        if (!self.superview_ || self.autoresizingMask_ == NSViewNotSizable)
            return;
        if (!self.resizing_)
            self.resizing_ = std::make_shared<quartz::ResizeSeries>();
        const std::shared_ptr<quartz::ResizeSeries> steps = self.resizing_;
        self.setFrame(steps->next(
            self.frame_, oldSize, self.superview_->bounds_.size, self.autoresizingMask_));
        steps->settle(self.frame_);
    }
    static void setAutoresizingMask(NSView& self, NSAutoresizingMaskOptions mask)
    {
        self.autoresizingMask_ = mask;
        self.resizing_ = nullptr;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "frame", imp<frame> },
            { "setFrame:", imp<setFrame> },
            { "setFrameOrigin:", imp<setFrameOrigin> },
            { "setFrameSize:", imp<setFrameSize> },
            { "bounds", imp<bounds> },
            { "setBounds:", imp<setBounds> },
            { "setBoundsOrigin:", imp<setBoundsOrigin> },
            { "setBoundsSize:", imp<setBoundsSize> },
            { "translateOriginToPoint:", imp<translateOrigin> },
            { "scaleUnitSquareToSize:", imp<scaleUnitSquare> },
            { "isFlipped", imp<isFlipped> },
            { "resizeSubviewsWithOldSize:", imp<resizeSubviews> },
            { "resizeWithOldSuperviewSize:", imp<resizeWithOldSuperviewSize> },
            { "setAutoresizingMask:", imp<setAutoresizingMask> },
        });
        t.properties({
            computed<NSRect>("frame", nonatomic),
            computed<NSRect>("bounds", nonatomic),
            property<&NSView::autoresizingMask_>("autoresizingMask", nonatomic),
            property<&NSView::autoresizesSubviews_>("autoresizesSubviews", nonatomic),
            property<&NSView::postsFrameChanges_>(
                "postsFrameChangedNotifications", nonatomic, ivarName("_postsFrameChanges")),
            property<&NSView::postsBoundsChanges_>(
                "postsBoundsChangedNotifications", nonatomic, ivarName("_postsBoundsChanges")),
        });
    }
};
BRINDLE_RECORD(NSView, Geometry)

}
