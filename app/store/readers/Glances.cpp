// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/Glances.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Glance.h"
#include "GitKit/repository/ProgramGuard.h"

#include <memory>
#include <utility>

namespace plovik {

namespace {

gitkit::RepositoryGlance lookAt(const std::string& root, const std::stop_token& stop)
{
    return gitkit::glance(gitkit::GitRepository(
        root,
        {.stop = stop, .environment = {{"GIT_ASKPASS", ""}}, .guard = std::make_shared<gitkit::ProgramGuard>(root)}));
}

} // namespace

Glances::Glances(const GitAccess& git, std::function<void()> changed)
    : changed_(std::move(changed)), looking_(git, &lookAt, [this] { looked(); })
{}

std::optional<gitkit::RepositoryGlance> Glances::of(const std::string& root)
{
    const auto [place, isNew] = known_.try_emplace(root);
    if (isNew) {
        wanted_.push_back(root);
        lookAtNext();
    }
    return place->second;
}

void Glances::lookAtNext()
{
    if (looking_.isReading() || wanted_.empty())
        return;
    std::string next = std::move(wanted_.back());
    wanted_.pop_back();
    looking_.ask(std::move(next));
}

void Glances::looked()
{
    if (!looking_.failure())
        known_[*looking_.answered()] = *looking_.result();
    lookAtNext();
    changed_();
}

} // namespace plovik
