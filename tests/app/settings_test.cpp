// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CodeFont.h"
#include "app/settings/OwnCommands.h"
#include "app/settings/Settings.h"
#include "app/shell/AppDelegate.h"
#include "app/ui/settings/EditorTab.h"
#include "app/ui/settings/SettingsView.h"
#include "app/ui/settings/SizeControl.h"
#include "app/ui/widgets/Theme.h"
#include "tests/app/EventWait.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/OwnEnvironment.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontInfo>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRawFont>
#include <QTabBar>
#include <QtEndian>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <map>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using editors::Application;
using test::named;
using test::waitUntil;

Settings& stored() { return Settings::shared(); }

std::vector<std::string> texts(const QComboBox& picker)
{
    std::vector<std::string> found;
    for (int index = 0; index < picker.count(); ++index)
        found.push_back(picker.itemText(index).toStdString());
    return found;
}

void pick(QComboBox& picker, const QString& text)
{
    picker.setCurrentIndex(picker.findText(text));
    Q_EMIT picker.activated(picker.currentIndex());
}

/// The desktop's settings, on the session bus.
class FakePortal : public QDBusVirtualObject {
public:
    QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.member() != "Read"_L1)
            return false;
        const QVariant nested = QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(scheme))));
        return bus.send(message.createReply(nested));
    }

    uint scheme = 1; ///< dark
};

class SettingsTest : public testing::Test {
protected:
    SettingsTest()
    {
        for (const char* key : {"appearance", "codeFontName", "externalEditorPath", "settingsWindowPlace"})
            stored().set(QString::fromLatin1(key), QString());
        stored().set(settings::codeFontSize, 12);
        stored().save();
    }

    SettingsView& window()
    {
        if (!window_) {
            window_ = std::make_unique<SettingsView>(settingsTabs(
                {[this] { return installed; },
                 [this](const QString& path) -> std::optional<Application> {
                     return present.contains(path) ? std::optional(Application{
                                                         path.toStdString(), QFileInfo(path).baseName().toStdString()})
                                                   : std::nullopt;
                 },
                 [this](QWidget* /*parent*/, std::function<void(Application)> chosen) { answer = std::move(chosen); }},
                commands,
                {{{u"none"_s, u"None"_s, {}, {}}},
                 [](const QString&, auto found) { found(std::nullopt); },
                 [](const QString&, const QString&, auto finished) { finished(true); },
                 [](const QString&) { return false; }},
                {.bytes = [this] { return indexBytes; }, .clear = [this] { indexBytes = 0; }}));
            window_->show();
        }
        return *window_;
    }

