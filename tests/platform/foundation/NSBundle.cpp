// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSBundle.h"

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSURL.h"
#include "runtime/Runtime.h"
#include "support/BundleFolder.h"
#include "support/Strings.h"
#include "support/UserLanguage.h"

using namespace brindle;
using test::BundleFolder;
using test::MainBundle;
using test::UserLanguage;

namespace {

/// Answers a path as the bundle answered it, without the bundle's own part; "(nil)" for nil.
std::string below(const BundleFolder& folder, const Ref<NSString>& path)
{
    const std::string text = utf8(path);
    const std::string prefix = folder.path().string() + '/';
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

std::string joinedNames(const Ref<NSArray>& array)
{
    return utf8(array->componentsJoinedByString(" "_ns));
}

constexpr const char* kInfo = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>org.example.Notes</string>
<key>CFBundleName</key><string>Notes</string>
<key>CFBundleDevelopmentRegion</key><string>fr</string>
</dict></plist>)";

}

TEST(Bundle, TheMainOneIsNeverNilAndAlwaysTheSame)
{
    const auto main = NSBundle::cls().mainBundle();
    ASSERT_TRUE(main);
    EXPECT_EQ(main, NSBundle::cls().mainBundle());
}

TEST(Bundle, TheMainOneOfAPlainProgramIsItsFolder)
{
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
    EXPECT_EQ(utf8(NSBundle::cls().mainBundle()->bundlePath()), program);
}

TEST(Bundle, TheMainOnesExecutableIsTheProgram)
{
    EXPECT_EQ(utf8(NSBundle::cls().mainBundle()->executablePath()),
        std::filesystem::read_symlink("/proc/self/exe").string());
}

TEST(Bundle, APathWithoutAFolderGivesNil)
{
    const BundleFolder folder;
    const std::string file = folder.add("file.txt");
    EXPECT_FALSE(NSBundle::cls().bundleWithPath("/no/such/folder"_ns));
    EXPECT_FALSE(NSBundle::cls().bundleWithPath(stringFrom(file).get()));
    EXPECT_FALSE(NSBundle::cls().bundleWithPath(nullptr));
    EXPECT_FALSE(NSBundle::cls().bundleWithPath(""_ns));
}

TEST(Bundle, OneFolderHasOneObject)
{
    const BundleFolder folder;
    const auto slashed = stringFrom(folder.path().string() + "/./");
    EXPECT_EQ(folder.open(), NSBundle::cls().bundleWithPath(slashed.get()));
    EXPECT_EQ(folder.open(), alloc<NSBundle>()->initWithPath(folder.pathText().get()));
}

TEST(Bundle, ReadsItsInfoFromAFlatFolder)
{
    const BundleFolder folder;
    folder.add("Info.plist", kInfo);
    EXPECT_EQ(utf8(folder.open()->bundleIdentifier()), "org.example.Notes");
    EXPECT_EQ(textOf(folder.open()->objectForInfoDictionaryKey("CFBundleName"_ns)), "Notes");
}

TEST(Bundle, ReadsItsInfoFromContents)
{
    const BundleFolder folder;
    folder.add("Contents/Info.plist", kInfo);
    folder.add("Contents/Resources/page.txt");
    EXPECT_EQ(utf8(folder.open()->bundleIdentifier()), "org.example.Notes");
    EXPECT_EQ(below(folder, folder.open()->pathForResource_ofType("page"_ns, "txt"_ns)),
        "Contents/Resources/page.txt");
}

TEST(Bundle, ReadsItsInfoFromResources)
{
    const BundleFolder folder;
    folder.add("Resources/Info.plist", kInfo);
    EXPECT_EQ(utf8(folder.open()->bundleIdentifier()), "org.example.Notes");
    EXPECT_EQ(below(folder, folder.open()->resourcePath()), "Resources");
}

TEST(Bundle, WithoutInfoTheDictionaryIsEmptyAndTheIdentifierNil)
{
    const BundleFolder folder;
    ASSERT_TRUE(folder.open()->infoDictionary());
    EXPECT_EQ(folder.open()->infoDictionary()->count(), 0u);
    EXPECT_FALSE(folder.open()->bundleIdentifier());
}

TEST(Bundle, InfoThatIsNoDictionaryCountsAsEmpty)
{
    const BundleFolder folder;
    folder.add("Info.plist", "( a, b )");
    EXPECT_EQ(folder.open()->infoDictionary()->count(), 0u);
}

