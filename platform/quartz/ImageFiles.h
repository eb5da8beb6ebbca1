// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGImage.h"

/// Picture files with one or more pictures, from and to bytes.

namespace brindle::quartz {

/// What a file holds.
struct ImageFiles {
    std::vector<ImageFile> pictures; // empty when the bytes are no picture
    bool isAnimation = false; // frames of one picture, each as it is to be shown
    int loops = 0; // how often all frames are shown; 0 for ever
};

/// Answers whether the bytes begin like a picture that can be read.
BRINDLE_EXPORT bool isImage(std::span<const std::byte> bytes);
/// Reads all pictures of a file: PNG, JPEG, GIF, BMP or TIFF, known by its first bytes. Broken and oversized files
/// have none; of pictures that together are too large, the first ones are read.
BRINDLE_EXPORT ImageFiles decodeImages(std::span<const std::byte> bytes);
/// Answers pictures as a TIFF file; empty without any, and where it would be 4 GB or more.
BRINDLE_EXPORT std::string encodeTIFF(std::span<const ImageFile> pictures, bool packs);
/// Answers a picture as a BMP file with alpha; empty without one, and where it would be 4 GB or more.
BRINDLE_EXPORT std::string encodeBMP(const ImageFile& picture);

}
