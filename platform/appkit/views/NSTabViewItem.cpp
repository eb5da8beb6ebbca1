// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTabViewItem.h"

#include "CodingPrivate.h"
#include "TabPrivate.h"
#include "foundation/Exceptions.h"

namespace brindle {

template <> struct NSTabViewItem::Methods<struct Items> {

    static Ref<NSTabViewItem> initWithIdentifier(NSTabViewItem& self, NSObject* identifier)
    {
        self.identifier_ = identifier;
        self.label_ = ""_ns;
        return &self;
    }
    static Ref<NSObject> init(NSTabViewItem& self) { return self.initWithIdentifier(nullptr); }
    static void changed(NSTabViewItem& self)
    {
        if (const Ref<NSTabView> owner = self.tabView_.get())
            TabAccess::itemChanged(*owner);
    }

    static Ref<NSObject> identifier(NSTabViewItem& self) { return self.identifier_; }
    static void setIdentifier(NSTabViewItem& self, NSObject* identifier)
    {
        self.identifier_ = identifier;
    }
    static Ref<NSString> label(NSTabViewItem& self)
    {
        return self.label_ ? self.label_ : Ref<NSString>(""_ns);
    }
    static void setLabel(NSTabViewItem& self, NSString* label)
    {
        self.label_ = label ? cast<NSString>(label->copy()) : Ref<NSString>(""_ns);
        changed(self);
    }
    static Ref<NSView> view(NSTabViewItem& self)
    {
        if (!self.view_)
            self.view_ = make<NSView>();
        return self.view_;
    }
    static void setView(NSTabViewItem& self, NSView* view)
    {
        if (view && !view->isKindOfClass(NSView::cls()))
            raise("NSInvalidArgumentException", "*** -[NSTabViewItem setView:]: not a view");
        const Ref<NSView> old = std::exchange(self.view_, Ref<NSView>(view));
        if (old && old != self.view_ && self.state_ == NSSelectedTab)
            old->removeFromSuperview();
        changed(self);
    }
    static Ref<NSView> firstResponder(NSTabViewItem& self) { return self.firstResponder_.get(); }
    static void setFirstResponder(NSTabViewItem& self, NSView* view)
    {
        self.firstResponder_ = view;
    }
    static Ref<NSString> toolTip(NSTabViewItem& self) { return self.toolTip_; }
    static void setToolTip(NSTabViewItem& self, NSString* text)
    {
        self.toolTip_ = text ? cast<NSString>(text->copy()) : nullptr;
        changed(self);
    }
    static NSTabState state(NSTabViewItem& self) { return self.state_; }
    static Ref<NSTabView> tabView(NSTabViewItem& self) { return self.tabView_.get(); }

    // ---- archives

    static void encode(NSTabViewItem& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.identifier_.get(), "NSIdentifier"_ns);
        coder->encodeObject_forKey(self.label().get(), "NSLabel"_ns);
        coder->encodeObject_forKey(self.view().get(), "NSView"_ns);
        coder->encodeObject_forKey(self.toolTip_.get(), "NSToolTip"_ns);
    }
    static Ref<NSObject> initWithCoder(NSTabViewItem& self, NSCoder* coder)
    {
        self.identifier_ = coder->decodeObjectForKey("NSIdentifier"_ns);
        self.label_ = decode<NSString>(coder, "NSLabel"_ns);
        self.view_ = decode<NSView>(coder, "NSView"_ns);
        self.toolTip_ = decode<NSString>(coder, "NSToolTip"_ns);
        return &self;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "init", imp<init> },
            { "initWithIdentifier:", imp<initWithIdentifier> },
            { "identifier", imp<identifier> },
            { "setIdentifier:", imp<setIdentifier> },
            { "label", imp<label> },
            { "setLabel:", imp<setLabel> },
            { "view", imp<view> },
            { "setView:", imp<setView> },
            { "initialFirstResponder", imp<firstResponder> },
            { "setInitialFirstResponder:", imp<setFirstResponder> },
            { "toolTip", imp<toolTip> },
            { "setToolTip:", imp<setToolTip> },
            { "tabState", imp<state> },
            { "tabView", imp<tabView> },
        });
        declareCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSTabViewItem, Items)

}
