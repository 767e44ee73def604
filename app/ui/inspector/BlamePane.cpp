// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlamePane.h"

#include "app/settings/CodeFont.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"
#include "app/ui/widgets/EmptyState.h"

#include <QKeyEvent>

#include <utility>

namespace plovik {

namespace {

using State = BlameLines::State;

/// A read that takes no longer than this shows no sign of loading.
constexpr std::chrono::milliseconds quietStart{150};

struct Sentence {
    QString title, description;
};

Sentence missingFile(const BlameRequest& request)
{
    const QString name = shownText(request.path);
    if (request.revision)
        return {BlamePane::tr("Not in This Commit"),
                BlamePane::tr("“%1” does not exist in %2.").arg(name, shownText(gitkit::shortHash(*request.revision)))};
    return {BlamePane::tr("The File Is Gone"),
            BlamePane::tr("“%1” does not exist in the working copy. Its history still tells of it.").arg(name)};
}

Sentence sentenceFor(State state, const BlameRequest& request)
{
    switch (state) {
    case State::empty:
        return {BlamePane::tr("Empty File"), BlamePane::tr("The file has no lines.")};
    case State::binary:
        return {BlamePane::tr("Binary File"),
                BlamePane::tr("The file has no lines of text that could have been written by someone.")};
    case State::utf16:
        return {BlamePane::tr("UTF-16 Text"),
                BlamePane::tr("The file is encoded in UTF-16. Git cannot tell its lines apart, and so cannot tell "
                              "who wrote them.")};
    case State::utf32:
        return {BlamePane::tr("UTF-32 Text"),
                BlamePane::tr("The file is encoded in UTF-32. Git cannot tell its lines apart, and so cannot tell "
                              "who wrote them.")};
    case State::missing:
        return missingFile(request);
    case State::untracked:
        return {BlamePane::tr("Untracked File"),
                BlamePane::tr("Git does not know this file yet. Once it is committed, its lines have authors.")};
    case State::folder:
        return {BlamePane::tr("A Folder"), BlamePane::tr("Only files have lines. Choose one of the files in it.")};
    case State::submodule:
        return {BlamePane::tr("A Submodule"),
                BlamePane::tr("This is a commit of another repository. Its files have their authors there.")};
    case State::unchanged:
    case State::lines:
        break;
    }
    return {};
}

bool isSameFile(const std::optional<InspectedFile>& one, const InspectedFile& other)
{
    return one && one->path == other.path && one->revision == other.revision;
}

} // namespace

BlamePane::BlamePane(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), list_(new BlameList(this)), sentence_(new EmptyState(this)),
      blames_(
          store.git(), &readBlame, &blameReading, [this] { blameRead(); }, Worker::Lane::longRead),
      colours_(store.git(), &highlighted, [this] { coloured(); })
{
    auto* const loading = new EmptyState(this);
    loading->setText({}, tr("Reading who wrote what…"));
    loading_ = loading;
    for (QWidget* page : std::initializer_list<QWidget*>{list_, sentence_, loading_})
        addWidget(page);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Blame Pane"));
    loadingSoon_.setSingleShot(true);
    connect(&loadingSoon_, &QTimer::timeout, this, [this] { showPage(loading_); });
    connect(list_, &BlameList::commitRequested, this, &BlamePane::showCommit);
    connect(list_, &BlameList::beforeRequested, this, &BlamePane::beforeRequested);
    connect(list_, &BlameList::backRequested, this, &BlamePane::backRequested);
    connect(list_, &BlameList::fileHistoryRequested, this, &BlamePane::fileHistoryRequested);
    connect(list_, &BlameList::linesHistoryRequested, this, &BlamePane::linesHistoryRequested);
    connect(list_, &BlameList::linesLinkRequested, this, &BlamePane::linesLinkRequested);
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] {
        showReasonAgainstLines();
        if (isVisible())
            readAgain();
    }));
}

/// The lines of a changed file are others than those of the commit that is checked out.
void BlamePane::showReasonAgainstLines()
{
    const bool isChanged = file_ && !file_->revision && store_.snapshot().status.value().files.find(file_->path);
    list_->setReasonAgainstLines(
        isChanged ? tr("Commit the changes of this file first, or select lines in the blame of a commit.") : QString());
}

void BlamePane::open(const InspectedFile& file)
{
    if (isSameFile(file_, file)) {
        readAgain();
        return;
    }
    file_ = file;
    showReasonAgainstLines();
    stamp_.reset();
    read({});
}