    template <typename Widget>
    Widget& control(const QString& name)
    {
        Widget* const found = named<Widget>(window(), name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }

    QString notKept() { return control<QLabel>(u"Settings Problem"_s).text(); }

    std::vector<Application> installed{{"/apps/kate.desktop", "Kate"}, {"/apps/zed.desktop", "Zed"}};
    QStringList present{u"/apps/kate.desktop"_s, u"/apps/zed.desktop"_s, u"/opt/mine.desktop"_s};
    std::function<void(Application)> answer; ///< to the question for an application
    CommandLineCommands commands;
    qint64 indexBytes = 0;
    std::unique_ptr<SettingsView> window_;
};

TEST_F(SettingsTest, SaysHowMuchRoomIndexesTakeAndClearsThem)
{
    indexBytes = 60'000'000;
    stored().set(settings::keepsIndexes, true);
    auto& box = control<QCheckBox>(u"Keep an index of large repositories"_s);
    auto& clear = control<QPushButton>(u"Clear"_s);
    const auto isRoomShown = [this] {
        const QList<QLabel*> labels = window().findChildren<QLabel*>();
        return std::ranges::any_of(labels, [](const QLabel* label) { return label->text().contains(u"57.22 MiB"_s); });
    };
    EXPECT_TRUE(box.isChecked());
    EXPECT_TRUE(isRoomShown());
    clear.click();
    EXPECT_EQ(indexBytes, 0);
    EXPECT_FALSE(clear.isEnabled());
    EXPECT_FALSE(isRoomShown());
    box.click();
    EXPECT_FALSE(stored().value(settings::keepsIndexes));
    stored().set(settings::keepsIndexes, true);
    EXPECT_TRUE(box.isChecked());
}

TEST_F(SettingsTest, ValuesOfTheWrongTypeAndACorruptFileReadAsTheFallback)
{
    stored().set(u"codeFontSize"_s, u"twelve"_s);
    stored().set(u"appearance"_s, QStringList{u"dark"_s, u"light"_s});
    EXPECT_EQ(CodeFont::size(), 12);
    EXPECT_EQ(storedAppearance(), AppAppearance::system);
    stored().set(settings::appearance, u"sepia"_s);
    EXPECT_EQ(storedAppearance(), AppAppearance::system);
    ASSERT_TRUE(stored().save());

    QFile file(stored().path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General\n\xff\xfe\0codeFontSize==@Variant(\xff)\nappearance=@Variant(\\0\\0\\0\nsidebarWidth=nan");
    file.close();
    stored().save(); // reads it, too
    EXPECT_EQ(CodeFont::size(), 12);
    EXPECT_EQ(stored().value(settings::sidebarWidth), 0);
    EXPECT_EQ(storedAppearance(), AppAppearance::system);
    stored().set(settings::appearance, u"dark"_s);
    EXPECT_TRUE(stored().save());
    EXPECT_EQ(storedAppearance(), AppAppearance::dark);
}

TEST_F(SettingsTest, AppearanceIsInForceAsSoonAsItIsPicked)
{
    LaunchOptions options;
    options.appearance = AppAppearance::dark;
    AppDelegate delegate(options);
    EXPECT_TRUE(Theme::current().isDark);
    auto& picker = control<QComboBox>(u"Appearance"_s);
    EXPECT_EQ(texts(picker), (std::vector<std::string>{"System", "Light", "Dark"}));
    pick(picker, u"Light"_s);
    EXPECT_FALSE(Theme::current().isDark);
    pick(picker, u"Dark"_s);
    EXPECT_TRUE(Theme::current().isDark);
    EXPECT_EQ(stored().value(settings::appearance), u"dark"_s);
}

TEST_F(SettingsTest, SystemFollowsTheDesktopsColourSchemeLive)
{
    if (!userHasAccount())
        GTEST_SKIP() << "dbus-daemon serves nobody without an account";
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--print-address"_s, u"--nofork"_s});
    ASSERT_TRUE(waitUntil([&] { return bus.canReadLine(); }));
    const QString address = QString::fromLocal8Bit(bus.readLine().trimmed());
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toLocal8Bit());
    auto connection = QDBusConnection::connectToBus(address, u"portal"_s);
    FakePortal portal;
    ASSERT_TRUE(connection.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, &portal));
    ASSERT_TRUE(connection.registerService(u"org.freedesktop.portal.Desktop"_s));
    const auto change = [&](uint scheme) {
        auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << u"color-scheme"_s << QVariant::fromValue(QDBusVariant(scheme));
        connection.send(signal);
    };
    {
        stored().set(settings::appearance, u"system"_s);
        Theme::apply(Theme::light(), *qApp);
        AppDelegate delegate{LaunchOptions()};
        EXPECT_TRUE(waitUntil([] { return Theme::current().isDark; }));
        change(2);
        EXPECT_TRUE(waitUntil([] { return !Theme::current().isDark; }));

        stored().set(settings::appearance, u"light"_s);
        change(1);
        bool heard = false;
        ColorScheme scheme; // asks after the change, so the answer comes after it, too
        QObject::connect(&scheme, &ColorScheme::changed, [&] { heard = true; });
        EXPECT_TRUE(waitUntil([&] { return heard; }));
        EXPECT_FALSE(Theme::current().isDark);
        stored().set(settings::appearance, u"system"_s);
        EXPECT_TRUE(Theme::current().isDark);
    }
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    QDBusConnection::disconnectFromBus(u"portal"_s);
    bus.kill();
    bus.waitForFinished();
    Theme::apply(Theme::light(), *qApp);
}

TEST_F(SettingsTest, EditorIsTheDefaultOneOfThoseInstalledOrAnyOther)
{
    auto& picker = control<QComboBox>(u"Open Files In"_s);
    const std::vector<std::string> ordinary{"Default Application", "Kate", "Zed", "", "Choose Application…"};
    EXPECT_EQ(texts(picker), ordinary);
    pick(picker, u"Zed"_s);
    EXPECT_EQ(stored().value(settings::externalEditorPath), u"/apps/zed.desktop"_s);

    pick(picker, u"Choose Application…"_s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(picker.currentText(), u"Zed"_s); // cancelled, it stays so
    answer({"/opt/mine.desktop", "mine"});
    EXPECT_EQ(stored().value(settings::externalEditorPath), u"/opt/mine.desktop"_s);
    EXPECT_EQ(picker.currentText(), u"mine"_s);

    pick(picker, u"Default Application"_s);
    EXPECT_EQ(stored().value(settings::externalEditorPath), QString());
    EXPECT_GE(picker.findText(u"mine"_s), 0) << "an earlier choice stays on offer";

    stored().set(settings::externalEditorPath, u"/gone.desktop"_s);
    EXPECT_EQ(picker.currentText(), u"Default Application"_s);
    installed.clear();
    present.clear();
    window().hide();
    window().show();
    EXPECT_EQ(texts(picker), (std::vector<std::string>{"Default Application", "", "Choose Application…"}));
}

/// The desktop's fixed font under the name `family`, with one glyph made as wide as `width` says of the others' width.
QByteArray fixedFontBut(char16_t letter, double width, const QString& family)
{
    const QRawFont fixed = QRawFont::fromFont(CodeFont::font(QString(), 12));
    const auto glyph = static_cast<qsizetype>(fixed.glyphIndexesForString(QString(QChar(letter))).front());
    const auto number = [](quint32 value, int bytes) {
        QByteArray big(4, '\0');
        qToBigEndian(value, big.data());
        return big.last(bytes);
    };
    std::map<QByteArray, QByteArray> tables;
    for (const char* tag : {"CFF ", "OS/2", "cmap", "cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca", "maxp",
                            "name", "post", "prep"})
    {
        if (const QByteArray table = fixed.fontTable(tag); !table.isEmpty())
            tables[tag] = table;
    }
    const QByteArray glyphs = tables["maxp"].sliced(4, 2);
    const auto usual = qFromBigEndian<quint16>(tables["hmtx"].constData());
    tables["hhea"].replace(34, 2, glyphs);
    tables["hmtx"] = number(usual, 2).append(2, '\0').repeated(qFromBigEndian<quint16>(glyphs.constData()));
    tables["hmtx"].replace(4 * glyph, 2, number(static_cast<quint32>(usual * width), 2));
    // One record: the family, for Windows, in UTF-16 and American English.
    tables["name"].clear();
    for (const int part : {0, 1, 18, 3, 1, 0x409, 1, 2 * static_cast<int>(family.size()), 0})
        tables["name"] += number(static_cast<quint32>(part), 2);
    for (const QChar character : family)
        tables["name"] += number(character.unicode(), 2);

    QByteArray file = number(0x00010000, 4) + number(static_cast<quint32>(tables.size()), 2) + QByteArray(6, '\0');
    auto place = file.size() + 16 * static_cast<qsizetype>(tables.size());
    QByteArray body;
    for (auto& [tag, table] : tables) {
        file += tag + number(0, 4) + number(static_cast<quint32>(place + body.size()), 4) +
                number(static_cast<quint32>(table.size()), 4);
        body += table.leftJustified((table.size() + 3) / 4 * 4, '\0');
    }
    return file + body;
}

TEST_F(SettingsTest, OffersEveryFontWhoseLettersAreEquallyWide)
{
    const std::pair<QString, QByteArray> fonts[] = {{u"Plovik Even"_s, fixedFontBut(u'€', 2, u"Plovik Even"_s)},
                                                    {u"Plovik Uneven"_s, fixedFontBut(u'i', 0.5, u"Plovik Uneven"_s)}};
    for (const auto& [family, file] : fonts) {
        const int added = QFontDatabase::addApplicationFontFromData(file);
        ASSERT_EQ(QFontDatabase::applicationFontFamilies(added), QStringList{family});
        EXPECT_FALSE(QFontDatabase::isFixedPitch(family)) << "what the database says is not all there is";
        EXPECT_EQ(CodeFont::monospacedFamilies().contains(family), family == fonts[0].first) << family.toStdString();
        EXPECT_EQ(QFontInfo(CodeFont::font(family, 12)).family(), family);
        QFontDatabase::removeApplicationFont(added);
    }
}

TEST_F(SettingsTest, CodeFontChangesWithEveryStepAndGoesBackToTheDefaults)
{
    stored().set(settings::codeFontName, u"No Such Font"_s);
    stored().set(settings::codeFontSize, 40);
    auto& family = control<QComboBox>(u"Font"_s);
    EXPECT_EQ(family.count(), 0) << "fonts are looked at when they are to be seen";
    window().showTab(u"editor"_s);
    EXPECT_EQ(family.itemText(0), u"System Monospaced"_s);
    EXPECT_EQ(family.currentText(), u"No Such Font (not installed)"_s);
    auto& size = control<SizeControl>(u"Size"_s);
    EXPECT_EQ(size.text(), u"32 points"_s);
    EXPECT_EQ(stored().value(settings::codeFontSize), 40) << "looking changes nothing";
    const auto& preview = control<QPlainTextEdit>(u"Preview"_s);
    EXPECT_EQ(preview.toPlainText().split(u'\n').value(2), u"    return printf(\"Hello, %s\", name); // 0O 1lI"_s);
    EXPECT_TRUE(QFontInfo(preview.font()).fixedPitch());

    size.stepDown();
    EXPECT_EQ(stored().value(settings::codeFontSize), 31);
    EXPECT_EQ(preview.font(), CodeFont::current());
    size.setValue(12.5);
    EXPECT_EQ(size.text(), u"12.5 points"_s);
    auto& tabWidth = control<SizeControl>(u"Tab Width"_s);
    EXPECT_EQ(tabWidth.text(), u"8"_s);
    tabWidth.setValue(4);
    EXPECT_EQ(CodeFont::tabWidth(), 4);

    control<QPushButton>(u"Reset to Defaults"_s).click();
    EXPECT_EQ(family.currentText(), u"System Monospaced"_s);
    EXPECT_EQ(size.value(), 12);
    EXPECT_EQ(tabWidth.value(), 8);
    EXPECT_EQ(stored().value(settings::codeFontName), QString());
    EXPECT_EQ(preview.font(), CodeFont::font(QString(), 12));
    const QFont ordinary = QApplication::font();
    QFont large = ordinary;
    large.setPointSizeF(22);
    QApplication::setFont(large);
    EXPECT_EQ(CodeFont::size(), 24) << "beside a large font of the desktop";
    CodeFont::changeSize(-14);
    EXPECT_EQ(CodeFont::size(), 10) << "where nothing else was chosen";
    QApplication::setFont(ordinary);
}

TEST_F(SettingsTest, SaysOnceWhatCannotBeKeptUntilItCan)
{
    window();
    stored().save();
    EXPECT_EQ(notKept(), QString());
    const QString folder = QFileInfo(stored().path()).path();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    QFile inTheWay(folder);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));

