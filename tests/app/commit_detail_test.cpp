// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/EventWait.h"
#include "tests/app/PaintedTexts.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include "app/settings/Settings.h"
#include "app/store/actions/FileVersions.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/commit/CommitFileDelegate.h"
#include "app/ui/commit/CommitFileMenu.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitHeader.h"
#include "app/ui/commit/CommitRefs.h"
#include "app/ui/commit/MessageParts.h"
#include "app/ui/diff/CutButton.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "tests/app/ShownWidgets.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocumentFragment>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using gitkit::CommitKind;
using test::entries;
using test::entry;
using test::named;

/// What would be opened in the desktop's browser.
class OpenedLinks : public QObject {
    Q_OBJECT

public:
    OpenedLinks()
    {
        for (const QString& scheme : {u"https"_s, u"http"_s, u"mailto"_s, u"file"_s})
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~OpenedLinks() override
    {
        for (const QString& scheme : {u"https"_s, u"http"_s, u"mailto"_s, u"file"_s})
            QDesktopServices::unsetUrlHandler(scheme);
    }
    QStringList links;

public Q_SLOTS:
    void open(const QUrl& url) { links << url.toString(); }
};

struct CommitDetailTest : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    std::vector<std::filesystem::path> opened;
    RepositoryStore store{
        repo.path(),
        worker,
        {.reveal = {},
         .openInEditor = [this](const StoreServices::Files& files, const StoreServices::Failed&) { opened = files; },
         .trash = {}}};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    std::unique_ptr<CommitDetailView> show(CommitKind kind)
    {
        auto view = std::make_unique<CommitDetailView>(store, kind);
        view->resize(1000, 500);
        view->show();
        worker.finishAll();
        return view;
    }

    void select(const std::string& hash)
    {
        store.window().selectCommit(hash);
        worker.finishAll();
    }

    static QStringList paths(const CommitDetailView& view)
    {
        QStringList list;
        for (const auto& file : view.findChild<CommitFilesList*>()->files())
            list << QString::fromStdString(file.path);
        return list;
    }

    static QString message(const CommitDetailView& view) { return view.findChild<QTextBrowser*>()->toPlainText(); }

    /// The diff's name and lines; empty when none is shown.
    static QString shownDiff(const CommitDetailView& view)
    {
        const auto* diff = view.findChild<DiffView*>();
        if (!diff->isVisible() || diff->sections().empty())
            return {};
        return diff->sections().front()->accessibleName() + u": "_s +
               diff->sections().front()->controller().diff().plainText();
    }

    /// Everything that labels say, without markup.
    static QString told(const CommitDetailView& view)
    {
        QStringList texts;
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            if (label->isVisible())
                texts << (label->textFormat() == Qt::RichText
                              ? QTextDocumentFragment::fromHtml(label->text()).toPlainText()
                              : label->text());
        }
        return texts.join(u'\n').replace(QChar::Nbsp, u' ');
    }

    static bool says(const CommitDetailView& view, const QString& sentence) { return told(view).contains(sentence); }

    static std::string shortHash(const std::string& hash) { return hash.substr(0, 7); }
};

