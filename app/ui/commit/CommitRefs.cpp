// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitRefs.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QHelpEvent>
#include <QToolTip>

#include <cmath>

namespace plovik {

using namespace Qt::StringLiterals;

CommitRefs::CommitRefs(QWidget* parent) : QWidget(parent)
{
    setAccessibleName(tr("Commit Refs"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    hide();
}

void CommitRefs::setLabels(const std::vector<gitkit::RefLabel>& labels)
{
    if (labels == labels_)
        return;
    labels_ = labels;
    QStringList names;
    for (const gitkit::RefLabel& label : labels_)
        names << shownText(label.name);
    setAccessibleDescription(names.join(u", "_s));
    setVisible(!labels_.empty());
    update();
}

QSize CommitRefs::sizeHint() const
{
    const QMargins around = contentsMargins();
    return {200, static_cast<int>(std::ceil(RefBadges::Fonts::current().height)) + around.top() + around.bottom()};
}

RefBadges CommitRefs::laidOut() const { return {labels_, static_cast<double>(width()), RefBadges::Fonts::current()}; }

bool CommitRefs::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int x = isRightToLeft() ? width() - 1 - help->pos().x() : help->pos().x();
    const QString names = laidOut().namesAt(x, labels_);
    if (names.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), plainToolTip(names), this);
    return true;
}

void CommitRefs::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double middle = QRectF(contentsRect()).center().y();
    const RefBadges::Fonts fonts = RefBadges::Fonts::current();
    if (isRightToLeft())
        laidOut().paintMirrored(painter, QPointF(width(), middle), fonts, Theme::current());
    else
        laidOut().paint(painter, QPointF(0, middle), fonts, Theme::current());
}

} // namespace plovik

#include "moc_CommitRefs.cpp"
