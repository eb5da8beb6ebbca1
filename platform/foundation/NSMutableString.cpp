// SPDX-License-Identifier: Apache-2.0
#include "NSMutableString.h"

#include <cstdarg>

#include "NSStringPrivate.h"
#include "StringFormat.h"
#include "runtime/Table.h"

namespace brindle {

using strings::Contents;
using strings::Storage;
using strings::View;

// Every edit goes through replaceCharactersInRange:withString:, which a subclass may override.
template <> struct NSMutableString::Methods<struct StringEditing> {

    /// Puts text into a storage, which becomes UTF-16 when the text asks for it.
    static void splice(Storage& storage, NSRange range, View text)
    {
        auto* narrow = std::get_if<std::string>(&storage.text);
        if (narrow && text.isNarrow()) {
            narrow->replace(range.location, range.length, text.narrow());
            return;
        }
        if (narrow)
            storage.text = std::u16string(narrow->begin(), narrow->end());
        auto& wide = std::get<std::u16string>(storage.text);
        if (text.isNarrow())
            wide.replace(range.location, range.length, text.units());
        else
            wide.replace(range.location, range.length, text.wide());
    }

    static void edit(NSMutableString& self, NSRange range, NSString* text, const char* selector)
    {
        strings::checkArgument(self, selector, text);
        strings::checkRange(self, selector, range, self.length());
        self.replaceCharactersInRange_withString(range, text);
    }

    static Ref<NSMutableString> stringWithCapacity(Class& self, NSUInteger capacity)
    {
        return cast<NSMutableString>(Meta { { { &self } } }.alloc())->initWithCapacity(capacity);
    }
    static Ref<NSMutableString> initWithCapacity(NSMutableString& self, NSUInteger capacity)
    {
        constexpr NSUInteger kMost = 1 << 20; // a hint: a wild one must not cost memory
        std::get<std::string>(strings::Gate::storage(self).text).reserve(std::min(capacity, kMost));
        return &self;
    }

    static void replaceCharacters(NSMutableString& self, NSRange range, NSString* text)
    {
        constexpr const char* kSelector = "replaceCharactersInRange:withString:";
        Storage& storage = strings::Gate::storage(self);
        strings::checkArgument(self, kSelector, text);
        strings::checkRange(self, kSelector, range, strings::viewOf(storage).size());
        if (text == &self) {
            const Ref<NSString> copy = strings::plain(strings::viewOf(storage));
            splice(storage, range, Contents(copy.get()));
        } else {
            splice(storage, range, Contents(text));
        }
        strings::Gate::forget(self);
    }

    static void appendString(NSMutableString& self, NSString* text)
    {
        edit(self, { self.length(), 0 }, text, "appendString:");
    }
    static void appendFormat(NSMutableString* self, SEL, NSString* format, ...)
    {
        strings::checkArgument(*self, "appendFormat:", format);
        va_list arguments;
        va_start(arguments, format);
        const strings::ArgumentsEnd end(arguments);
        self->appendString(stringFromFormat(format, arguments).get());
    }
    static void insertString(NSMutableString& self, NSString* text, NSUInteger index)
    {
        edit(self, { index, 0 }, text, "insertString:atIndex:");
    }
    static void deleteCharacters(NSMutableString& self, NSRange range)
    {
        edit(self, range, ""_ns, "deleteCharactersInRange:");
    }
    static void setString(NSMutableString& self, NSString* text)
    {
        edit(self, { 0, self.length() }, text, "setString:");
    }
    static NSUInteger replaceOccurrences(NSMutableString& self, NSString* target,
        NSString* replacement, NSStringCompareOptions options, NSRange range)
    {
        constexpr const char* kSelector = "replaceOccurrencesOfString:withString:options:range:";
        strings::checkArgument(self, kSelector, target);
        strings::checkArgument(self, kSelector, replacement);
        strings::checkRange(self, kSelector, range, self.length());
        NSUInteger count = 0;
        const Ref<NSString> result = strings::replace(
            Contents(&self), Contents(target), Contents(replacement), options, range, count);
        if (count > 0)
            self.setString(result.get());
        return count;
    }

    static Ref<NSObject> copyWithZone(NSMutableString& self, void*)
    {
        return strings::plain(Contents(&self));
    }
    static Class* classForCoder(NSMutableString&) { return classOf<NSMutableString>(); }

    static void table(Builder& t)
    {
        t.classMethods({ { "stringWithCapacity:", imp<stringWithCapacity> } });
        t.methods({
            { "initWithCapacity:", imp<initWithCapacity> },
            { "replaceCharactersInRange:withString:", imp<replaceCharacters> },
            { "appendString:", imp<appendString> },
            { "appendFormat:", variadic<appendFormat> },
            { "insertString:atIndex:", imp<insertString> },
            { "deleteCharactersInRange:", imp<deleteCharacters> },
            { "setString:", imp<setString> },
            { "replaceOccurrencesOfString:withString:options:range:", imp<replaceOccurrences> },
            { "copyWithZone:", imp<copyWithZone> },
            { "classForCoder", imp<classForCoder> },
            { "classForKeyedArchiver", imp<classForCoder> },
        });
    }
};
BRINDLE_RECORD(NSMutableString, StringEditing)

}
