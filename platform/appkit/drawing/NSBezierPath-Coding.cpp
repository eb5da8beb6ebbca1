// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSBezierPath.h"

#include "foundation/CodingTable.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <cstring>

namespace brindle {

using quartz::PathData;

// - Shape: "NSElements" has a byte an element, numbered as a Quartz path's; "NSPoints" and "NSDashes" are rows of doubles as
//   they lie in memory.
template <> struct NSBezierPath::Methods<struct Coding> {

    template <class T>
    static void encodeRow(NSCoder* coder, const std::vector<T>& row, NSString* key)
    {
        coder->encodeBytes_length_forKey(row.data(), row.size() * sizeof(T), key);
    }
    template <class T> static std::vector<T> decodeRow(NSCoder* coder, NSString* key)
    {
        NSUInteger length = 0;
        const auto* const bytes = coder->decodeBytesForKey_returnedLength(key, &length);
        std::vector<T> row(length / sizeof(T));
        if (!row.empty())
            std::memcpy(row.data(), bytes, row.size() * sizeof(T));
        return row;
    }

    static void encode(NSBezierPath& self, NSCoder* coder)
    {
        std::vector<std::uint8_t> types;
        std::vector<CGPoint> points;
        self.steps().each([&](CGPathElementType type, const CGPoint* p) {
            types.push_back(static_cast<std::uint8_t>(type));
            points.insert(points.end(), p, p + PathData::pointsOf(type));
        });
        encodeRow(coder, types, "NSElements"_ns);
        encodeRow(coder, points, "NSPoints"_ns);
        encodeRow(coder, self.dashes_, "NSDashes"_ns);
        coder->encodeDouble_forKey(self.dashPhase_, "NSDashPhase"_ns);
        coder->encodeDouble_forKey(self.lineWidth_, "NSLineWidth"_ns);
        coder->encodeDouble_forKey(self.miterLimit_, "NSMiterLimit"_ns);
        coder->encodeDouble_forKey(self.flatness_, "NSFlatness"_ns);
        coder->encodeInt_forKey(static_cast<int>(self.windingRule_), "NSWindingRule"_ns);
        coder->encodeInt_forKey(static_cast<int>(self.lineCapStyle_), "NSLineCapStyle"_ns);
        coder->encodeInt_forKey(static_cast<int>(self.lineJoinStyle_), "NSLineJoinStyle"_ns);
    }

    /// Adds a step; answers whether there is one of that number, with all of its points.
    static bool addStep(PathData& steps, std::uint8_t type, const CGPoint*& at, const CGPoint* end)
    {
        if (type > kCGPathElementCloseSubpath || type == kCGPathElementAddQuadCurveToPoint)
            return false;
        const std::size_t points = PathData::pointsOf(static_cast<CGPathElementType>(type));
        if (static_cast<std::size_t>(end - at) < points)
            return false;
        if (type == kCGPathElementMoveToPoint)
            steps.move(at[0]);
        else if (steps.isEmpty())
            return false;
        else if (type == kCGPathElementAddLineToPoint)
            steps.line(at[0]);
        else if (type == kCGPathElementAddCurveToPoint)
            steps.curve(at[0], at[1], at[2]);
        else
            steps.close();
        at += points;
        return true;
    }
    template <class T> static T choice(NSCoder* coder, NSString* key, T last)
    {
        const int value = coder->decodeIntForKey(key);
        return value >= 0 && static_cast<NSUInteger>(value) <= last ? static_cast<T>(value) : T {};
    }
    /// Nil where the elements make no path.
    static Ref<NSObject> initWithCoder(NSBezierPath& self, NSCoder* coder)
    {
        const auto types = decodeRow<std::uint8_t>(coder, "NSElements"_ns);
        const auto points = decodeRow<CGPoint>(coder, "NSPoints"_ns);
        const CGPoint* at = points.data();
        for (const std::uint8_t type : types) {
            if (!addStep(self.steps(), type, at, points.data() + points.size()))
                return nullptr;
        }
        self.dashes_ = decodeRow<CGFloat>(coder, "NSDashes"_ns);
        self.dashPhase_ = coder->decodeDoubleForKey("NSDashPhase"_ns);
        self.lineWidth_ = coder->decodeDoubleForKey("NSLineWidth"_ns);
        self.miterLimit_ = coder->decodeDoubleForKey("NSMiterLimit"_ns);
        self.flatness_ = coder->decodeDoubleForKey("NSFlatness"_ns);
        self.windingRule_ = choice(coder, "NSWindingRule"_ns, NSEvenOddWindingRule);
        self.lineCapStyle_ = choice(coder, "NSLineCapStyle"_ns, NSSquareLineCapStyle);
        self.lineJoinStyle_ = choice(coder, "NSLineJoinStyle"_ns, NSBevelLineJoinStyle);
        return &self;
    }

    static void table(Builder& t) { declareCoding<encode, initWithCoder>(t); }
};
BRINDLE_RECORD(NSBezierPath, Coding)

}
