// SPDX-License-Identifier: Apache-2.0
#include "PathsCards.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "graphics/NSBezierPath+BRExtensions.h"
#include "graphics/NSBezierPath+XUIKitAdditions.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

namespace {

    constexpr double kGap = 12;

    void paint(const Ref<NSBezierPath>& path)
    {
        palette().soft->setFill();
        path->fill();
        palette().accent->setStroke();
        path->stroke();
    }

    void stroke(const Ref<NSBezierPath>& path, NSColor* color, double width)
    {
        path->setLineWidth(width);
        color->setStroke();
        path->stroke();
    }

    /// Draws a construction line.
    void strokeThin(NSPoint from, NSPoint to)
    {
        palette().quietText->setStroke();
        NSBezierPath::cls().strokeLineFromPoint_toPoint(from, to);
    }

    /// Marks a point of a path: a control as a ring, any other as a disc.
    void mark(NSPoint place, bool isControl)
    {
        const auto dot = NSBezierPath::cls().bezierPathWithOvalInRect(
            NSMakeRect(place.x - 3, place.y - 3, 6, 6));
        (isControl ? palette().card : palette().accent)->setFill();
        dot->fill();
        palette().accent->setStroke();
        dot->stroke();
    }

    /// Answers one of several equal parts of a row.
    NSRect partOf(NSRect row, int part, int count)
    {
        const double width = (row.size.width - kGap * (count - 1)) / count;
        return NSMakeRect(
            row.origin.x + part * (width + kGap), row.origin.y, width, row.size.height);
    }

    /// Answers the square in the middle of a rectangle, on whole points.
    NSRect squareIn(NSRect room)
    {
        const double side = std::floor(std::min(room.size.width, room.size.height));
        return NSMakeRect(
            std::floor(NSMidX(room) - side / 2), std::floor(NSMidY(room) - side / 2), side, side);
    }

    /// Answers a star of five points without a break, whose middle is inside by one rule only.
    Ref<NSBezierPath> starIn(NSRect square)
    {
        const auto star = NSBezierPath::cls().bezierPath();
        for (int i = 0; i < 5; ++i) {
            const double angle = std::numbers::pi * (0.8 * i - 0.5);
            const double radius = square.size.width / 2;
            const NSPoint tip { NSMidX(square) + radius * std::cos(angle),
                NSMidY(square) + radius * std::sin(angle) };
            if (i == 0)
                star->moveToPoint(tip);
            else
                star->lineToPoint(tip);
        }
        star->closePath();
        return star;
    }

}

// ---- corners

