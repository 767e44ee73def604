// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Terminal.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Returns the program to start; empty when none is found.
QString terminalProgram()
{
    QStringList names{qEnvironmentVariable("TERMINAL"), u"xdg-terminal-exec"_s, u"x-terminal-emulator"_s};
    names += {u"ptyxis"_s,        u"kgx"_s,   u"gnome-terminal"_s, u"konsole"_s,   u"xfce4-terminal"_s,
              u"mate-terminal"_s, u"tilix"_s, u"lxterminal"_s,     u"qterminal"_s, u"alacritty"_s,
              u"kitty"_s,         u"foot"_s,  u"wezterm"_s,        u"xterm"_s};
    for (const QString& name : std::as_const(names)) {
        const QString program = name.isEmpty() ? QString() : QStandardPaths::findExecutable(name);
        if (!program.isEmpty())
            return program;
    }
    return {};
}

} // namespace

void openTerminal(const std::filesystem::path& folder, const std::function<void(std::string problem)>& failed)
{
    const QString program = terminalProgram();
    const auto fail = [&failed](const QString& sentence) { failed(sentence.toStdString()); };
    if (program.isEmpty())
        fail(QCoreApplication::translate("Terminal", "No terminal was found. The variable TERMINAL can name one."));
    else if (!QProcess::startDetached(program, {}, QFile::decodeName(folder.c_str())))
        fail(QCoreApplication::translate("Terminal", "%1 could not be started.").arg(program));
}

} // namespace plovik
