// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <filesystem>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace plovik {

/// The state of the command line tool on this machine, as it is shown.
struct CommandLineState {
    /// What the button below the statement does.
    enum class Offer { nothing, install, update, reveal };

    QString statement;          ///< "Not installed", "Installed at", …
    std::filesystem::path path; ///< shown below the statement: the tool's link or its target; may be empty
    Offer offer = Offer::nothing;
};

/// What the "Command Line" tab can ask of the command line tool. All functions are called on the main thread.
struct CommandLineCommands {
    /// Reads the state of the tool; quick. Without this function the tab says that there is no tool.
    std::function<CommandLineState()> state;
    /// Installs or repairs the link. Returns at once and calls `finished` on the main thread: with a sentence when it
    /// failed, with an empty string when it succeeded or the user cancelled it.
    std::function<void(std::function<void(QString problem)> finished)> install;
    /// Shows the tool at `path` in the file browser; `failed` is called on the main thread with a sentence.
    std::function<void(std::filesystem::path path, std::function<void(QString problem)> failed)> reveal;
};

/// The settings tab of the command line tool: its state, read each time the tab is shown and after every installation,
/// and what can be done about it. Main thread.
class CommandLineTab : public QWidget {
    Q_OBJECT

public:
    explicit CommandLineTab(CommandLineCommands commands, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void reload();
    void act();

    CommandLineCommands commands_;
    CommandLineState state_;
    bool isInstalling_ = false;
    QLabel* statement_;
    QLineEdit* path_;
    QPushButton* button_;
    QLabel* problem_;
};

} // namespace plovik
