// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "FontFace.h"

namespace brindle::text {

// Weights of faces, from 100 to 900.
inline constexpr int kRegularWeight = 400;
inline constexpr int kBoldWeight = 700;

/// Answers whether a weight counts as bold.
constexpr bool isBold(int weight) { return weight >= 600; }

/// One face of a family, as the font configuration describes it; its file need not have been read.
struct FamilyMember {
    std::string postScriptName;
    std::string style; // "Bold Italic"
    int weight = 400; // 100 to 900
    Slant slant = Slant::upright;
    bool isMonospaced = false;
};

/// Begins to read the list of the installed fonts on a thread of its own, so that it is there when text is first drawn.
/// Whoever asks for a font waits for that thread, and so does the end of the process. Nothing happens where the list is known
/// or being read. Thread: any.
void readFontsAhead();

/// Answers the names of all families with usable faces, sorted. Thread: any.
std::vector<std::string> installedFamilies();

/// Answers the faces of a family, upright before italic and light before heavy; none for an unknown family. Thread: any.
std::vector<FamilyMember> membersOfFamily(std::string_view family);

}
