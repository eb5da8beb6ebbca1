// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "AnimationPrivate.h"
#include "foundation/NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr double kFlatness = 0.1; // points

    /// Answers the point of a path at a part of its length.
    CGPoint pointOnPath(const quartz::PathData& path, double part)
    {
        const quartz::PathData lines = path.flattened(kFlatness);
        std::vector<CGPoint> points;
        std::vector<double> reached; // lengths up to each point; a move adds nothing
        CGPoint start {};
        const auto add = [&](CGPoint to, bool draws) {
            const double step = draws && !points.empty()
                ? std::hypot(to.x - points.back().x, to.y - points.back().y)
                : 0;
            reached.push_back((reached.empty() ? 0 : reached.back()) + step);
            points.push_back(to);
        };
        lines.each([&](CGPathElementType type, const CGPoint* p) {
            if (type == kCGPathElementMoveToPoint)
                start = p[0];
            add(type == kCGPathElementCloseSubpath ? start : p[0],
                type != kCGPathElementMoveToPoint);
        });
        if (points.empty())
            return {};
        const double wanted = reached.back() * std::clamp(part, 0.0, 1.0);
        const auto found = std::lower_bound(reached.begin(), reached.end(), wanted);
        const auto i = static_cast<std::size_t>(found - reached.begin());
        if (i == 0 || i >= points.size() || !(reached[i] > reached[i - 1]))
            return points[std::min(i, points.size() - 1)];
        const double along = (wanted - reached[i - 1]) / (reached[i] - reached[i - 1]);
        return { points[i - 1].x + (points[i].x - points[i - 1].x) * along,
            points[i - 1].y + (points[i].y - points[i - 1].y) * along };
    }

    using ValueList = std::vector<Ref<NSObject>>;

    ValueList valuesIn(const Ref<NSArray>& list)
    {
        ValueList values;
        for (NSObject* value : each<NSObject>(list))
            values.emplace_back(value);
        return values;
    }

    std::vector<double> evenTimes(std::size_t count)
    {
        std::vector<double> times(count);
        for (std::size_t i = 0; i < count; ++i)
            times[i] = static_cast<double>(i) / static_cast<double>(count - 1);
        return times;
    }

    /// Answers times in the measure of the ways between the values.
    std::vector<double> pacedTimes(const ValueList& values)
    {
        std::vector<double> times { 0 };
        for (std::size_t i = 1; i < values.size(); ++i)
            times.push_back(times.back() + quartz::distance(values[i - 1].get(), values[i].get()));
        if (!(times.back() > 0))
            return evenTimes(values.size());
        for (double& time : times)
            time /= times.back();
        return times;
    }

}

template <> struct CAKeyframeAnimation::Methods<struct Basics> {

    static bool isMode(const CAKeyframeAnimation& self, NSString* mode)
    {
        return self.calculationMode_ && self.calculationMode_->isEqual(mode);
    }
    static std::vector<double> timesOf(const CAKeyframeAnimation& self, const ValueList& values)
    {
        if (isMode(self, kCAAnimationPaced))
            return pacedTimes(values);
        const bool jumps = isMode(self, kCAAnimationDiscrete);
        const std::size_t needed = values.size() + (jumps ? 1 : 0);
        std::vector<double> times;
        for (NSObject* time : each<NSObject>(self.keyTimes_)) {
            const double next
                = time->isKindOfClass(NSNumber::cls()) ? time->send<"doubleValue", double>() : 0;
            times.push_back(std::max(next, times.empty() ? 0 : times.back()));
        }
        if (jumps && times.size() == values.size())
            times.push_back(1);
        return times.size() == needed ? times : evenTimes(needed);
    }
    static Ref<NSObject> valueAt(CAKeyframeAnimation& self, double progress, NSObject*)
    {
        if (self.path_)
            return NSValue::cls().valueWithPoint(pointOnPath(self.path_->data(), progress));
        const ValueList values = valuesIn(self.values_);
        if (values.size() < 2)
            return values.empty() ? Ref<NSObject>() : values.front();
        const std::vector<double> times = timesOf(self, values);
        const auto after = std::upper_bound(times.begin(), times.end(), progress);
        const auto past = static_cast<std::size_t>(after - times.begin());
        if (isMode(self, kCAAnimationDiscrete))
            return values[std::clamp<std::size_t>(past, 1, values.size()) - 1];
        if (past == 0)
            return values.front();
        if (past >= values.size())
            return values.back();
        const double part = (progress - times[past - 1]) / (times[past] - times[past - 1]);
        const NSUInteger curves = self.timingFunctions_ ? self.timingFunctions_->count() : 0;
        const Ref<NSObject> curve
            = past - 1 < curves ? self.timingFunctions_->objectAtIndex(past - 1) : nullptr;
        const bool isCurve = curve && curve->isKindOfClass(CAMediaTimingFunction::cls());
        return quartz::mix(values[past - 1].get(), values[past].get(),
            CAMediaTimingFunction::progress(
                isCurve ? static_cast<CAMediaTimingFunction*>(curve.get()) : nullptr, part));
    }

    static Ref<NSObject> copyWithZone(CAKeyframeAnimation& self, void* zone)
    {
        const Ref<NSObject> copy
            = super<CAKeyframeAnimation, "copyWithZone:", Ref<NSObject>>(self, zone);
        if (copy) {
            auto& to = static_cast<CAKeyframeAnimation&>(*copy);
            to.values_ = self.values_;
            to.keyTimes_ = self.keyTimes_;
            to.timingFunctions_ = self.timingFunctions_;
            to.calculationMode_ = self.calculationMode_;
            to.path_ = self.path_;
        }
        return copy;
    }
    static Ref<class CGPath> path(CAKeyframeAnimation& self) { return self.path_; }
    static void setPath(CAKeyframeAnimation& self, class CGPath* path)
    {
        self.path_ = Ref<class CGPath>::adopt(CGPathCreateCopy(path));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "valueAtProgress:base:", imp<valueAt> },
            { "path", imp<path> },
            { "setPath:", imp<setPath> },
            { "copyWithZone:", imp<copyWithZone> },
        });
        t.properties({
            property<&CAKeyframeAnimation::values_>("values", copied, nonatomic),
            property<&CAKeyframeAnimation::keyTimes_>("keyTimes", copied, nonatomic),
            property<&CAKeyframeAnimation::timingFunctions_>("timingFunctions", copied, nonatomic),
            property<&CAKeyframeAnimation::calculationMode_>("calculationMode", copied, nonatomic),
            computed<Ref<class CGPath>>("path", nonatomic),
        });
    }
};
BRINDLE_RECORD(CAKeyframeAnimation, Basics)

}
