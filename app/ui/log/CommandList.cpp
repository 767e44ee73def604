// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/log/CommandList.h"

#include "app/settings/CodeFont.h"
#include "app/store/CommandLine.h"
#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/log/CommandLogModel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int textInset = 14;
constexpr int gap = 12;
constexpr int rowHeight = 26;

/// Draws a command's row.
class CommandDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const auto& command = static_cast<const CommandLogModel*>(index.model())->command(index);
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, rowInset);
        const QFont small = Theme::font(-1);
        QRect row = option.rect.adjusted(textInset, 0, -textInset, 0);
        paintText(*painter, row, shownBegin(command), small, theme.secondaryText, Qt::AlignLeft, Qt::ElideNone);
        row.setLeft(row.left() + textWidth(u"00:00:00"_s, small) + gap);

        const QString took = shownTook(command);
        paintText(*painter, row, took, small, theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
        if (!took.isEmpty())
            row.setRight(row.right() - std::max(textWidth(took, small), textWidth(u"0.000 s"_s, small)) - gap);
        const QString end = shownEnd(command);
        const QColor endColor = hasFailed(command) ? theme.statusDeleted : theme.secondaryText;
        paintText(*painter, row, end, small, endColor, Qt::AlignRight, Qt::ElideNone);
        if (!end.isEmpty())
            row.setRight(row.right() - textWidth(end, small) - gap);
        QFont code = CodeFont::current();
        code.setPointSizeF(std::min(code.pointSizeF(), small.pointSizeF() + 1));
        paintText(*painter, row, index.data().toString(), code, theme.text);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {textInset * 2, std::max(rowHeight, option.fontMetrics.height() + 6)};
    }
};

} // namespace

CommandList::CommandList(CommandLogModel& model, QWidget* parent) : RowList(tr("Command Log"), parent), model_(model)
{
    setModel(&model);
    setItemDelegate(new CommandDelegate(this));
}

void CommandList::update()
{
    QScrollBar& bar = *verticalScrollBar();
    const QPersistentModelIndex kept = keptIndex();
    const int before = kept.isValid() ? visualRect(kept).y() : 0;
    model_.update();
    if (!kept.isValid())
        return;
    doItemsLayout();
    bar.setValue(bar.value() + visualRect(kept).y() - before);
}

/// The row that stays where it is: the one that is looked at, or else the first in sight; none at the newest.
QModelIndex CommandList::keptIndex() const
{
    const QModelIndex current = currentIndex();
    if (current.row() > 0 && viewport()->rect().intersects(visualRect(current)))
        return current;
    return verticalScrollBar()->value() > 0 ? indexAt(QPoint(1, 0)) : QModelIndex();
}

void CommandList::copy()
{
    if (!currentIndex().isValid())
        return;
    const CommandLog::Command& command = model_.command(currentIndex());
    QGuiApplication::clipboard()->setText(exactText(shellLine(command.directory, command.arguments)));
}

void CommandList::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        copy();
    else
        RowList::keyPressEvent(event);
}

void CommandList::contextMenuEvent(QContextMenuEvent* event)
{
    const std::optional<QPoint> place = menuPosition(*this, *event);
    QMenu* const menu = place ? makeContextMenu() : nullptr;
    if (!menu)
        return;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(*place);
}

QMenu* CommandList::makeContextMenu()
{
    if (!currentIndex().isValid())
        return nullptr;
    auto* const menu = new QMenu(this);
    markAs(CommandId::copyShellLine, menu->addAction(tr("Copy as Shell Line"), this, &CommandList::copy));
    markAs(CommandId::copyOutput, menu->addAction(tr("Copy Output"), this, &CommandList::outputWanted));
    return menu;
}

} // namespace plovik

#include "moc_CommandList.cpp"
