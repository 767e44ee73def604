#include "app/views/workingcopy/ChangedFileDelegate.h"

#include "app/views/RowPainting.h"
#include "app/views/Theme.h"
#include "app/views/workingcopy/ChangedFilesModel.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int chipLeft = 16;
constexpr int chipSize = 18;
constexpr int pathLeft = chipLeft + chipSize + 8;

} // namespace

void ChangedFileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto& model = static_cast<const ChangedFilesModel&>(*index.model());
    const gitkit::FileChange& file = model.file(index);
    const QRect& row = option.rect;
    paintRowBackground(*painter, row, option, rowInset);
    const QRect chip(row.left() + chipLeft, row.top() + (row.height() - chipSize) / 2, chipSize, chipSize);
    paintStatusChip(*painter, chip, file.statusCode());
    paintText(*painter, row.adjusted(pathLeft, 0, -rowInset - 6, 0), shownPath(file), option.font,
              Theme::current().text, Qt::AlignLeft, Qt::ElideMiddle);
}

QSize ChangedFileDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    return {pathLeft, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
}

} // namespace plovik
