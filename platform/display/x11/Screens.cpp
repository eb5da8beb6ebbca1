// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"
#include "ScreensPrivate.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "RepliesPrivate.h"

namespace brindle::display {

namespace {

    std::optional<double> positiveNumber(std::string_view text)
    {
        while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
            text.remove_prefix(1);
        double value = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec != std::errc() || !std::isfinite(value) || !(value > 0))
            return std::nullopt;
        return value;
    }

    std::optional<std::string_view> resource(std::string_view resources, std::string_view name)
    {
        while (!resources.empty()) {
            const std::size_t end = std::min(resources.find('\n'), resources.size());
            const std::string_view line = resources.substr(0, end);
            resources.remove_prefix(std::min(end + 1, resources.size()));
            if (line.size() > name.size() && line.substr(0, name.size()) == name
                && line[name.size()] == ':')
                return line.substr(name.size() + 1);
        }
        return std::nullopt;
    }

    int sharedArea(PixelRect a, PixelRect b)
    {
        const PixelRect shared = intersection(a, b);
        return shared.isEmpty() ? 0 : shared.width() * shared.height();
    }

}

double scaleFrom(
    const Environment& environment, std::optional<double> settings, std::string_view resources)
{
    std::optional<double> scale;
    if (const char* wanted = environment("BRINDLE_SCALE"))
        scale = positiveNumber(wanted);
    if (!scale)
        scale = settings;
    if (!scale) {
        const auto dpi = resource(resources, "Xft.dpi");
        scale = dpi ? positiveNumber(*dpi) : std::nullopt;
        if (scale)
            *scale /= 96;
    }
    return std::clamp(scale.value_or(1), 0.25, 16.0);
}

Screens::Screens(Connection& connection, WindowManager& manager, Environment environment)
    : connection_(connection)
    , manager_(manager)
    , settings_(connection)
    , environment_(std::move(environment))
{
    if (connection_.extensions().randrEvent) {
        const auto select = RANDR(xcb_randr_select_input);
        select(connection_.raw(), connection_.root(),
            XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE
                | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    readScale(connection_.resources());
    refresh();
}

void Screens::readScale(std::string_view resources)
{
    mapping_.scale = scaleFrom(environment_, settings_.readScale(), resources);
}

std::size_t Screens::indexFor(PixelRect rect) const
{
    std::size_t found = 0;
    int best = 0;
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        const int area = sharedArea(rect, frames_[i]);
        if (area > best) {
            best = area;
            found = i;
        }
    }
    return found;
}

bool Screens::refresh()
{
    const std::vector<Screen> before = std::move(screens_);
    const PixelMapping mappingBefore = mapping_;
    readMonitors();
    mapping_.left = frames_.front().left;
    mapping_.bottom = frames_.front().bottom;
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        screens_[i].scale = mapping_.scale;
        screens_[i].frame = mapping_.points(frames_[i]);
        screens_[i].visibleFrame = screens_[i].frame;
        screens_[i].primary = i == 0;
    }
    readWorkArea();
    return screens_ != before || mapping_ != mappingBefore;
}

void Screens::readMonitors()
{
    xcb_connection_t* raw = connection_.raw();
    screens_.clear();
    frames_.clear();
    const auto geometryCookie = xcb_get_geometry(raw, connection_.root());
    Reply<xcb_randr_get_monitors_reply_t> monitors;
    if (connection_.extensions().randrEvent) {
        monitors = owned(RANDR(xcb_randr_get_monitors_reply)(
            raw, RANDR(xcb_randr_get_monitors)(raw, connection_.root(), 1), nullptr));
    }
    const auto geometry = owned(xcb_get_geometry_reply(raw, geometryCookie, nullptr));
    desktop_ = geometry
        ? PixelSize { geometry->width, geometry->height }
        : PixelSize { connection_.screen().width_in_pixels, connection_.screen().height_in_pixels };

    std::vector<xcb_get_atom_name_cookie_t> names;
    if (monitors) {
        const auto* first = reinterpret_cast<const std::byte*>(monitors.get()) + sizeof *monitors;
        for (const Monitor& monitor : parseMonitors({ first, std::size_t { monitors->length } * 4 },
                 monitors->nMonitors, connection_.counters().malformed)) {
            frames_.push_back(monitor.frame);
            names.push_back(xcb_get_atom_name(raw, monitor.name));
        }
    }
    screens_.resize(std::max<std::size_t>(frames_.size(), 1));
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto name = owned(xcb_get_atom_name_reply(raw, names[i], nullptr));
        if (name) {
            screens_[i].name.assign(xcb_get_atom_name_name(name.get()),
                static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
        }
    }
    if (frames_.empty()) {
        frames_.push_back({ 0, 0, desktop_.width, desktop_.height });
        screens_[0].name = "screen";
    }
}

void Screens::readWorkArea()
{
    const std::optional<PixelRect> area = manager_.workArea();
    if (!area)
        return;
    // One monitor needs no struts to know its part.
    const std::vector<StrutValues> struts
        = frames_.size() > 1 ? manager_.struts() : std::vector<StrutValues>();
    for (std::size_t i = 0; i < frames_.size(); ++i)
        screens_[i].visibleFrame
            = mapping_.points(visiblePart(frames_[i], desktop_, *area, struts));
}

}
