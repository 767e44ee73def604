// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"

#include <utility>

namespace plovik {

RepositoryStore::RepositoryStore(std::filesystem::path root, Worker& worker, StoreServices services)
    : repo_(std::move(root), {.listener = log_}), worker_(worker), services_(std::move(services))
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
