// SPDX-License-Identifier: Apache-2.0
#include "SettingsPortalPrivate.h"

#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include <poll.h>

namespace brindle::desktop {

namespace {

    constexpr const char* kService = "org.freedesktop.portal.Desktop";
    constexpr const char* kPath = "/org/freedesktop/portal/desktop";
    constexpr const char* kInterface = "org.freedesktop.portal.Settings";
    constexpr const char* kNamespace = "org.freedesktop.appearance";
    constexpr const char* kKey = "color-scheme";
    // The bus sends nothing else, whatever other settings change.
    constexpr const char* kRule
        = "type='signal',sender='org.freedesktop.portal.Desktop',path='/org/freedesktop/portal/"
          "desktop',"
          "interface='org.freedesktop.portal.Settings',member='SettingChanged',"
          "arg0='org.freedesktop.appearance',arg1='color-scheme'";
    constexpr int kMostWrappings = 3;

    NSUInteger sourceEvents(int polled)
    {
        NSUInteger events = 0;
        if (polled & POLLIN)
            events |= NSRunLoopSourceReadable;
        if (polled & POLLOUT)
            events |= NSRunLoopSourceWritable;
        return events;
    }

    /// Reads the number at hand, out of as many variants as portals of different age put round it.
    std::optional<ColorScheme> schemeIn(const BusLibrary& library, sd_bus_message* message)
    {
        for (int wrapping = 0; wrapping <= kMostWrappings; ++wrapping) {
            char type = 0;
            const char* contents = nullptr;
            if (library.peekType(message, &type, &contents) <= 0)
                return std::nullopt;
            if (std::uint32_t number = 0; type == 'u') {
                if (library.readBasic(message, 'u', &number) <= 0)
                    return std::nullopt;
                // What later portals may add is no preference to this one.
                return number == 1 ? ColorScheme::dark
                    : number == 2  ? ColorScheme::light
                                   : ColorScheme::noPreference;
            }
            if (type != 'v' || library.enterContainer(message, 'v', contents) <= 0)
                return std::nullopt;
        }
        return std::nullopt;
    }

    bool readsText(const BusLibrary& library, sd_bus_message* message, std::string_view wanted)
    {
        const char* text = nullptr;
        return library.readBasic(message, 's', &text) > 0 && text && text == wanted;
    }

}

SettingsPortal::SettingsPortal(const BusLibrary& library, Handler heard)
    : library_(library)
    , heard_(std::move(heard))
{
}

SettingsPortal::~SettingsPortal() { close(); }

std::string SettingsPortal::sessionAddress()
{
    if (const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return address;
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && *folder == '/' ? "unix:path=" + std::string(folder) + "/bus" : "";
}

std::unique_ptr<SettingsPortal> SettingsPortal::open(const std::string& address, Handler heard)
{
    if (!address.starts_with("unix:"))
        return nullptr;
    const BusLibrary* const library = BusLibrary::loaded();
    if (!library)
        return nullptr;
    std::unique_ptr<SettingsPortal> portal(new SettingsPortal(*library, std::move(heard)));
    return portal->connect(address.substr(0, address.find(';'))) ? std::move(portal) : nullptr;
}

bool SettingsPortal::connect(const std::string& address)
{
    if (library_.create(&bus_) < 0 || library_.setAddress(bus_, address.c_str()) < 0
        || library_.setBusClient(bus_, true) < 0 || library_.start(bus_) < 0)
        return false;
    const int descriptor = library_.fileDescriptor(bus_);
    if (descriptor < 0)
        return false;
    source_ = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        descriptor, 0, [this](NSUInteger) { pump(); });
    NSRunLoop::cls().mainRunLoop()->addSource_forMode(source_.get(), NSRunLoopCommonModes);
    library_.addMatch(bus_, nullptr, kRule, changed, nullptr, this);
    ask("ReadOne", answeredOne);
    pump();
    return isOpen();
}

void SettingsPortal::ask(const char* operation, sd_bus_message_handler_t take)
{
    library_.call(
        bus_, nullptr, kService, kPath, kInterface, operation, take, this, "ss", kNamespace, kKey);
}

void SettingsPortal::pump()
{
    int more = 1;
    while (more > 0)
        more = library_.process(bus_, nullptr);
    const int events = more < 0 ? more : library_.events(bus_);
    // The library's own time limits are left alone: an answer that never comes is not worth a wake-up.
    if (events < 0)
        close();
    else
        source_->setEvents(sourceEvents(events));
    // Only here, because what a host throws does not find its way through the library.
    if (const auto news = std::exchange(news_, std::nullopt))
        heard_(*news);
}

void SettingsPortal::close()
{
    if (source_)
        source_->invalidate();
    source_ = nullptr;
    if (!bus_)
        return;
    library_.close(bus_);
    library_.unref(std::exchange(bus_, nullptr));
}

void SettingsPortal::keep(sd_bus_message* message)
{
    if (const auto scheme = schemeIn(library_, message))
        news_ = scheme;
}

int SettingsPortal::answeredOne(sd_bus_message* message, void* context, sd_bus_error* error)
{
    SettingsPortal& self = *static_cast<SettingsPortal*>(context);
    // Portals before the second version of the interface know the older question only.
    if (self.library_.isError(message, "org.freedesktop.DBus.Error.UnknownMethod") <= 0)
        return answered(message, context, error);
    self.ask("Read", answered);
    return 0;
}

int SettingsPortal::answered(sd_bus_message* message, void* context, sd_bus_error*)
{
    SettingsPortal& self = *static_cast<SettingsPortal*>(context);
    if (self.library_.isError(message, nullptr) <= 0)
        self.keep(message);
    return 0;
}

int SettingsPortal::changed(sd_bus_message* message, void* context, sd_bus_error*)
{
    SettingsPortal& self = *static_cast<SettingsPortal*>(context);
    if (readsText(self.library_, message, kNamespace) && readsText(self.library_, message, kKey))
        self.keep(message);
    return 0;
}

// --- into the defaults ---------------------------------------------------------------------------------------

void followColorScheme(std::function<void()> changed)
{
    // As long as the process: the program's end is the bus's end.
    static SettingsPortal* portal = nullptr;
    if (portal)
        return;
    const auto heard = [changed = std::move(changed)](ColorScheme scheme) {
        setColorScheme(scheme);
        changed();
    };
    portal = SettingsPortal::open(SettingsPortal::sessionAddress(), heard).release();
}

}
