// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CollectionsPrivate.h"
#include "NSAttributedString.h"
#include "NSMutableAttributedString.h"

/// What the sources of attributed strings share.
namespace brindle::attributes {

/// The way to a string's own fields.
struct Gate {
    static Ref<NSString>& text(NSAttributedString& string) { return string.text_; }
    static std::vector<Run>& runs(NSAttributedString& string) { return string.runs_; }
};

/// Answers the run that covers an index; the end behind the last one.
std::size_t runAt(const std::vector<Run>& runs, NSUInteger index);
inline NSUInteger startOf(const std::vector<Run>& runs, std::size_t run)
{
    return run ? runs[run - 1].end : 0;
}

/// Gives a range of the text one set of attributes.
void assign(std::vector<Run>& runs, NSRange range, NSDictionary* attributes);
/// Replaces a range by so many units, which take over the attributes of their place.
void resize(std::vector<Run>& runs, NSRange range, NSUInteger length);

/// - Raises: `NSRangeException` "*** -[NSAttributedString x]: Out of bounds".
void requireIndex(const NSAttributedString& self, const char* operation, NSUInteger index);
void requireRange(const NSAttributedString& self, const char* operation, NSRange range);

/// Raises `NSInvalidArgumentException` unless an argument is of a class: "*** -[NSAttributedString x]: nil argument".
void require(const NSObject& self, const char* operation, NSObject* argument, Class* cls);

}
