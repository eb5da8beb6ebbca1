// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

#include "OpenGallery.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "kit/Chip.h"

namespace gallery {

/// Answers the first view that a function takes, in a view and below it; nil for none.
template <class Take>
brindle::Ref<brindle::NSView> findView(const brindle::Ref<brindle::NSView>& view, const Take& take)
{
    for (brindle::NSView* below : brindle::each<brindle::NSView>(view->subviews())) {
        brindle::Ref<brindle::NSView> found(below);
        if (!take(*below))
            found = findView(found, take);
        if (found)
            return found;
    }
    return nullptr;
}

/// Answers the first view of a class on the present page.
template <class View> brindle::Ref<View> part(const OpenGallery& gallery)
{
    const brindle::Ref<brindle::NSView> found = findView(gallery.controller->page(),
        [](const brindle::NSView& view) { return view.isKindOfClass(View::cls()); });
    if (!found)
        throw std::logic_error("no such part on the page");
    return brindle::cast<View>(found);
}

/// Presses the chip of a title on the present page.
inline void press(OpenGallery& gallery, const std::string& title)
{
    const brindle::Ref<brindle::NSView> found
        = findView(gallery.controller->page(), [&](const brindle::NSView& view) {
              return view.isKindOfClass(GalleryChip::cls())
                  && brindle::utf8Of(static_cast<const GalleryChip&>(view).title()) == title;
          });
    if (!found)
        throw std::logic_error("no such chip on the page");
    brindle::cast<GalleryChip>(found)->press();
    gallery.screen.process();
}

}
