// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DetachedProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace plovik {

void startGitDetached(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                      const std::function<void(std::string problem)>& failed)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"GIT_LITERAL_PATHSPECS"_s, u"1"_s);
    process.setProcessEnvironment(environment);
    process.setProgram(u"git"_s);
    QStringList texts;
    for (const std::string& argument : arguments)
        texts.append(QFile::decodeName(argument.c_str()));
    process.setArguments(texts);
    process.setWorkingDirectory(QFile::decodeName(folder.c_str()));
    if (!process.startDetached())
        failed(QCoreApplication::translate("DetachedProgram", "Git could not be started.").toStdString());
}

} // namespace plovik
