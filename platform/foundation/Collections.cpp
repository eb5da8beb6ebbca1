// SPDX-License-Identifier: Apache-2.0
#include "CollectionsPrivate.h"

#include <algorithm>
#include <cstdio>
#include <unordered_set>

#include "Each.h"
#include "NSData.h"
#include "NSOrderedSet.h"
#include "runtime/NSException.h"
#include "runtime/Runtime.h"

namespace brindle {

void raiseChangedWhileSearching()
{
    raise("NSGenericException", "*** A collection was mutated while it was searched.");
}

}

namespace brindle::collections {

namespace {

    std::string addressed(const NSObject* object)
    {
        char text[24];
        std::snprintf(text, sizeof text, ": %p>", static_cast<const void*>(object));
        return std::string("<") + class_getName(object->classObject()) + text;
    }

    bool isAlphanumeric(char16_t unit)
    {
        return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z')
            || (unit >= u'a' && unit <= u'z');
    }

    void appendEscaped(std::string& out, char16_t unit)
    {
        switch (unit) {
        case u'"':
        case u'\\':
            out += '\\';
            out += static_cast<char>(unit);
            return;
        case u'\n':
            out += "\\n";
            return;
        case u'\r':
            out += "\\r";
            return;
        case u'\t':
            out += "\\t";
            return;
        default:
            break;
        }
        if (unit >= 0x20 && unit < 0x7f) {
            out += static_cast<char>(unit);
            return;
        }
        char text[8];
        std::snprintf(
            text, sizeof text, unit < 0x80 ? "\\%03o" : "\\U%04x", static_cast<unsigned>(unit));
        out += text;
    }

    std::string quoted(const std::u16string& text)
    {
        bool plain = !text.empty();
        for (const char16_t unit : text)
            plain = plain && isAlphanumeric(unit);
        std::string out;
        if (!plain)
            out += '"';
        for (const char16_t unit : text)
            appendEscaped(out, unit);
        if (!plain)
            out += '"';
        return out;
    }

}

void raiseMutated(const NSObject* collection)
{
    raise("NSGenericException",
        "*** Collection " + addressed(collection) + " was mutated while being enumerated.");
}

std::string placeOf(const NSObject* self, const char* operation)
{
    return std::string("*** -[") + class_getName(self->classObject()) + " " + operation + "]: ";
}

void raiseIndex(const NSObject* self, const char* operation, NSUInteger index, NSUInteger count)
{
    raise("NSRangeException",
        placeOf(self, operation) + "index " + std::to_string(index) + " beyond bounds "
            + (count ? "[0 .. " + std::to_string(count - 1) + "]" : "for empty array"));
}

void raiseNil(const NSObject* self, const char* operation, const char* what)
{
    raise("NSInvalidArgumentException", placeOf(self, operation) + what + " cannot be nil");
}

void requireRange(const NSObject* self, const char* operation, NSRange range, NSUInteger count)
{
    if (range.location <= count && range.length <= count - range.location)
        return;
    raise("NSRangeException",
        placeOf(self, operation) + "range {" + std::to_string(range.location) + ", "
            + std::to_string(range.length) + "} extends beyond bounds "
            + (count ? "[0 .. " + std::to_string(count - 1) + "]" : "for empty array"));
}

std::string indentation(NSUInteger level)
{
    return std::string(std::min(level, kDeepest) * 4, ' ');
}

std::vector<NSObject*> untilNil(NSObject* first, va_list& list)
{
    std::vector<NSObject*> objects;
    for (NSObject* object = first; object; object = va_arg(list, NSObject*))
        objects.push_back(object);
    return objects;
}

namespace {

    /// What this thread has described since its outermost description began.
    struct Described {
        std::size_t levels = 0;
        std::unordered_set<const NSObject*> collections;
        std::size_t repeated = 0; ///< characters about collections that were described before
    };

    Described& described()
    {
        thread_local Described state;
        return state;
    }

    std::string describeCollection(NSObject* item, NSUInteger level)
    {
        constexpr std::size_t kMostRepeated = std::size_t { 4 } << 20;
        Described& state = described();
        if (level > kDeepest || state.repeated > kMostRepeated)
            return '"' + addressed(item) + '"';
        const std::size_t before = state.repeated;
        const bool isNew = state.collections.insert(item).second;
        std::string text = utf8Of(item->send<"descriptionWithLocale:indent:", Ref<NSString>>(
            static_cast<NSObject*>(nullptr), level));
        if (!isNew)
            state.repeated = std::max(state.repeated, before + text.size());
        return text;
    }

}

Describing::Describing() { ++described().levels; }

Describing::~Describing()
{
    Described& state = described();
    if (--state.levels == 0)
        state = Described();
}

std::string describe(NSObject* item, NSUInteger level)
{
    const bool isCollection = item->isKindOfClass(NSArray::cls())
        || item->isKindOfClass(NSDictionary::cls()) || item->isKindOfClass(NSSet::cls())
        || item->isKindOfClass(NSOrderedSet::cls());
    if (isCollection)
        return describeCollection(item, level);
    const Ref<NSString> text = item->description();
    if (text && item->isKindOfClass(NSData::cls()))
        return utf8Of(text);
    return quoted(text ? utf16Of(text) : u"(null)");
}

std::string describeList(const Items& items, NSUInteger level, const char* open, const char* close)
{
    const Describing describing;
    const std::string inner = indentation(level + 1);
    std::string out = std::string(open) + "\n";
    for (std::size_t i = 0; i < items.size(); ++i) {
        out += inner + describe(items[i].get(), level + 1);
        out += i + 1 < items.size() ? ",\n" : "\n";
    }
    return out + indentation(level) + close;
}

std::vector<NSObject*> lent(const Items& items)
{
    std::vector<NSObject*> objects;
    objects.reserve(items.size());
    for (const Ref<NSObject>& item : items)
        objects.push_back(item.get());
    return objects;
}

NSInteger SelectorComparison::operator()(NSObject* a, NSObject* b)
{
    if (a->isa_ != class_) {
        const Method* const method = class_getInstanceMethod(a->isa_, selector_);
        if (method
            && std::string(method_getTypeEncoding(method))
                != messageEncoding<NSInteger, NSObject*>.text) {
            const char* const name = sel_getName(selector_);
            raise("NSInvalidArgumentException",
                placeOf(a, name ? name : "?") + "not an operation that compares");
        }
        class_ = a->isa_;
        imp_ = a->methodForSelector(selector_);
    }
    return reinterpret_cast<NSInteger (*)(NSObject*, SEL, NSObject*)>(imp_)(a, selector_, b);
}

}

namespace brindle {

void requireElement(NSObject* element, Class* cls)
{
    if (!element->isKindOfClass(cls))
        raise("NSInvalidArgumentException",
            std::string("a collection of ") + class_getName(cls) + " holds an object of class "
                + class_getName(element->classObject()));
}

}
