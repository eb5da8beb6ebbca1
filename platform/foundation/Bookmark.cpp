// SPDX-License-Identifier: Apache-2.0
#include "Bookmark.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <deque>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace brindle::bookmarks {

namespace {

    constexpr std::string_view kMagic = "brmk";
    constexpr std::uint16_t kVersion = 1;
    constexpr std::size_t kHead = 4 + 2 + 2 + 8 * 4 + 4;

    template <class T> void put(std::vector<unsigned char>& out, T value)
    {
        for (std::size_t i = 0; i < sizeof value; ++i)
            out.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
    template <class T> T take(std::span<const unsigned char>& bytes)
    {
        T value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i)
            value = static_cast<T>(value | static_cast<T>(bytes[i]) << (8 * i));
        bytes = bytes.subspan(sizeof value);
        return value;
    }

    struct Mixer {
        std::uint64_t a, b, c, d;

        void rounds(int count)
        {
            for (int i = 0; i < count; ++i) {
                a += b;
                c += d;
                b = std::rotl(b, 13) ^ a;
                d = std::rotl(d, 16) ^ c;
                a = std::rotl(a, 32);
                c += b;
                a += d;
                b = std::rotl(b, 17) ^ c;
                d = std::rotl(d, 21) ^ a;
                c = std::rotl(c, 32);
            }
        }
        void add(std::uint64_t word)
        {
            d ^= word;
            rounds(2);
            a ^= word;
        }
        std::uint64_t value() const { return a ^ b ^ c ^ d; }
    };

    Key sealWith(const Key& key, std::span<const unsigned char> bytes, std::string_view base)
    {
        std::vector<unsigned char> all(bytes.begin(), bytes.end());
        all.insert(all.end(), base.begin(), base.end());
        return seal(key, all);
    }

    std::uint64_t volumeOf(const std::string& path)
    {
        struct statvfs facts { };
        return ::statvfs(path.c_str(), &facts) == 0 ? facts.f_fsid : 0;
    }

    using Facts = struct statx;

    /// Asks the system about a file; answers 0 or the number of the error.
    int look(const std::string& path, int flags, Facts& facts)
    {
        const bool isThere
            = ::statx(AT_FDCWD, path.c_str(), flags, STATX_BASIC_STATS | STATX_BTIME, &facts) == 0;
        return isThere ? 0 : errno;
    }
    std::uint64_t deviceOf(const Facts& facts)
    {
        return makedev(facts.stx_dev_major, facts.stx_dev_minor);
    }
    std::uint64_t birthOf(const Facts& facts)
    {
        if (!(facts.stx_mask & STATX_BTIME))
            return 0;
        return static_cast<std::uint64_t>(facts.stx_btime.tv_sec) * 1'000'000'000
            + facts.stx_btime.tv_nsec;
    }

    // ---- looking for a file that moved

    /// Device numbers may change from one start of the machine to the next; a volume's own number does not.
    bool isSame(const Trace& trace, const std::string& path, const Facts& facts)
    {
        return facts.stx_ino == trace.inode && birthOf(facts) == trace.born
            && !S_ISLNK(facts.stx_mode)
            && S_ISDIR(facts.stx_mode) == ((trace.flags & Trace::kFolder) != 0)
            && (deviceOf(facts) == trace.device
                || (trace.volume != 0 && volumeOf(path) == trace.volume));
    }

    /// Looks through a folder and those in it, level by level.
    std::optional<std::string> search(
        const Trace& trace, const std::string& folder, std::size_t& budget)
    {
        std::deque<std::string> folders { folder };
        while (!folders.empty() && budget > 0) {
            std::error_code error;
            std::filesystem::directory_iterator entries(folders.front(), error);
            folders.pop_front();
            for (; !error && entries != std::filesystem::directory_iterator();
                 entries.increment(error)) {
                if (budget == 0)
                    return std::nullopt;
                --budget;
                const std::string& path = entries->path().native();
                Facts facts {};
                if (look(path, AT_SYMLINK_NOFOLLOW, facts) != 0)
                    continue;
                if (isSame(trace, path, facts))
                    return path;
                if (S_ISDIR(facts.stx_mode) && deviceOf(facts) == trace.device)
                    folders.push_back(path);
            }
        }
        return std::nullopt;
    }

