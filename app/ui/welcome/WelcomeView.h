// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <filesystem>
#include <functional>
#include <vector>

class QListWidget;
class QPushButton;

namespace plovik {

/// The window that is shown while no repository is open. It offers to open, to clone and to make a repository, and lists
/// the recent ones; a folder dropped on it is opened, and an address cloned. Main thread.
class WelcomeView : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        /// Is given a recent repository that was chosen, or a folder that was dropped.
        std::function<void(std::filesystem::path)> open;
        std::function<void()> browse;                      ///< shows the Open panel
        std::function<void(const QString& address)> clone; ///< asks what to clone; the address may be empty
        std::function<void()> create;                      ///< asks for a new repository
    };

    explicit WelcomeView(Actions actions, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeList();
    void reloadRecents();
    void openRow(int row);
    void pinRow(int row);
    void removeRow(int row);

    Actions actions_;
    std::vector<std::filesystem::path> recents_; ///< in the order of the rows
    QPushButton* browse_;
    QWidget* recentPart_;
    QListWidget* recentList_;
};

} // namespace plovik
