#include "app/settings/WelcomeView.h"

#include "app/settings/RecentRepositories.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace plovik {

namespace {

QLabel* centredLabel(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

WelcomeView::WelcomeView(std::function<void(std::filesystem::path)> open, std::function<void()> browse, QWidget* parent)
    : QWidget(parent), open_(std::move(open))
{
    auto* const title = centredLabel(QStringLiteral("Plovik"), this);
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 2);
    titleFont.setWeight(QFont::Bold);
    title->setFont(titleFont);

    auto* const hint =
        centredLabel(QStringLiteral("Open a repository, or run `plovik` inside one from the terminal."), this);
    hint->setForegroundRole(QPalette::PlaceholderText);

    auto* const button = new QPushButton(QStringLiteral("Open Repository…"), this);
    button->setAccessibleName(QStringLiteral("Open Repository…"));
    button->setDefault(true);
    connect(button, &QPushButton::clicked, this, [browse = std::move(browse)] { browse(); });

    recentTitle_ = new QLabel(QStringLiteral("Recent"), this);
    recentTitle_->setForegroundRole(QPalette::PlaceholderText);
    recentList_ = new QListWidget(this);
    recentList_->setAccessibleName(QStringLiteral("Recent"));
    recentList_->setFrameShape(QFrame::NoFrame);
    connect(recentList_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { openRow(recentList_->row(item)); });
    connect(recentList_, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { openRow(recentList_->row(item)); });

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 32, 32, 24);
    layout->setSpacing(8);
    layout->addWidget(title);
    layout->addWidget(hint);
    layout->addSpacing(8);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addSpacing(16);
    layout->addWidget(recentTitle_);
    layout->addWidget(recentList_, 1);
}

void WelcomeView::showEvent(QShowEvent* event)
{
    reloadRecents();
    QWidget::showEvent(event);
}

void WelcomeView::reloadRecents()
{
    recents_ = recentRepositories::all();
    recentList_->clear();
    const QIcon folder = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
    for (const std::filesystem::path& root : recents_) {
        const QString name = QString::fromStdString(root.filename().string());
        auto* const item = new QListWidgetItem(folder, name, recentList_);
        item->setToolTip(QString::fromStdString(root.string()));
        item->setSizeHint({0, 28});
    }
    recentTitle_->setVisible(!recents_.empty());
    recentList_->setVisible(!recents_.empty());
}

void WelcomeView::openRow(int row)
{
    // Opening closes this window and may reload the list; the path is copied first. A click and its activation are one.
    if (!isVisible() || row < 0 || static_cast<std::size_t>(row) >= recents_.size())
        return;
    const std::filesystem::path root = recents_[static_cast<std::size_t>(row)];
    open_(root);
}

} // namespace plovik
