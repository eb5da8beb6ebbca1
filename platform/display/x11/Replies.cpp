// SPDX-License-Identifier: Apache-2.0
#include "RepliesPrivate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "XcbPrivate.h"
#include "display/PixelMapping.h"

namespace brindle::display {

namespace {

    using Bytes = std::span<const std::byte>;

    double number(xcb_input_fp3232_t fixed) { return fixed.integral + fixed.frac / 4294967296.0; }

    template <typename T> bool look(Bytes bytes, T& value)
    {
        if (bytes.size() < sizeof(T))
            return false;
        std::memcpy(&value, bytes.data(), sizeof(T));
        return true;
    }

    bool skip(Bytes& bytes, std::size_t size)
    {
        if (bytes.size() < size)
            return false;
        bytes = bytes.subspan(size);
        return true;
    }

    template <typename T> bool take(Bytes& bytes, T& value)
    {
        return look(bytes, value) && skip(bytes, sizeof(T));
    }

    // Of one device; advances to its end.
    bool takeDevice(Bytes& bytes, std::vector<ScrollAxis>& axes)
    {
        xcb_input_xi_device_info_t info {};
        if (!take(bytes, info) || !skip(bytes, (std::size_t { info.name_len } + 3) / 4 * 4))
            return false;
        for (unsigned i = 0; i < info.num_classes; ++i) {
            xcb_input_device_class_t head {};
            if (!look(bytes, head))
                return false;
            const Bytes all = bytes;
            const std::size_t size = std::size_t { head.len } * 4;
            if (size < sizeof head || !skip(bytes, size))
                return false;
            if (head.type != XCB_INPUT_DEVICE_CLASS_TYPE_SCROLL)
                continue;
            xcb_input_scroll_class_t scroll {};
            if (!look(all.first(size), scroll))
                return false;
            const double increment = number(scroll.increment);
            if (increment != 0) {
                axes.push_back({ info.deviceid, scroll.number,
                    scroll.scroll_type == XCB_INPUT_SCROLL_TYPE_VERTICAL, increment });
            }
        }
        return true;
    }

    /// Numbers whose bytes may come in the other order.
    struct Reader {
        Bytes bytes;
        bool swaps = false;

        template <typename T> bool take(T& value)
        {
            if (!display::take(bytes, value))
                return false;
            if (swaps) {
                auto* const first = reinterpret_cast<std::byte*>(&value);
                std::reverse(first, first + sizeof value);
            }
            return true;
        }
        bool skipPadded(std::size_t size) { return skip(bytes, (size + 3) / 4 * 4); }
    };

    bool takeSetting(Reader& reader, std::vector<NumberSetting>& found)
    {
        constexpr std::uint8_t kNumber = 0;
        constexpr std::uint8_t kText = 1;
        constexpr std::uint8_t kColor = 2;
        std::uint8_t kind = 0;
        std::uint8_t unused = 0;
        std::uint16_t nameLength = 0;
        std::uint32_t serial = 0;
        if (!reader.take(kind) || !reader.take(unused) || !reader.take(nameLength))
            return false;
        const Bytes name = reader.bytes;
        if (!reader.skipPadded(nameLength) || !reader.take(serial))
            return false;
        if (kind == kNumber) {
            NumberSetting& setting = found.emplace_back();
            setting.name = { reinterpret_cast<const char*>(name.data()), nameLength };
            if (reader.take(setting.value))
                return true;
            found.pop_back();
            return false;
        }
        std::uint32_t length = 0;
        if (kind == kText)
            return reader.take(length) && reader.skipPadded(length);
        return kind == kColor && reader.skipPadded(4 * sizeof(std::uint16_t));
    }

