// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/BranchSettings.h"

#include "GitKit/repository/Branches.h"
#include "GitKit/repository/GitRepository.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <atomic>
#include <memory>

namespace plovik::actions {

using gitkit::GitRepository;

namespace {

struct BranchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Refs)
};

} // namespace

void renameBranch(Actors actors, const std::string& branch, const std::string& newName,
                  const std::function<void()>& then)
{
    actors.changes.run({.verb = Verb::renameBranch,
                        .title = BranchTexts::tr("Renaming branch…"),
                        .operation = [=](const GitRepository& repo) { gitkit::renameBranch(repo, branch, newName); },
                        .undo = undoable::renameBranch(branch, newName),
                        .succeeded =
                            [&window = actors.window, branch, newName, then] {
                                if (then)
                                    then();
                                if (window.selection.value() == SidebarItem::ref("refs/heads/" + branch))
                                    window.follow(SidebarItem::ref("refs/heads/" + newName));
                            }});
}

void setUpstream(Actors actors, const std::string& branch, const std::optional<std::string>& upstream,
                 const std::function<void()>& then)
{
    const auto kind = std::make_shared<std::atomic<gitkit::UpstreamKind>>(gitkit::UpstreamKind::followed);
    actors.changes.run(
        {.verb = Verb::setUpstream,
         .title = BranchTexts::tr("Setting the upstream…"),
         .operation =
             [=](const GitRepository& repo) {
                 if (upstream)
                     *kind = gitkit::setUpstream(repo, branch, *upstream);
                 else
                     gitkit::unsetUpstream(repo, branch);
             },
         .undo = undoable::setUpstream(branch),
         .succeeded =
             [&window = actors.window, branch, kind, then] {
                 if (then)
                     then();
                 if (*kind == gitkit::UpstreamKind::unknown)
                     window.tell(
                         BranchTexts::tr("%1 is pulled from there from now on. How far it is ahead or behind is not "
                                         "known, because that branch is not fetched.")
                             .arg(inQuotes(branch)));
             }});
}

} // namespace plovik::actions
