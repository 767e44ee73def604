// SPDX-License-Identifier: GPL-3.0-or-later
// Every window in a language that does not exist: its words are marked, and half again as long as the English ones. What
// is not marked cannot be translated, and what does not fit will not fit in German.

#include "app/settings/RecentRepositories.h"
#include "app/shell/LaunchOptions.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/PromptDialog.h"
#include "app/ui/settings/SettingsView.h"
#include "app/ui/welcome/CloneDialog.h"
#include "app/ui/welcome/CreateDialog.h"
#include "app/ui/welcome/WelcomeView.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/window/RepositoryView.h"
#include "cli/Application.h"
#include "cli/CommandLine.h"
#include "cli/RepositoryFolder.h"
#include "tests/app/NoTarget.h"
#include "tests/app/PaintedTexts.h"
#include "tests/app/PseudoLanguage.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QToolTip>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::PseudoLanguage;
using test::ToldBy;
using test::wordsLeft;

/// Collects what is wrong in a window, each offender by its class and its text.
class Inspection {
public:
    /// In the language of the sources no word is told apart from what need not be translated.
    enum class Words { translated, original };
    explicit Inspection(QString place, Words words = Words::translated) : place_(std::move(place)), words_(words) {}

    void look(QWidget& window)
    {
        read(window, "title", window.windowTitle());
        for (QWidget* widget : shownIn(window)) {
            see(*widget);
            if (words_ == Words::translated)
                seePainted(*widget);
        }
    }

    /// Asks every widget and every row for its context menu.
    void lookAtMenus(QWidget& window)
    {
        for (const QPointer<QWidget>& widget : shownIn(window)) {
            for (const QPoint& place : widget ? placesIn(*widget) : std::vector<QPoint>()) {
                if (widget)
                    seeContextMenu(*widget, place);
            }
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
        if (words_ == Words::translated && !wordsLeft(text).isEmpty())
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
        // Heights of rich text are rounded in different places.
        const bool fits = label.wordWrap() ? label.heightForWidth(label.width()) <= label.height() + 1
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
        for (const QMenu* menu : bar.findChildren<QMenu*>())
            seeMenu(*menu);
    }

    static std::vector<QPointer<QWidget>> shownIn(QWidget& window)
    {
        std::vector<QPointer<QWidget>> shown{&window};
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &window)
                shown.emplace_back(widget);
        }
        return shown;
    }

    static bool hasToolkitsMenu(const QWidget& widget)
    {
        const QWidget* const around = widget.parentWidget();
        return qobject_cast<const QScrollBar*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
               qobject_cast<const QLabel*>(&widget) || qobject_cast<const QPlainTextEdit*>(around) ||
               qobject_cast<const QTextEdit*>(around);
    }

    static std::vector<QPoint> placesIn(const QWidget& widget)
    {
        const auto* const list = qobject_cast<const QAbstractItemView*>(widget.parentWidget());
        if (hasToolkitsMenu(widget))
            return {};
        if (!list || list->viewport() != &widget)
            return {widget.rect().center()};
        std::vector<QPoint> places{widget.rect().bottomRight()};
        for (QPoint place(widget.width() / 2, 0); widget.rect().contains(place); place.ry() += 8) {
            const QRect row = list->visualRect(list->indexAt(place));
            if (row.isValid() && places.back() != row.center())
                places.push_back(row.center());
        }
        return places;
    }

    void seeContextMenu(QWidget& widget, QPoint place)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
        QApplication::sendEvent(&widget, &event);
        if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            seeMenu(*menu);
            menus.insert(menu->actions().size() > 0 ? menu->actions().first()->text() : QString());
            menu->close();
            QCoreApplication::sendPostedEvents(menu, QEvent::DeferredDelete);
        }
    }

    void seeMenu(const QMenu& menu)
    {
        read(menu, "title", menu.title());
        for (const QAction* action : menu.actions()) {
            read(*action, "entry", withoutMnemonic(action->text()));
            read(*action, "tooltip of an entry", withoutMnemonic(action->toolTip()));
            if (action->menu())
                seeMenu(*action->menu());
        }
    }

    /// What is painted is no text that could be asked for. A piece in the language's letters fits between its neighbours'
    /// clips, and is not shortened where nothing tells the rest.
    void seePainted(QWidget& widget)
    {
        const auto* const field = qobject_cast<const QLineEdit*>(&widget);
        if ((field && !field->text().isEmpty()) || qobject_cast<const QPlainTextEdit*>(widget.parentWidget()))
            return; // what was typed, and what git printed
        for (const test::PaintedText& painted : test::paintedTexts(widget)) {
            if (!wordsLeft(painted.text, ToldBy::letters).isEmpty())
                tell(widget, "painted", painted.text);
            if (!painted.text.contains(u'⟦'))
                continue;
            if (painted.place.left() < painted.room.left() - 1 || painted.place.right() > painted.room.right() + 1)
                tell(widget, "painted and cut", painted.text);
            if (painted.text.endsWith(u'…') && !tellsInTip(widget, painted))
                tell(widget, "painted and shortened", painted.text);
        }
    }

    /// Whether the tip at a shortened text has the whole of it.
    static bool tellsInTip(QWidget& widget, const test::PaintedText& painted)
    {
        const QPoint place = painted.place.center().toPoint();
        QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
        QApplication::sendEvent(&widget, &event);
        return QToolTip::text().contains(painted.text.chopped(1).trimmed());
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

public:
    std::set<QString> menus; ///< the first entries of the context menus that were seen

private:
    QString place_;
    Words words_;
    std::set<std::string> found_;
};

