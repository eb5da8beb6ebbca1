// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "NSMutableString.h"
#include "NSStringPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::Gate;
using strings::View;

// Making, units and parts, equality, copies: what every string needs.
template <> struct NSString::Methods<struct StringBasics> {

    static Ref<NSString> fresh(Class& self) { return cast<NSString>(Meta { { &self } }.alloc()); }

    // ---- making

    static Ref<NSString> string(Class& self) { return cast<NSString>(fresh(self)->init()); }
    static Ref<NSString> stringWithString(Class& self, NSString* string)
    {
        strings::checkArgument(self, "stringWithString:", string);
        return fresh(self)->initWithString(string);
    }
    static Ref<NSString> stringWithUTF8String(Class& self, const char* utf8)
    {
        if (!utf8)
            raise("NSInvalidArgumentException",
                strings::place(self, "stringWithUTF8String:") + "NULL cString");
        return fresh(self)->initWithUTF8String(utf8);
    }
    static Ref<NSString> stringWithCharacters(Class& self, const unichar* units, NSUInteger length)
    {
        return fresh(self)->initWithCharacters_length(units, length);
    }
    static Ref<NSString> initWithString(NSString& self, NSString* string)
    {
        strings::checkArgument(self, "initWithString:", string);
        strings::assign(self.storage_, Contents(string));
        return &self;
    }
    static Ref<NSString> initWithUTF8String(NSString& self, const char* utf8)
    {
        if (!utf8)
            raise("NSInvalidArgumentException",
                strings::place(self, "initWithUTF8String:") + "NULL cString");
        if (!strings::assignUtf8(self.storage_, utf8))
            return nullptr;
        return &self;
    }
    static Ref<NSString> initWithCharacters(NSString& self, const unichar* units, NSUInteger length)
    {
        if (length > 0)
            strings::checkArgument(self, "initWithCharacters:length:", units);
        strings::assign(self.storage_, View(std::u16string_view(length ? units : u"", length)));
        return &self;
    }

    // ---- units and parts

    static NSUInteger length(NSString& self) { return strings::viewOf(self.storage_).size(); }
    static unichar characterAtIndex(NSString& self, NSUInteger index)
    {
        const View view = strings::viewOf(self.storage_);
        strings::checkIndex(self, "characterAtIndex:", index, view.size(), view.size());
        return view[index];
    }
    static void getCharacters(NSString& self, unichar* buffer, NSRange range)
    {
        const Contents text(&self);
        strings::checkRange(self, "getCharacters:range:", range, text->size());
        if (range.length)
            strings::checkArgument(self, "getCharacters:range:", buffer);
        const View part = text->part(range);
        if (part.isNarrow())
            widen(part.narrow(), buffer);
        else
            std::copy(part.wide().begin(), part.wide().end(), buffer);
    }
    /// Copies units of one byte, many at a time.
    static void widen(std::string_view units, unichar* buffer)
    {
        std::array<unsigned char, 16> narrow {};
        std::array<unichar, narrow.size()> wide {};
        std::size_t at = 0;
        for (; at + narrow.size() <= units.size(); at += narrow.size()) {
            std::memcpy(narrow.data(), units.data() + at, sizeof narrow);
            for (std::size_t i = 0; i < narrow.size(); ++i)
                wide[i] = narrow[i];
            std::memcpy(buffer + at, wide.data(), sizeof wide);
        }
        for (; at < units.size(); ++at)
            buffer[at] = static_cast<unsigned char>(units[at]);
    }
    static Ref<NSString> substringToIndex(NSString& self, NSUInteger index)
    {
        const Contents text(&self);
        strings::checkIndex(self, "substringToIndex:", index, text->size() + 1, text->size());
        return strings::plain(text->part(0, index));
    }
    static Ref<NSString> substringFromIndex(NSString& self, NSUInteger index)
    {
        const Contents text(&self);
        strings::checkIndex(self, "substringFromIndex:", index, text->size() + 1, text->size());
        return strings::plain(text->part(index, text->size() - index));
    }
    static Ref<NSString> substringWithRange(NSString& self, NSRange range)
    {
        const Contents text(&self);
        strings::checkRange(self, "substringWithRange:", range, text->size());
        return strings::plain(text->part(range));
    }

    // ---- UTF-8

    static const char* keepUtf8(NSString& self, View view)
    {
        const std::string text = strings::toUtf8(view);
        const char* before = self.storage_.utf8.load(std::memory_order_acquire);
        if (before && text == before)
            return before;
        auto* const fresh = new char[text.size() + 1];
        std::memcpy(fresh, text.c_str(), text.size() + 1);
        if (self.storage_.utf8.compare_exchange_strong(before, fresh, std::memory_order_acq_rel)) {
            delete[] before; // made of a text that is no longer
            return fresh;
        }
        delete[] fresh; // another thread was quicker
        return before;
    }
    static const char* utf8String(NSString& self)
    {
        const Contents text(&self);
        if (text->isNarrow())
            return text->narrow().data();
        if (text.isStored()) {
            if (const char* const kept = self.storage_.utf8.load(std::memory_order_acquire))
                return kept;
        }
        return keepUtf8(self, text);
    }

    // ---- equality

    static bool isEqualToString(NSString& self, NSString* other)
    {
        if (&self == other)
            return true;
        return other && strings::equal(Contents(&self), Contents(other));
    }
    static bool isEqual(NSString& self, NSObject* other)
    {
        if (&self == other)
            return true;
        return strings::isString(other) && isEqualToString(self, static_cast<NSString*>(other));
    }
    static NSUInteger hash(NSString& self)
    {
        const Contents text(&self);
        if (!text.isStored())
            return strings::hashOf(text);
        std::uint64_t kept = self.storage_.hash.load(std::memory_order_relaxed);
        if (!kept) {
            kept = strings::hashOf(text);
            self.storage_.hash.store(kept, std::memory_order_relaxed);
        }
        return kept;
    }

    // ---- copies

    static Ref<NSString> description(NSString& self) { return &self; }
    static Ref<NSObject> copyWithZone(NSString& self, void*) { return &self; }
    static Ref<NSObject> mutableCopyWithZone(NSString& self, void*)
    {
        Ref<NSString> copy = Ref<NSString>::adopt(
            static_cast<NSString*>(class_createInstance(classOf<NSMutableString>())));
        strings::assign(copy->storage_, Contents(&self));
        return copy;
    }
    static Class* classForCoder(NSString&) { return classOf<NSString>(); }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying", "NSMutableCopying" });
        t.classMethods({
            { "string", imp<string> },
            { "stringWithString:", imp<stringWithString> },
            { "stringWithUTF8String:", imp<stringWithUTF8String> },
            { "stringWithCharacters:length:", imp<stringWithCharacters> },
        });
        t.methods({
            { "initWithString:", imp<initWithString> },
            { "initWithUTF8String:", imp<initWithUTF8String> },
            { "initWithCharacters:length:", imp<initWithCharacters> },
            { "length", imp<length> },
            { "characterAtIndex:", imp<characterAtIndex> },
            { "getCharacters:range:", imp<getCharacters> },
            { "substringToIndex:", imp<substringToIndex> },
            { "substringFromIndex:", imp<substringFromIndex> },
            { "substringWithRange:", imp<substringWithRange> },
            { "UTF8String", imp<utf8String> },
            { "isEqualToString:", imp<isEqualToString> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "description", imp<description> },
            { "copyWithZone:", imp<copyWithZone> },
            { "mutableCopyWithZone:", imp<mutableCopyWithZone> },
            { "classForCoder", imp<classForCoder> },
            { "classForKeyedArchiver", imp<classForCoder> },
        });
    }
};
BRINDLE_RECORD(NSString, StringBasics)

}
