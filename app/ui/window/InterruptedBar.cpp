// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/InterruptedBar.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace plovik {

InterruptedBar::InterruptedBar(RepositoryStore& store, QWidget* parent)
    : WarningBar(parent), store_(store), sentence_(new QLabel(this))
{
    sentence_->setAccessibleName(tr("Interrupted Step"));
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    followColor(*sentence_, QPalette::WindowText, &Theme::warningText);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 7);
    row->setSpacing(8);
    row->addWidget(sentence_, 1);
    const auto add = [this, row](const QString& title, void (Undo::*answer)()) {
        auto* const button = new QPushButton(title, this);
        button->setProperty("compact", true);
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QPushButton::clicked, this, [this, answer] { (store_.undo().*answer)(); });
        row->addWidget(button, 0, Qt::AlignTop);
        buttons_.push_back(button);
    };
    add(tr("Leave It"), &Undo::leaveInterrupted);
    add(tr("Restore the State Before"), &Undo::restoreInterrupted);
    notifiers_.push_back(store.undo().interrupted.addNotifier([this] { showStep(); }));
    notifiers_.push_back(store.changes().running.addNotifier([this] { showOffers(); }));
    showStep();
    showOffers();
}

/// While something else runs, the answer would be dropped.
void InterruptedBar::showOffers()
{
    const QString whyNot = obstacle(store_.changes(), store_.snapshot(), Verb::undo);
    for (QPushButton* button : buttons_) {
        button->setEnabled(whyNot.isEmpty());
        button->setToolTip(plainToolTip(whyNot));
    }
}

void InterruptedBar::showStep()
{
    const QString& step = store_.undo().interrupted.value();
    sentence_->setText(tr("Plovik was closed during %1.").arg(inQuotes(step)));
    setVisible(!step.isEmpty());
}

} // namespace plovik

#include "moc_InterruptedBar.cpp"
