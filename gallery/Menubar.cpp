// SPDX-License-Identifier: Apache-2.0
#include "Menubar.h"

#include "Gallery.h"
#include "Options.h"
#include "appkit/NSApplication.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "appkit/NSMenu.h"
#include "appkit/NSMenuItem.h"
#include "foundation/NSArray.h"
#include "inspector/BRInspector.h"
#include "kit/Palette.h"
#include "pages/Pages.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    /// A round or angular sign in the size of a menubar's images, drawn in black; dark bars show it white.
    Ref<NSImage> sign(void (*draw)())
    {
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            { 16, 16 }, false, [draw](NSRect) {
                NSColor::cls().blackColor()->set();
                draw();
                return true;
            });
    }
    void strokeLines(std::initializer_list<NSRect> lines)
    {
        for (const NSRect& line : lines)
            NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(line, 0.75, 0.75)->fill();
    }
    void drawSheet()
    {
        const Ref<NSBezierPath> sheet
            = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
                NSMakeRect(3.5, 1.5, 9, 13), 1.5, 1.5);
        sheet->setLineWidth(1.5);
        sheet->stroke();
        strokeLines({ NSMakeRect(6, 10, 4, 1.5), NSMakeRect(6, 7, 4, 1.5) });
    }
    void drawCaret()
    {
        strokeLines({ NSMakeRect(7.25, 2, 1.5, 12), NSMakeRect(5, 1.5, 6, 1.5),
            NSMakeRect(5, 13, 6, 1.5) });
    }
    void drawEye()
    {
        const Ref<NSBezierPath> lid
            = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(1.5, 4, 13, 8));
        lid->setLineWidth(1.5);
        lid->stroke();
        NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(5.75, 5.75, 4.5, 4.5))->fill();
    }
    void drawWindows()
    {
        const Ref<NSBezierPath> frame
            = NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(
                NSMakeRect(1.75, 2.75, 12.5, 10.5), 2, 2);
        frame->setLineWidth(1.5);
        frame->stroke();
        strokeLines({ NSMakeRect(2, 9.5, 12, 1.5) });
    }
    void drawMark()
    {
        const Ref<NSBezierPath> ring
            = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(1.75, 1.75, 12.5, 12.5));
        ring->setLineWidth(1.5);
        ring->stroke();
        strokeLines({ NSMakeRect(7.25, 4.5, 1.5, 4.5), NSMakeRect(7.25, 10, 1.5, 1.5) });
    }
    void drawMoon()
    {
        const Ref<NSBezierPath> moon
            = NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(2, 2, 12, 12));
        moon->appendBezierPathWithOvalInRect(NSMakeRect(6.5, 4, 9, 9));
        moon->setWindingRule(NSEvenOddWindingRule);
        moon->fill();
    }

    Ref<NSMenu> menuTitled(const char* title)
    {
        return alloc<NSMenu>()->initWithTitle(stringFrom(title).get());
    }
    /// Adds an item whose action goes along the responder chain.
    Ref<NSMenuItem> add(NSMenu& menu, const char* title, SEL action, const char* key = "",
        NSEventModifierFlags more = 0)
    {
        Ref<NSMenuItem> item = menu.addItemWithTitle_action_keyEquivalent(
            stringFrom(title).get(), action, stringFrom(key).get());
        item->setKeyEquivalentModifierMask(NSCommandKeyMask | more);
        return item;
    }
    void separate(NSMenu& menu) { menu.addItem(NSMenuItem::cls().separatorItem().get()); }

    Ref<NSMenu> fileMenu(GalleryMenubar& target)
    {
        Ref<NSMenu> menu = menuTitled("File");
        add(*menu, "New Window", selector<"newWindow:">, "n")->setTarget(&target);
        separate(*menu);
        add(*menu, "Close", selector<"performClose:">, "w");
        add(*menu, "Quit", selector<"terminate:">, "q");
        return menu;
    }
    Ref<NSMenu> editMenu()
    {
        Ref<NSMenu> menu = menuTitled("Edit");
        add(*menu, "Undo", selector<"undo:">, "z");
        add(*menu, "Redo", selector<"redo:">, "z", NSShiftKeyMask);
        separate(*menu);
        add(*menu, "Cut", selector<"cut:">, "x");
        add(*menu, "Copy", selector<"copy:">, "c");
        add(*menu, "Paste", selector<"paste:">, "v");
        add(*menu, "Select All", selector<"selectAll:">, "a");
        separate(*menu);
        add(*menu, "Find a Page", selector<"findPage:">, "f");
        return menu;
    }
    Ref<NSMenu> viewMenu(GalleryMenubar& target)
    {
        const Ref<NSMenu> page = menuTitled("Page");
        NSInteger tag = 0;
        for (const PageEntry& entry : pages()) {
            const std::string key = tag < 9 ? std::to_string(tag + 1) : std::string();
            const Ref<NSMenuItem> item
                = add(*page, entry.name, selector<"choosePage:">, key.c_str());
            item->setTarget(&target);
            item->setTag(tag++);
        }
        Ref<NSMenu> menu = menuTitled("View");
        add(*menu, "Page", {})->setSubmenu(page.get());
        add(*menu, "Next Page", selector<"nextPage:">, "]")->setTarget(&target);
        add(*menu, "Previous Page", selector<"previousPage:">, "[")->setTarget(&target);
        separate(*menu);
        add(*menu, "Inspector", selector<"showInspector:">, "i", NSAlternateKeyMask)
            ->setTarget(&target);
        add(*menu, "Code", selector<"toggleCode:">, "k");
        add(*menu, "Dark Appearance", selector<"switchAppearance:">, "d");
        add(*menu, "Appearance of the Desktop", selector<"followDesktop:">);
        return menu;
    }
    Ref<NSMenu> windowMenu()
    {
        Ref<NSMenu> menu = menuTitled("Window");
        add(*menu, "Minimise", selector<"performMiniaturize:">, "m");
        add(*menu, "Zoom", selector<"performZoom:">);
        add(*menu, "Full Screen", selector<"toggleFullScreen:">, "f", NSControlKeyMask);
        return menu;
    }
    Ref<NSMenu> helpMenu(GalleryMenubar& target)
    {
        Ref<NSMenu> menu = menuTitled("Help");
        add(*menu, "About Brindle Gallery", selector<"showAbout:">);
        add(*menu, "The Ground", selector<"choosePage:">, "?")->setTarget(&target);
        return menu;
    }

    Ref<BRCustomMenubarMenuButton> button(const char* title, void (*draw)(), NSMenu* menu)
    {
        Ref<BRCustomMenubarMenuButton> made = make<BRCustomMenubarMenuButton>();
        made->setTitle(stringFrom(title).get());
        made->setImage(sign(draw).get());
        made->setMenu(menu);
        made->sizeToFit();
        return made;
    }

}