    pick(control<QComboBox>(u"Appearance"_s), u"Dark"_s);
    EXPECT_TRUE(waitUntil([&] { return !notKept().isEmpty(); }));
    EXPECT_TRUE(notKept().contains(stored().path()));
    EXPECT_EQ(stored().value(settings::appearance), u"dark"_s);

    ASSERT_TRUE(inTheWay.remove());
    pick(control<QComboBox>(u"Appearance"_s), u"Light"_s);
    EXPECT_TRUE(waitUntil([&] { return notKept().isEmpty(); }));
    QFile kept(stored().path());
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_TRUE(kept.readAll().contains("appearance=light"));
}

TEST_F(SettingsTest, CommandLineTabSaysHowTheToolStandsAndDoesOneThingAtATime)
{
    using Offer = CommandLineState::Offer;
    CommandLineState state{u"Not installed"_s, {}, Offer::install};
    std::function<void(QString)> finish;
    std::filesystem::path revealed;
    commands = {[&] { return state; }, [&](auto finished) { finish = std::move(finished); },
                [&](auto path, auto /*failed*/) { revealed = std::move(path); }};
    window().showTab(u"Command Line"_s);
    auto& button = control<QPushButton>(u"Install"_s);
    EXPECT_TRUE(button.isVisible());
    button.click();
    EXPECT_FALSE(button.isEnabled());
    finish(u"No administrator here."_s);
    auto& problem = control<QLabel>(u"Command Line Problem"_s);
    EXPECT_EQ(problem.text(), u"No administrator here."_s);

    button.click();
    EXPECT_TRUE(problem.text().isEmpty());
    state = {u"Installed at"_s, "/home/me/bin/plovik", Offer::reveal};
    finish({});
    EXPECT_EQ(control<QLabel>(u"Command Line Tool"_s).text(), u"Installed at"_s);
    EXPECT_EQ(button.text(), u"Show in File Browser"_s);
    button.click();
    EXPECT_EQ(revealed, "/home/me/bin/plovik");

    state = {u"This is not a link to Plovik."_s, {}, Offer::update};
    window().hide();
    window().show();
    EXPECT_EQ(button.text(), u"Update Link"_s);
    button.click();
    window_.reset();
    finish(u"Nobody listens any more."_s);
}

