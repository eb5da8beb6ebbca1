// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTextView.h"

#include "NSTextViewPrivate.h"
#include "TextPlacesPrivate.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/Exceptions.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

namespace brindle {

Ref<NSString> TextViewAccess::text(NSTextView& view)
{
    const TextViewState& s = of(view);
    return s.secretText ? Ref<NSString>(s.secretText) : s.storage->string();
}

void TextViewAccess::prepare(NSTextView& view, NSSize size, NSTextContainer* lent)
{
    constexpr CGFloat kUnbounded = 1e7;
    const auto state = std::make_shared<TextViewState>();
    Ref<NSTextContainer> container(lent);
    if (!container) {
        container = alloc<NSTextContainer>()->initWithContainerSize({ size.width, kUnbounded });
        container->setWidthTracksTextView(true);
    }
    state->layout = container->layoutManager();
    if (!state->layout) {
        state->layout = make<NSLayoutManager>();
        state->layout->addTextContainer(container.get());
    }
    state->storage = state->layout->textStorage();
    if (!state->storage) {
        state->storage = make<NSTextStorage>();
        state->storage->addLayoutManager(state->layout.get());
    }
    state->container = container;
    state->plainAttributes
        = makeDictionary({ { NSFontAttributeName, NSFont::cls().userFontOfSize(12).get() },
            { NSForegroundColorAttributeName, NSColor::cls().textColor().get() } });
    state->minSize = size;
    state->isReady = true;
    install(view, state);
}

void TextViewAccess::settle(NSTextView& view, NSSize size)
{
    const TextViewState& state = of(view);
    state.container->setTextView(&view);
    view.setFrameSize(size); // the container follows
    NSNotificationCenter::cls().defaultCenter()->addObserver_selector_name_object(&view,
        selector<"storageDidChange:">, NSTextStorageDidProcessEditingNotification,
        state.storage.get());
}

/// A text view under its other name.
template <> struct NSText::Methods<struct Making> {
    static Ref<NSObject> alloc(Class& self)
    {
        if (&self == static_cast<Class*>(NSText::cls()))
            return NSTextView::cls().alloc();
        return super<NSText, "alloc", Ref<NSObject>>(self);
    }
    static void table(Builder& t) { t.classMethods({ { "alloc", imp<alloc> } }); }
};
BRINDLE_RECORD(NSText, Making)

template <> struct NSTextView::Methods<struct Basics> {

    static TextViewState& of(NSTextView& self) { return TextViewAccess::of(self); }

    // ---- making

    static Ref<NSView> initWithFrame(NSTextView& self, NSRect frame)
    {
        return self.initWithFrame_textContainer(frame, nullptr);
    }
    static Ref<NSTextView> initWithContainer(
        NSTextView& self, NSRect frame, NSTextContainer* container)
    {
        TextViewAccess::prepare(self, frame.size, container);
        if (!super<NSTextView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        TextViewAccess::settle(self, frame.size);
        return &self;
    }
    static Ref<NSObject> init(NSTextView& self)
    {
        return cast<NSObject>(self.initWithFrame(NSZeroRect));
    }
    static void dealloc(NSTextView& self)
    {
        if (TextViewAccess::isReady(self) && of(self).blink)
            of(self).blink->invalidate();
        super<NSTextView, "dealloc">(self);
    }

    // ---- text

    static Ref<NSString> string(NSTextView& self)
    {
        return cast<NSString>(TextViewAccess::text(self)->copy());
    }
    static void setString(NSTextView& self, NSString* text)
    {
        if (text && !text->isKindOfClass(NSString::cls()))
            raise("NSInvalidArgumentException", "*** -[NSText setString:]: not a string");
        self.replaceCharactersInRange_withString(
            NSMakeRange(0, TextViewAccess::length(self)), text ? text : ""_ns);
        self.breakUndoCoalescing();
    }
    static void replaceCharacters(NSTextView& self, NSRange range, NSString* text)
    {
        const NSUInteger length = TextViewAccess::length(self);
        if (range.location > length || range.length > length - range.location)
            raise("NSRangeException",
                "*** -[NSText replaceCharactersInRange:withString:]: the range leaves the text");
        const Ref<NSAttributedString> fresh
            = alloc<NSAttributedString>()->initWithString_attributes(text ? text : ""_ns,
                of(self).rich && length ? TextViewAccess::attributesAtCaret(self).get()
                                        : of(self).plainAttributes.get());
        TextViewAccess::put(self, range, *fresh);
        TextViewAccess::select(self, of(self).anchor, of(self).head);
    }
    // Somebody edited the storage: the selection must fit, and what is shown is old.
    static void storageDidChange(NSTextView& self, NSObject*)
    {
        TextViewState& s = of(self);
        const NSUInteger length = s.storage->length();
        s.anchor = std::min(s.anchor, length);
        s.head = std::min(s.head, length);
        self.setNeedsDisplay(true);
    }

    // ---- kind

    static bool isEditable(NSTextView& self) { return of(self).editable; }
    static void setEditable(NSTextView& self, bool editable)
    {
        of(self).editable = editable;
        of(self).selectable |= editable;
        self.updateInsertionPointStateAndRestartTimer(true);
    }
    static bool isSelectable(NSTextView& self) { return of(self).selectable; }
    static void setSelectable(NSTextView& self, bool selectable)
    {
        of(self).selectable = selectable;
        of(self).editable &= selectable;
        self.updateInsertionPointStateAndRestartTimer(true);
    }
    template <auto Field> static auto get(NSTextView& self) { return of(self).*Field; }
    template <auto Field> static void set(NSTextView& self, bool value) { of(self).*Field = value; }
    static Ref<NSObject> delegate(NSTextView& self) { return of(self).delegate.get(); }
    static void setDelegate(NSTextView& self, NSObject* delegate) { of(self).delegate = delegate; }

    // ---- look

    static Ref<NSColor> background(NSTextView& self)
    {
        return of(self).background ? of(self).background : NSColor::cls().textBackgroundColor();
    }
    static void setBackground(NSTextView& self, NSColor* color)
    {
        of(self).background = color;
        self.setNeedsDisplay(true);
    }
    static void setDrawsBackground(NSTextView& self, bool draws)
    {
        of(self).drawsBackground = draws;
        self.setNeedsDisplay(true);
    }
    static Ref<NSColor> caretColor(NSTextView& self)
    {
        return of(self).caretColor ? of(self).caretColor : NSColor::cls().textColor();
    }
    static void setCaretColor(NSTextView& self, NSColor* color) { of(self).caretColor = color; }

    static Ref<NSObject> lookOfAll(NSTextView& self, NSString* name)
    {
        const TextViewState& s = of(self);
        if (s.storage->length())
            return s.storage->attribute_atIndex_effectiveRange(name, 0, nullptr);
        return s.plainAttributes->objectForKey(name);
    }
    static void setLookOfAll(NSTextView& self, NSString* name, NSObject* value)
    {
        TextViewState& s = of(self);
        const auto with = [&](const Ref<NSDictionary>& old) {
            const Ref<NSMutableDictionary> all
                = cast<NSMutableDictionary>(cast<NSObject>(old)->mutableCopy());
            all->setObject_forKey(value, name);
            return cast<NSDictionary>(all->copy());
        };
        s.plainAttributes = with(s.plainAttributes);
        if (s.typingAttributes)
            s.typingAttributes = with(s.typingAttributes);
        if (s.storage->length())
            s.storage->addAttribute_value_range(name, value, NSMakeRange(0, s.storage->length()));
        TextViewAccess::relayout(self);
    }
    static Ref<NSFont> font(NSTextView& self)
    {
        return cast<NSFont>(lookOfAll(self, NSFontAttributeName));
    }
    static void setFont(NSTextView& self, NSFont* font)
    {
        if (font && font->isKindOfClass(NSFont::cls()))
            setLookOfAll(self, NSFontAttributeName, font);
    }
    static Ref<NSColor> textColor(NSTextView& self)
    {
        return cast<NSColor>(lookOfAll(self, NSForegroundColorAttributeName));
    }
    static void setTextColor(NSTextView& self, NSColor* color)
    {
        if (color && color->isKindOfClass(NSColor::cls()))
            setLookOfAll(self, NSForegroundColorAttributeName, color);
    }
    static Ref<NSParagraphStyle> style(NSTextView& self)
    {
        const Ref<NSObject> style = lookOfAll(self, NSParagraphStyleAttributeName);
        return style ? cast<NSParagraphStyle>(style)
                     : NSParagraphStyle::cls().defaultParagraphStyle();
    }
    static NSTextAlignment alignment(NSTextView& self) { return style(self)->alignment(); }
    static void setAlignment(NSTextView& self, NSTextAlignment alignment)
    {
        const auto changed = cast<NSMutableParagraphStyle>(style(self)->mutableCopy());
        changed->setAlignment(alignment);
        setLookOfAll(self, NSParagraphStyleAttributeName, changed.get());
    }
    static NSWritingDirection direction(NSTextView& self)
    {
        return style(self)->baseWritingDirection();
    }
    static void setDirection(NSTextView& self, NSWritingDirection direction)
    {
        const auto changed = cast<NSMutableParagraphStyle>(style(self)->mutableCopy());
        changed->setBaseWritingDirection(direction);
        setLookOfAll(self, NSParagraphStyleAttributeName, changed.get());
    }

    static bool yes(NSTextView&) { return true; }
    static bool isOpaque(NSTextView& self)
    {
        return of(self).drawsBackground && self.backgroundColor()->alphaComponent() >= 1;
    }
    static bool no(NSTextView&) { return false; }

    static void table(Builder& t)
    {
        using S = TextViewState;
        t.methods({
            { "init", imp<init> },
            { "initWithFrame:", imp<initWithFrame> },
            { "initWithFrame:textContainer:", imp<initWithContainer> },
            { "dealloc", imp<dealloc> },
            { "string", imp<string> },
            { "setString:", imp<setString> },
            { "replaceCharactersInRange:withString:", imp<replaceCharacters> },
            { "storageDidChange:", imp<storageDidChange> },
            { "isEditable", imp<isEditable> },
            { "setEditable:", imp<setEditable> },
            { "isSelectable", imp<isSelectable> },
            { "setSelectable:", imp<setSelectable> },
            { "isFieldEditor", imp<get<&S::fieldEditor>> },
            { "setFieldEditor:", imp<set<&S::fieldEditor>> },
            { "isRichText", imp<get<&S::rich>> },
            { "setRichText:", imp<set<&S::rich>> },
            { "allowsUndo", imp<get<&S::allowsUndo>> },
            { "setAllowsUndo:", imp<set<&S::allowsUndo>> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "drawsBackground", imp<get<&S::drawsBackground>> },
            { "setDrawsBackground:", imp<setDrawsBackground> },
            { "backgroundColor", imp<background> },
            { "setBackgroundColor:", imp<setBackground> },
            { "insertionPointColor", imp<caretColor> },
            { "setInsertionPointColor:", imp<setCaretColor> },
            { "font", imp<font> },
            { "setFont:", imp<setFont> },
            { "textColor", imp<textColor> },
            { "setTextColor:", imp<setTextColor> },
            { "alignment", imp<alignment> },
            { "setAlignment:", imp<setAlignment> },
            { "baseWritingDirection", imp<direction> },
            { "setBaseWritingDirection:", imp<setDirection> },
            { "isFlipped", imp<yes> },
            { "isOpaque", imp<isOpaque> },
            { "mouseDownCanMoveWindow", imp<no> },
        });
    }
};
BRINDLE_RECORD(NSTextView, Basics)

}
