// SPDX-License-Identifier: Apache-2.0
#include "PageSearch.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "Pages.h"
#include "kit/Sources.h"

namespace gallery {

namespace {

    constexpr auto kNowhere = std::string_view::npos;

    bool isLetter(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || (c & 0x80);
    }
    bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }
    char small(char c) { return isCapital(c) ? static_cast<char>(c + 32) : c; }

    /// Whether a word begins here: after no letter, or with a capital after a small one or at the end of several, as the
    /// parts of names do.
    bool beginsWord(std::string_view text, std::size_t at)
    {
        if (at == 0 || !isLetter(text[at - 1]))
            return true;
        if (!isCapital(text[at]))
            return false;
        const bool endsCapitals
            = at + 1 < text.size() && isLetter(text[at + 1]) && !isCapital(text[at + 1]);
        return !isCapital(text[at - 1]) || endsCapitals;
    }
    /// Answers where a word begins like this; `kNowhere` when none does. - begin: of small letters.
    std::size_t findWord(std::string_view text, std::string_view begin, std::size_t from = 0)
    {
        const auto same = [](char a, char b) { return small(a) == b; };
        for (auto at = text.begin() + static_cast<std::ptrdiff_t>(from);; ++at) {
            at = std::search(at, text.end(), begin.begin(), begin.end(), same);
            if (at == text.end())
                return kNowhere;
            const auto place = static_cast<std::size_t>(at - text.begin());
            if (beginsWord(text, place))
                return place;
        }
    }
    /// Answers the whole name around a place.
    std::string_view nameAround(std::string_view text, std::size_t at)
    {
        std::size_t first = at;
        while (first > 0 && isLetter(text[first - 1]))
            --first;
        std::size_t last = at;
        while (last < text.size() && isLetter(text[last]))
            ++last;
        return text.substr(first, last - first);
    }

    /// How well one page answers: what stands first decides first.
    struct Score {
        PageHit hit;
        bool isNamed = true; // by every word
        std::size_t places = 0;
    };

    void lookIntoSources(Score& score, std::string_view word)
    {
        for (const SourceFile& file : sourcesOf(pages()[score.hit.page].folder)) {
            const std::size_t licence = file.text.find('\n');
            for (std::size_t at = findWord(file.text, word, licence); at != kNowhere;
                 at = findWord(file.text, word, at + word.size())) {
                ++score.places;
                const std::string_view name = nameAround(file.text, at);
                if (score.hit.match.empty()
                    || (isCapital(name[0]) && !isCapital(score.hit.match[0])))
                    score.hit.match = name; // names of classes say most
            }
        }
    }
    /// Answers false for a page without the word.
    bool look(Score& score, std::string_view word)
    {
        if (findWord(pages()[score.hit.page].name, word) != kNowhere)
            return true;
        score.isNamed = false;
        const std::size_t before = score.places;
        if (word.size() > 1)
            lookIntoSources(score, word);
        return score.places > before;
    }

}

std::vector<PageHit> findPages(std::string_view text)
{
    std::string smallText(text);
    std::transform(smallText.begin(), smallText.end(), smallText.begin(), small);
    std::istringstream stream(smallText);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    if (words.empty())
        return {};

    std::vector<Score> found;
    for (std::size_t page = 0; page < pages().size(); ++page) {
        Score score { { page, {} } };
        if (std::all_of(words.begin(), words.end(),
                [&](const std::string& word) { return look(score, word); }))
            found.push_back(std::move(score));
    }
    std::stable_sort(found.begin(), found.end(), [](const Score& a, const Score& b) {
        return a.isNamed != b.isNamed ? a.isNamed : a.places > b.places;
    });
    std::vector<PageHit> hits;
    for (Score& score : found)
        hits.push_back(std::move(score.hit));
    return hits;
}

}
