// SPDX-License-Identifier: GPL-3.0-or-later
// Every window in a language that does not exist: its words are marked, and half again as long as the English ones. What
// is not marked cannot be translated, and what does not fit will not fit in German.

#include "app/settings/RecentRepositories.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/PromptDialog.h"
#include "app/ui/settings/SettingsView.h"
#include "app/ui/welcome/WelcomeView.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTranslator>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// "Fetching…" becomes "⟦Fetching…~~~~⟧". The toolkit's own texts stay as they are.
class PseudoLanguage : public QTranslator {
public:
    PseudoLanguage() { QCoreApplication::installTranslator(this); }
    ~PseudoLanguage() override { QCoreApplication::removeTranslator(this); }
    PseudoLanguage(const PseudoLanguage&) = delete;
    PseudoLanguage& operator=(const PseudoLanguage&) = delete;

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char* /*comment*/, int /*n*/) const override
    {
        if (std::string_view(context).starts_with('Q') && std::string_view(context) != "Questions")
            return {};
        const QString text = QString::fromUtf8(source);
        // Sentences get words more, words get longer.
        const QString piece = text.contains(u' ') ? u"~~~~~~ "_s : u"~~~~~~~"_s;
        return u"⟦"_s + text + piece.repeated(text.size() / 14 + 1).left((text.size() + 1) / 2).trimmed() + u"⟧"_s;
    }
};

/// Returns the words of `text` that are neither marked nor the names that the tests give: those begin with "zz".
QStringList wordsLeft(QString text)
{
    static const QRegularExpression marked(u"⟦[^⟦⟧]*⟧"_s);
    while (text.contains(marked))
        text.remove(marked);
    static const QRegularExpression notWords(u"<[^>]*>|&\\w+;|/tmp/\\S+|^git .*"_s);
    static const QRegularExpression known(
        u"\\b(zz[\\w.-]*|[0-9a-f]{7,}|repo|stash|main|HEAD|On|WIP|on|Ctrl|Shift|Alt|Return|Esc|Backspace|Plovik|Ada|"
        u"Charles|"
        u"ada|charles|example|org|Sunday|September|Sep|DejaVu|Sans|Mono|Monospace|ED25519|SHA256)\\b"_s);
    text.remove(notWords).remove(notWords).remove(known);
    QStringList words;
    static const QRegularExpression word(u"\\p{L}{2,}"_s);
    for (auto each = word.globalMatch(text); each.hasNext();)
        words.append(each.next().captured());
    return words;
}

/// Collects what is wrong in a window, each offender by its class and its text.
class Inspection {
public:
    explicit Inspection(QString place) : place_(std::move(place)) {}

    void look(const QWidget& window)
    {
        read(window, "title", window.windowTitle());
        see(window);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &window)
                see(*widget);
        }
    }

    /// Returns one line for each offender.
    std::string found() const
    {
        std::string lines;
        for (const std::string& each : found_)
            lines += "\n" + each;
        return lines;
    }

