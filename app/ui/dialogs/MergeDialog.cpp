// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/MergeDialog.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Merges.h"
#include "app/store/readers/ActionPreviews.h"

#include <QCoreApplication>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::MergeKind;
using gitkit::MergePreview;

struct MergeTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::MergeDialog)
};

QString targetOf(const RepositoryStore& store)
{
    const auto& branch = store.snapshot().status.value().branch;
    return branch ? inQuotes(*branch) : u"HEAD"_s;
}

QString shortNameOf(const std::string& ref)
{
    for (const std::string_view prefix : {"refs/heads/", "refs/remotes/", "refs/tags/"}) {
        if (ref.starts_with(prefix))
            return shownText(std::string_view(ref).substr(prefix.size()));
    }
    return shownText(ref);
}

QString wordsForNormal(const MergePreview& preview)
{
    if (preview.own > 0)
        return preview.alwaysFastForward ? MergeTexts::tr("Git is set up to refuse this (merge.ff).")
                                         : MergeTexts::tr("Makes a merge commit.");
    return preview.alwaysMergeCommit ? MergeTexts::tr("Makes a merge commit, as git is set up (merge.ff).")
                                     : MergeTexts::tr("Fast-forwards: no merge commit is needed.");
}

QString wordsFor(MergeKind kind, const MergePreview& preview)
{
    switch (kind) {
    case MergeKind::normal:
        return wordsForNormal(preview);
    case MergeKind::mergeCommit:
        return MergeTexts::tr("The history shows that it was a branch.");
    case MergeKind::fastForwardOnly:
        return preview.own > 0
                   ? MergeTexts::tr("Not possible while it lacks %Ln commit(s) of here.", nullptr, preview.own)
                   : MergeTexts::tr("Makes no merge commit.");
    case MergeKind::squash:
        return MergeTexts::tr(
            "Stages what it changes, for one commit that you write. Git does not know then that it was "
            "merged.");
    }
    return {};
}

bool isPossible(MergeKind kind, const MergePreview& preview)
{
    return kind != MergeKind::fastForwardOnly || preview.own == 0;
}

QString outcomeOf(const MergePreview& preview)
{
    switch (preview.outcome) {
    case MergePreview::Outcome::unknown:
        return MergeTexts::tr("Brings %Ln commit(s).", nullptr, preview.commits);
    case MergePreview::Outcome::clean:
        return MergeTexts::tr("%Ln commit(s), merges cleanly.", nullptr, preview.commits);
    case MergePreview::Outcome::conflicts:
        break;
    }
    const QString conflicts = MergeTexts::tr("%Ln commit(s), conflicts in %1.", nullptr, preview.commits)
                                  .arg(namesOfFiles(preview.conflicts));
    return preview.remembersResolutions
               ? conflicts + u' ' + MergeTexts::tr("Git may remember how you resolved them before.")
               : conflicts;
}

} // namespace

MergeDialog::MergeDialog(RepositoryStore& store, MergeSheet sheet, QWidget* parent)
    : Sheet(store, tr("Merge %1 into %2").arg(u'“' + shortNameOf(sheet.ref) + u'”', targetOf(store)), tr("Merge"),
            parent),
      sheet_(std::move(sheet)), preview_(store.git(), &readMergePreview, [this] { showPreview(); }),
      notifier_(store.snapshot().branches.addNotifier([this] { preview_.askAgain(sheet_.ref); }))
{
    rows_ = {makeRow(MergeKind::normal, tr("Merge")), makeRow(MergeKind::mergeCommit, tr("Always with a merge commit")),
             makeRow(MergeKind::fastForwardOnly, tr("Only fast-forward")), makeRow(MergeKind::squash, tr("Squash"))};
    rows_[0].shown.button->setChecked(true);
    rows_[0].shown.button->setFocus();
    preview_.ask(sheet_.ref);
    validate();
}

MergeDialog::Row MergeDialog::makeRow(MergeKind kind, const QString& title)
{
    const Row row{kind, dialogParts::choiceRow(title, fields(), this)};
    connect(row.shown.button, &QRadioButton::toggled, this, &MergeDialog::validate);
    return row;
}

void MergeDialog::showPreview()
{
    if (const std::optional<MergePreview>& found = preview_.answer()) {
        for (const Row& row : rows_) {
            row.shown.say(wordsFor(row.kind, *found));
            row.shown.button->setEnabled(isPossible(row.kind, *found));
        }
        dialogParts::fit(*this);
    }
    validate();
}

const MergeDialog::Row* MergeDialog::chosen() const
{
    const auto row =
        std::ranges::find_if(rows_, [](const Row& one) { return one.shown.button && one.shown.button->isChecked(); });
    return row == rows_.end() ? nullptr : &*row;
}

const gitkit::GitRef* MergeDialog::ref() const
{
    const Snapshot& now = store().snapshot();
    for (const auto* const refs : {&now.branches.value(), &now.remoteBranches.value(), &now.tags.value()}) {
        const auto found = std::ranges::find(*refs, sheet_.ref, &gitkit::GitRef::fullName);
        if (found != refs->end())
            return &*found;
    }
    return nullptr;
}

QString MergeDialog::problem() const
{
    if (!ref())
        return tr("%1 is not there any more.").arg(shortNameOf(sheet_.ref));
    if (preview_.failure())
        return preview_.failure()->message;
    return obstacle(store().changes(), store().snapshot(), Verb::merge);
}

QString MergeDialog::note() const
{
    const std::optional<MergePreview>& found = preview_.answer();
    if (!found)
        return {};
    return found->commits == 0 ? tr("All of it is merged already.") : outcomeOf(*found);
}

bool MergeDialog::isComplete() const
{
    const Row* const row = chosen();
    const std::optional<MergePreview>& found = preview_.answer();
    return row && found && found->commits > 0 && isPossible(row->kind, *found);
}

void MergeDialog::submit()
{
    if (const gitkit::GitRef* const merged = ref())
        actions::merge(store().actors(), *merged, chosen()->kind);
}

} // namespace plovik

#include "moc_MergeDialog.cpp"
