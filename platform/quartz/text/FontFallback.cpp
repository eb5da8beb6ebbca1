// SPDX-License-Identifier: Apache-2.0
#include "FontLibraryPrivate.h"

namespace brindle::text {

namespace {

    constexpr unsigned kPageShift = 8;

    // Rare characters beyond this many forget the earlier ones; the fonts themselves stay open.
    constexpr std::size_t kRememberedAnswers = 8192;

    struct PatternDeleter {
        void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    };

    /// Answers the fonts that stand in for a face, as the rules of the process's own configuration have them.
    FcFontSet* sortedFonts(const FontFace& face)
    {
        const std::unique_ptr<FcPattern, PatternDeleter> wanted(FcPatternCreate());
        const char* generic = face.isMonospaced() ? "monospace" : "sans-serif";
        const auto addFamily = [&](const char* family) {
            FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
        };
        addFamily(generic);
        FcPatternAddInteger(
            wanted.get(), FC_WEIGHT, isBold(face.weight()) ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
        FcPatternAddInteger(wanted.get(), FC_SLANT,
            face.slant() == Slant::italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
        FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
        FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
        FcDefaultSubstitute(wanted.get());
        FcResult result = FcResultMatch;
        return FcFontSort(nullptr, wanted.get(), FcTrue, nullptr, &result);
    }

}

void CodePointPages::add(const FcCharSet* characters)
{
    Page bits {};
    FcChar32 next = 0;
    for (FcChar32 base = FcCharSetFirstPage(characters, bits.data(), &next);
         base != FC_CHARSET_DONE; base = FcCharSetNextPage(characters, bits.data(), &next)) {
        Page& page = pages_[base >> kPageShift];
        for (std::size_t i = 0; i < page.size(); ++i)
            page[i] |= bits[i];
    }
}

bool CodePointPages::contains(char32_t codePoint) const
{
    constexpr unsigned kWordBits = 32;
    const auto found = pages_.find(codePoint >> kPageShift);
    if (found == pages_.end())
        return false;
    const std::size_t bit = codePoint & ((1u << kPageShift) - 1);
    return (found->second[bit / kWordBits] >> bit % kWordBits & 1) != 0;
}

FontLibrary::FallbackList& FontLibrary::fallbackList(const FontFace& face)
{
    const StyleKey key { isBold(face.weight()), face.slant(), face.isMonospaced() };
    const auto [place, isNew] = fallbacks_.try_emplace(key);
    FallbackList& list = place->second;
    if (!isNew || !installed_.config)
        return list;
    list.sorted = sortedFonts(face);
    for (int i = 0; list.sorted && i < list.sorted->nfont; ++i) {
        FcPattern* pattern = list.sorted->fonts[i];
        FcCharSet* characters = nullptr;
        if (isUsable(pattern)
            && FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch) {
            list.fonts.push_back({ pattern, characters, isColored(pattern) });
            list.characters.add(characters);
        }
    }
    return list;
}

const FontFace* FontLibrary::firstWith(const FallbackList& list, char32_t codePoint, bool colored)
{
    for (const FallbackFont& font : list.fonts) {
        if (font.isColored != colored || !FcCharSetHasChar(font.characters, codePoint))
            continue;
        const FontFace* face = open(font.pattern);
        if (face && face->glyphFor(codePoint) != 0)
            return face;
    }
    return nullptr;
}

const FontFace* FontLibrary::fallbackFor(
    const FontFace& face, char32_t codePoint, Presentation wanted)
{
    const std::lock_guard lock(mutex_);
    candidates();
    FallbackList& list = fallbackList(face);
    if (!list.characters.contains(codePoint))
        return nullptr;
    const bool picture = wanted == Presentation::picture;
    auto& answers = picture ? list.pictures : list.signs;
    if (const auto known = answers.find(codePoint); known != answers.end())
        return known->second;
    const FontFace* answer = firstWith(list, codePoint, picture);
    if (!answer && !picture)
        answer = firstWith(list, codePoint, true);
    if (answers.size() >= kRememberedAnswers)
        answers.clear();
    answers.emplace(codePoint, answer);
    return answer;
}

}
