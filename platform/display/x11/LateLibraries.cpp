// SPDX-License-Identifier: Apache-2.0
#include "LateLibrariesPrivate.h"

namespace brindle::display {

void* inputLibrary()
{
    static void* const opened = late::openLibrary("libxcb-xinput.so.0");
    return opened;
}

void* randrLibrary()
{
    static void* const opened = late::openLibrary("libxcb-randr.so.0");
    return opened;
}

void* fixesLibrary()
{
    static void* const opened = late::openLibrary("libxcb-xfixes.so.0");
    return opened;
}

void* keyboardLibrary()
{
    static void* const opened = late::openLibrary("libxcb-xkb.so.1");
    return opened;
}

void* keymapLibrary()
{
    static void* const opened = late::openLibrary("libxkbcommon-x11.so.0");
    return opened;
}

}
