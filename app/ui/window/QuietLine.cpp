// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/QuietLine.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Pushes.h"
#include "app/store/readers/ActionPreviews.h"
#include "app/store/readers/WebLinkReaders.h"
#include "app/ui/web/WebLinkEntries.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/PaneCycle.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Offer = Undo::Said::Offer;

constexpr int fromEdges = 12;
constexpr int longest = 720;
constexpr int leastForOneRow = 300;
constexpr double cornerRadius = 6;
/// Somebody who has just looked at it gets at least so long to look again.
constexpr std::chrono::milliseconds leastLeft{2000};

class AccessibleQuietLine : public QAccessibleWidget {
public:
    explicit AccessibleQuietLine(QWidget* line) : QAccessibleWidget(line, QAccessible::Notification) {}
};

QAccessibleInterface* makeQuietLineInterface(const QString& className, QObject* object)
{
    auto* const line = className == QLatin1StringView("plovik::QuietLine") ? qobject_cast<QWidget*>(object) : nullptr;
    return line ? new AccessibleQuietLine(line) : nullptr;
}

void installQuietLineAccessibility()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeQuietLineInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace

QuietLine::QuietLine(RepositoryStore& store, QWidget* base, QWidget* parent)
    : QWidget(parent), store_(store), base_(base), place_(base), sentence_(new QLabel(this)),
      action_(new QPushButton(this)), push_(new QPushButton(tr("Push…"), this)), web_(new QPushButton(this)),
      rewritten_(
          store.git(), &readRewritten, [this] { showPush(); }, Worker::Lane::longRead),
      request_(
          store.git(), &readWebLink,
          [this] {
              if (const auto& link = request_.answer(); link && !request_.failure())
                  offerPage(exactText(link->address));
          },
          Worker::Lane::longRead)
{
    notifiers_.push_back(store.undo().said.addNotifier([this] { showSaid(); }));
    notifiers_.push_back(store.changes().running.addNotifier([this] { showOffer(); }));
    installQuietLineAccessibility();
    layOut();
    makePane(*this);
    base_->installEventFilter(this);
    clock_.setSingleShot(true);
    connect(&clock_, &QTimer::timeout, this, [this] { store_.undo().dismissSaid(); });
    connect(qApp, &QApplication::focusChanged, this, &QuietLine::focusMoved);
    hide();
    showSaid();
}

void QuietLine::layOut()
{
    sentence_->setTextFormat(Qt::PlainText);
    for (QPushButton* const button : {action_, push_, web_}) {
        button->setProperty("compact", true);
        button->setProperty("link", true);
        followColor(*button, QPalette::ButtonText, &Theme::accent);
        followFont(*button, 0, QFont::DemiBold);
        button->setFocusPolicy(Qt::TabFocus);
    }
    auto* const cross = new IconButton(Icon::close, tr("Dismiss"), this);
    connect(action_, &QPushButton::clicked, this, &QuietLine::act);
    connect(push_, &QPushButton::clicked, this, &QuietLine::push);
    connect(cross, &QAbstractButton::clicked, this, &QuietLine::dismiss);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch(1);
    connect(web_, &QPushButton::clicked, this, &QuietLine::openPage);
    buttons->addWidget(web_);
    buttons->addWidget(push_);
    buttons->addWidget(action_);
    buttons->addWidget(cross);
    parts_ = new QBoxLayout(QBoxLayout::LeftToRight, this);
    parts_->setContentsMargins(12, 5, 6, 5);
    parts_->setSpacing(8);
    parts_->addWidget(sentence_, 1);
    parts_->addLayout(buttons);
}

void QuietLine::setPlace(QWidget* place)
{
    if (place_ && place_ != base_)
        place_->removeEventFilter(this);
    place_ = place;
    if (place_ != base_)
        place_->installEventFilter(this);
    if (!isHidden())
        arrange();
}

void QuietLine::showSaid()
{
    const std::optional<Undo::Said>& said = store_.undo().said.value();
    if (!said) {
        dismiss();
        return;
    }
    const QString sentence = withStandIns(said->sentence);
    sentence_->setText(sentence);
    sentence_->setToolTip(plainToolTip(sentence));
    setAccessibleName(sentence);
    action_->setVisible(said->offer != Offer::none);
    action_->setText(said->offer == Offer::redo ? tr("Redo") : tr("Undo"));
    askWhatWasRewritten(said->rewritten);
    askForRequest(said->pushed);
    showOffer();
    action_->ensurePolished();
    sentence_->ensurePolished();
    arrange();
    show();
    raise();
    clock_.stop();
    left_ = shownFor;
    holdClock(underMouse() || holdsFocus(QApplication::focusWidget()));
    announce();
}

/// While something else runs, they would be dropped.
void QuietLine::showOffer()
{
    const auto show = [this](QPushButton& button, Verb verb, const QString& hint) {
        const QString whyNot = obstacle(store_.changes(), store_.snapshot(), verb);
        button.setEnabled(whyNot.isEmpty());
        button.setToolTip(plainToolTip(whyNot.isEmpty() ? hint : whyNot));
    };
    show(*action_, Verb::undo, {});
    const std::optional<gitkit::RewrittenBranch> branch = rewritten_.answer() ? *rewritten_.answer() : std::nullopt;
    show(*push_, Verb::push,
         branch ? tr("%1 still has what %2 was before")
                      .arg(shownText(branch->to.remote + '/' + branch->to.branch), inQuotes(branch->branch))
                : QString());
}

