// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

#include "Chip.h"
#include "Sources.h"
#include "appkit/NSPopUpButton.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextView.h"

namespace gallery {

/// Shows the sources of a page, one at a time: to be read, selected and copied. Flipped.
class CodePane : public brindle::NSView {
    BRINDLE_OBJECT(CodePane, brindle::NSView)

public:
    /// Shows the sources of a page, the first of a card in front.
    void showPage(std::string_view folder);
    /// Shows where a class of the page gets its methods; nothing happens for one that has none there.
    void showClass(std::string_view name);
    /// Takes the colours of the appearance in force.
    void takeColors();

    brindle::Ref<brindle::NSTextView> text() const
    {
        return send<"text", brindle::Ref<brindle::NSTextView>>();
    }
    brindle::Ref<brindle::NSPopUpButton> files() const
    {
        return send<"files", brindle::Ref<brindle::NSPopUpButton>>();
    }

private:
    void show(std::size_t file);
    void scrollTo(double y);

    brindle::Ref<brindle::NSPopUpButton> files_;
    brindle::Ref<GalleryChip> copy_;
    brindle::Ref<GalleryChip> close_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTextView> text_;
    std::span<const SourceFile> sources_;
    std::size_t shown_ = 0;
};

}
