// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "support/TemporaryFolder.h"

namespace brindle::test {

/// Runs a Python program over two files: what it reads, `in`, and what it writes, `out`.
class Python {
public:
    /// Answers what the program wrote; "" when it failed.
    std::string run(const std::string& program, const std::string& input)
    {
        write("program.py", program);
        write("in", input);
        const std::string command = "cd '" + folder_.path().string() + "' && python3 program.py";
        if (std::system(command.c_str()) != 0)
            return "";
        std::ifstream file(folder_.path() / "out", std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }

private:
    void write(const char* name, const std::string& bytes)
    {
        std::ofstream(folder_.path() / name, std::ios::binary) << bytes;
    }

    TemporaryFolder folder_;
};

}
