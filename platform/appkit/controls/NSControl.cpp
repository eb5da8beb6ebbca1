// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSControl.h"

#include "appkit/NSActionCell.h"
#include "appkit/NSApplication.h"
#include "appkit/NSWindow.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

#include <mutex>
#include <unordered_map>

namespace brindle {

namespace {

    /// The cell classes that were set, by class of control.
    struct CellClasses {
        std::mutex lock;
        std::unordered_map<Class*, Class*> known;

        static CellClasses& shared()
        {
            static CellClasses classes;
            return classes;
        }
        Class* of(Class* control)
        {
            const std::lock_guard guard(lock);
            for (Class* c = control; c; c = c->super_) {
                if (const auto found = known.find(c); found != known.end())
                    return found->second;
            }
            return NSActionCell::cls();
        }
        void set(Class* control, Class* cell)
        {
            const std::lock_guard guard(lock);
            if (cell)
                known[control] = cell;
            else
                known.erase(control);
        }
    };

}

template <> struct NSControl::Methods<struct Basics> {

    static Class* cellClass(Class& self) { return CellClasses::shared().of(&self); }
    static void setCellClass(Class& self, Class* cell)
    {
        if (cell && !cell->send<"isSubclassOfClass:", bool>(static_cast<Class*>(NSCell::cls())))
            raise("NSInvalidArgumentException",
                "*** +[NSControl setCellClass:]: the class is no class of cells");
        CellClasses::shared().set(&self, cell);
    }

    static Ref<NSView> initWithFrame(NSControl& self, NSRect frame)
    {
        const Ref<NSView> made = super<NSControl, "initWithFrame:", Ref<NSView>>(self, frame);
        Class* const cell = self.classObject()->send<"cellClass", Class*>();
        if (made && cell)
            self.setCell(cast<NSCell>(cell->send<"alloc", Ref<NSObject>>()->init()).get());
        return made;
    }

    // ---- cell

    static Ref<NSCell> cell(NSControl& self) { return self.cell_; }
    static void setCell(NSControl& self, NSCell* cell)
    {
        if (cell && !cell->isKindOfClass(NSCell::cls()))
            raise("NSInvalidArgumentException", "*** -[NSControl setCell:]: not a cell");
        if (self.cell_ == cell)
            return;
        if (self.cell_ && self.cell_->controlView() == &self)
            self.cell_->setControlView(nullptr);
        self.cell_ = cell;
        if (cell)
            cell->setControlView(&self);
        self.setNeedsDisplay(true);
    }
    static NSInteger selectedTag(NSControl& self)
    {
        const Ref<NSCell> cell = self.selectedCell();
        return cell ? cell->tag() : -1;
    }
    static bool isOwn(NSControl& self, NSCell* cell) { return cell && self.cell() == cell; }
    static void selectCell(NSControl& self, NSCell* cell)
    {
        if (isOwn(self, cell))
            cell->setState(NSOnState);
    }
    static void updateCell(NSControl& self, NSCell* cell)
    {
        if (isOwn(self, cell))
            self.setNeedsDisplay(true);
    }
    static void drawCell(NSControl& self, NSCell* cell)
    {
        if (isOwn(self, cell))
            self.display();
    }

    // ---- target and action

    static Ref<NSObject> target(NSControl& self) { return maybe(self.cell())->target(); }
    static void setTarget(NSControl& self, NSObject* target)
    {
        maybe(self.cell())->setTarget(target);
    }
    static SEL action(NSControl& self)
    {
        const Ref<NSCell> cell = self.cell();
        return cell ? cell->action() : SEL {};
    }
    static void setAction(NSControl& self, SEL action) { maybe(self.cell())->setAction(action); }
    static bool keepsTag(const Ref<NSCell>& cell)
    {
        return cell && cell->isKindOfClass(NSActionCell::cls());
    }
    static NSInteger tag(NSControl& self)
    {
        const Ref<NSCell> cell = self.cell();
        return keepsTag(cell) ? cell->tag() : self.tag_;
    }
    static void setTag(NSControl& self, NSInteger tag)
    {
        self.tag_ = tag;
        if (const Ref<NSCell> cell = self.cell(); keepsTag(cell))
            cell->setTag(tag);
    }
    static bool sendAction(NSControl& self, SEL action, NSObject* target)
    {
        const Ref<NSControl> alive(&self);
        const Ref<NSObject> targetAlive(target);
        return NSApplication::cls().sharedApplication()->sendAction_to_from(action, target, &self);
    }
    static bool ignoresMultiClick(NSControl& self) { return self.ignoresMultiClick_; }
    static void setIgnoresMultiClick(NSControl& self, bool ignores)
    {
        self.ignoresMultiClick_ = ignores;
    }
    static void performClick(NSControl& self, NSObject* sender)
    {
        const Ref<NSControl> alive(&self);
        maybe(self.cell())->performClick(sender);
    }

    // ---- size

    static void sizeToFit(NSControl& self)
    {
        if (const Ref<NSCell> cell = self.cell())
            self.setFrameSize(cell->cellSize());
    }
    static NSSize sizeThatFits(NSControl& self, NSSize size)
    {
        return maybe(self.cell())->cellSizeForBounds({ {}, size });
    }
    static NSSize intrinsicContentSize(NSControl& self) { return maybe(self.cell())->cellSize(); }
    static void calcSize(NSControl& self) { maybe(self.cell())->calcDrawInfo(self.bounds()); }

    // ---- editing: what has no text has no editor

    static bool abortEditing(NSControl&) { return false; }
    static void validateEditing(NSControl&) { }

    static void table(Builder& t)
    {
        t.classMethods({
            { "cellClass", imp<cellClass> },
            { "setCellClass:", imp<setCellClass> },
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "cell", imp<cell> },
            { "setCell:", imp<setCell> },
            { "selectedCell", imp<cell> },
            { "selectedTag", imp<selectedTag> },
            { "selectCell:", imp<selectCell> },
            { "updateCell:", imp<updateCell> },
            { "updateCellInside:", imp<updateCell> },
            { "drawCell:", imp<drawCell> },
            { "drawCellInside:", imp<drawCell> },
            { "target", imp<target> },
            { "setTarget:", imp<setTarget> },
            { "action", imp<action> },
            { "setAction:", imp<setAction> },
            { "tag", imp<tag> },
            { "setTag:", imp<setTag> },
            { "sendAction:to:", imp<sendAction> },
            { "ignoresMultiClick", imp<ignoresMultiClick> },
            { "setIgnoresMultiClick:", imp<setIgnoresMultiClick> },
            { "performClick:", imp<performClick> },
            { "sizeToFit", imp<sizeToFit> },
            { "sizeThatFits:", imp<sizeThatFits> },
            { "intrinsicContentSize", imp<intrinsicContentSize> },
            { "calcSize", imp<calcSize> },
            { "abortEditing", imp<abortEditing> },
            { "validateEditing", imp<validateEditing> },
        });
    }
};
BRINDLE_RECORD(NSControl, Basics)

