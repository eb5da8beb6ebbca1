// SPDX-License-Identifier: Apache-2.0
#include "NSScrollView+GWExtensions.h"

#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "quartz/CGGeometry.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct ScrollViewExtensions {

        // Each value lies under the selector of its getter.
        template <Text Getter> static Ref<NSObject> value(NSScrollView& self)
        {
            return objc_getAssociatedObject(&self, selector<Getter>.key());
        }
        template <Text Getter> static void setValue(NSScrollView& self, NSObject* value)
        {
            objc_setAssociatedObject(
                &self, selector<Getter>.key(), value, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
        }

        // ---- the position

        static Ref<NSView> document(NSScrollView& self) { return self.documentView(); }
        static CGFloat middle(NSScrollView& self)
        {
            return CGRectGetMidY(maybe(self.documentView())->bounds());
        }
        static double portion(NSScrollView& self)
        {
            return CGRectGetMidY(self.documentVisibleRect()) / middle(self);
        }
        static void scrollTo(NSScrollView& self, CGFloat y)
        {
            maybe(self.documentView())->send<"scrollPoint:">(NSPoint { 0, y });
        }
        static void setPortion(NSScrollView& self, double portion)
        {
            const NSRect shown = maybe(self.contentView())->bounds();
            scrollTo(self, middle(self) * portion - CGRectGetHeight(shown) * 0.5);
        }
        static void toTop(NSScrollView& self) { scrollTo(self, 0); }
        static void toBottom(NSScrollView& self)
        {
            scrollTo(self, CGRectGetMaxY(maybe(self.documentView())->bounds()));
        }
        static double width(NSScrollView& self)
        {
            return NSScroller::cls().scrollerWidthForControlSize_scrollerStyle(
                maybe(self.verticalScroller())->controlSize(), self.scrollerStyle());
        }

        // ---- following it

        static void observe(NSScrollView& self, const Block<void(NSNotification*)>& code)
        {
            const Ref<NSClipView> clip = self.contentView();
            maybe(clip)->setPostsBoundsChangedNotifications(true);
            NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
                NSViewBoundsDidChangeNotification, clip.get(), nullptr, code);
        }
        static double settlingDelay(NSScrollView& self)
        {
            constexpr double kDefaultSeconds = 0.38;
            const double delay = didScrollDelay(self);
            return delay == 0 ? kDefaultSeconds : delay;
        }

        static Block<void(double)> didScroll(NSScrollView& self)
        {
            return static_cast<Closure<void(double)>*>(value<"didScrollBlock">(self).get());
        }
        static void setDidScroll(NSScrollView& self, Closure<void(double)>* lent)
        {
            const Block<void(double)> code(lent);
            setValue<"didScrollBlock">(self, lent);
            if (!code)
                return;
            observe(self, [view = Ref<NSScrollView>(&self), code](NSNotification*) {
                timeoutToBlock_afterDelay(
                    view, [view, code] { code(scrollPortionY(view)); }, settlingDelay(*view));
            });
        }
        static double delay(NSScrollView& self)
        {
            const Ref<NSObject> number = value<"didScrollDelay">(self);
            return maybe(number)->send<"floatValue", float>();
        }
        static void setDelay(NSScrollView& self, double seconds)
        {
            setValue<"didScrollDelay">(
                self, NSNumber::cls().numberWithFloat(static_cast<float>(seconds)).get());
        }

        static Block<void(NSRect)> scrolling(NSScrollView& self)
        {
            return static_cast<Closure<void(NSRect)>*>(value<"scrollingBlock">(self).get());
        }
        static void setScrolling(NSScrollView& self, Closure<void(NSRect)>* lent)
        {
            const Block<void(NSRect)> code(lent);
            setValue<"scrollingBlock">(self, lent);
            if (!code)
                return;
            observe(self, [view = WeakRef<NSScrollView>(&self), code](NSNotification*) {
                const Ref<NSScrollView> present = view.get();
                code(maybe(present)->documentVisibleRect());
            });
        }

        static void table(Builder& t)
        {
            t.methods({
                { "scrollDocumentView", imp<document> },
                { "scrollPortionY", imp<portion> },
                { "setScrollPortionY:", imp<setPortion> },
                { "scrollToTop", imp<toTop> },
                { "scrollToBottom", imp<toBottom> },
                { "scrollerWidth", imp<width> },
                { "didScrollBlock", imp<didScroll> },
                { "setDidScrollBlock:", imp<setDidScroll> },
                { "didScrollDelay", imp<delay> },
                { "setDidScrollDelay:", imp<setDelay> },
                { "scrollingBlock", imp<scrolling> },
                { "setScrollingBlock:", imp<setScrolling> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSScrollView, ScrollViewExtensions)

}
