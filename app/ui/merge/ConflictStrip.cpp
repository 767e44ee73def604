// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/ConflictStrip.h"

#include "app/ui/merge/MergeColors.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace plovik {

namespace {

using Choice = gitkit::MergeChoice;
using Strip = ConflictStrip;

constexpr int longestName = 220; ///< of a side in a button, in pixels
constexpr int shortestName = 48;
constexpr int margin = 8;
constexpr int spacing = 6;
constexpr int titleRoom = 130;

} // namespace

QString decisionText(const MergeResult::Piece& piece, const MergeNames& names)
{
    if (piece.isEdited)
        return Strip::tr("edited");
    switch (piece.choice) {
    case Choice::undecided:
        return {};
    case Choice::left:
        return Strip::tr("decided: %1").arg(names.left);
    case Choice::right:
        return Strip::tr("decided: %1").arg(names.right);
    case Choice::leftThenRight:
        return Strip::tr("decided: %1, then %2").arg(names.left, names.right);
    case Choice::rightThenLeft:
        return Strip::tr("decided: %1, then %2").arg(names.right, names.left);
    case Choice::base:
        return Strip::tr("decided: as it was");
    case Choice::none:
        return Strip::tr("decided: neither");
    }
    return {};
}

ConflictStrip::ConflictStrip(QWidget* parent)
    : QWidget(parent), title_(new ElidedLabel(this)), left_(new QPushButton(this)), right_(new QPushButton(this)),
      both_(new QPushButton(tr("Both"), this)), none_(new QPushButton(tr("Neither"), this)),
      all_(new QPushButton(tr("Decide"), this))
{
    followFont(*title_, -1, QFont::DemiBold);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margin, 2, margin, 2);
    row->setSpacing(spacing);
    row->addWidget(title_, 1);
    for (QPushButton* button : {left_, right_, both_, none_, all_}) {
        followFont(*button, -1);
        row->addWidget(button);
    }
    const auto decide = [this](QPushButton* button, Choice choice) {
        connect(button, &QPushButton::clicked, this, [this, choice] { Q_EMIT chosen(shown_.segment, choice); });
    };
    decide(left_, Choice::left);
    decide(right_, Choice::right);
    decide(none_, Choice::none);
    none_->setToolTip(tr("Take neither side (Alt+0)"));
    both_->setToolTip(tr("Take both sides, one after the other (Alt+3)"));
    addMenu(*both_, false);
    addMenu(*all_, true);
}

void ConflictStrip::addMenu(QPushButton& button, bool isOfAll)
{
    auto* menu = new QMenu(&button);
    button.setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu, isOfAll] { fillMenu(*menu, isOfAll); });
}

void ConflictStrip::fillMenu(QMenu& menu, bool isOfAll)
{
    menu.clear();
    const auto add = [&](const QString& title, Choice choice) {
        menu.addAction(plainMenuText(title), this, [this, choice] { Q_EMIT chosen(shown_.segment, choice); });
    };
    const QString& left = shown_.names.left;
    const QString& right = shown_.names.right;
    if (isOfAll) {
        add(tr("Take %1").arg(left), Choice::left);
        add(tr("Take %1").arg(right), Choice::right);
    }
    add(tr("%1 First, Then %2").arg(left, right), Choice::leftThenRight);
    add(tr("%1 First, Then %2").arg(right, left), Choice::rightThenLeft);
    if (isOfAll)
        add(tr("Take Neither"), Choice::none);
}

void ConflictStrip::show(const Shown& shown)
{
    if (shown != shown_) {
        shown_ = shown;
        const QLocale locale;
        QString title = tr("Conflict %1 of %2").arg(locale.toString(shown.number), locale.toString(shown.count));
        if (const QString decision = decisionText(shown.piece, shown.names); !decision.isEmpty())
            title += QStringLiteral(" · ") + decision;
        else if (shown.isLineEndsOnly)
            title += QStringLiteral(" · ") + tr("only the line ends differ");
        else if (shown.isWhitespaceOnly)
            title += QStringLiteral(" · ") + tr("only white space differs");
        title_->setText(title);
        arrange();
        update();
    }
    setVisible(true);
}

/// Names the buttons as long as there is room, or shows the one with the menu.
void ConflictStrip::arrange()
{
    const auto name = [](QPushButton& button, const QString& pattern, const QString& side, int room) {
        button.setText(plainMenuText(pattern.arg(button.fontMetrics().elidedText(side, Qt::ElideMiddle, room))));
    };
    const auto nameBoth = [&](int room) {
        name(*left_, QStringLiteral("⇐ %1"), shown_.names.left, room);
        name(*right_, QStringLiteral("%1 ⇒"), shown_.names.right, room);
    };
    const auto needed = [this] {
        int width = 2 * margin + Theme::scaled(titleRoom);
        for (const QPushButton* button : {left_, right_, both_, none_})
            width += button->sizeHint().width() + spacing;
        return width;
    };
    nameBoth(shortestName);
    const int least = needed();
    const bool isNarrow = width() < least;
    if (!isNarrow)
        nameBoth(std::min(longestName, shortestName + (width() - least) / 2));
    for (QPushButton* button : {left_, right_, both_, none_})
        button->setVisible(!isNarrow);
    all_->setVisible(isNarrow);
    const auto describe = [](QPushButton& button, const QString& side, const char* keys) {
        button.setAccessibleName(tr("Take %1").arg(side));
        button.setToolTip(plainToolTip(tr("Take %1 (%2)").arg(side, QLatin1String(keys))));
    };
    describe(*left_, shown_.names.left, "Alt+1");
    describe(*right_, shown_.names.right, "Alt+2");
}

int ConflictStrip::heightOfAll() { return std::max(32, QFontMetrics(Theme::font()).height() + 14); }

void ConflictStrip::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void ConflictStrip::mousePressEvent(QMouseEvent* event)
{
    Q_EMIT pressed(shown_.segment);
    event->accept();
}

void ConflictStrip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const bool isDecided = shown_.piece.isEdited || shown_.piece.choice != Choice::undecided;
    const QColor color = isDecided ? Theme::current().secondaryText : mergeColors::strongConflict();
    painter.fillRect(rect(), Theme::mixed(Theme::current().content, color, isDecided ? 0.10F : 0.24F));
    if (shown_.isCurrent)
        painter.fillRect(0, 0, 3, height(), Theme::current().accent);
}

} // namespace plovik

#include "moc_ConflictStrip.cpp"
