// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/SidebarDelegate.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Submodules.h"
#include "app/ui/sidebar/SidebarModel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int rowHeight = 26;
constexpr int rowInset = 8;     ///< of the selection's tint
constexpr int textInset = 16;   ///< of fixed items and of counts at the right
constexpr int markCenter = 22;  ///< of the dot of the checked out branch and of folders' triangles, on the first level
constexpr int refTextLeft = 36; ///< on the first level
constexpr int levelIndent = 14;
constexpr int gap = 8;
constexpr int mostOfPill = 48; ///< what a count may take of a row
/// Free space above a group's title.
constexpr int groupGap = 8;

bool isSelected(const QStyleOptionViewItem& option) { return option.state & QStyle::State_Selected; }

QRect textArea(const QRect& row, int left, int rightUsed)
{
    return row.adjusted(left, 0, -textInset - (rightUsed > 0 ? rightUsed + gap : 0), 0);
}

/// Returns what stands behind the name of a ref.
QString besideName(const SidebarModel& model, const QModelIndex& index)
{
    if (model.ref(index)->hash.empty())
        return SidebarDelegate::tr("damaged");
    if (model.isUpstreamGone(index)) {
        const QString remote = model.remoteOfUpstream(index);
        return remote.isEmpty() ? SidebarDelegate::tr("gone") : SidebarDelegate::tr("gone on %1").arg(remote);
    }
    const gitkit::Divergence from = model.divergence(index);
    QStringList parts;
    if (from.ahead > 0)
        parts.append(u"↑%L1"_s.arg(from.ahead));
    if (from.behind > 0)
        parts.append(u"↓%L1"_s.arg(from.behind));
    return parts.join(u' ');
}

/// Draws the dot of what is checked out here.
void paintHereDot(QPainter& painter, const QStyleOptionViewItem& option, int indent)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::current().accent);
    const RowMirror mirror(option);
    painter.drawEllipse(mirror(QPointF(option.rect.left() + markCenter + indent, option.rect.center().y() + 0.5)), 4.5,
                        4.5);
    painter.restore();
}

/// Returns what stands behind the name of a worktree: what is wrong with it, or its branch.
QString besideWorktree(const gitkit::Worktree& tree)
{
    if (tree.isMissing)
        return SidebarDelegate::tr("missing");
    if (tree.isBare)
        return SidebarDelegate::tr("bare");
    const QString branch = tree.branch.empty() ? SidebarDelegate::tr("detached") : shownText(tree.branchName());
    return tree.lock ? SidebarDelegate::tr("%1, locked", "branch of a worktree").arg(branch) : branch;
}

struct NeighbourName {
    QString text;
    QFont font;
};
struct NeighbourNote {
    QString text;
    QColor color;
};

/// Draws a name, and at its right a note that takes half of the row at most.
void paintNeighbour(QPainter& painter, const QStyleOptionViewItem& option, const NeighbourName& name,
                    const NeighbourNote& note)
{
    const QFont small = Theme::font(-1.5);
    const QRect room = textArea(option.rect, refTextLeft, 0);
    // Two more than its width, so that it is not elided for a rounded pixel.
    const int used = note.text.isEmpty() ? 0 : std::min(textWidth(note.text, small) + 2, room.width() / 2);
    paintText(painter, room.adjusted(room.width() - used, 0, 0, 0), note.text, small, note.color, Qt::AlignRight,
              Qt::ElideMiddle);
    paintText(painter, room.adjusted(0, 0, used > 0 ? -used - gap : 0, 0), name.text, name.font, Theme::current().text,
              Qt::AlignLeft, Qt::ElideMiddle);
}

} // namespace

SidebarDelegate::SidebarDelegate(const SidebarModel& model, QObject* parent)
    : QStyledItemDelegate(parent), model_(model)
{}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    // Called for every row of an open group, which may be 20,000: no text is made here and no other font measured.
    const int height = std::max(rowHeight, option.fontMetrics.height() + 8);
    return {textInset, model_.isGroup(index) ? height + groupGap : height};
}

bool SidebarDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                const QModelIndex& index)
{
    const QString title = index.data().toString();
    const int room = textArea(option.rect, textInset, mostOfPill).width();
    if (event->type() != QEvent::ToolTip || !index.data(Qt::ToolTipRole).toString().isEmpty() ||
        textWidth(title, Theme::font(0, QFont::DemiBold)) <= room)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(event->globalPos(), plainToolTip(title), view->viewport(), option.rect);
    return true;
}

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int above = model_.isGroup(index) ? groupGap : 0;
    const RowMirror mirror(option);
    paintRowBackground(*painter, option.rect.adjusted(0, above, 0, 0), option, rowInset);
    switch (model_.kind(index)) {
    case SidebarModel::Kind::workingCopy:
    case SidebarModel::Kind::history:
    case SidebarModel::Kind::stashes:
    case SidebarModel::Kind::timeline:
    case SidebarModel::Kind::refLog:
        paintFixedItem(*painter, option, index);
        break;
    case SidebarModel::Kind::branches:
    case SidebarModel::Kind::remotes:
    case SidebarModel::Kind::tags:
    case SidebarModel::Kind::worktrees:
    case SidebarModel::Kind::submodules:
        paintGroup(*painter, option, index);
        break;
    case SidebarModel::Kind::folder:
        paintFolder(*painter, option, index);
        break;
    case SidebarModel::Kind::ref:
        paintRef(*painter, option, index);
        break;
    case SidebarModel::Kind::worktree:
        paintWorktree(*painter, option, index);
        break;
    case SidebarModel::Kind::submodule:
        paintSubmodule(*painter, option, index);
        break;
    case SidebarModel::Kind::nothingFound:
        paintText(*painter, textArea(option.rect, textInset, 0), index.data().toString(), Theme::font(-1),
                  Theme::current().secondaryText);
        break;
    }
}

