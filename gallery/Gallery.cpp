// SPDX-License-Identifier: Apache-2.0
#include "Gallery.h"

#include "Menubar.h"
#include "Options.h"
#include "appkit/NSApplication.h"
#include "appkit/NSMenuItem.h"
#include "appkit/NSWorkspace.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSObjCRuntime.h"
#include "inspector/BRInspector.h"
#include "kit/Palette.h"
#include "pages/Pages.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryController::Methods<struct Pages> {

    static constexpr double kSidebarWidth = 200;
    static constexpr NSSize kSize { 1080, 700 };
    static constexpr NSSize kLeastSize { 980, 640 };

    // ---- making

    static void makeWindow(GalleryController& self)
    {
        const NSUInteger style = NSTitledWindowMask | NSClosableWindowMask
            | NSMiniaturizableWindowMask | NSResizableWindowMask;
        self.window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            { {}, kSize }, style, NSBackingStoreBuffered, true);
        self.window_->setTitle("Brindle Gallery"_ns);
        self.window_->setContentMinSize(kLeastSize);
        self.window_->setReleasedWhenClosed(false);
        self.window_->setDelegate(&self);
    }
    static void makeViews(GalleryController& self)
    {
        const Ref<NSView> content = self.window_->contentView();
        const NSSize size = content->bounds().size;
        self.sidebar_ = cast<GallerySidebar>(
            alloc<GallerySidebar>()->initWithFrame(NSMakeRect(0, 0, kSidebarWidth, size.height)));
        self.sidebar_->setAutoresizingMask(NSViewHeightSizable);
        const WeakRef<GalleryController> weak(&self);
        self.sidebar_->setChosen_entered(
            [weak](NSUInteger index) { maybe(weak.get())->showPage(index); },
            [weak] { maybe(weak.get())->send<"enterPage">(); });
        content->addSubview(self.sidebar_.get());

        self.split_ = cast<NSSplitView>(alloc<NSSplitView>()->initWithFrame(
            NSMakeRect(kSidebarWidth, 0, size.width - kSidebarWidth, size.height)));
        self.split_->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        self.split_->setDividerStyle(NSSplitViewDividerStyleThin);
        self.split_->setDelegate(&self);
        self.holder_ = cast<PageHolder>(alloc<PageHolder>()->initWithFrame(self.split_->bounds()));
        self.split_->addSubview(self.holder_.get());
        self.code_ = make<CodePane>();
        content->addSubview(self.split_.get());
    }
    static void open(GalleryController& self)
    {
        NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(
            &self, selector<"colorsChanged:">, NSSystemColorsDidChangeNotification, nullptr);
        takeAppearance();
        menubar().show();
        makeWindow(self);
        makeViews(self);
        BRInspector::cls().sharedInspector()->setEnabled(true);
        self.showPage(pageNamed(options().page_.get()));
        self.window_->center();
        self.window_->setFrameAutosaveName("Gallery"_ns);
        if (options().showsCode_)
            self.setShowsCode(true);
        self.window_->makeKeyAndOrderFront(&self);
    }

    // ---- pages

    /// Answers the place of a page; the first one for a name that none has.
    static NSUInteger pageNamed(NSString* name)
    {
        for (std::size_t page = 0; page < pages().size(); ++page) {
            if (name && name->isEqualToString(stringFrom(pages()[page].name).get()))
                return page;
        }
        return 0;
    }
    static void showPage(GalleryController& self, NSUInteger index)
    {
        if (index >= pages().size())
            return;
        const bool keepsKeyboard = self.sidebar_->hasKeyboard();
        self.page_ = pages()[index].make();
        self.holder_->setDocumentView(self.page_.get());
        self.sidebar_->setSelection(index);
        self.code_->showPage(pages()[index].folder);
        options().page_ = stringFrom(pages()[index].name);
        keepOptions();
        if (!keepsKeyboard)
            enterPage(self);
    }
    static void enterPage(GalleryController& self)
    {
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
    static void findPage(GalleryController& self, NSObject*) { self.sidebar_->beginSearch(); }

    // ---- appearance

    static void takeAppearance()
    {
        if (options().hasAppearance_)
            gallery::setDark(options().isDark_);
        else
            appkit::followDesktopAppearance();
    }
    static void setDark(GalleryController&, bool dark)
    {
        options().hasAppearance_ = true;
        options().isDark_ = dark;
        takeAppearance();
        keepOptions();
    }
    static void followDesktop(GalleryController&, NSObject*)
    {
        options().hasAppearance_ = false;
        takeAppearance();
        keepOptions();
    }
    static void colorsChanged(GalleryController& self, NSNotification*)
    {
        menubar().showAppearance();
        if (self.code_) // the appearance is chosen before there are views
            self.code_->takeColors();
        maybe(self.page_)->showOptions();
    }
    static void switchAppearance(GalleryController& self, NSObject*) { self.setDark(!isDark()); }

    // ---- the application and its window

    static bool validate(GalleryController&, NSMenuItem* item)
    {
        if (maybe(item)->action() == selector<"switchAppearance:">)
            item->setState(isDark() ? NSOnState : NSOffState);
        if (maybe(item)->action() == selector<"followDesktop:">)
            item->setState(options().hasAppearance_ ? NSOffState : NSOnState);
        if (maybe(item)->action() == selector<"toggleCode:">)
            item->setState(options().showsCode_ ? NSOnState : NSOffState);
        return true;
    }
    static void didLaunch(GalleryController& self, NSNotification*) { self.open(); }
    static void screensChanged(GalleryController&, NSNotification*) { menubar().settle(); }
    static void windowWillClose(GalleryController& self, NSNotification*)
    {
        NSApplication::cls().sharedApplication()->terminate(&self);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&GalleryController::window_>("window", readonly, nonatomic),
            property<&GalleryController::sidebar_>("sidebar", readonly, nonatomic),
            property<&GalleryController::code_>("code", readonly, nonatomic),
            property<&GalleryController::page_>("page", readonly, nonatomic),
        });
        t.methods({
            { "open", imp<open> },
            { "showPage:", imp<showPage> },
            { "enterPage", imp<enterPage> },
            { "pageIndex", imp<pageIndex> },
            { "turnPages:", imp<turnPages> },
            { "findPage:", imp<findPage> },
            { "setDark:", imp<setDark> },
            { "switchAppearance:", imp<switchAppearance> },
            { "followDesktop:", imp<followDesktop> },
            { "colorsChanged:", imp<colorsChanged> },
            { "validateMenuItem:", imp<validate> },
            { "applicationDidFinishLaunching:", imp<didLaunch> },
            { "applicationDidChangeScreenParameters:", imp<screensChanged> },
            { "windowWillClose:", imp<windowWillClose> },
        });
    }
};
BRINDLE_RECORD(GalleryController, Pages)