GalleryMenubar& menubar()
{
    static const Ref<GalleryMenubar> menubar = make<GalleryMenubar>();
    return *menubar;
}

MenubarLook GalleryMenubar::look() const
{
    return { static_cast<BRMenubarTheme>(options().theme_), options().hasShadow_,
        static_cast<BRMenubarSpacing>(options().spacing_), width_ };
}

void GalleryMenubar::setLook(const MenubarLook& look)
{
    options().theme_ = look.theme;
    options().hasShadow_ = look.shadow;
    options().spacing_ = look.spacing;
    width_ = look.width;
    keepOptions();
}

void GalleryMenubar::show()
{
    close();
    const MenubarLook wanted = look();
    bar_ = alloc<BRCustomMenubar>()->initWithMenubarTheme_spacingMode(wanted.theme, wanted.spacing);
    bar_->setMenubarShadow(wanted.shadow);
    if (wanted.width > 0)
        bar_->setCustomScreenSize(NSMakeRect(0, 0, wanted.width, 0));
    if (wanted.theme == BRMenubarThemeCustom)
        bar_->setBackgroundColor(NSColor::cls().blackColor().get());
    bar_->load();
    fill();
    if (wanted.width > 0)
        bar_->setFrame(); // moves what does not fit
}

void GalleryMenubar::showAppearance()
{
    maybe(moon_)->setState(isDark() ? NSOnState : NSOffState);
    maybe(moon_)->setDarkMode(!isDark());
}

