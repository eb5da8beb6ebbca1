// SPDX-License-Identifier: Apache-2.0
#include <cctype>
#include <set>
#include <string>

#include "ClassPrivate.h"

namespace brindle {

namespace {

    constexpr int kDeepest = 64; // nested structures and pointers of a type string

    struct Layout {
        std::size_t size = 0;
        std::size_t alignment = 1;
        bool known = true;
    };

    /// Reads one type and says how much room it takes; nullptr when it is malformed.
    const char* readType(const char* at, Layout& layout, int depth);

    template <class T> const char* scalar(const char* at, Layout& layout)
    {
        layout = { sizeof(T), alignof(T), true };
        return at + 1;
    }

    const char* readPointer(const char* at, Layout& layout, int depth)
    {
        Layout ignored;
        const char* end = at[1] == '?' ? at + 2 : readType(at + 1, ignored, depth + 1);
        layout = { sizeof(void*), alignof(void*), true };
        return end;
    }

    const char* readObject(const char* at, Layout& layout)
    {
        layout = { sizeof(void*), alignof(void*), true };
        ++at;
        if (*at == '?')
            return at + 1;
        if (*at != '"')
            return at;
        const char* end = std::strchr(at + 1, '"');
        return end ? end + 1 : nullptr;
    }

    const char* readArray(const char* at, Layout& layout, int depth)
    {
        char* after = nullptr;
        const unsigned long count = std::strtoul(at + 1, &after, 10);
        if (after == at + 1 || count > 1u << 20)
            return nullptr;
        Layout element;
        const char* end = readType(after, element, depth + 1);
        if (!end || *end != ']')
            return nullptr;
        layout = { element.size * count, element.alignment, element.known };
        return end + 1;
    }

    const char* readAggregate(const char* at, Layout& layout, int depth)
    {
        const bool isUnion = *at == '(';
        const char close = isUnion ? ')' : '}';
        for (++at; *at && *at != '=' && *at != close; ++at) { }
        layout = { 0, 1, *at == '=' };
        if (*at == '=')
            ++at;
        while (*at && *at != close) {
            if (*at == '"') { // a field's name
                at = std::strchr(at + 1, '"');
                if (!at)
                    return nullptr;
                ++at;
                continue;
            }
            Layout field;
            at = readType(at, field, depth + 1);
            if (!at || !field.known)
                return nullptr;
            layout.alignment = std::max(layout.alignment, field.alignment);
            if (isUnion)
                layout.size = std::max(layout.size, field.size);
            else
                layout.size
                    = (layout.size + field.alignment - 1) / field.alignment * field.alignment
                    + field.size;
        }
        if (*at != close)
            return nullptr;
        layout.size = (layout.size + layout.alignment - 1) / layout.alignment * layout.alignment;
        return at + 1;
    }

    const char* readType(const char* at, Layout& layout, int depth)
    {
        if (depth > kDeepest)
            return nullptr;
        at = encodingSkipQualifiers(at);
        switch (*at) {
        case 'c':
        case 'C':
        case 'B':
            return scalar<char>(at, layout);
        case 's':
        case 'S':
            return scalar<short>(at, layout);
        case 'i':
        case 'I':
        case 'l':
        case 'L':
            return scalar<int>(at, layout);
        case 'q':
        case 'Q':
            return scalar<long>(at, layout);
        case 'f':
            return scalar<float>(at, layout);
        case 'd':
            return scalar<double>(at, layout);
        case 'v':
            layout = { 0, 1, true };
            return at + 1;
        case '*':
        case '#':
        case ':':
            return scalar<void*>(at, layout);
        case '^':
            return readPointer(at, layout, depth);
        case '@':
            return readObject(at, layout);
        case '[':
            return readArray(at, layout, depth);
        case '{':
        case '(':
            return readAggregate(at, layout, depth);
        default:
            return nullptr;
        }
    }

    const char* skipOffset(const char* at)
    {
        if (*at == '-' || *at == '+')
            ++at;
        while (std::isdigit(static_cast<unsigned char>(*at)))
            ++at;
        return at;
    }

}

const char* encodingSkipQualifiers(const char* type)
{
    return type + std::strspn(type, "rnNoORVAj");
}

const char* encodingSkipType(const char* types)
{
    Layout layout;
    const char* end = types ? readType(types, layout, 0) : nullptr;
    return end;
}

bool encodingSizeAndAlignment(const char* types, std::size_t* size, std::size_t* alignment)
{
    Layout layout;
    if (!types || !readType(types, layout, 0) || !layout.known)
        return false;
    *size = layout.size;
    *alignment = layout.alignment;
    return true;
}

const char* canonicalTypes(const char* types)
{
    if (!types)
        return nullptr;
    std::string clean;
    int count = 0;
    for (const char* at = types; *at; ++count) {
        at = encodingSkipQualifiers(at);
        Layout layout;
        const char* end = readType(at, layout, 0);
        if (!end || (count > 0 && *at == 'v'))
            return nullptr;
        if (*at == '@' && at[1] == '"')
            clean += '@';
        else
            clean.append(at, end);
        at = skipOffset(end);
    }
    if (count < 2) // at least a result and a receiver
        return nullptr;
    const std::lock_guard guard(runtimeLock());
    static auto& kept = *new std::set<std::string>;
    return kept.insert(clean).first->c_str();
}

}
