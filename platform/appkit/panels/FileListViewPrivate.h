// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "FileBrowserPrivate.h"
#include "appkit/NSView.h"

namespace brindle {

class NSAttributedString;
class NSColor;
class NSFont;
class NSString;

namespace files {

    enum class Look { list, icons };

    /// The columns of the list in a width, in points from the left.
    struct Columns {
        CGFloat modified;
        CGFloat size;
        CGFloat end;
    };
    Columns columnsFor(CGFloat width);

    /// Answers a file's size as people read it: "4.2 MB".
    std::string readableSize(std::uint64_t bytes);
    /// Answers a moment as people read it, in the user's language.
    Ref<NSString> readableDate(std::int64_t nanoseconds);
    Ref<NSAttributedString> styled(NSString* text, NSFont* font, NSColor* color);

}

/// The entries of a browser's folder, as rows or as icons. Flipped; lies in a scroll view.
class FileListView : public NSView {
    BRINDLE_OBJECT(FileListView, NSView)

private:
    friend struct FileList;

    std::shared_ptr<files::Browser> browser_;
    files::Look look_ = files::Look::list;
    bool hidesExtensions_ = false;
    std::u16string typed_; // to select by name
    double typedAt_ = 0;
};

/// What the panel and the sources of the view do with it.
struct FileList {
    static void connect(FileListView& view, std::shared_ptr<files::Browser> browser);
    static files::Browser* browser(FileListView& view) { return view.browser_.get(); }
    static void setLook(FileListView& view, files::Look look);
    static files::Look look(const FileListView& view) { return view.look_; }
    static void setHidesExtensions(FileListView& view, bool hides);
    /// Takes the height that the entries need.
    static void resize(FileListView& view);
    static void showSelection(FileListView& view);

    // Places of entries.
    static std::size_t perRow(FileListView& view);
    static NSRect rectOf(FileListView& view, std::size_t index);
    /// Answers the entry at a point; the count where there is none.
    static std::size_t indexAt(FileListView& view, NSPoint point);
    /// Draws the entries in a rectangle; FileListView-Drawing.cpp.
    static void draw(FileListView& view, NSRect dirty);
    static bool type(FileListView& view, std::u16string_view text);
    static bool hidesExtensions(const FileListView& view) { return view.hidesExtensions_; }
};

}
