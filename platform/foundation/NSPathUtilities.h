// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

class NSArray;

/// Places that every system has, by purpose.
enum NSSearchPathDirectory : NSUInteger {
    NSApplicationDirectory = 1,
    NSLibraryDirectory = 5,
    NSUserDirectory = 7,
    NSDocumentationDirectory = 8,
    NSDocumentDirectory = 9,
    NSAutosavedInformationDirectory = 11,
    NSDesktopDirectory = 12,
    NSCachesDirectory = 13,
    NSApplicationSupportDirectory = 14,
    NSDownloadsDirectory = 15,
    NSMoviesDirectory = 17,
    NSMusicDirectory = 18,
    NSPicturesDirectory = 19,
    NSSharedPublicDirectory = 21,
    NSTrashDirectory = 102,
};

/// Whose places; bits that are added together.
using NSSearchPathDomainMask = NSUInteger;
enum : NSUInteger {
    NSUserDomainMask = 1,
    NSLocalDomainMask = 2, ///< this machine's, in /usr/local
    NSNetworkDomainMask = 4, ///< none here
    NSSystemDomainMask = 8, ///< the system's own, in /usr
    NSAllDomainsMask = 0xffff,
};

/// Answers the user's home folder: HOME, else what the system's list of users says.
BRINDLE_EXPORT Ref<NSString> NSHomeDirectory();
BRINDLE_EXPORT Ref<NSString> NSHomeDirectoryForUser(NSString* name);
/// Answers the folder for files of the moment, with a slash at its end: TMPDIR, else "/tmp/".
BRINDLE_EXPORT Ref<NSString> NSTemporaryDirectory();
BRINDLE_EXPORT Ref<NSString> NSUserName();
BRINDLE_EXPORT Ref<NSString> NSFullUserName();

/// Answers the paths of a place, the user's first; they need not exist.
///
/// Caches, application support (also the library) and the trash follow the desktops' agreement on base folders (XDG_CACHE_HOME,
/// XDG_DATA_HOME); documents, downloads, pictures and the like follow the user's own list of them (user-dirs.dirs) and
/// are else folders of these English names in the home folder.
/// - expandTilde: NO leaves "~" for the home folder.
BRINDLE_EXPORT Ref<NSArray> NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory place, NSSearchPathDomainMask domains, bool expandTilde);

}
