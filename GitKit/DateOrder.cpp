// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/DateOrder.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace gitkit {

namespace {

std::uint64_t keyOf(const std::string& hash)
{
    const std::uint64_t key = std::hash<std::string>{}(hash);
    return key == 0 ? 1 : key;
}

/// Ranks of commits that had children begin here.
constexpr std::uint64_t beyondTips = 1ULL << 62;

} // namespace

/// Returns where the key is, or the free place where it belongs.
std::size_t HashSet::place(std::uint64_t key) const
{
    const std::size_t mask = keys_.size() - 1;
    std::size_t place = key & mask;
    while (keys_[place] != 0 && keys_[place] != key)
        place = (place + 1) & mask;
    return place;
}

void HashSet::insert(const std::string& hash)
{
    if (2 * (count_ + 1) > keys_.size()) {
        std::vector<std::uint64_t> old(std::max<std::size_t>(1024, 2 * keys_.size()));
        old.swap(keys_);
        for (const std::uint64_t key : old) {
            if (key != 0)
                keys_[place(key)] = key;
        }
    }
    std::uint64_t& found = keys_[place(keyOf(hash))];
    count_ += found == 0 ? 1 : 0;
    found = keyOf(hash);
}

bool HashSet::contains(const std::string& hash) const { return !keys_.empty() && keys_[place(keyOf(hash))] != 0; }

std::size_t DateOrder::freeSlot()
{
    if (freeSlots_.empty()) {
        slots_.emplace_back();
        return slots_.size() - 1;
    }
    const std::size_t slot = freeSlots_.back();
    freeSlots_.pop_back();
    return slot;
}

void DateOrder::makeReady(std::size_t slot, std::uint64_t rank)
{
    Waiting& waiting = slots_[slot];
    if (waiting.children > 0 || waiting.isReady)
        return;
    waiting.isReady = true;
    ready_.push_back({waiting.date, rank, slot});
    std::push_heap(ready_.begin(), ready_.end());
}

void DateOrder::add(Commit commit, Date committed)
{
    for (const std::string& parent : commit.parents) {
        isWrong_ = isWrong_ || handedOn_.contains(parent);
        const auto waiting = waiting_.find(parent);
        if (waiting != waiting_.end())
            ++slots_[waiting->second].children;
        else
            ++children_[parent];
    }
    int children = 0;
    if (const auto known = children_.extract(commit.hash))
        children = known.mapped();
    const std::size_t slot = freeSlot();
    waiting_.emplace(commit.hash, slot);
    slots_[slot] = {std::move(commit), first_ == First::newest ? committed.time_since_epoch().count() : 0, arrivals_++,
                    children, false};
    makeReady(slot, slots_[slot].arrival);
}

/// Called for a parent of a commit that is handed on.
void DateOrder::release(const std::string& parent)
{
    if (const auto waiting = waiting_.find(parent); waiting != waiting_.end()) {
        --slots_[waiting->second].children;
        const bool byArrival = first_ == First::earliest;
        makeReady(waiting->second, byArrival ? slots_[waiting->second].arrival : beyondTips + releases_++);
    } else if (const auto known = children_.find(parent); known != children_.end() && --known->second <= 0) {
        children_.erase(known);
    }
}

std::optional<Commit> DateOrder::take()
{
    while (waiting_.size() > (isFinished_ ? 0 : window_)) {
        if (ready_.empty())
            return std::nullopt; // only where replaced commits make a circle
        std::pop_heap(ready_.begin(), ready_.end());
        const std::size_t slot = ready_.back().slot;
        ready_.pop_back();
        Waiting& next = slots_[slot];
        next.isReady = false;
        if (next.children > 0)
            continue;
        Commit commit = std::move(next.commit);
        waiting_.erase(commit.hash);
        freeSlots_.push_back(slot);
        handedOn_.insert(commit.hash);
        for (const std::string& parent : commit.parents)
            release(parent);
        return commit;
    }
    return std::nullopt;
}

} // namespace gitkit
