// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/ForetoldWords.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Outcome = gitkit::MergePreview::Outcome;

struct ForetoldTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Foretold)
};

QString conflictsIn(const std::vector<std::string>& files, const std::string& stopsAt, bool mayRemember)
{
    constexpr std::size_t most = 3;
    QStringList names;
    for (std::size_t index = 0; index < std::min(files.size(), most); ++index)
        names += shownText(files[index]);
    if (files.size() > most)
        names += u"…"_s;
    const auto count = static_cast<int>(files.size());
    const QString list = names.join(u", "_s);
    QString words = stopsAt.empty()
                        ? ForetoldTexts::tr("Will conflict in %Ln file(s): %1", nullptr, count).arg(list)
                        : ForetoldTexts::tr("Will conflict at %2 in %Ln file(s): %1", "files, commit", count)
                              .arg(list, inQuotes(stopsAt));
    if (mayRemember)
        words += u'\n' + ForetoldTexts::tr("Git may remember how you resolved them before.");
    return words;
}

QString wordsFor(const gitkit::MergePreview& preview)
{
    if (preview.commits == 0 || preview.outcome == Outcome::unknown)
        return {};
    if (preview.outcome == Outcome::conflicts)
        return conflictsIn(preview.conflicts, {}, preview.remembersResolutions);
    return preview.own == 0 ? ForetoldTexts::tr("Fast-forward · %Ln commit(s)", nullptr, preview.commits)
                            : ForetoldTexts::tr("Merges cleanly · %Ln file(s)", nullptr, preview.files);
}

QString wordsFor(const gitkit::RebasePreview& preview)
{
    if (preview.beneath == 0 || preview.outcome == Outcome::unknown)
        return {};
    if (preview.outcome == Outcome::conflicts)
        return conflictsIn(preview.conflicts, {}, preview.remembersResolutions);
    return preview.commits == 0 ? ForetoldTexts::tr("Fast-forward · %Ln commit(s)", nullptr, preview.beneath)
                                : ForetoldTexts::tr("No conflicts · %Ln commit(s)", nullptr, preview.commits);
}

QString wordsFor(const gitkit::PickPreview& preview)
{
    if (preview.outcome == Outcome::unknown)
        return {};
    if (preview.outcome == Outcome::conflicts)
        return conflictsIn(preview.conflicts, preview.stopsAt, preview.remembersResolutions);
    return preview.files == 0 ? ForetoldTexts::tr("Changes nothing here")
                              : ForetoldTexts::tr("No conflicts · %Ln file(s)", nullptr, preview.files);
}

QString wordsFor(std::monostate) { return {}; }

} // namespace

QString foretoldWords(const Foretold& foretold)
{
    return std::visit([](const auto& known) { return wordsFor(known); }, foretold);
}

} // namespace plovik
