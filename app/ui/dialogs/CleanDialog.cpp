// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/CleanDialog.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QCheckBox>
#include <QFontMetrics>
#include <QListView>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace plovik {

namespace {

constexpr int filesWidth = 520;
constexpr int rowSpace = 10;
constexpr int filesHeight = 260;

} // namespace

/// The untracked files, each with a tick.
class UntrackedModel : public QAbstractListModel {
public:
    UntrackedModel(const gitkit::ChangedFiles& files, QObject* parent) : QAbstractListModel(parent)
    {
        for (const gitkit::FileChange& file : files) {
            // A folder is a repository of its own, with commits that may be nowhere else.
            if (file.isUntracked() && !file.path.ends_with('/'))
                files_.push_back(file);
        }
        ticked_.assign(files_.size(), true);
    }

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(files_.size());
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid())
            return {};
        const auto row = static_cast<std::size_t>(index.row());
        if (role == Qt::CheckStateRole)
            return ticked_[row] ? Qt::Checked : Qt::Unchecked;
        if (role == Qt::ToolTipRole)
            return plainToolTip(shownText(files_[row].path));
        if (role == Qt::SizeHintRole)
            return QSize(0, QFontMetrics(QApplication::font("QListView")).height() + rowSpace);
        return role == Qt::DisplayRole ? shownText(files_[row].path) : QVariant();
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override
    {
        if (!index.isValid() || role != Qt::CheckStateRole)
            return false;
        ticked_[static_cast<std::size_t>(index.row())] = value.toInt() == Qt::Checked;
        Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
        return true;
    }

    void tickAll(bool isTicked)
    {
        ticked_.assign(files_.size(), isTicked);
        if (!files_.empty())
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
    }

    int tickedCount() const { return static_cast<int>(std::ranges::count(ticked_, true)); }

    std::vector<gitkit::FileChange> ticked() const
    {
        std::vector<gitkit::FileChange> files;
        for (std::size_t row = 0; row < files_.size(); ++row) {
            if (ticked_[row])
                files.push_back(files_[row]);
        }
        return files;
    }

private:
    std::vector<gitkit::FileChange> files_;
    std::vector<bool> ticked_;
};

CleanDialog::CleanDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Clean Untracked Files"), tr("Move to Trash"), parent),
      model_(new UntrackedModel(store.snapshot().status.value().files, this)), list_(new QListView(this)),
      all_(new QCheckBox(tr("All"), this))
{
    all_->setAccessibleName(tr("All Untracked Files"));
    all_->setChecked(true);
    list_->setAccessibleName(tr("Untracked Files"));
    list_->setModel(model_);
    list_->setUniformItemSizes(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setMinimumSize(filesWidth, filesHeight);
    list_->setCurrentIndex(model_->index(0));
    fields().addWidget(all_);
    fields().addWidget(list_);
    connect(all_, &QCheckBox::clicked, this, [this](bool isTicked) {
        all_->setTristate(false);
        model_->tickAll(isTicked);
    });
    connect(model_, &QAbstractItemModel::dataChanged, this, &CleanDialog::countChanged);
    list_->setFocus();
    validate();
}

void CleanDialog::countChanged()
{
    const int ticked = model_->tickedCount();
    const QSignalBlocker blocker(all_);
    all_->setCheckState(ticked == 0                    ? Qt::Unchecked
                        : ticked == model_->rowCount() ? Qt::Checked
                                                       : Qt::PartiallyChecked);
    validate();
}

QString CleanDialog::note() const
{
    return tr("%Ln untracked file(s). Undo brings everything back.", nullptr, model_->tickedCount());
}

bool CleanDialog::isComplete() const { return model_->tickedCount() > 0; }

void CleanDialog::submit() { store().staging().discardUntracked(model_->ticked()); }

} // namespace plovik

#include "moc_CleanDialog.cpp"
