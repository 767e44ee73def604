// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlamePane.h"

#include "app/store/ShownText.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"
#include "app/ui/widgets/EmptyState.h"

#include <QKeyEvent>

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

using State = BlameReading::State;

/// A reading that is over by then shows no sign of having been waited for.
constexpr std::chrono::milliseconds quietStart{150};

struct Sentence {
    QString title, description;
};

Sentence missingFile(const BlameRequest& request)
{
    const QString name = shownText(request.path);
    if (request.revision)
        return {u"Not in This Commit"_s,
                u"“%1” does not exist in %2."_s.arg(name, shownText(gitkit::shortHash(*request.revision)))};
    return {u"The File Is Gone"_s,
            u"“%1” does not exist in the working copy. Its history still tells of it."_s.arg(name)};
}

Sentence sentenceFor(State state, const BlameRequest& request)
{
    switch (state) {
    case State::empty:
        return {u"Empty File"_s, u"The file has no lines."_s};
    case State::binary:
        return {u"Binary File"_s, u"The file has no lines of text that could have been written by someone."_s};
    case State::utf16:
        return {u"UTF-16 Text"_s, u"The file is encoded in UTF-16. Git cannot tell its lines apart, and so cannot tell "
                                  u"who wrote them."_s};
    case State::utf32:
        return {u"UTF-32 Text"_s, u"The file is encoded in UTF-32. Git cannot tell its lines apart, and so cannot tell "
                                  u"who wrote them."_s};
    case State::missing:
        return missingFile(request);
    case State::untracked:
        return {u"Untracked File"_s,
                u"Git does not know this file yet. Once it is committed, its lines have authors."_s};
    case State::folder:
        return {u"A Folder"_s, u"Only files have lines. Choose one of the files in it."_s};
    case State::submodule:
        return {u"A Submodule"_s, u"This is a commit of another repository. Its files have their authors there."_s};
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
    : QStackedWidget(parent), store_(store), list_(new BlameList(this)), sentence_(new EmptyState(this))
{
    auto* const loading = new EmptyState(this);
    loading->setText({}, u"Reading who wrote what…"_s);
    loading_ = loading;
    for (QWidget* page : std::initializer_list<QWidget*>{list_, sentence_, loading_})
        addWidget(page);
    setFocusPolicy(Qt::StrongFocus);
    loadingSoon_.setSingleShot(true);
    connect(&loadingSoon_, &QTimer::timeout, this, [this] { showPage(loading_); });
    connect(list_, &BlameList::commitRequested, this, &BlamePane::showCommit);
    connect(list_, &BlameList::beforeRequested, this, &BlamePane::beforeRequested);
    connect(list_, &BlameList::backRequested, this, &BlamePane::backRequested);
    connect(list_, &BlameList::fileHistoryRequested, this, &BlamePane::fileHistoryRequested);
    notifiers_.push_back(store_.generation.addNotifier([this] {
        if (isVisible())
            readAgain();
    }));
}

BlamePane::~BlamePane()
{
    if (colouringIsStale_)
        *colouringIsStale_ = true;
}

void BlamePane::open(const InspectedFile& file)
{
    if (isSameFile(file_, file)) {
        readAgain();
        return;
    }
    file_ = file;
    stamp_.reset();
    read({});
}

void BlamePane::openBefore(const InspectedFile& file, int row)
{
    file_ = file;
    stamp_.reset();
    read({row, list_->placeOf(row).y, row, row, row});
}

void BlamePane::reopen(const InspectedFile& file, const Memory& memory)
{
    ++token_;
    isReading_ = false;
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
    // A commit stays what it is.
    if (!file_ || file_->revision)
        return;
    if (isReading_)
        isOld_ = true;
    else
        read(isSameFile(shown_, *file_) ? list_->hold() : BlameList::Hold());
}

void BlamePane::read(const BlameList::Hold& hold)
{
    const bool isShown = isSameFile(shown_, *file_);
    BlameRequest request{file_->path,
                         file_->revision,
                         store_.status.value().oid.value_or(std::string()),
                         isShown ? stamp_ : std::nullopt,
                         nullptr,
                         {hold.top, hold.current, hold.firstSelected, hold.lastSelected}};
    if (hold.top >= 0)
        request.shown = list_->document();
    isReading_ = true;
    isOld_ = false;
    if (!isShown)
        loadingSoon_.start(quietStart);
    ++token_;
    launch(reading(this, std::move(request), hold));
}

QCoro::Task<> BlamePane::reading(QPointer<BlamePane> pane, BlameRequest request, BlameList::Hold hold)
{
    const qint64 token = pane->token_;
    BlameReading reading;
    QString problem;
    try {
        reading = co_await pane->store_.runFunction(&readBlame, request);
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    // The pane closed meanwhile, or another file is wanted.
    if (!pane || pane->token_ != token)
        co_return;
    pane->isReading_ = false;
    pane->loadingSoon_.stop();
    if (problem.isEmpty())
        pane->take(reading, request, hold);
    else
        pane->showSentence(u"The Blame Could Not Be Read"_s, problem);
    if (pane->isOld_)
        pane->readAgain();
}

void BlamePane::take(const BlameReading& reading, const BlameRequest& request, BlameList::Hold hold)
{
    if (reading.state == State::unchanged)
        return;
    stamp_ = reading.document ? reading.stamp : std::nullopt;
    if (!reading.document) {
        const Sentence sentence = sentenceFor(reading.state, request);
        showSentence(sentence.title, sentence.description);
        return;
    }
    shown_ = file_;
    if (reading.rows.empty())
        list_->setDocument(reading.document, {});
    else
        list_->replaceDocument(reading.document,
                               {reading.rows[0], hold.y, reading.rows[1], reading.rows[2], reading.rows[3]});
    colour();
    showPage(list_);
}

void BlamePane::colour()
{
    if (colouringIsStale_)
        *colouringIsStale_ = true;
    colouringIsStale_ = std::make_shared<std::atomic<bool>>(false);
    launch(colouring(this, list_->document()));
}

QCoro::Task<> BlamePane::colouring(QPointer<BlamePane> pane, std::shared_ptr<const BlameDocument> document)
{
    SyntaxRequest request;
    request.file = document->file();
    request.path = pane->file_->path;
    request.isStale = pane->colouringIsStale_;
    const auto syntax = co_await pane->store_.runFunction(&highlightedFile, request);
    // The pane closed meanwhile, or shows another file.
    if (pane && pane->list_->document() == document)
        pane->list_->setSyntax(syntax);
}

void BlamePane::showSentence(const QString& title, const QString& description)
{
    shown_.reset();
    sentence_->setText(title, description);
    showPage(sentence_);
}

void BlamePane::showPage(QWidget* page)
{
    // A list that goes would hand the focus to somewhere else.
    const bool hadFocus = hasFocus() || list_->hasFocus();
    if (hadFocus && page != list_)
        setFocus(Qt::OtherFocusReason);
    setCurrentWidget(page);
    if (hadFocus && page == list_)
        list_->setFocus(Qt::OtherFocusReason);
}

void BlamePane::showCommit(int row)
{
    const BlameDocument::Commit& commit = list_->document()->commit(row);
    if (!commit.isUncommitted) {
        store_.showCommit(commit.hash);
        return;
    }
    if (store_.selection.value() != SidebarItem::workingCopy()) {
        store_.selection = SidebarItem::workingCopy();
        store_.selectionChanged();
    }
    store_.selectedPaths = std::set<std::string>{file_->path};
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
