// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/FontConfigurationPrivate.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace brindle::text {

namespace {

    constexpr const char* kRule = "<fontconfig><alias><family>A</family></alias></fontconfig>";
    constexpr const char* kFolderOfFonts = "<fontconfig><dir>/fonts</dir></fontconfig>";

    class FontConfiguration : public ::testing::Test {
    protected:
        ~FontConfiguration() override
        {
            if (was_)
                setenv(kVariable, was_->c_str(), 1);
            else
                unsetenv(kVariable);
        }

        std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
        void write(const std::string& name, const std::string& text) const
        {
            std::filesystem::create_directories((folder_.path() / name).parent_path());
            std::ofstream(folder_.path() / name) << text;
        }
        /// Makes a file of this folder the main one.
        void begin(const std::string& text) const
        {
            write("fonts.conf", text);
            setenv(kVariable, path("fonts.conf").c_str(), 1);
        }
        std::string including(const std::string& name) const
        {
            return "<include ignore_missing=\"yes\">" + path(name) + "</include>";
        }
        static std::string without(const std::string& text)
        {
            const Config config(FcConfigCreate(), &FcConfigDestroy);
            return withoutFilesOfRules(config.get(), text);
        }
        /// Answers what of a folder with one file is included.
        std::string partOfAFolderWith(const std::string& name, const std::string& text) const
        {
            write("conf.d/" + name, text);
            return without(including("conf.d"));
        }

        using Config = std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)>;

