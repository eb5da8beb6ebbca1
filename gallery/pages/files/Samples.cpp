// SPDX-License-Identifier: Apache-2.0
#include "Samples.h"

#include <chrono>
#include <filesystem>
#include <fstream>

#include "foundation/NSPathUtilities.h"

namespace gallery {

using namespace brindle;

namespace {

    std::filesystem::path folder()
    {
        return std::filesystem::path(utf8Of(NSTemporaryDirectory())) / "brindle-gallery"
            / "Correspondence of many years, sorted by name" / "Letters, answered and unanswered";
    }
    /// Gives what is there a date that is the same on every day.
    void date(const std::filesystem::path& path, int days)
    {
        constexpr std::chrono::sys_days kFirst { std::chrono::year(2025) / 11 / 3 };
        std::error_code ignored;
        std::filesystem::last_write_time(path,
            std::chrono::file_clock::from_sys(
                std::chrono::sys_seconds(kFirst + std::chrono::days(days))),
            ignored);
    }
    Ref<NSURL> urlOf(const std::filesystem::path& path)
    {
        return NSURL::cls().fileURLWithPath(stringFrom(path.string()).get());
    }

}

Ref<NSURL> sampleFolder()
{
    std::error_code ignored; // what is not there is not shown
    std::filesystem::create_directories(folder() / "Drafts", ignored);
    std::filesystem::create_directories(folder() / "Pictures", ignored);
    for (const char* name : { "Letter to Ada.txt", "Letter to Grace.txt", "Notes.md",
             "Portrait.png", "March.mp3", "Archive.zip", "Drafts/First.txt" }) {
        if (!std::filesystem::exists(folder() / name, ignored))
            std::ofstream(folder() / name) << "Dear Ada,\n";
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder(), ignored))
        date(entry.path(), static_cast<int>(entry.path().filename().string().size()));
    return urlOf(folder());
}

Ref<NSURL> sampleLetter()
{
    static_cast<void>(sampleFolder());
    return urlOf(folder() / "Letter to Ada.txt");
}

}
