// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSFontManager.h"

#include "appkit/NSFontDescriptor.h"
#include "foundation/NSKeyedArchiver.h"
#include "foundation/NSKeyedUnarchiver.h"
#include "foundation/NSNumber.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    Ref<NSFontManager> manager() { return NSFontManager::cls().sharedFontManager(); }
    Ref<NSFont> sans(const char* style = "", CGFloat size = 12)
    {
        const std::string name = std::string("LiberationSans") + style;
        return NSFont::cls().fontWithName_size(
            NSString::cls().stringWithUTF8String(name.c_str()).get(), size);
    }
    std::string name(const Ref<NSFont>& font) { return font ? utf8(font->fontName()) : "nil"; }

}

TEST(NSFontManager, MakesBoldAndItalicOfOneFamily)
{
    const auto bold = manager()->convertFont_toHaveTrait(sans().get(), NSBoldFontMask);
    EXPECT_EQ(name(bold), "LiberationSans-Bold");
    EXPECT_EQ(name(manager()->convertFont_toHaveTrait(bold.get(), NSItalicFontMask)),
        "LiberationSans-BoldItalic");
    EXPECT_EQ(bold->pointSize(), 12);
}

TEST(NSFontManager, TakesTraitsAway)
{
    const auto both = sans("-BoldItalic");
    EXPECT_EQ(name(manager()->convertFont_toNotHaveTrait(both.get(), NSBoldFontMask)),
        "LiberationSans-Italic");
    EXPECT_EQ(name(manager()->convertFont_toHaveTrait(both.get(), NSUnitalicFontMask)),
        "LiberationSans-Bold");
    EXPECT_EQ(name(manager()->convertFont_toNotHaveTrait(
                  both.get(), static_cast<NSFontTraitMask>(NSBoldFontMask | NSItalicFontMask))),
        "LiberationSans");
}

TEST(NSFontManager, AFamilyWithoutTheFaceLeavesTheFont)
{
    const auto mono = NSFont::cls().fontWithName_size("DejaVuSansMono"_ns, 9);
    EXPECT_EQ(manager()->convertFont_toHaveTrait(mono.get(), NSItalicFontMask), mono);
    EXPECT_EQ(manager()->convertFont_toFamily(mono.get(), "No Such Family"_ns), mono);
    EXPECT_EQ(manager()->convertFont_toFace(mono.get(), "NoSuchFace"_ns), mono);
}

TEST(NSFontManager, KeepsWeightAndSlantInAnotherFamily)
{
    EXPECT_EQ(
        name(manager()->convertFont_toFamily(sans("-BoldItalic").get(), "Liberation Serif"_ns)),
        "LiberationSerif-BoldItalic");
    EXPECT_EQ(name(manager()->convertFont_toHaveTrait(sans("-Bold").get(), NSFixedPitchFontMask)),
        "LiberationMono-Bold");
}

TEST(NSFontManager, ChangesSizeAndFace)
{
    EXPECT_EQ(manager()->convertFont_toSize(sans().get(), 20)->pointSize(), 20);
    EXPECT_EQ(name(manager()->convertFont_toFace(sans().get(), "Inter-Bold"_ns)), "Inter-Bold");
}

TEST(NSFontManager, GoesThroughTheWeightsOfAFamily)
{
    Ref<NSFont> font = NSFont::cls().fontWithName_size("Inter-Regular"_ns, 12);
    NSInteger weight = manager()->weightOfFont(font.get());
    EXPECT_EQ(weight, 5);
    for (Ref<NSFont> next; (next = manager()->convertWeight_ofFont(true, font.get())) != font;
         font = next) {
        EXPECT_GT(manager()->weightOfFont(next.get()), weight);
        weight = manager()->weightOfFont(next.get());
    }
    EXPECT_EQ(weight, 11);
}

TEST(NSFontManager, TellsTraits)
{
    EXPECT_EQ(manager()->traitsOfFont(sans().get()), 0u);
    EXPECT_EQ(
        manager()->traitsOfFont(sans("-BoldItalic").get()), NSBoldFontMask | NSItalicFontMask);
    EXPECT_EQ(manager()->traitsOfFont(NSFont::cls().userFixedPitchFontOfSize(0).get()),
        NSFixedPitchFontMask);
}

TEST(NSFontManager, ListsFamiliesAndTheirFaces)
{
    EXPECT_TRUE(manager()->availableFontFamilies()->containsObject("Liberation Sans"_ns));
    EXPECT_TRUE(manager()->availableFonts()->containsObject("LiberationSans-Bold"_ns));
    const Ref<NSArray> faces = manager()->availableMembersOfFontFamily("Liberation Sans"_ns);
    ASSERT_EQ(faces->count(), 4u);
    const auto first = cast<NSArray>(faces->objectAtIndex(0));
    EXPECT_TRUE(first->objectAtIndex(0)->isEqual("LiberationSans"_ns));
    EXPECT_TRUE(first->objectAtIndex(1)->isEqual("Regular"_ns));
    EXPECT_TRUE(first->objectAtIndex(2)->isEqual(NSNumber::cls().numberWithInt(5).get()));
    EXPECT_EQ(manager()->availableMembersOfFontFamily("No Such Family"_ns), nullptr);
    EXPECT_EQ(manager()->availableMembersOfFontFamily(nullptr), nullptr);
}

TEST(NSFontManager, FindsNamesByTraits)
{
    const auto italic = manager()->availableFontNamesWithTraits(NSItalicFontMask);
    EXPECT_TRUE(italic->containsObject("LiberationSans-BoldItalic"_ns));
    EXPECT_FALSE(italic->containsObject("LiberationSans"_ns));
    const auto plain = manager()->availableFontNamesWithTraits(
        static_cast<NSFontTraitMask>(NSUnboldFontMask | NSUnitalicFontMask));
    EXPECT_TRUE(plain->containsObject("LiberationSans"_ns));
    EXPECT_FALSE(plain->containsObject("LiberationSans-Bold"_ns));
}

