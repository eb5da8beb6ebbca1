// SPDX-License-Identifier: Apache-2.0
#include "NSTextViewPrivate.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "appkit/views/CodingPrivate.h"

namespace brindle {

// - Shape: the text with its attributes under "NSText"; "NSPlainText" is a space with those that new text has; colours where
//   they were set; a number for every setting; "NSDelegate" where it is archived too. What is secret stays so: only its
//   bullets are written.
template <> struct NSTextView::Methods<struct Coding> {

    static void code(const NumberCoding& number, TextViewState& state)
    {
        number("NSEditable"_ns, state.editable);
        number("NSSelectable"_ns, state.selectable);
        number("NSFieldEditor"_ns, state.fieldEditor);
        number("NSSingleLine"_ns, state.singleLine);
        number("NSRichText"_ns, state.rich);
        number("NSAllowsUndo"_ns, state.allowsUndo);
        number("NSDrawsBackground"_ns, state.drawsBackground);
        number("NSVerticallyResizable"_ns, state.verticallyResizable);
        number("NSHorizontallyResizable"_ns, state.horizontallyResizable);
        number("NSMinWidth"_ns, state.minSize.width);
        number("NSMinHeight"_ns, state.minSize.height);
        number("NSMaxWidth"_ns, state.maxSize.width);
        number("NSMaxHeight"_ns, state.maxSize.height);
        number("NSInsetWidth"_ns, state.inset.width);
        number("NSInsetHeight"_ns, state.inset.height);
    }
    static void code(const NumberCoding& number, NSTextContainer& container)
    {
        NSSize size = container.containerSize();
        double padding = container.lineFragmentPadding();
        bool followsWidth = container.widthTracksTextView();
        bool followsHeight = container.heightTracksTextView();
        number("NSContainerWidth"_ns, size.width);
        number("NSContainerHeight"_ns, size.height);
        number("NSLineFragmentPadding"_ns, padding);
        number("NSWidthTracks"_ns, followsWidth);
        number("NSHeightTracks"_ns, followsHeight);
        if (!number.reads)
            return;
        container.setContainerSize(size);
        container.setLineFragmentPadding(padding);
        container.setWidthTracksTextView(followsWidth);
        container.setHeightTracksTextView(followsHeight);
    }

    static void encode(NSTextView& self, NSCoder* coder)
    {
        super<NSTextView, "encodeWithCoder:">(self, coder);
        TextViewState& state = TextViewAccess::of(self);
        const NSRange all = NSMakeRange(0, state.storage->length());
        coder->encodeObject_forKey(
            state.storage->attributedSubstringFromRange(all).get(), "NSText"_ns);
        coder->encodeObject_forKey(
            alloc<NSAttributedString>()
                ->initWithString_attributes(" "_ns, state.plainAttributes.get())
                .get(),
            "NSPlainText"_ns);
        coder->encodeObject_forKey(state.background.get(), "NSBGColor"_ns);
        coder->encodeObject_forKey(state.caretColor.get(), "NSInsertionColor"_ns);
        coder->encodeConditionalObject_forKey(state.delegate.get().get(), "NSDelegate"_ns);
        code({ coder, false }, state);
        code({ coder, false }, *state.container);
    }

    static Ref<NSObject> initWithCoder(NSTextView& self, NSCoder* coder)
    {
        const NSRect frame = coder->decodeRectForKey("NSFrame"_ns);
        TextViewAccess::prepare(self, frame.size, nullptr);
        if (!super<NSTextView, "initWithCoder:", Ref<NSObject>>(self, coder))
            return nullptr;
        TextViewState& state = TextViewAccess::of(self);
        code({ coder, true }, state);
        code({ coder, true }, *state.container);
        if (const auto plain = decode<NSAttributedString>(coder, "NSPlainText"_ns);
            plain && plain->length())
            state.plainAttributes = plain->attributesAtIndex_effectiveRange(0, nullptr);
        if (const auto text = decode<NSAttributedString>(coder, "NSText"_ns))
            state.storage->setAttributedString(text.get());
        state.background = decode<NSColor>(coder, "NSBGColor"_ns);
        state.caretColor = decode<NSColor>(coder, "NSInsertionColor"_ns);
        state.delegate = coder->decodeObjectForKey("NSDelegate"_ns);
        TextViewAccess::settle(self, frame.size);
        return &self;
    }

    static void table(Builder& t) { extendCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSTextView, Coding)

}
