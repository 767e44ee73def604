// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/WarningBar.h"

#include <QProperty>

#include <vector>

class QLabel;
class QPushButton;
class QScrollArea;

namespace plovik {

/// A bar below the toolbar while programs that the repository's configuration names are kept off and the user has not
/// decided: it shows them word by word, with a button for either decision. Hidden otherwise. Main thread.
class TrustBar : public WarningBar {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit TrustBar(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QPushButton* makeButton(const QString& title);
    void layOut(QPushButton* keepOff, QPushButton* trust);
    void showPrograms();
    void fitList();

    RepositoryStore& store_;
    QLabel* sentence_;
    QLabel* list_;
    QScrollArea* place_; ///< of the list, which may be long
    Trust::Programs shown_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
