// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/ActivityView.h"

#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/Spinner.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLocale>
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
      output_(new BarButton(tr("Show Output"), this)), cancel_(new BarButton(tr("Cancel"), this))
{
    for (QLabel* label : {static_cast<QLabel*>(activity_), elapsed_, static_cast<QLabel*>(progress_)})
        label->setForegroundRole(QPalette::PlaceholderText);
    followFont(*progress_, -1.5);
    activity_->setAccessibleName(tr("Activity"));
    elapsed_->setAccessibleName(tr("Elapsed Time"));
    elapsed_->setTextFormat(Qt::PlainText);
    elapsed_->setMinimumWidth(elapsed_->fontMetrics().horizontalAdvance(u"00:00"_s));
    progress_->setAccessibleName(tr("Progress"));
    output_->setToolTip(tr("Show what the hook prints"));
    output_->hide();
    connect(output_, &BarButton::clicked, this, [this] {
        if (const std::optional<RunningHook>& hook = store_.changes().hook.value()) {
            store_.window().showCommand(hook->command);
            store_.window().showCommandLog(true);
        }
    });
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
    row->addWidget(output_);
    row->addWidget(cancel_);

    notifiers_.push_back(store.changes().activity.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().lookup.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().isReadingToEnd.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.history().history.addNotifier([this] { readingChanged(); }));
    notifiers_.push_back(store.changes().isCancelling.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.changes().hook.addNotifier([this] { activityChanged(); }));
    notifiers_.push_back(store.changes().progress.addNotifier([this] { progressChanged(); }));
    activityChanged();
    progressChanged();
}

void ActivityView::activityChanged()
{
    const std::optional<QString>& activity = store_.changes().activity.value();
    const bool isReading = !activity && !store_.history().lookup.value() && store_.history().isReadingToEnd.value();
    const QString text = shownActivity();
    activity_->setText(text);
    activity_->setAccessibleDescription(text);
    spinner_->setVisible(!text.isEmpty());
    cancel_->setVisible(activity.has_value() || isReading);
    cancel_->setEnabled(!store_.changes().isCancelling.value());
    output_->setVisible(hookTime().has_value());
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

QString ActivityView::shownActivity() const
{
    const std::optional<QString>& activity = store_.changes().activity.value();
    if (activity && store_.changes().isCancelling.value())
        return tr("Cancelling…");
    if (const auto seconds = hookTime())
        return tr("%1 · %2 s").arg(store_.changes().hook.value()->name, QLocale().toString(seconds->count()));
    if (!activity && !store_.history().lookup.value() && store_.history().isReadingToEnd.value())
        return tr("Reading the history: %Ln commit(s)…", nullptr,
                  static_cast<int>(store_.history().history.value().size()));
    return activity.value_or(store_.history().lookup.value().value_or(QString()));
}

/// Returns how long a hook has run; nullopt while it is too short to be told of, as most are.
std::optional<std::chrono::seconds> ActivityView::hookTime() const
{
    const std::optional<RunningHook>& hook = store_.changes().hook.value();
    if (!hook || clock_() - hook->began < 1s)
        return std::nullopt;
    return std::chrono::floor<std::chrono::seconds>(clock_() - hook->began);
}

void ActivityView::readingChanged()
{
    if (store_.history().isReadingToEnd.value())
        activityChanged();
}

void ActivityView::showElapsed()
{
    const bool hasHook = hookTime().has_value();
    if (hasHook || !output_->isHidden()) {
        activity_->setText(shownActivity());
        activity_->setAccessibleDescription(activity_->text());
        output_->setVisible(hasHook);
    }
    elapsed_->setVisible(isRunning_ && !hasHook);
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
    int beside = 0;
    for (const BarButton* button : {output_, cancel_})
        beside += button->isHidden() ? 0 : button->sizeHint().width() + layout()->spacing();
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
