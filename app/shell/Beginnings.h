// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/welcome/CloneDialog.h"
#include "app/ui/welcome/CreateDialog.h"

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <functional>

namespace plovik {

/// The windows that clone or make repositories. One of each kind asks at a time, and any number may run. The windows
/// belong to no other window, and are deleted with this. Main thread.
class Beginnings : public QObject {
    Q_OBJECT

public:
    /// Whether the user is asked first, or what is wished begins at once if it can.
    enum class Start { asked, atOnce };

    ~Beginnings() override;

    CloneDialog& clone(const CloneWish& wish, Start start);
    CreateDialog& create(const std::filesystem::path& folder, Start start);
    /// Returns whether git makes a repository.
    bool isAnyRunning() const;

Q_SIGNALS:
    void made(const std::filesystem::path& folder, const QString& problem);

private:
    template <typename Dialog>
    Dialog& added(Dialog* dialog);

    std::vector<QPointer<BeginDialog>> dialogs_;
};

} // namespace plovik