void BlamePane::openBefore(const InspectedFile& file, int row)
{
    file_ = file;
    showReasonAgainstLines();
    stamp_.reset();
    read({row, list_->placeOf(row).y, row, row, row});
}

void BlamePane::reopen(const InspectedFile& file, const Memory& memory)
{
    blames_.forget();
    loadingSoon_.stop();
    file_ = file;
    stamp_ = memory.stamp;
    if (!memory.document) {
        read({});
        return;
    }
    shown_ = file;
    list_->replaceDocument(memory.document, memory.hold);
    colour();
    showPage(list_);
    readAgain();
}

BlamePane::Memory BlamePane::memory() const
{
    if (!isSameFile(shown_, file_.value_or(InspectedFile())) || currentWidget() != list_)
        return {};
    return {list_->document(), stamp_, list_->hold()};
}

void BlamePane::readAgain()
{
    // A blame of a commit never changes, but the attempt to read it may have failed.
    if (!file_ || (file_->revision && !blames_.failure()))
        return;
    if (blames_.isReading())
        isOld_ = true;
    else
        read(isSameFile(shown_, *file_) ? list_->hold() : BlameList::Hold());
}

void BlamePane::read(const BlameList::Hold& hold)
{
    const bool isShown = isSameFile(shown_, *file_);
    BlameRequest request{{file_->path, file_->revision, store_.snapshot().status.value().oid.value_or(std::string()),
                          isShown ? stamp_ : std::nullopt, store_.trust().keptOff.value()},
                         {},
                         {hold.top, hold.current, hold.firstSelected, hold.lastSelected},
                         CodeFont::tabWidth()};
    if (hold.top >= 0)
        request.shown = list_->document();
    isOld_ = false;
    hold_ = hold;
    if (!isShown)
        loadingSoon_.start(quietStart);
    blames_.forget();
    blames_.ask(std::move(request));
}

void BlamePane::blameRead()
{
    loadingSoon_.stop();
    if (blames_.failure())
        showSentence(tr("The Blame Could Not Be Read"), blames_.failure()->message);
    else
        take(*blames_.result());
    if (isOld_)
        readAgain();
}

void BlamePane::take(const BlameReading& reading)
{
    if (reading.state == State::unchanged)
        return;
    stamp_ = reading.document ? reading.stamp : std::nullopt;
    if (!reading.document) {
        const Sentence sentence = sentenceFor(reading.state, *blames_.answered());
        showSentence(sentence.title, sentence.description);
        return;
    }
    shown_ = file_;
    if (reading.rows.empty())
        list_->setDocument(reading.document, {});
    else
        list_->replaceDocument(reading.document,
                               {reading.rows[0], hold_.y, reading.rows[1], reading.rows[2], reading.rows[3]});
    colour();
    showPage(list_);
}

void BlamePane::colour() { colours_.askAgain({.file = list_->document()->file(), .path = file_->path}); }

void BlamePane::coloured()
{
    if (list_->document() && list_->document()->file() == colours_.answered()->file)
        list_->setSyntax(*colours_.result());
}

void BlamePane::showSentence(const QString& title, const QString& description)
{
    shown_.reset();
    sentence_->setText(title, description);
    showPage(sentence_);
}

void BlamePane::showPage(QWidget* page)
{
    // Hiding the list would move the focus out of the pane.
    const bool hadFocus = hasFocus() || list_->hasFocus();
    if (hadFocus && page != list_)
        setFocus(Qt::OtherFocusReason);
    setCurrentWidget(page);
    if (hadFocus && page == list_)
        list_->setFocus(Qt::OtherFocusReason);
}

void BlamePane::showCommit(int row)
{
    if (!shown_)
        return;
    // Copied, since the blame may be left. Its lines may still be those of the file before.
    const std::string path = shown_->path;
    const BlameDocument::Commit commit = list_->document()->commit(row);
    if (!commit.isUncommitted) {
        store_.history().showCommit(commit.hash);
        return;
    }
    store_.window().leaveBlame();
    if (store_.window().selection.value() != SidebarItem::workingCopy())
        store_.window().select(SidebarItem::workingCopy());
    store_.window().selectPaths(std::set<std::string>{path});
}

void BlamePane::focusInEvent(QFocusEvent* event)
{
    QStackedWidget::focusInEvent(event);
    if (currentWidget() == list_)
        list_->setFocus(event->reason());
}

void BlamePane::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Backspace && !event->isAutoRepeat())
        Q_EMIT backRequested();
    else
        QStackedWidget::keyPressEvent(event);
}

} // namespace plovik

#include "moc_BlamePane.cpp"
