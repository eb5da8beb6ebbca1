// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What is in a folder, read and sorted beside the main thread.
namespace brindle::files {

struct Entry {
    std::string name; // as the system has it; not always UTF-8
    std::string key; // compares as the name does
    std::uint64_t size = 0;
    std::int64_t modified = 0; // nanoseconds since 1970
    bool isFolder = false;
    bool isExecutable = false;
};

enum class Column { name, modified, size };

struct Order {
    Column column = Column::name;
    bool ascending = true;
    bool showsHidden = false; // those whose name begins with a dot

    friend bool operator==(const Order&, const Order&) = default;
};

struct Contents {
    std::vector<Entry> entries; // in order
    int error = 0; // of the system, why there is nothing
    bool isComplete = true;
};

/// Reads a folder and tells what it has found on the main thread: soon the first entries, later all of them.
class FolderListing {
public:
    using Told = std::function<void(std::shared_ptr<const Contents>)>;
    enum class Pace {
        soon,
        whenComplete
    }; // whether the first entries are told before the rest is known

    /// Thread: main, as the destructor, after which nothing is told.
    FolderListing(std::string folder, Order order, Pace pace, Told told);
    ~FolderListing();
    FolderListing(const FolderListing&) = delete;
    FolderListing& operator=(const FolderListing&) = delete;

private:
    struct Job;
    std::shared_ptr<Job> job_;
};

}
