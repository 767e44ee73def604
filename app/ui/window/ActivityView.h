// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QBasicTimer>
#include <QProperty>
#include <QWidget>

#include <chrono>
#include <functional>
#include <vector>

class QLabel;

namespace plovik {

class BarButton;
class ElidedLabel;
class Spinner;

/// The running action or, once that takes longer, its hook; the time that it has taken once that is longer than a moment; the
/// progress that git reports; and the buttons that show its output and cancel it. Its timer runs only while an action does. Main thread.
class ActivityView : public QWidget {
    Q_OBJECT

public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// `store` outlives the view.
    explicit ActivityView(RepositoryStore& store, QWidget* parent = nullptr,
                          Clock clock = &std::chrono::steady_clock::now);

    /// Shows for how long the action has run. Called once a second while one runs.
    void showElapsed();

    QSize sizeHint() const override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void activityChanged();
    void readingChanged();
    void progressChanged();
    QString shownActivity() const;
    std::optional<std::chrono::seconds> hookTime() const;

    RepositoryStore& store_;
    Clock clock_;
    Spinner* spinner_;
    ElidedLabel* activity_;
    QLabel* elapsed_;
    ElidedLabel* progress_;
    BarButton* output_;
    BarButton* cancel_;
    bool isRunning_ = false;
    std::chrono::steady_clock::time_point began_;
    QBasicTimer timer_;
    std::vector<QPropertyNotifier> notifiers_;
};

/// Returns "0:07", "12:34" or "1:02:03".
QString shownDuration(std::chrono::seconds duration);

} // namespace plovik
