// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/MessageDialog.h"

#include "app/ui/dialogs/DialogParts.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace plovik {

MessageDialog::MessageDialog(const QString& title, const QString& detail, QWidget* parent) : QDialog(parent)
{
    dialogParts::prepare(*this, title);
    setAccessibleDescription(detail);
    auto* const ok = new QPushButton(tr("OK"), this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    QLabel* const text = dialogParts::secondaryText(detail, this);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QVBoxLayout* const column = dialogParts::column(*this);
    column->addWidget(dialogParts::heading(title, this));
    column->addWidget(text);
    column->addSpacing(10);
    column->addLayout(dialogParts::buttonRow({ok}));
    ok->setFocus();
    dialogParts::fit(*this);
}

} // namespace plovik

#include "moc_MessageDialog.cpp"
