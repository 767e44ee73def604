// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include <functional>
#include <vector>

class QLineEdit;
class QModelIndex;

namespace plovik {

class ChoiceModel;
class RowList;

/// Something that can be chosen from a list.
struct Choice {
    QString title;
    QString detail = {};    ///< at the other end of the row
    QString whyNot = {};    ///< why it cannot be chosen, in place of the detail
    bool isCurrent = false; ///< it is what is chosen already
    bool isOffered = true;
    std::function<void()> run = {};
};

/// A small list over the window from which one thing is chosen, with a field that filters it. It closes when something
/// was chosen, by Escape, or by a click beside it, and deletes itself. Main thread.
class ChoicePopup : public QFrame {
    Q_OBJECT

public:
    /// What assistive technology calls its parts.
    struct Names {
        QString list;
        QString field;
        QString hint; ///< in the empty field
    };

    /// A short list does without the field unless `alwaysFilters`.
    ChoicePopup(const Names& names, std::vector<Choice> choices, bool alwaysFilters, QWidget* parent);

    /// Shows it below a widget.
    void openBelow(const QWidget& button);
    /// Shows it at the top of a window, in the middle.
    void openOver(const QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void filter(const QString& text);
    void choose(const QModelIndex& index);
    void open(QPoint place, int width);

    ChoiceModel* model_;
    QLineEdit* field_;
    RowList* list_;
};

} // namespace plovik
