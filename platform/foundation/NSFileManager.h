// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "NSEnumerator.h"
#include "NSPathUtilities.h"
#include "StringConstant.h"

namespace brindle {

class NSArray;
class NSData;
class NSDictionary;
class NSError;
class NSURL;

// Attributes of files: keys, and the values of `NSFileType`.
inline constexpr StringConstant<"NSFileType"> NSFileType;
inline constexpr StringConstant<"NSFileTypeRegular"> NSFileTypeRegular;
inline constexpr StringConstant<"NSFileTypeDirectory"> NSFileTypeDirectory;
inline constexpr StringConstant<"NSFileTypeSymbolicLink"> NSFileTypeSymbolicLink;
inline constexpr StringConstant<"NSFileTypeSocket"> NSFileTypeSocket;
inline constexpr StringConstant<"NSFileTypeCharacterSpecial"> NSFileTypeCharacterSpecial;
inline constexpr StringConstant<"NSFileTypeBlockSpecial"> NSFileTypeBlockSpecial;
inline constexpr StringConstant<"NSFileTypeUnknown"> NSFileTypeUnknown;
inline constexpr StringConstant<"NSFileSize"> NSFileSize; ///< NSNumber, bytes
inline constexpr StringConstant<"NSFileModificationDate"> NSFileModificationDate;
inline constexpr StringConstant<"NSFileCreationDate">
    NSFileCreationDate; ///< absent where nobody wrote it down
inline constexpr StringConstant<"NSFilePosixPermissions">
    NSFilePosixPermissions; ///< NSNumber, such as 0644
inline constexpr StringConstant<"NSFileReferenceCount"> NSFileReferenceCount;
inline constexpr StringConstant<"NSFileOwnerAccountID"> NSFileOwnerAccountID;
inline constexpr StringConstant<"NSFileGroupOwnerAccountID"> NSFileGroupOwnerAccountID;
inline constexpr StringConstant<"NSFileOwnerAccountName"> NSFileOwnerAccountName;
inline constexpr StringConstant<"NSFileGroupOwnerAccountName"> NSFileGroupOwnerAccountName;
inline constexpr StringConstant<"NSFileSystemNumber"> NSFileSystemNumber;
inline constexpr StringConstant<"NSFileSystemFileNumber"> NSFileSystemFileNumber;
inline constexpr StringConstant<"NSFileSystemSize"> NSFileSystemSize; ///< NSNumber, bytes
inline constexpr StringConstant<"NSFileSystemFreeSize"> NSFileSystemFreeSize;

/// What a folder's contents leave out.
using NSDirectoryEnumerationOptions = NSUInteger;
enum : NSUInteger { NSDirectoryEnumerationSkipsHiddenFiles = 4 };

/// Goes through all that is below a folder, each folder before what is in it, sorted by name; links are not followed.
class NSDirectoryEnumerator : public NSEnumerator {
    BRINDLE_OBJECT(NSDirectoryEnumerator, NSEnumerator)

public:
    /// Leaves out what is in the folder that came last.
    void skipDescendants() { send<"skipDescendants">(); }
    /// Answers how deep the last one lies: 1 in the folder itself.
    NSUInteger level() const { return send<"level", NSUInteger>(); }
    /// Answers the attributes of the last one.
    Ref<NSDictionary> fileAttributes() const { return send<"fileAttributes", Ref<NSDictionary>>(); }

private:
    friend struct DirectoryAccess;
    struct State;

    std::shared_ptr<State> state_;
};

/// Files and folders by their paths: what is there, making, copying, moving, removing.
///
/// Nothing is ever replaced: where the target exists the operation fails. A copy that fails leaves nothing behind. Links are
/// not followed but where a line says so.
/// - Errors: NO or nil, and `NSCocoaErrorDomain`: 4 and 260 nothing there (to change, to read), 257 and 513 not allowed,
///   516 exists already, 640 no room, 256 and 512 anything else; with the path and the system's own error. `error` may
///   be nullptr. A nil or empty path is nothing there.
/// Thread: any.
class NSFileManager : public NSObject {
    BRINDLE_OBJECT(NSFileManager, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSFileManager> defaultManager() const
        {
            return send<"defaultManager", Ref<NSFileManager>>();
        }
    };

