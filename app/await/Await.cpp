// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Await.h"

#include "app/await/Stop.h"

#include <cstdio>

namespace plovik {

namespace {

QCoro::Task<> reportingFailures(QCoro::Task<> task)
{
    try {
        co_await task;
    } catch (const OwnerGone&) { // NOLINT(bugprone-empty-catch): the owner was destroyed, so there is nothing to report
    } catch (const Cancelled&) { // NOLINT(bugprone-empty-catch): the end was requested, so there is nothing to report
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "plovik: a background task failed: %s\n", failure.what());
    }
}

} // namespace

void launch(QCoro::Task<> task) { reportingFailures(std::move(task)); }

} // namespace plovik
