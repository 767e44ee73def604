// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"

#include <utility>

namespace plovik {

RepositoryStore::RepositoryStore(std::filesystem::path root, Worker& worker, StoreServices services)
    : services_(std::move(services)), git_(std::move(root), worker, log_, services_.indexFolder())
{}

RepositoryStore::~RepositoryStore()
{
    // Closed before the parts are destroyed, so that suspended coroutines unwind without touching them.
    git_.close();
}

} // namespace plovik
