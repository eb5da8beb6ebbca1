// SPDX-License-Identifier: Apache-2.0
#include "AppSandboxFileAccessOpenSavePanelDelegate.h"

#include "appkit/NSSavePanel.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct AppSandboxFileAccessOpenSavePanelDelegate::Methods<struct Rule> {

    using Self = AppSandboxFileAccessOpenSavePanelDelegate;

    static Ref<NSObject> initWithFileURL(Self& self, NSURL* url)
    {
        if (!super<Self, "init", Ref<NSObject>>(self))
            return nullptr;
        self.setUrl(url);
        self.setUrlPath(maybe(url)->pathComponents().get());
        return &self;
    }
    static bool shouldEnable(Self& self, NSSavePanel*, NSURL* candidate)
    {
        const Ref<NSArray> wanted = self.urlPath();
        const Ref<NSArray> components = maybe(candidate)->pathComponents();
        const NSUInteger count = maybe(components)->count();
        if (count > maybe(wanted)->count())
            return false;
        for (NSUInteger i = 0; i < count; ++i) {
            if (!components->objectAtIndex(i)->isEqual(wanted->objectAtIndex(i).get()))
                return false;
        }
        return true;
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSOpenSavePanelDelegate" });
        t.methods({
            { "initWithFileURL:", imp<initWithFileURL> },
            { "panel:shouldEnableURL:", imp<shouldEnable> },
        });
        t.properties({
            property<&Self::url_>("url"),
            property<&Self::urlPath_>("urlPath"),
        });
    }
};
BRINDLE_RECORD(AppSandboxFileAccessOpenSavePanelDelegate, Rule)

}
