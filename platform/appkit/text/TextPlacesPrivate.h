// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"

namespace brindle::places {

/// Where a caret goes in a text: boundaries of what a reader counts as characters, words and paragraphs. Indexes are kept
/// within the text. Cost: only the surroundings of the index are looked at.

NSUInteger nextCharacter(NSString& text, NSUInteger index);
NSUInteger previousCharacter(NSString& text, NSUInteger index);
/// Answers the end of the word that holds the index, or of the next one; the text's end behind the last.
NSUInteger wordEnd(NSString& text, NSUInteger index);
/// Answers the start of the word before the index; 0 before the first.
NSUInteger wordStart(NSString& text, NSUInteger index);
/// Answers what a double click selects: a word, a stretch of white space, or a character by itself.
NSRange wordAt(NSString& text, NSUInteger index);
/// Answers the paragraph with the break that ends it.
NSRange paragraphAt(NSString& text, NSUInteger index);
/// Answers the same without the break.
NSRange paragraphContentsAt(NSString& text, NSUInteger index);
/// Answers the range grown to whole characters.
NSRange wholeCharacters(NSString& text, NSRange range);

/// Answers text as an editor takes it: without control characters but tabs and line breaks, halves of pairs replaced.
/// - singleLine: line breaks and tabs become spaces.
Ref<NSString> cleaned(NSString& text, bool singleLine);
/// Answers what stands for a secret text: a bullet a character, as many units as the text.
Ref<NSString> bullets(NSString& text);

}
