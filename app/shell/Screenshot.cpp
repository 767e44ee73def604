// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/Screenshot.h"

#include "app/shell/RepositoryWindow.h"

#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

namespace plovik {

namespace {

// After the store has loaded, the views still load a commit's message and a diff. They get this time for it.
constexpr std::chrono::milliseconds detailsSettle{700};

} // namespace

Screenshot::Screenshot(RepositoryWindow& window, std::filesystem::path file, QObject* parent)
    : QObject(parent), window_(window), file_(std::move(file)),
      loaded_(window.store().snapshot().hasLoaded.addNotifier(
          [this] { QTimer::singleShot(detailsSettle, this, [this] { take(); }); }))
{}

Screenshot::Screenshot(QWidget& window, std::filesystem::path file, QObject* parent)
    : QObject(parent), window_(window), file_(std::move(file))
{
    QTimer::singleShot(detailsSettle, this, [this] { take(); });
}

void Screenshot::take()
{
    QFile out(QFile::decodeName(QByteArray::fromStdString(file_.string())));
    const bool written = out.open(QIODevice::WriteOnly) && window_.grab().save(&out, "PNG");
    if (!written)
        std::fprintf(stderr, "plovik-app: the picture could not be written to %s\n", file_.c_str());
    QApplication::exit(written ? 0 : 1);
}

} // namespace plovik

#include "moc_Screenshot.cpp"
