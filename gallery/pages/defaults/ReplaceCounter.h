// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace gallery {

/// Counts how often files in a folder are replaced by others, as the system reports it.
class ReplaceCounter {
public:
    /// A folder that is missing counts nothing.
    explicit ReplaceCounter(const std::string& folder);
    ~ReplaceCounter();
    ReplaceCounter(const ReplaceCounter&) = delete;

    /// Answers how many files of this name came into their place since the last question.
    int count(const std::string& name);

private:
    int queue_;
};

}
