// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>
#include <random>

#include "appkit/NSAttributedString+Fixing.h"
#include "appkit/NSLayoutManager.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/Exceptions.h"
#include "foundation/NSMutableDictionary.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Focused.h"
#include "support/Strings.h"

// Texts that nobody writes: they are laid out like any other, and soon.

namespace brindle {

/// Counts what its storage tells it.
class CountingManager : public NSLayoutManager {
    BRINDLE_OBJECT(CountingManager, NSLayoutManager)

public:
    int told_ = 0;
    NSRange range_ {};
};
template <> struct CountingManager::Methods<struct Counting> {
    static void process(CountingManager& self, NSTextStorage* storage, NSUInteger mask,
        NSRange range, NSInteger delta, NSRange invalidated)
    {
        ++self.told_;
        self.range_ = range;
        super<CountingManager,
            "processEditingForTextStorage:edited:range:changeInLength:invalidatedRange:">(
            self, storage, mask, range, delta, invalidated);
    }
    static void table(Builder& t)
    {
        t.methods({ { "processEditingForTextStorage:edited:range:changeInLength:invalidatedRange:",
            imp<process> } });
    }
};
BRINDLE_RECORD(CountingManager, Counting)

/// Ends a text, as soon as it is written, with an exclamation mark.
class EditingDelegate : public NSObject {
    BRINDLE_OBJECT(EditingDelegate, NSObject)
};
template <> struct EditingDelegate::Methods<struct Editing> {
    static void didProcess(EditingDelegate&, NSTextStorage* storage, NSUInteger, NSRange, NSInteger)
    {
        if (!storage->string()->hasSuffix("!"_ns))
            storage->replaceCharactersInRange_withString(NSMakeRange(storage->length(), 0), "!"_ns);
    }
    static void table(Builder& t)
    {
        t.methods({ { "textStorage:didProcessEditing:range:changeInLength:", imp<didProcess> } });
    }
};
BRINDLE_RECORD(EditingDelegate, Editing)

namespace {

    constexpr double kUnbounded = std::numeric_limits<float>::max();
    constexpr double kWidth = 200;

    /// Lays out and answers the used size.
    NSSize laidOut(NSString* text, double width = kWidth)
    {
        const Ref<NSAttributedString> string = alloc<NSAttributedString>()->initWithString(text);
        return boundingRectWithSize_options(
            string, { width, kUnbounded }, NSStringDrawingUsesLineFragmentOrigin)
            .size;
    }
    NSSize laidOut(const std::u16string& text, double width = kWidth)
    {
        return laidOut(stringFrom(std::u16string_view(text)).get(), width);
    }

