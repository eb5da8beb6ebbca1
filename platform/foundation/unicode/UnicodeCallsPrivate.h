// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <unicode/utypes.h>

#include "UnicodeLibrary.h"

namespace brindle::unicode {

/// Answers the library for dates, calendars and numbers, which brings the one for locales with it; nullptr without one.
inline void* international()
{
    static void* const library = openLibrary("libicui18n");
    return library;
}

/// Whether calls can be made. The library is of the version of its headers, so that it has all that they declare.
inline bool isThere() { return international() != nullptr; }

/// A function of the library, looked up once: `ICU(udat_open)(…)`. Only after `isThere`.
#define ICU(name)                                                                                  \
    BRINDLE_LATE_AS(::brindle::unicode::international(), name, BRINDLE_VERSIONED(name))

/// Calls a function that writes into a buffer and says how long the answer is; "" when it fails.
template <class String, class Call> String filled(Call call)
{
    String out(64, 0);
    for (int round = 0; round < 2; ++round) {
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length = call(out.data(), static_cast<std::int32_t>(out.size()), &error);
        if (U_FAILURE(error) && error != U_BUFFER_OVERFLOW_ERROR)
            break;
        const bool fits = static_cast<std::size_t>(length) <= out.size();
        out.resize(static_cast<std::size_t>(length));
        if (fits)
            return out;
    }
    return {};
}

/// Handles that are costly to open: kept for the next caller who wants the same, and lent to one at a time.
template <class Handle> class Pool {
public:
    explicit Pool(void (*close)(Handle))
        : close_(close)
    {
    }

    class Lease {
    public:
        Lease(Pool& pool, std::string key, Handle handle)
            : pool_(pool)
            , key_(std::move(key))
            , handle_(handle)
        {
        }
        ~Lease()
        {
            if (handle_)
                pool_.giveBack(std::move(key_), handle_);
        }
        Lease(Lease&& other) noexcept
            : pool_(other.pool_)
            , key_(std::move(other.key_))
            , handle_(std::exchange(other.handle_, nullptr))
        {
        }
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        explicit operator bool() const { return handle_ != nullptr; }
        Handle get() const { return handle_; }

    private:
        Pool& pool_;
        std::string key_;
        Handle handle_;
    };

    /// Lends a handle of the key, opened by `open`, which answers nullptr when it cannot.
    template <class Open> Lease lease(std::string key, Open open)
    {
        Handle handle = take(key);
        if (!handle)
            handle = open();
        return { *this, std::move(key), handle };
    }

private:
    static constexpr std::size_t kMost = 16;

    Handle take(const std::string& key)
    {
        const std::lock_guard guard(mutex_);
        for (std::size_t i = idle_.size(); i-- > 0;) {
            if (idle_[i].first == key) {
                const Handle handle = idle_[i].second;
                idle_.erase(idle_.begin() + static_cast<std::ptrdiff_t>(i));
                return handle;
            }
        }
        return nullptr;
    }
    void giveBack(std::string key, Handle handle)
    {
        Handle oldest = nullptr;
        {
            const std::lock_guard guard(mutex_);
            idle_.emplace_back(std::move(key), handle);
            if (idle_.size() > kMost) {
                oldest = idle_.front().second;
                idle_.erase(idle_.begin());
            }
        }
        if (oldest)
            close_(oldest);
    }

    std::mutex mutex_;
    std::vector<std::pair<std::string, Handle>> idle_; // the one used last at the end
    void (*close_)(Handle);
};

}
