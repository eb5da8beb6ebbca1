// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "foundation/NSCalendar.h"
#include "foundation/NSLocale.h"
#include "runtime/Block.h"

namespace gallery {

/// The month of a date by the custom of a language: what a week begins with, which days are free; a press chooses a day.
class MonthView : public brindle::NSView {
    BRINDLE_OBJECT(MonthView, brindle::NSView)

public:
    void show(brindle::NSDate* date, brindle::NSLocale* locale);
    /// - chosen: called with the same time on the day that is pressed.
    void setChosen(const brindle::Block<void(brindle::NSDate*)>& chosen) { chosen_ = chosen; }

private:
    brindle::Ref<brindle::NSDate> date_;
    brindle::Ref<brindle::NSCalendar> calendar_;
    brindle::Block<void(brindle::NSDate*)> chosen_;
};

}
