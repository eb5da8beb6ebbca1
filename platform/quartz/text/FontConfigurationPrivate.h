// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <fontconfig/fontconfig.h>

namespace brindle::text {

/// Answers a configuration that lists the same fonts as that of the process, without the rules by which fontconfig puts one
/// font in another's place: nine tenths of its files hold nothing else, and nobody needs them before a face lacks a character.
/// - Nil: null where the main file cannot be read or is of an unusual form; the process's own serves then.
/// - Owner: the caller. Thread: any.
FcConfig* configurationOfFonts();

/// Answers the text of a main file, with the folders it includes replaced by their files that bear on the list of fonts.
/// What it does not understand stays as it is, for fontconfig to read.
/// - config: says what the names of files mean; nothing is read into it.
std::string withoutFilesOfRules(FcConfig* config, const std::string& text);

}
