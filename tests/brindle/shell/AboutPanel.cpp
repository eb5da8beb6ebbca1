// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication+AboutPanel.h"
#include "appkit/NSFont.h"
#include "appkit/NSImageView.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "shell/NSApplication+GWAboutPanel.h"
#include "support/BundleFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {
namespace {

    std::string infoWith(const std::string& name)
    {
        const std::string title
            = name.empty() ? "" : "<key>CFBundleName</key><string>" + name + "</string>";
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + title
            + "<key>CFBundleIdentifier</key><string>org.example.Notes</string>"
              "<key>CFBundleShortVersionString</key><string>1.2</string>"
              "<key>CFBundleVersion</key><string>34</string>"
              "<key>NSHumanReadableCopyright</key><string>2026 by nobody</string></dict></plist>";
    }

    /// The panel lives as long as the process: each test puts the fonts and the title back to what they were at first.
    struct AboutPanel : ::testing::Test {
        AboutPanel()
        {
            folder.add("Info.plist", infoWith("Notes"));
            main.emplace(folder);
        }
        ~AboutPanel() override
        {
            panel()->setTitle(""_ns);
            panel()->setLevel(NSNormalWindowLevel);
            panel()->close();
        }
        Ref<NSWindow> panel()
        {
            if (!panel_) {
                orderFrontStandardAboutPanel(application, nullptr);
                panel_ = application.keyWindow();
                const Ref<NSFont> plain = NSFont::cls().systemFontOfSize(11);
                for (NSTextField* text : texts())
                    text->setFont(text->stringValue()->isEqualToString("Notes"_ns)
                            ? NSFont::cls().boldSystemFontOfSize(14).get()
                            : plain.get());
            }
            return panel_;
        }
        std::vector<NSTextField*> texts()
        {
            std::vector<NSTextField*> found;
            for (NSView* view : each<NSView>(panel_->contentView()->subviews())) {
                if (view->isKindOfClass(NSTextField::cls()))
                    found.push_back(static_cast<NSTextField*>(view));
            }
            return found;
        }
        NSTextField* textOf(const std::string& value)
        {
            panel();
            for (NSTextField* text : texts()) {
                if (utf8(text->stringValue()) == value)
                    return text;
            }
            return nullptr;
        }
        std::string all()
        {
            std::string lines;
            panel();
            for (NSTextField* text : texts())
                lines += utf8(text->stringValue()) + "; ";
            return lines;
        }

        HeadlessScreen screen { 600, 500 };
        NSApplication& application = screen.application();
        test::BundleFolder folder;
        std::optional<test::MainBundle> main;
        Ref<NSWindow> panel_;
    };

    // ---- the platform's own

    TEST_F(AboutPanel, SaysNameVersionAndCopyright)
    {
        EXPECT_EQ(all(), "Notes; Version 1.2 (34); 2026 by nobody; ");
        EXPECT_TRUE(panel()->styleMask() & NSClosableWindowMask);
    }
    TEST_F(AboutPanel, ShowsAnIconFirst)
    {
        const Ref<NSView> first = cast<NSView>(panel()->contentView()->subviews()->firstObject());
        ASSERT_TRUE(first->isKindOfClass(NSImageView::cls()));
        EXPECT_NE(static_cast<NSImageView&>(*first).image(), nullptr);
    }
    TEST_F(AboutPanel, IsKeyAtOnceEvenInAnInactiveApplication)
    {
        panel()->close();
        application.deactivate();
        orderFrontStandardAboutPanel(application, nullptr);
        EXPECT_EQ(application.keyWindow(), panel());
        EXPECT_TRUE(panel()->isVisible());
    }
    TEST_F(AboutPanel, TakesTextsFromTheOptions)
    {
        panel();
        const Ref<NSDictionary> options
            = NSDictionary::cls().dictionaryWithObject_forKey("Pages"_ns, "ApplicationName"_ns);
        orderFrontStandardAboutPanelWithOptions(application, options.get());
        EXPECT_EQ(all(), "Pages; Version 1.2 (34); 2026 by nobody; ");
    }
    TEST_F(AboutPanel, LeavesOutACopyrightThatIsEmpty)
    {
        panel();
        const Ref<NSDictionary> options
            = NSDictionary::cls().dictionaryWithObject_forKey(""_ns, "Copyright"_ns);
        orderFrontStandardAboutPanelWithOptions(application, options.get());
        EXPECT_EQ(all(), "Notes; Version 1.2 (34); ");
    }
    TEST_F(AboutPanel, ShowsCreditsWhereThereAreAny)
    {
        panel();
        const auto scrollers = [&] {
            int count = 0;
            for (NSView* view : each<NSView>(panel()->contentView()->subviews()))
                count += view->isKindOfClass(NSScrollView::cls());
            return count;
        };
        EXPECT_EQ(scrollers(), 0);
        const Ref<NSDictionary> options
            = NSDictionary::cls().dictionaryWithObject_forKey("Everybody"_ns, "Credits"_ns);
        orderFrontStandardAboutPanelWithOptions(application, options.get());
        EXPECT_EQ(scrollers(), 1);
    }
    TEST_F(AboutPanel, PassesOverOptionsOfAnotherKind)
    {
        panel();
        const Ref<NSDictionary> options
            = NSDictionary::cls().dictionaryWithObject_forKey(make<NSArray>().get(), "Credits"_ns);
        orderFrontStandardAboutPanelWithOptions(application, options.get());
        EXPECT_EQ(all(), "Notes; Version 1.2 (34); 2026 by nobody; ");
    }
    TEST_F(AboutPanel, IsOneWindow)
    {
        const Ref<NSWindow> first = panel();
        first->close();
        orderFrontStandardAboutPanel(application, nullptr);
        EXPECT_EQ(application.keyWindow(), first);
    }

