// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/CommandLog.h"

#include <QWidget>

#include <optional>

class QPlainTextEdit;

namespace plovik {

class BarButton;
class ElidedLabel;

/// Shows one command of the log: its folder, its arguments, how it ended, and its output while it is printed. Main
/// thread.
class CommandDetail : public QWidget {
    Q_OBJECT

public:
    /// `log` must outlive the view.
    explicit CommandDetail(const CommandLog& log, QWidget* parent = nullptr);

    /// Shows a command, or an empty view for nullopt. A call with the shown command appends its new output, and scrolls
    /// to the end unless the user has scrolled away from there.
    void show(const std::optional<CommandLog::Command>& command);
    using QWidget::show;

    /// Copies all of the output that the log has kept.
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
