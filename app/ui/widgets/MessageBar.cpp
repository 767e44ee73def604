// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/MessageBar.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace plovik {

namespace {

/// A hook or a broken file can make git print pages; the bar must leave room for the window.
constexpr qsizetype longestText = 1200;

} // namespace

MessageBar::MessageBar(const QString& name, Dismissal dismissal, QWidget* parent)
    : WarningBar(parent), label_(new QLabel(this))
{
    label_->setAccessibleName(name);
    label_->setWordWrap(true);
    label_->setTextFormat(Qt::PlainText);
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 7);
    row->addWidget(label_, 1);
    if (dismissal == Dismissal::byUser) {
        auto* dismiss = new QPushButton(tr("Dismiss"), this);
        dismiss->setProperty("compact", true);
        connect(dismiss, &QPushButton::clicked, this, [this] { setText(QString()); });
        row->addWidget(dismiss, 0, Qt::AlignTop);
    }
    followColor(*label_, QPalette::WindowText, &Theme::warningText);
    hide();
}

void MessageBar::setText(const QString& text)
{
    QString shown = text.trimmed();
    if (shown.size() > longestText)
        shown = shown.left(longestText) + QChar(u'…');
    shown = withStandIns(shown);
    label_->setText(shown);
    label_->setAccessibleDescription(shown);
    setVisible(!shown.isEmpty());
}

} // namespace plovik

#include "moc_MessageBar.cpp"
