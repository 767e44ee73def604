#pragma once

#include <QWidget>

#include <filesystem>
#include <functional>

class QListWidget;
class QLabel;

namespace plovik {

/// What stands on the screen when no repository is open: the way to open one, and those opened lately.
class WelcomeView : public QWidget {
    Q_OBJECT

public:
    /// `open` is given a recent repository that was chosen; `browse` shows the Open panel.
    WelcomeView(std::function<void(std::filesystem::path)> open, std::function<void()> browse,
                QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void reloadRecents();
    void openRow(int row);

    std::function<void(std::filesystem::path)> open_;
    std::vector<std::filesystem::path> recents_;
    QLabel* recentTitle_;
    QListWidget* recentList_;
};

} // namespace plovik
