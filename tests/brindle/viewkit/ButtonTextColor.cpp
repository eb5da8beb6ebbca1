// SPDX-License-Identifier: Apache-2.0
#include "viewkit/NSButton+TextColor.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSStringDrawing.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSMutableAttributedString.h"
#include "runtime/Table.h"
#include "support/Strings.h"

namespace brindle {

/// A button without a title of either kind.
class UntitledButton : public NSButton {
    BRINDLE_OBJECT(UntitledButton, NSButton)
};
template <> struct UntitledButton::Methods<struct Titles> {
    static Ref<NSAttributedString> attributedTitle(UntitledButton&) { return nullptr; }
    static void table(Builder& t) { t.methods({ { "attributedTitle", imp<attributedTitle> } }); }
};
BRINDLE_RECORD(UntitledButton, Titles)

namespace {

    Ref<NSButton> buttonTitled(NSString* title)
    {
        Ref<NSButton> button = make<NSButton>();
        button->setTitle(title);
        return button;
    }
    bool areSame(const Ref<NSColor>& a, const Ref<NSColor>& b)
    {
        return maybe(a)->isEqual(b.get());
    }

    TEST(ButtonTextColor, ASetColorIsThatOfTheWholeTitle)
    {
        const Ref<NSButton> button = buttonTitled("Open"_ns);
        const Ref<NSColor> red = NSColor::cls().redColor();
        setTextColor(*button, red.get());
        EXPECT_TRUE(areSame(textColor(*button), red));
        const auto last = cast<NSColor>(button->attributedTitle()->attribute_atIndex_effectiveRange(
            NSForegroundColorAttributeName, 3, nullptr));
        EXPECT_TRUE(areSame(last, red));
        EXPECT_EQ(utf8Of(button->title().get()), "Open");
    }

    TEST(ButtonTextColor, TheFirstLetterCounts)
    {
        const Ref<NSButton> button = make<NSButton>();
        const Ref<NSMutableAttributedString> title = cast<NSMutableAttributedString>(
            alloc<NSMutableAttributedString>()->initWithString("Open"_ns));
        const Ref<NSColor> red = NSColor::cls().redColor();
        const Ref<NSColor> blue = NSColor::cls().blueColor();
        title->addAttribute_value_range(NSForegroundColorAttributeName, red.get(), { 0, 1 });
        title->addAttribute_value_range(NSForegroundColorAttributeName, blue.get(), { 1, 3 });
        button->setAttributedTitle(title.get());
        EXPECT_TRUE(areSame(textColor(*button), red));
    }

    TEST(ButtonTextColor, ATitleWithAFontButNoColorHasNone)
    {
        const Ref<NSButton> button = make<NSButton>();
        const Ref<NSFont> font = NSFont::cls().systemFontOfSize(13);
        const Ref<NSDictionary> attributes
            = makeDictionary({ { NSFontAttributeName, font.get() } });
        const Ref<NSAttributedString> title
            = alloc<NSAttributedString>()->initWithString_attributes("Open"_ns, attributes.get());
        button->setAttributedTitle(title.get());
        EXPECT_EQ(textColor(*button), nullptr);
    }

    TEST(ButtonTextColor, APlainTitleHasItsFontAndTheColorOfEnabledText)
    {
        const Ref<NSButton> button = buttonTitled("Open"_ns);
        EXPECT_TRUE(areSame(textColor(*button), NSColor::cls().controlTextColor()));
        EXPECT_NE(button->attributedTitle()->attribute_atIndex_effectiveRange(
                      NSFontAttributeName, 0, nullptr),
            nullptr);
    }

    TEST(ButtonTextColor, WithoutAnAttributedTitleItIsThatOfControls)
    {
        const Ref<NSButton> button = make<UntitledButton>();
        EXPECT_TRUE(areSame(textColor(*button), NSColor::cls().controlTextColor()));
    }

    TEST(ButtonTextColor, AnEmptyTitleHasNone)
    {
        const Ref<NSButton> button = buttonTitled(""_ns);
        EXPECT_EQ(textColor(*button), nullptr);
        EXPECT_NO_THROW(setTextColor(*button, NSColor::cls().redColor().get()));
    }

}
}
