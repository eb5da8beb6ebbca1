// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"
#include "kit/Sidebar.h"
#include "pages/Page.h"

namespace gallery {

/// The application's delegate: it makes the window with the sidebar and shows one page at a time.
class GalleryController : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryController, brindle::NSObject)

public:
    brindle::Ref<brindle::NSWindow> window() const
    {
        return send<"window", brindle::Ref<brindle::NSWindow>>();
    }
    brindle::Ref<GalleryPage> page() const { return send<"page", brindle::Ref<GalleryPage>>(); }
    void open() { send<"open">(); }
    /// Shows a page in place of the present one; nothing happens beyond the last one.
    void showPage(brindle::NSUInteger index) { send<"showPage:">(index); }
    /// Answers which page is shown.
    brindle::NSUInteger pageIndex() const { return send<"pageIndex", brindle::NSUInteger>(); }
    /// Turns to the page this many after the present one.
    void turnPages(brindle::NSInteger by) { send<"turnPages:">(by); }

private:
    brindle::Ref<brindle::NSWindow> window_;
    brindle::Ref<GallerySidebar> sidebar_;
    brindle::Ref<GalleryPage> page_;
};

}
