// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/ExternalEditor.h"

#include "app/await/WorkThreads.h"
#include "app/settings/Settings.h"
#include "app/store/Failure.h"
#include "app/store/ShownText.h"

#include <QCollator>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QLocale>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace plovik::externalEditor {

namespace {

/// How many editors are started beside each other; some take long.
constexpr std::size_t mostAtOnce = 4;

struct EditorText {
    Q_DECLARE_TR_FUNCTIONS(ExternalEditor)
};

std::filesystem::path nativePath(const QString& path) { return QFile::encodeName(path).toStdString(); }

QString chosenPath() { return Settings::shared().value(settings::externalEditorPath); }

Files existing(const Files& files)
{
    Files kept;
    std::set<std::filesystem::path> seen;
    for (const auto& file : files) {
        std::error_code unreadable;
        if (std::filesystem::exists(file, unreadable) && seen.insert(file).second)
            kept.push_back(file);
    }
    return kept;
}

/// Opens the files, and blocks. Returns a sentence that says why this failed, or an empty text after success.
std::string openReportingProblem(const std::filesystem::path& editor, const Files& files)
{
    const Files present = existing(files);
    try {
        if (present.empty())
            return {};
        if (const auto application = editors::at(editor))
            editors::open(*application, present);
        else
            editors::openWithDefaults(present);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return {};
}

/// The same for one file at a place.
std::string openPlaceReportingProblem(const std::filesystem::path& editor, const std::filesystem::path& file,
                                      editors::Place place)
{
    try {
        if (const auto application = editors::at(editor); application && !existing({file}).empty()) {
            editors::openAt(*application, file, place);
            return {};
        }
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return openReportingProblem(editor, {file});
}

/// Calls `failed` on the main thread, but not at once.
void tell(const Failed& failed, std::string problem)
{
    if (QCoreApplication* const application = QCoreApplication::instance())
        QMetaObject::invokeMethod(
            application, [failed, problem = std::move(problem)] { failed(problem); }, Qt::QueuedConnection);
}

/// Starting a program can wait for a disk or for D-Bus, so it does not happen on the main thread.
void startAside(std::function<std::string()> start, const Failed& failed)
{
    static WorkThreads threads(mostAtOnce);
    try {
        threads.start([start = std::move(start), failed] {
            if (std::string problem = start(); !problem.empty())
                tell(failed, std::move(problem));
        });
    } catch (const std::system_error& noThread) {
        tell(failed, failureOf(noThread).message.toStdString());
    }
}

} // namespace

std::vector<App> installed()
{
    std::vector<App> apps = editors::known();
    // The C locale sorts by bytes, which is no order for names.
    const QLocale locale;
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(apps, [&order](const App& left, const App& right) {
        const int names = order.compare(shownText(left.name), shownText(right.name));
        return names == 0 ? left.path < right.path : names < 0;
    });
    return apps;
}

std::optional<App> app(const QString& path) { return path.isEmpty() ? std::nullopt : editors::at(nativePath(path)); }

QString menuTitle(const QString& path)
{
    const std::optional<App> chosen = app(path);
    return chosen ? EditorText::tr("Open in %1").arg(shownText(chosen->name))
                  : EditorText::tr("Open in Default Editor");
}

QString menuTitle() { return menuTitle(chosenPath()); }

void chooseApplication(QWidget* parent, std::function<void(App)> chosen)
{
    auto* const panel = new QFileDialog(
        parent, EditorText::tr("Choose an application"), exactText(editors::applicationsFolder().string()),
        EditorText::tr("Applications (%1)").arg(exactText(editors::applicationPattern())));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setLabelText(QFileDialog::Accept, EditorText::tr("Choose"));
    QObject::connect(panel, &QFileDialog::fileSelected, panel, [chosen = std::move(chosen)](const QString& path) {
        if (std::optional<App> picked = app(path))
            chosen(*std::move(picked));
    });
    panel->open();
}

void open(const Files& files, const Failed& failed)
{
    startAside([editor = nativePath(chosenPath()), files] { return openReportingProblem(editor, files); }, failed);
}

void openAtLine(const std::filesystem::path& file, int line, int column, const Failed& failed)
{
    startAside([editor = nativePath(chosenPath()), file,
                place = editors::Place{line, column}] { return openPlaceReportingProblem(editor, file, place); },
               failed);
}

} // namespace plovik::externalEditor
