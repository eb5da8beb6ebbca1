// SPDX-License-Identifier: Apache-2.0
#include "DrawingMemory.h"

#include "StencilCachePrivate.h"
#include "text/GlyphCache.h"
#include "text/Shaper.h"

namespace brindle {

std::size_t drawingMemoryInUse()
{
    return text::GlyphCache::shared().bytesInUse() + quartz::StencilCache::shared().bytesInUse()
        + text::wordCacheState().bytes;
}

}
