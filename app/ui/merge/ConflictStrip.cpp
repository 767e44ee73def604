// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/ConflictStrip.h"

#include "app/ui/merge/MergeColors.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
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
    : QWidget(parent), title_(new QLabel(this)), left_(new QPushButton(this)), right_(new QPushButton(this)),
      both_(new QPushButton(tr("Both"), this)), none_(new QPushButton(tr("Neither"), this))
{
    title_->setTextFormat(Qt::PlainText);
    title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    followFont(*title_, -1, QFont::DemiBold);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margin, 2, margin, 2);
    row->setSpacing(6);
    row->addWidget(title_, 1);
    for (QPushButton* button : {left_, right_, both_, none_}) {
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
    makeBothMenu();
}

void ConflictStrip::makeBothMenu()
{
    auto* menu = new QMenu(both_);
    both_->setMenu(menu);
    both_->setToolTip(tr("Take both sides, one after the other (Alt+3)"));
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        const auto add = [&](const QString& first, const QString& second, Choice choice) {
            menu->addAction(plainMenuText(tr("%1 First, Then %2").arg(first, second)), this,
                            [this, choice] { Q_EMIT chosen(shown_.segment, choice); });
        };
        add(shown_.names.left, shown_.names.right, Choice::leftThenRight);
        add(shown_.names.right, shown_.names.left, Choice::rightThenLeft);
    });
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
        title_->setToolTip(plainToolTip(title));
        nameButtons();
        update();
    }
    setVisible(true);
}

void ConflictStrip::nameButtons()
{
    const int others = both_->sizeHint().width() + none_->sizeHint().width() + title_->minimumSizeHint().width();
    const int room = std::clamp((width() - others - 160) / 2, shortestName, longestName);
    const auto name = [room](QPushButton& button, const QString& pattern, const QString& side, const QString& keys) {
        const QString shortened = button.fontMetrics().elidedText(side, Qt::ElideMiddle, room);
        button.setText(plainMenuText(pattern.arg(shortened)));
        button.setAccessibleName(tr("Take %1").arg(side));
        button.setToolTip(plainToolTip(tr("Take %1 (%2)").arg(side, keys)));
    };
    name(*left_, QStringLiteral("⇐ %1"), shown_.names.left, QStringLiteral("Alt+1"));
    name(*right_, QStringLiteral("%1 ⇒"), shown_.names.right, QStringLiteral("Alt+2"));
}

int ConflictStrip::heightOfAll() { return std::max(32, QFontMetrics(Theme::font()).height() + 14); }

void ConflictStrip::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    nameButtons();
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
