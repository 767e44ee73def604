// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RelationsDialog.h"

#include "GitKit/records/Commit.h"
#include "app/store/ShownText.h"

#include <QFontMetrics>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <string_view>
#include <utility>

namespace plovik {

namespace {

constexpr int relationsWidth = 560;
constexpr int relationsHeight = 320;
constexpr int relationPadding = 8;

/// More refs than these are counted.
constexpr std::size_t mostRefsListed = 500;

QString relatedName(const std::string& ref)
{
    const std::string_view name(ref);
    for (const std::string_view folder : {"refs/heads/", "refs/remotes/", "refs/tags/"}) {
        if (name.starts_with(folder))
            return shownText(name.substr(folder.size()));
    }
    return shownText(name);
}

} // namespace

RelationsDialog::RelationsDialog(RepositoryStore& store, const RelationsSheet& sheet, QWidget* parent)
    : Sheet(store, tr("Around the Commit %1").arg(shownText(gitkit::shortHash(sheet.hash))), tr("Go There"), parent),
      list_(new QListWidget(this)),
      reading_(store.git(), &readCommitRelations, [this] { showRelations(); }, Worker::Lane::longRead)
{
    list_->setAccessibleName(tr("Children, Branches and Tags"));
    list_->setMinimumSize(relationsWidth, relationsHeight);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fields().addWidget(list_);
    connect(list_, &QListWidget::currentRowChanged, this, &RelationsDialog::validate);
    connect(list_, &QListWidget::itemDoubleClicked, this, [this] {
        if (isComplete())
            accept();
    });
    reading_.ask(sheet.hash);
    validate();
    list_->setFocus();
}

void RelationsDialog::addTitle(const QString& title)
{
    addRow(title, {});
    QListWidgetItem* const item = list_->item(list_->count() - 1);
    item->setFlags(Qt::ItemIsEnabled);
    QFont font = item->font();
    font.setWeight(QFont::DemiBold);
    item->setFont(font);
}

void RelationsDialog::addRow(const QString& text, Row row)
{
    auto* const item = new QListWidgetItem(text, list_);
    item->setSizeHint({0, list_->fontMetrics().height() + relationPadding});
    rows_.push_back(std::move(row));
}

void RelationsDialog::showRelations()
{
    if (!reading_.result())
        return validate();
    const CommitRelations& found = *reading_.result();
    if (!found.children.empty())
        addTitle(tr("Children"));
    for (const gitkit::Commit& child : found.children)
        addRow(tr("%1  %2", "hash, subject").arg(shownText(child.shortHash()), shownText(child.subject)),
               {.commit = child.hash});
    if (!found.tagBefore.empty() || !found.tagAfter.empty())
        addTitle(tr("Nearest Tags"));
    if (!found.tagBefore.empty())
        addRow(tr("%1, at it or before it", "tag").arg(shownText(found.tagBefore)),
               {.ref = "refs/tags/" + found.tagBefore});
    if (!found.tagAfter.empty())
        addRow(tr("%1, the oldest that contains it", "tag").arg(shownText(found.tagAfter)),
               {.ref = "refs/tags/" + found.tagAfter});
    addRefs();
    const auto first =
        std::ranges::find_if(rows_, [](const Row& row) { return !row.commit.empty() || !row.ref.empty(); });
    if (first != rows_.end())
        list_->setCurrentRow(static_cast<int>(first - rows_.begin()));
    validate();
}

void RelationsDialog::addRefs()
{
    const std::vector<std::string>& refs = reading_.result()->refs;
    if (!refs.empty())
        addTitle(tr("Contained in %Ln ref(s)", nullptr, static_cast<int>(refs.size())));
    for (std::size_t index = 0; index < std::min(refs.size(), mostRefsListed); ++index)
        addRow(relatedName(refs[index]), {.ref = refs[index]});
}

QString RelationsDialog::problem() const { return reading_.failure() ? reading_.failure()->message : QString(); }

QString RelationsDialog::note() const
{
    if (!reading_.answered())
        return tr("Looking for what stands around it…");
    return rows_.empty() ? tr("It has no children, and no branch or tag contains it.") : QString();
}

bool RelationsDialog::isComplete() const
{
    const int row = list_->currentRow();
    if (row < 0 || static_cast<std::size_t>(row) >= rows_.size())
        return false;
    const Row& chosen = rows_[static_cast<std::size_t>(row)];
    return !chosen.commit.empty() || !chosen.ref.empty();
}

void RelationsDialog::submit()
{
    const Row& chosen = rows_.at(static_cast<std::size_t>(list_->currentRow()));
    if (!chosen.commit.empty())
        store().history().showCommit(chosen.commit);
    else
        store().window().select(SidebarItem::ref(chosen.ref));
}

} // namespace plovik

#include "moc_RelationsDialog.cpp"