TEST(Bundle, AnIdentifierThatIsNoStringIsNone)
{
    const BundleFolder folder;
    folder.add("Info.plist", "{ CFBundleIdentifier = ( a ); }");
    EXPECT_FALSE(folder.open()->bundleIdentifier());
}

TEST(Bundle, IsFoundByItsIdentifierOnceItIsOpen)
{
    const BundleFolder folder;
    folder.add("Info.plist", "{ CFBundleIdentifier = \"org.example.Opened\"; }");
    EXPECT_FALSE(NSBundle::cls().bundleWithIdentifier("org.example.Opened"_ns));
    const auto bundle = folder.open();
    EXPECT_EQ(NSBundle::cls().bundleWithIdentifier("org.example.Opened"_ns), bundle);
}

TEST(Bundle, UnknownAndNilIdentifiersGiveNil)
{
    EXPECT_FALSE(NSBundle::cls().bundleWithIdentifier("org.example.nobody"_ns));
    EXPECT_FALSE(NSBundle::cls().bundleWithIdentifier(nullptr));
}

TEST(Bundle, TheFrameworksOwnIsFoundInTheBuildTree)
{
    const auto framework = NSBundle::cls().bundleWithIdentifier("org.brindle.Brindle"_ns);
    ASSERT_TRUE(framework);
    EXPECT_TRUE(framework->pathForImageResource("apple.png"_ns));
    EXPECT_TRUE(NSBundle::cls().allFrameworks()->containsObject(framework.get()));
    EXPECT_FALSE(NSBundle::cls().allBundles()->containsObject(framework.get()));
}

TEST(Bundle, TheMainOneCanBePutElsewhere)
{
    const BundleFolder folder;
    {
        const MainBundle main(folder);
        EXPECT_EQ(NSBundle::cls().mainBundle(), folder.open());
    }
    EXPECT_NE(NSBundle::cls().mainBundle(), folder.open());
}

TEST(Bundle, AClassOfTheProgramBelongsToTheMainOne)
{
    EXPECT_EQ(NSBundle::cls().bundleForClass(NSString::cls()), NSBundle::cls().mainBundle());
    EXPECT_EQ(NSBundle::cls().bundleForClass(nullptr), NSBundle::cls().mainBundle());
}

TEST(Bundle, WithoutCodeNothingIsLoaded)
{
    const BundleFolder folder;
    EXPECT_FALSE(folder.open()->load());
    EXPECT_FALSE(folder.open()->isLoaded());
    EXPECT_FALSE(folder.open()->principalClass());
    EXPECT_TRUE(NSBundle::cls().mainBundle()->load());
}

TEST(Bundle, TheClassOfItsInfoIsThePrincipalOne)
{
    const BundleFolder folder;
    folder.add("Info.plist", "{ NSPrincipalClass = NSMutableString; }");
    EXPECT_EQ(folder.open()->principalClass(), objc_getClass("NSMutableString"));
}

TEST(Bundle, ItsExecutableIsTheFileOfItsName)
{
    const BundleFolder folder;
    folder.add("Info.plist", "{ CFBundleExecutable = plug; }");
    folder.add("Contents.txt");
    EXPECT_FALSE(folder.open()->executablePath());
    folder.add("plug.so");
    EXPECT_EQ(below(folder, folder.open()->executablePath()), "plug.so");
}

// ---- resources

TEST(BundleResources, ATypeMayBeginWithItsFullStop)
{
    const BundleFolder folder;
    folder.add("Settings.bundle/Root.plist");
    EXPECT_EQ(below(folder, folder.open()->pathForResource_ofType("Settings"_ns, ".bundle"_ns)),
        "Settings.bundle");
    EXPECT_EQ(below(folder, folder.open()->pathForResource_ofType("Settings"_ns, "bundle"_ns)),
        "Settings.bundle");
}

TEST(BundleResources, WithoutATypeTheNameIsComplete)
{
    const BundleFolder folder;
    folder.add("page.txt");
    EXPECT_EQ(
        below(folder, folder.open()->pathForResource_ofType("page.txt"_ns, nullptr)), "page.txt");
    EXPECT_EQ(
        below(folder, folder.open()->pathForResource_ofType("page.txt"_ns, ""_ns)), "page.txt");
    EXPECT_FALSE(folder.open()->pathForResource_ofType("page"_ns, nullptr));
}

