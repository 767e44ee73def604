// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileEvents.h"
#include "app/platform/linux/FileEventThread.h"

#include <QCoreApplication>

#include <sys/eventfd.h>
#include <system_error>
#include <thread>

namespace plovik {

FileEvents::Link::Link(FileEventCallbacks callbacks)
    : callbacks_(std::move(callbacks)), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{}

void FileEvents::Link::stop()
{
    const std::lock_guard lock(posting_);
    stopped_ = true;
    callbacks_ = {};
    ::eventfd_write(wake_.get(), 1);
}

template <typename Call>
void FileEvents::Link::post(Call call)
{
    // stop() waits for this lock, so that the application is never posted to once its watchers are stopped.
    const std::lock_guard lock(posting_);
    if (stopped_)
        return;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [link = shared_from_this(), call = std::move(call)]() mutable {
            // A copy, for a callback that stops the watching it is called by.
            if (const FileEventCallbacks callbacks = link->callbacks_; !link->stopped_)
                call(callbacks);
        },
        Qt::QueuedConnection);
}

void FileEvents::Link::postBatch(FileEventBatch batch)
{
    post([batch = std::move(batch)](const FileEventCallbacks& callbacks) mutable {
        if (callbacks.onBatch)
            callbacks.onBatch(std::move(batch));
    });
}

void FileEvents::Link::postWatching()
{
    post([](const FileEventCallbacks& callbacks) {
        if (callbacks.onWatching)
            callbacks.onWatching();
    });
}

void FileEvents::Link::postLimitReached()
{
    post([](const FileEventCallbacks& callbacks) {
        if (callbacks.onLimitReached)
            callbacks.onLimitReached();
    });
}

FileEvents::FileEvents(std::unique_ptr<WatchScope> scope, FileEventCallbacks callbacks, FileEventLimits limits)
    : link_(std::make_shared<Link>(std::move(callbacks)))
{
    try {
        // Detached, so that neither closing a window nor quitting waits for what the scope may be asking.
        std::thread([link = link_, scope = std::move(scope), limits]() mutable {
            FileEventThread(std::move(link), std::move(scope), limits).run();
        }).detach();
    } catch (const std::system_error&) {
        link_->postLimitReached();
    }
}

FileEvents::~FileEvents() { stop(); }

void FileEvents::stop() { link_->stop(); }

} // namespace plovik
