// SPDX-License-Identifier: Apache-2.0
#include "NSString.h"

#include <cstring>
#include <mutex>
#include <unordered_map>

#include "HashingPrivate.h"
#include "NSMutableString.h"
#include "NSStringPrivate.h"
#include "SameBytesPrivate.h"
#include "runtime/Block.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace strings {

    bool isAscii(std::string_view bytes)
    {
        std::size_t i = 0;
        for (; i + 8 <= bytes.size(); i += 8) {
            std::uint64_t word;
            std::memcpy(&word, bytes.data() + i, 8);
            if (word & 0x8080808080808080u)
                return false;
        }
        for (; i < bytes.size(); ++i) {
            if (bytes[i] & 0x80)
                return false;
        }
        return true;
    }

    bool isAscii(std::u16string_view units)
    {
        unsigned seen = 0;
        for (const char16_t unit : units)
            seen |= unit;
        return seen < 0x80;
    }

    char32_t View::codePoint(std::size_t index, std::size_t& units) const
    {
        units = 1;
        const char16_t first = (*this)[index];
        if (!isHigh(first) || index + 1 >= length_ || !isLow(wide_[index + 1]))
            return first;
        units = 2;
        return 0x10000 + ((static_cast<char32_t>(first) & 0x3ff) << 10)
            + (wide_[index + 1] & 0x3ff);
    }

    // ---- UTF-8

    namespace {

        constexpr char32_t kInvalid = 0xffffffff;

        void addCodePoint(std::u16string& out, char32_t c)
        {
            if (c < 0x10000) {
                out.push_back(static_cast<char16_t>(c));
                return;
            }
            out.push_back(static_cast<char16_t>(0xd800 + ((c - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xdc00 + ((c - 0x10000) & 0x3ff)));
        }

        /// Reads one code point and moves on; an ill-formed sequence takes one byte.
        char32_t next(std::string_view bytes, std::size_t& at)
        {
            const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
            const unsigned lead = byte(at++);
            if (lead < 0x80)
                return lead;
            const unsigned more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
            if (lead < 0xc2 || lead > 0xf4 || bytes.size() - at < more)
                return kInvalid;
            char32_t c = lead & (0x3fu >> more);
            for (unsigned i = 0; i < more; ++i) {
                if ((byte(at + i) & 0xc0) != 0x80)
                    return kInvalid;
                c = (c << 6) | (byte(at + i) & 0x3f);
            }
            const bool isShortest = more == 1 || c >= (more == 2 ? 0x800u : 0x10000u);
            if (!isShortest || c > 0x10ffff || (c & 0xfffff800) == 0xd800)
                return kInvalid;
            at += more;
            return c;
        }

    }

    void addUtf8(std::string& out, char32_t c)
    {
        const auto put = [&](char32_t value) { out.push_back(static_cast<char>(value)); };
        if (c < 0x80) {
            put(c);
        } else if (c < 0x800) {
            put(0xc0 | c >> 6);
            put(0x80 | (c & 0x3f));
        } else if (c < 0x10000) {
            put(0xe0 | c >> 12);
            put(0x80 | (c >> 6 & 0x3f));
            put(0x80 | (c & 0x3f));
        } else {
            put(0xf0 | c >> 18);
            put(0x80 | (c >> 12 & 0x3f));
            put(0x80 | (c >> 6 & 0x3f));
            put(0x80 | (c & 0x3f));
        }
    }

    std::optional<std::u16string> fromUtf8(std::string_view utf8)
    {
        std::u16string units;
        units.reserve(utf8.size());
        for (std::size_t at = 0; at < utf8.size();) {
            const char32_t c = next(utf8, at);
            if (c == kInvalid)
                return std::nullopt;
            addCodePoint(units, c);
        }
        return units;
    }

    std::size_t validUtf8(std::string_view bytes)
    {
        std::size_t at = 0;
        while (at < bytes.size()) {
            std::uint64_t word = 0;
            if (bytes.size() - at >= 8)
                std::memcpy(&word, bytes.data() + at, 8);
            else
                word = ~word;
            if (!(word & 0x8080808080808080u)) {
                at += 8;
                continue;
            }
            const std::size_t start = at;
            if (next(bytes, at) == kInvalid)
                return start;
        }
        return at;
    }

    std::string toUtf8(View text)
    {
        if (text.isNarrow())
            return std::string(text.narrow());
        std::string out;
        out.reserve(text.size() + text.size() / 2);
        std::size_t units = 0;
        for (std::size_t at = 0; at < text.size(); at += units) {
            const char32_t c = text.codePoint(at, units);
            addUtf8(out, (c & 0xfffff800) == 0xd800 ? kReplacement : c);
        }
        return out;
    }

    // ---- storage

    View viewOf(const Storage& storage)
    {
        if (const auto* const narrow = std::get_if<std::string>(&storage.text))
            return View(std::string_view(*narrow));
        return View(std::u16string_view(std::get<std::u16string>(storage.text)));
    }

    bool assignUtf8(Storage& storage, std::string_view utf8)
    {
        if (isAscii(utf8)) {
            storage.text = std::string(utf8);
            return true;
        }
        std::optional<std::u16string> units = fromUtf8(utf8);
        if (!units)
            return false;
        storage.text = std::move(*units);
        return true;
    }

    void assign(Storage& storage, View text)
    {
        if (text.isNarrow())
            storage.text = std::string(text.narrow());
        else if (isAscii(text.wide()))
            storage.text = std::string(text.wide().begin(), text.wide().end());
        else
            storage.text = std::u16string(text.wide());
    }

    void Gate::forget(NSString& string)
    {
        Storage& storage = string.storage_;
        delete[] storage.utf8.exchange(nullptr, std::memory_order_acq_rel);
        storage.hash.store(0, std::memory_order_relaxed);
    }

    // ---- reading objects

    namespace {

        /// Answers whether the class keeps its text in its own way.
        bool keepsItsOwn(Class* cls)
        {
            if (cls == classOf<NSString>() || cls == classOf<NSMutableString>())
                return false;
            const auto isOurs = [cls](SEL sel) {
                return class_getMethodImplementation(cls, sel)
                    == class_getMethodImplementation(classOf<NSString>(), sel);
            };
            return !isOurs(selector<"length">) || !isOurs(selector<"characterAtIndex:">);
        }

    }

    Contents::Contents(const NSString* string)
    {
        if (!string || string == nilObject)
            return;
        if (!keepsItsOwn(string->isa_)) {
            view_ = viewOf(Gate::storage(*string));
            isStored_ = true;
            return;
        }
        gathered_.resize(string->length());
        for (std::size_t i = 0; i < gathered_.size(); ++i)
            gathered_[i] = string->characterAtIndex(i);
        view_ = View(std::u16string_view(gathered_));
    }

    bool isString(const NSObject* object)
    {
        if (!object)
            return false;
        const Class* const cls = object->isa_;
        return cls == classOf<NSString>() || cls == classOf<NSMutableString>()
            || object->isKindOfClass(classOf<NSString>());
    }

    std::uint64_t hashOf(View text) { return hashOf(text, hashing::seed()); }

    std::uint64_t hashOf(View text, std::uint64_t seed)
    {
        const auto bytes = [&](const auto& units) {
            return hashing::ofBytes(reinterpret_cast<const unsigned char*>(units.data()),
                units.size() * sizeof units[0], seed);
        };
        std::uint64_t hash = 0;
        if (text.isNarrow())
            hash = bytes(text.narrow());
        else if (isAscii(text.wide())) // equal to a text that is kept as bytes
            hash = bytes(std::string(text.wide().begin(), text.wide().end()));
        else
            hash = bytes(text.wide());
        return hash ? hash : 1;
    }

    bool equal(View a, View b)
    {
        if (a.size() != b.size())
            return false;
        if (a.isNarrow() && b.isNarrow())
            return sameBytes(a.narrow(), b.narrow());
        if (!a.isNarrow() && !b.isNarrow())
            return a.wide() == b.wide();
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (a[i] != b[i])
                return false;
        }
        return true;
    }

    // ---- making

    namespace {

        Ref<NSString> blank()
        {
            return Ref<NSString>::adopt(
                static_cast<NSString*>(class_createInstance(classOf<NSString>())));
        }

    }

    Ref<NSString> plain(View text)
    {
        Ref<NSString> string = blank();
        if (text.isNarrow())
            Gate::storage(*string).text.emplace<std::string>(text.narrow());
        else
            assign(Gate::storage(*string), text);
        return string;
    }

    Ref<NSString> plain(std::string&& ascii)
    {
        Ref<NSString> string = blank();
        Gate::storage(*string).text = std::move(ascii);
        return string;
    }

    Ref<NSString> plain(std::u16string&& units)
    {
        if (isAscii(units))
            return plain(View(std::u16string_view(units)));
        Ref<NSString> string = blank();
        Gate::storage(*string).text = std::move(units);
        return string;
    }

    NSString* literal(std::string_view utf8)
    {
        struct Literals {
            std::mutex mutex;
            std::unordered_map<std::string, NSString*> strings;
        };
        static Literals& literals = *new Literals;
        const std::lock_guard guard(literals.mutex);
        NSString*& place = literals.strings[std::string(utf8)];
        if (!place) {
            Ref<NSString> string = stringFrom(utf8);
            if (!string)
                fatal("a string literal is not UTF-8");
            headerOf(string.get()).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
            place = string.leak();
        }
        return place;
    }

    namespace {

        void* answerNothing(const NSObject*, SEL, NSString*, ...) { return nullptr; }

    }

    IMP variadicImplementation(const NSObject* receiver, SEL sel)
    {
        if (!receiver || receiver == nilObject)
            return reinterpret_cast<IMP>(&answerNothing);
        if (!class_respondsToSelector(receiver->isa_, sel))
            const_cast<NSObject*>(receiver)->doesNotRecognizeSelector(sel);
        return class_getMethodImplementation(receiver->isa_, sel);
    }

    // ---- building

    void TextBuilder::widen()
    {
        wide_.reserve(narrow_.capacity());
        wide_.assign(narrow_.begin(), narrow_.end());
        narrow_.clear();
        isWide_ = true;
    }

    void TextBuilder::add(View text)
    {
        if (text.isNarrow() && !isWide_) {
            narrow_.append(text.narrow());
            return;
        }
        if (!isWide_)
            widen();
        if (text.isNarrow())
            wide_.append(text.narrow().begin(), text.narrow().end());
        else
            wide_.append(text.wide());
    }

    void TextBuilder::add(char16_t unit)
    {
        if (unit < 0x80 && !isWide_) {
            narrow_.push_back(static_cast<char>(unit));
            return;
        }
        if (!isWide_)
            widen();
        wide_.push_back(unit);
    }

    void TextBuilder::add(std::size_t times, char16_t unit)
    {
        for (; times > 0; --times)
            add(unit);
    }

    void TextBuilder::addUtf8(std::string_view utf8)
    {
        if (isAscii(utf8)) {
            add(View(utf8));
            return;
        }
        if (!isWide_)
            widen();
        for (std::size_t at = 0; at < utf8.size();) {
            const char32_t c = next(utf8, at);
            addCodePoint(wide_, c == kInvalid ? kReplacement : c);
        }
    }

    void TextBuilder::moveTo(Storage& storage)
    {
        if (isWide_)
            assign(storage, View(std::u16string_view(wide_)));
        else
            storage.text = std::move(narrow_);
    }

    Ref<NSString> TextBuilder::string()
    {
        return isWide_ ? plain(std::move(wide_)) : plain(std::move(narrow_));
    }

    // ---- failing

    std::string place(const NSObject& self, const char* selector)
    {
        const bool isClass = class_isMetaClass(self.isa_);
        const Class* const cls = isClass ? static_cast<const Class*>(&self) : self.isa_;
        return std::string("*** ") + (isClass ? "+[" : "-[") + class_getName(cls) + " " + selector
            + "]: ";
    }

    void checkIndex(const NSObject& self, const char* selector, NSUInteger index, NSUInteger end,
        NSUInteger length)
    {
        if (index < end)
            return;
        raise("NSRangeException",
            place(self, selector) + "Index " + std::to_string(index)
                + " out of bounds; string length " + std::to_string(length));
    }

    void checkRange(const NSObject& self, const char* selector, NSRange range, NSUInteger length)
    {
        if (range.location <= length && range.length <= length - range.location)
            return;
        raise("NSRangeException",
            place(self, selector) + "Range {" + std::to_string(range.location) + ", "
                + std::to_string(range.length) + "} out of bounds; string length "
                + std::to_string(length));
    }

    void checkArgument(const NSObject& self, const char* selector, const void* argument)
    {
        if (!argument)
            raise("NSInvalidArgumentException", place(self, selector) + "nil argument");
    }

}

Ref<NSString> stringFrom(std::string_view utf8)
{
    if (strings::isAscii(utf8))
        return strings::plain(std::string(utf8));
    std::optional<std::u16string> units = strings::fromUtf8(utf8);
    return units ? strings::plain(std::move(*units)) : nullptr;
}

Ref<NSString> stringFrom(std::u16string_view units) { return strings::plain(strings::View(units)); }

std::string utf8Of(const NSString* string) { return strings::toUtf8(strings::Contents(string)); }

std::u16string utf16Of(const NSString* string) { return strings::Contents(string)->units(); }

}
