// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/FileListTools.h"

#include "app/settings/Settings.h"
#include "app/ui/widgets/FileRowsModel.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace plovik {

using namespace Qt::StringLiterals;

FileListTools::FileListTools(QAbstractItemView* list, int triangleLeft)
    : QObject(list), list_(list), model_(static_cast<FileRowsModel*>(list->model())), triangleLeft_(triangleLeft),
      tree_(new IconButton(Icon::tree, tr("Files as Tree"), nullptr)),
      filter_(new IconButton(Icon::filter, tr("Filter Files"), nullptr, u"/"_s)), field_(new QLineEdit)
{
    field_->setAccessibleName(tr("File Filter"));
    field_->setPlaceholderText(tr("Filter files"));
    field_->setClearButtonEnabled(true);
    field_->hide();
    field_->installEventFilter(this);
    list_->installEventFilter(this);
    list_->viewport()->installEventFilter(this);
    tree_->setCheckable(true);
    filter_->setCheckable(true);
    connect(tree_, &IconButton::toggled, this, [](bool isOn) { Settings::shared().set(settings::filesAsTree, isOn); });
    connect(filter_, &IconButton::clicked, this, [this](bool isOn) { isOn ? openFilter() : closeFilter(); });
    connect(field_, &QLineEdit::textChanged, model_, &FileRowsModel::setFilter);
    const auto follow = [this] {
        const bool isTree = Settings::shared().value(settings::filesAsTree);
        tree_->setChecked(isTree);
        model_->setTree(isTree);
    };
    connect(&Settings::shared(), &Settings::changed, this, follow);
    follow();
}

void FileListTools::openFilter()
{
    filter_->setChecked(true);
    field_->show();
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->selectAll();
}

void FileListTools::closeFilter()
{
    filter_->setChecked(false);
    if (field_->hasFocus())
        list_->setFocus(Qt::OtherFocusReason);
    field_->hide();
    field_->clear();
}

bool FileListTools::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        const bool isPlain = (key->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == Qt::NoModifier;
        if (watched == field_) {
            if (key->key() == Qt::Key_Escape)
                closeFilter();
            else if (key->key() == Qt::Key_Down || key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)
                list_->setFocus(Qt::OtherFocusReason);
            else
                return false;
            return true;
        }
        return watched == list_ && isPlain && handleKey(key->key());
    }
    const bool isDouble = event->type() == QEvent::MouseButtonDblClick;
    if (watched != list_->viewport() || (!isDouble && event->type() != QEvent::MouseButtonPress))
        return false;
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    return mouse->button() == Qt::LeftButton && handleClick(mouse->position().toPoint(), isDouble);
}

bool FileListTools::handleKey(int key)
{
    if (key == Qt::Key_Slash) {
        openFilter();
        return true;
    }
    if (key == Qt::Key_Escape && !model_->filter().isEmpty()) {
        closeFilter();
        return true;
    }
    const QModelIndex current = list_->currentIndex();
    if (!current.isValid() || !model_->isFolder(current))
        return false;
    const bool isOpen = model_->row(current).isOpen;
    switch (key) {
    case Qt::Key_Left:
        model_->setOpen(current, false);
        return true;
    case Qt::Key_Right:
        model_->setOpen(current, true);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        model_->setOpen(current, !isOpen);
        return true;
    default:
        return false;
    }
}

bool FileListTools::handleClick(const QPoint& point, bool isDouble)
{
    const QModelIndex index = list_->indexAt(point);
    if (!index.isValid() || !model_->isFolder(index))
        return false;
    const QRect row = list_->visualRect(index);
    constexpr int reach = 18;
    const int begin = triangleLeft_ + model_->row(index).depth * folderIndent;
    const int x = list_->isRightToLeft() ? row.right() - point.x() : point.x() - row.left();
    const bool isOnTriangle = x >= begin && x < begin + reach;
    if (!isDouble && !isOnTriangle)
        return false;
    model_->setOpen(index, !model_->row(index).isOpen);
    return true;
}

void paintFolder(QPainter& painter, const QRect& row, int left, const FileRowsModel& model, const QModelIndex& index,
                 const QStyleOptionViewItem& option)
{
    const Theme& theme = Theme::current();
    const FileRowsModel::Row of = model.row(index);
    paintDisclosure(painter, QPointF(row.left() + left + 7, row.center().y() + 0.5), of.isOpen, theme.secondaryText);
    QRect area = row.adjusted(left + 18, 0, -14, 0);
    const QString count = QLocale().toString(of.end - of.first);
    paintText(painter, area, count, Theme::font(-1), theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
    area.setRight(area.right() - textWidth(count, Theme::font(-1)) - 8);
    paintText(painter, area, index.data(Qt::DisplayRole).toString(), option.font, theme.secondaryText, Qt::AlignLeft,
              Qt::ElideMiddle);
}

} // namespace plovik

#include "moc_FileListTools.cpp"
