// SPDX-License-Identifier: Apache-2.0
#include "NSBundle+AppBundleInFramework.h"

#include "NSApplication+GWAboutPanel.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct AppBundleInFramework {

        static Ref<NSBundle> appBundle(Class&)
        {
            const Ref<NSApplication> application(sharedApplicationOrNil());
            if (!application)
                return nullptr;
            return NSBundle::cls().bundleWithIdentifier(bundleIdentifier(application).get());
        }

        static void table(Builder& t) { t.classMethods({ { "appBundle", imp<appBundle> } }); }
    };

}
BRINDLE_EXTENSION(NSBundle, AppBundleInFramework)

}
