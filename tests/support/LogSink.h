// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/NSLog.h"

namespace brindle::test {

/// Collects what is logged while it lives.
class LogSink {
public:
    LogSink()
    {
        setLogSink([lines = lines_](NSString* text) {
            const std::lock_guard guard(lines->mutex);
            lines->all.push_back(utf8Of(text));
        });
    }
    ~LogSink() { setLogSink(nullptr); }
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

    std::vector<std::string> lines() const
    {
        const std::lock_guard guard(lines_->mutex);
        return lines_->all;
    }
    /// Answers the lines with a line end behind each.
    std::string text() const
    {
        std::string all;
        for (const std::string& line : lines())
            all += line + '\n';
        return all;
    }
    void clear()
    {
        const std::lock_guard guard(lines_->mutex);
        lines_->all.clear();
    }

private:
    struct Lines {
        std::mutex mutex;
        std::vector<std::string> all;
    };
    std::shared_ptr<Lines> lines_ = std::make_shared<Lines>();
};

}
