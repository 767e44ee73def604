// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"

#include <utility>

namespace plovik {

namespace {

/// Reading asks nobody. An empty program is one that git does not start, whatever the settings name.
gitkit::RunContext readContext(std::shared_ptr<gitkit::RunListener> listener)
{
    return {.listener = std::move(listener), .environment = {{"GIT_ASKPASS", ""}, {"SSH_ASKPASS_REQUIRE", "never"}}};
}

} // namespace

RepositoryStore::RepositoryStore(std::filesystem::path root, Worker& worker, StoreServices services)
    : repo_(std::move(root), readContext(log_)), worker_(worker), services_(std::move(services))
{
    observePlace();
    boxNotifiers_.push_back(commitSubject.addNotifier([this] { updateMessageUndo(); }));
    boxNotifiers_.push_back(commitBody.addNotifier([this] { updateMessageUndo(); }));
}

RepositoryStore::~RepositoryStore()
{
    // What is awaiting keeps only a weak reference to the token, and finds it gone; some of it as soon as it is
    // stopped.
    alive_.reset();
    generating_.request_stop();
}

QString RepositoryStore::headDescription() const
{
    const gitkit::RepoStatus& now = status.value();
    if (now.branch)
        return QString::fromStdString(*now.branch);
    if (now.oid)
        return QStringLiteral("HEAD detached at ") + QString::fromStdString(std::string(gitkit::shortHash(*now.oid)));
    return {};
}

} // namespace plovik
