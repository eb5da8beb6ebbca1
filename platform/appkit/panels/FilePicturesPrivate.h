// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "runtime/NSObject.h"

namespace brindle {

class NSImage;

/// Pictures of files by what they are.
namespace files {

    enum class Kind { folder, document, text, picture, sound, film, archive, program };
    constexpr int kKinds = 8;

    /// Answers the kind that an extension stands for; without a dot, in any case.
    Kind kindForExtension(std::string_view extension);
    /// Answers the kind of a file by its name, and of what the system says about it.
    Kind kindOf(std::string_view name, bool isFolder, bool isExecutable);
    /// Answers the picture of a kind, 32 points wide; shared.
    Ref<NSImage> pictureOf(Kind kind);

    /// Signs beside the names of places, drawn in one colour.
    enum class Sign { home, folder, disk, recent };
    constexpr int kSigns = 4;
    /// Answers a template of 16 points; shared.
    Ref<NSImage> pictureOf(Sign sign);

}

}
