// SPDX-License-Identifier: Apache-2.0
#include "NSAttributedString+Geometrics.h"

#include <limits>

#include "appkit/NSLayoutManager.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr float kUnbounded = std::numeric_limits<float>::max();

    struct Geometrics {

        static NSSize sizeForBox(NSAttributedString& self, float width, float height)
        {
            if (self.length() == 0)
                return NSZeroSize;
            const Ref<NSTextContainer> container
                = alloc<NSTextContainer>()->initWithContainerSize(NSMakeSize(width, height));
            const Ref<NSTextStorage> storage
                = cast<NSTextStorage>(alloc<NSTextStorage>()->initWithAttributedString(&self));
            const Ref<NSLayoutManager> manager = make<NSLayoutManager>();
            manager->addTextContainer(container.get());
            storage->addLayoutManager(manager.get());
            manager->setHyphenationFactor(0);
            manager->glyphRangeForTextContainer(container.get());
            NSSize size = manager->usedRectForTextContainer(container.get()).size;
            const CGFloat extraHeight = manager->extraLineFragmentRect().size.height;
            if (extraHeight > 0)
                size.height -= extraHeight;
            return size;
        }
        static float heightForWidth(NSAttributedString& self, float width)
        {
            return static_cast<float>(sizeForWidth_height(self, width, kUnbounded).height);
        }
        static float widthForHeight(NSAttributedString& self, float height)
        {
            return static_cast<float>(sizeForWidth_height(self, kUnbounded, height).width);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "sizeForWidth:height:", imp<sizeForBox> },
                { "heightForWidth:", imp<heightForWidth> },
                { "widthForHeight:", imp<widthForHeight> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSAttributedString, Geometrics)

}
