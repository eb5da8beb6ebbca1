// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "appkit/NSPasteboard.h"
#include "foundation/NSData.h"

namespace brindle::pasteboards {

/// How a desktop names what a program calls by other names, and turns the data of one into that of the other.

/// Answers a type's one name: two of them mean the same.
Ref<NSString> canonical(NSString& type);
/// Answers a desktop's names for a type, the best one first.
std::vector<std::string> desktopNames(NSString& type);
/// Answers the types that data of a desktop's name can be read as.
std::vector<Ref<NSString>> typesOf(std::string_view desktopName);
/// Answers data for a desktop; nothing changes for most types.
std::string toDesktop(NSString& type, NSData& data, std::string_view desktopName);
/// Answers a desktop's data as data of a type, or nil when it makes no sense.
Ref<NSData> fromDesktop(NSString& type, const std::string& bytes, std::string_view desktopName);

}
