// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextField.h"

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSText.h"
#include "appkit/NSWindow.h"
#include "foundation/NSAttributedString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTextField::Methods<struct Basics> {

    // ---- making

    // Classes below may set a class of cells of their own.
    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSTextField::cls()))
            NSTextField::cls().setCellClass(NSTextFieldCell::cls());
    }
    static Ref<NSView> initWithFrame(NSTextField& self, NSRect frame)
    {
        const Ref<NSView> made = super<NSTextField, "initWithFrame:", Ref<NSView>>(self, frame);
        if (!made)
            return nullptr;
        self.setEditable(true);
        self.setBezeled(true);
        self.setDrawsBackground(true);
        maybe(self.cell())->setScrollable(true);
        return made;
    }
    static Ref<NSTextField> makeField(Class& self)
    {
        return cast<NSTextField>(NSObject::Meta { &self }.alloc()->init());
    }
    static Ref<NSTextField> makeLabel(Class& self)
    {
        const Ref<NSTextField> label = makeField(self);
        label->setEditable(false);
        label->setSelectable(false);
        label->setBezeled(false);
        label->setDrawsBackground(false);
        label->setTextColor(NSColor::cls().labelColor().get());
        return label;
    }
    static Ref<NSTextField> labelWith(Class& self, NSString* text)
    {
        const Ref<NSTextField> label = makeLabel(self);
        label->setStringValue(text ? text : ""_ns);
        label->sizeToFit();
        return label;
    }
    static Ref<NSTextField> wrappingLabelWith(Class& self, NSString* text)
    {
        const Ref<NSTextField> label = makeLabel(self);
        label->setSelectable(true);
        maybe(label->cell())->setWraps(true);
        label->setStringValue(text ? text : ""_ns);
        label->sizeToFit();
        return label;
    }
    static Ref<NSTextField> labelWithAttributed(Class& self, NSAttributedString* text)
    {
        const Ref<NSTextField> label = makeLabel(self);
        label->setAttributedStringValue(text);
        label->sizeToFit();
        return label;
    }
    static Ref<NSTextField> fieldWith(Class& self, NSString* text)
    {
        const Ref<NSTextField> field = makeField(self);
        field->setStringValue(text ? text : ""_ns);
        field->sizeToFit();
        return field;
    }

    // ---- what only goes on to the cell

    template <Text S, class R> static R ask(NSTextField& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class T> static void tell(NSTextField& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        self.setNeedsDisplay(true);
    }
    static void setFont(NSTextField& self, NSFont* font)
    {
        if (font)
            super<NSTextField, "setFont:">(self, font);
    }
    // Without its ground or the right to type an editor has nothing to do here.
    template <Text S> static void tellAndCheck(NSTextField& self, bool value)
    {
        maybe(self.cell())->send<S>(value);
        if (!self.isSelectable() || !self.isEnabled())
            self.abortEditing();
        self.setNeedsDisplay(true);
    }
    static void setEnabled(NSTextField& self, bool enabled)
    {
        super<NSTextField, "setEnabled:">(self, enabled);
        if (!enabled)
            self.abortEditing();
    }

    static Ref<NSObject> delegate(NSTextField& self) { return self.delegate_.get(); }
    static void setDelegate(NSTextField& self, NSObject* delegate) { self.delegate_ = delegate; }
    static CGFloat preferredWidth(NSTextField& self) { return self.preferredWidth_; }
    static void setPreferredWidth(NSTextField& self, CGFloat width)
    {
        self.preferredWidth_ = width > 0 ? width : 0;
    }
    static bool editsAttributes(NSTextField& self) { return self.editsAttributes_; }
    static void setEditsAttributes(NSTextField& self, bool allows)
    {
        self.editsAttributes_ = allows;
    }

    // ---- size and drawing

    static NSSize fittingSize(NSTextField& self)
    {
        const Ref<NSCell> cell = self.cell();
        if (!cell)
            return {};
        if (self.preferredWidth_ > 0)
            return cell->cellSizeForBounds({ {}, { self.preferredWidth_, 1e7 } });
        return cell->cellSize();
    }
    static void sizeToFit(NSTextField& self) { self.setFrameSize(fittingSize(self)); }

    /// Answers what a field shows through where it draws no ground of its own.
    static Ref<NSColor> behind(NSTextField& self)
    {
        for (Ref<NSView> view = self.superview(); view; view = view->superview()) {
            const bool hasColor = view->respondsToSelector(selector<"backgroundColor">)
                && view->respondsToSelector(selector<"drawsBackground">);
            if (hasColor && view->send<"drawsBackground", bool>())
                return view->send<"backgroundColor", Ref<NSColor>>();
        }
        return maybe(self.window())->backgroundColor();
    }
    // What says that it is opaque is believed: what it showed before would stay there.
    static void drawRect(NSTextField& self, NSRect dirty)
    {
        if (self.isOpaque() && !self.drawsBackground()) {
            Ref<NSColor> ground = behind(self);
            if (!ground)
                ground = NSColor::cls().clearColor();
            ground->set();
            NSRectFill(self.bounds());
        }
        super<NSTextField, "drawRect:">(self, dirty);
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "labelWithString:", imp<labelWith> },
            { "wrappingLabelWithString:", imp<wrappingLabelWith> },
            { "labelWithAttributedString:", imp<labelWithAttributed> },
            { "textFieldWithString:", imp<fieldWith> },
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "setFont:", imp<setFont> },
            { "textColor", imp<ask<"textColor", Ref<NSColor>>> },
            { "setTextColor:", imp<tell<"setTextColor:", NSColor*>> },
            { "backgroundColor", imp<ask<"backgroundColor", Ref<NSColor>>> },
            { "setBackgroundColor:", imp<tell<"setBackgroundColor:", NSColor*>> },
            { "drawsBackground", imp<ask<"drawsBackground", bool>> },
            { "setDrawsBackground:", imp<tell<"setDrawsBackground:", bool>> },
            { "isBordered", imp<ask<"isBordered", bool>> },
            { "setBordered:", imp<tell<"setBordered:", bool>> },
            { "isBezeled", imp<ask<"isBezeled", bool>> },
            { "setBezeled:", imp<tell<"setBezeled:", bool>> },
            { "bezelStyle", imp<ask<"bezelStyle", NSTextFieldBezelStyle>> },
            { "setBezelStyle:", imp<tell<"setBezelStyle:", NSTextFieldBezelStyle>> },
            { "placeholderString", imp<ask<"placeholderString", Ref<NSString>>> },
            { "setPlaceholderString:", imp<tell<"setPlaceholderString:", NSString*>> },
            { "placeholderAttributedString",
                imp<ask<"placeholderAttributedString", Ref<NSAttributedString>>> },
            { "setPlaceholderAttributedString:",
                imp<tell<"setPlaceholderAttributedString:", NSAttributedString*>> },
            { "maximumNumberOfLines", imp<ask<"maximumNumberOfLines", NSInteger>> },
            { "setMaximumNumberOfLines:", imp<tell<"setMaximumNumberOfLines:", NSInteger>> },
            { "isEditable", imp<ask<"isEditable", bool>> },
            { "setEditable:", imp<tellAndCheck<"setEditable:">> },
            { "isSelectable", imp<ask<"isSelectable", bool>> },
            { "setSelectable:", imp<tellAndCheck<"setSelectable:">> },
            { "setEnabled:", imp<setEnabled> },
            { "preferredMaxLayoutWidth", imp<preferredWidth> },
            { "setPreferredMaxLayoutWidth:", imp<setPreferredWidth> },
            { "allowsEditingTextAttributes", imp<editsAttributes> },
            { "setAllowsEditingTextAttributes:", imp<setEditsAttributes> },
            { "sizeToFit", imp<sizeToFit> },
            { "intrinsicContentSize", imp<fittingSize> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(NSTextField, Basics)

}
