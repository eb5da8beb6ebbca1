// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSFontDescriptor.h"

#include <optional>

#include "foundation/CodingTable.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "quartz/text/FontFamilies.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using text::FontFace;
    using text::Slant;

    template <class T> Ref<T> entry(NSDictionary* attributes, NSString* key)
    {
        const Ref<NSObject> found = attributes ? attributes->objectForKey(key) : nullptr;
        return found && found->isKindOfClass(classOf<T>()) ? cast<T>(found) : nullptr;
    }

    std::uint32_t symbolicTraitsOf(const FontFace& face)
    {
        return (face.slant() == Slant::italic ? NSFontDescriptorTraitItalic : 0u)
            | (text::isBold(face.weight()) ? NSFontDescriptorTraitBold : 0u)
            | (face.isMonospaced() ? NSFontDescriptorTraitMonoSpace : 0u);
    }

    /// Answers the traits that attributes ask for; nothing when they ask for none.
    std::optional<std::uint32_t> wantedTraits(NSDictionary* attributes)
    {
        const auto traits = entry<NSDictionary>(attributes, NSFontTraitsAttribute);
        const auto number = entry<NSNumber>(traits.get(), NSFontSymbolicTrait);
        return number ? std::optional(number->unsignedIntValue()) : std::nullopt;
    }

    const FontFace* faceNamed(const std::string& family, const std::string& style)
    {
        for (const text::FamilyMember& member : text::membersOfFamily(family)) {
            if (member.style == style)
                return FontFace::named(member.postScriptName);
        }
        return nullptr;
    }

    const FontFace* faceOf(NSDictionary* attributes)
    {
        if (const auto name = entry<NSString>(attributes, NSFontNameAttribute))
            return FontFace::named(utf8Of(name));
        const auto family = entry<NSString>(attributes, NSFontFamilyAttribute);
        if (!family)
            return nullptr;
        if (const auto style = entry<NSString>(attributes, NSFontFaceAttribute))
            return faceNamed(utf8Of(family), utf8Of(style));
        const std::uint32_t traits = wantedTraits(attributes).value_or(0);
        return FontFace::inFamily(utf8Of(family),
            traits & NSFontDescriptorTraitBold ? text::kBoldWeight : text::kRegularWeight,
            traits & NSFontDescriptorTraitItalic ? Slant::italic : Slant::upright);
    }

    Ref<NSNumber> sizeNumber(CGFloat size) { return NSNumber::cls().numberWithDouble(size); }

}

