// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/SubmoduleBar.h"

#include "app/store/actions/Submodules.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace plovik {

SubmoduleBar::SubmoduleBar(RepositoryStore& store, QWidget* parent)
    : WarningBar(parent), store_(store), sentence_(new QLabel(this)), update_(new QPushButton(tr("Update"), this))
{
    sentence_->setAccessibleName(tr("Submodules to Update"));
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    followColor(*sentence_, QPalette::WindowText, &Theme::warningText);
    auto* const close = new QPushButton(tr("Leave Them"), this);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 7);
    row->setSpacing(8);
    row->addWidget(sentence_, 1);
    for (QPushButton* const button : {close, update_}) {
        button->setProperty("compact", true);
        button->setFocusPolicy(Qt::TabFocus);
        row->addWidget(button, 0, Qt::AlignTop);
    }
    connect(close, &QPushButton::clicked, this, [this] { store_.neighbours().leaveOutdated(); });
    connect(update_, &QPushButton::clicked, this,
            [this] { actions::updateSubmodules(store_.actors(), store_.neighbours().outdated.value()); });
    notifiers_.push_back(store.neighbours().outdated.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store.changes().running.addNotifier([this] { showOffer(); }));
    showCount();
    showOffer();
}

void SubmoduleBar::showCount()
{
    const auto count = static_cast<int>(store_.neighbours().outdated.value().size());
    sentence_->setText(tr("%Ln submodule(s) are not at the recorded commit.", nullptr, count));
    setVisible(count > 0);
}

void SubmoduleBar::showOffer()
{
    const QString whyNot = store_.changes().whyNot(Verb::updateSubmodules);
    update_->setEnabled(whyNot.isEmpty());
    update_->setToolTip(plainToolTip(whyNot));
}

} // namespace plovik

#include "moc_SubmoduleBar.cpp"
