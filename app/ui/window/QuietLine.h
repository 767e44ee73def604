// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Push.h"
#include "GitKit/records/WebLink.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"

#include <QPointer>
#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace plovik {

/// Says for a few seconds what was just done, with a button that takes it back or does it again, one that leads to pushing
/// what was rewritten where a remote has what it was, and after a push one that opens the page for a new request. It lies over the lower
/// edge of a widget and moves nothing. Its clock stands still while the pointer is over it or the focus in it; Escape and
/// a button close it. It never takes the focus by itself. Main thread.
class QuietLine : public QWidget {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds shownFor{8000};

    /// Lies over the lower edge of `base`, which is inside of `parent`, until it gets another place. `store` and `base`
    /// outlive the line.
    QuietLine(RepositoryStore& store, QWidget* base, QWidget* parent);

    /// Lies over the lower edge of a widget inside of `base`, as long as that is in sight.
    void setPlace(QWidget* place);

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void layOut();
    void showSaid();
    void showOffer();
    void askWhatWasRewritten(const std::vector<std::string>& branches);
    void showPush();
    void askForRequest(const std::optional<PushedBranch>& pushed);
    void offerPage(const QString& address);
    void openPage();
    void act();
    void push();
    void dismiss();
    void arrange();
    void announce();
    void focusMoved(QWidget* from, QWidget* to);
    void holdClock(bool holds);
    bool holdsFocus(const QWidget* focus) const;

    RepositoryStore& store_;
    QWidget* base_;
    QPointer<QWidget> place_;
    QBoxLayout* parts_ = nullptr; ///< the sentence and the buttons, below each other where there is little room
    QLabel* sentence_;
    QPushButton* action_;
    QPushButton* push_;
    QPushButton* web_; ///< leads to the page for a new request
    Latest<std::vector<std::string>, std::optional<gitkit::RewrittenBranch>> rewritten_;
    Latest<gitkit::WebLinkRequest, gitkit::WebLink> request_;
    QString address_;               ///< of that page
    QPointer<QWidget> focusBefore_; ///< where the keyboard was before it came here
    QTimer clock_{this};
    std::chrono::milliseconds left_ = shownFor; ///< while the clock stands still
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik
