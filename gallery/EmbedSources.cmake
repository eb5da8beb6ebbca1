# SPDX-License-Identifier: Apache-2.0
# cmake -DPAGES=<folder of the pages> -DFILES=<name,name> -DOUTPUT=<file> -P EmbedSources.cmake
# Writes a C++ source that holds the text of the pages' sources, for the pane that shows them.

string(REPLACE "," ";" FILES "${FILES}")
set(rows "")
foreach(path IN LISTS FILES)
    file(READ "${PAGES}/${path}" text)
    cmake_path(GET path PARENT_PATH folder)
    cmake_path(GET path FILENAME name)
    string(APPEND rows "    { \"${folder}\", \"${name}\",\n        R\"gallery(${text})gallery\"sv },\n")
endforeach()
file(WRITE "${OUTPUT}" "// SPDX-License-Identifier: Apache-2.0
#include \"kit/Sources.h\"

namespace gallery {

namespace {

using namespace std::string_view_literals; // to count a long text at compile time is too much for some

constexpr SourceFile kSources[] = {
${rows}};

}

std::span<const SourceFile> sources() { return kSources; }

}
")
