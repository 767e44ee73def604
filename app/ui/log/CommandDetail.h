// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/CommandLog.h"

#include <QWidget>

#include <optional>

class QPlainTextEdit;

namespace plovik {

class BarButton;
class ElidedLabel;

/// One command of the log: where it ran, all of it, how it went, and what it printed, as it comes. Main thread.
class CommandDetail : public QWidget {
    Q_OBJECT

public:
    /// `log` outlives the view.
    explicit CommandDetail(const CommandLog& log, QWidget* parent = nullptr);

    /// Nothing shows nothing. For the same command again: takes over what it has printed since, and follows its end
    /// unless the user has scrolled away from it.
    void show(const std::optional<CommandLog::Command>& command);
    using QWidget::show;

    /// All that the log has of the output goes to the clipboard.
    void copyOutput() const;

Q_SIGNALS:
    void shellLineWanted();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showOutput(const QString& text, bool isNew);
    void fitCommand();
    void showCopyLine();
    void showFont();

    const CommandLog& log_;
    QPlainTextEdit* command_;
    ElidedLabel* facts_;
    BarButton* copyLine_;
    BarButton* copyOutput_;
    QPlainTextEdit* output_;
    std::optional<CommandLog::Command> shown_;
    QString text_; ///< in output_
};

} // namespace plovik
