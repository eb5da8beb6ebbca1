// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace brindle {

/// What waits in a line, the first in front. Unlike a `std::deque` it asks for no memory while as many come as go.
///
/// Iterators and references are good until the next change. Thread: one at a time.
template <class T> class Queue {
public:
    using iterator = typename std::vector<T>::iterator;

    bool empty() const { return first_ == items_.size(); }
    std::size_t size() const { return items_.size() - first_; }
    T& front() { return items_[first_]; }
    T& back() { return items_.back(); }
    iterator begin() { return items_.begin() + static_cast<std::ptrdiff_t>(first_); }
    iterator end() { return items_.end(); }
    const T* begin() const { return items_.data() + first_; }
    const T* end() const { return items_.data() + items_.size(); }

    template <class... Parts> T& emplace_back(Parts&&... parts)
    {
        // Half of it has gone: what is left moves up, rather than the memory growing.
        if (items_.size() == items_.capacity() && first_ > 0 && first_ >= items_.size() / 2)
            closeUp();
        return items_.emplace_back(std::forward<Parts>(parts)...);
    }
    template <class... Parts> void emplace_front(Parts&&... parts)
    {
        if (first_ > 0)
            items_[--first_] = T(std::forward<Parts>(parts)...);
        else
            items_.emplace(items_.begin(), std::forward<Parts>(parts)...);
    }
    void pop_front()
    {
        items_[first_++] = T();
        rest();
    }
    void pop_back()
    {
        items_.pop_back();
        rest();
    }
    iterator erase(iterator at)
    {
        if (at != begin())
            return items_.erase(at);
        pop_front();
        return begin();
    }
    template <class Test> void eraseIf(Test test)
    {
        closeUp();
        std::erase_if(items_, test);
    }
    void clear()
    {
        first_ = items_.size();
        rest();
    }

private:
    void closeUp()
    {
        items_.erase(items_.begin(), begin());
        first_ = 0;
    }
    /// An empty line begins in front again; the room that a crowd took is given back.
    void rest()
    {
        constexpr std::size_t kKept = 1024;
        if (!empty())
            return;
        first_ = 0;
        if (items_.capacity() > kKept)
            items_ = std::vector<T>();
        else
            items_.clear();
    }

    std::vector<T> items_;
    std::size_t first_ = 0; // what stands before it has gone
};

}
