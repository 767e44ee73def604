// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitHeader.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/store/readers/WebLinkReaders.h"
#include "app/ui/commit/CommitFacts.h"
#include "app/ui/commit/CommitFactsBox.h"
#include "app/ui/commit/MessageOverFacts.h"
#include "app/ui/commit/MessageText.h"
#include "app/ui/web/WebLinkEntries.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int sideMargin = 14;

/// Makes what hides a line behind the colour of the ground. The pointer goes through it.
QWidget* makeCover(QWidget* parent)
{
    auto* const cover = new QWidget(parent);
    cover->setBackgroundRole(QPalette::Base);
    cover->setAutoFillBackground(true);
    cover->setAttribute(Qt::WA_TransparentForMouseEvents);
    cover->hide();
    return cover;
}

void cover(QWidget& cover, const QRect& area)
{
    cover.setGeometry(area);
    cover.setVisible(!area.isEmpty());
}

} // namespace

CommitHeader::CommitHeader(RepositoryStore& store, CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), names_(store.git(), &readCommitHash, [this] { nameRead(); }),
      references_(store.git(), &readReferenceAddresses, [this] { showLinks(); }),
      signature_(
          store.git(), &readSignature, [this] { signatureRead(); }, Worker::Lane::network),
      kind_(kind), area_(new QScrollArea), message_(new MessageText), facts_(new CommitFactsBox(kind)),
      topCover_(makeCover(this)), bottomCover_(makeCover(this))
{
    const int top = kind == CommitKind::ordinary ? 14 : 10;
    text_ = new MessageOverFacts(message_, facts_, {sideMargin, top, sideMargin, 8});
    connect(text_, &MessageOverFacts::placed, this, &CommitHeader::place);
    area_->setWidget(text_);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area_);
    topCover_->raise();
    bottomCover_->raise();

    connect(area_->verticalScrollBar(), &QScrollBar::valueChanged, this, &CommitHeader::coverCutLines);
    connect(facts_, &CommitFactsBox::commitRequested, this, [this](const QString& hash) { goTo(hash.toStdString()); });
    connect(message_, &MessageText::commitRequested, this, [this](const QString& name) {
        clickedIn_ = shown_.hash;
        names_.askAgain(name.toStdString());
    });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1StringView(settings::webHosts.key))
            askForReferences();
        if (key == QLatin1StringView(settings::messageLinks.key))
            showLinks();
    });
    showLinks();
    if (kind == CommitKind::ordinary) {
        const auto refsChanged = [this] { showRefs(); };
        notifiers_.push_back(store_.history().history.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().branches.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().remoteBranches.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().tags.addNotifier(refsChanged));
    }
}

std::optional<gitkit::Commit> CommitHeader::commitOnPage(const std::string& hash) const
{
    return store_.history().history.value().commit(hash);
}

void CommitHeader::expect(const std::string& hash)
{
    if (kind_ == CommitKind::stash) {
        const auto& stashes = store_.snapshot().stashes.value();
        const auto found = std::ranges::find(stashes, hash, &gitkit::Stash::hash);
        take(found == stashes.end() ? commitFacts::ofUnknown(hash) : commitFacts::of(*found));
    } else {
        const std::optional<gitkit::Commit> commit = commitOnPage(hash);
        take(commit ? commitFacts::of(*commit) : commitFacts::ofUnknown(hash));
    }
}

void CommitHeader::showDetail(const gitkit::CommitDetail& detail)
{
    take(detail);
    if (kind_ != CommitKind::ordinary || detail.hash.empty())
        return;
    // Not while commits are passed: checking starts programs.
    if (const auto known = signatures_.find(detail.hash); known != signatures_.end())
        showSignature(known->second);
    else
        signature_.askAgain(detail.hash);
}

void CommitHeader::signatureRead()
{
    if (signature_.isReading() || signature_.failure() || !signature_.answer())
        return;
    // What could not be checked may be so the next time.
    if (signature_.answer()->state != gitkit::Signature::State::cannotCheck)
        signatures_[*signature_.answered()] = *signature_.answer();
    if (signature_.answered() == shown_.hash)
        showSignature(*signature_.answer());
}

void CommitHeader::showSignature(const gitkit::Signature& signature)
{
    facts_->setSignature(signature);
    place();
    updateGeometry();
}

void CommitHeader::take(const gitkit::CommitDetail& detail)
{
    if (detail.hash != shown_.hash) {
        area_->verticalScrollBar()->setValue(0);
        facts_->say({});
        facts_->setSignature({});
    }
    shown_ = commitFacts::withoutFiles(detail);
    message_->setMessage(MessageParts::of(shown_.message));
    askForReferences();
    showFacts();
    showRefs();
    place();
    updateGeometry();
}

