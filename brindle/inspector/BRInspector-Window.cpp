// SPDX-License-Identifier: Apache-2.0
#include "BRInspector.h"

#include "InspectorStatePrivate.h"
#include "appkit/NSFont.h"
#include "appkit/NSPanel.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSSplitView.h"
#include "appkit/NSTextField.h"
#include "foundation/NSNotification.h"
#include "runtime/Table.h"

namespace brindle {

namespace inspector {

    NSRect placeOf(NSObject* object)
    {
        if (!object)
            return {};
        if (object->isKindOfClass(NSWindow::cls())) {
            auto& window = static_cast<NSWindow&>(*object);
            return window.isVisible() ? window.frame() : NSRect {};
        }
        auto& view = static_cast<NSView&>(*object);
        const Ref<NSWindow> window = view.window();
        if (!window || !window->isVisible() || view.isHiddenOrHasHiddenAncestor())
            return {};
        return window->convertRectToScreen(view.convertRect_toView(view.visibleRect(), nullptr));
    }

}

void InspectorState::follow()
{
    frame.show(isVisible() ? inspector::placeOf(inspected.get().get()) : NSRect {});
}

template <> struct BRInspector::Methods<struct Window> {

    static constexpr NSSize kSize { 880, 480 };
    static constexpr double kBar = 40;
    static constexpr double kTreeWidth = 380;
    static constexpr double kNameWidth = 190;

    // ---- making

    static Ref<NSTableView> makeTable(BRInspector& self, NSRect frame, NSView* parent)
    {
        const Ref<NSTableView> table = make<NSTableView>();
        table->setHeaderView(nullptr);
        table->setUsesAlternatingRowBackgroundColors(true);
        const Ref<NSScrollView> scroll
            = cast<NSScrollView>(alloc<NSScrollView>()->initWithFrame(frame));
        scroll->setHasVerticalScroller(true);
        scroll->setDocumentView(table.get());
        parent->addSubview(scroll.get());
        table->setDelegate(&self);
        return table;
    }
    static void addColumn(NSTableView& table, NSString* name, double width)
    {
        const Ref<NSTableColumn> column = alloc<NSTableColumn>()->initWithIdentifier(name);
        column->setWidth(width);
        table.addTableColumn(column.get());
    }
    static void makeBar(BRInspector& self, NSView& content)
    {
        const NSSize size = content.bounds().size;
        Ref<NSButton>& pick = stateOf(self).pick;
        pick = cast<NSButton>(
            alloc<NSButton>()->initWithFrame(NSMakeRect(12, size.height - 32, 80, 24)));
        pick->setButtonType(NSPushOnPushOffButton);
        pick->setBezelStyle(NSTexturedSquareBezelStyle);
        pick->setTitle("Pick"_ns);
        pick->setTarget(&self);
        pick->setAction(selector<"takePickingFrom:">);
        pick->setAutoresizingMask(NSViewMinYMargin);
        content.addSubview(pick.get());
        const Ref<NSTextField> hint = NSTextField::cls().labelWithString(
            "Click a view to inspect it, Escape ends. Command-Option-I closes."_ns);
        hint->setFrameOrigin({ 104, size.height - 28 });
        hint->setAutoresizingMask(NSViewMinYMargin);
        content.addSubview(hint.get());
    }
    static void makeWindow(BRInspector& self)
    {
        InspectorState& state = stateOf(self);
        state.window
            = alloc<NSPanel>()->initWithContentRect_styleMask_backing_defer({ { 40, 60 }, kSize },
                NSTitledWindowMask | NSClosableWindowMask | NSResizableWindowMask,
                NSBackingStoreBuffered, true);
        state.window->setTitle("Inspector"_ns);
        state.window->setReleasedWhenClosed(false);
        state.window->setContentMinSize({ 480, 240 });
        state.window->setDelegate(&self);
        const Ref<NSView> content = state.window->contentView();
        makeBar(self, *content);
        const double height = kSize.height - kBar;
        const Ref<NSSplitView> split = cast<NSSplitView>(
            alloc<NSSplitView>()->initWithFrame(NSMakeRect(0, 0, kSize.width, height)));
        split->setVertical(true);
        split->setDividerStyle(NSSplitViewDividerStyleThin);
        split->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        content->addSubview(split.get());
        state.tree = makeTable(self, NSMakeRect(0, 0, kTreeWidth, height), split.get());
        addColumn(*state.tree, "tree"_ns, 800);
        state.details
            = makeTable(self, NSMakeRect(0, 0, kSize.width - kTreeWidth, height), split.get());
        state.details->setAllowsTypeSelect(false);
        addColumn(*state.details, "name"_ns, kNameWidth);
        addColumn(*state.details, "value"_ns, 900);
        state.tree->setDataSource(&self);
        state.details->setDataSource(&self);
        split->adjustSubviews();
        split->setPosition_ofDividerAtIndex(kTreeWidth, 0);
    }

    // ---- showing

    static Ref<NSWindow> window(BRInspector& self)
    {
        if (!stateOf(self).window)
            makeWindow(self);
        return stateOf(self).window;
    }
    static bool isVisible(BRInspector& self) { return stateOf(self).isVisible(); }
    static void show(BRInspector& self)
    {
        self.window();
        self.reload();
        stateOf(self).window->makeKeyAndOrderFront(&self);
        stateOf(self).follow();
    }
    static void close(BRInspector& self)
    {
        maybe(stateOf(self).window)->orderOut(&self);
        self.setPicking(false);
    }
    static void windowWillClose(BRInspector& self, NSNotification*)
    {
        InspectorState& state = stateOf(self);
        state.isPicking = false;
        state.frame.show({});
    }
    static void windowDidBecomeKey(BRInspector& self, NSNotification*) { self.reload(); }
    static void takePicking(BRInspector& self, NSObject*)
    {
        self.setPicking(maybe(stateOf(self).pick)->state() == NSOnState);
    }

    // ---- what is inspected

    static Ref<NSObject> inspectedObject(BRInspector& self)
    {
        return stateOf(self).inspected.get();
    }
    static void inspectObject(BRInspector& self, NSObject* object)
    {
        const bool isKnown = object
            && (object->isKindOfClass(NSView::cls()) || object->isKindOfClass(NSWindow::cls()));
        stateOf(self).inspected = WeakRef<NSObject>(isKnown ? object : nullptr);
        self.reload();
    }
    static void readDetails(InspectorState& state)
    {
        const Ref<NSObject> object = state.inspected.get();
        state.detailRows
            = object ? inspector::detailRows(*object) : std::vector<inspector::DetailRow> {};
        maybe(state.details)->reloadData();
        state.follow();
    }
    static void selectInspected(InspectorState& state)
    {
        if (!state.tree)
            return;
        const Ref<NSObject> object = state.inspected.get();
        state.isChoosing = true;
        state.tree->deselectAll(nullptr);
        for (std::size_t i = 0; object && i < state.treeRows.size(); ++i) {
            if (state.treeRows[i].object.get() != object)
                continue;
            state.tree->selectRowIndexes_byExtendingSelection(
                NSIndexSet::cls().indexSetWithIndex(i).get(), false);
            state.tree->scrollRowToVisible(static_cast<NSInteger>(i));
        }
        state.isChoosing = false;
    }
    static void reload(BRInspector& self)
    {
        InspectorState& state = stateOf(self);
        state.treeRows = inspector::treeRows([&](NSWindow& window) { return !state.owns(window); });
        state.isChoosing = true;
        maybe(state.tree)->reloadData();
        selectInspected(state);
        readDetails(state);
    }

    // ---- the tables

    static NSInteger numberOfRows(BRInspector& self, NSTableView* table)
    {
        const InspectorState& state = stateOf(self);
        return static_cast<NSInteger>(
            state.tree.get() == table ? state.treeRows.size() : state.detailRows.size());
    }
    static std::string treeLine(const inspector::TreeRow& row)
    {
        return std::string(static_cast<std::size_t>(row.depth) * 3, ' ') + row.text;
    }
    static Ref<NSString> textAt(
        const InspectorState& state, NSTableView* table, NSTableColumn* column, std::size_t row)
    {
        if (state.tree.get() == table)
            return row < state.treeRows.size() ? stringFrom(treeLine(state.treeRows[row]))
                                               : nullptr;
        if (row >= state.detailRows.size())
            return nullptr;
        const inspector::DetailRow& detail = state.detailRows[row];
        return stringFrom(
            maybe(maybe(column)->identifier())->isEqual("name"_ns) ? detail.name : detail.value);
    }
    static Ref<NSView> view(
        BRInspector& self, NSTableView* table, NSTableColumn* column, NSInteger row)
    {
        const InspectorState& state = stateOf(self);
        const auto index = static_cast<std::size_t>(row);
        const Ref<NSTextField> label
            = NSTextField::cls().labelWithString(textAt(state, table, column, index).get());
        const bool isHeading = state.details.get() == table && index < state.detailRows.size()
            && state.detailRows[index].isHeading;
        const CGFloat size = NSFont::cls().smallSystemFontSize();
        label->setFont((isHeading ? NSFont::cls().boldSystemFontOfSize(size)
                                  : NSFont::cls().systemFontOfSize(size))
                           .get());
        return label;
    }
    static void selectionChanged(BRInspector& self, NSNotification* note)
    {
        InspectorState& state = stateOf(self);
        if (state.isChoosing || !note || note->object().get() != state.tree.get())
            return;
        const auto row = static_cast<std::size_t>(state.tree->selectedRow());
        state.inspected
            = row < state.treeRows.size() ? state.treeRows[row].object : WeakRef<NSObject> {};
        readDetails(state);
    }

    // ---- as text

    static Ref<NSString> treeDescription(BRInspector& self)
    {
        std::string text;
        for (const inspector::TreeRow& row : stateOf(self).treeRows)
            text += treeLine(row) + "\n";
        return stringFrom(text);
    }
    static Ref<NSString> detailDescription(BRInspector& self)
    {
        std::string text;
        for (const inspector::DetailRow& row : stateOf(self).detailRows) {
            const char* const between = row.value.empty() ? "" : row.isHeading ? " " : ": ";
            text += row.name + between + row.value + "\n";
        }
        return stringFrom(text);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "window", imp<window> },
            { "isVisible", imp<isVisible> },
            { "show", imp<show> },
            { "close", imp<close> },
            { "windowWillClose:", imp<windowWillClose> },
            { "windowDidBecomeKey:", imp<windowDidBecomeKey> },
            { "takePickingFrom:", imp<takePicking> },
            { "inspectedObject", imp<inspectedObject> },
            { "inspectObject:", imp<inspectObject> },
            { "reload", imp<reload> },
            { "numberOfRowsInTableView:", imp<numberOfRows> },
            { "tableView:viewForTableColumn:row:", imp<view> },
            { "tableViewSelectionDidChange:", imp<selectionChanged> },
            { "treeDescription", imp<treeDescription> },
            { "detailDescription", imp<detailDescription> },
        });
    }
};
BRINDLE_RECORD(BRInspector, Window)

}
