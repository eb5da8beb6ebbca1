// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Folders with all that is in them. Functions answer 0 or the system's error. Symbolic links are never followed
/// below the path that is given, and no depth uses the stack or keeps files open.

namespace brindle::files {

/// Reads the names in a folder, sorted, without "." and "..".
int list(const std::string& folder, std::vector<std::string>& names);
/// Removes a file, a link, or a folder with its content.
int removeTree(const std::string& path);
/// Copies files, links and folders with their permissions and dates. Nothing is left of a copy that fails.
/// - Errors: EEXIST when the target exists, EINVAL for a folder into itself, ENOTSUP for sockets and devices.
int copyTree(const std::string& from, const std::string& to);
/// Renames, or copies and removes where the target is on another volume. EEXIST when the target exists.
int moveTree(const std::string& from, const std::string& to);
/// Makes a folder and those above it that are missing.
int makeFolders(const std::string& path, unsigned permissions);

/// Goes through all that is below a folder, each folder before what is in it, sorted.
class TreeWalk {
public:
    explicit TreeWalk(std::string root);

    /// Answers the next path, relative to the root; "" at the end.
    std::string next();
    /// Leaves out what is in the folder that came last.
    void skipDescendants() { last_.clear(); }
    /// How many folders below the root the last one is, 1 for those in it.
    std::size_t level() const { return folders_.size(); }

private:
    struct Folder {
        std::string prefix; // relative to the root, with a slash at its end unless empty
        std::vector<std::string> names;
        std::size_t at = 0;
    };
    void enter(std::string prefix);

    std::string root_;
    std::vector<Folder> folders_;
    std::string last_;
};

}