TEST(BundleResources, MissingOnesGiveNil)
{
    const BundleFolder folder;
    EXPECT_FALSE(folder.open()->pathForResource_ofType("page"_ns, "txt"_ns));
    EXPECT_FALSE(folder.open()->pathForResource_ofType(nullptr, nullptr));
    EXPECT_FALSE(folder.open()->pathForResource_ofType(""_ns, "txt"_ns));
}

TEST(BundleResources, ANameWithAnEmbeddedEndIsNotCutThere)
{
    const BundleFolder folder;
    folder.add("page");
    EXPECT_FALSE(folder.open()->pathForResource_ofType(
        stringFrom(std::string_view("page\0more", 9)).get(), nullptr));
}

TEST(BundleResources, ATypeAloneGivesTheFirstOfIt)
{
    const BundleFolder folder;
    folder.add("b.txt");
    folder.add("a.txt");
    EXPECT_EQ(below(folder, folder.open()->pathForResource_ofType(nullptr, "txt"_ns)), "a.txt");
}

TEST(BundleResources, OneWithoutALanguageComesFirst)
{
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("de.lproj/page.txt");
    folder.add("page.txt");
    EXPECT_EQ(
        below(folder, folder.open()->pathForResource_ofType("page"_ns, "txt"_ns)), "page.txt");
}

TEST(BundleResources, TheBestLanguageThatHasItIsTaken)
{
    const UserLanguage user("de_CH", { "de-CH", "fr" });
    const BundleFolder folder;
    folder.add("de.lproj/a.txt");
    folder.add("fr.lproj/a.txt");
    folder.add("fr.lproj/b.txt");
    folder.add("en.lproj/c.txt");
    folder.add("Base.lproj/d.txt");
    folder.add("es.lproj/e.txt");
    const auto bundle = folder.open();
    EXPECT_EQ(below(folder, bundle->pathForResource_ofType("a"_ns, "txt"_ns)), "de.lproj/a.txt");
    EXPECT_EQ(below(folder, bundle->pathForResource_ofType("b"_ns, "txt"_ns)), "fr.lproj/b.txt");
    EXPECT_EQ(below(folder, bundle->pathForResource_ofType("c"_ns, "txt"_ns)), "en.lproj/c.txt");
    EXPECT_EQ(below(folder, bundle->pathForResource_ofType("d"_ns, "txt"_ns)), "Base.lproj/d.txt");
    EXPECT_FALSE(bundle->pathForResource_ofType("e"_ns, "txt"_ns));
}

TEST(BundleResources, OneLanguageCanBeAskedFor)
{
    const BundleFolder folder;
    folder.add("es.lproj/help/e.txt");
    EXPECT_EQ(below(folder,
                  folder.open()->pathForResource_ofType_inDirectory_forLocalization(
                      "e"_ns, "txt"_ns, "help"_ns, "es"_ns)),
        "es.lproj/help/e.txt");
}

TEST(BundleResources, AFolderBelowIsSearchedWithItsLanguages)
{
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("help/a.txt");
    folder.add("de.lproj/help/b.txt");
    const auto bundle = folder.open();
    EXPECT_EQ(
        below(folder, bundle->pathForResource_ofType_inDirectory("a"_ns, "txt"_ns, "help"_ns)),
        "help/a.txt");
    EXPECT_EQ(
        below(folder, bundle->pathForResource_ofType_inDirectory("b"_ns, "txt"_ns, "help"_ns)),
        "de.lproj/help/b.txt");
}

TEST(BundleResources, AllOfATypeAreSortedAndTheBestLanguagesFollow)
{
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("b.txt");
    folder.add("a.txt");
    folder.add("a.png");
    folder.add("de.lproj/c.txt");
    const auto paths = folder.open()->pathsForResourcesOfType_inDirectory(".txt"_ns, nullptr);
    ASSERT_EQ(paths->count(), 3u);
    EXPECT_EQ(below(folder, cast<NSString>(paths->objectAtIndex(0))), "a.txt");
    EXPECT_EQ(below(folder, cast<NSString>(paths->objectAtIndex(1))), "b.txt");
    EXPECT_EQ(below(folder, cast<NSString>(paths->objectAtIndex(2))), "de.lproj/c.txt");
}

