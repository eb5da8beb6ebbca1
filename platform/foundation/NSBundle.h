// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSString.h"

namespace brindle {

class NSArray;
class NSDictionary;
class NSURL;
struct BundleState;

/// A folder with an Info.plist and resources: an application, a plug-in, the framework itself.
///
/// Resources lie in `Contents/Resources`, in `Resources` where the Info.plist is in there too, or flat in the folder. A
/// resource is looked for among them and then in the folders of languages (`de.lproj`), best language first: what the user
/// prefers, the bundle's own development language, `Base.lproj`. One folder has one bundle object, for as long as the
/// process lives, and what it read of the Info.plist and of string tables stays.
/// Thread: any. Cost: a localised string is two lookups; the first one of a table reads its file.
class NSBundle : public NSObject {
    BRINDLE_OBJECT(NSBundle, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the program's bundle, never nil: the folder round `Contents` where the program lies in there, else the
        /// program's own folder, or `../share/<program>` beside it when only that one holds an Info.plist.
        Ref<NSBundle> mainBundle() const { return send<"mainBundle", Ref<NSBundle>>(); }
        /// - Nil: when there is no folder at the path.
        Ref<NSBundle> bundleWithPath(NSString* path) const
        {
            return send<"bundleWithPath:", Ref<NSBundle>>(path);
        }
        Ref<NSBundle> bundleWithURL(NSURL* url) const
        {
            return send<"bundleWithURL:", Ref<NSBundle>>(url);
        }
        /// Answers a bundle that this process knows: the main one, the framework's (`org.brindle.Brindle`), one that was
        /// opened, the last one first.
        Ref<NSBundle> bundleWithIdentifier(NSString* identifier) const
        {
            return send<"bundleWithIdentifier:", Ref<NSBundle>>(identifier);
        }
        /// Answers the bundle whose code declares the class; the main one where that cannot be told.
        Ref<NSBundle> bundleForClass(Class* cls) const
        {
            return send<"bundleForClass:", Ref<NSBundle>>(cls);
        }
        /// Answers the main bundle and the opened ones, without the framework's.
        Ref<NSArray> allBundles() const { return send<"allBundles", Ref<NSArray>>(); }
        Ref<NSArray> allFrameworks() const { return send<"allFrameworks", Ref<NSArray>>(); }
        /// Answers which of some languages fit the user best, best first; the first of them when none does.
        Ref<NSArray> preferredLocalizationsFromArray(NSArray* localizations) const
        {
            return send<"preferredLocalizationsFromArray:", Ref<NSArray>>(localizations);
        }
        /// - preferences: languages instead of the user's, best first.
        Ref<NSArray> preferredLocalizationsFromArray_forPreferences(
            NSArray* localizations, NSArray* preferences) const
        {
            return send<"preferredLocalizationsFromArray:forPreferences:", Ref<NSArray>>(
                localizations, preferences);
        }
    };

    Ref<NSBundle> initWithPath(NSString* path)
    {
        return send<"initWithPath:", Ref<NSBundle>>(path);
    }
    Ref<NSBundle> initWithURL(NSURL* url) { return send<"initWithURL:", Ref<NSBundle>>(url); }

    // ---- what it is
    Ref<NSString> bundlePath() const { return send<"bundlePath", Ref<NSString>>(); }
    Ref<NSURL> bundleURL() const { return send<"bundleURL", Ref<NSURL>>(); }
    Ref<NSString> resourcePath() const { return send<"resourcePath", Ref<NSString>>(); }
    Ref<NSURL> resourceURL() const { return send<"resourceURL", Ref<NSURL>>(); }
    /// Answers the program of the main bundle; elsewhere the file that "CFBundleExecutable", or the bundle's name, means in
    /// `Contents/Linux`, `Contents/MacOS` or the bundle's folder, also with ".so" behind it.
    Ref<NSString> executablePath() const { return send<"executablePath", Ref<NSString>>(); }
    Ref<NSURL> executableURL() const { return send<"executableURL", Ref<NSURL>>(); }
    Ref<NSString> bundleIdentifier() const { return send<"bundleIdentifier", Ref<NSString>>(); }
    /// Answers the Info.plist, empty when it is missing or no dictionary.
    Ref<NSDictionary> infoDictionary() const { return send<"infoDictionary", Ref<NSDictionary>>(); }
    /// Answers the table "InfoPlist" of the best language, which may be empty.
    Ref<NSDictionary> localizedInfoDictionary() const
    {
        return send<"localizedInfoDictionary", Ref<NSDictionary>>();
    }
    /// Answers the value in the user's language where there is one, else that of the Info.plist.
    Ref<NSObject> objectForInfoDictionaryKey(NSString* key) const
    {
        return send<"objectForInfoDictionaryKey:", Ref<NSObject>>(key);
    }

