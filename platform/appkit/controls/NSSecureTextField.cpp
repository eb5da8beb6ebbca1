// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSecureTextField.h"

#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/text/NSTextViewPrivate.h"
#include "appkit/text/TextPlacesPrivate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSMutableAttributedString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSecureTextFieldCell::Methods<struct Secrets> {

    static bool echos(NSSecureTextFieldCell& self) { return !self.hidesBullets_; }
    static void setEchos(NSSecureTextFieldCell& self, bool echos)
    {
        self.hidesBullets_ = !echos;
        maybe(self.controlView())->setNeedsDisplay(true);
    }
    static Ref<NSObject> copyWithZone(NSSecureTextFieldCell& self, void* zone)
    {
        const auto copy = super<NSSecureTextFieldCell, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (copy)
            static_cast<NSSecureTextFieldCell&>(*copy).hidesBullets_ = self.hidesBullets_;
        return copy;
    }
    // What is drawn and given away as styled text is never the secret.
    static Ref<NSAttributedString> attributedValue(NSSecureTextFieldCell& self)
    {
        const auto styled
            = super<NSSecureTextFieldCell, "attributedStringValue", Ref<NSAttributedString>>(self);
        if (!styled || !styled->length())
            return styled;
        const Ref<NSString> secret = self.stringValue();
        const Ref<NSString> bullets
            = self.hidesBullets_ ? Ref<NSString>(""_ns) : places::bullets(*secret);
        return alloc<NSAttributedString>()->initWithString_attributes(
            bullets.get(), styled->attributesAtIndex_effectiveRange(0, nullptr).get());
    }
    static Ref<NSText> fieldEditor(NSSecureTextFieldCell&, NSView*)
    {
        // Never the shared one: what is typed here must not stay in it.
        const Ref<NSTextView> editor = make<NSTextView>();
        editor->setFieldEditor(true);
        editor->setRichText(false);
        editor->setDrawsBackground(false);
        TextViewAccess::of(*editor).secretText = make<NSMutableString>();
        return editor;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "echosBullets", imp<echos> },
            { "setEchosBullets:", imp<setEchos> },
            { "copyWithZone:", imp<copyWithZone> },
            { "attributedStringValue", imp<attributedValue> },
            { "fieldEditorForView:", imp<fieldEditor> },
        });
    }
};
BRINDLE_RECORD(NSSecureTextFieldCell, Secrets)

template <> struct NSSecureTextField::Methods<struct Secrets> {
    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSSecureTextField::cls()))
            NSSecureTextField::cls().setCellClass(NSSecureTextFieldCell::cls());
    }
    static void table(Builder& t) { t.classMethods({ { "initialize", imp<initialize> } }); }
};
BRINDLE_RECORD(NSSecureTextField, Secrets)

}
