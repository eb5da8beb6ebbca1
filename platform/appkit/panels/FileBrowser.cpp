// SPDX-License-Identifier: Apache-2.0
#include "FileBrowserPrivate.h"

#include <algorithm>
#include <cctype>
#include <unordered_set>

#include "foundation/Clock.h"
#include "foundation/Dispatch.h"
#include "foundation/NSString.h"
#include "foundation/unicode/Unicode.h"

namespace brindle::files {

namespace {

    std::string parentOf(const std::string& folder)
    {
        const std::size_t slash = folder.rfind('/');
        return slash == 0 || slash == std::string::npos ? "/" : folder.substr(0, slash);
    }
    std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}

void Browser::disconnect()
{
    client_ = nullptr;
    listing_ = nullptr;
    watch_ = nullptr;
    asking_ = nullptr;
}

// ---- the folder

void Browser::enter(std::string folder, std::string select, FolderListing::Pace pace)
{
    const auto alive = weak_from_this().lock();
    awaited_ = std::move(select);
    const bool isOther = folder != folder_;
    if (isOther) {
        folder_ = std::move(folder);
        contents_ = nullptr;
        known_.clear();
        selection_.clear();
        asking_ = nullptr;
        lead_ = anchor_ = 0;
    }
    if (!client_)
        return;
    isReading_ = true;
    isTouched_ = false;
    if (isOther) // before it is read, so that nothing is missed
        watch_ = std::make_unique<FolderWatch>(folder_, [this] { folderTouched(); });
    listing_ = std::make_unique<FolderListing>(folder_, order_, pace,
        [this](std::shared_ptr<const Contents> contents) { take(std::move(contents)); });
    if (!isOther)
        return;
    client_->folderChanged();
    if (client_)
        client_->contentsChanged();
    if (client_)
        client_->selectionChanged();
}

void Browser::show(std::string folder, std::string select)
{
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    if (folder.empty())
        folder.push_back('/');
    if (!folder_.empty() && folder != folder_) {
        back_.push_back(folder_);
        forward_.clear();
    }
    enter(std::move(folder), std::move(select), FolderListing::Pace::soon);
}
void Browser::reload() { enter(folder_, awaited_, FolderListing::Pace::whenComplete); }

// A folder that changes all the time is still read to its end.
void Browser::folderTouched()
{
    if (isReading_)
        isTouched_ = true;
    else
        reload();
}

void Browser::goBack()
{
    if (back_.empty())
        return;
    forward_.push_back(folder_);
    std::string to = std::move(back_.back());
    back_.pop_back();
    enter(std::move(to), nameOf(forward_.back()), FolderListing::Pace::soon);
}
void Browser::goForward()
{
    if (forward_.empty())
        return;
    back_.push_back(folder_);
    std::string to = std::move(forward_.back());
    forward_.pop_back();
    enter(std::move(to), {}, FolderListing::Pace::soon);
}
void Browser::goUp()
{
    if (folder_ != "/")
        show(parentOf(folder_), nameOf(folder_));
}
bool Browser::goDown()
{
    if (selection_.size() != 1 || !entry(*selection_.begin()).isFolder)
        return false;
    show(pathOf(*selection_.begin()));
    return true;
}

// ---- its entries

void Browser::take(std::shared_ptr<const Contents> contents)
{
    const auto alive = weak_from_this().lock();
    std::unordered_set<std::string> selected;
    for (const std::size_t index : selection_)
        selected.insert(entry(index).name);
    const std::string leading = lead_ < count() ? entry(lead_).name : std::string();
    if (!awaited_.empty())
        selected = { awaited_ };

    contents_ = contents;
    isReading_ = !contents->isComplete;
    known_.assign(count(), unknown);
    const std::set<std::size_t> before = std::exchange(selection_, {});
    lead_ = anchor_ = count();
    for (std::size_t i = 0; i < count() && !selected.empty(); ++i) {
        const std::string& name = entry(i).name;
        const bool isChosen = selected.contains(name) && isEnabled(i);
        if (contents_ != contents)
            return; // the client has gone elsewhere
        if (isChosen)
            selection_.insert(i);
        if (name == leading)
            lead_ = anchor_ = i;
    }
    if (!selection_.empty() && !awaited_.empty())
        lead_ = anchor_ = *selection_.begin();
    if (contents->isComplete || !selection_.empty())
        awaited_.clear();

    asked_ = 0;
    asking_ = std::make_shared<int>();
    askSome();
    if (client_)
        client_->contentsChanged();
    if (client_ && selection_ != before)
        client_->selectionChanged();
    if (!isReading_ && isTouched_)
        reload();
}

// Every entry is asked for, but events come between: what asks may be slow.
void Browser::askSome()
{
    const auto alive = weak_from_this().lock();
    constexpr double kLongest = 0.004; // seconds
    constexpr std::size_t kMost = 500;
    const double end = Clock::uptime() + kLongest;
    for (std::size_t i = 0; i < kMost && asked_ < count() && Clock::uptime() <= end; ++i)
        isEnabled(asked_++);
    if (asked_ >= count() || !asking_)
        return;
    dispatch_async(dispatch_get_main_queue(), [this, still = std::weak_ptr<int>(asking_)] {
        if (!still.expired())
            askSome();
    });
}

std::string Browser::pathOf(std::size_t index) const
{
    return (folder_ == "/" ? folder_ : folder_ + "/") + entry(index).name;
}
bool Browser::isEnabled(std::size_t index)
{
    if (index >= count())
        return false;
    if (known_[index] == unknown) {
        const std::shared_ptr<const Contents> asked = contents_;
        const bool enabled = client_ && client_->enables(pathOf(index), entry(index).isFolder);
        if (contents_ != asked)
            return false; // the client has gone elsewhere meanwhile
        known_[index] = enabled ? yes : no;
    }
    return known_[index] == yes;
}
void Browser::forgetEnabled()
{
    const auto alive = weak_from_this().lock();
    known_.assign(count(), unknown);
    const std::shared_ptr<const Contents> present = contents_;
    std::set<std::size_t> selected = selection_;
    std::erase_if(selected, [this](std::size_t index) { return !isEnabled(index); });
    if (contents_ != present)
        return;
    changeSelection(std::move(selected), lead_);
    asked_ = 0;
    asking_ = std::make_shared<int>();
    askSome();
    if (client_)
        client_->contentsChanged();
}

void Browser::setOrder(Order order)
{
    if (order == order_)
        return;
    order_ = order;
    if (!folder_.empty())
        reload();
}
void Browser::sortBy(Column column)
{
    Order order = order_;
    // What is newest and largest is looked for more often than the contrary.
    order.ascending = order.column == column ? !order.ascending : column == Column::name;
    order.column = column;
    setOrder(order);
}

// ---- the selection

void Browser::changeSelection(std::set<std::size_t> selection, std::size_t lead)
{
    const auto alive = weak_from_this().lock();
    lead_ = lead;
    if (selection == selection_)
        return;
    selection_ = std::move(selection);
    if (client_)
        client_->selectionChanged();
}

void Browser::select(std::size_t index, Extend extend)
{
    if (!isEnabled(index))
        return;
    if (extend == Extend::no || !allowsMany) {
        anchor_ = index;
        return changeSelection({ index }, index);
    }
    const std::shared_ptr<const Contents> present = contents_;
    std::set<std::size_t> selection = selection_;
    if (extend == Extend::toggling) {
        if (!selection.erase(index))
            selection.insert(index);
        anchor_ = index;
    } else {
        const std::size_t from = anchor_ < count() ? anchor_ : index;
        selection.clear();
        for (std::size_t i = std::min(from, index); i <= std::max(from, index); ++i) {
            if (isEnabled(i))
                selection.insert(i);
        }
    }
    if (contents_ == present)
        changeSelection(std::move(selection), index);
}
void Browser::selectAll()
{
    if (!allowsMany)
        return;
    const std::shared_ptr<const Contents> present = contents_;
    std::set<std::size_t> all;
    for (std::size_t i = 0; i < count(); ++i) {
        if (isEnabled(i))
            all.insert(all.end(), i);
    }
    if (contents_ == present)
        changeSelection(std::move(all), lead_);
}
void Browser::clearSelection() { changeSelection({}, lead_); }

std::size_t Browser::enabledFrom(std::size_t index, std::ptrdiff_t step)
{
    while (index < count() && !isEnabled(index))
        index += static_cast<std::size_t>(step); // below 0 it wraps past the count
    return std::min(index, count());
}
void Browser::move(std::ptrdiff_t by, Extend extend)
{
    if (count() == 0 || by == 0)
        return;
    if (lead_ >= count() || selection_.empty())
        return by > 0 ? selectFirst(extend) : selectLast(extend);
    const auto last = static_cast<std::ptrdiff_t>(count()) - 1;
    const auto at = static_cast<std::ptrdiff_t>(lead_);
    const auto wanted = static_cast<std::size_t>(std::clamp(at + by, std::ptrdiff_t {}, last));
    const std::ptrdiff_t step = by > 0 ? 1 : -1;
    std::size_t found = enabledFrom(wanted, step);
    if (found == count()) // nothing further on: as far as it goes
        found = enabledFrom(wanted, -step);
    select(found, extend);
}
void Browser::selectFirst(Extend extend) { select(enabledFrom(0, 1), extend); }
void Browser::selectLast(Extend extend)
{
    if (count() > 0)
        select(enabledFrom(count() - 1, -1), extend);
}

bool Browser::selectByPrefix(std::u16string_view text)
{
    const std::u16string wanted = unicode::lowercase(text);
    if (wanted.empty())
        return false;
    for (std::size_t i = 0; i < count(); ++i) {
        // Most names differ in their first byte already.
        const auto first = static_cast<unsigned char>(entry(i).name.front());
        if (first < 0x80 && wanted[0] < 0x80 && std::tolower(first) != wanted[0])
            continue;
        const std::u16string name = utf16Of(stringFrom(entry(i).name));
        if (unicode::lowercase(name.substr(0, text.size())) != wanted || !isEnabled(i))
            continue;
        select(i);
        return true;
    }
    return false;
}
void Browser::confirm()
{
    const auto alive = weak_from_this().lock();
    if (client_)
        client_->confirm();
}

}
