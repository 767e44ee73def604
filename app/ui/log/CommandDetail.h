// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/OutputPlaces.h"

#include <QProperty>
#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

class QHBoxLayout;
class QPlainTextEdit;

namespace plovik {

class BarButton;
class ElidedLabel;
class OutputText;

/// Shows one command of the log: its folder, its arguments, how it ended, its hooks, and its output while it is printed, in
/// which places in files are links. Stops it, and offers the ways on from where it failed. Main thread.
class CommandDetail : public QWidget {
    Q_OBJECT

public:
    /// `store` must outlive the view.
    explicit CommandDetail(RepositoryStore& store, QWidget* parent = nullptr);

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
    void showWays();
    void findPlaces();
    void showPlaces();
    void open(const OutputPlace& place);

    RepositoryStore& store_;
    const CommandLog& log_;
    QPlainTextEdit* command_;
    ElidedLabel* facts_;
    BarButton* copyLine_;
    BarButton* copyOutput_;
    OutputText* output_;
    BarButton* stop_;
    QHBoxLayout* wayRow_;
    std::vector<BarButton*> ways_; ///< on from the shown command
    QStringList wayTitles_;
    Latest<PlacedFilesRequest, QSet<QString>> placed_;
    std::vector<OutputPlace> places_; ///< that are perhaps in the shown text
    std::optional<CommandLog::Command> shown_;
    QString text_; ///< in output_
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
