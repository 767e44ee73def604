// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RebaseDialog.h"

#include "app/store/RewritingWords.h"
#include "app/store/ShownText.h"
#include "app/store/readers/RewriteReaders.h"
#include "app/ui/dialogs/DialogParts.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::GitRef;
using gitkit::RebaseProposal;
using gitkit::RewriteMark;
using gitkit::RewriteOutcome;
using gitkit::RewriteStep;
using Result = RewriteOutcome::Result;

struct RebaseTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::RebaseDialog)
};

constexpr int targetsHeight = 132;
constexpr int commitsHeight = 132;
constexpr int mostTargets = 200;

QString rebasedBranch(const RepositoryStore& store, const RebaseSheet& sheet)
{
    if (!sheet.branch.empty())
        return inQuotes(withoutBranchPrefix(sheet.branch));
    const auto& current = store.snapshot().status.value().branch;
    return current ? inQuotes(*current) : u"HEAD"_s;
}

QString rebaseTitle(const RepositoryStore& store, const RebaseSheet& sheet)
{
    return sheet.from.empty() ? RebaseTexts::tr("Rebase %1 onto…").arg(rebasedBranch(store, sheet))
                              : RebaseTexts::tr("Rebase %1 from Here onto…").arg(rebasedBranch(store, sheet));
}

QString subjectIn(const RebaseProposal& found, const std::string& commit)
{
    const auto own = std::ranges::find(found.commits, commit, &gitkit::MovableCommit::hash);
    return own == found.commits.end() ? QString() : inQuotes(own->message.substr(0, own->message.find('\n')));
}

/// Says what becomes of a commit.
QString lineOfStep(const RebaseProposal& found, std::size_t index)
{
    const RewriteStep& step = found.plan.steps[index];
    const RewriteMark& mark = found.outcome.marks[index];
    const QString subject = subjectIn(found, step.commit);
    if (mark.kind == RewriteMark::Kind::conflicts)
        return RebaseTexts::tr("Conflicts in %1: %2", "files, subject").arg(namesOfFiles(mark.paths), subject);
    if (step.act == RewriteStep::Act::drop)
        return RebaseTexts::tr("Is there already: %1").arg(subject);
    if (step.act == RewriteStep::Act::squash || step.act == RewriteStep::Act::fixUp)
        return RebaseTexts::tr("Goes into the one above: %1").arg(subject);
    return mark.kind == RewriteMark::Kind::unknown ? RebaseTexts::tr("Not known yet: %1").arg(subject)
                                                   : RebaseTexts::tr("Moves: %1").arg(subject);
}

QString rebaseOutcome(const RebaseProposal& found, const QString& onto)
{
    const auto dropped = std::ranges::count(found.plan.steps, RewriteStep::Act::drop, &RewriteStep::act);
    const auto count = static_cast<int>(found.plan.steps.size()) - static_cast<int>(dropped);
    if (count == 0)
        return RebaseTexts::tr("All of it is there already: the branch goes to %1.").arg(onto);
    switch (found.outcome.result) {
    case Result::clean:
        return RebaseTexts::tr("Puts %Ln commit(s) on top of %1, no conflicts.", nullptr, count).arg(onto);
    case Result::conflicts:
        return RebaseTexts::tr("Puts %Ln commit(s) on top of %1, and stops where they conflict.", nullptr, count)
            .arg(onto);
    case Result::unknown:
        break;
    }
    return RebaseTexts::tr("Puts %Ln commit(s) on top of %1. Conflicts show when it runs.", nullptr, count).arg(onto);
}

} // namespace

RebaseDialog::RebaseDialog(RepositoryStore& store, RebaseSheet sheet, QWidget* parent)
    : Sheet(store, rebaseTitle(store, sheet), tr("Rebase"), parent), sheet_(std::move(sheet)),
      search_(new QLineEdit(this)), targets_(new QListWidget(this)), squash_(new QCheckBox(this)),
      commits_(new QListWidget(this)),
      reading_(
          store.git(), &readRebase, [this] { showProposal(); }, Worker::Lane::longRead),
      notifier_(store.snapshot().branches.addNotifier([this] { reading_.askAgain(question()); }))
{
    layOut();
    connect(search_, &QLineEdit::textChanged, this, &RebaseDialog::showTargets);
    connect(targets_, &QListWidget::currentRowChanged, this, &RebaseDialog::ask);
    connect(squash_, &QCheckBox::toggled, this, &RebaseDialog::ask);
    showTargets();
    search_->setFocus();
}

