// SPDX-License-Identifier: Apache-2.0
#include "FontLists.h"

#include <utility>

#include "appkit/NSFontManager.h"
#include "appkit/NSTableHeaderView.h"
#include "foundation/NSIndexSet.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

Ref<NSString> wordsOf(NSUInteger traits)
{
    std::string words;
    for (const auto& [trait, word] :
        { std::pair { NSBoldFontMask, "bold" }, std::pair { NSItalicFontMask, "italic" },
            std::pair { NSFixedPitchFontMask, "fixed pitch" } }) {
        if (traits & trait)
            words += (words.empty() ? "" : ", ") + std::string(word);
    }
    return stringFrom(words.empty() ? "–" : words);
}

template <> struct FontListCard::Methods<struct List> {

    static Ref<NSView> initWithFrame(FontListCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FontListCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.list_ = make<NSTableView>();
        self.list_->setUsesAlternatingRowBackgroundColors(true);
        self.list_->setAllowsEmptySelection(true);
        self.scroll_ = make<NSScrollView>();
        self.scroll_->setHasVerticalScroller(true);
        self.scroll_->setAutohidesScrollers(true);
        self.scroll_->setBorderType(NSLineBorder);
        self.scroll_->setDocumentView(self.list_.get());
        self.addSubview(self.scroll_.get());
        self.list_->setDelegate(&self);
        return made;
    }
    static void setFrameSize(FontListCard& self, NSSize size)
    {
        super<FontListCard, "setFrameSize:">(self, size);
        if (!self.scroll_)
            return;
        self.scroll_->setFrame(self.bodyRect());
        self.list_->sizeLastColumnToFit();
        self.list_->scrollRowToVisible(0);
        self.list_->scrollRowToVisible(self.list_->selectedRow());
    }
    static void table(Builder& t)
    {
        t.properties({ property<&FontListCard::list_>("list", readonly, nonatomic) });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
        });
    }
};
BRINDLE_RECORD(FontListCard, List)

void FontListCard::addColumn(NSString* title, double width)
{
    const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier(title);
    column->setTitle(title);
    column->setWidth(width);
    column->setEditable(false);
    list_->addTableColumn(column.get());
}

void FontListCard::showRow(NSInteger row)
{
    showing_ = true;
    if (row < 0)
        list_->deselectAll(nullptr);
    else
        list_->selectRowIndexes_byExtendingSelection(
            NSIndexSet::cls().indexSetWithIndex(static_cast<NSUInteger>(row)).get(), false);
    if (row >= 0)
        list_->scrollRowToVisible(row);
    showing_ = false;
}

template <> struct FamiliesCard::Methods<struct Families> {

    static Ref<NSView> initWithFrame(FamiliesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FamiliesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.families_ = NSFontManager::cls().sharedFontManager()->availableFontFamilies();
        self.setHeading("Families"_ns);
        self.setCaption(NSString::cls()
                            .stringWithFormat("%lu are installed"_ns, self.families_->count())
                            .get());
        self.list()->setHeaderView(nullptr);
        self.addColumn("Family"_ns, 150);
        self.list()->setDataSource(&self);
        return made;
    }
    static NSInteger numberOfRows(FamiliesCard& self, NSTableView*)
    {
        return static_cast<NSInteger>(self.families_->count());
    }
    static Ref<NSObject> value(FamiliesCard& self, NSTableView*, NSTableColumn*, NSInteger row)
    {
        return self.families_->objectAtIndex(static_cast<NSUInteger>(row));
    }
    static void selectionChanged(FamiliesCard& self, NSNotification*)
    {
        const NSInteger row = self.list()->selectedRow();
        if (self.isShowing() || row < 0)
            return;
        const Ref<NSObject> family = self.families_->objectAtIndex(static_cast<NSUInteger>(row));
        self.tryToPerform_with(selector<"takeFamily:">, family.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
            { "tableViewSelectionDidChange:", imp<selectionChanged> },
        });
    }
};
BRINDLE_RECORD(FamiliesCard, Families)

void FamiliesCard::show(NSString* family)
{
    const NSUInteger row = families_->indexOfObject(family);
    showRow(row == NSNotFound ? -1 : static_cast<NSInteger>(row));
}

template <> struct FacesCard::Methods<struct Faces> {

    enum Field : NSUInteger { name, style, weight, traits };

    static Ref<NSView> initWithFrame(FacesCard& self, NSRect frame)
    {
        Ref<NSView> made = super<FacesCard, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHeading("Faces"_ns);
        self.addColumn("Style"_ns, 104);
        self.addColumn("Weight"_ns, 50);
        self.addColumn("Traits"_ns, 90);
        self.list()->setDataSource(&self);
        return made;
    }
    static Ref<NSObject> field(FacesCard& self, NSInteger row, Field field)
    {
        const auto face = cast<NSArray>(self.faces_->objectAtIndex(static_cast<NSUInteger>(row)));
        return face->objectAtIndex(field);
    }
    static NSInteger numberOfRows(FacesCard& self, NSTableView*)
    {
        return static_cast<NSInteger>(maybe(self.faces_)->count());
    }
    static Ref<NSObject> value(FacesCard& self, NSTableView*, NSTableColumn* column, NSInteger row)
    {
        const Ref<NSString> title = column->title();
        if (title->isEqual("Traits"_ns)) {
            const auto bits = cast<NSNumber>(field(self, row, traits));
            return Ref<NSObject>(wordsOf(bits->unsignedIntegerValue()));
        }
        return field(self, row, title->isEqual("Style"_ns) ? style : weight);
    }
    static void selectionChanged(FacesCard& self, NSNotification*)
    {
        const NSInteger row = self.list()->selectedRow();
        if (!self.isShowing() && row >= 0)
            self.tryToPerform_with(selector<"takeFace:">, field(self, row, name).get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:objectValueForTableColumn:row:", imp<value> },
            { "tableViewSelectionDidChange:", imp<selectionChanged> },
        });
    }
};
BRINDLE_RECORD(FacesCard, Faces)

void FacesCard::show(NSFont* font)
{
    const Ref<NSString> family = font->familyName();
    setCaption(NSString::cls().stringWithFormat("Members of %@"_ns, family.get()).get());
    faces_ = NSFontManager::cls().sharedFontManager()->availableMembersOfFontFamily(family.get());
    list()->reloadData();
    NSInteger chosen = -1;
    for (NSUInteger row = 0; row < maybe(faces_)->count(); ++row) {
        const auto face = cast<NSArray>(faces_->objectAtIndex(row));
        if (face->objectAtIndex(0)->isEqual(font->fontName().get()))
            chosen = static_cast<NSInteger>(row);
    }
    showRow(chosen);
    setNeedsDisplay(true);
}

}