TEST_F(CommitDetailTest, ListsTheFilesOfACommitAndShowsTheDiffOfTheCurrentOne)
{
    repo.write("a", "1\n").write("b", "1\n").commit("one").write("a", "2\n").git({"mv", "b", "c"}).commit("two");
    load();
    store.window().selectCommit(store.history().history.value()[0].commit.hash);
    const auto view = show(CommitKind::ordinary);
    EXPECT_EQ(paths(*view), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_TRUE(says(*view, u"2 files changed"_s));
    EXPECT_TRUE(shownDiff(*view).startsWith(u"Diff: "_s));
    EXPECT_TRUE(shownDiff(*view).contains(u"+2"_s)) << shownDiff(*view).toStdString();

    auto* const files = view->findChild<CommitFilesList*>();
    files->setCurrentIndex(files->model()->index(1, 0));
    worker.finishAll();
    EXPECT_FALSE(shownDiff(*view).contains(u"+2"_s)) << shownDiff(*view).toStdString();
    EXPECT_EQ(files->model()->index(1, 0).data(Qt::AccessibleTextRole), u"c"_s);
}

TEST_F(CommitDetailTest, TheCommitSelectedLastWinsAndAClosedViewIsNotTouched)
{
    repo.write("a", "1\n").commit("one\n\nfirst").write("b", "2\n").commit("two").write("c", "3\n").commit("three");
    load();
    auto view = show(CommitKind::ordinary);
    EXPECT_TRUE(says(*view, u"No Commit Selected"_s));
    std::string oldest;
    for (const HistoryRow& row : store.history().history.value()) {
        store.window().selectCommit(oldest = row.commit.hash);
        EXPECT_EQ(message(*view), QString::fromStdString(row.commit.subject)) << "the subject waits for nobody";
    }
    worker.finishAll();
    const std::string passed = store.history().history.value()[1].commit.hash;
    for (const CommandLog::Command& command : store.changes().commandLog().commands())
        EXPECT_EQ(std::ranges::find(command.arguments, passed + "^{commit}"), command.arguments.end())
            << "what is passed by is not read";
    EXPECT_EQ(paths(*view), QStringList{u"a"_s});
    EXPECT_EQ(message(*view), u"one\nfirst"_s);
    EXPECT_TRUE(shownDiff(*view).contains(u"+1"_s));

    // The newer answer comes first.
    store.window().selectCommit(store.history().history.value()[1].commit.hash);
    select(store.history().history.value()[0].commit.hash);
    select(oldest);
    const int posted = worker.posted();
    store.window().selectCommit(store.history().history.value()[0].commit.hash);
    EXPECT_EQ(paths(*view), QStringList{u"c"_s}) << "read before, so there at once";
    EXPECT_EQ(worker.posted(), posted + 1) << "its diff alone is read";
    EXPECT_TRUE(says(*view, u"+1"_s)) << "and the counts are kept";

    store.window().selectCommit(store.history().history.value()[1].commit.hash);
    EXPECT_GE(worker.waiting(), 1U);
    view.reset();
    worker.finishAll();
}

TEST_F(CommitDetailTest, FilesOfTheCommitBeforeAreNotTakenForThoseOfTheSelectedOne)
{
    repo.write("a", "1\n").commit("one").write("b", "2\n").commit("two");
    load();
    const auto view = show(CommitKind::ordinary);
    const auto& rows = store.history().history.value();
    select(rows[0].commit.hash);
    ASSERT_EQ(paths(*view), QStringList{u"b"_s});
    store.window().selectCommit(rows[1].commit.hash);
    Q_EMIT view->findChild<CommitFilesList*>()->openRequested();
    EXPECT_TRUE(opened.empty());
    EXPECT_TRUE(test::waitUntil([&] { return paths(*view).isEmpty() && shownDiff(*view).isEmpty(); }));
    worker.finishAll();
    EXPECT_EQ(paths(*view), QStringList{u"a"_s});
    EXPECT_TRUE(shownDiff(*view).contains(u"+1"_s));
}

TEST_F(CommitDetailTest, SaysWhatAMergeIsComparedWithAndThatAnEmptyCommitIsEmpty)
{
    repo.write("a", "1\n").commit("one").git({"branch", "side"}).write("b", "1\n").commit("two");
    repo.git({"checkout", "-q", "side"}).write("c", "1\n").commit("three").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "-m", "merge", "side"}).git({"commit", "-q", "--allow-empty", "-m", "empty"});
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.read({"rev-parse", "HEAD~1"}));
    EXPECT_EQ(paths(*view), QStringList{u"c"_s});
    EXPECT_TRUE(says(*view, u"1 file changed against the first parent"_s));
    select(repo.head());
    EXPECT_EQ(paths(*view), QStringList());
    EXPECT_TRUE(says(*view, u"This commit changes no files."_s));
    EXPECT_EQ(shownDiff(*view), QString());
    select(repo.read({"rev-list", "--max-parents=0", "HEAD"}));
    EXPECT_TRUE(says(*view, u"No parent"_s));
}

