// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSUserDefaults.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "support/TemporaryFolder.h"

namespace brindle::test {

/// Keeps all defaults in a folder of their own while it lives; each begins with nothing.
class DefaultsFolder {
public:
    DefaultsFolder() { restart(); }
    ~DefaultsFolder() { setDefaultsFolder(nullptr); }
    DefaultsFolder(const DefaultsFolder&) = delete;
    DefaultsFolder& operator=(const DefaultsFolder&) = delete;

    /// Writes everything and reads it anew, as the next start of the program would.
    void restart() { setDefaultsFolder(folder_.path().c_str()); }
    const std::filesystem::path& path() const { return folder_.path(); }
    /// Answers where a domain's file is; without a name that of the application.
    std::filesystem::path file(const std::string& domain = "") const
    {
        return path() / (domain.empty() ? defaults::applicationName() : domain) / "defaults.plist";
    }

private:
    TemporaryFolder folder_;
};

}
