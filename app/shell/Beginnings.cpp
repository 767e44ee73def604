// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/Beginnings.h"

#include "app/services/askpass/Askpass.h"

#include <algorithm>

namespace plovik {

namespace {

/// Returns the dialog of a kind that still asks; null when there is none.
template <typename Dialog>
Dialog* askingOne(const std::vector<QPointer<BeginDialog>>& dialogs)
{
    for (const QPointer<BeginDialog>& dialog : dialogs) {
        auto* const found = qobject_cast<Dialog*>(dialog.data());
        if (found && found->isVisible() && !found->isRunning())
            return found;
    }
    return nullptr;
}

} // namespace

Beginnings::~Beginnings()
{
    for (const QPointer<BeginDialog>& dialog : dialogs_)
        delete dialog.data();
}

template <typename Dialog>
Dialog& Beginnings::added(Dialog* dialog)
{
    std::erase_if(dialogs_, [](const QPointer<BeginDialog>& old) { return !old; });
    dialogs_.emplace_back(dialog);
    connect(dialog, &BeginDialog::made, this, &Beginnings::made);
    return *dialog;
}

CloneDialog& Beginnings::clone(const CloneWish& wish, Start start)
{
    CloneDialog* const asking = askingOne<CloneDialog>(dialogs_);
    CloneDialog& dialog = asking ? *asking : added(new CloneDialog(askpass::opener(), nullptr));
    dialog.fill(wish);
    if (start == Start::atOnce)
        dialog.begin();
    return dialog;
}

CreateDialog& Beginnings::create(const std::filesystem::path& folder, Start start)
{
    CreateDialog* const asking = askingOne<CreateDialog>(dialogs_);
    CreateDialog& dialog = asking ? *asking : added(new CreateDialog(nullptr));
    dialog.fill(folder);
    if (start == Start::atOnce)
        dialog.beginSoon();
    return dialog;
}

bool Beginnings::isAnyRunning() const
{
    return std::ranges::any_of(dialogs_,
                               [](const QPointer<BeginDialog>& dialog) { return dialog && dialog->isRunning(); });
}

} // namespace plovik

#include "moc_Beginnings.cpp"