TEST_F(CommitDetailTest, TellsWhoMadeTheCommitAndCopiesItsHash)
{
    repo.write("a", "1\n").git({"add", "."}).git({"commit", "-qm", "one", "--author=Charles <c@x>"});
    repo.git({"tag", "-a", "-m", "release", "v1"});
    repo.write("a", "2\n").git({"commit", "-aqm", "two", "--author=A&amp;B <ada@x>"});
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    EXPECT_TRUE(says(*view, u"A&amp;B <ada@x>"_s)) << told(*view).toStdString();
    EXPECT_TRUE(says(*view, u"Committed by Charles · "_s)) << told(*view).toStdString();
    EXPECT_EQ(named<QLineEdit>(*view, u"Commit Hash"_s)->text(), QString::fromStdString(repo.head()));
    named<QAbstractButton>(*view, u"Copy Hash"_s)->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(repo.head()));
    EXPECT_TRUE(says(*view, u"Copied"_s));

    const auto& refs = view->findChild<CommitRefs*>()->labels();
    EXPECT_EQ(refs.size(), 1U);
    Q_EMIT named<QLabel>(*view, u"Commit Parents"_s)
        ->linkActivated(QString::fromStdString(repo.read({"rev-parse", "HEAD^"})));
    worker.finishAll();
    EXPECT_EQ(store.window().selectedCommit.value(), repo.read({"rev-parse", "HEAD^"}));
    EXPECT_FALSE(says(*view, u"Committed by"_s));
    EXPECT_EQ(view->findChild<CommitRefs*>()->accessibleDescription(), u"v1"_s);

    // What the page does not hold is told all the same.
    given(store.history().history, std::vector<HistoryRow>{store.history().history.value()[1]});
    select(repo.head());
    EXPECT_EQ(message(*view), u"two"_s);
    EXPECT_EQ(view->findChild<CommitRefs*>()->accessibleDescription(), u"main"_s);
}

TEST_F(CommitDetailTest, LinksLeadToTheWebAndToCommitsAndNowhereElse)
{
    repo.write("a", "1\n").commit("one");
    const std::string first = repo.head();
    repo.write("a", "2\n")
        .commit("two\n\n<b>fixes</b> " + shortHash(first) + ", not 1234567 or defaced.\n" +
                "file:///etc/passwd javascript:alert(1) https://example.org/x. mailto:a@b.c");
    load();
    OpenedLinks web;
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    auto* const text = view->findChild<QTextBrowser*>();
    EXPECT_TRUE(message(*view).contains(u"<b>fixes</b>"_s)) << "never markup";
    QStringList targets;
    for (QTextBlock block = text->document()->begin(); block.isValid(); block = block.next()) {
        for (const QTextLayout::FormatRange& range : block.textFormats()) {
            if (range.format.isAnchor())
                targets << range.format.anchorHref();
        }
    }
    const QString toFirst = u"commit:"_s + QString::fromStdString(shortHash(first));
    EXPECT_EQ(targets, (QStringList{toFirst, u"commit:1234567"_s, u"https://example.org/x"_s, u"mailto:a@b.c"_s}));

    for (const QString& target : {u"https://example.org/x"_s, u"mailto:a@b.c"_s, u"file:///etc/passwd"_s})
        Q_EMIT text->anchorClicked(QUrl(target));
    EXPECT_EQ(web.links, (QStringList{u"https://example.org/x"_s, u"mailto:a@b.c"_s}));

    Q_EMIT text->anchorClicked(QUrl(u"commit:1234567"_s));
    worker.finishAll();
    EXPECT_TRUE(says(*view, u"There is no commit 1234567 in this repository."_s));
    EXPECT_EQ(store.window().errorMessage.value(), std::nullopt);
    Q_EMIT text->anchorClicked(QUrl(toFirst));
    worker.finishAll();
    EXPECT_EQ(store.window().selectedCommit.value(), first);
    EXPECT_FALSE(says(*view, u"There is no commit"_s));
}

