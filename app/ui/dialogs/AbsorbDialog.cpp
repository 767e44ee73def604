// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/AbsorbDialog.h"

#include "GitKit/records/Commit.h"
#include "app/settings/CodeFont.h"
#include "app/store/ShownText.h"
#include "app/store/actions/StagedInto.h"
#include "app/ui/dialogs/AbsorbRows.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QStandardItemModel>
#include <QTextBlock>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int absorbWidth = 760;
constexpr int absorbListHeight = 190;
constexpr int absorbLineRows = 8;
constexpr std::size_t mostLinesShown = 500;

QString lineOf(QChar sign, const std::string& line)
{
    QString text = withStandIns(exactText(line.substr(0, line.find_last_not_of("\r\n") + 1)));
    text.truncate(longestShownText);
    return sign + text;
}

} // namespace

AbsorbDialog::AbsorbDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Absorb Staged Changes"), tr("Absorb"), parent), summary_(dialogParts::text(this)),
      rows_(new AbsorbRows(this)), list_(new QTreeView(this)), commits_(new QComboBox(this)),
      lines_(new QPlainTextEdit(this)),
      reading_(store.git(), &readAbsorbProposal, [this] { showProposal(); }, Worker::Lane::longRead)
{
    arrange();
    connect(rows_, &QAbstractItemModel::dataChanged, this, &AbsorbDialog::showChosen);
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &AbsorbDialog::showCurrent);
    connect(commits_, &QComboBox::activated, this, &AbsorbDialog::commitChosen);
    connect(new QShortcut(Qt::CTRL | Qt::Key_Return, this), &QShortcut::activated, this, [this] {
        if (problem().isEmpty() && isComplete() && this->store().changes().offers(Verb::rewrite))
            accept();
    });
    refreshed_ = store.snapshot().generation.addNotifier([this] { read(); });
    list_->setFocus();
    read();
    showCurrent();
    dialogParts::fit(*this);
    validate();
}

void AbsorbDialog::arrange()
{
    summary_->setAccessibleName(tr("Summary"));
    list_->setAccessibleName(tr("Staged Changes"));
    list_->setModel(rows_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setTextElideMode(Qt::ElideRight);
    list_->setMinimumSize(absorbWidth, absorbListHeight);
    list_->header()->setStretchLastSection(true);
    list_->header()->resizeSection(AbsorbRows::changeColumn, absorbWidth / 2);
    auto* const into = new QLabel(tr("Goes into:"), this);
    into->setTextFormat(Qt::PlainText);
    into->setBuddy(commits_);
    commits_->setAccessibleName(tr("Commit That It Goes Into"));
    commits_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* const row = new QHBoxLayout;
    row->addWidget(into);
    row->addWidget(commits_, 1);
    lines_->setAccessibleName(tr("Changed Lines"));
    lines_->setReadOnly(true);
    lines_->setTabChangesFocus(true);
    lines_->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    followFont(*lines_, [] { return CodeFont::current(); });
    lines_->setMinimumHeight(QFontMetrics(lines_->font()).lineSpacing() * absorbLineRows);
    fields().addWidget(summary_);
    fields().addWidget(list_, 2);
    fields().addLayout(row);
    fields().addWidget(lines_, 1);
}

void AbsorbDialog::read() { reading_.ask(++readings_); }

void AbsorbDialog::showProposal()
{
    if (reading_.answer() && !reading_.failure()) {
        const int row = list_->currentIndex().row();
        rows_->show(*reading_.answer());
        list_->setCurrentIndex(rows_->index(std::clamp(row, 0, std::max(0, rows_->rowCount() - 1)), 0));
    }
    showChosen();
    showCurrent();
}

void AbsorbDialog::showChosen()
{
    const int count = rows_->chosenCount();
    const QString changes = tr("%Ln staged change(s)", nullptr, rows_->rowCount());
    const QString commits = tr("%Ln commit(s)", nullptr, rows_->chosenCommits());
    if (!reading_.answer())
        summary_->setText(tr("Looking for the commits that the staged changes belong to…"));
    else if (rows_->rowCount() == 0)
        summary_->clear();
    else if (count == 0)
        summary_->setText(tr("None of %1 will go into a commit.").arg(changes));
    else
        summary_->setText(
            tr("%1 of %2 will go into %3. The rest stays staged.").arg(locale().toString(count), changes, commits));
    commits_->setCurrentIndex(0);
    if (const auto target = rows_->targetAt(list_->currentIndex().row()))
        commits_->setCurrentIndex(static_cast<int>(rows_->proposal().commits.size() - *target));
    validate();
}

void AbsorbDialog::showCurrent()
{
    const int row = list_->currentIndex().row();
    showCommits(row);
    const gitkit::AbsorbHunk* const hunk = rows_->hunkAt(row);
    lines_->setEnabled(hunk);
    QStringList text;
    QList<QTextEdit::ExtraSelection> marks;
    if (hunk) {
        for (const std::string& line : hunk->gone)
            text << lineOf(u'-', line);
        for (const std::string& line : hunk->come)
            text << lineOf(u'+', line);
    }
    const qsizetype all = text.size();
    if (text.size() > static_cast<qsizetype>(mostLinesShown)) {
        text.resize(static_cast<qsizetype>(mostLinesShown));
        text << tr("… and %Ln more line(s)", nullptr, static_cast<int>(all - text.size()));
    }
    lines_->setPlainText(text.join(u'\n'));
    for (QTextBlock block = lines_->document()->begin(); block.isValid() && hunk; block = block.next()) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = QTextCursor(block);
        const bool isGone = block.blockNumber() < static_cast<int>(hunk->gone.size());
        mark.format.setBackground(isGone ? Theme::current().removedLine : Theme::current().addedLine);
        mark.format.setProperty(QTextFormat::FullWidthSelection, true);
        marks << mark;
    }
    lines_->setExtraSelections(marks);
}

