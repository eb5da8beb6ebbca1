// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// The desktop that the program runs on, as far as it opens files and URLs.
namespace brindle::desktop {

/// Hands a URL to the desktop's opener, without waiting for it.
/// - url: absolute, with its scheme.
/// - Returns: false without a desktop or an opener, and where nothing is registered for the scheme.
bool open(const std::string& url, const std::string& scheme);

/// Starts a program of the search path with its arguments, apart from this process: without its standard streams,
/// files and session.
/// - Returns: the process's number, 0 where it could not be started.
int launch(const std::vector<std::string>& command);

/// Answers whether the desktop's lists name a program for a scheme.
bool hasHandler(const std::string& scheme);

}