TEST_F(CommitDetailTest, AMessageOfAnySizeIsCutBeforeItHoldsUpTheWindow)
{
    std::string lines = "many\n";
    for (int line = 0; line < 10'000; ++line)
        lines += "\nline " + std::to_string(line);
    const MessageParts many = MessageParts::of(lines);
    EXPECT_EQ(many.subject, u"many"_s);
    EXPECT_TRUE(many.body.startsWith(u"line 0\nline 1\n"_s));
    EXPECT_EQ(many.body.count(u'\n') + 1, MessageParts::mostLines);
    EXPECT_TRUE(many.note.contains(u"lines long"_s));
    const MessageParts endless = MessageParts::of("one\n\n" + std::string(1 << 20, 'x'));
    EXPECT_LE(endless.body.size(), MessageParts::longestBody + 1);
    EXPECT_TRUE(endless.note.contains(u"characters long"_s));
    EXPECT_LE(MessageParts::of(std::string(1 << 20, 'x')).subject.size(), MessageParts::longestSubject + 1);
    EXPECT_EQ(MessageParts::of("a\nb\r\n\n\n c\t\n\nd\x1b[1m\xe2\x80\xae\n\n"),
              (MessageParts{u"a b"_s, u" c\t\n\nd^[[1m‹U+202E›"_s, {}}));
    EXPECT_EQ(MessageParts::of(""), MessageParts());

    repo.write("a", "1\n").git({"add", "."}).git({"commit", "-q", "-F", "-"}, lines);
    repo.write("a", "2\n").git({"add", "."}).git({"commit", "-q", "-F", "-"}, std::string(1 << 20, 'x'));
    load();
    const auto view = show(CommitKind::ordinary);
    for (const char* commit : {"HEAD", "HEAD^"}) {
        QElapsedTimer timer;
        timer.start();
        select(repo.read({"rev-parse", commit}));
        QApplication::processEvents();
        EXPECT_LT(timer.elapsed(), 5'000);
        EXPECT_TRUE(message(*view).contains(u"Only the beginning of this message is shown"_s));
    }
}

TEST(MessageParts, FlowWhereTheWriterFilledTheLinesAndKeepTheRest)
{
    const QString full(60, u'x');
    const auto body = [](const QString& text) { return MessageParts::of("s\n\n" + text.toStdString()).body; };
    EXPECT_EQ(body(full + u" broken\nbecause full,\n\nthen\nshort"_s),
              full + u" broken because full,\n\nthen\nshort"_s);
    EXPECT_EQ(body(full + full.left(57) + u"\nbroken"_s), full + full.left(57) + u" broken"_s) << "at 120 columns";
    EXPECT_EQ(body(full + u" and\nhttps://example.org/x"_s), full + u" and https://example.org/x"_s);
    EXPECT_EQ(body(full + u"\u3002\n\u4e2d\u6587"_s), full + u"\u3002\u4e2d\u6587"_s) << "no blank between ideographs";
    for (const QString& kept :
         {u"- %1 item\n  goes on here"_s, u"> %1 quoted\nas %1 was"_s, u"    int %1 code;\n    int y;"_s,
          u"```\n%1 fenced line\n%1 fenced line\n```"_s, u"| %1 | a |\n| %1 | b |"_s, u"name    %1\nother   %1"_s,
          u"$ %1 command --with\n$ %1 command"_s, u"Title of %1 some\n-----"_s, u"Roses are red,\nviolets are blue"_s})
        EXPECT_EQ(body(kept.contains(u"%1"_s) ? QString(kept).replace(u"%1"_s, full) : kept),
                  kept.contains(u"%1"_s) ? QString(kept).replace(u"%1"_s, full) : kept);
    const MessageParts signedOff =
        MessageParts::of("s\n\nWhy: because\nof that\n\nFixes: #1\n[ada: rebased]\nCo-authored-by: B <b@x>\n");
    EXPECT_EQ(signedOff.body, u"Why: because\nof that"_s);
    EXPECT_EQ(signedOff.trailers, (QStringList{u"Fixes: #1"_s, u"[ada: rebased]"_s, u"Co-authored-by: B <b@x>"_s}));
    EXPECT_EQ(MessageParts::of("s\n\nWhy: because\nof that").trailers, QStringList());
}

TEST_F(CommitDetailTest, ShowsTheFactsBetweenTitleAndMessageAndNoPartOfALine)
{
    std::string lines = "title";
    for (int line = 0; line < 60; ++line)
        lines += "\n\nparagraph " + std::to_string(line);
    repo.write("a", "1\n").git({"add", "."}).git({"commit", "-q", "-F", "-"}, lines + "\n\nFixes: #1");
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    QApplication::processEvents();
    const auto* const text = view->findChild<QTextBrowser*>();
    auto* const header = view->findChild<CommitHeader*>();
    EXPECT_TRUE(message(*view).endsWith(u"paragraph 59\nFixes: #1"_s));
    const auto rectOf = [&](const QString& words) {
        QTextCursor cursor = text->document()->find(words);
        return text->cursorRect(cursor).translated(text->viewport()->mapTo(header, QPoint()));
    };
    const auto* const hash = named<QLineEdit>(*view, u"Commit Hash"_s);
    const int hashY = hash->mapTo(header, QPoint()).y();
    EXPECT_GT(hashY, rectOf(u"title"_s).bottom());
    EXPECT_LT(hashY + hash->height(), rectOf(u"paragraph 0"_s).top());
    for (const auto& [height, scrolled] : {std::pair(500, 0), {507, 0}, {513, 30}, {507, 61}, {500, 203}, {330, 0}}) {
        view->resize(1000, height);
        QApplication::processEvents();
        view->findChild<QScrollArea*>()->verticalScrollBar()->setValue(scrolled);
        const QRect sight = header->wholeLines();
        EXPECT_GT(sight.height(), header->height() / 2);
        for (int line = 0; line < 20; ++line) {
            const QRect rect = rectOf(u"paragraph %1"_s.arg(line));
            EXPECT_TRUE(rect.bottom() < sight.top() || rect.top() > sight.bottom() ||
                        (rect.top() >= sight.top() && rect.bottom() <= sight.bottom()))
                << height << ' ' << scrolled << ' ' << line;
        }
        const QImage picture = header->grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < sight.right() && (y < sight.top() || y > sight.bottom()); ++x)
                ASSERT_EQ(picture.pixelColor(x, y), header->palette().color(QPalette::Base)) << scrolled << ' ' << y;
        }
    }
}

