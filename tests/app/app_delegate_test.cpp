// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/AppDelegate.h"

#include "GitKit/runner/GitEnvironment.h"
#include "app/shell/RepositoryWindow.h"
#include "app/shell/WindowFrames.h"
#include "app/ui/welcome/WelcomeView.h"
#include "tests/app/EventWait.h"
#include "tests/support/TestRepository.h"

#include <QApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::waitUntil;

QWidget* shownWindow(const char* type)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits(type))
            return window;
    }
    return nullptr;
}

TEST(Application, EndsWithItsLastWindow)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    AppDelegate delegate{LaunchOptions()};
    const QSignalSpy finished(&delegate, &AppDelegate::finished);
    delegate.open({});
    ASSERT_TRUE(shownWindow("plovik::WelcomeView")) << "a request that names nothing here still gets a window";
    delegate.open({repo.path()});
    ASSERT_TRUE(waitUntil([] { return shownWindow("plovik::RepositoryWindow"); }));
    EXPECT_FALSE(shownWindow("plovik::WelcomeView"));
    QApplication::processEvents();
    EXPECT_EQ(finished.count(), 0) << "the welcome window gave way to another one";
    auto* const window = qobject_cast<RepositoryWindow*>(shownWindow("plovik::RepositoryWindow"));
    EXPECT_TRUE(waitUntil([window] { return window->store().snapshot().hasLoaded.value(); }));
    // Qt notices the last window only while the application runs.
    QObject::connect(&delegate, &AppDelegate::finished, qApp, &QCoreApplication::quit);
    QTimer::singleShot(0, window, &QWidget::close);
    QTimer::singleShot(std::chrono::seconds(10), &delegate, &QCoreApplication::quit);
    QApplication::exec();
    EXPECT_EQ(finished.count(), 1);
}

TEST(Application, EndsWithADialogThatOutlivesTheLastWindow)
{
    AppDelegate delegate{LaunchOptions()};
    const QSignalSpy finished(&delegate, &AppDelegate::finished);
    delegate.showWelcome();
    delegate.about();
    QWidget* const about = shownWindow("plovik::AboutDialog");
    ASSERT_TRUE(about);
    shownWindow("plovik::WelcomeView")->close();
    QApplication::processEvents();
    EXPECT_EQ(finished.count(), 0);
    about->close();
    EXPECT_TRUE(waitUntil([&finished] { return finished.count() == 1; }));
}

TEST(Application, AWindowComesToTheFrontWithTheTokenOfItsLaunch)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    AppDelegate delegate{LaunchOptions()};
    QByteArray seen;
    QObject::connect(&delegate, &AppDelegate::windowOpened, &delegate,
                     [&seen] { seen = qgetenv("XDG_ACTIVATION_TOKEN"); });
    ActivationToken{"token", {}}.lend([&] { delegate.open({repo.path()}); });
    EXPECT_TRUE(qgetenv("XDG_ACTIVATION_TOKEN").isEmpty());
    ASSERT_TRUE(waitUntil([] { return shownWindow("plovik::RepositoryWindow"); }));
    EXPECT_EQ(seen, "token");
    EXPECT_TRUE(qgetenv("XDG_ACTIVATION_TOKEN").isEmpty());
}

TEST(WindowFrames, FitIntoTheScreenThatIsThere)
{
    using windowFrames::fitted;
    const QRect screen(0, 30, 1280, 770);
    EXPECT_EQ(fitted({100, 100, 800, 600}, screen), QRect(100, 100, 800, 600));
    EXPECT_EQ(fitted({1500, 500, 1240, 780}, screen), QRect(40, 30, 1240, 770));
    EXPECT_EQ(fitted({-50, -10, 2560, 1400}, screen), screen);

    const QRect there = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget window;
    window.setGeometry(there.right() + 5000, 40, 500, 400); // a screen that is gone
    windowFrames::remember(window, "/tmp/gone");
    windowFrames::restore(window, "/tmp/gone");
    EXPECT_TRUE(there.contains(window.geometry()));
    EXPECT_EQ(window.size(), QSize(500, 400));
}

} // namespace
} // namespace plovik
