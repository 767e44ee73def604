// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProperty>

#include <utility>

namespace plovik {

/// Defined only by tests, which put views into states that are hard to reach.
struct ObservedByTest;

/// A value that everyone may read and observe, and that only its owner sets. Setting an equal value notifies nobody.
/// Main thread.
template <typename Value, typename Owner>
class Observed {
public:
    Observed() = default;
    explicit Observed(Value value) : property_(std::move(value)) {}
    Observed(const Observed&) = delete;

    decltype(auto) value() const { return property_.value(); }

    /// Calls `changed` after each change for as long as the returned notifier lives.
    template <typename Function>
    [[nodiscard]] QPropertyNotifier addNotifier(Function changed) const
    {
        return property_.addNotifier(std::move(changed));
    }

private:
    friend Owner;
    friend ObservedByTest;

    Observed& operator=(Value value)
    {
        property_.setValue(std::move(value));
        return *this;
    }

    mutable QProperty<Value> property_;
};

} // namespace plovik
