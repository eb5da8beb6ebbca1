// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TextLayoutPrivate.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSTextContainer.h"
#include "runtime/Table.h"

/// What the sources of the layout manager share.
namespace brindle {

/// The way to a manager's own fields.
struct ManagerAccess {
    static layouts::LayoutOwner& layout(NSLayoutManager& manager) { return manager.layout_; }
    static bool& isStale(NSLayoutManager& manager) { return manager.isStale_; }
    static const std::vector<Ref<NSTextContainer>>& containers(const NSLayoutManager& manager)
    {
        return manager.containers_;
    }
};

namespace layouts {

    /// Answers the layout as it is.
    Layout& ensure(NSLayoutManager& manager);
    /// Answers the layout with its containers as they are now.
    Layout& ready(NSLayoutManager& manager);
    /// Answers a container's place; the number of containers for one that is not there.
    std::size_t placeOf(const NSLayoutManager& manager, const NSTextContainer* container);
    [[noreturn]] void raiseIndex(
        const NSLayoutManager& manager, const char* operation, NSUInteger index);

}

}
