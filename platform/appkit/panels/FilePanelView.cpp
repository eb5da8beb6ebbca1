// SPDX-License-Identifier: Apache-2.0
#include "FilePanelViewPrivate.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSAlert.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphics.h"
#include "appkit/NSImage.h"
#include "appkit/NSText.h"
#include "appkit/application/PhrasesPrivate.h"
#include "foundation/NSBeep.h"
#include "foundation/NSNotification.h"
#include "runtime/Table.h"

namespace brindle {

void FilePanelState::folderChanged()
{
    const Ref<NSSavePanel> alive(owner);
    if (views)
        FilePanelViews::folderChanged(*views);
    if (const Ref<NSObject> delegate = owner->delegate();
        delegate && delegate->respondsToSelector(selector<"panel:didChangeToDirectoryURL:">))
        delegate->send<"panel:didChangeToDirectoryURL:">(
            owner, FilePanelAccess::urlOf(browser->folder(), true).get());
}
void FilePanelState::contentsChanged()
{
    const Ref<NSSavePanel> alive(owner);
    if (views)
        FilePanelViews::contentsChanged(*views);
}
void FilePanelState::selectionChanged()
{
    const Ref<NSSavePanel> alive(owner);
    const bool isOneFile = browser->selection().size() == 1
        && !browser->entry(*browser->selection().begin()).isFolder;
    if (!opens && isOneFile) { // saving under a name that is there
        if (const Ref<NSString> taken
            = stringFrom(browser->entry(*browser->selection().begin()).name))
            owner->setNameFieldStringValue(taken.get());
    }
    if (views)
        FilePanelViews::selectionChanged(*views);
    if (const Ref<NSObject> delegate = owner->delegate();
        delegate && delegate->respondsToSelector(selector<"panelSelectionDidChange:">))
        delegate->send<"panelSelectionDidChange:">(owner);
}
void FilePanelState::confirm()
{
    const Ref<NSSavePanel> alive(owner);
    owner->ok(nullptr);
}

FilePanelState::~FilePanelState()
{
    browser->disconnect();
    if (views)
        FilePanelViews::forget(*views);
}

void FilePanelAccess::settleViews(NSSavePanel& panel)
{
    FilePanelState& state = of(panel);
    if (!state.views) {
        state.views = FilePanelViews::build(panel);
        panel.setContentView(state.views.get());
    }
    FilePanelViews::settle(*state.views);
}

// ---- making and laying out

namespace {

    // The measures of a panel, in points.
    constexpr CGFloat kMargin = 16;
    constexpr CGFloat kBar = 42; // with the path, and with the buttons
    constexpr CGFloat kSidebar = 168;
    constexpr CGFloat kHeader = 24;
    constexpr CGFloat kButton = 26; // height
    constexpr CGFloat kImageButton = 44; // width
    constexpr CGFloat kLeastButton = 84;
    constexpr CGFloat kNameField = 320;

