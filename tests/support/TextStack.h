// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>
#include <string>

#include "appkit/NSLayoutManager.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextContainer.h"
#include "appkit/NSTextStorage.h"
#include "foundation/NSDictionary.h"
#include "support/Strings.h"

/// Text laid out for a test, and what its lines are measured against. Without attributes text is set in Helvetica 12.

namespace brindle::test {

inline constexpr double kUnbounded = std::numeric_limits<float>::max();

/// A storage, a manager and a container.
struct TextStack {
    explicit TextStack(const std::string& text, double width = kUnbounded,
        double height = kUnbounded, NSDictionary* attributes = nullptr)
    {
        const Ref<NSAttributedString> string
            = alloc<NSAttributedString>()->initWithString_attributes(
                stringFrom(text).get(), attributes);
        container = alloc<NSTextContainer>()->initWithContainerSize({ width, height });
        storage
            = cast<NSTextStorage>(alloc<NSTextStorage>()->initWithAttributedString(string.get()));
        manager->addTextContainer(container.get());
        storage->addLayoutManager(manager.get());
    }

    /// Writes the text of every line: "one |two".
    std::string lines() const
    {
        std::string all;
        const Ref<NSString> text = storage->string();
        manager->glyphRangeForTextContainer(container.get());
        manager->enumerateLineFragmentsForGlyphRange_usingBlock(NSMakeRange(0, storage->length()),
            [&](NSRect, NSRect, NSTextContainer*, NSRange range, bool*) {
                all += (all.empty() ? "" : "|") + utf8(text->substringWithRange(range));
            });
        return all;
    }
    NSRect used() const
    {
        manager->glyphRangeForTextContainer(container.get());
        return manager->usedRectForTextContainer(container.get());
    }

    Ref<NSLayoutManager> manager = make<NSLayoutManager>();
    Ref<NSTextContainer> container;
    Ref<NSTextStorage> storage;
};

inline double widthOf(NSString* text) { return sizeWithAttributes(text, nullptr).width; }

inline double lineHeight()
{
    return make<NSLayoutManager>()->defaultLineHeightForFont(
        NSFont::cls().userFontOfSize(12).get());
}

/// Answers attributes with the paragraph style that `change` makes of a new one.
template <class Change> Ref<NSDictionary> styled(Change change)
{
    const auto style = make<NSMutableParagraphStyle>();
    change(*style);
    return NSDictionary::cls().dictionaryWithObject_forKey(
        style.get(), NSParagraphStyleAttributeName);
}

}
