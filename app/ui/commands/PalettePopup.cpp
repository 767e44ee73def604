// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/PalettePopup.h"

#include "app/ui/commands/PaletteModel.h"
#include "app/ui/widgets/RowList.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr int mostShownRows = 14;
constexpr int leastShownRows = 4;
constexpr int leastPopupWidth = 380;
constexpr int palettePopupWidth = 620;

} // namespace

PalettePopup::PalettePopup(const GitAccess& git, const Names& names, PaletteRequest request, Actions actions,
                           QWidget* parent)
    : QFrame(parent, Qt::Popup), actions_(std::move(actions)),
      entries_(std::make_shared<const PaletteEntries>(request.first)), reading_(git, &readPalette, [this] { look(); }),
      search_(git, &findInPalette, [this] { showFound(); }), model_(new PaletteModel(actions_.row, this)),
      field_(new QLineEdit(this)), list_(new RowList(names.list, this)), state_(new QLabel(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleName(names.list);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    field_->setAccessibleName(names.field);
    field_->setPlaceholderText(names.hint);
    field_->installEventFilter(this);
    connect(field_, &QLineEdit::textChanged, this, [this] {
        choosesWhenFound_ = false;
        look();
    });
    list_->setFrameShape(QFrame::NoFrame);
    list_->setModel(model_);
    list_->setItemDelegate(makePaletteDelegate(list_));
    list_->setMouseTracking(true);
    list_->installEventFilter(this);
    connect(list_, &QListView::clicked, this, &PalettePopup::choose);
    connect(list_, &QListView::entered, list_, &QListView::setCurrentIndex);
    state_->setTextFormat(Qt::PlainText);
    state_->setForegroundRole(QPalette::PlaceholderText);
    state_->setContentsMargins(12, 2, 12, 4);
    followFont(*state_, -1);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->setSpacing(4);
    column->addWidget(field_);
    column->addWidget(list_, 1);
    column->addWidget(state_);
    look();
    reading_.ask(std::move(request));
}

PalettePopup::~PalettePopup() = default;

/// Looks for what is typed in what is known by now.
void PalettePopup::look()
{
    if (reading_.result())
        entries_ = *reading_.result();
    search_.ask({entries_, field_->text()});
    showState();
}

void PalettePopup::showFound()
{
    if (!search_.result() || search_.answered() != search_.asked())
        return;
    const QString typed = search_.answered()->typed;
    const QModelIndex before = list_->currentIndex();
    const std::optional<PaletteEntry> chosen =
        before.row() > 0 ? std::optional(model_->entry(before)) : std::nullopt; // the first follows the search
    const bool isAnswered = model_->typed() == typed;
    model_->show(search_.answered()->entries, *search_.result(), typed,
                 actions_.always && !typed.trimmed().isEmpty() ? actions_.always(typed.trimmed()) : PaletteEntries());
    const QModelIndex same = isAnswered && chosen ? model_->indexOf(*chosen) : QModelIndex();
    list_->setCurrentIndex(same.isValid() ? same : model_->index(0));
    showState();
    if (std::exchange(choosesWhenFound_, false))
        choose(list_->currentIndex());
}

void PalettePopup::showState()
{
    QString text;
    if (reading_.failure())
        text = reading_.failure()->message;
    else if (reading_.isReading())
        text = tr("Reading what there is…");
    else if (model_->hiddenCount() > 0)
        text = tr("%Ln more row(s): type on to see them.", nullptr, static_cast<int>(model_->hiddenCount()));
    else if (search_.answered() && !model_->hasFound())
        text = tr("Nothing has this name.");
    state_->setText(text);
    state_->setAccessibleName(text);
    state_->setVisible(!text.isEmpty());
}

void PalettePopup::openBelow(const QWidget& button, std::size_t rows)
{
    const bool isMirrored = button.layoutDirection() == Qt::RightToLeft;
    const int width = std::max(Theme::scaled(leastPopupWidth), button.width());
    const QPoint corner = button.mapToGlobal(QPoint(isMirrored ? button.width() - width : 0, button.height() + 2));
    open(corner, width, static_cast<int>(std::clamp<std::size_t>(rows, leastShownRows, mostShownRows)));
}

void PalettePopup::openOver(const QWidget& window)
{
    const int width = std::min(Theme::scaled(palettePopupWidth), window.width() - 40);
    open(window.mapToGlobal(QPoint((window.width() - width) / 2, 80)), width, mostShownRows);
}

void PalettePopup::open(QPoint place, int width, int rows)
{
    const int rowHeight = std::max(listRowHeight, QFontMetrics(font()).height() + 8);
    const QRect available = parentWidget()->screen()->availableGeometry();
    const QSize size(width, std::min(rows * rowHeight + field_->sizeHint().height() + 32, available.height() - 40));
    place.setX(std::clamp(place.x(), available.left(), std::max(available.left(), available.right() - size.width())));
    place.setY(std::clamp(place.y(), available.top(), std::max(available.top(), available.bottom() - size.height())));
    setGeometry({place, size});
    show();
    field_->setFocus(Qt::PopupFocusReason);
}

/// Chooses a row, or the first one that is found once what was typed last has been looked for.
void PalettePopup::wish(const QModelIndex& index)
{
    if (search_.isReading() || model_->typed() != field_->text())
        choosesWhenFound_ = true;
    else
        choose(index);
}

void PalettePopup::choose(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const PaletteEntry entry = model_->entry(index);
    if (!actions_.row(entry).isOffered)
        return;
    // What is run may open a dialog, over which no popup must stay.
    const std::function<void(const PaletteEntry&)> run = actions_.choose;
    close();
    run(entry);
}

void PalettePopup::rowsChanged() { list_->viewport()->update(); }

bool PalettePopup::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (actions_.pin && key->keyCombination() == (Qt::CTRL | Qt::Key_P) && list_->currentIndex().isValid()) {
        actions_.pin(model_->entry(list_->currentIndex()));
        rowsChanged();
        return true;
    }
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        wish(list_->currentIndex());
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

#include "moc_PalettePopup.cpp"
