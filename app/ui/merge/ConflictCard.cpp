// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/ConflictCard.h"

#include "app/store/ConflictWords.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::Conflict;
using gitkit::ConflictAnswer;
using gitkit::ConflictKind;
using gitkit::ConflictVersion;

constexpr int cardMargin = 24;
constexpr int leastPictureRoom = 160;
constexpr int mostPictureRoom = 480;

/// Returns a phrase as a sentence.
QString sentence(QString phrase)
{
    if (!phrase.isEmpty())
        phrase.replace(0, 1, phrase.at(0).toUpper());
    return phrase + u'.';
}

/// Says why the lines of both sides are not merged here; empty where that is plain.
QString whyNoLines(const Conflict& conflict)
{
    switch (conflict.kind) {
    case ConflictKind::binary:
        return ConflictCard::tr("The file is no text, so one of both versions stays.");
    case ConflictKind::link:
    case ConflictKind::fileAndLink:
        return ConflictCard::tr("A link leads to one place only.");
    case ConflictKind::submodule:
        return ConflictCard::tr("One commit of the other repository is recorded.");
    case ConflictKind::sameName:
        return ConflictCard::tr("They have nothing to do with each other.");
    case ConflictKind::renamedBoth:
        return conflict.left && conflict.right
                   ? ConflictCard::tr("Choose its name. The changes of both sides are kept where they fit.")
                   : QString();
    case ConflictKind::folderAndFile:
        return ConflictCard::tr("A name is either a file or a folder. Until this is decided the file is called %1.")
            .arg(inQuotes(conflict.path));
    default:
        return {};
    }
}

/// Whether a side has neither a file nor a folder.
QString missing(const Conflict& conflict)
{
    switch (conflict.kind) {
    case ConflictKind::folderAndFile:
        return ConflictCard::tr("A folder");
    case ConflictKind::folderRenamed:
        return ConflictCard::tr("The folder was renamed, so the file would be %1").arg(inQuotes(conflict.path));
    default:
        return ConflictCard::tr("No file");
    }
}

QString submoduleText(const gitkit::SubmoduleSides::Side& side)
{
    const QLocale locale;
    QStringList lines{shownText(side.hash.substr(0, 7)) + u' ' + shownText(side.subject),
                      absoluteDate(side.date, locale)};
    lines.append(ConflictCard::tr("%Ln commit(s) that the other side has not", nullptr, side.ahead));
    return lines.join(u'\n');
}

QString modeText(const ConflictVersion& version)
{
    return version.isExecutable() ? ConflictCard::tr("Executable") : ConflictCard::tr("Not executable");
}

PictureSide pictureOf(const std::optional<std::string>& bytes, std::uint64_t size)
{
    PictureSide side{size, {}};
    if (bytes)
        side.picture = readPicture(*bytes);
    else
        side.picture.problem = ConflictCard::tr("This picture could not be read.");
    return side;
}

} // namespace