/// Fills the choice of commits, the newest first below "Stays staged". Those that the change does not fit into say so.
void AbsorbDialog::showCommits(int row)
{
    const gitkit::AbsorbHunk* const hunk = rows_->hunkAt(row);
    const gitkit::AbsorbProposal& proposal = rows_->proposal();
    commits_->clear();
    commits_->addItem(tr("Stays staged"));
    commits_->setEnabled(hunk && hunk->oldest < proposal.commits.size());
    auto* const items = qobject_cast<QStandardItemModel*>(commits_->model());
    for (std::size_t index = proposal.commits.size(); hunk && index-- > 0;) {
        const QString shown =
            tr("%1  %2", "hash, subject")
                .arg(shownText(gitkit::shortHash(proposal.commits[index])), shownText(proposal.subjects[index]));
        const bool fits = index >= hunk->oldest;
        commits_->addItem(fits ? shown : tr("%1 — it does not fit there").arg(shown));
        if (!fits && items)
            items->item(commits_->count() - 1)->setEnabled(false);
    }
    showChosen();
}

void AbsorbDialog::commitChosen(int place)
{
    const std::size_t count = rows_->proposal().commits.size();
    rows_->setTarget(list_->currentIndex().row(),
                     place == 0 ? std::nullopt : std::optional(count - static_cast<std::size_t>(place)));
}

QString AbsorbDialog::problem() const
{
    const QString why = actions::whyNotInto(store().changes(), store().snapshot(), store().rewriting());
    if (!why.isEmpty())
        return why;
    if (reading_.failure())
        return reading_.failure()->message;
    if (!reading_.answer())
        return {};
    const gitkit::AbsorbProposal& found = rows_->proposal();
    if (store().snapshot().status.value().stagedCount() == 0)
        return tr("Nothing is staged.");
    if (!found.commits.empty())
        return {};
    return found.publishedOn.empty()
               ? tr("No commit here can be changed: the newest one is a merge, or there is none.")
               : tr("Nothing here is only yours: all commits are on %1.").arg(shownText(found.publishedOn));
}

QString AbsorbDialog::note() const
{
    QStringList sentences;
    if (!rows_->proposal().publishedOn.empty())
        sentences << tr("Commits that are on %1 stay as they are.").arg(shownText(rows_->proposal().publishedOn));
    sentences << tr("The hooks pre-rebase and pre-commit run once, for all that is staged. No file is touched.");
    return sentences.join(u' ');
}

bool AbsorbDialog::isComplete() const
{
    // What is shown may be read again meanwhile: nothing is written where something else is staged by then.
    return reading_.answer() && rows_->chosenCount() > 0;
}

void AbsorbDialog::submit() { actions::absorb(store().actors(), rows_->chosen()); }

} // namespace plovik

#include "moc_AbsorbDialog.cpp"
