// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/merge/MergeColumns.h"
#include "app/ui/merge/MergeEditor.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"
#include "app/ui/widgets/WarningBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

namespace plovik {

namespace {

using Choice = gitkit::MergeChoice;

constexpr double leastColumns = 120;
/// Where the file's name has less room, the buttons stand below it.
constexpr int leastTitle = 140;
constexpr double leastResult = 90;
constexpr std::chrono::milliseconds settlingTime{400};

} // namespace

MergeView::MergeView(QWidget* parent)
    : QWidget(parent), columns_(new MergeColumns), editor_(new MergeEditor), settling_(new QTimer(this))
{
    auto* split = new SplitPane(settings::mergeResultHeight, Qt::Vertical, SplitPane::Sized::second, leastResult,
                                leastColumns, columns_, makeResultPane(), this);
    split->setAutomatic([](double available) { return available * 0.45; });
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHead());
    column->addWidget(makeNote());
    column->addWidget(split, 1);
    setFocusProxy(columns_);
    settling_->setSingleShot(true);
    settling_->setInterval(settlingTime);
    connect(settling_, &QTimer::timeout, this, &MergeView::resultSettled);
    connect(columns_, &MergeColumns::chosen, this, [this](std::size_t segment, Choice choice) {
        columns_->setCurrent(segment);
        editor_->choose(segment, choice);
    });
    connect(columns_, &MergeColumns::currentChanged, this, [this] {
        if (const auto current = columns_->current())
            editor_->reveal(*current);
    });
    connect(columns_, &MergeColumns::scrolled, this, [this] { follow(true); });
    connect(editor_, &MergeEditor::scrolled, this, [this] { follow(false); });
    connect(editor_, &MergeEditor::resultChanged, this, &MergeView::resultChanged);
    makeKeys();
}

MergeView::~MergeView() = default;

QWidget* MergeView::makeHead()
{
    auto* head = new QWidget(this);
    head->setAutoFillBackground(true);
    followColor(*head, QPalette::Window, &Theme::bars);
    title_ = new ElidedLabel(head);
    followFont(*title_, 0, QFont::DemiBold);
    count_ = new QLabel(head);
    count_->setTextFormat(Qt::PlainText);
    count_->setAccessibleName(tr("Conflicts Left"));
    auto* previous =
        new IconButton(Icon::previous, tr("Previous Conflict"), head, QKeySequence(Qt::SHIFT | Qt::Key_F8).toString());
    auto* next = new IconButton(Icon::next, tr("Next Conflict"), head, QKeySequence(Qt::Key_F8).toString());
    base_ = new QPushButton(tr("Base"), head);
    base_->setCheckable(true);
    base_->setToolTip(tr("Show the version that both sides come from (Alt+B)"));
    startOver_ = new QPushButton(tr("Start Over"), head);
    startOver_->setToolTip(tr("Bring back all conflicts of this file. What you have written stays in the timeline."));
    resolve_ = new QPushButton(tr("Mark Resolved"), head);
    resolve_->setDefault(true);
    resolve_->setToolTip(tr("Write the result and stage it (Ctrl+Return)"));
    auto* words = new QHBoxLayout;
    words->setSpacing(8);
    words->addWidget(title_, 1);
    words->addWidget(count_);
    words->addWidget(previous);
    words->addWidget(next);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    buttons->addStretch();
    more_ = new QPushButton(QStringLiteral("…"), head);
    more_->setAccessibleName(tr("More"));
    more_->setToolTip(tr("More"));
    auto* menu = new QMenu(more_);
    more_->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        QAction* const base = menu->addAction(base_->text(), base_, &QPushButton::toggle);
        base->setCheckable(true);
        base->setChecked(base_->isChecked());
        base->setEnabled(base_->isEnabled());
        menu->addAction(startOver_->text(), this, &MergeView::startOverRequested)->setEnabled(startOver_->isEnabled());
    });
    for (QPushButton* button : {base_, startOver_, more_, resolve_}) {
        followFont(*button, -1);
        buttons->addWidget(button);
    }
    head_ = new QBoxLayout(QBoxLayout::LeftToRight, head);
    head_->setContentsMargins(12, 5, 8, 5);
    head_->setSpacing(6);
    head_->addLayout(words, 1);
    head_->addLayout(buttons);
    connect(previous, &QAbstractButton::clicked, this, &MergeView::previousConflict);
    connect(next, &QAbstractButton::clicked, this, &MergeView::nextConflict);
    connect(base_, &QPushButton::toggled, columns_, &MergeColumns::setBaseShown);
    connect(startOver_, &QPushButton::clicked, this, &MergeView::startOverRequested);
    connect(resolve_, &QPushButton::clicked, this, &MergeView::resolveRequested);
    return head;
}

