// SPDX-License-Identifier: Apache-2.0
#include "FontFile.h"

#include "foundation/FilesPrivate.h"

#include <algorithm>

namespace brindle::text {

FontFile::FontFile(std::span<const unsigned char> bytes, unsigned index)
    : bytes_(bytes)
{
    constexpr FontTag kSeveral = "ttcf";
    const FontTable file(bytes);
    if (file.longWord(0) == kSeveral.value)
        directory_ = index < file.longWord(8) ? file.longWord(12 + std::size_t { 4 } * index)
                                              : bytes.size();
    else if (index > 0)
        directory_ = bytes.size();
}

std::optional<FontFile> FontFile::open(const std::string& path, unsigned index)
{
    std::optional<ByteBuffer> memory = files::map(path.c_str());
    if (!memory)
        return std::nullopt;
    FontFile file({ memory->bytes(), memory->length() }, index);
    file.memory_ = std::move(*memory);
    return file;
}

FontTable FontFile::table(FontTag tag) const
{
    constexpr std::size_t kHeader = 12;
    constexpr std::size_t kEntry = 16;
    const FontTable file(bytes_);
    const std::size_t count = file.word(directory_ + 4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory_ + kHeader + i * kEntry;
        if (!file.has(entry, kEntry))
            break;
        if (file.longWord(entry) != tag.value)
            continue;
        const std::size_t start = std::min(file.longWord(entry + 8), bytes_.size());
        return FontTable(
            bytes_.subspan(start, std::min(file.longWord(entry + 12), bytes_.size() - start)));
    }
    return {};
}

}