    bool takeMonitor(Bytes& bytes, std::vector<Monitor>& found)
    {
        xcb_randr_monitor_info_t info {};
        if (!take(bytes, info) || !skip(bytes, std::size_t { info.nOutput } * 4))
            return false;
        if (info.width == 0 || info.height == 0)
            return true;
        const auto place
            = info.primary ? std::ptrdiff_t { 0 } : static_cast<std::ptrdiff_t>(found.size());
        found.insert(found.begin() + place,
            { { info.x, info.y, info.x + info.width, info.y + info.height }, info.name });
        return true;
    }

}

std::vector<ScrollAxis> parseScrollAxes(Bytes bytes, std::size_t devices, std::uint64_t& malformed)
{
    std::vector<ScrollAxis> axes;
    for (std::size_t i = 0; i < devices; ++i) {
        if (!takeDevice(bytes, axes)) {
            ++malformed;
            break;
        }
    }
    return axes;
}

std::vector<Valuator> parseValuators(
    Bytes bytes, std::size_t buttonWords, std::size_t axisWords, std::uint64_t& malformed)
{
    std::vector<Valuator> values;
    if (!skip(bytes, buttonWords * 4) || bytes.size() < axisWords * 4) {
        ++malformed;
        return values;
    }
    Bytes mask = bytes.first(axisWords * 4);
    bytes = bytes.subspan(mask.size());
    std::uint32_t word = 0;
    for (unsigned base = 0; take(mask, word); base += 32) {
        for (unsigned bit = 0; bit < 32; ++bit) {
            if (!(word >> bit & 1))
                continue;
            xcb_input_fp3232_t fixed {};
            if (!take(bytes, fixed)) {
                ++malformed;
                return values;
            }
            values.push_back({ static_cast<std::uint16_t>(base + bit), number(fixed) });
        }
    }
    return values;
}

std::vector<Monitor> parseMonitors(Bytes bytes, std::size_t monitors, std::uint64_t& malformed)
{
    std::vector<Monitor> found;
    for (std::size_t i = 0; i < monitors; ++i) {
        if (!takeMonitor(bytes, found)) {
            ++malformed;
            break;
        }
    }
    return found;
}

std::vector<NumberSetting> parseSettings(Bytes bytes, std::uint64_t& malformed)
{
    std::vector<NumberSetting> found;
    if (bytes.empty())
        return found;
    constexpr std::byte kHighFirst { 1 };
    Reader reader { bytes, (bytes[0] == kHighFirst) != (std::endian::native == std::endian::big) };
    std::uint32_t serial = 0;
    std::uint32_t count = 0;
    bool isWhole = reader.skipPadded(1) && reader.take(serial) && reader.take(count);
    for (std::uint32_t i = 0; isWhole && i < count; ++i)
        isWhole = takeSetting(reader, found);
    if (!isWhole)
        ++malformed;
    return found;
}

std::optional<double> scaleFrom(std::span<const NumberSetting> settings)
{
    const auto positive = [settings](std::string_view name) {
        const auto found = std::find_if(settings.begin(), settings.end(),
            [name](const NumberSetting& setting) { return setting.name == name; });
        return found == settings.end() ? 0 : std::max(0, found->value);
    };
    constexpr double kUsualDensity = 96 * 1024; // dots an inch, in 1024ths
    const int windows = positive("Gdk/WindowScalingFactor");
    // Where the first of these is given, the second contains the factor of the windows already.
    double density = positive("Gdk/UnscaledDPI");
    if (density <= 0)
        density = positive("Xft/DPI");
    if (density <= 0 && windows <= 1)
        return std::nullopt;
    return std::max(windows, 1) * (density > 0 ? density / kUsualDensity : 1);
}

std::optional<PixelRect> workAreaFrom(
    std::span<const std::uint32_t> areas, std::span<const std::uint32_t> currentDesktop)
{
    if (areas.size() < 4)
        return std::nullopt;
    std::size_t first = currentDesktop.empty() ? 0 : std::size_t { currentDesktop[0] } * 4;
    if (first + 4 > areas.size())
        first = 0;
    const auto number = [&](std::size_t i) {
        return saturatedPixel(static_cast<std::int32_t>(areas[first + i]));
    };
    return PixelRect { number(0), number(1), number(0) + number(2), number(1) + number(3) };
}

// ---- what is kept free

namespace {

    constexpr std::size_t kEdges = 4; // left, right, top, bottom

    /// One edge of the whole picture, seen from one monitor: distances from that edge.
    struct EdgeView {
        int near; // where the monitor begins
        int far; // where it ends
        int start; // its reach along the edge
        int end;
        int free; // where the work area begins
    };

    std::array<EdgeView, kEdges> edgesOf(
        const PixelRect& monitor, PixelSize picture, const PixelRect& area)
    {
        const auto& m = monitor;
        return { {
            { m.left, m.right, m.top, m.bottom, area.left },
            { picture.width - m.right, picture.width - m.left, m.top, m.bottom,
                picture.width - area.right },
            { m.top, m.bottom, m.left, m.right, area.top },
            { picture.height - m.bottom, picture.height - m.top, m.left, m.right,
                picture.height - area.bottom },
        } };
    }

    /// Answers how far from the edge the monitor's free part begins.
    int freeFrom(const EdgeView& view, std::size_t edge, std::span<const StrutValues> struts)
    {
        int free = view.near;
        bool isExplained = view.free <= 0;
        for (const StrutValues& strut : struts) {
            const int reach = static_cast<int>(std::min<std::uint32_t>(strut[edge], kLargestPixel));
            if (reach > view.free)
                continue; // the manager does not heed it
            isExplained = isExplained || reach == view.free;
            const std::int64_t start = strut[kEdges + 2 * edge];
            const std::int64_t end = strut[kEdges + 2 * edge + 1];
            if (reach > view.near && reach < view.far && start < view.end && end >= view.start)
                free = std::max(free, reach);
        }
        return isExplained ? free : std::max(free, view.free);
    }

}

std::optional<StrutValues> strutFrom(
    std::span<const std::uint32_t> partial, std::span<const std::uint32_t> plain)
{
    const bool isPartial = partial.size() >= std::tuple_size_v<StrutValues>;
    if (!isPartial && plain.size() < kEdges)
        return std::nullopt;
    StrutValues values {};
    std::copy_n(isPartial ? partial.begin() : plain.begin(),
        isPartial ? std::tuple_size_v<StrutValues> : kEdges, values.begin());
    for (std::size_t edge = 0; edge < kEdges && !isPartial; ++edge)
        values[kEdges + 2 * edge + 1] = kLargestPixel - 1;
    const bool isAny = std::any_of(
        values.begin(), values.begin() + kEdges, [](std::uint32_t value) { return value != 0; });
    return isAny ? std::optional(values) : std::nullopt;
}

PixelRect visiblePart(const PixelRect& monitor, PixelSize picture, const PixelRect& area,
    std::span<const StrutValues> struts)
{
    const std::array<EdgeView, kEdges> edges = edgesOf(monitor, picture, area);
    const PixelRect visible { freeFrom(edges[0], 0, struts), freeFrom(edges[2], 2, struts),
        picture.width - freeFrom(edges[1], 1, struts),
        picture.height - freeFrom(edges[3], 3, struts) };
    return visible.isEmpty() ? monitor : visible;
}

}
