// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/BranchChoice.h"

#include "app/store/Obstacles.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Refs.h"
#include "app/ui/commands/PalettePopup.h"

#include <QCoreApplication>
#include <QWidget>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct BranchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::BranchChoice)
};

/// With more refs than these, opening each for its date takes longer than one waits for a list.
constexpr std::size_t mostDatedBranches = 5000;

const gitkit::GitRef* branchOf(const Snapshot& now, const PaletteEntry& entry)
{
    const bool isLocal = entry.kind == PaletteEntry::Kind::branch;
    const std::vector<gitkit::GitRef>& refs = isLocal ? now.branches.value() : now.remoteBranches.value();
    const auto found = std::ranges::find(refs, entry.name, &gitkit::GitRef::fullName);
    return found == refs.end() ? nullptr : &*found;
}

QString countsOf(const gitkit::Divergence& counts)
{
    QStringList parts;
    if (counts.ahead > 0)
        parts += u"↑%L1"_s.arg(counts.ahead);
    if (counts.behind > 0)
        parts += u"↓%L1"_s.arg(counts.behind);
    return parts.join(u' ');
}

PaletteRow rowOf(const RepositoryStore& store, const PaletteEntry& entry)
{
    const gitkit::GitRef* const ref = branchOf(store.snapshot(), entry);
    if (!ref)
        return {.title = entry.title, .whyNot = BranchTexts::tr("This branch is gone."), .isOffered = false};
    PaletteRow row{.title = entry.title, .isCurrent = ref->isHead};
    row.detail = entry.kind == PaletteEntry::Kind::branch ? countsOf(store.counts().of(ref->fullName))
                                                          : BranchTexts::tr("remote branch");
    if (!ref->isHead) {
        const QString inTheWay = obstacle(store.changes(), store.snapshot(), Verb::checkOut);
        row.whyNot = inTheWay.isEmpty() ? actions::damage(*ref) : inTheWay;
        row.isOffered = row.whyNot.isEmpty();
    }
    return row;
}

void checkOut(RepositoryStore& store, const PaletteEntry& entry)
{
    const gitkit::GitRef* const ref = branchOf(store.snapshot(), entry);
    if (ref && !ref->isHead)
        actions::checkout(store.actors(), *ref);
}

} // namespace

void chooseBranch(RepositoryStore& store, QWidget& button)
{
    const Snapshot& now = store.snapshot();
    PaletteRequest request{.scope = PaletteRequest::Scope::branches};
    const std::size_t count = now.branches.value().size() + now.remoteBranches.value().size();
    request.isOrderedByDate = count <= mostDatedBranches;
    const auto head = std::ranges::find_if(now.branches.value(), &gitkit::GitRef::isHead);
    if (head != now.branches.value().end())
        request.current = head->fullName;
    const PalettePopup::Actions actions{.row = [&store](const auto& entry) { return rowOf(store, entry); },
                                        .choose = [&store](const auto& entry) { checkOut(store, entry); }};
    const PalettePopup::Names names{BranchTexts::tr("Branches"), BranchTexts::tr("Filter Branches"),
                                    BranchTexts::tr("Switch to a branch")};
    (new PalettePopup(store.git(), names, std::move(request), actions, &button))->openBelow(button, count);
}

} // namespace plovik
