// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ChoicePopup.h"

#include "app/ui/widgets/RowList.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

/// The choices that match what was typed, those that begin with it first, before or after a colon.
class ChoiceModel : public QAbstractListModel {
public:
    ChoiceModel(std::vector<Choice> choices, QObject* parent) : QAbstractListModel(parent), all_(std::move(choices))
    {
        filter({});
    }

    void filter(const QString& text)
    {
        beginResetModel();
        shown_.clear();
        const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
        // What can be chosen goes before what cannot, but only once something was typed.
        std::array<std::vector<std::size_t>, 6> ranks; // exact, at the beginning, elsewhere
        for (std::size_t index = 0; index < all_.size(); ++index) {
            const QString& title = all_[index].title;
            const bool isMatch = std::ranges::all_of(
                words, [&title](const QString& word) { return title.contains(word, Qt::CaseInsensitive); });
            if (isMatch)
                ranks.at(2 * rankOf(title, text) + (text.isEmpty() || all_[index].isOffered ? 0 : 1)).push_back(index);
        }
        for (const std::vector<std::size_t>& rank : ranks)
            shown_.insert(shown_.end(), rank.begin(), rank.end());
        endResetModel();
    }

    std::size_t count() const { return all_.size(); }
    const Choice& choice(const QModelIndex& index) const { return all_[shown_[static_cast<std::size_t>(index.row())]]; }

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(shown_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        const Choice& shown = choice(index);
        const QString beside = shown.isOffered ? shown.detail : shown.whyNot;
        if (role == Qt::DisplayRole)
            return shown.title;
        if (role == Qt::AccessibleTextRole)
            return beside.isEmpty() ? shown.title : ChoicePopup::tr("%1, %2").arg(shown.title, beside);
        if (role == Qt::ToolTipRole)
            return plainToolTip(shown.isOffered ? shown.title : shown.whyNot);
        return {};
    }

private:
    static std::size_t rankOf(const QString& title, const QString& text)
    {
        const QStringView name = QStringView(title).mid(title.contains(u": "_s) ? title.indexOf(u": "_s) + 2 : 0);
        if (title.compare(text, Qt::CaseInsensitive) == 0)
            return 0;
        const bool isBeginning =
            title.startsWith(text, Qt::CaseInsensitive) || name.startsWith(text, Qt::CaseInsensitive);
        return isBeginning ? 1 : 2;
    }

    std::vector<Choice> all_;
    std::vector<std::size_t> shown_;
};

namespace {

constexpr int choiceInset = 4;
constexpr int choiceMargin = 12;
constexpr int choiceGap = 16;
constexpr int dotRoom = 12;
constexpr int shortList = 9;
constexpr int mostRows = 14;
constexpr int leastPopupWidth = 300;
constexpr int palettePopupWidth = 560;

class ChoiceDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const Choice& choice = static_cast<const ChoiceModel*>(index.model())->choice(index);
        const Theme& theme = Theme::current();
        const RowMirror mirror(option);
        paintRowBackground(*painter, option.rect, option, choiceInset);
        QRect row = option.rect.adjusted(choiceMargin, 0, -choiceMargin, 0);
        if (choice.isCurrent) {
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.accent);
            painter->drawEllipse(mirror(QPointF(row.left() + 3, row.top() + row.height() / 2.0)), 3, 3);
            painter->restore();
        }
        row.setLeft(row.left() + dotRoom);
        const QFont small = Theme::font(-1);
        const QString beside = choice.isOffered ? choice.detail : choice.whyNot;
        const int title = std::min(textWidth(choice.title, option.font) + 1, row.width());
        const QRect rest = row.adjusted(title + choiceGap, 0, 0, 0);
        paintText(*painter, row, choice.title, option.font, choice.isOffered ? theme.text : theme.disabledText,
                  Qt::AlignLeft, Qt::ElideMiddle);
        if (rest.width() > choiceGap)
            paintText(*painter, rest, beside, small, theme.secondaryText, Qt::AlignRight);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override
    {
        return {0, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
    }
};

} // namespace

ChoicePopup::ChoicePopup(const Names& names, std::vector<Choice> choices, bool alwaysFilters, QWidget* parent)
    : QFrame(parent, Qt::Popup), model_(new ChoiceModel(std::move(choices), this)), field_(new QLineEdit(this)),
      list_(new RowList(names.list, this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleName(names.list);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    field_->setAccessibleName(names.field);
    field_->setPlaceholderText(names.hint);
    field_->installEventFilter(this);
    field_->setVisible(alwaysFilters || model_->count() > shortList);
    connect(field_, &QLineEdit::textChanged, this, &ChoicePopup::filter);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setModel(model_);
    list_->setItemDelegate(new ChoiceDelegate(list_));
    list_->setMouseTracking(true);
    list_->installEventFilter(this);
    connect(list_, &QListView::clicked, this, &ChoicePopup::choose);
    connect(list_, &QListView::entered, list_, &QListView::setCurrentIndex);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->setSpacing(4);
    column->addWidget(field_);
    column->addWidget(list_, 1);
    filter({});
}

void ChoicePopup::filter(const QString& text)
{
    model_->filter(text.trimmed());
    list_->setCurrentIndex(model_->index(0));
}

void ChoicePopup::openBelow(const QWidget& button)
{
    const bool isMirrored = button.layoutDirection() == Qt::RightToLeft;
    const int width = std::max(Theme::scaled(leastPopupWidth), button.width());
    const QPoint corner = button.mapToGlobal(QPoint(isMirrored ? button.width() - width : 0, button.height() + 2));
    open(corner, width);
}

void ChoicePopup::openOver(const QWidget& window)
{
    const int width = std::min(Theme::scaled(palettePopupWidth), window.width() - 40);
    open(window.mapToGlobal(QPoint((window.width() - width) / 2, 80)), width);
}

void ChoicePopup::open(QPoint place, int width)
{
    const int rows = std::clamp(model_->rowCount(), 1, mostRows);
    const int rowHeight = std::max(listRowHeight, QFontMetrics(font()).height() + 8);
    const int field = field_->isHidden() ? 0 : field_->sizeHint().height() + 4;
    const QRect available = parentWidget()->screen()->availableGeometry();
    const QSize size(width, std::min(rows * rowHeight + field + 28, available.height() - 40));
    place.setX(std::clamp(place.x(), available.left(), std::max(available.left(), available.right() - size.width())));
    place.setY(std::clamp(place.y(), available.top(), std::max(available.top(), available.bottom() - size.height())));
    setGeometry({place, size});
    show();
    (field_->isHidden() ? static_cast<QWidget*>(list_) : field_)->setFocus(Qt::PopupFocusReason);
}

void ChoicePopup::choose(const QModelIndex& index)
{
    if (!index.isValid() || !model_->choice(index).isOffered)
        return;
    // What is run may open a dialog, over which no popup must stay.
    const std::function<void()> run = model_->choice(index).run;
    close();
    if (run)
        run();
}

bool ChoicePopup::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(list_->currentIndex());
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (watched != field_)
            return false;
        QApplication::sendEvent(list_, event);
        return true;
    default:
        return QFrame::eventFilter(watched, event);
    }
}

} // namespace plovik

#include "moc_ChoicePopup.cpp"
