// SPDX-License-Identifier: Apache-2.0
#include "Gallery.h"

#include "Menubar.h"
#include "appkit/NSApplication.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSString.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/StringConstant.h"
#include "inspector/BRInspector.h"
#include "pages/Pages.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kSidebarWidth = 200;
    constexpr NSSize kSize { 1080, 700 };
    constexpr StringConstant<"GalleryPage"> kPageKey;
    constexpr NSSize kLeastSize { 980, 640 };

}

template <> struct GalleryController::Methods<struct Pages> {

    static void open(GalleryController& self)
    {
        menubar().show();
        const NSUInteger style = NSTitledWindowMask | NSClosableWindowMask
            | NSMiniaturizableWindowMask | NSResizableWindowMask;
        self.window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            { {}, kSize }, style, NSBackingStoreBuffered, true);
        self.window_->setTitle("Brindle Gallery"_ns);
        self.window_->setContentMinSize(kLeastSize);
        self.window_->setReleasedWhenClosed(false);
        self.window_->setDelegate(&self);

        const auto names = NSMutableArray::cls().array();
        for (const PageEntry& entry : pages())
            names->addObject(stringFrom(entry.name).get());
        const Ref<NSView> content = self.window_->contentView();
        const NSSize size = content->bounds().size;
        self.sidebar_ = cast<GallerySidebar>(
            alloc<GallerySidebar>()->initWithFrame(NSMakeRect(0, 0, kSidebarWidth, size.height)));
        self.sidebar_->setAutoresizingMask(NSViewHeightSizable);
        self.sidebar_->setNames_chosen(
            names.get(), [weak = WeakRef<GalleryController>(&self)](NSUInteger index) {
                maybe(weak.get())->showPage(index);
            });
        content->addSubview(self.sidebar_.get());
        BRInspector::cls().sharedInspector()->setEnabled(true);
        // Where and on which page the user left it; what is beyond the last page shows nothing.
        self.showPage(0);
        const NSInteger last
            = NSUserDefaults::cls().standardUserDefaults()->integerForKey(kPageKey);
        self.showPage(static_cast<NSUInteger>(last));
        self.window_->center();
        self.window_->setFrameAutosaveName("Gallery"_ns);
        self.window_->makeKeyAndOrderFront(&self);
    }

    static void showPage(GalleryController& self, NSUInteger index)
    {
        if (index >= pages().size())
            return;
        const Ref<NSView> content = self.window_->contentView();
        const NSSize size = content->bounds().size;
        maybe(self.page_)->removeFromSuperview();
        self.page_ = pages()[index].make();
        self.page_->setFrame(NSMakeRect(kSidebarWidth, 0, size.width - kSidebarWidth, size.height));
        self.page_->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        content->addSubview(self.page_.get());
        self.sidebar_->setSelection(index);
        NSUserDefaults::cls().standardUserDefaults()->setInteger_forKey(
            static_cast<NSInteger>(index), kPageKey);
        self.window_->makeFirstResponder(self.page_.get());
    }

    static NSUInteger pageIndex(GalleryController& self)
    {
        return maybe(self.sidebar_)->selection();
    }
    static void turnPages(GalleryController& self, NSInteger by)
    {
        self.showPage(self.sidebar_->selection() + static_cast<NSUInteger>(by));
    }

    static void applicationDidFinishLaunching(GalleryController& self, NSNotification*)
    {
        self.open();
    }
    static void screensChanged(GalleryController&, NSNotification*) { menubar().settle(); }
    static void windowWillClose(GalleryController& self, NSNotification*)
    {
        NSApplication::cls().sharedApplication()->terminate(&self);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryController::window_>("window", readonly, nonatomic),
            property<&GalleryController::page_>("page", readonly, nonatomic),
        });
        t.methods({
            { "open", imp<open> },
            { "showPage:", imp<showPage> },
            { "pageIndex", imp<pageIndex> },
            { "turnPages:", imp<turnPages> },
            { "applicationDidFinishLaunching:", imp<applicationDidFinishLaunching> },
            { "applicationDidChangeScreenParameters:", imp<screensChanged> },
            { "windowWillClose:", imp<windowWillClose> },
        });
    }
};
BRINDLE_RECORD(GalleryController, Pages)

}