private:
    void tell(const QObject& object, const char* what, const QString& text)
    {
        const QString parent =
            object.parent() ? QString::fromLatin1(object.parent()->metaObject()->className()) : QString();
        found_.insert(u"%1: %2 in %3, %4: %5"_s
                          .arg(place_, QString::fromLatin1(object.metaObject()->className()), parent,
                               QString::fromLatin1(what), QString(text).replace(u'\n', u' '))
                          .toStdString());
    }

    void read(const QObject& object, const char* what, const QString& text)
    {
        if (!wordsLeft(text).isEmpty())
            tell(object, what, text);
    }

    void see(const QWidget& widget)
    {
        read(widget, "accessible name", widget.accessibleName());
        read(widget, "accessible description", widget.accessibleDescription());
        read(widget, "tooltip", widget.toolTip());
        for (const QAction* action : widget.actions()) {
            read(widget, "action", action->text());
            read(widget, "tooltip of an action", action->toolTip());
        }
        if (const auto* const label = qobject_cast<const QLabel*>(&widget))
            seeLabel(*label);
        else if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget))
            seeButton(*button);
        else if (const auto* const box = qobject_cast<const QComboBox*>(&widget))
            seeBox(*box);
        else if (const auto* const field = qobject_cast<const QLineEdit*>(&widget))
            seeField(*field);
        else if (const auto* const text = qobject_cast<const QPlainTextEdit*>(&widget))
            read(widget, "placeholder", text->placeholderText());
        else if (const auto* const list = qobject_cast<const QAbstractItemView*>(&widget))
            seeRows(*list);
        else if (const auto* const tabs = qobject_cast<const QTabBar*>(&widget))
            seeTabs(*tabs);
        else if (const auto* const menu = qobject_cast<const QMenuBar*>(&widget))
            seeMenus(*menu);
        if (hasText(widget))
            seePlace(widget);
    }

    void seeLabel(const QLabel& label)
    {
        read(label, "text", label.text());
        const bool isElided = qobject_cast<const ElidedLabel*>(&label) || !label.toolTip().isEmpty();
        const bool fits = label.wordWrap() ? label.heightForWidth(label.width()) <= label.height()
                                           : label.sizeHint().width() <= label.width();
        if (!fits && !isElided)
            tell(label, "cut",
                 u"%1 x %2 of %3 x %4, %5"_s.arg(label.width())
                     .arg(label.height())
                     .arg(label.sizeHint().width())
                     .arg(label.heightForWidth(label.width()))
                     .arg(label.text()));
    }

    void seeButton(const QAbstractButton& button)
    {
        read(button, "text", button.text());
        const bool isElided = button.toolTip().contains(button.text());
        if (!button.text().isEmpty() && button.sizeHint().width() > button.width() && !isElided)
            tell(button, "cut", button.text());
    }

    void seeBox(const QComboBox& box)
    {
        for (int index = 0; index < box.count(); ++index) {
            read(box, "item", box.itemText(index));
            if (box.sizeAdjustPolicy() != QComboBox::AdjustToMinimumContentsLengthWithIcon &&
                box.fontMetrics().horizontalAdvance(box.itemText(index)) > box.width())
                tell(box, "cut", box.itemText(index));
        }
    }

    void seeField(const QLineEdit& field)
    {
        read(field, "placeholder", field.placeholderText());
        const int room = field.width() - field.textMargins().left() - field.textMargins().right();
        if (field.text().isEmpty() && field.fontMetrics().horizontalAdvance(field.placeholderText()) > room &&
            !field.toolTip().contains(field.placeholderText()))
            tell(field, "cut placeholder", field.placeholderText());
    }

    void seeRows(const QAbstractItemView& list)
    {
        const int count = list.model() ? std::min(list.model()->rowCount(), 30) : 0;
        for (int row = 0; row < count; ++row) {
            const QModelIndex index = list.model()->index(row, 0);
            read(list, "row", index.data().toString());
            read(list, "tooltip of a row", index.data(Qt::ToolTipRole).toString());
            read(list, "accessible text of a row", index.data(Qt::AccessibleTextRole).toString());
            read(list, "accessible description of a row", index.data(Qt::AccessibleDescriptionRole).toString());
        }
    }

    void seeTabs(const QTabBar& tabs)
    {
        for (int index = 0; index < tabs.count(); ++index) {
            read(tabs, "tab", tabs.tabText(index));
            if (!tabs.rect().contains(tabs.tabRect(index)))
                tell(tabs, "cut tab", tabs.tabText(index));
        }
    }

    void seeMenus(const QMenuBar& bar)
    {
        for (const QMenu* menu : bar.findChildren<QMenu*>()) {
            read(*menu, "title", menu->title());
            for (const QAction* action : menu->actions())
                read(*menu, "entry", action->text());
        }
    }

    static bool hasText(const QWidget& widget)
    {
        const auto* const label = qobject_cast<const QLabel*>(&widget);
        const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
        return (label && !label->text().isEmpty()) || button || qobject_cast<const QComboBox*>(&widget) ||
               qobject_cast<const QLineEdit*>(&widget);
    }

    static bool scrolls(const QWidget& widget)
    {
        for (const QWidget* each = widget.parentWidget(); each; each = each->parentWidget()) {
            if (qobject_cast<const QAbstractScrollArea*>(each))
                return true;
        }
        return false;
    }

    /// What has a text stands inside its parent, and beside what else has one.
    void seePlace(const QWidget& widget)
    {
        const QWidget* const parent = widget.parentWidget();
        if (!parent || scrolls(widget))
            return;
        const QString text = widget.property("text").toString() + widget.accessibleName();
        if (!parent->rect().contains(widget.geometry()))
            tell(widget, "reaches out of its parent", text);
        for (const QObject* each : parent->children()) {
            const auto* const other = qobject_cast<const QWidget*>(each);
            if (other && other != &widget && other->isVisible() && hasText(*other) &&
                other->geometry().intersects(widget.geometry()))
                tell(widget, "overlaps", text);
        }
    }

    QString place_;
    std::set<std::string> found_;
};