TEST(NSFontManager, FindsAFontOfAFamily)
{
    EXPECT_EQ(name(manager()->fontWithFamily_traits_weight_size(
                  "Liberation Sans"_ns, NSItalicFontMask, 9, 11)),
        "LiberationSans-BoldItalic");
    EXPECT_EQ(manager()->fontWithFamily_traits_weight_size(
                  "DejaVu Sans Mono"_ns, NSItalicFontMask, 5, 11),
        nullptr);
    EXPECT_EQ(
        manager()->fontWithFamily_traits_weight_size(nullptr, NSFontTraitMask {}, 5, 11), nullptr);
}

TEST(NSFontManager, NilStaysNil)
{
    EXPECT_EQ(manager()->convertFont_toHaveTrait(nullptr, NSBoldFontMask), nullptr);
    EXPECT_EQ(manager()->convertFont_toSize(nullptr, 5), nullptr);
    EXPECT_EQ(manager()->convertWeight_ofFont(true, nullptr), nullptr);
    EXPECT_EQ(manager()->traitsOfFont(nullptr), 0u);
    EXPECT_EQ(manager()->weightOfFont(nullptr), 0);
}

TEST(NSFontManager, RemembersTheSelectedFont)
{
    manager()->setSelectedFont_isMultiple(sans().get(), true);
    EXPECT_EQ(name(manager()->selectedFont()), "LiberationSans");
    EXPECT_TRUE(manager()->isMultiple());
}

// ---- descriptors

TEST(NSFontDescriptor, OfAFontFindsItAgain)
{
    const auto descriptor = fontDescriptor(sans("-Bold", 17).get());
    EXPECT_EQ(utf8(descriptor->postscriptName()), "LiberationSans-Bold");
    EXPECT_EQ(descriptor->pointSize(), 17);
    EXPECT_EQ(name(fontWithDescriptor_size(descriptor.get(), 0)), "LiberationSans-Bold");
    EXPECT_EQ(fontWithDescriptor_size(descriptor.get(), 0)->pointSize(), 17);
    EXPECT_EQ(fontWithDescriptor_size(descriptor.get(), 5)->pointSize(), 5);
}

TEST(NSFontDescriptor, WithoutASizeMakesTheCustomaryOne)
{
    const auto descriptor
        = NSFontDescriptor::cls().fontDescriptorWithName_size("LiberationSans"_ns, 0);
    EXPECT_EQ(descriptor->pointSize(), 0);
    EXPECT_EQ(fontWithDescriptor_size(descriptor.get(), 0)->pointSize(), 12);
}

TEST(NSFontDescriptor, ChangesTraitsWithinTheFamily)
{
    const auto changed
        = fontDescriptor(sans("", 17).get())
              ->fontDescriptorWithSymbolicTraits(static_cast<NSFontDescriptorSymbolicTraits>(
                  NSFontDescriptorTraitBold | NSFontDescriptorTraitItalic));
    EXPECT_EQ(utf8(changed->postscriptName()), "LiberationSans-BoldItalic");
    EXPECT_EQ(changed->pointSize(), 17);
    EXPECT_EQ(changed->symbolicTraits(), 3u);
}

TEST(NSFontDescriptor, ChangesFamilyFaceAndSize)
{
    const auto descriptor = fontDescriptor(sans("", 17).get());
    EXPECT_EQ(utf8(descriptor->fontDescriptorWithFamily("Liberation Serif"_ns)->postscriptName()),
        "LiberationSerif");
    EXPECT_EQ(utf8(descriptor->fontDescriptorWithFace("Bold"_ns)->postscriptName()),
        "LiberationSans-Bold");
    EXPECT_EQ(descriptor->fontDescriptorWithFace("Loud"_ns)->postscriptName(), nullptr);
    EXPECT_EQ(descriptor->fontDescriptorWithSize(3)->pointSize(), 3);
}

TEST(NSFontDescriptor, TellsWhatItWasToldAndWhatFollows)
{
    const auto descriptor = fontDescriptor(sans().get());
    EXPECT_TRUE(descriptor->objectForKey(NSFontFamilyAttribute)->isEqual("Liberation Sans"_ns));
    EXPECT_EQ(descriptor->objectForKey("other"_ns), nullptr);
    EXPECT_EQ(descriptor->objectForKey(nullptr), nullptr);
}

TEST(NSFontDescriptor, OfNothingGivesNoFont)
{
    EXPECT_EQ(fontWithDescriptor_size(nullptr, 12), nullptr);
    EXPECT_EQ(fontWithDescriptor_size(make<NSFontDescriptor>().get(), 12), nullptr);
    EXPECT_EQ(fontDescriptor(make<NSFont>().get()), nullptr);
    const auto wrong = NSDictionary::cls().dictionaryWithObject_forKey(
        NSNumber::cls().numberWithInt(5).get(), NSFontNameAttribute);
    EXPECT_EQ(
        NSFontDescriptor::cls().fontDescriptorWithFontAttributes(wrong.get())->postscriptName(),
        nullptr);
}

TEST(NSFontDescriptor, SurvivesAnArchive)
{
    const auto descriptor = fontDescriptor(sans("-Bold", 17).get());
    const auto data = NSKeyedArchiver::cls().archivedDataWithRootObject(descriptor.get());
    EXPECT_TRUE(
        descriptor->isEqual(NSKeyedUnarchiver::cls().unarchiveObjectWithData(data.get()).get()));
}

}
