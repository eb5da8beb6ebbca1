// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace brindle::test {

/// A folder of its own that goes, with its content, at the end of the test.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        // mkdtemp fills in the six letters.
        std::string name = (std::filesystem::temp_directory_path() / "brindle-XXXXXX").string();
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder can be made");
        path_ = std::filesystem::canonical(name);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_; // without links
};

}
