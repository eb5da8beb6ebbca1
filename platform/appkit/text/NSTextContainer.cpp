// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextContainer.h"

#include <cmath>
#include <vector>

#include "appkit/NSBezierPath.h"
#include "appkit/NSLayoutManager.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "foundation/NSCoder.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextContainer::Methods<struct Shape> {

    static Ref<NSTextContainer> initWithContainerSize(NSTextContainer& self, NSSize size)
    {
        if (!super<NSTextContainer, "init", Ref<NSObject>>(self))
            return nullptr;
        self.size_ = size;
        return &self;
    }
    static Ref<NSTextContainer> initWithSize(NSTextContainer& self, NSSize size)
    {
        return self.initWithContainerSize(size);
    }
    static Ref<NSTextContainer> init(NSTextContainer& self)
    {
        return self.initWithContainerSize(NSZeroSize);
    }

    static void tell(NSTextContainer& self)
    {
        maybe(self.layoutManager_)->textContainerChangedGeometry(&self);
    }

    static NSSize containerSize(NSTextContainer& self) { return self.size_; }
    static void setContainerSize(NSTextContainer& self, NSSize size)
    {
        if (NSEqualSizes(self.size_, size))
            return;
        self.size_ = size;
        tell(self);
    }
    static NSSize size(NSTextContainer& self) { return self.containerSize(); }
    static void setSize(NSTextContainer& self, NSSize size) { self.setContainerSize(size); }

    static void setPadding(NSTextContainer& self, CGFloat points)
    {
        self.lineFragmentPadding_ = std::isfinite(points) && points > 0 ? points : 0;
        tell(self);
    }
    static void setLines(NSTextContainer& self, NSUInteger lines)
    {
        self.maximumNumberOfLines_ = lines;
        tell(self);
    }
    static void setMode(NSTextContainer& self, NSLineBreakMode mode)
    {
        self.lineBreakMode_ = mode;
        tell(self);
    }

    static Ref<NSLayoutManager> layoutManager(NSTextContainer& self) { return self.layoutManager_; }
    static void setLayoutManager(NSTextContainer& self, NSLayoutManager* manager)
    {
        self.layoutManager_ = manager;
    }
    static Ref<NSArray> exclusionPaths(NSTextContainer& self)
    {
        return self.exclusionPaths_ ? self.exclusionPaths_ : make<NSArray>();
    }
    static void setExclusionPaths(NSTextContainer& self, NSArray* paths)
    {
        std::vector<Ref<NSObject>> copies;
        for (NSObject* path : each<NSObject>(Ref<NSArray>(paths))) {
            if (path->isKindOfClass(NSBezierPath::cls()))
                copies.push_back(path->copy());
        }
        std::vector<NSObject*> list;
        for (const auto& copy : copies)
            list.push_back(copy.get());
        self.exclusionPaths_ = list.empty()
            ? Ref<NSArray>()
            : NSArray::cls().arrayWithObjects_count(list.data(), list.size());
        tell(self);
    }
    static bool isSimple(NSTextContainer& self) { return !self.exclusionPaths_; }
    static bool containsPoint(NSTextContainer& self, NSPoint point)
    {
        if (!NSPointInRect(point, { NSZeroPoint, self.containerSize() }))
            return false;
        const Ref<NSArray> paths = self.exclusionPaths();
        for (NSBezierPath* path : each<NSBezierPath>(paths)) {
            if (path->containsPoint(point))
                return false;
        }
        return true;
    }

    static void table(Builder& t)
    {
        using T = NSTextContainer;
        t.properties({
            property<&T::lineFragmentPadding_>("lineFragmentPadding", nonatomic),
            property<&T::maximumNumberOfLines_>("maximumNumberOfLines", nonatomic),
            property<&T::lineBreakMode_>("lineBreakMode", nonatomic),
            property<&T::widthTracksTextView_>("widthTracksTextView", nonatomic),
            property<&T::heightTracksTextView_>("heightTracksTextView", nonatomic),
            property<&T::textView_>("textView", nonatomic),
        });
        t.methods({
            { "init", imp<init> },
            { "initWithContainerSize:", imp<initWithContainerSize> },
            { "initWithSize:", imp<initWithSize> },
            { "containerSize", imp<containerSize> },
            { "setContainerSize:", imp<setContainerSize> },
            { "size", imp<size> },
            { "setSize:", imp<setSize> },
            { "setLineFragmentPadding:", imp<setPadding> },
            { "setMaximumNumberOfLines:", imp<setLines> },
            { "setLineBreakMode:", imp<setMode> },
            { "layoutManager", imp<layoutManager> },
            { "setLayoutManager:", imp<setLayoutManager> },
            { "exclusionPaths", imp<exclusionPaths> },
            { "setExclusionPaths:", imp<setExclusionPaths> },
            { "isSimpleRectangularTextContainer", imp<isSimple> },
            { "containsPoint:", imp<containsPoint> },
        });
    }
};
BRINDLE_RECORD(NSTextContainer, Shape)

}
