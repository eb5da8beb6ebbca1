// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "ConnectionPrivate.h"

namespace brindle::display {

/// Brings pixels into windows: through memory shared with the server where that works, else inside requests.
///
/// One piece of shared memory serves all windows. It doubles with each large damage, as far as that needs it and up to a
/// limit; what is larger goes in bands. Small damage is cheaper inside a request.
class Presenter {
public:
    explicit Presenter(Connection& connection);
    ~Presenter();
    Presenter(const Presenter&) = delete;
    Presenter& operator=(const Presenter&) = delete;

    /// Draws a rectangle of an image into the same place of a window.
    void present(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
        const Pixels& image, PixelRect rect);

    /// Takes note that the server has come as far as a request of ours.
    void serverHasRead(std::uint32_t request);
    /// Stops using shared memory; for tests of the other road.
    void forgetSharedMemory() { works_ = false; }
    bool usesSharedMemory() const { return works_; }

private:
    bool ensureMemory(std::size_t bytes);
    void releaseMemory();
    void waitUntilRead();
    void presentShared(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
        const Pixels& image, PixelRect band);
    void presentInRequests(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
        const Pixels& image, PixelRect rect);

    Connection& connection_;
    std::byte* memory_ = nullptr;
    std::size_t size_ = 0;
    std::size_t used_ = 0; // since the server was last known to have read everything
    std::uint32_t last_ = 0; // the request for the last picture
    xcb_shm_seg_t segment_ = 0;
    bool works_;
};

}
