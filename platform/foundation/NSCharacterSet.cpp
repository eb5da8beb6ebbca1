// SPDX-License-Identifier: Apache-2.0
#include "NSCharacterSet.h"

#include <algorithm>

#include "CodingTable.h"
#include "NSData.h"
#include "NSStringPrivate.h"
#include "URLText.h"
#include "foundation/unicode/Unicode.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using characters::AsciiSet;
using characters::CodeRange;
using characters::CodeSet;
using characters::kLastCode;

namespace {

    // ---- the sets by name

    constexpr std::uint32_t kLetters = unicode::kUppercase | unicode::kLowercase
        | unicode::kTitlecase | unicode::kOtherLetters | unicode::kMarks;

    template <std::uint32_t Categories> CodeSet categories()
    {
        return CodeSet::ofCategories(Categories);
    }

    CodeSet spaces()
    {
        return CodeSet::of({ { 0x09, 0x09 }, { 0x20, 0x20 }, { 0xa0, 0xa0 }, { 0x1680, 0x1680 },
            { 0x2000, 0x200a }, { 0x202f, 0x202f }, { 0x205f, 0x205f }, { 0x3000, 0x3000 } });
    }
    CodeSet newlines()
    {
        return CodeSet::of({ { 0x0a, 0x0d }, { 0x85, 0x85 }, { 0x2028, 0x2029 } });
    }
    CodeSet spacesAndNewlines()
    {
        CodeSet out = spaces();
        out.unite(newlines());
        return out;
    }
    CodeSet decomposable()
    {
        CodeSet out;
        for (char32_t c = 0x80; c <= kLastCode; ++c) {
            if (unicode::decomposes(c))
                out.add({ c, c });
        }
        return out;
    }

    template <const AsciiSet& Members> CodeSet ascii() { return CodeSet::of(Members); }

    // ---- arguments

    /// Answers the code points of a range, an empty range as one that is left out.
    CodeRange codesOf(NSRange range)
    {
        if (range.length == 0 || range.location > kLastCode)
            return { 1, 0 };
        const NSUInteger last = std::min<NSUInteger>(range.length - 1, kLastCode - range.location);
        return { static_cast<char32_t>(range.location),
            static_cast<char32_t>(range.location + last) };
    }

    template <class Use> void eachCode(const NSString* string, Use use)
    {
        const strings::Contents text(string);
        std::size_t units = 0;
        for (std::size_t at = 0; at < text->size(); at += units) {
            const char32_t c = text->codePoint(at, units);
            use(CodeRange { c, c });
        }
    }

    // ---- bitmaps

    constexpr std::size_t kPlaneBytes = 8192;
    constexpr unsigned kPlanes = 17;

    void setBits(unsigned char* plane, CodeRange range)
    {
        for (char32_t c = range.first; c <= range.last; ++c)
            plane[c >> 3] = static_cast<unsigned char>(plane[c >> 3] | 1u << (c & 7));
    }

    /// Answers the part of a range in a plane, counted from the plane's first code point.
    CodeRange partIn(CodeRange range, unsigned plane)
    {
        const char32_t begin = plane << 16;
        if (range.first > begin + 0xffff || range.last < begin)
            return { 1, 0 };
        return { std::max(range.first, begin) - begin,
            std::min<char32_t>(range.last, begin + 0xffff) - begin };
    }

    bool addPlane(CodeSet& out, std::span<const unsigned char> bits, unsigned plane)
    {
        if (plane >= kPlanes)
            return false;
        const char32_t begin = plane << 16;
        for (char32_t c = 0; c < 0x10000; ++c) {
            if (!(bits[c >> 3] >> (c & 7) & 1))
                continue;
            char32_t last = c;
            while (last < 0xffff && bits[(last + 1) >> 3] >> ((last + 1) & 7) & 1)
                ++last;
            out.add({ begin + c, begin + last });
            c = last;
        }
        return true;
    }

    std::optional<CodeSet> readBitmap(std::span<const unsigned char> bytes)
    {
        if (bytes.size() < kPlaneBytes || (bytes.size() - kPlaneBytes) % (kPlaneBytes + 1) != 0)
            return std::nullopt;
        CodeSet out;
        addPlane(out, bytes, 0);
        for (std::size_t at = kPlaneBytes; at < bytes.size(); at += kPlaneBytes + 1) {
            if (!addPlane(out, bytes.subspan(at + 1), bytes[at]))
                return std::nullopt;
        }
        return out;
    }

}