/// A window over a repository with something for every view.
class PseudoLanguageTest : public testing::Test {
protected:
    PseudoLanguageTest()
    {
        repo.write("zzfile.txt", "1\n2\n").write("zzother.txt", "1\n").commit("zzone").git({"tag", "zztag"});
        repo.git({"branch", "zzside"}).write("zzfile.txt", "1\n3\n").commit("zztwo");
        repo.write("zzfile.txt", "1\n4\n").git({"stash", "push", "-q", "-m", "zzaside"});
        repo.write("zzfile.txt", "1\n5\n").write("zzother.txt", "2\n").git({"add", "zzother.txt"});
        repo.write("zzother.txt", "3\n").write("zznew.txt", "1\n");
        view = new RepositoryView(store);
        window.setCentralWidget(view);
        window.setMinimumSize(860, 520);
        window.show();
        refresh();
    }
    ~PseudoLanguageTest() override
    {
        worker.settle();
        delete window.takeCentralWidget();
    }

    void refresh()
    {
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }

    /// Looks at the window at its smallest size and at a usual one.
    void look(const char* place)
    {
        for (const QSize size : {QSize(860, 520), QSize(1240, 780)}) {
            window.resize(size);
            EXPECT_TRUE(worker.settle());
            QApplication::processEvents();
            Inspection inspection(u"%1 %2"_s.arg(QString::fromLatin1(place)).arg(window.width()));
            inspection.look(window);
            EXPECT_EQ(inspection.found(), "");
        }
    }

    void lookAtDialog(const char* place)
    {
        EXPECT_TRUE(worker.settle());
        QApplication::processEvents();
        const QDialog* const dialog = test::openDialog(window);
        ASSERT_TRUE(dialog) << place;
        Inspection inspection(QString::fromLatin1(place));
        inspection.look(*dialog);
        EXPECT_EQ(inspection.found(), "");
    }

    static void lookAt(const QWidget& widget, const char* place)
    {
        QApplication::processEvents();
        Inspection inspection(QString::fromLatin1(place));
        inspection.look(widget);
        EXPECT_EQ(inspection.found(), "");
    }

    PseudoLanguage language;
    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    QMainWindow window;
    RepositoryView* view = nullptr;
};

TEST_F(PseudoLanguageTest, TheViewsOfAWindowAreTranslatedAndFit)
{
    store.window().selectPaths({"zzfile.txt"});
    look("working copy");
    store.window().select(SidebarItem::history());
    store.history().moveCommitSelection(0);
    look("history");
    store.window().select(SidebarItem::stashes());
    look("stashes");
    store.window().inspect({"zzfile.txt", std::nullopt, InspectedFile::Tab::blame});
    look("blame");
    store.window().inspect({"zzfile.txt", repo.head(), InspectedFile::Tab::history});
    look("file history");
    store.window().closeInspector();
    store.window().showCommandLog(true);
    look("command log");
}

TEST_F(PseudoLanguageTest, AnOperationThatStoppedIsTranslatedAndFits)
{
    repo.git({"reset", "-q", "--hard"})
        .git({"checkout", "-q", "zzside"})
        .write("zzfile.txt", "1\n6\n")
        .commit("zzthree");
    int status = 0;
    runPlainGit(repo.path(), {"merge", "main"}, status);
    refresh();
    store.window().selectPaths({"zzfile.txt"});
    look("merge");
    repo.git({"merge", "--abort"}).git({"bisect", "start"});
    refresh();
    look("bisect");
}

