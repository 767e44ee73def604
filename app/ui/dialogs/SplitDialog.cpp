// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/SplitDialog.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/NewRefSheets.h"
#include "app/ui/dialogs/SplitFilesModel.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int splitSheetWidth = 1000;
constexpr int choiceHeight = 240;
constexpr int moreChoiceHeight = 120;
constexpr double leastSplitFiles = 140;
constexpr double leastSplitDiff = 300;
constexpr int halfRows = 4;

bool isBlank(const QPlainTextEdit& message) { return message.toPlainText().trimmed().isEmpty(); }

QString shownMessage(const std::string& message)
{
    QString text = exactText(message);
    while (text.endsWith(u'\n'))
        text.chop(1);
    return text;
}

QString shownExtent(const SplitChoice::Extent& extent, const QString& nothing, const QPlainTextEdit& message)
{
    QString text = extent.files == 0 ? nothing
                                     : SplitDialog::tr("%Ln file(s)", nullptr, extent.files) + u" · "_s +
                                           SplitDialog::tr("%Ln changed line(s)", nullptr, extent.lines);
    if (isBlank(message))
        text += u" · "_s + SplitDialog::tr("its message is missing");
    return text;
}

} // namespace

SplitDialog::SplitDialog(RepositoryStore& store, SplitSheet sheet, QWidget* parent)
    : Sheet(store, tr("Split Commit"), store.rewriting().plan.value() ? tr("Put into the Plan") : tr("Split"), parent),
      sheet_(std::move(sheet)), isPlanned_(store.rewriting().plan.value().has_value()),
      model_(new SplitFilesModel(this)), list_(new QListView), diff_(new DiffPane(store)),
      files_(store.git(), &readCommit, [this] { filesRead(); }), counts_(store.git(), &readCounts,
                                                                         [this] {
                                                                             if (!counts_.failure())
                                                                                 model_->setCounts(*counts_.answer());
                                                                         }),
      diffs_(store.git(), &readCommitDiff, [this] { showDiff(); })
{
    fields().addWidget(dialogParts::secondaryText(
        tr("%1. What is ticked goes into the first commit.").arg(describedCommit(store, sheet_.commit)), this));
    fields().addWidget(makeChoice(), 1);
    const gitkit::RewriteStep* const step =
        isPlanned_ ? gitkit::stepOf(*store.rewriting().plan.value(), sheet_.commit) : nullptr;
    const bool isSplit = step && step->act == gitkit::RewriteStep::Act::split;
    const gitkit::MovableCommit* const own = store.rewriting().find(sheet_.commit);
    const std::string message = own ? own->message : std::string();
    auto* const halves = new QHBoxLayout;
    halves->setSpacing(12);
    first_ =
        addHalf(*halves, {tr("First Commit"), tr("Contents of the First Commit"), tr("Message of the First Commit")},
                isSplit ? step->partMessage : message);
    second_ =
        addHalf(*halves, {tr("Second Commit"), tr("Contents of the Second Commit"), tr("Message of the Second Commit")},
                isSplit ? step->message.value_or(std::string()) : std::string());
    fields().addLayout(halves);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this, &SplitDialog::confirm);
    connect(model_, &QAbstractItemModel::dataChanged, this, &SplitDialog::choiceChanged);
    connect(model_, &QAbstractItemModel::modelReset, this, &SplitDialog::choiceChanged);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &SplitDialog::readDiff);
    connect(diff_, &DiffPane::readingChanged, this, &SplitDialog::readDiff);
    connect(diff_->view(), &DiffView::actionRequested, this, &SplitDialog::apply);
    diff_->showSentence({}, {});
    list_->setFocus();
    choiceChanged();
    dialogParts::fit(*this, splitSheetWidth, moreChoiceHeight);
    files_.ask({sheet_.commit});
    counts_.ask({sheet_.commit});
}

