// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Comparison.h"
#include "app/store/CommandLog.h"
#include "app/store/Confirmation.h"
#include "app/store/Failure.h"
#include "app/store/InspectedFile.h"
#include "app/store/Observed.h"
#include "app/store/QuestionMemory.h"
#include "app/store/SheetKind.h"
#include "app/store/SidebarItem.h"

#include <QString>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace plovik {

/// What one window shows besides the repository: selections, the sheet, the question, the alert, the notice and the
/// panels. It refers to no other part; parts that depend on a selection listen to it. Owned by the store; main thread.
class WindowState {
public:
    using OpenWindow = std::function<void(const std::filesystem::path& folder)>;

    explicit WindowState(QuestionMemory questions = {}, OpenWindow openWindow = {})
        : questions_(std::move(questions)), openWindow_(std::move(openWindow))
    {}
    WindowState(const WindowState&) = delete;
    WindowState& operator=(const WindowState&) = delete;

    // Selections. Listeners are told what the user selects, but not the selections that follow from something else.

    Observed<SidebarItem, WindowState> selection{SidebarItem::workingCopy()};
    Observed<std::set<std::string>, WindowState> selectedPaths;
    Observed<std::optional<std::string>, WindowState> selectedCommit;
    Observed<std::optional<std::string>, WindowState> selectedStash;

    /// How a selection was reached: on purpose, or while passing it with held keys.
    enum class Step { straight, passing };
    struct Listener {
        std::function<void(Step)> moved = {}; ///< the sidebar's selection, or the one in its view, has changed
        std::function<void()> chosen = {};    ///< an item of the sidebar was chosen, possibly the selected one
    };
    /// Adds a listener. Listeners are called in the order in which they were added, until this object is destroyed.
    void listen(Listener listener) { listeners_.push_back(std::move(listener)); }

    /// Selects an item of the sidebar for the user.
    void select(SidebarItem item);
    void selectPaths(std::set<std::string> paths);
    void selectCommit(std::optional<std::string> hash, Step step = Step::straight);
    void selectStash(std::optional<std::string> hash);

    // The same without telling the listeners, for selections that follow from something else.
    void follow(SidebarItem item)
    {
        closeComparison();
        selection = std::move(item);
    }
    void followCommit(std::optional<std::string> hash) { selectedCommit = std::move(hash); }
    void followStash(std::optional<std::string> hash) { selectedStash = std::move(hash); }

    /// Grows whenever the keyboard focus should move to the view of the selected item.
    Observed<qint64, WindowState> viewWishes{0};
    /// Selects an item of the sidebar and moves the focus to its view, as a key does that names the view.
    void goTo(SidebarItem item)
    {
        select(std::move(item));
        viewWishes = viewWishes.value() + 1;
    }

    // What is shown over the window.

    Observed<std::optional<SheetKind>, WindowState> sheet;
    void showSheet(SheetKind kind);
    void closeSheet();

    Observed<std::optional<Confirmation>, WindowState> confirmation;
    /// Shows a question, or runs its action at once when the user has answered its kind for good.
    void ask(Confirmation question);
    /// Whether a question of the same kind is asked the next time.
    enum class NextTime { ask, act };
    /// Closes the question and then runs its action. Does nothing when another question or none is open.
    void confirm(const QUuid& id, NextTime next = NextTime::ask);
    /// The same with one of its further choices.
    void choose(const QUuid& id, std::size_t choice);
    /// Tells the question's option whether it is ticked. Does nothing where another question or none is open.
    void setOption(const QUuid& id, bool isTicked);
    void dismissQuestion();

    /// The sentence of the reported failure, which views show as an alert.
    Observed<std::optional<QString>, WindowState> errorMessage;
    /// The failure that `errorMessage` describes: what happened, in whose words, and by which command.
    Observed<Failure, WindowState> failure;
    /// Shows a failure. `ways` are the buttons that its alert has for going on.
    void report(const Failure& failure, std::vector<Way> ways = {});
    const std::vector<Way>& ways() const { return ways_; }
    void dismissError();
    /// Closes the alert and goes one of its ways.
    void takeWay(std::size_t way);

    /// Returns a button that shows the window of another working tree; nullopt where no window can be opened.
    std::optional<Way> wayToWindow(const std::filesystem::path& folder) const;

    /// A sentence that is shown without blocking anything; empty when there is none.
    Observed<QString, WindowState> notice;
    /// Shows a sentence as a notice, again if the same one was shown before.
    void tell(const QString& sentence);
    void clearNotice() { notice = QString(); }

    // Panels.

    /// The file that the inspector shows; nullopt when the inspector is closed.
    Observed<std::optional<InspectedFile>, WindowState> inspected;
    void inspect(InspectedFile file);
    void closeInspector();
    /// Closes the inspector if it shows a blame: something else is to be shown in the place of the diffs, where it is.
    /// Selecting another commit or stash does so, and going to a commit.
    void leaveBlame();

    /// The two states that are compared in place of the selected item's view; nullopt when none are.
    Observed<std::optional<gitkit::Comparison>, WindowState> compared;
    void compare(gitkit::Comparison comparison) { compared = std::move(comparison); }
    void closeComparison() { compared = std::nullopt; }

    /// Whether the panel with the command log is open.
    Observed<bool, WindowState> showsCommandLog{false};
    void showCommandLog(bool shows) { showsCommandLog = shows; }
    /// The command that is selected in the command log.
    Observed<std::optional<CommandLog::Number>, WindowState> shownCommand;
    void showCommand(std::optional<CommandLog::Number> number) { shownCommand = number; }
    /// The last command that failed or was stopped and from which ways lead on, until the next change begins.
    Observed<std::optional<CommandLog::Number>, WindowState> commandWithWays;
    const std::vector<Way>& waysOfCommand() const { return waysOfCommand_; }
    void keepWays(CommandLog::Number command, std::vector<Way> ways);
    void takeWayOfCommand(std::size_t way);
    void forgetWaysOfCommand();

private:
    void moved(Step step);

    QuestionMemory questions_;
    OpenWindow openWindow_;
    std::vector<Way> ways_;          ///< from the reported failure
    std::vector<Way> waysOfCommand_; ///< from that of `commandWithWays`
    std::vector<Listener> listeners_;
};

} // namespace plovik
