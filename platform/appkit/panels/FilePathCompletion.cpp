// SPDX-License-Identifier: Apache-2.0
#include <memory>

#include <dirent.h>

#include "FilePanelPrivate.h"
#include "foundation/Clock.h"
#include "foundation/NSString.h"
#include "foundation/unicode/Unicode.h"

namespace brindle {

using files::isFolder;

namespace {

    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    /// Answers how many bytes two names begin with alike; no character is cut.
    std::size_t alike(const std::string& a, const std::string& b)
    {
        std::size_t length = 0;
        while (length < a.size() && length < b.size() && a[length] == b[length])
            ++length;
        while (length > 0 && (static_cast<unsigned char>(a[length]) & 0xC0) == 0x80)
            --length;
        return length;
    }
    std::string lowered(const std::string& name)
    {
        return utf8Of(stringFrom(unicode::lowercase(utf16Of(stringFrom(name)))));
    }

    /// What names with one beginning have in common.
    struct Matches {
        int count = 0;
        std::string shared; // of their names
        void add(const std::string& name)
        {
            shared = count++ ? shared.substr(0, alike(shared, name)) : name;
        }
    };

    /// Answers the names in a folder that begin so; those that begin with a dot are meant only where that was typed.
    Matches matchesIn(const std::string& folder, const std::string& beginning)
    {
        constexpr double kLongest = 0.5; // seconds that somebody may wait for
        const double end = Clock::uptime() + kLongest;
        const std::string wanted = lowered(beginning);
        Matches exact;
        Matches any; // whatever the case
        const std::unique_ptr<DIR, CloseFolder> open(::opendir(folder.c_str()));
        while (const dirent* const found = open ? ::readdir(open.get()) : nullptr) {
            const std::string name = found->d_name;
            if (name == "." || name == ".." || (name[0] == '.' && !beginning.starts_with('.')))
                continue;
            if (Clock::uptime() > end)
                return {};
            if (name.starts_with(beginning) && stringFrom(name))
                exact.add(name);
            else if (stringFrom(name) && lowered(name).starts_with(wanted))
                any.add(name);
        }
        return exact.count ? exact : any;
    }

}

std::string FilePanelAccess::completed(const files::Browser& browser, const std::string& typed)
{
    const std::size_t start = typed.rfind('/') + 1; // 0 where there is none
    const std::string before = typed.substr(0, start);
    const std::string folder = pathOfTyped(browser, before.empty() ? "./" : before);
    const std::string beginning = typed.substr(start);
    if (beginning == "~")
        return typed + "/";
    const Matches matches = matchesIn(folder, beginning);
    if (!matches.count || matches.shared.size() < beginning.size())
        return typed;
    const bool ends = matches.count == 1 && isFolder(folder + "/" + matches.shared);
    return before + matches.shared + (ends ? "/" : "");
}

}
