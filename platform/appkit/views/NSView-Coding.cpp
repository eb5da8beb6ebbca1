// SPDX-License-Identifier: Apache-2.0
#include "CodingPrivate.h"
#include "NSViewPrivate.h"
#include "appkit/NSMenu.h"
#include "appkit/NSTextField.h"
#include "appkit/NSUserInterfaceItemIdentification.h"
#include "appkit/controls/FieldEditorClipPrivate.h"

namespace brindle {

// - Shape: "NSFrame"; "NSBounds" where they were set apart from it; "NSSubviews" back to front, without an editor that is
//   at work; "NSMenu"; a number for every setting; "NSNextKeyView" where that view is archived too. No window, no superview.
template <> struct NSView::Methods<struct Coding> {

    static void code(const NumberCoding& number, NSView& self)
    {
        number("NSAlpha"_ns, self.alpha_);
        number("NSAutoresizingMask"_ns, self.autoresizingMask_);
        number("NSAutoresizesSubviews"_ns, self.autoresizesSubviews_);
        number("NSPostsFrameChanges"_ns, self.postsFrameChanges_);
        number("NSPostsBoundsChanges"_ns, self.postsBoundsChanges_);
        number("NSHidden"_ns, self.hidden_);
    }
    static void encode(NSView& self, NSCoder* coder)
    {
        coder->encodeRect_forKey(self.frame_, "NSFrame"_ns);
        if (self.bounds_ != NSRect { {}, self.frame_.size })
            coder->encodeRect_forKey(self.bounds_, "NSBounds"_ns);
        std::vector<Ref<NSObject>> inside;
        for (const Ref<NSView>& view : self.subviews_) {
            if (!view->isKindOfClass(FieldEditorClip::cls()))
                inside.emplace_back(view);
        }
        if (!inside.empty())
            coder->encodeObject_forKey(makeArray(std::move(inside)).get(), "NSSubviews"_ns);
        coder->encodeObject_forKey(self.toolTip_.get(), "NSToolTip"_ns);
        coder->encodeObject_forKey(identifier(self).get(), "NSIdentifier"_ns);
        coder->encodeObject_forKey(super<NSView, "menu", Ref<NSMenu>>(self).get(), "NSMenu"_ns);
        coder->encodeConditionalObject_forKey(self.nextKeyView_, "NSNextKeyView"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSView& self, NSCoder* coder)
    {
        if (!super<NSView, "init", Ref<NSObject>>(self))
            return nullptr;
        self.frame_ = coder->decodeRectForKey("NSFrame"_ns);
        self.bounds_.size = self.frame_.size;
        for (const Ref<NSView>& view : decodeAll<NSView>(coder, "NSSubviews"_ns))
            self.addSubview(view.get());
        if (coder->containsValueForKey("NSBounds"_ns))
            self.setBounds(coder->decodeRectForKey("NSBounds"_ns));
        if (const Ref<NSString> tip = decode<NSString>(coder, "NSToolTip"_ns))
            self.setToolTip(tip.get());
        setIdentifier(self, decode<NSString>(coder, "NSIdentifier"_ns).get());
        super<NSView, "setMenu:">(self, decode<NSMenu>(coder, "NSMenu"_ns).get());
        code({ coder, true }, self);
        if (const Ref<NSView> next = decode<NSView>(coder, "NSNextKeyView"_ns))
            self.setNextKeyView(next.get());
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSView, Coding)

template <> struct NSControl::Methods<struct Coding> {

    static void encode(NSControl& self, NSCoder* coder)
    {
        super<NSControl, "encodeWithCoder:">(self, coder);
        self.validateEditing();
        coder->encodeObject_forKey(self.cell_.get(), "NSCell"_ns);
        code({ coder, false }, self);
    }
    static void code(const NumberCoding& number, NSControl& self)
    {
        number("NSTag"_ns, self.tag_);
        number("NSIgnoresMultiClick"_ns, self.ignoresMultiClick_);
    }
    static Ref<NSObject> initWithCoder(NSControl& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSControl, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        self.setCell(decode<NSCell>(coder, "NSCell"_ns).get());
        code({ coder, true }, self);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSControl, Coding)

template <> struct NSTextField::Methods<struct Coding> {

    static void code(const NumberCoding& number, NSTextField& self)
    {
        number("NSPreferredMaxLayoutWidth"_ns, self.preferredWidth_);
        number("NSAllowsEditingTextAttributes"_ns, self.editsAttributes_);
    }
    static void encode(NSTextField& self, NSCoder* coder)
    {
        super<NSTextField, "encodeWithCoder:">(self, coder);
        coder->encodeConditionalObject_forKey(self.delegate_.get().get(), "NSDelegate"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSTextField& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSTextField, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        self.delegate_ = coder->decodeObjectForKey("NSDelegate"_ns);
        code({ coder, true }, self);
        return made;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSTextField, Coding)

}
