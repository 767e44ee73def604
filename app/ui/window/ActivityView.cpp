// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/ActivityView.h"

#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/Spinner.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QTimerEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using namespace std::chrono_literals;

constexpr auto moment = 2s;

} // namespace

QString shownDuration(std::chrono::seconds duration)
{
    const auto count = static_cast<qint64>(std::max(duration, 0s).count());
    const auto two = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, QLatin1Char('0')); };
    if (count < 3600)
        return u"%1:%2"_s.arg(count / 60).arg(two(count % 60));
    return u"%1:%2:%3"_s.arg(count / 3600).arg(two(count / 60 % 60), two(count % 60));
}

ActivityView::ActivityView(RepositoryStore& store, QWidget* parent, Clock clock)
    : QWidget(parent), store_(store), clock_(std::move(clock)), spinner_(new Spinner(this)),
      activity_(new ElidedLabel(this)), elapsed_(new QLabel(this)), progress_(new ElidedLabel(this)),
      cancel_(new BarButton(tr("Cancel"), this))
{
    for (QLabel* label : {static_cast<QLabel*>(activity_), elapsed_, static_cast<QLabel*>(progress_)})
        label->setForegroundRole(QPalette::PlaceholderText);
    followFont(*progress_, -1.5);
    activity_->setAccessibleName(tr("Activity"));
    elapsed_->setAccessibleName(tr("Elapsed Time"));
    elapsed_->setTextFormat(Qt::PlainText);
    elapsed_->setMinimumWidth(elapsed_->fontMetrics().horizontalAdvance(u"00:00"_s));
    progress_->setAccessibleName(tr("Progress"));
    cancel_->setToolTip(tr("Cancel (Ctrl+.)"));
    connect(cancel_, &BarButton::clicked, this, [this] {
        if (store_.changes().activity.value())
            store_.changes().cancelActivity();
        else
            store_.history().stopReading();
    });

    auto* const first = new QHBoxLayout;
    first->setSpacing(6);
    first->addStretch(1);
    first->addWidget(spinner_);
    first->addWidget(activity_);
    first->addWidget(elapsed_);
    auto* const lines = new QVBoxLayout;
    lines->setSpacing(1);
    lines->addStretch(1);
    lines->addLayout(first);
    lines->addWidget(progress_, 0, Qt::AlignRight);
    lines->addStretch(1);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addLayout(lines, 1);
    row->addWidget(cancel_);

    notifiers_.push_back(store.changes().activity.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().lookup.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().isReadingToEnd.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().history.addNotifier([this] { readingChanged(); }));
    notifiers_.push_back(store.changes().isCancelling.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.changes().progress.addNotifier([this] { progressChanged(); }));
    activityChanged();
    progressChanged();
}

void ActivityView::activityChanged()
{
    const std::optional<QString>& activity = store_.changes().activity.value();
    const bool isReading = !activity && !store_.history().lookup.value() && store_.history().isReadingToEnd.value();
    QString text = activity.value_or(store_.history().lookup.value().value_or(QString()));
    if (isReading)
        text = tr("Reading the history: %Ln commit(s)…", nullptr,
                  static_cast<int>(store_.history().history.value().size()));
    if (activity && store_.changes().isCancelling.value())
        text = tr("Cancelling…");
    activity_->setText(text);
    activity_->setAccessibleDescription(text);
    spinner_->setVisible(!text.isEmpty());
    cancel_->setVisible(activity.has_value() || isReading);
    cancel_->setEnabled(!store_.changes().isCancelling.value());
    if (isRunning_ == activity.has_value())
        return;
    isRunning_ = activity.has_value();
    began_ = clock_();
    // The label takes its room at once, so that nothing moves when the time appears.
    elapsed_->setVisible(isRunning_);
    showElapsed();
    if (isRunning_)
        timer_.start(1000, this);
    else
        timer_.stop();
}

void ActivityView::readingChanged()
{
    if (store_.history().isReadingToEnd.value())
        activityChanged();
}

void ActivityView::showElapsed()
{
    const auto elapsed = clock_() - began_;
    elapsed_->setText(isRunning_ && elapsed >= moment ? shownDuration(std::chrono::floor<std::chrono::seconds>(elapsed))
                                                      : QString());
}

void ActivityView::progressChanged()
{
    const QString& line = store_.changes().progress.value();
    // The room only grows, so that numbers that change their length do not move the text.
    progress_->setText(line);
    progress_->reserve(line.isEmpty() ? 0 : progress_->sizeHint().width());
    progress_->setVisible(!line.isEmpty());
}

/// Leaves out the progress line, which takes the room that is left.
QSize ActivityView::sizeHint() const
{
    QSize size = QWidget::sizeHint();
    const int beside = cancel_->isHidden() ? 0 : cancel_->sizeHint().width() + layout()->spacing();
    const int time = elapsed_->isHidden() ? 0 : elapsed_->sizeHint().expandedTo(elapsed_->minimumSize()).width() + 6;
    size.setWidth(spinner_->width() + 6 + activity_->sizeHint().width() + time + beside);
    return size;
}

void ActivityView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId())
        showElapsed();
}

} // namespace plovik

#include "moc_ActivityView.cpp"
