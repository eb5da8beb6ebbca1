// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MonthView.h"
#include "appkit/NSTextField.h"
#include "foundation/NSDate.h"
#include "foundation/NSLocale.h"
#include "foundation/NSNumber.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A card that shows something as people of one language write it.
class LocalizedCard : public GalleryCard {
    BRINDLE_OBJECT(LocalizedCard, GalleryCard)

public:
    brindle::Ref<brindle::NSLocale> locale() const
    {
        return send<"locale", brindle::Ref<brindle::NSLocale>>();
    }
    void setLocale(brindle::NSLocale* locale) { send<"setLocale:">(locale); }

private:
    brindle::Ref<brindle::NSLocale> locale_;
};

/// A number that is typed, read by its formatter, and written in every style.
class NumbersCard : public LocalizedCard {
    BRINDLE_OBJECT(NumbersCard, LocalizedCard)

private:
    brindle::Ref<brindle::NSTextField> field_;
};

/// A moment in every style, and its month; chips move it, and a press on a day.
class DatesCard : public LocalizedCard {
    BRINDLE_OBJECT(DatesCard, LocalizedCard)

public:
    brindle::Ref<brindle::NSDate> date() const
    {
        return send<"date", brindle::Ref<brindle::NSDate>>();
    }

private:
    brindle::Ref<GalleryChip> earlier_, later_, now_;
    brindle::Ref<MonthView> month_;
    brindle::Ref<brindle::NSDate> date_;
};

/// The present moment by a pattern that is typed, and by templates that leave the order to the language.
class PatternsCard : public LocalizedCard {
    BRINDLE_OBJECT(PatternsCard, LocalizedCard)

private:
    brindle::Ref<brindle::NSTextField> field_;
};

}