void GalleryMenubar::settle()
{
    if (bar_)
        bar_->menubarViewsSetFrame(bar_->setFrame());
}

void GalleryMenubar::close()
{
    if (!bar_)
        return;
    maybe(viewsWindow())->close();
    bar_->close();
    moon_ = nullptr;
    samples_ = 0;
}

Ref<NSWindow> GalleryMenubar::viewsWindow() const
{
    return bar_ ? cast<NSWindow>(bar_->childWindows()->firstObject()) : Ref<NSWindow>();
}

void GalleryMenubar::fill()
{
    const Ref<NSView> views[] = {
        button("File", drawSheet, fileMenu(*this).get()),
        button("Edit", drawCaret, editMenu().get()),
        button("View", drawEye, viewMenu(*this).get()),
        button("Window", drawWindows, windowMenu().get()),
        button("Help", drawMark, helpMenu(*this).get()),
    };
    for (const Ref<NSView>& view : views)
        bar_->addMenubarView(view.get());
    if (look().theme != BRMenubarThemeCustom)
        return; // half a screen is not enough for more
    moon_ = button("", drawMoon, nullptr);
    moon_->setToggleButton(true);
    moon_->setTarget(controller().get());
    moon_->setAction(selector<"switchAppearance:">);
    bar_->addMenubarView_alignment(moon_.get(), BRMenubarViewAlignmentRight);
    for (const Ref<NSView>& view : views)
        static_cast<BRCustomMenubarMenuButton&>(*view).setDarkMode(true);
    showAppearance();
}

void GalleryMenubar::addSample(BRMenubarViewAlignment alignment)
{
    const std::string title = "Extra " + std::to_string(++samples_);
    const Ref<NSMenu> menu = menuTitled(title.c_str());
    add(*menu, "Nothing to Do", {});
    const Ref<BRCustomMenubarMenuButton> made = button(title.c_str(), drawMark, menu.get());
    made->setDarkMode(look().theme == BRMenubarThemeCustom);
    bar_->addMenubarView_alignment(made.get(), alignment);
}

template <> struct GalleryMenubar::Methods<struct Actions> {

    static void newWindow(GalleryMenubar&, NSObject*)
    {
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 360, 220),
            NSTitledWindowMask | NSClosableWindowMask | NSMiniaturizableWindowMask
                | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
        window->setTitle("Another Window"_ns);
        window->center();
        window->makeKeyAndOrderFront(nullptr);
    }
    static void choosePage(GalleryMenubar&, NSMenuItem* item)
    {
        controller()->showPage(static_cast<NSUInteger>(maybe(item)->tag()));
    }
    static void nextPage(GalleryMenubar&, NSObject*) { controller()->turnPages(1); }
    static void previousPage(GalleryMenubar&, NSObject*) { controller()->turnPages(-1); }
    static void showInspector(GalleryMenubar&, NSObject*)
    {
        BRInspector::cls().sharedInspector()->show();
    }
    static bool validate(GalleryMenubar&, NSMenuItem* item)
    {
        if (maybe(item)->action() == selector<"choosePage:">) {
            const bool isShown = static_cast<NSUInteger>(item->tag()) == controller()->pageIndex();
            item->setState(isShown ? NSOnState : NSOffState);
        }
        return true;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "newWindow:", imp<newWindow> },
            { "choosePage:", imp<choosePage> },
            { "nextPage:", imp<nextPage> },
            { "previousPage:", imp<previousPage> },
            { "showInspector:", imp<showInspector> },
            { "validateMenuItem:", imp<validate> },
        });
    }
};
BRINDLE_RECORD(GalleryMenubar, Actions)

}
