// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/Foretelling.h"

#include "app/store/ForetoldWords.h"
#include "app/ui/widgets/RowPainting.h"

#include <QAction>
#include <QMenu>
#include <QToolTip>

#include <utility>

namespace plovik {

Foretelling::Foretelling(RepositoryStore& store, ForetoldQuestion question, std::function<void(const QString&)> told,
                         QObject* parent)
    : QObject(parent), question_(std::move(question)), told_(std::move(told)),
      reading_(
          store.git(), &readForetold,
          [this] { told_(reading_.answer() && !reading_.failure() ? foretoldWords(*reading_.answer()) : QString()); },
          Worker::Lane::longRead)
{}

void Foretelling::begin() { reading_.ask(question_); }

void foretellIn(QMenu& menu, QAction& entry, RepositoryStore& store, ForetoldQuestion question)
{
    if (!entry.isEnabled())
        return;
    menu.setToolTipsVisible(true);
    auto* const foretelling = new Foretelling(
        store, std::move(question),
        [&menu, &entry](const QString& words) {
            if (words.isEmpty())
                return;
            entry.setToolTip(plainToolTip(words));
            if (menu.isVisible() && menu.activeAction() == &entry)
                QToolTip::showText(menu.mapToGlobal(menu.actionGeometry(&entry).bottomLeft()), plainToolTip(words),
                                   &menu);
        },
        &menu);
    QObject::connect(&menu, &QMenu::hovered, foretelling, [&entry, foretelling](QAction* current) {
        current == &entry ? foretelling->begin() : foretelling->end();
    });
    QObject::connect(&menu, &QMenu::aboutToHide, foretelling, [foretelling] { foretelling->end(); });
}

} // namespace plovik

#include "moc_Foretelling.cpp"
