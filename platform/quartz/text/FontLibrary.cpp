// SPDX-License-Identifier: Apache-2.0
#include "FontAliases.h"
#include "FontConfigurationPrivate.h"
#include "FontFace.h"
#include "FontLibraryPrivate.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <unistd.h>

namespace brindle::text {

namespace {

    const char* stringOf(FcPattern* pattern, const char* object, int which = 0)
    {
        FcChar8* text = nullptr;
        if (FcPatternGetString(pattern, object, which, &text) != FcResultMatch)
            return nullptr;
        return reinterpret_cast<const char*>(text);
    }

    int integerOf(FcPattern* pattern, const char* object, int otherwise)
    {
        int value = 0;
        return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : otherwise;
    }

    bool flagOf(FcPattern* pattern, const char* object, bool otherwise)
    {
        FcBool value = FcFalse;
        return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch ? value != FcFalse
                                                                             : otherwise;
    }

    int weightOf(FcPattern* pattern)
    {
        double weight = FC_WEIGHT_REGULAR;
        FcPatternGetDouble(pattern, FC_WEIGHT, 0, &weight);
        return FcWeightToOpenType(static_cast<int>(weight));
    }

    Slant slantOf(FcPattern* pattern)
    {
        return integerOf(pattern, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN ? Slant::upright
                                                                              : Slant::italic;
    }

    bool hasFamily(FcPattern* pattern, std::string_view family)
    {
        const char* name = nullptr;
        for (int which = 0; (name = stringOf(pattern, FC_FAMILY, which)); ++which) {
            if (family == name)
                return true;
        }
        return false;
    }

    /// How far a font of the right family is from the style that is wanted; 0 is perfect.
    int styleDistance(FcPattern* pattern, int weight, Slant slant)
    {
        constexpr int kWrongSlant = 10'000;
        constexpr int kWidthStep = 20;
        const int width = std::abs(integerOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL);
        return std::abs(weightOf(pattern) - weight) + (slantOf(pattern) == slant ? 0 : kWrongSlant)
            + width * kWidthStep;
    }

}

const FontFace* FontFace::named(std::string_view name) { return FontLibrary::shared().named(name); }

const FontFace* FontFace::inFamily(std::string_view family, int weight, Slant slant)
{
    return FontLibrary::shared().inFamily(family, weight, slant);
}

const FontFace* FontFace::system(int weight, Slant slant)
{
    return FontLibrary::shared().system(weight, slant);
}

std::vector<std::string> FontFace::installedNames()
{
    return FontLibrary::shared().installedNames();
}

FontLibrary& FontLibrary::shared()
{
    // Never destroyed: other threads may still measure text while the process ends.
    static FontLibrary* const library = new FontLibrary;
    return *library;
}

bool FontLibrary::isUsable(FcPattern* pattern)
{
    const char* format = stringOf(pattern, FC_FONTFORMAT);
    if (!format || (std::strcmp(format, "TrueType") != 0 && std::strcmp(format, "CFF") != 0))
        return false;
    constexpr int kNamedInstanceShift = 16;
    return flagOf(pattern, FC_SCALABLE, false) && !flagOf(pattern, FC_VARIABLE, false)
        && (!flagOf(pattern, FC_COLOR, false) || isColored(pattern)) && stringOf(pattern, FC_FILE)
        && integerOf(pattern, FC_INDEX, 0) >> kNamedInstanceShift == 0;
}

bool FontLibrary::isColored(FcPattern* pattern)
{
    return flagOf(pattern, FC_COLOR, false) && !flagOf(pattern, FC_OUTLINE, true);
}

FontLibrary::Installed FontLibrary::readInstalled()
{
    Installed found { configurationOfFonts(), {} };
    if (!found.config)
        found.config = FcConfigReference(nullptr);
    const FcFontSet* fonts = found.config ? FcConfigGetFonts(found.config, FcSetSystem) : nullptr;
    found.candidates.reserve(fonts ? static_cast<std::size_t>(fonts->nfont) : 0);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcPattern* pattern = fonts->fonts[i];
        if (isUsable(pattern))
            found.candidates.push_back({ pattern, stringOf(pattern, FC_POSTSCRIPT_NAME),
                stringOf(pattern, FC_FULLNAME), stringOf(pattern, FC_FILE) });
    }
    // Directories are listed in no particular order; every start must choose the same fonts.
    std::ranges::sort(found.candidates, [](const Candidate& a, const Candidate& b) {
        return std::strcmp(a.filePath, b.filePath) < 0;
    });
    return found;
}

const std::vector<FontLibrary::Candidate>& FontLibrary::candidates()
{
    endReading();
    if (!installed_.config)
        installed_ = readInstalled();
    return installed_.candidates;
}

void FontLibrary::readAhead()
{
    // Nobody reads while the process takes down what reading works with.
    static const struct AtEnd {
        ~AtEnd()
        {
            FontLibrary& library = shared();
            // Whoever has the lock waits for the reader itself; in a child of the process there may be nobody to let it go.
            if (const std::unique_lock lock(library.mutex_, std::try_to_lock); lock)
                library.endReading();
        }
    } atEnd;
    const std::lock_guard lock(mutex_);
    if (installed_.config || reader_.joinable())
        return;
    try {
        readersProcess_ = getpid();
        reader_ = std::thread([this] { readAhead_ = readInstalled(); });
    } catch (const std::system_error&) {
        // No thread is left: fonts will be read when they are needed.
    }
}

/// Waits for the reader, if there is one, and takes what it has read.
void FontLibrary::endReading()
{
    if (!reader_.joinable())
        return;
    if (readersProcess_ != getpid()) {
        reader_.detach();
        return;
    }
    reader_.join();
    installed_ = std::move(readAhead_);
}

const FontFace* FontLibrary::open(FcPattern* pattern)
{
    FontFace::Description description;
    const char* name = stringOf(pattern, FC_POSTSCRIPT_NAME);
    const char* family = stringOf(pattern, FC_FAMILY);
    description.filePath = stringOf(pattern, FC_FILE);
    description.index = static_cast<unsigned>(integerOf(pattern, FC_INDEX, 0));
    auto [place, isNew] = faces_.try_emplace({ description.filePath, description.index });
    if (!isNew)
        return place->second.get();
    description.familyName = family ? family : "";
    description.postScriptName = name ? name : description.familyName;
    description.weight = weightOf(pattern);
    description.slant = slantOf(pattern);
    description.colored = isColored(pattern);
    description.monospaced = integerOf(pattern, FC_SPACING, FC_PROPORTIONAL) == FC_MONO;
    place->second = FontFace::open(description);
    return place->second.get();
}

const FontFace* FontLibrary::bestOfFamily(std::string_view family, int weight, Slant slant)
{
    FcPattern* best = nullptr;
    int bestDistance = 0;
    for (const Candidate& candidate : candidates()) {
        if (!hasFamily(candidate.pattern, family))
            continue;
        const int distance = styleDistance(candidate.pattern, weight, slant);
        if (!best || distance < bestDistance) {
            best = candidate.pattern;
            bestDistance = distance;
        }
    }
    return best ? open(best) : nullptr;
}

const FontFace* FontLibrary::installed(std::string_view name)
{
    const auto& all = candidates();
    const auto is = [name](const char* other) { return other && name == other; };
    for (const Candidate& candidate : all) {
        if (is(candidate.postScriptName))
            return open(candidate.pattern);
    }
    constexpr int kRegular = 400;
    if (const FontFace* face = bestOfFamily(name, kRegular, Slant::upright))
        return face;
    for (const Candidate& candidate : all) {
        if (is(candidate.fullName))
            return open(candidate.pattern);
    }
    return nullptr;
}

const FontFace* FontLibrary::named(std::string_view name)
{
    const std::lock_guard lock(mutex_);
    if (name.empty())
        return nullptr;
    if (const auto known = named_.find(name); known != named_.end())
        return known->second;
    const FontFace* face = installed(name);
    if (const FaceAliases* aliases = face ? nullptr : aliasesForName(name)) {
        for (const std::string_view alias : *aliases) {
            face = alias.empty() ? nullptr : installed(alias);
            if (face)
                break;
        }
    }
    // Misses are not kept, or made-up names could fill the memory.
    if (face)
        named_.emplace(name, face);
    return face;
}

const FontFace* FontLibrary::inFamily(std::string_view family, int weight, Slant slant)
{
    const std::lock_guard lock(mutex_);
    return bestOfFamily(family, weight, slant);
}

const FontFace* FontLibrary::system(int weight, Slant slant)
{
    const std::lock_guard lock(mutex_);
    const std::pair key { std::clamp(weight, 1, 1000), slant };
    if (const auto known = system_.find(key); known != system_.end())
        return known->second;
    const FontFace* face = nullptr;
    for (const char* family : { "Inter", "DejaVu Sans", "Liberation Sans" }) {
        if ((face = bestOfFamily(family, key.first, slant)))
            break;
    }
    for (const Candidate& candidate : candidates()) {
        if (face)
            break;
        face = isColored(candidate.pattern) ? nullptr : open(candidate.pattern);
    }
    system_.emplace(key, face);
    return face;
}

std::vector<std::string> FontLibrary::installedNames()
{
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    for (const Candidate& candidate : candidates()) {
        if (candidate.postScriptName)
            names.emplace_back(candidate.postScriptName);
    }
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<std::string> FontLibrary::families()
{
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    for (const Candidate& candidate : candidates()) {
        if (const char* name = stringOf(candidate.pattern, FC_FAMILY))
            names.emplace_back(name);
    }
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<FamilyMember> FontLibrary::members(std::string_view family)
{
    const std::lock_guard lock(mutex_);
    std::vector<FamilyMember> members;
    for (const Candidate& candidate : candidates()) {
        if (!candidate.postScriptName || !hasFamily(candidate.pattern, family))
            continue;
        const char* style = stringOf(candidate.pattern, FC_STYLE);
        members.push_back({ candidate.postScriptName, style ? style : "",
            weightOf(candidate.pattern), slantOf(candidate.pattern),
            integerOf(candidate.pattern, FC_SPACING, FC_PROPORTIONAL) == FC_MONO });
    }
    std::ranges::stable_sort(members, [](const FamilyMember& a, const FamilyMember& b) {
        return std::pair(a.slant, a.weight) < std::pair(b.slant, b.weight);
    });
    return members;
}

void readFontsAhead() { FontLibrary::shared().readAhead(); }

std::vector<std::string> installedFamilies() { return FontLibrary::shared().families(); }

std::vector<FamilyMember> membersOfFamily(std::string_view family)
{
    return FontLibrary::shared().members(family);
}

}
