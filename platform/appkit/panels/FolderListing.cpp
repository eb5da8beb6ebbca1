// SPDX-License-Identifier: Apache-2.0
#include "FolderListingPrivate.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/Dispatch.h"
#include "foundation/NSString.h"
#include "foundation/unicode/Unicode.h"

namespace brindle::files {

struct FolderListing::Job : std::enable_shared_from_this<Job> {
    Job(std::string path, Order wanted, Pace wantedPace, Told teller)
        : folder(std::move(path))
        , order(wanted)
        , pace(wantedPace)
        , told(std::move(teller))
    {
    }

    void run();
    void tell(bool isComplete, int error);

    const std::string folder;
    const Order order;
    const Pace pace;
    Told told; // used on the main thread only
    std::atomic<bool> isCancelled { false };
    std::vector<Entry> entries;
};

namespace {

    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    std::string keyOf(const std::string& name)
    {
        const Ref<NSString> text = stringFrom(name);
        return text ? unicode::collationKey(utf16Of(text), { .readsNumbers = true }) : name;
    }

    Entry entryOf(int folder, const char* name)
    {
        Entry entry;
        entry.name = name;
        entry.key = keyOf(entry.name);
        struct stat facts { };
        if (::fstatat(folder, name, &facts, 0) != 0)
            return entry; // a link that leads nowhere, or gone already
        entry.isFolder = S_ISDIR(facts.st_mode);
        entry.isExecutable = S_ISREG(facts.st_mode) && (facts.st_mode & 0111) != 0;
        entry.size = static_cast<std::uint64_t>(facts.st_size);
        entry.modified
            = std::int64_t { facts.st_mtim.tv_sec } * 1'000'000'000 + facts.st_mtim.tv_nsec;
        return entry;
    }

    bool goesBefore(const Entry& a, const Entry& b, const Order& order)
    {
        const auto decide = [&](auto first, auto second) {
            return order.ascending ? first < second : second < first;
        };
        if (order.column == Column::modified && a.modified != b.modified)
            return decide(a.modified, b.modified);
        if (order.column == Column::size && a.isFolder != b.isFolder)
            return a.isFolder == order.ascending;
        if (order.column == Column::size && a.size != b.size && !a.isFolder)
            return decide(a.size, b.size);
        const int names = a.key.compare(b.key);
        const int sign = names != 0 ? names : a.name.compare(b.name);
        return order.column == Column::name ? decide(sign, 0) : sign < 0;
    }

}

void FolderListing::Job::tell(bool isComplete, int error)
{
    auto contents = std::make_shared<Contents>();
    contents->entries = isComplete ? std::move(entries) : entries;
    contents->error = error;
    contents->isComplete = isComplete;
    std::sort(contents->entries.begin(), contents->entries.end(),
        [this](const Entry& a, const Entry& b) { return goesBefore(a, b, order); });
    dispatch_async(dispatch_get_main_queue(),
        [job = shared_from_this(), found = std::shared_ptr<const Contents>(contents)] {
            const Told teller = job->told; // which may end the listing
            if (teller)
                teller(found);
        });
}

void FolderListing::Job::run()
{
    const std::unique_ptr<DIR, CloseFolder> open(::opendir(folder.c_str()));
    if (!open)
        return tell(true, errno);
    std::size_t next = 400; // entries, until the next are told
    errno = 0;
    while (const dirent* const found = ::readdir(open.get())) {
        if (isCancelled)
            return;
        const char* const name = found->d_name;
        if (name[0] == '.'
            && (!order.showsHidden || !std::strcmp(name, ".") || !std::strcmp(name, "..")))
            continue;
        entries.push_back(entryOf(::dirfd(open.get()), name));
        if (entries.size() >= next && pace == Pace::soon) {
            tell(false, 0);
            next *= 8;
        }
        errno = 0;
    }
    tell(true, entries.empty() ? errno : 0);
}

FolderListing::FolderListing(std::string folder, Order order, Pace pace, Told told)
    : job_(std::make_shared<Job>(std::move(folder), order, pace, std::move(told)))
{
    dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
        [job = job_] { job->run(); });
}

FolderListing::~FolderListing()
{
    job_->isCancelled = true;
    job_->told = nullptr;
}

}