    // ---- resources: a type may begin with its full stop; without a type the name is complete; nil when missing
    Ref<NSString> pathForResource_ofType(NSString* name, NSString* type) const
    {
        return send<"pathForResource:ofType:", Ref<NSString>>(name, type);
    }
    /// - folder: below the resources or a language's folder; nil for none.
    Ref<NSString> pathForResource_ofType_inDirectory(
        NSString* name, NSString* type, NSString* folder) const
    {
        return send<"pathForResource:ofType:inDirectory:", Ref<NSString>>(name, type, folder);
    }
    /// - localization: the one language that is looked in behind the resources without one.
    Ref<NSString> pathForResource_ofType_inDirectory_forLocalization(
        NSString* name, NSString* type, NSString* folder, NSString* localization) const
    {
        return send<"pathForResource:ofType:inDirectory:forLocalization:", Ref<NSString>>(
            name, type, folder, localization);
    }
    /// Answers all files of a type, or all, sorted by name in each folder: without a language first, then the best ones.
    Ref<NSArray> pathsForResourcesOfType_inDirectory(NSString* type, NSString* folder) const
    {
        return send<"pathsForResourcesOfType:inDirectory:", Ref<NSArray>>(type, folder);
    }
    Ref<NSURL> URLForResource_withExtension(NSString* name, NSString* type) const
    {
        return send<"URLForResource:withExtension:", Ref<NSURL>>(name, type);
    }
    Ref<NSURL> URLForResource_withExtension_subdirectory(
        NSString* name, NSString* type, NSString* folder) const
    {
        return send<"URLForResource:withExtension:subdirectory:", Ref<NSURL>>(name, type, folder);
    }
    Ref<NSArray> URLsForResourcesWithExtension_subdirectory(NSString* type, NSString* folder) const
    {
        return send<"URLsForResourcesWithExtension:subdirectory:", Ref<NSArray>>(type, folder);
    }
    /// Takes a name with or without the extension of an image, and for want of the image itself one of its larger
    /// variants ("name@2x", "name@3x").
    Ref<NSString> pathForImageResource(NSString* name) const
    {
        return send<"pathForImageResource:", Ref<NSString>>(name);
    }

    // ---- languages
    /// Answers the languages that have a folder, sorted; `Base` is none.
    Ref<NSArray> localizations() const { return send<"localizations", Ref<NSArray>>(); }
    /// Answers those that the user wants, best first; the development language when there is none.
    Ref<NSArray> preferredLocalizations() const
    {
        return send<"preferredLocalizations", Ref<NSArray>>();
    }
    /// Answers "CFBundleDevelopmentRegion" of the Info.plist, "en" without one.
    Ref<NSString> developmentLocalization() const
    {
        return send<"developmentLocalization", Ref<NSString>>();
    }
    /// Answers a text of the table `<table>.strings` in the best language that has one.
    /// - table: nil or "" for "Localizable".
    /// - Nil: a nil key gives the value, or "". A missing text gives the value, or the key when that is nil or "".
    Ref<NSString> localizedStringForKey_value_table(
        NSString* key, NSString* value, NSString* table) const
    {
        return send<"localizedStringForKey:value:table:", Ref<NSString>>(key, value, table);
    }

    // ---- code
    /// Loads the bundle's code, for ever; NO when there is none or the system refuses it. The main bundle's is loaded.
    bool load() { return send<"load", bool>(); }
    bool isLoaded() const { return send<"isLoaded", bool>(); }
    /// Loads the code and answers the class of a name; nil when nobody declares it.
    Class* classNamed(NSString* name) { return send<"classNamed:", Class*>(name); }
    /// Answers the class that "NSPrincipalClass" names.
    Class* principalClass() { return send<"principalClass", Class*>(); }

private:
    friend struct BundleAccess;

    std::shared_ptr<BundleState> state_;
};

/// Makes the folder at a path the main bundle; nil makes it the program's own again. For tests, and for programs that
/// keep their resources in another place: to be called before anybody asked.
BRINDLE_EXPORT void setMainBundlePath(NSString* path);

}
