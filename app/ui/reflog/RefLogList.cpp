// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/reflog/RefLogList.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractListModel>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int moveInset = 6;
constexpr int moveMargin = 16;
constexpr int moveGap = 14;
constexpr double partOfAction = 0.5; ///< of what is left for both texts

QString hashOf(const RefLogRow& row) { return shownText(row.move.commit.shortHash()); }

} // namespace

class RefLogList::Model : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void set(std::vector<RefLogRow> rows)
    {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    const std::vector<RefLogRow>& rows() const { return rows_; }

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const RefLogRow& row = rows_[static_cast<std::size_t>(index.row())];
        if (role == Qt::DisplayRole)
            return shownText(row.move.action);
        if (role == Qt::ToolTipRole)
            return plainToolTip(shownText(row.move.action) + u'\n' + shownText(row.move.commit.subject) + u'\n' +
                                absoluteDate(row.move.moved, QLocale()));
        if (role != Qt::AccessibleTextRole)
            return {};
        QStringList texts{shownText(row.move.action), shownText(row.move.commit.subject), hashOf(row)};
        if (row.move.isOnlyHere)
            texts += RefLogList::tr("only here");
        return texts.join(u", "_s);
    }

private:
    std::vector<RefLogRow> rows_;
};

namespace {

/// Returns the width of a long date, so that what stands before it is aligned.
int dateWidth(const QFont& font, const QLocale& locale)
{
    constexpr std::chrono::days elevenMonths{335};
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    return textWidth(RelativeDate::toNow(now - elevenMonths).text(locale), font);
}

} // namespace

class RefLogList::Delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const RefLogRow& shown =
            static_cast<const Model*>(index.model())->rows()[static_cast<std::size_t>(index.row())];
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, moveInset);
        QRect rest = option.rect.adjusted(moveMargin, 0, -moveMargin, 0);
        const QFont small = Theme::font(-1);
        const auto addRight = [&](const QString& text, const QFont& font, int least = 0) {
            paintText(*painter, rest, text, font, theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
            rest.adjust(0, 0, -std::max(textWidth(text, font), least) - moveGap, 0);
        };
        addRight(RelativeDate::toNow(shown.move.moved).text(option.locale), small, dateWidth(small, option.locale));
        addRight(hashOf(shown), Theme::fixedFont(-1));
        if (shown.move.isOnlyHere)
            rest.adjust(0, 0, -paintPill(*painter, rest, RefLogList::tr("only here")) - moveGap, 0);
        const QString action = shownLine(shown.move.action);
        const int actionWidth =
            std::min(textWidth(action, option.font) + 1, static_cast<int>(rest.width() * partOfAction));
        paintText(*painter, QRect(rest.left(), rest.top(), actionWidth, rest.height()), action, option.font,
                  theme.text);
        paintText(*painter, rest.adjusted(actionWidth + moveGap, 0, 0, 0), shownLine(shown.move.commit.subject),
                  option.font, theme.secondaryText);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override
    {
        return {0, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
    }
};

RefLogList::RefLogList(QWidget* parent) : RowList(tr("Where It Was"), parent), model_(new Model(this))
{
    setModel(model_);
    setItemDelegate(new Delegate(this));
}

void RefLogList::setRows(std::vector<RefLogRow> rows)
{
    if (rows == model_->rows())
        return;
    const RefLogRow* const before = current();
    const std::optional<RefLogRow> kept = before ? std::optional(*before) : std::nullopt;
    {
        const QScopedValueRollback filling(isFilling_, true);
        model_->set(std::move(rows));
        const auto isKept = [&](const RefLogRow& row) {
            return kept && row.move.moved == kept->move.moved && row.move.action == kept->move.action &&
                   row.move.commit.hash == kept->move.commit.hash;
        };
        const auto found = std::ranges::find_if(model_->rows(), isKept);
        const auto row = found == model_->rows().end() ? 0 : static_cast<int>(found - model_->rows().begin());
        setCurrentIndex(model_->index(row));
    }
    Q_EMIT currentRowChanged();
}

const RefLogRow* RefLogList::rowAt(const QModelIndex& index) const
{
    return index.isValid() ? &model_->rows()[static_cast<std::size_t>(index.row())] : nullptr;
}

const RefLogRow* RefLogList::current() const { return rowAt(currentIndex()); }

void RefLogList::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    RowList::currentChanged(current, previous);
    if (!isFilling_)
        Q_EMIT currentRowChanged();
}

} // namespace plovik

#include "moc_RefLogList.cpp"
