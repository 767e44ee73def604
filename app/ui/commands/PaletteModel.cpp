// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/PaletteModel.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace plovik {

void PaletteModel::show(std::shared_ptr<const PaletteEntries> entries, PaletteFound found, QString typed,
                        PaletteEntries always)
{
    beginResetModel();
    entries_ = std::move(entries);
    found_ = std::move(found);
    typed_ = std::move(typed);
    always_ = std::move(always);
    endResetModel();
}

const PaletteEntry& PaletteModel::entry(const QModelIndex& index) const
{
    const auto row = static_cast<std::size_t>(index.row());
    const std::size_t found = found_.places.size();
    return row < found ? (*entries_)[found_.places[row]] : always_.at(row - found);
}

QModelIndex PaletteModel::indexOf(const PaletteEntry& wanted) const
{
    for (int row = 0; row < rowCount(); ++row) {
        const PaletteEntry& one = entry(index(row));
        if (one.kind == wanted.kind && one.name == wanted.name && one.title == wanted.title)
            return index(row);
    }
    return {};
}

int PaletteModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(found_.places.size() + always_.size());
}

QVariant PaletteModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole && role != Qt::ToolTipRole)
        return {};
    const PaletteRow row = shown(index);
    const QString beside = row.isOffered ? row.detail : row.whyNot;
    if (role == Qt::DisplayRole)
        return row.title;
    if (role == Qt::AccessibleTextRole)
        return beside.isEmpty() ? row.title : PalettePopup::tr("%1, %2").arg(row.title, beside);
    return plainToolTip(row.isOffered ? row.title : row.whyNot);
}

namespace {

constexpr int entryInset = 4;
constexpr int entryMargin = 12;
constexpr int entryGap = 16;
constexpr int currentDotRoom = 12;

class PaletteDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const PaletteRow shown = static_cast<const PaletteModel*>(index.model())->shown(index);
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, entryInset);
        QRect row = option.rect.adjusted(entryMargin, 0, -entryMargin, 0);
        if (shown.isCurrent) {
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.accent);
            painter->drawEllipse(mirror(QPointF(row.left() + 3, row.top() + row.height() / 2.0)), 3, 3);
            painter->restore();
        }
        row.setLeft(row.left() + currentDotRoom);
        const QFont small = Theme::font(-1);
        const QString beside = shown.isOffered ? shown.detail : shown.whyNot;
        const int besideWidth = std::min(textWidth(beside, small) + 1, row.width() / 2);
        const QRect name = row.adjusted(0, 0, beside.isEmpty() ? 0 : -besideWidth - entryGap, 0);
        const int titleWidth = std::min(textWidth(shown.title, option.font) + 1, name.width());
        paintText(*painter, name, shown.title, option.font, shown.isOffered ? theme.text : theme.disabledText,
                  Qt::AlignLeft, Qt::ElideMiddle);
        paintText(*painter, row.adjusted(titleWidth + entryGap, 0, 0, 0), beside, small, theme.secondaryText,
                  Qt::AlignRight);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override
    {
        return {0, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
    }
};

} // namespace

QAbstractItemDelegate* makePaletteDelegate(QObject* parent) { return new PaletteDelegate(parent); }

} // namespace plovik
