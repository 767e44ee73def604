// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/InspectorView.h"

#include "app/store/ShownText.h"
#include "app/ui/diff/FindBar.h"
#include "app/ui/history/RowText.h"
#include "app/ui/inspector/BlameFinder.h"
#include "app/ui/web/WebLinkEntries.h"
#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

namespace {

constexpr int sideMargin = 14;

InspectedFile::Tab otherOf(InspectedFile::Tab tab)
{
    return tab == InspectedFile::Tab::blame ? InspectedFile::Tab::history : InspectedFile::Tab::blame;
}

/// Says which state of a file is shown, and which lines of it.
QString placeOf(const InspectedFile& file)
{
    QString revision = file.revision ? InspectorView::tr("at %1").arg(shownText(gitkit::shortHash(*file.revision)))
                                     : InspectorView::tr("Working Copy");
    if (!file.lines || file.tab != InspectedFile::Tab::history)
        return revision;
    const QLocale locale;
    if (file.lines->first == file.lines->last)
        return InspectorView::tr("line %1 %2", "number, of which revision")
            .arg(locale.toString(file.lines->first), revision);
    return InspectorView::tr("lines %1 to %2 %3", "numbers, of which revision")
        .arg(locale.toString(file.lines->first), locale.toString(file.lines->last), revision);
}

} // namespace

