// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/drag/DragData.h"

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/Theme.h"

#include <QCoreApplication>
#include <QDrag>
#include <QFontMetrics>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using DraggedKind = Dragged::Kind;

constexpr std::array<std::pair<DraggedKind, const char*>, 5> types{{
    {DraggedKind::ref, "application/x-plovik-ref"},
    {DraggedKind::commits, "application/x-plovik-commits"},
    {DraggedKind::files, "application/x-plovik-files"},
    {DraggedKind::stash, "application/x-plovik-stash"},
    {DraggedKind::commitFile, "application/x-plovik-commit-file"},
}};

/// Returns what no other window has, of this process or of another one.
std::string windowMark(const RepositoryStore& store)
{
    return std::to_string(QCoreApplication::applicationPid()) + '/' +
           std::to_string(reinterpret_cast<std::uintptr_t>(&store));
}

/// Returns a picture of the name, which the pointer takes along.
QPixmap pictureOf(const QString& name, const QWidget& source)
{
    constexpr int mostWidth = 220;
    constexpr int padding = 8;
    const Theme& theme = Theme::current();
    const QFont font = Theme::font(-0.5);
    const QFontMetrics metrics(font);
    const QString text = metrics.elidedText(name, Qt::ElideMiddle, mostWidth);
    const QSize size(metrics.horizontalAdvance(text) + 2 * padding, metrics.height() + 6);
    QPixmap picture(size * source.devicePixelRatioF());
    picture.setDevicePixelRatio(source.devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.accent, 1));
    painter.setBrush(theme.content);
    painter.drawRoundedRect(QRectF(QPointF(), QSizeF(size)).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.setFont(font);
    painter.setPen(theme.text);
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter | Qt::TextSingleLine, text);
    return picture;
}

} // namespace

std::unique_ptr<QMimeData> dragData(const RepositoryStore& store, const Dragged& dragged)
{
    QByteArray bytes;
    const auto add = [&bytes](const std::string& field) {
        bytes.append(field.data(), static_cast<qsizetype>(field.size())).append('\0');
    };
    add(windowMark(store));
    add(dragged.hasMerge ? "merge" : "-");
    add(dragged.revision.empty() ? "-" : dragged.revision);
    for (const std::string& name : dragged.names)
        add(name);
    auto data = std::make_unique<QMimeData>();
    for (const auto& [kind, type] : types) {
        if (kind == dragged.kind)
            data->setData(QLatin1StringView(type), bytes);
    }
    return data;
}

std::optional<Dragged> draggedIn(const RepositoryStore& store, const QMimeData& data)
{
    for (const auto& [kind, type] : types) {
        if (!data.hasFormat(QLatin1StringView(type)))
            continue;
        const QList<QByteArray> fields = data.data(QLatin1StringView(type)).split('\0');
        // The last one is empty, behind the NUL that ends the names.
        if (fields.size() < 5 || fields[0].toStdString() != windowMark(store))
            return std::nullopt;
        Dragged dragged{.kind = kind, .hasMerge = fields[1] == "merge"};
        if (fields[2] != "-")
            dragged.revision = fields[2].toStdString();
        for (qsizetype place = 3; place + 1 < fields.size(); ++place)
            dragged.names.push_back(fields[place].toStdString());
        return dragged;
    }
    return std::nullopt;
}

void drag(QWidget& source, const RepositoryStore& store, const Dragged& dragged, const QString& name)
{
    // Qt deletes it when it has ended.
    auto* const running = new QDrag(&source);
    running->setMimeData(dragData(store, dragged).release());
    running->setPixmap(pictureOf(name, source));
    running->setHotSpot(QPoint(-14, -2));
    running->exec(Qt::MoveAction);
}

} // namespace plovik