    std::string parentOf(const std::string& path)
    {
        return std::filesystem::path(path).parent_path().native();
    }

}

Key seal(const Key& key, std::span<const unsigned char> bytes)
{
    std::span<const unsigned char> keyBytes(key);
    const auto first = take<std::uint64_t>(keyBytes);
    const auto second = take<std::uint64_t>(keyBytes);
    Mixer mixer { first ^ 0x736f6d6570736575, second ^ 0x646f72616e646f6d ^ 0xee,
        first ^ 0x6c7967656e657261, second ^ 0x7465646279746573 };
    const std::uint64_t length = bytes.size();
    while (bytes.size() >= 8)
        mixer.add(take<std::uint64_t>(bytes));
    std::uint64_t last = length << 56;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        last |= std::uint64_t { bytes[i] } << (8 * i);
    mixer.add(last);
    mixer.c ^= 0xee;
    mixer.rounds(4);
    std::vector<unsigned char> out;
    put(out, mixer.value());
    mixer.b ^= 0xdd;
    mixer.rounds(4);
    put(out, mixer.value());
    Key result {};
    std::copy(out.begin(), out.end(), result.begin());
    return result;
}

std::vector<unsigned char> write(const Trace& trace, std::string_view base, const Key& key)
{
    std::vector<unsigned char> out(kMagic.begin(), kMagic.end());
    put(out, kVersion);
    put(out, trace.flags);
    put(out, trace.device);
    put(out, trace.inode);
    put(out, trace.volume);
    put(out, trace.born);
    put(out, static_cast<std::uint32_t>(trace.path.size()));
    out.insert(out.end(), trace.path.begin(), trace.path.end());
    const Key end = sealWith(key, out, base);
    out.insert(out.end(), end.begin(), end.end());
    return out;
}

std::optional<Trace> read(
    std::span<const unsigned char> bytes, std::string_view base, const Key& key)
{
    if (bytes.size() < kHead + key.size())
        return std::nullopt;
    const auto body = bytes.first(bytes.size() - key.size());
    const Key end = sealWith(key, body, base);
    if (!std::equal(end.begin(), end.end(), bytes.end() - static_cast<std::ptrdiff_t>(end.size())))
        return std::nullopt;
    std::span<const unsigned char> rest = body;
    if (!std::equal(kMagic.begin(), kMagic.end(), rest.begin()))
        return std::nullopt;
    rest = rest.subspan(kMagic.size());
    if (take<std::uint16_t>(rest) != kVersion)
        return std::nullopt;
    Trace trace;
    trace.flags = take<std::uint16_t>(rest);
    trace.device = take<std::uint64_t>(rest);
    trace.inode = take<std::uint64_t>(rest);
    trace.volume = take<std::uint64_t>(rest);
    trace.born = take<std::uint64_t>(rest);
    if (take<std::uint32_t>(rest) != rest.size())
        return std::nullopt;
    trace.path.assign(rest.begin(), rest.end());
    return trace;
}

std::optional<Trace> describe(const std::string& path, int& error)
{
    Facts facts {};
    error = look(path, 0, facts);
    if (error != 0)
        return std::nullopt;
    Trace trace;
    trace.flags = S_ISDIR(facts.stx_mode) ? Trace::kFolder : 0;
    trace.device = deviceOf(facts);
    trace.inode = facts.stx_ino;
    trace.volume = volumeOf(path);
    trace.born = birthOf(facts);
    trace.path = path;
    return trace;
}

std::optional<Place> locate(const Trace& trace)
{
    Facts facts {};
    if (look(trace.path, 0, facts) == 0)
        return Place { trace.path, !isSame(trace, trace.path, facts), S_ISDIR(facts.stx_mode) };
    std::string folder = parentOf(trace.path);
    while (folder.size() > 1 && look(folder, 0, facts) != 0)
        folder = parentOf(folder);
    std::size_t budget = 10'000;
    // A file that moved is most often still beside its old place, else in a neighbouring folder.
    for (const std::string& start : { folder, parentOf(folder) }) {
        if (const std::optional<std::string> found = search(trace, start, budget))
            return Place { *found, true, (trace.flags & Trace::kFolder) != 0 };
    }
    return std::nullopt;
}

}
