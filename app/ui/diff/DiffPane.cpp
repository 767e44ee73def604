// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffPane.h"

#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffExtras.h"
#include "app/ui/diff/DiffFinder.h"
#include "app/ui/diff/DiffOptionsBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/FindBar.h"
#include "app/ui/diff/syntax/DiffFilesLoader.h"
#include "app/ui/widgets/EmptyState.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace plovik {

namespace {

/// A read that takes no longer than this shows no sign of it.
constexpr std::chrono::milliseconds quietDiff{150};

DiffLayout wantedLayout()
{
    return Settings::shared().value(settings::diffSideBySide) ? DiffLayout::sideBySide : DiffLayout::unified;
}

} // namespace

DiffPane::DiffPane(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), view_(new DiffView), empty_(new EmptyState), pages_(new QStackedWidget(this)),
      options_(new DiffOptionsBar(this)), extras_(new DiffExtras(store, *view_, this)),
      files_(new DiffFilesLoader(store, this)), finder_(new DiffFinder(*view_, this))
{
    pages_->addWidget(empty_);
    pages_->addWidget(view_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(pages_, 1);
    setFocusProxy(view_);
    readingSoon_.setSingleShot(true);
    readingSoon_.setInterval(quietDiff);
    connect(&readingSoon_, &QTimer::timeout, this, [this] { showSentence({}, tr("Reading the changes…")); });

    connect(files_, &DiffFilesLoader::textsLoaded, view_, &DiffView::setTexts);
    connect(files_, &DiffFilesLoader::syntaxLoaded, view_, &DiffView::setSyntax);
    view_->setBarReserve(options_->width());
    view_->viewport()->installEventFilter(this);
    options_->hide();
    view_->setLayout(wantedLayout());
    view_->setWraps(Settings::shared().value(settings::diffWraps));
    connect(options_, &DiffOptionsBar::wholeFileToggled, view_, &DiffView::setShowsWholeFile);
    connect(view_, &DiffView::showsWholeFileChanged, options_, &DiffOptionsBar::setWholeFile);
    connect(view_, &DiffView::allLinesRequested, this, [this] { readOn(gitkit::DiffReach::whole); });
    connect(options_, &DiffOptionsBar::findRequested, this, &DiffPane::find);
    connect(&Settings::shared(), &Settings::changed, this, &DiffPane::settingChanged);
}

void DiffPane::addOption(QAbstractButton* button)
{
    options_->addOption(button);
    view_->setBarReserve(options_->width());
    placeOptions();
}

void DiffPane::showDiff(const QString& name, const std::string& path, gitkit::ParsedDiff diff,
                        const std::string& revision)
{
    DiffContent content;
    content.name = name;
    content.title = shownText(path);
    content.path = path;
    content.revision = revision;
    content.diff = std::move(diff);
    std::vector<DiffContent> contents;
    contents.push_back(std::move(content));
    const bool isMore = isMoreOfTheSame(contents.front().diff);
    showDiffs(std::move(contents), isMore ? DiffPlace::kept : DiffPlace::start);
}

bool DiffPane::isMoreOfTheSame(const gitkit::ParsedDiff& diff) const
{
    return !isSentenceShown() && shownFile_ == file_ && extras_->contents().size() == 1 &&
           extras_->contents().front().diff.whiteSpace == diff.whiteSpace;
}

void DiffPane::awaitDiff()
{
    if (isSentenceShown() || shownFile_ != file_)
        readingSoon_.start();
}

void DiffPane::showDiffs(std::vector<DiffContent> contents, DiffPlace place)
{
    readingSoon_.stop();
    if (place == DiffPlace::start) {
        finder_->forgetPlace();
        view_->setShowsWholeFile(false);
    }
    extras_->show(std::move(contents), place);
    loadFiles();
    showOptions();
    pages_->setCurrentWidget(view_);
    options_->show();
    placeOptions();
    shownFile_ = file_;
    countSoon();
}

/// Pictures and other binary files have no use for the options of text.
void DiffPane::showOptions()
{
    const auto hasText = [](const DiffSectionView* section) {
        const ShownDiff& diff = section->controller().diff();
        return !diff.content().diff.isBinary || diff.document().rowCount() > 0;
    };
    if (options_->setHasText(std::ranges::any_of(view_->sections(), hasText)))
        view_->setBarReserve(options_->width());
    // The pane hands its focus on to the first diff, so that the way leads past what stands before it.
    if (QWidget* const last = view_->orderTabs())
        options_->orderTabs(last);
}

/// Has the lines of a cut diff counted once its beginning is on display.
void DiffPane::countSoon()
{
    const bool isCut =
        std::ranges::any_of(extras_->contents(), [](const DiffContent& content) { return content.diff.isTruncated; });
    if (!isCut || reach_ != gitkit::DiffReach::beginning)
        return;
    QTimer::singleShot(0, this, [this, file = file_] {
        if (file == file_ && reach_ == gitkit::DiffReach::beginning)
            readOn(gitkit::DiffReach::counted);
    });
}

void DiffPane::readOn(gitkit::DiffReach reach)
{
    reach_ = reach;
    Q_EMIT readingChanged();
}

void DiffPane::loadFiles()
{
    std::vector<const DiffContent*> shown;
    for (const DiffContent& content : extras_->contents())
        shown.push_back(&content);
    files_->load(shown);
}

void DiffPane::showOffer(const QString& title, const QString& description, const QString& button,
                         std::function<void()> act)
{
    showSentence(title, description);
    QPushButton* const shown = empty_->action(button);
    shown->setAccessibleName(button);
    shown->show();
    if (!std::exchange(offered_, std::move(act)))
        offering_ = connect(shown, &QPushButton::clicked, this, [this] { offered_(); });
}

void DiffPane::showSentence(const QString& title, const QString& description)
{
    if (std::exchange(offered_, nullptr)) {
        disconnect(offering_);
        empty_->action({})->hide();
    }
    readingSoon_.stop();
    files_->load({});
    empty_->setText(title, description);
    pages_->setCurrentWidget(empty_);
    options_->hide();
    if (findBar_)
        findBar_->close();
}

bool DiffPane::isSentenceShown() const { return pages_->currentWidget() == empty_; }

gitkit::DiffReading DiffPane::readingOf(const std::string& file)
{
    if (file != std::exchange(file_, file))
        reach_ = gitkit::DiffReach::beginning;
    const bool ignoresWhiteSpace = Settings::shared().value(settings::diffIgnoresWhiteSpace);
    return {ignoresWhiteSpace ? gitkit::WhiteSpace::ignored : gitkit::WhiteSpace::compared, reach_};
}

void DiffPane::settingChanged(const QString& key)
{
    if (key == QLatin1String(settings::diffSideBySide.key))
        view_->setLayout(wantedLayout());
    else if (key == QLatin1String(settings::diffWraps.key))
        view_->setWraps(Settings::shared().value(settings::diffWraps));
    else if (key == QLatin1String(settings::diffIgnoresWhiteSpace.key))
        Q_EMIT readingChanged();
}

void DiffPane::placeOptions()
{
    const QPoint topRight = view_->viewport()->mapTo(this, QPoint(view_->viewport()->width(), 0));
    options_->move(topRight.x() - options_->width(), topRight.y());
    options_->raise();
}

bool DiffPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == view_->viewport() && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        placeOptions();
    return QWidget::eventFilter(watched, event);
}

void DiffPane::find()
{
    if (isSentenceShown())
        return;
    const QString text = view_->selectedText();
    if (!findBar_) {
        findBar_ = new FindBar(*finder_, this);
        layout()->addWidget(findBar_);
        connect(findBar_, &FindBar::focusReturned, this, [this] { view_->setFocus(Qt::OtherFocusReason); });
    }
    // A search finds no text of several lines.
    findBar_->open(text.contains(u'\n') ? QString() : text);
}

/// Returns whether a key means this diff, which it does here even if the window has it for something else.
bool DiffPane::isMine(const QKeyEvent& event) const { return !isSentenceShown() && isFindKey(findBar_, event); }

bool DiffPane::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isMine(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void DiffPane::keyPressEvent(QKeyEvent* event)
{
    if (!isMine(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    handleFindKey(findBar_, *event, [this] { find(); });
}

} // namespace plovik

#include "moc_DiffPane.cpp"
