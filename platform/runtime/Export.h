// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Marks what the shared library exports; everything else stays hidden in it.
#define BRINDLE_EXPORT [[gnu::visibility("default")]]
