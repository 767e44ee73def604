// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/FileHistoryList.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractListModel>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <iterator>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::FileRevision;

namespace {

constexpr int rowInset = 6;
constexpr int margin = 16;
constexpr int gap = 8;
constexpr int rowPadding = 6;
constexpr double outdatedOpacity = 0.4;

/// An ordinary modification has no chip, since every row is a change of the file.
bool hasChip(const FileRevision& revision) { return revision.file.status != 'M'; }

} // namespace

class FileHistoryList::Model : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void setRevisions(std::vector<FileRevision> revisions, const std::string& path)
    {
        // Where the history begins with the same rows, nothing moves.
        const std::size_t had = revisions_.size();
        if (path == path_ && had > 0 && revisions.size() >= had &&
            std::equal(revisions_.begin(), revisions_.end(), revisions.begin()))
        {
            revisions.erase(revisions.begin(), revisions.begin() + static_cast<std::ptrdiff_t>(had));
            add(std::move(revisions));
            return;
        }
        beginResetModel();
        revisions_ = std::move(revisions);
        path_ = path;
        endResetModel();
    }

    void add(std::vector<FileRevision> revisions)
    {
        if (revisions.empty())
            return;
        const int had = static_cast<int>(revisions_.size());
        beginInsertRows({}, had, had + static_cast<int>(revisions.size()) - 1);
        std::ranges::move(revisions, std::back_inserter(revisions_));
        endInsertRows();
    }

    const std::vector<FileRevision>& revisions() const { return revisions_; }
    const FileRevision& revision(const QModelIndex& index) const
    {
        return revisions_[static_cast<std::size_t>(index.row())];
    }
    const std::string& path() const { return path_; }
    QString pathThen(const FileRevision& revision) const
    {
        if (revision.file.originalPath)
            return shownText(*revision.file.originalPath) + u" → "_s + shownText(revision.file.path);
        return revision.file.path == path_ ? QString() : shownText(revision.file.path);
    }

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(revisions_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid())
            return {};
        const FileRevision& each = revision(index);
        const gitkit::Commit& commit = each.commit;
        const QString then = pathThen(each);
        switch (role) {
        case Qt::DisplayRole:
            return shownLine(commit.subject);
        case Qt::AccessibleTextRole:
            return shownLine(commit.subject) + u", "_s + shownLine(commit.authorName) + u", "_s +
                   shownText(commit.shortHash());
        case Qt::AccessibleDescriptionRole:
            return statusDescription(each.file.status) + u", "_s + absoluteDate(commit.date, QLocale()) +
                   (then.isEmpty() ? QString() : u", "_s + then);
        case Qt::ToolTipRole:
            return plainToolTip(shownText(commit.subject) + u"\n\n"_s + shownText(commit.authorName) + u'\n' +
                                absoluteDate(commit.date, QLocale()) + u'\n' + shownText(commit.hash) + u'\n' +
                                statusDescription(each.file.status) + u": "_s +
                                (then.isEmpty() ? shownText(each.file.path) : then));
        default:
            return {};
        }
    }

private:
    std::vector<FileRevision> revisions_;
    std::string path_;
};

class FileHistoryList::Delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const auto& model = static_cast<const Model&>(*index.model());
        const FileRevision& revision = model.revision(index);
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, rowInset);
        const auto* const list = qobject_cast<const FileHistoryList*>(option.widget);
        painter->setOpacity(list && list->isOutdated() ? outdatedOpacity : 1);
        QRect first = firstLine(option.rect);
        const QRect second = first.translated(0, first.height());

        paintText(*painter, first, shownText(revision.commit.shortHash()), hashFont(), theme.accent, Qt::AlignRight,
                  Qt::ElideNone);
        first.setRight(hashArea(option.rect).left() - gap);
        if (hasChip(revision)) {
            const int chipSize = statusChipSize();
            paintStatusChip(*painter, {first.left(), first.top() + (first.height() - chipSize) / 2, chipSize, chipSize},
                            revision.file.status);
            first.setLeft(first.left() + chipSize + gap);
        }
        paintText(*painter, first, index.data().toString(), option.font, theme.text);

        const QString date = RelativeDate::toNow(revision.commit.date).text(QLocale());
        QString about = date + u" · "_s + shownLine(revision.commit.authorName);
        const QString then = model.pathThen(revision);
        if (!then.isEmpty())
            about += u" · "_s + then;
        paintText(*painter, second, about, Theme::font(-1), theme.secondaryText, Qt::AlignLeft,
                  then.isEmpty() ? Qt::ElideRight : Qt::ElideMiddle);
        painter->setOpacity(1);
    }

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {margin * 2, 2 * lineHeight() + 2 * rowPadding};
    }

    static QRect hashArea(const QRect& row)
    {
        QRect area = firstLine(row);
        area.setLeft(area.right() + 1 - textWidth(u"0000000"_s, hashFont()));
        return area;
    }