void RebaseDialog::layOut()
{
    search_->setPlaceholderText(tr("Search branches and tags"));
    search_->setAccessibleName(tr("Search Branches and Tags"));
    search_->setClearButtonEnabled(true);
    search_->installEventFilter(this);
    targets_->setAccessibleName(tr("Onto"));
    targets_->setFixedHeight(targetsHeight);
    commits_->setAccessibleName(tr("What Becomes of the Commits"));
    commits_->setFixedHeight(commitsHeight);
    commits_->setSelectionMode(QAbstractItemView::NoSelection);
    for (QListWidget* const list : {targets_, commits_}) {
        list->setSpacing(2);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    for (QWidget* const part : std::initializer_list<QWidget*>{search_, targets_, squash_, commits_})
        fields().addWidget(part);
    squash_->hide();
}

/// The arrows choose while something is typed.
bool RebaseDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != search_ || event->type() != QEvent::KeyPress)
        return Sheet::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Down && key != Qt::Key_Up)
        return Sheet::eventFilter(watched, event);
    const int row = targets_->currentRow() + (key == Qt::Key_Down ? 1 : -1);
    targets_->setCurrentRow(std::clamp(row, 0, std::max(0, targets_->count() - 1)));
    return true;
}

void RebaseDialog::showTargets()
{
    const Snapshot& now = store().snapshot();
    const QString chosen = targets_->currentItem() ? targets_->currentItem()->data(Qt::UserRole).toString() : QString();
    std::string upstream;
    const QSignalBlocker blocker(targets_);
    targets_->clear();
    for (const auto* const refs : {&now.branches.value(), &now.remoteBranches.value(), &now.tags.value()}) {
        for (const GitRef& ref : *refs) {
            const bool isOwn = sheet_.branch.empty() ? ref.isHead : ref.fullName == sheet_.branch;
            if (isOwn)
                upstream = ref.upstreamRef;
            if (isOwn || targets_->count() >= mostTargets ||
                !shownText(ref.name).contains(search_->text(), Qt::CaseInsensitive))
                continue;
            auto* const item = new QListWidgetItem(shownText(ref.name), targets_);
            item->setData(Qt::UserRole, QByteArray::fromStdString(ref.fullName));
            if (item->data(Qt::UserRole).toString() == chosen ||
                (chosen.isEmpty() && !upstream.empty() && ref.fullName == upstream))
                targets_->setCurrentItem(item);
        }
    }
    if (targets_->currentRow() < 0)
        targets_->setCurrentRow(0);
    ask();
}

gitkit::RebaseQuestion RebaseDialog::question() const
{
    const QListWidgetItem* const target = targets_->currentItem();
    return {.branch = sheet_.branch,
            .from = sheet_.from,
            .onto = target ? target->data(Qt::UserRole).toByteArray().toStdString() : std::string(),
            .squashesFixups = squash_->isChecked()};
}

QString RebaseDialog::shownTarget() const
{
    return targets_->currentItem() ? targets_->currentItem()->text() : QString();
}

void RebaseDialog::ask()
{
    if (targets_->currentItem())
        reading_.ask(question());
    showProposal();
}

const RebaseProposal* RebaseDialog::proposal() const
{
    const bool isAnswer =
        targets_->currentItem() && reading_.answer() && !reading_.failure() && reading_.answered() == question();
    return isAnswer ? &*reading_.answer() : nullptr;
}

void RebaseDialog::showProposal()
{
    if (const RebaseProposal* const found = proposal()) {
        commits_->clear();
        for (std::size_t index = 0; index < found->plan.steps.size(); ++index)
            commits_->addItem(lineOfStep(*found, index));
        squash_->setVisible(found->fixups > 0);
        squash_->setText(tr("Squash %Ln fixup commit(s)", nullptr, found->fixups));
        squash_->setAccessibleName(squash_->text());
    } else if (!reading_.isReading()) {
        commits_->clear();
    }
    validate();
    dialogParts::fit(*this);
}

QString RebaseDialog::problem() const
{
    if (targets_->count() == 0)
        return tr("No branch or tag is called so.");
    if (reading_.failure() && reading_.asked() == question() &&
        reading_.failure()->kind == gitkit::ErrorKind::nothingToDo)
        return tr("The commits stand there already.");
    if (reading_.failure() && reading_.asked() == question())
        return reading_.failure()->message;
    const RebaseProposal* const found = proposal();
    if (found && found->plan.isElsewhere && found->outcome.result != Result::clean)
        return tr("Check out %1 first: git needs its files where commits conflict.")
            .arg(rebasedBranch(store(), sheet_));
    return {};
}

QString RebaseDialog::note() const
{
    const RebaseProposal* const found = proposal();
    if (!found)
        return {};
    QStringList sentences{rebaseOutcome(*found, shownTarget())};
    if (const QString others = planBranchesSentence(found->plan, found->branches); !others.isEmpty())
        sentences << others + u'.';
    if (!found->publishedOn.empty())
        sentences << tr("Some of them are on %1: others may have them, and you will need to force-push.")
                         .arg(shownText(found->publishedOn));
    return sentences.join(u' ');
}

bool RebaseDialog::isComplete() const { return proposal() != nullptr; }

void RebaseDialog::submit() { store().rewriting().rebase(*proposal(), shownTarget()); }

} // namespace plovik

#include "moc_RebaseDialog.cpp"
