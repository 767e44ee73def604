// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/compare/CommitsApartList.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

using gitkit::CommitApart;

namespace {

constexpr int apartMargin = 14;
constexpr int markRoom = 20;
constexpr int apartGap = 12;

QString markOf(CommitApart::Side side)
{
    if (side == CommitApart::Side::same)
        return u"="_s;
    return side == CommitApart::Side::first ? u"<"_s : u">"_s;
}

} // namespace

class CommitsApartList::Model : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void set(std::vector<CommitApart> commits, const QString& first, const QString& second)
    {
        beginResetModel();
        commits_ = std::move(commits);
        first_ = first;
        second_ = second;
        endResetModel();
    }
    const CommitApart& commit(const QModelIndex& index) const
    {
        return commits_[static_cast<std::size_t>(index.row())];
    }

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(commits_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const CommitApart& shown = commit(index);
        if (role == Qt::DisplayRole)
            return shownText(shown.commit.subject);
        if (role == Qt::AccessibleTextRole)
            return QStringList{shownText(shown.commit.subject), place(shown.side), shownText(shown.commit.authorName),
                               shownText(shown.commit.shortHash())}
                .join(u", "_s);
        return role == Qt::ToolTipRole ? QVariant(plainToolTip(place(shown.side))) : QVariant();
    }

private:
    QString place(CommitApart::Side side) const
    {
        if (side == CommitApart::Side::same)
            return CommitsApartList::tr("the other side has the same changes");
        return CommitsApartList::tr("only in %1").arg(side == CommitApart::Side::first ? first_ : second_);
    }

    std::vector<CommitApart> commits_;
    QString first_, second_;
};

class CommitsApartList::Delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const CommitApart& shown = static_cast<const Model*>(index.model())->commit(index);
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, 0);
        QRect row = option.rect.adjusted(apartMargin, 0, -apartMargin, 0);
        const bool isSame = shown.side == CommitApart::Side::same;
        const bool isFirst = shown.side == CommitApart::Side::first;
        const QColor sign = isSame ? theme.secondaryText : isFirst ? theme.statusDeleted : theme.statusAdded;
        paintText(*painter, row, markOf(shown.side), Theme::fixedFont(), sign);
        row.setLeft(row.left() + Theme::scaled(markRoom));
        const QFont small = Theme::font(-1);
        const QString beside = shownLine(shown.commit.authorName) + u"  "_s +
                               shortTime(shown.commit.date, option.locale) + u"  "_s +
                               shownText(shown.commit.shortHash());
        const int besideWidth = std::min(textWidth(beside, small) + 1, row.width() / 2);
        paintText(*painter, row.adjusted(0, 0, -besideWidth - apartGap, 0), shownLine(shown.commit.subject),
                  option.font, isSame ? theme.secondaryText : theme.text);
        paintText(*painter, row.adjusted(row.width() - besideWidth, 0, 0, 0), beside, small, theme.secondaryText,
                  Qt::AlignRight);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override
    {
        return {0, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
    }
};

CommitsApartList::CommitsApartList(QWidget* parent) : RowList(tr("Commits Apart"), parent), model_(new Model(this))
{
    setModel(model_);
    setItemDelegate(new Delegate(this));
    connect(this, &QListView::doubleClicked, this, &CommitsApartList::request);
}

void CommitsApartList::setCommits(std::vector<CommitApart> commits, const QString& first, const QString& second)
{
    model_->set(std::move(commits), first, second);
    setCurrentIndex(model_->index(0));
}

void CommitsApartList::request(const QModelIndex& index)
{
    if (index.isValid())
        Q_EMIT commitRequested(std::string(model_->commit(index).commit.hash));
}

void CommitsApartList::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        request(currentIndex());
    else
        RowList::keyPressEvent(event);
}

} // namespace plovik

#include "moc_CommitsApartList.cpp"
