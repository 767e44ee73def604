// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/SettingsView.h"

#include "app/settings/Settings.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/settings/AITab.h"
#include "app/ui/settings/EditorTab.h"
#include "app/ui/settings/GeneralTab.h"
#include "app/ui/settings/OwnCommandsTab.h"
#include "app/ui/settings/SettingsForm.h"
#include "app/ui/settings/SettingsTabBar.h"
#include "app/ui/settings/WebTab.h"
#include "app/ui/widgets/Separator.h"
#include "app/ui/widgets/Theme.h"

#include <QGuiApplication>
#include <QHideEvent>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int narrowest = 560;
constexpr std::chrono::milliseconds writeDelay{200};

QString placeText(QPoint place) { return u"%1 %2"_s.arg(place.x()).arg(place.y()); }

std::optional<QPoint> placeNamed(const QString& text)
{
    const QStringList parts = text.split(u' ');
    bool hasX = false;
    bool hasY = false;
    if (parts.size() != 2)
        return std::nullopt;
    const QPoint place(parts[0].toInt(&hasX), parts[1].toInt(&hasY));
    return hasX && hasY ? std::optional(place) : std::nullopt;
}

} // namespace

std::vector<SettingsTab> settingsTabs(EditorChoices editors, CommandLineCommands commandLine, AIChoices ai,
                                      IndexChoices indexes)
{
    return {
        {u"general"_s, SettingsView::tr("General"), SettingsSymbol::gear,
         [editors = std::move(editors), indexes = std::move(indexes)](QWidget* parent) {
             return new GeneralTab(editors, indexes, parent);
         }},
        {u"editor"_s, SettingsView::tr("Editor"), SettingsSymbol::text,
         [](QWidget* parent) { return new EditorTab(parent); }},
        {u"command-line"_s, SettingsView::tr("Command Line"), SettingsSymbol::terminal,
         [commandLine = std::move(commandLine)](QWidget* parent) { return new CommandLineTab(commandLine, parent); }},
        {u"commands"_s, SettingsView::tr("Own Commands"), SettingsSymbol::play,
         [](QWidget* parent) { return new OwnCommandsTab(parent); }},
        {u"web"_s, SettingsView::tr("Web"), SettingsSymbol::globe, [](QWidget* parent) { return new WebTab(parent); }},
        {u"ai"_s, SettingsView::tr("AI"), SettingsSymbol::sparkles,
         [ai = std::move(ai)](QWidget* parent) { return new AITab(ai, parent); }}};
}

SettingsView::SettingsView(const std::vector<SettingsTab>& tabs, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint),
      bar_(new SettingsTabBar(this)), pages_(new QStackedWidget(this)),
      notKept_(problemLabel(tr("Settings Problem"), this))
{
    setWindowTitle(tr("Settings"));
    notKept_->setContentsMargins(40, 0, 40, 24);

    auto* const content = new QVBoxLayout;
    content->setSpacing(0);
    content->addWidget(pages_, 1);
    content->addWidget(notKept_);
    auto* const background = new QWidget(this);
    background->setAutoFillBackground(true);
    background->setBackgroundRole(QPalette::Base);
    background->setLayout(content);
    content->setContentsMargins(0, 0, 0, 0);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 8, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(bar_, 0, Qt::AlignHCenter);
    column->addSpacing(8);
    column->addWidget(makeSeparator(this));
    column->addWidget(background, 1);
    pages_->setMinimumWidth(Theme::scaled(narrowest));

    for (const SettingsTab& tab : tabs) {
        names_.append(tab.name);
        bar_->add(tab.title, tab.symbol);
        pages_->addWidget(tab.makePage(pages_));
    }
    connect(bar_, &QTabBar::currentChanged, this, &SettingsView::showPage);
    showPage(0);
    addKeys();

    writing_.setSingleShot(true);
    writing_.setInterval(writeDelay);
    connect(&writing_, &QTimer::timeout, this, &SettingsView::tellWhetherKept);
    connect(&Settings::shared(), &Settings::changed, this, [this] {
        if (isVisible() && !writing_.isActive())
            writing_.start();
    });
}

void SettingsView::showTab(const QString& name)
{
    if (const qsizetype index = names_.indexOf(name.toLower().replace(u' ', u'-')); index >= 0)
        bar_->setCurrentIndex(static_cast<int>(index));
}

void SettingsView::showEvent(QShowEvent* event)
{
    // A window that was only covered stays where it is.
    if (!event->spontaneous())
        restorePlace();
    QWidget::showEvent(event);
}

void SettingsView::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) {
        Settings::shared().set(settings::settingsWindowPlace, placeText(pos()));
        writing_.stop();
        tellWhetherKept();
    }
    QWidget::hideEvent(event);
}

void SettingsView::addKeys()
{
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), command(CommandId::closeWindow).shortcut()})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    const std::pair<QKeySequence, int> turns[] = {{Qt::CTRL | Qt::Key_Tab, 1},
                                                  {Qt::CTRL | Qt::Key_PageDown, 1},
                                                  {Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, -1},
                                                  {Qt::CTRL | Qt::Key_PageUp, -1}};
    for (const auto& [key, distance] : turns)
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, by = distance] { turn(by); });
}

void SettingsView::turn(int pages)
{
    const int count = bar_->count();
    bar_->setCurrentIndex((bar_->currentIndex() + pages + count) % count);
}

void SettingsView::showPage(int index)
{
    // The window is as large as the visible page; the others must not count.
    for (int page = 0; page < pages_->count(); ++page) {
        const auto policy = page == index ? QSizePolicy::Preferred : QSizePolicy::Ignored;
        pages_->widget(page)->setSizePolicy(policy, policy);
    }
    pages_->setCurrentIndex(index);
}

void SettingsView::restorePlace()
{
    adjustSize();
    const auto place = placeNamed(Settings::shared().value(settings::settingsWindowPlace));
    if (place && QGuiApplication::screenAt(*place + QPoint(width() / 2, 8))) {
        move(*place);
        return;
    }
    const QScreen* const middleOf = screen() ? screen() : QGuiApplication::primaryScreen();
    if (middleOf)
        move(middleOf->availableGeometry().center() - rect().center());
}

void SettingsView::tellWhetherKept()
{
    const bool isKept = Settings::shared().save();
    tellProblem(*notKept_,
                isKept
                    ? QString()
                    : tr("Changes hold until you quit Plovik: “%1” cannot be written.").arg(Settings::shared().path()));
}

} // namespace plovik

#include "moc_SettingsView.cpp"
