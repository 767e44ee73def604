// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/welcome/BeginDialog.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace plovik {

class FolderField;

/// What a clone dialog begins with. Empty fields are left to the user.
struct CloneWish {
    QString address = {};
    std::filesystem::path folder = {}; ///< absolute
};

/// Asks for an address and a folder, and clones. Main thread.
class CloneDialog : public BeginDialog {
    Q_OBJECT

public:
    CloneDialog(OpenSignIn signIn, QWidget* parent);

    /// Fills the fields, unless a clone runs. Without an address, takes the one in the clipboard if there is one.
    void fill(const CloneWish& wish);

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    void start(RepositoryMaker& maker, RepositoryMaker::Made made) override;

private:
    std::string address() const;
    void addressChanged();

    QLineEdit* address_;
    FolderField* folder_;
    QCheckBox* submodules_;
    QComboBox* depth_;
    QLineEdit* branch_;
};

} // namespace plovik