QWidget* SplitDialog::makeChoice()
{
    list_->setAccessibleName(tr("Files of the Commit"));
    list_->setModel(model_);
    list_->setUniformItemSizes(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* const choice = new SplitPane(settings::splitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                       leastSplitFiles, leastSplitDiff, list_, diff_, this);
    choice->setMinimumHeight(choiceHeight);
    return choice;
}

SplitDialog::Half SplitDialog::addHalf(QHBoxLayout& row, const HalfNames& names, const std::string& message)
{
    QLabel* const heading = dialogParts::text(this);
    heading->setText(names.title);
    followFont(*heading, 0, QFont::DemiBold);
    Half half{dialogParts::secondaryText(QString(), this), new QPlainTextEdit(this)};
    half.extent->setAccessibleName(names.extent);
    half.message->setAccessibleName(names.message);
    half.message->setTabChangesFocus(true);
    half.message->setPlainText(shownMessage(message));
    followFont(*half.message, [] { return Theme::fixedFont(0); });
    half.message->setFixedHeight(QFontMetrics(half.message->font()).lineSpacing() * halfRows + 16);
    connect(half.message, &QPlainTextEdit::textChanged, this, &SplitDialog::choiceChanged);
    auto* const column = new QVBoxLayout;
    column->setSpacing(4);
    column->addWidget(heading);
    column->addWidget(half.extent);
    column->addWidget(half.message);
    row.addLayout(column, 1);
    return half;
}

void SplitDialog::filesRead()
{
    if (files_.failure()) {
        diff_->showSentence(tr("The commit could not be read"), files_.failure()->message);
        return;
    }
    model_->setFiles(files_.answer()->files);
    if (counts_.answer())
        model_->setCounts(*counts_.answer());
    list_->setCurrentIndex(model_->index(0));
}

std::optional<std::size_t> SplitDialog::currentFile() const
{
    const QModelIndex current = list_->currentIndex();
    return current.isValid() ? std::optional(static_cast<std::size_t>(current.row())) : std::nullopt;
}

void SplitDialog::readDiff()
{
    const std::optional<std::size_t> file = currentFile();
    if (!file)
        return;
    const gitkit::CommitFile& meant = model_->choice().files()[*file];
    diffs_.ask({sheet_.commit, meant, diff_->readingOf(sheet_.commit + ':' + meant.path)});
    if (diffs_.isReading())
        diff_->awaitDiff();
    else
        showDiff();
}

void SplitDialog::showDiff()
{
    const std::optional<std::size_t> file = currentFile();
    if (diffs_.failure()) {
        shownFile_.reset();
        diff_->showSentence(tr("The diff could not be read"), diffs_.failure()->message);
        return;
    }
    if (!file || !diffs_.answer() || diffs_.answered()->file != model_->choice().files()[*file])
        return;
    const gitkit::ParsedDiff& diff = *diffs_.answer();
    const bool canTakeLines = model_->choice().canTakeLines(*file, diff);
    DiffContent content;
    content.name = tr("Diff");
    content.path = model_->choice().files()[*file].path;
    content.title = shownText(content.path);
    content.revision = sheet_.commit;
    content.diff = diff;
    content.use = canTakeLines ? DiffContent::Use::split : DiffContent::Use::read;
    content.inFirst = canTakeLines ? model_->choice().linesOf(*file, diff) : std::set<int>();
    if (!canTakeLines)
        content.detail = diff.whiteSpace == gitkit::WhiteSpace::ignored
                             ? tr("its lines can be ticked while white space is compared")
                             : tr("goes into one commit as a whole");
    const bool isSame = std::exchange(shownFile_, file) == file;
    std::vector<DiffContent> contents;
    contents.push_back(std::move(content));
    diff_->showDiffs(std::move(contents), isSame ? DiffPlace::kept : DiffPlace::start);
}

void SplitDialog::apply(const DiffContent& content, const DiffAction& action)
{
    // What is shown may still be the diff of the file that was current before.
    if (!shownFile_ || content.path != model_->choice().files()[*shownFile_].path)
        return;
    model_->takeLines(*shownFile_, content.diff, action.lines,
                      action.verb == DiffAction::Verb::toFirst ? SplitChoice::Into::first : SplitChoice::Into::second);
}

void SplitDialog::choiceChanged()
{
    if (!second_.message)
        return;
    showDiff();
    showExtents();
    validate();
}

void SplitDialog::showExtents()
{
    const SplitChoice& choice = model_->choice();
    first_.extent->setText(
        shownExtent(choice.inFirst(), tr("nothing yet: tick files, hunks or lines"), *first_.message));
    second_.extent->setText(
        shownExtent(choice.inSecond(), tr("nothing is left for it: untick something"), *second_.message));
}

QString SplitDialog::problem() const
{
    return files_.answer() && model_->rowCount() == 0 ? tr("This commit changes no file.") : QString();
}

bool SplitDialog::isComplete() const
{
    const SplitChoice& choice = model_->choice();
    return choice.inFirst().files > 0 && choice.inSecond().files > 0 && !isBlank(*first_.message) &&
           !isBlank(*second_.message);
}

std::optional<Verb> SplitDialog::verb() const { return isPlanned_ ? std::nullopt : std::optional(Verb::rewrite); }

void SplitDialog::submit()
{
    store().rewriting().split(sheet_.commit, model_->choice().part(), first_.message->toPlainText(),
                              second_.message->toPlainText());
}

} // namespace plovik

#include "moc_SplitDialog.cpp"
