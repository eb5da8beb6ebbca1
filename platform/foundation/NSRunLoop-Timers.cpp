// SPDX-License-Identifier: Apache-2.0
#include "RunLoopPrivate.h"

namespace brindle {

// ---- the heap: four children a node, entries know their places

void TimerLane::put(std::size_t place, Slot slot)
{
    heap_[place] = slot;
    slot.entry->place = place;
}

void TimerLane::rise(std::size_t place, Slot slot)
{
    while (place > 0) {
        const std::size_t parent = (place - 1) / 4;
        if (!slot.before(heap_[parent]))
            break;
        put(place, heap_[parent]);
        place = parent;
    }
    put(place, slot);
}

void TimerLane::sink(std::size_t place, Slot slot)
{
    for (;;) {
        const std::size_t begin = place * 4 + 1;
        if (begin >= heap_.size())
            break;
        const std::size_t end = std::min(begin + 4, heap_.size());
        std::size_t least = begin;
        for (std::size_t child = begin + 1; child < end; ++child) {
            if (heap_[child].before(heap_[least]))
                least = child;
        }
        if (!heap_[least].before(slot))
            break;
        put(place, heap_[least]);
        place = least;
    }
    put(place, slot);
}

void TimerLane::add(Scheduled& entry)
{
    const Slot slot { entry.due, &entry };
    heap_.push_back(slot);
    entry.lane = this;
    rise(heap_.size() - 1, slot);
}

void TimerLane::remove(Scheduled& entry)
{
    const Slot last = heap_.back();
    heap_.pop_back();
    entry.lane = nullptr;
    if (last.entry == &entry)
        return;
    const std::size_t place = entry.place;
    if (place > 0 && last.before(heap_[(place - 1) / 4]))
        rise(place, last);
    else
        sink(place, last);
}

void TimerLane::movedAmongOthers(Scheduled& entry)
{
    const Slot slot { entry.due, &entry };
    if (slot.before(heap_[entry.place]))
        rise(entry.place, slot);
    else
        sink(entry.place, slot);
}

// ---- the loop's lanes, one for each set of modes in use

TimerLane& RunLoopCore::laneFor(Modes modes)
{
    for (const auto& lane : lanes_) {
        if (lane->modes == modes)
            return *lane;
    }
    return *lanes_.emplace_back(std::make_unique<TimerLane>(modes));
}

void RunLoopCore::schedule(Scheduled& entry, Modes modes, std::int64_t due)
{
    entry.due = std::max(due, Clock::now());
    entry.order = ++order_;
    laneFor(modes).add(entry);
    if (outside_)
        inbox_->wake(Inbox::Wake::look);
}

void RunLoopCore::unschedule(Scheduled& entry)
{
    if (entry.lane)
        entry.lane->remove(entry);
}

std::int64_t RunLoopCore::nextDue(Modes mode) const
{
    std::int64_t due = kNever;
    for (const auto& lane : lanes_) {
        if (lane->modes & mode && lane->first())
            due = std::min(due, lane->first()->due);
    }
    return due;
}

RunLoopCore::Done RunLoopCore::fireDue(Modes mode, std::uint64_t since)
{
    Done done;
    std::int64_t now = 0;
    const std::uint64_t last = order_; // what is scheduled meanwhile waits for a later turn
    for (;;) {
        Scheduled* next = nullptr;
        for (std::size_t i = 0; i < lanes_.size(); ++i) {
            Scheduled* const first = lanes_[i]->modes & mode ? lanes_[i]->first() : nullptr;
            if (first
                && (!next || first->due < next->due
                    || (first->due == next->due && first->order < next->order)))
                next = first;
        }
        if (next && now == 0)
            now = Clock::now();
        if (!next || next->due > now || next->order > last)
            return done;
        next->lane->remove(*next);
        done.anything = true;
        done.earlier |= next->order <= since;
        next->fire(next);
    }
}

}