ConflictCard::ConflictCard(RepositoryStore& store, QWidget* parent)
    : QScrollArea(parent), store_(store),
      reading_(store.git(), &readConflictFacts, &ConflictCard::digest, [this] { showFacts(); }), card_(new QWidget),
      column_(new QVBoxLayout(card_)), path_(new QLabel(card_)), happened_(new QLabel(card_)), note_(new QLabel(card_)),
      leftTitle_(new QLabel(card_)), left_(new QLabel(card_)), rightTitle_(new QLabel(card_)), right_(new QLabel(card_))
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setAccessibleName(tr("Conflict"));
    card_->setAutoFillBackground(true);
    card_->setBackgroundRole(QPalette::Base);
    for (QLabel* label : {path_, happened_, note_, leftTitle_, left_, rightTitle_, right_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    followFont(*path_, 2, QFont::DemiBold);
    followFont(*leftTitle_, 0, QFont::DemiBold);
    followFont(*rightTitle_, 0, QFont::DemiBold);
    followColor(*note_, QPalette::WindowText, &Theme::secondaryText);
    auto* sides = new QGridLayout;
    sides->setHorizontalSpacing(cardMargin);
    sides->setColumnStretch(0, 1);
    sides->setColumnStretch(1, 1);
    sides->addWidget(leftTitle_, 0, 0, Qt::AlignTop);
    sides->addWidget(rightTitle_, 0, 1, Qt::AlignTop);
    sides->addWidget(left_, 1, 0, Qt::AlignTop);
    sides->addWidget(right_, 1, 1, Qt::AlignTop);
    column_->setContentsMargins(cardMargin, cardMargin, cardMargin, cardMargin);
    column_->setSpacing(8);
    column_->addWidget(path_);
    column_->addWidget(happened_);
    column_->addWidget(note_);
    column_->addSpacing(8);
    column_->addLayout(sides);
    column_->addStretch(1);
    setWidget(card_);
    const std::pair<Qt::Key, ConflictAnswer> keys[] = {
        {Qt::Key_1, ConflictAnswer::left}, {Qt::Key_2, ConflictAnswer::right}, {Qt::Key_3, ConflictAnswer::both}};
    for (const auto& [key, answer] : keys) {
        auto* shortcut = new QShortcut(Qt::ALT | key, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, answer = answer] { this->answer(answer); });
    }
    notifiers_.push_back(store_.window().selectedPaths.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.conflicts().list.addNotifier([this] { follow(); }));
    follow();
}

ConflictCard::Facts ConflictCard::digest(ConflictFacts read, const Conflict& conflict)
{
    Facts facts{std::move(read), {}};
    const std::optional<ConflictVersion>& version = conflict.left ? conflict.left : conflict.right;
    if (!version || version->isLink() || version->isSubmodule() ||
        !(isPictureName(version->path) || isPictureName(conflict.path)))
        return facts;
    PicturePair pair;
    if (conflict.left)
        pair.before = pictureOf(facts.read.left, facts.read.leftSize.value_or(0));
    if (conflict.right)
        pair.after = pictureOf(facts.read.right, facts.read.rightSize.value_or(0));
    facts.pictures = std::move(pair);
    return facts;
}

/// Returns the conflict of the selected file, if its lines are not merged.
const Conflict* ConflictCard::conflict() const
{
    const std::set<std::string>& paths = store_.window().selectedPaths.value();
    if (paths.empty())
        return nullptr;
    // All names of one file are one conflict.
    const Conflict* const found = store_.conflicts().find(*paths.begin());
    if (!found || (found->isText() && !found->isBinary))
        return nullptr;
    const auto isOther = [&](const std::string& path) { return store_.conflicts().find(path) != found; };
    return std::ranges::any_of(paths, isOther) ? nullptr : found;
}

void ConflictCard::follow()
{
    const Conflict* const now = conflict();
    const gitkit::ConflictNames& names = store_.conflicts().list.value().names;
    if (!now) {
        reading_.forget();
        if (std::exchange(shown_, std::nullopt))
            Q_EMIT filledChanged();
        return;
    }
    if (shown_ == *now && names_ == names) {
        for (QPushButton* button : buttons_)
            button->setEnabled(true); // an answer was refused
        return;
    }
    const bool wasFilled = isFilled();
    shown_ = *now;
    names_ = names;
    reading_.forget();
    fill();
    reading_.ask(*now);
    if (!wasFilled)
        Q_EMIT filledChanged();
}

void ConflictCard::fill()
{
    path_->setText(shownText(shown_->path));
    happened_->setText(sentence(conflictWords::happened(*shown_, names_)));
    const QString why = whyNoLines(*shown_);
    note_->setText(why);
    note_->setVisible(!why.isEmpty());
    leftTitle_->setText(conflictWords::title(names_.left));
    rightTitle_->setText(conflictWords::title(names_.right));
    setAccessibleDescription(path_->text() + u". "_s + happened_->text());
    makeButtons();
    showSide(*left_, true, nullptr);
    showSide(*right_, false, nullptr);
    showPictures(nullptr);
}

