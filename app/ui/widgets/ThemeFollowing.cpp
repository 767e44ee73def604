// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ThemeFollowing.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Announces changes of the application's font and theme. Qt tells the application of a new font, but no widget whose
/// font has a size of its own.
class Announcer : public QObject {
    Q_OBJECT

public:
    static Announcer& shared()
    {
        static QPointer<Announcer> announcer;
        if (!announcer) {
            announcer = new Announcer(qApp);
            qApp->installEventFilter(announcer);
        }
        return *announcer;
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == qApp && event->type() == QEvent::ApplicationFontChange)
            Q_EMIT fontChanged();
        return false;
    }

Q_SIGNALS:
    void fontChanged();
    void themeChanged();

private:
    using QObject::QObject;
};

/// Calls `apply` now and at each `signal`, in place of what was followed under that name.
void follow(QWidget& widget, const QString& name, void (Announcer::*signal)(), const std::function<void()>& apply)
{
    delete widget.findChild<QObject*>(name, Qt::FindDirectChildrenOnly);
    auto* const context = new QObject(&widget);
    context->setObjectName(name);
    QObject::connect(&Announcer::shared(), signal, context, apply);
    apply();
}

} // namespace

void followFont(QWidget& widget, double pointsMore, QFont::Weight weight)
{
    followFont(widget, [pointsMore, weight] { return Theme::font(pointsMore, weight); });
}

void followFont(QWidget& widget, std::function<QFont()> make)
{
    follow(widget, u"followed font"_s, &Announcer::fontChanged,
           [&widget, make = std::move(make)] { widget.setFont(make()); });
}

void followColor(QWidget& widget, QPalette::ColorRole role, QColor Theme::* color)
{
    follow(widget, u"followed colour"_s, &Announcer::themeChanged, [&widget, role, color] {
        QPalette palette;
        palette.setColor(role, Theme::current().*color);
        widget.setPalette(palette);
    });
}

void tellThemeFollowers() { Q_EMIT Announcer::shared().themeChanged(); }

} // namespace plovik

#include "ThemeFollowing.moc"