void QuietLine::askWhatWasRewritten(const std::vector<std::string>& branches)
{
    push_->hide();
    rewritten_.forget();
    if (!branches.empty())
        rewritten_.ask(branches);
}

void QuietLine::showPush()
{
    if (rewritten_.isReading() || rewritten_.failure() || !rewritten_.answer() || !*rewritten_.answer() || isHidden())
        return;
    showOffer();
    push_->show();
    arrange();
}

/// What the server has told goes before what is known of servers of its kind.
void QuietLine::askForRequest(const std::optional<PushedBranch>& pushed)
{
    web_->hide();
    address_.clear();
    request_.forget();
    if (pushed && !pushed->told.empty())
        offerPage(QString::fromStdString(pushed->told));
    else if (pushed)
        request_.ask(completed(store_, {.branch = pushed->branch}));
}

void QuietLine::offerPage(const QString& address)
{
    const QUrl page(address);
    if (address.isEmpty() || (page.scheme() != u"https"_s && page.scheme() != u"http"_s))
        return;
    address_ = address;
    web_->setText(request_.asked() ? tr("New Request") : tr("Open Link"));
    web_->setToolTip(plainToolTip(address));
    web_->setAccessibleDescription(address);
    web_->show();
    if (!isHidden())
        arrange();
}

void QuietLine::openPage()
{
    const QUrl page(address_);
    dismiss();
    QDesktopServices::openUrl(page);
}

void QuietLine::push()
{
    const std::optional<gitkit::RewrittenBranch> branch = rewritten_.answer() ? *rewritten_.answer() : std::nullopt;
    dismiss();
    if (branch)
        actions::askToReplace(store_.actors(), *branch);
}

void QuietLine::act()
{
    const std::optional<Undo::Said> said = store_.undo().said.value();
    dismiss();
    if (said && said->offer == Offer::redo)
        store_.undo().redo();
    else if (said)
        store_.undo().undo();
}

void QuietLine::dismiss()
{
    clock_.stop();
    if (isHidden())
        return;
    // The focus moves before the line is hidden, since Qt would move it to the next widget.
    if (holdsFocus(QApplication::focusWidget())) {
        QWidget* const next = focusBefore_ && focusBefore_->isVisible() ? focusBefore_.data() : parentWidget();
        next->setFocus(Qt::OtherFocusReason);
    }
    hide();
    store_.undo().dismissSaid();
}

void QuietLine::announce()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent told(this, accessibleName());
#else
    QAccessibleEvent told(this, QAccessible::Alert);
#endif
    QAccessible::updateAccessibility(&told);
}

void QuietLine::arrange()
{
    const QWidget* const place = place_ && place_->isVisible() ? place_.data() : base_;
    const int room = std::min(place->width() - 2 * fromEdges, longest);
    sentence_->setWordWrap(false);
    parts_->setDirection(QBoxLayout::LeftToRight);
    int width = parts_->totalSizeHint().width();
    if (width > room) {
        width = room;
        sentence_->setWordWrap(true);
        parts_->setDirection(room < leastForOneRow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    }
    const int height =
        parts_->hasHeightForWidth() ? parts_->totalHeightForWidth(width) : parts_->totalSizeHint().height();
    const QPoint corner((place->width() - width) / 2, place->height() - height - fromEdges);
    setGeometry({place->mapTo(parentWidget(), corner), QSize(width, height)});
}

bool QuietLine::eventFilter(QObject* watched, QEvent* event)
{
    constexpr std::array moves{QEvent::Resize, QEvent::Move, QEvent::Show, QEvent::Hide};
    if (!isHidden() && std::ranges::find(moves, event->type()) != moves.end())
        arrange();
    return QWidget::eventFilter(watched, event);
}

/// Its parts want another size once they have their style, which is after they are shown first.
bool QuietLine::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest && !isHidden())
        arrange();
    return QWidget::event(event);
}

bool QuietLine::holdsFocus(const QWidget* focus) const { return focus && (focus == this || isAncestorOf(focus)); }

void QuietLine::focusMoved(QWidget* from, QWidget* to)
{
    if (holdsFocus(to) && !holdsFocus(from))
        focusBefore_ = from;
    if (!isHidden())
        holdClock(underMouse() || holdsFocus(to));
}

void QuietLine::holdClock(bool holds)
{
    if (holds && clock_.isActive()) {
        left_ = std::max(leastLeft, clock_.remainingTimeAsDuration());
        clock_.stop();
    } else if (!holds && !clock_.isActive()) {
        clock_.start(left_);
    }
}

void QuietLine::enterEvent(QEnterEvent* event)
{
    QWidget::enterEvent(event);
    holdClock(true);
}

void QuietLine::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    holdClock(holdsFocus(QApplication::focusWidget()));
}

void QuietLine::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else
        QWidget::keyPressEvent(event);
}

void QuietLine::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.controlBorder);
    painter.setBrush(theme.bars);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace plovik

#include "moc_QuietLine.cpp"
