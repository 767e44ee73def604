// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/RepositoryWindow.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFacts.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QTextDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// Returns the texts inside `window` that Qt reads as HTML although they contain HTML of the repository.
std::vector<std::string> textsReadAsHtml(const QWidget& window)
{
    std::vector<std::string> found;
    const auto look = [&found](const QString& text) {
        if (Qt::mightBeRichText(text) && text.contains(u"<b>"_s))
            found.push_back(text.toStdString());
    };
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        look(widget->toolTip());
        if (const auto* label = qobject_cast<const QLabel*>(widget); label && label->textFormat() != Qt::PlainText)
            look(label->text());
        if (const auto* list = qobject_cast<const QAbstractItemView*>(widget); list && list->model()) {
            for (int row = 0; row < list->model()->rowCount(); ++row)
                look(list->model()->index(row, 0).data(Qt::ToolTipRole).toString());
        }
        for (const QAction* action : widget->actions())
            look(action->toolTip());
    }
    return found;
}

TEST(HostileTexts, AreNeverReadAsHtml)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "<b>topic"});
    repo.write("a", "2\n").git({"commit", "-qam", "<b>two</b>", "--author=A&amp; <b@b>"});
    repo.git({"tag", "<b>tag"}).git({"checkout", "-q", "-b", "<b>other", "HEAD~1"});
    repo.write("a", "3\n").commit("three").write("<b>new", "").git({"stash", "-um", "<b>kept"});
    int status = 0;
    runPlainGit(repo.path(), {"merge", "<b>topic"}, status);
    repo.write("<b>new", "");
    test::SettlingWorker worker;
    RepositoryStore store(repo.path(), worker);
    RepositoryView view(store);
    view.resize(1000, 700);
    view.show();
    store.snapshot().refresh(RefreshScope::full);
    for (const SidebarItem& item : {SidebarItem::workingCopy(), SidebarItem::history(), SidebarItem::stashes()}) {
        store.window().select(item);
        ASSERT_TRUE(worker.settle());
        store.window().selectCommit(repo.read({"rev-parse", "<b>topic"}));
        ASSERT_TRUE(worker.settle());
        EXPECT_THAT(textsReadAsHtml(view), testing::IsEmpty());
    }
    store.window().select(SidebarItem::timeline());
    ASSERT_TRUE(worker.settle());
    TimelineRow row;
    row.title = u"<b>title"_s;
    row.step.refs = {{"refs/heads/<b>topic", std::nullopt, std::string(40, 'f')}};
    row.step.after.emplace();
    row.step.aside = {"<b>aside"};
    given(store.undo().timeline, std::make_shared<const std::vector<TimelineRow>>(1, row));
    given(store.undo().said, std::optional(Undo::Said{1, u"<b>said"_s, Undo::Said::Offer::undo}));
    given(store.undo().interrupted, u"<b>rebase"_s);
    EXPECT_THAT(textsReadAsHtml(view), testing::IsEmpty());
    EXPECT_TRUE(store.snapshot().inProgress.value()) << "the bar of the merge was not seen";
    worker.settle();
}

TEST(HostileTexts, ToolTipsAndTitlesShowThemAsTheyAre)
{
    EXPECT_EQ(plainToolTip(u"a & b"_s), u"a & b"_s);
    EXPECT_EQ(plainToolTip(u"<b>a\n"_s), u"<p style='white-space:pre-wrap'>&lt;b&gt;a\n</p>"_s);
    EXPECT_LT(plainToolTip(QString(1'000'000, u'a')).size(), 3000);
    QWidget window;
    window.setWindowTitle(plainTitle(u"a[*]b"_s));
    EXPECT_EQ(window.windowTitle(), u"a[*][*]b"_s);
}

TEST(HostileTexts, NeitherReorderWhatStandsAroundThemNorHoldUpTheWindow)
{
    EXPECT_EQ(shownText("evil\u202egnp.exe"), u"evil‹U+202E›gnp.exe"_s);
    EXPECT_EQ(shownText("a\x1b[1m\nb"), u"a^[[1m\nb"_s);
    EXPECT_EQ(shownText("שלום"), u"\u2068שלום\u2069"_s);
    EXPECT_EQ(exactText("evil\u202egnp.exe"), u"evil\u202egnp.exe"_s);
    const QString cut = shownText(std::string(1'000'000, 'a'));
    EXPECT_EQ(cut.size(), longestShownText + 1);
    EXPECT_TRUE(cut.endsWith(u'…'));

    gitkit::CommitDetail detail;
    detail.hash = std::string(40, 'a');
    detail.authorName = detail.committerName = "\u202eA<b>" + std::string(1'000'000, 'a');
    EXPECT_TRUE(commitFacts::people(detail).contains(u"‹U+202E›A&lt;b&gt;"_s));
    EXPECT_LT(commitFacts::people(detail).size(), 10'000);
}

} // namespace
} // namespace plovik
