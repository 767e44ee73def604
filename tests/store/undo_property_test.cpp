// SPDX-License-Identifier: GPL-3.0-or-later
// Random actions with random edits between them, all taken back, done again and taken back: every state is met again.
// PLOVIK_SEED repeats a case, and PLOVIK_ACTIONS sets how many actions it has.

#include "tests/store/UndoWindow.h"
#include "tests/support/WholeState.h"

#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/undo/UndoJournal.h"
#include "app/store/actions/BranchSettings.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Operation.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/StagedInto.h"
#include "app/store/actions/Stashes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <sys/stat.h>

namespace plovik {
namespace {

namespace fs = std::filesystem;

constexpr int actionsByDefault = 12;

int numberNamed(const char* variable, int otherwise)
{
    const char* const text = std::getenv(variable);
    return text != nullptr && *text != '\0' ? std::atoi(text) : otherwise;
}

/// The files and the index, as they are put back between steps.
struct Files {
    std::map<std::string, std::string> bytes;
    std::string index;
};

class RandomUndo {
public:
    explicit RandomUndo(unsigned seed) : dice_(seed)
    {
        window_.repo.write(".gitignore", "*.log\n").write(".gitattributes", "*.sh diff\n");
        for (const char* name : names)
            window_.repo.write(name, "1\n2\n3\n4\n5\n6\n7\n8\n9\n");
        window_.repo.commit("one").git({"branch", "other"});
        window_.load();
        states_.push_back({.after = wholeState(window_.repo), .editedFrom = files(), .editedTo = files()});
        states_.back().editedFrom = files();
    }

    void act(int count)
    {
        Files before = files();
        for (int number = 0; number < count; ++number) {
            edit();
            const std::string whole = wholeState(window_.repo);
            const Files edited = files();
            const std::size_t steps = stepCount();
            window_.load();
            const std::string what = chooseAndAct();
            window_.answer();
            window_.store.window().dismissError();
            if (chance(10))
                window_.repo.git({"gc", "-q", "--prune=now"});
            if (stepCount() == steps) {
                ASSERT_EQ(wholeState(window_.repo), whole) << what << " was no step, but it has changed something";
                continue;
            }
            states_.push_back({what, whole, wholeState(window_.repo), before, edited, stepCount() - steps});
            before = files();
        }
        restore(before); // what was edited last
        EXPECT_GT(states_.size(), static_cast<std::size_t>(count) / 3) << "most actions change something";
    }

    void undoAll()
    {
        for (std::size_t index = states_.size(); --index > 0;) {
            const State& state = states_[index];
            SCOPED_TRACE(std::to_string(index) + ' ' + state.what);
            ASSERT_EQ(wholeState(window_.repo), state.after) << "before it is undone";
            for (std::size_t step = 0; step < state.steps; ++step) {
                window_.load();
                window_.undo();
            }
            ASSERT_EQ(wholeState(window_.repo), state.before) << told();
            restore(state.editedFrom);
        }
    }

    void redoAll()
    {
        for (std::size_t index = 1; index < states_.size(); ++index) {
            const State& state = states_[index];
            SCOPED_TRACE(std::to_string(index) + ' ' + state.what);
            restore(state.editedTo);
            ASSERT_EQ(wholeState(window_.repo), state.before) << "before it is done again";
            for (std::size_t step = 0; step < state.steps; ++step) {
                window_.load();
                window_.redo();
                window_.answer(); // what was in the way the first time is there again
            }
            ASSERT_EQ(wholeState(window_.repo), state.after) << told();
        }
    }

private:
    static constexpr const char* names[] = {"a", "b.txt", "dir/c", "dir/d e", "x\xe4", "run.sh"};

    struct State {
        std::string what = {};
        std::string before = {};
        std::string after = {};
        Files editedFrom = {};
        Files editedTo = {};
        std::size_t steps = 1; ///< more than one where the answer to a question was an action, as with Skip
    };

