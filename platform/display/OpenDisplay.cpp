// SPDX-License-Identifier: Apache-2.0
#include "OpenDisplay.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "headless/HeadlessDisplay.h"
#include "x11/ConnectX11.h"

namespace brindle::display {

namespace {

    std::string_view textOf(const Environment& environment, const char* name)
    {
        const char* value = environment(name);
        return value ? std::string_view(value) : std::string_view();
    }

    std::unique_ptr<Display> withoutScreen()
    {
        return std::make_unique<HeadlessDisplay>(std::vector<Screen> {});
    }

    std::unique_ptr<Display> tryX11(
        const Environment& environment, const Complaint& complain, const Found& found)
    {
        const std::string server(textOf(environment, "DISPLAY"));
        if (server.empty()) {
            complain("brindle: BRINDLE_DISPLAY is \"x11\", but DISPLAY names no server");
            return withoutScreen();
        }
        if (auto display = connectX11(server, environment, found))
            return display;
        complain("brindle: cannot connect to the display server \"" + server + "\"");
        return withoutScreen();
    }

}

Environment processEnvironment()
{
    return [](const char* name) -> const char* { return std::getenv(name); };
}

Choice choiceFromEnvironment(const Environment& environment, const Complaint& complain)
{
    const std::string_view value = textOf(environment, "BRINDLE_DISPLAY");
    if (value.empty())
        return Choice::automatic;
    if (value == "headless")
        return Choice::headless;
    if (value == "x11")
        return Choice::x11;
    if (value != "none") {
        complain("brindle: BRINDLE_DISPLAY is \"" + std::string(value)
            + "\"; it can be headless, x11 or none");
    }
    return Choice::none;
}

std::unique_ptr<Display> openDisplay(
    Choice choice, const Environment& environment, const Complaint& complain)
{
    return openDisplay(choice, environment, complain, [] {});
}

std::unique_ptr<Display> openDisplay(
    Choice choice, const Environment& environment, const Complaint& complain, const Found& found)
{
    if (choice == Choice::headless) {
        found();
        return std::make_unique<HeadlessDisplay>();
    }
    const bool hasServer = !textOf(environment, "DISPLAY").empty();
    if (choice == Choice::x11 || (choice == Choice::automatic && hasServer))
        return tryX11(environment, complain, found);
    return withoutScreen();
}

std::unique_ptr<Display> openDisplay(const Found& found)
{
    const Environment environment = processEnvironment();
    const Complaint complain = [](std::string_view line) {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    };
    return openDisplay(choiceFromEnvironment(environment, complain), environment, complain, found);
}

std::unique_ptr<Display> openDisplay()
{
    return openDisplay([] {});
}

}
