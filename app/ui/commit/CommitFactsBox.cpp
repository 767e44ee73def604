// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFactsBox.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFacts.h"
#include "app/ui/commit/CommitRefs.h"
#include "app/ui/commit/HashField.h"
#include "app/ui/widgets/Initials.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int betweenFacts = 4;
constexpr int betweenInRow = 12;
constexpr int leastRefsWidth = 90;
constexpr int belowRefs = 6;
constexpr int circleBesideLines = 30;
constexpr int circleBesideLine = 20;

QLabel* makeFact(Qt::TextFormat format, Qt::TextInteractionFlags interaction = Qt::NoTextInteraction)
{
    auto* const label = new QLabel;
    label->setTextFormat(format);
    label->setTextInteractionFlags(interaction);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->hide();
    return label;
}

/// A label knows the height for a width also while it does not wrap.
int heightAt(int width, const QWidget& fact)
{
    return qobject_cast<const QLabel*>(&fact) ? fact.heightForWidth(width) : fact.sizeHint().height();
}

void append(int& height, int added) { height += added + (height > 0 ? betweenFacts : 0); }

} // namespace

CommitFactsBox::CommitFactsBox(gitkit::CommitKind kind, QWidget* parent)
    : QWidget(parent), kind_(kind), people_(makeFact(Qt::RichText, Qt::TextSelectableByMouse)),
      brief_(makeFact(Qt::RichText, Qt::TextSelectableByMouse)), row_(new QBoxLayout(QBoxLayout::TopToBottom)),
      hash_(new HashField), parents_(makeFact(Qt::RichText, Qt::TextBrowserInteraction)), refs_(new CommitRefs),
      signature_(makeFact(Qt::PlainText, Qt::TextSelectableByMouse)), notice_(makeFact(Qt::PlainText))
{
    for (QLabel* const label : {people_, brief_})
        label->setAccessibleName(tr("Commit Author"));
    parents_->setAccessibleName(tr("Commit Parents"));
    signature_->setAccessibleName(tr("Commit Signature"));
    hash_->setVisible(kind == gitkit::CommitKind::ordinary);
    notice_->setContentsMargins(0, 6, 0, 0);
    row_->addWidget(hash_);
    row_->addWidget(parents_);
    row_->addWidget(refs_);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(betweenFacts);
    rows->addWidget(people_);
    rows->addWidget(brief_);
    rows->addLayout(row_);
    rows->addWidget(signature_);
    rows->addWidget(notice_);
    connect(parents_, &QLabel::linkActivated, this, &CommitFactsBox::commitRequested);
    arrange();
}

void CommitFactsBox::setFacts(const gitkit::CommitDetail& commit)
{
    const bool isStash = kind_ == gitkit::CommitKind::stash;
    initials_ = isStash || commit.authorName.empty() ? QString() : initialsOf(shownText(commit.authorName));
    mail_ = commit.authorEmail;
    people_->setText(isStash ? commitFacts::dateLine(commit) : commitFacts::people(commit));
    brief_->setText(isStash ? commitFacts::dateLine(commit) : commitFacts::peopleInBrief(commit));
    const QString whole = isStash ? QString() : commitFacts::peopleLines(commit).join(u'\n');
    brief_->setToolTip(plainToolTip(whole));
    brief_->setAccessibleDescription(whole);
    parents_->setText(isStash ? commitFacts::stashBase(commit) : commitFacts::parents(commit));
    parents_->setWordWrap(false);
    parentsWidth_ = parents_->sizeHint().width();
    hash_->setHash(shownText(commit.hash));
    arrange();
    update();
}

void CommitFactsBox::setLabels(const std::vector<gitkit::RefLabel>& labels)
{
    refs_->setLabels(labels);
    arrange();
}

void CommitFactsBox::setSignature(const gitkit::Signature& signature)
{
    const bool isBad = signature.state == gitkit::Signature::State::bad;
    const QString sentence = commitFacts::signature(signature);
    signature_->setText(sentence);
    signature_->setVisible(!sentence.isEmpty());
    // The seal of the row says it, too, and the words do.
    followColor(*signature_, QPalette::PlaceholderText, isBad ? &Theme::statusDeleted : &Theme::secondaryText);
}

void CommitFactsBox::say(const QString& sentence)
{
    notice_->setText(sentence);
    notice_->setVisible(!sentence.isEmpty());
}

bool CommitFactsBox::setForm(Form form)
{
    if (form == form_)
        return false;
    form_ = form;
    arrange();
    update();
    return true;
}

