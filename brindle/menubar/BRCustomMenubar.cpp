// SPDX-License-Identifier: Apache-2.0
#include "BRCustomMenubar.h"

#include "BRCustomMenubarMenuButton.h"
#include "RoundedPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSImage.h"
#include "appkit/NSImageView.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow+ScreenEdge.h"
#include "controls/GWBackgroundColorView.h"
#include "controls/GWLabel.h"
#include "foundation/Exceptions.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSUserDefaults.h"
#include "graphics/NSImage+BRExtensions.h"
#include "runtime/Table.h"
#include "viewkit/NSView+MovingAndSizing.h"

#include <cmath>

namespace brindle {

using menubar::rounded;

namespace {

    constexpr double kBarHeight = 22;
    constexpr NSWindowLevel kBarLevel = 26;
    constexpr double kLabelX = 55;
    constexpr double kLabelFontSize = 17;
    constexpr double kLogoX = 20;
    constexpr double kGap = 17; // before each view at the left, and after the label
    constexpr double kRightMargin = 20;
    constexpr double kRightGap = 12;

    /// What is kept for the whole class.
    struct Shared {
        Ref<BRCustomMenubar> bar;
        Ref<NSImage> shadow;
    };
    Shared& shared()
    {
        static auto* const shared = new Shared; // windows may end while the process does
        return *shared;
    }

}

template <> struct BRCustomMenubar::Methods<struct Bar> {

    using Self = BRCustomMenubar;

    // ---- making

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(Self::cls()))
            shared().shadow = NSImage::cls().imageNamed("menuShadowGradient.png"_ns);
    }
    static Ref<Self> sharedBar(Class& self)
    {
        if (!shared().bar)
            self.send<"alloc", Ref<NSObject>>()->init();
        return shared().bar;
    }
    static Ref<NSWindow> initWithContentRect(
        Self& self, NSRect content, NSWindowStyleMask style, NSBackingStoreType backing, bool defer)
    {
        return super<Self, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
            self, content, style, backing, defer);
    }
    static Ref<NSObject> init(Self& self)
    {
        if (!self.initWithContentRect_styleMask_backing_defer(
                {}, NSBorderlessWindowMask, NSBackingStoreBuffered, true))
            return nullptr;
        shared().bar = &self;
        return &self;
    }
    static Ref<Self> initWithTheme(Self& self, std::int32_t theme)
    {
        return self.send<"initWithMenubarTheme:spacingMode:", Ref<Self>>(
            theme, std::int32_t { BRMenubarSpacingStandard });
    }
    static Ref<Self> initWithThemeAndSpacing(Self& self, std::int32_t theme, std::int32_t spacing)
    {
        if (!self.init())
            return nullptr;
        self.send<"setMenubarTheme:">(theme);
        self.send<"setMenubarSpacingMode:">(spacing);
        return &self;
    }
    static void awakeFromNib(Self&) { }

    static void setTheme(Self& self, std::int32_t theme)
    {
        self.menubarTheme_ = theme;
        if (theme != BRMenubarThemeOverlay)
            return;
        self.setOpaque(false);
        self.setHasShadow(false);
        self.setBackgroundColor(NSColor::cls().clearColor().get());
    }

    // ---- geometry

    static double shadowHeight(Self& self)
    {
        return self.menubarShadow() ? maybe(shared().shadow)->size().height : 0;
    }
    static double gap(Self& self)
    {
        return self.menubarSpacingMode() == BRMenubarSpacingStandard ? kGap : 0;
    }
    static bool hasCustomSize(Self& self)
    {
        return !CGRectEqualToRect(self.customScreenSize(), NSRect {});
    }
    static NSRect mainScreenFrame() { return maybe(NSScreen::cls().mainScreen())->frame(); }

    // The width may be custom; the height that y is counted from is the main screen's all the same.
    static NSRect setFrame(Self& self)
    {
        const NSRect screen = mainScreenFrame();
        const bool custom = hasCustomSize(self);
        const NSRect reference = custom ? self.customScreenSize() : mainScreenFrame();
        const double height = kBarHeight + shadowHeight(self);
        const NSRect frame
            = NSMakeRect(0, screen.size.height - height, reference.size.width, height);
        self.setFrame_display(frame, true);
        if (custom) {
            self.menubarViewsSetFrame(frame);
            self.updateMenubarViewsToCustom();
        }
        return frame;
    }
    static void setViewsFrame(Self& self, NSRect bar)
    {
        const double x = NSMaxX(maybe(self.appMenuLabel_)->frame()) + gap(self);
        const double parts = self.menubarTheme() == BRMenubarThemeOverlay ? 2 : 1;
        // As high as the bar's window though it begins above the shadow: it reaches that much over the top.
        const NSRect frame = NSMakeRect(x, bar.origin.y + shadowHeight(self),
            rounded(bar.size.width / parts) - x, bar.size.height);
        maybe(self.menubarViewsWindow_)->setFrame_display(frame, true);
    }

    // ---- building

    static void loadBar(Self& self) { self.send<"_setup">(); }
    static void setup(Self& self)
    {
        const bool custom = self.menubarTheme() == BRMenubarThemeCustom;
        self.setHidesOnDeactivate(true);
        self.setIgnoresMouseEvents(true);
        self.setLevel(kBarLevel);
        self.setMovable(false);
        const NSRect frame = self.setFrame();
        if (self.menubarShadow())
            addShadow(self, frame.size.width);
        addLabel(self, frame.size.height, custom);
        if (custom)
            addLogo(self, frame.size.height);
        makeViewsWindow(self);
        self.menubarViewsSetFrame(frame);
        setReservedScreenEdge(
            custom ? static_cast<NSWindow&>(self) : *self.menubarViewsWindow_, kBarHeight);
        if (custom)
            self.addChildWindow_ordered(self.menubarViewsWindow_.get(), NSWindowAbove);
        self.addChildWindow_ordered(self.menubarViewsWindow_.get(), NSWindowAbove);
        if (custom)
            self.orderFront(nullptr);
        self.menubarViewsWindow_->orderFront(nullptr);
    }
    static void addShadow(Self& self, double width)
    {
        self.setOpaque(false);
        self.setBackgroundColor(NSColor::cls().clearColor().get());
        const double height = shadowHeight(self);
        const Ref<NSView> black = alloc<GWBackgroundColorView>()->initWithFrame(
            NSMakeRect(0, height, width, kBarHeight));
        static_cast<GWBackgroundColorView&>(*black).setBackgroundColor(
            NSColor::cls().blackColor().get());
        const Ref<NSView> strip
            = alloc<NSImageView>()->initWithFrame(NSMakeRect(0, 0, width, height));
        static_cast<NSImageView&>(*strip).setImage(shared().shadow.get());
        static_cast<NSImageView&>(*strip).setImageScaling(NSImageScaleAxesIndependently);
        self.contentView()->addSubview(black.get());
        self.contentView()->addSubview(strip.get());
    }
    static void addLabel(Self& self, double height, bool custom)
    {
        self.appMenuLabel_ = make<GWLabel>();
        GWLabel& label = *self.appMenuLabel_;
        label.setFont(
            NSFont::cls().fontWithName_size("HelveticaNeue-Bold"_ns, kLabelFontSize).get());
        // The shell's folder leans on this one, so its operation is sent by name.
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSString> name = application->send<"appName", Ref<NSString>>();
        label.setStringValue(name.get());
        label.sizeToFit();
        if (custom) {
            label.setBackgroundColor(NSColor::cls().blackColor().get());
            self.contentView()->addSubview(&label);
        }
        setFrameOriginX(label, kLabelX);
        setFrameOriginY(label, rounded(height - kBarHeight + 1));
        label.setTextColor(NSColor::cls().whiteColor().get());
    }
    static void addLogo(Self& self, double height)
    {
        self.appleImageView_ = make<NSImageView>();
        NSImageView& logo = *self.appleImageView_;
        logo.setImage(imageNamedFromBrindle(NSImage::cls(), "apple.png"_ns).get());
        const NSSize size = maybe(logo.image())->size();
        setFrameSizeWidth(logo, size.width);
        setFrameSizeHeight(logo, size.height);
        setFrameOriginX(logo, kLogoX);
        setFrameOriginY(logo, height - rounded(size.height * 0.5 + kBarHeight / 2));
        self.contentView()->addSubview(&logo);
    }
    static void makeViewsWindow(Self& self)
    {
        self.menubarViewsWindow_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            {}, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        NSWindow& window = *self.menubarViewsWindow_;
        window.setBackgroundColor(self.backgroundColor().get());
        window.setOpaque(self.isOpaque());
        window.setLevel(self.level() + 1);
        window.setHidesOnDeactivate(true);
        window.setIgnoresMouseEvents(false);
        window.setMovable(false);
    }
    static void orderFront(Self& self)
    {
        if (self.menubarTheme() == BRMenubarThemeOverlay)
            maybe(self.menubarViewsWindow_)->orderFrontRegardless();
        else
            self.orderFrontRegardless();
    }

    // ---- views

    static Ref<NSView> viewsContent(Self& self)
    {
        return maybe(self.menubarViewsWindow_)->contentView();
    }
    // The offset is never taken back: what comes later to the right end stands left of what was ever there.
    static void moveToRightEnd(Self& self, NSView& view)
    {
        self.rightAlignOffset_ += frameSizeWidth(view);
        const double end = NSMaxX(maybe(viewsContent(self))->bounds());
        setFrameOriginX(view, end - kRightMargin - self.rightAlignOffset_);
        self.rightAlignOffset_ += kRightGap;
    }
    static void darken(NSView& view)
    {
        const bool dark
            = NSUserDefaults::cls().standardUserDefaults()->stringForKey("AppleInterfaceStyle"_ns)
            != nullptr;
        if (dark && view.isKindOfClass(BRCustomMenubarMenuButton::cls()))
            static_cast<BRCustomMenubarMenuButton&>(view).setDarkMode(true);
    }
    static void addView(Self& self, NSView* view)
    {
        self.addMenubarView_alignment(view, BRMenubarViewAlignmentLeft);
    }
    static void addViewAligned(Self& self, NSView* view, std::int32_t alignment)
    {
        if (!view || !view->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException",
                "*** -[BRCustomMenubar addMenubarView:alignment:]: not a view");
        const Ref<NSView> alive(view);
        double x = 0;
        if (maybe(self.menubarViews())->count() == 0)
            self.setMenubarViews(make<NSMutableArray>().get());
        else {
            const Ref<NSView> last = cast<NSView>(self.menubarViews()->lastObject());
            x = NSMaxX(last->frame())
                + gap(self); // behind the last one even where that stands at the right
        }
        self.menubarViews()->addObject(view);
        darken(*view);
        if (alignment != BRMenubarViewAlignmentRight) {
            maybe(viewsContent(self))->addSubview(view);
            setFrameOriginY(*view, 0);
            setFrameOriginX(*view, x);
            return;
        }
        moveToRightEnd(self, *view);
        maybe(viewsContent(self))->addSubview(view);
    }
    /// Answers the views as they are now: what is done to one may add and remove others.
    static Ref<NSArray> viewsNow(Self& self)
    {
        const Ref<NSMutableArray> views = self.menubarViews();
        return views ? cast<NSArray>(views->copy()) : make<NSArray>();
    }
    static void moveOverflow(Self& self)
    {
        const double width = maybe(self.menubarViewsWindow_)->frame().size.width;
        for (NSView* view : each<NSView>(viewsNow(self))) {
            if (NSMaxX(view->frame()) > width)
                moveToRightEnd(self, *view);
        }
    }

    // ---- keys

    static bool performKeyEquivalent(Self& self, NSEvent* event)
    {
        for (NSView* view : each<NSView>(viewsNow(self))) {
            if (!view->isKindOfClass(BRCustomMenubarMenuButton::cls()) || !view->menu())
                continue;
            if (static_cast<BRCustomMenubarMenuButton&>(*view).menuKeyEquivalent(event))
                return true;
        }
        return false;
    }
    static bool yes(Self&) { return true; }
    static void nothing(Self&, NSObject*) { }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "sharedCustomMenubar", imp<sharedBar> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithMenubarTheme:", imp<initWithTheme> },
            { "initWithMenubarTheme:spacingMode:", imp<initWithThemeAndSpacing> },
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "awakeFromNib", imp<awakeFromNib> },
            { "load", imp<loadBar> },
            { "_setup", imp<setup> },
            { "setMenubarTheme:", imp<setTheme> },
            { "setFrame", imp<setFrame> },
            { "menubarViewsSetFrame:", imp<setViewsFrame> },
            { "updateMenubarViewsToCustom", imp<moveOverflow> },
            { "addMenubarView:", imp<addView> },
            { "addMenubarView:alignment:", imp<addViewAligned> },
            { "orderFront", imp<orderFront> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "canBecomeKeyWindow", imp<yes> },
            { "canBecomeMainWindow", imp<yes> },
            { "menuWillOpen:", imp<nothing> },
            { "menuDidClose:", imp<nothing> },
            { "menuDidBeginTracking:", imp<nothing> },
            { "attachMenuToMainWindow:", imp<nothing> },
        });
        t.ivars({
            ivar<&Self::appleImageView_>("appleImageView"),
            ivar<&Self::appMenuLabel_>("appMenuLabel"),
            ivar<&Self::menubarViewsWindow_>("_menubarViewsWindow"),
            ivar<&Self::rightAlignOffset_>("rightAlignOffset"),
        });
        t.properties({
            property<&Self::menubarShadow_>("menubarShadow"),
            property<&Self::menubarTheme_>("menubarTheme"),
            property<&Self::menubarSpacingMode_>("menubarSpacingMode"),
            property<&Self::menubarViews_>("menubarViews"),
            property<&Self::customScreenSize_>("customScreenSize"),
        });
    }
};
BRINDLE_RECORD(BRCustomMenubar, Bar)

}
