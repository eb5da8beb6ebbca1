// SPDX-License-Identifier: Apache-2.0
#include "UnicodePatterns.h"

#include "UnicodeLibrary.h"

#include <unicode/uregex.h>

namespace brindle::unicode {

static_assert(kPatternUnixLines == UREGEX_UNIX_LINES
    && kPatternIgnoresCase == UREGEX_CASE_INSENSITIVE && kPatternComments == UREGEX_COMMENTS
    && kPatternAnchorsMatchLines == UREGEX_MULTILINE && kPatternLiteral == UREGEX_LITERAL
    && kPatternDotMatchesAll == UREGEX_DOTALL && kPatternUnicodeWords == UREGEX_UWORD);

namespace {

    // The library counts time in steps of about a millisecond; a find that takes more is no use to anybody.
    constexpr std::int32_t kMostSteps = 300;
    constexpr std::int32_t kMostStackBytes = 4'000'000;
    // All finds of a search together: half a second, and a microsecond more for each unit of the text.
    constexpr std::chrono::microseconds kMostTime { 500'000 };

    struct PatternFunctions {
        decltype(&::uregex_open) open = nullptr;
        decltype(&::uregex_close) close = nullptr;
        decltype(&::uregex_clone) clone = nullptr;
        decltype(&::uregex_setText) setText = nullptr;
        decltype(&::uregex_setRegion64) setRegion = nullptr;
        decltype(&::uregex_useTransparentBounds) useTransparentBounds = nullptr;
        decltype(&::uregex_useAnchoringBounds) useAnchoringBounds = nullptr;
        decltype(&::uregex_findNext) findNext = nullptr;
        decltype(&::uregex_lookingAt64) lookingAt = nullptr;
        decltype(&::uregex_groupCount) groupCount = nullptr;
        decltype(&::uregex_groupNumberFromName) groupNumberFromName = nullptr;
        decltype(&::uregex_start64) start = nullptr;
        decltype(&::uregex_end64) end = nullptr;
        decltype(&::uregex_hitEnd) hitEnd = nullptr;
        decltype(&::uregex_requireEnd) requireEnd = nullptr;
        decltype(&::uregex_setTimeLimit) setTimeLimit = nullptr;
        decltype(&::uregex_setStackLimit) setStackLimit = nullptr;
        bool loaded = false;

        PatternFunctions()
        {
            void* const library = openLibrary("libicui18n");
            loaded = find(library, BRINDLE_VERSIONED(uregex_open), open)
                && find(library, BRINDLE_VERSIONED(uregex_close), close)
                && find(library, BRINDLE_VERSIONED(uregex_clone), clone)
                && find(library, BRINDLE_VERSIONED(uregex_setText), setText)
                && find(library, BRINDLE_VERSIONED(uregex_setRegion64), setRegion)
                && find(
                    library, BRINDLE_VERSIONED(uregex_useTransparentBounds), useTransparentBounds)
                && find(library, BRINDLE_VERSIONED(uregex_useAnchoringBounds), useAnchoringBounds)
                && find(library, BRINDLE_VERSIONED(uregex_findNext), findNext)
                && find(library, BRINDLE_VERSIONED(uregex_lookingAt64), lookingAt)
                && find(library, BRINDLE_VERSIONED(uregex_groupCount), groupCount)
                && find(library, BRINDLE_VERSIONED(uregex_groupNumberFromName), groupNumberFromName)
                && find(library, BRINDLE_VERSIONED(uregex_start64), start)
                && find(library, BRINDLE_VERSIONED(uregex_end64), end)
                && find(library, BRINDLE_VERSIONED(uregex_hitEnd), hitEnd)
                && find(library, BRINDLE_VERSIONED(uregex_requireEnd), requireEnd)
                && find(library, BRINDLE_VERSIONED(uregex_setTimeLimit), setTimeLimit)
                && find(library, BRINDLE_VERSIONED(uregex_setStackLimit), setStackLimit);
        }
    };

    const PatternFunctions& patternFunctions()
    {
        static const PatternFunctions& instance = *new PatternFunctions;
        return instance;
    }

    const char* nameOf(UErrorCode error)
    {
        switch (static_cast<int>(error)) {
        case U_REGEX_BAD_ESCAPE_SEQUENCE:
            return "bad escape";
        case U_REGEX_PROPERTY_SYNTAX:
            return "bad property";
        case U_REGEX_MISMATCHED_PAREN:
            return "mismatched parenthesis";
        case U_REGEX_NUMBER_TOO_BIG:
        case U_REGEX_BAD_INTERVAL:
        case U_REGEX_MAX_LT_MIN:
            return "bad interval";
        case U_REGEX_INVALID_BACK_REF:
        case U_REGEX_INVALID_CAPTURE_GROUP_NAME:
            return "no such group";
        case U_REGEX_INVALID_FLAG:
            return "unknown flag";
        case U_REGEX_LOOK_BEHIND_LIMIT:
            return "look-behind without limit";
        case U_REGEX_MISSING_CLOSE_BRACKET:
        case U_REGEX_INVALID_RANGE:
            return "bad set";
        case U_REGEX_PATTERN_TOO_BIG:
            return "too large";
        default:
            return "bad syntax";
        }
    }

    std::int32_t asLength(std::size_t size) { return static_cast<std::int32_t>(size); }

}

void PatternCloser::operator()(URegularExpression* expression) const
{
    patternFunctions().close(expression);
}

std::unique_ptr<const Pattern> Pattern::read(
    std::u16string_view text, std::uint32_t flags, std::string& reason)
{
    if (!patternFunctions().loaded || text.empty() || text.size() > INT32_MAX / 4) {
        reason = text.empty() ? "empty" : "not to be read here";
        return nullptr;
    }
    UParseError place {};
    UErrorCode error = U_ZERO_ERROR;
    auto out = std::make_unique<Pattern>();
    out->handle_.reset(
        patternFunctions().open(text.data(), asLength(text.size()), flags, &place, &error));
    if (U_FAILURE(error)) {
        reason = std::string(nameOf(error)) + " at " + std::to_string(std::max(place.offset, 0));
        return nullptr;
    }
    out->groups_
        = static_cast<std::size_t>(patternFunctions().groupCount(out->handle_.get(), &error));
    return out;
}

std::size_t Pattern::groupNamed(std::u16string_view name) const
{
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t number = patternFunctions().groupNumberFromName(
        handle_.get(), name.data(), asLength(name.size()), &error);
    return U_FAILURE(error) || number < 0 ? 0 : static_cast<std::size_t>(number);
}

Matcher::Matcher(const Pattern& pattern, std::u16string_view text, Bounds bounds)
    : deadline_(std::chrono::steady_clock::now() + kMostTime
        + std::chrono::microseconds(static_cast<std::int64_t>(text.size())))
{
    const PatternFunctions& f = patternFunctions();
    UErrorCode error = U_ZERO_ERROR;
    handle_.reset(f.clone(pattern.handle_.get(), &error));
    f.setTimeLimit(handle_.get(), kMostSteps, &error);
    f.setStackLimit(handle_.get(), kMostStackBytes, &error);
    f.setText(handle_.get(), text.data() ? text.data() : u"", asLength(text.size()), &error);
    f.useTransparentBounds(handle_.get(), bounds.areTransparent, &error);
    f.useAnchoringBounds(handle_.get(), bounds.areAnchors, &error);
    f.setRegion(handle_.get(), static_cast<std::int64_t>(bounds.begin),
        static_cast<std::int64_t>(bounds.end), &error);
    hasFailed_ = U_FAILURE(error) || text.size() > INT32_MAX;
}

bool Matcher::next()
{
    if (!hasFailed_ && std::chrono::steady_clock::now() > deadline_)
        hasFailed_ = true;
    if (hasFailed_)
        return false;
    UErrorCode error = U_ZERO_ERROR;
    const bool isFound = patternFunctions().findNext(handle_.get(), &error);
    hasFailed_ = U_FAILURE(error);
    return isFound && !hasFailed_;
}

bool Matcher::atStart()
{
    if (hasFailed_)
        return false;
    UErrorCode error = U_ZERO_ERROR;
    const bool isFound = patternFunctions().lookingAt(handle_.get(), -1, &error);
    hasFailed_ = U_FAILURE(error);
    return isFound && !hasFailed_;
}

std::size_t Matcher::begin(std::size_t group) const
{
    UErrorCode error = U_ZERO_ERROR;
    return static_cast<std::size_t>(
        patternFunctions().start(handle_.get(), asLength(group), &error));
}

std::size_t Matcher::end(std::size_t group) const
{
    UErrorCode error = U_ZERO_ERROR;
    return static_cast<std::size_t>(patternFunctions().end(handle_.get(), asLength(group), &error));
}

bool Matcher::hitEnd() const
{
    UErrorCode error = U_ZERO_ERROR;
    return !hasFailed_ && patternFunctions().hitEnd(handle_.get(), &error);
}

bool Matcher::requiresEnd() const
{
    UErrorCode error = U_ZERO_ERROR;
    return !hasFailed_ && patternFunctions().requireEnd(handle_.get(), &error);
}

}
