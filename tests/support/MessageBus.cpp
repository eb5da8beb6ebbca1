// SPDX-License-Identifier: Apache-2.0
#include "support/MessageBus.h"

#include <csignal>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/NSDate.h"

namespace brindle::test {

namespace {

    constexpr const char* kPath = "/org/freedesktop/portal/desktop";
    constexpr const char* kInterface = "org.freedesktop.portal.Settings";

    constexpr const char* kConfiguration = R"(<busconfig>
<type>session</type>
<listen>unix:path=%</listen>
<auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
)";

    /// What a portal needs of the library beside what its clients do.
    template <class F> F function(const char* name)
    {
        void* const library = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        void* const found = library ? dlsym(library, name) : nullptr;
        if (!found)
            throw std::runtime_error(std::string("the bus library has no ") + name);
        return reinterpret_cast<F>(found);
    }

    const desktop::BusLibrary& library()
    {
        const desktop::BusLibrary* const found = desktop::BusLibrary::loaded();
        if (!found)
            throw std::runtime_error("there is no bus library");
        return *found;
    }

}

MessageBus::MessageBus()
{
    const std::string socket = (folder_.path() / "bus").string();
    const std::string file = (folder_.path() / "bus.conf").string();
    std::string configuration = kConfiguration;
    configuration.replace(configuration.find('%'), 1, socket);
    std::ofstream(file) << configuration;

    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) {
        close(ends[0]);
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        const std::string print = "--print-address=" + std::to_string(ends[1]);
        execlp("dbus-daemon", "dbus-daemon", ("--config-file=" + file).c_str(), "--nofork",
            print.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    char letter = 0;
    while (read(ends[0], &letter, 1) == 1 && letter != '\n')
        address_ += letter;
    close(ends[0]);
    if (address_.empty())
        throw std::runtime_error("dbus-daemon does not start");
}

MessageBus::~MessageBus() { end(); }

void MessageBus::end()
{
    if (process_ <= 0)
        return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

SettingsDesk::SettingsDesk(const MessageBus& bus, Answers answers, unsigned scheme)
    : answers_(answers)
    , scheme_(scheme)
{
    static const auto requestName
        = function<int (*)(sd_bus*, const char*, std::uint64_t)>("sd_bus_request_name");
    static const auto addFilter
        = function<int (*)(sd_bus*, sd_bus_slot**, sd_bus_message_handler_t, void*)>(
            "sd_bus_add_filter");
    library().create(&bus_);
    library().setAddress(bus_, bus.address().c_str());
    library().setBusClient(bus_, true);
    library().start(bus_);
    if (requestName(bus_, "org.freedesktop.portal.Desktop", 0) < 0)
        throw std::runtime_error("the portal's name is not to be had");
    addFilter(bus_, nullptr, take, this);
    source_ = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        library().fileDescriptor(bus_), NSRunLoopSourceReadable, [this](NSUInteger) { pump(); });
    NSRunLoop::cls().mainRunLoop()->addSource_forMode(source_.get(), NSRunLoopCommonModes);
    pump();
}

SettingsDesk::~SettingsDesk()
{
    source_->invalidate();
    library().close(bus_);
    library().unref(bus_);
}

void SettingsDesk::pump()
{
    int more = 1;
    while (more > 0)
        more = library().process(bus_, nullptr);
    if (more < 0)
        source_->invalidate();
}

int SettingsDesk::take(sd_bus_message* message, void* self, sd_bus_error*)
{
    return static_cast<SettingsDesk*>(self)->answer(message);
}

int SettingsDesk::answer(sd_bus_message* message)
{
    static const auto isCall = function<int (*)(sd_bus_message*, const char*, const char*)>(
        "sd_bus_message_is_method_call");
    static const auto reply
        = function<int (*)(sd_bus_message*, const char*, ...)>("sd_bus_reply_method_return");
    static const auto fail = function<int (*)(sd_bus_message*, const char*, const char*, ...)>(
        "sd_bus_reply_method_errorf");
    const bool readOne = isCall(message, kInterface, "ReadOne") > 0;
    if (!readOne && isCall(message, kInterface, "Read") <= 0)
        return 0;
    ++questions_;
    switch (answers_) {
    case Answers::firstVersion:
        return readOne ? fail(message, "org.freedesktop.DBus.Error.UnknownMethod", "No such method")
                       : reply(message, "v", "v", "u", scheme_);
    case Answers::secondVersion:
        return reply(message, "v", "u", scheme_);
    case Answers::refusal:
        return fail(
            message, "org.freedesktop.portal.Error.NotFound", "Requested setting not found");
    case Answers::text:
        return reply(message, "v", "s", "dark");
    case Answers::wrappings:
        return reply(message, "v", "v", "v", "v", "v", "v", "v", "v", "v", "u", scheme_);
    case Answers::nothing:
        return reply(message, "");
    case Answers::silence:
        return 1;
    }
    return 0;
}

void SettingsDesk::announce(unsigned scheme, const char* space, const char* key)
{
    static const auto emit
        = function<int (*)(sd_bus*, const char*, const char*, const char*, const char*, ...)>(
            "sd_bus_emit_signal");
    scheme_ = scheme;
    emit(bus_, kPath, kInterface, "SettingChanged", "ssv", space, key, "u", scheme);
    pump();
}

void SettingsDesk::announceText(const char* text)
{
    static const auto emit
        = function<int (*)(sd_bus*, const char*, const char*, const char*, const char*, ...)>(
            "sd_bus_emit_signal");
    emit(bus_, kPath, kInterface, "SettingChanged", "ssv", "org.freedesktop.appearance",
        "color-scheme", "s", text);
    pump();
}

bool runUntil(const std::function<bool()>& isSo)
{
    const Ref<NSDate> late = NSDate::cls().dateWithTimeIntervalSinceNow(10);
    while (!isSo()) {
        if (late->timeIntervalSinceNow() < 0)
            return false;
        NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(NSDefaultRunLoopMode, late.get());
    }
    return true;
}

}
