// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/UpstreamChoice.h"

#include "app/store/Obstacles.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/store/actions/BranchSettings.h"
#include "app/ui/commands/PalettePopup.h"

#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

struct UpstreamTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::UpstreamChoice)
};

PaletteRow upstreamRow(const RepositoryStore& store, const std::string& branch, const PaletteEntry& entry)
{
    const std::vector<gitkit::GitRef>& branches = store.snapshot().branches.value();
    const auto followed = std::ranges::find(branches, branch, &gitkit::GitRef::name);
    PaletteRow row{.title = entry.title};
    row.isCurrent = followed != branches.end() && followed->upstreamRef == entry.name;
    row.whyNot = obstacle(store.changes(), store.snapshot(), Verb::setUpstream);
    row.isOffered = row.whyNot.isEmpty();
    return row;
}

} // namespace

void chooseUpstream(RepositoryStore& store, const std::string& branch, QWidget& window)
{
    PaletteRequest request{.scope = PaletteRequest::Scope::remoteBranches, .isOrderedByDate = false};
    const PalettePopup::Actions actions{
        .row = [&store, branch](const PaletteEntry& entry) { return upstreamRow(store, branch, entry); },
        .choose = [&store,
                   branch](const PaletteEntry& entry) { actions::setUpstream(store.actors(), branch, entry.name); }};
    const PalettePopup::Names names{UpstreamTexts::tr("Remote Branches"), UpstreamTexts::tr("Filter Remote Branches"),
                                    UpstreamTexts::tr("Upstream of %1").arg(inQuotes(branch))};
    (new PalettePopup(store.git(), names, std::move(request), actions, &window))->openOver(window);
}

} // namespace plovik
