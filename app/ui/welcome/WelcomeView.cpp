// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/WelcomeView.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/RepositoryChoices.h"
#include "app/ui/settings/SettingsSymbols.h"
#include "app/ui/welcome/DroppedRepositories.h"
#include "app/ui/welcome/RecentRowDelegate.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Separator.h"
#include "app/ui/widgets/Theme.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr QSize sizeWithRecents(460, 600);
constexpr QSize sizeAlone(460, 310);
constexpr int signSize = 80;

class ApplicationSign : public QWidget {
public:
    explicit ApplicationSign(QWidget* parent) : QWidget(parent) { setFixedSize(signSize, signSize); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        paintApplicationSign(painter, rect());
    }
};

QLabel* centredLabel(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QFont scaled(QFont font, double factor, QFont::Weight weight)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(font.pixelSize() * factor));
    font.setWeight(weight);
    return font;
}

QPushButton* beginButton(const QString& title, const std::function<void()>& clicked, QWidget* parent)
{
    auto* const button = new QPushButton(title, parent);
    button->setAccessibleName(title);
    button->setAutoDefault(true); // Return presses it
    QObject::connect(button, &QPushButton::clicked, parent, clicked);
    return button;
}

} // namespace

WelcomeView::WelcomeView(Actions actions, QWidget* parent)
    : QWidget(parent), actions_(std::move(actions)),
      browse_(beginButton(command(CommandId::openRepository).title(), actions_.browse, this)),
      recentPart_(new QWidget(this)), recentList_(new QListWidget(recentPart_))
{
    setAcceptDrops(true);
    auto* const title = centredLabel(tr("Plovik"), this);
    title->setFont(scaled(font(), 2.2, QFont::Bold));
    auto* const hint =
        centredLabel(tr("Open, clone or make a repository, or run “plovik” inside one from the terminal."), this);
    hint->setForegroundRole(QPalette::PlaceholderText);
    hint->setContentsMargins(16, 0, 16, 0);

    browse_->setProperty("primary", true);
    auto* const others = new QHBoxLayout;
    others->setSpacing(8);
    others->addStretch(1);
    others->addWidget(beginButton(command(CommandId::cloneRepository).title(), [this] { actions_.clone({}); }, this));
    others->addWidget(beginButton(command(CommandId::newRepository).title(), actions_.create, this));
    others->addStretch(1);
    connect(new QShortcut(command(CommandId::closeWindow).shortcut(), this), &QShortcut::activated, this,
            &QWidget::close);
    makeList();

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 32, 0, 0);
    column->setSpacing(0);
    column->addWidget(new ApplicationSign(this), 0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(title);
    column->addSpacing(4);
    column->addWidget(hint);
    column->addSpacing(18);
    column->addWidget(browse_, 0, Qt::AlignHCenter);
    column->addSpacing(8);
    column->addLayout(others);
    column->addSpacing(28);
    column->addWidget(recentPart_, 1);
    column->addStretch(0);
    reloadRecents(); // which sizes the window, so that it can be placed
}

void WelcomeView::makeList()
{
    recentPart_->setAutoFillBackground(true);
    recentPart_->setBackgroundRole(QPalette::Base);
    auto* const title = new QLabel(tr("Recent"), recentPart_);
    QFont capitals = scaled(font(), 0.85, QFont::DemiBold);
    capitals.setCapitalization(QFont::AllUppercase);
    capitals.setLetterSpacing(QFont::PercentageSpacing, 106);
    title->setFont(capitals);
    title->setForegroundRole(QPalette::PlaceholderText);
    title->setContentsMargins(26, 14, 26, 6);

    recentList_->setAccessibleName(tr("Recent"));
    recentList_->setFrameShape(QFrame::NoFrame);
    recentList_->setUniformItemSizes(true);
    recentList_->setVerticalScrollMode(QListView::ScrollPerPixel);
    recentList_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    recentList_->setItemDelegate(new RecentRowDelegate(recentList_));
    recentList_->setMouseTracking(true);
    connect(recentList_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { openRow(recentList_->row(item)); });
    connect(recentList_, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { openRow(recentList_->row(item)); });
    // Commands take the current row, which a mouse button has set before its menu opens.
    const auto addCommand = [this](const QString& name, const QKeySequence& key, void (WelcomeView::*command)(int)) {
        auto* const action = new QAction(name, recentList_);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, command] { (this->*command)(recentList_->currentRow()); });
        recentList_->addAction(action);
    };
    recentList_->setContextMenuPolicy(Qt::ActionsContextMenu);
    addCommand(tr("Open"), {}, &WelcomeView::openRow);
    addCommand(tr("Pin or Unpin"), Qt::CTRL | Qt::Key_P, &WelcomeView::pinRow);
    addCommand(tr("Remove from Recent"), Qt::Key_Delete, &WelcomeView::removeRow);

    auto* const column = new QVBoxLayout(recentPart_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeSeparator(recentPart_));
    column->addWidget(title);
    auto* const sides = new QHBoxLayout;
    sides->setContentsMargins(16, 0, 16, 8);
    sides->addWidget(recentList_);
    column->addLayout(sides, 1);
}

