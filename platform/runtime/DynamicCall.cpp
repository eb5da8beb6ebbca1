// SPDX-License-Identifier: Apache-2.0
#include "DynamicCallPrivate.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "ClassPrivate.h"
#include "NSException.h"

namespace brindle {

namespace {

#if defined(__x86_64__)

    // System V calls on x86-64: integers and floating-point numbers fill two separate rows of registers in order; what
    // finds no room, and every structure over 16 bytes, lies on the stack. So one C function type with both rows
    // full and one large structure behind them can stand for every signature.

    using Word = std::uint64_t;
    template <std::size_t N> struct Stack {
        Word words[N];
    };
    struct IntegerPair {
        Word first, second;
    };
    struct FloatPair {
        double first, second;
    };
    struct IntegerFloat {
        Word first;
        double second;
    };
    struct FloatInteger {
        double first;
        Word second;
    };

    enum class Kind { integer, floating, memory };

    struct Frame {
        Word integers[6] {};
        double floats[8] {};
        std::vector<Word> stack;
        std::size_t integersUsed = 0;
        std::size_t floatsUsed = 0;
    };

    /// Says which row each eight bytes of a type go to. Structures hold scalars only up to 16 bytes here.
    std::vector<Kind> classify(const char* type, std::size_t size)
    {
        if (size > 16)
            return { Kind::memory };
        if (*type == 'd' || *type == 'f')
            return { Kind::floating };
        if (*type != '{' && *type != '(' && *type != '[')
            return { Kind::integer };
        std::vector<Kind> kinds((size + 7) / 8, Kind::floating);
        std::size_t offset = 0;
        for (const char* at = type; *at && at < encodingSkipType(type); ++at) {
            if (*at == '{') {
                at = std::strchr(at, '=');
                continue;
            }
            std::size_t fieldSize = 0;
            std::size_t alignment = 1;
            if (*at == '}' || !encodingSizeAndAlignment(at, &fieldSize, &alignment))
                continue;
            offset = (offset + alignment - 1) / alignment * alignment;
            if (*at != 'd' && *at != 'f' && offset / 8 < kinds.size())
                kinds[offset / 8] = Kind::integer;
            offset += fieldSize;
            at = encodingSkipType(at) - 1;
        }
        return kinds;
    }

    void toStack(Frame& frame, const void* value, std::size_t size)
    {
        const std::size_t words = (size + 7) / 8;
        const std::size_t at = frame.stack.size();
        frame.stack.resize(at + words);
        std::memcpy(&frame.stack[at], value, size);
    }

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

    void add(Frame& frame, const char* type, const void* value, std::size_t size)
    {
        const std::vector<Kind> kinds = classify(type, size);
        std::size_t integers = 0;
        std::size_t floats = 0;
        for (const Kind kind : kinds) {
            integers += kind == Kind::integer;
            floats += kind == Kind::floating;
        }
        if (kinds.front() == Kind::memory || frame.integersUsed + integers > 6
            || frame.floatsUsed + floats > 8) {
            toStack(frame, value, size);
            return;
        }
        const auto* bytes = static_cast<const char*>(value);
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const std::size_t part = std::min<std::size_t>(8, size - i * 8);
            if (kinds[i] == Kind::integer)
                frame.integers[frame.integersUsed++] = kinds.size() == 1
                    ? widened(type, bytes, part)
                    : widened("Q", bytes + i * 8, part);
            else
                std::memcpy(&frame.floats[frame.floatsUsed++], bytes + i * 8, part);
        }
    }

    template <class R, std::size_t N> R callWith(IMP imp, const Frame& f)
    {
        using Function = R (*)(Word, Word, Word, Word, Word, Word, double, double, double, double,
            double, double, double, double, Stack<N>);
        Stack<N> stack {};
        std::copy(f.stack.begin(), f.stack.end(), stack.words);
        const auto& i = f.integers;
        const auto& d = f.floats;
        return reinterpret_cast<Function>(imp)(i[0], i[1], i[2], i[3], i[4], i[5], d[0], d[1], d[2],
            d[3], d[4], d[5], d[6], d[7], stack);
    }

    template <class R> R callFrame(IMP imp, const Frame& frame)
    {
        if (frame.stack.size() <= 4)
            return callWith<R, 4>(imp, frame);
        if (frame.stack.size() <= 32)
            return callWith<R, 32>(imp, frame);
        raise("NSInvalidArgumentException",
            "a message with more than 256 bytes of arguments on the stack");
    }

    template <class R> void callInto(IMP imp, const Frame& frame, void* result, std::size_t size)
    {
        const R answer = callFrame<R>(imp, frame);
        if (result)
            std::memcpy(result, &answer, size);
    }

    void callGenerically(IMP imp, const char* types, void* const* arguments, void* result)
    {
        std::size_t resultSize = 0;
        std::size_t alignment = 1;
        encodingSizeAndAlignment(types, &resultSize, &alignment);
        const std::vector<Kind> kinds
            = resultSize ? classify(types, resultSize) : std::vector<Kind> { Kind::integer };
        Frame frame;
        std::vector<Word> room((resultSize + 7) / 8 + 1);
        const bool inMemory = kinds.front() == Kind::memory;
        if (inMemory)
            frame.integers[frame.integersUsed++] = reinterpret_cast<Word>(room.data());
        std::size_t index = 0;
        for (const char* at = encodingSkipType(types); at && *at; at = encodingSkipType(at)) {
            std::size_t size = 0;
            encodingSizeAndAlignment(at, &size, &alignment);
            add(frame, at, arguments[index++], size);
        }
        const bool firstFloats = kinds.front() == Kind::floating;
        if (inMemory) {
            callFrame<Word>(imp, frame);
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
