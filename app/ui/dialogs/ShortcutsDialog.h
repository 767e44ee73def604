// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <span>

class QLineEdit;
class QTreeWidget;

namespace plovik {

/// Keys that lists and texts listen to while they have the focus.
struct ListKeys {
    const char* keys;    ///< as they are shown
    const char* meaning; ///< untranslated, in the context "plovik::ShortcutsDialog"
};
std::span<const ListKeys> listKeys();

/// The page "Keyboard Shortcuts": all keys with what they do, by menu, and a field that filters them. It can stay open
/// beside the work. Main thread.
class ShortcutsDialog : public QDialog {
    Q_OBJECT

public:
    explicit ShortcutsDialog(QWidget* parent);

    /// Shows only what has all words of `text` in its name or its keys.
    void filter(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addGroups();

    QLineEdit* filter_;
    QTreeWidget* list_;
};

/// Opens the page over a window, or brings the one that is open to the front.
void showShortcuts(QWidget& window);

} // namespace plovik
