#include "app/views/commit/CommitHeader.h"

#include "app/store/ShownText.h"
#include "app/views/EmptyState.h"
#include "app/views/Theme.h"
#include "app/views/commit/MessageText.h"
#include "app/views/history/RelativeDate.h"

#include <QLabel>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int keptMessages = 100;

struct Message {
    QString subject, body;
};

/// Git's idea of a subject: the first paragraph, its lines joined.
Message split(const QString& message)
{
    const qsizetype end = message.indexOf(u"\n\n"_s);
    QString subject = end < 0 ? message : message.left(end);
    subject.replace(u'\n', u' ');
    return {subject.trimmed(), end < 0 ? QString() : message.mid(end + 2).trimmed()};
}

QString inFixedFont(const QString& html)
{
    const QFont fixed = Theme::fixedFont(-0.75);
    return u"<span style='font-family:\"%1\"; font-size:%2pt'>%3</span>"_s.arg(fixed.family())
        .arg(fixed.pointSizeF())
        .arg(html);
}

QString linkTo(const std::string& hash)
{
    return u"<a style='text-decoration:none' href='%1'>%2</a>"_s.arg(shownText(hash),
                                                                     shownText(gitkit::shortHash(hash)));
}

QString factsAbout(const gitkit::Commit& commit)
{
    QStringList lines;
    lines << (shownText(commit.authorName) + u" <"_s + shownText(commit.authorEmail) + u'>').toHtmlEscaped();
    lines << absoluteDate(commit.date, QLocale()).toHtmlEscaped();
    lines << inFixedFont(shownText(commit.hash));
    if (!commit.parents.empty()) {
        QStringList links;
        for (const std::string& parent : commit.parents)
            links << linkTo(parent);
        lines << (commit.parents.size() == 1 ? u"Parent "_s : u"Parents "_s) + inFixedFont(links.join(u' '));
    }
    return u"<div style='line-height:130%'>%1</div>"_s.arg(lines.join(u"<br>"_s));
}

} // namespace

CommitHeader::CommitHeader(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), messages_(keptMessages), pages_(new QStackedLayout(this)), area_(new QScrollArea),
      message_(new MessageText), facts_(new QLabel), notice_(new QLabel)
{
    facts_->setTextFormat(Qt::RichText);
    facts_->setTextInteractionFlags(Qt::TextBrowserInteraction);
    facts_->setWordWrap(true);
    notice_->setTextFormat(Qt::PlainText);
    notice_->setWordWrap(true);
    notice_->hide();

    auto* text = new QWidget;
    auto* column = new QVBoxLayout(text);
    column->setContentsMargins(14, 14, 14, 14);
    column->setSpacing(12);
    column->addWidget(message_);
    column->addWidget(facts_);
    column->addWidget(notice_);
    column->addStretch(1);
    text->setBackgroundRole(QPalette::Base);
    text->setAutoFillBackground(true);
    area_->setWidget(text);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);

    auto* none = new EmptyState;
    none->setText(u"No Commit Selected"_s, u"Select a commit to read its message."_s);
    pages_->addWidget(none);
    pages_->addWidget(area_);

    connect(facts_, &QLabel::linkActivated, this, &CommitHeader::followParent);
    notifiers_.push_back(store_.selectedCommit.addNotifier([this] { showCommit(); }));
    notifiers_.push_back(store_.history.addNotifier([this] {
        if (!shown_.empty() && !isOnPage_)
            showFacts();
    }));
    applyTheme();
    showCommit();
}

const gitkit::Commit* CommitHeader::commitOnPage(const std::string& hash) const
{
    const auto& rows = store_.history.value();
    const auto found = std::ranges::find(rows, hash, &HistoryRow::id);
    return found == rows.end() ? nullptr : &found->commit;
}

void CommitHeader::showCommit()
{
    const std::string hash = store_.selectedCommit.value().value_or(std::string());
    if (hash == shown_)
        return;
    shown_ = hash;
    notice_->hide();
    pages_->setCurrentIndex(hash.empty() ? 0 : 1);
    if (hash.empty())
        return;

    area_->verticalScrollBar()->setValue(0);
    if (const std::string* known = messages_.object(hash)) {
        showMessage(*known);
    } else {
        const gitkit::Commit* commit = commitOnPage(hash);
        message_->setMessage(commit ? shownText(commit->subject) : QString(), {});
        wanted_ = hash;
        if (!isReading_) {
            isReading_ = true;
            launch(readMessages(this));
        }
    }
    showFacts();
}

void CommitHeader::showFacts()
{
    const gitkit::Commit* commit = commitOnPage(shown_);
    isOnPage_ = commit != nullptr;
    facts_->setText(commit ? factsAbout(*commit) : inFixedFont(shownText(shown_).toHtmlEscaped()));
}

void CommitHeader::showMessage(const std::string& message)
{
    const Message parts = split(shownText(message));
    message_->setMessage(parts.subject, parts.body);
}

QCoro::Task<> CommitHeader::readMessages(QPointer<CommitHeader> header)
{
    while (!header->wanted_.empty()) {
        const std::string hash = std::exchange(header->wanted_, {});
        std::string message;
        QString problem;
        try {
            message = co_await header->store_.run(&gitkit::GitRepository::commitMessage, hash);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        if (!header)
            co_return; // the view closed meanwhile
        if (problem.isEmpty()) {
            header->takeMessage(hash, message);
        } else if (hash == header->shown_) {
            header->notice_->setText(u"The whole message could not be read. "_s + problem);
            header->notice_->show();
        }
    }
    header->isReading_ = false;
}

void CommitHeader::takeMessage(const std::string& hash, const std::string& message)
{
    if (hash == shown_)
        showMessage(message);
    messages_.insert(hash, new std::string(message));
}

void CommitHeader::followParent(const QString& link)
{
    const std::string hash = link.toStdString();
    if (commitOnPage(hash)) {
        store_.selectedCommit = hash;
        return;
    }
    const QString hint =
        store_.hasMoreHistory.value() ? u" Scrolling to the end of the list loads older ones."_s : QString();
    notice_->setText(u"%1 is not among the commits shown."_s.arg(shownText(gitkit::shortHash(hash))) + hint);
    notice_->show();
}

void CommitHeader::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        applyTheme();
        if (!shown_.empty())
            showFacts();
    }
}

void CommitHeader::applyTheme()
{
    QPalette quiet;
    // On a base-coloured parent a label writes in the text colour.
    for (const auto role : {QPalette::WindowText, QPalette::Text})
        quiet.setColor(role, Theme::current().secondaryText);
    facts_->setPalette(quiet);
    notice_->setPalette(quiet);
}

} // namespace plovik