/// A window over a repository with something for every view.
class PseudoLanguageTest : public testing::Test {
protected:
    explicit PseudoLanguageTest(bool isPseudo = true)
    {
        Theme::apply(Theme::light(), *qApp);
        if (isPseudo)
            language.emplace();
        repo.write("zzfile.txt", "1\n2\n").write("zzother.txt", "1\n").commit("zzone").git({"tag", "zztag"});
        repo.git({"branch", "zzside"})
            .write("zzfile.txt", "1\n3\n")
            .write("zzpicture", std::string("\0zz", 3))
            .commit("zztwo");
        for (const char* name : {"zza", "zzb", "zzc", "zzd", "zze", "zzf"}) // more than there is room for
            repo.git({"tag", name});
        repo.git({"config", "branch.zzside.remote", "zzremote"}).git({"config", "remote.zzremote.url", "zznowhere"});
        repo.git({"config", "remote.zzremote.fetch", "+refs/heads/*:refs/remotes/zzremote/*"});
        repo.git({"config", "branch.zzside.merge", "refs/heads/zzgone"});
        repo.write("zzfile.txt", "1\n4\n").git({"stash", "push", "-q", "-m", "zzaside"});
        repo.write("zzfile.txt", "1\n5\n").write("zzother.txt", "2\n").git({"add", "zzother.txt"});
        repo.write("zzother.txt", "3\n").write("zznew.txt", "1\n");
        view = new RepositoryView(store);
        mainMenu::build(*window.menuBar(), target, store);
        window.setCentralWidget(view);
        window.setMinimumSize(640, 480);
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

    /// Its words are half again as long, so that the smallest window is a larger one for them.
    virtual std::vector<QSize> sizes() const
    {
        return {language ? QSize(860, 520) : QSize(640, 480), QSize(1240, 780)};
    }

    /// Looks at the window at its smallest size and at a usual one.
    void look(const char* place)
    {
        for (const QSize size : sizes()) {
            window.resize(size);
            EXPECT_TRUE(worker.settle());
            QApplication::processEvents();
            Inspection inspection(u"%1 %2"_s.arg(QString::fromLatin1(place)).arg(window.width()),
                                  language ? Inspection::Words::translated : Inspection::Words::original);
            inspection.look(window);
            inspection.lookAtMenus(window);
            EXPECT_EQ(inspection.found(), "");
            menus.merge(inspection.menus);
        }
    }

    void lookAtDialog(const char* place)
    {
        EXPECT_TRUE(worker.settle());
        QApplication::processEvents();
        QDialog* const dialog = test::openDialog(window);
        ASSERT_TRUE(dialog) << place;
        Inspection inspection(QString::fromLatin1(place));
        inspection.look(*dialog);
        EXPECT_EQ(inspection.found(), "");
    }

    static void lookAt(QWidget& widget, const char* place)
    {
        QApplication::processEvents();
        Inspection inspection(QString::fromLatin1(place));
        inspection.look(widget);
        EXPECT_EQ(inspection.found(), "");
    }

    void lookAtViews()
    {
        store.window().selectPaths({"zzfile.txt"});
        look("working copy");
        store.window().select(SidebarItem::history());
        store.history().moveCommitSelection(0);
        look("history");
        lookAtTimeline();
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

    void lookAtTimeline()
    {
        TimelineRow row;
        row.title = u"zzmerge"_s;
        row.step.before.head = {"refs/heads/zzside", std::string(40, 'f')};
        row.step.after.emplace().head = {"refs/heads/zzmain", std::string(40, 'e')};
        row.step.refs = {{"refs/tags/zztag", std::string(40, 'f'), std::nullopt}};
        row.step.aside = {"zzaside"};
        store.window().select(SidebarItem::timeline());
        EXPECT_TRUE(worker.settle());
        given(store.undo().timeline, std::make_shared<const std::vector<TimelineRow>>(1, row));
        given(store.undo().said, std::optional(Undo::Said{1, u"zzsaid"_s, Undo::Said::Offer::undo}));
        given(store.undo().interrupted, u"zzrebase"_s);
        look("timeline");
        given(store.undo().interrupted, QString());
        store.undo().dismissSaid();
    }

    void lookAtOperations()
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

    std::optional<PseudoLanguage> language;
    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    std::set<QString> menus; ///< see Inspection
    test::NoTarget target;
    QMainWindow window;
    RepositoryView* view = nullptr;
};

/// The same window in the language of the sources.
class SmallestWindow : public PseudoLanguageTest {
protected:
    SmallestWindow() : PseudoLanguageTest(false) {}
};

TEST_F(SmallestWindow, CutsNothing)
{
    lookAtViews();
    lookAtOperations();
}

/// The same beside the font of a desktop that is set to a small or a large one.
class FontSize : public testing::TestWithParam<double> {
protected:
    FontSize()
    {
        QFont font = ordinary;
        font.setPointSizeF(GetParam());
        QApplication::setFont(font);
    }
    ~FontSize() override { QApplication::setFont(ordinary); }

    QFont ordinary = QApplication::font();
};

TEST_P(FontSize, CutsNothing)
{
    struct Window : SmallestWindow {
        void TestBody() override {}
        std::vector<QSize> sizes() const override { return {QSize(1240, 780)}; }
        using SmallestWindow::lookAtOperations;
        using SmallestWindow::lookAtViews;
    } shown;
    shown.lookAtViews();
    shown.lookAtOperations();
}
INSTANTIATE_TEST_SUITE_P(Points, FontSize, testing::Values(8, 16, 24));

TEST_F(PseudoLanguageTest, TheViewsOfAWindowAreTranslatedAndFit)
{
    lookAtViews();
    // Of changed files, hunks, commits and their files, branches, stashes, lines of blame and of a diff, and commands.
    EXPECT_GE(menus.size(), 8U) << "context menus that were seen";
}

TEST_F(PseudoLanguageTest, AnOperationThatStoppedIsTranslatedAndFits) { lookAtOperations(); }

TEST_F(PseudoLanguageTest, DialogsAreTranslatedAndFit)
{
    for (const SheetKind& sheet :
         {SheetKind(NewBranchSheet{}), SheetKind(NewTagSheet{repo.head()}), SheetKind(StashSheet{}),
          SheetKind(GoToCommitSheet{}), SheetKind(SentChangesSheet{}), SheetKind(ResetSheet{repo.head()}),
          SheetKind(RenameBranchSheet{"main"}), SheetKind(MergeSheet{"refs/heads/main"}),
          SheetKind(PushSheet{"main", {"zzorigin", "main"}}), SheetKind(RebaseSheet{}), SheetKind(RemoteSheet{}),
          SheetKind(RemoteSheet{.known = {{.name = "zzup", .url = "zz"}}})})
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
    for (const SidebarItem& item :
         {SidebarItem::workingCopy(), SidebarItem::history(), SidebarItem::stashes(), SidebarItem::timeline()})
    {
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
    WelcomeView welcome({[](const std::filesystem::path&) {}, [] {}, [](const QString&) {}, [] {}});
    welcome.show();
    lookAt(welcome, "welcome");
    welcome.hide();
    recentRepositories::add(repo.path());
    welcome.show();
    lookAt(welcome, "welcome with a recent repository");
    CloneDialog clone({}, nullptr);
    clone.show();
    lookAt(clone, "clone");
    CreateDialog create(nullptr);
    create.fill("/zz/zz");
    create.show();
    lookAt(create, "new repository");
}

/// Returns the words that are left in what a program prints in its terminal; its name and options are none.
std::string leftInTerminal(std::string_view printed)
{
    QString text = QString::fromUtf8(printed);
    text.remove(QRegularExpression(u"^plovik(-app)?: |--[a-z]+|: No such file or directory"_s));
    return wordsLeft(text).join(u' ').toStdString();
}

template <typename Answer, typename Parser>
void expectNoWordsLeft(Parser parse, std::vector<std::string> arguments)
{
    std::vector<char*> pointers;
    for (std::string& each : arguments)
        pointers.push_back(each.data());
    const auto parsed = parse(pointers);
    const auto* const answer = std::get_if<Answer>(&parsed);
    ASSERT_TRUE(answer) << arguments.front();
    EXPECT_TRUE(answer->text.find("⟦") != std::string::npos) << answer->text;
    EXPECT_EQ(leftInTerminal(answer->text), "") << answer->text;
}

TEST(PseudoLanguageInTheTerminal, IsWhatBothProgramsSpeak)
{
    const PseudoLanguage language;
    for (const char* argument : {"--help", "--zzoption", "--show", "--size=zz", "--help=zz"})
        expectNoWordsLeft<LaunchAnswer>(parseLaunchOptions, {argument});
    for (const char* argument : {"--help", "--zzoption"})
        expectNoWordsLeft<CommandAnswer>(parseCommandLine, {argument});

    const TestRepository repo;
    const TemporaryFolder none;
    for (const std::string& folder : {std::string("zzgone"), (repo / ".git").string(), none.path().string()}) {
        try {
            repositoryFolder(folder);
            ADD_FAILURE() << folder;
        } catch (const UnopenableFolder& refused) {
            EXPECT_EQ(leftInTerminal(refused.what()), "") << refused.what();
        }
    }
    for (const char* display : {"", ":99"}) { // where no application is installed beside the program
        const ScopedVariable variable("DISPLAY", display);
        try {
            openInApplication({});
            ADD_FAILURE() << display;
        } catch (const LaunchFailure& failure) {
            EXPECT_EQ(leftInTerminal(failure.what()), "") << failure.what();
        }
    }
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
                           u"app"_s, u"cli"_s, u"-extensions"_s, u"h,cpp"_s, u"-source-language"_s, u"en_US"_s,
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
