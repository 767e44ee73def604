// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/RepositoryChoice.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/store/readers/Glances.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/commands/PalettePopup.h"
#include "app/ui/commands/RepositoryChoices.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

namespace fs = std::filesystem;

struct SwitchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::RepositoryChoice)
};

QString glanceText(const gitkit::RepositoryGlance& glance)
{
    QStringList parts;
    if (glance.branch)
        parts += shownText(*glance.branch);
    if (glance.isBare)
        parts += SwitchTexts::tr("bare");
    if (glance.hasMore)
        parts += SwitchTexts::tr("more than %Ln change(s)", nullptr, glance.changes);
    else if (glance.changes > 0)
        parts += SwitchTexts::tr("%Ln change(s)", nullptr, glance.changes);
    if (glance.counts.ahead > 0)
        parts += u"↑%L1"_s.arg(glance.counts.ahead);
    if (glance.counts.behind > 0)
        parts += u"↓%L1"_s.arg(glance.counts.behind);
    return parts.join(u" · "_s);
}

/// The repositories in the order of the list.
std::vector<fs::path> listed(const MenuTarget& target)
{
    std::vector<fs::path> all = recentRepositories::pinned();
    const auto add = [&all](const std::vector<fs::path>& more) {
        for (const fs::path& root : more) {
            if (std::ranges::find(all, root) == all.end())
                all.push_back(root);
        }
    };
    add(target.openRoots());
    add(recentRepositories::all());
    return all;
}

PaletteEntries entriesOf(const MenuTarget& target)
{
    PaletteEntries entries;
    for (const fs::path& root : listed(target))
        entries.push_back({.kind = PaletteEntry::Kind::repository,
                           .name = root.native(),
                           .title = repositoryName(root),
                           .detail = shortenedPath(root.parent_path())});
    entries.push_back({.kind = PaletteEntry::Kind::search, // the last of all
                       .title = command(CommandId::openRepository).title(),
                       .detail = command(CommandId::openRepository).shortcut().toString(QKeySequence::NativeText)});
    return entries;
}

bool isRepository(const PaletteEntry& entry) { return entry.kind == PaletteEntry::Kind::repository; }

PaletteRow switchRow(const PaletteEntry& entry, const fs::path& current, Glances& glances)
{
    if (!isRepository(entry))
        return {.title = entry.title, .detail = entry.detail};
    PaletteRow row{.title = entry.title, .isCurrent = current.native() == entry.name};
    QStringList details;
    if (const auto glance = glances.of(entry.name))
        details += glanceText(*glance);
    details += entry.detail;
    if (recentRepositories::isPinned(entry.name))
        details += SwitchTexts::tr("pinned");
    details.removeAll(QString());
    row.detail = details.join(u" · "_s);
    return row;
}

} // namespace

void chooseRepository(RepositoryStore& store, MenuTarget& target, QWidget& button)
{
    const auto popup = std::make_shared<QPointer<PalettePopup>>();
    const auto glances = std::make_shared<Glances>(store.git(), [popup] {
        if (*popup)
            (*popup)->rowsChanged();
    });
    const PalettePopup::Actions actions{
        .row = [glances, current = store.root()](const auto& entry) { return switchRow(entry, current, *glances); },
        .choose =
            [&target](const auto& entry) {
                isRepository(entry) ? target.openFolder(entry.name) : target.openDocument();
            },
        .pin =
            [](const PaletteEntry& entry) {
                if (isRepository(entry))
                    recentRepositories::pin(entry.name, !recentRepositories::isPinned(entry.name));
            }};
    const PalettePopup::Names names{SwitchTexts::tr("Repositories"), SwitchTexts::tr("Filter Repositories"),
                                    SwitchTexts::tr("Switch to a repository (Ctrl+P pins it)")};
    PaletteRequest request{.scope = PaletteRequest::Scope::none, .first = entriesOf(target)};
    const std::size_t count = request.first.size();
    *popup = new PalettePopup(store.git(), names, std::move(request), actions, &button);
    (*popup)->openBelow(button, count);
}

} // namespace plovik
