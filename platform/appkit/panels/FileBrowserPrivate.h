// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "FolderListingPrivate.h"
#include "FolderWatchPrivate.h"

/// What an open or save panel shows of the files: a folder, its entries, which of them may be chosen, which are.
namespace brindle::files {

/// Whoever uses a browser: it says what may be chosen and is told what has changed.
class BrowserClient {
public:
    virtual ~BrowserClient() = default;
    /// Answers whether an entry can be chosen or gone into.
    virtual bool enables(const std::string& path, bool isFolder) = 0;
    virtual void folderChanged() = 0;
    virtual void contentsChanged() = 0;
    virtual void selectionChanged() = 0;
    /// Somebody has said that the selection is what he wants.
    virtual void confirm() = 0;
};

enum class Extend {
    no,
    to,
    toggling
}; ///< whether a click replaces the selection, reaches to there, or changes one

/// It stays alive while it tells its client something, where it is shared.
/// Thread: main.
class Browser : public std::enable_shared_from_this<Browser> {
public:
    explicit Browser(BrowserClient& client)
        : client_(&client)
    {
    }
    /// Ends the connection; the browser then shows what it has.
    void disconnect();

    // ---- the folder

    const std::string& folder() const { return folder_; }
    /// Shows a folder. - select: the name of an entry to select once it is known, or "".
    void show(std::string folder, std::string select = {});
    /// Reads the folder again; what is selected stays. Done without being asked when the folder changes.
    void reload();
    bool canGoBack() const { return !back_.empty(); }
    bool canGoForward() const { return !forward_.empty(); }
    void goBack();
    void goForward();
    /// Goes to the folder above and selects the one that was left.
    void goUp();
    /// Goes into the selected folder. - Returns: whether exactly one was selected.
    bool goDown();

    // ---- its entries

    bool isReading() const { return isReading_; }
    int error() const { return contents_ ? contents_->error : 0; }
    std::size_t count() const { return contents_ ? contents_->entries.size() : 0; }
    const Entry& entry(std::size_t index) const { return contents_->entries[index]; }
    std::string pathOf(std::size_t index) const;
    bool isEnabled(std::size_t index);
    /// Forgets what the client has said about entries.
    void forgetEnabled();

    const Order& order() const { return order_; }
    void setOrder(Order order);
    /// Sorts by a column, the other way round where it is sorted by it already.
    void sortBy(Column column);

    // ---- the selection

    bool allowsMany = false;
    const std::set<std::size_t>& selection() const { return selection_; }
    bool isSelected(std::size_t index) const { return selection_.contains(index); }
    /// Answers the entry that the keyboard goes on from; the count where there is none.
    std::size_t lead() const { return lead_ < count() ? lead_ : count(); }
    /// Selects an entry if it is enabled.
    void select(std::size_t index, Extend extend = Extend::no);
    void selectAll();
    void clearSelection();
    /// Moves the selection by places, over entries that are not enabled.
    void move(std::ptrdiff_t by, Extend extend = Extend::no);
    void selectFirst(Extend extend = Extend::no);
    void selectLast(Extend extend = Extend::no);
    /// Selects the first enabled entry whose name begins with a text, whatever the case. - Returns: whether there is one.
    bool selectByPrefix(std::u16string_view text);
    /// Says that the selection is what somebody wants.
    void confirm();

private:
    void enter(std::string folder, std::string select, FolderListing::Pace pace);
    void take(std::shared_ptr<const Contents> contents);
    void folderTouched();
    void askSome();
    void changeSelection(std::set<std::size_t> selection, std::size_t lead);
    /// Answers the nearest enabled entry from a place on in a direction; the count where there is none.
    std::size_t enabledFrom(std::size_t index, std::ptrdiff_t step);

    enum Known : char { unknown, yes, no };

    BrowserClient* client_;
    std::string folder_;
    std::vector<std::string> back_;
    std::vector<std::string> forward_;
    Order order_;
    std::unique_ptr<FolderListing> listing_;
    std::unique_ptr<FolderWatch> watch_;
    std::shared_ptr<const Contents> contents_; // null until the first are known
    std::vector<Known> known_; // what the client has said of each entry
    std::size_t asked_ = 0; // entries before it have been asked for
    std::shared_ptr<int> asking_; // ends with what is asked for
    std::set<std::size_t> selection_;
    std::size_t lead_ = 0;
    std::size_t anchor_ = 0;
    std::string awaited_; // the name to select
    bool isReading_ = false;
    bool isTouched_ = false; // the folder changed while it was being read
};

}
