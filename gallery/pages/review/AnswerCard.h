// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// What is remembered of the answer, and the page that was opened.
class AnswerCard : public GalleryCard {
    BRINDLE_OBJECT(AnswerCard, GalleryCard)
};

}
