// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSViewPrivate.h"

namespace brindle {

/// Runs a step for each subview that is wanted. A step may change the list, so that it is kept aside: on one stack for all
/// that runs, in memory that is asked for once. Thread: main.
template <class Wanted, class Step>
void forSubviews(const NSView& view, const Wanted& wanted, const Step& step)
{
    static auto* const aside = new std::vector<Ref<NSView>>;
    struct Level {
        ~Level()
        {
            while (aside->size() > start) { // a view that ends may come here again
                const Ref<NSView> gone = std::move(aside->back());
                aside->pop_back();
            }
        }
        const std::size_t start = aside->size();
    } const level;
    for (const Ref<NSView>& subview : ViewAccess::subviews(view)) {
        if (wanted(*subview))
            aside->push_back(subview);
    }
    for (std::size_t i = level.start, end = aside->size(); i < end; ++i) {
        const Ref<NSView> subview = (*aside)[i];
        step(*subview);
    }
}

template <class Step> void forSubviews(const NSView& view, const Step& step)
{
    forSubviews(
        view, [](const NSView&) { return true; }, step);
}

}
