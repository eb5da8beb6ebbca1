// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSSplitView.h"
#include "appkit/NSWindow.h"
#include "kit/Card.h"
#include "kit/CodePane.h"
#include "kit/PageHolder.h"
#include "kit/Sidebar.h"
#include "pages/Page.h"

namespace gallery {

/// The application's delegate: it makes the window with the sidebar and shows one page at a time, and the page's code where
/// that is wanted. What the user chooses is kept in the options.
class GalleryController : public brindle::NSObject {
    BRINDLE_OBJECT(GalleryController, brindle::NSObject)

public:
    brindle::Ref<brindle::NSWindow> window() const
    {
        return send<"window", brindle::Ref<brindle::NSWindow>>();
    }
    brindle::Ref<GalleryPage> page() const { return send<"page", brindle::Ref<GalleryPage>>(); }
    brindle::Ref<GallerySidebar> sidebar() const
    {
        return send<"sidebar", brindle::Ref<GallerySidebar>>();
    }
    brindle::Ref<CodePane> code() const { return send<"code", brindle::Ref<CodePane>>(); }
    void open() { send<"open">(); }
    /// Shows a page in place of the present one; nothing happens beyond the last one.
    void showPage(brindle::NSUInteger index) { send<"showPage:">(index); }
    /// Answers which page is shown.
    brindle::NSUInteger pageIndex() const { return send<"pageIndex", brindle::NSUInteger>(); }
    /// Turns to the page this many after the present one.
    void turnPages(brindle::NSInteger by) { send<"turnPages:">(by); }
    /// Shows the sources of the present page below it, or beside it in a window that is wide enough, or hides them.
    void setShowsCode(bool shows) { send<"setShowsCode:">(shows); }
    /// Shows where the class of a card gets its methods.
    void showCodeOf(GalleryCard* card) { send<"showCodeOf:">(card); }
    /// Chooses the dark appearance, or the light one, for all windows.
    void setDark(bool dark) { send<"setDark:">(dark); }
    /// Lets the appearance be the desktop's, as it is before one is chosen.
    void followDesktop() { send<"followDesktop:">(static_cast<brindle::NSObject*>(nullptr)); }

private:
    brindle::Ref<brindle::NSWindow> window_;
    brindle::Ref<GallerySidebar> sidebar_;
    brindle::Ref<brindle::NSSplitView> split_;
    brindle::Ref<PageHolder> holder_;
    brindle::Ref<CodePane> code_;
    brindle::Ref<GalleryPage> page_;
};

/// The delegate of the application.
brindle::Ref<GalleryController> controller();

}
