// SPDX-License-Identifier: Apache-2.0
#include "NSView+DisableSubviews.h"

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct DisableSubviews {

        using Filter = Block<bool(NSView*)>;

        static bool isOfType(NSView& view, Class* type) { return view.isKindOfClass(type); }
        static bool isInRange(NSView& view, NSRange tags)
        {
            const auto tag = static_cast<NSUInteger>(view.tag());
            return tag >= tags.location && tag - tags.location < tags.length;
        }
        static bool isAmong(NSView& view, const Ref<NSObject>& tags)
        {
            const Ref<NSNumber> tag = NSNumber::cls().numberWithInteger(view.tag());
            return maybe(tags)->send<"containsObject:", bool>(tag.get());
        }

        static void byFilter(NSView& self, bool disable, Closure<bool(NSView*)>* filter)
        {
            const Ref<NSArray> inside = self.subviews(); // the filter or a view may change the list
            for (NSView* view : each<NSView>(inside)) {
                disableSubviews_filter(*view, disable, filter);
                if (filter && !call(filter, view))
                    continue;
                if (view->respondsToSelector(selector<"setEnabled:">))
                    view->send<"setEnabled:">(!disable);
            }
        }
        static void all(NSView& self, bool disable)
        {
            disableSubviews_filter(self, disable, nullptr);
        }
        static void byType(NSView& self, bool disable, Class* type)
        {
            disableSubviews_filter(
                self, disable, [=](NSView* view) { return isOfType(*view, type); });
        }
        static void byRange(NSView& self, bool disable, NSRange tags)
        {
            disableSubviews_filter(
                self, disable, [=](NSView* view) { return isInRange(*view, tags); });
        }
        static void byEnds(NSView& self, bool disable, NSInteger start, NSInteger end)
        {
            const auto first = static_cast<NSUInteger>(start);
            disableSubviews_inTagRange(
                self, disable, { first, static_cast<NSUInteger>(end) - first + 1 });
        }
        static void byTags(NSView& self, bool disable, NSObject* tags)
        {
            disableSubviews_filter(self, disable,
                [tags = Ref<NSObject>(tags)](NSView* view) { return isAmong(*view, tags); });
        }
        static void byTypeAndRange(NSView& self, bool disable, Class* type, NSRange tags)
        {
            disableSubviews_filter(self, disable,
                [=](NSView* view) { return isOfType(*view, type) && isInRange(*view, tags); });
        }
        static void byTypeAndTags(NSView& self, bool disable, Class* type, NSObject* tags)
        {
            disableSubviews_filter(self, disable, [type, tags = Ref<NSObject>(tags)](NSView* view) {
                return isOfType(*view, type) && isAmong(*view, tags);
            });
        }

        static void table(Builder& t)
        {
            t.methods({
                { "disableSubviews:filter:", imp<byFilter> },
                { "disableSubviews:", imp<all> },
                { "disableSubviews:ofType:", imp<byType> },
                { "disableSubviews:inTagRange:", imp<byRange> },
                { "disableSubviews:startTag:endTag:", imp<byEnds> },
                { "disableSubviews:withTags:", imp<byTags> },
                { "disableSubviews:ofType:inTagRange:", imp<byTypeAndRange> },
                { "disableSubviews:ofType:withTags:", imp<byTypeAndTags> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSView, DisableSubviews)

}