    // ---- questions; links are followed
    bool fileExistsAtPath(NSString* path) const { return send<"fileExistsAtPath:", bool>(path); }
    /// - isDirectory: set when the answer is YES; may be nullptr.
    bool fileExistsAtPath_isDirectory(NSString* path, bool* isDirectory) const
    {
        return send<"fileExistsAtPath:isDirectory:", bool>(path, isDirectory);
    }
    bool isReadableFileAtPath(NSString* path) const
    {
        return send<"isReadableFileAtPath:", bool>(path);
    }
    bool isWritableFileAtPath(NSString* path) const
    {
        return send<"isWritableFileAtPath:", bool>(path);
    }
    bool isExecutableFileAtPath(NSString* path) const
    {
        return send<"isExecutableFileAtPath:", bool>(path);
    }
    /// Answers whether the folder round it may be changed.
    bool isDeletableFileAtPath(NSString* path) const
    {
        return send<"isDeletableFileAtPath:", bool>(path);
    }
    /// Compares two files by their bytes, or two folders with all that is in them.
    bool contentsEqualAtPath_andPath(NSString* a, NSString* b) const
    {
        return send<"contentsEqualAtPath:andPath:", bool>(a, b);
    }
    Ref<NSString> displayNameAtPath(NSString* path) const
    {
        return send<"displayNameAtPath:", Ref<NSString>>(path);
    }
    Ref<NSString> currentDirectoryPath() const
    {
        return send<"currentDirectoryPath", Ref<NSString>>();
    }
    bool changeCurrentDirectoryPath(NSString* path)
    {
        return send<"changeCurrentDirectoryPath:", bool>(path);
    }

    // ---- folders
    /// Answers the names in a folder, sorted, without "." and "..".
    Ref<NSArray> contentsOfDirectoryAtPath_error(NSString* path, Ref<NSError>* error) const
    {
        return send<"contentsOfDirectoryAtPath:error:", Ref<NSArray>>(path, error);
    }
    /// Answers the paths of all that is below a folder, relative to it.
    Ref<NSArray> subpathsOfDirectoryAtPath_error(NSString* path, Ref<NSError>* error) const
    {
        return send<"subpathsOfDirectoryAtPath:error:", Ref<NSArray>>(path, error);
    }
    Ref<NSArray> subpathsAtPath(NSString* path) const
    {
        return send<"subpathsAtPath:", Ref<NSArray>>(path);
    }
    /// Answers an enumerator of the same paths; nil when there is no folder.
    Ref<NSDirectoryEnumerator> enumeratorAtPath(NSString* path) const
    {
        return send<"enumeratorAtPath:", Ref<NSDirectoryEnumerator>>(path);
    }
    /// - intermediate: YES makes those above it as well, and then it is no failure that the folder exists.
    bool createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        NSString* path, bool intermediate, NSDictionary* attributes, Ref<NSError>* error)
    {
        return send<"createDirectoryAtPath:withIntermediateDirectories:attributes:error:", bool>(
            path, intermediate, attributes, error);
    }

    // ---- files
    Ref<NSData> contentsAtPath(NSString* path) const
    {
        return send<"contentsAtPath:", Ref<NSData>>(path);
    }
    /// Writes a file, over one that is there.
    bool createFileAtPath_contents_attributes(
        NSString* path, NSData* contents, NSDictionary* attributes)
    {
        return send<"createFileAtPath:contents:attributes:", bool>(path, contents, attributes);
    }
    bool copyItemAtPath_toPath_error(NSString* from, NSString* to, Ref<NSError>* error)
    {
        return send<"copyItemAtPath:toPath:error:", bool>(from, to, error);
    }
    bool moveItemAtPath_toPath_error(NSString* from, NSString* to, Ref<NSError>* error)
    {
        return send<"moveItemAtPath:toPath:error:", bool>(from, to, error);
    }
    /// Gives a file a second name.
    bool linkItemAtPath_toPath_error(NSString* from, NSString* to, Ref<NSError>* error)
    {
        return send<"linkItemAtPath:toPath:error:", bool>(from, to, error);
    }
    /// Removes a file, a link, or a folder with its content.
    bool removeItemAtPath_error(NSString* path, Ref<NSError>* error)
    {
        return send<"removeItemAtPath:error:", bool>(path, error);
    }
    bool createSymbolicLinkAtPath_withDestinationPath_error(
        NSString* path, NSString* destination, Ref<NSError>* error)
    {
        return send<"createSymbolicLinkAtPath:withDestinationPath:error:", bool>(
            path, destination, error);
    }
    Ref<NSString> destinationOfSymbolicLinkAtPath_error(NSString* path, Ref<NSError>* error) const
    {
        return send<"destinationOfSymbolicLinkAtPath:error:", Ref<NSString>>(path, error);
    }

