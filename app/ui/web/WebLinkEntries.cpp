// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/web/WebLinkEntries.h"

#include "app/store/ShownText.h"
#include "app/store/actions/WebLinks.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/WebLinkReaders.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/web/WebSettings.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMenu>
#include <QToolTip>
#include <QUrl>

#include <memory>
#include <utility>

namespace plovik {

namespace {

struct LinkTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::WebLinkEntries)
};

using Finding = Latest<gitkit::WebLinkRequest, gitkit::WebLink>;

/// Shows on an entry where it leads, once the pointer or a key is on it.
void tellAddress(QMenu& menu, QAction& entry, RepositoryStore& store, const gitkit::WebLinkRequest& request)
{
    menu.setToolTipsVisible(true);
    const auto finding = std::make_shared<std::unique_ptr<Finding>>();
    const auto found = [&menu, &entry, finding] {
        const std::optional<gitkit::WebLink>& link = (*finding)->answer();
        if (!link || (*finding)->failure())
            return;
        const QString why = actions::whyNoLink(*link);
        const QString told = why.isEmpty() ? shownText(link->address) : why;
        entry.setToolTip(plainToolTip(told));
        if (menu.isVisible() && menu.activeAction() == &entry)
            QToolTip::showText(menu.mapToGlobal(menu.actionGeometry(&entry).bottomLeft()), plainToolTip(told), &menu);
    };
    *finding = std::make_unique<Finding>(store.git(), &readWebLink, found, Worker::Lane::longRead);
    QObject::connect(&menu, &QMenu::hovered, &entry, [&entry, finding, request](QAction* current) {
        current == &entry ? (*finding)->ask(request) : (*finding)->forget();
    });
    // The reading refers to itself.
    QObject::connect(&menu, &QObject::destroyed, [finding] { finding->reset(); });
}

} // namespace

gitkit::WebLinkRequest completed(const RepositoryStore& store, gitkit::WebLinkRequest request)
{
    request.remotes = actions::webRemotes(store.snapshot());
    request.hosts = webSettings::hosts();
    return request;
}

void copyWebLink(RepositoryStore& store, const gitkit::WebLinkRequest& request)
{
    actions::findWebLink(store.actors(), completed(store, request),
                         [](const QString& address) { QGuiApplication::clipboard()->setText(address); });
}

void openWebLink(RepositoryStore& store, const gitkit::WebLinkRequest& request)
{
    actions::findWebLink(store.actors(), completed(store, request),
                         [](const QString& address) { QDesktopServices::openUrl(QUrl(address)); });
}

void addWebLinks(QMenu& menu, RepositoryStore& store, const gitkit::WebLinkRequest& request)
{
    const gitkit::WebLinkRequest whole = completed(store, request);
    QAction* const copy =
        menu.addAction(LinkTexts::tr("Copy Link"), &menu, [&store, request] { copyWebLink(store, request); });
    QAction* const open =
        menu.addAction(LinkTexts::tr("Open on the Web"), &menu, [&store, request] { openWebLink(store, request); });
    const bool isFile = !request.path.empty();
    markAs(isFile ? CommandId::copyFileLink : CommandId::copyCommitLink, copy);
    markAs(isFile ? CommandId::openFileOnWeb : CommandId::openCommitOnWeb, open);
    for (QAction* const entry : {copy, open}) {
        entry->setEnabled(!whole.remotes.empty());
        if (whole.remotes.empty())
            entry->setToolTip(plainToolTip(actions::whyNoLink({.problem = gitkit::WebLink::Problem::noRemote})));
        else
            tellAddress(menu, *entry, store, whole);
    }
}

void addNewRequest(QMenu& menu, RepositoryStore& store, const std::string& branch)
{
    const gitkit::WebLinkRequest request{.branch = branch};
    const gitkit::WebLinkRequest whole = completed(store, request);
    QAction* const entry = menu.addAction(LinkTexts::tr("New Request on the Web"), &menu,
                                          [&store, request] { openWebLink(store, request); });
    markAs(CommandId::newRequestOnWeb, entry)->setEnabled(!whole.remotes.empty());
    if (whole.remotes.empty())
        entry->setToolTip(plainToolTip(actions::whyNoLink({.problem = gitkit::WebLink::Problem::noRemote})));
    else
        tellAddress(menu, *entry, store, whole);
}

} // namespace plovik
