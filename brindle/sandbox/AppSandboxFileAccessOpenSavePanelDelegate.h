// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSURL.h"

namespace brindle {

class NSSavePanel;

/// Lets the user of a panel choose one file or a folder above it, and nothing else.
/// Thread: main.
class AppSandboxFileAccessOpenSavePanelDelegate : public NSObject {
    BRINDLE_OBJECT(AppSandboxFileAccessOpenSavePanelDelegate, NSObject)

public:
    Ref<AppSandboxFileAccessOpenSavePanelDelegate> initWithFileURL(NSURL* url)
    {
        return send<"initWithFileURL:", Ref<AppSandboxFileAccessOpenSavePanelDelegate>>(url);
    }
    /// The file that is wanted.
    Ref<NSURL> url() const { return send<"url", Ref<NSURL>>(); }
    void setUrl(NSURL* url) { send<"setUrl:">(url); }
    /// The components of its path, "/" first; these are what counts.
    Ref<NSArray> urlPath() const { return send<"urlPath", Ref<NSArray>>(); }
    void setUrlPath(NSArray* components) { send<"setUrlPath:">(components); }
    /// Answers whether a URL is the wanted one or leads to it.
    bool panel_shouldEnableURL(NSSavePanel* panel, NSURL* candidate) const
    {
        return send<"panel:shouldEnableURL:", bool>(panel, candidate);
    }

private:
    Ref<NSURL> url_;
    Ref<NSArray> urlPath_;
};

}
