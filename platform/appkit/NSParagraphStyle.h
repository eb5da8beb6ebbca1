// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle {

class NSArray;
class NSTextTab;
class NSDictionary;

/// Where the lines of a paragraph stand in their width.
enum NSTextAlignment : NSUInteger {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentRight = 1,
    NSTextAlignmentCenter = 2,
    NSTextAlignmentJustified
    = 3, ///< lines that were wrapped fill the width; the last one begins at its start
    NSTextAlignmentNatural = 4, ///< left, or right where the paragraph is written from the right
};
inline constexpr NSTextAlignment NSLeftTextAlignment = NSTextAlignmentLeft;
inline constexpr NSTextAlignment NSRightTextAlignment = NSTextAlignmentRight;
inline constexpr NSTextAlignment NSCenterTextAlignment = NSTextAlignmentCenter;
inline constexpr NSTextAlignment NSJustifiedTextAlignment = NSTextAlignmentJustified;
inline constexpr NSTextAlignment NSNaturalTextAlignment = NSTextAlignmentNatural;

/// What happens to a line that is too long. The last three keep a paragraph on one line and put an ellipsis in the place of
/// what does not fit.
enum NSLineBreakMode : NSUInteger {
    NSLineBreakByWordWrapping = 0, ///< a word that is wider than a line is broken between letters
    NSLineBreakByCharWrapping = 1,
    NSLineBreakByClipping = 2,
    NSLineBreakByTruncatingHead = 3,
    NSLineBreakByTruncatingTail = 4,
    NSLineBreakByTruncatingMiddle = 5,
};

/// The direction a paragraph begins with.
enum NSWritingDirection : NSInteger {
    NSWritingDirectionNatural = -1, ///< that of its first letter with a direction
    NSWritingDirectionLeftToRight = 0,
    NSWritingDirectionRightToLeft = 1,
};

/// How paragraphs are laid out: alignment, breaking, indents, spacing, tabs. Never changes; equal by value.
///
/// Measures are points. Positions count from the leading edge of the room that lines have: the left one, or the right one in a
/// paragraph that is written from the right.
/// Thread: any.
class NSParagraphStyle : public NSObject {
    BRINDLE_OBJECT(NSParagraphStyle, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the style of text without one: natural, wrapped at words, a tab every 28 points up to 336.
        Ref<NSParagraphStyle> defaultParagraphStyle() const
        {
            return send<"defaultParagraphStyle", Ref<NSParagraphStyle>>();
        }
        /// Answers left to right; languages are not asked.
        NSWritingDirection defaultWritingDirectionForLanguage(NSString* language) const
        {
            return send<"defaultWritingDirectionForLanguage:", NSWritingDirection>(language);
        }
    };

    NSTextAlignment alignment() const { return send<"alignment", NSTextAlignment>(); }
    NSLineBreakMode lineBreakMode() const { return send<"lineBreakMode", NSLineBreakMode>(); }
    NSWritingDirection baseWritingDirection() const
    {
        return send<"baseWritingDirection", NSWritingDirection>();
    }

    /// The room behind each line but a paragraph's last.
    CGFloat lineSpacing() const { return send<"lineSpacing", CGFloat>(); }
    CGFloat paragraphSpacing() const { return send<"paragraphSpacing", CGFloat>(); }
    /// The room in front of each paragraph but the first.
    CGFloat paragraphSpacingBefore() const { return send<"paragraphSpacingBefore", CGFloat>(); }
    /// The height of a line is multiplied by this, then kept between the next two. 0 means: as it is.
    CGFloat lineHeightMultiple() const { return send<"lineHeightMultiple", CGFloat>(); }
    CGFloat minimumLineHeight() const { return send<"minimumLineHeight", CGFloat>(); }
    /// 0 means any height.
    CGFloat maximumLineHeight() const { return send<"maximumLineHeight", CGFloat>(); }

    CGFloat firstLineHeadIndent() const { return send<"firstLineHeadIndent", CGFloat>(); }
    CGFloat headIndent() const { return send<"headIndent", CGFloat>(); }
    /// Where lines end: from the leading edge, or from the trailing one where it is zero or negative.
    CGFloat tailIndent() const { return send<"tailIndent", CGFloat>(); }

    /// Answers `NSTextTab` objects, nearest first.
    Ref<NSArray> tabStops() const { return send<"tabStops", Ref<NSArray>>(); }
    /// The distance of further stops behind the last one; 0 means none, and tabs there start a new line.
    CGFloat defaultTabInterval() const { return send<"defaultTabInterval", CGFloat>(); }
    /// 0 to 1. Words are not hyphenated whatever it says.
    float hyphenationFactor() const { return send<"hyphenationFactor", float>(); }
    float tighteningFactorForTruncation() const
    {
        return send<"tighteningFactorForTruncation", float>();
    }
    bool allowsDefaultTighteningForTruncation() const
    {
        return send<"allowsDefaultTighteningForTruncation", bool>();
    }
    /// 0 for text, 1 to 6 for headings.
    NSInteger headerLevel() const { return send<"headerLevel", NSInteger>(); }

private:
    friend class NSMutableParagraphStyle;

    NSTextAlignment alignment_ = NSTextAlignmentNatural;
    NSLineBreakMode lineBreakMode_ = NSLineBreakByWordWrapping;
    NSWritingDirection baseWritingDirection_ = NSWritingDirectionNatural;
    CGFloat lineSpacing_ = 0;
    CGFloat paragraphSpacing_ = 0;
    CGFloat paragraphSpacingBefore_ = 0;
    CGFloat lineHeightMultiple_ = 0;
    CGFloat minimumLineHeight_ = 0;
    CGFloat maximumLineHeight_ = 0;
    CGFloat firstLineHeadIndent_ = 0;
    CGFloat headIndent_ = 0;
    CGFloat tailIndent_ = 0;
    CGFloat defaultTabInterval_ = 0;
    float hyphenationFactor_ = 0;
    float tighteningFactorForTruncation_ = 0.05f;
    bool allowsDefaultTighteningForTruncation_ = true;
    NSInteger headerLevel_ = 0;
    Ref<NSArray> tabStops_; // nil: the customary twelve
};

}
