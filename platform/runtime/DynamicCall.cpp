// SPDX-License-Identifier: Apache-2.0
#include "DynamicCallPrivate.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "CallFramePrivate.h"
#include "ClassPrivate.h"
#include "NSException.h"

namespace brindle {

#if defined(__x86_64__)

namespace calls {

    namespace {

        void markIntegers(const char* type, std::size_t offset, std::vector<Kind>& kinds);

        /// Marks what the members of a structure or union are: in turn, or all in one place.
        void markMembers(const char* type, std::size_t offset, std::vector<Kind>& kinds)
        {
            const bool isUnion = *type == '(';
            const char close = isUnion ? ')' : '}';
            std::size_t place = 0;
            for (const char* at = std::strchr(type, '=') + 1; *at != close;) {
                if (*at == '"') { // a member's name
                    at = std::strchr(at + 1, '"') + 1;
                    continue;
                }
                std::size_t size = 0;
                std::size_t alignment = 1;
                encodingSizeAndAlignment(at, &size, &alignment);
                place = isUnion ? 0 : (place + alignment - 1) / alignment * alignment;
                markIntegers(at, offset + place, kinds);
                place += size;
                at = encodingSkipType(at);
            }
        }

        /// Eight bytes are integers when anything in them is one.
        /// - type: of known size. - offset: where the value lies in what is handed over.
        void markIntegers(const char* type, std::size_t offset, std::vector<Kind>& kinds)
        {
            std::size_t size = 0;
            std::size_t alignment = 1;
            type = encodingSkipQualifiers(type);
            if (!encodingSizeAndAlignment(type, &size, &alignment) || size == 0)
                return;
            if (*type == '{' || *type == '(')
                return markMembers(type, offset, kinds);
            if (*type == '[') {
                char* element = nullptr;
                const std::size_t count = std::strtoul(type + 1, &element, 10);
                for (std::size_t i = 0; i < count; ++i)
                    markIntegers(element, offset + size / count * i, kinds);
                return;
            }
            if (*type != 'd' && *type != 'f')
                kinds[offset / 8] = Kind::integer;
        }

    }

    std::vector<Kind> kindsOf(const char* type, std::size_t& size)
    {
        std::size_t alignment = 1;
        type = encodingSkipQualifiers(type);
        if (!encodingSizeAndAlignment(type, &size, &alignment))
            raise("NSInvalidArgumentException", std::string("a value of unknown size: ") + type);
        if (size > 16)
            return { Kind::memory };
        if (size == 0)
            return { Kind::integer };
        if (*type == 'd' || *type == 'f')
            return { Kind::floating };
        if (*type != '{' && *type != '(' && *type != '[')
            return { Kind::integer };
        std::vector<Kind> kinds((size + 7) / 8, Kind::floating);
        markIntegers(type, 0, kinds);
        return kinds;
    }

    namespace {

        /// Widens what is narrower than a register, as callees may expect of integers.
        Word widened(const char* type, const void* value, std::size_t size)
        {
            switch (*type) {
            case 'c':
                return static_cast<Word>(std::int64_t { *static_cast<const signed char*>(value) });
            case 's':
                return static_cast<Word>(std::int64_t { *static_cast<const std::int16_t*>(value) });
            case 'i':
                return static_cast<Word>(std::int64_t { *static_cast<const std::int32_t*>(value) });
            default:
                Word word = 0;
                std::memcpy(&word, value, size);
                return word;
            }
        }

    }

    bool Frame::take(const std::vector<Kind>& kinds)
    {
        std::size_t words = 0;
        std::size_t floating = 0;
        for (const Kind kind : kinds) {
            words += kind == Kind::integer;
            floating += kind == Kind::floating;
        }
        if (kinds.front() == Kind::memory || integersUsed + words > 6 || floatsUsed + floating > 8)
            return false;
        integersUsed += words;
        floatsUsed += floating;
        return true;
    }

    void Frame::add(const char* type, const void* value)
    {
        std::size_t size = 0;
        const std::vector<Kind> kinds = kindsOf(type, size);
        std::size_t integer = integersUsed;
        std::size_t floating = floatsUsed;
        if (!take(kinds)) {
            const std::size_t at = stack.size();
            stack.resize(at + (size + 7) / 8);
            std::memcpy(&stack[at], value, size);
            return;
        }
        const auto* bytes = static_cast<const char*>(value);
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const std::size_t part = std::min<std::size_t>(8, size - i * 8);
            if (kinds[i] == Kind::integer)
                integers[integer++] = kinds.size() == 1 ? widened(type, bytes, part)
                                                        : widened("Q", bytes + i * 8, part);
            else
                std::memcpy(&floats[floating++], bytes + i * 8, part);
        }
    }

}

#endif

namespace {

#if defined(__x86_64__)

    using namespace calls;

    template <class R> R call(IMP imp, const Frame& frame)
    {
        if (frame.stack.size() > kMostStackWords)
            raise("NSInvalidArgumentException",
                "a message with more than 256 bytes of arguments on the stack");
        return callFrame<R>(imp, frame, frame.stack.data(), frame.stack.size());
    }

    template <class R> void callInto(IMP imp, const Frame& frame, void* result, std::size_t size)
    {
        const R answer = call<R>(imp, frame);
        if (result)
            std::memcpy(result, &answer, size);
    }

    void callGenerically(IMP imp, const char* types, void* const* arguments, void* result)
    {
        std::size_t resultSize = 0;
        const std::vector<Kind> kinds = kindsOf(types, resultSize);
        Frame frame;
        std::vector<Word> room((resultSize + 7) / 8 + 1);
        const bool inMemory = kinds.front() == Kind::memory;
        if (inMemory)
            frame.integers[frame.integersUsed++] = reinterpret_cast<Word>(room.data());
        std::size_t index = 0;
        for (const char* at = encodingSkipType(types); at && *at; at = encodingSkipType(at))
            frame.add(at, arguments[index++]);
        const bool firstFloats = kinds.front() == Kind::floating;
        if (inMemory) {
            call<Word>(imp, frame);
            if (result)
                std::memcpy(result, room.data(), resultSize);
        } else if (kinds.size() == 1)
            firstFloats ? callInto<double>(imp, frame, result, resultSize)
                        : callInto<Word>(imp, frame, result, resultSize);
        else if (firstFloats)
            kinds[1] == Kind::floating ? callInto<FloatPair>(imp, frame, result, resultSize)
                                       : callInto<FloatInteger>(imp, frame, result, resultSize);
        else
            kinds[1] == Kind::floating ? callInto<IntegerFloat>(imp, frame, result, resultSize)
                                       : callInto<IntegerPair>(imp, frame, result, resultSize);
    }

#else

    void callGenerically(IMP, const char* types, void* const*, void*)
    {
        raise("NSInvalidArgumentException",
            std::string("no C++ code of this process has the types ") + types);
    }

#endif

}

void callDynamically(IMP imp, const char* types, void* const* arguments, void* result)
{
    if (const Signature* const signature = signatureForTypes(types))
        signature->invoke(imp, arguments, result);
    else
        callGenerically(imp, types, arguments, result);
}

}
