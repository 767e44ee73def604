// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/ResetDialog.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/store/readers/ActionPreviews.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/NewRefSheets.h"

#include <QCoreApplication>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::ResetKind;
using gitkit::ResetLoss;

struct ResetTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::ResetDialog)
};

int asCount(const std::vector<std::string>& paths) { return static_cast<int>(paths.size()); }

QString movedOf(const RepositoryStore& store)
{
    const auto& branch = store.snapshot().status.value().branch;
    return branch ? shownText(*branch) : u"HEAD"_s;
}

QString headingFor(const RepositoryStore& store)
{
    return store.snapshot().status.value().isDetached() ? ResetTexts::tr("Reset HEAD")
                                                        : ResetTexts::tr("Reset “%1”").arg(movedOf(store));
}

QString wayOf(const ResetLoss& loss, const QString& branch)
{
    if (loss.left > 0 && loss.gained > 0)
        return ResetTexts::tr("Moves %1 off %Ln commit(s) and onto others.", nullptr, loss.left).arg(branch);
    if (loss.gained > 0)
        return ResetTexts::tr("Moves %1 on by %Ln commit(s).", nullptr, loss.gained).arg(branch);
    return ResetTexts::tr("Moves %1 back by %Ln commit(s).", nullptr, loss.left).arg(branch);
}

QString wordsForKeep(const ResetLoss& loss, const QString& branch)
{
    if (!loss.refused.empty())
        return ResetTexts::tr("Not possible. Changed here and in those commits: %1.").arg(namesOfFiles(loss.refused));
    return wayOf(loss, branch) + u' ' + ResetTexts::tr("Changed files stay as they are.");
}

QString wordsForSoft(const ResetLoss& loss)
{
    return loss.gained > 0 ? ResetTexts::tr("Turns what differs between the commits into staged changes.")
                           : ResetTexts::tr("Turns %Ln commit(s) into staged changes.", nullptr, loss.left);
}

QString wordsForMixed(const ResetLoss& loss)
{
    const QString sentence =
        loss.gained > 0 ? ResetTexts::tr("Turns what differs between the commits into changes in the working tree.")
                        : ResetTexts::tr("Turns %Ln commit(s) into changes in the working tree.", nullptr, loss.left);
    return sentence + u' ' + ResetTexts::tr("What is staged stays in the files.");
}

QString wordsForHard(const ResetLoss& loss)
{
    QStringList sentences;
    if (!loss.changed.empty())
        sentences += ResetTexts::tr("Overwrites %Ln changed file(s): %1.", nullptr, asCount(loss.changed))
                         .arg(namesOfFiles(loss.changed));
    if (!loss.inTheWay.empty())
        sentences += ResetTexts::tr("Replaces %Ln file(s) that git does not know: %1.", nullptr, asCount(loss.inTheWay))
                         .arg(namesOfFiles(loss.inTheWay));
    return sentences.isEmpty() ? ResetTexts::tr("There are no changes to lose.")
                               : sentences.join(u' ') + u' ' + ResetTexts::tr("Undo brings this back.");
}

QString wordsFor(ResetKind kind, const ResetLoss& loss, const QString& branch)
{
    if (loss.hasConflicts && kind != ResetKind::hard)
        return ResetTexts::tr("Not possible while files are in conflict.");
    switch (kind) {
    case ResetKind::keep:
        return wordsForKeep(loss, branch);
    case ResetKind::soft:
        return wordsForSoft(loss);
    case ResetKind::mixed:
        return wordsForMixed(loss);
    case ResetKind::hard:
        return wordsForHard(loss);
    }
    return {};
}

bool isPossible(ResetKind kind, const ResetLoss& loss)
{
    return kind == ResetKind::hard || (!loss.hasConflicts && (kind != ResetKind::keep || loss.refused.empty()));
}

} // namespace

ResetDialog::ResetDialog(RepositoryStore& store, ResetSheet sheet, QWidget* parent)
    : Sheet(store, headingFor(store), tr("Reset"), parent), sheet_(std::move(sheet)),
      loss_(store.git(), &readResetLoss, [this] { showLoss(); }),
      notifier_(store.snapshot().generation.addNotifier([this] { loss_.askAgain(sheet_.target); }))
{
    fields().addWidget(dialogParts::secondaryText(tr("To %1").arg(describedCommit(store, sheet_.target)), this));
    rows_ = {makeRow(ResetKind::keep, tr("Keep my changes")),
             makeRow(ResetKind::soft, tr("Keep those commits’ changes, too, staged")),
             makeRow(ResetKind::mixed, tr("Keep those commits’ changes, too, unstaged")),
             makeRow(ResetKind::hard, tr("Throw changes away"))};
    rows_[0].shown.button->setChecked(true);
    rows_[0].shown.button->setFocus();
    loss_.ask(sheet_.target);
    validate();
}

ResetDialog::Row ResetDialog::makeRow(ResetKind kind, const QString& title)
{
    const Row row{kind, dialogParts::choiceRow(title, fields(), this)};
    connect(row.shown.button, &QRadioButton::toggled, this, &ResetDialog::validate);
    return row;
}

void ResetDialog::showLoss()
{
    if (const std::optional<ResetLoss>& loss = loss_.result()) {
        for (const Row& row : rows_) {
            row.shown.say(wordsFor(row.kind, *loss, movedOf(store())));
            row.shown.button->setEnabled(isPossible(row.kind, *loss));
        }
        dialogParts::fit(*this);
    }
    validate();
}

const ResetDialog::Row* ResetDialog::chosen() const
{
    const auto row =
        std::ranges::find_if(rows_, [](const Row& one) { return one.shown.button && one.shown.button->isChecked(); });
    return row == rows_.end() ? nullptr : &*row;
}

QString ResetDialog::problem() const
{
    if (loss_.failure())
        return loss_.failure()->message;
    return obstacle(store().changes(), store().snapshot(), Verb::reset);
}

QString ResetDialog::note() const
{
    const std::optional<ResetLoss>& loss = loss_.answer();
    if (!loss || loss->onlyHere == 0)
        return {};
    return tr("No other branch or tag leads to %Ln commit(s). Undo knows the way back for 30 days.", nullptr,
              loss->onlyHere);
}

bool ResetDialog::isComplete() const
{
    const Row* const row = chosen();
    return row && loss_.answer() && isPossible(row->kind, *loss_.answer());
}

void ResetDialog::submit()
{
    actions::reset(store().actors(), {.kind = chosen()->kind, .head = loss_.answer()->head, .target = sheet_.target});
}

} // namespace plovik

#include "moc_ResetDialog.cpp"
