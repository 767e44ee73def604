#include "app/views/history/CommitMenu.h"

#include "app/views/ShownText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

void addCopies(QMenu& menu, const gitkit::Commit& commit)
{
    const auto addCopy = [&menu](const QString& title, const QString& text) {
        menu.addAction(title, [text] { QGuiApplication::clipboard()->setText(text); });
    };
    addCopy(u"Copy Hash"_s, shownText(commit.hash));
    addCopy(u"Copy Subject"_s, shownText(commit.subject));
}

} // namespace

QMenu* makeCommitMenu([[maybe_unused]] RepositoryStore& store, const gitkit::Commit& commit, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    addCopies(*menu, commit);
    return menu;
}

} // namespace plovik
