// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>

#include "ByteBuffer.h"
#include "NSString.h"

/// Whole files, by paths in the file system's own bytes.

namespace brindle::files {

/// Answers bytes of the system as text. They need not be: every byte that is not ASCII then reads "?".
Ref<NSString> textFrom(std::string bytes);

/// Answers a file's bytes; nothing on any failure (a folder cannot be read).
std::optional<ByteBuffer> read(const char* path);
/// Answers a file's pages, shared with it.
std::optional<ByteBuffer> map(const char* path);
/// Writes over a file or makes it.
bool write(const char* path, std::span<const unsigned char> bytes);
/// Writes a neighbour, brings it to the disk and gives it the file's name. The permissions stay, and where the path is
/// a symbolic link the file behind it is replaced.
bool writeAtomically(const char* path, std::span<const unsigned char> bytes);

}