private:
    static QFont hashFont() { return Theme::fixedFont(-0.75); }
    static int lineHeight() { return std::max(statusChipSize(), QFontMetrics(Theme::font()).height() + 1); }
    static QRect firstLine(const QRect& row)
    {
        return {row.left() + margin, row.top() + rowPadding, row.width() - 2 * margin, lineHeight()};
    }
};

FileHistoryList::FileHistoryList(QWidget* parent)
    : RowList(tr("File History"), parent), model_(new Model(this)), delegate_(new Delegate(this))
{
    setModel(model_);
    setItemDelegate(delegate_);
    viewport()->setMouseTracking(true);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { Q_EMIT currentRevisionChanged(); });
}

void FileHistoryList::setRevisions(std::vector<FileRevision> revisions, const std::string& path)
{
    const std::string known = current() && model_->path() == path ? current()->commit.hash : std::string();
    const int y = visualRect(currentIndex()).top();
    model_->setRevisions(std::move(revisions), path);
    if (currentIndex().isValid())
        return; // at most, rows were added
    const auto& all = model_->revisions();
    const auto found = std::ranges::find(all, known, &FileRevision::id);
    const int row = found == all.end() ? 0 : static_cast<int>(found - all.begin());
    setAutoScroll(false);
    setCurrentIndex(model_->index(row, 0));
    setAutoScroll(true);
    doItemsLayout();
    if (found != all.end())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(currentIndex()).top() - y);
}

void FileHistoryList::addRevisions(std::vector<FileRevision> revisions) { model_->add(std::move(revisions)); }

void FileHistoryList::setOutdated(bool isOutdated)
{
    isOutdated_ = isOutdated;
    viewport()->update();
}

const std::vector<FileRevision>& FileHistoryList::revisions() const { return model_->revisions(); }

const FileRevision* FileHistoryList::current() const
{
    const QModelIndex index = currentIndex();
    return index.isValid() ? &model_->revision(index) : nullptr;
}

QMenu* FileHistoryList::makeMenu()
{
    auto* const menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    const FileRevision revision = *current();
    markAs(CommandId::showCommit, menu->addAction(tr("Show Commit"), this, [this] {
        requestCurrent();
    }))->setShortcut(Qt::Key_Return);
    QAction* const blame =
        menu->addAction(tr("Show Blame at This Commit"), this, [this, revision] { Q_EMIT blameRequested(revision); });
    markAs(CommandId::showBlame, blame);
    if (revision.file.status == 'D') {
        blame->setEnabled(false);
        blame->setToolTip(tr("This commit deleted the file."));
    }
    menu->addSeparator();
    const auto addCopy = [&](CommandId id, const QString& title, const std::string& bytes) {
        markAs(id, menu->addAction(title, this,
                                   [text = exactText(bytes)] { QGuiApplication::clipboard()->setText(text); }));
    };
    addCopy(CommandId::copyHash, tr("Copy Hash"), revision.commit.hash);
    addCopy(CommandId::copyPath, tr("Copy Path"), revision.file.path);
    for (QAction* action : menu->actions())
        action->setShortcutVisibleInContextMenu(true);
    return menu;
}

void FileHistoryList::requestCurrent()
{
    if (const FileRevision* const revision = current())
        Q_EMIT commitRequested(std::string(revision->commit.hash));
}

void FileHistoryList::scrollContentsBy(int dx, int dy)
{
    RowList::scrollContentsBy(dx, dy);
    const QScrollBar* const bar = verticalScrollBar();
    if (bar->maximum() > 0 && bar->value() >= bar->maximum() - bar->pageStep() / 2)
        Q_EMIT endReached();
}

bool FileHistoryList::isOnHash(QPoint point) const
{
    const QModelIndex index = indexAt(point);
    return index.isValid() && Delegate::hashArea(visualRect(index)).adjusted(-4, -2, 4, 2).contains(point);
}

void FileHistoryList::mouseMoveEvent(QMouseEvent* event)
{
    viewport()->setCursor(isOnHash(event->position().toPoint()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    RowList::mouseMoveEvent(event);
}

void FileHistoryList::mouseReleaseEvent(QMouseEvent* event)
{
    RowList::mouseReleaseEvent(event);
    const QPoint point = event->position().toPoint();
    if (event->button() == Qt::LeftButton && isOnHash(point) && indexAt(point) == currentIndex())
        requestCurrent();
}

void FileHistoryList::mouseDoubleClickEvent(QMouseEvent* event)
{
    RowList::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
        requestCurrent();
}

void FileHistoryList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            requestCurrent();
        return;
    case Qt::Key_Backspace:
        if (!event->isAutoRepeat())
            Q_EMIT backRequested();
        return;
    case Qt::Key_Escape:
        event->ignore();
        return;
    default:
        RowList::keyPressEvent(event);
    }
}

void FileHistoryList::contextMenuEvent(QContextMenuEvent* event)
{
    const std::optional<QPoint> position = menuPosition(*this, *event);
    if (!position)
        return;
    if (QMenu* const menu = makeContextMenu()) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(*position);
    }
}

QMenu* FileHistoryList::makeContextMenu() { return current() ? makeMenu() : nullptr; }

} // namespace plovik

#include "moc_FileHistoryList.cpp"
