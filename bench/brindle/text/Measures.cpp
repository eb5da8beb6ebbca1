// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include "appkit/NSLayoutManager.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSDictionary.h"
#include "support/Memory.h"
#include "support/Shaping.h"
#include "support/Topics.h"
#include "text/NSAttributedString+Geometrics.h"

namespace brindle::bench {

namespace {

    constexpr float kWidth = 200;
    constexpr float kUnbounded = std::numeric_limits<float>::max();

    Ref<NSAttributedString> attributed(const std::u16string& line)
    {
        static const Ref<NSFont> font = NSFont::cls().fontWithName_size("Helvetica"_ns, 13);
        static const Ref<NSDictionary> attributes
            = NSDictionary::cls().dictionaryWithObject_forKey(font.get(), NSFontAttributeName);
        return alloc<NSAttributedString>()->initWithString_attributes(
            stringFrom(std::u16string_view(line)).get(), attributes.get());
    }

    Pair measuring(std::size_t length, Words words)
    {
        const auto bare = std::make_shared<BareShaper>(*plainFont().face);
        return { overLines(length, words, attributed,
                     [](const Ref<NSAttributedString>& line) {
                         keep(sizeForWidth_height(line, kWidth, kUnbounded).height);
                     }),
            overLines(length, words, [bare](const std::u16string& line) { bare->shape(line); }),
            length > 1000 ? std::size_t { 2 } : std::size_t { 64 } };
    }

    Reading growthOfMeasuring()
    {
        const auto measure = [](std::size_t count) {
            for (const std::u16string& line : makeLines(count, 60))
                keep(sizeForWidth_height(attributed(line), kWidth, kUnbounded).height);
        };
        measure(20000); // fills what is bounded
        const auto before = heapInUse();
        for (int i = 0; i < 100; ++i)
            measure(1000);
        return { std::max(heapInUse() - before, 0.0) / 1024, 0 };
    }

    /// A letter comes into the middle of a long text and its line's place is asked for.
    Pair typing(std::size_t paragraphs)
    {
        struct Editor {
            Ref<NSTextStorage> storage;
            Ref<NSLayoutManager> manager = make<NSLayoutManager>();
            Ref<NSTextContainer> container
                = alloc<NSTextContainer>()->initWithContainerSize({ 400, kUnbounded });
        };
        const auto editor = std::make_shared<Editor>();
        std::u16string text;
        for (const std::u16string& line : makeLines(paragraphs, 100))
            text += line + u"\n";
        editor->storage = cast<NSTextStorage>(
            alloc<NSTextStorage>()->initWithAttributedString(attributed(text).get()));
        editor->manager->addTextContainer(editor->container.get());
        editor->storage->addLayoutManager(editor->manager.get());
        editor->manager->glyphRangeForTextContainer(editor->container.get());
        const NSUInteger middle = text.size() / 2;
        return { repeated([=](std::size_t i) {
                    const bool grows = i % 2 == 0;
                    editor->storage->replaceCharactersInRange_withString(
                        NSMakeRange(middle, grows ? 0 : 1), grows ? "x"_ns : ""_ns);
                    keep(editor->manager->insertionRectForCharacterAtIndex(middle).origin.x);
                }),
            {} };
    }

}

void addTextMeasures(Plan& plan)
{
    // For known words 1.0 and 20 µs are meant, on a machine where shaping takes 3.2 and 100 µs.
    plan.time("sizeForWidth: of 60 characters, new words, beside hb_shape", timesFloor(1.4),
        [] { return measuring(60, Words::areNew); });
    plan.time("sizeForWidth: of 60 characters, words seen before", timesFloor(0.31),
        [] { return measuring(60, Words::wereSeen); });
    plan.time("sizeForWidth: of 2,000 characters, new words, beside hb_shape", timesFloor(1.2),
        [] { return measuring(2000, Words::areNew); });
    plan.time("sizeForWidth: of 2,000 characters, words seen before", timesFloor(0.2),
        [] { return measuring(2000, Words::wereSeen); });
    plan.read(
        "growth by 100,000 measurements of different texts", "KiB", atMost(64), growthOfMeasuring);
    plan.time("typing a letter into 10,000 characters, and its caret", kNoBudget,
        [] { return typing(100); });
    plan.time("typing a letter into 1,000,000 characters, and its caret", kNoBudget,
        [] { return typing(10000); });
}

}