/// The way to the code points of a set of whatever class.
struct CharacterSetAccess {
    /// Answers what a set holds; a subclass that decides in its own way is asked about every code point.
    static CodeSet codes(const NSCharacterSet* set)
    {
        constexpr auto kQuestion = selector<"longCharacterIsMember:">;
        if (set->methodForSelector(kQuestion)
            == NSCharacterSet::cls().instanceMethodForSelector(kQuestion))
            return set->codes_;
        CodeSet out;
        for (char32_t c = 0; c <= kLastCode; ++c) {
            if (set->longCharacterIsMember(c))
                out.add({ c, c });
        }
        return out;
    }
};

template <> struct NSCharacterSet::Methods<struct Members> {

    static Ref<NSCharacterSet> made(Class& self, CodeSet codes)
    {
        Ref<NSCharacterSet> set = cast<NSCharacterSet>(self.send<"new", Ref<NSObject>>());
        set->codes_ = std::move(codes);
        return set;
    }
    static CodeSet codes(const NSCharacterSet* set) { return CharacterSetAccess::codes(set); }

    template <CodeSet (*Make)()> static Ref<NSCharacterSet> named(Class& self)
    {
        if (&self != NSCharacterSet::cls())
            return made(self, Make());
        static NSCharacterSet* const kept = made(self, Make()).leak();
        return kept;
    }
    static Ref<NSCharacterSet> withRange(Class& self, NSRange range)
    {
        CodeSet out;
        out.add(codesOf(range));
        return made(self, std::move(out));
    }
    static Ref<NSCharacterSet> withString(Class& self, NSString* string)
    {
        strings::checkArgument(self, "characterSetWithCharactersInString:", string);
        CodeSet out;
        eachCode(string, [&](CodeRange c) { out.add(c); });
        return made(self, std::move(out));
    }
    static Ref<NSCharacterSet> withBitmap(Class& self, NSData* data)
    {
        std::optional<CodeSet> read = readBitmap(bytesOf(data));
        return read ? made(self, std::move(*read)) : nullptr;
    }

    static bool isMember(NSCharacterSet& self, std::uint32_t code)
    {
        return self.codes_.contains(code);
    }
    static bool isUnitMember(NSCharacterSet& self, unichar unit)
    {
        return self.longCharacterIsMember(unit);
    }
    static bool isSuperset(NSCharacterSet& self, NSCharacterSet* other)
    {
        strings::checkArgument(self, "isSupersetOfSet:", other);
        return codes(&self).includes(codes(other));
    }
    static bool hasMemberIn(NSCharacterSet& self, std::uint8_t plane)
    {
        const auto ranges = codes(&self).ranges();
        return std::any_of(ranges.begin(), ranges.end(), [plane](CodeRange range) {
            const CodeRange part = partIn(range, plane);
            return part.first <= part.last;
        });
    }
    static Ref<NSCharacterSet> inverted(NSCharacterSet& self)
    {
        CodeSet out = codes(&self);
        out.invert();
        return made(*NSCharacterSet::cls().object, std::move(out));
    }
    static Ref<NSData> bitmap(NSCharacterSet& self)
    {
        const auto ranges = codes(&self).ranges();
        std::vector<unsigned char> bytes(kPlaneBytes);
        for (unsigned plane = 0; plane < kPlanes; ++plane) {
            if (plane > 0 && !self.hasMemberInPlane(static_cast<std::uint8_t>(plane)))
                continue;
            if (plane > 0) {
                bytes.push_back(static_cast<unsigned char>(plane));
                bytes.resize(bytes.size() + kPlaneBytes);
            }
            for (const CodeRange range : ranges)
                setBits(bytes.data() + bytes.size() - kPlaneBytes, partIn(range, plane));
        }
        return dataFrom(bytes);
    }

    static bool isEqual(NSCharacterSet& self, NSObject* other)
    {
        if (other == &self)
            return true;
        return other && other->isKindOfClass(NSCharacterSet::cls())
            && codes(&self).ranges() == codes(static_cast<NSCharacterSet*>(other)).ranges();
    }
    static std::uint64_t hash(NSCharacterSet& self)
    {
        // By ASCII alone, so that nothing has to be looked up.
        const AsciiSet members = codes(&self).ascii();
        return members.word(0) * 31 + members.word(1);
    }
    static Ref<NSObject> copyWithZone(NSCharacterSet& self, void*) { return &self; }
    static Ref<NSObject> mutableCopyWithZone(NSCharacterSet& self, void*)
    {
        return made(*NSMutableCharacterSet::cls().object, codes(&self));
    }

    static void encodeWithCoder(NSCharacterSet& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.bitmapRepresentation().get(), "NSBitmap"_ns);
    }
    static Ref<NSObject> initWithCoder(NSCharacterSet& self, NSCoder* coder)
    {
        const Ref<NSData> bitmap = decode<NSData>(coder, "NSBitmap"_ns);
        std::optional<CodeSet> read = readBitmap(bytesOf(bitmap.get()));
        if (!read)
            return nullptr;
        self.codes_ = std::move(*read);
        return &self;
    }

    static void table(Builder& t)
    {
        using namespace unicode;
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        declareCoding<encodeWithCoder, initWithCoder>(t);
        t.classMethods({
            { "controlCharacterSet", imp<named<categories<kControls>>> },
            { "whitespaceCharacterSet", imp<named<spaces>> },
            { "whitespaceAndNewlineCharacterSet", imp<named<spacesAndNewlines>> },
            { "newlineCharacterSet", imp<named<newlines>> },
            { "decimalDigitCharacterSet", imp<named<categories<kDecimalDigits>>> },
            { "letterCharacterSet", imp<named<categories<kLetters>>> },
            { "lowercaseLetterCharacterSet", imp<named<categories<kLowercase>>> },
            { "uppercaseLetterCharacterSet", imp<named<categories<kUppercase | kTitlecase>>> },
            { "capitalizedLetterCharacterSet", imp<named<categories<kTitlecase>>> },
            { "nonBaseCharacterSet", imp<named<categories<kMarks>>> },
            { "alphanumericCharacterSet",
                imp<named<categories<kLetters | kDecimalDigits | kOtherNumbers>>> },
            { "decomposableCharacterSet", imp<named<decomposable>> },
            { "illegalCharacterSet", imp<named<categories<kUnassigned>>> },
            { "punctuationCharacterSet", imp<named<categories<kPunctuation>>> },
            { "symbolCharacterSet", imp<named<categories<kSymbols>>> },
            { "URLUserAllowedCharacterSet", imp<named<ascii<urls::kUser>>> },
            { "URLPasswordAllowedCharacterSet", imp<named<ascii<urls::kUser>>> },
            { "URLHostAllowedCharacterSet", imp<named<ascii<urls::kHost>>> },
            { "URLPathAllowedCharacterSet", imp<named<ascii<urls::kPath>>> },
            { "URLQueryAllowedCharacterSet", imp<named<ascii<urls::kQuery>>> },
            { "URLFragmentAllowedCharacterSet", imp<named<ascii<urls::kQuery>>> },
            { "characterSetWithRange:", imp<withRange> },
            { "characterSetWithCharactersInString:", imp<withString> },
            { "characterSetWithBitmapRepresentation:", imp<withBitmap> },
        });
        t.methods({
            { "characterIsMember:", imp<isUnitMember> },
            { "longCharacterIsMember:", imp<isMember> },
            { "isSupersetOfSet:", imp<isSuperset> },
            { "hasMemberInPlane:", imp<hasMemberIn> },
            { "invertedSet", imp<inverted> },
            { "bitmapRepresentation", imp<bitmap> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSCharacterSet, Members)

template <> struct NSMutableCharacterSet::Methods<struct Changing> {

    static void addRange(NSMutableCharacterSet& self, NSRange range)
    {
        self.codes_.add(codesOf(range));
    }
    static void removeRange(NSMutableCharacterSet& self, NSRange range)
    {
        self.codes_.remove(codesOf(range));
    }
    static void addString(NSMutableCharacterSet& self, NSString* string)
    {
        strings::checkArgument(self, "addCharactersInString:", string);
        eachCode(string, [&](CodeRange c) { self.codes_.add(c); });
    }
    static void removeString(NSMutableCharacterSet& self, NSString* string)
    {
        strings::checkArgument(self, "removeCharactersInString:", string);
        eachCode(string, [&](CodeRange c) { self.codes_.remove(c); });
    }
    static void unite(NSMutableCharacterSet& self, NSCharacterSet* other)
    {
        strings::checkArgument(self, "formUnionWithCharacterSet:", other);
        self.codes_.unite(CharacterSetAccess::codes(other));
    }
    static void intersect(NSMutableCharacterSet& self, NSCharacterSet* other)
    {
        strings::checkArgument(self, "formIntersectionWithCharacterSet:", other);
        self.codes_.intersect(CharacterSetAccess::codes(other));
    }
    static void invert(NSMutableCharacterSet& self) { self.codes_.invert(); }
    static Ref<NSObject> copyWithZone(NSMutableCharacterSet& self, void*)
    {
        Ref<NSCharacterSet> copy = make<NSCharacterSet>();
        copy->codes_ = self.codes_;
        return copy;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCharactersInRange:", imp<addRange> },
            { "removeCharactersInRange:", imp<removeRange> },
            { "addCharactersInString:", imp<addString> },
            { "removeCharactersInString:", imp<removeString> },
            { "formUnionWithCharacterSet:", imp<unite> },
            { "formIntersectionWithCharacterSet:", imp<intersect> },
            { "invert", imp<invert> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSMutableCharacterSet, Changing)

}