TEST_F(CommitDetailTest, FactsAreBriefWhereTheyWouldLeaveTheMessageNoRoom)
{
    repo.write("a", "1\n").commit("one").write("a", "2\n").git({"add", "."});
    repo.git({"commit", "-q", "--author=Ada Lovelace <ada@x>", "-m", "two", "-m", "body\nof\nthe\nmessage"});
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    const auto* const hash = named<QLineEdit>(*view, u"Commit Hash"_s);
    const auto isBrief = [&](int height) {
        view->resize(1000, height);
        for (int round = 0; round < 4; ++round)
            QApplication::processEvents();
        const bool hasMail = says(*view, u"Ada Lovelace <ada@x>"_s);
        EXPECT_EQ(hasMail, hash->text().toStdString() == repo.head()) << height;
        EXPECT_TRUE(says(*view, u"Ada Lovelace"_s)) << height;
        return !hasMail;
    };
    EXPECT_FALSE(isBrief(600));
    EXPECT_TRUE(isBrief(300));
    const auto* const text = view->findChild<QTextBrowser*>();
    const QTextCursor body = text->document()->find(u"body"_s);
    const QPoint place = text->viewport()->mapTo(view->findChild<CommitHeader*>(), text->cursorRect(body).bottomLeft());
    EXPECT_LT(place.y(), view->findChild<CommitHeader*>()->wholeLines().bottom());
    named<QAbstractButton>(*view, u"Copy Hash"_s)->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), repo.head()) << "the button copies all of it";
    bool wasBrief = true;
    for (int height = 250; height < 600; height += 3) {
        const bool now = isBrief(height);
        EXPECT_TRUE(wasBrief || !now) << height;
        EXPECT_EQ(now, isBrief(height)) << "and stays so at " << height;
        wasBrief = now;
    }
    EXPECT_FALSE(wasBrief);
}

