// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "tests/support/Given.h"

namespace plovik::test {

/// Puts views before a store in which a change runs, or none.
inline void givenRunning(const RepositoryStore& store, std::optional<Verb> verb)
{
    std::vector<RunningChange> running;
    if (verb)
        running.push_back({1, *verb, QStringLiteral("Something…")});
    given(store.changes().activity, verb ? std::optional(running.front().title) : std::nullopt);
    given(store.changes().running, running);
}

} // namespace plovik::test