template <> struct NSFontDescriptor::Methods<struct Describing> {

    static Ref<NSFontDescriptor> made(const Ref<NSDictionary>& attributes)
    {
        return alloc<NSFontDescriptor>()->initWithFontAttributes(attributes.get());
    }
    static Ref<NSMutableDictionary> editable(NSFontDescriptor& self)
    {
        return NSMutableDictionary::cls().dictionaryWithDictionary(self.attributes_.get());
    }

    // ---- making

    static Ref<NSObject> init(NSFontDescriptor& self) { return initWith(self, nullptr); }
    static Ref<NSFontDescriptor> initWith(NSFontDescriptor& self, NSDictionary* attributes)
    {
        self.attributes_ = attributes ? cast<NSDictionary>(attributes->copy())
                                      : NSDictionary::cls().dictionary();
        return &self;
    }
    static Ref<NSFontDescriptor> with(Class& self, NSDictionary* attributes)
    {
        return cast<NSFontDescriptor>(Meta { { &self } }.alloc())
            ->initWithFontAttributes(attributes);
    }
    static Ref<NSFontDescriptor> withName(Class& self, NSString* name, CGFloat size)
    {
        const auto attributes = NSMutableDictionary::cls().dictionary();
        if (name)
            attributes->setObject_forKey(name, NSFontNameAttribute);
        if (size > 0)
            attributes->setObject_forKey(sizeNumber(size).get(), NSFontSizeAttribute);
        return with(self, attributes.get());
    }

    // ---- reading

    static Ref<NSDictionary> attributes(NSFontDescriptor& self) { return self.attributes_; }
    static Ref<NSString> name(NSFontDescriptor& self)
    {
        const FontFace* face = faceOf(self.attributes_.get());
        return face ? stringFrom(face->postScriptName()) : nullptr;
    }
    static CGFloat pointSize(NSFontDescriptor& self)
    {
        const auto size = entry<NSNumber>(self.attributes_.get(), NSFontSizeAttribute);
        return size ? size->doubleValue() : 0;
    }
    static NSFontDescriptorSymbolicTraits traits(NSFontDescriptor& self)
    {
        const FontFace* face = faceOf(self.attributes_.get());
        return static_cast<NSFontDescriptorSymbolicTraits>(
            face ? symbolicTraitsOf(*face) : wantedTraits(self.attributes_.get()).value_or(0));
    }
    static Ref<NSObject> objectForKey(NSFontDescriptor& self, NSString* key)
    {
        if (!key)
            return nullptr;
        if (const Ref<NSObject> own = self.attributes_->objectForKey(key))
            return own;
        const FontFace* face = faceOf(self.attributes_.get());
        if (face && key->isEqualToString(NSFontNameAttribute))
            return stringFrom(face->postScriptName());
        if (face && key->isEqualToString(NSFontFamilyAttribute))
            return stringFrom(face->familyName());
        return nullptr;
    }

    // ---- others like it

    static Ref<NSFontDescriptor> adding(NSFontDescriptor& self, NSDictionary* more)
    {
        const auto changed = editable(self);
        changed->addEntriesFromDictionary(more);
        return made(changed);
    }
    static Ref<NSFontDescriptor> withSize(NSFontDescriptor& self, CGFloat size)
    {
        const auto changed = editable(self);
        changed->setObject_forKey(sizeNumber(size).get(), NSFontSizeAttribute);
        return made(changed);
    }
    static Ref<NSFontDescriptor> withFamily(NSFontDescriptor& self, NSString* family)
    {
        const auto changed = editable(self);
        changed->removeObjectForKey(NSFontNameAttribute);
        if (family)
            changed->setObject_forKey(family, NSFontFamilyAttribute);
        return made(changed);
    }
    static Ref<NSFontDescriptor> withFace(NSFontDescriptor& self, NSString* style)
    {
        const auto changed = ofFamily(self);
        if (style)
            changed->setObject_forKey(style, NSFontFaceAttribute);
        return made(changed);
    }
    static Ref<NSFontDescriptor> withTraits(
        NSFontDescriptor& self, NSFontDescriptorSymbolicTraits traits)
    {
        const auto changed = ofFamily(self);
        changed->removeObjectForKey(NSFontFaceAttribute);
        const Ref<NSNumber> number = NSNumber::cls().numberWithUnsignedInt(traits);
        changed->setObject_forKey(
            NSDictionary::cls()
                .dictionaryWithObject_forKey(number.get(), NSFontSymbolicTrait)
                .get(),
            NSFontTraitsAttribute);
        return made(changed);
    }
    /// Answers the attributes with the family in place of the name.
    static Ref<NSMutableDictionary> ofFamily(NSFontDescriptor& self)
    {
        const auto changed = editable(self);
        const FontFace* face = faceOf(self.attributes_.get());
        if (face)
            changed->setObject_forKey(stringFrom(face->familyName()).get(), NSFontFamilyAttribute);
        changed->removeObjectForKey(NSFontNameAttribute);
        return changed;
    }

    static bool isEqual(NSFontDescriptor& self, NSObject* other)
    {
        if (other == &self)
            return true;
        return other && other->isKindOfClass(classOf<NSFontDescriptor>())
            && maybe(self.attributes_)
                   ->isEqual(static_cast<NSFontDescriptor*>(other)->attributes_.get());
    }
    static NSUInteger hash(NSFontDescriptor& self) { return maybe(self.attributes_)->hash(); }
    static Ref<NSObject> copyWithZone(NSFontDescriptor& self, void*) { return &self; }

    static void encode(NSFontDescriptor& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.attributes_.get(), "NSFontDescriptorAttributes"_ns);
    }
    static Ref<NSObject> initWithCoder(NSFontDescriptor& self, NSCoder* coder)
    {
        return initWith(self, decode<NSDictionary>(coder, "NSFontDescriptorAttributes"_ns).get());
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encode, initWithCoder>(t);
        t.classMethods({
            { "fontDescriptorWithFontAttributes:", imp<with> },
            { "fontDescriptorWithName:size:", imp<withName> },
        });
        t.methods({
            { "init", imp<init> },
            { "initWithFontAttributes:", imp<initWith> },
            { "fontAttributes", imp<attributes> },
            { "postscriptName", imp<name> },
            { "pointSize", imp<pointSize> },
            { "symbolicTraits", imp<traits> },
            { "objectForKey:", imp<objectForKey> },
            { "fontDescriptorByAddingAttributes:", imp<adding> },
            { "fontDescriptorWithSize:", imp<withSize> },
            { "fontDescriptorWithFamily:", imp<withFamily> },
            { "fontDescriptorWithFace:", imp<withFace> },
            { "fontDescriptorWithSymbolicTraits:", imp<withTraits> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSFontDescriptor, Describing)

template <> struct NSFont::Methods<struct Descriptors> {

    static Ref<NSFont> withDescriptor(Class&, NSFontDescriptor* descriptor, CGFloat size)
    {
        const FontFace* face = descriptor ? faceOf(descriptor->fontAttributes().get()) : nullptr;
        if (!face)
            return nullptr;
        return appkit::fontFrom({ face, size > 0 ? size : descriptor->pointSize() });
    }
    static Ref<NSFontDescriptor> descriptor(NSFont& self)
    {
        const Ref<NSString> name = self.fontName();
        if (!name)
            return nullptr;
        return NSFontDescriptor::cls().fontDescriptorWithName_size(name.get(), self.pointSize());
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "fontWithDescriptor:size:", imp<withDescriptor> } });
        t.methods({ { "fontDescriptor", imp<descriptor> } });
    }
};
BRINDLE_RECORD(NSFont, Descriptors)

}
