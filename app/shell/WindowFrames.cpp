// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/WindowFrames.h"

#include "app/settings/Settings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::windowFrames {

namespace {

constexpr QPoint cascade{24, 24};

QString keyFor(const std::filesystem::path& root)
{
    // Slashes are encoded, because they would make groups in the settings file.
    const QByteArray path = QByteArray::fromStdString(root.string()).toPercentEncoding(" ");
    return u"windowFrames/Repository "_s + QString::fromLatin1(path);
}

/// Returns the screen that shows most of a frame; the first one for a frame of a screen that is gone.
const QScreen* screenOf(const QRect& frame)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto shown = [&frame](const QScreen* screen) {
        const QRect seen = screen->availableGeometry() & frame;
        return qint64{seen.width()} * seen.height();
    };
    const auto most = std::ranges::max_element(screens, {}, shown);
    return most == screens.end() ? nullptr : *most;
}

std::optional<QRect> storedFrame(const std::filesystem::path& root)
{
    Settings& stored = Settings::shared();
    if (const auto own = frame(stored.value(keyFor(root)).toString()))
        return own;
    const auto last = frame(stored.value(settings::lastRepositoryWindowFrame));
    return last ? std::optional(last->translated(cascade)) : std::nullopt;
}

} // namespace

QString text(const QRect& frame)
{
    return u"%1 %2 %3 %4"_s.arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height());
}

std::optional<QRect> frame(const QString& text)
{
    const QStringList parts = text.split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != 4)
        return std::nullopt;
    int numbers[4];
    for (qsizetype i = 0; i < 4; ++i) {
        bool readable = false;
        numbers[i] = parts[i].toInt(&readable);
        if (!readable || qAbs(numbers[i]) > 100'000)
            return std::nullopt;
    }
    const QRect rect(numbers[0], numbers[1], numbers[2], numbers[3]);
    return rect.isEmpty() ? std::nullopt : std::optional(rect);
}

QRect fitted(const QRect& frame, const QRect& available)
{
    const QSize size = frame.size().boundedTo(available.size());
    const int left = std::clamp(frame.left(), available.left(), available.right() + 1 - size.width());
    const int top = std::clamp(frame.top(), available.top(), available.bottom() + 1 - size.height());
    return {{left, top}, size};
}

void restore(QWidget& window, const std::filesystem::path& root)
{
    if (const std::optional<QRect> stored = storedFrame(root)) {
        const QScreen* const screen = screenOf(*stored);
        window.setGeometry(screen ? fitted(*stored, screen->availableGeometry()) : *stored);
        return;
    }
    window.resize(ordinarySize);
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        window.resize(ordinarySize.boundedTo(available.size()).expandedTo(window.minimumSize()));
        window.move(available.center() - QPoint(window.width() / 2, window.height() / 2));
    }
}

void remember(const QWidget& window, const std::filesystem::path& root)
{
    // The frame of a maximised window is not remembered, so its ordinary size comes back.
    if (window.isMinimized() || window.isMaximized() || window.isFullScreen())
        return;
    const QString now = text(window.geometry());
    Settings::shared().set(keyFor(root), now);
    Settings::shared().set(settings::lastRepositoryWindowFrame, now);
}

} // namespace plovik::windowFrames