TEST_F(SettingsTest, OwnCommandsAreStoredAsTheyAreTyped)
{
    window().showTab(u"commands"_s);
    auto& title = control<QLineEdit>(u"Title"_s);
    EXPECT_FALSE(title.isEnabled()) << "there is none yet";
    control<QPushButton>(u"Add"_s).click();
    EXPECT_TRUE(title.isEnabled());
    const auto& problem = control<QLabel>(u"Problem with the Command"_s);
    EXPECT_FALSE(problem.text().isEmpty());
    title.clear();
    QTest::keyClicks(&title, u"Tidy Up"_s);
    QTest::keyClicks(&control<QLineEdit>(u"Command"_s), u"make tidy"_s);
    EXPECT_TRUE(problem.text().isEmpty());
    control<QCheckBox>(u"Ask before it runs"_s).click();
    control<QKeySequenceEdit>(u"Keys"_s).setKeySequence(QKeySequence(Qt::CTRL | Qt::Key_R));
    EXPECT_TRUE(problem.text().contains(u"Refresh"_s)) << problem.text().toStdString();
    control<QKeySequenceEdit>(u"Keys"_s).setKeySequence(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_7));
    EXPECT_EQ(ownCommands::all(),
              (std::vector<ownCommands::Entry>{
                  {u"Tidy Up"_s, u"make tidy"_s, ownCommands::Entry::Place::repository, u"Ctrl+Alt+7"_s, true}}));
    control<QPushButton>(u"Remove"_s).click();
    EXPECT_TRUE(ownCommands::all().empty());
    EXPECT_FALSE(title.isEnabled());
}

TEST_F(SettingsTest, WindowTurnsItsTabsClosesByKeyAndComesBackToItsPlace)
{
    auto* const tabs = window().findChild<QTabBar*>();
    for (const auto& [key, modifiers, tab] : {std::tuple(Qt::Key_Tab, Qt::KeyboardModifiers(Qt::ControlModifier), 1),
                                              std::tuple(Qt::Key_PageUp, Qt::KeyboardModifiers(Qt::ControlModifier), 0),
                                              std::tuple(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, 5)})
    {
        QApplication::setActiveWindow(&window());
        QTest::keyClick(&window(), key, modifiers);
        EXPECT_EQ(tabs->currentIndex(), tab);
    }
    window().move(37, 41);
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
    window_.reset();
    EXPECT_EQ(window().pos(), QPoint(37, 41));
    QApplication::setActiveWindow(&window());
    QTest::keyClick(&window(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());

    stored().set(settings::settingsWindowPlace, u"90000 90000"_s);
    window().show();
    EXPECT_TRUE(window().screen()->geometry().contains(window().geometry())) << "no screen is there";
}

} // namespace
} // namespace plovik