    // ---- attributes
    /// - Shape: the keys above, but those of the file system.
    Ref<NSDictionary> attributesOfItemAtPath_error(NSString* path, Ref<NSError>* error) const
    {
        return send<"attributesOfItemAtPath:error:", Ref<NSDictionary>>(path, error);
    }
    /// Sets permissions, modification date, owner and group by their numbers; other keys change nothing. Links are
    /// followed.
    bool setAttributes_ofItemAtPath_error(
        NSDictionary* attributes, NSString* path, Ref<NSError>* error)
    {
        return send<"setAttributes:ofItemAtPath:error:", bool>(attributes, path, error);
    }
    /// - Shape: `NSFileSystemSize`, `NSFileSystemFreeSize`, `NSFileSystemNumber`.
    Ref<NSDictionary> attributesOfFileSystemForPath_error(NSString* path, Ref<NSError>* error) const
    {
        return send<"attributesOfFileSystemForPath:error:", Ref<NSDictionary>>(path, error);
    }

    // ---- the same by URLs of files
    /// - keys: not needed here; nil.
    Ref<NSArray> contentsOfDirectoryAtURL_includingPropertiesForKeys_options_error(
        NSURL* url, NSArray* keys, NSDirectoryEnumerationOptions options, Ref<NSError>* error) const
    {
        return send<"contentsOfDirectoryAtURL:includingPropertiesForKeys:options:error:",
            Ref<NSArray>>(url, keys, options, error);
    }
    bool createDirectoryAtURL_withIntermediateDirectories_attributes_error(
        NSURL* url, bool intermediate, NSDictionary* attributes, Ref<NSError>* error)
    {
        return send<"createDirectoryAtURL:withIntermediateDirectories:attributes:error:", bool>(
            url, intermediate, attributes, error);
    }
    bool copyItemAtURL_toURL_error(NSURL* from, NSURL* to, Ref<NSError>* error)
    {
        return send<"copyItemAtURL:toURL:error:", bool>(from, to, error);
    }
    bool moveItemAtURL_toURL_error(NSURL* from, NSURL* to, Ref<NSError>* error)
    {
        return send<"moveItemAtURL:toURL:error:", bool>(from, to, error);
    }
    bool removeItemAtURL_error(NSURL* url, Ref<NSError>* error)
    {
        return send<"removeItemAtURL:error:", bool>(url, error);
    }
    /// Moves a file into the user's trash, from where the desktop can bring it back.
    /// - resulting: where it is now; may be nullptr.
    bool trashItemAtURL_resultingItemURL_error(
        NSURL* url, Ref<NSURL>* resulting, Ref<NSError>* error)
    {
        return send<"trashItemAtURL:resultingItemURL:error:", bool>(url, resulting, error);
    }
    /// Answers what `NSSearchPathForDirectoriesInDomains` does.
    Ref<NSArray> URLsForDirectory_inDomains(
        NSSearchPathDirectory place, NSSearchPathDomainMask domains) const
    {
        return send<"URLsForDirectory:inDomains:", Ref<NSArray>>(place, domains);
    }
    Ref<NSURL> homeDirectoryForCurrentUser() const
    {
        return send<"homeDirectoryForCurrentUser", Ref<NSURL>>();
    }
    Ref<NSURL> temporaryDirectory() const { return send<"temporaryDirectory", Ref<NSURL>>(); }
};

}