        static std::vector<std::string> filesOf(const Config& config)
        {
            std::vector<std::string> files;
            const FcFontSet* const fonts = FcConfigGetFonts(config.get(), FcSetSystem);
            for (int i = 0; fonts && i < fonts->nfont; ++i) {
                FcChar8* file = nullptr;
                FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file);
                files.emplace_back(reinterpret_cast<const char*>(file));
            }
            return files;
        }
        static Config few() { return { configurationOfFonts(), &FcConfigDestroy }; }
        static Config whole() { return { FcInitLoadConfigAndFonts(), &FcConfigDestroy }; }

    private:
        static constexpr const char* kVariable = "FONTCONFIG_FILE";

        static std::unique_ptr<std::string> valueOfVariable()
        {
            const char* const value = std::getenv(kVariable);
            return value ? std::make_unique<std::string>(value) : nullptr;
        }

        test::TemporaryFolder folder_;
        std::unique_ptr<std::string> was_ = valueOfVariable();
    };

    TEST_F(FontConfiguration, LeavesOutFilesThatHoldRulesOnly)
    {
        EXPECT_EQ(partOfAFolderWith("30-rule.conf", kRule), "");
    }

    TEST_F(FontConfiguration, KeepsFilesThatNameFolders)
    {
        EXPECT_EQ(partOfAFolderWith("10-folder.conf", kFolderOfFonts),
            including("conf.d/10-folder.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsFilesThatLeaveFontsOut)
    {
        EXPECT_EQ(partOfAFolderWith("70-none.conf", "<selectfont/>"),
            including("conf.d/70-none.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsFilesThatLeadToOthers)
    {
        EXPECT_EQ(partOfAFolderWith("51-more.conf", including("local.conf")),
            including("conf.d/51-more.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsRulesForWhatIsReadFromFontFiles)
    {
        EXPECT_EQ(partOfAFolderWith("80-read.conf", "<match target=\"scan\"/>"),
            including("conf.d/80-read.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsFilesWhoseEntitiesMayHideAnything)
    {
        EXPECT_EQ(partOfAFolderWith("10-entity.conf", "<!DOCTYPE a [<!ENTITY b \"c\">]>"),
            including("conf.d/10-entity.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsFilesOfWideCharacters)
    {
        EXPECT_EQ(partOfAFolderWith("10-wide.conf", std::string("<\0d\0i\0r\0", 8)),
            including("conf.d/10-wide.conf") + "\n");
    }

    TEST_F(FontConfiguration, PassesOverFilesWhoseNamesAreNotThoseOfFilesToRead)
    {
        write("conf.d/README", kFolderOfFonts);
        write("conf.d/10-folder.conf.bak", kFolderOfFonts);
        EXPECT_EQ(partOfAFolderWith("folder.conf", kFolderOfFonts), "");
    }

    TEST_F(FontConfiguration, IncludesFilesInTheOrderOfTheirNames)
    {
        for (const char* name : { "conf.d/20.conf", "conf.d/10-z.conf", "conf.d/10-a.conf" })
            write(name, kFolderOfFonts);
        EXPECT_EQ(without(including("conf.d")),
            including("conf.d/10-a.conf") + "\n" + including("conf.d/10-z.conf") + "\n"
                + including("conf.d/20.conf") + "\n");
    }

    TEST_F(FontConfiguration, KeepsWhatStandsRoundAnIncludedFolder)
    {
        write("conf.d/30-rule.conf", kRule);
        EXPECT_EQ(without("<a/>" + including("conf.d") + "<b/>" + including("conf.d") + "<c/>"),
            "<a/><b/><c/>");
    }

    TEST_F(FontConfiguration, LeavesAnIncludedFileAsItIs)
    {
        write("local.conf", kRule);
        EXPECT_EQ(without(including("local.conf")), including("local.conf"));
    }

    TEST_F(FontConfiguration, LeavesAFolderThatIsNotThereAsItIs)
    {
        EXPECT_EQ(without(including("none.d")), including("none.d"));
    }

    TEST_F(FontConfiguration, LeavesAFolderBelowAnotherPlaceAsItIs)
    {
        const std::string text = "<include prefix=\"xdg\">fontconfig/conf.d</include>";
        EXPECT_EQ(without(text), text);
    }

    TEST_F(FontConfiguration, LeavesAFolderAsItIsWhereAFilesNameHasToBeWrittenOtherwise)
    {
        EXPECT_EQ(partOfAFolderWith("10-a&b.conf", kRule), including("conf.d"));
        EXPECT_EQ(partOfAFolderWith("10--a.conf", kRule), including("conf.d"));
    }

    TEST_F(FontConfiguration, LeavesAnElementWithoutAnEndAsItIs)
    {
        EXPECT_EQ(without("<include>/etc"), "<include>/etc");
        EXPECT_EQ(without("<include</include>"), "<include</include>");
    }

    // The fonts that the tests use anyway, in a configuration of several files.
    class ListOfFonts : public FontConfiguration {
    protected:
        ListOfFonts()
        {
            write("conf.d/10-folder.conf",
                "<fontconfig><dir>/usr/share/fonts/truetype/dejavu</dir></fontconfig>");
            write("conf.d/30-rule.conf", kRule);
            write("conf.d/70-none.conf",
                "<fontconfig><selectfont><rejectfont><glob>*Mono*</glob></rejectfont></selectfont>"
                "</fontconfig>");
            begin("<fontconfig><dir>/usr/share/fonts/truetype/liberation2</dir>"
                + including("conf.d") + "<cachedir>" + path("cache") + "</cachedir></fontconfig>");
        }
    };

    TEST_F(ListOfFonts, IsThatOfTheWholeConfiguration)
    {
        const Config config = few();
        ASSERT_TRUE(config);
        EXPECT_FALSE(filesOf(config).empty());
        EXPECT_EQ(filesOf(config), filesOf(whole()));
    }

    TEST_F(ListOfFonts, IsLeftToFontconfigWithoutAMainFile)
    {
        setenv("FONTCONFIG_FILE", path("none.conf").c_str(), 1);
        EXPECT_FALSE(few());
    }

    TEST_F(ListOfFonts, IsLeftToFontconfigWhereTheMainFileIsDamaged)
    {
        begin("<fontconfig><dir>");
        EXPECT_FALSE(few());
    }

    TEST_F(ListOfFonts, IsLeftToFontconfigWhereNoCacheIsNamed)
    {
        begin("<fontconfig/>");
        EXPECT_FALSE(few());
    }

    TEST_F(ListOfFonts, IsLeftToFontconfigWhereFoldersCountFromTheMainFile)
    {
        begin("<fontconfig><dir prefix=\"relative\">fonts</dir><cachedir>" + path("cache")
            + "</cachedir></fontconfig>");
        EXPECT_FALSE(few());
    }

}

}