void SidebarDelegate::paintFixedItem(QPainter& painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    const int count = model_.kind(index) == SidebarModel::Kind::history ? 0 : model_.count(index);
    int used = 0;
    if (count > 0)
        used = paintPill(painter, option.rect.adjusted(0, 0, -textInset, 0), option.locale.toString(count));
    const QFont font = Theme::font(0, isSelected(option) ? QFont::DemiBold : QFont::Normal);
    paintText(painter, textArea(option.rect, textInset, used), index.data().toString(), font, Theme::current().text);
}

void SidebarDelegate::paintGroup(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const Theme& theme = Theme::current();
    const bool isOpen = option.state & QStyle::State_Open;
    const QRect row = option.rect.adjusted(0, groupGap, 0, 0);
    int used = 0;
    if (!isOpen)
        used = paintPill(painter, row.adjusted(0, 0, -textInset, 0), option.locale.toString(model_.count(index)));
    QFont font = Theme::font(-1.5, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    paintDisclosure(painter, QPointF(row.left() + textInset + 3, row.center().y() + 1), isOpen, theme.secondaryText);
    paintText(painter, textArea(row, textInset + 10, used), index.data().toString(), font, theme.secondaryText);
}

void SidebarDelegate::paintFolder(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const Theme& theme = Theme::current();
    const int indent = (model_.depth(index) - 1) * levelIndent;
    const bool isOpen = option.state & QStyle::State_Open;
    int used = 0;
    if (!isOpen)
        used =
            paintPill(painter, option.rect.adjusted(0, 0, -textInset, 0), option.locale.toString(model_.count(index)));
    paintDisclosure(painter, QPointF(option.rect.left() + markCenter + indent, option.rect.center().y() + 1), isOpen,
                    theme.secondaryText);
    paintText(painter, textArea(option.rect, refTextLeft + indent, used), index.data().toString(), Theme::font(),
              theme.secondaryText);
}

void SidebarDelegate::paintWorktree(QPainter& painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    const Theme& theme = Theme::current();
    const gitkit::Worktree* const tree = model_.worktree(index);
    if (!tree)
        return;
    if (tree->isHere)
        paintHereDot(painter, option, 0);
    const QColor beside = tree->isMissing ? theme.statusConflicted : theme.secondaryText;
    const QFont font = Theme::font(0, tree->isHere ? QFont::DemiBold : QFont::Normal);
    paintNeighbour(painter, option, {index.data().toString(), font}, {besideWorktree(*tree), beside});
}

void SidebarDelegate::paintSubmodule(QPainter& painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    const gitkit::Submodule* const submodule = model_.submodule(index);
    if (!submodule)
        return;
    const gitkit::SubmoduleState state = model_.submoduleState(*submodule);
    const bool isQuiet = state == gitkit::SubmoduleState::atRecorded;
    const bool isConflicted = state == gitkit::SubmoduleState::conflicted;
    paintNeighbour(painter, option, {index.data().toString(), Theme::font()},
                   {isQuiet ? QString() : actions::shownState(state),
                    isConflicted ? Theme::current().statusConflicted : Theme::current().secondaryText});
}

void SidebarDelegate::paintRef(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const Theme& theme = Theme::current();
    const gitkit::GitRef& ref = *model_.ref(index);
    const int indent = (model_.depth(index) - 1) * levelIndent;
    if (ref.isHead)
        paintHereDot(painter, option, indent);
    int used = 0;
    if (const QString right = besideName(model_, index); !right.isEmpty()) {
        const QFont small = Theme::font(-1.5);
        used = textWidth(right, small);
        paintText(painter, option.rect.adjusted(0, 0, -textInset, 0), right, small,
                  ref.hash.empty() ? theme.statusConflicted : theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
    }
    const bool isStrong = ref.isHead || isSelected(option);
    paintText(painter, textArea(option.rect, refTextLeft + indent, used), index.data().toString(),
              Theme::font(0, isStrong ? QFont::DemiBold : QFont::Normal), theme.text, Qt::AlignLeft, Qt::ElideMiddle);
}

} // namespace plovik

#include "moc_SidebarDelegate.cpp"
