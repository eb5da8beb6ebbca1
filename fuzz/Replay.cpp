// SPDX-License-Identifier: Apache-2.0
// Stands in for the fuzzing engine: feeds the kept inputs to the same function, with any compiler.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesUnder(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::exists(folder))
        return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void feed(const std::vector<char>& bytes)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}

int main(int count, char** arguments)
try {
    feed({}); // the empty input needs no file
    for (int i = 1; i < count; ++i) {
        for (const auto& file : filesUnder(arguments[i])) {
            std::printf("%s\n", file.c_str());
            std::fflush(stdout); // the last line names the input that ended the program
            std::ifstream stream(file, std::ios::binary);
            feed({ std::istreambuf_iterator<char>(stream), {} });
        }
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