TEST_F(CommitDetailTest, AHeaderIsMirroredWhereTextIsReadFromRightToLeft)
{
    repo.write("a", "1\n").git({"add", "."});
    repo.git({"commit", "-q", "-m", "title", "-m", "prose", "-m", "    code", "-m", "Co-authored-by: B <b@x>"});
    load();
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const auto mirroredAgain = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
    const auto view = show(CommitKind::ordinary);
    view->resize(1000, 900);
    select(repo.head());
    QApplication::processEvents();
    auto* const text = view->findChild<QTextBrowser*>();
    const auto leftOf = [&](const QString& words) {
        const QTextCursor found = text->document()->find(words);
        QTextCursor start(text->document());
        start.setPosition(found.selectionStart());
        return text->cursorRect(start).left();
    };
    const int middle = text->viewport()->width() / 2;
    EXPECT_GT(leftOf(u"title"_s), middle);
    EXPECT_GT(leftOf(u"prose"_s), middle);
    EXPECT_LT(leftOf(u"code"_s), middle);
    EXPECT_GT(leftOf(u"Co-authored"_s), middle);
    const QMargins besideInitials = named<QLabel>(*view, u"Commit Author"_s)->contentsMargins();
    EXPECT_EQ(besideInitials.left(), 0);
    EXPECT_GT(besideInitials.right(), 30);
    auto* const refs = view->findChild<CommitRefs*>();
    ASSERT_EQ(test::paintedTexts(*refs).size(), 1U);
    EXPECT_GT(test::paintedTexts(*refs).front().place.left(), refs->width() / 2);
}

TEST_F(CommitDetailTest, ALongDiffIsReadOnWhenThatIsAskedFor)
{
    std::string text;
    for (int line = 0; line < 6000; ++line)
        text += std::to_string(line) + "\n";
    repo.write("long", text).commit("one");
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    QApplication::processEvents();
    worker.finishAll();
    const auto& diff = *view->findChild<DiffView*>();
    auto* const button = diff.sections().front()->findChild<CutButton*>();
    ASSERT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), u"Show All 6,001 Lines"_s);
    diff.verticalScrollBar()->setValue(diff.verticalScrollBar()->maximum());
    const int scrolled = diff.verticalScrollBar()->value();
    button->click();
    worker.finishAll();
    EXPECT_EQ(diff.sections().front()->controller().diff().document().rowCount(), 6001);
    EXPECT_EQ(diff.verticalScrollBar()->value(), scrolled);
}

