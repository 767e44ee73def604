// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/CommandPalette.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/commands/PalettePopup.h"
#include "app/ui/commands/RepositoryChoices.h"
#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include <algorithm>

namespace plovik {

namespace {

using Kind = PaletteEntry::Kind;

/// With more refs than these, opening each for its date takes longer than one waits for a list.
constexpr std::size_t mostDatedRefs = 5000;

struct PaletteTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandPalette)
};

QString readTitle(const QString& text)
{
    return withoutMnemonic(text).replace(QLatin1String("&&"), QLatin1String("&"));
}

/// The commands of a menu bar as they are when the palette opens.
class PaletteCommands {
public:
    explicit PaletteCommands(QMenuBar& bar)
    {
        for (QAction* const menu : bar.actions())
            add(*menu->menu(), readTitle(menu->text()));
    }

    const PaletteEntries& entries() const { return entries_; }

    PaletteRow row(const PaletteEntry& entry) const
    {
        const Item& item = items_[static_cast<std::size_t>(entry.number)];
        return {entry.title, entry.detail, item.whyNot, item.isOn, entry.isOffered};
    }

    void run(const PaletteEntry& entry) const
    {
        // The focus has to be back where it was before the list opened.
        if (QAction* const action = items_[static_cast<std::size_t>(entry.number)].action)
            QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
    }

private:
    struct Item {
        QPointer<QAction> action;
        QString whyNot;
        bool isOn;
    };

    void add(QMenu& menu, const QString& title)
    {
        // Brings the items up to date, which otherwise happens when a menu is opened.
        Q_EMIT menu.aboutToShow();
        for (QAction* const item : menu.actions()) {
            if (item->menu())
                add(*item->menu(), title);
            else if (const auto id = commandOf(*item); id && item->isVisible() && *id != CommandId::commandPalette)
                add(*item, command(*id).shortcut().toString(QKeySequence::NativeText), title);
            else if (ownCommandOf(*item))
                add(*item, item->text().section(u'\t', 1), title);
        }
        Q_EMIT menu.aboutToHide();
    }

    void add(QAction& item, const QString& keys, const QString& menu)
    {
        entries_.push_back(
            {.kind = Kind::command,
             .title =
                 PaletteTexts::tr("%1: %2", "menu, command").arg(menu, readTitle(item.text().section(u'\t', 0, 0))),
             .detail = keys,
             .number = static_cast<int>(items_.size()),
             .isOffered = item.isEnabled()});
        const bool hasReason = !item.isEnabled() && item.toolTip() != item.iconText();
        items_.push_back({&item, hasReason ? item.toolTip() : QString(), item.isChecked()});
    }

    PaletteEntries entries_;
    std::vector<Item> items_;
};

void addRepositories(PaletteEntries& entries, const MenuTarget& target, const std::filesystem::path& current)
{
    const std::vector<std::filesystem::path> open = target.openRoots();
    const auto add = [&](const std::filesystem::path& root, const QString& detail) {
        entries.push_back({.kind = Kind::repository,
                           .name = root.native(),
                           .title = repositoryName(root),
                           .detail = detail.arg(shortenedPath(root.parent_path()))});
    };
    for (const std::filesystem::path& root : open) {
        if (root != current)
            add(root, PaletteTexts::tr("open repository in %1", "folder"));
    }
    for (const std::filesystem::path& root : recentRepositories::all()) {
        if (root != current && std::ranges::find(open, root) == open.end())
            add(root, PaletteTexts::tr("repository in %1", "folder"));
    }
}

QString detailOf(const PaletteEntry& entry, const RepositoryStore& store)
{
    switch (entry.kind) {
    case Kind::branch:
        return PaletteTexts::tr("branch");
    case Kind::remoteBranch:
        return PaletteTexts::tr("remote branch");
    case Kind::tag:
        return PaletteTexts::tr("tag");
    case Kind::file:
        return store.snapshot().status.value().files.find(entry.name) ? PaletteTexts::tr("changed file")
                                                                      : PaletteTexts::tr("file history");
    default:
        return entry.detail;
    }
}

void choose(RepositoryStore& store, MenuTarget& target, const PaletteEntry& entry)
{
    switch (entry.kind) {
    case Kind::repository:
        return target.openFolder(entry.name);
    case Kind::branch:
    case Kind::remoteBranch:
    case Kind::tag:
        return store.window().select(SidebarItem::ref(entry.name));
    case Kind::file:
        if (!store.snapshot().status.value().files.find(entry.name))
            return store.window().inspect({entry.name, std::nullopt, InspectedFile::Tab::history});
        store.window().goTo(SidebarItem::workingCopy());
        return store.window().selectPaths({entry.name});
    case Kind::commit:
        return store.history().showCommit(entry.name);
    case Kind::search:
        store.window().goTo(SidebarItem::history());
        return store.history().search(exactText(entry.name), gitkit::HistoryFilter::Field::message);
    case Kind::command:
        return;
    }
}

bool mayBeHash(const std::string& text)
{
    constexpr std::size_t fewestDigits = 4; // git takes no fewer
    return text.size() >= fewestDigits && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

/// What can be done with any text.
PaletteEntries withTyped(const QString& typed)
{
    const std::string bytes = typed.toStdString();
    PaletteEntries entries;
    if (mayBeHash(bytes))
        entries.push_back({.kind = Kind::commit,
                           .name = bytes,
                           .title = PaletteTexts::tr("Go to the Commit %1", "hash").arg(shownText(bytes))});
    entries.push_back({.kind = Kind::search,
                       .name = bytes,
                       .title = PaletteTexts::tr("Search the History for %1", "text").arg(inQuotes(bytes))});
    return entries;
}

PaletteRequest everythingIn(const RepositoryStore& store, const MenuTarget& target, const PaletteCommands& commands)
{
    const Snapshot& now = store.snapshot();
    PaletteRequest request{.first = commands.entries()};
    request.changed = now.status.value().files;
    request.isOrderedByDate =
        now.branches.value().size() + now.remoteBranches.value().size() + now.tags.value().size() <= mostDatedRefs;
    const auto head =
        std::ranges::find_if(now.branches.value(), [](const gitkit::GitRef& branch) { return branch.isHead; });
    if (head != now.branches.value().end())
        request.current = head->fullName;
    addRepositories(request.first, target, store.root());
    return request;
}

} // namespace

void showCommandPalette(QMenuBar& bar, MenuTarget& target, RepositoryStore& store)
{
    const auto commands = std::make_shared<const PaletteCommands>(bar);
    PaletteRequest request = everythingIn(store, target, *commands);
    PalettePopup::Actions actions;
    actions.row = [commands, &store, head = request.current](const PaletteEntry& entry) {
        if (entry.kind == Kind::command)
            return commands->row(entry);
        return PaletteRow{.title = entry.title,
                          .detail = detailOf(entry, store),
                          .isCurrent = !head.empty() && entry.kind == Kind::branch && entry.name == head};
    };
    actions.choose = [commands, &store, &target](const PaletteEntry& entry) {
        if (entry.kind == Kind::command)
            commands->run(entry);
        else
            choose(store, target, entry);
    };
    actions.always = &withTyped;
    const PalettePopup::Names names{PaletteTexts::tr("Commands and Names"), PaletteTexts::tr("Find Commands and Names"),
                                    PaletteTexts::tr("A command, branch, tag, file, commit or repository")};
    (new PalettePopup(store.git(), names, std::move(request), std::move(actions), bar.window()))
        ->openOver(*bar.window());
}

} // namespace plovik
