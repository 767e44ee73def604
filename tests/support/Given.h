// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Observed.h"

#include <utility>

namespace plovik {

struct ObservedByTest {
    template <typename Value, typename Owner, typename Given>
    static void set(const Observed<Value, Owner>& field, Given&& value)
    {
        field.property_.setValue(Value(std::forward<Given>(value)));
    }
};

/// Puts a view before a state that is hard to reach: sets an observed field in place of its owner.
template <typename Value, typename Owner, typename Given>
void given(const Observed<Value, Owner>& field, Given&& value)
{
    ObservedByTest::set(field, std::forward<Given>(value));
}

} // namespace plovik