void ConflictCard::makeButtons()
{
    const bool hadFocus = buttonRow_ && buttonRow_->isAncestorOf(focusWidget());
    delete buttonRow_;
    buttons_.clear();
    buttonRow_ = new QWidget(card_);
    auto* row = new QHBoxLayout(buttonRow_);
    row->setContentsMargins(0, cardMargin / 2, 0, 0);
    answers_ = gitkit::answersTo(*shown_);
    for (const ConflictAnswer answer : answers_) {
        const QString title = conflictWords::answerTitle(*shown_, names_, answer);
        auto* button = new QPushButton(plainMenuText(title), buttonRow_);
        button->setAccessibleName(title);
        button->setToolTip(plainToolTip(conflictWords::answerTip(*shown_, answer)));
        connect(button, &QPushButton::clicked, this, [this, answer] { this->answer(answer); });
        row->addWidget(button);
        buttons_.push_back(button);
    }
    row->addStretch();
    column_->insertWidget(column_->count() - 1, buttonRow_);
    setFocusProxy(buttons_.empty() ? nullptr : buttons_.front());
    if (hadFocus && !buttons_.empty())
        buttons_.front()->setFocus(Qt::OtherFocusReason);
}

void ConflictCard::answer(ConflictAnswer answer)
{
    const auto place = std::ranges::find(answers_, answer);
    if (!shown_ || place == answers_.end() ||
        !buttons_[static_cast<std::size_t>(place - answers_.begin())]->isEnabled())
        return;
    for (QPushButton* button : buttons_)
        button->setEnabled(false);
    store_.conflicts().answer({*shown_}, answer);
}

void ConflictCard::showFacts()
{
    if (!shown_ || reading_.failure() || reading_.answered() != shown_)
        return;
    const Facts& facts = *reading_.result();
    showSide(*left_, true, &facts);
    showSide(*right_, false, &facts);
    showPictures(&facts);
}

/// Shows what a side has; without facts, what is known without reading.
void ConflictCard::showSide(QLabel& label, bool isLeft, const Facts* facts) const
{
    const std::optional<ConflictVersion>& version = isLeft ? shown_->left : shown_->right;
    if (!version) {
        label.setText(missing(*shown_));
        return;
    }
    QStringList lines;
    if (version->path != shown_->path)
        lines.append(shownText(version->path));
    if (shown_->kind == ConflictKind::mode)
        lines.append(modeText(*version));
    const bool isCommit = version->isSubmodule();
    if (isCommit && facts && facts->read.submodule)
        lines.append(submoduleText(isLeft ? facts->read.submodule->left : facts->read.submodule->right));
    else if (isCommit)
        lines.append(tr("Commit %1").arg(shownText(version->hash.substr(0, 7))));
    const std::optional<std::string> bytes = !facts ? std::nullopt : isLeft ? facts->read.left : facts->read.right;
    const auto size = !facts ? std::nullopt : isLeft ? facts->read.leftSize : facts->read.rightSize;
    if (version->isLink() && bytes)
        lines.append(tr("Leads to %1").arg(inQuotes(*bytes)));
    else if (!isCommit && !version->isLink() && size && !(facts && facts->pictures))
        lines.append(shownSize(*size));
    label.setText(lines.join(u'\n'));
}

void ConflictCard::showPictures(const Facts* facts)
{
    delete std::exchange(pictures_, nullptr);
    if (!facts || !facts->pictures)
        return;
    PicturePair pair = *facts->pictures;
    pair.conflict = {conflictWords::title(names_.left), conflictWords::title(names_.right)};
    pictures_ = new ImagePane(std::move(pair), card_);
    pictures_->setRoom(std::clamp(height() / 2, leastPictureRoom, mostPictureRoom));
    column_->insertWidget(column_->indexOf(buttonRow_), pictures_);
}

void ConflictCard::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    if (pictures_ && pictures_->setRoom(std::clamp(height() / 2, leastPictureRoom, mostPictureRoom)))
        pictures_->updateGeometry();
}

} // namespace plovik

#include "moc_ConflictCard.cpp"
