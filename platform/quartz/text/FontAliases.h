// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

namespace brindle::text {

/// Installed faces (PostScript names) that stand for a customary one, nearest first.
using FaceAliases = std::array<std::string_view, 3>;

/// Answers the faces that stand for a customary name.
/// - Nil: null for a name that is not in the table.
const FaceAliases* aliasesForName(std::string_view name);

}