/// The remote's page is looked up where a message has a number that could lead there.
void CommitHeader::askForReferences()
{
    if (shown_.message.find_first_of("#!") != std::string::npos)
        references_.ask(completed(store_, {}));
}

void CommitHeader::showLinks()
{
    std::vector<MessageLink> links = webSettings::links();
    const auto add = [&links](const std::string& address, const QString& sign) {
        // Not behind a word, as in an address or an entity.
        if (!address.empty())
            links.push_back({QRegularExpression(u"(?<![\\w/&#!])"_s + sign + u"([0-9]{1,9})\\b"_s),
                             QString::fromStdString(address) + u"$1"_s});
    };
    if (const auto& addresses = references_.answer()) {
        add(addresses->issue, u"#"_s);
        add(addresses->request, u"!"_s);
    }
    message_->setLinks(links);
}

void CommitHeader::showFacts()
{
    if (!shown_.hash.empty())
        facts_->setFacts(shown_);
}

void CommitHeader::showRefs()
{
    if (kind_ == CommitKind::stash || shown_.hash.empty())
        return;
    const std::optional<gitkit::Commit> commit = commitOnPage(shown_.hash);
    facts_->setLabels(commit ? commit->refs
                             : commitFacts::labelsOf(shown_.hash, {store_.snapshot().branches.value(),
                                                                   store_.snapshot().remoteBranches.value(),
                                                                   store_.snapshot().tags.value()}));
}

void CommitHeader::say(const QString& sentence)
{
    facts_->say(sentence);
    updateGeometry();
}

void CommitHeader::goTo(const std::string& hash)
{
    if (kind_ == CommitKind::ordinary && commitOnPage(hash))
        store_.window().selectCommit(hash);
    else
        store_.history().showCommit(hash);
}

void CommitHeader::nameRead()
{
    // The user has selected another commit in the meantime and stays there.
    if (shown_.hash != clickedIn_)
        return;
    if (names_.failure())
        say(tr("There is no commit %1 in this repository.").arg(shownText(*names_.asked())));
    else
        goTo(*names_.result());
}

/// Takes it that there is a scroll bar, which would otherwise come and go with the form of the facts.
int CommitHeader::factsHeight(bool isBrief) const
{
    const int width = area_->width() - area_->verticalScrollBar()->sizeHint().width();
    return facts_->heightIn(isBrief ? CommitFactsBox::Form::brief : CommitFactsBox::Form::full,
                            text_->factsWidth(width));
}

int CommitHeader::heightOf(bool isBrief) const { return text_->heightWith(factsHeight(isBrief)); }

/// Returns whether the facts would take more than half of a height that is not enough for all.
bool CommitHeader::isTightAt(int height) const
{
    return heightOf(false) > height && text_->factsTop() + factsHeight(false) > height / 2;
}

int CommitHeader::bestHeight(int available) const { return std::min(available, heightOf(isTightAt(available))); }

QSize CommitHeader::sizeHint() const { return {320, heightOf(false)}; }

void CommitHeader::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

void CommitHeader::place()
{
    const bool isTight = isTightAt(height());
    if (!isPlacing_ && facts_->setForm(isTight ? CommitFactsBox::Form::brief : CommitFactsBox::Form::full)) {
        // In the midst of a layout no other one would follow by itself.
        const QScopedValueRollback placing(isPlacing_, true);
        text_->place();
    }
    area_->verticalScrollBar()->setSingleStep(message_->fontMetrics().lineSpacing() * 5 / 4);
    coverCutLines();
}

void CommitHeader::coverCutLines()
{
    const QRect sight(area_->viewport()->mapTo(this, QPoint()), area_->viewport()->size());
    const int scrolled = area_->verticalScrollBar()->value();
    const auto half = [&sight](int height) { return height <= sight.height() / 2 ? height : 0; };
    const QRect first = text_->lineAt(scrolled);
    const QRect last = text_->lineAt(scrolled + sight.height());
    const int above = first.isNull() ? 0 : half(first.bottom() + 1 - scrolled);
    const int below = last.isNull() ? 0 : half(scrolled + sight.height() - last.top());
    cover(*topCover_, {sight.left(), sight.top(), sight.width(), above});
    cover(*bottomCover_, {sight.left(), sight.bottom() + 1 - below, sight.width(), below});
}

QRect CommitHeader::wholeLines() const
{
    const QRect sight(area_->viewport()->mapTo(this, QPoint()), area_->viewport()->size());
    return sight.adjusted(0, topCover_->isHidden() ? 0 : topCover_->height(), 0,
                          bottomCover_->isHidden() ? 0 : -bottomCover_->height());
}

void CommitHeader::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the facts contains the name of the fixed font, a colour and the direction.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::LayoutDirectionChange)
        showFacts();
}

} // namespace plovik

#include "moc_CommitHeader.cpp"
