// SPDX-License-Identifier: Apache-2.0
#include "FilesPrivate.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brindle::files {

namespace {

    int openForReading(const char* path)
    {
        // Not to wait for ever on a pipe without a writer.
        return ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    }

    std::string realPath(const char* path)
    {
        const std::unique_ptr<char, decltype(&std::free)> real(
            ::realpath(path, nullptr), &std::free);
        return real ? real.get() : path;
    }

    /// What the permissions of a new file are: asking for the mask means setting it, so a file that exists tells.
    mode_t permissionsFor(const std::string& path, int fresh)
    {
        struct stat status { };
        if (::stat(path.c_str(), &status) == 0)
            return status.st_mode & 07777;
        return ::fstat(fresh, &status) == 0 ? status.st_mode & 07777 : 0600;
    }

    void syncFolder(const std::string& path)
    {
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
        const Descriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (open)
            ::fsync(open.number()); // a file system that cannot do it has nothing better
    }

    /// Makes a file next to `path` that did not exist, with the permissions that new files get.
    int openNeighbour(const std::string& path, std::string& neighbour)
    {
        const std::size_t slash = path.rfind('/');
        const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
        for (unsigned attempt = 0; attempt < 1000; ++attempt) {
            neighbour = folder + ".brindle-" + std::to_string(::getpid()) + "-"
                + std::to_string(::gettid()) + "-" + std::to_string(attempt);
            const int number
                = ::open(neighbour.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (number >= 0 || errno != EEXIST)
                return number;
        }
        return -1;
    }

}

Ref<NSString> textFrom(std::string bytes)
{
    if (Ref<NSString> text = stringFrom(bytes))
        return text;
    for (char& byte : bytes) {
        if (static_cast<signed char>(byte) < 0)
            byte = '?';
    }
    return stringFrom(bytes);
}

bool writeAll(int number, std::span<const unsigned char> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(number, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<ByteBuffer> read(const char* path)
{
    const Descriptor file(openForReading(path));
    struct stat status { };
    if (!file || ::fstat(file.number(), &status) != 0 || S_ISDIR(status.st_mode))
        return std::nullopt;
    ByteBuffer buffer;
    // One byte more than the file says: the end is then seen without growing. Special files say 0.
    if (!buffer.reserve(static_cast<std::size_t>(status.st_size) + 1))
        return std::nullopt;
    unsigned char piece[16384];
    for (;;) {
        const ssize_t count = ::read(file.number(), piece, sizeof piece);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return buffer;
        if (!buffer.append(piece, static_cast<std::size_t>(count)))
            return std::nullopt;
    }
}

std::optional<ByteBuffer> map(const char* path)
{
    const Descriptor file(openForReading(path));
    struct stat status { };
    if (!file || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const auto length = static_cast<std::size_t>(status.st_size);
    if (!length)
        return ByteBuffer();
    void* const pages = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (pages == MAP_FAILED)
        return std::nullopt;
    return ByteBuffer(pages, length, ByteBuffer::Owner::mapped);
}

bool write(const char* path, std::span<const unsigned char> bytes)
{
    // Not to wait for ever on a pipe that nobody reads; where somebody does, and is slow, he is waited for.
    Descriptor file(::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666));
    return file && ::fcntl(file.number(), F_SETFL, 0) == 0 && writeAll(file.number(), bytes)
        && file.close();
}

bool writeAtomically(const char* path, std::span<const unsigned char> bytes)
{
    const std::string target = realPath(path);
    std::string neighbour;
    Descriptor file(openNeighbour(target, neighbour));
    if (!file)
        return false;
    const mode_t permissions = permissionsFor(target, file.number());
    const bool done = ::fchmod(file.number(), permissions) == 0 && writeAll(file.number(), bytes)
        && ::fsync(file.number()) == 0 && file.close()
        && std::rename(neighbour.c_str(), target.c_str()) == 0;
    if (!done) {
        ::unlink(neighbour.c_str());
        return false;
    }
    syncFolder(target);
    return true;
}

}