template <> struct CornersCard::Methods<struct Corners> {

    static constexpr int kColumns = 4;
    static constexpr int kAll = BRRectCornerAll + 1;
    static constexpr double kStep = 4;
    static constexpr double kMost = 16;

    static Ref<NSView> initWithFrame(CornersCard& self, NSRect frame)
    {
        self.radius_ = 3 * kStep;
        return super<CornersCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static void changeRadius(CornersCard& self, NSInteger steps)
    {
        self.radius_ = std::clamp(self.radius_ + static_cast<double>(steps) * kStep, 0.0, kMost);
        self.setNeedsDisplay(true);
    }

    static void drawBody(CornersCard& self, NSRect body)
    {
        constexpr int kRows = kAll / kColumns;
        const double height = (body.size.height - kGap * (kRows - 1)) / kRows;
        for (int corners = 0; corners < kAll; ++corners) {
            NSRect row = body;
            const int above = corners / kColumns;
            row.origin.y += above * (height + kGap);
            row.size.height = height;
            const NSRect cell = inset(partOf(row, corners % kColumns, kColumns), 0.5);
            const auto path
                = bezierPathWithRoundedRect_byRoundingCorners_cornerRadii(NSBezierPath::cls(), cell,
                    static_cast<NSUInteger>(corners), NSMakeSize(self.radius_ * 1.5, self.radius_));
            paint(path);
            drawCentered(NSString::cls().stringWithFormat("%d"_ns, corners).get(), cell,
                Style::caption, palette().quietText.get());
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "changeRadius:", imp<changeRadius> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(CornersCard, Corners)

// ---- bends

template <> struct BendsCard::Methods<struct Bends> {

    static void drawBody(BendsCard&, NSRect body)
    {
        NSRect row = body;
        row.size.height = std::round(body.size.height * 0.55);
        drawQuadratic(row);
        row.origin.y += row.size.height + kGap;
        row.size.height = NSMaxY(body) - row.origin.y;
        drawArc(labelled("30° to 300°"_ns, partOf(row, 0, 3)), false);
        drawArc(labelled("the other way"_ns, partOf(row, 1, 3)), true);
        const NSRect room = labelled("one radius"_ns, partOf(row, 2, 3));
        paint(bezierPathWithRoundedRect_cornerRadius(
            NSBezierPath::cls(), inset(room, 0.5), room.size.height / 3));
    }

    /// The curve as it was told, with the one control point, and the two that it is kept with.
    static void drawQuadratic(NSRect row)
    {
        const NSRect room = labelled("one control point, kept as two"_ns, row);
        const NSPoint start { room.origin.x + 8, NSMaxY(room) - 8 };
        const NSPoint control { NSMidX(room) - 20, room.origin.y + 6 };
        const NSPoint end { NSMaxX(room) - 8, NSMaxY(room) - 26 };
        const auto curve = NSBezierPath::cls().bezierPath();
        curve->moveToPoint(start);
        addQuadCurveToPoint_controlPoint(curve, end, control);
        NSPoint kept[3];
        curve->elementAtIndex_associatedPoints(1, kept);
        strokeThin(start, control);
        strokeThin(control, end);
        stroke(curve, palette().accent.get(), 2);
        mark(start, false);
        mark(end, false);
        for (const NSPoint& place : { control, kept[0], kept[1] })
            mark(place, true);
    }

    static void drawArc(NSRect room, bool clockwise)
    {
        const NSRect square = inset(squareIn(room), 3);
        const NSPoint middle { NSMidX(square), NSMidY(square) };
        const auto arc = bezierPathWithArcCenter_radius_startAngle_endAngle_clockwise(
            NSBezierPath::cls(), middle, square.size.width / 2, 30, 300, clockwise);
        const auto slice = bezierPathWithCGPath(NSBezierPath::cls(), quartzPath(arc).get());
        palette().soft->setFill();
        slice->fill();
        stroke(arc, palette().accent.get(), 2);
        mark(arc->currentPoint(), false);
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(BendsCard, Bends)

// ---- triangles

template <> struct TrianglesCard::Methods<struct Triangles> {

    static void drawBody(TrianglesCard&, NSRect body)
    {
        NSRect top = body;
        top.size.height = std::round(body.size.height * 0.42);
        drawTriangle(labelled("at the far edge"_ns, partOf(top, 0, 2)), true);
        drawTriangle(labelled("at the near edge"_ns, partOf(top, 1, 2)), false);
        NSRect below = body;
        below.origin.y = NSMaxY(top) + kGap;
        below.size.height = NSMaxY(body) - below.origin.y;
        drawFlower(squareIn(labelled("turned by a transform"_ns, below)));
    }

    static void drawTriangle(NSRect room, bool bottomOrTop)
    {
        strokeRounded(inset(room, -0.5), 0.5, palette().grid.get());
        paint(bezierPathWithTriangleInRect_bottomOrTop(
            NSBezierPath::cls(), inset(room, 0.5), bottomOrTop));
    }

    static void drawFlower(NSRect square)
    {
        constexpr int kPetals = 8;
        const NSPoint middle { NSMidX(square), NSMidY(square) };
        const double length = square.size.width / 2;
        const auto petal = NSBezierPath::cls().bezierPathWithOvalInRect(
            NSMakeRect(length * 0.08, -length * 0.16, length * 0.92, length * 0.32));
        applyTransform(petal, CGAffineTransformMakeTranslation(middle.x, middle.y));
        for (int i = 0; i < kPetals; ++i) {
            paint(petal);
            CGAffineTransform turn = CGAffineTransformMakeTranslation(-middle.x, -middle.y);
            turn = CGAffineTransformConcat(
                turn, CGAffineTransformMakeRotation(2 * std::numbers::pi / kPetals));
            turn = CGAffineTransformConcat(
                turn, CGAffineTransformMakeTranslation(middle.x, middle.y));
            applyTransform(petal, turn);
        }
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(TrianglesCard, Triangles)

// ---- insides

template <> struct InsidesCard::Methods<struct Insides> {

    static void drawBody(InsidesCard&, NSRect body)
    {
        NSRect row = body;
        row.size.height = (body.size.height - kGap) / 2;
        drawStar(labelled("non-zero"_ns, partOf(row, 0, 2)), false);
        drawStar(labelled("even-odd"_ns, partOf(row, 1, 2)), true);
        row.origin.y += row.size.height + kGap;
        drawLine(labelled("an open line"_ns, partOf(row, 0, 2)), false);
        drawLine(labelled("in Quartz form"_ns, partOf(row, 1, 2)), true);
    }

    static void drawStar(NSRect room, bool evenOdd)
    {
        const auto star = starIn(squareIn(inset(room, 1)));
        setUsesEvenOddFillRule(star, evenOdd);
        palette().accent->colorWithAlphaComponent(0.35)->setFill();
        star->fill();
        stroke(star, palette().accent.get(), 1);
    }

    static void drawLine(NSRect room, bool inQuartzForm)
    {
        const NSRect r = inset(room, 6);
        const auto line = NSBezierPath::cls().bezierPath();
        const NSPoint points[] = { { r.origin.x, NSMaxY(r) }, { r.origin.x + 8, r.origin.y + 6 },
            { NSMidX(r), NSMidY(r) }, { NSMaxX(r) - 4, r.origin.y }, { NSMaxX(r), NSMaxY(r) - 4 } };
        line->appendBezierPathWithPoints_count(points, std::size(points));
        if (inQuartzForm)
            setCGPath(line, quartzPath(line).get());
        stroke(line, palette().accent.get(), 2);
        for (const NSPoint& point : points)
            mark(point, false);
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(InsidesCard, Insides)

// ---- blends

template <> struct BlendsCard::Methods<struct Blends> {

    struct Sample {
        NSString* name;
        CGBlendMode mode;
    };

    static void drawBody(BlendsCard&, NSRect body)
    {
        const Sample samples[] = { { "normal"_ns, kCGBlendModeNormal },
            { "multiply"_ns, kCGBlendModeMultiply }, { "screen"_ns, kCGBlendModeScreen },
            { "difference"_ns, kCGBlendModeDifference } };
        NSRect row = body;
        row.size.height = (body.size.height - kGap) / 2;
        int i = 0;
        for (const Sample& sample : samples) {
            drawSample(squareIn(labelled(sample.name, partOf(row, i % 2, 2))), sample.mode);
            if (++i == 2)
                row.origin.y += row.size.height + kGap;
        }
    }

    static void drawSample(NSRect square, CGBlendMode mode)
    {
        constexpr double kAlpha = 0.85;
        NSColor::cls().lightGrayColor()->setFill();
        bezierPathWithRoundedRect_cornerRadius(NSBezierPath::cls(), square, 6)->fill();
        square = inset(square, 5);
        const double side = square.size.width * 0.62;
        const auto disc = [side](double x, double y) {
            return NSBezierPath::cls().bezierPathWithOvalInRect(NSMakeRect(x, y, side, side));
        };
        const auto colors = NSColor::cls();
        colors.orangeColor()->setFill();
        disc(square.origin.x, square.origin.y)->fill();
        colors.blueColor()->setFill();
        fillWithBlendMode_alpha(disc(NSMaxX(square) - side, square.origin.y), mode, kAlpha);
        const auto ring = disc(NSMidX(square) - side / 2, NSMaxY(square) - side - 3);
        ring->setLineWidth(6);
        colors.greenColor()->setStroke();
        strokeWithBlendMode_alpha(ring, mode, kAlpha);
    }

    static void table(Builder& t) { t.methods({ { "drawBody:", imp<drawBody> } }); }
};
BRINDLE_RECORD(BlendsCard, Blends)

}
