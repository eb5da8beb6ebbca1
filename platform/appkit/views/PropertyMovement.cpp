// SPDX-License-Identifier: Apache-2.0
#include "PropertyMovementPrivate.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "foundation/ShortVector.h"
#include "quartz/layers/AllServedPrivate.h"
#include "quartz/layers/FrameClock.h"
#include "quartz/layers/MediaTiming.h"
#include "quartz/layers/Transactions.h"

namespace brindle {

namespace {

    /// One property on its way.
    struct Movement {
        Ref<NSObject> object;
        const MovingProperty* property = nullptr;
        MovingNumbers from {};
        MovingNumbers to {};
        double duration = 0;
        Ref<CAMediaTimingFunction> function;
        std::vector<std::shared_ptr<TransactionGroup>> groups;
        double start = 0;
        bool started = false;

        bool isOf(const NSObject& other, std::string_view name) const
        {
            return object == &other && property->name == name;
        }
        bool isOver(double now) const { return now - start >= duration - quartz::kTimeTolerance; }
        /// Answers when it wants to be shown after now; infinity at its end.
        double next(double now) const
        {
            return isOver(now) ? std::numeric_limits<double>::infinity()
                               : quartz::nextFrame(now, start + duration);
        }
        void show(double now) const
        {
            if (isOver(now)) {
                property->write(*object, to);
                return;
            }
            const double progress
                = CAMediaTimingFunction::progress(function.get(), (now - start) / duration);
            MovingNumbers between {};
            for (std::size_t i = 0; i < between.size(); ++i)
                between[i] = from[i] + (to[i] - from[i]) * progress;
            property->write(*object, between);
        }
    };
    using Movements = std::vector<std::shared_ptr<Movement>>;
    /// Those of a moment: what a movement sets may tell others, who change the list.
    using Present = ShortVector<std::shared_ptr<Movement>, 16>;

    class MovingProperties : public quartz::FrameClient {
    public:
        static std::shared_ptr<MovingProperties>& shared()
        {
            static auto* const all
                = new std::shared_ptr<MovingProperties>(std::make_shared<MovingProperties>());
            return *all;
        }

        void add(std::shared_ptr<Movement> movement)
        {
            movements_.push_back(std::move(movement));
            if (holds_ == 0)
                start();
        }
        /// Takes a movement away, of which each property has one at most; the property stays where it is. The groups
        /// of the one that is answered still count it.
        std::shared_ptr<Movement> take(const NSObject& object, std::string_view name)
        {
            const auto found = std::ranges::find_if(
                movements_, [&](const auto& movement) { return movement->isOf(object, name); });
            if (found == movements_.end())
                return nullptr;
            std::shared_ptr<Movement> taken = std::move(*found);
            movements_.erase(found);
            return taken;
        }
        void hold() { ++holds_; }
        bool letGo()
        {
            if (holds_ == 0)
                return false;
            if (--holds_ == 0)
                start();
            return true;
        }

        double frame(double now) override
        {
            constexpr double kNever = std::numeric_limits<double>::infinity();
            double next = kNever;
            AllServed all;
            const Present present(movements_.begin(), movements_.end());
            for (const std::shared_ptr<Movement>& movement : present) {
                if (!movement->started || !isPresent(movement))
                    continue;
                const double wish = movement->next(now);
                all.serve([&] { movement->show(now); });
                if (wish == kNever)
                    all.serve([&] { end(movement); });
                next = std::min(next, wish);
            }
            all.end();
            return next;
        }

    private:
        void start()
        {
            const double now = CACurrentMediaTime();
            for (const std::shared_ptr<Movement>& movement : movements_) {
                if (movement->started)
                    continue;
                movement->started = true;
                movement->start = now;
                movement->from = movement->property->read(*movement->object);
            }
            if (!movements_.empty())
                quartz::runFrames(shared());
        }
        bool isPresent(const std::shared_ptr<Movement>& movement) const
        {
            return std::find(movements_.begin(), movements_.end(), movement) != movements_.end();
        }
        void end(const std::shared_ptr<Movement>& movement)
        {
            if (std::erase(movements_, movement) > 0)
                Transactions::leave(movement->groups);
        }

        Movements movements_;
        std::size_t holds_ = 0;
    };

}

void PropertyMovements::move(
    NSObject& object, const MovingProperty& property, const MovingNumbers& to)
{
    const TransactionGroup& group = Transactions::current();
    const double duration = group.duration;
    auto movement = std::make_shared<Movement>();
    movement->object = &object;
    movement->property = &property;
    movement->to = to;
    movement->duration = duration;
    movement->function = group.function
        ? group.function
        : CAMediaTimingFunction::cls().functionWithName(kCAMediaTimingFunctionDefault);
    const Ref<NSObject> alive(&object);
    // Who waits for the end of the one before may begin another one, which takes the place of this one.
    const std::shared_ptr<Movement> before
        = MovingProperties::shared()->take(object, property.name);
    AllServed all;
    all.serve([&] {
        if (!(duration > 0))
            return property.write(object, to);
        movement->groups = Transactions::enter();
        MovingProperties::shared()->add(std::move(movement));
    });
    if (before)
        all.serve([&] { Transactions::leave(before->groups); });
    all.end();
}

void PropertyMovements::stop(NSObject& object, std::string_view name)
{
    constexpr int kMost = 2; // who waits for the end may move it again, each time
    for (int i = 0; i < kMost; ++i) {
        const std::shared_ptr<Movement> stopped = MovingProperties::shared()->take(object, name);
        if (!stopped)
            return;
        Transactions::leave(stopped->groups);
    }
}

void PropertyMovements::hold() { MovingProperties::shared()->hold(); }

bool PropertyMovements::letGo() { return MovingProperties::shared()->letGo(); }

}
