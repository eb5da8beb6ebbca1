// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSCell.h"
#include "foundation/NSGeometry.h"

namespace brindle {

class NSAttributedString;
class NSColor;
class NSImage;

/// The one look of buttons, fields and pop-ups: measures, shades, shapes. Everything draws in the current context and lies
/// on whole device pixels.
namespace controls {

    /// The measures of one control size, in points.
    struct Metrics {
        CGFloat height; ///< of a bezel
        CGFloat radius; ///< of its corners
        CGFloat padding; ///< between a bezel's end and what is in it
        CGFloat mark; ///< side of a check box, diameter of a radio button
        CGFloat gap; ///< between an image or mark and its title
    };
    /// Room around a bezel for its shadow and focus ring.
    inline constexpr CGFloat kRingRoom = 2;
    /// How far a field's text stands from the field's edge.
    inline constexpr CGFloat kTextInset = 5;

    constexpr Metrics metricsFor(NSControlSize size)
    {
        switch (size) {
        case NSControlSizeLarge:
            return { 28, 7, 16, 16, 7 };
        case NSControlSizeSmall:
            return { 19, 5, 9, 13, 5 };
        case NSControlSizeMini:
            return { 15, 4, 7, 11, 4 };
        default:
            return { 22, 6, 12, 15, 6 };
        }
    }

    /// What a bezel says about the control.
    struct Look {
        bool enabled = true;
        bool pressed = false;
        bool hovered = false;
        bool accented = false; ///< on, or the default button of a key window
        bool active = true; ///< in a key window
    };

    struct Shade {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 1;
    };
    Shade shadeOf(const Ref<NSColor>& color);
    Shade faded(Shade shade, double alpha);
    /// Mixes a part of another shade in; the alpha stays.
    Shade mixed(Shade shade, Shade other, double part);
    bool isDark();

    /// Answers the rectangle moved to whole device pixels.
    NSRect onPixels(NSRect rect);
    /// Answers one device pixel in points.
    CGFloat pixel();

    void fillRounded(NSRect rect, CGFloat radius, Shade shade);
    /// Draws an edge just inside the rectangle.
    void frameRounded(NSRect rect, CGFloat radius, CGFloat width, Shade shade);
    /// Draws a line through points.
    void strokeLine(const NSPoint* points, std::size_t count, CGFloat width, Shade shade);
    /// Draws the focus ring around a shape.
    void drawRing(NSRect rect, CGFloat radius);
    /// Draws a push button's body.
    void drawBezel(NSRect rect, CGFloat radius, const Look& look);
    /// Draws the body of a check box or radio button.
    void drawMarkBody(NSRect rect, CGFloat radius, const Look& look);
    /// Draws the sunken ground of a text field.
    void drawWell(NSRect rect, CGFloat radius, const Look& look, Shade ground);
    /// Answers the shade that stands out on a bezel: its title, an arrow.
    Shade inkOn(const Look& look);

    /// Draws an image upright; a template takes the ink's shade.
    void drawImage(NSImage* image, NSRect rect, Shade ink, double alpha);

    /// Answers a text's size on one line, width and height rounded up.
    NSSize sizeOf(NSAttributedString* text);
    /// Draws a text on one line in the middle of a rectangle's height, cut off with an ellipsis where it is too long.
    /// - Returns: where it is.
    NSRect drawText(NSAttributedString* text, NSRect rect, NSTextAlignment alignment);

    /// Answers whether the view is in the key window.
    bool isActive(NSView* view);

}

}