/// What a control asks of its cell, and what it tells it.
template <> struct NSControl::Methods<struct Forwarding> {

    template <Text S, class R> static R ask(NSControl& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class T> static void tell(NSControl& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        self.setNeedsDisplay(true);
    }
    static NSInteger sendActionOn(NSControl& self, NSEventMask mask)
    {
        return maybe(self.cell())->sendActionOn(mask);
    }
    static void setEnabled(NSControl& self, bool enabled)
    {
        tell<"setEnabled:", bool>(self, enabled);
        const Ref<NSWindow> window = self.window();
        if (!enabled && window && window->firstResponder() == &self)
            window->makeFirstResponder(nullptr);
    }
    static bool isEnabled(NSControl& self) { return maybe(self.cell())->isEnabled(); }

    static void table(Builder& t)
    {
        t.methods({
            { "isEnabled", imp<isEnabled> },
            { "setEnabled:", imp<setEnabled> },
            { "sendActionOn:", imp<sendActionOn> },
            { "isContinuous", imp<ask<"isContinuous", bool>> },
            { "setContinuous:", imp<tell<"setContinuous:", bool>> },
            { "isHighlighted", imp<ask<"isHighlighted", bool>> },
            { "setHighlighted:", imp<tell<"setHighlighted:", bool>> },
            { "controlSize", imp<ask<"controlSize", NSControlSize>> },
            { "setControlSize:", imp<tell<"setControlSize:", NSControlSize>> },
            { "refusesFirstResponder", imp<ask<"refusesFirstResponder", bool>> },
            { "setRefusesFirstResponder:", imp<tell<"setRefusesFirstResponder:", bool>> },
            { "focusRingType", imp<ask<"focusRingType", NSFocusRingType>> },
            { "setFocusRingType:", imp<tell<"setFocusRingType:", NSFocusRingType>> },
            { "font", imp<ask<"font", Ref<NSFont>>> },
            { "setFont:", imp<tell<"setFont:", NSFont*>> },
            { "alignment", imp<ask<"alignment", NSTextAlignment>> },
            { "setAlignment:", imp<tell<"setAlignment:", NSTextAlignment>> },
            { "lineBreakMode", imp<ask<"lineBreakMode", NSLineBreakMode>> },
            { "setLineBreakMode:", imp<tell<"setLineBreakMode:", NSLineBreakMode>> },
            { "usesSingleLineMode", imp<ask<"usesSingleLineMode", bool>> },
            { "setUsesSingleLineMode:", imp<tell<"setUsesSingleLineMode:", bool>> },
            { "baseWritingDirection", imp<ask<"baseWritingDirection", NSWritingDirection>> },
            { "setBaseWritingDirection:",
                imp<tell<"setBaseWritingDirection:", NSWritingDirection>> },
            { "objectValue", imp<ask<"objectValue", Ref<NSObject>>> },
            { "setObjectValue:", imp<tell<"setObjectValue:", NSObject*>> },
            { "stringValue", imp<ask<"stringValue", Ref<NSString>>> },
            { "setStringValue:", imp<tell<"setStringValue:", NSString*>> },
            { "attributedStringValue", imp<ask<"attributedStringValue", Ref<NSAttributedString>>> },
            { "setAttributedStringValue:",
                imp<tell<"setAttributedStringValue:", NSAttributedString*>> },
            { "intValue", imp<ask<"intValue", int>> },
            { "setIntValue:", imp<tell<"setIntValue:", int>> },
            { "integerValue", imp<ask<"integerValue", NSInteger>> },
            { "setIntegerValue:", imp<tell<"setIntegerValue:", NSInteger>> },
            { "floatValue", imp<ask<"floatValue", float>> },
            { "setFloatValue:", imp<tell<"setFloatValue:", float>> },
            { "doubleValue", imp<ask<"doubleValue", double>> },
            { "setDoubleValue:", imp<tell<"setDoubleValue:", double>> },
            { "takeObjectValueFrom:", imp<tell<"takeObjectValueFrom:", NSObject*>> },
            { "takeStringValueFrom:", imp<tell<"takeStringValueFrom:", NSObject*>> },
            { "takeIntValueFrom:", imp<tell<"takeIntValueFrom:", NSObject*>> },
            { "takeIntegerValueFrom:", imp<tell<"takeIntegerValueFrom:", NSObject*>> },
            { "takeFloatValueFrom:", imp<tell<"takeFloatValueFrom:", NSObject*>> },
            { "takeDoubleValueFrom:", imp<tell<"takeDoubleValueFrom:", NSObject*>> },
            { "formatter", imp<ask<"formatter", Ref<NSFormatter>>> },
            { "setFormatter:", imp<tell<"setFormatter:", NSFormatter*>> },
        });
    }
};
BRINDLE_RECORD(NSControl, Forwarding)

}
