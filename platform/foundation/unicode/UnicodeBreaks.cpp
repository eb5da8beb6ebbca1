// SPDX-License-Identifier: Apache-2.0
#include "UnicodeBreaks.h"

#include <memory>

#include "UnicodeLibrary.h"

#include <unicode/ubrk.h>

namespace brindle::unicode {

namespace {

    struct BreakFunctions {
        decltype(&::ubrk_open) open = nullptr;
        decltype(&::ubrk_close) close = nullptr;
        decltype(&::ubrk_next) next = nullptr;
        decltype(&::ubrk_getRuleStatus) ruleStatus = nullptr;
        bool loaded = false;

        BreakFunctions()
        {
            void* const library = openLibrary("libicuuc");
            loaded = find(library, BRINDLE_VERSIONED(ubrk_open), open)
                && find(library, BRINDLE_VERSIONED(ubrk_close), close)
                && find(library, BRINDLE_VERSIONED(ubrk_next), next)
                && find(library, BRINDLE_VERSIONED(ubrk_getRuleStatus), ruleStatus);
        }
    };

    const BreakFunctions& breakFunctions()
    {
        static const BreakFunctions& instance = *new BreakFunctions;
        return instance;
    }

    struct Closer {
        void operator()(UBreakIterator* iterator) const { breakFunctions().close(iterator); }
    };

}

std::vector<Stretch> stretches(std::u16string_view text, Cut cut)
{
    if (text.empty())
        return {};
    std::vector<Stretch> out;
    std::unique_ptr<UBreakIterator, Closer> iterator;
    UErrorCode error = U_ZERO_ERROR;
    if (breakFunctions().loaded && text.size() <= INT32_MAX)
        iterator.reset(breakFunctions().open(cut == Cut::words ? UBRK_WORD : UBRK_SENTENCE, "",
            text.data(), static_cast<std::int32_t>(text.size()), &error));
    std::size_t begin = 0;
    while (iterator && !U_FAILURE(error)) {
        const std::int32_t next = breakFunctions().next(iterator.get());
        if (next == UBRK_DONE)
            break;
        const bool isWord = cut == Cut::sentences
            || breakFunctions().ruleStatus(iterator.get()) >= UBRK_WORD_NONE_LIMIT;
        out.push_back({ begin, static_cast<std::size_t>(next), isWord });
        begin = static_cast<std::size_t>(next);
    }
    if (begin < text.size())
        out.push_back({ begin, text.size(), true });
    return out;
}

}
