#include "app/views/commit/CommitFilesList.h"

#include "app/store/ShownText.h"
#include "app/views/RowPainting.h"
#include "app/views/Theme.h"

#include <QAbstractListModel>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int rowInset = 8;
constexpr int chipLeft = 14;
constexpr int chipSize = 18;
constexpr int pathLeft = chipLeft + chipSize + 8;

QString shownPath(const gitkit::CommitFile& file)
{
    const QString path = shownText(file.path);
    return file.originalPath ? shownText(*file.originalPath) + u" → "_s + path : path;
}

} // namespace

class CommitFilesList::Model : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void setFiles(std::vector<gitkit::CommitFile> files)
    {
        beginResetModel();
        files_ = std::move(files);
        endResetModel();
    }
    const std::vector<gitkit::CommitFile>& files() const { return files_; }
    const gitkit::CommitFile& file(const QModelIndex& index) const
    {
        return files_[static_cast<std::size_t>(index.row())];
    }

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(files_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid())
            return {};
        switch (role) {
        case Qt::DisplayRole:
            return shownPath(file(index));
        case Qt::AccessibleTextRole:
            return shownText(file(index).path);
        case Qt::AccessibleDescriptionRole:
            return statusDescription(file(index).status);
        case Qt::ToolTipRole:
            return shownPath(file(index)) + u'\n' + statusDescription(file(index).status);
        default:
            return {};
        }
    }

private:
    std::vector<gitkit::CommitFile> files_;
};

class CommitFilesList::Delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const gitkit::CommitFile& file = static_cast<const Model*>(index.model())->file(index);
        const QRect& row = option.rect;
        paintRowBackground(*painter, row, option, rowInset);
        const QRect chip(row.left() + chipLeft, row.top() + (row.height() - chipSize) / 2, chipSize, chipSize);
        paintStatusChip(*painter, chip, file.status);
        paintText(*painter, row.adjusted(pathLeft, 0, -rowInset - 6, 0), shownPath(file), option.font,
                  Theme::current().text, Qt::AlignLeft, Qt::ElideMiddle);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {pathLeft, std::max(listRowHeight - 2, QFontMetrics(option.font).height() + 8)};
    }
};

CommitFilesList::CommitFilesList(QWidget* parent) : RowList(u"Commit Files"_s, parent), files_(new Model(this))
{
    setModel(files_);
    setItemDelegate(new Delegate(this));
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { Q_EMIT currentFileChanged(); });
}

void CommitFilesList::setFiles(std::vector<gitkit::CommitFile> files)
{
    files_->setFiles(std::move(files));
    if (!files_->files().empty())
        setCurrentIndex(files_->index(0));
    else
        Q_EMIT currentFileChanged();
}

const std::vector<gitkit::CommitFile>& CommitFilesList::files() const { return files_->files(); }

const gitkit::CommitFile* CommitFilesList::currentFile() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? &files_->file(current) : nullptr;
}

void CommitFilesList::contextMenuEvent(QContextMenuEvent* event)
{
    const gitkit::CommitFile* const file = currentFile();
    if (!file)
        return;
    QMenu menu(this);
    menu.addAction(u"Copy Path"_s, [path = shownText(file->path)] { QGuiApplication::clipboard()->setText(path); });
    menu.exec(event->globalPos());
}

} // namespace plovik
