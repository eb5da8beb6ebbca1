// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ExpressionsCards.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// A text searched by a pattern that is typed: its matches, their groups, and what replaces them.
class ExpressionsPage : public GalleryPage {
    BRINDLE_OBJECT(ExpressionsPage, GalleryPage)

private:
    brindle::Ref<ExpressionCard> pattern_;
    brindle::Ref<SubjectCard> subject_;
    brindle::Ref<MatchesCard> matches_;
    brindle::Ref<ReplacementCard> replacement_;
};

void tourExpressions(Tour& tour);

}