TEST_F(PseudoLanguageTest, DialogsAreTranslatedAndFit)
{
    for (const SheetKind& sheet :
         {SheetKind(NewBranchSheet{}), SheetKind(NewTagSheet{repo.head()}), SheetKind(StashSheet{}),
          SheetKind(GoToCommitSheet{}), SheetKind(SentChangesSheet{})})
    {
        store.window().showSheet(sheet);
        lookAtDialog(("sheet " + std::to_string(sheet.index())).c_str());
        store.window().closeSheet();
    }
    store.staging().confirmDiscard(store.snapshot().status.value().files);
    lookAtDialog("question");
    store.window().dismissQuestion();
    store.window().report({.message = u"zzfailed"_s, .command = CommandLog::Number{1}});
    lookAtDialog("alert");
    store.window().dismissError();

    for (const char* asked : {"Password for 'https://zzname@zzhost.example.org': ",
                              "The authenticity of host 'zzhost (1.2.3.4)' can't be established.\n"
                              "ED25519 key fingerprint is SHA256:zzz.\nAre you sure?",
                              "zzquestion"})
    {
        PromptDialog prompt({1, SignInKind::answer, asked, "zzhost.example.org", {}, false}, view);
        prompt.setAttribute(Qt::WA_DeleteOnClose, false);
        prompt.show();
        lookAt(prompt, "prompt");
    }
}

TEST_F(PseudoLanguageTest, AnEmptyRepositoryIsTranslatedAndFits)
{
    const TestRepository empty;
    RepositoryStore its(empty.path(), worker);
    RepositoryView shown(its);
    shown.resize(860, 500);
    shown.show();
    its.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    for (const SidebarItem& item : {SidebarItem::workingCopy(), SidebarItem::history(), SidebarItem::stashes()}) {
        its.window().select(item);
        ASSERT_TRUE(worker.settle());
        lookAt(shown, "empty repository");
    }
}

TEST_F(PseudoLanguageTest, SettingsAndTheWelcomeWindowAreTranslatedAndFit)
{
    SettingsView settings(
        settingsTabs({[] { return std::vector<editors::Application>{{"/apps/zzkate.desktop", "zzkate"}}; },
                      [](const QString&) { return std::nullopt; }, [](QWidget*, auto) {}},
                     {},
                     {{{u"zznone"_s, u"zznone"_s, u"zzmodel"_s, u"ZZ_KEY"_s}},
                      [](const QString&, auto found) { found(std::nullopt); },
                      [](const QString&, const QString&, auto finished) { finished(true); },
                      [](const QString&) { return true; }}));
    settings.show();
    for (const char* tab : {"general", "editor", "command-line", "ai"}) {
        settings.showTab(QString::fromLatin1(tab));
        lookAt(settings, tab);
    }
    WelcomeView welcome([](const std::filesystem::path&) {}, [] {});
    welcome.show();
    lookAt(welcome, "welcome");
    welcome.hide();
    recentRepositories::add(repo.path());
    welcome.show();
    lookAt(welcome, "welcome with a recent repository");
}

TEST(Translations, HaveTheEnglishPluralFormsOfEveryText)
{
    const QString reader = u"/usr/lib/qt6/bin/lupdate"_s;
    if (!QFile::exists(reader))
        GTEST_SKIP() << "lupdate is not installed";
    const QTemporaryDir folder;
    const QString words = folder.filePath(u"plovik_en.ts"_s);
    const QString sources = QStringLiteral(PLOVIK_SOURCE_TREE);
    ASSERT_TRUE(QFile::copy(sources + u"/app/translations/plovik_en.ts"_s, words));
    QProcess process;
    process.setWorkingDirectory(sources);
    process.start(reader, {u"-silent"_s, u"-I"_s, u"."_s, u"-locations"_s, u"none"_s, u"-pluralonly"_s, u"GitKit"_s,
                           u"app"_s, u"-extensions"_s, u"h,cpp"_s, u"-source-language"_s, u"en_US"_s,
                           u"-target-language"_s, u"en_US"_s, u"-ts"_s, words});
    ASSERT_TRUE(process.waitForFinished(60'000));
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    QFile file(words);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression unfinished(u"<source>([^<]*)</source>\\s*<translation type=\"unfinished\">"_s);
    for (auto each = unfinished.globalMatch(text); each.hasNext();)
        ADD_FAILURE() << "write down the plural forms of: " << each.next().captured(1).toStdString();
}

} // namespace
} // namespace plovik
