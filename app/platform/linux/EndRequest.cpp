// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/EndRequest.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>

namespace plovik {

namespace {

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

volatile std::sig_atomic_t wakesEndRequest = -1; ///< a descriptor; nothing but a write to it may happen in the handler

extern "C" void noteEndRequest(int)
{
    const int before = errno;
    for (const int signal : endSignals)
        std::signal(signal, SIG_DFL);
    ::eventfd_write(wakesEndRequest, 1);
    errno = before;
}

} // namespace

void onEndRequest(std::function<void()> asked)
{
    const int wake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wake < 0)
        return; // the signals end the process as they always do
    wakesEndRequest = wake;
    auto* const woken = new QSocketNotifier(wake, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(woken, &QSocketNotifier::activated, woken, [woken, asked = std::move(asked)] {
        woken->setEnabled(false);
        asked();
    });
    for (const int signal : endSignals) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN)
            continue;
        struct sigaction noted = {};
        noted.sa_handler = &noteEndRequest;
        noted.sa_flags = SA_RESTART;
        ::sigaction(signal, &noted, nullptr);
    }
}

} // namespace plovik