template <> struct GalleryController::Methods<struct Code> {

    static constexpr double kBelow = 260; // points of the code at first
    static constexpr double kBeside = 480;
    static constexpr double kLeast = 140; // of either part

    static bool isShown(GalleryController& self) { return self.code_->superview() == self.split_; }
    static bool hasRoomBeside(GalleryController& self)
    {
        return self.split_->bounds().size.width >= kLeastPage.width + kBeside;
    }
    static void remove(GalleryController& self)
    {
        self.split_->setAutosaveName(nullptr); // what was kept is for two parts
        self.code_->removeFromSuperview();
        self.split_->adjustSubviews();
    }
    static void add(GalleryController& self)
    {
        const bool beside = hasRoomBeside(self);
        const NSSize room = self.split_->bounds().size;
        self.split_->setVertical(beside);
        self.split_->addSubview(self.code_.get());
        self.split_->setHoldingPriority_forSubviewAtIndex(300, 1);
        self.split_->setPosition_ofDividerAtIndex(
            beside ? room.width - kBeside : room.height - kBelow, 0);
        self.split_->setAutosaveName(beside ? "GalleryCodeBeside"_ns : "GalleryCodeBelow"_ns);
        self.split_->adjustSubviews();
    }
    static void setShowsCode(GalleryController& self, bool shows)
    {
        if (isShown(self) != shows)
            shows ? add(self) : remove(self);
        options().showsCode_ = shows;
        keepOptions();
        self.page_->showOptions();
    }
    static void toggleCode(GalleryController& self, NSObject*)
    {
        self.setShowsCode(!isShown(self));
        if (!self.window_->firstResponder()->isKindOfClass(NSView::cls()))
            self.window_->makeFirstResponder(self.page_.get()); // it was in the code
    }
    static void showCodeOf(GalleryController& self, GalleryCard* card)
    {
        if (!card)
            return;
        self.setShowsCode(true);
        self.code_->showClass(NSStringFromClass(card->classObject())->UTF8String());
    }
    static void windowDidResize(GalleryController& self, NSNotification*)
    {
        if (!isShown(self) || self.split_->isVertical() == hasRoomBeside(self))
            return;
        remove(self);
        add(self);
    }
    static CGFloat constrainLeast(GalleryController&, NSSplitView*, CGFloat proposed, NSInteger)
    {
        return proposed + kLeast;
    }
    static CGFloat constrainMost(GalleryController&, NSSplitView*, CGFloat proposed, NSInteger)
    {
        return proposed - kLeast;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setShowsCode:", imp<setShowsCode> },
            { "toggleCode:", imp<toggleCode> },
            { "showCodeOf:", imp<showCodeOf> },
            { "windowDidResize:", imp<windowDidResize> },
            { "splitView:constrainMinCoordinate:ofSubviewAt:", imp<constrainLeast> },
            { "splitView:constrainMaxCoordinate:ofSubviewAt:", imp<constrainMost> },
        });
    }
};
BRINDLE_RECORD(GalleryController, Code)

Ref<GalleryController> controller()
{
    return cast<GalleryController>(NSApplication::cls().sharedApplication()->delegate());
}

}