TEST_F(CommitDetailTest, CountsLinesWithoutHoldingUpTheFiles)
{
    repo.write("a", "1\n").write("b", "1\n").commit("one");
    repo.write("a", "2\n3\n").write("b", std::string("\0", 1)).commit("two");
    load();
    const auto view = show(CommitKind::ordinary);
    store.window().selectCommit(repo.head());
    worker.finish();
    EXPECT_EQ(paths(*view), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_FALSE(says(*view, u"+2"_s));
    auto* const files = view->findChild<CommitFilesList*>();
    const auto description = [&](int row) {
        return files->model()->index(row, 0).data(Qt::AccessibleDescriptionRole).toString();
    };
    EXPECT_EQ(description(0), u"Modified"_s);
    const std::string first = store.history().history.value()[1].commit.hash;
    store.window().selectCommit(first);
    store.window().selectCommit(repo.head());
    worker.finishAll();
    EXPECT_EQ(description(0), u"Modified, 2 added, 1 removed"_s);
    EXPECT_EQ(description(1), u"Modified, binary"_s);
    EXPECT_TRUE(says(*view, u"+2  −1"_s)) << told(*view).toStdString();
}

TEST_F(CommitDetailTest, AFileIsOpenedInspectedAndCopiedFromItsRow)
{
    repo.write("a", "1\n").write("gone", "1\n").commit("one").write("a", "2\n").remove("gone").commit("two");
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    const gitkit::CommitDetail detail = repo.repository().commitDetail(repo.head(), CommitKind::ordinary);
    const auto menuOf = [&](std::size_t file) {
        return std::unique_ptr<QMenu>(
            makeCommitFileMenu(store, detail, detail.files.at(file), u"Open in Code"_s, nullptr));
    };
    using Entries = std::vector<std::string>;
    EXPECT_EQ(entries(*menuOf(0)),
              (Entries{"Open in Code", "Show Blame", "Show File History", "—", "Take into the Working Copy",
                       "Open This Version", "Save This Version As…", "—", "Copy Path", "(Copy Link)",
                       "(Open on the Web)", "Reveal in File Browser"}));
    const auto gone = menuOf(1);
    EXPECT_EQ(entries(*gone), (Entries{"(Open in Code)", "Show Blame", "Show File History", "—",
                                       "Take into the Working Copy", "Open This Version", "Save This Version As…", "—",
                                       "Copy Path", "(Copy Link)", "(Open on the Web)", "(Reveal in File Browser)"}));
    EXPECT_EQ(entry(*gone, u"Open in Code"_s)->toolTip(), u"The file is not in the working tree now."_s);
    entry(*gone, u"Show Blame"_s)->trigger();
    EXPECT_EQ(store.window().inspected.value(),
              (InspectedFile{"gone", repo.read({"rev-parse", "HEAD^"}), InspectedFile::Tab::blame}));
    entry(*menuOf(0), u"Show File History"_s)->trigger();
    EXPECT_EQ(store.window().inspected.value(), (InspectedFile{"a", repo.head(), InspectedFile::Tab::history}));

    entry(*gone, u"Open This Version"_s)->trigger();
    worker.finishAll();
    ASSERT_EQ(opened.size(), 1U);
    EXPECT_EQ(readFile(opened.front()), "1\n") << "of the commit that had it";
    EXPECT_TRUE(opened.front().filename().native().ends_with("-gone"));
    actions::saveVersion(store.actors(), repo.head(), "a", repo / "copy");
    worker.finishAll();
    EXPECT_EQ(readFile(repo / "copy"), "2\n");
    actions::saveVersion(store.actors(), repo.head(), "a", repo / "no such folder/copy");
    worker.finishAll();
    EXPECT_TRUE(store.window().errorMessage.value()) << "what could not be written is said";

    auto* const files = view->findChild<CommitFilesList*>();
    const auto press = [files](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(files, &event);
    };
    press(Qt::Key_Return);
    EXPECT_EQ(opened, (std::vector<std::filesystem::path>{repo / "a"}));
    opened.clear();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(opened.empty());
    EXPECT_TRUE(says(*view, u"gone is not in the working tree now."_s));
}

TEST_F(CommitDetailTest, FilesAreOrderedByNumbersAndShownAsATree)
{
    for (const char* path : {"d/f2", "d/f10", "d/f9", "e"})
        repo.write(path, "1\n");
    repo.commit("one");
    load();
    const auto view = show(CommitKind::ordinary);
    select(repo.head());
    EXPECT_EQ(paths(*view), (QStringList{u"d/f2"_s, u"d/f9"_s, u"d/f10"_s, u"e"_s}));
    auto* const files = view->findChild<CommitFilesList*>();
    EXPECT_EQ(files->model()->index(2, 0).data(Qt::AccessibleDescriptionRole), u"Added, 1 added, 0 removed"_s)
        << "the counts are those of the same file";
    files->setCurrentFile(2);
    Settings::shared().set(settings::filesAsTree, true);
    EXPECT_EQ(files->model()->rowCount(), 5);
    ASSERT_TRUE(files->currentFile());
    EXPECT_EQ(files->currentFile()->path, "d/f10") << "what was current stays current";
    EXPECT_EQ(files->model()->index(0, 0).data(Qt::AccessibleDescriptionRole), u"Folder, 3 files"_s);
    files->setCurrentIndex(files->model()->index(0, 0));
    const auto press = [files](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(files, &event);
    };
    press(Qt::Key_Return);
    EXPECT_EQ(files->model()->rowCount(), 2);
    EXPECT_TRUE(opened.empty());
    files->setCurrentFile(1);
    EXPECT_EQ(files->model()->rowCount(), 5) << "its folder is opened";
    Settings::shared().set(settings::filesAsTree, false);
}

TEST(PathParts, KeepTheCommonFolderApart)
{
    EXPECT_EQ(PathParts::of(u"a/b/c.cpp"_s), (PathParts{u"a/b/"_s, u"c.cpp"_s}));
    EXPECT_EQ(PathParts::of(u"c"_s), (PathParts{{}, u"c"_s}));
    EXPECT_EQ(PathParts::of(u"a/old.cpp"_s, u"a/older.cpp"_s), (PathParts{u"a/"_s, u"old.cpp → older.cpp"_s}));
    EXPECT_EQ(PathParts::of(u"a/b/x"_s, u"a/bc/x"_s), (PathParts{u"a/"_s, u"b/x → bc/x"_s}));
    EXPECT_EQ(PathParts::of(u"a"_s, u"a/a"_s), (PathParts{{}, u"a → a/a"_s}));
}

TEST_F(CommitDetailTest, AStashTellsWhatItWasMadeOnAndShowsItsUntrackedFilesToo)
{
    repo.write("a", "1\n").commit("one").write("a", "2\n").write("new", "n\n");
    repo.git({"stash", "push", "-q", "--include-untracked", "-m", "Half of it"});
    load();
    const auto view = show(CommitKind::stash);
    EXPECT_EQ(message(*view), u"On main: Half of it"_s);
    EXPECT_TRUE(says(*view, u"Made on main at "_s + QString::fromStdString(shortHash(repo.head()))));
    EXPECT_EQ(paths(*view), (QStringList{u"a"_s, u"new"_s}));
    EXPECT_TRUE(says(*view, u"2 files changed, 1 untracked"_s));
    const gitkit::CommitDetail detail =
        repo.repository().commitDetail(*store.window().selectedStash.value(), CommitKind::stash);
    EXPECT_EQ(inspectedFile(detail, detail.files.at(1), InspectedFile::Tab::blame).revision, detail.parents.at(2));
    EXPECT_EQ(view->findChild<CommitFilesList*>()->model()->index(1, 0).data(Qt::AccessibleDescriptionRole),
              u"Untracked, 1 added, 0 removed"_s);
}

// Dropped elsewhere and cleaned away, a stash cannot even be read any more.
TEST_F(CommitDetailTest, AStashDroppedWhileItIsShownGivesWayWithoutAnAlert)
{
    repo.write("a", "1\n").commit("one").write("a", "2\n").git({"stash", "push", "-q"});
    repo.write("a", "3\n").git({"stash", "push", "-q"});
    load();
    const auto view = show(CommitKind::stash);
    const std::string newest = *store.window().selectedStash.value();
    const std::string older = store.snapshot().stashes.value()[1].hash;
    store.window().selectStash(older);
    repo.git({"stash", "drop", "-q", "stash@{1}"}).git({"prune", "--expire=now"});
    worker.finishAll();
    EXPECT_TRUE(says(*view, u"The stash could not be read"_s));
    load();
    EXPECT_EQ(store.window().selectedStash.value(), newest);
    EXPECT_TRUE(shownDiff(*view).contains(u"+3"_s));
    repo.git({"stash", "drop", "-q"});
    load();
    EXPECT_TRUE(says(*view, u"No Stash Selected"_s));
    EXPECT_EQ(store.window().errorMessage.value(), std::nullopt);
}

} // namespace
} // namespace plovik

#include "commit_detail_test.moc"
