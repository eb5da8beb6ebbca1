// SPDX-License-Identifier: Apache-2.0
#include "NSApplication+GWAboutPanel.h"

#include "NSBundle+AppBundleInFramework.h"
#include "appkit/NSApplication+AboutPanel.h"
#include "appkit/NSFont.h"
#include "appkit/NSRunningApplication.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSWindow.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "runtime/Table.h"
#include "viewkit/NSView+MovingAndSizing.h"

#include <cmath>

namespace brindle {

namespace {

    constexpr double kTextGrowth = 1.38;
    constexpr double kVersionAlpha = 0.62;
    constexpr NSWindowLevel kAboutLevel = NSScreenSaverWindowLevel + 1;

    void restyleCredits(NSScrollView& credits)
    {
        maybe(credits.documentView())->setFrame(credits.bounds());
        credits.setHorizontalScrollElasticity(NSScrollElasticityNone);
        credits.setVerticalScrollElasticity(NSScrollElasticityNone);
    }

    void restyleText(NSTextField& text, NSString* name, NSRect room)
    {
        const CGFloat size = maybe(text.font())->pointSize() * kTextGrowth;
        text.setFont(NSFont::cls().fontWithName_size("HelveticaNeue"_ns, size).get());
        if (text.stringValue()->hasPrefix("Ver"_ns))
            text.setAlphaValue(kVersionAlpha);
        if (name && text.stringValue()->isEqualToString(name))
            text.setFont(NSFont::cls().fontWithName_size("HelveticaNeue-Medium"_ns, size).get());
        text.sizeToFit();
        const auto middle = static_cast<float>(NSMidX(room) - frameSizeWidth(text) * 0.5);
        setFrameOriginX(text, std::round(middle));
    }

    struct GWAboutPanel {

        static void showAbout(NSApplication& self, NSObject*)
        {
            const Ref<NSDictionary> info = infoDictionary(self);
            const Ref<NSObject> found = maybe(info)->objectForKey("CFBundleName"_ns);
            const Ref<NSString> name = found && found->isKindOfClass(NSString::cls())
                ? cast<NSString>(found)
                : Ref<NSString>();
            const Ref<NSDictionary> options
                = NSDictionary::cls().dictionaryWithObject_forKey(""_ns, "Copyright"_ns);
            orderFrontStandardAboutPanelWithOptions(self, options.get());
            const Ref<NSWindow> panel = self.keyWindow();
            NSString* const styledTitle = "  "_ns;
            if (!panel || panel->title()->isEqualToString(styledTitle))
                return;
            panel->setTitle(styledTitle);
            panel->setLevel(kAboutLevel);
            panel->setHidesOnDeactivate(true);
            const NSRect room = panel->contentView()->bounds();
            for (NSView* view : each<NSView>(panel->contentView()->subviews())) {
                if (view->isKindOfClass(NSScrollView::cls()))
                    restyleCredits(static_cast<NSScrollView&>(*view));
                else if (view->isKindOfClass(NSTextField::cls()))
                    restyleText(static_cast<NSTextField&>(*view), name.get(), room);
            }
        }
        static Ref<NSRunningApplication> thisRunningApp(NSApplication&)
        {
            return NSRunningApplication::cls().currentApplication();
        }
        static Ref<NSDictionary> infoOf(NSApplication&)
        {
            return maybe(appBundle(NSBundle::cls()))->infoDictionary();
        }
        static Ref<NSString> appName(NSApplication& self)
        {
            return maybe(brindle::thisRunningApp(self))->localizedName();
        }
        static Ref<NSString> bundleIdentifier(NSApplication& self)
        {
            return maybe(brindle::thisRunningApp(self))->bundleIdentifier();
        }

        static void table(Builder& t)
        {
            t.methods({
                { "showAbout:", imp<showAbout> },
                { "thisRunningApp", imp<thisRunningApp> },
                { "infoDictionary", imp<infoOf> },
                { "appName", imp<appName> },
                { "bundleIdentifier", imp<bundleIdentifier> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSApplication, GWAboutPanel)

}
