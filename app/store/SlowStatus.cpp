// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/SlowStatus.h"

#include "app/store/GitAccess.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"

#include <chrono>
#include <utility>

namespace plovik {

namespace {

constexpr std::chrono::seconds unsaidTime{5};

} // namespace

SlowStatus::SlowStatus(const GitAccess& git, WindowState& window, Snapshot& snapshot) : window_(window)
{
    snapshot.follow({.beforeStatus =
                         [this, &git] {
                             untilSaid_ = git.worker().after(unsaidTime, [this] {
                                 said_ = tr("Git is still reading the changed files. A slow disk or a filter program "
                                            "keeps it waiting, and what is shown may be old.");
                                 window_.tell(said_);
                             });
                         },
                     .afterStatus = [this] { ended(); }});
}

void SlowStatus::ended()
{
    untilSaid_.reset();
    const QString said = std::exchange(said_, QString());
    if (!said.isEmpty() && window_.notice.value() == said)
        window_.clearNotice();
}

} // namespace plovik
