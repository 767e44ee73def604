// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/PushDialog.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Pushes.h"
#include "app/store/readers/ActionPreviews.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/RefNameRules.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::PushPreview;
using gitkit::RangeDiffRow;

struct PushTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::PushDialog)
};

constexpr int comparisonHeight = 140;

QString lineFor(const RangeDiffRow& row)
{
    const QString subject = inQuotes(row.subject);
    switch (row.kind) {
    case RangeDiffRow::Kind::same:
        return PushTexts::tr("Same: %1").arg(subject);
    case RangeDiffRow::Kind::changed:
        return PushTexts::tr("Changed: %1").arg(subject);
    case RangeDiffRow::Kind::gone:
        return PushTexts::tr("Goes: %1").arg(subject);
    case RangeDiffRow::Kind::come:
        return PushTexts::tr("Comes: %1").arg(subject);
    }
    return {};
}

/// What goes comes first, since it is what is lost.
QStringList linesOf(const PushPreview& preview)
{
    QStringList lines;
    for (const bool isGone : {true, false}) {
        for (const RangeDiffRow& row : preview.comparison) {
            if ((row.kind == RangeDiffRow::Kind::gone) == isGone)
                lines += lineFor(row);
        }
    }
    if (!preview.comparison.empty())
        return lines;
    for (const gitkit::ForeignCommit& commit : preview.foreign)
        lines += PushTexts::tr("Goes: %1 by %2").arg(inQuotes(commit.subject), shownText(commit.author));
    return lines;
}

bool isChosen(const QCheckBox& box) { return box.isVisibleTo(box.parentWidget()) && box.isChecked(); }

} // namespace

PushDialog::PushDialog(RepositoryStore& store, PushSheet sheet, QWidget* parent)
    : Sheet(store, tr("Push %1").arg(inQuotes(sheet.branch)), tr("Push"), parent), sheet_(std::move(sheet)),
      remote_(new QComboBox(this)), name_(new QLineEdit(exactText(sheet_.to.branch), this)),
      upstream_(new QCheckBox(tr("Make it the upstream"), this)), tags_(new QCheckBox(this)),
      replace_(new QCheckBox(tr("Replace what is there"), this)), along_(new QCheckBox(this)),
      list_(new QListWidget(this)), preview_(store.git(), &readPushPreview, [this] { showPreview(); }),
      notifier_(store.snapshot().remoteBranches.addNotifier([this] { askAgain(); }))
{
    for (const std::string& remote : store.snapshot().remotes.value())
        remote_->addItem(shownText(remote), QByteArray::fromStdString(remote));
    remote_->setCurrentIndex(std::max(0, remote_->findData(QByteArray::fromStdString(sheet_.to.remote))));
    replace_->setChecked(sheet_.replaces);
    layOut();
    connect(remote_, &QComboBox::currentIndexChanged, this, &PushDialog::askAgain);
    connect(name_, &QLineEdit::textChanged, this, &PushDialog::askAgain);
    for (QCheckBox* const box : {tags_, replace_, along_, upstream_})
        connect(box, &QCheckBox::toggled, this, &PushDialog::showPreview);
    name_->setFocus();
    askAgain();
}

void PushDialog::layOut()
{
    remote_->setAccessibleName(tr("Remote"));
    name_->setAccessibleName(tr("Name There"));
    list_->setSpacing(2);
    list_->setAccessibleName(tr("What Goes and What Comes"));
    list_->setFixedHeight(comparisonHeight);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* const place = new QHBoxLayout;
    QLabel* const to = dialogParts::text(this);
    to->setText(tr("To"));
    QLabel* const slash = dialogParts::text(this);
    slash->setText(u"/"_s);
    place->addWidget(to);
    place->addWidget(remote_);
    place->addWidget(slash);
    place->addWidget(name_, 1);
    fields().addLayout(place);
    for (QCheckBox* const box : {upstream_, tags_, replace_, along_}) {
        box->setAccessibleName(box->text());
        fields().addWidget(box);
    }
    fields().addWidget(list_);
    for (QWidget* const part : std::initializer_list<QWidget*>{tags_, along_, list_})
        part->hide();
}

gitkit::RemoteBranch PushDialog::target() const
{
    return {remote_->currentData().toByteArray().toStdString(), name_->text().toStdString()};
}