    Ref<NSButton> button(NSString* title, NSView& target, SEL action)
    {
        return NSButton::cls().buttonWithTitle_target_action(title, &target, action);
    }
    Ref<NSButton> imageButton(NSString* image, NSView& target, SEL action, NSString* tip)
    {
        Ref<NSButton> made = NSButton::cls().buttonWithImage_target_action(
            NSImage::cls().imageNamed(image).get(), &target, action);
        made->setToolTip(phrase(tip).get());
        made->setRefusesFirstResponder(true);
        return made;
    }
    Ref<NSTextField> label()
    {
        Ref<NSTextField> made = NSTextField::cls().labelWithString(""_ns);
        made->setLineBreakMode(NSLineBreakByTruncatingTail);
        return made;
    }
    CGFloat widthOf(NSButton& fitted)
    {
        fitted.sizeToFit();
        return std::max(kLeastButton, fitted.frame().size.width);
    }

}

Ref<FilePanelView> FilePanelViews::build(NSSavePanel& panel)
{
    const NSRect content = panel.contentRectForFrameRect(panel.frame());
    Ref<FilePanelView> made
        = cast<FilePanelView>(alloc<FilePanelView>()->initWithFrame({ {}, content.size }));
    FilePanelView& v = *made;
    v.panel_ = &panel;
    v.browser_ = FilePanelAccess::of(panel).browser;
    v.message_ = NSTextField::cls().wrappingLabelWithString(""_ns);
    v.message_->setSelectable(false);
    v.message_->setAlignment(NSTextAlignmentCenter);
    v.nameLabel_ = label();
    v.nameLabel_->setAlignment(NSTextAlignmentRight);
    v.nameField_ = NSTextField::cls().textFieldWithString(""_ns);
    v.nameField_->setDelegate(&v);
    v.pathField_ = NSTextField::cls().textFieldWithString(""_ns);
    v.pathField_->setDelegate(&v);
    v.pathField_->setPlaceholderString(phrase("Type a path"_ns).get());
    v.pathField_->setHidden(true);
    v.status_ = label();
    v.status_->setFont(NSFont::cls().systemFontOfSize(11).get());
    v.status_->setTextColor(NSColor::cls().secondaryLabelColor().get());
    v.back_ = imageButton("NSGoLeftTemplate"_ns, v, selector<"goBack:">, "Back"_ns);
    v.forward_ = imageButton("NSGoRightTemplate"_ns, v, selector<"goForward:">, "Forward"_ns);
    v.asList_ = imageButton("NSListViewTemplate"_ns, v, selector<"showAsList:">, "As list"_ns);
    v.asIcons_ = imageButton("NSIconViewTemplate"_ns, v, selector<"showAsIcons:">, "As icons"_ns);
    v.asList_->setButtonType(NSPushOnPushOffButton);
    v.asIcons_->setButtonType(NSPushOnPushOffButton);
    v.newFolder_ = button(phrase("New Folder"_ns).get(), v, selector<"askForFolder:">);
    v.cancel_ = button(phrase("Cancel"_ns).get(), v, selector<"cancelPanel:">);
    v.cancel_->setKeyEquivalent("\x1b"_ns);
    v.confirm_ = button(""_ns, v, selector<"confirmPanel:">);
    v.confirm_->setKeyEquivalent("\r"_ns);
    v.path_ = make<FilePathView>();
    v.places_ = make<FilePlacesView>();
    v.header_ = make<FileHeaderView>();
    v.path_->browser_ = v.places_->browser_ = v.header_->browser_ = v.browser_;
    v.scroll_ = make<NSScrollView>();
    v.scroll_->setHasVerticalScroller(true);
    v.scroll_->setVerticalLineScroll(22);
    v.list_ = make<FileListView>();
    FileList::connect(*v.list_, v.browser_);
    v.scroll_->setDocumentView(v.list_.get());
    for (NSView* part : std::initializer_list<NSView*> { v.message_.get(), v.nameLabel_.get(),
             v.nameField_.get(), v.back_.get(), v.forward_.get(), v.path_.get(), v.pathField_.get(),
             v.asList_.get(), v.asIcons_.get(), v.places_.get(), v.header_.get(), v.scroll_.get(),
             v.newFolder_.get(), v.status_.get(), v.cancel_.get(), v.confirm_.get() })
        v.addSubview(part);
    return made;
}

void FilePanelViews::settle(FilePanelView& v)
{
    if (!v.panel_)
        return;
    FilePanelState& state = FilePanelAccess::of(*v.panel_);
    v.message_->setStringValue(state.message.get());
    v.message_->setHidden(state.message->length() == 0);
    v.nameLabel_->setStringValue(v.panel_->nameFieldLabel().get());
    v.nameLabel_->setHidden(state.opens);
    v.nameField_->setHidden(state.opens);
    if (!state.opens && !v.nameField_->stringValue()->isEqualToString(state.name.get()))
        v.nameField_->setStringValue(state.name.get());
    v.newFolder_->setHidden(!state.makesFolders);
    v.confirm_->setTitle(v.panel_->prompt().get());
    FileList::setHidesExtensions(*v.list_, state.hidesExtensions);
    if (state.accessory && state.accessory->superview() != &v)
        v.addSubview(state.accessory.get());
    v.places_->places_ = files::places();
    v.places_->setNeedsDisplay(true);
    layOut(v);
    selectionChanged(v);
}

void FilePanelViews::layOut(FilePanelView& v)
{
    if (!v.panel_)
        return;
    const FilePanelState& state = FilePanelAccess::of(*v.panel_);
    const NSSize room = v.bounds().size;
    CGFloat top = 0;
    if (!v.message_->isHidden()) {
        const CGFloat width = std::max(80.0, room.width - 2 * kMargin);
        const CGFloat height = std::min(
            120.0, std::ceil(v.message_->cell()->cellSizeForBounds({ {}, { width, 1e7 } }).height));
        v.message_->setFrame({ { kMargin, 12 }, { width, height } });
        top = 12 + height + 6;
    }
    if (!v.nameField_->isHidden()) {
        v.nameLabel_->sizeToFit();
        const CGFloat label = v.nameLabel_->frame().size.width;
        const CGFloat left
            = std::max(kMargin, std::round((room.width - label - 8 - kNameField) / 2));
        v.nameLabel_->setFrame({ { left, top + 15 }, { label, 18 } });
        v.nameField_->setFrame({ { left + label + 8, top + 12 },
            { std::min(kNameField, room.width - left - label - 8 - kMargin), 24 } });
        top += 44;
    }
    v.barAbove_ = top;
    const CGFloat control = top + (kBar - kButton) / 2;
    constexpr CGFloat kPair = 2 * kImageButton + 4;
    const CGFloat end = room.width - kMargin;
    v.back_->setFrame({ { kMargin, control }, { kImageButton, kButton } });
    v.forward_->setFrame({ { kMargin + kImageButton + 4, control }, { kImageButton, kButton } });
    v.asList_->setFrame({ { end - kPair, control }, { kImageButton, kButton } });
    v.asIcons_->setFrame({ { end - kImageButton, control }, { kImageButton, kButton } });
    const NSRect path { { kMargin + kPair + 12, control },
        { std::max(40.0, end - kMargin - 2 * (kPair + 12)), kButton } };
    v.path_->setFrame(path);
    v.pathField_->setFrame(NSInsetRect(path, 0, 1));
    top += kBar;

    const CGFloat accessory = state.accessory ? state.accessory->frame().size.height + 16 : 0;
    v.barBelow_ = std::max(top, room.height - kBar - 6);
    const CGFloat bottom = std::max(top, v.barBelow_ - accessory);
    v.sidebar_ = { { 0, top }, { kSidebar, bottom - top } };
    v.places_->setFrame(v.sidebar_);
    const bool isList = FileList::look(*v.list_) == files::Look::list;
    const CGFloat header = isList ? kHeader : 0;
    const CGFloat width = std::max(0.0, room.width - kSidebar - 2); // the window's own edge stays
    v.header_->setHidden(!isList);
    v.header_->setFrame({ { kSidebar + 1, top }, { width, kHeader } });
    v.scroll_->setFrame(
        { { kSidebar + 1, top + header }, { width, std::max(0.0, bottom - top - header) } });
    FileList::resize(*v.list_);
    if (state.accessory)
        state.accessory->setFrameOrigin(
            { std::round((room.width - state.accessory->frame().size.width) / 2), bottom + 8 });

    const CGFloat low = v.barBelow_ + (kBar + 6 - kButton) / 2;
    const CGFloat confirm = widthOf(*v.confirm_);
    const CGFloat cancel = widthOf(*v.cancel_);
    CGFloat right = room.width - kMargin - confirm;
    v.confirm_->setFrame({ { right, low }, { confirm, kButton } });
    right -= cancel + 8;
    v.cancel_->setFrame({ { right, low }, { cancel, kButton } });
    const CGFloat make = v.newFolder_->isHidden() ? 0 : widthOf(*v.newFolder_);
    v.newFolder_->setFrame({ { kMargin, low }, { make, kButton } });
    const CGFloat left = kMargin + make + 12;
    v.status_->setFrame({ { left, low + 5 }, { std::max(0.0, right - left - 12), 16 } });
    v.setNeedsDisplay(true);
}

// ---- what it shows

void FilePanelViews::folderChanged(FilePanelView& v)
{
    endPath(v);
    v.back_->setEnabled(v.browser_->canGoBack());
    v.forward_->setEnabled(v.browser_->canGoForward());
    v.path_->setNeedsDisplay(true);
    v.places_->setNeedsDisplay(true);
    scrollPoint(*v.list_, {});
}
void FilePanelViews::contentsChanged(FilePanelView& v)
{
    FileList::resize(*v.list_);
    v.header_->setNeedsDisplay(true);
    selectionChanged(v);
}
void FilePanelViews::selectionChanged(FilePanelView& v)
{
    if (!v.panel_)
        return;
    const std::size_t count = v.browser_->count();
    const std::size_t selected = v.browser_->selection().size();
    const Ref<NSString> status = v.browser_->isReading() ? phrase("Reading…"_ns)
        : selected > 0
        ? NSString::cls().stringWithFormat(phrase("%lu of %lu selected"_ns).get(), selected, count)
        : count == 1 ? phrase("1 item"_ns)
                     : NSString::cls().stringWithFormat(phrase("%lu items"_ns).get(), count);
    v.status_->setStringValue(status.get());
    v.confirm_->setEnabled(FilePanelAccess::canConfirm(*v.panel_));
    v.newFolder_->setEnabled(v.browser_->error() == 0);
    FileList::showSelection(*v.list_);
}
void FilePanelViews::showAs(FilePanelView& v, files::Look look)
{
    FileList::setLook(*v.list_, look);
    v.asList_->setState(look == files::Look::list ? NSOnState : NSOffState);
    v.asIcons_->setState(look == files::Look::icons ? NSOnState : NSOffState);
    layOut(v);
}

Ref<NSString> FilePanelViews::typedName(FilePanelView& v) { return v.nameField_->stringValue(); }

void FilePanelViews::begin(FilePanelView& v)
{
    showAs(v, FileList::look(*v.list_));
    v.panel_->recalculateKeyViewLoop();
    if (v.nameField_->isHidden()) {
        v.panel_->setInitialFirstResponder(v.list_.get());
        v.panel_->makeFirstResponder(v.list_.get());
        return;
    }
    v.panel_->setInitialFirstResponder(v.nameField_.get());
    v.nameField_->selectText(nullptr);
    // The extension is seldom what somebody wants to type anew.
    const NSUInteger stem = v.nameField_->stringValue()->stringByDeletingPathExtension()->length();
    if (const Ref<NSText> editor = v.nameField_->currentEditor())
        editor->setSelectedRange({ 0, stem });
}

// ---- a path that is typed

void FilePanelViews::beginPath(FilePanelView& v, NSString* text)
{
    if (!v.panel_)
        return;
    v.path_->setHidden(true);
    v.pathField_->setHidden(false);
    v.pathField_->setStringValue(text);
    v.pathField_->selectText(nullptr);
    if (const Ref<NSText> editor = v.pathField_->currentEditor())
        editor->setSelectedRange({ text->length(), 0 });
}
void FilePanelViews::completePath(FilePanelView& v)
{
    const Ref<NSText> editor = v.pathField_->currentEditor();
    const std::string typed = utf8Of(v.pathField_->stringValue());
    const Ref<NSString> full = stringFrom(FilePanelAccess::completed(*v.browser_, typed));
    if (!editor || !full || utf8Of(full) == typed)
        return NSBeep();
    editor->selectAll(nullptr);
    editor->insertText(full.get());
}
void FilePanelViews::endPath(FilePanelView& v)
{
    if (v.pathField_->isHidden())
        return;
    v.pathField_->abortEditing();
    v.pathField_->setHidden(true);
    v.path_->setHidden(false);
    if (v.panel_)
        v.panel_->makeFirstResponder(v.list_.get());
}
bool FilePanelViews::isTyping(FilePanelView& v, NSObject* field)
{
    return field == v.pathField_.get() && !v.pathField_->isHidden();
}
void FilePanelViews::typed(FilePanelView& v, NSObject* field)
{
    if (!v.panel_)
        return;
    if (field == v.pathField_.get()) {
        const std::string path = utf8Of(v.pathField_->stringValue());
        if (!FilePanelAccess::goTo(*v.panel_, path))
            return NSBeep();
        endPath(v);
    } else
        v.panel_->ok(nullptr);
}

void FilePanelViews::askForFolder(FilePanelView& v)
{
    if (!v.panel_ || v.panel_->attachedSheet())
        return;
    const Ref<NSAlert> alert = make<NSAlert>();
    alert->setAlertStyle(NSAlertStyleInformational);
    alert->setMessageText(phrase("New Folder"_ns).get());
    alert->setInformativeText(phrase("Name of the new folder:"_ns).get());
    const Ref<NSTextField> field
        = NSTextField::cls().textFieldWithString(phrase("untitled folder"_ns).get());
    field->setFrameSize({ 300, 24 });
    alert->setAccessoryView(field.get());
    alert->addButtonWithTitle(phrase("Create"_ns).get());
    alert->addButtonWithTitle(phrase("Cancel"_ns).get());
    const Ref<NSSavePanel> panel(v.panel_);
    alert->beginSheetModalForWindow_completionHandler(
        panel.get(), [panel, field](NSModalResponse code) {
            const Ref<NSString> name = field->stringValue();
            if (code == NSAlertFirstButtonReturn)
                FilePanelAccess::makeFolder(*panel, name.get());
        });
    field->selectText(nullptr);
}

bool FilePanelViews::performKey(FilePanelView& v, NSEvent* event)
{
    const Ref<NSString> text = maybe(event)->charactersIgnoringModifiers();
    if (!(maybe(event)->modifierFlags() & NSCommandKeyMask) || maybe(text)->length() != 1)
        return false;
    const bool isShifted = (event->modifierFlags() & NSShiftKeyMask) != 0;
    files::Browser& browser = *v.browser_;
    switch (text->lowercaseString()->characterAtIndex(0)) {
    case NSUpArrowFunctionKey:
        return browser.goUp(), true;
    case NSDownArrowFunctionKey:
        if (!browser.goDown())
            browser.confirm();
        return true;
    case u'[':
        return browser.goBack(), true;
    case u']':
        return browser.goForward(), true;
    case u'l':
        return beginPath(v, FilePanelAccess::shownPath(browser).get()), true;
    case u'n':
        if (!isShifted || v.newFolder_->isHidden())
            return false;
        return askForFolder(v), true;
    case u'.':
    case u'>':
        if (!isShifted)
            return false;
        return v.panel_->setShowsHiddenFiles(!v.panel_->showsHiddenFiles()), true;
    case u'1':
        return showAs(v, files::Look::list), true;
    case u'2':
        return showAs(v, files::Look::icons), true;
    default:
        return false;
    }
}

template <> struct FilePanelView::Methods<struct Acting> {

    static bool yes(FilePanelView&) { return true; }
    static void resize(FilePanelView& self, NSSize) { FilePanelViews::layOut(self); }
    static void drawRect(FilePanelView& self, NSRect)
    {
        const NSRect all = self.bounds();
        NSColor::cls().separatorColor()->set();
        const NSRect side = self.sidebar_;
        const auto line = [&](CGFloat y) {
            NSRectFillUsingOperation({ { 0, y }, { all.size.width, 1 } }, NSCompositeSourceOver);
        };
        if (self.barAbove_ > 0)
            line(self.barAbove_);
        line(NSMinY(side) - 1);
        line(NSMaxY(side));
        NSRectFillUsingOperation(
            { { NSMaxX(side), NSMinY(side) }, { 1, side.size.height } }, NSCompositeSourceOver);
    }

    // ---- what buttons do

    template <void (files::Browser::*Go)()> static void go(FilePanelView& self, NSObject*)
    {
        if (self.browser_)
            (self.browser_.get()->*Go)();
    }
    static void asList(FilePanelView& self, NSObject*)
    {
        if (self.list_)
            FilePanelViews::showAs(self, files::Look::list);
    }
    static void asIcons(FilePanelView& self, NSObject*)
    {
        if (self.list_)
            FilePanelViews::showAs(self, files::Look::icons);
    }
    static void askForFolder(FilePanelView& self, NSObject*) { FilePanelViews::askForFolder(self); }
    static void cancel(FilePanelView& self, NSObject*)
    {
        const Ref<NSSavePanel> panel(self.panel_);
        maybe(panel)->cancel(nullptr);
    }
    static void confirm(FilePanelView& self, NSObject*)
    {
        const Ref<NSSavePanel> panel(self.panel_);
        maybe(panel)->ok(nullptr);
    }
    static void beginPath(FilePanelView& self, NSObject* text)
    {
        const bool isText = text && text->isKindOfClass(NSString::cls());
        FilePanelViews::beginPath(self, isText ? static_cast<NSString*>(text) : "/"_ns);
    }

    // ---- what fields tell

    static void textDidChange(FilePanelView& self, NSNotification* note)
    {
        if (!self.panel_ || maybe(note)->object() != self.nameField_.get())
            return;
        FilePanelAccess::of(*self.panel_).name = self.nameField_->stringValue();
        self.confirm_->setEnabled(FilePanelAccess::canConfirm(*self.panel_));
    }
    static bool command(FilePanelView& self, NSControl* field, NSText*, SEL command)
    {
        const Ref<FilePanelView> alive(&self);
        if (command == selector<"insertNewline:">)
            return FilePanelViews::typed(self, field), true;
        if (!self.pathField_ || !FilePanelViews::isTyping(self, field))
            return false;
        if (command == selector<"insertTab:">)
            return FilePanelViews::completePath(self), true;
        return command == selector<"cancelOperation:"> && (FilePanelViews::endPath(self), true);
    }

    static void table(Builder& t)
    {
        using files::Browser;
        t.methods({
            { "isFlipped", imp<yes> },
            { "resizeSubviewsWithOldSize:", imp<resize> },
            { "drawRect:", imp<drawRect> },
            { "goBack:", imp<go<&Browser::goBack>> },
            { "goForward:", imp<go<&Browser::goForward>> },
            { "showAsList:", imp<asList> },
            { "showAsIcons:", imp<asIcons> },
            { "askForFolder:", imp<askForFolder> },
            { "cancelPanel:", imp<cancel> },
            { "confirmPanel:", imp<confirm> },
            { "beginPathEntry:", imp<beginPath> },
            { "controlTextDidChange:", imp<textDidChange> },
            { "control:textView:doCommandBySelector:", imp<command> },
        });
    }
};
BRINDLE_RECORD(FilePanelView, Acting)

}