/// Returns what stands below the people and is shown.
std::vector<QWidget*> CommitFactsBox::rest() const
{
    std::vector<QWidget*> shown;
    for (QWidget* const fact :
         {static_cast<QWidget*>(hash_), static_cast<QWidget*>(parents_), static_cast<QWidget*>(refs_)})
    {
        if (!fact->isHidden())
            shown.push_back(fact);
    }
    return shown;
}

bool CommitFactsBox::fitsInOneRow(int width) const
{
    const int hash = hash_->isHidden() ? 0 : hash_->briefWidth() + betweenInRow;
    const int parents = parents_->text().isEmpty() ? 0 : parentsWidth_;
    const int refs = refs_->labels().empty() ? 0 : leastRefsWidth + betweenInRow;
    return hash + parents + refs <= width;
}

void CommitFactsBox::arrange()
{
    const bool isBrief = form_ == Form::brief;
    const bool isOneRow = isBrief && fitsInOneRow(width());
    people_->setVisible(!isBrief && !people_->text().isEmpty());
    brief_->setVisible(isBrief && !brief_->text().isEmpty());
    parents_->setVisible(!parents_->text().isEmpty());
    if (parents_->wordWrap() == isOneRow)
        parents_->setWordWrap(!isOneRow);
    parents_->setSizePolicy(isOneRow ? QSizePolicy::Minimum : QSizePolicy::Preferred, QSizePolicy::Preferred);
    hash_->setBrief(isOneRow);
    refs_->setContentsMargins(0, 0, 0, isOneRow ? 0 : belowRefs);
    row_->setDirection(isOneRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    if (const int spacing = isOneRow ? betweenInRow : betweenFacts; row_->spacing() != spacing)
        row_->setSpacing(spacing);
    for (const Form form : {Form::full, Form::brief}) {
        const int room = kind_ == gitkit::CommitKind::ordinary ? circleSize(form) + 9 : 0;
        people(form)->setContentsMargins(isRightToLeft() ? 0 : room, 0, isRightToLeft() ? room : 0, 0);
    }
}

int CommitFactsBox::circleSize(Form form) const
{
    const double line = fontMetrics().lineSpacing() * commitFacts::lineHeight;
    return form == Form::full ? circleBesideLines : std::min(circleBesideLine, qRound(line));
}

/// Does not depend on the form that is shown.
int CommitFactsBox::heightIn(Form form, int width) const
{
    int height = 0;
    if (const QLabel* const label = people(form); !label->text().isEmpty())
        append(height, heightAt(width, *label));
    const bool isOneRow = form == Form::brief && fitsInOneRow(width);
    int highest = 0;
    for (const QWidget* const fact : rest()) {
        const int below = fact != refs_ ? 0 : (isOneRow ? 0 : belowRefs) - refs_->contentsMargins().bottom();
        const int wanted = heightAt(width, *fact) + below;
        highest = std::max(highest, wanted);
        if (!isOneRow)
            append(height, wanted);
    }
    if (isOneRow)
        append(height, highest);
    for (const QLabel* const below : {signature_, notice_}) {
        if (!below->isHidden())
            append(height, heightAt(width, *below));
    }
    return height;
}

std::vector<QRect> CommitFactsBox::lines() const
{
    std::vector<QRect> lines;
    if (const QLabel* const label = people(form_); !label->isHidden()) {
        const QRect area = label->geometry();
        const double height = label->fontMetrics().lineSpacing() * commitFacts::lineHeight;
        const int count = std::max(1, qRound(area.height() / height));
        // The initials stand beside the first two lines.
        const int first = form_ == Form::full ? std::min(count, 2) : 1;
        for (int line = 0; line < count; line = line == 0 ? first : line + 1) {
            const int end = line == 0 ? first : line + 1;
            lines.emplace_back(QPoint(area.left(), area.top() + area.height() * line / count),
                               QPoint(area.right(), area.top() + area.height() * end / count - 1));
        }
    }
    for (const QWidget* const fact : rest())
        lines.push_back(fact->geometry());
    for (const QLabel* const below : {signature_, notice_}) {
        if (!below->isHidden())
            lines.push_back(below->geometry());
    }
    return lines;
}

void CommitFactsBox::paintEvent(QPaintEvent*)
{
    if (initials_.isEmpty() || people(form_)->isHidden())
        return;
    const int size = circleSize(form_);
    QPainter painter(this);
    paintInitials(painter, QRectF(isRightToLeft() ? width() - size : 0, form_ == Form::full ? 2 : 0, size, size),
                  initials_, mail_);
}

void CommitFactsBox::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void CommitFactsBox::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        arrange();
}

} // namespace plovik

#include "moc_CommitFactsBox.cpp"