gitkit::PushQuestion PushDialog::question() const
{
    gitkit::PushQuestion asked{.branch = sheet_.branch, .to = target()};
    // What the remote has said holds for the place that it was asked for.
    if (asked.to == sheet_.to)
        asked.seen = sheet_.seen;
    return asked;
}

void PushDialog::askAgain()
{
    if (!name_->text().isEmpty() && remote_->count() > 0)
        preview_.askAgain(question());
    validate();
}

const PushPreview* PushDialog::preview() const
{
    return preview_.answer() && preview_.answered() == question() ? &*preview_.answer() : nullptr;
}

bool PushDialog::replaces() const { return preview() && preview()->missed > 0 && replace_->isChecked(); }

void PushDialog::showPreview()
{
    if (const PushPreview* const found = preview()) {
        upstream_->setVisible(!found->isUpstream);
        if (preview_.answered() == question() && !upstream_->property("asked").toBool()) {
            upstream_->setProperty("asked", true);
            const auto& branches = store().snapshot().branches.value();
            const auto branch = std::ranges::find(branches, sheet_.branch, &gitkit::GitRef::name);
            upstream_->setChecked(branch != branches.end() && !branch->upstream);
        }
        showChoice(*tags_, found->tags.empty()
                               ? QString()
                               : tr("With the tags on these commits: %1").arg(namesOfFiles(found->tags)));
        std::vector<std::string> others;
        for (const gitkit::RewrittenBranch& other : found->along)
            others.push_back(other.branch);
        showChoice(*along_, others.empty() || !replaces()
                                ? QString()
                                : tr("Replace the branches that moved along, too: %1").arg(namesOfFiles(others)));
        replace_->setEnabled(found->missed > 0);
        list_->clear();
        for (const QString& line : linesOf(*found))
            list_->addItem(line);
        list_->setVisible(found->missed > 0);
        dialogParts::fit(*this);
    }
    validate();
}

/// Hides the box where there is nothing to choose.
void PushDialog::showChoice(QCheckBox& box, const QString& text)
{
    box.setVisible(!text.isEmpty());
    box.setText(text);
    box.setAccessibleName(text);
}

QString PushDialog::problem() const
{
    if (remote_->count() == 0)
        return tr("This repository has no remote.");
    if (const QString wrong = refNames::branchProblem(target().branch, {}); !wrong.isEmpty())
        return wrong;
    if (preview_.failure() && preview_.asked() == question())
        return preview_.failure()->message;
    const PushPreview* const found = preview();
    if (found && found->missed > 0 && !replaces())
        return tr("This would lose %Ln commit(s) there. Pull first, or replace what is there.", nullptr, found->missed);
    return {};
}

QString PushDialog::whatIsSent(const PushPreview& found) const
{
    const QString there = shownText(target().remote + '/' + target().branch);
    if (replaces())
        return whatIsReplaced(found);
    if (found.there.empty())
        return tr("%1 is made.").arg(there);
    return found.sent == 0
               ? tr("%1 has all of it already.").arg(there)
               : tr("This sends %Ln commit(s) to %1. Others may fetch that within seconds.", nullptr, found.sent)
                     .arg(there);
}

QString PushDialog::whatIsReplaced(const PushPreview& found) const
{
    QString text = tr("This takes %Ln commit(s) off %1 for everybody, unless somebody has pushed since. Undo cannot "
                      "bring that back.",
                      nullptr, found.missed)
                       .arg(shownText(target().remote + '/' + target().branch));
    if (found.strangers > 0)
        text += u' ' + tr("%Ln commit(s) among them never stood on %1 here: somebody else may have pushed.", nullptr,
                          found.strangers)
                           .arg(inQuotes(sheet_.branch));
    return text;
}

QString PushDialog::note() const { return preview() ? whatIsSent(*preview()) : QString(); }

bool PushDialog::isComplete() const { return preview() != nullptr; }

void PushDialog::submit()
{
    const PushPreview& found = *preview();
    actions::pushBranch(store().actors(),
                        {.branch = sheet_.branch,
                         .to = target(),
                         .there = found.there,
                         .replaces = replaces(),
                         .setsUpstream = !found.isUpstream && upstream_->isChecked(),
                         .tags = isChosen(*tags_) ? found.tags : std::vector<std::string>(),
                         .along = isChosen(*along_) ? found.along : std::vector<gitkit::RewrittenBranch>()});
}

} // namespace plovik

#include "moc_PushDialog.cpp"
