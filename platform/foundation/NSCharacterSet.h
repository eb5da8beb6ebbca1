// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSGeometry.h"
#include "NSString.h"
#include "foundation/unicode/CodeSet.h"

namespace brindle {

class NSData;
class NSMutableCharacterSet;

/// Letters to look for, to skip or to let pass: any set of Unicode code points.
///
/// The sets by name are one object each. The sets for parts of a URL hold what may stand in that part unescaped.
/// A subclass may decide in its own way: it overrides `longCharacterIsMember:`.
/// - Raises: `NSInvalidArgumentException` where a string or a set is nil that must not be.
/// Thread: any. Cost: ASCII is one bit test; the Unicode library is loaded for other letters only.
class NSCharacterSet : public NSObject {
    BRINDLE_OBJECT(NSCharacterSet, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Controls and formatting characters.
        Ref<NSCharacterSet> controlCharacterSet() const { return named<"controlCharacterSet">(); }
        /// Spaces and the tabulator.
        Ref<NSCharacterSet> whitespaceCharacterSet() const
        {
            return named<"whitespaceCharacterSet">();
        }
        Ref<NSCharacterSet> whitespaceAndNewlineCharacterSet() const
        {
            return named<"whitespaceAndNewlineCharacterSet">();
        }
        /// U+000A to U+000D, U+0085, U+2028, U+2029.
        Ref<NSCharacterSet> newlineCharacterSet() const { return named<"newlineCharacterSet">(); }
        Ref<NSCharacterSet> decimalDigitCharacterSet() const
        {
            return named<"decimalDigitCharacterSet">();
        }
        /// Letters and marks.
        Ref<NSCharacterSet> letterCharacterSet() const { return named<"letterCharacterSet">(); }
        Ref<NSCharacterSet> lowercaseLetterCharacterSet() const
        {
            return named<"lowercaseLetterCharacterSet">();
        }
        /// Capitals and title-case letters.
        Ref<NSCharacterSet> uppercaseLetterCharacterSet() const
        {
            return named<"uppercaseLetterCharacterSet">();
        }
        /// Title-case letters only.
        Ref<NSCharacterSet> capitalizedLetterCharacterSet() const
        {
            return named<"capitalizedLetterCharacterSet">();
        }
        /// Marks.
        Ref<NSCharacterSet> nonBaseCharacterSet() const { return named<"nonBaseCharacterSet">(); }
        /// Letters, marks and numbers.
        Ref<NSCharacterSet> alphanumericCharacterSet() const
        {
            return named<"alphanumericCharacterSet">();
        }
        /// Letters that are composed of others.
        Ref<NSCharacterSet> decomposableCharacterSet() const
        {
            return named<"decomposableCharacterSet">();
        }
        /// Code points without a letter.
        Ref<NSCharacterSet> illegalCharacterSet() const { return named<"illegalCharacterSet">(); }
        Ref<NSCharacterSet> punctuationCharacterSet() const
        {
            return named<"punctuationCharacterSet">();
        }
        Ref<NSCharacterSet> symbolCharacterSet() const { return named<"symbolCharacterSet">(); }

        Ref<NSCharacterSet> URLUserAllowedCharacterSet() const
        {
            return named<"URLUserAllowedCharacterSet">();
        }
        Ref<NSCharacterSet> URLPasswordAllowedCharacterSet() const
        {
            return named<"URLPasswordAllowedCharacterSet">();
        }
        Ref<NSCharacterSet> URLHostAllowedCharacterSet() const
        {
            return named<"URLHostAllowedCharacterSet">();
        }
        Ref<NSCharacterSet> URLPathAllowedCharacterSet() const
        {
            return named<"URLPathAllowedCharacterSet">();
        }
        Ref<NSCharacterSet> URLQueryAllowedCharacterSet() const
        {
            return named<"URLQueryAllowedCharacterSet">();
        }
        Ref<NSCharacterSet> URLFragmentAllowedCharacterSet() const
        {
            return named<"URLFragmentAllowedCharacterSet">();
        }

        /// - range: code points; what lies above U+10FFFF is left out.
        Ref<NSCharacterSet> characterSetWithRange(NSRange range) const
        {
            return send<"characterSetWithRange:", Ref<NSCharacterSet>>(range);
        }
        Ref<NSCharacterSet> characterSetWithCharactersInString(const NSString* string) const
        {
            return send<"characterSetWithCharactersInString:", Ref<NSCharacterSet>>(string);
        }
        /// - Nil: for data that is not what `bitmapRepresentation` answers.
        Ref<NSCharacterSet> characterSetWithBitmapRepresentation(const NSData* data) const
        {
            return send<"characterSetWithBitmapRepresentation:", Ref<NSCharacterSet>>(data);
        }

    private:
        template <Text Name> Ref<NSCharacterSet> named() const
        {
            return send<Name, Ref<NSCharacterSet>>();
        }
    };

    bool characterIsMember(unichar unit) const { return send<"characterIsMember:", bool>(unit); }
    bool longCharacterIsMember(std::uint32_t code) const
    {
        return send<"longCharacterIsMember:", bool>(code);
    }
    bool isSupersetOfSet(const NSCharacterSet* other) const
    {
        return send<"isSupersetOfSet:", bool>(other);
    }
    /// - plane: 0 to 16; others give NO.
    bool hasMemberInPlane(std::uint8_t plane) const
    {
        return send<"hasMemberInPlane:", bool>(plane);
    }
    Ref<NSCharacterSet> invertedSet() const { return send<"invertedSet", Ref<NSCharacterSet>>(); }
    /// - Shape: 8192 bytes, a bit a code point of plane 0, the lowest bit first; then for each further plane with
    ///   members its number in one byte and 8192 bytes of bits.
    Ref<NSData> bitmapRepresentation() const { return send<"bitmapRepresentation", Ref<NSData>>(); }

private:
    friend class NSMutableCharacterSet;
    friend struct CharacterSetAccess;

    characters::CodeSet codes_;
};

/// A set that can be changed.
/// Thread: one at a time.
class NSMutableCharacterSet : public NSCharacterSet {
    BRINDLE_OBJECT(NSMutableCharacterSet, NSCharacterSet)

public:
    void addCharactersInRange(NSRange range) { send<"addCharactersInRange:">(range); }
    void removeCharactersInRange(NSRange range) { send<"removeCharactersInRange:">(range); }
    void addCharactersInString(const NSString* string) { send<"addCharactersInString:">(string); }
    void removeCharactersInString(const NSString* string)
    {
        send<"removeCharactersInString:">(string);
    }
    void formUnionWithCharacterSet(const NSCharacterSet* other)
    {
        send<"formUnionWithCharacterSet:">(other);
    }
    void formIntersectionWithCharacterSet(const NSCharacterSet* other)
    {
        send<"formIntersectionWithCharacterSet:">(other);
    }
    void invert() { send<"invert">(); }
};

}
