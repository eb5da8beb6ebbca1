// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>
#include <tuple>
#include <unordered_map>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "FontFacePrivate.h"
#include "FontFamilies.h"

namespace brindle::text {

/// A set of code points, kept in pages of 256 bits.
class CodePointPages {
public:
    void add(const FcCharSet* characters);
    bool contains(char32_t codePoint) const;

private:
    using Page = std::array<FcChar32, FC_CHARSET_MAP_SIZE>;
    std::unordered_map<char32_t, Page> pages_;
};

/// How a character that has both is shown: as a sign in the text's colour, or as a small picture.
enum class Presentation { sign, picture };

/// All faces of the process and the installed fonts that they come from.
///
/// The font configuration is read when the first face is asked for, or ahead on a thread that the first request then
/// waits for. Bitmap and variable fonts are passed over: the former cannot be drawn at any size, and the instances of the
/// latter are listed under their own names. Fonts of coloured pictures (emoji) are taken where nothing else has a
/// character or where a picture is wanted.
/// Thread: any; one lock covers everything.
class FontLibrary {
public:
    static FontLibrary& shared();

    /// Begins to read the font configuration on a thread of its own, unless it is known or on its way.
    void readAhead();
    const FontFace* named(std::string_view name);
    const FontFace* inFamily(std::string_view family, int weight, Slant slant);
    const FontFace* system(int weight, Slant slant);
    std::vector<std::string> installedNames();
    std::vector<std::string> families();
    std::vector<FamilyMember> members(std::string_view family);

    /// Answers the face that stands in for `face` where it lacks a character or its picture.
    /// - Nil: null when no installed font has the character, or none has a picture of it.
    const FontFace* fallbackFor(
        const FontFace& face, char32_t codePoint, Presentation wanted = Presentation::sign);

private:
    struct Candidate {
        FcPattern* pattern = nullptr; // owned by the configuration
        const char* postScriptName = nullptr;
        const char* fullName = nullptr;
        const char* filePath = nullptr;
    };

    struct Installed {
        FcConfig* config = nullptr;
        std::vector<Candidate> candidates;
    };

    struct FallbackFont {
        FcPattern* pattern = nullptr;
        FcCharSet* characters = nullptr;
        bool isColored = false;
    };

    // The fonts to try in turn for one manner of writing, best first.
    struct FallbackList {
        FcFontSet* sorted = nullptr; // owns what the others point at
        CodePointPages characters; // of all of them together
        std::vector<FallbackFont> fonts;
        std::unordered_map<char32_t, const FontFace*> signs;
        std::unordered_map<char32_t, const FontFace*> pictures;
    };

    using StyleKey = std::tuple<int, Slant, bool>; // bold or not, slant, monospaced

    static Installed readInstalled();
    void endReading();
    static bool isUsable(FcPattern* pattern);
    static bool isColored(FcPattern* pattern);
    const std::vector<Candidate>& candidates();
    const FontFace* installed(std::string_view name);
    const FontFace* bestOfFamily(std::string_view family, int weight, Slant slant);
    const FontFace* open(FcPattern* pattern);
    FallbackList& fallbackList(const FontFace& face);
    const FontFace* firstWith(const FallbackList& list, char32_t codePoint, bool colored);

    std::mutex mutex_;
    Installed installed_;
    std::thread reader_;
    pid_t readersProcess_ = 0; // a child of it has no such thread
    Installed readAhead_; // the reader's until it has ended
    std::map<std::pair<std::string, unsigned>, std::unique_ptr<FontFace>> faces_; // by file
    std::map<std::string, const FontFace*, std::less<>> named_;
    std::map<std::pair<int, Slant>, const FontFace*> system_;
    std::map<StyleKey, FallbackList> fallbacks_;
};

}
