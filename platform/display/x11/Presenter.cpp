// SPDX-License-Identifier: Apache-2.0
#include "PresenterPrivate.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace brindle::display {

namespace {

    constexpr std::size_t kSmall = std::size_t { 16 }
        << 10; // bytes that are not worth the shared memory
    constexpr std::size_t kLeast = std::size_t { 128 } << 10;
    constexpr std::size_t kLargest = std::size_t { 2 } << 20;
    constexpr std::size_t kPage = 4096;

    std::size_t rowBytes(PixelRect rect) { return static_cast<std::size_t>(rect.width()) * 4; }

    void copyRows(std::byte* to, const Pixels& image, PixelRect rect)
    {
        for (int y = rect.top; y < rect.bottom; ++y) {
            std::memcpy(to, image.row(y) + rect.left, rowBytes(rect));
            to += rowBytes(rect);
        }
    }

    std::uint16_t u16(int value) { return static_cast<std::uint16_t>(value); }
    std::int16_t i16(int value) { return static_cast<std::int16_t>(value); }

    // Calls with bands of a rectangle that have no more than so many bytes, but at least one row each.
    template <typename Draw> void inBands(PixelRect rect, std::size_t bytes, Draw draw)
    {
        const int rows = std::max(1, static_cast<int>(bytes / rowBytes(rect)));
        for (int top = rect.top; top < rect.bottom; top += rows)
            draw(PixelRect { rect.left, top, rect.right, std::min(rect.bottom, top + rows) });
    }

}

Presenter::Presenter(Connection& connection)
    : connection_(connection)
    , works_(connection.extensions().sharedMemory)
{
}

Presenter::~Presenter() { releaseMemory(); }

void Presenter::releaseMemory()
{
    if (!memory_)
        return;
    xcb_shm_detach(connection_.raw(), segment_);
    munmap(memory_, size_);
    memory_ = nullptr;
    size_ = 0;
    used_ = 0;
}

bool Presenter::ensureMemory(std::size_t bytes)
{
    if (!works_ || size_ >= bytes)
        return works_;
    releaseMemory();
    works_ = false;
    const std::size_t size = (bytes + kPage - 1) / kPage * kPage;
    const int file = memfd_create("brindle-present", MFD_CLOEXEC);
    if (file < 0)
        return false;
    void* memory = MAP_FAILED;
    if (ftruncate(file, static_cast<off_t>(size)) == 0)
        memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED) {
        close(file);
        return false;
    }
    segment_ = xcb_generate_id(connection_.raw());
    // The request takes the descriptor over. Servers of other machines, of other users or in containers refuse.
    const auto refused = owned(xcb_request_check(
        connection_.raw(), xcb_shm_attach_fd_checked(connection_.raw(), segment_, file, 1)));
    if (refused || connection_.isBroken()) {
        munmap(memory, size);
        return false;
    }
    memory_ = static_cast<std::byte*>(memory);
    size_ = size;
    works_ = true;
    return true;
}

void Presenter::serverHasRead(std::uint32_t request)
{
    if (static_cast<std::int32_t>(request - last_) >= 0)
        used_ = 0;
}

void Presenter::waitUntilRead()
{
    // Requests are handled in order, so whatever answers now has seen all pictures before it.
    if (used_ > 0)
        owned(xcb_get_input_focus_reply(
            connection_.raw(), xcb_get_input_focus(connection_.raw()), nullptr));
    used_ = 0;
}

void Presenter::present(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
    const Pixels& image, PixelRect rect)
{
    const std::size_t bytes = rowBytes(rect) * static_cast<std::size_t>(rect.height());
    // Fresh pages cost both sides more than a few answers that bands wait for, unless they are used again.
    const std::size_t wanted = std::min(bytes, std::clamp(size_ * 2, kLeast, kLargest));
    if (bytes > kSmall && ensureMemory(wanted)) {
        inBands(rect, size_,
            [&](PixelRect band) { presentShared(window, context, depth, image, band); });
        return;
    }
    presentInRequests(window, context, depth, image, rect);
}

void Presenter::presentShared(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
    const Pixels& image, PixelRect band)
{
    const std::size_t bytes = rowBytes(band) * static_cast<std::size_t>(band.height());
    if (used_ + bytes > size_)
        waitUntilRead();
    copyRows(memory_ + used_, image, band);
    last_ = xcb_shm_put_image(connection_.raw(), window, context, u16(band.width()),
        u16(band.height()), 0, 0, u16(band.width()), u16(band.height()), i16(band.left),
        i16(band.top), depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment_,
        static_cast<std::uint32_t>(used_))
                .sequence;
    used_ += bytes;
}

void Presenter::presentInRequests(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
    const Pixels& image, PixelRect rect)
{
    xcb_connection_t* raw = connection_.raw();
    const std::size_t limit = std::size_t { xcb_get_maximum_request_length(raw) } * 4;
    if (limit <= sizeof(xcb_put_image_request_t) + 4)
        return; // the server is gone
    const std::size_t room = std::min(limit - sizeof(xcb_put_image_request_t) - 4, kLargest);
    std::vector<std::byte> bytes;
    inBands(rect, room, [&](PixelRect band) {
        bytes.resize(rowBytes(band) * static_cast<std::size_t>(band.height()));
        copyRows(bytes.data(), image, band);
        xcb_put_image(raw, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, u16(band.width()),
            u16(band.height()), i16(band.left), i16(band.top), 0, depth,
            static_cast<std::uint32_t>(bytes.size()),
            reinterpret_cast<const std::uint8_t*>(bytes.data()));
    });
}

}
