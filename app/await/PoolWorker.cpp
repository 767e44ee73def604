// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/PoolWorker.h"

#include <QCoreApplication>
#include <QTimer>

namespace plovik {

namespace {

class TimerDelay : public Worker::Delay {
public:
    TimerDelay(std::chrono::milliseconds delay, std::function<void()> elapsed)
    {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [elapsed = std::move(elapsed)] { elapsed(); });
        timer_.start(delay);
    }

private:
    QTimer timer_;
};

} // namespace

Worker& Worker::pool()
{
    // Never destroyed: destroying a pool waits for its threads, and quitting must not wait for git processes.
    static auto* const worker = new PoolWorker;
    return *worker;
}

void PoolWorker::post(Lane lane, std::function<void()> job, std::function<void()> done)
{
    WorkThreads& threads = lanes_.at(static_cast<std::size_t>(lane));
    threads.start([job = std::move(job), done = std::move(done)]() mutable {
        job();
        job = nullptr;
        // After the application has been destroyed there is no main thread to return to.
        if (QCoreApplication* const application = QCoreApplication::instance())
            QMetaObject::invokeMethod(application, std::move(done), Qt::QueuedConnection);
    });
}

std::unique_ptr<Worker::Delay> PoolWorker::after(std::chrono::milliseconds delay, std::function<void()> elapsed)
{
    return std::make_unique<TimerDelay>(delay, std::move(elapsed));
}

void InlineWorker::post(Lane, std::function<void()> job, std::function<void()> done)
{
    job();
    done();
}

std::unique_ptr<Worker::Delay> InlineWorker::after(std::chrono::milliseconds, std::function<void()> elapsed)
{
    elapsed();
    return nullptr;
}

} // namespace plovik
