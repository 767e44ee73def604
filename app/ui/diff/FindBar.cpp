// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/FindBar.h"

#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/Theme.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>

namespace plovik {

using namespace Qt::StringLiterals;

FindBar::FindBar(Finder& finder, QWidget* parent)
    : QWidget(parent), finder_(finder), field_(new QLineEdit(this)), count_(new QLabel(this)), wrap_(new QLabel(this)),
      previous_(new IconButton(Icon::previous, tr("Previous Match"), this, u"Shift+F3"_s)),
      next_(new IconButton(Icon::next, tr("Next Match"), this, u"F3"_s)),
      cases_(new IconButton(Icon::matchCase, tr("Match Case"), this))
{
    field_->setAccessibleName(tr("Find in Diff"));
    field_->setPlaceholderText(tr("Find in diff"));
    field_->setMinimumWidth(100);
    field_->setMaximumWidth(360);
    field_->installEventFilter(this);
    cases_->setCheckable(true);
    auto* const close = new IconButton(Icon::close, tr("Close Find"), this, u"Esc"_s);
    for (QLabel* const label : {count_, wrap_})
        label->setTextFormat(Qt::PlainText);
    count_->setAccessibleName(tr("Matches"));

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 5, 8, 4);
    row->setSpacing(4);
    row->addWidget(field_, 1);
    row->addWidget(cases_);
    row->addWidget(previous_);
    row->addWidget(next_);
    row->addSpacing(8);
    row->addWidget(count_);
    row->addSpacing(8);
    row->addWidget(wrap_);
    row->addStretch(1);
    row->addWidget(close);

    connect(field_, &QLineEdit::textChanged, this, &FindBar::search);
    connect(cases_, &IconButton::toggled, this, &FindBar::search);
    connect(previous_, &IconButton::clicked, this, [this] { step(-1); });
    connect(next_, &IconButton::clicked, this, [this] { step(1); });
    connect(close, &IconButton::clicked, this, &FindBar::close);
    connect(&finder_, &Finder::changed, this, &FindBar::showCount);
    connect(&finder_, &Finder::wrapped, this,
            [this](int direction) { wrap_->setText(direction > 0 ? tr("↺ From the top") : tr("↻ From the end")); });
    applyTheme();
    hide();
}

void FindBar::setSubject(const QString& name, const QString& placeholder)
{
    field_->setAccessibleName(name);
    field_->setPlaceholderText(placeholder);
}

void FindBar::open(const QString& text)
{
    show();
    if (!text.isEmpty())
        field_->setText(text);
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->selectAll();
    search();
}

void FindBar::close()
{
    if (isHidden())
        return;
    if (isAncestorOf(QApplication::focusWidget()))
        Q_EMIT focusReturned();
    hide();
    finder_.stop();
}

void FindBar::search()
{
    wrap_->clear();
    finder_.search({field_->text(), cases_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive});
    showCount();
}

void FindBar::step(int direction)
{
    wrap_->clear();
    finder_.step(direction);
}

void FindBar::showCount()
{
    const QLocale english(QLocale::English);
    const int count = finder_.count();
    QString all = english.toString(count);
    if (finder_.isCut() || finder_.isSearching())
        all += u'+';
    QString text;
    if (field_->text().isEmpty())
        text.clear();
    else if (count == 0)
        text = finder_.isSearching() ? tr("Searching…") : tr("No matches");
    else if (finder_.current() < 0)
        text = count == 1 ? tr("1 match") : tr("%1 matches").arg(all);
    else
        text = tr("%1 of %2").arg(english.toString(finder_.current() + 1), all);
    count_->setText(text);
    count_->setAccessibleDescription(text);
    field_->setAccessibleDescription(text);
    previous_->setEnabled(count > 0);
    next_->setEnabled(count > 0);
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != field_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* const key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter)
        return false;
    step(key->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    return true;
}

void FindBar::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.bars);
    painter.fillRect(0, 0, width(), 1, theme.separator);
}

void FindBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void FindBar::applyTheme()
{
    QPalette quiet;
    for (const auto role : {QPalette::WindowText, QPalette::Text})
        quiet.setColor(role, Theme::current().secondaryText);
    count_->setPalette(quiet);
    wrap_->setPalette(quiet);
}

bool isFindKey(const FindBar* bar, const QKeyEvent& event)
{
    if (event.matches(QKeySequence::Find))
        return true;
    const bool isOpen = bar && bar->isVisible();
    return isOpen && (event.key() == Qt::Key_F3 || event.key() == Qt::Key_Escape);
}

void handleFindKey(FindBar* bar, const QKeyEvent& event, const std::function<void()>& open)
{
    if (event.key() == Qt::Key_Escape)
        bar->close();
    else if (event.key() == Qt::Key_F3)
        bar->step(event.modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    else
        open();
}

} // namespace plovik

#include "moc_FindBar.cpp"
