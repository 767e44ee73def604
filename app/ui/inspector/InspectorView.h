// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/inspector/BlamePane.h"
#include "app/ui/inspector/FileHistoryPane.h"

#include <QProperty>
#include <QWidget>

#include <optional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QStackedWidget;

namespace plovik {

class BarButton;
class BlameFinder;
class FindBar;
class IconButton;

/// The blame or the history of the file that the store inspects. The view around it places it: the blame where the diffs
/// are, the history beside them. Closing it tells the store; the view around it then hides it. Steps back in time are
/// remembered until another file is inspected. Main thread.
class InspectorView : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit InspectorView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Moves the keyboard focus to the blame or the history on display.
    void focusContent();

    BlamePane* blame() const { return blame_; }
    FileHistoryPane* history() const { return history_; }

    /// Opens the search of the blame.
    Q_INVOKABLE void find();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// A step that can be taken back.
    struct Step {
        InspectedFile file;
        BlamePane::Memory blame;
    };

    QWidget* makeHeader();
    void follow();
    void showFile(const InspectedFile& file);
    void showTab(InspectedFile::Tab tab);
    void goOn(const InspectedFile& file);
    void blameBefore(int row);
    void goBack();
    void close();
    void showName();
    void placeOther();
    bool isMine(const QKeyEvent& event) const;

    RepositoryStore& store_;
    QLabel* name_;
    QLabel* revision_;
    BarButton* other_; ///< leads from the blame to the history, and back
    QHBoxLayout* title_ = nullptr;
    QHBoxLayout* bar_ = nullptr;
    IconButton* back_;
    IconButton* close_;
    BlamePane* blame_;
    FileHistoryPane* history_;
    QStackedWidget* pages_;
    BlameFinder* finder_;
    FindBar* findBar_ = nullptr; ///< made for the first search
    QString fullName_;
    std::vector<Step> steps_;
    bool isStepping_ = false; ///< the store is written by this view
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