    std::u16string repeated(std::u16string_view part, std::size_t units)
    {
        std::u16string text;
        while (text.size() < units)
            text += part;
        return text;
    }

}

TEST(HostileText, TenMegabytesInOneParagraph)
{
    const NSSize size = laidOut(stringFrom(std::string(10'000'000, 'x')).get(), kUnbounded);
    EXPECT_GT(size.width, 10'000'000);
    EXPECT_LT(size.height, 30);
}

TEST(HostileText, TenMegabytesOfOneWordWrap)
{
    EXPECT_GT(laidOut(std::u16string(10'000'000, u'x')).height, 10'000);
}

TEST(HostileText, TenMegabytesOfWordsWrap)
{
    EXPECT_LE(laidOut(repeated(u"the lamp stands near the window ", 10'000'000)).width, kWidth);
}

TEST(HostileText, MillionsOfEmptyLines)
{
    const NSSize size = laidOut(std::u16string(1'000'000, u'\n'));
    EXPECT_GE(size.height, 10'000'000);
}

TEST(HostileText, TenThousandCombiningMarksOnOneLetter)
{
    EXPECT_GT(laidOut(u"a" + std::u16string(10'000, u'\u0301')).width, 0);
}

TEST(HostileText, LoneSurrogatesHaveAPlaceToo)
{
    std::u16string text;
    for (int i = 0; i < 20'000; ++i)
        text += i % 3 ? u'\xD800' : u'\xDC00';
    EXPECT_GT(laidOut(text).height, 0);
}

TEST(HostileText, AFaultyFixEndsItsGroupOfEdits)
{
    const Ref<NSTextStorage> storage = make<NSTextStorage>();
    const Ref<CountingManager> manager = make<CountingManager>();
    storage->addLayoutManager(manager.get());
    EXPECT_THROW(fixAttributesInRange(storage, NSMakeRange(3, 9)), Exception);
    storage->replaceCharactersInRange_withString(NSMakeRange(0, 0), "text"_ns);
    EXPECT_EQ(manager->told_, 1);
    EXPECT_EQ(manager->range_, NSMakeRange(0, 4));
}

TEST(HostileText, AnEditByWhoIsToldOfOneIsToldOnce)
{
    const Ref<NSTextStorage> storage = make<NSTextStorage>();
    const Ref<CountingManager> manager = make<CountingManager>();
    const Ref<EditingDelegate> delegate = make<EditingDelegate>();
    storage->addLayoutManager(manager.get());
    storage->setDelegate(delegate.get());
    storage->replaceCharactersInRange_withString(NSMakeRange(0, 0), "text"_ns);
    EXPECT_EQ(utf8(storage->string()), "text!");
    EXPECT_EQ(manager->told_, 1);
    EXPECT_EQ(manager->range_, NSMakeRange(0, 5));
}

TEST(HostileText, RandomUnitsAreLaidOutAndAsked)
{
    std::mt19937 random(7);
    for (int round = 0; round < 40; ++round) {
        std::u16string text(300, u' ');
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(random() % (round % 2 ? 0x10000 : 0x700));
        const Ref<NSAttributedString> string = alloc<NSAttributedString>()->initWithString(
            stringFrom(std::u16string_view(text)).get());
        const auto storage
            = cast<NSTextStorage>(alloc<NSTextStorage>()->initWithAttributedString(string.get()));
        const auto manager = make<NSLayoutManager>();
        const auto container = alloc<NSTextContainer>()->initWithContainerSize({ 60, kUnbounded });
        manager->addTextContainer(container.get());
        storage->addLayoutManager(manager.get());
        EXPECT_EQ(manager->glyphRangeForTextContainer(container.get()), NSMakeRange(0, 300));
        for (int ask = 0; ask < 50; ++ask) {
            const NSRect caret = manager->insertionRectForCharacterAtIndex(random() % 301);
            EXPECT_GT(caret.size.height, 0);
            EXPECT_LE(
                manager->insertionIndexForPoint_inTextContainer(caret.origin, container.get()),
                300u);
            const NSRange range = NSMakeRange(random() % 300, random() % 100);
            manager->boundingRectForGlyphRange_inTextContainer(range, container.get());
            storage->replaceCharactersInRange_withString(NSMakeRange(random() % 300, 0), "x"_ns);
            storage->deleteCharactersInRange(NSMakeRange(random() % 300, 1));
        }
    }
}

TEST(HostileText, DeeplyNestedDirections)
{
    EXPECT_GT(laidOut(repeated(u"\u202Bא\u202Ab", 40'000)).height, 0);
}

TEST(HostileText, OddAttributesCountAsNone)
{
    const auto attributes = make<NSMutableDictionary>();
    for (NSString* name : { NSFontAttributeName.get(), NSForegroundColorAttributeName.get(),
             NSParagraphStyleAttributeName.get(), NSKernAttributeName.get(),
             NSAttachmentAttributeName.get(), NSShadowAttributeName.get(),
             NSUnderlineStyleAttributeName.get() })
        attributes->setObject_forKey("odd"_ns, name);
    EXPECT_TRUE(NSEqualSizes(
        sizeWithAttributes("Lamp"_ns, attributes.get()), sizeWithAttributes("Lamp"_ns, nullptr)));
    const test::Focused picture(40, 20);
    drawAtPoint_withAttributes("Lamp"_ns, NSZeroPoint, attributes.get());
}

TEST(HostileText, FontWithoutAFaceCountsAsNone)
{
    const Ref<NSFont> bare = make<NSFont>();
    const auto attributes
        = NSDictionary::cls().dictionaryWithObject_forKey(bare.get(), NSFontAttributeName);
    EXPECT_TRUE(NSEqualSizes(
        sizeWithAttributes("Lamp"_ns, attributes.get()), sizeWithAttributes("Lamp"_ns, nullptr)));
}

TEST(HostileText, PlacesThatAreNoNumbersDrawNothing)
{
    const test::Focused picture(20, 20);
    const double nan = std::nan("");
    drawAtPoint_withAttributes("Lamp"_ns, NSMakePoint(nan, 0), nullptr);
    drawInRect_withAttributes("Lamp"_ns, NSMakeRect(0, nan, 10, 10), nullptr);
    drawInRect_withAttributes("Lamp"_ns, NSMakeRect(0, 0, nan, 10), nullptr);
    for (int x = 0; x < 20; ++x)
        EXPECT_EQ(picture.at(x, 10).alpha, 0);
}

}
