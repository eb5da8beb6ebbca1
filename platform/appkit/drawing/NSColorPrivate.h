// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SystemColorsPrivate.h"
#include "appkit/NSColor.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace brindle {

namespace colors {

    /// Bounds a component to 0 to 1; NaN is 0.
    inline double unit(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

    struct RGB {
        double red = 0;
        double green = 0;
        double blue = 0;

        double brightness() const { return std::max({ red, green, blue }); }
        double spread() const { return brightness() - std::min({ red, green, blue }); }
        double saturation() const { return brightness() > 0 ? spread() / brightness() : 0; }
        /// 0 to 1 round the hexagon of A. R. Smith, "Color Gamut Transform Pairs" (1978); 0 for greys.
        double hue() const;
    };

    /// The way back: hue, saturation and brightness from 0 to 1.
    RGB rgbFrom(double hue, double saturation, double brightness);

    /// What each system colour is in either appearance, made when it is first asked for and kept for good: the same few
    /// are asked for with every text that is drawn. Thread: any.
    template <class T> class PerSystemColor {
    public:
        template <class Make>
        Ref<T> at(std::size_t index, appkit::Appearance look, const Make& make)
        {
            const bool dark = look == appkit::Appearance::dark;
            std::atomic<T*>& place = kept_[2 * index + dark];
            if (T* const known = place.load(std::memory_order_acquire))
                return known;
            const Ref<T> made = make();
            T* first = nullptr;
            if (!place.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel))
                return first; // another thread was quicker
            static_cast<void>(Ref<T>(made).leak());
            return made;
        }

    private:
        std::array<std::atomic<T*>, 2 * appkit::kSystemColors.size()> kept_ {};
    };

}

/// What the sources of the class share.
template <> struct NSColor::Methods<struct Parts> {

    static Ref<NSColor> plain(Space space)
    {
        Ref<NSColor> color = make<NSColor>();
        color->space_ = space;
        return color;
    }
    static Ref<NSColor> rgb(Space space, const colors::RGB& c, double alpha)
    {
        Ref<NSColor> color = plain(space);
        color->components_[0] = colors::unit(c.red);
        color->components_[1] = colors::unit(c.green);
        color->components_[2] = colors::unit(c.blue);
        color->components_[3] = colors::unit(alpha);
        return color;
    }
    static Ref<NSColor> white(Space space, double white, double alpha)
    {
        Ref<NSColor> color = plain(space);
        color->components_[0] = colors::unit(white);
        color->components_[1] = colors::unit(alpha);
        return color;
    }

    static bool isRGB(const NSColor& self)
    {
        return self.space_ == Space::calibratedRGB || self.space_ == Space::deviceRGB;
    }
    static bool isWhite(const NSColor& self)
    {
        return self.space_ == Space::calibratedWhite || self.space_ == Space::deviceWhite;
    }

    /// Answers a system colour's look of now; any other colour is its own.
    static Ref<NSColor> resolved(NSColor& self);
    /// What a system colour is in an appearance.
    static Ref<NSColor> resolvedIn(NSColor& self, appkit::Appearance look);
    /// Answers the selector that makes a system colour.
    static const char* systemName(const NSColor& self);

    /// Answers the numbers of a colour in an RGB or white space.
    static colors::RGB rgbOf(const NSColor& self)
    {
        const CGFloat* c = self.components_;
        return isWhite(self) ? colors::RGB { c[0], c[0], c[0] } : colors::RGB { c[0], c[1], c[2] };
    }
    static CGFloat alphaOf(const NSColor& self) { return self.components_[isRGB(self) ? 3 : 1]; }

    /// Raises what a colour answers to a question for components that its space does not have.
    static void require(NSColor& self, bool hasThem, const char* selector);
};

}