TEST(BundleResources, AnImageIsFoundWithAndWithoutItsExtension)
{
    const BundleFolder folder;
    folder.add("mark.png");
    EXPECT_EQ(below(folder, folder.open()->pathForImageResource("mark"_ns)), "mark.png");
    EXPECT_EQ(below(folder, folder.open()->pathForImageResource("mark.png"_ns)), "mark.png");
    EXPECT_FALSE(folder.open()->pathForImageResource("mark.jpg"_ns));
    EXPECT_FALSE(folder.open()->pathForImageResource(nullptr));
}

TEST(BundleResources, ALargerVariantStandsInForAnImage)
{
    const BundleFolder folder;
    folder.add("mark@2x.png");
    EXPECT_EQ(below(folder, folder.open()->pathForImageResource("mark"_ns)), "mark@2x.png");
    EXPECT_EQ(below(folder, folder.open()->pathForImageResource("mark.png"_ns)), "mark@2x.png");
    folder.add("mark.jpeg");
    EXPECT_EQ(below(folder, folder.open()->pathForImageResource("mark"_ns)), "mark.jpeg");
}

TEST(BundleResources, AreAlsoAnsweredAsURLs)
{
    const BundleFolder folder;
    folder.add("page.txt");
    const auto bundle = folder.open();
    EXPECT_EQ(utf8(bundle->URLForResource_withExtension("page"_ns, "txt"_ns)->path()),
        (folder.path() / "page.txt").string());
    EXPECT_FALSE(bundle->URLForResource_withExtension("no"_ns, "txt"_ns));
    EXPECT_EQ(bundle->URLsForResourcesWithExtension_subdirectory("txt"_ns, nullptr)->count(), 1u);
    EXPECT_EQ(NSBundle::cls().bundleWithURL(bundle->bundleURL().get()), bundle);
    EXPECT_FALSE(NSBundle::cls().bundleWithURL(nullptr));
}

// ---- languages

TEST(BundleLanguages, AreTheFoldersButBase)
{
    const BundleFolder folder;
    folder.add("de.lproj/a");
    folder.add("Base.lproj/a");
    folder.add("pt-BR.lproj/a");
    EXPECT_EQ(joinedNames(folder.open()->localizations()), "de pt-BR");
}

TEST(BundleLanguages, AreOrderedByTheUsersWish)
{
    const UserLanguage user("de_CH", { "fr-CH", "de-CH", "ja" });
    const BundleFolder folder;
    folder.add("de.lproj/a");
    folder.add("fr.lproj/a");
    folder.add("en.lproj/a");
    EXPECT_EQ(joinedNames(folder.open()->preferredLocalizations()), "fr de");
}

TEST(BundleLanguages, FollowTheUserWhoChangesThem)
{
    const BundleFolder folder;
    folder.add("de.lproj/a");
    folder.add("fr.lproj/a");
    const UserLanguage user("de_DE");
    EXPECT_EQ(joinedNames(folder.open()->preferredLocalizations()), "de");
    UserLocale::use("fr_FR");
    EXPECT_EQ(joinedNames(folder.open()->preferredLocalizations()), "fr");
}

TEST(BundleLanguages, TheDevelopersOwnStandsInWhenNoneFits)
{
    const UserLanguage user("ja_JP");
    const BundleFolder folder;
    folder.add("Info.plist", kInfo);
    folder.add("de.lproj/a");
    EXPECT_EQ(utf8(folder.open()->developmentLocalization()), "fr");
    EXPECT_EQ(joinedNames(folder.open()->preferredLocalizations()), "fr");
}

TEST(BundleLanguages, ANearOneMeetsAWish)
{
    const auto best = [](const char* available, const char* wanted) {
        const auto split = [](const char* text) {
            return stringFrom(text)->componentsSeparatedByString(" "_ns);
        };
        const auto a = split(available);
        const auto w = split(wanted);
        return joinedNames(
            NSBundle::cls().preferredLocalizationsFromArray_forPreferences(a.get(), w.get()));
    };
    EXPECT_EQ(best("en pt pt-BR", "pt-BR"), "pt-BR");
    EXPECT_EQ(best("en pt pt-BR", "pt-PT"), "pt");
    EXPECT_EQ(best("en pt-BR", "pt-PT"), "pt-BR");
    EXPECT_EQ(best("en de_CH", "de-ch"), "de_CH");
    EXPECT_EQ(best("English German", "de-DE"), "German");
    EXPECT_EQ(best("zh-Hans zh-Hant", "zh-TW"), "zh-Hant");
    EXPECT_EQ(best("zh-CN zh-TW", "zh-Hant-HK"), "zh-TW");
    EXPECT_EQ(best("zh-Hans", "zh-TW en"), "zh-Hans");
    EXPECT_EQ(best("en fr", "ja"), "en");
}