void WelcomeView::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        reloadRecents();
        recentList_->setCurrentRow(0);
        (recents_.empty() ? static_cast<QWidget*>(browse_) : recentList_)->setFocus();
    }
    QWidget::showEvent(event);
}

void WelcomeView::dragEnterEvent(QDragEnterEvent* event)
{
    if (!droppedRepositories(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void WelcomeView::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    const DroppedRepositories dropped = droppedRepositories(*event->mimeData());
    for (const std::filesystem::path& folder : dropped.folders)
        actions_.open(folder);
    if (!dropped.address.isEmpty())
        actions_.clone(dropped.address);
}

void WelcomeView::reloadRecents()
{
    recents_ = recentRepositories::pinned();
    for (std::filesystem::path& root : recentRepositories::all()) {
        if (!recentRepositories::isPinned(root))
            recents_.push_back(std::move(root));
    }
    recentList_->clear();
    for (const std::filesystem::path& root : recents_) {
        auto* const item = new QListWidgetItem(repositoryName(root), recentList_);
        const QString folder = shortenedPath(root.parent_path());
        const QString place = recentRepositories::isPinned(root) ? tr("%1, pinned", "folder").arg(folder) : folder;
        item->setData(RecentRowDelegate::placeRole, place);
        item->setData(Qt::AccessibleTextRole, tr("%1, %2").arg(repositoryName(root), place));
        item->setToolTip(plainToolTip(shownText(root.native())));
    }
    recentPart_->setVisible(!recents_.empty());
    // Longer words of another language take more lines.
    QSize size = recents_.empty() ? sizeAlone : sizeWithRecents;
    size.setWidth(Theme::scaled(size.width()));
    setFixedSize(size.expandedTo({0, layout()->totalMinimumHeightForWidth(size.width())}));
}

void WelcomeView::openRow(int row)
{
    // Opening closes this window and may reload the list, so the path is copied first. A click may also activate the
    // row; the second call finds the window closed.
    if (!isVisible() || row < 0 || static_cast<std::size_t>(row) >= recents_.size())
        return;
    const std::filesystem::path root = recents_[static_cast<std::size_t>(row)];
    actions_.open(root);
}

void WelcomeView::pinRow(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= recents_.size())
        return;
    const std::filesystem::path root = recents_[static_cast<std::size_t>(row)];
    recentRepositories::pin(root, !recentRepositories::isPinned(root));
    reloadRecents();
    const auto place = std::ranges::find(recents_, root);
    recentList_->setCurrentRow(place == recents_.end() ? 0 : static_cast<int>(place - recents_.begin()));
}

void WelcomeView::removeRow(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= recents_.size())
        return;
    recentRepositories::pin(recents_[static_cast<std::size_t>(row)], false);
    recentRepositories::remove(recents_[static_cast<std::size_t>(row)]);
    reloadRecents();
    recentList_->setCurrentRow(std::min(row, recentList_->count() - 1));
    if (recents_.empty())
        browse_->setFocus();
}

} // namespace plovik

#include "moc_WelcomeView.cpp"
