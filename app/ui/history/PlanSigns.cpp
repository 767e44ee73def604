// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/PlanSigns.h"

#include "app/store/Rewriting.h"
#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QCoreApplication>
#include <QPainter>
#include <QStringList>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::RewriteMark;
using gitkit::RewriteStep;

namespace {

struct PlanTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::PlanSign)
};

constexpr double signInset = 8;
constexpr double signHeight = 20;
constexpr double signMargin = 4;

QString subjectOf(const Rewriting& rewriting, const std::string& commit)
{
    const std::string message = rewriting.messageOf(commit);
    return inQuotes(message.substr(0, message.find('\n')));
}

QString actText(const Rewriting& rewriting, const RewriteStep& step)
{
    const gitkit::RewritePlan& plan = *rewriting.plan.value();
    switch (step.act) {
    case RewriteStep::Act::squash:
        return u"⤵ "_s + PlanTexts::tr("into %1").arg(subjectOf(rewriting, gitkit::squashedInto(plan, step.commit)));
    case RewriteStep::Act::fixUp:
        return u"⤵ "_s + PlanTexts::tr("into %1, without its message")
                             .arg(subjectOf(rewriting, gitkit::squashedInto(plan, step.commit)));
    case RewriteStep::Act::drop:
        return u"✕ "_s + PlanTexts::tr("dropped");
    case RewriteStep::Act::split:
        return u"✂ "_s + PlanTexts::tr("split in two");
    case RewriteStep::Act::edit:
        return u"⏸ "_s + PlanTexts::tr("stops here");
    case RewriteStep::Act::pick:
        break;
    }
    const gitkit::Hashes moved = gitkit::movedCommits(plan);
    QStringList signs;
    if (std::ranges::find(moved, step.commit) != moved.end())
        signs << u"⇅ "_s + PlanTexts::tr("moved");
    if (step.message)
        signs << u"✎ "_s + PlanTexts::tr("new message");
    return signs.join(u" · "_s);
}

QString markText(const RewriteMark& mark)
{
    using enum RewriteMark::Kind;
    switch (mark.kind) {
    case conflicts:
        return u"⚠ "_s + PlanTexts::tr("conflicts in %Ln file(s)", nullptr, static_cast<int>(mark.paths.size()));
    case emptied:
        return PlanTexts::tr("empty now");
    case rewritten:
        return PlanTexts::tr("rewritten");
    case unknown:
        return PlanTexts::tr("not known yet");
    case unchanged:
    case dropped:
        break;
    }
    return {};
}

} // namespace

PlanSign planSignOf(const Rewriting& rewriting, const std::string& commit)
{
    PlanSign sign;
    if (const gitkit::MovableCommit* const found = rewriting.find(commit))
        sign.isPublished = found->isPublished;
    const RewriteStep* const step = rewriting.plan.value() ? gitkit::stepOf(*rewriting.plan.value(), commit) : nullptr;
    if (!step)
        return sign;
    QStringList texts{actText(rewriting, *step)};
    if (const auto mark = rewriting.markOf(commit)) {
        texts << markText(*mark);
        sign.isWarning = mark->kind == RewriteMark::Kind::conflicts;
        if (sign.isWarning)
            sign.toolTip = namesInLines(mark->paths);
    }
    texts.removeAll(QString());
    sign.text = texts.join(u" · "_s);
    sign.isGone = step->act == RewriteStep::Act::drop;
    return sign;
}

void paintPlanGrip(QPainter& painter, const HistoryColumns& columns, const HistoryRowPainter::Place& place,
                   double rowHeight)
{
    constexpr double dot = 2;
    constexpr double step = 4;
    constexpr int dotsAcross = 2;
    constexpr int dotsDown = 3;
    constexpr double gap = 3; // to the subject
    const double left = columns.subjectLeft - gap - dotsAcross * step;
    const double top = place.top + std::round((rowHeight - dotsDown * step + dot) / 2);
    for (int across = 0; across < dotsAcross; ++across) {
        for (int down = 0; down < dotsDown; ++down)
            painter.fillRect(QRectF(place.at(left + across * step, dot), top + down * step, dot, dot),
                             Theme::current().secondaryText);
    }
}

void paintPlanSign(QPainter& painter, const PlanSign& sign, const HistoryColumns& columns,
                   const HistoryRowPainter::Place& place, double rowHeight, HistoryRowPainter::Span subject)
{
    const Theme& theme = Theme::current();
    if (sign.isGone) {
        const double right = std::min(subject.right, columns.subjectRight);
        painter.fillRect(QRectF(place.at(subject.left, right - subject.left), place.top + std::round(rowHeight / 2),
                                right - subject.left, 1),
                         theme.text);
    }
    const QString text = sign.isPublished ? (sign.text.isEmpty() ? u"☁"_s : sign.text + u"  ☁"_s) : sign.text;
    const QFont font = Theme::font(-1);
    const double most = (columns.subjectRight - columns.subjectLeft) * 0.7;
    const double width = std::min(textWidth(text, font) + 2 * signInset, most);
    const QRectF box(place.at(columns.subjectRight - width, width),
                     place.top + std::round((rowHeight - signHeight) / 2), width, signHeight);
    if (!sign.text.isEmpty()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(sign.isWarning ? theme.warning : theme.badge);
        painter.drawRoundedRect(box, signMargin, signMargin);
        painter.setBrush(Qt::NoBrush);
    }
    const QColor color = sign.text.isEmpty() ? theme.secondaryText
                         : sign.isWarning    ? theme.warningText
                                             : theme.badgeText;
    paintText(painter, box.adjusted(signInset, 0, -signInset, 0).toAlignedRect(), text, font, color, Qt::AlignVCenter);
}

} // namespace plovik