QWidget* MergeView::makeResultPane()
{
    auto* pane = new QWidget;
    pane->setAutoFillBackground(true);
    followColor(*pane, QPalette::Window, &Theme::bars);
    auto* title = new QLabel(tr("Result"), pane);
    title->setTextFormat(Qt::PlainText);
    title->setContentsMargins(10, 4, 10, 4);
    followFont(*title, -1, QFont::DemiBold);
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(title);
    column->addWidget(editor_, 1);
    return pane;
}

QWidget* MergeView::makeNote()
{
    note_ = new WarningBar(this);
    noteText_ = new QLabel(note_);
    noteText_->setTextFormat(Qt::PlainText);
    noteText_->setWordWrap(true);
    noteAction_ = new QPushButton(note_);
    auto* row = new QHBoxLayout(note_);
    row->setContentsMargins(12, 4, 8, 4);
    row->addWidget(noteText_, 1);
    row->addWidget(noteAction_);
    note_->hide();
    connect(noteAction_, &QPushButton::clicked, this,
            [this] { content_.isRemembered ? Q_EMIT forgetRequested() : Q_EMIT withoutLineEndsRequested(); });
    return note_;
}

void MergeView::makeKeys()
{
    const auto add = [this](const QKeySequence& keys, auto&& run) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, run);
    };
    add(Qt::Key_F8, [this] { walk(1); });
    add(Qt::SHIFT | Qt::Key_F8, [this] { walk(-1); });
    add(Qt::ALT | Qt::Key_1, [this] { choose(Choice::left); });
    add(Qt::ALT | Qt::Key_2, [this] { choose(Choice::right); });
    add(Qt::ALT | Qt::Key_3, [this] { choose(Choice::leftThenRight); });
    add(Qt::ALT | Qt::SHIFT | Qt::Key_3, [this] { choose(Choice::rightThenLeft); });
    add(Qt::ALT | Qt::Key_0, [this] { choose(Choice::none); });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        add(Qt::CTRL | key, [this] {
            if (resolve_->isEnabled())
                Q_EMIT resolveRequested();
        });
}

void MergeView::setContent(MergeContent content)
{
    const bool isSameFile = content_.path == content.path;
    content_ = std::move(content);
    editor_->setResult(nullptr);
    columns_->setResult(nullptr, {});
    result_ = std::make_unique<MergeResult>(content_.sides, content_.starts);
    columns_->setResult(result_.get(), content_.names);
    editor_->setResult(result_.get());
    title_->setText(shownText(content_.path));
    title_->setToolTip(plainToolTip(shownText(content_.path)));
    settling_->stop();
    showNote();
    showCount();
    if (!isSameFile && base_->isChecked())
        base_->setChecked(false);
    base_->setEnabled(content_.sides->hasBase);
    if (const auto first = result_->nextConflict(std::nullopt, 1))
        columns_->goTo(*first);
}

void MergeView::takeOutside(const std::vector<MergeResult::Start>& starts)
{
    content_.note = editor_->replaceAll(starts)
                        ? tr("The file was changed elsewhere. The result is what it holds now; Undo brings back yours.")
                        : tr("The file was changed elsewhere, into bytes that cannot be shown beside these. Nothing is "
                             "written over it.");
    showNote();
}