    // ---- restyled

    TEST_F(AboutPanel, IsRestyledWithoutACopyrightLine)
    {
        panel();
        showAbout(application, nullptr);
        EXPECT_EQ(all(), "Notes; Version 1.2 (34); ");
        EXPECT_EQ(utf8(panel()->title()), "  ");
        EXPECT_EQ(panel()->level(), 1001);
        EXPECT_TRUE(panel()->hidesOnDeactivate());
    }
    TEST_F(AboutPanel, EnlargesItsTexts)
    {
        panel();
        showAbout(application, nullptr);
        EXPECT_DOUBLE_EQ(textOf("Notes")->font()->pointSize(), 14 * 1.38);
        EXPECT_DOUBLE_EQ(textOf("Version 1.2 (34)")->font()->pointSize(), 11 * 1.38);
    }
    TEST_F(AboutPanel, ShowsTheNameInAMediumWeight)
    {
        panel();
        showAbout(application, nullptr);
        const Ref<NSFont> medium
            = NSFont::cls().fontWithName_size("HelveticaNeue-Medium"_ns, 14 * 1.38);
        const Ref<NSFont> plain = NSFont::cls().fontWithName_size("HelveticaNeue"_ns, 11 * 1.38);
        EXPECT_EQ(utf8(textOf("Notes")->font()->fontName()), utf8(medium->fontName()));
        EXPECT_EQ(utf8(textOf("Version 1.2 (34)")->font()->fontName()), utf8(plain->fontName()));
    }
    TEST_F(AboutPanel, DimsTheVersion)
    {
        panel();
        showAbout(application, nullptr);
        EXPECT_EQ(textOf("Version 1.2 (34)")->alphaValue(), 0.62);
        EXPECT_EQ(textOf("Notes")->alphaValue(), 1);
    }
    TEST_F(AboutPanel, PutsItsTextsInTheMiddle)
    {
        panel();
        showAbout(application, nullptr);
        const NSRect room = panel()->contentView()->bounds();
        const NSRect name = textOf("Notes")->frame();
        EXPECT_EQ(
            name.origin.x, std::round(static_cast<float>(NSMidX(room) - name.size.width * 0.5)));
    }
    TEST_F(AboutPanel, KeepsItsTextsApart)
    {
        panel();
        showAbout(application, nullptr);
        const NSRect name = textOf("Notes")->frame();
        const NSRect version = textOf("Version 1.2 (34)")->frame();
        EXPECT_LE(NSMaxY(version), NSMinY(name));
        const Ref<NSView> icon = cast<NSView>(panel()->contentView()->subviews()->firstObject());
        EXPECT_LE(NSMaxY(name), NSMinY(icon->frame()));
    }
    TEST_F(AboutPanel, KeepsTheCreditsStillAndAsLargeAsTheirPlace)
    {
        panel();
        folder.add("Credits.txt", "Everybody");
        showAbout(application, nullptr);
        int scrollers = 0;
        for (NSView* view : each<NSView>(panel()->contentView()->subviews())) {
            if (!view->isKindOfClass(NSScrollView::cls()))
                continue;
            ++scrollers;
            auto* const scroll = static_cast<NSScrollView*>(view);
            EXPECT_EQ(scroll->horizontalScrollElasticity(), NSScrollElasticityNone);
            EXPECT_EQ(scroll->verticalScrollElasticity(), NSScrollElasticityNone);
            EXPECT_EQ(scroll->documentView()->frame(), scroll->bounds());
        }
        EXPECT_EQ(scrollers, 1);
    }
    TEST_F(AboutPanel, IsRestyledOnce)
    {
        panel();
        showAbout(application, nullptr);
        showAbout(application, nullptr);
        EXPECT_DOUBLE_EQ(textOf("Notes")->font()->pointSize(), 14 * 1.38);
    }
    TEST_F(AboutPanel, KeepsItsLookWhenItWasClosed)
    {
        panel();
        showAbout(application, nullptr);
        panel()->close();
        showAbout(application, nullptr);
        EXPECT_EQ(utf8(panel()->title()), "  ");
        EXPECT_DOUBLE_EQ(textOf("Notes")->font()->pointSize(), 14 * 1.38);
    }
    TEST_F(AboutPanel, HasNoMediumTitleWhenTheInfoDoesNotNameTheApplication)
    {
        panel();
        const test::BundleFolder nameless;
        nameless.add("Info.plist", infoWith(""));
        main.reset();
        const test::MainBundle other(nameless);
        showAbout(application, nullptr);
        const Ref<NSFont> plain = NSFont::cls().fontWithName_size("HelveticaNeue"_ns, 10);
        for (NSTextField* text : texts()) {
            EXPECT_EQ(utf8(text->font()->fontName()), utf8(plain->fontName()));
            EXPECT_GT(text->font()->pointSize(), 13);
        }
    }

}
}