TEST(BundleLanguages, OfNothingAreNone)
{
    EXPECT_EQ(NSBundle::cls().preferredLocalizationsFromArray(nullptr)->count(), 0u);
    EXPECT_EQ(NSBundle::cls().preferredLocalizationsFromArray(makeArray({}).get())->count(), 0u);
}

// ---- texts

TEST(BundleTexts, AreThoseOfTheBestLanguage)
{
    const UserLanguage user("de_CH", { "de-CH", "fr" });
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings", "\"Open\" = \"Öffnen\";");
    folder.add("fr.lproj/Localizable.strings", "\"Open\" = \"Ouvrir\"; \"Close\" = \"Fermer\";");
    const auto bundle = folder.open();
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr)), "Öffnen");
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table("Close"_ns, ""_ns, ""_ns)), "Close");
}

TEST(BundleTexts, AMissingOneIsTheValueOrTheKey)
{
    const BundleFolder folder;
    const auto bundle = folder.open();
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table("Open"_ns, "Auf"_ns, nullptr)), "Auf");
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr)), "Open");
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table("Open"_ns, nullptr, "No"_ns)), "Open");
}

TEST(BundleTexts, ANilKeyIsTheValueOrEmpty)
{
    const auto bundle = NSBundle::cls().mainBundle();
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table(nullptr, "a"_ns, nullptr)), "a");
    EXPECT_EQ(utf8(bundle->localizedStringForKey_value_table(nullptr, nullptr, nullptr)), "");
}

TEST(BundleTexts, FollowTheUserWhoChangesTheLanguage)
{
    const BundleFolder folder;
    folder.add("de.lproj/Localizable.strings", "Open = Auf;");
    folder.add("fr.lproj/Localizable.strings", "Open = Ouvrir;");
    const UserLanguage user("de_DE");
    const auto text = [&] {
        return utf8(folder.open()->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr));
    };
    EXPECT_EQ(text(), "Auf");
    UserLocale::use("fr_FR");
    EXPECT_EQ(text(), "Ouvrir");
}

TEST(BundleTexts, ATableMayBeUTF16)
{
    const BundleFolder folder;
    const std::u16string text = u"\ufeff\"Open\" = \"Öffnen\";";
    folder.add("Localizable.strings",
        { reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t) });
    EXPECT_EQ(utf8(folder.open()->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr)),
        "Öffnen");
}

TEST(BundleTexts, ATableMayBeAnXMLPropertyList)
{
    const BundleFolder folder;
    folder.add("Menu.strings", "<plist><dict><key>Open</key><string>Auf</string></dict></plist>");
    EXPECT_EQ(
        utf8(folder.open()->localizedStringForKey_value_table("Open"_ns, ""_ns, "Menu"_ns)), "Auf");
}

TEST(BundleTexts, ATableThatCannotBeReadHasNoTexts)
{
    const BundleFolder folder;
    folder.add("Localizable.strings", "\"Open\" = ");
    EXPECT_EQ(
        utf8(folder.open()->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr)), "Open");
}

TEST(BundleTexts, AValueThatIsNoStringIsMissing)
{
    const BundleFolder folder;
    folder.add("Localizable.strings", "Open = ( a );");
    EXPECT_EQ(
        utf8(folder.open()->localizedStringForKey_value_table("Open"_ns, ""_ns, nullptr)), "Open");
}

TEST(BundleTexts, InfoInTheUsersLanguageComesFirst)
{
    const UserLanguage user("de_DE");
    const BundleFolder folder;
    folder.add("Info.plist", kInfo);
    folder.add("de.lproj/InfoPlist.strings", "CFBundleName = Notizen;");
    EXPECT_EQ(textOf(folder.open()->objectForInfoDictionaryKey("CFBundleName"_ns)), "Notizen");
    EXPECT_EQ(textOf(folder.open()->infoDictionary()->objectForKey("CFBundleName"_ns)), "Notes");
    EXPECT_FALSE(folder.open()->objectForInfoDictionaryKey(nullptr));
}
