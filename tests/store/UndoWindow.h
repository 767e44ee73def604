// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <QString>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace plovik {

/// A repository and its window, whose questions are answered and whose steps are taken back.
struct UndoWindow {
    TestRepository repo;
    TestRepository remote{{"--bare"}};
    ManualWorker worker;
    TemporaryFolder trash;
    std::vector<std::filesystem::path> opened; ///< windows of other working trees
    RepositoryStore store{
        repo.path(), worker,
        StoreServices{.openWindow = [this](const std::filesystem::path& folder) { opened.push_back(folder); },
                      .trash =
                          [this](const std::filesystem::path& file) {
                              std::filesystem::rename(file, trash / std::to_string(++thrown_));
                          }}};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }
    void undo()
    {
        store.undo().undo();
        worker.finishAll();
    }
    void redo()
    {
        store.undo().redo();
        worker.finishAll();
    }
    /// Answers questions with their first button until none is left.
    void answer()
    {
        worker.finishAll();
        while (const auto question = store.window().confirmation.value()) {
            store.window().confirm(question->id);
            worker.finishAll();
        }
    }
    std::string error() const { return store.window().errorMessage.value().value_or(QString()).toStdString(); }
    std::string notice() const { return store.window().notice.value().toStdString(); }
    std::string undoTitle() const { return store.undo().undoTitle.value().value_or(QString()).toStdString(); }
    std::string redoTitle() const { return store.undo().redoTitle.value().value_or(QString()).toStdString(); }
    std::string said() const
    {
        return store.undo().said.value() ? store.undo().said.value()->sentence.toStdString() : std::string();
    }
    const gitkit::GitRef& ref(const std::string& name) const
    {
        for (const auto* refs : {&store.snapshot().branches.value(), &store.snapshot().tags.value()}) {
            if (const auto found = std::ranges::find(*refs, name, &gitkit::GitRef::name); found != refs->end())
                return *found;
        }
        throw std::runtime_error("no ref " + name);
    }
    Staging::Files files() const { return store.snapshot().status.value().files; }

private:
    int thrown_ = 0;
};

} // namespace plovik
