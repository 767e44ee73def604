// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/TrustBar.h"

#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

/// So many programs are listed: a text without end is laid out without end.
constexpr std::size_t mostListed = 40;
/// The list scrolls beyond this height in pixels.
constexpr int highestList = 96;

} // namespace

TrustBar::TrustBar(RepositoryStore& store, QWidget* parent)
    : WarningBar(parent), store_(store), sentence_(new QLabel(this)), list_(new QLabel), place_(new QScrollArea(this))
{
    setAccessibleName(tr("Programs of This Repository"));
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setText(tr("The configuration of this repository names programs that git would run. They are kept off, "
                          "and files may look changed that are not."));
    list_->setAccessibleName(tr("Programs"));
    list_->setWordWrap(true);
    list_->setTextFormat(Qt::PlainText);
    list_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QPushButton* const keepOff = makeButton(tr("Keep It Off"));
    QPushButton* const trust = makeButton(tr("Trust This Repository"));
    connect(keepOff, &QPushButton::clicked, this, [this] { store_.trust().keepOff(); });
    connect(trust, &QPushButton::clicked, this, [this] { store_.trust().trust(shown_); });
    for (QLabel* label : {sentence_, list_})
        followColor(*label, QPalette::WindowText, &Theme::warningText);
    layOut(keepOff, trust);
    const auto show = [this] { showPrograms(); };
    notifiers_.push_back(store.trust().keptOff.addNotifier(show));
    notifiers_.push_back(store.trust().isAsking.addNotifier(show));
    showPrograms();
}

QPushButton* TrustBar::makeButton(const QString& title)
{
    auto* const button = new QPushButton(title, this);
    button->setAccessibleName(title);
    button->setProperty("compact", true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void TrustBar::layOut(QPushButton* keepOff, QPushButton* trust)
{
    place_->setFrameShape(QFrame::NoFrame);
    place_->setWidgetResizable(true);
    place_->setWidget(list_);
    place_->viewport()->setAutoFillBackground(false);
    list_->setAutoFillBackground(false);
    list_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(3);
    texts->addWidget(sentence_);
    texts->addWidget(place_);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 7);
    row->setSpacing(8);
    row->addLayout(texts, 1);
    row->addWidget(keepOff, 0, Qt::AlignTop);
    row->addWidget(trust, 0, Qt::AlignTop);
}

void TrustBar::showPrograms()
{
    if (store_.trust().isAsking.value()) {
        shown_ = store_.trust().keptOff.value();
        list_->setText(Trust::listOf(shown_, mostListed));
        list_->setAccessibleDescription(list_->text());
        setAccessibleDescription(sentence_->text() + u'\n' + list_->text());
        fitList();
    }
    setVisible(store_.trust().isAsking.value());
}

void TrustBar::fitList()
{
    const int width = std::max(place_->width(), list_->minimumSizeHint().width());
    const int bar = width > place_->width() ? place_->horizontalScrollBar()->sizeHint().height() : 0;
    place_->setFixedHeight(std::clamp(list_->heightForWidth(width) + bar, 0, highestList));
}

void TrustBar::resizeEvent(QResizeEvent* event)
{
    WarningBar::resizeEvent(event);
    fitList();
}

} // namespace plovik

#include "moc_TrustBar.cpp"
