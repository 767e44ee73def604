// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitHeader.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFacts.h"
#include "app/ui/commit/CommitRefs.h"
#include "app/ui/commit/HashField.h"
#include "app/ui/commit/MessageOverFacts.h"
#include "app/ui/commit/MessageText.h"
#include "app/ui/widgets/Initials.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

QLabel* makeLabel(Qt::TextFormat format, Qt::TextInteractionFlags interaction = Qt::NoTextInteraction)
{
    auto* const label = new QLabel;
    label->setTextFormat(format);
    label->setTextInteractionFlags(interaction);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->hide();
    return label;
}

void fill(QLabel* label, const QString& text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

constexpr int circleSize = 30;

} // namespace

/// The facts of a commit, with the author's initials at the left of the first ones.
class CommitHeader::FactsBox : public QWidget {
public:
    void setPerson(const QString& name, const std::string& mail)
    {
        initials_ = name.isEmpty() ? QString() : initialsOf(name);
        mail_ = mail;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (initials_.isEmpty())
            return;
        QPainter painter(this);
        paintInitials(painter, QRectF(isRightToLeft() ? width() - circleSize : 0, 2, circleSize, circleSize), initials_,
                      mail_);
    }

private:
    QString initials_;
    std::string mail_;
};

CommitHeader::CommitHeader(RepositoryStore& store, CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), names_(store.git(), &readCommitHash, [this] { nameRead(); }), kind_(kind),
      area_(new QScrollArea), message_(new MessageText), facts_(new FactsBox), refs_(new CommitRefs),
      people_(makeLabel(Qt::RichText, Qt::TextSelectableByMouse)), hash_(new HashField),
      parents_(makeLabel(Qt::RichText, Qt::TextBrowserInteraction)), notice_(makeLabel(Qt::PlainText))
{
    people_->setAccessibleName(tr("Commit Author"));
    parents_->setAccessibleName(tr("Commit Parents"));
    hash_->setVisible(kind == CommitKind::ordinary);
    auto* const rows = new QVBoxLayout(facts_);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(4);
    for (QWidget* row : {static_cast<QWidget*>(people_), static_cast<QWidget*>(hash_), static_cast<QWidget*>(parents_),
                         static_cast<QWidget*>(refs_), static_cast<QWidget*>(notice_)})
        rows->addWidget(row);
    if (kind == CommitKind::ordinary)
        people_->setContentsMargins(circleSize + 9, 0, 0, 0);
    notice_->setContentsMargins(0, 6, 0, 0);
    text_ = new MessageOverFacts(message_, facts_, {14, kind == CommitKind::ordinary ? 14 : 10, 14, 8});
    connect(text_, &MessageOverFacts::placed, this, &CommitHeader::alignToLines);
    area_->setWidget(text_);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area_);

    connect(parents_, &QLabel::linkActivated, this, [this](const QString& link) { goTo(link.toStdString()); });
    connect(message_, &MessageText::commitRequested, this, [this](const QString& name) {
        clickedIn_ = shown_.hash;
        names_.askAgain(name.toStdString());
    });
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

void CommitHeader::showDetail(const gitkit::CommitDetail& detail) { take(detail); }

void CommitHeader::take(const gitkit::CommitDetail& detail)
{
    if (detail.hash != shown_.hash) {
        area_->verticalScrollBar()->setValue(0);
        notice_->hide();
    }
    shown_ = commitFacts::withoutFiles(detail);
    message_->setMessage(MessageParts::of(shown_.message));
    if (kind_ == CommitKind::ordinary)
        facts_->setPerson(shownText(shown_.authorName), shown_.authorEmail);
    showFacts();
    showRefs();
    updateGeometry();
}

void CommitHeader::showFacts()
{
    if (shown_.hash.empty())
        return;
    fill(people_, kind_ == CommitKind::stash ? commitFacts::dateLine(shown_) : commitFacts::people(shown_));
    fill(parents_, kind_ == CommitKind::stash ? commitFacts::stashBase(shown_) : commitFacts::parents(shown_));
    hash_->setHash(shownText(shown_.hash));
}

void CommitHeader::showRefs()
{
    if (kind_ == CommitKind::stash || shown_.hash.empty())
        return;
    const std::optional<gitkit::Commit> commit = commitOnPage(shown_.hash);
    refs_->setLabels(commit ? commit->refs
                            : commitFacts::labelsOf(shown_.hash, {store_.snapshot().branches.value(),
                                                                  store_.snapshot().remoteBranches.value(),
                                                                  store_.snapshot().tags.value()}));
}

void CommitHeader::say(const QString& sentence)
{
    fill(notice_, sentence);
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

QSize CommitHeader::sizeHint() const
{
    const QWidget* const text = area_->widget();
    const int width = std::max(area_->viewport()->width(), text->minimumSizeHint().width());
    const int height =
        text->layout()->hasHeightForWidth() ? text->layout()->totalHeightForWidth(width) : text->sizeHint().height();
    return {320, height};
}

void CommitHeader::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    alignToLines();
}

/// Leaves the room below the last whole line blank.
void CommitHeader::alignToLines()
{
    const int cut = height() - text_->heightOfWholeLines(height());
    layout()->setContentsMargins(0, 0, 0, std::clamp(cut, 0, height() / 2));
    area_->verticalScrollBar()->setSingleStep(message_->fontMetrics().lineSpacing() * 5 / 4);
}

void CommitHeader::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the facts contains the name of the fixed font and a colour.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        showFacts();
}

} // namespace plovik

#include "moc_CommitHeader.cpp"