    bool chance(int percent) { return number(100) < percent; }
    int number(int below) { return std::uniform_int_distribution(0, below - 1)(dice_); }
    std::size_t stepCount() const { return gitkit::undoSteps(window_.repo.repository(), 10'000).size(); }

    std::string told() const
    {
        const auto& question = window_.store.window().confirmation.value();
        return window_.error() + window_.notice() + '\n' +
               window_.repo.read({"log", "-g", "-6", "--format=%gs", "PLOVIK_UNDO_HEAD", "--"}) + '\n' +
               (question ? question->title.toStdString() + ": " + question->message.toStdString() +
                               question->detail.toStdString()
                         : std::string());
    }

    Files files() const
    {
        Files all{.bytes = {}, .index = bytesAt(window_.repo / ".git/index")};
        for (const auto& entry : fs::recursive_directory_iterator(window_.repo.path())) {
            if (entry.path().string().find("/.git") == std::string::npos && entry.is_regular_file())
                all.bytes[entry.path().string()] =
                    static_cast<char>((entry.status().permissions() & fs::perms::owner_exec) != fs::perms::none) +
                    bytesAt(entry.path());
        }
        return all;
    }

    void restore(const Files& to)
    {
        for (const auto& [path, bytes] : files().bytes) {
            if (!to.bytes.contains(path))
                fs::remove(path);
        }
        for (const auto& [path, bytes] : to.bytes) {
            const std::string name = fs::path(path).lexically_relative(window_.repo.path()).string();
            window_.repo.write(name, bytes.substr(1));
            ::chmod(path.c_str(), bytes[0] != 0 ? 0755 : 0644);
        }
        window_.repo.write(".git/index", to.index);
        int status = 0;
        runPlainGit(window_.repo.path(), {"update-index", "-q", "--refresh"}, status);
    }

    void edit()
    {
        const std::string name = chance(80) ? names[number(6)] : "new" + std::to_string(number(4));
        const fs::path file = window_.repo / name;
        if (chance(15) && fs::exists(file)) {
            fs::remove(file);
        } else if (!fs::is_directory(file)) {
            std::string text;
            for (int line = 0; line < 9; ++line)
                text += std::to_string(chance(20) ? number(1000) : line + 1) + (chance(5) ? "\r\n" : "\n");
            window_.repo.write(name, text);
            if (chance(10))
                ::chmod(file.c_str(), 0755);
        }
        int status = 0;
        if (chance(60) && !window_.store.snapshot().inProgress.value())
            runPlainGit(window_.repo.path(), {"add", "-A"}, status);
    }

    std::string someBranch()
    {
        const auto& branches = window_.store.snapshot().branches.value();
        return branches[static_cast<std::size_t>(number(static_cast<int>(branches.size())))].name;
    }

    std::string rewrite(Rewriting& plans)
    {
        plans.watch();
        window_.store.window().select(chance(30) ? SidebarItem::ref("refs/heads/" + someBranch())
                                                 : SidebarItem::history());
        window_.worker.finishAll();
        const auto& commits = plans.movable.value().commits;
        if (commits.empty())
            return "no rewrite";
        const auto any = [&] {
            return commits[static_cast<std::size_t>(number(static_cast<int>(commits.size())))].hash;
        };
        if (chance(50))
            plans.move({any()}, any());
        if (chance(50))
            plans.squash({any()}, any(), Rewriting::Act::squash);
        if (chance(30))
            plans.drop({any()});
        plans.reword(any(), QStringLiteral("words %1").arg(number(100)));
        window_.worker.finishAll();
        plans.apply();
        window_.answer();
        plans.cancel();
        return "rewrite";
    }

    std::string putIntoCommits(RepositoryStore& store)
    {
        if (chance(50)) {
            actions::absorb(store.actors(), gitkit::absorbProposal(window_.repo.repository()));
            return "absorb";
        }
        store.rewriting().watch();
        window_.worker.finishAll();
        const auto& commits = store.rewriting().movable.value().commits;
        if (commits.empty())
            return "no commit into";
        const gitkit::MovableCommit commit =
            commits[static_cast<std::size_t>(number(static_cast<int>(commits.size())))];
        actions::commitStagedInto(store.actors(), {.commit = commit.hash, .subject = subjectOf(commit)});
        window_.answer();
        return "commit into " + subjectOf(commit);
    }

    std::string chooseAndAct()
    {
        if (window_.store.snapshot().inProgress.value())
            return goOn();
        RepositoryStore& store = window_.store;
        const Actors actors = store.actors();
        const auto& stashes = store.snapshot().stashes.value();
        const std::string branch = someBranch();
        switch (number(20)) {
        case 0:
        case 1:
            store.draft().setAmend(chance(20));
            store.draft().setSubject(QStringLiteral("commit %1").arg(number(1000)));
            store.draft().setBody(QString());
            store.draft().commit();
            return "commit";
        case 2:
            actions::createBranch(actors, "branch" + std::to_string(number(1000)), std::nullopt,
                                  chance(50) ? gitkit::AfterCreating::checkOut : gitkit::AfterCreating::stay);
            return "new branch";
        case 3:
            actions::checkout(actors, window_.ref(branch));
            return "checkout of " + branch;
        case 4:
        case 5:
            actions::merge(actors, window_.ref(branch));
            return "merge of " + branch;
        case 6:
            actions::cherryPick(actors, window_.ref(branch).hash);
            return "pick of " + branch;
        case 7:
            actions::revert(actors, window_.repo.head());
            return "revert";
        case 8:
            actions::stashSave(actors, QStringLiteral("stash %1").arg(number(100)),
                               chance(50) ? gitkit::UntrackedFiles::include : gitkit::UntrackedFiles::leave);
            return "stash";
        case 9:
            if (!stashes.empty())
                actions::stashApply(actors, stashes[0], chance(70) ? gitkit::StashUse::pop : gitkit::StashUse::apply);
            return "unstash";
        case 10:
            actions::confirmDelete(actors, window_.ref(branch));
            return "deletion of " + branch;
        case 11:
            if (const Staging::Files files = window_.files(); !files.empty())
                actions::stashFiles(actors, QStringLiteral("some"),
                                    {files[static_cast<std::size_t>(number(static_cast<int>(files.size())))]});
            return "stash of a file";
        case 12:
            actions::stashStaged(actors, QStringLiteral("staged"));
            return "stash of what is staged";
        case 13:
            if (!stashes.empty())
                actions::branchFromStash(actors, "branch" + std::to_string(number(1000)), stashes[0]);
            return "branch from a stash";
        case 14:
            actions::reset(actors,
                           {static_cast<gitkit::ResetKind>(number(4)), window_.repo.head(), window_.ref(branch).hash});
            return "reset to " + branch;
        case 15:
            actions::renameBranch(actors, branch, "renamed" + std::to_string(number(1000)), {});
            return "rename of " + branch;
        case 16:
            actions::rebaseOnto(actors, window_.ref(branch));
            return "rebase onto " + branch;
        case 17:
            return rewrite(store.rewriting());
        case 18:
            return putIntoCommits(store);
        default:
            store.staging().confirmDiscard(window_.files());
            return "discard";
        }
    }

    std::string goOn()
    {
        const Actors actors = window_.store.actors();
        switch (number(4)) {
        case 0:
            actions::abortOperation(actors);
            return "abort";
        case 1:
            actions::skipOperation(actors);
            return "skip";
        case 2:
            window_.store.staging().takeSide(window_.files(),
                                             chance(50) ? gitkit::ConflictSide::ours : gitkit::ConflictSide::theirs);
            return "side";
        default:
            actions::continueOperation(actors);
            return "continue";
        }
    }

    UndoWindow window_;
    std::mt19937_64 dice_;
    std::vector<State> states_; ///< the first is the state before all actions
};

TEST(StoreUndoProperty, EveryStateIsMetAgain)
{
    const auto seed = static_cast<unsigned>(numberNamed("PLOVIK_SEED", 1));
    SCOPED_TRACE("PLOVIK_SEED=" + std::to_string(seed));
    RandomUndo random(seed);
    for (const auto& pass :
         {std::function<void()>([&] { random.act(numberNamed("PLOVIK_ACTIONS", actionsByDefault)); }),
          std::function<void()>([&] { random.undoAll(); }), std::function<void()>([&] { random.redoAll(); }),
          std::function<void()>([&] { random.undoAll(); })})
    {
        pass();
        if (testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace
} // namespace plovik
