// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <unordered_map>

#include <fcntl.h>
#include <unistd.h>

#include "../../../tests/support/TemporaryFolder.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/defaults/DefaultsFilePrivate.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// Defaults in a folder of their own, with 20 values.
    class Settings {
    public:
        Settings()
        {
            setDefaultsFolder(folder_.path().c_str());
            for (int i = 0; i < 20; ++i)
                object->setInteger_forKey(i, stringFrom("setting" + std::to_string(i)).get());
            object->synchronize();
        }
        ~Settings() { setDefaultsFolder(nullptr); }
        Settings(const Settings&) = delete;
        Settings& operator=(const Settings&) = delete;

        /// Answers what the file of the suite holds.
        std::string bytes() const
        {
            std::ifstream stream(folder_.path() / "bench" / "defaults.plist", std::ios::binary);
            return { std::istreambuf_iterator<char>(stream), {} };
        }
        const std::filesystem::path& folder() const { return folder_.path(); }

        Ref<NSUserDefaults> object = alloc<NSUserDefaults>()->initWithSuiteName("bench"_ns);

    private:
        test::TemporaryFolder folder_;
    };

    /// A sample by the wall's clock: the time goes by while the disk works.
    template <class F> Sample waited(F operation)
    {
        return [operation](std::size_t count) mutable {
            const Stopwatch watch(Stopwatch::Kind::wall);
            for (std::size_t i = 0; i < count; ++i)
                operation(i);
            return watch.elapsed();
        };
    }

    /// The least that puts bytes safely in the place of others.
    void replaceFile(int folder, const std::string& bytes)
    {
        const int file = ::openat(folder, "fresh", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        const bool isDone
            = ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())
            && ::fsync(file) == 0 && ::close(file) == 0
            && ::renameat(folder, "fresh", folder, "file") == 0 && ::fsync(folder) == 0;
        if (!isDone)
            std::abort();
    }

    Pair writeAndSynchronize()
    {
        const auto settings = std::make_shared<Settings>();
        const std::string bytes = settings->bytes();
        const int folder = ::open(settings->folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const auto ours = [settings, number = NSInteger { 100 }](std::size_t) mutable {
            settings->object->setInteger_forKey(++number, "setting7"_ns);
            keep(settings->object->synchronize());
        };
        return { waited(ours), waited([folder, bytes](std::size_t) { replaceFile(folder, bytes); }),
            5, 15 };
    }

    Pair readOne()
    {
        const auto settings = std::make_shared<Settings>();
        const auto floor = std::make_shared<std::unordered_map<std::string, std::int64_t>>();
        for (int i = 0; i < 20; ++i)
            (*floor)["setting" + std::to_string(i)] = i;
        const auto lock = std::make_shared<std::mutex>();
        return { repeated([settings](std::size_t) {
                    keep(settings->object->integerForKey("setting7"_ns));
                }),
            repeated([floor, lock, key = std::string("setting7")](std::size_t) {
                const std::lock_guard guard(*lock);
                keep(floor->find(key)->second);
            }) };
    }

    int replacements = 0;

    int countReplacements(const char* call)
    {
        replacements += std::string_view(call) == "renameat";
        return 0;
    }

    Reading burst()
    {
        const Settings settings;
        replacements = 0;
        defaults::fault = countReplacements;
        for (int i = 0; i < 1000; ++i)
            settings.object->setInteger_forKey(1000 + i, "setting7"_ns);
        settings.object->synchronize();
        defaults::fault = nullptr;
        return { static_cast<double>(replacements), 1 };
    }

}

void addDefaults(Plan& plan)
{
    plan.time("defaults: change a value and synchronize", kNoBudget, writeAndSynchronize);
    plan.time("defaults: read an integer", kNoBudget, readOne);
    plan.read("defaults: files written for 1,000 changes", "files", atMost(1), burst);
}

}