InspectorView::InspectorView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), name_(new QLabel), revision_(new QLabel), other_(new BarButton({})),
      back_(new IconButton(Icon::back, tr("Blame Back"), nullptr)),
      close_(new IconButton(Icon::close, tr("Close Inspector"), nullptr)), blame_(new BlamePane(store)),
      history_(new FileHistoryPane(store)), pages_(new QStackedWidget), finder_(new BlameFinder(*blame_->list(), this))
{
    setAccessibleName(tr("Inspector"));
    pages_->addWidget(blame_);
    pages_->addWidget(history_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(pages_, 1);

    const auto showOther = [this] {
        if (const auto& file = store_.window().inspected.value())
            showTab(otherOf(file->tab));
    };
    connect(other_, &QAbstractButton::clicked, this, showOther);
    connect(close_, &QAbstractButton::clicked, this, &InspectorView::close);
    connect(back_, &QAbstractButton::clicked, this, &InspectorView::goBack);
    connect(blame_, &BlamePane::beforeRequested, this, &InspectorView::blameBefore);
    connect(blame_, &BlamePane::backRequested, this, &InspectorView::goBack);
    connect(blame_, &BlamePane::fileHistoryRequested, this, [this] { showTab(InspectedFile::Tab::history); });
    connect(blame_, &BlamePane::linesHistoryRequested, this, [this](const gitkit::LineRange& lines) {
        if (const auto& file = store_.window().inspected.value())
            goOn({file->path, file->revision, InspectedFile::Tab::history, lines});
    });
    connect(blame_, &BlamePane::linesLinkRequested, this, [this](const gitkit::LineRange& lines, bool isOpened) {
        if (const auto& file = store_.window().inspected.value())
            (isOpened ? openWebLink : copyWebLink)(
                store_, {.commit = file->revision.value_or("HEAD"), .path = file->path, .lines = lines});
    });
    connect(history_, &FileHistoryPane::backRequested, this, &InspectorView::goBack);
    connect(history_, &FileHistoryPane::blameRequested, this, [this](const gitkit::FileRevision& revision) {
        goOn({revision.file.path, revision.commit.hash, InspectedFile::Tab::blame});
    });
    for (const auto& keys : {QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab)}) {
        auto* const other = new QShortcut(keys, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(other, &QShortcut::activated, this, showOther);
    }
    notifiers_.push_back(store_.window().inspected.addNotifier([this] { follow(); }));
    follow();
}

QWidget* InspectorView::makeHeader()
{
    back_->setToolTip(tr("Back to the blame before (Backspace)"));
    close_->setToolTip(tr("Close (Esc)"));
    for (QLabel* label : {name_, revision_})
        label->setTextFormat(Qt::PlainText);
    followFont(*name_, 0, QFont::DemiBold);
    revision_->setForegroundRole(QPalette::PlaceholderText);
    name_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* const header = new QWidget;
    auto* const title = title_ = new QHBoxLayout;
    title->setContentsMargins(sideMargin, 0, 8, 0);
    title->setSpacing(8);
    title->addWidget(name_, 1);
    title->addWidget(revision_);
    title->addWidget(close_);
    auto* const bar = bar_ = new QHBoxLayout;
    bar->setContentsMargins(sideMargin, 0, 8, 0);
    bar->addWidget(other_);
    bar->addStretch(1);
    bar->addWidget(back_);
    auto* const rows = new QVBoxLayout(header);
    rows->setContentsMargins(0, 5, 0, 5);
    rows->setSpacing(0);
    rows->addLayout(title);
    rows->addLayout(bar);
    return header;
}

void InspectorView::focusContent()
{
    if (pages_->currentWidget() == blame_)
        blame_->setFocus(Qt::OtherFocusReason);
    else
        history_->setFocus(Qt::OtherFocusReason);
}

void InspectorView::follow()
{
    const std::optional<InspectedFile>& file = store_.window().inspected.value();
    if (!file) {
        steps_.clear();
        return;
    }
    if (!isStepping_) {
        steps_.clear();
        showFile(*file);
    }
}

void InspectorView::showFile(const InspectedFile& file)
{
    placeOther();
    showName();
    back_->setVisible(!steps_.empty());
    const bool hadFocus = pages_->isAncestorOf(focusWidget());
    if (file.tab == InspectedFile::Tab::blame) {
        pages_->setCurrentWidget(blame_);
        blame_->open(file);
    } else {
        if (findBar_)
            findBar_->close();
        pages_->setCurrentWidget(history_);
        history_->open(file);
    }
    if (hadFocus)
        focusContent();
}

/// A blame has room for one row of buttons, the narrow history for two.
void InspectorView::placeOther()
{
    const bool isBlame = store_.window().inspected.value()->tab == InspectedFile::Tab::blame;
    const QString title = isBlame ? tr("Show File History") : tr("Show Blame");
    other_->setText(title);
    other_->setAccessibleName(title);
    const bool isInTitle = title_->indexOf(other_) >= 0;
    if (isBlame && !isInTitle) {
        title_->insertWidget(2, other_);
        title_->insertWidget(3, back_);
    } else if (!isBlame && isInTitle) {
        bar_->insertWidget(0, other_);
        bar_->addWidget(back_);
    }
}

void InspectorView::showTab(InspectedFile::Tab tab)
{
    if (!store_.window().inspected.value())
        return;
    InspectedFile file = *store_.window().inspected.value();
    file.tab = tab;
    const QScopedValueRollback stepping(isStepping_, true);
    store_.window().inspect(file);
    showFile(file);
}

void InspectorView::goOn(const InspectedFile& file)
{
    steps_.push_back({*store_.window().inspected.value(), blame_->memory()});
    const QScopedValueRollback stepping(isStepping_, true);
    store_.window().inspect(file);
    showFile(file);
}

void InspectorView::blameBefore(int row)
{
    const gitkit::BlameOrigin::Place* const previous = blame_->list()->document()->previous(row);
    if (!previous || !store_.window().inspected.value())
        return;
    const InspectedFile file{previous->path, previous->hash, InspectedFile::Tab::blame};
    steps_.push_back({*store_.window().inspected.value(), blame_->memory()});
    const QScopedValueRollback stepping(isStepping_, true);
    store_.window().inspect(file);
    blame_->openBefore(file, row);
    showFile(file);
}

void InspectorView::goBack()
{
    if (steps_.empty())
        return;
    const Step step = std::move(steps_.back());
    steps_.pop_back();
    const QScopedValueRollback stepping(isStepping_, true);
    store_.window().inspect(step.file);
    if (step.file.tab == InspectedFile::Tab::blame)
        blame_->reopen(step.file, step.blame);
    showFile(step.file);
}

void InspectorView::close() { store_.window().closeInspector(); }

void InspectorView::showName()
{
    const std::optional<InspectedFile>& file = store_.window().inspected.value();
    if (!file)
        return;
    const std::size_t slash = file->path.rfind('/');
    fullName_ = shownText(file->path);
    name_->setText(name_->fontMetrics().elidedText(
        shownText(std::string_view(file->path).substr(slash == std::string::npos ? 0 : slash + 1)), Qt::ElideMiddle,
        std::max(name_->width(), 60)));
    name_->setToolTip(plainToolTip(fullName_));
    name_->setAccessibleName(fullName_);
    revision_->setText(placeOf(*file));
}

void InspectorView::find()
{
    if (pages_->currentWidget() != blame_ || blame_->currentWidget() != blame_->list())
        return;
    if (!findBar_) {
        findBar_ = new FindBar(*finder_, this);
        findBar_->setSubject(tr("Find in Blame"), tr("Find in blame"));
        layout()->addWidget(findBar_);
        connect(findBar_, &FindBar::focusReturned, this, &InspectorView::focusContent);
    }
    findBar_->open({});
}

/// Returns whether a key means this view, which it does here even if the window has it for something else.
bool InspectorView::isMine(const QKeyEvent& event) const
{
    if (pages_->currentWidget() != blame_)
        return false;
    if (event.matches(QKeySequence::Find))
        return true;
    const bool isOpen = findBar_ && findBar_->isVisible();
    return isOpen && (event.key() == Qt::Key_F3 || event.key() == Qt::Key_Escape);
}

bool InspectorView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isMine(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void InspectorView::keyPressEvent(QKeyEvent* event)
{
    const bool isEscape = event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier;
    if (isMine(*event) && isEscape)
        findBar_->close();
    else if (isMine(*event) && event->key() == Qt::Key_F3)
        findBar_->step(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    else if (isMine(*event))
        find();
    else if (isEscape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void InspectorView::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.content);
    painter.fillRect(QRect(0, pages_->y() - 1, width(), 1), theme.separator);
}

void InspectorView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layout()->activate();
    showName();
}

} // namespace plovik

#include "moc_InspectorView.cpp"