void MergeView::showNote()
{
    QString text = content_.note;
    QString action;
    if (content_.isRemembered) {
        text = tr("git remembered how you resolved this. Look at it, then Mark Resolved.");
        action = tr("Forget It");
    } else if (content_.sides->lineEndsDiffer && !content_.comparesWithoutLineEnds) {
        text = tr("The line ends differ.");
        action = tr("Compare Without Line Ends");
    }
    noteText_->setText(text);
    noteAction_->setText(action);
    noteAction_->setVisible(!action.isEmpty());
    note_->setVisible(!text.isEmpty());
}

void MergeView::showCount()
{
    const int left = undecidedCount();
    const int count = result_ ? result_->conflictCount() : 0;
    const QLocale locale;
    if (count == 0)
        count_->setText(tr("No conflicts of lines"));
    else if (left == 0)
        count_->setText(tr("All decided"));
    else
        count_->setText(tr("%1 of %2 left").arg(locale.toString(left), locale.toString(count)));
}

int MergeView::undecidedCount() const { return result_ ? result_->undecidedCount() : 0; }
bool MergeView::isChanged() const { return result_ && result_->canUndo(); }

std::optional<std::string> MergeView::bytes(const gitkit::MergeMarkers& markers) const
{
    return result_ ? result_->bytes(markers) : std::nullopt;
}

std::string MergeView::shownResult() const { return result_ ? result_->text().toStdString() : std::string(); }

void MergeView::setAvailable(bool available)
{
    for (QWidget* widget : std::initializer_list<QWidget*>{columns_, resolve_, startOver_, noteAction_})
        widget->setEnabled(available);
    editor_->setReadOnly(!available);
}

void MergeView::setTabWidth(int columns)
{
    columns_->setTabWidth(columns);
    editor_->setTabWidth(columns);
}

void MergeView::setSyntax(gitkit::MergeSide side, std::shared_ptr<const FileSyntax> syntax)
{
    columns_->setSyntax(side, std::move(syntax));
}

void MergeView::setResultSyntax(std::shared_ptr<const FileSyntax> syntax) { editor_->setSyntax(std::move(syntax)); }

void MergeView::walk(int direction)
{
    if (!result_)
        return;
    if (const auto next = result_->nextConflict(columns_->current(), direction)) {
        columns_->goTo(*next);
        editor_->reveal(*next);
    }
}

void MergeView::choose(Choice choice)
{
    const auto current = columns_->current();
    if (!result_ || !current || !columns_->isEnabled())
        return;
    // A clean change that is turned down becomes what it was.
    const bool isConflict = result_->sides().segments[*current].kind == gitkit::MergeSegment::Kind::conflict;
    if (choice == Choice::none && !isConflict)
        choice = result_->pieces()[*current].choice == Choice::base ? Choice::undecided : Choice::base;
    editor_->choose(*current, choice);
}

void MergeView::resultChanged()
{
    columns_->resultChanged();
    showCount();
    settling_->start();
}

/// Scrolls one view to where the other is.
void MergeView::follow(bool columnsLead)
{
    if (isFollowing_ || !result_)
        return;
    const QScopedValueRollback following(isFollowing_, true);
    if (columnsLead)
        editor_->setPlace(columns_->place());
    else
        columns_->setPlace(editor_->place());
}

void MergeView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    int buttons = Theme::scaled(leastTitle) + count_->sizeHint().width();
    for (const QWidget* button : {base_, startOver_, resolve_})
        buttons += button->sizeHint().width() + head_->spacing();
    const bool isNarrow = width() < buttons + 2 * IconButton::side + 40;
    head_->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    base_->setVisible(!isNarrow);
    startOver_->setVisible(!isNarrow);
    more_->setVisible(isNarrow);
}

bool MergeView::event(QEvent* event)
{
    // A shortcut would stand beside that of a menu, and neither would act.
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_B && key->modifiers() == Qt::AltModifier) {
            if (event->type() == QEvent::KeyPress && base_->isEnabled())
                base_->toggle();
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void MergeView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    columns_->setFocus(event->reason());
}

} // namespace plovik

#include "moc_MergeView.cpp"
