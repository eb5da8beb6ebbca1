// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Music.h"
#include "kit/Card.h"
#include "runtime/Block.h"

namespace gallery {

/// Lists and songs with lines for what they refer to, and beside them the copies that an archive made.
///
/// A click on a list selects it; one on a song puts it into the selected list or takes it out.
class GraphCard : public GalleryCard {
    BRINDLE_OBJECT(GraphCard, GalleryCard)

public:
    brindle::Ref<GalleryPlaylist> selected() const
    {
        return send<"selected", brindle::Ref<GalleryPlaylist>>();
    }
    /// Selects the list so many places further, round and round.
    void selectNext(brindle::NSInteger places) { send<"selectNext:">(places); }
    /// Called when the selection or a list changed.
    void setOnChange(const brindle::Block<void()>& code) { send<"setOnChange:">(code.get()); }
    /// Shows lists that were read from an archive. - copies: nil for none.
    void setCopies(brindle::NSArray* copies) { send<"setCopies:">(copies); }

private:
    brindle::Ref<GalleryPlaylist> selected_;
    brindle::Ref<brindle::NSArray> copies_;
    brindle::Block<void()> onChange_;
};

}
