// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "Send.h"

/// The calling convention of the machine as data: where the arguments of a C call lie that is known as text only.

#if defined(__x86_64__)

namespace brindle::calls {

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

inline constexpr std::size_t kMostStackWords = 32;

/// The registers that carry arguments.
struct Registers {
    Word integers[6] {};
    double floats[8] {};
};

/// The arguments of one call, filled in order.
struct Frame : Registers {
    std::vector<Word> stack;
    std::size_t integersUsed = 0;
    std::size_t floatsUsed = 0;

    /// Adds one argument of the first type of a text.
    void add(const char* type, const void* value);
    /// Keeps the place of an argument without a value; answers whether it is in registers.
    bool take(const std::vector<Kind>& kinds);
};

/// Says which row each eight bytes of a text's first type go to, and how many bytes it has. A type of none takes a place
/// all the same.
/// - Raises: `NSInvalidArgumentException` for a type of unknown size.
std::vector<Kind> kindsOf(const char* type, std::size_t& size);

template <class R, std::size_t N>
R callWith(IMP imp, const Registers& registers, const Word* words, std::size_t count)
{
    // Variadic, so that a variadic function learns of the floating-point registers as well.
    using Function = R (*)(Word, Word, Word, Word, Word, Word, double, double, double, double,
        double, double, double, double, ...);
    Stack<N> stack {};
    std::copy_n(words, count, stack.words);
    const auto& i = registers.integers;
    const auto& d = registers.floats;
    return reinterpret_cast<Function>(imp)(
        i[0], i[1], i[2], i[3], i[4], i[5], d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7], stack);
}

/// Calls a function with these registers and so many words on the stack, `kMostStackWords` at most.
template <class R>
R callFrame(IMP imp, const Registers& registers, const Word* words, std::size_t count)
{
    return count <= 4 ? callWith<R, 4>(imp, registers, words, count)
                      : callWith<R, kMostStackWords>(imp, registers, words, count);
}

}

#endif
