// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAttributedString+Fixing.h"

#include <algorithm>

#include "TextStylePrivate.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSTextAttachment.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSString+Enumeration.h"
#include "quartz/text/Itemizer.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Attributes {

        static Ref<NSDictionary> fontAttributes(NSAttributedString& self, NSRange range)
        {
            // Raises for a range that leaves the text.
            const Ref<NSAttributedString> part = self.attributedSubstringFromRange(range);
            if (!range.length)
                return make<NSDictionary>();
            const auto attributes = cast<NSMutableDictionary>(
                part->attributesAtIndex_effectiveRange(0, nullptr)->mutableCopy());
            attributes->removeObjectForKey(NSParagraphStyleAttributeName);
            attributes->removeObjectForKey(NSAttachmentAttributeName);
            return attributes;
        }
        static Ref<NSDictionary> rulerAttributes(NSAttributedString& self, NSRange range)
        {
            const Ref<NSAttributedString> part = self.attributedSubstringFromRange(range);
            const Ref<NSObject> style = range.length
                ? part->attribute_atIndex_effectiveRange(NSParagraphStyleAttributeName, 0, nullptr)
                : nullptr;
            return style ? NSDictionary::cls().dictionaryWithObject_forKey(
                       style.get(), NSParagraphStyleAttributeName)
                         : make<NSDictionary>();
        }
        static bool containsAttachments(NSAttributedString& self, NSRange range)
        {
            return utf16Of(self.string()->substringWithRange(range)).find(NSAttachmentCharacter)
                != std::u16string::npos;
        }

        static void table(Builder& t)
        {
            t.methods({
                { "fontAttributesInRange:", imp<fontAttributes> },
                { "rulerAttributesInRange:", imp<rulerAttributes> },
                { "containsAttachmentsInRange:", imp<containsAttachments> },
            });
        }
    };

    struct Fixing {

        /// Makes changes in a group of edits, which ends also when they raise.
        template <class Changes>
        static void group(NSMutableAttributedString& self, Changes&& changes)
        {
            self.beginEditing();
            try {
                changes();
            } catch (...) {
                const std::exception_ptr raised = std::current_exception();
                try {
                    self.endEditing();
                } catch (...) { // NOLINT(bugprone-empty-catch): the first one counts
                }
                std::rethrow_exception(raised);
            }
            self.endEditing();
        }

        static void fixAttributes(NSMutableAttributedString& self, NSRange range)
        {
            group(self, [&] {
                fixFontAttributeInRange(self, range);
                fixParagraphStyleAttributeInRange(self, range);
                fixAttachmentAttributeInRange(self, range);
            });
        }

        static void fixFonts(NSMutableAttributedString& self, NSRange range)
        {
            const std::u16string units = utf16Of(self.string()->substringWithRange(range));
            struct Change {
                NSRange range;
                text::Font font;
            };
            std::vector<Change> changes;
            std::vector<text::StyledRun> runs;
            layouts::readRuns(self, range, runs);
            std::vector<text::Item> items;
            for (const text::StyledRun& run : runs) {
                const std::u16string_view part
                    = std::u16string_view(units).substr(run.range.location, run.range.length);
                if (!run.font.face || text::isSingleItem(part, run.font))
                    continue;
                const text::FontRun whole { NSMakeRange(0, part.size()), run.font };
                text::itemize(part, std::span(&whole, 1), text::BaseDirection::leftToRight, items);
                for (const text::Item& item : items) {
                    if (item.font.face != run.font.face)
                        changes.push_back(
                            { NSMakeRange(
                                  range.location + run.range.location + item.start, item.length),
                                item.font });
                }
            }
            for (const Change& change : changes)
                self.addAttribute_value_range(
                    NSFontAttributeName, appkit::fontFrom(change.font).get(), change.range);
        }

        static void fixParagraphStyles(NSMutableAttributedString& self, NSRange range)
        {
            const Ref<NSString> text = self.string();
            const NSRange all = paragraphRangeForRange(text, range);
            for (NSUInteger at = all.location; at < NSMaxRange(all);) {
                NSRange same {};
                const Ref<NSObject> style = self.attribute_atIndex_longestEffectiveRange_inRange(
                    NSParagraphStyleAttributeName, at, &same, all);
                if (NSMaxRange(same) >= NSMaxRange(all))
                    return;
                // The last paragraph of the stretch may go on with another style.
                const NSRange last
                    = paragraphRangeForRange(text, NSMakeRange(NSMaxRange(same) - 1, 0));
                if (NSMaxRange(last) > NSMaxRange(same)) {
                    const NSRange rest
                        = NSMakeRange(NSMaxRange(same), NSMaxRange(last) - NSMaxRange(same));
                    if (style)
                        self.addAttribute_value_range(
                            NSParagraphStyleAttributeName, style.get(), rest);
                    else
                        self.removeAttribute_range(NSParagraphStyleAttributeName, rest);
                }
                at = NSMaxRange(last);
            }
        }

        static void fixAttachments(NSMutableAttributedString& self, NSRange range)
        {
            const Ref<NSString> text = self.string();
            self.attributedSubstringFromRange(NSMakeRange(range.location, 0));
            for (NSUInteger at = range.location; at < NSMaxRange(range);) {
                NSRange same {};
                const Ref<NSObject> attachment
                    = self.attribute_atIndex_longestEffectiveRange_inRange(
                        NSAttachmentAttributeName, at, &same, range);
                for (NSUInteger i = at; attachment && i < NSMaxRange(same); ++i) {
                    if (text->characterAtIndex(i) != NSAttachmentCharacter)
                        self.removeAttribute_range(NSAttachmentAttributeName, NSMakeRange(i, 1));
                }
                at = NSMaxRange(same);
            }
        }

        static void setAlignment(
            NSMutableAttributedString& self, NSTextAlignment alignment, NSRange range)
        {
            const NSRange all = paragraphRangeForRange(self.string(), range);
            group(self, [&] {
                for (NSUInteger at = all.location; at < NSMaxRange(all);) {
                    NSRange same {};
                    self.attribute_atIndex_longestEffectiveRange_inRange(
                        NSParagraphStyleAttributeName, at, &same, all);
                    const Ref<NSDictionary> attributes
                        = self.attributesAtIndex_effectiveRange(at, nullptr);
                    const auto style = cast<NSMutableParagraphStyle>(
                        layouts::paragraphStyleIn(attributes.get())->mutableCopy());
                    style->setAlignment(alignment);
                    self.addAttribute_value_range(
                        NSParagraphStyleAttributeName, Ref<NSObject>(style->copy()).get(), same);
                    at = NSMaxRange(same);
                }
            });
        }

        static void table(Builder& t)
        {
            t.methods({
                { "fixAttributesInRange:", imp<fixAttributes> },
                { "fixFontAttributeInRange:", imp<fixFonts> },
                { "fixParagraphStyleAttributeInRange:", imp<fixParagraphStyles> },
                { "fixAttachmentAttributeInRange:", imp<fixAttachments> },
                { "setAlignment:range:", imp<setAlignment> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSAttributedString, Attributes)
BRINDLE_EXTENSION(NSMutableAttributedString, Fixing)

}
