// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSLayoutManager.h"

#include <algorithm>
#include <cmath>

#include "LayoutManagerPrivate.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSTextStorage.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"

namespace brindle {

NSLayoutManager::~NSLayoutManager()
{
    for (const auto& container : containers_)
        container->setLayoutManager(nullptr);
}

template <> struct NSLayoutManager::Methods<struct Setup> {

    static Ref<NSLayoutManager> init(NSLayoutManager& self)
    {
        if (!super<NSLayoutManager, "init", Ref<NSObject>>(self))
            return nullptr;
        layouts::ensure(self);
        return &self;
    }
    static Ref<NSTextStorage> textStorage(NSLayoutManager& self) { return self.storage_; }
    static void setTextStorage(NSLayoutManager& self, NSTextStorage* storage)
    {
        self.storage_ = storage;
        layouts::ensure(self).setText(storage);
    }
    static void replaceTextStorage(NSLayoutManager& self, NSTextStorage* storage)
    {
        const Ref<NSLayoutManager> alive(&self);
        if (self.storage_)
            Ref<NSTextStorage>(self.storage_)->removeLayoutManager(&self);
        maybe(storage)->addLayoutManager(&self);
    }

    static Ref<NSArray> textContainers(NSLayoutManager& self)
    {
        std::vector<NSObject*> list;
        for (const auto& container : self.containers_)
            list.push_back(container.get());
        return NSArray::cls().arrayWithObjects_count(list.data(), list.size());
    }
    static void insertTextContainer(
        NSLayoutManager& self, NSTextContainer* container, NSUInteger index)
    {
        if (!container || !container->isKindOfClass(NSTextContainer::cls()))
            return;
        const auto place = self.containers_.begin()
            + static_cast<std::ptrdiff_t>(std::min<NSUInteger>(index, self.containers_.size()));
        self.containers_.insert(place, container);
        container->setLayoutManager(&self);
        self.isStale_ = true;
    }
    static void addTextContainer(NSLayoutManager& self, NSTextContainer* container)
    {
        insertTextContainer(self, container, self.containers_.size());
    }
    static void removeTextContainer(NSLayoutManager& self, NSUInteger index)
    {
        if (index >= self.containers_.size())
            layouts::raiseIndex(self, "removeTextContainerAtIndex:", index);
        self.containers_[index]->setLayoutManager(nullptr);
        self.containers_.erase(self.containers_.begin() + static_cast<std::ptrdiff_t>(index));
        self.isStale_ = true;
    }
    static void changedGeometry(NSLayoutManager& self, NSTextContainer*)
    {
        self.isStale_ = true;
        showChange(self);
    }

    /// Views that show the text draw it anew.
    static void showChange(NSLayoutManager& self)
    {
        for (const auto& container : self.containers_) {
            const Ref<NSObject> view = container->textView();
            if (view && view->respondsToSelector(selector<"setNeedsDisplay:">))
                view->send<"setNeedsDisplay:">(true);
        }
    }

    static void processEditing(
        NSLayoutManager& self, NSTextStorage*, NSUInteger, NSRange range, NSInteger delta, NSRange)
    {
        if (self.isStale_)
            layouts::ensure(self).invalidate();
        else
            layouts::ensure(self).noteEdit(range, delta);
        showChange(self);
    }
    static void invalidateLayout(NSLayoutManager& self, NSRange range, NSRange* actual)
    {
        layouts::ensure(self).invalidate();
        if (actual)
            *actual = range;
    }
    static void setUsesFontLeading(NSLayoutManager& self, bool uses)
    {
        self.usesFontLeading_ = uses;
        self.isStale_ = true;
    }

    static Ref<NSObject> delegate(NSLayoutManager& self) { return self.delegate_.get(); }
    static void setDelegate(NSLayoutManager& self, NSObject* delegate)
    {
        self.delegate_ = delegate;
    }

    static CGFloat lineHeight(NSLayoutManager& self, NSFont* font)
    {
        return layouts::lineHeight(NSFont::textFont(font), self.usesFontLeading_);
    }
    static CGFloat baselineOffset(NSLayoutManager&, NSFont* font)
    {
        return std::round(NSFont::textFont(font).ascender());
    }

    static void table(Builder& t)
    {
        using T = NSLayoutManager;
        t.properties({
            property<&T::hyphenationFactor_>("hyphenationFactor", nonatomic),
            property<&T::usesFontLeading_>("usesFontLeading", nonatomic),
            property<&T::backgroundLayoutEnabled_>("backgroundLayoutEnabled", nonatomic),
            property<&T::allowsNonContiguousLayout_>("allowsNonContiguousLayout", nonatomic),
        });
        t.methods({
            { "init", imp<init> },
            { "textStorage", imp<textStorage> },
            { "setTextStorage:", imp<setTextStorage> },
            { "replaceTextStorage:", imp<replaceTextStorage> },
            { "textContainers", imp<textContainers> },
            { "addTextContainer:", imp<addTextContainer> },
            { "insertTextContainer:atIndex:", imp<insertTextContainer> },
            { "removeTextContainerAtIndex:", imp<removeTextContainer> },
            { "textContainerChangedGeometry:", imp<changedGeometry> },
            { "processEditingForTextStorage:edited:range:changeInLength:invalidatedRange:",
                imp<processEditing> },
            { "invalidateLayoutForCharacterRange:actualCharacterRange:", imp<invalidateLayout> },
            { "setUsesFontLeading:", imp<setUsesFontLeading> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "defaultLineHeightForFont:", imp<lineHeight> },
            { "defaultBaselineOffsetForFont:", imp<baselineOffset> },
        });
    }
};
BRINDLE_RECORD(NSLayoutManager, Setup)

namespace layouts {

    Layout& ensure(NSLayoutManager& manager)
    {
        auto& layout = ManagerAccess::layout(manager);
        if (!layout)
            layout = takeLayout();
        return *layout;
    }

    namespace {

        void addExclusions(Container& room, const NSTextContainer& container)
        {
            const Ref<NSArray> paths = container.exclusionPaths();
            for (NSBezierPath* path : each<NSBezierPath>(paths))
                room.exclusions.emplace_back(*path);
        }

    }

    Layout& ready(NSLayoutManager& manager)
    {
        Layout& layout = ensure(manager);
        if (!ManagerAccess::isStale(manager))
            return layout;
        ManagerAccess::isStale(manager) = false;
        layout.usesFontLeading = manager.usesFontLeading();
        layout.removeContainers();
        bool truncates = false;
        for (const auto& container : ManagerAccess::containers(manager)) {
            const NSSize size = container->containerSize();
            Container room { size.width, size.height, container->lineFragmentPadding(),
                container->maximumNumberOfLines(), {} };
            if (!container->isSimpleRectangularTextContainer())
                addExclusions(room, *container);
            layout.addContainer(std::move(room));
            truncates = container->lineBreakMode() >= NSLineBreakByTruncatingHead;
        }
        layout.setLastLineTruncates(truncates);
        return layout;
    }

    std::size_t placeOf(const NSLayoutManager& manager, const NSTextContainer* container)
    {
        const auto& all = ManagerAccess::containers(manager);
        const auto found = std::ranges::find_if(
            all, [container](const auto& one) { return one.get() == container; });
        return static_cast<std::size_t>(found - all.begin());
    }

}

}
