// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "Search.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// The pattern, how it is read, and in words what is wrong with it.
class ExpressionCard : public GalleryCard {
    BRINDLE_OBJECT(ExpressionCard, GalleryCard)

public:
    static constexpr std::size_t kOptions = 4;

    brindle::Ref<brindle::NSTextField> field() const
    {
        return send<"field", brindle::Ref<brindle::NSTextField>>();
    }
    /// Answers the options whose chips are on.
    brindle::NSUInteger options() const { return send<"options", brindle::NSUInteger>(); }
    void show(const Search& search);

private:
    brindle::Ref<brindle::NSTextField> field_;
    std::array<brindle::Ref<GalleryChip>, kOptions> chips_;
    brindle::Ref<brindle::NSString> outcome_;
    bool isWrong_ = false;
};

/// The text that is searched, to be edited; what was found has a ground.
class SubjectCard : public GalleryCard {
    BRINDLE_OBJECT(SubjectCard, GalleryCard)

public:
    brindle::Ref<brindle::NSTextView> text() const
    {
        return send<"text", brindle::Ref<brindle::NSTextView>>();
    }
    void show(const Search& search);

private:
    brindle::Ref<brindle::NSScrollView> scroll_;
    brindle::Ref<brindle::NSTextView> text_;
    std::vector<brindle::NSRange> marks_;
};

/// Each match with what its groups took.
class MatchesCard : public GalleryCard {
    BRINDLE_OBJECT(MatchesCard, GalleryCard)

public:
    void show(const Search& search);

private:
    Search search_;
};

/// What stands for a match, and the text with that in its place.
class ReplacementCard : public GalleryCard {
    BRINDLE_OBJECT(ReplacementCard, GalleryCard)

public:
    brindle::Ref<brindle::NSTextField> field() const
    {
        return send<"field", brindle::Ref<brindle::NSTextField>>();
    }
    /// Answers the text that is shown; nil while the pattern is none.
    brindle::Ref<brindle::NSString> result() const
    {
        return send<"result", brindle::Ref<brindle::NSString>>();
    }
    void show(const Search& search);

private:
    brindle::Ref<brindle::NSTextField> field_;
    brindle::Ref<brindle::NSString> result_;
};

}
