// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/RepositoryChoices.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/ShownText.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QDir>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct ChoiceTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::RepositoryChoices)
};

QAction* addRepository(QMenu& menu, MenuTarget& target, const std::filesystem::path& root)
{
    // The column of a menu's keys holds where the repository is.
    const QString place = shortenedPath(root.parent_path());
    QAction* const entry = menu.addAction(plainMenuText(repositoryName(root)) + u'\t' + plainMenuText(place), &menu,
                                          [&target, root] { target.openFolder(root); });
    entry->setToolTip(plainToolTip(shownText(root.native())));
    return entry;
}

} // namespace

void addRecentRepositories(QMenu& menu, MenuTarget& target)
{
    menu.setToolTipsVisible(true);
    const std::vector<std::filesystem::path> open = target.openRoots();
    const auto before = menu.actions().size();
    for (const std::filesystem::path& root : recentRepositories::all()) {
        if (std::ranges::find(open, root) == open.end())
            addRepository(menu, target, root);
    }
    if (menu.actions().size() == before)
        menu.addAction(ChoiceTexts::tr("No Recent Repositories"))->setEnabled(false);
}

QString repositoryName(const std::filesystem::path& root)
{
    return shownText(root.filename().empty() ? root.native() : root.filename().native());
}

QString shortenedPath(const std::filesystem::path& path)
{
    QString whole = shownText(path.native());
    const QString home = QDir::homePath();
    if (home.size() > 1 && (whole == home || whole.startsWith(home + u'/')))
        return u'~' + whole.mid(home.size());
    return whole;
}

} // namespace plovik
